// Open documents: opening, saving, closing, flags, document information, permissions.
//
// A DMDoc is checked wherever it comes in: a handle of a closed document throws KRErrBadParam and is never followed.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "DocModelHFT.h"
#include "LexHFT.h"

namespace jackdaw {

/**
 * Opens a PDF, or gives the document that is open on this very file (same device and inode) with one more reference.
 * `password` may be null. Throws KRErrBadPDF, KRErrPassword and the file errors.
 */
DMDoc OpenDoc(KRFileSys fs, KRPathName path, const char *password);
/** Opens a PDF that did not come from a file (standard input). It has no file of its own to be saved to. */
DMDoc OpenDocFromBytes(const std::string &bytes, const char *password);

/**
 * Saves as DMDocSave describes it, always by writing the whole file anew: DMDocWillSave therefore carries DMDocSaveFull
 * whatever was asked for. A null `path` means the document's own file and throws KRErrBadParam when it has none.
 * Afterwards the document belongs to the file saved to and is not dirty, unless DMDocSaveCopy asked for a copy, which
 * leaves both as they were. DMDocDidSave is sent on success and on failure, before the failure is thrown.
 */
void SaveDoc(DMDoc doc, std::uint32_t saveFlags, KRFileSys fs, KRPathName path);
/** Writes a copy to an open stream such as standard output; the two notifications carry a null path. */
void SaveDocToStream(DMDoc doc, std::FILE *target);

/** Gives up one reference; with the last the document, its pages and its objects go. */
void CloseDoc(DMDoc doc);

bool IsOpenDoc(DMDoc doc);
/** In the order of opening. */
std::vector<DMDoc> OpenDocs();
/** Closes whatever is open, references or not: the end of the process. */
void CloseAllDocs();

LexDoc DocLex(DMDoc doc);
/** Null for an FDF or a closed document. */
DMDoc DocFromLex(LexDoc lex);
/** The document's file, open for reading; null when the document came from bytes. */
KRFile DocFile(DMDoc doc);

std::uint32_t DocFlags(DMDoc doc);
void SetDocFlags(DMDoc doc, std::uint32_t flags);
void ClearDocFlags(DMDoc doc, std::uint32_t flags);

/** Grows with every change of an object of the document: what was derived from objects is fresh while it stands. */
std::uint64_t DocChangeStamp(DMDoc doc);

/** A sum of DMPermission. */
std::uint32_t DocPermissions(DMDoc doc);

/** Calls `proc` with each line of lex::DamageOf; throws as that does. */
void TellDocDamage(DMDoc doc, DMDamageProc proc, void *clientData);

/** Reads the whole file when `load` says so, which the library needs before its first change. */
void EnsureDocWritable(DMDoc doc, bool load);

/** Bytes of a string of the `Info` dictionary; empty when it is absent. */
std::string DocInfo(DMDoc doc, const char *key);
/** Makes the `Info` dictionary when it is absent. No bytes remove the entry. */
void SetDocInfo(DMDoc doc, const char *key, const std::string &bytes);

} // namespace jackdaw
