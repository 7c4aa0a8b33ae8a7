// From a field's value to what its widget shows.
// SPDX-License-Identifier: MIT
#include "model/DMFieldValue.h"

#include "Common/src/miLexType.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "model/DMField.h"
#include "model/DMFieldValueParts.h"
#include "model/WidgetReg.h"
#include "model/WidgetType.h"
#include "objects/AnnotUtl.h"
#include "objects/LexUtil.h"
#include "objects/Tessella.h"

namespace {

/** What is shown for a value: the text of the option with this export value, the value itself for any other. */
LexObj ShownValue(const DMField *field, LexObj value) {
    const LexObj options = TSDMFieldGetObj(field, options_K);
    if (!IsArray(options)) return value;
    for (std::int32_t i = LexArrayLength(options) - 1; i >= 0; --i) {
        const LexObj element = LexArrayGet(options, i);
        if (!TSLexObjEquivalent(RetrieveOptVal(element), value)) continue;
        if (!IsArray(element)) return value;
        const LexObj text = LexArrayGet(element, 1);
        return IsNull(text) ? value : text;
    }
    return value;
}

/**
 * Lets observers rewrite the text about to be shown, unless they are at it for this field. False when the field did
 * not outlive that.
 */
bool LetObserversFormat(DMDoc doc, DMField *field, EStr *text) {
    if (field->state & DMFieldDisplaying) return true;
    const LexObj dict = field->obj;
    TSFieldNotifyRec record{};
    record.doc = doc;
    record.field = field;
    record.value = text;
    field->state |= DMFieldDisplaying;
    const KRErrorCode code = Protect([&] { TessellaBroadcast(TSFieldWillDisplay, &record); });
    const bool alive = DMFieldIsAlive(field, dict);
    if (alive) field->state &= ~DMFieldDisplaying;
    RaiseIf(code);
    return alive;
}

void WriteDisplay(DMField *field, SCWidgetHandler *handler, LexObj value, KRAtom state, bool due) {
    const LexObj dict = field->obj;
    const DMAnnot annot = TSDMFieldGetDMAnnot(field);
    const EStrPtr text = TextOfValue(value);
    if (!LetObserversFormat(TSDMFieldGetDoc(field), field, text.get())) return;
    if (handler->WriteAppearance) handler->WriteAppearance(handler, annot, state, text.get(), due);
    if (DMFieldIsAlive(field, dict)) field->state &= ~DMFieldDisplayDue;
}

} // namespace

void TSDMFieldProduceDisplayFromValue(DMField *field, LexObj value) {
    if (!TSDMFieldIsValid(field) || !TSDMFieldCanDisplay(field)) return;
    const bool looksAreStates = field->type == Btn_K || field->type == Sig_K;
    if (DMFieldIsHidden(field) && !looksAreStates) {
        LexDictRemove(field->obj, Appearance_K);
        return;
    }
    const bool due = TSDMFieldWasAppearanceUpdated(field);
    value = ShownValue(field, FirstOfValue(value));
    const KRAtom state = LexNameOrNull(value);
    const DMAnnot annot = TSDMFieldGetDMAnnot(field);
    if (!due && state != KRAtomNull && IsStream(TSDMAnnotGetAppearance(annot, FaceNormal_K, state))) {
        TSDMAnnotSetState(annot, state);
        return;
    }
    if (SCWidgetHandler *handler = TSSCAppGetWidgetHandlerByName(TSDMWidgetGetSubType(annot)))
        WriteDisplay(field, handler, value, state, due);
}

void TSDMFieldUpdateAppearance(DMField *field) {
    if (!TSDMFieldIsValid(field) || (field->flags[TSFieldWord] & TSFieldDelay)) return;
    TSDMFieldAppearanceWasUpdated(field);
    TSDMFieldProduceDisplayFromValue(field, TSDMFieldGetValue(field));
}

bool TSDMFieldWasAppearanceUpdated(DMField *field) {
    return field && (field->state & DMFieldDisplayDue) != 0;
}

void TSDMFieldAppearanceWasUpdated(DMField *field) {
    if (TSDMFieldCanDisplay(field)) field->state |= DMFieldDisplayDue;
}

void TSDMFieldValueChanged(DMDoc doc, DMField *field) {
    if (!doc || !field) return;
    DMFieldNoteEntry(field, TSEntryV);
    const EStrPtr text = TextOfValue(TSDMFieldGetValue(field));
    LetObserversFormat(doc, field, text.get());
}
