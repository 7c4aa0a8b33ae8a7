// What makes a dictionary an action.
// SPDX-License-Identifier: MIT
#include "doc/Actions.h"

#include "doc/Keys.h"
#include "lex/LexObjects.h"

namespace jackdaw {

KRAtom ActionSubtype(DMAction action) {
    const LexObj dict = ActionLex(action);
    return lex::IsDict(dict) ? lex::NameOrNone(lex::DictGet(dict, Keys().S)) : KRAtomNull;
}

bool ActionIsValid(DMAction action) {
    return ActionSubtype(action) != KRAtomNull;
}

} // namespace jackdaw
