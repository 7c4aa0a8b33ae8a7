// Cases on single fields: values by type, choices and defaults, flags and types, enumeration.
// SPDX-License-Identifier: MIT
#include "tests/plugin/Observer.h"

namespace observer {

namespace {

LexObj DictOf(const char *name) {
    return Forms::TSDMFieldGetLexObj(FieldOf(name));
}

KRAtom TypeOf(const char *name) {
    return Forms::TSDMWidgetGetSubType(AnnotOf(FieldOf(name)));
}

} // namespace

void Values() {
    const Listener will(TSValueWillChange), did(TSValueDidChange), display(TSFieldWillDisplay);
    CHECK_EQ(TypeOf("agree"), Atom("CheckBox"));
    CHECK_EQ(Forms::WButtonGetOnKey(AnnotOf(FieldOf("agree"))), Atom("Yes"));
    CHECK_EQ(ValueOf("agree"), "/Off");
    CHECK(!Forms::TSDMFieldSetValue(FieldOf("agree"), Name("Nope")));
    CHECK_EQ(Heard(), "");
    CHECK(Forms::TSDMFieldSetValue(FieldOf("agree"), Name("Yes")));
    // Both faces are there: the state is all that changes.
    CHECK_EQ(Heard(), "0 agree=Yes, 1 agree=Yes");
    CHECK_EQ(ValueOf("agree") + Text(At(DictOf("agree"), "AS")), "/Yes/Yes");
    CHECK(Forms::TSDMFieldSetValue(FieldOf("agree"), Name("Off")));
    CHECK_EQ(ValueOf("agree") + Text(At(DictOf("agree"), "AS")), "/Off/Off");
    CHECK(!LexDictKnown(DictOf("agree"), Atom("V")));
    Heard();

    CHECK_EQ(TypeOf("push"), Atom("Button"));
    CHECK(Forms::TSDMFieldSetValue(FieldOf("push"), Str("nothing")));
    CHECK_EQ(Heard(), "");
    CHECK_EQ(ValueOf("push"), "null");
    CHECK_EQ(Forms::TSDMFieldSetDefaultValue(FieldOf("push"), Str("x")), 1);

    // A default is a copy of what was given; resetting brings it back, or takes the value away.
    CHECK(Forms::TSDMFieldReset(FieldOf("alpha")));
    CHECK_EQ(ValueOf("alpha"), "start");
    CHECK_EQ(Forms::TSDMFieldSetDefaultValue(FieldOf("alpha"), LexNullObj), 0);
    CHECK(!LexDictKnown(DictOf("alpha"), Atom("DV")));
    CHECK(Forms::TSDMFieldReset(FieldOf("alpha")));
    CHECK_EQ(ValueOf("alpha"), "null");
    CHECK_EQ(Forms::TSDMFieldSetDefaultValue(FieldOf("agree"), Name("Yes")), 0);
    CHECK(Forms::TSDMFieldReset(FieldOf("agree")));
    CHECK_EQ(ValueOf("agree"), "/Yes");
    CHECK_EQ(Forms::TSDMFieldSetDefaultValue(FieldOf("agree"), Name("Off")), 0);
    CHECK(!LexDictKnown(DictOf("agree"), Atom("DV")));
}

void OtherValues() {
    const Listener display(TSFieldWillDisplay);
    CHECK(Forms::TSDMFieldSetValue(FieldOf("alpha"), Str("told")));
    Heard();
    Forms::TSDMFieldValueChanged(doc, FieldOf("alpha"));
    CHECK_EQ(Heard(), "10 alpha=told");
    Forms::TSDMFieldValueChanged(doc, nullptr);
    Forms::TSDMFieldValueChanged(nullptr, FieldOf("alpha"));
    CHECK_EQ(Heard(), "");

    // A password is shown in stars and listed as what no file may hold.
    CHECK(Forms::TSDMFieldSetValue(FieldOf("secret"), Str("pass")));
    CHECK_EQ(FaceOf(FieldOf("secret")).find("pass"), std::string::npos);
    CHECK(LexObjEqual(At("Tessella/$Vo/0"), DictOf("secret")));
}

void NoFields() {
    // What is no field answers so.
    CHECK(!Forms::TSDMFieldIsValid(nullptr) && !Forms::TSDMFieldIsTerminal(nullptr));
    CHECK(!Forms::TSDMFieldSetValue(nullptr, Str("x")) && !Forms::TSDMFieldReset(nullptr));
    CHECK(!Forms::TSDMFieldGetName(nullptr));
    CHECK_EQ(Text(Forms::TSDMFieldGetLexObj(nullptr)), "null");
    CHECK_EQ(Forms::TSDMFieldGetType(nullptr), KRAtomNull);
    CHECK(!FieldOf("nobody"));
    CHECK(!Forms::TSDMFieldFromLexObj(At("")) && !Forms::TSDMFieldFromLexObj(LexNullObj));

    const TSFieldEnumProc stop = [](DMField *, void *clientData) -> KRBool {
        return ++*static_cast<int *>(clientData) < 3;
    };
    const TSFieldEnumProc raise = [](DMField *, void *) -> KRBool { KRRaise(KRErrBadField); };
    int calls = 0;
    Forms::TSDMDocEnumDMFields(doc, /*terminalOnly*/ true, /*firstOfNameOnly*/ true, stop, &calls);
    CHECK_EQ(calls, 3);
    CHECK_RAISES(KRErrBadField, Forms::TSDMDocEnumDMFields(doc, true, true, raise, nullptr));
    CHECK(FieldOf("alpha") != nullptr);
}

void Choices() {
    const Listener display(TSFieldWillDisplay);
    DMField *pick = FieldOf("pick");
    KRAtom atom = 0;
    LexObj exported = LexNullObj;
    CHECK_EQ(TypeOf("pick"), Atom("ComboBox"));
    CHECK_EQ(Forms::TSDMFieldGetOptionIndex(pick, &atom, &exported), 1);
    CHECK_EQ(atom, KRAtomNull);
    CHECK_EQ(Text(exported), "b");
    // Past the end means the first; the text shown is not the value exported.
    CHECK(Forms::TSDMFieldSetToOptionIndex(pick, 9));
    CHECK_EQ(ValueOf("pick"), "a");
    CHECK_EQ(Heard(), "10 pick=Apple");
    CHECK(Forms::TSDMFieldSetToOptionIndex(pick, -1));
    CHECK_EQ(ValueOf("pick"), "a");
    CHECK(Forms::TSDMFieldSetValue(pick, Str("typed in")));
    CHECK_EQ(Forms::TSDMFieldGetOptionIndex(pick, &atom, &exported), -1);
    CHECK_EQ(Text(exported), "null");

    CHECK_EQ(Forms::TSDMFieldSetDefaultValue(pick, Str("no choice")), 1);
    CHECK(!LexDictKnown(DictOf("pick"), Atom("DV")));
    CHECK(Forms::TSDMFieldReset(pick));
    CHECK_EQ(ValueOf("pick"), "a");
    CHECK_EQ(Forms::TSDMFieldSetDefaultValue(pick, Str("c")), 0);
    CHECK(Forms::TSDMFieldReset(pick));
    CHECK_EQ(ValueOf("pick"), "c");

    const LexObj options = LexNewArray(lex, /*indirect*/ false, 2);
    for (const char *choice : {"x", "x"}) LexArrayInsert(options, 9, Str(choice));
    CHECK_EQ(Forms::TSDMFieldSetOptions(pick, options), 0);
    CHECK_EQ(Text(At(DictOf("pick"), "Opt")), "[x x]");
    CHECK(Forms::TSDMFieldSetToOptionIndex(pick, 0));
    CHECK_EQ(Forms::TSDMFieldGetOptionIndex(pick, &atom, &exported), 1);
    CHECK_EQ(Forms::TSDMFieldSetOptions(pick, LexNullObj), 0);
    CHECK(!LexDictKnown(DictOf("pick"), Atom("Opt")));
    CHECK_EQ(Forms::TSDMFieldGetOptionIndex(pick, &atom, &exported), -1);
    CHECK_EQ(Forms::TSDMFieldSetOptions(nullptr, options), 1);
}

void FlagsAndTypes() {
    DMField *alpha = FieldOf("alpha");
    const LexObj dict = DictOf("alpha");
    Forms::TSDMFieldSetFlags(alpha, TSFieldWord, TSFieldMultiLine | TSFieldReadOnly);
    CHECK_EQ(Forms::TSDMFieldGetFlags(alpha, TSFieldWord), TSFieldMultiLine | TSFieldReadOnly);
    CHECK_EQ(Text(At(dict, "Ff")), "4097");
    Forms::TSDMFieldSetFlags(alpha, /*which*/ 2, 7);
    CHECK_EQ(Forms::TSDMFieldGetFlags(alpha, 2), 0);
    // Read-only is the caller's affair.
    CHECK(Forms::TSDMFieldSetValue(alpha, Str("two")));
    CHECK(!FaceOf(alpha).empty());
    Forms::TSDMFieldSetFlags(alpha, TSAnnotWord, DMAnnotPrint | DMAnnotHidden);
    CHECK(Forms::TSDMFieldSetValue(alpha, Str("unseen")));
    CHECK(!LexDictKnown(dict, Atom("AP")));
    Forms::TSDMFieldSetFlags(alpha, TSAnnotWord, DMAnnotPrint);
    CHECK(FaceOf(alpha).find("(unseen) Tj") != std::string::npos);
    // The host's own way of setting the flags is heard.
    DMAnnotSetFlags(AnnotOf(alpha), DMAnnotPrint | DMAnnotNoView);
    CHECK_EQ(Forms::TSDMFieldGetFlags(alpha, TSAnnotWord), DMAnnotPrint | DMAnnotNoView);

    CHECK_EQ(Forms::TSDMFieldSetType(alpha, Atom("Tx")), 0);
    CHECK_EQ(Forms::TSDMFieldGetFlags(alpha, TSFieldWord), TSFieldMultiLine | TSFieldReadOnly);
    CHECK_EQ(Forms::TSDMFieldSetType(alpha, Atom("Ch")), 0);
    CHECK_EQ(Forms::TSDMFieldGetType(alpha), Atom("Ch"));
    CHECK_EQ(TypeOf("alpha"), Atom("ListBox"));
    CHECK_EQ(Forms::TSDMFieldGetFlags(alpha, TSFieldWord), TSFieldReadOnly);
    CHECK_EQ(Text(At(dict, "FT")) + Text(At(dict, "Ff")), "/Ch1");
    Forms::TSDMFieldSetFlags(alpha, TSFieldWord, 0);
    CHECK(!LexDictKnown(dict, Atom("Ff")));
    CHECK_EQ(Forms::TSDMFieldSetType(nullptr, Atom("Tx")), 1);

    // A word that is inherited is written where it differs and nowhere else.
    DMField *leaf = Forms::TSDMAnnotDefineField(NewWidget("Tx"), "n.leaf");
    Forms::TSDMFieldSetFlags(FieldOf("n"), TSFieldWord, TSFieldReadOnly | TSFieldRequired);
    CHECK_EQ(Forms::TSDMFieldGetFlags(leaf, TSFieldWord), TSFieldReadOnly | TSFieldRequired);
    Forms::TSDMFieldSetFlags(leaf, TSFieldWord, 0);
    CHECK_EQ(Text(At(DictOf("n.leaf"), "Ff")), "0");
    Forms::TSDMFieldSetFlags(leaf, TSFieldWord, TSFieldReadOnly | TSFieldRequired);
    CHECK(!LexDictKnown(DictOf("n.leaf"), Atom("Ff")));
}

} // namespace observer
