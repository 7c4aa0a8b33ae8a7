// A second widget under one name: the single field becomes a group, or the group takes one more.
// SPDX-License-Identifier: MIT
#include "model/LexField.h"

#include "Common/src/miEStr.h"
#include "Common/src/miLexType.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "model/DMField.h"
#include "model/DMFieldValueParts.h"
#include "model/FieldArray.h"
#include "objects/LexUtil.h"
#include "objects/Tessella.h"

namespace {

void MoveKey(LexObj from, LexObj to, KRAtom key) {
    if (!LexDictKnown(from, key)) return;
    LexDictPut(to, key, LexDictGet(from, key));
    LexDictRemove(from, key);
}

/** Texts of the field rule over those of the newcomer. An empty one is dropped. */
void MoveText(LexObj old, LexObj dict, LexObj top, KRAtom key) {
    const LexObj value = LexDictGet(old, key);
    const EStrPtr text(EStrNewFromLexObjImpl(value));
    if (!EStrIsNull(text.get())) LexDictPut(top, key, value);
    LexDictRemove(old, key);
    LexDictRemove(dict, key);
}

void RemoveEmptyEvents(LexObj dict) {
    const LexObj events = TSLexDictGetOfType(dict, AA_K, LexDict);
    if (IsDict(events) && TSLexDictGetLen(events) == 0) LexDictRemove(dict, AA_K);
}

/** The events of the value go to the top, which thereby rules over the newcomer's. */
void MoveValueEvents(LexObj old, LexObj dict, LexObj top) {
    const LexObj events = TSLexDictGetOfType(old, AA_K, LexDict);
    if (IsNull(events)) return;
    const LexObj others = TSLexDictGetOfType(dict, AA_K, LexDict);
    LexObj moved = LexNullObj;
    for (const KRAtom key : {Format_K, Keystroke_K, Validate_K, Calculate_K}) {
        if (!LexDictKnown(events, key)) continue;
        if (IsNull(moved)) {
            moved = LexNewDict(LexObjGetDoc(old), /*indirect*/ true, 10);
            LexDictPut(top, AA_K, moved);
        }
        MoveKey(events, moved, key);
        if (IsDict(others)) LexDictRemove(others, key);
    }
    RemoveEmptyEvents(old);
    RemoveEmptyEvents(dict);
}

/** Everything that all widgets of the name share, from the single field to the new top. */
void MoveSharedEntries(DMField *field, LexObj dict, LexObj top) {
    const LexObj old = field->obj;
    MoveKey(old, top, FT_K);
    MoveKey(old, top, flagsF_K);
    for (std::uint32_t entry = TSEntryVT; entry; entry >>= 1) {
        if (!(field->entries & entry)) continue;
        MoveKey(old, top, Entry_to_Name(entry));
        field->entries &= ~entry;
    }
    MoveKey(old, top, options_K);
    MoveText(old, dict, top, UserName_K);
    MoveText(old, dict, top, SubmitName_K);
    MoveValueEvents(old, dict, top);
}

/** The top takes the old dictionary's place in the tree, and both widgets hang under it. */
void TakePlace(DMField *field, LexObj dict, LexObj top) {
    const LexObj old = field->obj;
    const LexObj parent = TSLexDictGetOfType(old, parent_K, LexDict);
    LexObj siblings = TSLexDictGetOfType(TSLexObjGetTessella(old), formFields_K, LexArray);
    if (IsDict(parent)) {
        DMFieldUnlinkChild(field);
        LexDictPut(top, parent_K, parent);
        siblings = TSLexDictGetOfType(parent, Kids_K, LexArray);
    }
    FieldArrayRemove(siblings, old);
    LexDictPut(old, parent_K, top);
    LexDictPut(dict, parent_K, top);
    LexDictPut(top, Kids_K, LexNewArray(LexObjGetDoc(old), /*indirect*/ false, 2));
}

bool SplitField(DMField *field, LexObj dict) {
    const LexObj old = field->obj;
    const LexObj title = LexDictGet(old, T_K);
    const LexObj top = LexNewDict(LexObjGetDoc(old), /*indirect*/ true, 10);
    MoveSharedEntries(field, dict, top);
    TakePlace(field, dict, top);
    if (!TSDMFieldIsValidCheckType(TSLexDictSetTitleGetField(top, title))) return false;
    if (!TSDMFieldIsValidCheckType(TSLexDictSetTitleGetField(old, LexNullObj))) return false;
    DMField *topField = TSLexObjFindDMField(top);
    if (!topField) return false;
    TSFieldNotifyRec record{};
    record.doc = TSDMFieldGetDoc(topField);
    record.field = topField;
    TessellaBroadcast(TSFieldDidSplit, &record);
    return !record.reject;
}

/** A further widget goes under the top of the group that `field` belongs to. */
bool JoinGroup(DMField *field, LexObj dict) {
    const DMField *top = field;
    while (top && !top->firstChild) top = top->nextSameName;
    if (!top) return false;
    LexDictPut(dict, parent_K, top->obj);
    FieldArrayAppend(TSLexArrayEnsure(top->obj, Kids_K, /*indirect*/ false), dict);
    return true;
}

} // namespace

bool TSDMFieldNewTocayo(DMField *field, LexObj dict) {
    if (!TSDMFieldIsTerminal(field)) KRRaise(KRErrBadParam);
    const KRAtom type = LexNameOrNull(LexDictGet(dict, FT_K));
    if (type != KRAtomNull && type != field->type) return false;
    for (const KRAtom key : {FT_K, flagsF_K, options_K, value_K, default_K}) LexDictRemove(dict, key);
    return field->state & DMFieldSharesName ? JoinGroup(field, dict) : SplitField(field, dict);
}
