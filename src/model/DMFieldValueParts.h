// What the value, display and flag operations share.
// SPDX-License-Identifier: MIT
#pragma once

#include "Common/src/miEStr.h"
#include "Common/src/miLexType.h"
#include "LexHFT.h"
#include "base/FormStr.h"
#include "model/DMField.h"
#include "model/NameHash.h"

/** The atom of a name object; KRAtomNull for any other. */
inline KRAtom LexNameOrNull(LexObj obj) {
    return IsName(obj) ? LexNameValue(obj) : KRAtomNull;
}

/** A value is one object; of the several choices of a list the first stands for all where only one can be told. */
inline LexObj FirstOfValue(LexObj value) {
    if (!IsArray(value)) return value;
    return LexArrayLength(value) > 0 ? LexArrayGet(value, 0) : LexNullObj;
}

/** The text that observers are told for a value. */
inline EStrPtr TextOfValue(LexObj value) {
    return EStrPtr(EStrNewFromLexObjImpl(FirstOfValue(value)));
}

/** The annotation flags hide the widget. */
inline bool DMFieldIsHidden(const DMField *field) {
    return (field->flags[TSAnnotWord] & DMAnnotHidden) != 0;
}

/** Index of the last of the options whose export value is `value`; -1 for none. */
std::int32_t DMFieldFindOption(LexObj options, LexObj value);

/**
 * Brings `I`, the indexes of what is selected in a list, in line with the value: a list of several choices needs it, a
 * field that had it keeps it, and what says something else misleads other programs.
 */
void DMFieldUpdateSelection(DMField *field);

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
