// The handler of signature fields.
// SPDX-License-Identifier: MIT
#include "widgets/miWSig.h"

#include <memory>

#include "Common/src/miLexType.h"
#include "Common/src/miUtils.h"
#include "Common/unix/mdMessages.h"
#include "PIFrame.h"
#include "PIMain.h"
#include "ScreenViewHFT.h"
#include "ScreenViewUserInterfaceHFT.h"
#include "base/FormStr.h"
#include "life/SCUtils.h"
#include "model/DMField.h"
#include "model/DMFieldValue.h"
#include "model/WidgetReg.h"
#include "model/WidgetType.h"
#include "objects/AnnotUtl.h"
#include "objects/LexCopy.h"
#include "objects/LexUtil.h"
#include "widgets/WidgetHandlers.h"
#include "widgets/miWBtn.h"
#include "widgets/miWFace.h"

namespace {

SCWidgetHandler s_handler;
/** Bytes. */
constexpr std::size_t s_nameLimit = 258;
/** Layouts: the mark alone, the name below the mark, the name alone. */
constexpr std::int32_t s_markOnly = 1;
constexpr std::int32_t s_nameBelow = 2;
constexpr std::int32_t s_nameOnly = 0;

TSSignatureData *SignatureOf(const TSWidgetData *data) {
    return static_cast<TSSignatureData *>(data->extension);
}

KRAtom WSignatureGetType(SCWidgetHandler *) {
    return Sig_K;
}

void WSignatureGetName(SCWidgetHandler *, char *buffer, std::int32_t size) {
    mdGetString(Msg::widgetSignature, buffer, static_cast<std::uint16_t>(size));
}

TSWidgetData *WSignatureAcquireData(SCWidgetHandler *, DMAnnot annot) {
    auto signature = std::make_unique<TSSignatureData>();
    signature->value = TSDMFieldGetValue(TSDMAnnotGetField(annot));
    TSWidgetData *data = TSDMWidgetAcquireData(annot);
    data->type = Sig_K;
    data->extension = signature.release();
    return data;
}

void WSignatureReleaseData(SCWidgetHandler *, TSWidgetData *data) {
    if (!data) return;
    delete SignatureOf(data);
    TSDMWidgetReleaseData(data);
}

// Every other widget of the same field takes the record too: one signature, one look.
void WriteToNamesakes(DMField *field, TSWidgetData *data) {
    DMField *top = DMFieldTopOfName(field);
    for (DMField *other = top->firstChild; other; other = other->nextSibling) {
        if (other != field && TSDMFieldIsAnnot(other)) TSDMWidgetWriteData(TSDMFieldGetDMAnnot(other), data);
    }
}

void WSignatureWriteData(SCWidgetHandler *, DMAnnot annot, TSWidgetData *data) {
    const bool wasSignature = TSDMWidgetGetSubType(annot) == Sig_K;
    TSDMWidgetWriteData(annot, data);
    DMField *field = TSDMAnnotGetField(annot);
    if (!TSDMFieldIsValid(field)) return;
    if (data->type == Sig_K) {
        WriteToNamesakes(field, data);
    } else if (wasSignature) {
        TSDMWidgetWriteChoices(annot, {});
        TSDMFieldReset(field);
    }
    TSDMFieldUpdateAppearance(field);
}

// The signer's name in host encoding; empty when unsigned.
std::string SignerName(LexObj value) {
    LexObj name = TSLexDictGetOfType(value, Name_K, LexString);
    if (!IsString(name)) return {};
    std::string text = TSHostTextOf(name);
    text.resize(miHostCutLength(text.data(), text.size(), s_nameLimit));
    return text;
}

void WSignatureSaveFace(DMAnnot annot, const TSWidgetData *data) {
    WFace face = WFaceNew(annot, data);
    const TextAppearance look = WFaceLook(face);
    LexObj mark = GetThumper(face.doc, &look);
    const std::string name = SignerName(SignatureOf(data)->value);
    const EStrPtr caption = WFaceText(name.c_str(), look);
    const bool hasMark = IsStream(mark);
    const std::int32_t layout = name.empty() ? s_markOnly : hasMark ? s_nameBelow : s_nameOnly;
    TSFit fit;
    TSDMAnnotInitFit(&fit);
    CStoreLayoutIconText(face.content.get(), &fit, face.margin, layout, mark, &look, EStrGetBytes(caption.get()),
                         /*isDingbat*/ false);
    TSDMWidgetSetNormalFace(annot, KRAtomNull, WFaceSave(face, /*down*/ false, /*circular*/ false, /*shift*/ 0));
}

void WSignatureWriteAppearance(SCWidgetHandler *handler, DMAnnot annot, KRAtom, EStr *, KRBool) {
    if (!TSDMWidgetIsNative(annot, nullptr)) return;
    WFaceOwnMakerDict(annot);
    TSWidgetData *data = WSignatureAcquireData(handler, annot);
    const KRErrorCode code = Protect([&] { WSignatureSaveFace(annot, data); });
    WSignatureReleaseData(handler, data);
    RaiseIf(code);
}

void ShowProperties(DMAnnot annot) {
    if (!gScreenViewUserInterfaceHFT) return;
    SCDoc view = TSLexDocGetSCDoc(LexObjGetDoc(DMAnnotGetLexObj(annot)));
    if (!view) return;
    SCUIShowWidgetProperties(view, mdGetStringPtr(Msg::websearchUnknownWidget), Widget_K, "Signature");
}

void WSignatureClick(SCWidgetHandler *, DMAnnot annot, SCPageView, std::int16_t, std::int16_t, std::uint32_t,
                     std::int16_t) {
    ShowProperties(annot);
}

void WSignatureDoKeyDown(SCWidgetHandler *, DMAnnot annot, std::uint16_t key, std::uint32_t) {
    if (key != ' ' && key != '\r') return;
    WButtonPress(annot);
    ShowProperties(annot);
}

void WSignatureResize(SCWidgetHandler *, DMAnnot, const KRFixedRect *) {}

void WSignatureScroll(SCWidgetHandler *, DMAnnot) {}

} // namespace

