// Cases on the registry of widget handlers, and on the data records that handlers give out.
// SPDX-License-Identifier: MIT
#include "tests/plugin/Observer.h"

#include <cstring>
#include <utility>

namespace observer {

namespace {

std::string s_drawn;

std::string TypesKnown() {
    std::string types;
    const Forms::WidgetHandlerEnumProc collect = [](SCWidgetHandler *handler, void *clientData) {
        auto *list = static_cast<std::string *>(clientData);
        const KRAtom type = handler->GetType ? handler->GetType(handler) : KRAtomNull;
        *list += (list->empty() ? "" : " ") + std::string(type == KRAtomNull ? "none" : KRAtomGetString(type));
    };
    Forms::TSSCAppEnumWidgetHandlers(collect, &types);
    return types;
}

/** Draws the value behind the word "own", and notes what it was asked for. */
void WriteOwnFace(SCWidgetHandler *handler, DMAnnot annot, KRAtom state, EStr *value, KRBool forced) {
    s_drawn += static_cast<const char *>(handler->userData) + Text(value) + (forced ? "!" : "");
    if (state != KRAtomNull) s_drawn += std::string(" ") + KRAtomGetString(state);
    if (Text(value) == "raise") KRRaise(KRErrBadResource);
    KRFixedRect rect;
    DMAnnotGetRect(annot, &rect);
    TextAppearance look;
    const LexObj dict = DMAnnotGetLexObj(annot);
    Forms::TSDMFieldGetDefaultTextAppearance(Forms::TSDMFieldFromLexObj(dict), &look);
    const TSBorder border{TSBorderSolid, 1, 0, {}};
    std::string text = "own " + Text(value);
    CStore *store = Forms::TSLayoutNew(&rect, /*rotation*/ 0);
    Forms::TSLayoutText(store, /*multiLine*/ false, /*wrap*/ false, &border, &look, text.data());
    const LexObj faces = LexNewDict(lex, /*indirect*/ false, 1);
    LexDictPut(faces, Atom("N"), Forms::TSLayoutCreateStream(lex, store));
    LexDictPut(dict, Atom("AP"), faces);
    Forms::TSLayoutDelete(store);
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
    if (type) handler.GetType = PICallback(gExtensionID, type);
    handler.GetName = PICallback(gExtensionID, &NameOfOwn);
    handler.WriteAppearance = PICallback(gExtensionID, &WriteOwnFace);
    return handler;
}

std::string Drawn() {
    return std::exchange(s_drawn, {});
}

void PutTitle(TSWidgetData *data, const char *title) {
    data->title = static_cast<char *>(KRrealloc(data->title, std::strlen(title) + 1));
    std::strcpy(data->title, title);
}

} // namespace

void Handlers() {
    const std::string builtIn = "Sig CheckBox RadioButton Button ListBox ComboBox Text";
    CHECK_EQ(TypesKnown(), builtIn);
    SCWidgetHandler *const former = Forms::TSSCAppGetWidgetHandlerByName(Atom("Text"));
    char name[64] = "";
    former->GetName(former, name, sizeof name);
    CHECK(name[0] != '\0' && former->size == sizeof(SCWidgetHandler));
    CHECK(!Forms::TSSCAppGetWidgetHandlerByName(Atom("Spark")));

    static SCWidgetHandler s_nameless = OwnHandler(&TypeText, "never");
    s_nameless.GetName = nullptr;
    Forms::TSSCAppRegisterWidgetHandler(&s_nameless);
    Forms::TSSCAppRegisterWidgetHandler(nullptr);
    CHECK(Forms::TSSCAppGetWidgetHandlerByName(Atom("Text")) == former);

    // The newest of a type takes its place, and stands first.
    static SCWidgetHandler s_own = OwnHandler(&TypeText, "text:");
    Forms::TSSCAppRegisterWidgetHandler(&s_own);
    CHECK_EQ(TypesKnown(), "Text Sig CheckBox RadioButton Button ListBox ComboBox");
    DMField *alpha = FieldOf("alpha");
    CHECK(Forms::TSDMFieldSetValue(alpha, Str("two")));
    CHECK_EQ(Drawn(), "text:two");
    CHECK(FaceOf(alpha).find("(own two) Tj") != std::string::npos);
    Forms::TSDMFieldUpdateAppearance(alpha);
    CHECK_EQ(Drawn(), "text:two!");
    CHECK_RAISES(KRErrBadResource, Forms::TSDMFieldSetValue(alpha, Str("raise")));
    CHECK_EQ(ValueOf("alpha"), "raise");
    Drawn();
    CHECK(Forms::TSDMFieldSetValue(alpha, Str("three")));
    CHECK_EQ(Drawn(), "text:three");

    // A type that nobody has heard of is its own widget type.
    static SCWidgetHandler s_spark = OwnHandler(&TypeSpark, "spark:");
    Forms::TSSCAppRegisterWidgetHandler(&s_spark);
    DMField *spark = Forms::TSDMAnnotDefineField(NewWidget("Spark"), "spark");
    CHECK_EQ(Drawn(), "spark:!");
    CHECK_EQ(Forms::TSDMWidgetGetSubType(AnnotOf(spark)), Atom("Spark"));
    CHECK(Forms::TSDMFieldSetValue(spark, Name("Lit")));
    CHECK_EQ(Drawn(), "spark:Lit");
    CHECK_EQ(ValueOf("spark"), "Lit");
    static SCWidgetHandler s_typeless = OwnHandler(nullptr, "typeless:");
    Forms::TSSCAppRegisterWidgetHandler(&s_typeless);
    CHECK(Forms::TSSCAppGetWidgetHandlerByName(KRAtomNull) == &s_typeless);

    Forms::TSSCAppRegisterWidgetHandler(former);
    CHECK_EQ(TypesKnown(), "Text none Spark Sig CheckBox RadioButton Button ListBox ComboBox");
    CHECK(Forms::TSDMFieldSetValue(alpha, Str("four")));
    CHECK_EQ(Drawn(), "");
    CHECK(FaceOf(alpha).find("(four) Tj") != std::string::npos);
}

void WidgetRecords() {
    SCWidgetHandler *const handler = Forms::TSSCAppGetWidgetHandlerByName(Atom("Text"));
    const DMAnnot annot = AnnotOf(FieldOf("alpha"));
    const LexObj dict = DMAnnotGetLexObj(annot);
    TSWidgetData *data = handler->AcquireData(handler, annot);
    CHECK_EQ(data->type, Atom("Text"));
    CHECK_EQ(std::string(data->title) + " " + data->value + " " + Text(data->userName), "alpha one Alpha's text");
    CHECK_EQ(KRAtomGetString(data->font), "Helvetica");
    CHECK(data->rect.left == KRFixedFromInt(100) && data->rect.top == KRFixedFromInt(720));
    CHECK(data->borderColor.space == TSColorTransparent && data->border.width == 1 &&
          data->annotFlags == DMAnnotPrint && !data->mixed);

    TSWidgetData *other = handler->AcquireData(handler, AnnotOf(FieldOf("secret")));
    other->border.width = 2;
    other->fieldFlags |= TSFieldRequired;
    handler->CompareData(handler, data, other);
    // The type always, then title, border width, required, user name.
    CHECK_EQ(data->mixed, TSMixedType | TSMixedTitle | TSMixedBorderWidth | TSMixedRequired | TSMixedUserName);
    handler->ReleaseData(handler, other);

    // What is mixed is not written.
    PutTitle(data, "ignored");
    data->border = {TSBorderInset, 9, 0, {}};
    data->textSize = KRFixedFromInt(14);
    data->borderColor = {TSColorRGB, {0, KRFixedOne, 0}};
    data->fieldFlags |= TSFieldRequired | TSFieldReadOnly;
    handler->WriteData(handler, annot, data);
    CHECK_EQ(Text(At(dict, "BS/S")) + Text(At(dict, "BS/W")), "/I1");
    CHECK_EQ(Text(At(dict, "MK/BC")) + Text(At(dict, "DA")), "[0 1 0]/Helv 14 Tf 0 g");
    CHECK_EQ(Text(At(dict, "Ff")) + Text(At(dict, "T")), "1alpha");
    CHECK_EQ(Text(At(dict, "TU")), "Alpha's text");
    CHECK(FaceOf(FieldOf("alpha")).find("/Helv 14 Tf") != std::string::npos);
    handler->ReleaseData(handler, data);

    data = handler->AcquireData(handler, annot);
    PutTitle(data, "branch.alpha");
    handler->WriteData(handler, annot, data);
    CHECK(!FieldOf("alpha") && LexObjEqual(Forms::TSDMFieldGetLexObj(FieldOf("branch.alpha")), dict));
    PutTitle(data, "pick.alpha");
    CHECK_RAISES(KRErrBadParam, handler->WriteData(handler, annot, data));
    char *const title = std::exchange(data->title, nullptr);
    CHECK_RAISES(KRErrBadParam, handler->WriteData(handler, annot, data));
    KRfree(title);
    handler->ReleaseData(handler, data);
    handler->ReleaseData(handler, nullptr);

    // A widget that is no field yet gets its name, too.
    const DMAnnot fresh = NewWidget("Tx");
    data = handler->AcquireData(handler, fresh);
    CHECK(!data->title && data->border.width == 1 && data->backColor.space == TSColorTransparent);
    PutTitle(data, "fresh");
    handler->WriteData(handler, fresh, data);
    CHECK(LexObjEqual(Forms::TSDMFieldGetLexObj(FieldOf("fresh")), DMAnnotGetLexObj(fresh)));
    handler->ReleaseData(handler, data);
}

} // namespace observer
