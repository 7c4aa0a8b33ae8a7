// The handler of push buttons: its data, and the normal, down and rollover faces.
// SPDX-License-Identifier: MIT
#include "widgets/miWBtn.h"

#include <memory>

#include "Common/src/miLexType.h"
#include "Common/src/miUtils.h"
#include "Common/unix/mdMessages.h"
#include "CoreHFT.h"
#include "PIFrame.h"
#include "PIMain.h"
#include "ScreenViewHFT.h"
#include "base/FormStr.h"
#include "life/SCUtils.h"
#include "model/DMField.h"
#include "model/DMFieldValue.h"
#include "model/OnKey.h"
#include "model/WidgetReg.h"
#include "model/miAction.h"
#include "objects/AnnotUtl.h"
#include "objects/LexUtil.h"
#include "widgets/WidgetHandlers.h"
#include "widgets/miWFace.h"

namespace {

SCWidgetHandler s_handler;

KRAtom CaptionKey(std::int32_t slot) {
    const KRAtom keys[] = {Caption_K, RollCaption_K, AltCaption_K};
    return keys[slot];
}

KRAtom IconKey(std::int32_t slot) {
    const KRAtom keys[] = {Icon_K, RollIcon_K, AltIcon_K};
    return keys[slot];
}

TSButtonData *ButtonOf(const TSWidgetData *data) {
    return static_cast<TSButtonData *>(data->extension);
}

KRAtom WButtonGetType(SCWidgetHandler *) {
    return Button_K;
}

void WButtonGetName(SCWidgetHandler *, char *buffer, std::int32_t size) {
    mdGetString(Msg::widgetButton, buffer, static_cast<std::uint16_t>(size));
}

TSWidgetData *WButtonAcquireData(SCWidgetHandler *, DMAnnot annot) {
    auto button = std::make_unique<TSButtonData>();
    button->highlight = TSDMAnnotGetHighlight(annot);
    for (std::int32_t slot = 0; slot < WButtonSlots; ++slot) {
        button->captions[slot] = TSDMWidgetGetCaptionEx(annot, slot);
        button->icons[slot] = TSDMWidgetGetIconEx(annot, slot);
    }
    button->layout = TSDMWidgetGetInt(annot, Position_K);
    TSDMAnnotGetFit(annot, &button->fit);
    TSWidgetData *data = TSDMWidgetAcquireData(annot);
    data->extension = button.release();
    return data;
}

void WButtonReleaseData(SCWidgetHandler *, TSWidgetData *data) {
    if (!data) return;
    delete ButtonOf(data);
    TSDMWidgetReleaseData(data);
}

void WButtonWriteData(SCWidgetHandler *, DMAnnot annot, TSWidgetData *data) {
    TSDMWidgetWriteData(annot, data);
    const TSButtonData *button = ButtonOf(data);
    if (!button) return;
    TSDMAnnotSetHighlight(annot, button->highlight);
    for (std::int32_t slot = 0; slot < WButtonSlots; ++slot) {
        const EStrPtr caption(EStrNewImpl(button->captions[slot].c_str(), EStrHost));
        TSDMWidgetSetCaptionEx(annot, caption.get(), slot);
        TSDMWidgetSetIconEx(annot, button->icons[slot], slot);
    }
    TSDMWidgetSetObj(annot, Position_K,
                     button->layout == 0
                         ? LexNullObj
                         : LexNewInteger(LexObjGetDoc(DMAnnotGetLexObj(annot)), /*indirect*/ false, button->layout));
    TSDMAnnotSetFit(annot, &button->fit);
    TSDMFieldUpdateAppearance(TSDMAnnotGetField(annot));
}

/** Lays caption and icon of a slot; what the slot does not give is taken from the normal face. */
void LayContent(WFace &face, std::int32_t slot) {
    const TSButtonData *button = ButtonOf(face.data);
    const bool ownCaption = !button->captions[slot].empty();
    const bool ownIcon = !IsNull(button->icons[slot]);
    const TextAppearance look = WFaceLook(face);
    const EStrPtr caption = WFaceText(button->captions[ownCaption ? slot : WButtonNormal].c_str(), look);
    CStoreClear(face.content.get());
    face.content->flags = 0;
    CStoreLayoutIconText(face.content.get(), &button->fit, face.margin, button->layout,
                         button->icons[ownIcon ? slot : WButtonNormal], &look, EStrGetBytes(caption.get()),
                         /*isDingbat*/ false);
}

// A face of its own, or the normal one where the button gives no other.
bool HasOwnContent(const TSButtonData *button, std::int32_t slot) {
    const bool caption = !button->captions[slot].empty() && button->captions[slot] != button->captions[WButtonNormal];
    const bool icon = !IsNull(button->icons[slot]) && !LexObjEqual(button->icons[slot], button->icons[WButtonNormal]);
    return caption || icon;
}

void WButtonSaveSimpleFaces(WFace &face) {
    LayContent(face, WButtonNormal);
    TSDMWidgetSetNormalFace(face.annot, KRAtomNull, WFaceSave(face, /*down*/ false, /*circular*/ false, /*shift*/ 0));
    TSDMAnnotSetAppearance(face.annot, FaceDown_K, KRAtomNull, LexNullObj);
    TSDMAnnotSetAppearance(face.annot, FaceRollOver_K, KRAtomNull, LexNullObj);
}

void WButtonSavePushFaces(WFace &face) {
    const TSButtonData *button = ButtonOf(face.data);
    LayContent(face, WButtonNormal);
    TSDMWidgetSetNormalFace(face.annot, KRAtomNull, WFaceSave(face, /*down*/ false, /*circular*/ false, /*shift*/ 0));

    if (HasOwnContent(button, WButtonDown)) LayContent(face, WButtonDown);
    TSDMAnnotSetAppearance(face.annot, FaceDown_K, KRAtomNull,
                           WFaceSave(face, /*down*/ true, /*circular*/ false, face.borderWidth));

    LexObj rollover = LexNullObj;
    if (HasOwnContent(button, WButtonRollover)) {
        LayContent(face, WButtonRollover);
        rollover = WFaceSave(face, /*down*/ false, /*circular*/ false, /*shift*/ 0);
    }
    TSDMAnnotSetAppearance(face.annot, FaceRollOver_K, KRAtomNull, rollover);
}

void WButtonWriteAppearance(SCWidgetHandler *handler, DMAnnot annot, KRAtom, EStr *, KRBool forced) {
    if (!forced || !TSDMWidgetIsNative(annot, nullptr)) return;
    WFaceOwnMakerDict(annot);
    TSWidgetData *data = WButtonAcquireData(handler, annot);
    const KRErrorCode code = Protect([&] {
        WFace face = WFaceNew(annot, data);
        if (ButtonOf(data)->highlight == Push_K)
            WButtonSavePushFaces(face);
        else
            WButtonSaveSimpleFaces(face);
    });
    WButtonReleaseData(handler, data);
    RaiseIf(code);
}

// The value of a button as an on key; false for a value that is none.
bool ValueKey(DMField *field, KRAtom *key) {
    LexObj value = TSDMFieldGetValue(field);
    switch (LexObjGetType(value)) {
    case LexNull:
        *key = Off_K;
        return true;
    case LexName:
        *key = LexNameValue(value);
        return true;
    case LexString:
        *key = KRAtomFromString(LexStringValue(value, nullptr));
        return true;
    default:
        return false;
    }
}

} // namespace

