// The data of combo boxes and list boxes.
// SPDX-License-Identifier: MIT
#include "widgets/miWChoice.h"

#include <memory>

#include "Common/src/miLexType.h"
#include "PIFrame.h"
#include "PIMain.h"
#include "base/FormStr.h"
#include "model/DMField.h"
#include "model/DMFieldValue.h"
#include "model/WidgetReg.h"
#include "model/WidgetType.h"
#include "objects/LexUtil.h"

namespace {

TSChoiceData *ChoiceOf(const TSWidgetData *data) {
    return static_cast<TSChoiceData *>(data->extension);
}

bool SameChoices(const TSChoices &a, const TSChoices &b) {
    return a.values == b.values && a.exports == b.exports;
}

void WriteFlags(DMField *field, KRAtom type, const TSChoiceData &choice) {
    std::uint32_t flags = TSDMFieldGetFlags(field, TSFieldWord);
    if (!(choice.changed & TSChoiceSort)) flags = TSWithFlags(flags, TSFieldSorted, choice.sort);
    if (type == ComboBox_K && !(choice.changed & TSChoiceEditable))
        flags = TSWithFlags(flags, TSFieldComboEdit, choice.editable);
    TSDMFieldSetFlags(field, TSFieldWord, flags);
}

// The default is stored as the option's export value. One that is no option, as an editable combo box may have, stays
// until another is chosen.
void WriteDefault(DMField *field, std::int16_t index) {
    if (index == TSDMFieldGetDefaultIndex(field)) return;
    LexObj options = TSDMFieldGetObj(field, options_K);
    LexObj value = LexNullObj;
    if (IsArray(options) && index >= 0 && index < LexArrayLength(options))
        value = RetrieveOptVal(LexArrayGet(options, index));
    TSDMFieldSetDefaultValue(field, value);
}

} // namespace

TSWidgetData *WChoiceAcquireData(SCWidgetHandler *, DMAnnot annot) {
    DMField *field = TSDMAnnotGetField(annot);
    auto choice = std::make_unique<TSChoiceData>();
    TSWidgetDataPtr data(TSDMWidgetAcquireData(annot));
    data->value = TSDMWidgetAcquireStringValue(annot);
    choice->sort = data->fieldFlags & TSFieldSorted;
    choice->editable = data->fieldFlags & TSFieldComboEdit;
    choice->defaultIndex = TSDMFieldGetDefaultIndex(field);
    choice->topIndex = TSDMFieldGetTopIndex(field);
    TSDMWidgetAcquireChoices(annot, &choice->choices);
    data->extension = choice.release();
    return data.release();
}

void WChoiceReleaseData(SCWidgetHandler *, TSWidgetData *data) {
    if (!data) return;
    delete ChoiceOf(data);
    TSDMWidgetReleaseData(data);
}

void WChoiceCompareData(SCWidgetHandler *, TSWidgetData *first, const TSWidgetData *other) {
    TSDMWidgetCompareData(first, other);
    TSChoiceData *a = ChoiceOf(first);
    const TSChoiceData *b = ChoiceOf(other);
    if (!a) return;
    if (other->type != first->type || !b) {
        a->changed = TSChoiceAll;
        return;
    }
    if (a->sort != b->sort) a->changed |= TSChoiceSort;
    if (a->editable != b->editable) a->changed |= TSChoiceEditable;
    if (a->defaultIndex != b->defaultIndex) a->changed |= TSChoiceDefault;
    if (!SameChoices(a->choices, b->choices)) a->changed |= TSChoiceList;
}

void WChoiceWriteData(SCWidgetHandler *, DMAnnot annot, TSWidgetData *data) {
    TSDMWidgetWriteData(annot, data);
    DMField *field = TSDMAnnotGetField(annot);
    const TSChoiceData *choice = ChoiceOf(data);
    if (!choice || !TSDMFieldIsValid(field)) return;
    const KRAtom type = TSDMWidgetGetSubType(annot);
    WriteFlags(field, type, *choice);
    if (type == ListBox_K) TSDMFieldSetTopIndex(field, choice->topIndex);
    if (!(choice->changed & TSChoiceList)) TSDMWidgetWriteChoices(annot, choice->choices);
    if (!(choice->changed & TSChoiceDefault)) WriteDefault(field, choice->defaultIndex);
    TSDMFieldUpdateAppearance(field);
    if (data->value) TSDMWidgetSetStringValue(annot, LexString, data->value);
}

void WChoiceInit(SCWidgetHandler *handler) {
    SCWidgetHandler &h = *handler;
    h.size = sizeof h;
    h.AcquireData = PICallback(gExtensionID, &WChoiceAcquireData);
    h.CompareData = PICallback(gExtensionID, &WChoiceCompareData);
    h.WriteData = PICallback(gExtensionID, &WChoiceWriteData);
    h.ReleaseData = PICallback(gExtensionID, &WChoiceReleaseData);
    TSSCAppRegisterWidgetHandler(&h);
}
