// Cases on the tree of fields: defining, grouping, renaming, removing, copying.
// SPDX-License-Identifier: MIT
#include "tests/plugin/Observer.h"

#include <vector>

namespace observer {

namespace {

LexObj DictOf(DMField *field) {
    return Forms::TSDMFieldGetLexObj(field);
}

std::int32_t KidsOf(DMField *field) {
    const LexObj kids = At(DictOf(field), "Kids");
    return LexObjGetType(kids) == LexArray ? LexArrayLength(kids) : 0;
}

DMField *Define(const char *type, const char *name) {
    return Forms::TSDMAnnotDefineField(NewWidget(type), name);
}

std::string NameOf(DMField *field) {
    return field ? Forms::TSDMFieldGetName(field) : "no field";
}

/** Terminal fields of a name, without the top of a group. */
std::vector<DMField *> WidgetsOf(const char *name) {
    struct Search {
        std::string name;
        std::vector<DMField *> found;
    } search{name, {}};
    const TSFieldEnumProc collect = [](DMField *field, void *clientData) -> KRBool {
        auto *wanted = static_cast<Search *>(clientData);
        if (wanted->name == Forms::TSDMFieldGetName(field)) wanted->found.push_back(field);
        return true;
    };
    Forms::TSDMDocEnumDMFields(doc, /*terminalOnly*/ true, /*firstOfNameOnly*/ false, collect, &search);
    return search.found;
}

} // namespace

void Defining() {
    const DMAnnot annot = NewWidget("Tx");
    // A widget that comes onto a page is printed.
    CHECK_EQ(DMAnnotGetFlags(annot), DMAnnotPrint);
    DMField *leaf = Forms::TSDMAnnotDefineField(annot, "a.b.c..");
    CHECK_EQ(NameOf(leaf), "a.b.c");
    CHECK(Forms::TSDMFieldIsValid(leaf) && Forms::TSDMFieldIsTerminal(leaf) && Forms::TSDMFieldIsAnnot(leaf));
    CHECK_EQ(Forms::TSDMFieldGetType(leaf), Atom("Tx"));
    CHECK(FieldOf("a.b.c") == leaf && Forms::TSDMFieldFromLexObj(DMAnnotGetLexObj(annot)) == leaf);
    for (const char *node : {"a", "a.b"}) {
        CHECK(FieldOf(node) && !Forms::TSDMFieldIsTerminal(FieldOf(node)) && !Forms::TSDMFieldIsAnnot(FieldOf(node)));
        CHECK(!Forms::TSDMFieldSetValue(FieldOf(node), Str("x")));
        CHECK(!Forms::TSDMFieldReset(FieldOf(node)));
    }
    const LexObj fields = At("Tessella/Fields");
    CHECK_EQ(Text(At(LexArrayGet(fields, LexArrayLength(fields) - 1), "T")), "a");
    CHECK_EQ(Text(At(DictOf(leaf), "T")), "c");
    CHECK(Forms::TSDMAnnotDefineField(annot, "another") == leaf);
    CHECK(!FieldOf("another"));
    // A sibling further down the same path.
    CHECK_EQ(NameOf(Define("Tx", "a.b.d")), "a.b.d");
    CHECK_EQ(KidsOf(FieldOf("a.b")), 2);
}

void DefiningRefused() {
    const DMAnnot annot = NewWidget("Tx");
    Forms::TSDMAnnotDefineField(annot, "a.b.c");
    const DMAnnot refused = NewWidget("Tx");
    for (const char *name : {"", "...", "alpha.x", "pick"}) CHECK(!Forms::TSDMAnnotDefineField(refused, name));
    CHECK_RAISES(KRErrBadParam, Forms::TSDMAnnotDefineField(refused, "a.b"));
    CHECK(!LexDictKnown(DMAnnotGetLexObj(refused), Atom("T")));
    CHECK(!LexDictKnown(DMAnnotGetLexObj(refused), Atom("Parent")));
    CHECK_EQ(KidsOf(FieldOf("alpha")), 0);
    CHECK_EQ(ValueOf("alpha"), "one");
    LexDictPut(DMAnnotGetLexObj(refused), Atom("Subtype"), Name("Link"));
    CHECK(!Forms::TSDMAnnotDefineField(refused, "link"));
    CHECK(!Forms::TSLexDictDefineField(LexNewDict(lex, /*indirect*/ false, 1), "direct"));

    const std::pair<const char *, int> answers[] = {{"", 1},   {"..", 1},      {"pick", 2},      {"a", 3},
                                                    {"a.", 3}, {"alpha.x", 4}, {"a.b.fresh", 0}, {"secret", 0}};
    for (const auto &[name, answer] : answers)
        CHECK_EQ(Forms::TSDMWidgetValidateName(doc, annot, Atom("Text"), name), answer);

    // Field dictionaries that are no widgets, and the longest of names.
    const LexObj plain = LexNewDict(lex, /*indirect*/ true, 3);
    LexDictPut(plain, Atom("FT"), Name("Tx"));
    DMField *value = Forms::TSLexDictDefineField(plain, std::string(253, 'n').c_str());
    CHECK(Forms::TSDMFieldIsTerminal(value) && !Forms::TSDMFieldIsAnnot(value));
    CHECK(Forms::TSDMFieldSetValue(value, Str("kept")));
    CHECK(!Forms::TSLexDictDefineField(LexNewDict(lex, /*indirect*/ true, 3), std::string(255, 'n').c_str()));
}

void Groups() {
    const Listener split(TSFieldDidSplit), display(TSFieldWillDisplay);
    DMField *second = Define("Tx", "alpha");
    CHECK_EQ(Heard().substr(0, 7), "5 alpha");
    DMField *top = FieldOf("alpha");
    CHECK(top != second && Forms::TSDMFieldIsTerminal(top) && !Forms::TSDMFieldIsAnnot(top));
    const LexObj group = DictOf(top);
    CHECK_EQ(Text(At(group, "T")) + Text(At(group, "FT")) + Text(At(group, "V")), "alpha/Txone");
    CHECK(LexObjEqual(At(group, "Kids/1"), DictOf(second)));
    for (const char *kid : {"Kids/0", "Kids/1"}) {
        for (const char *key : {"T", "FT", "V", "DV"}) CHECK(!LexDictKnown(At(group, kid), Atom(key)));
    }
    CHECK_EQ(Text(At(group, "Kids/0/TU")), "null");
    CHECK_EQ(Text(At(group, "TU")), "Alpha's text");

    const DMAnnot annot = NewWidget("Tx");
    LexDictPut(DMAnnotGetLexObj(annot), Atom("V"), Str("discarded"));
    Heard();
    DMField *third = Forms::TSDMAnnotDefineField(annot, "alpha");
    CHECK_EQ(Heard(), "10 alpha=one");
    CHECK_EQ(KidsOf(top), 3);
    CHECK_EQ(NameOf(third), "alpha");
    // One value for all, and each widget shows it.
    CHECK(Forms::TSDMFieldSetValue(third, Str("three")));
    CHECK_EQ(Heard(), "10 alpha=three, 10 alpha=three, 10 alpha=three");
    CHECK_EQ(Text(At(group, "V")), "three");
    for (DMField *widget : WidgetsOf("alpha")) {
        CHECK_EQ(Text(Forms::TSDMFieldGetValue(widget)), "three");
        CHECK(FaceOf(widget).find("(three) Tj") != std::string::npos);
    }
    CHECK_EQ(WidgetsOf("alpha").size(), 3);
    // One of several cannot change its type, and another type does not join.
    CHECK_EQ(Forms::TSDMFieldSetType(third, Atom("Ch")), 1);
    CHECK(!Define("Ch", "alpha"));
    CHECK_EQ(KidsOf(top), 3);
    CHECK(Forms::TSDMFieldIsValidCheckType(top) && Forms::TSDMFieldIsValidCheckType(third));
    {
        const Listener veto(TSFieldDidSplit, [](TSFieldNotifyRec &record) { record.reject = 1; });
        CHECK(!Define("Tx", "secret"));
        CHECK_EQ(KidsOf(FieldOf("secret")), 1);
    }
    const Listener raiser(TSFieldDidSplit, [](TSFieldNotifyRec &) { KRRaise(KRErrBadResource); });
    CHECK_RAISES(KRErrBadResource, Define("Tx", "twice"); Define("Tx", "twice"));
    CHECK(Forms::TSDMFieldSetValue(FieldOf("twice"), Str("still a field")));
}

void Renaming() {
    Define("Tx", "node.leaf");
    DMField *alpha = FieldOf("alpha");
    for (const char *name : {"", "..", "node", "node.leaf.x"})
        CHECK_RAISES(KRErrBadParam, Forms::TSDMFieldRename(FieldOf("alpha"), name));
    CHECK_RAISES(KRErrBadParam, Forms::TSDMFieldRename(FieldOf("node"), "other"));
    CHECK_RAISES(KRErrBadParam, Forms::TSDMFieldRename(nullptr, "other"));
    CHECK(Forms::TSDMFieldRename(FieldOf("alpha"), "alpha") == FieldOf("alpha"));
    alpha = FieldOf("alpha");
    CHECK_EQ(Text(Forms::TSDMFieldGetValue(alpha)), "one");

    Forms::TSDMFieldSetFlags(alpha, TSFieldWord, TSFieldMultiLine | TSFieldRequired);
    const LexObj dict = DictOf(alpha);
    DMField *renamed = Forms::TSDMFieldRename(alpha, "node.alpha");
    CHECK(!FieldOf("alpha"));
    CHECK_EQ(NameOf(renamed), "node.alpha");
    CHECK(LexObjEqual(DictOf(renamed), dict));
    CHECK_EQ(Text(At(dict, "T")) + Text(At(dict, "Parent/T")), "alphanode");
    // What belongs to the field goes along; the value does not.
    CHECK_EQ(Text(Forms::TSDMFieldGetValue(renamed)), "start");
    CHECK_EQ(Forms::TSDMFieldGetFlags(renamed, TSFieldWord), TSFieldMultiLine | TSFieldRequired);
    CHECK_EQ(Forms::TSDMFieldGetType(renamed), Atom("Tx"));
    CHECK_EQ(Text(At(dict, "TU")), "Alpha's text");

    // A group as a whole keeps its name; a widget of it may leave.
    Define("Tx", "node.alpha");
    CHECK_RAISES(KRErrBadParam, Forms::TSDMFieldRename(FieldOf("node.alpha"), "other"));
    DMField *kid = Forms::TSDMFieldFromLexObj(At(DictOf(FieldOf("node.alpha")), "Kids/1"));
    kid = Forms::TSDMFieldRename(kid, "loner");
    CHECK_EQ(NameOf(kid), "loner");
    CHECK_EQ(Forms::TSDMFieldGetType(kid), Atom("Tx"));
    CHECK_EQ(KidsOf(FieldOf("node.alpha")), 1);
    CHECK(Forms::TSDMFieldSetValue(kid, Str("alone")));
    CHECK_EQ(Text(Forms::TSDMFieldGetValue(FieldOf("node.alpha"))), "start");
    // Into a field of the same type: two widgets of one name again.
    kid = Forms::TSDMFieldRename(kid, "secret");
    CHECK_EQ(WidgetsOf("secret").size(), 2);
}

void Removing() {
    const Page page;
    const Listener joined(TSFieldDidJoin);
    // Two roots of one name, as other writers leave them.
    CHECK_EQ(WidgetsOf("twin").size(), 2);
    DMField *one = WidgetsOf("twin")[0], *other = WidgetsOf("twin")[1];
    const DMAnnot annot = AnnotOf(one);
    const LexObj dict = DictOf(one);
    Forms::TSDMAnnotLockField(annot, /*lock*/ true);
    Forms::TSDMAnnotRemoveField(annot, page.page, 0, /*keepValue*/ false);
    CHECK_EQ(WidgetsOf("twin").size(), 2);
    Forms::TSDMAnnotLockField(annot, /*lock*/ false);
    Forms::TSDMAnnotRemoveField(annot, page.page, 0, /*keepValue*/ false);
    CHECK_EQ(Heard(), "6 twin");
    CHECK(FieldOf("twin") == other && WidgetsOf("twin").size() == 1);
    for (const char *key : {"T", "V", "Parent"}) CHECK(!LexDictKnown(dict, Atom(key)));
    CHECK(DMPageGetAnnotIndex(page.page, annot) >= 0);
    // Now alone, it may change its type.
    CHECK_EQ(Forms::TSDMFieldSetType(other, Atom("Ch")), 0);

    // The last leaf takes the nodes above it along.
    DMField *leaf = Define("Tx", "x.y.z");
    Forms::TSDMAnnotRemoveField(AnnotOf(leaf), page.page, 0, /*keepValue*/ false);
    for (const char *name : {"x.y.z", "x.y", "x"}) CHECK(!FieldOf(name));
    const LexObj fields = At("Tessella/Fields");
    for (std::int32_t i = 0; i < LexArrayLength(fields); ++i) CHECK(Text(At(LexArrayGet(fields, i), "T")) != "x");

    // A value may outlive its widget.
    const LexObj widget = DictOf(FieldOf("alpha"));
    Forms::TSDMAnnotRemoveField(AnnotOf(FieldOf("alpha")), page.page, 0, /*keepValue*/ true);
    CHECK_EQ(ValueOf("alpha"), "one");
    CHECK(!Forms::TSDMFieldIsAnnot(FieldOf("alpha")) && !LexObjEqual(DictOf(FieldOf("alpha")), widget));
    CHECK(!LexDictKnown(widget, Atom("V")));
    // A page that loses the widget loses the field.
    DMPageRemoveAnnot(page.page, DMPageGetAnnotIndex(page.page, AnnotOf(FieldOf("pick"))));
    CHECK(!FieldOf("pick"));
}

void Copying() {
    DMField *secret = FieldOf("secret");
    CHECK(Forms::TSDMFieldSetValue(secret, Str("word")));
    DMField *copy = Forms::TSLexDictCopyField(DMAnnotGetLexObj(NewWidget(nullptr)), secret, "copy", /*fresh*/ true,
                                              /*noActions*/ false);
    CHECK_EQ(NameOf(copy), "copy");
    CHECK_EQ(Forms::TSDMFieldGetFlags(copy, TSFieldWord), TSFieldPassword);
    CHECK_EQ(Text(Forms::TSDMFieldGetValue(copy)), "null");
    Forms::TSLexDictCopyField(DMAnnotGetLexObj(NewWidget(nullptr)), secret, /*name*/ nullptr, false, true);
    CHECK_EQ(WidgetsOf("secret").size(), 2);
    CHECK(!Forms::TSLexDictCopyField(LexNewDict(lex, /*indirect*/ false, 1), copy, "direct", false, false));
    CHECK(!Forms::TSLexDictCopyField(LexNewDict(lex, /*indirect*/ true, 1), FieldOf("secret"), "top", false, false));
}

} // namespace observer