std::string TSDMWidgetGetCaptionEx(DMAnnot annot, std::int32_t slot) {
    LexObj value = TSDMWidgetGetObj(annot, CaptionKey(slot));
    if (!IsString(value)) return {};
    return TSHostTextOf(value);
}

void TSDMWidgetSetCaptionEx(DMAnnot annot, const EStr *text, std::int32_t slot) {
    const EStrPtr stored(EStrCopySetEncoding(text, EStrText));
    TSDMWidgetSetString(annot, CaptionKey(slot), EStrIsNull(stored.get()) ? nullptr : EStrGetBytes(stored.get()));
}

LexObj TSDMWidgetGetIconEx(DMAnnot annot, std::int32_t slot) {
    LexObj icon = TSDMWidgetGetObj(annot, IconKey(slot));
    return IsStream(icon) ? icon : LexNullObj;
}

void TSDMWidgetSetIconEx(DMAnnot annot, LexObj icon, std::int32_t slot) {
    TSDMWidgetSetObj(annot, IconKey(slot), icon);
}

void WButtonToggle(DMAnnot annot) {
    DMField *field = TSDMAnnotGetField(annot);
    if (!TSDMFieldIsValid(field)) return;
    if (!IsDict(TSDMAnnotGetAppearance(annot, FaceNormal_K, KRAtomNull))) return;
    KRAtom present = KRAtomNull;
    if (!ValueKey(field, &present)) return;
    const KRAtom own = WButtonGetOnKeyEx(annot);
    if (own == KRAtomNull) return;
    if (present != own) {
        LexDoc doc = LexObjGetDoc(DMAnnotGetLexObj(annot));
        TSDMFieldSetValue(field, LexNewName(doc, /*indirect*/ false, own));
    } else if (!(TSDMFieldGetFlags(field, TSFieldWord) & TSFieldNoToggleToOff)) {
        TSDMFieldSetValue(field, LexNullObj);
    }
}

