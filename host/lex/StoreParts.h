// What the files of the document store share: looking at what a document's file was found to be.
// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "lex/Node.h"

namespace jackdaw::lex {

/** Whether the library speaks of a lack of memory. A failed allocation of C++ is counted (FailedAllocations); a
 *  decompressor's or a decryptor's shows in words alone. */
bool isOfMemory(std::string_view complaint);

/** Takes the library's complaints over into the record, and notes whether it had to rebuild the cross references. */
void CollectWarnings(LexDocRec &doc);

/** The same when a document is opened, with what a repair did not find; throws as requireWhole. */
void AssessOpened(LexDocRec &doc);

/**
 * Throws HostError when what the document holds is not what its file holds through no fault of the file: it could not
 * be read, changed while it was open (KRErrFileIO), or memory ran out, which the library makes nulls of
 * (KRErrNoMemory). Such a document is neither shown nor saved.
 */
void RequireWhole(LexDocRec &doc);

/** Keeps the library's complaints from filling the memory while it reads. Throws KRErrNoMemory when they pass any
 * measure: every byte of a file can bring two about, time and again. */
void BoundComplaints(LexDocRec &doc);

} // namespace jackdaw::lex
