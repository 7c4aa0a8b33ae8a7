// Values: setting, resetting, options.
// SPDX-License-Identifier: MIT
#include "model/DMFieldValue.h"

#include "Common/src/miEStr.h"
#include "Common/src/miLexType.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "model/DMField.h"
#include "model/DMFieldValueParts.h"
#include "model/FieldArray.h"
#include "model/LexField.h"
#include "model/OnKey.h"
#include "objects/AnnotUtl.h"
#include "objects/LexCopy.h"
#include "objects/LexUtil.h"
#include "objects/Tessella.h"

namespace {

/** Some widget from `first` on has this on-state. */
bool SomeWidgetHasState(const DMField *first, KRAtom state) {
    for (const DMField *field = first; field; field = field->nextSameName)
        if (TSDMFieldIsAnnot(field) && WButtonGetOnKey(TSDMFieldGetDMAnnot(field)) == state) return true;
    return false;
}

/**
 * The text as an object to store: a name for buttons, else a string. `given` is the value that was asked for: what has
 * no text of its own, as the several choices of a list, is stored itself unless an observer made a text of it.
 */
LexObj ObjectOfText(const DMField *work, LexObj given, EStr *text, bool rewritten) {
    const LexDoc doc = TSDMFieldGetLexDoc(work);
    if (IsArray(given) && !rewritten) return TSLexObjCopy(doc, given, /*shallow*/ false);
    if (IsDict(given) && !rewritten) return given;
    if (work->type == Btn_K) {
        EStrSetEncoding(text, EStrPDFDoc);
        return LexNewName(doc, /*indirect*/ false, KRAtomFromString(EStrGetBytes(text)));
    }
    std::int32_t length = 0;
    const char *bytes = IsString(given) ? LexStringValue(given, &length) : nullptr;
    // An EStr cuts what is longer; a value that nobody rewrote is stored whole.
    if (bytes && length > EStrMaxLength && !rewritten) return LexNewString(doc, /*indirect*/ false, bytes, length);
    const std::int32_t encoding = EStrGetEncoding(text);
    if (encoding != EStrPDFDoc && encoding != EStrUCS2) EStrSetEncoding(text, EStrText);
    return LexNewString(doc, /*indirect*/ false, EStrGetBytes(text), EStrGetLen(text));
}

/** Fields of one name that are no group, as some writers leave them, have the value each. */
void CopyToOtherRoots(DMField *top, LexObj value) {
    for (DMField *field = DMFieldHeadOfName(top); field; field = field->nextSameName) {
        DMField *other = DMFieldTopOfName(field);
        if (other == top || (other->entries & TSEntryV)) continue;
        LexDictPut(other->obj, value_K, TSLexObjCopy(TSDMFieldGetLexDoc(other), value, /*shallow*/ false));
        DMFieldNoteEntry(other, TSEntryV);
    }
}

/** Puts the text as the value at the top of the name; gives the object stored, null for an empty text. */
LexObj StoreValue(DMField *work, LexObj old, LexObj given, EStr *text, bool rewritten) {
    if (!IsNull(old)) DMFieldRemoveEntryFromAll(work, TSEntryV);
    const bool severalChoices = IsArray(given) && LexArrayLength(given) > 0 && !rewritten;
    if (EStrIsNull(text) && !severalChoices) return LexNullObj;
    DMField *top = DMFieldTopOfName(work);
    const LexObj stored = ObjectOfText(work, given, text, rewritten);
    LexDictPut(top->obj, value_K, stored);
    DMFieldNoteEntry(top, TSEntryV);
    CopyToOtherRoots(top, stored);
    return stored;
}

/** The widget shows something, or is not to: a hidden text or choice field has no appearance. */
bool IsShown(const DMField *field) {
    if (!TSDMFieldCanDisplay(field) || DMFieldIsHidden(field)) return true;
    const LexObj face = TSDMAnnotGetAppearance(TSDMFieldGetDMAnnot(field), FaceNormal_K, KRAtomNull);
    return !IsNull(face);
}

/** A value that is there already is no change, and nobody is told; but a widget that shows nothing yet is drawn. */
void ShowWhereBlank(DMField *first, LexObj value) {
    for (DMField *field = first; field;) {
        DMField *next = field->nextSameName;
        const LexObj nextObj = next ? next->obj : LexNullObj;
        if (!IsShown(field)) TSDMFieldProduceDisplayFromValue(field, value);
        if (next && !DMFieldIsAlive(next, nextObj)) return;
        field = next;
    }
}

/** Shows the value in every widget from `first` on. Observers may undefine fields on the way, which ends the walk. */
void ShowInAll(DMField *first, LexObj value) {
    for (DMField *field = first; field;) {
        DMField *next = field->nextSameName;
        const LexObj nextObj = next ? next->obj : LexNullObj;
        TSDMFieldProduceDisplayFromValue(field, value);
        if (next && !DMFieldIsAlive(next, nextObj)) return;
        field = next;
    }
}

/** The change itself, with re-entry barred: false when an observer rejects. */
bool ChangeValue(DMField *work, LexObj old, LexObj value, bool due) {
    const bool differs = !TSLexObjEquivalent(value, old);
    if (!differs && !due) {
        ShowWhereBlank(work, value);
        return true;
    }
    const LexObj workObj = work->obj;
    const EStrPtr given = TextOfValue(value);
    const EStrPtr text(EStrCopyImpl(given.get()));
    TSFieldNotifyRec record{};
    record.doc = TSDMFieldGetDoc(work);
    record.field = work;
    record.value = text.get();
    TessellaBroadcast(TSValueWillChange, &record);
    if (record.reject || !DMFieldIsAlive(work, workObj)) return false;
    const bool rewritten = EStrCmp(given.get(), text.get()) != 0;
    const bool changed = differs || rewritten;
    if (changed) {
        const LexObj stored = StoreValue(work, old, value, text.get(), rewritten);
        DMFieldUpdateSelection(work);
        // An empty text is not stored, but it may be the export value of a choice, which has a text to show.
        if (rewritten || !IsNull(stored)) value = stored;
        TessellaBroadcast(TSValueDidChange, &record);
        if (!DMFieldIsAlive(work, workObj)) return !record.reject;
    }
    ShowInAll(work, value);
    if (changed && DMFieldIsAlive(work, workObj) && work->type == Tx_K && (work->flags[TSFieldWord] & TSFieldPassword))
        TSDMFieldMarkVolatile(work);
    return !record.reject;
}

/** The choices of a field; the null object when it has no array of them. */
LexObj OptionsOf(const DMField *field) {
    const LexObj options = TSDMFieldGetObj(field, options_K);
    return IsArray(options) ? options : LexNullObj;
}

} // namespace