void WButtonPress(DMAnnot annot) {
    if (!TSDMAnnotHasAction(annot, MouseUp_K)) return;
    SCDoc view = TSLexDocGetSCDoc(LexObjGetDoc(DMAnnotGetLexObj(annot)));
    Protect([&] { SCDocPerformAction(view, TSDMAnnotGetAction(annot, MouseUp_K)); });
}

void WButtonClick(SCWidgetHandler *, DMAnnot annot, SCPageView, std::int16_t, std::int16_t, std::uint32_t,
                  std::int16_t) {
    WButtonToggle(annot);
}

void WButtonDoKeyDown(SCWidgetHandler *, DMAnnot annot, std::uint16_t key, std::uint32_t) {
    if (key != ' ' && key != '\r' && key != '\n') return;
    WButtonPress(annot);
    WButtonToggle(annot);
}

void WButtonResize(SCWidgetHandler *, DMAnnot, const KRFixedRect *) {}

void WButtonScroll(SCWidgetHandler *, DMAnnot) {}

TSWidgetData *WButton_AcquireData(DMAnnot annot) {
    return WButtonAcquireData(&s_handler, annot);
}

void WButton_WriteData(DMAnnot annot, TSWidgetData *data) {
    WButtonWriteData(&s_handler, annot, data);
}

void WButton_ReleaseData(TSWidgetData *data) {
    WButtonReleaseData(&s_handler, data);
}

void WButton_Init() {
    SCWidgetHandler &h = s_handler;
    h.size = sizeof h;
    h.usesTracking = 1;
    h.GetType = PICallback(gExtensionID, &WButtonGetType);
    h.GetName = PICallback(gExtensionID, &WButtonGetName);
    h.DoKeyDown = PICallback(gExtensionID, &WButtonDoKeyDown);
    h.AcquireData = PICallback(gExtensionID, &WButtonAcquireData);
    h.CompareData = PICallback(gExtensionID, &WFaceCompareData);
    h.WriteData = PICallback(gExtensionID, &WButtonWriteData);
    h.ReleaseData = PICallback(gExtensionID, &WButtonReleaseData);
    h.WriteAppearance = PICallback(gExtensionID, &WButtonWriteAppearance);
    h.Click = PICallback(gExtensionID, &WButtonClick);
    h.Resize = PICallback(gExtensionID, &WButtonResize);
    h.Scroll = PICallback(gExtensionID, &WButtonScroll);
    TSSCAppRegisterWidgetHandler(&h);
}
