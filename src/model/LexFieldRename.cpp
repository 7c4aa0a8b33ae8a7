// Renaming a field: out of the tree under the old name, into it under the new one, with what hung on it.
// SPDX-License-Identifier: MIT
#include "model/LexField.h"

#include <array>
#include <string>
#include <string_view>

#include "Common/src/miEStr.h"
#include "Common/src/miLexType.h"
#include "DocModelHFT.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "model/DMField.h"
#include "model/DMFieldValue.h"
#include "model/DMFieldValueParts.h"
#include "model/FieldRemoval.h"
#include "model/NameHash.h"
#include "model/NameHashCheck.h"
#include "model/miAction.h"
#include "model/miCalc.h"
#include "objects/LexCopy.h"
#include "objects/LexUtil.h"

namespace {

constexpr std::size_t s_eventCount = 4;

std::array<KRAtom, s_eventCount> Events() {
    return {Keystroke_K, Format_K, Validate_K, Calculate_K};
}

/** What a field takes along, inherited values included: the old ancestors may go. */
struct Luggage {
    LexObj dict;
    KRAtom type;
    std::uint32_t flags[2];
    LexObj defRes, origHeight, quadding, textApp, defaultValue, userName;
    std::array<DMAction, s_eventCount> actions;
    /** Place in the calculation order for the new name; -1 for none. */
    std::int32_t calcIndex;
};

Luggage Pack(DMField *field) {
    Luggage luggage{};
    luggage.dict = field->obj;
    luggage.type = field->type;
    luggage.flags[TSAnnotWord] = field->flags[TSAnnotWord];
    luggage.flags[TSFieldWord] = field->flags[TSFieldWord];
    luggage.defRes = TSDMFieldGetObj(field, defRes_K);
    luggage.origHeight = TSDMFieldGetObj(field, origHeight_K);
    luggage.quadding = TSDMFieldGetObj(field, quadding_K);
    luggage.textApp = TSDMFieldGetObj(field, textApp_K);
    luggage.defaultValue = TSDMFieldGetObj(field, default_K);
    luggage.userName = TSDMFieldGetObj(field, UserName_K);
    for (std::size_t i = 0; i < s_eventCount; ++i) luggage.actions[i] = TSDMFieldGetAction(field, Events()[i]);
    return luggage;
}

/** No other widget has this name. */
bool IsOnlyWidget(DMField *field) {
    for (const DMField *at = DMFieldHeadOfName(field); at; at = at->nextSameName)
        if (at != field && !at->firstChild) return false;
    return true;
}

/** Gives up the place in the calculation order, or leaves it to the remaining widgets and takes the next. */
std::int32_t LeaveCalcOrder(DMField *field) {
    TSCalcArray *order = TJSGetCalcArray(TSDMFieldGetDoc(field));
    const std::int32_t index = order ? TSCalcArrayGetFieldIndex(order, TSDMFieldGetName(field)) : -1;
    if (index < 0) return -1;
    if (!IsOnlyWidget(field)) return index + 1;
    TSCalcArrayDeleteEntry(order, index);
    return index;
}

void RestoreEntry(DMField *field, TSEntry entry, LexObj value) {
    if ((field->entries & entry) || IsNull(value)) return;
    LexDictPut(field->obj, Entry_to_Name(entry), TSLexObjCopy(LexObjGetDoc(field->obj), value, /*shallow*/ false));
    DMFieldNoteEntry(field, entry);
}

void Unpack(DMField *field, const Luggage &luggage) {
    if (luggage.type != KRAtomNull) TSDMFieldSetType(field, luggage.type);
    if (DMFieldIsAlive(field, luggage.dict)) TSDMFieldSetFlags(field, TSAnnotWord, luggage.flags[TSAnnotWord]);
    // Observers of a type's change or of a display may have taken the field away.
    if (!DMFieldIsAlive(field, luggage.dict)) return;
    TSDMFieldSetFlags(field, TSFieldWord, luggage.flags[TSFieldWord]);
    for (std::size_t i = 0; i < s_eventCount; ++i)
        if (!IsNull(DMActionGetLexObj(luggage.actions[i]))) TSDMFieldSetAction(field, Events()[i], luggage.actions[i]);
    RestoreEntry(field, TSEntryOH, luggage.origHeight);
    RestoreEntry(field, TSEntryQ, luggage.quadding);
    RestoreEntry(field, TSEntryDA, luggage.textApp);
    RestoreEntry(field, TSEntryDR, luggage.defRes);
    TSDMFieldSetDefaultValue(field, luggage.defaultValue);
    const EStrPtr userName(EStrNewFromLexObjImpl(luggage.userName));
    if (!EStrIsNull(userName.get()))
        TSDMFieldPutObj(field, UserName_K, TSLexObjCopy(LexObjGetDoc(field->obj), luggage.userName, /*shallow*/ false));
}

void EnterCalcOrder(DMField *field, std::int32_t index) {
    TSCalcArray *order = TJSGetCalcArray(TSDMFieldGetDoc(field));
    if (index < 0 || !order || TSCalcArrayGetFieldIndex(order, TSDMFieldGetName(field)) >= 0) return;
    TSCalcArrayInsertEntry(order, index, field);
}

/** The name is a node's, which takes no widgets in. */
bool IsNode(DMField *field, const char *name) {
    DMField *other = TSDMDocGetDMFieldFromName(TSDMFieldGetDoc(field), name);
    return other && !TSDMFieldIsTerminal(other);
}

/** Something on the way to the name can have no field below it, once `field` has left its place. */
bool IsBarred(DMField *field, std::string_view name) {
    for (std::size_t dot = name.find('.'); dot != name.npos; dot = name.find('.', dot + 1)) {
        const std::string node(name.substr(0, dot));
        DMField *other = TSDMDocGetDMFieldFromName(TSDMFieldGetDoc(field), node.c_str());
        if (!other || (other->name == field->name && IsOnlyWidget(field))) continue;
        if (TSDMFieldIsTerminal(other) && (other->firstChild || TSDMFieldIsAnnot(other))) return true;
    }
    return false;
}

} // namespace

