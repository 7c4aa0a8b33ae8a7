// Faces that show a field's value.
// SPDX-License-Identifier: MIT
#include "widgets/miWValueFace.h"

#include "Common/src/miLexType.h"
#include "base/FormStr.h"
#include "model/DMField.h"
#include "model/DMFieldValue.h"
#include "objects/AnnotUtl.h"
#include "objects/LexUtil.h"
#include "objects/Tessella.h"
#include "widgets/miWShownText.h"

namespace {

// Byte for byte; of UCS-2 characters the low byte, so that each shows as one star.
void HideText(EStr *text) {
    if (EStrGetEncoding(text) == EStrUCS2) {
        for (std::uint16_t at = 2; at + 1 < text->length; at = static_cast<std::uint16_t>(at + 2)) {
            text->bytes[at] = '\0';
            text->bytes[at + 1] = '*';
        }
        return;
    }
    for (std::uint16_t at = 0; at < text->length; ++at) text->bytes[at] = '*';
}

// A single line shows a line end as one blank.
void JoinLines(EStr *text) {
    const EStrPtr blank(EStrNewImpl(" ", EStrPDFDoc));
    for (const char *lineEnd : {"\r\n", "\r", "\n"}) {
        const EStrPtr find(EStrNewImpl(lineEnd, EStrPDFDoc));
        EStrReplace(text, find.get(), blank.get());
    }
}

LexObj FormResources(const WValueFace &face) {
    return TessellaGetEntry(TSDMFieldGetTessella(face.field), TSEntryDR);
}

} // namespace

WValueFace WValueFaceNew(DMAnnot annot, DMField *field) {
    WValueFace face{};
    face.annot = annot;
    face.field = field;
    TSDMWidgetGetBorder(annot, &face.border);
    face.margin = CStoreBorderMargin(&face.border);
    TSDMWidgetGetDrawingLook(field, &face.look);
    KRFixedRect rect;
    TSDMWidgetGetRect(annot, &rect);
    const std::int32_t rotation = TSDMWidgetGetRotation(annot);
    face.store.reset(CStoreNew(&rect, static_cast<std::uint16_t>(rotation)));
    face.present = TSDMWidgetWriteAppearance(annot, face.store.get());
    if (IsStream(face.present)) CStoreNameSplicedFont(face.present, &face.look);
    return face;
}

void WValueFaceDraw(WValueFace &face, const std::function<void()> &content) {
    CStore *store = face.store.get();
    CStoreVariableData(store, Tx_K);
    const bool clipped = !IsStream(face.present);
    if (clipped) {
        const KRFixedRect inside = CStoreInsideRect(store, face.margin);
        CStoreStartRectClip(store, &inside);
    }
    content();
    if (clipped) CStoreEndRectClip(store);
    CStoreVariableData(store, KRAtomNull);
}

void WValueFaceSet(WValueFace &face) {
    LexObj stream = IsStream(face.present)
                        ? CStoreReplace(face.present, face.store.get(), &face.look, FormResources(face))
                        : CStoreSave(TSDMFieldGetLexDoc(face.field), face.store.get());
    TSDMWidgetSetNormalFace(face.annot, KRAtomNull, stream);
    TSDMAnnotSetAppearance(face.annot, FaceDown_K, KRAtomNull, LexNullObj);
    TSDMAnnotSetAppearance(face.annot, FaceRollOver_K, KRAtomNull, LexNullObj);
}

void WValueFaceWriteText(DMAnnot annot, const EStr *value, bool multiLine, bool password) {
    DMField *field = TSDMAnnotGetField(annot);
    if (!TSDMFieldIsValid(field)) return;
    TSDMFieldClearWidgetWrappedText(field);
    WValueFace face = WValueFaceNew(annot, field);
    const EStrPtr text = TSTextForFont(value, face.look.baseFont, password ? nullptr : field);
    if (!EStrIsNull(text.get())) {
        if (!multiLine) JoinLines(text.get());
        if (password) HideText(text.get());
        WValueFaceDraw(face, [&] {
            if (multiLine)
                CStoreFlowText(face.store.get(), /*wrap*/ true, face.margin, &face.look, EStrGetBytes(text.get()));
            else
                CStoreSimpleText(face.store.get(), face.margin, &face.look, EStrGetBytes(text.get()));
        });
    }
    WValueFaceSet(face);
}
