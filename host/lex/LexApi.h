// What the layers above need beyond the objects themselves: whose a document is, when it changes, how a direct object
// becomes indirect, and the PDF library's own view for drawing.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "KRTypes.h"

class QPDF;
class QPDFObjectHandle;

namespace jackdaw::lex {

/** A word of the layer above, such as its own document record; null at first. */
void SetClient(LexDoc doc, void *client);
void *ClientOf(LexDoc doc);

/**
 * Called after every change of an object that the file will hold: an indirect one, or a direct one inside such.
 * Changes of loose objects are silent; so is making an object indirect, which changes no meaning.
 */
void SetChangeObserver(LexDoc doc, std::function<void()> observer);
/** Counts all changes: what was computed from a document is good while its stamp stands. */
std::uint64_t ChangeStamp(LexDoc doc);

/** The table's reading of a two-word reference and its document's slot. 0 for a document that is not open. */
KRWord SlotOf(LexDoc doc);

/**
 * Makes a direct dictionary or array indirect where it sits: every holder then refers to it, its reference stays the
 * same. Nothing for one that is indirect already. The first call of a document reads the whole file. Returns `obj`.
 */
LexObj EnsureIndirect(LexObj obj);

/** The library's document, for copying out of it; never change it there, since what was looked up is remembered. */
QPDF &LibraryDoc(LexDoc doc);
/** The library's object; its null for the null object and for references that died. */
QPDFObjectHandle LibraryHandle(LexObj obj);

} // namespace jackdaw::lex
