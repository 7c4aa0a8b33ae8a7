// Cases on what fields look like, on name trees, and on the handlers of widgets.
// SPDX-License-Identifier: MIT
#include "tests/plugin/Observer.h"

#include <cstring>
#include <utility>

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

/** A layout of 100 by 60, given up with the object. */
struct Layout {
    Layout() {
        const KRFixedRect rect{0, KRFixedFromInt(60), KRFixedFromInt(100), 0};
        store = Forms::TSLayoutNew(&rect, /*rotation*/ 90);
    }
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

void CheckLayouts(TextAppearance look) {
    look.size = KRFixedFromInt(12);
    const Layout line, lines, button;
    CHECK_EQ(Text(line.Stream()), "null");
    Forms::TSLayoutBorder(line.store, &s_thin, &s_black, &s_clear, /*down*/ false);
    // A single line has no line feeds: they go out of the caller's text.
    char text[] = "two\nlines (1)", several[] = "several words that need lines", caption[] = "Go";
    Forms::TSLayoutText(line.store, /*multiLine*/ false, /*wrap*/ false, &s_thin, &look, text);
    CHECK_EQ(text, "twolines (1)");
    CHECK_EQ(Text(At(line.Stream(), "BBox")), "[0 0 60 100]");
    CHECK(Has(Data(line.Stream()), "(twolines \\(1\\)) Tj") && Has(Data(line.Stream()), "0 G 1 w"));
    look.size = 0;
    Forms::TSLayoutTextEx(lines.store, /*multiLine*/ true, /*wrap*/ true, &s_thin, &look, several, KRFixedFromInt(5),
                          KRFixedFromInt(7));
    CHECK_EQ(look.size, KRFixedFromInt(7));
    const Page page;
    CHECK_EQ(Text(Forms::TSDMFormFromPage(doc, page.page)), "null");
    const KRStm source = KRMemStmOpen("0 0 9 9 re f", 12);
    LexDictPut(DMPageGetLexObj(page.page), Atom("Contents"),
               LexNewStream(lex, /*indirect*/ true, source, 0, /*encode*/ true, LexNullObj, LexNullObj, -1));
    KRStmClose(source);
    const LexObj icon = Forms::TSDMFormFromPage(doc, page.page);
    Forms::TSLayoutIconText(button.store, /*layout, caption below*/ 2, icon, &s_thin, &look, caption);
    CHECK(LexObjEqual(At(button.Stream(), "Resources/XObject/FRM"), icon));
    CHECK(!LexObjEqual(button.Stream(), button.Stream()));
    look.quadding = 7;
    CHECK_RAISES(KRErrBadParam, Forms::TSLayoutIconText(button.store, 0, LexNullObj, &s_thin, &look, caption));
}

std::string s_drawn;

std::string Drawn() {
    return std::exchange(s_drawn, {});
}

std::string TypesKnown() {
    std::string types;
    const Forms::WidgetHandlerEnumProc collect = [](SCWidgetHandler *handler, void *clientData) {
        auto *list = static_cast<std::string *>(clientData);
        *list += (list->empty() ? "" : " ") + std::string(KRAtomGetString(handler->GetType(handler)));
    };
    Forms::TSSCAppEnumWidgetHandlers(collect, &types);
    return types;
}

/** Notes what it was asked for, and draws a border. */
void WriteOwnFace(SCWidgetHandler *handler, DMAnnot annot, KRAtom state, EStr *value, KRBool forced) {
    s_drawn += static_cast<const char *>(handler->userData) + Text(value) + (forced ? "!" : "");
    if (state != KRAtomNull) s_drawn += std::string(" ") + KRAtomGetString(state);
    if (Text(value) == "raise") KRRaise(KRErrBadResource);
    const Layout layout;
    Forms::TSLayoutBorder(layout.store, &s_thin, &s_red, &s_clear, /*down*/ false);
    const LexObj faces = LexNewDict(lex, /*indirect*/ false, 1);
    LexDictPut(faces, Atom("N"), layout.Stream());
    LexDictPut(DMAnnotGetLexObj(annot), Atom("AP"), faces);
}

KRAtom TypeText(SCWidgetHandler *) {
    return Atom("Text");
}
KRAtom TypeSpark(SCWidgetHandler *) {
    return Atom("Spark");
}
void NameOfOwn(SCWidgetHandler *, char *buffer, std::int32_t size) {
    std::strncpy(buffer, "Own", static_cast<std::size_t>(size));
}

/** Only what a handler cannot be without, and its drawing. The registry keeps it to the end. */
SCWidgetHandler OwnHandler(KRAtom (*type)(SCWidgetHandler *), const char *mark) {
    SCWidgetHandler handler{};
    handler.size = sizeof handler;
    handler.userData = const_cast<char *>(mark);
    handler.GetType = PICallback(gExtensionID, type);
    handler.GetName = PICallback(gExtensionID, &NameOfOwn);
    handler.WriteAppearance = PICallback(gExtensionID, &WriteOwnFace);
    return handler;
}

/** A text in the encoding of name trees, freed with the object. */
struct TreeName {
    explicit TreeName(const char *bytes) {
        PutText(&text, EStrPDFDoc, bytes);
    }
    ~TreeName() {
        KRfree(text.bytes);
    }
    TreeName(const TreeName &) = delete;
    TreeName &operator=(const TreeName &) = delete;
    const EStr *Get() const {
        return &text;
    }
    EStr text{};
};

} // namespace

