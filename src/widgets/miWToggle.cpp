// Check boxes and radio buttons: their common data, and the on and off faces.
// SPDX-License-Identifier: MIT
#include "widgets/miWToggle.h"

#include <algorithm>
#include <memory>

#include "Common/src/miLexType.h"
#include "Common/src/miUtils.h"
#include "Common/unix/mdMessages.h"
#include "CoreHFT.h"
#include "KernelSupportHFT.h"
#include "PIFrame.h"
#include "PIMain.h"
#include "base/FormStr.h"
#include "model/DMField.h"
#include "model/DMFieldValue.h"
#include "model/OnKey.h"
#include "model/WidgetReg.h"
#include "objects/AnnotUtl.h"
#include "objects/FixedUtl.h"
#include "objects/LexUtil.h"
#include "objects/Tessella.h"
#include "widgets/miWBtn.h"

namespace {

constexpr char s_circleMark[] = "l";

TSToggleData *ToggleOf(const TSWidgetData *data) {
    return static_cast<TSToggleData *>(data->extension);
}

bool IsDefault(DMAnnot annot, KRAtom key) {
    LexObj standard = TSDMFieldGetEntry(TSDMAnnotGetField(annot), TSEntryDV);
    return IsName(standard) && LexNameValue(standard) == key;
}

void WriteDefault(DMAnnot annot, const TSToggleData &toggle) {
    DMField *field = TSDMAnnotGetField(annot);
    const KRAtom key = toggle.onKey == KRAtomNull ? KRAtomFromString(mdGetStringPtr(Msg::on)) : toggle.onKey;
    LexDoc doc = LexObjGetDoc(DMAnnotGetLexObj(annot));
    if (toggle.isDefault)
        TSDMFieldSetDefaultValue(field, LexNewName(doc, /*indirect*/ false, key));
    else if (IsDefault(annot, key))
        TSDMFieldSetDefaultValue(field, LexNullObj);
}

void ClearOtherFaces(DMAnnot annot, const TSToggleData &toggle) {
    for (std::int32_t slot = 0; slot < WButtonSlots; ++slot) {
        TSDMWidgetSetIconEx(annot, LexNullObj, slot);
        if (slot != WButtonNormal) TSDMWidgetSetCaptionEx(annot, nullptr, slot);
    }
    if (toggle.caption.empty()) return;
    const EStrPtr caption(EStrNewImpl(toggle.caption.c_str(), EStrHost));
    TSDMWidgetSetCaptionEx(annot, caption.get(), WButtonNormal);
}

// A form that was drawn without a mark still shows which box is on.
std::string MarkOf(const TSToggleData &toggle, bool mayBeCircular) {
    if (!toggle.caption.empty()) return toggle.caption;
    return mayBeCircular ? s_circleMark : "4";
}

// A widget has one on state: under a new key the faces of the old one go.
void DropOtherKey(DMAnnot annot, KRAtom onKey) {
    const KRAtom present = WButtonGetOnKeyEx(annot);
    if (present == KRAtomNull || present == onKey) return;
    TSDMAnnotSetAppearance(annot, FaceNormal_K, present, LexNullObj);
    TSDMAnnotSetAppearance(annot, FaceDown_K, present, LexNullObj);
}

void SaveFaces(WFace &face, const TSToggleData &toggle, bool circular) {
    DMAnnot annot = face.annot;
    const KRFixed shift = face.data->border.style == TSBorderBeveled && !circular ? face.borderWidth : 0;
    const KRAtom off = WButtonGetOffKey();
    WToggleDrawMark(face, toggle, circular);
    TSDMAnnotSetAppearance(annot, FaceNormal_K, toggle.onKey, WFaceSave(face, /*down*/ false, circular, /*shift*/ 0));
    TSDMAnnotSetAppearance(annot, FaceDown_K, toggle.onKey, WFaceSave(face, /*down*/ true, circular, shift));
    TSDMAnnotSetAppearance(annot, FaceNormal_K, off, WFaceSaveFrame(face, /*down*/ false, circular));
    TSDMAnnotSetAppearance(annot, FaceDown_K, off, WFaceSaveFrame(face, /*down*/ true, circular));
    TSDMAnnotSetAppearance(annot, FaceRollOver_K, KRAtomNull, LexNullObj);
}

// An appearance that is a plain stream has no states, and the new ones take its place.
void MakeRoomForStates(DMAnnot annot, KRAtom mode) {
    if (IsStream(TSDMAnnotGetAppearance(annot, mode, KRAtomNull)))
        TSDMAnnotSetAppearance(annot, mode, KRAtomNull, LexNullObj);
}

bool HasStates(DMAnnot annot) {
    return IsDict(TSDMAnnotGetAppearance(annot, FaceNormal_K, KRAtomNull));
}

void WriteFaces(SCWidgetHandler *handler, DMAnnot annot, bool mayBeCircular) {
    WFaceOwnMakerDict(annot);
    TSWidgetData *data = WToggleAcquireData(handler, annot);
    const KRErrorCode code = Protect([&] {
        TSToggleData toggle = *ToggleOf(data);
        toggle.caption = MarkOf(toggle, mayBeCircular);
        MakeRoomForStates(annot, FaceNormal_K);
        MakeRoomForStates(annot, FaceDown_K);
        DropOtherKey(annot, toggle.onKey);
        WFace face = WFaceNew(annot, data);
        SaveFaces(face, toggle, mayBeCircular && toggle.caption == s_circleMark);
    });
    WToggleReleaseData(handler, data);
    RaiseIf(code);
}

// A size that the form gives to all its texts says nothing about marks, which are as large as their box allows.
bool HasOwnSize(DMField *field) {
    return !LexObjEqual(TSDMFieldGetEntry(field, TSEntryDA), TessellaGetEntry(TSDMFieldGetTessella(field), TSEntryDA));
}

} // namespace

