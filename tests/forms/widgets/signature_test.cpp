// Signature fields: their faces, the streams around a signed appearance, and its refitting.
// SPDX-License-Identifier: MIT
#include "widgets/miWSig.h"

#include <algorithm>

#include "Common/src/miUtils.h"
#include "model/WidgetType.h"
#include "objects/ColorUtl.h"
#include "tests/forms/FormsFixture.h"
#include "widgets/miWSigMark.h"

namespace {

using Signatures = BuiltInWidgets;

constexpr char s_signed[] = "/FT /Sig /T (a) /MK << >> /V << /Contents <00> /Name (A. Signer) >> ";

/** A signed field whose normal face is a wrapper of 100 by 50 around a form of `formBox`. */
std::vector<std::string> Wrapped(const std::string &wrapper, const std::string &rect, const std::string &formBox) {
    auto objects = FormObjects({s_signed + ("/Rect " + rect + " /AP << /N 5 0 R >>")});
    objects.push_back("<< /Subtype /Form /BBox [0 0 100 50] /Resources << /XObject << /FRM 6 0 R >> >> /Length " +
                      std::to_string(wrapper.size()) + " >> stream\n" + wrapper + "\nendstream");
    objects.push_back("<< /Subtype /Form /BBox " + formBox + " /Length 1 >> stream\nf\nendstream");
    return objects;
}

TEST_F(Signatures, AnUnsignedFieldShowsTheMarkAlone) {
    const TestDoc doc(
        FormObjects({"/FT /Sig /T (a) /DA (/Helv 10 Tf 0 0 1 rg)", "/FT /Sig /T (b) /AP << /N 6 0 R >>"}));
    TSDMFieldUpdateAppearance(FieldOf(doc, "a"));
    const LexObj face = FaceOf(AnnotOf(doc, "a"), FaceNormal_K);
    // The mark's box is 100 by 100 around the origin; the inside 196 by 16.
    EXPECT_EQ(Data(face), "q 1 1 198 18 re W n q 2 2 196 16 re W n 0.16 0 0 0.16 100 10.0002 cm /FRM Do Q Q");
    const LexObj mark = At(face, "Resources/XObject/FRM");
    EXPECT_EQ(Data(mark).substr(0, 52), "q\n0 J 0 j 4 M []0 d\n1 0 0 1 0 -1 cm\n0 0 1 rg\n0 i\n70.");
    EXPECT_EQ(Data(mark).substr(Data(mark).size() - 6), "h f\nQ\n");
    EXPECT_EQ(RectOf(mark, BBox_K), "0 0 100 100");
    EXPECT_EQ(LexIntegerValue(At(mark, "FormType")), 1);
    KRFixedMatrix matrix;
    TSLexGetMatrix(LexStreamDict(mark), Matrix_K, &matrix);
    EXPECT_TRUE(matrix.a == KRFixedOne && matrix.e == Pt(-50) && matrix.f == Pt(-50));
    EXPECT_TRUE(TSDMWidgetIsNative(AnnotOf(doc, "a"), nullptr));
    TSDMFieldUpdateAppearance(FieldOf(doc, "b"));
    EXPECT_FALSE(LexDictKnown(DMAnnotGetLexObj(AnnotOf(doc, "b")), MakerDict_K));
}

TEST_F(Signatures, ASignedFieldShowsItsSignerBelowTheMark) {
    const TestDoc doc(FormObjects({std::string(s_signed) + "/DA (/Helv 10 Tf 0 g) /Rect [0 0 200 50]"}));
    TSDMFieldUpdateAppearance(FieldOf(doc, "a"));
    const std::string face = FaceText(AnnotOf(doc, "a"));
    EXPECT_TRUE(Has(face, "/FRM Do Q BT /Helv 10 Tf 0 g 1 0 0 1 ") && Has(face, " 4.07 Tm (A. Signer) Tj ET")) << face;
    // A name longer than there is room for is cut.
    LexDictPut(At(DMAnnotGetLexObj(AnnotOf(doc, "a")), "V"), Name_K, Str(doc, std::string(400, 'x')));
    TSDMFieldUpdateAppearance(FieldOf(doc, "a"));
    const std::string cut = FaceText(AnnotOf(doc, "a"));
    EXPECT_EQ(std::ranges::count(cut, 'x'), 258) << cut;
}

TEST_F(Signatures, TheMarkTakesTheColorOfTheLook) {
    const TestDoc doc(FormObjects({}));
    const struct {
        DMColorValue color;
        const char *line;
    } cases[] = {{{0, {Pt(0.25)}}, "\n0.25 g\n"},
                 {{1, {KRFixedOne, KRFixedOne, KRFixedOne}}, "\n1 g\n"},
                 {{1, {KRFixedOne, 0, Pt(0.3333)}}, "\n1 0 0.3333 rg\n"},
                 {{2, {0, 0, 0, KRFixedOne}}, "\n0 0 0 1 k\n"}};
    TextAppearance look = LookOf(10);
    for (const auto &c : cases) {
        look.fillColor = c.color;
        EXPECT_TRUE(Has(Data(GetThumper(doc.lex, &look)), c.line)) << c.line;
    }
    look.fillColor.space = TSColorTransparent;
    EXPECT_EQ(Text(GetThumper(doc.lex, &look)), "null");
    EXPECT_STREQ(thumper[ThumperColorLine], "0.8 g");
}

TEST_F(Signatures, StreamsBecomeFormsAndFormsAreWrapped) {
    const TestDoc doc(FormObjects({}));
    const char *const lines[] = {"q", "Q", "", "after", nullptr};
    LexObj resources;
    const LexObj stream = CreateStreamFromStringArray(doc.lex, lines, nullptr, &resources);
    EXPECT_EQ(Data(stream), "q\nQ\n");
    EXPECT_EQ(RectOf(stream, BBox_K), "0 0 100 100");
    EXPECT_EQ(Text(LexArrayGet(At(resources, "ProcSet"), 0)), "/PDF");

    const KRFixedRect box = Box(0, 0, 7, 8);
    const LexObj form = StreamToXObject(stream, nullptr, &box, /*inPlace*/ false);
    EXPECT_FALSE(LexDictKnown(LexStreamDict(stream), Matrix_K));
    EXPECT_EQ(RectOf(form, BBox_K), "0 0 7 8");
    const KRFixedMatrix twice{Pt(2), 0, 0, Pt(2), Pt(5), 0};
    StreamToXObject(form, &twice, nullptr, /*inPlace*/ true);
    StreamToXObject(form, &twice, nullptr, /*inPlace*/ true);
    KRFixedMatrix matrix;
    TSLexGetMatrix(LexStreamDict(form), Matrix_K, &matrix);
    EXPECT_TRUE(matrix.a == Pt(4) && matrix.e == Pt(15));

    EXPECT_EQ(Data(XObjectToStream(form, nullptr, &box)), "q 1 0 0 1 0 0 cm /FRM Do Q");
    const LexObj wrapper = XObjectToStream(form, &twice, nullptr);
    EXPECT_EQ(Data(wrapper), "q 2 0 0 2 5 0 cm /FRM Do Q");
    EXPECT_TRUE(LexObjEqual(At(wrapper, "Resources/XObject/FRM"), form));
    EXPECT_EQ(StreamWrapsXObject(wrapper), FRM_K);

    const struct {
        std::int32_t rotation;
        KRFixedMatrix matrix;
    } turns[] = {{0, KRFixedMatrixIdentity},
                 {90, {0, KRFixedOne, -KRFixedOne, 0, 8, 0}},
                 {-180, {-KRFixedOne, 0, 0, -KRFixedOne, 7, 8}},
                 {630, {0, -KRFixedOne, KRFixedOne, 0, 0, 7}}};
    for (const auto &turn : turns) {
        DefaultAPMatrixFM(&matrix, turn.rotation, 7, 8);
        EXPECT_TRUE(matrix.a == turn.matrix.a && matrix.b == turn.matrix.b && matrix.c == turn.matrix.c &&
                    matrix.e == turn.matrix.e && matrix.f == turn.matrix.f)
            << turn.rotation;
    }
}

TEST_F(Signatures, AWrapperDoesNothingElse) {
    const TestDoc doc(FormObjects({}));
    const char *const wrappers[] = {"q 1 0 0 1 0 0 cm /Im Do Q", "q\n-.5 +1 0. 1e0 0 99\r\ncm\t/Im Do\nQ \n"};
    const char *const others[] = {"",
                                  "q 1 0 0 1 0 0 cm /Im Do",
                                  "q 1 0 0 1 0 cm /Im Do Q",
                                  "q 1 0 0 1 0 0 cm /Im Do Q n",
                                  "q 1 0 0 1 0 x0 cm /Im Do Q",
                                  "q 1 0 0 1 0 0 cm Im Do Q",
                                  "Q 1 0 0 1 0 0 cm /Im Do Q"};
    for (const char *text : wrappers) EXPECT_EQ(StreamWrapsXObject(NewForm(doc, text)), Atom("Im")) << text;
    for (const char *text : others) EXPECT_EQ(StreamWrapsXObject(NewForm(doc, text)), KRAtomNull) << text;
    const std::string base = "q 1 0 0 1 0 0 cm /Im Do Q";
    EXPECT_EQ(StreamWrapsXObject(NewForm(doc, base + std::string(253 - base.size(), ' '))), Atom("Im"));
    EXPECT_EQ(StreamWrapsXObject(NewForm(doc, base + std::string(254 - base.size(), ' '))), KRAtomNull);
    EXPECT_EQ(StreamWrapsXObject(LexNullObj), KRAtomNull);
}

TEST_F(Signatures, AResizedWidgetKeepsTheProportionsOfItsForm) {
    const char *const wrap = "q 1 0 0 1 0 0 cm /FRM Do Q";
    const struct {
        const char *rect, *formBox, *wrapperBox;
    } cases[] = {
        {"[0 0 100 50]", "[0 0 100 50]", "0 0 100 50"},
        {"[0 0 200 50]", "[0 0 100 50]", "0 0 200 50"}, // twice as wide: the box takes the room
        {"[0 0 100 100]", "[0 0 100 50]", "0 0 100 100"},
        {"[0 0 50 100]", "[0 0 100 50]", "0 0 100 200"},
        {"[0 0 0 0]", "[0 0 100 50]", "0 0 100 50"},
        {"[0 0 200 50]", "[0 0 0 0]", "0 0 100 50"},
    };
    for (const auto &c : cases) {
        const TestDoc doc(Wrapped(wrap, c.rect, c.formBox));
        const DMAnnot annot = AnnotOf(doc, "a");
        const LexObj before = FaceOf(annot, FaceNormal_K);
        EXPECT_TRUE(WSignature_NotifyWasResized(annot)) << c.rect;
        EXPECT_EQ(RectOf(LexStreamDict(FaceOf(annot, FaceNormal_K)), BBox_K), c.wrapperBox) << c.rect << c.formBox;
        EXPECT_FALSE(LexObjEqual(before, FaceOf(annot, FaceNormal_K)));
    }
    // Fitted again, for the same rectangle and for others, a box is what a first fit for the last one makes of it.
    const TestDoc again(Wrapped(wrap, "[0 0 200 50]", "[0 0 30 15]"));
    const LexObj wrapper = FaceOf(AnnotOf(again, "a"), FaceNormal_K);
    const KRFixedRect form = Box(0, 0, 30, 15);
    const struct {
        KRFixedRect place;
        const char *wrapperBox;
    } fits[] = {{Box(0, 0, 200, 50), "0 0 200 50"},
                {Box(0, 0, 200, 50), "0 0 200 50"},
                {Box(0, 0, 50, 100), "0 0 100 200"},
                {Box(0, 0, 60, 30), "0 0 100 50"}};
    for (const auto &fit : fits) {
        EXPECT_TRUE(LexObjEqual(FitAp(&fit.place, wrapper, &form), wrapper));
        EXPECT_EQ(RectOf(LexStreamDict(wrapper), BBox_K), fit.wrapperBox);
    }
    for (const char *other : {"q 1 0 0 1 0 0 cm /FRM Do Q n", "q 1 0 0 1 0 0 cm /None Do Q"}) {
        const TestDoc doc(Wrapped(other, "[0 0 200 50]", "[0 0 100 50]"));
        EXPECT_FALSE(WSignature_NotifyWasResized(AnnotOf(doc, "a")));
        EXPECT_EQ(RectOf(LexStreamDict(FaceOf(AnnotOf(doc, "a"), FaceNormal_K)), BBox_K), "0 0 100 50");
    }
    const TestDoc unsignedDoc(FormObjects({"/FT /Sig /T (a)"}));
    EXPECT_FALSE(WSignature_NotifyWasResized(AnnotOf(unsignedDoc, "a")));
}

TEST_F(Signatures, DataGoesToAllWidgetsOfTheField) {
    auto objects = FormObjects({"/T (s) /Parent 6 0 R", "/T (s) /Parent 6 0 R"});
    const std::string widget = "<< /Type /Annot /Subtype /Widget /Rect [0 0 50 50] /P 3 0 R /Parent 6 0 R >>";
    objects[0] = "<< /Type /Catalog /Pages 2 0 R /AcroForm << /Fields [6 0 R 7 0 R] >> >>";
    objects[3] = objects[4] = widget;
    objects.push_back("<< /FT /Sig /T (s) /Kids [4 0 R 5 0 R] >>");
    objects.push_back("<< /Type /Annot /Subtype /Widget /Rect [0 0 50 50] /P 3 0 R /FT /Sig /T (t) /Opt [(x)] >>");
    const TestDoc doc(objects);
    const DMAnnot first = DMAnnotFromLexObj(doc.At("Tessella/Fields/0/Kids/0"));
    const DMAnnot second = DMAnnotFromLexObj(doc.At("Tessella/Fields/0/Kids/1"));
    TSWidgetData *data = WSignature_AcquireData(first), *other = WSignature_AcquireData(second);
    EXPECT_EQ(data->type, Sig_K);
    other->border.width = 9;
    SCWidgetHandler *handler = TSSCAppGetWidgetHandlerByName(Sig_K);
    handler->CompareData(handler, data, other);
    EXPECT_EQ(data->mixed, TSMixedType | TSMixedBorderWidth);
    data->mixed = 0;
    data->border.width = 4;
    WSignature_WriteData(first, data);
    for (const DMAnnot annot : {first, second}) {
        TSBorder border;
        EXPECT_TRUE(TSDMWidgetGetBorder(annot, &border));
        EXPECT_EQ(border.width, 4);
    }
    WSignature_ReleaseData(data);
    WSignature_ReleaseData(other);

    // Away from a signature: what belonged to it goes.
    const DMAnnot alone = AnnotOf(doc, "t");
    data = WSignature_AcquireData(alone);
    data->type = Text_K;
    WSignature_WriteData(alone, data);
    WSignature_ReleaseData(data);
    EXPECT_EQ(TSDMWidgetGetSubType(alone), Text_K);
    EXPECT_FALSE(LexDictKnown(DMAnnotGetLexObj(alone), options_K));
}

} // namespace
