// An annotation's highlight, appearance and state, and the walk over all annotations of a document.
// SPDX-License-Identifier: MIT
#pragma once

#include "DocModelHFT.h"
#include "LexHFT.h"

/** `H`; the atom of "I" (invert) when absent. */
KRAtom TSDMAnnotGetHighlight(DMAnnot annot);
/** Invert, the default, is written by removing the key; the present value is not written again. */
void TSDMAnnotSetHighlight(DMAnnot annot, KRAtom highlight);

/**
 * `AP` has an entry for a face (`mode` N, D or R; KRAtomNull asks for any) and in it one for `state` (KRAtomNull: any;
 * otherwise the face must be a dictionary of states).
 */
bool TSDMAnnotHasAppearance(DMAnnot annot, KRAtom mode, KRAtom state);

/**
 * The appearance of a face, or the null object. With a `state` the stream of that state; a face without states gives
 * its stream all the same. With KRAtomNull the face's entry as it stands, a stream or a dictionary of states.
 */
LexObj TSDMAnnotGetAppearance(DMAnnot annot, KRAtom mode, KRAtom state);

/**
 * Puts an appearance, or removes it with the null object. `state` KRAtomNull addresses the face itself; `mode`
 * KRAtomNull removes all of `AP`. Nothing when it is there already. Announced as a change of `AP`; a failure is raised
 * after the announcement.
 */
void TSDMAnnotSetAppearance(DMAnnot annot, KRAtom mode, KRAtom state, LexObj appearance);

/** `AS`; KRAtomNull when absent. */
KRAtom TSDMAnnotGetState(DMAnnot annot);
/** KRAtomNull removes the key. Announced as a change of `AS`. */
void TSDMAnnotSetState(DMAnnot annot, KRAtom state);

/** Stops the enumeration by giving false. */
using TSAnnotEnumProc = bool (*)(DMAnnot annot, DMPage page, void *data);
/**
 * Annotations of a subtype, pages and annotations from the last to the first. An exception within a page, also one of
 * `proc`, ends the walk silently, and gives false.
 */
bool TSDMDocEnumAnnots(DMDoc doc, KRAtom subtype, TSAnnotEnumProc proc, void *data);
