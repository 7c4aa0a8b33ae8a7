// Flag words, type and default value of a field.
// SPDX-License-Identifier: MIT
#include "model/DMFieldValue.h"

#include <optional>
#include <unordered_map>

#include "Common/src/miLexType.h"
#include "DocModelHFT.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "model/DMField.h"
#include "model/DMFieldValueParts.h"
#include "model/FieldArray.h"
#include "model/FieldRemoval.h"
#include "model/LexField.h"
#include "model/NameHash.h"
#include "model/NameHashCheck.h"
#include "model/miCalc.h"
#include "objects/LexCopy.h"
#include "objects/LexUtil.h"
#include "objects/Tessella.h"

namespace {

std::optional<std::uint32_t> OwnWord(LexObj dict, KRAtom key) {
    const LexObj word = TSLexDictGetOfType(dict, key, LexInteger);
    if (!IsInteger(word)) return std::nullopt;
    return static_cast<std::uint32_t>(LexIntegerValue(word));
}

/** No two fields of this name have different types. */
bool TypesAgree(DMField *field) {
    KRAtom type = KRAtomNull;
    for (const DMField *at = DMFieldHeadOfName(field); at; at = at->nextSameName) {
        if (type == KRAtomNull)
            type = at->type;
        else if (at->type != KRAtomNull && at->type != type)
            return false;
    }
    return true;
}

/** Hands a new field word down. Kids of one name may be many, so their types are compared once for all of them. */
void UpdateFlagsOfChildren(DMField *field) {
    std::unordered_map<const NameStr *, bool> agree;
    for (DMField *child = field->firstChild; child; child = child->nextSibling) {
        const auto [known, isNew] = agree.try_emplace(child->name, true);
        if (isNew) known->second = TypesAgree(child);
        const bool usable = known->second ? TSDMFieldIsValid(child) : TSDMFieldIsValidCheckType(child);
        if (usable) TSDMFieldUpdateFlags(child);
    }
}

/** A field's own request for a new appearance. */
void TakeNeedAppearances(DMField *field) {
    const LexObj need = TSLexDictGetOfType(field->obj, docID_K, LexBoolean);
    if (!IsBoolean(need)) return;
    field->state |= DMFieldDisplayDue;
    if (LexBooleanValue(need)) LexDictRemove(field->obj, docID_K);
}

void SetAnnotFlags(DMField *field, std::uint32_t value) {
    if (!TSDMFieldIsAnnot(field)) return;
    const bool shown = (field->flags[TSAnnotWord] & DMAnnotHidden) && !(value & DMAnnotHidden);
    const LexObj dict = field->obj;
    DMAnnotSetFlags(TSDMFieldGetDMAnnot(field), value);
    if (!DMFieldIsAlive(field, dict)) return;
    TSDMFieldUpdateFlags(field);
    // Hiding took the appearance away.
    if (shown && !LexDictKnown(dict, Appearance_K)) TSDMFieldProduceDisplayFromValue(field, TSDMFieldGetValue(field));
}

void SetFieldFlags(DMField *field, std::uint32_t value) {
    DMField *head = DMFieldHeadOfName(field);
    for (DMField *at = head; at; at = at->nextSameName) LexDictRemove(at->obj, flagsF_K);
    DMField *top = DMFieldTopOfName(field);
    const std::uint32_t inherited = top->parent ? top->parent->flags[TSFieldWord] : 0;
    if (inherited != value)
        LexDictPut(top->obj, flagsF_K,
                   LexNewInteger(LexObjGetDoc(top->obj), /*indirect*/ false, static_cast<std::int32_t>(value)));
    TSDMFieldUpdateFlags(top);
    // A widget that had a word of its own, other than the top's, is not reached from a top whose word stays.
    for (DMField *at = head; at; at = at->nextSameName)
        if (at->parent && at->flags[TSFieldWord] != at->parent->flags[TSFieldWord] && at != top)
            TSDMFieldUpdateFlags(at);
}

/**
 * The only widget of a group becomes the field itself: it takes what the group's top held, and its place. False when
 * there are other widgets, or the field is no widget of a group.
 */
bool TakeOverFromGroup(DMField *field) {
    DMField *group = field->parent;
    if (!group || group->name != field->name || group->firstChild != field || field->nextSibling) return false;
    const LexObj groupObj = group->obj;
    DMField *above = group->parent;
    TSLexDictPartialCopy(groupObj, field->obj, /*sameDocument*/ true);
    LexDictRemove(field->obj, Kids_K);
    const LexObj dict = field->obj;
    DMFieldUnlinkChild(field);
    if (above) {
        DMFieldLinkChild(above, field);
        LexDictPut(field->obj, parent_K, above->obj);
        FieldArrayReplace(TSLexDictGetOfType(above->obj, Kids_K, LexArray), groupObj, field->obj);
    } else {
        LexDictRemove(field->obj, parent_K);
        FieldArrayReplace(TSLexDictGetOfType(TSDMFieldGetTessella(field), formFields_K, LexArray), groupObj,
                          field->obj);
    }
    TJSCalcFieldsListDelete(TSDMFieldGetDoc(group), group, /*force*/ true);
    TSDMFieldUndefine(group);
    if (!DMFieldIsAlive(field, dict)) return false;
    TSDMFieldUpdateEntries(field);
    TSDMFieldUpdateFlags(field);
    return true;
}

/** Stores `FT`; for a widget between the two notifications. 0 or the code of the failure. */
KRErrorCode StoreType(DMField *field, KRAtom type) {
    const bool isAnnot = TSDMFieldIsAnnot(field);
    const DMAnnot annot = TSDMFieldGetDMAnnot(field);
    const LexObj dict = field->obj;
    if (isAnnot) DMAnnotNotifyWillChange(annot, FT_K);
    const KRErrorCode code =
        Protect([&] { LexDictPut(dict, FT_K, LexNewName(LexObjGetDoc(dict), /*indirect*/ false, type)); });
    if (isAnnot) DMAnnotNotifyDidChange(annot, FT_K, code);
    return code;
}

/** A check box that is off by default has no default. */
LexObj WithoutOff(LexObj value) {
    return LexNameOrNull(value) == Off_K ? LexNullObj : value;
}

/** Every element of an array of values is a choice. */
bool AreChoices(LexObj options, LexObj values) {
    for (std::int32_t i = LexArrayLength(values); i-- > 0;) {
        if (DMFieldFindOption(options, LexArrayGet(values, i)) < 0) return false;
    }
    return true;
}

/** Replaces `*value` by the choice that it names; false when it names none. Null names none and is let through. */
bool FindChoice(const DMField *field, LexObj *value) {
    const LexObj options = TSDMFieldGetObj(field, options_K);
    if (!IsArray(options)) return true;
    if (IsArray(*value)) return AreChoices(options, *value);
    const std::int32_t index = DMFieldFindOption(options, *value);
    if (index < 0) return IsNull(*value);
    const LexObj exported = RetrieveOptVal(LexArrayGet(options, index));
    if (LexObjIsIndirect(exported) && !LexObjEqual(exported, *value)) {
        LexObjDestroy(*value);
        *value = exported;
    }
    return true;
}

void StoreDefault(DMField *field, LexObj old, LexObj value) {
    if (!IsNull(old)) DMFieldRemoveEntryFromAll(DMFieldHeadOfName(field), TSEntryDV);
    if (IsNull(value)) return;
    DMField *top = DMFieldTopOfName(field);
    const LexObj copy = TSLexObjCopy(LexObjGetDoc(top->obj), value, /*shallow*/ false);
    if (IsNull(copy)) return;
    LexDictPut(top->obj, default_K, copy);
    DMFieldNoteEntry(top, TSEntryDV);
}

/** A widget without a title is a part of its parent's field: what the parent says of the field holds for it. */
bool IsOfParent(const DMField *field, KRAtom key) {
    return field->parent && !LexDictKnown(field->obj, T_K) && !IsNull(TSLexObjInheritedValue(field->parent->obj, key));
}

} // namespace

