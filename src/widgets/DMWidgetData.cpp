// The record of a widget's data: acquired, compared across a selection, validated and written back.
// SPDX-License-Identifier: MIT
#include "widgets/DMWidget.h"

#include <cstdlib>
#include <cstring>

#include "Common/src/miLexType.h"
#include "Common/src/miUtils.h"
#include "Common/unix/mdMessages.h"
#include "DocModelHFT.h"
#include "KRErrors.h"
#include "PIFrame.h"
#include "appearance/FieldLook.h"
#include "base/FormStr.h"
#include "base/miKanjiFont.h"
#include "life/SCUtils.h"
#include "model/DMField.h"
#include "model/DMFieldValue.h"
#include "model/LexField.h"
#include "model/WidgetType.h"
#include "objects/ColorUtl.h"
#include "objects/LexUtil.h"
#include "objects/Tessella.h"
#include "objects/TextLook.h"

namespace {

/** A full name in host encoding may be longer than its bytes in the file. */
constexpr std::int32_t s_titleSize = 1026;
constexpr double s_smallestSize = 4;
constexpr double s_largestSize = 144;

void TakeLook(TSWidgetData *data, const TextAppearance &look) {
    data->textColor = look.fillColor;
    data->font = look.baseFont;
    data->textSize = look.size;
    data->quadding = look.quadding;
}

void FillFromField(DMAnnot annot, DMField *field, TSWidgetData *data) {
    char title[s_titleSize];
    TSDMWidgetGetTitle(annot, title, sizeof title);
    data->title = miCopyStrImpl(title);
    data->type = TSDMWidgetGetSubType(annot);
    data->userName = TSDMFieldGetUserName(field);
    TSDMWidgetGetAreaColors(annot, &data->borderColor, &data->backColor);
    TSDMWidgetGetColor(annot, &data->annotColor);
    TSDMWidgetGetBorder(annot, &data->border);
    TextAppearance look = TextAppearanceDefault();
    Protect([&] { TSDMFieldGetDefaultTextAppearance(field, &look); });
    TakeLook(data, look);
    data->textSize = TSDMWidgetGetTextSize(annot, look.size);
    data->annotFlags = TSDMFieldGetFlags(field, TSAnnotWord);
    data->fieldFlags = TSDMFieldGetFlags(field, TSFieldWord);
}

void SetIf(std::uint32_t *mixed, bool differs, std::uint32_t bit) {
    if (differs) *mixed |= bit;
}

void CompareColor(std::uint32_t *mixed, const DMColorValue &a, const DMColorValue &b, std::uint32_t seenBit,
                  std::uint32_t colorBit) {
    SetIf(mixed, (a.space == TSColorTransparent) != (b.space == TSColorTransparent), seenBit);
    SetIf(mixed, !TSDMColorValueEqual(&a, &b), colorBit);
}

// `MK` read out of an appearance is put where it belongs before anything is written to it.
void OwnMakerDict(DMAnnot annot) {
    LexObj mk;
    if (!TSDMWidgetIsNative(annot, &mk) || !IsDict(mk)) return;
    LexObj dict = DMAnnotGetLexObj(annot);
    if (LexDictKnown(dict, MakerDict_K)) return;
    TSDMAnnotRemoveMakerDict(annot);
    LexDictPut(dict, MakerDict_K, mk);
}

// The host encoding may lack characters of the name, so a title that stands as it was acquired is no change.
bool HasTitle(DMAnnot annot, const char *title) {
    char present[s_titleSize];
    TSDMWidgetGetTitle(annot, present, sizeof present);
    return std::strcmp(present, title) == 0;
}

void WriteTitle(DMAnnot annot, const TSWidgetData *data) {
    char name[s_titleSize];
    miStrncpy(name, data->title, sizeof name);
    DMXlateToPDFDoc(name, sizeof name);
    DMField *field = TSDMAnnotGetField(annot);
    const KRErrorCode code = Protect([&] {
        if (!TSDMFieldIsValid(field))
            field = TSDMAnnotDefineField(annot, name);
        else if (std::strcmp(TSDMFieldGetName(field), name) != 0 && !HasTitle(annot, data->title))
            field = TSDMFieldRename(field, name);
    });
    // A name that the form has no place for is refused in one way, whoever finds it out.
    if (code == KRErrBadParam || (code == KRErrNone && !TSDMFieldIsValid(field))) KRRaise(KRErrDefineFailed);
    RaiseIf(code);
}

void WriteColors(DMAnnot annot, const TSWidgetData *data) {
    constexpr std::uint32_t border = TSMixedBorderSeen | TSMixedBorderColor;
    constexpr std::uint32_t back = TSMixedBackSeen | TSMixedBackColor;
    TSDMWidgetSetAreaColors(annot, (data->mixed & border) == border ? nullptr : &data->borderColor,
                            (data->mixed & back) == back ? nullptr : &data->backColor);
}

void WriteBorder(DMAnnot annot, const TSWidgetData *data) {
    TSBorder border;
    TSDMWidgetGetBorder(annot, &border);
    if (!(data->mixed & TSMixedBorderStyle)) {
        border.style = data->border.style;
        border.dashCount = data->border.dashCount;
        std::memcpy(border.dashes, data->border.dashes, sizeof border.dashes);
    }
    if (!(data->mixed & TSMixedBorderWidth)) border.width = data->border.width;
    TSDMWidgetSetBorder(annot, &border);
}

void WriteLook(DMField *field, const TSWidgetData *data) {
    TextAppearance look;
    TSDMFieldGetDefaultTextAppearance(field, &look);
    if (!(data->mixed & (TSMixedTextSeen | TSMixedTextColor))) look.fillColor = data->textColor;
    if (!(data->mixed & TSMixedFont)) look.baseFont = data->font;
    if (!(data->mixed & TSMixedTextSize)) look.size = data->textSize;
    if (!(data->mixed & TSMixedQuadding)) look.quadding = data->quadding;
    TSDMFieldSetDefaultTextAppearance(field, &look);
}

std::uint32_t TakeBits(std::uint32_t into, std::uint32_t from, std::uint32_t bits) {
    return (into & ~bits) | (from & bits);
}

void WriteFlags(DMField *field, const TSWidgetData *data) {
    std::uint32_t flags = data->mixed & TSMixedType ? TSDMFieldGetFlags(field, TSFieldWord) : data->fieldFlags;
    if (!(data->mixed & TSMixedRequired)) flags = TakeBits(flags, data->fieldFlags, TSFieldRequired);
    if (!(data->mixed & TSMixedReadOnly)) flags = TakeBits(flags, data->fieldFlags, TSFieldReadOnly);
    TSDMFieldSetFlags(field, TSFieldWord, flags);
    if (data->mixed & TSMixedAnnotFlags) return;
    TSDMFieldSetFlags(field, TSAnnotWord,
                      TakeBits(TSDMFieldGetFlags(field, TSAnnotWord), data->annotFlags, TSWidgetAnnotFlags));
}

DMField *FirstLeaf(DMField *field) {
    while (field && field->firstChild) field = field->firstChild;
    return field;
}

// A dotted prefix of the name that is a terminal field leaves no place for a field below it.
bool HasTerminalPrefix(DMDoc doc, std::string name) {
    for (std::size_t dot; (dot = name.rfind('.')) != std::string::npos;) {
        name.resize(dot);
        if (TSDMFieldIsTerminal(TSDMDocGetDMFieldFromName(doc, name.c_str()))) return true;
    }
    return false;
}

bool MayJoin(DMField *field, DMAnnot annot, KRAtom type) {
    DMField *leaf = FirstLeaf(field);
    DMAnnot leafAnnot = TSDMFieldGetDMAnnot(leaf);
    if (TSDMWidgetGetSubType(leafAnnot) == type) return true;
    const bool alone = !leaf->parent || !leaf->parent->firstChild->nextSibling;
    return DMAnnotEqual(leafAnnot, annot) && alone;
}

bool IsRoman(const char *name) {
    for (; *name; ++name) {
        if (static_cast<unsigned char>(*name) >= 127) return false;
    }
    return true;
}

// Widgets of one field share their text, so all of them have a Japanese font or none has.
bool MixesFonts(DMDoc doc, const TSWidgetData *data) {
    DMField *field = TSDMDocGetDMFieldFromName(doc, data->title);
    return TSDMFieldIsTerminal(field) && field->firstChild && TSDMFieldIsKanji(field) != IsKanji(data->font);
}

bool IsSizeText(const char *text) {
    if (std::strcmp(text, mdGetStringPtr(Msg::sizeAuto)) == 0) return true;
    char *end = nullptr;
    const double size = std::strtod(text, &end);
    return end != text && *end == '\0' && size >= s_smallestSize && size <= s_largestSize;
}

} // namespace

