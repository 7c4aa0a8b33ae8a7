// The data of widgets: what is read from and written to the annotation, `MK` and the field.
// SPDX-License-Identifier: MIT
#include "widgets/DMWidget.h"

#include <cstring>

#include "Common/src/miUtils.h"
#include "KRErrors.h"
#include "model/DocData.h"
#include "model/LexField.h"
#include "model/WidgetType.h"
#include "model/miAction.h"
#include "model/miCalc.h"
#include "objects/ColorUtl.h"
#include "tests/forms/FormsFixture.h"

namespace {

using WidgetData = BuiltInWidgets;
using DataPtr = TSWidgetDataPtr;

LexObj DictOf(const TestDoc &doc, const char *field) {
    return TSDMFieldGetLexObj(FieldOf(doc, field));
}

/** Style and width, the dashes behind them, and whether there is a border. */
std::string BorderOf(DMAnnot annot) {
    TSBorder border;
    const bool has = TSDMWidgetGetBorder(annot, &border);
    std::string text = std::to_string(border.style) + ' ' + std::to_string(border.width);
    for (std::int32_t i = 0; i < border.dashCount; ++i) text += " [" + std::to_string(border.dashes[i] >> 16) + ']';
    return text + (has ? "" : " none");
}

TEST_F(WidgetData, AWidgetIsNativeByItsMakerDictionaryOrByLackOfAnAppearance) {
    const TestDoc doc(
        FormObjects({"/FT /Tx /T (bare)", "/FT /Tx /T (mk) /MK << >> /AP << >>", "/FT /Tx /T (ap) /AP << >>"}));
    LexObj mk;
    EXPECT_TRUE(TSDMWidgetIsNative(AnnotOf(doc, "bare"), &mk));
    EXPECT_EQ(LexObjGetType(mk), LexNull);
    EXPECT_TRUE(TSDMWidgetIsNative(AnnotOf(doc, "mk"), &mk));
    EXPECT_EQ(LexObjGetType(mk), LexDict);
    EXPECT_FALSE(TSDMWidgetIsNative(AnnotOf(doc, "ap"), nullptr));
}

TEST_F(WidgetData, AStretchedWidgetTellsItsOriginalRectangle) {
    const TestDoc doc(FormObjects({"/FT /Tx /T (a) /OH 10", "/FT /Tx /T (b) /OH -3", "/FT /Tx /T (c) /OH 20"}));
    KRFixedRect rect;
    TSDMWidgetGetRect(AnnotOf(doc, "a"), &rect); // 200 by 20 now
    EXPECT_EQ(RectText(rect), "100 700 200 710");
    EXPECT_EQ(TSDMWidgetGetTextSize(AnnotOf(doc, "a"), Pt(6)), Pt(12));
    EXPECT_EQ(TSDMWidgetGetTextSize(AnnotOf(doc, "a"), Pt(0.5)), Pt(0.5));
    for (const char *name : {"b", "c"}) {
        TSDMWidgetGetRect(AnnotOf(doc, name), &rect);
        EXPECT_EQ(RectText(rect), "100 700 300 720");
        EXPECT_EQ(TSDMWidgetGetTextSize(AnnotOf(doc, name), Pt(6)), Pt(6));
    }
}

TEST_F(WidgetData, BordersAreReadFromEitherKey) {
    const char *const cases[][2] = {
        {"", "0 1 none"},
        {"/BS << >>", "0 1"},
        {"/BS << /S /D /W 3 /D [5 2] >>", "1 3 [3]"},
        {"/BS << /S /D >>", "1 1"},
        {"/BS << /S /B /W 0 >>", "2 0 none"},
        {"/BS << /S /I >>", "3 1"},
        {"/BS << /S /U >> /Border [0 0 9]", "4 1"},
        {"/BS << /S /X /W (a) >>", "0 1"},
        {"/BS << /W 99999999999 >>", "0 32767"},
        {"/BS << /W 1.5 >>", "0 2"},
        {"/BS 5 /Border [0 0 2]", "0 2"},
        {"/Border [0 0 0]", "0 0"},
        {"/Border [0 0 1 [2 1]]", "1 1 [3]"},
        {"/Border [0]", "0 1"},
        {"/Border /None", "0 1 none"},
    };
    for (const auto &c : cases) {
        const TestDoc doc(FormObjects({std::string("/FT /Tx /T (a) ") + c[0]}));
        EXPECT_EQ(BorderOf(AnnotOf(doc, "a")), c[1]) << c[0];
    }
}

TEST_F(WidgetData, TheDefaultBorderIsWrittenByRemovingIt) {
    const TestDoc doc(FormObjects({"/FT /Tx /T (a) /Border [0 0 5]", "/FT /Tx /T (b) /BS << /W 2 /S /D /D [1] >>"}));
    const DMAnnot a = AnnotOf(doc, "a"), b = AnnotOf(doc, "b");
    TSBorder wide = TSBorderDefault();
    wide.width = 5;
    // The same border, but in the key that goes.
    TSDMWidgetSetBorder(a, &wide);
    EXPECT_EQ(BorderOf(a), "0 5");
    EXPECT_FALSE(LexDictKnown(DictOf(doc, "a"), Border_K));
    TSDMWidgetSetBorder(a, nullptr);
    EXPECT_FALSE(LexDictKnown(DictOf(doc, "a"), BorderStyle_K));

    LexDictPut(DictOf(doc, "a"), Border_K, LexNewArray(doc.lex, false, 1));
    LexArrayPut(At(DictOf(doc, "a"), "Border"), 2, LexNewInteger(doc.lex, false, 4));
    FieldOf(doc, "a")->state &= ~DMFieldDisplayDue;
    TSDMWidgetSetBorder(a, nullptr);
    EXPECT_EQ(BorderOf(a), "0 1 none");
    EXPECT_TRUE(TSDMFieldWasAppearanceUpdated(FieldOf(doc, "a")));

    wide.style = TSBorderInset;
    TSDMWidgetSetBorder(b, &wide);
    EXPECT_EQ(BorderOf(b), "3 5");
    EXPECT_FALSE(LexDictKnown(At(DictOf(doc, "b"), "BS"), DashArray_K));
}

TEST_F(WidgetData, MakerEntriesComeAndGo) {
    const TestDoc doc(
        FormObjects({"/FT /Btn /T (a) /Ff 65536", "/FT /Tx /T (b) /MK << /BC [1 0 0] /BG [.5] /R 90 >>"}));
    const DMAnnot a = AnnotOf(doc, "a"), b = AnnotOf(doc, "b");
    TSDMWidgetSetString(a, Caption_K, "");
    EXPECT_FALSE(LexDictKnown(DictOf(doc, "a"), MakerDict_K));
    TSDMWidgetSetString(a, Caption_K, "Go");
    EXPECT_TRUE(TSDMFieldWasAppearanceUpdated(FieldOf(doc, "a")));
    char text[8];
    TSDMWidgetGetString(a, Caption_K, text, sizeof text);
    EXPECT_STREQ(text, "Go");
    TSDMWidgetSetInt(a, Position_K, 3);
    EXPECT_EQ(TSDMWidgetGetInt(a, Position_K), 3);
    EXPECT_EQ(TSDMWidgetGetInt(a, Caption_K), 0);
    TSDMWidgetSetString(a, Caption_K, nullptr);
    EXPECT_FALSE(LexDictKnown(At(DictOf(doc, "a"), "MK"), Caption_K));

    DMColorValue border, back;
    TSDMWidgetGetAreaColors(b, &border, &back);
    EXPECT_EQ(border.space, TSColorRGB);
    EXPECT_EQ(back.value[0], Pt(0.5));
    EXPECT_EQ(TSDMWidgetGetRotation(b), 90);
    TSDMColorValueSet(&border, TSColorTransparent);
    TSDMWidgetSetAreaColors(b, &border, nullptr);
    TSDMWidgetGetAreaColors(b, &border, &back);
    EXPECT_EQ(border.space, TSColorTransparent);
    EXPECT_EQ(back.space, TSColorGray);
}

TEST_F(WidgetData, IconFitsAreWrittenWhereTheyDiffer) {
    const TestDoc doc(FormObjects({"/FT /Btn /T (a) /Ff 65536", "/FT /Btn /T (b) /Ff 65536 /AP << >>",
                                   "/FT /Btn /T (c) /Ff 65536 /MK << /IF << /SW /B /S /A /A [0 1.0] >> >>",
                                   "/FT /Btn /T (d) /Ff 65536 /MK << /IF << /SW 1 /A [0] >> >>"}));
    TSFit fit;
    TSDMAnnotGetFit(AnnotOf(doc, "c"), &fit);
    EXPECT_TRUE(fit.when == TooBig_K && fit.how == Anamorphic_K && fit.alignX == 0 && fit.alignY == KRFixedOne);
    TSDMAnnotSetFit(AnnotOf(doc, "b"), &fit); // not native
    EXPECT_FALSE(LexDictKnown(DictOf(doc, "b"), MakerDict_K));
    TSDMAnnotSetFit(AnnotOf(doc, "a"), &fit);
    const LexObj written = At(DictOf(doc, "a"), "MK/IF");
    EXPECT_EQ(Text(At(written, "SW")), "/B");
    EXPECT_EQ(LexArrayLength(At(written, "A")), 2);
    fit.when = Always_K;
    fit.alignX = fit.alignY = Pt(0.5);
    TSDMAnnotSetFit(AnnotOf(doc, "a"), &fit);
    EXPECT_FALSE(LexDictKnown(written, ScaleWhen_K) || LexDictKnown(written, Align_K));
    TSDMAnnotInitFit(&fit);
    TSDMAnnotSetFit(AnnotOf(doc, "a"), &fit);
    EXPECT_FALSE(LexDictKnown(At(DictOf(doc, "a"), "MK"), IF_K));
    TSDMAnnotGetFit(AnnotOf(doc, "d"), &fit);
    EXPECT_TRUE(fit.when == Always_K && fit.alignX == Pt(0.5));
}

TEST_F(WidgetData, ChoicesLeaveOutWhatIsNone) {
    const TestDoc doc(
        FormObjects({"/FT /Ch /T (a) /Opt [(one) [(2) (two)] [(x) (y) (z)] () << >> [[] (three)] [null (four)] 5]",
                     "/FT /Ch /T (b) /Opt (one)"}));
    TSChoices choices;
    TSDMWidgetAcquireChoices(AnnotOf(doc, "a"), &choices);
    EXPECT_EQ(choices.values, (std::vector<std::string>{"one", "two", "three", "four", "5"}));
    ASSERT_EQ(choices.exports.size(), 5U);
    EXPECT_EQ(choices.exports[0], std::nullopt);
    EXPECT_EQ(choices.exports[1], "2");
    EXPECT_EQ(choices.exports[3], std::nullopt);
    EXPECT_EQ(TSDMWidgetGetChoiceIndex(choices, "three", -1), 2);
    EXPECT_EQ(TSDMWidgetGetChoiceIndex(choices, "2", -1), -1);
    EXPECT_EQ(TSDMWidgetGetChoiceIndex(choices, nullptr, -1), -1);
    TSDMWidgetWriteChoices(AnnotOf(doc, "b"), choices);
    EXPECT_EQ(Text(LexArrayGet(At(DictOf(doc, "b"), "Opt"), 0)), "one");
    EXPECT_EQ(Text(LexArrayGet(LexArrayGet(At(DictOf(doc, "b"), "Opt"), 1), 0)), "2");
    EXPECT_EQ(Text(LexArrayGet(At(DictOf(doc, "b"), "Opt"), 3)), "four");
    TSDMWidgetWriteChoices(AnnotOf(doc, "b"), {});
    EXPECT_FALSE(LexDictKnown(DictOf(doc, "b"), options_K));
}

TEST_F(WidgetData, TheNextOptionFollowsTheValue) {
    const TestDoc doc(
        FormObjects({"/FT /Ch /T (a) /Opt [(x) (y)] /V (x)", "/FT /Ch /T (b) /Opt [(x)] /V (x) /DV (d)"}));
    TSDMWidgetSetNextOption(AnnotOf(doc, "a"));
    EXPECT_EQ(Text(TSDMFieldGetValue(FieldOf(doc, "a"))), "y");
    TSDMWidgetSetNextOption(AnnotOf(doc, "a"));
    EXPECT_EQ(Text(TSDMFieldGetValue(FieldOf(doc, "a"))), "x");
    TSDMWidgetSetNextOption(AnnotOf(doc, "b"));
    EXPECT_EQ(Text(TSDMFieldGetValue(FieldOf(doc, "b"))), "d");
}

TEST_F(WidgetData, ARecordComesFromFieldAndWidget) {
    const TestDoc doc(FormObjects({"/FT /Tx /T (a) /TU (Tip) /F 4 /Ff 3 /Q 2 /DA (1 0 0 rg /TiRo 9 Tf) /OH 10 "
                                   "/BS << /W 2 >> /MK << /BC [0] /BG [0 0 1] /R 270 >>"}));
    const DataPtr data(TSDMWidgetAcquireData(AnnotOf(doc, "a")));
    EXPECT_EQ(data->type, Text_K);
    EXPECT_STREQ(data->title, "a");
    EXPECT_STREQ(EStrGetBytes(data->userName), "Tip");
    EXPECT_EQ(RectText(data->rect), "100 700 200 710");
    EXPECT_EQ(data->annotColor.value[0], KRFixedOne);
    EXPECT_EQ(data->textColor.space, TSColorRGB);
    EXPECT_EQ(data->font, TimesRoman_K);
    EXPECT_EQ(data->textSize, Pt(18));
    EXPECT_EQ(data->annotFlags, DMAnnotPrint);
    EXPECT_EQ(data->fieldFlags, TSFieldReadOnly | TSFieldRequired);
    EXPECT_EQ(data->quadding, 2);
    EXPECT_EQ(data->rotation, 270);
    EXPECT_EQ(data->border.width, 2);

    const DataPtr unbound(TSDMWidgetAcquireData(DMAnnotFromLexObj(NewWidget(doc))));
    EXPECT_EQ(unbound->type, Text_K);
    EXPECT_EQ(unbound->title, nullptr);
    EXPECT_EQ(unbound->backColor.space, TSColorTransparent);
    EXPECT_EQ(unbound->font, Helvetica_K);
    EXPECT_EQ(RectText(unbound->rect), "10 20 30 40");
    EXPECT_EQ(Protect([&] { TSDMWidgetWriteData(AnnotOf(doc, "a"), unbound.get()); }), KRErrBadParam);
}

TEST_F(WidgetData, ComparingMarksWhatDiffers) {
    const TestDoc doc(FormObjects({"/FT /Tx /T (a)"}));
    const struct {
        std::uint32_t bits;
        void (*change)(TSWidgetData &data);
    } cases[] = {
        {0, [](TSWidgetData &) {}},
        {TSMixedTitle, [](TSWidgetData &d) { d.title[0] = 'b'; }},
        {TSMixedBackSeen | TSMixedBackColor, [](TSWidgetData &d) { d.backColor.space = TSColorGray; }},
        {TSMixedBorderSeen | TSMixedBorderColor, [](TSWidgetData &d) { d.borderColor.space = TSColorCMYK; }},
        {TSMixedBorderStyle, [](TSWidgetData &d) { d.border.style = 4; }},
        {TSMixedBorderWidth, [](TSWidgetData &d) { d.border.width = 4; }},
        {TSMixedTextColor, [](TSWidgetData &d) { d.textColor.value[0] = 1; }},
        {TSMixedTextSeen | TSMixedTextColor, [](TSWidgetData &d) { d.textColor.space = TSColorTransparent; }},
        {TSMixedFont, [](TSWidgetData &d) { d.font = Symbol_K; }},
        {TSMixedTextSize, [](TSWidgetData &d) { d.textSize = 1; }},
        {TSMixedReadOnly, [](TSWidgetData &d) { d.fieldFlags ^= TSFieldReadOnly; }},
        {TSMixedRequired, [](TSWidgetData &d) { d.fieldFlags ^= TSFieldRequired; }},
        {TSMixedUserName, [](TSWidgetData &d) { EStrSetBytes(d.userName, "x", EStrHost); }},
        {TSMixedQuadding, [](TSWidgetData &d) { d.quadding = 1; }},
        {TSMixedAnnotFlags, [](TSWidgetData &d) { d.annotFlags ^= DMAnnotNoView; }},
        {0, [](TSWidgetData &d) { d.annotFlags ^= DMAnnotInvisible, d.fieldFlags ^= TSFieldMultiLine; }},
    };
    for (const auto &c : cases) {
        const DataPtr first(TSDMWidgetAcquireData(AnnotOf(doc, "a"))), other(TSDMWidgetAcquireData(AnnotOf(doc, "a")));
        c.change(*other);
        TSDMWidgetCompareData(first.get(), other.get());
        EXPECT_EQ(first->mixed, c.bits | TSMixedType);
    }
}

TEST_F(WidgetData, WritingStoresTheRecord) {
    const TestDoc doc(FormObjects({"/FT /Tx /T (a) /OH 10 /F 64 /Ff 4096"}, "/DA (/Helv 0 Tf 0 g)"));
    const DMAnnot annot = AnnotOf(doc, "a");
    const DataPtr data(TSDMWidgetAcquireData(annot));
    KRfree(data->title);
    data->title = miCopyStrImpl("new.name");
    EStrSetBytes(data->userName, "Tip", EStrHost);
    data->borderColor = {TSColorGray, {}};
    data->border = {TSBorderDashed, 2, 1, {Pt(3)}};
    data->font = CourierBold_K;
    data->textSize = Pt(8);
    data->quadding = 1;
    data->fieldFlags |= TSFieldReadOnly | TSFieldRequired;
    data->annotFlags = DMAnnotPrint | DMAnnotInvisible;
    TSDMWidgetWriteData(annot, data.get());
    EXPECT_EQ(FieldOf(doc, "a"), nullptr);
    const LexObj dict = DictOf(doc, "new.name");
    EXPECT_EQ(Text(At(dict, "TU")), "Tip");
    EXPECT_EQ(Text(At(dict, "DA")), "/CoBo 8 Tf 0 g");
    EXPECT_EQ(BorderOf(annot), "1 2 [3]");
    EXPECT_EQ(LexIntegerValue(At(dict, "F")), 64 | 4);
    EXPECT_EQ(LexIntegerValue(At(dict, "Ff")), 4096 | 3);
    EXPECT_EQ(LexIntegerValue(At(dict, "Q")), 1);
    EXPECT_FALSE(LexDictKnown(dict, origHeight_K));

    // What is marked as mixed stays.
    data->mixed = 0xFFFFFFFF;
    data->quadding = 0;
    data->border.width = 9;
    data->fieldFlags = data->annotFlags = 0;
    data->title[0] = 'x';
    TSDMWidgetWriteData(annot, data.get());
    EXPECT_EQ(LexIntegerValue(At(DictOf(doc, "new.name"), "Q")), 1);
    EXPECT_EQ(BorderOf(annot), "1 2 [3]");
    EXPECT_EQ(LexIntegerValue(At(dict, "Ff")), 4096 | 3);

    data->mixed = ~std::uint32_t{TSMixedType};
    data->type = CheckBox_K;
    TSDMWidgetWriteData(annot, data.get());
    EXPECT_EQ(TSDMWidgetGetSubType(annot), CheckBox_K);
}

TEST_F(WidgetData, ATitleThatWasOnlyReadIsNotARename) {
    // The name is UTF-8 that PDFDocEncoding cannot say.
    const TestDoc doc(FormObjects({"/FT /Tx /T <FEFF0438043C044F>"}));
    const DMAnnot annot = DMAnnotFromLexObj(doc.At("Tessella/Fields/0"));
    const std::string before = TSDMFieldGetName(TSDMAnnotGetField(annot));
    const DataPtr data(TSDMWidgetAcquireData(annot));
    TSDMWidgetWriteData(annot, data.get());
    EXPECT_EQ(TSDMFieldGetName(TSDMAnnotGetField(annot)), before);
}

TEST_F(WidgetData, MakerDictionaryMovesFromTheAppearanceToTheWidget) {
    auto objects = FormObjects({"/FT /Tx /T (a) /AP << /N 5 0 R >>"});
    objects.push_back(
        "<< /Type /XObject /Subtype /Form /BBox [0 0 9 9] /MK << /BG [1] >> /Length 1 >> stream\nf\nendstream");
    const TestDoc doc(objects);
    const DataPtr data(TSDMWidgetAcquireData(AnnotOf(doc, "a")));
    EXPECT_EQ(data->backColor.space, TSColorGray);
    TSDMWidgetWriteData(AnnotOf(doc, "a"), data.get());
    EXPECT_TRUE(LexDictKnown(At(DictOf(doc, "a"), "MK"), Background_K));
    EXPECT_FALSE(LexDictKnown(LexStreamDict(FaceOf(AnnotOf(doc, "a"), FaceNormal_K)), MakerDict_K));
}

TEST_F(WidgetData, ScriptsTellTheirFormat) {
    const EStrPtr none(EStrNewImpl(nullptr, EStrHost)), call(EStrNewImpl("AFNumber_Format(2, 0)", EStrHost)),
        other(EStrNewImpl("event.value = 1", EStrHost)), almost(EStrNewImpl("AFNumber", EStrHost));
    EXPECT_EQ(TSDMWidgetGetScriptFormatType(none.get(), none.get()), General_K);
    EXPECT_STREQ(KRAtomGetString(TSDMWidgetGetScriptFormatType(call.get(), none.get())), "Number_Format");
    EXPECT_EQ(TSDMWidgetGetScriptFormatType(other.get(), none.get()), Custom_K);
    EXPECT_EQ(TSDMWidgetGetScriptFormatType(almost.get(), none.get()), Custom_K);
    EXPECT_EQ(TSDMWidgetGetScriptFormatType(none.get(), other.get()), Custom_K);

    const TestDoc doc(FormObjects({"/FT /Tx /T (a) /AA << /F << /S /JavaScript /JS (AFDate\\(1\\)) >> >>"}));
    const DMAnnot annot = AnnotOf(doc, "a");
    auto data = TSDMWidgetAcquireScriptData(annot);
    EXPECT_STREQ(KRAtomGetString(data->formatType), "Date");
    EStrSetBytes(data->calculate.get(), "event.value = 2", EStrHost);
    EStrSetBytes(data->format.get(), nullptr, EStrHost);
    TSDMWidgetWriteScriptData(annot, data.get());
    data = TSDMWidgetAcquireScriptData(annot);
    EXPECT_STREQ(EStrGetBytes(data->calculate.get()), "event.value = 2");
    EXPECT_EQ(data->formatType, General_K);
    EXPECT_EQ(TSCalcArrayGetNumEntries(TJSGetCalcArray(doc.doc)), 1);
    EStrSetBytes(data->calculate.get(), nullptr, EStrHost);
    TSDMWidgetWriteScriptData(annot, data.get());
    EXPECT_EQ(TSCalcArrayGetNumEntries(TJSGetCalcArray(doc.doc)), 0);
    EXPECT_EQ(TSDMWidgetAcquireScriptData(DMAnnotFromLexObj(NewWidget(doc))), nullptr);
}

TEST_F(WidgetData, ANameWithoutAPlaceIsRefused) {
    const TestDoc doc(FormObjects({"/FT /Tx /T (a)", "/FT /Tx /T (c)", "/FT /Ch /T (d)"}));
    ASSERT_NE(TSLexDictDefineField(NewWidget(doc), "b.c"), nullptr);
    for (const char *name : {"a.x", "b"}) {
        const DataPtr data(TSDMWidgetAcquireData(DMAnnotFromLexObj(doc.At("Pages/Kids/0/Annots/1"))));
        KRfree(data->title);
        data->title = miCopyStrImpl(name);
        EXPECT_EQ(Protect([&] { TSDMWidgetWriteData(DMAnnotFromLexObj(doc.At("Pages/Kids/0/Annots/1")), data.get()); }),
                  KRErrDefineFailed)
            << name;
    }
}

/** What the engine was asked: the text, and whether the field had the action already. */
std::string s_compiled;

TEST_F(WidgetData, ACalculationThatDoesNotCompileIsNotListed) {
    const TestDoc doc(FormObjects({"/FT /Tx /T (a)"}));
    const DMAnnot annot = AnnotOf(doc, "a");
    gDocSeams.compileCalculation = [](DMDoc, DMField *field, EStr *text) {
        s_compiled += std::string(EStrGetBytes(text)) + (TSDMFieldHasAction(field, Calculate_K) ? " late " : " ");
        return std::string(EStrGetBytes(text)) != "(";
    };
    for (const auto &[script, listed] : {std::pair{"(", 0}, {"1", 1}}) {
        auto data = TSDMWidgetAcquireScriptData(annot);
        EStrSetBytes(data->calculate.get(), script, EStrHost);
        TSDMWidgetWriteScriptData(annot, data.get());
        EXPECT_EQ(TSCalcArrayGetNumEntries(TJSGetCalcArray(doc.doc)), listed) << script;
        EXPECT_TRUE(TSDMFieldHasAction(FieldOf(doc, "a"), Calculate_K));
    }
    gDocSeams.compileCalculation = nullptr;
    EXPECT_EQ(s_compiled, "( 1 late ");
}

TEST_F(WidgetData, NamesAreValidated) {
    const TestDoc doc(FormObjects({"/FT /Tx /T (a)", "/FT /Tx /T (b.c)", "/FT /Ch /T (d)"}));
    const DMAnnot a = AnnotOf(doc, "a");
    const auto check = [&](KRAtom type, const char *name) { return TSDMWidgetValidateName(doc.doc, a, type, name); };
    EXPECT_EQ(check(Text_K, "new"), TSValid);
    EXPECT_EQ(check(Text_K, "a"), TSValid);
    EXPECT_EQ(check(ListBox_K, "a"), TSValid); // it is this very widget
    EXPECT_EQ(check(Text_K, "d"), TSNameOfOtherType);
    EXPECT_EQ(check(Text_K, "..."), TSNameEmpty);
    EXPECT_EQ(check(Text_K, nullptr), TSNameEmpty);
    EXPECT_EQ(check(Text_K, "a.x.y"), TSNameBelowField);

    const DataPtr data(TSDMWidgetAcquireData(a));
    KRfree(data->title);
    data->title = miCopyStrImpl("new..");
    const auto size = [&](const char *text) { return TSDMWidgetValidateData(doc.doc, a, data.get(), text); };
    EXPECT_EQ(size("Auto"), TSValid);
    EXPECT_STREQ(data->title, "new");
    EXPECT_EQ(size("4"), TSValid);
    EXPECT_EQ(size("144.5"), TSSizeOutOfRange);
    EXPECT_EQ(size("3"), TSSizeOutOfRange);
    EXPECT_EQ(size("12 pt"), TSSizeOutOfRange);
    EXPECT_EQ(size(""), TSSizeOutOfRange);
}

TEST_F(WidgetData, SmallNumbersOfAField) {
    const TestDoc doc(
        FormObjects({"/FT /Tx /T (a) /MaxLen 100000 /TI -2", "/FT /Ch /T (b) /Opt [(x) [(y) (Y)]] /DV (y)"}));
    DMField *a = FieldOf(doc, "a");
    EXPECT_EQ(TSDMFieldGetMaxLen(a), INT16_MAX);
    TSDMFieldSetMaxLen(a, 0);
    EXPECT_FALSE(LexDictKnown(DictOf(doc, "a"), maxLen_K));
    EXPECT_EQ(TSDMFieldGetMaxLen(nullptr), -1);
    EXPECT_EQ(TSDMFieldGetTopIndex(a), -2);
    TSDMFieldSetTopIndex(a, 0);
    EXPECT_FALSE(LexDictKnown(DictOf(doc, "a"), topIndex_K));
    EXPECT_EQ(TSDMFieldGetDefaultIndex(FieldOf(doc, "b")), 1);
    EXPECT_EQ(TSDMFieldGetDefaultIndex(a), -1);
}

} // namespace
