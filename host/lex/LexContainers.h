// What the walk over a container hands out; the other container operations stand in LexObjects.h.
// SPDX-License-Identifier: MIT
#pragma once

#include "lex/LexObjects.h"

namespace jackdaw::lex {

/** Entries as slot LexObjEnum hands them out: key object and value, or element and null. */
std::vector<std::pair<LexObj, LexObj>> EntriesForWalk(LexObj obj);

} // namespace jackdaw::lex
