// What the value, display and flag operations share.
// SPDX-License-Identifier: MIT
#pragma once

#include "Common/src/miLexType.h"
#include "LexHFT.h"
#include "base/FormStr.h"
#include "model/DMField.h"

/** The atom of a name object; KRAtomNull for any other. */
inline KRAtom LexNameOrNull(LexObj obj) {
    return IsName(obj) ? LexNameValue(obj) : KRAtomNull;
}

/** The record still belongs to this dictionary: observers may have undefined it, or closed the document. */
inline bool DMFieldIsAlive(const DMField *field, LexObj dict) {
    return TSLexObjFindDMField(dict) == field;
}

/** First of the fields with this name; the field itself when it is alone. */
inline DMField *DMFieldHeadOfName(DMField *field) {
    if (!(field->state & DMFieldSharesName)) return field;
    DMField *head = TSLexDocGetDMFieldFromNameStr(LexObjGetDoc(field->obj), field->name);
    return head ? head : field;
}

/** Takes an entry out of every dictionary of a same-name list from `first` on. */
inline void DMFieldRemoveEntryFromAll(DMField *first, TSEntry entry) {
    const KRAtom key = Entry_to_Name(entry);
    for (DMField *field = first; field; field = field->nextSameName) {
        if (!(field->entries & entry)) continue;
        LexDictRemove(field->obj, key);
        field->entries &= ~static_cast<std::uint32_t>(entry);
    }
}