bool WSignature_NotifyWasResized(DMAnnot annot) {
    if (!IsDict(TSDMFieldGetValue(TSDMAnnotGetField(annot)))) return false;
    LexDoc doc = LexObjGetDoc(DMAnnotGetLexObj(annot));
    LexObj face = TSDMAnnotGetAppearance(annot, FaceNormal_K, KRAtomNull);
    const KRAtom name = StreamWrapsXObject(face);
    if (name == KRAtomNull) return false;
    LexObj wrapper = TSLexObjCopy(doc, face, /*shallow*/ false);
    if (!IsStream(wrapper)) return false;
    LexObj resources = TSLexDictGetOfType(LexStreamDict(wrapper), Resources_K, LexDict);
    LexObj forms = TSLexDictGetOfType(resources, XObject_K, LexDict);
    LexObj form = TSLexDictGetOfType(forms, name, LexStream);
    if (!IsStream(form)) {
        LexObjDestroy(wrapper);
        return false;
    }
    KRFixedRect rect, box;
    DMAnnotGetRect(annot, &rect);
    TSLexGetRect(LexStreamDict(form), BBox_K, &box);
    TSDMWidgetSetNormalFace(annot, KRAtomNull, FitAp(&rect, wrapper, &box));
    return true;
}

TSWidgetData *WSignature_AcquireData(DMAnnot annot) {
    return WSignatureAcquireData(&s_handler, annot);
}

void WSignature_WriteData(DMAnnot annot, TSWidgetData *data) {
    WSignatureWriteData(&s_handler, annot, data);
}

void WSignature_ReleaseData(TSWidgetData *data) {
    WSignatureReleaseData(&s_handler, data);
}

void WSignature_Init() {
    SCWidgetHandler &h = s_handler;
    h.size = sizeof h;
    h.usesTracking = 1;
    h.GetType = PICallback(gExtensionID, &WSignatureGetType);
    h.GetName = PICallback(gExtensionID, &WSignatureGetName);
    h.DoKeyDown = PICallback(gExtensionID, &WSignatureDoKeyDown);
    h.AcquireData = PICallback(gExtensionID, &WSignatureAcquireData);
    h.CompareData = PICallback(gExtensionID, &WFaceCompareData);
    h.WriteData = PICallback(gExtensionID, &WSignatureWriteData);
    h.ReleaseData = PICallback(gExtensionID, &WSignatureReleaseData);
    h.WriteAppearance = PICallback(gExtensionID, &WSignatureWriteAppearance);
    h.Click = PICallback(gExtensionID, &WSignatureClick);
    h.RightClick = PICallback(gExtensionID, &WSignatureClick);
    h.Resize = PICallback(gExtensionID, &WSignatureResize);
    h.Scroll = PICallback(gExtensionID, &WSignatureScroll);
    TSSCAppRegisterWidgetHandler(&h);
}
