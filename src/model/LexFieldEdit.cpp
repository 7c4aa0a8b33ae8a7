// Locking, removing and copying fields.
// SPDX-License-Identifier: MIT
#include "model/LexField.h"

#include "Common/src/miLexType.h"
#include "DocModelHFT.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "base/Limits.h"
#include "model/DMField.h"
#include "model/DMFieldValue.h"
#include "model/DMFieldValueParts.h"
#include "model/FieldArray.h"
#include "model/FieldRemoval.h"
#include "model/LexFieldParts.h"
#include "model/NameHash.h"
#include "model/NameHashCheck.h"
#include "model/OnKey.h"
#include "model/WidgetType.h"
#include "objects/AnnotUtl.h"
#include "objects/LexCopy.h"
#include "objects/LexUtil.h"
#include "objects/Tessella.h"

namespace {

/** The array that lists a dictionary: its parent's `Kids`, or `Fields`. */
LexObj ListOf(LexObj dict) {
    const LexObj parent = TSLexDictGetOfType(dict, parent_K, LexDict);
    if (IsDict(parent)) return TSLexDictGetOfType(parent, Kids_K, LexArray);
    return TSLexDictGetOfType(TSLexObjGetTessella(dict), formFields_K, LexArray);
}

/** The field goes on in a new dictionary without a widget, at the place of the old one. */
void DetachValue(DMField *field) {
    const LexObj old = field->obj;
    const LexObj kept = LexNewDict(LexObjGetDoc(old), /*indirect*/ true, 10);
    TSLexDictPartialCopy(old, kept, /*sameDocument*/ false);
    for (const KRAtom key : {A_K, Appearance_K, AS_K, Border_K, Rect_K, Subtype_K, Type_K, PageFromAnnot_K})
        LexDictRemove(kept, key);
    FieldArrayReplace(ListOf(old), old, kept);
    DMFieldSetObj(field, kept);
    PopulateDMField(field);
}

void CleanAnnot(LexObj dict) {
    LexDictRemove(dict, T_K);
    FieldArrayRemove(ListOf(dict), dict);
    for (const KRAtom key : {parent_K, value_K, options_K}) LexDictRemove(dict, key);
}

/** A copy under way. */
struct FieldCopy {
    LexObj target;
    LexDoc doc;
    DMField *source;
    LexObj sourceObj;
    bool sameDocument;
    bool fresh;
    bool noActions;
    /** The source's `MK`, kept aside when the target is a widget. */
    LexObj maker = LexNullObj;
};

/** A placeholder keeps a key from being copied over. */
void HoldKey(LexObj dict, KRAtom key) {
    LexDictPut(dict, key, LexNewBoolean(LexObjGetDoc(dict), /*indirect*/ false, false));
}

void RemoveHeldKey(LexObj dict, KRAtom key) {
    if (IsBoolean(LexDictGet(dict, key))) LexDictRemove(dict, key);
}

void PutMakerCopy(const FieldCopy &copy) {
    if (IsNull(copy.maker))
        LexDictRemove(copy.target, MakerDict_K);
    else
        LexDictPut(copy.target, MakerDict_K, TSLexObjCopy(copy.doc, copy.maker, /*shallow*/ false));
}

/** The look: rebuilt later when it is to be fresh, with a button's on-state remembered; else the source's. */
void PrepareLook(const FieldCopy &copy) {
    if (!copy.fresh) {
        TSLexObjCopyEntry(copy.sourceObj, copy.target, Appearance_K, TSLexCopyEntryByKind);
        if (!IsNull(copy.maker)) PutMakerCopy(copy);
        return;
    }
    if (TSDMFieldIsAnnot(copy.source)) {
        const DMAnnot annot = TSDMFieldGetDMAnnot(copy.source);
        const KRAtom type = TSDMWidgetGetSubType(annot);
        if (type == RadioButton_K || type == CheckBox_K)
            WButtonSetOnKey(DMAnnotFromLexObj(copy.target), WButtonGetOnKey(annot));
    }
    HoldKey(copy.target, Appearance_K);
    HoldKey(copy.target, MakerDict_K);
}

/** What the source inherits becomes the copy's own, the nearest first. */
void CopyInherited(const FieldCopy &copy) {
    HoldKey(copy.target, Kids_K);
    LexObj ancestor = TSLexDictGetOfType(copy.sourceObj, parent_K, LexDict);
    for (int depth = 0; IsDict(ancestor) && depth < TSLimitOf(TSLimitFieldDepth); ++depth) {
        TSLexDictPartialCopy(ancestor, copy.target, /*sameDocument*/ false);
        ancestor = TSLexDictGetOfType(ancestor, parent_K, LexDict);
    }
    LexDictRemove(copy.target, Kids_K);
}

void CopyEntries(const FieldCopy &copy) {
    HoldKey(copy.target, T_K);
    HoldKey(copy.target, parent_K);
    PrepareLook(copy);
    if (!copy.noActions) {
        TSLexObjCopyEntry(copy.sourceObj, copy.target, AA_K, TSLexCopyEntryByKind);
        TSLexObjCopyEntry(copy.sourceObj, copy.target, A_K, TSLexCopyEntryByKind);
    } else {
        if (!LexDictKnown(copy.target, AA_K)) HoldKey(copy.target, AA_K);
        if (!LexDictKnown(copy.target, A_K)) HoldKey(copy.target, A_K);
    }
    TSLexDictPartialCopy(copy.sourceObj, copy.target, copy.sameDocument);
    if (!copy.sameDocument) CopyInherited(copy);
    RemoveHeldKey(copy.target, AA_K);
    RemoveHeldKey(copy.target, A_K);
}

void FinishLook(const FieldCopy &copy, DMField *field) {
    if (copy.fresh) PutMakerCopy(copy);
    // A widget with an appearance and no `MK` counts as another program's, and would be left as it is.
    RemoveHeldKey(copy.target, Appearance_K);
    TSDMFieldUpdateAppearance(field);
    // A field that delays its appearances has nowhere else to keep the on-state.
    if (!LexDictKnown(copy.target, TempOn_K) || WButtonHasUsableFaces(DMAnnotFromLexObj(copy.target))) return;
    TSDMFieldAppearanceWasUpdated(field);
    TSDMFieldProduceDisplayFromValue(field, TSDMFieldGetValue(field));
}

void StripAnnotKeys(LexObj dict) {
    for (const KRAtom key : {A_K, AA_K, Appearance_K, AS_K, Border_K, Rect_K, Subtype_K, Type_K})
        LexDictRemove(dict, key);
}

DMField *CopyAndDefine(const FieldCopy &copy, const std::string &name, bool isAnnot) {
    CopyEntries(copy);
    if (name != TSDMFieldGetName(copy.source)) LexDictRemove(copy.target, value_K);
    DMField *field = TSLexDictDefineField(copy.target, name.c_str());
    if (!TSDMFieldIsValid(field)) {
        if (LexDictKnown(copy.target, Subtype_K)) StripAnnotKeys(copy.target);
    } else if (isAnnot) {
        FinishLook(copy, field);
        // Observers of the display may have taken it away again.
        field = TSLexObjFindDMField(copy.target);
    } else {
        RemoveHeldKey(copy.target, Appearance_K);
        RemoveHeldKey(copy.target, MakerDict_K);
    }
    return field;
}

} // namespace

