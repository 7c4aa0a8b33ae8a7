// Typed access, deep copies, annotation and colour utilities, forms made of pages.
// SPDX-License-Identifier: MIT
#include "KernelSupportHFT.h"
#include "objects/AnnotUtl.h"
#include "objects/ColorUtl.h"
#include "objects/FixedUtl.h"
#include "objects/LexCopy.h"
#include "objects/LexUtil.h"
#include "objects/PageForm.h"
#include "tests/forms/ModelFixture.h"

namespace {

using Objects = Model;

LexObj EmptyStream(LexDoc doc) {
    const KRStm nothing = KRMemStmOpen("", 0);
    const LexObj stream = LexNewStream(doc, /*indirect*/ true, nothing, /*start*/ -1, /*encode*/ false, LexNullObj,
                                       LexNullObj, /*length*/ -1);
    KRStmClose(nothing);
    return stream;
}

std::string CString(LexObj obj, std::int32_t size) {
    std::string buffer(static_cast<std::size_t>(size), '?');
    TSLexCStringValue(obj, buffer.data(), size);
    EXPECT_EQ(buffer[std::char_traits<char>::length(buffer.c_str()) + 1], '\0');
    return buffer.c_str();
}

TEST_F(Objects, TypedReadsTakeWhatFitsAndLeaveTheRest) {
    const TestDoc doc(PageObjects("/I 40000 /F 2.5 /B true /N /Name /S (text) /A [1 2]"));
    const LexObj root = doc.At("");
    std::int32_t number = 7;
    EXPECT_EQ(TSLexDictLoad<LexInteger>(root, Atom("I"), &number), 0);
    EXPECT_EQ(number, 40000);
    EXPECT_EQ(TSLexDictLoad<LexInteger>(root, Atom("F"), &number), 1);
    EXPECT_EQ(number, 40000);
    EXPECT_EQ(TSLexDictLoad<LexFixed>(root, Atom("I"), &number), 0);
    EXPECT_EQ(number, 0x7FFF0000) << "clamped, not shifted out";
    EXPECT_EQ(TSLexDictLoad<LexFixed>(root, Atom("F"), &number), 0);
    EXPECT_EQ(number, 0x28000);
    KRAtom name = KRAtomNull;
    EXPECT_EQ(TSLexDictLoad<LexName>(root, Atom("S"), &name), 1);
    EXPECT_EQ(TSLexDictLoad<LexName>(doc.At("S"), Atom("S"), &name), 1) << "no dictionary at all";
    EXPECT_EQ(TSLexDictStore<LexName>(doc.At("A"), Atom("X"), false, name), 1) << "failure is swallowed";
    EXPECT_EQ(TSLexDictStore<LexString>(root, Atom("S"), false, "new"), 0);

    EXPECT_EQ(CString(doc.At("S"), 4), "ne") << "two bytes are for the end";
    EXPECT_EQ(CString(doc.At("B"), 20), "true");
    EXPECT_EQ(CString(doc.At("F"), 20), "2.5");
    EXPECT_EQ(CString(doc.At("N"), 20), "Name");
    EXPECT_EQ(CString(doc.At("A"), 20), "");
}

TEST_F(Objects, EnsuringReplacesWhatHasTheWrongType) {
    const TestDoc doc(PageObjects("/A 1 /D [1] /Good << /X 1 >>"));
    const LexObj root = doc.At("");
    EXPECT_EQ(LexArrayLength(TSLexArrayEnsure(root, Atom("A"), /*indirect*/ true)), 0);
    EXPECT_TRUE(LexObjIsIndirect(doc.At("A")));
    EXPECT_EQ(TSLexDictGetLen(TSLexDictEnsure(root, Atom("D"))), 0);
    EXPECT_EQ(TSLexDictGetLen(TSLexDictEnsureEx(root, Atom("Good"), /*indirect*/ true)), 1);
}

TEST_F(Objects, RectanglesAndMatricesReadForgivingly) {
    const TestDoc doc(PageObjects("/R [1 2 30 40.5] /Short [1 2 3] /Words [(a) 1 2 3] /M [1 0 0 2 3]"));
    KRFixedRect rect;
    TSLexGetRect(doc.At(""), Atom("R"), &rect);
    EXPECT_EQ(rect.left, KRFixedFromInt(1));
    EXPECT_EQ(rect.bottom, KRFixedFromInt(2));
    EXPECT_EQ(rect.top, 40 * KRFixedOne + KRFixedOne / 2);
    for (const char *key : {"Short", "Words", "None"}) {
        TSLexGetRect(doc.At(""), Atom(key), &rect);
        EXPECT_TRUE(rect.left == 0 && rect.right == 0) << key;
    }
    KRFixedMatrix matrix;
    TSLexGetMatrix(doc.At(""), Atom("M"), &matrix);
    EXPECT_EQ(matrix.d, KRFixedOne);
    EXPECT_EQ(matrix.e, 0);
}

TEST_F(Objects, EquivalenceComparesValuesAndEndsInCircles) {
    const TestDoc doc(
        PageObjects("/A [1 (x) [/N true]] /B [1 (x) [/N true]] /C [1 (y) [/N true]] /D << /X 1 >> /E << /X 1 >> "
                    "/F 1 /G 1.0 /P 4 0 R /Q 5 0 R /U 6 0 R",
                    {"[4 0 R 4 0 R]", "[5 0 R 5 0 R]", "[6 0 R 1]"}));
    EXPECT_TRUE(TSLexObjEquivalent(doc.At("A"), doc.At("B")));
    EXPECT_FALSE(TSLexObjEquivalent(doc.At("A"), doc.At("C")));
    EXPECT_FALSE(TSLexObjEquivalent(doc.At("D"), doc.At("E")));
    EXPECT_FALSE(TSLexObjEquivalent(doc.At("F"), doc.At("G")));
    EXPECT_TRUE(TSLexObjEquivalent(doc.At("P"), doc.At("Q")));
    EXPECT_FALSE(TSLexObjEquivalent(doc.At("P"), doc.At("U")));
    EXPECT_TRUE(TSLexObjEquivalent(doc.At("None"), LexNullObj));
}

TEST_F(Objects, InheritedValuesSurviveACircleOfParents) {
    const TestDoc doc(PageObjects("/L 4 0 R", {"<< /Parent 5 0 R >>", "<< /Parent 4 0 R /Q 2 >>"}));
    EXPECT_EQ(LexIntegerValue(TSLexObjInheritedValue(doc.At("L"), quadding_K)), 2);
    EXPECT_EQ(LexObjGetType(TSLexObjInheritedValue(doc.At("L"), Atom("Missing"))), LexNull);
}

TEST_F(Objects, CopiesKeepCirclesSharingAndStreamData) {
    // A dictionary that holds itself, shares a string, and has a stream whose resources lead back to it.
    const TestDoc source(PageObjects(
        "/X 4 0 R", {"<< /Self 4 0 R /S 5 0 R /T [5 0 R] /Form 6 0 R >>", "(shared)",
                     StreamObject("/Filter /ASCIIHexDecode /Resources << /XObject << /Me 6 0 R >> >>", "48 49>")}));
    const TestDoc target(PageObjects(""));
    const LexObj copy = TSLexObjCopy(target.lex, source.At("X"), /*shallow*/ false);
    ASSERT_EQ(LexObjGetType(copy), LexDict);
    EXPECT_EQ(LexObjGetDoc(copy), target.lex);
    EXPECT_TRUE(LexObjEqual(LexDictGet(copy, Atom("Self")), copy));
    EXPECT_TRUE(LexObjEqual(LexArrayGet(LexDictGet(copy, Atom("T")), 0), LexDictGet(copy, Atom("S"))));
    const LexObj form = LexDictGet(copy, Atom("Form"));
    ASSERT_EQ(LexObjGetType(form), LexStream);
    EXPECT_EQ(Data(form, LexStreamRaw), "48 49>");
    EXPECT_EQ(Data(form, LexStreamDecoded), "HI");
    const LexObj resources = LexDictGet(form, Resources_K);
    EXPECT_TRUE(LexObjEqual(LexDictGet(LexDictGet(resources, XObject_K), Atom("Me")), form));
    LexDictPut(target.At(""), Atom("Kept"), copy);
    EXPECT_TRUE(Has(target.Saved(), "48 49>"));
}

TEST_F(Objects, CopiesAreAsDeepAsTheirSource) {
    const TestDoc doc(PageObjects(""));
    LexObj chain = LexNewInteger(doc.lex, /*indirect*/ true, 1);
    for (int i = 0; i < 50'000; ++i) {
        const LexObj next = LexNewArray(doc.lex, /*indirect*/ true, 1);
        LexArrayPut(next, 0, chain);
        chain = next;
    }
    const LexObj copy = TSLexObjCopy(doc.lex, chain, /*shallow*/ false);
    ASSERT_EQ(LexObjGetType(copy), LexArray);
    EXPECT_FALSE(LexObjEqual(copy, chain));
    EXPECT_FALSE(LexObjEqual(LexArrayGet(copy, 0), LexArrayGet(chain, 0)));
    EXPECT_TRUE(LexObjEqual(TSLexObjCopy(doc.lex, chain, /*shallow*/ true), chain));
}

TEST_F(Objects, PartialCopiesNeverDragTheFieldTreeAlong) {
    const TestDoc doc(PageObjects("/X << /Up 4 0 R /W 5 0 R /Plain 6 0 R /Has 1 /D << /P 6 0 R >> >> /Y << /Has 2 >>",
                                  {"<< /Kids [] >>", "<< /Subtype /Widget >>", "<< /Some 1 >>"}));
    TSLexDictPartialCopy(doc.At("X"), doc.At("Y"), /*sameDocument*/ false);
    EXPECT_TRUE(LexObjEqual(doc.At("Y/Up"), doc.At("X/Up")));
    EXPECT_TRUE(LexObjEqual(doc.At("Y/W"), doc.At("X/W")));
    EXPECT_FALSE(LexObjEqual(doc.At("Y/Plain"), doc.At("X/Plain")));
    EXPECT_EQ(LexIntegerValue(doc.At("Y/Has")), 2);
    const LexObj other = LexNewDict(doc.lex, /*indirect*/ false, 4);
    LexDictPut(doc.At(""), Atom("Z"), other);
    TSLexDictPartialCopy(doc.At("X"), other, /*sameDocument*/ true);
    EXPECT_TRUE(LexObjEqual(doc.At("Z/Plain"), doc.At("X/Plain")));
    EXPECT_TRUE(LexObjEqual(doc.At("Z/D/P"), doc.At("X/D/P")));
    EXPECT_FALSE(LexObjEqual(doc.At("Z/D"), doc.At("X/D")));

    TSLexObjCopyEntry(doc.At("X"), doc.At("Y"), Atom("Missing"), TSLexCopyEntryDeep);
    EXPECT_FALSE(LexDictKnown(doc.At("Y"), Atom("Missing")));
    TSLexObjCopyEntry(doc.At("X"), doc.At("Y"), Atom("Plain"), /*mode*/ 9);
    EXPECT_TRUE(LexObjEqual(doc.At("Y/Plain"), doc.At("X/Plain")));
}

TEST_F(Objects, AppearancesByFaceAndState) {
    const TestDoc doc(FormObjects({"/FT /Btn /T (a) /AS /On"}));
    const DMAnnot annot = DMAnnotFromLexObj(doc.At("Tessella/Fields/0"));
    const LexObj plain = EmptyStream(doc.lex);
    const LexObj on = EmptyStream(doc.lex);
    EXPECT_FALSE(TSDMAnnotHasAppearance(annot, KRAtomNull, KRAtomNull));
    TSDMAnnotSetAppearance(annot, FaceNormal_K, KRAtomNull, plain);
    EXPECT_TRUE(TSDMAnnotHasAppearance(annot, FaceNormal_K, KRAtomNull));
    EXPECT_FALSE(TSDMAnnotHasAppearance(annot, FaceNormal_K, On_K));
    EXPECT_TRUE(LexObjEqual(TSDMAnnotGetAppearance(annot, FaceNormal_K, On_K), plain));
    TSDMAnnotSetAppearance(annot, FaceNormal_K, On_K, on);
    EXPECT_TRUE(LexObjEqual(TSDMAnnotGetAppearance(annot, FaceNormal_K, On_K), on));
    EXPECT_EQ(LexObjGetType(TSDMAnnotGetAppearance(annot, FaceNormal_K, Off_K)), LexNull);
    TSDMAnnotSetAppearance(annot, FaceNormal_K, On_K, LexNullObj);
    EXPECT_FALSE(TSDMAnnotHasAppearance(annot, FaceNormal_K, On_K));
    TSDMAnnotSetAppearance(annot, KRAtomNull, KRAtomNull, LexNullObj);
    EXPECT_FALSE(TSDMAnnotHasAppearance(annot, KRAtomNull, KRAtomNull));

    EXPECT_EQ(TSDMAnnotGetState(annot), On_K);
    TSDMAnnotSetState(annot, KRAtomNull);
    EXPECT_EQ(TSDMAnnotGetState(annot), KRAtomNull);
    EXPECT_EQ(TSDMAnnotGetHighlight(annot), Invert_K);
    TSDMAnnotSetHighlight(annot, Push_K);
    EXPECT_EQ(TSDMAnnotGetHighlight(annot), Push_K);
    TSDMAnnotSetHighlight(annot, Invert_K);
    EXPECT_FALSE(LexDictKnown(DMAnnotGetLexObj(annot), Highlight_K));
}

TEST_F(Objects, AnnotationsAreEnumeratedBackwardsUntilStopped) {
    const TestDoc doc(FormObjects({"/T (a)", "/T (b)", "/T (c)"}));
    struct Walk {
        std::string seen;
        bool raise = false;
    } walk;
    const TSAnnotEnumProc proc = [](DMAnnot annot, DMPage, void *data) {
        auto &w = *static_cast<Walk *>(data);
        w.seen += CString(LexDictGet(DMAnnotGetLexObj(annot), T_K), 10);
        if (w.raise) KRRaise(KRErrBadParam);
        return w.seen.size() < 2;
    };
    TSDMDocEnumAnnots(doc.doc, Widget_K, proc, &walk);
    EXPECT_EQ(walk.seen, "cb");
    walk = {"", true};
    TSDMDocEnumAnnots(doc.doc, Widget_K, proc, &walk);
    EXPECT_EQ(walk.seen, "c") << "an exception ends the walk and goes no further";
    walk = {};
    TSDMDocEnumAnnots(doc.doc, Movie_K, proc, &walk);
    EXPECT_EQ(walk.seen, "");
}

DMColorValue Color(std::int32_t space, double a, double b = 0, double c = 0, double d = 0) {
    DMColorValue color{space, {}};
    int i = 0;
    for (const double part : {a, b, c, d}) color.value[i++] = static_cast<KRFixed>(part * KRFixedOne);
    return color;
}

TEST_F(Objects, ColoursConvertWithTheirUnshiftedProducts) {
    const auto converted = [](DMColorValue color, std::int32_t space) {
        TSDMColorValueConvert(&color, space);
        return color;
    };
    const auto gray = [&](DMColorValue color) {
        return static_cast<std::uint32_t>(converted(color, TSColorGray).value[0]);
    };
    EXPECT_EQ(gray(Color(TSColorRGB, 1, 1, 1)), 0xFFFF0000u);
    EXPECT_EQ(gray(Color(TSColorRGB, 0, 1, 0)), 38660u << 16);
    EXPECT_EQ(gray(Color(TSColorRGB, 0.5, 0, 0)), 19659u << 15);
    EXPECT_EQ(gray(Color(TSColorCMYK, 0, 0, 0, 1)), 0u);
    EXPECT_EQ(gray(Color(TSColorCMYK, 0, 0, 0, 0.25)), 0xC000u);
    const DMColorValue rgb = converted(Color(TSColorCMYK, 0.5, 0, 0.75, 0.5), TSColorRGB);
    const DMColorValue wanted = Color(TSColorRGB, 0, 0.5, 0);
    EXPECT_TRUE(TSDMColorValueEqual(&rgb, &wanted));
    const DMColorValue none = Color(TSColorTransparent, 0);
    EXPECT_EQ(converted(none, TSColorRGB).space, TSColorTransparent);
    EXPECT_TRUE(TSDMColorValueEqual(&none, &none));
    EXPECT_FALSE(TSDMColorValueEqual(&none, nullptr));
    // Components of a file may be anything: nothing may overflow.
    gray({TSColorCMYK, {INT32_MIN, INT32_MAX, INT32_MIN, INT32_MIN}});
    converted({TSColorCMYK, {INT32_MIN, INT32_MAX, 1, INT32_MIN}}, TSColorRGB);
}

TEST_F(Objects, ColoursAsArraysAndOperators) {
    const TestDoc doc(PageObjects("/Two [0 1] /RGB [1 0 0.5] /Bad [1 (x) 0] /M << /BG [0.25] >>"));
    DMColorValue color;
    for (const char *key : {"Two", "Bad", "None"}) {
        TSDMColorLoad(doc.At(key), KRAtomNull, &color);
        EXPECT_TRUE(TSDMColorValueIs(&color, TSColorTransparent)) << key;
    }
    TSDMColorLoad(doc.At("M"), Background_K, &color);
    EXPECT_EQ(color.value[0], 0x4000);
    TSDMColorLoad(doc.At("RGB"), KRAtomNull, &color);
    char text[TSDMColorTextSize];
    TSDMColorGetCString(&color, /*fill*/ true, text);
    EXPECT_STREQ(text, "1 0 0.5 rg ");
    const DMColorValue wild{TSColorCMYK, {INT32_MIN, INT32_MIN + 1, INT32_MAX, -1}};
    TSDMColorGetCString(&wild, /*fill*/ false, text);
    EXPECT_STREQ(text + std::string(text).size() - 3, " K ");
    const DMColorValue beyond = Color(TSColorRGB, 1.5, 0, 0);
    TSDMColorStore(doc.At("M"), Background_K, &beyond);
    EXPECT_EQ(LexArrayLength(doc.At("M/BG")), 1) << "no colour to store";
    TSDMColorStore(doc.At("M"), Background_K, &color);
    EXPECT_EQ(LexArrayLength(doc.At("M/BG")), 3);
}

TEST_F(Objects, PagesBecomeFormsCentredAndUpright) {
    auto objects = PageObjects("/Co << /Contents 4 0 R /Rotate -90 >>",
                               {StreamObject("", "0 g"), StreamObject("", "q"), StreamObject("", "Q")});
    objects[2] = "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 100] /CropBox [0 0 100 300] /Rotate 90 "
                 "/Contents [4 0 R 5 0 R 6 0 R] /Resources << /Font << >> >> >>";
    const TestDoc doc(objects);
    const LexObj bare = TSDMFormFromCoPage(doc.doc, doc.At("Co"));
    ASSERT_EQ(LexObjGetType(bare), LexStream);
    KRFixedRect box;
    TSLexGetRect(bare, BBox_K, &box);
    EXPECT_EQ(box.right, KRFixedFromInt(612));
    EXPECT_EQ(box.top, KRFixedFromInt(792));
    KRFixedMatrix matrix;
    TSLexGetMatrix(bare, Matrix_K, &matrix);
    EXPECT_EQ(matrix.b, KRFixedOne) << "-90 is 270";
    TSDMFormGetNormalizedBBox(bare, &box);
    EXPECT_EQ(box.right, KRFixedFromInt(396));
    EXPECT_EQ(box.bottom, KRFixedFromInt(-306));

    const DMPage page = DMDocAcquirePage(doc.doc, 0);
    const LexObj form = TSDMFormFromPage(doc.doc, page);
    DMPageRelease(page);
    ASSERT_EQ(LexObjGetType(form), LexStream);
    EXPECT_EQ(Data(form, LexStreamDecoded), "0 g\nq\nQ\n");
    TSLexGetRect(form, BBox_K, &box);
    EXPECT_EQ(box.right, KRFixedFromInt(100));
    EXPECT_EQ(box.top, KRFixedFromInt(100));
    TSLexGetMatrix(form, Matrix_K, &matrix);
    EXPECT_EQ(matrix.b, -KRFixedOne) << "clockwise, as the page is shown";
    EXPECT_EQ(LexObjGetType(LexDictGet(LexDictGet(form, Resources_K), Font_K)), LexDict);
    EXPECT_EQ(LexObjGetType(TSDMFormFromCoPage(doc.doc, doc.At("Pages"))), LexNull) << "no contents";
}

} // namespace