void Looks() {
    DMField *alpha = FieldOf("alpha");
    const DMAnnot annot = AnnotOf(alpha);
    const LexObj dict = DictOf("alpha");
    TextAppearance look = LookOf(alpha);
    CHECK_EQ(std::string(KRAtomGetString(look.baseFont)) + " " + KRAtomGetString(look.fontResource), "Helvetica Helv");
    CheckLayouts(look);
    look.size = KRFixedFromInt(10) + 0x8000;
    look.quadding = 1;
    Forms::TSDMFieldSetDefaultTextAppearance(alpha, &look);
    CHECK_EQ(Text(At(dict, "DA")) + " " + Text(At(dict, "Q")), "/Helv 10.5 Tf 0 g 1");
    look.renderMode = 4;
    CHECK_RAISES(KRErrBadParam, Forms::TSDMFieldSetDefaultTextAppearance(alpha, &look));
    LexDictPut(dict, Atom("DA"), Str("/Helv 12 Tf 0 0 rg"));
    // What cannot be read gives way to the form's own look.
    CHECK_EQ(std::string(KRAtomGetString(LookOf(alpha).fontResource)), "Helv");
    Forms::TSDMFieldSetDefaultTextAppearance(alpha, nullptr);
    CHECK(!LexDictKnown(dict, Atom("DA")));

    TSBorder border{};
    CHECK(!Forms::TSDMWidgetGetBorder(annot, &border) && border.width == 1);
    border = {TSBorderInset, 3, 0, {}};
    Forms::TSDMWidgetSetBorder(annot, &border);
    CHECK_EQ(Text(At(dict, "BS/S")), "/I");
    CHECK(Forms::TSDMWidgetGetBorder(annot, &border) && border.width == 3);
    const DMColorValue gray{TSColorGray, {0x8000}};
    Forms::TSDMWidgetSetAreaColors(annot, &s_red, &gray);
    CHECK_EQ(Text(At(dict, "MK/BC")) + Text(At(dict, "MK/BG")), "[1 0 0][0.5]");
    DMColorValue edge, inside;
    Forms::TSDMWidgetGetAreaColors(annot, &edge, &inside);
    CHECK(std::memcmp(&edge, &s_red, sizeof edge) == 0 && inside.space == TSColorGray && inside.value[0] == 0x8000);
    LexDictPut(At(dict, "MK"), Atom("R"), LexNewInteger(lex, /*indirect*/ false, 270));
    CHECK_EQ(Forms::TSDMWidgetGetRotation(annot), 270);
    // The face follows at the next chance.
    Forms::TSDMFieldUpdateAppearance(alpha);
    CHECK(Has(FaceOf(alpha), "1 0 0 RG") && Has(FaceOf(alpha), "0.5 g") && Has(FaceOf(alpha), "(one) Tj"));
}

void NameTrees() {
    const KRAtom tree = Atom("Observed");
    const auto add = [&](const char *name, int number) {
        Forms::TSAddNameEntry(lex, tree, TreeName(name).Get(), LexNewInteger(lex, /*indirect*/ true, number), 0);
    };
    const auto entries = [&] {
        std::string all;
        const Forms::NameEntryProc collect = [](LexObj key, LexObj value, void *list) -> KRBool {
            *static_cast<std::string *>(list) += Text(key) + Text(value) + " ";
            return true;
        };
        CHECK(Forms::TSEnumNameTree(lex, tree, collect, &all));
        return all;
    };
    for (const char *name : {"m", "b", "\xE4"}) add(name, *name);
    CHECK_EQ(entries(), "b98 m109 \xE4-28 ");
    const LexObj found = Forms::TSFindNameEntry(lex, tree, TreeName("m").Get());
    CHECK_EQ(Text(Forms::TSFindNameEntryByObj(lex, tree, found)), "m");
    Forms::TSRegenerateNameTree(lex, tree, /*branching*/ 2);
    CHECK_EQ(LexArrayLength(At("Names/Observed/Kids")), 2);
    CHECK_RAISES(KRErrBadParam, Forms::TSRegenerateNameTree(lex, tree, 1));
    // The host reads the same tree, bytes above 127 in their order.
    LexObj value;
    CHECK(DMNameTreeGet(DMDocGetNameTree(doc, tree), "\xE4", 1, &value) && LexIntegerValue(value) == -28);
    Forms::TSRemoveNameEntry(lex, tree, TreeName("m").Get(), /*updateLimits*/ true, TSNameRemoveDestroy);
    CHECK_EQ(Text(found) + " " + entries(), "null b98 \xE4-28 ");
}

