// How a widget comes by its appearance: the frame, the font that it can be drawn in, the face that is set.
// SPDX-License-Identifier: MIT
#include "widgets/DMWidget.h"

#include <string_view>

#include "Common/src/miLexType.h"
#include "CoreHFT.h"
#include "appearance/FieldLook.h"
#include "base/FormStr.h"
#include "base/miKanjiFont.h"
#include "model/DMField.h"
#include "objects/AnnotUtl.h"
#include "objects/ColorUtl.h"
#include "objects/FontMgr.h"

namespace {

bool Holds(std::string_view name, std::initializer_list<std::string_view> words) {
    for (const std::string_view word : words) {
        if (name.find(word) != std::string_view::npos) return true;
    }
    return false;
}

// The base font that looks most like a font of this name. Only the fourteen can be measured and embedded by name.
KRAtom NearestBaseFont(KRAtom font) {
    const std::string_view name = KRAtomGetString(font);
    const bool bold = Holds(name, {"Bold", "Black", "Heavy", "bold"});
    const bool slanted = Holds(name, {"Italic", "Oblique", "italic"});
    const KRAtom sans[] = {Helvetica_K, HelveticaBold_K, HelveticaOblique_K, HelveticaBoldOblique_K};
    const KRAtom serif[] = {TimesRoman_K, TimesBold_K, TimesItalic_K, TimesBoldItalic_K};
    const KRAtom fixed[] = {Courier_K, CourierBold_K, CourierOblique_K, CourierBoldOblique_K};
    const int style = (bold ? 1 : 0) + (slanted ? 2 : 0);
    if (Holds(name, {"Cour", "Mono", "Consol", "Typewriter"})) return fixed[style];
    if (Holds(name, {"Times", "Serif", "Roman", "Georgia", "Garamond", "Palatino"}) && !Holds(name, {"Sans"}))
        return serif[style];
    return sans[style];
}

} // namespace

LexObj TSDMWidgetWriteAppearance(DMAnnot annot, CStore *store) {
    LexObj mk;
    const bool native = TSDMWidgetIsNative(annot, &mk);
    if (native && IsDict(mk)) {
        TSBorder border;
        DMColorValue borderColor, backColor;
        TSDMWidgetGetBorder(annot, &border);
        TSDMColorLoad(LexDictGet(mk, BorderCol_K), KRAtomNull, &borderColor);
        TSDMColorLoad(LexDictGet(mk, Background_K), KRAtomNull, &backColor);
        // A width of 0 means no border; a line of that width would still be drawn, as thin as the device can.
        CStoreDrawBorder(store, nullptr, border.style, KRFixedFromInt(border.width),
                         border.width > 0 ? &borderColor : nullptr, &backColor,
                         /*down*/ false);
        return LexNullObj;
    }
    LexObj face = TSDMAnnotGetAppearance(annot, FaceNormal_K, KRAtomNull);
    return IsStream(face) && LexObjIsIndirect(face) ? face : LexNullObj;
}

void TSDMWidgetSetNormalFace(DMAnnot annot, KRAtom state, LexObj face) {
    TSDMAnnotSetAppearance(annot, FaceNormal_K, state, face);
}

void TSLookUseDrawableFont(LexDoc doc, TextAppearance *look) {
    if (!CanGenerateFont(look->baseFont)) look->baseFont = NearestBaseFont(look->baseFont);
    LexObj dict = TSLexDocGetTextFont(doc, look->baseFont);
    if (!IsDict(dict)) return;
    LexObj name = LexDictGet(dict, Name_K);
    look->fontResource = IsName(name) ? LexNameValue(name) : MapBaseFontToNameFont(look->baseFont);
}

void TSDMWidgetGetDrawingLook(DMField *field, TextAppearance *look) {
    TSDMFieldGetDefaultTextAppearance(field, look);
    TSLookUseDrawableFont(TSDMFieldGetLexDoc(field), look);
}