void TSDMDocGetFormData(DMDoc doc, TSWidgetData *data) {
    data->type = Text_K;
    TSDMWidgetGetColor(DMAnnot{}, &data->annotColor);
    data->border = TSBorderDefault();
    TSDMColorValueSet(&data->borderColor, TSColorTransparent);
    TSDMColorValueSet(&data->backColor, TSColorTransparent);
    TextAppearance look = TextAppearanceDefault();
    Protect([&] {
        TextAppearance formLook;
        TessellaGetDefaultTextAppearance(TSDMDocGetTessella(doc), &formLook);
        if (formLook.baseFont != KRAtomNull) look = formLook;
    });
    TakeLook(data, look);
}

TSWidgetData *TSDMWidgetAcquireData(DMAnnot annot) {
    TSWidgetDataPtr data(static_cast<TSWidgetData *>(KRSureCalloc(1, sizeof(TSWidgetData))));
    DMField *field = TSDMAnnotGetField(annot);
    if (TSDMFieldIsValid(field)) {
        FillFromField(annot, field, data.get());
    } else {
        TSDMDocGetFormData(DMDocFromLexDoc(LexObjGetDoc(DMAnnotGetLexObj(annot))), data.get());
        data->annotFlags = DMAnnotGetFlags(annot);
    }
    TSDMWidgetGetRect(annot, &data->rect);
    data->rotation = static_cast<std::uint16_t>(TSDMWidgetGetRotation(annot));
    return data.release();
}

