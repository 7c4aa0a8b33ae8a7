// Text looks: the default appearance string both ways, and the look of a field in its tree.
// SPDX-License-Identifier: MIT
#include "appearance/FieldLook.h"

#include "base/BufCont.h"
#include "objects/ColorUtl.h"
#include "objects/FontMgr.h"
#include "objects/LexUtil.h"
#include "objects/TextLook.h"
#include "tests/forms/ModelFixture.h"

namespace {

using Looks = Model;

/** "error 1" when the look cannot be written. */
std::string Written(TextAppearance look) {
    BufControl buffer{};
    BufControlAlloc(&buffer, 20);
    const std::int32_t result = TextAppearanceSTRM(&look, &buffer);
    const std::string text = result ? "error " + std::to_string(result) : buffer.data;
    EXPECT_TRUE(result || text.size() == buffer.length);
    BufControlFree(&buffer);
    return text;
}

TEST_F(Looks, StringsParseAndWriteBackInTheirOrder) {
    const TestDoc doc(FormObjects({}));
    const char *const cases[][2] = {
        {"/Helv 0 Tf 0 g", "/Helv 0 Tf 0 g "},
        {" \r\n/Helv\t12  Tf ", "/Helv 12 Tf 0 g "},
        {"0 0 1 rg /HeBo 10.5 Tf", "/HeBo 10.5 Tf 0 0 1 rg "},
        {"/HeBo 10.5 Tf 0 0 1 rg", "/HeBo 10.5 Tf 0 0 1 rg "},
        {"0 0 0 rg /Helv 9 Tf", "/Helv 9 Tf 0 g "},
        {"1.5 g /Helv 9 Tf", "/Helv 9 Tf 1 g "},
        {"0.33333 0 .5 0 k /TiRo 9 Tf", "/TiRo 9 Tf 0.3333 0 0.5 0 k "},
        {"/Helv 9 Tf 2 Tr 1 0 0 RG 0.5 Tc 3 Tw 90 Tz 11 TL -2 Ts",
         "/Helv 9 Tf 0.5 Tc 3 Tw 90 Tz 11 TL -2 Ts 2 Tr 1 0 0 RG 0 g "},
        {"q /My#20Font 9 Tf Q", "/My#20Font 9 Tf 0 g "},
        {"Courier 12 Tf .1 .1 .1 rg", "/Courier 12 Tf 0.1 0.1 0.1 rg "},
        {"/Helv 9 Tf 6 Tr", "/Helv 9 Tf 2 Tr 0 G 0 g "},
    };
    for (const auto &[text, written] : cases) {
        TextAppearance look;
        ASSERT_EQ(Protect([&] { TSLexStringGetTextAppearance(Str(doc, text), &look); }), 0) << text;
        EXPECT_EQ(Written(look), written) << text;
        EXPECT_EQ(look.baseFont, Helvetica_K) << "resources tell what a name stands for";
    }
    TextAppearance look;
    TSLexStringGetTextAppearance(Str(doc, "/My#20Font 9 Tf"), &look);
    EXPECT_STREQ(KRAtomGetString(look.fontResource), "My Font");
}

TEST_F(Looks, MalformedStringsAreRefused) {
    const TestDoc doc(FormObjects({}));
    std::string many = "/Helv 9 Tf";
    for (int i = 0; i < 40; ++i) many += " q";
    for (const std::string text : {"", "0 g", "0.5 0.5 0.5 0.5 0.5 k /Helv 9 Tf", "2 g /Helv 9 Tf", "0 0 rg /Helv 9 Tf",
                                   "g /Helv 9 Tf", "/Helv", "Tf", many.c_str()}) {
        TextAppearance look;
        EXPECT_EQ(Protect([&] { TSLexStringGetTextAppearance(Str(doc, text), &look); }), KRErrBadField) << text;
    }
    TextAppearance look;
    (void)Protect([&] { TSLexStringGetTextAppearance(Str(doc, "/Helv 9 Tf 0 0 g"), &look); });
    EXPECT_EQ(look.baseFont, KRAtomNull);
    EXPECT_EQ(look.hScale, 0);
    EXPECT_EQ(Protect([&] { TSLexStringGetTextAppearance(doc.At("Pages"), &look); }), KRErrBadParam);
}

TEST_F(Looks, IllFormedLooksAreNotWrittenAndUnseenColoursAreBlack) {
    TextAppearance look = TextAppearanceDefault();
    EXPECT_EQ(Written(look), "/Helv 0 Tf 0 g ");
    look.quadding = 3;
    EXPECT_EQ(Written(look), "error 1");
    look.quadding = 2;
    look.size = -1;
    EXPECT_EQ(Written(look), "error 1");
    look.size = 0;
    look.renderMode = 3;
    TSDMColorValueSet(&look.fillColor, TSColorRGB, KRFixedOne);
    TSDMColorValueSet(&look.strokeColor, TSColorCMYK, 0, 0, 0, KRFixedOne);
    TextAppearanceHomogenizeColors(&look);
    TextAppearance plain = TextAppearanceDefault();
    plain.quadding = 2;
    plain.renderMode = 3;
    EXPECT_TRUE(TextAppearanceEqual(&look, &plain));
}

DMField *FieldAt(const TestDoc &doc, int index) {
    return TSDMFieldFromLexObj(doc.At("Tessella/Fields/" + std::to_string(index)));
}

constexpr const char *s_formLook = "/DA (/Helv 0 Tf 0 g) /DR << /Font << /Helv << /Type /Font /Subtype /Type1 "
                                   "/BaseFont /Helvetica /Name /Helv >> >> >>";

TEST_F(Looks, AKnownFontIsReadWithoutWriting) {
    const TestDoc doc(FormObjects({"/FT /Tx /T (a) /Q 1"}, s_formLook));
    TextAppearance look;
    DMField *const field = FieldAt(doc, 0);
    DMDocClearFlags(doc.doc, DMDocDirty);
    TSDMFieldGetDefaultTextAppearance(field, &look);
    EXPECT_EQ(look.baseFont, Helvetica_K);
    EXPECT_EQ(look.fontResource, Helv_K);
    EXPECT_EQ(look.quadding, 1);
    EXPECT_EQ(DMDocGetFlags(doc.doc) & DMDocDirty, 0u);
}

TEST_F(Looks, UnknownNamesAreKeptAndShareOneFont) {
    // Fields of files without resources: a base font's own name, a foreign name, the name of a base font.
    const TestDoc doc(FormObjects({"/FT /Tx /T (a) /DA (/Helvetica 9 Tf)", "/FT /Tx /T (b) /DA (/Helvetica 8 Tf)",
                                   "/FT /Tx /T (c) /DA (/F1 8 Tf)", "/FT /Tx /T (d) /DA (/TiRo 8 Tf)"}));
    TextAppearance look;
    for (int i = 0; i < 4; ++i) TSDMFieldGetDefaultTextAppearance(FieldAt(doc, i), &look);
    EXPECT_EQ(look.baseFont, TimesRoman_K);
    const LexObj first = doc.At("Tessella/Fields/0/DR/Font/Helvetica");
    ASSERT_EQ(LexObjGetType(first), LexDict);
    EXPECT_TRUE(LexObjIsIndirect(first));
    EXPECT_TRUE(LexObjEqual(first, doc.At("Tessella/Fields/1/DR/Font/Helvetica")));
    EXPECT_EQ(FontDictGetBaseFontName(doc.At("Tessella/Fields/2/DR/Font/F1")), Helvetica_K);
    EXPECT_FALSE(LexObjEqual(first, doc.At("Tessella/Fields/2/DR/Font/F1")));
    EXPECT_TRUE(LexObjEqual(LexDictGet(first, Encoding_K), doc.At("Tessella/DR/Encoding/PDFDocEncoding")));
    EXPECT_EQ(LexObjGetType(doc.At("Tessella/DR/Font/F1")), LexNull) << "inherited resources stay as they are";

    DMDocClearFlags(doc.doc, DMDocDirty);
    TSDMFieldGetDefaultTextAppearance(FieldAt(doc, 2), &look);
    EXPECT_STREQ(KRAtomGetString(look.fontResource), "F1");
    EXPECT_EQ(DMDocGetFlags(doc.doc) & DMDocDirty, 0u) << "bound once";
}

TEST_F(Looks, AMissingLookBecomesTheFormsAndBadResourcesAreRefused) {
    const TestDoc none(FormObjects({"/FT /Tx /T (a)"}));
    TextAppearance look;
    TSDMFieldGetDefaultTextAppearance(FieldAt(none, 0), &look);
    EXPECT_EQ(look.fontResource, Helv_K);
    EXPECT_EQ(Text(none.At("Tessella/DA")).substr(0, 14), "/Helv 0 Tf 0 g");
    for (const char *resources : {"/DR 7", "/DR << /Font [] >>"}) {
        const TestDoc bad(FormObjects({"/FT /Tx /T (a) /DA (/Helv 0 Tf)"}, resources));
        EXPECT_EQ(Protect([&] { TSDMFieldGetDefaultTextAppearance(FieldAt(bad, 0), &look); }), KRErrBadResource);
    }
}

// A value whose look could not be read was stored under the old picture.
TEST_F(Looks, AnUnreadableLookFallsBackToTheFormsAndThenToHelvetica) {
    for (const char *unreadable :
         {"()", "(0 g)", "(10 Tf)", "(1 g 10 Tf)", "(/Helv -9 Tf)", "(0 0 rg /Helv 9 Tf)", "7"}) {
        const std::string field = std::string("/FT /Tx /T (a) /Q 7 /DA ") + unreadable;
        TextAppearance look;
        const TestDoc readable(FormObjects({field}, "/DA (/TiRo 11 Tf 0.5 g)"));
        TSDMFieldGetDefaultTextAppearance(FieldAt(readable, 0), &look);
        EXPECT_EQ(Written(look), "/TiRo 11 Tf 0.5 g ") << unreadable;
        EXPECT_EQ(look.baseFont, TimesRoman_K);
        EXPECT_EQ(look.quadding, 0) << "where there is no place, the text stands on the left";
        EXPECT_EQ(Text(readable.At("Tessella/DA")), "/TiRo 11 Tf 0.5 g");

        const std::string formToo = std::string("/DA ") + unreadable;
        const TestDoc neither(FormObjects({field}, formToo.c_str()));
        const std::string before = Text(neither.At("Tessella/DA"));
        TSDMFieldGetDefaultTextAppearance(FieldAt(neither, 0), &look);
        EXPECT_EQ(Written(look), "/Helv 0 Tf 0 g ") << unreadable;
        EXPECT_EQ(FontDictGetBaseFontName(neither.At("Tessella/DR/Font/Helv")), Helvetica_K);
        EXPECT_EQ(Text(neither.At("Tessella/DA")), before) << "the author's string stays";
    }
}

TEST_F(Looks, ChangesAreStoredOnlyWhereTheyDiffer) {
    const TestDoc doc(FormObjects({"/FT /Tx /T (a)"}, s_formLook));
    DMField *const field = FieldAt(doc, 0);
    TextAppearance look;
    TSDMFieldGetDefaultTextAppearance(field, &look);
    look.size = 12 * KRFixedOne;
    look.baseFont = CourierBold_K;
    look.quadding = 2;
    TSDMColorValueSet(&look.fillColor, TSColorRGB);
    TSDMFieldSetDefaultTextAppearance(field, &look);
    EXPECT_EQ(Text(doc.At("Tessella/Fields/0/DA")), "/CoBo 12 Tf 0 g");
    EXPECT_EQ(LexIntegerValue(doc.At("Tessella/Fields/0/Q")), 2);
    EXPECT_EQ(field->entries & (TSEntryDA | TSEntryQ), std::uint32_t{TSEntryDA | TSEntryQ});

    TSDMFieldSetDefaultTextAppearance(field, nullptr);
    EXPECT_EQ(Text(doc.At("Tessella/Fields/0/DA")), "null");
    EXPECT_EQ(field->entries & (TSEntryDA | TSEntryDR | TSEntryQ), 0u);

    look.size = 7 * KRFixedOne;
    TSDMFieldSetDefaultTextAppearance(field, &look);
    EXPECT_EQ(Text(doc.At("Tessella/Fields/0/DA")), "/CoBo 7 Tf 0 g");
    TSDMFieldSetDefaultQuadding(field, 0);
    TextAppearance inherited;
    LexDictRemove(TSDMFieldGetLexObj(field), textApp_K);
    TSDMFieldUpdateEntries(field);
    TSDMFieldGetDefaultTextAppearance(field, &inherited);
    TSDMFieldSetDefaultTextAppearance(field, &look);
    TSDMFieldSetDefaultTextAppearance(field, &inherited);
    EXPECT_EQ(Text(doc.At("Tessella/Fields/0/DA")), "null") << "equal to the inherited look";

    look.baseFont = KRAtomNull;
    EXPECT_EQ(Protect([&] { TSDMFieldSetDefaultTextAppearance(field, &look); }), KRErrBadParam);
    TSDMFieldSetDefaultTextAppearance(nullptr, &look);
}

TEST_F(Looks, AChangeReachesTheKids) {
    auto objects = FormObjects({"/FT /Tx /T (a) /Parent 6 0 R", "/T (b) /Parent 6 0 R"}, s_formLook);
    objects.push_back("<< /FT /Tx /T (top) /Kids [4 0 R 5 0 R] >>");
    objects[0] = "<< /Type /Catalog /Pages 2 0 R /AcroForm << /Fields [6 0 R] " + std::string(s_formLook) + " >> >>";
    const TestDoc doc(objects);
    DMField *const kid = TSDMFieldFromLexObj(doc.At("Tessella/Fields/0/Kids/1"));
    TextAppearance look;
    TSDMFieldGetDefaultTextAppearance(kid, &look);
    look.size = 20 * KRFixedOne;
    TSDMFieldSetDefaultTextAppearance(FieldAt(doc, 0), &look);
    TextAppearance seen;
    TSDMFieldGetDefaultTextAppearance(kid, &seen);
    EXPECT_TRUE(TextAppearanceEqual(&seen, &look));
    EXPECT_EQ(Text(doc.At("Tessella/Fields/0/DA")), "/Helv 20 Tf 0 g");
    EXPECT_EQ(Text(doc.At("Tessella/Fields/0/Kids/1/DA")), "null");
}

TEST_F(Looks, JapaneseFieldsAreKnownByTheirStrings) {
    const TestDoc doc(FormObjects(
        {"/FT /Tx /T (a) /DA (/KaGo 9 Tf)", "/FT /Tx /T (b) /DA (/Helv 9 Tf)", "/FT /Tx /T (c) /DA (broken)"}));
    EXPECT_TRUE(TSDMFieldIsKanji(FieldAt(doc, 0)));
    EXPECT_FALSE(TSDMFieldIsKanji(FieldAt(doc, 1)));
    EXPECT_FALSE(TSDMFieldIsKanji(FieldAt(doc, 2)));
    EXPECT_FALSE(TSDMFieldIsKanji(nullptr));
    EXPECT_EQ(LexObjGetType(doc.At("Tessella/DR")), LexNull) << "asking makes nothing";
}

} // namespace