LexObj TSDMFieldGetValue(DMField *field) {
    return TSDMFieldGetEntry(field, TSEntryV);
}

bool TSDMFieldSetValue(DMField *field, LexObj value) {
    if (!TSDMFieldIsTerminal(field)) return false;
    const bool due = TSDMFieldWasAppearanceUpdated(field);
    DMField *work = DMFieldHeadOfName(field);
    if (work->state & DMFieldSettingValue) return true;
    const LexObj old = TSDMFieldGetValue(work);
    if (work->type != Choice_K) value = FirstOfValue(value);
    if (work->type == Btn_K) {
        if (work->flags[TSFieldWord] & TSFieldPushButton) {
            if (due) TSDMFieldProduceDisplayFromValue(field, value);
            return true;
        }
        const KRAtom state = LexNameOrNull(value);
        if (state == Off_K)
            value = LexNullObj;
        else if (state != KRAtomNull && !SomeWidgetHasState(work, state))
            return false;
    }
    const LexObj workObj = work->obj;
    work->state |= DMFieldSettingValue;
    bool accepted = false;
    const KRErrorCode code = Protect([&] { accepted = ChangeValue(work, old, value, due); });
    if (DMFieldIsAlive(work, workObj)) work->state &= ~DMFieldSettingValue;
    RaiseIf(code);
    return accepted;
}

bool TSDMFieldReset(DMField *field) {
    if (!TSDMFieldIsTerminal(field)) return false;
    const LexObj value = TSDMFieldGetEntry(field, TSEntryDV);
    const LexObj options = OptionsOf(field);
    if (IsNull(value) && !IsNull(options) && LexArrayLength(options) > 0)
        return TSDMFieldSetToOptionIndex(field, /*index*/ 0);
    return TSDMFieldSetValue(field, value);
}

void DMFieldDropValue(DMField *field) {
    for (DMField *at = DMFieldHeadOfName(field); at; at = at->nextSameName) {
        LexDictRemove(at->obj, value_K);
        at->entries &= ~static_cast<std::uint32_t>(TSEntryV);
    }
}

void TSDMFieldMarkVolatile(DMField *field) {
    const LexObj form = TSDMFieldGetTessella(field);
    if (IsNull(form)) return;
    if (!LexDictKnown(form, volatile_K))
        LexDictPut(form, volatile_K, LexNewArray(LexObjGetDoc(form), /*indirect*/ false, 4));
    const LexObj list = TSLexDictGetOfType(form, volatile_K, LexArray);
    if (!IsNull(list)) FieldArrayMoveToEnd(list, DMFieldTopOfName(field)->obj);
}

LexObj RetrieveOptVal(LexObj element) {
    if (!IsArray(element)) return element;
    const LexObj exported = LexArrayGet(element, 0);
    return IsNull(exported) ? LexArrayGet(element, 1) : exported;
}

std::int32_t TSDMFieldGetOptionIndex(DMField *field, KRAtom *name, LexObj *value) {
    if (name) *name = KRAtomNull;
    if (value) *value = LexNullObj;
    const LexObj options = OptionsOf(field);
    if (IsNull(options)) return -1;
    const std::int32_t index = DMFieldFindOption(options, FirstOfValue(TSDMFieldGetValue(field)));
    if (index < 0) return -1;
    const LexObj exported = RetrieveOptVal(LexArrayGet(options, index));
    if (name) *name = LexNameOrNull(exported);
    if (value) *value = exported;
    return index;
}

bool TSDMFieldSetToOptionIndex(DMField *field, std::int32_t index) {
    if (index < 0) return true;
    const LexObj options = OptionsOf(field);
    if (IsNull(options)) {
        TSDMFieldProduceDisplayFromValue(field, LexNullObj);
        return true;
    }
    if (index >= LexArrayLength(options)) index = 0;
    return TSDMFieldSetValue(field, RetrieveOptVal(LexArrayGet(options, index)));
}

std::int32_t TSDMFieldSetOptions(DMField *field, LexObj options) {
    if (!TSDMFieldIsValidCheckType(field)) return 1;
    const bool ofGroup = !field->firstChild && field->parent && field->parent->name == field->name;
    DMField *holder = ofGroup ? field->parent : field;
    if (IsArray(options) && LexArrayLength(options) > 0)
        LexDictPut(holder->obj, options_K, options);
    else
        LexDictRemove(holder->obj, options_K);
    TSDMFieldUpdateEntries(holder);
    DMFieldUpdateSelection(holder);
    return 0;
}
