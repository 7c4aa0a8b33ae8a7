// What makes a dictionary an action.
// SPDX-License-Identifier: MIT
#include "doc/Actions.h"

#include "doc/Keys.h"
#include "lex/LexObjects.h"

namespace jackdaw {

KRAtom actionSubtype(DMAction action) {
    const LexObj dict = actionLex(action);
    return lex::typeOf(dict) == LexDict ? lex::nameOrNone(lex::dictGet(dict, keys().S)) : KRAtomNull;
}

bool actionIsValid(DMAction action) {
    return actionSubtype(action) != KRAtomNull;
}

} // namespace jackdaw
