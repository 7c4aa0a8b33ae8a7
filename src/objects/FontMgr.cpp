// The fonts of a form and their dictionaries.
// SPDX-License-Identifier: MIT
#include "objects/FontMgr.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <string>

#include "Common/src/miLexType.h"
#include "Common/src/miUtils.h"
#include "CoreHFT.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "base/miKanjiFont.h"
#include "objects/FontTables.h"
#include "objects/LexUtil.h"

namespace {

struct FontName {
    KRAtom baseFont;
    KRAtom resourceName;
};
FontName fontNameMap[16];

void PutName(LexDoc doc, LexObj dict, KRAtom key, KRAtom value) {
    LexDictPut(dict, key, LexNewName(doc, /*indirect*/ false, value));
}

void PutInteger(LexDoc doc, LexObj dict, KRAtom key, std::int32_t value) {
    LexDictPut(dict, key, LexNewInteger(doc, /*indirect*/ false, value));
}

void PutString(LexDoc doc, LexObj dict, KRAtom key, const char *bytes, std::int32_t length) {
    LexDictPut(dict, key, LexNewString(doc, /*indirect*/ false, bytes, length));
}

void Append(LexObj array, LexObj value) {
    LexArrayPut(array, LexArrayLength(array), value);
}

void AppendInteger(LexDoc doc, LexObj array, std::int32_t value) {
    Append(array, LexNewInteger(doc, /*indirect*/ false, value));
}

/** What tells the two Japanese fonts apart. */
struct KanjiFont {
    std::int32_t ascent, capHeight, descent, flags;
    std::int32_t box[4];
    std::int32_t stemV, xHeight;
    char panose[13];
    const std::int16_t *widths;
};
constexpr KanjiFont s_gothic{
    752, 737, -221, 4, {-92, -250, 1010, 922}, 114, 553, "\x08\x01\x02\x0B\x06\0\0\0\0\0\0\0", gothicWidths};
constexpr KanjiFont s_mincho{
    723, 709, -241, 6, {-123, -257, 1001, 910}, 69, 450, "\x01\x05\x02\x02\x04\0\0\0\0\0\0\0", minchoWidths};

LexObj NewWidths(LexDoc doc, const std::int16_t *widths) {
    const LexObj array = LexNewArray(doc, /*indirect*/ false, /*sizeHint*/ 500);
    while (*widths >= 0) {
        AppendInteger(doc, array, *widths++);
        const std::int16_t value = *widths++;
        if (value < 1500) {
            AppendInteger(doc, array, value);
            AppendInteger(doc, array, *widths++);
        } else {
            const LexObj single = LexNewArray(doc, /*indirect*/ false, /*sizeHint*/ 1);
            AppendInteger(doc, single, value / 10);
            Append(array, single);
        }
    }
    return array;
}

LexObj NewFontDescriptor(LexDoc doc, const KanjiFont &font, KRAtom name) {
    const LexObj dict = LexNewDict(doc, /*indirect*/ false, /*sizeHint*/ 10);
    PutName(doc, dict, Type_K, FontDescriptor_K);
    PutInteger(doc, dict, Ascent_K, font.ascent);
    PutInteger(doc, dict, CapHeight_K, font.capHeight);
    PutInteger(doc, dict, Descent_K, font.descent);
    PutInteger(doc, dict, Flags_K, font.flags);
    const LexObj box = LexNewArray(doc, /*indirect*/ false, /*sizeHint*/ 4);
    for (const std::int32_t side : font.box) AppendInteger(doc, box, side);
    LexDictPut(dict, FontBBox_K, box);
    PutName(doc, dict, FontName_K, name);
    PutInteger(doc, dict, ItalicAngle_K, 0);
    PutInteger(doc, dict, StemV_K, font.stemV);
    PutInteger(doc, dict, XHeight_K, font.xHeight);
    const LexObj style = LexNewDict(doc, /*indirect*/ false, /*sizeHint*/ 1);
    PutString(doc, style, Panose_K, font.panose, 12);
    LexDictPut(dict, Style_K, style);
    return dict;
}

LexObj NewCIDSystemInfo(LexDoc doc) {
    const LexObj info = LexNewDict(doc, /*indirect*/ false, /*sizeHint*/ 3);
    PutString(doc, info, Registry_K, "Ombre", 5);
    PutString(doc, info, Ordering_K, "Japan1", 6);
    PutInteger(doc, info, Supplement_K, 2);
    return info;
}

/** `Differences` of the encoding that text in PDFDocEncoding is shown with; the null object on failure. */
LexObj NewPDFDocEncoding(LexDoc doc) {
    LexObj encoding = LexNullObj;
    const KRErrorCode code = Protect([&] {
        const LexObj differences = LexNewArray(doc, /*indirect*/ false, /*sizeHint*/ 138);
        for (const char *const *token = glyphNames; **token; ++token) {
            if (std::isdigit(static_cast<unsigned char>(**token)))
                AppendInteger(doc, differences, miAtoi(*token));
            else
                Append(differences, LexNewName(doc, /*indirect*/ false, KRAtomFromString(*token)));
        }
        encoding = LexNewDict(doc, /*indirect*/ true, /*sizeHint*/ 3);
        PutName(doc, encoding, Type_K, Encoding_K);
        LexDictPut(encoding, KRAtomFromString("Differences"), differences);
    });
    return code ? LexNullObj : encoding;
}

/** Symbol and ZapfDingbats, whose codes stand for signs. */
bool HasOwnEncoding(KRAtom baseFont) {
    return baseFont == Symbol_K || baseFont == ZapfDingbats_K;
}

LexObj NewFontDict(LexDoc doc, KRAtom baseFont, KRAtom name) {
    const LexObj font = LexNewDict(doc, /*indirect*/ true, /*sizeHint*/ 6);
    PutName(doc, font, Type_K, Font_K);
    PutName(doc, font, Name_K, name);
    PutName(doc, font, BaseFont_K, baseFont);
    if (IsKanji(baseFont)) {
        PutName(doc, font, Subtype_K, Type0_K);
        PutName(doc, font, Encoding_K, KanjiEncoding_K);
        LexDictPut(font, DescendantFonts_K, GetDescendantFontArray(doc, baseFont));
        return font;
    }
    PutName(doc, font, Subtype_K, Type1_K);
    if (!HasOwnEncoding(baseFont)) {
        LexDictPut(font, Encoding_K, TSLexDocGetPDFDocEncoding(doc));
    }
    return font;
}

bool IsFontNamed(LexObj font, KRAtom baseFont, LexObj) {
    return FontDictGetBaseFontName(font) == baseFont;
}

/**
 * The dictionary shows text as it is written here: whole, not the glyphs that some document needed of it, and Latin
 * text in PDFDocEncoding. A font of the same name in another encoding would show other letters.
 */
bool ShowsTextOf(LexObj font, KRAtom baseFont, LexObj encodings) {
    if (FontDictGetBaseFontName(font) != baseFont || LexDictKnown(font, FontDescriptor_K)) return false;
    const LexObj encoding = LexDictGet(font, Encoding_K);
    if (IsKanji(baseFont)) return IsName(encoding) && LexNameValue(encoding) == KanjiEncoding_K;
    if (HasOwnEncoding(baseFont)) return IsNull(encoding);
    return IsDict(encoding) && LexObjEqual(encoding, TSLexDictGetOfType(encodings, PDFDocEncoding_K, LexDict));
}

KRAtom NumberedName(KRAtom name, int number) {
    if (number == 0) return name;
    return KRAtomFromString((KRAtomGetString(name) + std::to_string(number)).c_str());
}

LexObj EnsureForm(LexDoc doc) {
    return TSLexDictEnsureEx(LexDocGetRoot(doc), Tessella_K, /*indirect*/ true);
}

const FontName *FindBaseFont(KRAtom baseFont) {
    const FontName *const row = std::ranges::find(fontNameMap, baseFont, &FontName::baseFont);
    return row == std::end(fontNameMap) ? nullptr : row;
}

/**
 * The first of the form's fonts under the usual name, or that with a number, that `serves`; else a new one under the
 * first of these names that is free.
 */
LexObj FindOrMakeFont(LexDoc doc, KRAtom baseFont, bool (*serves)(LexObj font, KRAtom baseFont, LexObj encodings)) {
    const LexObj form = EnsureForm(doc);
    if (baseFont == KRAtomNull) return LexNullObj;
    const LexObj resources = TSLexDictGetOfType(form, defRes_K, LexDict);
    const LexObj known = TSLexDictGetOfType(resources, Font_K, LexDict);
    const LexObj encodings = TSLexDictGetOfType(resources, Encoding_K, LexDict);
    KRAtom name = KRAtomNull;
    for (int number = 0; name == KRAtomNull || (IsDict(known) && LexDictKnown(known, name)); ++number) {
        name = NumberedName(MapBaseFontToNameFont(baseFont), number);
        const LexObj present = TSLexDictGetOfType(known, name, LexDict);
        if (serves(present, baseFont, encodings)) return present;
    }
    if (!CanGenerateFont(baseFont)) return LexNullObj;
    const LexObj font = NewFontDict(doc, baseFont, name);
    LexDictPut(TSLexDictEnsure(TSLexDictEnsure(form, defRes_K), Font_K), name, font);
    return font;
}

} // namespace

