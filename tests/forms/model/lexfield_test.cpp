// The shape of the field tree: defining, grouping, removing, copying and renaming fields.
// SPDX-License-Identifier: MIT
#include "model/LexField.h"

#include <ctime>

#include "KRErrors.h"
#include "model/miAction.h"
#include "model/miCalc.h"
#include "objects/LexUtil.h"
#include "tests/forms/ModelFixture.h"

namespace {

using LexField = Model;

std::string NameAt(const TestDoc &doc, const std::string &path) {
    const char *name = TSDMFieldGetName(TSDMFieldFromLexObj(doc.At(path)));
    return name ? name : "(none)";
}

TEST_F(LexField, DefiningADottedNameMakesItsNodes) {
    TestDoc doc(FormObjects({}));
    DMField *leaf = TSLexDictDefineField(NewWidget(doc), "a.b.c");
    ASSERT_NE(leaf, nullptr);
    EXPECT_STREQ(TSDMFieldGetName(leaf), "a.b.c");
    EXPECT_EQ(Text(doc.At("Tessella/Fields/0/T")), "a");
    EXPECT_EQ(Text(doc.At("Tessella/Fields/0/Kids/0/T")), "b");
    EXPECT_EQ(Text(doc.At("Tessella/Fields/0/Kids/0/Kids/0/T")), "c");
    EXPECT_FALSE(TSDMFieldIsTerminal(FieldOf(doc, "a.b")));
    // Trailing dots do not count; what is there is used again.
    EXPECT_STREQ(TSDMFieldGetName(TSLexDictDefineField(NewWidget(doc), "a.d...")), "a.d");
    EXPECT_EQ(LexArrayLength(doc.At("Tessella/Fields")), 1);
    EXPECT_EQ(TSLexDictDefineField(NewWidget(doc), "..."), nullptr);
    EXPECT_EQ(TSLexDictDefineField(NewWidget(doc), (std::string(250, 'x') + ".12345").c_str()), nullptr);
}

TEST_F(LexField, NothingHangsBelowATerminalField) {
    TestDoc doc(FormObjects({"/FT /Tx /T (a) /V (kept)"}));
    const std::string before = Text(doc.At("Tessella/Fields/0"));
    const LexObj widget = NewWidget(doc), other = NewWidget(doc);
    LexDictPut(other, FT_K, Name(doc, "Btn"));
    const std::string bare = Text(widget), button = Text(other);
    for (const char *name : {"a.b", "a.b.c"}) EXPECT_EQ(TSLexDictDefineField(widget, name), nullptr) << name;
    EXPECT_EQ(TSLexDictDefineField(other, "a"), nullptr) << "types under one name must agree";
    EXPECT_EQ(Text(doc.At("Tessella/Fields/0")), before);
    EXPECT_TRUE(TSDMFieldIsTerminal(FieldOf(doc, "a")));
    EXPECT_FALSE(FieldOf(doc, "a")->state & DMFieldSharesName);
    // Nor below a group of widgets, and a node takes no widgets.
    ASSERT_NE(TSLexDictDefineField(NewWidget(doc), "a"), nullptr);
    EXPECT_EQ(TSLexDictDefineField(widget, "a.b"), nullptr);
    EXPECT_EQ(LexArrayLength(doc.At("Tessella/Fields/0/Kids")), 2);
    ASSERT_NE(TSLexDictDefineField(NewWidget(doc), "n.b"), nullptr);
    EXPECT_EQ(Protect([&] { TSLexDictDefineField(widget, "n"); }), KRErrBadParam);
    EXPECT_EQ(Text(widget) + Text(other), bare + button);
}

TEST_F(LexField, ASecondWidgetMakesAGroup) {
    TestDoc doc(FormObjects({"/FT /Tx /T (a) /V (v) /DV (d) /Ff 2 /TU (tip) /Q 1 "
                             "/AA << /K << /S /JavaScript /JS (k) >> /E << /S /JavaScript /JS (e) >> >>"}));
    const LexObj old = doc.At("Tessella/Fields/0");
    const LexObj added = NewWidget(doc);
    LexDictPut(added, FT_K, Name(doc, "Tx"));
    LexDictPut(added, value_K, Str(doc, "other"));
    LexDictPut(added, UserName_K, Str(doc, "other tip"));
    LexDictPut(TSLexDictEnsure(added, AA_K), Keystroke_K, LexNewDict(doc.lex, false, 1));
    int splits = 0;
    const Listener listener(TSFieldDidSplit, [&](TSFieldNotifyRec &record) {
        EXPECT_TRUE(record.field);
        ++splits;
    });
    DMField *field = TSLexDictDefineField(added, "a");
    ASSERT_TRUE(TSDMFieldIsValid(field));
    EXPECT_EQ(splits, 1);

    // What belongs to the value rules from the top, what belongs to the widget stays there; an emptied AA goes.
    ASSERT_EQ(LexArrayLength(doc.At("Tessella/Fields")), 1);
    const LexObj top = doc.At("Tessella/Fields/0");
    EXPECT_EQ(Text(top), "<< /AA R /DV (d) /FT /Tx /Ff 2 /Kids [R R] /Q 1 /T (a) /TU (tip) /V (v) >>");
    EXPECT_EQ(Text(At(top, "AA")), "<< /K << /JS (k) /S /JavaScript >> >>");
    EXPECT_TRUE(LexObjEqual(At(top, "Kids/0"), old));
    EXPECT_EQ(Text(old), "<< /AA << /E << /JS (e) /S /JavaScript >> >> /P R /Parent R /Rect [100 700 300 720] "
                         "/Subtype /Widget /Type /Annot >>");
    EXPECT_TRUE(LexObjEqual(At(top, "Kids/1"), added));
    EXPECT_EQ(Text(added), "<< /Parent R /Rect [10 20 30 40] /Subtype /Widget /Type /Annot >>");
    for (const LexObj kid : {old, added}) EXPECT_STREQ(TSDMFieldGetName(TSDMFieldFromLexObj(kid)), "a");
    DMField *head = FieldOf(doc, "a");
    EXPECT_NE(head->firstChild, nullptr);
    EXPECT_TRUE(TSDMFieldIsTerminal(head));
    EXPECT_EQ(TSDMFieldGetFlags(field, TSFieldWord), TSFieldRequired);

    // A third one only joins.
    const LexObj third = NewWidget(doc);
    ASSERT_NE(TSLexDictDefineField(third, "a"), nullptr);
    EXPECT_EQ(splits, 1);
    EXPECT_TRUE(LexObjEqual(At(top, "Kids/2"), third));
}

TEST_F(LexField, AGroupBelowANodeTakesItsPlaceThere) {
    TestDoc doc(FormObjects({}));
    const LexObj first = NewWidget(doc);
    ASSERT_NE(TSLexDictDefineField(first, "n.a"), nullptr);
    ASSERT_NE(TSLexDictDefineField(NewWidget(doc), "n.b"), nullptr);
    DMField *second = TSLexDictDefineField(NewWidget(doc), "n.a");
    ASSERT_TRUE(TSDMFieldIsValid(second));
    EXPECT_STREQ(TSDMFieldGetName(second), "n.a");
    EXPECT_EQ(LexArrayLength(doc.At("Tessella/Fields/0/Kids")), 2);
    EXPECT_EQ(NameAt(doc, "Tessella/Fields/0/Kids/1"), "n.a");
    EXPECT_EQ(second->parent->parent, FieldOf(doc, "n"));
    EXPECT_TRUE(TSDMFieldIsTerminal(second->parent));
}

TEST_F(LexField, ARejectedSplitStandsButCountsAsFailure) {
    TestDoc doc(FormObjects({"/FT /Tx /T (a) /V (v)"}));
    const LexObj widget = NewWidget(doc);
    const Listener listener(TSFieldDidSplit, [](TSFieldNotifyRec &record) { record.reject = true; });
    EXPECT_EQ(TSLexDictDefineField(widget, "a"), nullptr);
    EXPECT_FALSE(LexDictKnown(widget, parent_K));
    EXPECT_EQ(LexArrayLength(doc.At("Tessella/Fields/0/Kids")), 1);
    EXPECT_EQ(Text(TSDMFieldGetValue(FieldOf(doc, "a"))), "v");
}

TEST_F(LexField, DefiningAFieldAgainKeepsOrMovesIt) {
    TestDoc doc(FormObjects({"/FT /Tx /T (a)", "/FT /Tx /T (b)"}));
    const LexObj dict = doc.At("Tessella/Fields/0");
    DMField *field = FieldOf(doc, "a");
    EXPECT_EQ(TSLexDictDefineField(dict, "a"), field);
    EXPECT_EQ(TSDMAnnotDefineField(DMAnnotFromLexObj(dict), "other"), field);
    EXPECT_EQ(TSDMAnnotDefineField(DMAnnotFromLexObj(doc.At("Pages")), "other"), nullptr);
    EXPECT_EQ(TSDMAnnotDefineField(DMAnnotFromLexObj(NewWidget(doc)), ""), nullptr);
    // A node cannot leave the fields below it.
    ASSERT_NE(TSLexDictDefineField(NewWidget(doc), "n.d"), nullptr);
    EXPECT_EQ(TSLexDictDefineField(FieldOf(doc, "n")->obj, "m"), nullptr);
    EXPECT_TRUE(TSDMFieldIsValid(FieldOf(doc, "n.d")));
    DMField *moved = TSLexDictDefineField(dict, "c");
    ASSERT_NE(moved, nullptr);
    EXPECT_EQ(FieldOf(doc, "a"), nullptr);
    EXPECT_EQ(FieldOf(doc, "c"), moved);
    EXPECT_EQ(LexArrayLength(doc.At("Tessella/Fields")), 3);
}

TEST_F(LexField, RemovingAFieldLeavesTheAnnotation) {
    TestDoc doc(FormObjects({"/FT /Tx /T (a) /V (v)", "/FT /Tx /T (b) /V (w)"}));
    const LexObj a = doc.At("Tessella/Fields/0");
    const LexObj b = doc.At("Tessella/Fields/1");
    const DMPage page = DMDocAcquirePage(doc.doc, 0);
    TSDMAnnotLockField(DMAnnotFromLexObj(a), true);
    TSDMAnnotRemoveField(DMAnnotFromLexObj(a), page, false, false);
    EXPECT_NE(FieldOf(doc, "a"), nullptr);
    TSDMAnnotLockField(DMAnnotFromLexObj(a), false);
    TSDMAnnotRemoveField(DMAnnotFromLexObj(a), page, false, false);
    EXPECT_EQ(FieldOf(doc, "a"), nullptr);
    for (const KRAtom key : {T_K, parent_K, value_K}) EXPECT_FALSE(LexDictKnown(a, key));
    EXPECT_EQ(DMPageGetNumAnnots(page), 2);

    TSDMAnnotRemoveField(DMAnnotFromLexObj(b), page, false, /*keepValue*/ true);
    DMField *kept = FieldOf(doc, "b");
    ASSERT_NE(kept, nullptr);
    EXPECT_FALSE(LexObjEqual(kept->obj, b));
    EXPECT_FALSE(TSDMFieldIsAnnot(kept));
    EXPECT_EQ(Text(TSDMFieldGetValue(kept)), "w");
    EXPECT_FALSE(LexDictKnown(b, T_K));
    DMPageRelease(page);
}

TEST_F(LexField, CopiesKeepWhatTheSourceInherits) {
    TestDoc source(TreeObjects("4 0 R", {"<< /T (n) /Ff 1 /Q 2 /Kids [5 0 R] >>",
                                         WidgetObject("/T (a) /FT /Tx /Parent 4 0 R /V (v) /MK << /CA (c) >> "
                                                      "/A << /S /Named /N /Print >>")}));
    TestDoc target(FormObjects({}));
    DMField *field = FieldOf(source, "n.a");
    ASSERT_NE(field, nullptr);
    const LexObj plain = NewWidget(target);
    DMField *copy = TSLexDictCopyField(plain, field, nullptr, /*fresh*/ false, /*noActions*/ false);
    ASSERT_TRUE(TSDMFieldIsValid(copy));
    EXPECT_STREQ(TSDMFieldGetName(copy), "n.a");
    EXPECT_EQ(Text(plain), "<< /A << /N /Print /S /Named >> /FT /Tx /Ff 1 /MK << /CA (c) >> /Parent R /Q 2 "
                           "/Rect [10 20 30 40] /Subtype /Widget /T (a) /Type /Annot /V (v) >>");
    const LexObj fresh = NewWidget(source);
    copy = TSLexDictCopyField(fresh, field, "m", /*fresh*/ true, /*noActions*/ true);
    ASSERT_TRUE(TSDMFieldIsValid(copy));
    EXPECT_EQ(Text(fresh), "<< /FT /Tx /MK << /CA (c) >> /Rect [10 20 30 40] /Subtype /Widget /T (m) /Type /Annot >>");
    ASSERT_FALSE(DrawnLog().empty());
    EXPECT_EQ(DrawnLog().back().field, "m");
    EXPECT_EQ(TSLexDictCopyField(LexNewDict(source.lex, false, 1), field, "x", false, false), nullptr);
}

TEST_F(LexField, RenamingResetsAndKeepsTheRest) {
    TestDoc doc(FormObjects({"/FT /Tx /T (a) /V (v) /DV (d) /Ff 4097 /TU (tip) /DA (/Helv 9 Tf) "
                             "/AA << /C << /S /JavaScript /JS (1) >> >>",
                             "/FT /Tx /T (b) /AA << /C << /S /JavaScript /JS (2) >> >>"},
                            "/CO [4 0 R 5 0 R]"));
    DMField *field = FieldOf(doc, "a");
    EXPECT_EQ(TSDMFieldRename(field, "a"), field);
    DMField *renamed = TSDMFieldRename(field, "n.c");
    ASSERT_TRUE(TSDMFieldIsValid(renamed));
    EXPECT_EQ(FieldOf(doc, "a"), nullptr);
    EXPECT_STREQ(TSDMFieldGetName(renamed), "n.c");
    EXPECT_EQ(Text(TSDMFieldGetValue(renamed)), "d");
    EXPECT_EQ(TSDMFieldGetFlags(renamed, TSFieldWord), TSFieldMultiLine | TSFieldReadOnly);
    EXPECT_EQ(Text(TSDMFieldGetObj(renamed, UserName_K)), "tip");
    EXPECT_EQ(TSCalcArrayGetFieldIndex(TJSGetCalcArray(doc.doc), "n.c"), 0);
    EXPECT_EQ(TSCalcArrayGetNumEntries(TJSGetCalcArray(doc.doc)), 2);

    // Refused with nothing changed.
    DMField *b = FieldOf(doc, "b");
    for (const char *name : {"", "..", "n", "n.c.d"})
        EXPECT_EQ(Protect([&] { TSDMFieldRename(b, name); }), KRErrBadParam) << name;
    EXPECT_EQ(FieldOf(doc, "b"), b);
    EXPECT_EQ(LexArrayLength(doc.At("Tessella/Fields")), 2);
}

TEST_F(LexField, RenamingTakesAWidgetOutOfItsGroup) {
    TestDoc doc(FormObjects({"/FT /Tx /T (a) /V (v)"}));
    const LexObj old = doc.At("Tessella/Fields/0");
    ASSERT_NE(TSLexDictDefineField(NewWidget(doc), "a"), nullptr);
    EXPECT_EQ(Protect([&] { TSDMFieldRename(FieldOf(doc, "a"), "b"); }), KRErrBadParam);
    DMField *renamed = TSDMFieldRename(TSDMFieldFromLexObj(old), "b");
    ASSERT_TRUE(TSDMFieldIsValid(renamed));
    EXPECT_EQ(renamed->type, Tx_K);
    EXPECT_EQ(Text(TSDMFieldGetValue(renamed)), "null");
    EXPECT_EQ(LexArrayLength(doc.At("Tessella/Fields")), 2);
    EXPECT_EQ(Text(TSDMFieldGetValue(FieldOf(doc, "a"))), "v");
    // And into another one.
    DMField *back = TSDMFieldRename(renamed, "a");
    EXPECT_EQ(back->name, FieldOf(doc, "a")->name);
    EXPECT_EQ(LexArrayLength(doc.At("Tessella/Fields")), 1);
}

TEST_F(LexField, CutOffDictionariesShareNothing) {
    auto objects = FormObjects({"/FT /Tx /T (a) /MK 5 0 R /X 4 0 R"});
    objects.push_back("<< /CA (c) >>");
    TestDoc doc(objects);
    const LexObj dict = doc.At("Tessella/Fields/0");
    const LexObj maker = LexDictGet(dict, MakerDict_K);
    const LexObj page = LexDictGet(dict, PageFromAnnot_K);
    TSLexDictReplaceIndirects(dict);
    EXPECT_FALSE(LexObjEqual(LexDictGet(dict, MakerDict_K), maker));
    EXPECT_EQ(Text(LexDictGet(LexDictGet(dict, MakerDict_K), Atom("CA"))), "c");
    // Pages and widgets are no one's own.
    EXPECT_TRUE(LexObjEqual(LexDictGet(dict, PageFromAnnot_K), page));
    EXPECT_TRUE(LexObjEqual(LexDictGet(dict, Atom("X")), dict));
}

TEST_F(LexField, AFieldThatItsFirstDisplayRemovesIsNoResult) {
    TestDoc doc(FormObjects({"/FT /Tx /T (a) /V (v)", "/FT /Tx /T (s) /V (v)"}));
    DMField *field = FieldOf(doc, "a");
    DMField *source = FieldOf(doc, "s");
    const Listener listener(TSFieldWillDisplay, [](TSFieldNotifyRec &record) {
        TSDMAnnotRemoveField(DMAnnotFromLexObj(record.field->obj), nullptr, /*flag*/ false, /*keepValue*/ false);
    });
    const LexObj widget = NewWidget(doc);
    LexDictPut(widget, FT_K, Name(doc, "Tx"));
    EXPECT_EQ(TSDMAnnotDefineField(DMAnnotFromLexObj(widget), "n"), nullptr);
    EXPECT_EQ(TSLexDictCopyField(NewWidget(doc), source, "m", /*fresh*/ false, /*noActions*/ false), nullptr);
    EXPECT_EQ(TSDMFieldRename(field, "b"), nullptr);
    EXPECT_EQ(LexArrayLength(doc.At("Tessella/Fields")), 1);
}

/** Processor time: the machine may be busy. */
double SecondsToDefine(int count, const std::string &prefix) {
    TestDoc doc(FormObjects({}));
    const std::clock_t start = std::clock();
    for (int i = 0; i < count; ++i)
        EXPECT_NE(TSLexDictDefineField(NewWidget(doc), (prefix + std::to_string(i)).c_str()), nullptr);
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

TEST_F(LexField, DefiningManyFieldsCostsTheSameForEach) {
    for (const char *prefix : {"f", "node."}) {
        const double few = SecondsToDefine(500, prefix);
        const double many = SecondsToDefine(4000, prefix);
        EXPECT_LT(many, 8 * 3 * few) << prefix;
    }
}

} // namespace
