// An editor of the name trees under the catalog's `Names`: keys are kept sorted and limits true, and a tree can be
// rebuilt in balance.
//
// A node is a dictionary: with `Kids` it is intermediate, with `Names` (key, value, key, value ...) a leaf; all but
// the root have `Limits`, the smallest and the largest key below. A node that is reached twice is walked once; nodes
// that nest deeper than any tree does raise KRErrBadParam. Errors of the object layer are passed on.
// SPDX-License-Identifier: MIT
#pragma once

#include "FormsAuthoringHFT.h"
#include "LexHFT.h"

/** Inserts the name, or replaces its value; makes `Names` and the tree as needed. `name` stands in PDFDocEncoding. */
void TSAddNameEntry(LexDoc doc, KRAtom tree, const EStr *name, LexObj value, std::uint32_t flags);
/** Removes the name. With `updateLimits`, limits are computed anew when an edge of a node was touched. */
void TSRemoveNameEntry(LexDoc doc, KRAtom tree, const EStr *name, KRBool updateLimits, std::uint32_t flags);
/** The value, or the null object. */
LexObj TSFindNameEntry(LexDoc doc, KRAtom tree, const EStr *name);
/** The key (a string object) of the first entry whose value is this object, or the null object. */
LexObj TSFindNameEntryByObj(LexDoc doc, KRAtom tree, LexObj value);
/** Entries in order until `proc` gives false, which is then the result. A tree that is absent counts as done. */
KRBool TSEnumNameTree(LexDoc doc, KRAtom tree, Forms::NameEntryProc proc, void *data);
/** Rebuilds the tree with at most `branching` entries a node. Raises KRErrBadParam for a `branching` below 2. */
void TSRegenerateNameTree(LexDoc doc, KRAtom tree, std::int32_t branching);