void FontMgrInit() {
    const FontName rows[] = {
        {TimesRoman_K, TiRo_K},    {TimesItalic_K, TiIt_K},
        {TimesBold_K, TiBo_K},     {TimesBoldItalic_K, TiBI_K},
        {Helvetica_K, Helv_K},     {HelveticaOblique_K, HeOb_K},
        {HelveticaBold_K, HeBl_K}, {HelveticaBoldOblique_K, HeBO_K},
        {Courier_K, Cour_K},       {CourierOblique_K, CoOb_K},
        {CourierBold_K, CoBl_K},   {CourierBoldOblique_K, CoBO_K},
        {Symbol_K, Symb_K},        {ZapfDingbats_K, ZaDb_K},
        {KanjiGothic_K, KaGo_K},   {KanjiMincho_K, KaMi_K},
    };
    static_assert(std::size(rows) == std::size(fontNameMap));
    std::ranges::copy(rows, fontNameMap);
}

KRAtom MapBaseFontToNameFont(KRAtom baseFont) {
    const FontName *const row = FindBaseFont(baseFont);
    return row ? row->resourceName : baseFont;
}

KRAtom MapNameFontToBaseFont(KRAtom resourceName) {
    const FontName *const row = std::ranges::find(fontNameMap, resourceName, &FontName::resourceName);
    return row == std::end(fontNameMap) ? KRAtomNull : row->baseFont;
}

