// Actions: thin views of their dictionaries.
// SPDX-License-Identifier: MIT
#pragma once

#include "DocModelHFT.h"
#include "LexHFT.h"

namespace jackdaw {

inline LexObj ActionLex(DMAction action) {
    return {action.node, action.slot};
}
inline DMAction ActionFromLex(LexObj obj) {
    return {obj.node, obj.slot};
}

/** A dictionary with a name `S`. A destination is none, though it travels in the same handle. */
bool ActionIsValid(DMAction action);
/** KRAtomNull when `S` is missing. */
KRAtom ActionSubtype(DMAction action);

} // namespace jackdaw
