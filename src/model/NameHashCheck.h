// Testing the invariants of a document's index of fields (NameHash.h).
// SPDX-License-Identifier: MIT
#pragma once

#include "LexHFT.h"

struct DocHashControl;

/** Number of the first invariant that does not hold, 0 when all do. Goes through all records. */
int DocHashFault(const DocHashControl *control);

/**
 * Called at the end of every edit of the tree. Debug builds test all invariants and stop the program where one is
 * broken; in a large form only after as many edits as it has fields, so that the cost of an edit stays the same.
 */
#ifdef NDEBUG
inline void DocHashCheck(LexDoc) {}
#else
void DocHashCheck(LexDoc doc);
#endif
