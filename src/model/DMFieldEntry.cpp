// Reading a field's keys as forms inherit them.
// SPDX-License-Identifier: MIT
#include "model/DMField.h"

#include "Common/src/miLexType.h"
#include "base/FormStr.h"
#include "model/DMFieldValue.h"
#include "model/NameHash.h"
#include "objects/LexUtil.h"
#include "objects/Tessella.h"

namespace {

/** From the nearest field upward that holds the entry, else from the form. */
LexObj InheritedEntry(const DMField *field, std::uint32_t entry) {
    for (const DMField *holder = field; holder; holder = holder->parent) {
        if (holder->entries & entry) return LexDictGet(holder->obj, Entry_to_Name(entry));
    }
    return TessellaGetEntry(TSLexObjGetTessella(field->obj), entry);
}

/** From the own dictionary, else from the first of the same name that holds the entry. */
LexObj SharedEntry(const DMField *field, std::uint32_t entry) {
    const KRAtom key = Entry_to_Name(entry);
    if (field->entries & entry) return LexDictGet(field->obj, key);
    if (!(field->state & DMFieldSharesName)) return LexNullObj;
    NameEntry *names = NameEntryOf(field);
    if (names->absent & entry) return LexNullObj;
    const DMField *holder = names->head;
    while (holder && !(holder->entries & entry)) holder = holder->nextSameName;
    if (!holder) names->absent |= entry;
    return holder ? LexDictGet(holder->obj, key) : LexNullObj;
}

/** The name `Off`, one object for the whole document, as buttons are asked often. */
LexObj OffName(const DMField *field) {
    const LexDoc doc = TSDMFieldGetLexDoc(field);
    DocHashControl *control = TSLexDocFindHashHead(doc);
    if (!control) return LexNewName(doc, /*indirect*/ false, Off_K);
    if (!IsName(control->offName)) control->offName = LexNewName(doc, /*indirect*/ false, Off_K);
    return control->offName;
}

LexObj ValueEntry(const DMField *field, std::uint32_t entry) {
    const LexObj value = SharedEntry(field, entry);
    if (!IsNull(value)) {
        if (field->type != Sig_K) return value;
        return IsDict(value) && LexDictKnown(value, Contents_K) ? value : LexNullObj;
    }
    const bool hasOff = field->type == Btn_K && !(field->flags[TSFieldWord] & TSFieldPushButton);
    return hasOff ? OffName(field) : LexNullObj;
}

} // namespace

LexObj TSDMFieldGetObj(const DMField *field, KRAtom key) {
    if (!TSDMFieldIsValid(field)) return LexNullObj;
    for (const DMField *holder = field; holder; holder = holder->parent) {
        const LexObj value = LexDictGet(holder->obj, key);
        if (!IsNull(value)) return value;
    }
    return field->firstChild ? LexDictGet(field->firstChild->obj, key) : LexNullObj;
}

void TSDMFieldPutObj(DMField *field, KRAtom key, LexObj value) {
    if (!TSDMFieldIsValid(field) || TSLexObjEquivalent(TSDMFieldGetObj(field, key), value)) return;
    LexDictPut(field->obj, key, value);
}

LexObj TSDMFieldGetEntry(const DMField *field, std::uint32_t entry) {
    if (!TSDMFieldIsValid(field)) return LexNullObj;
    switch (entry) {
    case TSEntryDA:
    case TSEntryOH:
    case TSEntryDR:
    case TSEntryQ:
        return InheritedEntry(field, entry);
    case TSEntryV:
    case TSEntryDV:
        return ValueEntry(field, entry);
    default:
        return LexNullObj;
    }
}

void TSDMFieldUpdateEntries(DMField *field) {
    if (!field) return;
    field->entries = 0;
    for (std::uint32_t entry = TSEntryVT; entry >= TSEntryDV; entry >>= 1) {
        if (LexDictKnown(field->obj, Entry_to_Name(entry))) DMFieldNoteEntry(field, entry);
    }
}

void DMFieldNoteEntry(DMField *field, std::uint32_t entry) {
    field->entries |= entry;
    NameEntryOf(field)->absent &= ~entry;
}
