// Cases on what fields look like: text looks, borders and colours, appearance streams of the plug-in's own.
// SPDX-License-Identifier: MIT
#include "tests/plugin/Observer.h"

#include <cstring>

namespace observer {

namespace {

constexpr DMColorValue s_clear{TSColorTransparent, {}};
constexpr DMColorValue s_black{TSColorGray, {}};
constexpr DMColorValue s_red{TSColorRGB, {KRFixedOne, 0, 0, 0}};
constexpr TSBorder s_thin{TSBorderSolid, 1, 0, {}};

TextAppearance LookOf(DMField *field) {
    TextAppearance look;
    Forms::TSDMFieldGetDefaultTextAppearance(field, &look);
    return look;
}

bool Has(const std::string &text, const char *part) {
    return text.find(part) != std::string::npos;
}

KRFixedRect Box(int width, int height) {
    return {KRFixedFromInt(20), KRFixedFromInt(30 + height), KRFixedFromInt(20 + width), KRFixedFromInt(30)};
}

/** A layout, given up with the object. */
struct Layout {
    Layout(const KRFixedRect &rect, std::uint16_t rotation) : store(Forms::TSLayoutNew(&rect, rotation)) {}
    ~Layout() {
        Forms::TSLayoutDelete(store);
    }
    Layout(const Layout &) = delete;
    Layout &operator=(const Layout &) = delete;
    LexObj Stream() const {
        return Forms::TSLayoutCreateStream(lex, store);
    }
    CStore *store;
};

} // namespace

void Looks() {
    DMField *alpha = FieldOf("alpha");
    const LexObj dict = Forms::TSDMFieldGetLexObj(alpha);
    const TextAppearance inherited = LookOf(alpha);
    CHECK_EQ(KRAtomGetString(inherited.baseFont), "Helvetica");
    CHECK_EQ(KRAtomGetString(inherited.fontResource), "Helv");
    CHECK(inherited.size == 0 && inherited.hScale == KRFixedFromInt(100) && inherited.quadding == 0);

    TextAppearance look = inherited;
    look.size = KRFixedFromInt(10) + 0x8000;
    look.fillColor = {1, {0, 0, KRFixedOne, 0}};
    look.quadding = 1;
    Forms::TSDMFieldSetDefaultTextAppearance(alpha, &look);
    CHECK_EQ(Text(At(dict, "DA")) + " " + Text(At(dict, "Q")), "/Helv 10.5 Tf 0 0 1 rg 1");
    const TextAppearance back = LookOf(alpha);
    CHECK(std::memcmp(&back, &look, sizeof look) == 0);
    // Black is gray, however it was mixed; a look that is inherited anyway is not written.
    look.fillColor = {1, {}};
    Forms::TSDMFieldSetDefaultTextAppearance(alpha, &look);
    CHECK_EQ(Text(At(dict, "DA")), "/Helv 10.5 Tf 0 g");
    CHECK_EQ(look.fillColor.space, 0);
    look = inherited;
    Forms::TSDMFieldSetDefaultTextAppearance(alpha, &look);
    CHECK(!LexDictKnown(dict, Atom("DA")));
    look.baseFont = Atom("Times-Roman");
    Forms::TSDMFieldSetDefaultTextAppearance(alpha, &look);
    CHECK_EQ(KRAtomGetString(look.fontResource), "TiRo");
    CHECK_EQ(Text(At(dict, "DA")), "/TiRo 0 Tf 0 g");
    CHECK_EQ(KRAtomGetString(LookOf(alpha).baseFont), "Times-Roman");

    // A form without a default gets one, and the fields that inherit it show it.
    Forms::TSDMFieldSetDefaultTextAppearance(alpha, nullptr);
    LexDictRemove(At("Tessella"), Atom("DA"));
    const Listener entry(TSFormEntryDidChange), display(TSFieldWillDisplay);
    Heard();
    LookOf(alpha);
    const std::string heard = Heard();
    CHECK(Has(heard, "10 alpha=one, ") && heard.ends_with(", 3 #4"));
    CHECK_EQ(Text(At("Tessella/DA")), "/Helv 0 Tf 0 g ");
}

void UnreadableLooks() {
    DMField *alpha = FieldOf("alpha");
    const LexObj dict = Forms::TSDMFieldGetLexObj(alpha);
    const TextAppearance inherited = LookOf(alpha);
    TextAppearance look = inherited;
    look.size = KRFixedFromInt(9);
    Forms::TSDMFieldSetDefaultTextAppearance(alpha, &look);
    for (int fault = 0; fault < 4; ++fault) {
        TextAppearance bad = inherited;
        if (fault == 0) bad.quadding = 3;
        if (fault == 1) bad.renderMode = 4;
        if (fault == 2) bad.baseFont = KRAtomNull;
        if (fault == 3) bad.size = -1;
        CHECK_RAISES(KRErrBadParam, Forms::TSDMFieldSetDefaultTextAppearance(alpha, &bad));
        CHECK_EQ(Text(At(dict, "DA")), "/Helv 9 Tf 0 g");
    }
    for (const char *text : {"/Helv 12 Tf .5 .5 .5 .5 .5 k", "1 g", "/Helv 12 Tf 0 0 rg", "/Helv 12 Tf 2 0 0 rg"}) {
        LexDictPut(dict, Atom("DA"), Str(text));
        CHECK_RAISES(KRErrBadField, LookOf(alpha));
    }
    // A name that no resource defines keeps its name and is drawn in Helvetica.
    LexDictPut(dict, Atom("DA"), Str("/Odd 12 Tf 1.5 g"));
    look = LookOf(alpha);
    CHECK_EQ(KRAtomGetString(look.fontResource), "Odd");
    CHECK_EQ(KRAtomGetString(look.baseFont), "Helvetica");
    CHECK_EQ(look.fillColor.value[0], KRFixedOne);
    CHECK_EQ(Text(At(dict, "DR/Font/Odd/Name")), "/Odd");
    CHECK(!LexDictKnown(At("Tessella/DR/Font"), Atom("Odd")));
    LexDictPut(At("Tessella"), Atom("DR"), Str("nonsense"));
    Forms::TSDMFieldSetDefaultTextAppearance(alpha, nullptr);
    for (const char *key : {"DA", "DR", "Q"}) CHECK(!LexDictKnown(dict, Atom(key)));
    CHECK_RAISES(KRErrBadResource, LookOf(alpha));
    Forms::TSDMFieldSetDefaultTextAppearance(nullptr, &look);
}

void WidgetFaces() {
    DMField *alpha = FieldOf("alpha");
    const DMAnnot annot = AnnotOf(alpha);
    const LexObj dict = DMAnnotGetLexObj(annot);
    TSBorder border{};
    CHECK(!Forms::TSDMWidgetGetBorder(annot, &border));
    CHECK(border.style == TSBorderSolid && border.width == 1);
    border = {TSBorderDashed, 2, 2, {KRFixedFromInt(5), KRFixedFromInt(2)}};
    Forms::TSDMWidgetSetBorder(annot, &border);
    CHECK_EQ(Text(At(dict, "BS/S")) + Text(At(dict, "BS/W")) + Text(At(dict, "BS/D")), "/D2[3]");
    // Whatever the array holds, dashes of 3 are what there is.
    CHECK(Forms::TSDMWidgetGetBorder(annot, &border));
    CHECK(border.dashCount == 1 && border.dashes[0] == KRFixedFromInt(3) && border.width == 2);
    border = {TSBorderInset, 3, 0, {}};
    Forms::TSDMWidgetSetBorder(annot, &border);
    CHECK_EQ(Text(At(dict, "BS/S")) + Text(At(dict, "BS/D")), "/Inull");
    Forms::TSDMWidgetSetBorder(annot, nullptr);
    CHECK(!LexDictKnown(dict, Atom("BS")) && !LexDictKnown(dict, Atom("Border")));

    DMColorValue edge, inside;
    Forms::TSDMWidgetGetAreaColors(annot, &edge, &inside);
    CHECK(edge.space == TSColorTransparent && inside.space == TSColorTransparent);
    Forms::TSDMWidgetSetAreaColors(annot, &s_red, nullptr);
    const DMColorValue gray{TSColorGray, {0x8000}};
    Forms::TSDMWidgetSetAreaColors(annot, nullptr, &gray);
    CHECK_EQ(Text(At(dict, "MK/BC")) + Text(At(dict, "MK/BG")), "[1 0 0][0.5]");
    Forms::TSDMWidgetGetAreaColors(annot, &edge, &inside);
    CHECK(std::memcmp(&edge, &s_red, sizeof edge) == 0 && inside.space == TSColorGray && inside.value[0] == 0x8000);
    Forms::TSDMWidgetGetAreaColors(annot, nullptr, nullptr);
    // The face follows at the next chance.
    Forms::TSDMFieldUpdateAppearance(alpha);
    CHECK(Has(FaceOf(alpha), "1 0 0 RG") && Has(FaceOf(alpha), "0.5 g") && Has(FaceOf(alpha), "(one) Tj"));
    Forms::TSDMWidgetSetAreaColors(annot, &s_clear, &s_clear);
    CHECK(!LexDictKnown(At(dict, "MK"), Atom("BC")) && !LexDictKnown(At(dict, "MK"), Atom("BG")));

    CHECK_EQ(Forms::TSDMWidgetGetRotation(annot), 0);
    LexDictPut(At(dict, "MK"), Atom("R"), LexNewInteger(lex, /*indirect*/ false, 270));
    CHECK_EQ(Forms::TSDMWidgetGetRotation(annot), 270);
    Forms::TSDMFieldUpdateAppearance(alpha);
    CHECK(LexObjGetType(At(dict, "AP/N/Matrix")) == LexArray);
    // Asked to wait, the face stays as it is.
    const std::string before = FaceOf(alpha);
    Forms::TSDMFieldSetFlags(alpha, TSFieldWord, TSFieldDelay);
    Forms::TSDMWidgetSetAreaColors(annot, &s_red, nullptr);
    Forms::TSDMFieldUpdateAppearance(alpha);
    CHECK_EQ(FaceOf(alpha), before);
}

void Layouts() {
    TextAppearance look = LookOf(FieldOf("alpha"));
    look.size = KRFixedFromInt(12);
    {
        const Layout layout(Box(100, 20), 90);
        CHECK_EQ(Text(layout.Stream()), "null");
        Forms::TSLayoutBorder(layout.store, &s_thin, &s_black, &s_clear, /*down*/ false);
        // A single line has no line feeds: they go out of the caller's text.
        char text[] = "two\nlines (1)";
        Forms::TSLayoutText(layout.store, /*multiLine*/ false, /*wrap*/ false, &s_thin, &look, text);
        CHECK_EQ(text, "twolines (1)");
        const LexObj stream = layout.Stream();
        CHECK_EQ(Text(At(stream, "Subtype")) + Text(At(stream, "BBox")), "/Form[0 0 20 100]");
        CHECK_EQ(Text(At(stream, "Matrix")).substr(0, 9), "[0 1 -1 0");
        CHECK_EQ(Text(At(stream, "Resources/Font/Helv/BaseFont")), "/Helvetica");
        CHECK_EQ(Text(At(stream, "Resources/ProcSet")), "[/PDF /Text]");
        CHECK(Has(Data(stream), "(twolines \\(1\\)) Tj"));
        CHECK(Has(Data(stream), "0 G 1 w"));
    }
    {
        // Automatic size within the limits given; lines are broken at blanks.
        const Layout layout(Box(60, 200), 0);
        look.size = 0;
        char text[] = "several words that need lines";
        Forms::TSLayoutTextEx(layout.store, /*multiLine*/ true, /*wrap*/ true, &s_thin, &look, text, KRFixedFromInt(5),
                              KRFixedFromInt(7));
        CHECK(look.size >= KRFixedFromInt(5) && look.size <= KRFixedFromInt(7));
        const std::string data = Data(layout.Stream());
        CHECK(Has(data, "(several words") && !Has(data, "(several words that need lines)"));
        TextAppearance bad = look;
        bad.quadding = 7;
        const Layout silent(Box(60, 20), 0);
        Forms::TSLayoutText(silent.store, /*multiLine*/ true, /*wrap*/ true, &s_thin, &bad, text);
        CHECK(!Has(Data(silent.Stream()), "Tj"));
        CHECK_RAISES(KRErrBadParam,
                     Forms::TSLayoutIconText(silent.store, /*layout*/ 0, LexNullObj, &s_thin, &bad, text));
    }
}

void Icons() {
    TextAppearance look = LookOf(FieldOf("alpha"));
    look.size = KRFixedFromInt(10);
    const Page page;
    CHECK_EQ(Text(Forms::TSDMFormFromPage(doc, page.page)), "null");
    const std::string drawing = "0 0 100 100 re f";
    const KRStm source = KRMemStmOpen(drawing.data(), static_cast<std::int64_t>(drawing.size()));
    LexDictPut(DMPageGetLexObj(page.page), Atom("Contents"),
               LexNewStream(lex, /*indirect*/ true, source, 0, /*encode*/ true, LexNullObj, LexNullObj, -1));
    KRStmClose(source);
    const LexObj icon = Forms::TSDMFormFromPage(doc, page.page);
    CHECK_EQ(Text(At(icon, "Subtype")) + Text(At(icon, "BBox")), "/Form[0 0 612 792]");
    CHECK(Has(Data(icon), drawing.c_str()));
    const Layout layout(Box(100, 100), 0);
    char caption[] = "Go";
    Forms::TSLayoutIconText(layout.store, /*layout, caption below*/ 2, icon, &s_thin, &look, caption);
    const LexObj stream = layout.Stream();
    CHECK(LexObjEqual(At(stream, "Resources/XObject/FRM"), icon));
    CHECK(Has(Data(stream), "cm /FRM Do") && Has(Data(stream), "(Go) Tj ET"));
    // Two streams of one layout are two objects.
    CHECK(!LexObjEqual(layout.Stream(), stream));
    Forms::TSLayoutDelete(nullptr);
    CHECK_EQ(Text(Forms::TSLayoutCreateStream(lex, nullptr)), "null");
    Forms::TSLayoutBorder(nullptr, &s_thin, &s_black, &s_black, /*down*/ false);
}

} // namespace observer
