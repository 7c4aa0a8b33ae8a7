// Annotations: the `Annots` array of a page, and the entries of an annotation that the host knows.
//
// An annotation's index is its place in the array, whatever else stands there. The functions broadcast the
// notifications that ScreenViewNotify.h lists for them.
// SPDX-License-Identifier: MIT
#pragma once

#include "DocModelHFT.h"
#include "LexHFT.h"

namespace jackdaw {

inline LexObj AnnotLex(DMAnnot annot) {
    return {annot.node, annot.slot};
}
inline DMAnnot AnnotFromLex(LexObj obj) {
    return {obj.node, obj.slot};
}

/** A dictionary with a name `Subtype`. */
bool AnnotIsValid(DMAnnot annot);
/** KRAtomNull for what is not valid. */
KRAtom AnnotSubtype(DMAnnot annot);
/** Normalised; throws KRErrBadParam when `Rect` is no rectangle. */
KRFixedRect RectOfAnnot(DMAnnot annot);
void SetRectOfAnnot(DMAnnot annot, const KRFixedRect &rect);
/** `F`, 0 when it is absent or no number. */
std::uint32_t AnnotFlags(DMAnnot annot);
void SetAnnotFlags(DMAnnot annot, std::uint32_t flags);

std::int32_t NumAnnots(DMPage page);
/**
 * A dictionary that the array holds directly becomes an indirect object in it; the document does not count as changed
 * by that. Something else than a dictionary is given as it is and is not valid. Throws KRErrBadParam outside the array.
 */
DMAnnot PageAnnot(DMPage page, std::int32_t index);
/** -1 when the annotation is not on the page. Costs a look-up, not a scan. */
std::int32_t AnnotIndex(DMPage page, DMAnnot annot);
/** A new indirect annotation that is on no page yet. */
DMAnnot CreateAnnot(DMPage page, KRAtom subtype, const KRFixedRect &rect);
/** Inserts behind annotation `index`, or at a DMAnnotPlace. Sets its `P`. Sends DMPageWillAddAnnot, DMPageDidAddAnnot.
 */
void AddAnnot(DMPage page, std::int32_t index, DMAnnot annot);
/** Sends DMPageWillRemoveAnnot and DMPageDidRemoveAnnot. */
void RemoveAnnot(DMPage page, std::int32_t index);

} // namespace jackdaw