void Handlers() {
    const std::string builtIn = "Sig CheckBox RadioButton Button ListBox ComboBox Text";
    CHECK_EQ(TypesKnown(), builtIn);
    SCWidgetHandler *const former = Forms::TSSCAppGetWidgetHandlerByName(Atom("Text"));
    CHECK_EQ(former->size, sizeof(SCWidgetHandler));
    // The newest of a type takes its place, and stands first.
    static SCWidgetHandler s_own = OwnHandler(&TypeText, "text:");
    Forms::TSSCAppRegisterWidgetHandler(&s_own);
    CHECK_EQ(TypesKnown(), "Text Sig CheckBox RadioButton Button ListBox ComboBox");
    DMField *alpha = FieldOf("alpha");
    CHECK(Set("alpha", "two"));
    CHECK_EQ(Drawn(), "text:two");
    CHECK(Has(FaceOf(alpha), "1 0 0 RG"));
    Forms::TSDMFieldUpdateAppearance(alpha);
    CHECK_EQ(Drawn(), "text:two!");
    CHECK_RAISES(KRErrBadResource, Set("alpha", "raise"));
    CHECK_EQ(ValueOf("alpha") + Drawn(), "raisetext:raise");

    // A type that nobody has heard of is its own widget type.
    static SCWidgetHandler s_spark = OwnHandler(&TypeSpark, "spark:");
    Forms::TSSCAppRegisterWidgetHandler(&s_spark);
    DMField *spark = Define("Spark", "spark");
    CHECK_EQ(Drawn(), "spark:!");
    CHECK_EQ(Forms::TSDMWidgetGetSubType(AnnotOf(spark)), Atom("Spark"));
    CHECK(Forms::TSDMFieldSetValue(spark, Name("Lit")));
    CHECK_EQ(Drawn(), "spark:Lit");

    Forms::TSSCAppRegisterWidgetHandler(former);
    CHECK(Set("alpha", "four"));
    CHECK_EQ(Drawn(), "");
    CHECK(Has(FaceOf(alpha), "(four) Tj"));
}

void WidgetRecords() {
    SCWidgetHandler *const handler = Forms::TSSCAppGetWidgetHandlerByName(Atom("Text"));
    const DMAnnot annot = AnnotOf(FieldOf("alpha"));
    TSWidgetData *data = handler->AcquireData(handler, annot), *other = handler->AcquireData(handler, annot);
    CHECK_EQ(std::string(data->title) + " " + data->value + " " + Text(data->userName), "alpha one Alpha's text");
    other->border.width = 2;
    handler->CompareData(handler, data, other);
    // The type always, then the border's width: what is mixed is not written.
    CHECK_EQ(data->mixed, TSMixedType | TSMixedBorderWidth);
    handler->ReleaseData(handler, other);
    data->border = {TSBorderInset, 9, 0, {}};
    data->textSize = KRFixedFromInt(14);
    handler->WriteData(handler, annot, data);
    CHECK_EQ(Text(At(DMAnnotGetLexObj(annot), "BS")), "<< /S /I /W 1 >>");
    CHECK(Has(FaceOf(FieldOf("alpha")), "/Helv1 14 Tf"));
    data->title = static_cast<char *>(KRrealloc(data->title, 16));
    std::strcpy(data->title, "branch.alpha");
    handler->WriteData(handler, annot, data);
    CHECK(!FieldOf("alpha") && LexObjEqual(DictOf("branch.alpha"), DMAnnotGetLexObj(annot)));
    std::strcpy(data->title, "pick.alpha");
    CHECK_RAISES(KRErrDefineFailed, handler->WriteData(handler, annot, data));
    handler->ReleaseData(handler, data);
    handler->ReleaseData(handler, nullptr);
}

} // namespace observer