DMField *TSDMFieldRename(DMField *field, const char *newName) {
    if (!TSDMFieldIsValidCheckType(field) || field->firstChild || !newName) KRRaise(KRErrBadParam);
    std::string name(newName);
    while (!name.empty() && name.back() == '.') name.pop_back();
    if (name.empty()) KRRaise(KRErrBadParam);
    if (name == TSDMFieldGetName(field)) return field;
    // Loading shows fields that are due, and observers of that may take this one away.
    const LexObj dict = field->obj;
    TSDMDocLoadFieldsIfNeeded(TSDMFieldGetDoc(field));
    if (!DMFieldIsAlive(field, dict)) KRRaise(KRErrBadParam);
    // Found now, before the field has given up its old name.
    if (name.size() > MaxFieldNameLength || IsNode(field, name.c_str()) || IsBarred(field, name))
        KRRaise(KRErrBadParam);
    Luggage luggage = Pack(field);
    luggage.calcIndex = LeaveCalcOrder(field);
    LexDictRemove(luggage.dict, T_K);
    TSLexDictReplaceIndirects(luggage.dict);
    TSDMFieldUndefine(field);
    LexDictRemove(luggage.dict, FT_K);
    DMField *renamed = TSLexDictDefineField(luggage.dict, name.c_str());
    if (!renamed) KRRaise(KRErrBadParam);
    Unpack(renamed, luggage);
    renamed = TSLexObjFindDMField(luggage.dict);
    if (!renamed) return nullptr;
    EnterCalcOrder(renamed, luggage.calcIndex);
    TSDMFieldReset(renamed);
    DocHashCheck(LexObjGetDoc(luggage.dict));
    return TSLexObjFindDMField(luggage.dict);
}