void TSDMAnnotLockField(DMAnnot annot, bool lock) {
    DMField *field = TSDMAnnotGetField(annot);
    if (!field) return;
    if (lock)
        field->state |= DMFieldLocked;
    else
        field->state &= ~DMFieldLocked;
}

void TSDMAnnotRemoveField(DMAnnot annot, DMPage, bool, bool keepValue) {
    if (!DMAnnotIsValid(annot)) return;
    DMField *field = TSDMAnnotGetField(annot);
    if (!field || (field->state & DMFieldLocked)) return;
    const LexObj dict = DMAnnotGetLexObj(annot);
    DMAnnotNotifyWillChange(annot, Widget_K);
    const KRErrorCode code = Protect([&] {
        field = TSLexObjFindDMField(dict);
        const bool goesOn = keepValue && TSDMFieldIsValidCheckType(field) && !(field->state & DMFieldSharesName) &&
                            LexDictKnown(dict, value_K);
        if (goesOn)
            DetachValue(field);
        else
            TSDMFieldUndefine(field);
        CleanAnnot(dict);
    });
    DMAnnotNotifyDidChange(annot, Widget_K, code);
    DocHashCheck(LexObjGetDoc(dict));
    RaiseIf(code);
}

DMField *TSLexDictCopyField(LexObj target, DMField *source, const char *name, bool fresh, bool noActions) {
    if (!IsDict(target) || !LexObjIsIndirect(target)) return nullptr;
    if (!TSDMFieldIsValidCheckType(source) || source->firstChild) return nullptr;
    FieldCopy copy{target, LexObjGetDoc(target), source, source->obj, false, fresh, noActions};
    copy.sameDocument = copy.doc == LexObjGetDoc(copy.sourceObj);
    const std::string fullName = name ? name : TSDMFieldGetName(source);
    const bool isAnnot = LexDictKnown(target, Subtype_K);
    const DMAnnot annot = isAnnot ? DMAnnotFromLexObj(target) : DMAnnot{0, 0};
    if (isAnnot) {
        DMAnnotNotifyWillChange(annot, Fields_K);
        if (TSDMFieldIsAnnot(source)) {
            LexDictRemove(copy.sourceObj, Kids_K);
            copy.maker = TSLexDictGetOfType(copy.sourceObj, MakerDict_K, LexDict);
        }
    }
    DMField *field = nullptr;
    KRErrorCode code = Protect([&] { field = CopyAndDefine(copy, fullName, isAnnot); });
    const KRErrorCode told = code == KRErrNone && !TSDMFieldIsValid(field) ? KRErrDefineFailed : code;
    // The on-state was noted for the appearance; it does not go into a file.
    if (isAnnot) WButtonCleanUpKeys(annot);
    if (isAnnot) DMAnnotNotifyDidChange(annot, Fields_K, told);
    RaiseIf(code);
    return field;
}

void TSLexDictReplaceIndirects(LexObj dict) {
    const LexDoc doc = LexObjGetDoc(dict);
    for (const KRAtom key : LexDictKeys(dict)) {
        const LexObj value = LexDictGet(dict, key);
        if (key == parent_K || !LexObjIsIndirect(value)) continue;
        const LexObj copy = TSLexObjCopyWithPredicate(doc, value, &CopyShallowQuery, nullptr);
        if (!IsNull(copy)) LexDictPut(dict, key, copy);
    }
}
