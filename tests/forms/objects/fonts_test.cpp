// The fonts of a form: names, dictionaries made on demand, the Japanese fonts' widths.
// SPDX-License-Identifier: MIT
#include "objects/FontMgr.h"

#include "objects/LexUtil.h"
#include "tests/forms/ModelFixture.h"

namespace {

using Fonts = Model;

TEST_F(Fonts, NamesMapBothWaysAndUnknownOnesDiffer) {
    const KRAtom unknown = Atom("Papyrus");
    EXPECT_EQ(MapBaseFontToNameFont(CourierBoldOblique_K), CoBO_K);
    EXPECT_EQ(MapNameFontToBaseFont(KaMi_K), KanjiMincho_K);
    EXPECT_EQ(MapBaseFontToNameFont(unknown), unknown);
    EXPECT_EQ(MapNameFontToBaseFont(unknown), KRAtomNull);
    EXPECT_EQ(MapNameFontToBaseFont(Helvetica_K), KRAtomNull) << "a base font is no resource name";
    EXPECT_FALSE(CanGenerateFont(KRAtomNull));
    EXPECT_EQ(DescendantFontOf(Helvetica_K), KRAtomNull);
}

TEST_F(Fonts, AFontIsMadeOnceAndLatinFontsShareTheirEncoding) {
    const TestDoc doc(PageObjects());
    const LexObj helvetica = TSDMDocGetFontDict(doc.doc, Helvetica_K);
    ASSERT_EQ(LexObjGetType(helvetica), LexDict);
    EXPECT_TRUE(LexObjIsIndirect(doc.At("Tessella")));
    EXPECT_TRUE(LexObjEqual(doc.At("Tessella/DR/Font/Helv"), helvetica));
    EXPECT_TRUE(LexObjEqual(TSDMDocGetFontDict(doc.doc, Helvetica_K), helvetica));
    EXPECT_EQ(LexNameValue(LexDictGet(helvetica, Name_K)), Helv_K);
    EXPECT_EQ(LexNameValue(LexDictGet(helvetica, Subtype_K)), Type1_K);

    const LexObj courier = TSDMDocGetFontDict(doc.doc, Courier_K);
    const LexObj encoding = doc.At("Tessella/DR/Encoding/PDFDocEncoding");
    EXPECT_TRUE(LexObjEqual(LexDictGet(courier, Encoding_K), encoding));
    EXPECT_TRUE(LexObjEqual(LexDictGet(helvetica, Encoding_K), encoding));
    const LexObj differences = LexDictGet(encoding, Atom("Differences"));
    ASSERT_EQ(LexArrayLength(differences), 140);
    EXPECT_EQ(LexIntegerValue(LexArrayGet(differences, 0)), 24);
    EXPECT_EQ(LexNameValue(LexArrayGet(differences, 139)), Atom("ydieresis"));
    for (const KRAtom sign : {Symbol_K, ZapfDingbats_K}) {
        EXPECT_FALSE(LexDictKnown(TSDMDocGetFontDict(doc.doc, sign), Encoding_K));
    }
    EXPECT_EQ(LexObjGetType(TSDMDocGetFontDict(doc.doc, Atom("Papyrus"))), LexNull);
    EXPECT_EQ(LexObjGetType(TSDMDocGetFontDict(doc.doc, KRAtomNull)), LexNull);
}

TEST_F(Fonts, NothingThatStandsInTheResourcesChanges) {
    const TestDoc doc(FormObjects({}, "/DR << /Font << /Helv << /BaseFont /Other >> /Papyrus << /BaseFont /Papyrus >> "
                                      "/Cour 7 >> >>"));
    EXPECT_EQ(FontDictGetBaseFontName(TSDMDocGetFontDict(doc.doc, Helvetica_K)), Helvetica_K);
    EXPECT_EQ(Text(doc.At("Tessella/DR/Font/Helv/BaseFont")), "/Other");
    EXPECT_EQ(Text(doc.At("Tessella/DR/Font/Helv1/Name")), "/Helv1");
    EXPECT_EQ(Text(doc.At("Tessella/DR/Font/Cour")), "7");
    EXPECT_EQ(LexObjGetType(TSDMDocGetFontDict(doc.doc, Courier_K)), LexDict);
    EXPECT_TRUE(LexObjEqual(TSDMDocGetFontDict(doc.doc, Atom("Papyrus")), doc.At("Tessella/DR/Font/Papyrus")));
}

/** Walks a `W` array: every CID once, in order; gives the last one and what the array says of `cid`. */
void WalkWidths(LexObj widths, std::int32_t cid, std::int32_t *last, std::int32_t *width) {
    *last = 0;
    for (std::int32_t i = 0; i < LexArrayLength(widths);) {
        const std::int32_t first = LexIntegerValue(LexArrayGet(widths, i++));
        ASSERT_GT(first, *last);
        *last = first;
        const LexObj next = LexArrayGet(widths, i++);
        std::int32_t value = 0;
        if (LexObjGetType(next) == LexArray) {
            value = LexIntegerValue(LexArrayGet(next, 0));
        } else {
            *last = LexIntegerValue(next);
            ASSERT_GE(*last, first);
            value = LexIntegerValue(LexArrayGet(widths, i++));
        }
        if (cid >= first && cid <= *last) *width = value;
    }
}

TEST_F(Fonts, JapaneseFontsAreComposite) {
    const TestDoc doc(FormObjects({}));
    struct Case {
        KRAtom font, descendant;
        std::int32_t descent, cid, width;
    };
    for (const Case &c : {Case{KanjiGothic_K, KanjiGothicDescendant_K, -221, 500, 500},
                          Case{KanjiMincho_K, KanjiMinchoDescendant_K, -241, 33, 921}}) {
        const LexObj font = TSDMDocGetFontDict(doc.doc, c.font);
        EXPECT_EQ(LexNameValue(LexDictGet(font, Subtype_K)), Type0_K);
        EXPECT_EQ(LexNameValue(LexDictGet(font, Encoding_K)), KanjiEncoding_K);
        const LexObj below = LexArrayGet(LexDictGet(font, DescendantFonts_K), 0);
        EXPECT_EQ(LexNameValue(LexDictGet(below, BaseFont_K)), c.descendant);
        EXPECT_EQ(LexIntegerValue(LexDictGet(below, DW_K)), 1000);
        const LexObj descriptor = LexDictGet(below, FontDescriptor_K);
        EXPECT_EQ(LexIntegerValue(LexDictGet(descriptor, Descent_K)), c.descent);
        std::int32_t length = 0;
        LexStringValue(LexDictGet(LexDictGet(descriptor, Style_K), Panose_K), &length);
        EXPECT_EQ(length, 12);
        std::int32_t last = 0, width = 0;
        WalkWidths(LexDictGet(below, W_K), c.cid, &last, &width);
        EXPECT_EQ(last, 632);
        EXPECT_EQ(width, c.width);
    }
}

} // namespace
