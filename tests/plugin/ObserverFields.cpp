// Cases on fields and their tree: one call of each slot for what it alone does.
// SPDX-License-Identifier: MIT
#include "tests/plugin/Observer.h"

namespace observer {

namespace {

KRAtom TypeOf(const char *name) {
    return Forms::TSDMWidgetGetSubType(AnnotOf(FieldOf(name)));
}

std::string NameOf(DMField *field) {
    return field ? Forms::TSDMFieldGetName(field) : "no field";
}

void CheckWalks() {
    const TSFieldEnumProc stop = [](DMField *, void *clientData) -> KRBool {
        return ++*static_cast<int *>(clientData) < 3;
    };
    const TSFieldEnumProc raise = [](DMField *, void *) -> KRBool { KRRaise(KRErrBadField); };
    int calls = 0;
    Forms::TSDMDocLoadDMFields(doc);
    Forms::TSDMDocEnumDMFields(doc, /*terminalOnly*/ true, /*firstOfNameOnly*/ true, stop, &calls);
    CHECK_EQ(calls, 3);
    CHECK_RAISES(KRErrBadField, Forms::TSDMDocEnumDMFields(doc, true, true, raise, nullptr));
}

void CheckChoices() {
    DMField *pick = FieldOf("pick");
    KRAtom atom = 0;
    LexObj exported = LexNullObj;
    CHECK_EQ(Forms::TSDMFieldGetOptionIndex(pick, &atom, &exported), 1);
    CHECK_EQ(Text(exported), "b");
    CHECK(Forms::TSDMFieldSetToOptionIndex(pick, 2));
    CHECK_EQ(ValueOf("pick"), "c");
    const LexObj options = LexNewArray(lex, /*indirect*/ false, 1);
    LexArrayInsert(options, 0, Str("x"));
    CHECK_EQ(Forms::TSDMFieldSetOptions(pick, options), 0);
    CHECK_EQ(Text(At(DictOf("pick"), "Opt")), "[(x)]");
    CHECK_EQ(Forms::TSDMFieldSetDefaultValue(pick, Str("no choice")), 1);
}

} // namespace

void Fields() {
    CHECK(Forms::IsDMDocTessella(doc));
    DMField *alpha = FieldOf("alpha");
    CHECK(alpha && alpha == Forms::TSDMFieldFromLexObj(At("Tessella/Fields/0")) && !FieldOf("nobody"));
    CHECK(Forms::TSDMFieldIsValid(alpha) && Forms::TSDMFieldIsTerminal(alpha) && Forms::TSDMFieldIsAnnot(alpha));
    CHECK_EQ(NameOf(alpha), "alpha");
    CHECK_EQ(Forms::TSDMFieldGetType(alpha), Atom("Tx"));
    CHECK_EQ(TypeOf("agree"), Atom("CheckBox"));
    CHECK_EQ(Forms::WButtonGetOnKey(AnnotOf(FieldOf("agree"))), Atom("Yes"));
    CheckWalks();
    CheckChoices();

    const Listener will(TSValueWillChange), did(TSValueDidChange), display(TSFieldWillDisplay);
    CHECK(!Forms::TSDMFieldSetValue(FieldOf("agree"), Name("Nope")));
    CHECK(Forms::TSDMFieldSetValue(FieldOf("agree"), Name("Yes")));
    // Both faces are there: the state is all that changes.
    CHECK_EQ(Heard(), "0 agree=Yes, 1 agree=Yes");
    CHECK(Forms::TSDMFieldReset(alpha));
    CHECK_EQ(Heard(), "0 alpha=start, 1 alpha=start, 10 alpha=start");
    Forms::TSDMFieldValueChanged(doc, alpha);
    CHECK_EQ(Heard(), "10 alpha=start");
    // A password is shown in stars and listed as what no file may hold.
    CHECK(Set("secret", "pass"));
    CHECK(!Has(FaceOf(FieldOf("secret")), "pass"));
    CHECK(LexObjEqual(At("Tessella/$Vo/0"), DictOf("secret")));

    Forms::TSDMFieldSetFlags(alpha, TSFieldWord, TSFieldMultiLine | TSFieldReadOnly);
    CHECK_EQ(Forms::TSDMFieldGetFlags(alpha, TSFieldWord), TSFieldMultiLine | TSFieldReadOnly);
    Forms::TSDMFieldSetFlags(alpha, TSAnnotWord, DMAnnotPrint | DMAnnotHidden);
    CHECK(Set("alpha", "unseen") && !LexDictKnown(DictOf("alpha"), Atom("AP")));
    Forms::TSDMFieldSetFlags(alpha, TSAnnotWord, DMAnnotPrint);
    CHECK(Has(FaceOf(alpha), "(unseen) Tj"));
    // The host's own way of setting the flags is heard.
    DMAnnotSetFlags(AnnotOf(alpha), DMAnnotPrint | DMAnnotNoView);
    CHECK_EQ(Forms::TSDMFieldGetFlags(alpha, TSAnnotWord), DMAnnotPrint | DMAnnotNoView);
    CHECK_EQ(Forms::TSDMFieldSetType(alpha, Atom("Ch")), 0);
    CHECK_EQ(TypeOf("alpha"), Atom("ListBox"));
}

void FieldTree() {
    const Listener split(TSFieldDidSplit), joined(TSFieldDidJoin);
    DMField *leaf = Define("Tx", "a.b.c");
    CHECK_EQ(NameOf(leaf), "a.b.c");
    CHECK(FieldOf("a.b") && !Forms::TSDMFieldIsTerminal(FieldOf("a.b")) && !Forms::TSDMFieldIsAnnot(FieldOf("a.b")));
    const LexObj plain = LexNewDict(lex, /*indirect*/ true, 3);
    LexDictPut(plain, Atom("FT"), Name("Tx"));
    CHECK(!Forms::TSDMFieldIsAnnot(Forms::TSLexDictDefineField(plain, "plain")));
    CHECK(Set("plain", "kept"));

    // The second widget makes a group; one value for all, and each shows it.
    Define("Tx", "alpha");
    CHECK_EQ(Heard(), "5 alpha");
    CHECK_EQ(LexArrayLength(At(DictOf("alpha"), "Kids")), 2);
    CHECK(Set("alpha", "both"));
    for (const char *kid : {"Kids/0", "Kids/1"})
        CHECK(Has(Data(At(DictOf("alpha"), std::string(kid) + "/AP/N")), "(both) Tj"));
    CHECK(Forms::TSDMFieldIsValidCheckType(FieldOf("alpha")));
    CHECK_RAISES(KRErrBadParam, Forms::TSDMFieldRename(FieldOf("alpha"), ""));
    CHECK_EQ(NameOf(Forms::TSDMFieldRename(leaf, "elsewhere")), "elsewhere");
    CHECK(!FieldOf("a.b.c"));
    for (const auto &[name, answer] : {std::pair{"", 1}, {"pick", 2}, {"plain.x", 4}, {"a.fresh", 0}})
        CHECK_EQ(Forms::TSDMWidgetValidateName(doc, AnnotOf(FieldOf("elsewhere")), Atom("Text"), name), answer);

    DMField *copy = Forms::TSLexDictCopyField(DMAnnotGetLexObj(NewWidget(nullptr)), FieldOf("secret"), "copy",
                                              /*fresh*/ true, /*noActions*/ false);
    CHECK_EQ(NameOf(copy) + " " + std::to_string(Forms::TSDMFieldGetFlags(copy, TSFieldWord)), "copy 8192");
    const Page page;
    Forms::TSDMAnnotLockField(AnnotOf(copy), /*lock*/ true);
    Forms::TSDMAnnotRemoveField(AnnotOf(copy), page.page, 0, /*keepValue*/ false);
    CHECK(FieldOf("copy") != nullptr);
    Forms::TSDMAnnotLockField(AnnotOf(copy), /*lock*/ false);
    Heard();
    // Two roots of one name, as other writers leave them.
    Forms::TSDMAnnotRemoveField(AnnotOf(FieldOf("twin")), page.page, 0, /*keepValue*/ false);
    CHECK_EQ(Heard(), "6 twin");
    // A page that loses the widget loses the field.
    DMPageRemoveAnnot(page.page, DMPageGetAnnotIndex(page.page, AnnotOf(FieldOf("pick"))));
    CHECK(FieldOf("twin") && !FieldOf("pick"));
}

} // namespace observer