std::uint32_t TSDMFieldGetFlags(DMField *field, std::int32_t which) {
    if (!TSDMFieldIsValid(field) || (which != TSAnnotWord && which != TSFieldWord)) return 0;
    return field->flags[which];
}

void TSDMFieldSetFlags(DMField *field, std::int32_t which, std::uint32_t value) {
    if (!TSDMFieldIsValidCheckType(field)) return;
    if (which == TSAnnotWord && value != field->flags[TSAnnotWord]) SetAnnotFlags(field, value);
    if (which == TSFieldWord && value != field->flags[TSFieldWord]) SetFieldFlags(field, value);
}

void TSDMFieldUpdateFlags(DMField *field) {
    if (!field) return;
    field->flags[TSAnnotWord] = OwnWord(field->obj, flagsA_K).value_or(0);
    const std::uint32_t inherited = field->parent ? field->parent->flags[TSFieldWord] : 0;
    const bool isParents = IsOfParent(field, flagsF_K);
    const std::uint32_t word = isParents ? inherited : OwnWord(field->obj, flagsF_K).value_or(inherited);
    if (word != field->flags[TSFieldWord]) {
        field->flags[TSFieldWord] = word;
        UpdateFlagsOfChildren(field);
    }
    TakeNeedAppearances(field);
}

std::int32_t TSDMFieldSetType(DMField *field, KRAtom type) {
    if (!TSDMFieldIsValidCheckType(field)) return 1;
    if (field->type == type) return 0;
    const bool shared = field->type != KRAtomNull && (field->state & DMFieldSharesName);
    if (shared && !TakeOverFromGroup(field)) return 1;
    const LexObj dict = field->obj;
    if (const KRErrorCode code = StoreType(field, type)) return code;
    if (!DMFieldIsAlive(field, dict)) return 1;
    field->type = type;
    DocHashCheck(LexObjGetDoc(dict));
    TSDMFieldSetFlags(field, TSFieldWord, field->flags[TSFieldWord] & TSFieldFlagsOfAllTypes);
    TSDMFieldAppearanceWasUpdated(field);
    return 0;
}

std::int32_t TSDMFieldSetDefaultValue(DMField *field, LexObj value) {
    if (!TSDMFieldIsValidCheckType(field)) return 1;
    LexObj old = TSDMFieldGetEntry(field, TSEntryDV);
    if (field->type == Btn_K) {
        if (field->flags[TSFieldWord] & TSFieldPushButton) return 1;
        old = WithoutOff(old);
        value = WithoutOff(value);
    }
    if (TSLexObjEquivalent(old, value)) return 0;
    if (field->type == Choice_K) {
        bool found = false;
        const KRErrorCode code = Protect([&] { found = FindChoice(field, &value); });
        if (code != KRErrNone || !found) return 1;
    }
    StoreDefault(field, old, value);
    return 0;
}
