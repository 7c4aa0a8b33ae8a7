// Actions: thin views of their dictionaries.
// SPDX-License-Identifier: MIT
#pragma once

#include "DocModelHFT.h"
#include "LexHFT.h"

namespace jackdaw {

inline LexObj actionLex(DMAction action) {
    return {action.node, action.slot};
}
inline DMAction actionFromLex(LexObj obj) {
    return {obj.node, obj.slot};
}

/** A dictionary with a name `S`. A destination is none, though it travels in the same handle. */
bool actionIsValid(DMAction action);
/** KRAtomNull when `S` is missing. */
KRAtom actionSubtype(DMAction action);

} // namespace jackdaw
