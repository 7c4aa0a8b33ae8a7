// Annotation handlers by subtype, and the copying of annotations between documents.
// SPDX-License-Identifier: MIT
#pragma once

#include "ScreenViewHFT.h"

namespace jackdaw {

/** The newest handler of a type is used. */
void RegisterAnnotHandler(SCAnnotHandler *handler);
/** Null when the subtype has none. */
SCAnnotHandler *AnnotHandlerFor(DMAnnot annot);

/**
 * By the handler of the subtype, or entry by entry: then the copy belongs to `page`, and what ties the original to its
 * surroundings (`Parent`, `Kids`, `Popup`, `IRT`, `StructParent`) stays behind. Not on the page until DMPageAddAnnot.
 */
DMAnnot CopyAnnot(DMDoc target, DMPage page, DMAnnot annot, SCDoc source);

} // namespace jackdaw
