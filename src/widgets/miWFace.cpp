// Faces drawn from a frame and a content.
// SPDX-License-Identifier: MIT
#include "widgets/miWFace.h"

#include "Common/src/miLexType.h"
#include "PIFrame.h"
#include "appearance/FieldLook.h"
#include "base/FormStr.h"
#include "base/miKanjiFont.h"
#include "model/DMField.h"
#include "model/DMFieldValue.h"
#include "objects/FixedUtl.h"
#include "objects/LexUtil.h"
#include "objects/TextLook.h"
#include "widgets/miWShownText.h"

namespace {

void DrawFrame(WFace &face, bool down, bool circular) {
    const TSWidgetData *data = face.data;
    const auto draw = circular ? &CStoreDrawCircularBorder : &CStoreDrawBorder;
    draw(face.border.get(), nullptr, data->border.style, face.borderWidth, &data->borderColor, &data->backColor, down);
}

// The data has the size as it shows, which for a stretched widget is not the one to draw with: its appearance is made
// for the original rectangle and stretched by the viewer.
KRFixed GivenSize(const WFace &face) {
    KRFixed size = face.data->textSize;
    DMField *field = TSDMAnnotGetField(face.annot);
    (void)Protect([&] {
        TextAppearance look;
        if (!TSDMFieldIsValid(field)) return;
        TSDMFieldGetDefaultTextAppearance(field, &look);
        size = look.size;
    });
    return size;
}

} // namespace

WFace WFaceNew(DMAnnot annot, const TSWidgetData *data) {
    WFace face{};
    face.annot = annot;
    face.doc = LexObjGetDoc(DMAnnotGetLexObj(annot));
    face.data = data;
    face.borderWidth = KRFixedFromInt(data->border.width);
    face.margin = CStoreBorderMargin(&data->border);
    face.border.reset(CStoreNew(&data->rect, data->rotation));
    face.content.reset(CStoreNew(&data->rect, data->rotation));
    return face;
}

LexObj WFaceSave(WFace &face, bool down, bool circular, KRFixed shift) {
    CStoreClear(face.border.get());
    DrawFrame(face, down, circular);
    const KRFixedRect inside = CStoreInsideRect(face.border.get(), face.margin);
    CStoreStartRectClip(face.border.get(), &inside);
    if (shift != 0) CStorePrintf(face.border.get(), "1 0 0 1 %f %f cm", shift, TSFixedNeg(shift));
    CStoreAdd(face.border.get(), face.content.get());
    CStoreEndRectClip(face.border.get());
    return CStoreSave(face.doc, face.border.get());
}

LexObj WFaceSaveFrame(WFace &face, bool down, bool circular) {
    CStoreClear(face.border.get());
    face.border->flags = 0;
    DrawFrame(face, down, circular);
    return CStoreSave(face.doc, face.border.get());
}

TextAppearance WFaceLook(const WFace &face) {
    TextAppearance look = TextAppearanceDefault();
    look.fillColor = face.data->textColor;
    look.size = GivenSize(face);
    look.baseFont = face.data->font;
    TSLookUseDrawableFont(face.doc, &look);
    return look;
}

EStrPtr WFaceText(const char *hostText, const TextAppearance &look) {
    const EStrPtr text(EStrNewImpl(hostText, EStrHost));
    return TSTextForFont(text.get(), look.baseFont, /*field*/ nullptr);
}

bool WFaceShowFieldValue(DMAnnot annot, const EStr *value, bool forced) {
    DMField *field = value ? nullptr : TSDMAnnotGetField(annot);
    if (!TSDMFieldIsValid(field)) return false;
    if (forced) TSDMFieldAppearanceWasUpdated(field);
    TSDMFieldProduceDisplayFromValue(field, TSDMFieldGetValue(field));
    return true;
}

void WFaceCompareData(SCWidgetHandler *, TSWidgetData *first, const TSWidgetData *other) {
    TSDMWidgetCompareData(first, other);
}

void WFaceOwnMakerDict(DMAnnot annot) {
    LexObj mk;
    LexObj dict = DMAnnotGetLexObj(annot);
    if (!TSDMWidgetIsNative(annot, &mk) || LexDictKnown(dict, MakerDict_K)) return;
    if (IsDict(mk))
        LexDictPut(dict, MakerDict_K, mk);
    else
        TSLexDictEnsure(dict, MakerDict_K);
}
