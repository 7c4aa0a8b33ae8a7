// The faces that the widget handlers write, and the data that they carry beside the common record.
// SPDX-License-Identifier: MIT

#include "Common/src/miUtils.h"
#include "KRErrors.h"
#include "model/DocData.h"
#include "model/LexField.h"
#include "model/OnKey.h"
#include "model/WidgetType.h"
#include "objects/AnnotUtl.h"
#include "objects/ColorUtl.h"
#include "tests/forms/FormsFixture.h"
#include "widgets/miWBtn.h"
#include "widgets/miWChkBx.h"
#include "widgets/miWCombo.h"
#include "widgets/miWLstBx.h"
#include "widgets/miWRadio.h"
#include "widgets/miWText.h"
#include "widgets/miWToggle.h"

namespace {

using Faces = BuiltInWidgets;

// The form's own font has the standard encoding: text is drawn with a font of ours beside it.
const std::string s_formExtra = "/DA (/Helv 10 Tf 0 g) /DR << /Font << /Helv << /Type /Font /Subtype /Type1 "
                                "/BaseFont /Helvetica >> >> >>";

/** A form of these widgets; `streams` follow as objects behind them, the first of them 4 + the number of widgets. */
std::vector<std::string> Widgets(const std::vector<std::string> &fields, const std::vector<std::string> &streams = {},
                                 const std::string &formExtra = "") {
    auto objects = FormObjects(fields, s_formExtra + formExtra);
    for (const std::string &text : streams)
        objects.push_back("<< /Type /XObject /Subtype /Form /BBox [0 0 200 20] /Resources << >> /Length " +
                          std::to_string(text.size()) + " >> stream\n" + text + "\nendstream");
    return objects;
}

/** Text of the shown value of a text field with these entries. */
std::string ShownText(const std::string &entries, const std::string &value = "abc") {
    const TestDoc doc(Widgets({"/FT /Tx /T (a) " + entries}));
    Show(doc, "a", value);
    return FaceText(AnnotOf(doc, "a"));
}

TEST_F(Faces, ATextFieldDrawsItsFrameAndItsValue) {
    // 200 by 20, Helvetica 10: 11.56 high, the baseline 2.07 above its lower edge.
    const std::string line = "BT /Helv1 10 Tf 0 g 2 6.29 Td (abc) Tj ET";
    EXPECT_EQ(ShownText("/MK << >>"), "/Tx BMC q 1 1 198 18 re W n " + line + " Q EMC");
    EXPECT_EQ(ShownText("/MK << /BC [1 0 0] /BG [.5] >>"),
              "0.5 g 0 0 200 20 re f 1 0 0 RG 1 w 0.5 0.5 199 19 re s /Tx BMC q 1 1 198 18 re W n " + line + " Q EMC");
    EXPECT_EQ(ShownText("/MK << >> /Border [0 0 0]"),
              "/Tx BMC q 0 0 200 20 re W n BT /Helv1 10 Tf 0 g 0 6.29 Td (abc) Tj ET Q EMC");
    EXPECT_TRUE(Has(ShownText("/MK << >> /BS << /W 2 /S /I >>"), "/Tx BMC q 4 4 192 12 re W n BT /Helv1 10 Tf 0 g 8 "));
    EXPECT_TRUE(Has(ShownText("/Ff 8192"), "(***) Tj"));
    EXPECT_TRUE(Has(ShownText("/Q 2"), " 181.88 6.29 Td (abc)"));
    // Line ends are blanks in a single line and break several.
    EXPECT_TRUE(Has(ShownText("", "a\r\nb\nc"), "(a b c) Tj"));
    EXPECT_TRUE(Has(ShownText("/Ff 4096", "a\rb"), "1 0 0 1 1 21.07 Tm 1 -11.5601 Td (a) Tj 0 -11.5601 Td (b) Tj"));
    // Blanks of any width are blanks, marks that show nothing go, and what the font lacks shows as a bullet.
    EXPECT_TRUE(Has(ShownText("", std::string("\xFE\xFF\0a\x20\x0F\0\xA0\0\t\0b", 12)), "(a  b) Tj"));
    EXPECT_TRUE(Has(ShownText("", std::string("\xFE\xFF\x04\x14\0o", 6)), "(\\200o) Tj"));
    EXPECT_TRUE(Has(ShownText("/DA (/Helv 0 Tf 0 g)"), "/Helv1 13.8"));
    // Made for the height of 10 that it had; the viewer stretches it to 20.
    EXPECT_TRUE(Has(ShownText("/OH 10"), "/Helv1 10 Tf"));
}

TEST_F(Faces, ATurnedWidgetIsDrawnUprightInCrossedSides) {
    const TestDoc doc(Widgets({"/FT /Tx /T (a) /MK << /R 90 /BC [0] >>", "/FT /Tx /T (b) /MK << /R 45 /BC [0] >>"}));
    Show(doc, "a", "abc");
    Show(doc, "b", "abc");
    const LexObj face = FaceOf(AnnotOf(doc, "a"), FaceNormal_K);
    EXPECT_EQ(RectOf(face, BBox_K), "0 0 20 200");
    KRFixedMatrix matrix;
    TSLexGetMatrix(LexStreamDict(face), Matrix_K, &matrix);
    EXPECT_TRUE(matrix.b == KRFixedOne && matrix.c == -KRFixedOne && matrix.e == Pt(200));
    EXPECT_TRUE(Has(Data(face), "0.5 0.5 19 199 re s /Tx BMC q 1 1 18 198 re W n")) << Data(face);
    EXPECT_FALSE(LexDictKnown(LexStreamDict(FaceOf(AnnotOf(doc, "b"), FaceNormal_K)), Matrix_K));
}

TEST_F(Faces, AForeignFrameStaysAroundTheValue) {
    const TestDoc doc(Widgets({"/FT /Tx /T (a) /AP << /N 6 0 R /D 6 0 R >>", "/FT /Tx /T (b) /AP << /N 7 0 R >>"},
                              {"1 0 0 rg 0 0 200 20 re f /Tx BMC BT ET EMC Q", "q 9 w Q"}));
    Show(doc, "a", "abc");
    EXPECT_EQ(FaceText(AnnotOf(doc, "a")),
              "1 0 0 rg 0 0 200 20 re f /Tx BMC BT /Helv1 10 Tf 0 g 2 6.29 Td (abc) Tj ET EMC\nQ");
    EXPECT_EQ(FaceText(AnnotOf(doc, "a"), FaceDown_K), "null");
    Show(doc, "a", "");
    EXPECT_EQ(FaceText(AnnotOf(doc, "a")), "1 0 0 rg 0 0 200 20 re f /Tx BMC EMC\nQ");
    Show(doc, "b", "abc");
    EXPECT_TRUE(Has(FaceText(AnnotOf(doc, "b")), "q 9 w Q")) << FaceText(AnnotOf(doc, "b"));
    EXPECT_TRUE(LexDictKnown(At(FaceOf(AnnotOf(doc, "b"), FaceNormal_K), "Resources/Font"), Atom("Helv1")));
}

TEST_F(Faces, FontsOutsideTheBaseFontsAreDrawnInTheNearest) {
    const struct {
        const char *font;
        KRAtom nearest;
    } cases[] = {{"ArialMT", Helvetica_K},
                 {"Arial-BoldItalicMT", HelveticaBoldOblique_K},
                 {"TimesNewRomanPS-BoldMT", TimesBold_K},
                 {"CourierNew", Courier_K},
                 {"MicrosoftSansSerif", Helvetica_K},
                 {"DejaVuSansMono-Oblique", CourierOblique_K},
                 {"Symbol", Symbol_K},
                 {"", Helvetica_K}};
    const TestDoc doc(Widgets({}));
    for (const auto &c : cases) {
        TextAppearance look = LookOf(10);
        look.baseFont = KRAtomFromString(c.font);
        TSLookUseDrawableFont(doc.lex, &look);
        EXPECT_EQ(look.baseFont, c.nearest) << c.font;
    }
}

TEST_F(Faces, AListShowsTheLinesAroundItsSelection) {
    const std::string options = "/Opt [(0) (1) [(x) (2)] (3) (4) (5) (6) (7) (8) [(n) (9)]]";
    const TestDoc doc(Widgets({"/FT /Ch /T (a) /Rect [0 0 100 40] /MK << /BG [1 1 0] >> " + options,
                               "/FT /Ch /T (b) /TI 50 /Rect [0 0 100 40] " + options,
                               "/FT /Ch /T (c) /Opt [(a) (b) (c) (d)] /TI 3 /Rect [0 0 100 40] /MK << >>",
                               "/FT /Ch /T (d) /Opt [(a) [(1) (2) (3)] (b) (c)] /Rect [0 0 100 40]"}));
    const DMAnnot a = AnnotOf(doc, "a");
    Show(doc, "a", "x");
    // 38 points of 11.56 each: three lines and the one that is cut.
    EXPECT_EQ(FaceText(a), "1 1 0 rg 0 0 100 40 re f /Tx BMC q 1 1 98 38 re W n "
                           "0 g 1 4.3198 98 11.5601 re f BT /Helv1 10 Tf 0 g 1 0 0 1 1 41.07 Tm "
                           "1 -11.5601 Td (0) Tj 0 -11.5601 Td (1) Tj 1 1 0 rg 0 -11.5601 Td (2) Tj 0 g "
                           "0 -11.5601 Td (3) Tj ET Q EMC");
    Show(doc, "a", "n");
    EXPECT_EQ(TSDMFieldGetTopIndex(FieldOf(doc, "a")), 7);
    EXPECT_TRUE(Has(FaceText(a), "(8) Tj 1 1 0 rg 0 -11.5601 Td (9) Tj 0 g ET"));
    Show(doc, "a", "1");
    EXPECT_EQ(TSDMFieldGetTopIndex(FieldOf(doc, "a")), 1);
    TSDMFieldUpdateAppearance(FieldOf(doc, "b"));
    EXPECT_EQ(TSDMFieldGetTopIndex(FieldOf(doc, "b")), 7);
    // Lines that stand in view stay where they are.
    Show(doc, "c", "d");
    EXPECT_EQ(TSDMFieldGetTopIndex(FieldOf(doc, "c")), 3);
    // An option that is none has no line, and the bar stands behind the right one.
    Show(doc, "d", "b");
    EXPECT_TRUE(Has(FaceText(AnnotOf(doc, "d")), "(a) Tj 1 g 0 -11.5601 Td (b) Tj 0 g")) << FaceText(AnnotOf(doc, "d"));
}

TEST_F(Faces, AListOfSeveralChoicesMarksEachOfThem) {
    const TestDoc doc(Widgets({"/FT /Ch /Ff 2097152 /T (a) /Rect [0 0 100 40] /Opt [(0) (1) (2)] /V [(0) (2)]"}));
    TSDMFieldUpdateAppearance(FieldOf(doc, "a"));
    const std::string text = FaceText(AnnotOf(doc, "a"));
    EXPECT_PRED2(Has, text, "1 27.4399 98 11.5601 re f 0 g 1 4.3198 98 11.5601 re f");
    EXPECT_PRED2(Has, text, "(0) Tj 0 g 0 -11.5601 Td (1) Tj 1 g 0 -11.5601 Td (2) Tj");
}

/** What the data of a choice field does to the field when it is written back as it was. */
struct UnchangedChoice {
    const char *what;
    const char *entries;
};
class ChoiceWrittenBack : public Faces, public testing::WithParamInterface<UnchangedChoice> {};

/** The entries that make up what is chosen. */
std::string ChoiceText(LexObj field) {
    return Text(At(field, "Opt")) + " " + Text(At(field, "V")) + " " + Text(At(field, "DV"));
}

TEST_P(ChoiceWrittenBack, IsWhatItWas) {
    for (const char *type : {"/FT /Ch /T (a) ", "/FT /Ch /Ff 393216 /T (a) "}) {
        const TestDoc doc(Widgets({std::string(type) + GetParam().entries}));
        const DMAnnot annot = AnnotOf(doc, "a");
        const std::string before = ChoiceText(DMAnnotGetLexObj(annot));
        TSWidgetData *data = WListBox_AcquireData(annot);
        WListBox_WriteData(annot, data);
        WListBox_ReleaseData(data);
        EXPECT_EQ(ChoiceText(DMAnnotGetLexObj(annot)), before);
    }
}

INSTANTIATE_TEST_SUITE_P(All, ChoiceWrittenBack,
                         testing::Values(UnchangedChoice{"EmptyText", "/Opt [[(1) (one)] [(2) ()]] /V (2)"},
                                         UnchangedChoice{"EmptyPair", "/Opt [[() ()] [() (Choose)] (x)] /V (x)"},
                                         UnchangedChoice{"NoDefault", "/Opt [(x) (y)]"},
                                         UnchangedChoice{"ForeignDefault", "/Opt [(x) (y)] /V (x) /DV (z)"},
                                         UnchangedChoice{"SeveralValues", "/Opt [(x) (y)] /V [(x) (y)] /DV [(y) (x)]"}),
                         [](const auto &info) { return std::string(info.param.what); });

/** A handler that is asked for the appearance without being given a value shows the field's. */
TEST_F(Faces, WithoutAValueTheFieldsOwnIsShown) {
    const std::string states = "/AP << /N << /On 8 0 R /Off 8 0 R >> >> /V /On /AS /Off ";
    const TestDoc doc(Widgets({"/FT /Tx /T (a) /V (own)", "/FT /Ch /Ff 131072 /T (b) /Opt [[(1) (own)]] /V (1)",
                               "/FT /Btn /T (c) " + states, "/FT /Btn /Ff 32768 /T (d) " + states},
                              {"f"}));
    for (const char *name : {"a", "b", "c", "d"}) {
        const DMAnnot annot = AnnotOf(doc, name);
        SCWidgetHandler *handler = TSSCAppGetWidgetHandlerByName(TSDMWidgetGetSubType(annot));
        handler->WriteAppearance(handler, annot, KRAtomNull, nullptr, /*forced*/ true);
        if (name[0] < 'c')
            EXPECT_PRED2(Has, FaceText(annot), "(own) Tj");
        else
            EXPECT_EQ(TSDMAnnotGetState(annot), On_K) << name;
    }
}

TEST_F(Faces, LongListsAreDrawnWhereTheSelectionIs) {
    std::string options = "/Opt [";
    for (int i = 0; i < 100000; ++i) options += "[(" + std::to_string(i) + ") (item)] ";
    const TestDoc doc(Widgets({"/FT /Ch /T (a) " + options + "]"}));
    Show(doc, "a", "0");
    Show(doc, "a", "99999");
    EXPECT_TRUE(Has(FaceText(AnnotOf(doc, "a")), "(item) Tj"));
}

TEST_F(Faces, AButtonWritesItsFacesByItsHighlight) {
    const std::string button = "/FT /Btn /Ff 65536 /MK << /CA (Go) /BG [.75] >> ";
    const TestDoc doc(Widgets(
        {button + "/T (a) /AP << /D 9 0 R /R 9 0 R >>", button + "/T (b) /H /P",
         "/FT /Btn /Ff 65536 /T (c) /H /P /BS << /W 2 /S /B >> /MK << /CA (Go) /AC (Down) /RC (Over) /I 9 0 R /TP 4 >>",
         "/FT /Btn /Ff 65536 /T (d)", "/FT /Btn /Ff 65536 /T (e) /AP << /N 9 0 R >>"},
        {"0 0 20 20 re f"}));
    for (const char *name : {"a", "b", "c", "d", "e"}) TSDMFieldUpdateAppearance(FieldOf(doc, name));
    const std::string caption = "BT /Helv1 10 Tf 0 g 1 0 0 1 93.33 6.29 Tm (Go) Tj ET Q";
    EXPECT_EQ(FaceText(AnnotOf(doc, "a")), "0.75 g 0 0 200 20 re f q 1 1 198 18 re W n " + caption);
    EXPECT_EQ(FaceText(AnnotOf(doc, "a"), FaceDown_K), "null");
    EXPECT_EQ(FaceText(AnnotOf(doc, "a"), FaceRollOver_K), "null");
    // Pressed: darker, and the same content moved by the border's width.
    EXPECT_EQ(FaceText(AnnotOf(doc, "b"), FaceDown_K),
              "0.499 g 0 0 200 20 re f q 1 1 198 18 re W n 1 0 0 1 1 -1 cm " + caption);
    EXPECT_EQ(FaceText(AnnotOf(doc, "b"), FaceRollOver_K), "null");
    const DMAnnot c = AnnotOf(doc, "c");
    EXPECT_TRUE(Has(FaceText(c), "/FRM Do Q BT") && Has(FaceText(c), "(Go) Tj"));
    EXPECT_TRUE(Has(FaceText(c, FaceDown_K), "q 4 4 192 12 re W n 1 0 0 1 2 -2 cm q")) << FaceText(c, FaceDown_K);
    EXPECT_TRUE(Has(FaceText(c, FaceDown_K), "(Down) Tj"));
    EXPECT_TRUE(Has(FaceText(c, FaceRollOver_K), "(Over) Tj"));
    EXPECT_TRUE(LexDictKnown(At(FaceOf(c, FaceNormal_K), "Resources/XObject"), FRM_K));
    // A button that had nothing stays native by its new dictionary; a foreign face is left alone.
    EXPECT_EQ(FaceText(AnnotOf(doc, "d")), "q 1 1 198 18 re W n Q");
    EXPECT_TRUE(TSDMWidgetIsNative(AnnotOf(doc, "d"), nullptr));
    EXPECT_EQ(FaceText(AnnotOf(doc, "e")), "0 0 20 20 re f");
}

TEST_F(Faces, CheckBoxesHaveFourFaces) {
    const std::string box = "/Rect [0 0 20 20] /FT /Btn /DA (/ZaDb 10 Tf 0 g) ";
    const TestDoc doc(Widgets({box + "/T (a) /MK << /CA (8) /BG [1] >> /AP << /N << /Yes 6 0 R >> /R 6 0 R >>",
                               box + "/T (b) /MK << /CA (4) >> /BS << /S /B >>"},
                              {"f"}));
    TSDMFieldUpdateAppearance(FieldOf(doc, "a"));
    const DMAnnot a = AnnotOf(doc, "a");
    const std::string mark = "BT /ZaDb 10 Tf 0 g 1 0 0 1 6.615 6.55 Tm (8) Tj ET Q";
    EXPECT_EQ(FaceText(a, FaceNormal_K, "Yes"), "1 g 0 0 20 20 re f q 1 1 18 18 re W n " + mark);
    EXPECT_EQ(FaceText(a, FaceNormal_K, "Off"), "1 g 0 0 20 20 re f");
    EXPECT_EQ(FaceText(a, FaceDown_K, "Yes"), "0.749 g 0 0 20 20 re f q 1 1 18 18 re W n " + mark);
    EXPECT_EQ(FaceText(a, FaceDown_K, "Off"), "0.749 g 0 0 20 20 re f");
    EXPECT_EQ(FaceText(a, FaceRollOver_K), "null");
    EXPECT_EQ(TSDMAnnotGetState(a), Off_K);
    EXPECT_EQ(Text(At(FaceOf(a, FaceNormal_K, "Yes"), "Resources/Font")), "<< /ZaDb R >>");

    // A beveled mark moves when it is pressed, in its down face only. Without an appearance the key is the default.
    TSDMFieldUpdateAppearance(FieldOf(doc, "b"));
    const DMAnnot b = AnnotOf(doc, "b");
    const char *key = KRAtomGetString(WButtonGetOnKeyEx(b));
    EXPECT_STREQ(key, "Yes");
    EXPECT_TRUE(Has(FaceText(b, FaceDown_K, key), "q 2 2 16 16 re W n 1 0 0 1 1 -1 cm BT"));
    EXPECT_FALSE(Has(FaceText(b, FaceNormal_K, key), "1 0 0 1 1 -1 cm"));
}

/** What a form's own request for appearances does to a widget of each kind. */
struct AskedFor {
    const char *what;
    const char *entries;
    /** Part of the normal face afterwards; "null" for none. `{}` is the picture that the widget came with. */
    const char *face;
    const char *state;
};
class AppearancesAskedFor : public Faces, public testing::WithParamInterface<AskedFor> {};

TEST_P(AppearancesAskedFor, KeepWhatCanServeAndChangeNoValue) {
    const TestDoc doc(Widgets({std::string("/T (a) /Rect [0 0 20 20] ") + GetParam().entries},
                              {"0 0 5 5 re f % art", " \n "}, "/NeedAppearances true"));
    const DMAnnot annot = DMAnnotFromLexObj(doc.At("Pages/Kids/0/Annots/0"));
    const std::string state = GetParam().state;
    EXPECT_FALSE(LexDictKnown(doc.At("Tessella"), docID_K));
    EXPECT_PRED2(Has, FaceText(annot, FaceNormal_K, state.empty() ? nullptr : state.c_str()), GetParam().face);
    EXPECT_EQ(LexDictKnown(DMAnnotGetLexObj(annot), value_K),
              std::string(GetParam().entries).find("/V ") != std::string::npos);
    EXPECT_EQ(TSDMAnnotGetState(annot), state.empty() ? KRAtomNull : Atom(state));
}

INSTANTIATE_TEST_SUITE_P(
    All, AppearancesAskedFor,
    testing::Values(
        AskedFor{"CheckBoxWithArtwork", "/FT /Btn /V /Yes /AS /Off /MK << /CA (8) >> /AP << /N << /Yes 5 0 R >> >>",
                 "% art", "Yes"},
        AskedFor{"RadioWithArtwork", "/FT /Btn /Ff 32768 /V /B /MK << >> /AP << /N << /A 5 0 R /Off 5 0 R >> >>",
                 "% art", "Off"},
        AskedFor{"CheckBoxWithNone", "/FT /Btn /V /Yes /DA (/ZaDb 0 Tf 0 g)", "/ZaDb 18.9", "Yes"},
        AskedFor{"CheckBoxWithSmallFormText", "/FT /Btn /V /Yes", "/ZaDb 18.9", "Yes"},
        AskedFor{"CheckBoxWithTooLargeText", "/FT /Btn /V /Yes /DA (/ZaDb 90 Tf 0 g)", "/ZaDb 18.9", "Yes"},
        AskedFor{"CheckBoxWithEmptyArtwork", "/FT /Btn /V /Yes /AP << /N << /Yes 6 0 R >> >>", "(4) Tj", "Yes"},
        AskedFor{"CheckBoxWithBrokenArtwork", "/FT /Btn /V /Yes /AP << /N << /Yes 99 0 R /Off 5 0 R >> >>", "(4) Tj",
                 "Yes"},
        AskedFor{"PushButtonWithArtwork", "/FT /Btn /Ff 65536 /MK << /CA (x) >> /AP << /N 5 0 R >>", "% art", ""},
        AskedFor{"PushButtonWithNone", "/FT /Btn /Ff 65536 /MK << /CA (x) >>", "(x) Tj", ""},
        AskedFor{"SignedWithArtwork", "/FT /Sig /V << /Contents (x) >> /MK << >> /AP << /N 5 0 R >>", "% art", ""},
        AskedFor{"UnsignedSignature", "/FT /Sig /MK << >>", "null", ""},
        AskedFor{"ChoiceWithoutValue", "/FT /Ch /Ff 131072 /Opt [(first)]", "null", ""},
        AskedFor{"ListWithoutValue", "/FT /Ch /Opt [(first)]", "0 g 1 0 0 1 1 21.07 Tm 1 -11.5601 Td (first) Tj", ""},
        AskedFor{"TextWithADefault", "/FT /Tx /DV (default)", "null", ""}),
    [](const auto &info) { return std::string(info.param.what); });

TEST_F(Faces, RadioButtonsWithACircleAreRound) {
    const std::string radio = "/Rect [0 0 20 20] /FT /Btn /Ff 49152 /AP << /N << /A 6 0 R >> >> ";
    const TestDoc doc(
        Widgets({radio + "/T (a) /MK << /CA (l) /BC [0] >>", radio + "/T (b) /MK << /CA (n) /BC [0] >>"}, {"f"}));
    TSDMFieldUpdateAppearance(FieldOf(doc, "a"));
    TSDMFieldUpdateAppearance(FieldOf(doc, "b"));
    const std::string on = FaceText(AnnotOf(doc, "a"), FaceNormal_K, "A");
    // The frame's radius is half the side less half the border; the disc's half of what the border leaves.
    EXPECT_TRUE(Has(on, "0 G 1 w q 1 0 0 1 10 10 cm 9.5 0 m")) << on;
    EXPECT_TRUE(Has(on, "s Q q 1 1 18 18 re W n 0 g q 1 0 0 1 10 10 cm 4.5 0 m")) << on;
    EXPECT_FALSE(Has(on, "BT"));
    EXPECT_FALSE(LexDictKnown(At(FaceOf(AnnotOf(doc, "a"), FaceNormal_K, "A"), "Resources"), Font_K));
    EXPECT_TRUE(Has(FaceText(AnnotOf(doc, "a"), FaceDown_K, "A"), "0 g q 1 0 0 1 10 10 cm 4.5 0 m"));
    EXPECT_TRUE(Has(FaceText(AnnotOf(doc, "b"), FaceNormal_K, "A"), "0.5 0.5 19 19 re s"));
}

/** A copy whose look is made anew, of a check box without `MK`, also where appearances are delayed. */
TEST_F(Faces, AFreshCopyOfACheckBoxIsDrawnAndKeepsNoNote) {
    for (const char *flags : {"", "/Ff 8 "}) {
        const TestDoc doc(
            Widgets({std::string("/FT /Btn /T (a) /AP << /N << /Ja 5 0 R /Off 5 0 R >> >> ") + flags}, {"f"}));
        const LexObj target = NewWidget(doc);
        ASSERT_TRUE(TSLexDictCopyField(target, FieldOf(doc, "a"), "copy", /*fresh*/ true, /*noActions*/ false));
        EXPECT_PRED2(Has, FaceText(DMAnnotFromLexObj(target), FaceNormal_K, "Ja"), "(4) Tj") << flags;
        EXPECT_FALSE(LexDictKnown(target, TempOn_K)) << flags;
    }
}

TEST_F(Faces, TogglingFollowsTheFlags) {
    const std::string states = "/AP << /N << /On 7 0 R /Off 7 0 R >> >> ";
    const TestDoc doc(Widgets(
        {"/FT /Btn /T (check) " + states, "/FT /Btn /T (radio) /Ff 49152 " + states, "/FT /Btn /T (none) /V (On)"},
        {"f"}));
    const auto toggled = [&](const char *name) {
        WButtonToggle(AnnotOf(doc, name));
        return Text(TSDMFieldGetValue(FieldOf(doc, name)));
    };
    EXPECT_EQ(toggled("check"), "/On");
    EXPECT_EQ(TSDMAnnotGetState(AnnotOf(doc, "check")), On_K);
    EXPECT_EQ(toggled("check"), "/Off");
    EXPECT_EQ(TSDMAnnotGetState(AnnotOf(doc, "check")), Off_K);
    EXPECT_EQ(toggled("radio"), "/On");
    EXPECT_EQ(toggled("radio"), "/On");
    EXPECT_EQ(toggled("none"), "On");
    // Space, return and line feed press; other keys do not.
    SCWidgetHandler *handler = TSSCAppGetWidgetHandlerByName(CheckBox_K);
    handler->DoKeyDown(handler, AnnotOf(doc, "check"), 'x', 0);
    EXPECT_EQ(Text(TSDMFieldGetValue(FieldOf(doc, "check"))), "/Off");
    handler->DoKeyDown(handler, AnnotOf(doc, "check"), '\n', 0);
    EXPECT_EQ(Text(TSDMFieldGetValue(FieldOf(doc, "check"))), "/On");
}

TEST_F(Faces, ToggleDataIsWrittenBack) {
    const TestDoc doc(Widgets({"/FT /Btn /T (a) /V /Yes /AS /Yes /MK << /CA (4) /AC (x) >> /AP << /N << /Yes 5 0 R >> "
                               "/D << /Yes 5 0 R >> >>"},
                              {"f"}));
    const DMAnnot annot = AnnotOf(doc, "a");
    TSWidgetData *data = WCheckBox_AcquireData(annot);
    auto *toggle = static_cast<TSToggleData *>(data->extension);
    EXPECT_STREQ(data->value, "Yes");
    EXPECT_EQ(toggle->caption, "4");
    EXPECT_EQ(KRAtomGetString(toggle->onKey), std::string("Yes"));
    EXPECT_FALSE(toggle->isDefault);
    toggle->caption = "l";
    toggle->onKey = Atom("Agreed");
    toggle->isDefault = true;
    KRfree(data->value);
    data->value = miCopyStrImpl("Agreed");
    WCheckBox_WriteData(annot, data);
    WCheckBox_ReleaseData(data);
    const LexObj dict = DMAnnotGetLexObj(annot);
    EXPECT_EQ(Text(TSDMFieldGetValue(FieldOf(doc, "a"))), "/Agreed");
    EXPECT_EQ(Text(At(dict, "DV")), "/Agreed");
    EXPECT_EQ(Text(At(dict, "AS")), "/Agreed");
    EXPECT_EQ(Text(At(dict, "H")), "/T");
    EXPECT_FALSE(LexDictKnown(dict, TempOn_K) || LexDictKnown(At(dict, "MK"), AltCaption_K));
    // One on state: the old key's faces are gone.
    for (const KRAtom mode : {FaceNormal_K, FaceDown_K})
        EXPECT_FALSE(LexDictKnown(FaceOf(annot, mode), Atom("Yes"))) << mode;
    EXPECT_TRUE(Has(FaceText(annot, FaceNormal_K, "Agreed"), "(l) Tj"));

    data = WCheckBox_AcquireData(annot);
    static_cast<TSToggleData *>(data->extension)->isDefault = false;
    WCheckBox_WriteData(annot, data);
    WCheckBox_ReleaseData(data);
    EXPECT_FALSE(LexDictKnown(dict, default_K));
}

TEST_F(Faces, ButtonDataIsWrittenBack) {
    const TestDoc doc(Widgets(
        {
            "/FT /Btn /Ff 65536 /T (a) /H /P /MK << /CA (Go) /IX 5 0 R /TP 2 >>",
        },
        {"f"}));
    const DMAnnot annot = AnnotOf(doc, "a");
    TSWidgetData *data = WButton_AcquireData(annot);
    auto *button = static_cast<TSButtonData *>(data->extension);
    EXPECT_EQ(button->highlight, Push_K);
    EXPECT_EQ(button->captions[WButtonNormal], "Go");
    EXPECT_EQ(LexObjGetType(button->icons[WButtonDown]), LexStream);
    button->captions[WButtonRollover] = "\xC3\xA4";
    button->icons[WButtonDown] = LexNullObj;
    button->layout = 0;
    button->highlight = Invert_K;
    WButton_WriteData(annot, data);
    WButton_ReleaseData(data);
    const LexObj mk = At(DMAnnotGetLexObj(annot), "MK");
    EXPECT_EQ(Text(At(mk, "RC")), "\xE4");
    EXPECT_FALSE(LexDictKnown(mk, AltIcon_K) || LexDictKnown(mk, Position_K));
    EXPECT_FALSE(LexDictKnown(DMAnnotGetLexObj(annot), Highlight_K));
    EXPECT_TRUE(Has(FaceText(annot), "(Go) Tj"));
}

TEST_F(Faces, TextDataIsComparedCutAndWrittenBack) {
    const TestDoc doc(
        Widgets({"/FT /Tx /T (a) /MaxLen 5 /Ff 4096 /V (value) /DV (d\\re)", "/FT /Tx /T (b) /Q 1", "/FT /Ch /T (c)"}));
    const DMAnnot annot = AnnotOf(doc, "a");
    TSWidgetData *data = WText_AcquireData(annot), *other = WText_AcquireData(AnnotOf(doc, "b")),
                 *list = WListBox_AcquireData(AnnotOf(doc, "c"));
    auto *text = static_cast<TSTextData *>(data->extension);
    EXPECT_TRUE(text->multiLine && !text->password && text->maxLength == 5);
    EXPECT_EQ(text->defaultValue, "d\re");
    EXPECT_STREQ(data->value, "value");
    SCWidgetHandler *handler = TSSCAppGetWidgetHandlerByName(Text_K);
    handler->CompareData(handler, data, other);
    EXPECT_EQ(text->changed, TSTextDefault | TSTextMultiLine | TSTextMaxLength | TSTextJustification);
    handler->CompareData(handler, data, list);
    EXPECT_EQ(text->changed, TSTextAll);

    // Characters count, not bytes.
    data->mixed = text->changed = 0;
    text->maxLength = 3;
    text->multiLine = false;
    text->password = true;
    text->justification = 2;
    text->defaultValue = "\xC3\xA4\xC3\xB6\xC3\xBC\xC3\x9F";
    WText_WriteData(annot, data);
    const LexObj dict = DMAnnotGetLexObj(annot);
    EXPECT_EQ(Text(At(dict, "DV")), "\xE4\xF6\xFC");
    EXPECT_EQ(Text(At(dict, "V")), "val");
    EXPECT_EQ(LexIntegerValue(At(dict, "Ff")), 8192);
    EXPECT_EQ(LexIntegerValue(At(dict, "Q")), 2);
    EXPECT_TRUE(Has(FaceText(annot), "(***) Tj"));
    for (TSWidgetData *each : {data, other}) WText_ReleaseData(each);
    WListBox_ReleaseData(list);
}

TEST_F(Faces, ChoiceDataIsWrittenBack) {
    const TestDoc doc(Widgets({"/FT /Ch /T (a) /Opt [[(1) (one)] [(2) (two)]] /V (1) /DV (2) /TI 1",
                               "/FT /Ch /T (b) /Ff 131072 /Opt [[(1) (one)] (two)]"}));
    TSWidgetData *data = WListBox_AcquireData(AnnotOf(doc, "a"));
    auto *choice = static_cast<TSChoiceData *>(data->extension);
    EXPECT_TRUE(choice->defaultIndex == 1 && choice->topIndex == 1 && !choice->sort);
    choice->sort = true;
    choice->defaultIndex = 0;
    choice->topIndex = 0;
    choice->choices.values[1] = "second";
    WListBox_WriteData(AnnotOf(doc, "a"), data);
    WListBox_ReleaseData(data);
    const LexObj dict = DMAnnotGetLexObj(AnnotOf(doc, "a"));
    EXPECT_EQ(Text(At(dict, "DV")), "1");
    EXPECT_FALSE(LexDictKnown(dict, topIndex_K));
    EXPECT_EQ(LexIntegerValue(At(dict, "Ff")), TSFieldSorted);
    EXPECT_EQ(Text(LexArrayGet(LexArrayGet(At(dict, "Opt"), 1), 1)), "second");
    EXPECT_TRUE(Has(FaceText(AnnotOf(doc, "a")), "(second) Tj"));

    // A combo box shows the name of its export value.
    Show(doc, "b", "1");
    EXPECT_TRUE(Has(FaceText(AnnotOf(doc, "b")), "(one) Tj"));
    data = WComboBox_AcquireData(AnnotOf(doc, "b"));
    static_cast<TSChoiceData *>(data->extension)->editable = true;
    WComboBox_WriteData(AnnotOf(doc, "b"), data);
    WComboBox_ReleaseData(data);
    EXPECT_EQ(TSDMFieldGetFlags(FieldOf(doc, "b"), TSFieldWord), TSFieldCombo | TSFieldComboEdit);
    EXPECT_EQ(Text(TSDMFieldGetValue(FieldOf(doc, "b"))), "1");
}

// The sanitizer of the test build finds what would be left behind.
TEST_F(Faces, AValueThatCannotBeReadEndsAnAcquireCleanly) {
    auto objects = Widgets({"/FT /Tx /T (a) /V 7 0 R", "/FT /Ch /T (b) /V 7 0 R", "/FT /Btn /T (c) /V 7 0 R"});
    objects.push_back("<< /Filter /FlateDecode /Length 4 >> stream\nxxxx\nendstream");
    const TestDoc doc(objects);
    EXPECT_EQ(Protect([&] { WText_AcquireData(AnnotOf(doc, "a")); }), KRErrBadStream);
    EXPECT_EQ(Protect([&] { WListBox_AcquireData(AnnotOf(doc, "b")); }), KRErrBadStream);
    EXPECT_EQ(Protect([&] { WRadioButton_AcquireData(AnnotOf(doc, "c")); }), KRErrBadStream);
}

} // namespace