TSWidgetData *WToggleAcquireData(SCWidgetHandler *, DMAnnot annot) {
    auto toggle = std::make_unique<TSToggleData>();
    toggle->caption = TSDMWidgetGetCaptionEx(annot, WButtonNormal);
    toggle->onKey = WButtonGetOnKey(annot);
    toggle->isDefault = IsDefault(annot, toggle->onKey);
    TSWidgetDataPtr data(TSDMWidgetAcquireData(annot));
    data->value = TSDMWidgetAcquireStringValue(annot);
    data->extension = toggle.release();
    return data.release();
}

void WToggleReleaseData(SCWidgetHandler *, TSWidgetData *data) {
    if (!data) return;
    delete ToggleOf(data);
    TSDMWidgetReleaseData(data);
}

void WToggleWriteData(SCWidgetHandler *, DMAnnot annot, TSWidgetData *data) {
    TSDMWidgetWriteData(annot, data);
    const TSToggleData *toggle = ToggleOf(data);
    if (!toggle) return;
    TSDMAnnotSetHighlight(annot, Toggle_K);
    ClearOtherFaces(annot, *toggle);
    WButtonSetOnKey(annot, toggle->onKey);
    const KRErrorCode code = Protect([&] {
        WriteDefault(annot, *toggle);
        TSDMFieldUpdateAppearance(TSDMAnnotGetField(annot));
    });
    WButtonCleanUpKeys(annot);
    RaiseIf(code);
    TSDMWidgetSetStringValue(annot, LexName, data->value);
}

void WToggleDrawMark(WFace &face, const TSToggleData &toggle, bool circular) {
    CStore *content = face.content.get();
    if (circular) {
        const KRFixed side = std::min(CStoreWidth(content), CStoreHeight(content));
        const KRFixed radius = TSFixedSub(side / 2, face.margin) / 2;
        CStoreSetColor(content, &face.data->textColor, /*fill*/ true);
        CStoreCircle(content, CStoreWidth(content) / 2, CStoreHeight(content) / 2, radius, 'f');
        return;
    }
    TextAppearance look = WFaceLook(face);
    look.baseFont = ZapfDingbats_K;
    if (!HasOwnSize(TSDMAnnotGetField(face.annot))) look.size = 0;
    TSLookUseDrawableFont(face.doc, &look);
    TSFit fit;
    TSDMAnnotInitFit(&fit);
    CStoreLayoutIconText(content, &fit, face.margin, /*layout*/ 0, LexNullObj, &look, toggle.caption.c_str(),
                         /*isDingbat*/ true);
}

void WToggleWriteAppearance(SCWidgetHandler *handler, DMAnnot annot, KRAtom state, bool forced, bool mayBeCircular) {
    const bool drawn = forced ? !WButtonHasUsableFaces(annot) : !HasStates(annot);
    if (drawn || (forced && TSDMWidgetIsNative(annot, nullptr))) WriteFaces(handler, annot, mayBeCircular);
    TSDMAnnotSetState(annot, state == WButtonGetOnKey(annot) ? state : WButtonGetOffKey());
}

void WToggleInit(SCWidgetHandler *handler) {
    SCWidgetHandler &h = *handler;
    h.size = sizeof h;
    h.usesTracking = 1;
    h.DoKeyDown = PICallback(gExtensionID, &WButtonDoKeyDown);
    h.AcquireData = PICallback(gExtensionID, &WToggleAcquireData);
    h.CompareData = PICallback(gExtensionID, &WFaceCompareData);
    h.WriteData = PICallback(gExtensionID, &WToggleWriteData);
    h.ReleaseData = PICallback(gExtensionID, &WToggleReleaseData);
    h.Click = PICallback(gExtensionID, &WButtonClick);
    h.Resize = PICallback(gExtensionID, &WButtonResize);
    h.Scroll = PICallback(gExtensionID, &WButtonScroll);
    TSSCAppRegisterWidgetHandler(&h);
}