void TSWidgetDataDeleter::operator()(TSWidgetData *data) const {
    TSDMWidgetReleaseData(data);
}

void TSDMWidgetReleaseData(TSWidgetData *data) {
    if (!data) return;
    KRIfNotNullFree(data->title);
    KRIfNotNullFree(data->value);
    EStrDelete(data->userName);
    KRIfNotNullFree(data);
}

void TSDMWidgetCompareData(TSWidgetData *first, const TSWidgetData *other) {
    std::uint32_t *mixed = &first->mixed;
    *mixed |= TSMixedType;
    SetIf(mixed, !miStrEq(first->title, other->title), TSMixedTitle);
    CompareColor(mixed, first->backColor, other->backColor, TSMixedBackSeen, TSMixedBackColor);
    CompareColor(mixed, first->borderColor, other->borderColor, TSMixedBorderSeen, TSMixedBorderColor);
    SetIf(mixed, first->border.style != other->border.style, TSMixedBorderStyle);
    SetIf(mixed, first->border.width != other->border.width, TSMixedBorderWidth);
    CompareColor(mixed, first->textColor, other->textColor, TSMixedTextSeen, TSMixedTextColor);
    SetIf(mixed, first->font != other->font, TSMixedFont);
    SetIf(mixed, first->textSize != other->textSize, TSMixedTextSize);
    const std::uint32_t flags = first->fieldFlags ^ other->fieldFlags;
    SetIf(mixed, flags & TSFieldReadOnly, TSMixedReadOnly);
    SetIf(mixed, flags & TSFieldRequired, TSMixedRequired);
    SetIf(mixed, EStrCmp(first->userName, other->userName) != 0, TSMixedUserName);
    SetIf(mixed, first->quadding != other->quadding, TSMixedQuadding);
    SetIf(mixed, (first->annotFlags ^ other->annotFlags) & TSWidgetAnnotFlags, TSMixedAnnotFlags);
}

void TSDMWidgetWriteData(DMAnnot annot, TSWidgetData *data) {
    if (!data->title) KRRaise(KRErrBadParam);
    OwnMakerDict(annot);
    if (!(data->mixed & TSMixedTitle)) WriteTitle(annot, data);
    DMField *field = TSDMAnnotGetField(annot);
    if (!(data->mixed & TSMixedUserName)) TSDMFieldSetUserName(field, data->userName);
    if (!(data->mixed & TSMixedType)) TSDMWidgetSetSubType(annot, data->type, &data->fieldFlags);
    WriteColors(annot, data);
    WriteBorder(annot, data);
    LexObj dict = TSDMFieldGetLexObj(field);
    if (IsDict(dict) && LexDictKnown(dict, origHeight_K)) {
        LexDictRemove(dict, origHeight_K);
        TSDMFieldUpdateEntries(field);
    }
    WriteLook(field, data);
    WriteFlags(field, data);
    TSDMFieldAppearanceWasUpdated(field);
}

std::int32_t TSDMWidgetValidateName(DMDoc doc, DMAnnot annot, KRAtom type, const char *name) {
    std::string text = name ? name : "";
    while (!text.empty() && text.back() == '.') text.pop_back();
    if (text.empty()) return TSNameEmpty;
    if (TSSCLanguageIsJPN() && !IsRoman(text.c_str())) return TSNameNotRoman;
    if (HasTerminalPrefix(doc, text)) return TSNameBelowField;
    DMField *field = TSDMDocGetDMFieldFromName(doc, text.c_str());
    if (!TSDMFieldIsValid(field)) return TSValid;
    if (!TSDMFieldIsTerminal(field)) return TSNameOfGroup;
    return MayJoin(field, annot, type) ? TSValid : TSNameOfOtherType;
}

std::int32_t TSDMWidgetValidateData(DMDoc doc, DMAnnot annot, TSWidgetData *data, const char *sizeText) {
    for (std::size_t length = data->title ? std::strlen(data->title) : 0; length > 0 && data->title[length - 1] == '.';)
        data->title[--length] = '\0';
    const std::int32_t byName = TSDMWidgetValidateName(doc, annot, data->type, data->title);
    if (byName != TSValid) return byName;
    if (MixesFonts(doc, data)) return TSFontsMixed;
    return sizeText && !IsSizeText(sizeText) ? TSSizeOutOfRange : TSValid;
}
