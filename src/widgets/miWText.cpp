// The handler of text fields.
// SPDX-License-Identifier: MIT
#include "widgets/miWText.h"

#include <memory>

#include "Common/src/miLexType.h"
#include "Common/src/miUtils.h"
#include "Common/unix/mdMessages.h"
#include "PIFrame.h"
#include "PIMain.h"
#include "base/FormStr.h"
#include "model/DMField.h"
#include "model/DMFieldValue.h"
#include "model/WidgetReg.h"
#include "objects/LexUtil.h"
#include "widgets/WidgetHandlers.h"
#include "widgets/miWValueFace.h"

namespace {

SCWidgetHandler s_handler;

TSTextData *TextOf(const TSWidgetData *data) {
    return static_cast<TSTextData *>(data->extension);
}

KRAtom WTextGetType(SCWidgetHandler *) {
    return Text_K;
}

void WTextGetName(SCWidgetHandler *, char *buffer, std::int32_t size) {
    mdGetString(Msg::widgetText, buffer, static_cast<std::uint16_t>(size));
}

TSWidgetData *WTextAcquireData(SCWidgetHandler *, DMAnnot annot) {
    DMField *field = TSDMAnnotGetField(annot);
    auto text = std::make_unique<TSTextData>();
    TSWidgetDataPtr data(TSDMWidgetAcquireData(annot));
    data->type = Text_K;
    data->value = TSDMWidgetAcquireStringValue(annot);
    text->multiLine = data->fieldFlags & TSFieldMultiLine;
    text->password = data->fieldFlags & TSFieldPassword;
    text->maxLength = TSDMFieldGetMaxLen(field);
    text->justification = data->quadding;
    text->fontSize = data->textSize;
    text->defaultValue = TSHostTextOf(TSDMFieldGetEntry(field, TSEntryDV));
    data->extension = text.release();
    return data.release();
}

void WTextReleaseData(SCWidgetHandler *, TSWidgetData *data) {
    if (!data) return;
    delete TextOf(data);
    TSDMWidgetReleaseData(data);
}

void WTextCompareData(SCWidgetHandler *, TSWidgetData *first, const TSWidgetData *other) {
    TSDMWidgetCompareData(first, other);
    TSTextData *a = TextOf(first);
    const TSTextData *b = TextOf(other);
    if (!a) return;
    if (other->type != Text_K || !b) {
        a->changed = TSTextAll;
        return;
    }
    if (a->defaultValue != b->defaultValue) a->changed |= TSTextDefault;
    if (a->multiLine != b->multiLine) a->changed |= TSTextMultiLine;
    if (a->maxLength != b->maxLength) a->changed |= TSTextMaxLength;
    if (a->password != b->password) a->changed |= TSTextPassword;
    if (a->justification != b->justification) a->changed |= TSTextJustification;
}

void WriteFlags(DMField *field, const TSTextData &text) {
    std::uint32_t flags = TSDMFieldGetFlags(field, TSFieldWord);
    if (!(text.changed & TSTextMultiLine)) flags = TSWithFlags(flags, TSFieldMultiLine, text.multiLine);
    if (!(text.changed & TSTextPassword)) flags = TSWithFlags(flags, TSFieldPassword, text.password);
    TSDMFieldSetFlags(field, TSFieldWord, flags);
    if (!(text.changed & TSTextMaxLength)) TSDMFieldSetMaxLen(field, text.maxLength);
}

void WriteDefault(DMAnnot annot, const TSTextData &text) {
    if (text.changed & TSTextDefault) return;
    LexObj value = LexNullObj;
    if (!text.defaultValue.empty()) value = TSNewTextOf(LexObjGetDoc(DMAnnotGetLexObj(annot)), text.defaultValue);
    TSDMFieldSetDefaultValue(TSDMAnnotGetField(annot), value);
}

void WTextWriteData(SCWidgetHandler *, DMAnnot annot, TSWidgetData *data) {
    TSTextData *text = TextOf(data);
    if (text && !(text->changed & TSTextJustification))
        data->quadding = static_cast<std::uint16_t>(text->justification);
    TSDMWidgetWriteData(annot, data);
    DMField *field = TSDMAnnotGetField(annot);
    if (!text || !TSDMFieldIsValid(field)) return;
    WriteFlags(field, *text);
    std::string value = data->value ? data->value : "";
    if (text->maxLength > 0) {
        text->defaultValue = WTextCut(text->defaultValue, text->maxLength);
        value = WTextCut(value, text->maxLength);
    }
    TSDMWidgetWriteChoices(annot, {});
    WriteDefault(annot, *text);
    TSDMFieldUpdateAppearance(field);
    if (data->value) TSDMWidgetSetStringValue(annot, LexString, value.c_str());
}

void WTextWriteAppearance(SCWidgetHandler *, DMAnnot annot, KRAtom, EStr *value, KRBool forced) {
    if (WFaceShowFieldValue(annot, value, forced)) return;
    const std::uint32_t flags = TSDMFieldGetFlags(TSDMAnnotGetField(annot), TSFieldWord);
    WValueFaceWriteText(annot, value, flags & TSFieldMultiLine, flags & TSFieldPassword);
}

} // namespace

std::string WTextCut(const std::string &host, std::int32_t characters) {
    const EStrPtr text(EStrNewImpl(host.c_str(), EStrHost));
    EStrSetEncoding(text.get(), EStrUCS2);
    EStrTrunc(text.get(), characters);
    EStrSetEncoding(text.get(), EStrHost);
    return EStrGetBytes(text.get());
}

TSWidgetData *WText_AcquireData(DMAnnot annot) {
    return WTextAcquireData(&s_handler, annot);
}

void WText_WriteData(DMAnnot annot, TSWidgetData *data) {
    WTextWriteData(&s_handler, annot, data);
}

void WText_ReleaseData(TSWidgetData *data) {
    WTextReleaseData(&s_handler, data);
}

void WText_Init() {
    SCWidgetHandler &h = s_handler;
    h.size = sizeof h;
    h.GetType = PICallback(gExtensionID, &WTextGetType);
    h.GetName = PICallback(gExtensionID, &WTextGetName);
    h.AcquireData = PICallback(gExtensionID, &WTextAcquireData);
    h.CompareData = PICallback(gExtensionID, &WTextCompareData);
    h.WriteData = PICallback(gExtensionID, &WTextWriteData);
    h.ReleaseData = PICallback(gExtensionID, &WTextReleaseData);
    h.WriteAppearance = PICallback(gExtensionID, &WTextWriteAppearance);
    TSSCAppRegisterWidgetHandler(&h);
}