bool CanGenerateFont(KRAtom baseFont) {
    return FindBaseFont(baseFont) != nullptr;
}

KRAtom FontDictGetBaseFontName(LexObj fontDict) {
    KRAtom baseFont = KRAtomNull;
    if (IsDict(fontDict)) TSLexDictLoad<LexName>(fontDict, BaseFont_K, &baseFont);
    return baseFont;
}

KRAtom DescendantFontOf(KRAtom baseFont) {
    if (baseFont == KanjiGothic_K) return KanjiGothicDescendant_K;
    if (baseFont == KanjiMincho_K) return KanjiMinchoDescendant_K;
    return KRAtomNull;
}

LexObj TSDMDocGetFontDict(DMDoc doc, KRAtom baseFont) {
    return TSLexDocGetFontDict(DMDocGetLexDoc(doc), baseFont);
}

LexObj TSLexDocGetFontDict(LexDoc doc, KRAtom baseFont) {
    return FindOrMakeFont(doc, baseFont, &IsFontNamed);
}

LexObj TSLexDocGetTextFont(LexDoc doc, KRAtom baseFont) {
    return FindOrMakeFont(doc, baseFont, &ShowsTextOf);
}

LexObj TSLexDocGetPDFDocEncoding(LexDoc doc) {
    LexObj encoding = LexNullObj;
    const KRErrorCode code = Protect([&] {
        const LexObj encodings = TSLexDictEnsure(TSLexDictEnsure(EnsureForm(doc), defRes_K), Encoding_K);
        encoding = LexDictGet(encodings, PDFDocEncoding_K);
        if (!IsNull(encoding)) return;
        encoding = NewPDFDocEncoding(doc);
        LexDictPut(encodings, PDFDocEncoding_K, encoding);
    });
    return code ? LexNullObj : encoding;
}

LexObj GetDescendantFontArray(LexDoc doc, KRAtom baseFont) {
    const KanjiFont &kind = baseFont == KanjiGothic_K ? s_gothic : s_mincho;
    const KRAtom name = DescendantFontOf(baseFont);
    const LexObj font = LexNewDict(doc, /*indirect*/ false, /*sizeHint*/ 7);
    PutName(doc, font, Type_K, Font_K);
    PutName(doc, font, Subtype_K, CIDFontType0_K);
    PutName(doc, font, BaseFont_K, name);
    LexDictPut(font, FontDescriptor_K, NewFontDescriptor(doc, kind, name));
    LexDictPut(font, CIDSystemInfo_K, NewCIDSystemInfo(doc));
    PutInteger(doc, font, DW_K, 1000);
    LexDictPut(font, W_K, NewWidths(doc, kind.widths));
    const LexObj array = LexNewArray(doc, /*indirect*/ false, /*sizeHint*/ 1);
    LexArrayPut(array, 0, font);
    return array;
}
