// Field records and the name index: names, loading, order, links, and the life of a document's form around saves.
// SPDX-License-Identifier: MIT
#include "model/NameHash.h"

#include "KRErrors.h"
#include "base/Limits.h"
#include "doc/Document.h"
#include "model/DocData.h"
#include "model/FieldArray.h"
#include "model/FieldRemoval.h"
#include "model/LexField.h"
#include "model/NameHashCheck.h"
#include "objects/LexUtil.h"
#include "services/Warnings.h"
#include "tests/forms/ModelFixture.h"

namespace {

using NameHash = Model;

KRBool Collect(DMField *field, void *names) {
    static_cast<std::vector<std::string> *>(names)->push_back(TSDMFieldGetName(field));
    return true;
}

std::vector<std::string> Names(const TestDoc &doc, bool terminalOnly = true, bool firstOfNameOnly = false) {
    std::vector<std::string> names;
    TSDMDocEnumDMFields(doc.doc, terminalOnly, firstOfNameOnly, &Collect, &names);
    return names;
}

TEST_F(NameHash, EnumeratesBucketsAndChainsFromTheirEnds) {
    // "a" and "x" fall into bucket 18, "b" into 3, "ab" into 0. Loading goes from the last root to the first.
    EXPECT_EQ(StrGetBucket("\xE4", 1), (0xE4u * 8 + 1) % 23);
    const std::string longer(257, 'a');
    EXPECT_EQ(StrGetBucket(longer.data(), longer.size()), 18u);
    TestDoc doc(FormObjects({"/FT /Tx /T (a)", "/FT /Tx /T (ab)", "/FT /Tx /T (b)", "/FT /Tx /T (x)"}));
    EXPECT_EQ(Names(doc), (std::vector<std::string>{"a", "x", "b", "ab"}));
}

TEST_F(NameHash, AKidWithoutATitleBelongsToItsParent) {
    TestDoc doc(TreeObjects("4 0 R", {"<< /T (g) /FT /Tx /V (v) /Kids [5 0 R 6 0 R] >>", WidgetObject("/Parent 4 0 R"),
                                      WidgetObject("/Parent 4 0 R")}));
    // One kid is asked for: the group is there as a whole, its top in front.
    DMField *kid = TSDMFieldFromLexObj(doc.At("Tessella/Fields/0/Kids/1"));
    ASSERT_TRUE(TSDMFieldIsValid(kid));
    EXPECT_STREQ(TSDMFieldGetName(kid), "g");
    DMField *top = FieldOf(doc, "g");
    EXPECT_EQ(top, TSDMFieldFromLexObj(doc.At("Tessella/Fields/0")));
    EXPECT_TRUE(top->nextSameName && top->nextSameName->nextSameName && !top->nextSameName->nextSameName->nextSameName);
    EXPECT_TRUE(TSDMFieldIsTerminal(top));
    EXPECT_TRUE(TSDMFieldIsTocayo(kid));
    EXPECT_FALSE(TSDMFieldIsAnnot(top));
    EXPECT_EQ(TSDMFieldDrillToAnnot(top), top->firstChild);
    EXPECT_EQ(Text(TSDMFieldGetEntry(kid, TSEntryV)), "v");
    EXPECT_EQ(Names(doc).size(), 2u);
    EXPECT_EQ(Names(doc, /*terminalOnly*/ true, /*firstOfNameOnly*/ true).size(), 1u);
    EXPECT_EQ(Names(doc, /*terminalOnly*/ false).size(), 3u);
    // A kid of another name joins: no field of its own any more, and that stays.
    const LexObj other = NewWidget(doc);
    LexDictPut(other, T_K, Str(doc, "k"));
    LexDictPut(other, parent_K, top->obj);
    ASSERT_NE(TSDMFieldFromLexObj(other), nullptr);
    EXPECT_FALSE(TSDMFieldIsTerminal(top));
    EXPECT_EQ(TSDMFieldDrillToAnnot(top), nullptr);
}

TEST_F(NameHash, NamesEndAt254Bytes) {
    const std::string p(100, 'p'), fits(153, 'k'), tooLong(154, 'k'), root(300, 'r');
    TestDoc doc(TreeObjects("4 0 R 7 0 R", {"<< /T (" + p + ") /Kids [5 0 R 6 0 R] >>",
                                            WidgetObject("/FT /Tx /Parent 4 0 R /T (" + fits + ")"),
                                            WidgetObject("/FT /Tx /Parent 4 0 R /T (" + tooLong + ")"),
                                            WidgetObject("/FT /Tx /T (" + root + ")")}));
    EXPECT_NE(FieldOf(doc, (p + "." + fits).c_str()), nullptr);
    EXPECT_EQ(TSDMFieldFromLexObj(doc.At("Tessella/Fields/0/Kids/1")), nullptr);
    EXPECT_NE(FieldOf(doc, root.substr(0, 253).c_str()), nullptr);
    EXPECT_EQ(FieldOf(doc, std::string(70000, 'x').c_str()), nullptr);
}

TEST_F(NameHash, TitlesInUCS2AreNamesLikeOthers) {
    TestDoc doc(TreeObjects("4 0 R", {"<< /T <FEFF00610064> /Kids [5 0 R 6 0 R 7 0 R] >>",
                                      WidgetObject("/FT /Tx /Parent 4 0 R /T <FEFF006E00E4>"),
                                      WidgetObject("/FT /Tx /Parent 4 0 R /T <FEFF65E5>"),
                                      WidgetObject("/FT /Tx /Parent 4 0 R /T <FEFF0061002E0062>")}));
    EXPECT_NE(FieldOf(doc, "ad.n\xE4"), nullptr);
    EXPECT_NE(FieldOf(doc, "ad.\xE6\x97\xA5"), nullptr) << "beyond PDFDocEncoding a name is UTF-8";
    EXPECT_EQ(TSDMFieldFromLexObj(doc.At("Tessella/Fields/0/Kids/2")), nullptr) << "a dot in a kid's title";
    // A new field joins the node that has its path, however that node's title is written.
    EXPECT_NE(TSLexDictDefineField(NewWidget(doc), "ad.new"), nullptr);
    EXPECT_EQ(LexArrayLength(doc.At("Tessella/Fields")), 1);
}

TEST_F(NameHash, UndefiningTheLastKidTakesThePathWithIt) {
    TestDoc doc(
        TreeObjects("4 0 R 7 0 R", {"<< /T (a) /Kids [5 0 R] >>", "<< /T (b) /Parent 4 0 R /Kids [6 0 R] >>",
                                    WidgetObject("/FT /Tx /T (c) /Parent 5 0 R"), WidgetObject("/FT /Tx /T (z)")}));
    DMField *leaf = FieldOf(doc, "a.b.c");
    ASSERT_NE(leaf, nullptr);
    const LexObj dict = leaf->obj;
    TSDMFieldUndefine(leaf);
    EXPECT_EQ(FieldOf(doc, "a"), nullptr);
    EXPECT_EQ(LexArrayLength(doc.At("Tessella/Fields")), 1);
    EXPECT_FALSE(LexDictKnown(dict, parent_K));
    EXPECT_EQ(Names(doc), std::vector<std::string>{"z"});
    EXPECT_EQ(TSLexDocFindHashHead(doc.lex)->fieldCount, 1u);
}

TEST_F(NameHash, OneOfTwoWidgetsGoes) {
    TestDoc doc(TreeObjects("4 0 R 5 0 R", {WidgetObject("/FT /Tx /T (w)"), WidgetObject("/FT /Tx /T (w)")}));
    DMField *first = TSDMFieldFromLexObj(doc.At("Tessella/Fields/0"));
    DMField *second = TSDMFieldFromLexObj(doc.At("Tessella/Fields/1"));
    ASSERT_TRUE(first && second);
    EXPECT_TRUE(first->state & second->state & DMFieldSharesName);
    int joined = 0;
    const Listener listener(TSFieldDidJoin, [&](TSFieldNotifyRec &) { ++joined; });
    TSDMFieldUndefine(first);
    EXPECT_EQ(joined, 1);
    EXPECT_EQ(FieldOf(doc, "w"), second);
    EXPECT_FALSE(second->state & DMFieldSharesName);
    // In a group the name is shared with the group itself, as long as one widget is left.
    TestDoc group(TreeObjects("4 0 R", {"<< /T (g) /FT /Tx /Kids [5 0 R 6 0 R] >>", WidgetObject("/Parent 4 0 R"),
                                        WidgetObject("/Parent 4 0 R")}));
    ASSERT_NE(FieldOf(group, "g"), nullptr);
    TSDMFieldUndefine(TSDMFieldFromLexObj(group.At("Tessella/Fields/0/Kids/0")));
    EXPECT_EQ(joined, 1);
    EXPECT_TRUE(FieldOf(group, "g")->state & DMFieldSharesName);
}

KRBool UndefineAll(DMField *field, void *count) {
    ++*static_cast<int *>(count);
    // What comes next goes with it.
    if (field->nextSameName) TSDMFieldUndefine(field->nextSameName);
    TSDMFieldUndefine(field);
    return true;
}

TEST_F(NameHash, AnEnumerationSurvivesWhatItsCallsDo) {
    TestDoc doc(
        TreeObjects("4 0 R 5 0 R 6 0 R 7 0 R", {WidgetObject("/FT /Tx /T (w)"), WidgetObject("/FT /Tx /T (w)"),
                                                WidgetObject("/FT /Tx /T (a)"), WidgetObject("/FT /Tx /T (x)")}));
    int count = 0;
    TSDMDocEnumDMFields(doc.doc, true, false, &UndefineAll, &count);
    EXPECT_EQ(count, 3);
    EXPECT_TRUE(Names(doc).empty());
    EXPECT_EQ(LexArrayLength(doc.At("Tessella/Fields")), 0);
}

TEST_F(NameHash, ManyFieldsLeaveTheirArraysTogether) {
    std::vector<std::string> objects = {"<< /T (g) /Kids ["};
    std::string roots = "4 0 R ";
    for (int i = 0; i < 20; ++i) {
        const std::string number = std::to_string(i);
        objects[0] += std::to_string(5 + i) + " 0 R ";
        objects.push_back(WidgetObject("/FT /Tx /Parent 4 0 R /T (k" + number + ")"));
        roots += std::to_string(25 + i) + " 0 R ";
    }
    objects[0] += "] >>";
    for (int i = 0; i < 20; ++i) objects.push_back(WidgetObject("/FT /Tx /T (r" + std::to_string(i) + ")"));
    TestDoc doc(TreeObjects(roots, objects));
    FieldRemoval removal;
    for (int i = 0; i < 20; ++i) {
        removal.Undefine(FieldOf(doc, ("g.k" + std::to_string(i)).c_str()));
        if (i % 2) removal.Undefine(FieldOf(doc, ("r" + std::to_string(i)).c_str()));
    }
    removal.Undefine(nullptr);
    removal.Finish();
    EXPECT_EQ(FieldOf(doc, "g"), nullptr) << "left without kids";
    EXPECT_EQ(Names(doc).size(), 10u);
    const LexObj fields = doc.At("Tessella/Fields");
    ASSERT_EQ(LexArrayLength(fields), 10);
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(Text(LexDictGet(LexArrayGet(fields, i), T_K)), "r" + std::to_string(2 * i)) << "in their order";
}

TEST_F(NameHash, AWidgetLosesItsKidsOnLoad) {
    TestDoc doc(TreeObjects("4 0 R 5 0 R 6 0 R", {WidgetObject("/FT /Tx /T (w) /Kids [3 0 R]"), "<< /T (k) /Kids 12 >>",
                                                  WidgetObject("/FT /Tx /T (x) /Kids (no)")}));
    EXPECT_EQ(Names(doc, /*terminalOnly*/ false).size(), 2u);
    EXPECT_FALSE(LexDictKnown(doc.At("Tessella/Fields/0"), Kids_K));
    EXPECT_FALSE(LexDictKnown(doc.At("Tessella/Fields/2"), Kids_K));
}

TEST_F(NameHash, EntriesAreInheritedByTheirRules) {
    TestDoc doc(TreeObjects(
        "4 0 R 7 0 R 8 0 R 9 0 R 10 0 R",
        {"<< /T (g) /FT /Tx /DA (node) /Q 2 /Kids [5 0 R 6 0 R] >>",
         WidgetObject("/Parent 4 0 R /T (a) /DA (own) /MaxLen 4"), WidgetObject("/Parent 4 0 R /T (b)"),
         WidgetObject("/T (c) /FT /Btn"), WidgetObject("/T (p) /FT /Btn /Ff 65536"),
         WidgetObject("/T (s) /FT /Sig /V << /Type /Sig >>"), WidgetObject("/T (t) /FT /Sig /V << /Contents (x) >>")},
        "/DA (form) /DR << /Font << >> >>"));
    DMField *a = FieldOf(doc, "g.a"), *b = FieldOf(doc, "g.b"), *c = FieldOf(doc, "c");
    ASSERT_TRUE(a && b && c);
    EXPECT_EQ(Text(TSDMFieldGetEntry(a, TSEntryDA)), "own");
    EXPECT_EQ(Text(TSDMFieldGetEntry(b, TSEntryDA)), "node");
    EXPECT_EQ(Text(TSDMFieldGetEntry(c, TSEntryDA)), "form");
    EXPECT_EQ(b->type, Tx_K);
    EXPECT_EQ(Text(TSDMFieldGetEntry(c, TSEntryV)), "/Off");
    EXPECT_EQ(Text(TSDMFieldGetEntry(FieldOf(doc, "p"), TSEntryV)), "null");
    EXPECT_EQ(Text(TSDMFieldGetEntry(FieldOf(doc, "s"), TSEntryV)), "null") << "a signature without contents is none";
    EXPECT_EQ(LexObjGetType(TSDMFieldGetEntry(FieldOf(doc, "t"), TSEntryV)), LexDict);
    EXPECT_EQ(Text(TSDMFieldGetEntry(a, TSEntryVT)), "null");
    EXPECT_EQ(Text(TSDMFieldGetEntry(a, 3)), "null");
    // Keys of any kind: upward, and in the end from the first child.
    DMField *g = FieldOf(doc, "g");
    ASSERT_EQ(g->firstChild, a);
    EXPECT_EQ(LexIntegerValue(TSDMFieldGetObj(g, maxLen_K)), 4);
    EXPECT_EQ(LexIntegerValue(TSDMFieldGetObj(b, quadding_K)), 2);
    TSDMFieldPutObj(b, quadding_K, LexNewInteger(doc.lex, false, 2));
    EXPECT_FALSE(LexDictKnown(b->obj, quadding_K)) << "inherited already";
}

// Shapes that earlier writers left behind.

/** Opened, all fields asked for, saved: what the file says of `Fields` and of the first page's widgets. */
std::string ShapeAfterSave(const TestDoc &doc) {
    Names(doc);
    TestDoc again(TempFile("again.pdf", doc.Saved()).c_str());
    std::string shape;
    for (const char *place : {"Tessella/Fields", "Pages/Kids/0/Annots"}) {
        const LexObj array = again.At(place);
        for (std::int32_t i = 0; i < LexArrayLength(array); ++i) {
            const LexObj element = LexArrayGet(array, i);
            shape += Text(LexDictGet(element, T_K)) + "=" + Text(LexDictGet(element, value_K)) + " ";
        }
        shape += "| ";
    }
    return shape;
}

TEST_F(NameHash, ReadingAFormLeavesItsShapeAlone) {
    // A terminal field "a" bars the way to "a.b"; a group "g" is not known as one before its kids are.
    for (const char *need : {"", "/NeedAppearances true"}) {
        TestDoc doc(FormObjects({"/FT /Tx /T (a) /V (1)", "/FT /Tx /T (a.b) /V (2)", "/FT /Tx /T (d.x) /V (3)",
                                 "/FT /Tx /T (d.x) /V (3)", "/FT /Tx /T <FEFF0064002E03B1> /V (4)"},
                                need));
        EXPECT_EQ(Names(doc).size(), 5u) << need;
        ASSERT_TRUE(TSDMFieldSetValue(FieldOf(doc, "d.x"), Str(doc, "new")));
        ASSERT_TRUE(TSDMFieldSetValue(FieldOf(doc, "a.b"), Str(doc, "deep")));
        const std::string all = "a=1 a.b=deep d.x=new d.x=new \xFE\xFF";
        const std::string shape = ShapeAfterSave(doc);
        EXPECT_EQ(shape.substr(0, all.size()), all) << need;
        EXPECT_EQ(LexArrayLength(doc.At("Pages/Kids/0/Annots")), 5);
    }
}

TEST_F(NameHash, TheOrderOfTheFieldsDecidesNothing) {
    const std::vector<std::string> parts = {"<< /T (a) /Kids [5 0 R] >>", WidgetObject("/FT /Tx /T (q) /Parent 4 0 R"),
                                            WidgetObject("/FT /Tx /T (a.b.c) /V (1)"), WidgetObject("/FT /Tx /T (z)")};
    for (const char *roots : {"4 0 R 6 0 R 7 0 R", "6 0 R 7 0 R 4 0 R", "7 0 R 4 0 R 6 0 R"}) {
        TestDoc doc(TreeObjects(roots, parts));
        ASSERT_TRUE(TSDMFieldSetValue(FieldOf(doc, "z"), Str(doc, "1"))) << roots;
        EXPECT_EQ(Text(TSDMFieldGetValue(FieldOf(doc, "a.b.c"))), "1") << roots;
        EXPECT_EQ(LexArrayLength(doc.At("Tessella/Fields")), 3) << roots;
        EXPECT_EQ(Names(doc).size(), 3u) << roots;
    }
}

TEST_F(NameHash, DefiningBesideAndBelowARootWithADottedTitle) {
    TestDoc doc(FormObjects({"/FT /Tx /T (a.b) /V (v)"}));
    DMField *second = TSLexDictDefineField(NewWidget(doc), "a.b");
    ASSERT_TRUE(TSDMFieldIsValid(second));
    DMField *group = FieldOf(doc, "a.b");
    EXPECT_EQ(second->parent, group);
    EXPECT_EQ(Text(TSDMFieldGetValue(second)), "v");
    EXPECT_EQ(TSLexDictDefineField(NewWidget(doc), "a.b.c"), nullptr) << "below a terminal field";
    ASSERT_NE(TSLexDictDefineField(NewWidget(doc), "a.c"), nullptr);
    EXPECT_EQ(LexArrayLength(doc.At("Tessella/Fields")), 2);
}

TEST_F(NameHash, EntriesWithoutANameStandInNobodysWay) {
    std::vector<std::string> warnings;
    const std::int32_t id = TSFormWarningsObserve(
        [](void *record, void *list) {
            static_cast<std::vector<std::string> *>(list)->push_back(static_cast<TSFormWarning *>(record)->text);
        },
        &warnings);
    for (const char *need : {"", "/NeedAppearances true"}) {
        warnings.clear();
        std::vector<std::string> objects = FormObjects({"/FT /Tx /T (a)", "/FT /Tx", "/FT /Tx /T 5"}, need);
        objects[0].insert(objects[0].find("/Fields [") + 9, "<< >> ");
        TestDoc doc(objects);
        EXPECT_TRUE(TSDMFieldSetValue(FieldOf(doc, "a"), Str(doc, "1"))) << need;
        ASSERT_NE(FieldOf(doc, ""), nullptr) << need;
        EXPECT_TRUE(TSDMFieldIsAnnot(FieldOf(doc, "")));
        EXPECT_EQ(Names(doc).size(), 2u) << need;
        EXPECT_EQ(warnings.size(), 2u) << need;
    }
    TSFormWarningsIgnore(id);
}

TEST_F(NameHash, KidsDecideWhoseTheyAre) {
    const std::vector<std::string> parts = {"<< /T (g) /FT /Tx /Kids [5 0 R 6 0 R 7 0 R] >>",
                                            WidgetObject("/T (noparent)"),
                                            WidgetObject("/T (wrong) /Parent 8 0 R"),
                                            WidgetObject("/T (right) /Parent 4 0 R"),
                                            "<< /T (h) /Kids [9 0 R] >>",
                                            WidgetObject("/FT /Tx /T (k) /Parent 8 0 R")};
    for (const bool pageFirst : {false, true}) {
        TestDoc doc(TreeObjects("4 0 R 8 0 R", parts));
        if (pageFirst) {
            DMField *field = TSDMFieldFromLexObj(doc.At("Tessella/Fields/0/Kids/1"));
            EXPECT_STREQ(TSDMFieldGetName(field), "g.wrong");
        }
        const std::vector<std::string> names = Names(doc);
        EXPECT_EQ(std::set<std::string>(names.begin(), names.end()),
                  (std::set<std::string>{"g.noparent", "g.wrong", "g.right", "h.k"}));
    }
}

TEST_F(NameHash, FlagsOfAWidgetWithoutATitleAreItsFields) {
    TestDoc doc(
        TreeObjects("4 0 R 7 0 R", {"<< /T (g) /FT /Btn /Ff 49152 /Kids [5 0 R 6 0 R] >>",
                                    WidgetObject("/Parent 4 0 R /Ff 0"), WidgetObject("/Parent 4 0 R"),
                                    "<< /T (h) /FT /Btn /Kids [8 0 R] >>", WidgetObject("/Parent 7 0 R /Ff 32768")}));
    for (const char *place : {"Tessella/Fields/0/Kids/0", "Tessella/Fields/0/Kids/1", "Tessella/Fields/1/Kids/0"})
        EXPECT_TRUE(TSDMFieldGetFlags(TSDMFieldFromLexObj(doc.At(place)), TSFieldWord) & TSFieldRadio) << place;
}

TEST_F(NameHash, WhileAFormIsAssembledRootsAreMerged) {
    TestDoc doc(FormObjects({"/FT /Tx /T (a) /V (1)", "/FT /Tx /T (b)"}));
    Names(doc);
    TSLexDocFindHashHead(doc.lex)->assembling = true;
    const LexObj same = NewWidget(doc), inside = NewWidget(doc), fresh = NewWidget(doc);
    LexDictPut(same, T_K, Str(doc, "a"));
    LexDictPut(fresh, T_K, Str(doc, "bb"));
    LexDictPut(inside, T_K, Str(doc, "b.c"));
    for (const LexObj dict : {same, fresh}) LexDictPut(dict, FT_K, Name(doc, "Tx"));
    DMField *joined = TSDMFieldFromLexObj(same);
    ASSERT_TRUE(TSDMFieldIsValid(joined));
    EXPECT_STREQ(TSDMFieldGetName(joined), "a");
    EXPECT_EQ(LexArrayLength(LexDictGet(FieldOf(doc, "a")->obj, Kids_K)), 2);
    ASSERT_TRUE(TSDMFieldIsValid(TSDMFieldFromLexObj(fresh)));
    EXPECT_EQ(TSDMFieldFromLexObj(inside), nullptr) << "below a terminal field";
    EXPECT_EQ(LexArrayLength(doc.At("Tessella/Fields")), 3);
}

TEST_F(NameHash, AHierarchyInsideAnotherRootComesApart) {
    TestDoc doc(TreeObjects(
        "7 0 R", {"<< /T (r) /FT /Tx /Kids [5 0 R 4 0 R] >>", "<< /T (n) /Parent 4 0 R /Kids [6 0 R 4 0 R] >>",
                  WidgetObject("/T (l) /Parent 5 0 R"), WidgetObject("/FT /Tx /T (keep) /X 4 0 R")}));
    const LexObj root = doc.At("Tessella/Fields/0/X"), leaf = At(root, "Kids/0/Kids/0");
    TSLexDictRemoveHierarchy(root);
    EXPECT_EQ(Text(leaf), "<< /FT /Tx /Rect [0 0 10 10] /Subtype /Widget /T (r.n.l) /Type /Annot >>");
    EXPECT_FALSE(LexDictKnown(root, Kids_K));
}

// Around opening and saving.

TEST_F(NameHash, NeedAppearancesIsServedOnceWhenItIsTrue) {
    const std::vector<std::string> fields = {"/FT /Tx /T (a) /V (1)", "/FT /Tx /T (b)"};
    {
        TestDoc doc(FormObjects(fields, "/NeedAppearances true"));
        EXPECT_EQ(DrawnLog().size(), 2u);
        EXPECT_FALSE(LexDictKnown(doc.At("Tessella"), docID_K));
    }
    DrawnLog().clear();
    TestDoc no(FormObjects(fields, "/NeedAppearances false"));
    TestDoc strange(FormObjects(fields, "/NeedAppearances (yes)"));
    EXPECT_TRUE(DrawnLog().empty());
    EXPECT_TRUE(LexDictKnown(no.At("Tessella"), docID_K));
    EXPECT_TRUE(LexDictKnown(strange.At("Tessella"), docID_K));
}

TEST_F(NameHash, NothingIsLoadedUnasked) {
    TestDoc doc(FormObjects({"/FT /Tx /T (a)", "/FT /Tx /T (b)"}));
    const DocHashControl *control = TSLexDocFindHashHead(doc.lex);
    ASSERT_NE(control, nullptr);
    EXPECT_EQ(control->fieldCount, 0u);
    EXPECT_NE(TSDMFieldFromLexObj(doc.At("Tessella/Fields/0")), nullptr);
    EXPECT_EQ(control->fieldCount, 1u);
    EXPECT_NE(FieldOf(doc, "a"), nullptr);
    EXPECT_EQ(control->fieldCount, 1u) << "found without a load";
    EXPECT_EQ(FieldOf(doc, "none"), nullptr);
    EXPECT_EQ(control->fieldCount, 2u);
}

TEST_F(NameHash, FieldsAreOutOfReachDuringASave) {
    TestDoc doc(FormObjects({"/FT /Tx /T (a)", "/FT /Tx /T (b)"}));
    DMField *field = FieldOf(doc, "a");
    DMDocSaveRecord save{sizeof save, 0, nullptr, nullptr};
    frm_DocWillSave(doc.doc, &save, nullptr);
    EXPECT_EQ(FieldOf(doc, "a"), nullptr);
    EXPECT_EQ(TSDMFieldFromLexObj(doc.At("Tessella/Fields/1")), nullptr);
    frm_DocDidSave(doc.doc, KRErrFileIO, nullptr);
    EXPECT_EQ(FieldOf(doc, "a"), field) << "a save that numbers nothing anew keeps the records";
    save.flags = DMDocSaveFull;
    frm_DocWillSave(doc.doc, &save, nullptr);
    EXPECT_EQ(TSLexDocFindHashHead(doc.lex)->fieldCount, 0u);
    EXPECT_EQ(FieldOf(doc, "none"), nullptr);
    frm_DocDidSave(doc.doc, KRErrNone, nullptr);
    EXPECT_NE(FieldOf(doc, "b"), nullptr);
}

TEST_F(NameHash, RecordsEndWithTheirDocument) {
    // Without a view no handler runs when a document closes, and its handles may come again.
    for (const char *name : {"one", "two", "three"}) {
        const DMDoc doc =
            jackdaw::OpenDocFromBytes(PdfText(FormObjects({std::string("/FT /Tx /T (") + name + ")"})), nullptr);
        const DMField *field = TSDMDocGetDMFieldFromName(doc, name);
        ASSERT_NE(field, nullptr) << name;
        EXPECT_EQ(TSDMDocGetDMFieldFromName(doc, "absent"), nullptr);
        const LexObj dict = field->obj;
        DMDocClose(doc);
        EXPECT_EQ(TSDMFieldFromLexObj(dict), nullptr);
        EXPECT_EQ(TSLexObjFindDMField(dict), nullptr);
    }
}

TEST_F(NameHash, FormsDataIsAcquiredWithoutWritingRightsAndReleased) {
    TestDoc doc(FormObjects({"/FT /Tx /T (a)"}));
    TSDMDocReleaseFormsData(doc.doc);
    EXPECT_EQ(TSDMDocFindHashHead(doc.doc), nullptr);
    TSDMDocAcquireFormsData(doc.doc);
    TSDMDocAcquireFormsData(doc.doc);
    EXPECT_NE(FieldOf(doc, "a"), nullptr);
    EXPECT_TRUE(TSDMDocMakerIsOK(doc.doc) && TSDMDocFillerIsOK(doc.doc));
    EXPECT_FALSE(TSDMDocFillerIsOK(nullptr));
}

// Files that mean harm.

TEST_F(NameHash, CyclesAndSharedSubtreesEnd) {
    TestDoc cycle(
        TreeObjects("4 0 R 5 0 R 6 0 R 6 0 R 4 0 R null 7 (x) 3 0 R",
                    {"<< /T (a) /Kids [5 0 R 4 0 R] /Parent 5 0 R >>", "<< /T (b) /Parent 4 0 R /Kids [4 0 R] >>",
                     WidgetObject("/FT /Tx /T (w) /Parent 6 0 R")}));
    EXPECT_TRUE(Names(cycle, /*terminalOnly*/ false).empty());
    // Each node lists the next one twice: a walk that does not remember would go through the last a billion times.
    std::vector<std::string> nodes;
    const int levels = 40;
    for (int i = 0; i < levels; ++i) {
        const std::string next = std::to_string(5 + i) + " 0 R ";
        const std::string parent = i > 0 ? "/Parent " + std::to_string(3 + i) + " 0 R" : "/T (top)";
        nodes.push_back("<< " + parent + " /Kids [" + next + next + "] >>");
    }
    nodes.push_back(WidgetObject("/FT /Tx /Parent " + std::to_string(3 + levels) + " 0 R"));
    TestDoc shared(TreeObjects("4 0 R", nodes));
    EXPECT_EQ(Names(shared), std::vector<std::string>{"top"});
    EXPECT_TRUE(TSDMFieldIsTerminal(FieldOf(shared, "top")));
}

TEST_F(NameHash, ATreeTooDeepIsLeftOut) {
    std::vector<std::string> nodes;
    const int levels = 20000;
    for (int i = 0; i < levels; ++i) {
        const std::string parent = i > 0 ? "/Parent " + std::to_string(3 + i) + " 0 R" : "/T (top)";
        nodes.push_back("<< /FT /Tx " + parent + " /Kids [" + std::to_string(5 + i) + " 0 R] >>");
    }
    nodes.push_back(WidgetObject("/Parent " + std::to_string(3 + levels) + " 0 R"));
    TestDoc doc(TreeObjects("4 0 R", nodes));
    EXPECT_TRUE(Names(doc).empty());
    // From the top down there is a field at each level, as far as that goes.
    int made = 0;
    LexObj node = doc.At("Tessella/Fields/0");
    for (; LexObjGetType(node) == LexDict; node = LexArrayGet(TSLexDictGetOfType(node, Kids_K, LexArray), 0)) {
        if (!TSDMFieldFromLexObj(node)) break;
        ++made;
    }
    EXPECT_GE(made, 200);
    EXPECT_LE(made, TSLimitOf(TSLimitFieldDepth) + 1);
    EXPECT_TRUE(TSDMFieldIsTerminal(FieldOf(doc, "top")));
}

TEST_F(NameHash, EachBrokenInvariantIsFound) {
    TestDoc doc(TreeObjects("4 0 R 7 0 R", {"<< /T (g) /FT /Tx /Kids [5 0 R 6 0 R] >>", WidgetObject("/Parent 4 0 R"),
                                            WidgetObject("/Parent 4 0 R"), WidgetObject("/T (alone) /FT /Tx")}));
    DMField *top = FieldOf(doc, "g"), *alone = FieldOf(doc, "alone");
    DocHashControl *control = TSLexDocFindHashHead(doc.lex);
    ASSERT_TRUE(TSDMFieldIsTerminal(top) && top->terminalKnown);
    ASSERT_EQ(DocHashFault(control), 0);
    const auto faultWhile = [control](auto &place, auto value) {
        const auto before = std::exchange(place, value);
        const int fault = DocHashFault(control);
        place = before;
        return fault;
    };
    EXPECT_EQ(faultWhile(NameEntryOf(alone)->head, nullptr), 1);
    EXPECT_EQ(faultWhile(top->nextSameName, nullptr), 2);
    EXPECT_EQ(faultWhile(top->state, top->state & ~DMFieldSharesName), 3);
    EXPECT_EQ(faultWhile(control->fieldCount, 3u), 4);
    EXPECT_EQ(faultWhile(alone->objectKey, top->objectKey), 5);
    EXPECT_EQ(faultWhile(top->firstChild->parent, alone), 6);
    EXPECT_EQ(faultWhile(top->firstChild->name, alone->name), 2);
    EXPECT_EQ(faultWhile(NameEntryOf(top)->absent, std::uint32_t{top->entries = TSEntryV}), 8);
    EXPECT_EQ(faultWhile(control->closing, true), 10);
    FieldCursor stray;
    DMField gone{};
    stray.field = &gone;
    EXPECT_EQ(faultWhile(control->cursors, &stray), 9);
}

TEST_F(NameHash, ALimitThatIsSetHolds) {
    KRLimit depth{};
    ASSERT_TRUE(TSLimitGet(TSLimitFieldDepth, &depth));
    EXPECT_FALSE(TSLimitGet(TSLimitCount, &depth));
    EXPECT_FALSE(TSLimitSet("field-depths", 1));
    EXPECT_FALSE(TSLimitSet("field-depth", 0));
    EXPECT_FALSE(TSLimitSet("field-depth", depth.highest + 1));

    TestDoc doc(TreeObjects("4 0 R", {"<< /T (a) /Kids [5 0 R] >>", "<< /T (b) /Parent 4 0 R /Kids [6 0 R] >>",
                                      WidgetObject("/T (c) /Parent 5 0 R")}));
    ASSERT_TRUE(TSLimitSet("field-depth", 1));
    EXPECT_TRUE(Names(doc).empty());
    ASSERT_TRUE(TSLimitSet("field-depth", depth.standard));
}

TEST_F(NameHash, AFieldOfAnEmptyGroupBeingLoadedIsNotFreedUnderItsLoader) {
    // The only kid that the group lists cannot be a field: it leaves the list, which then is empty.
    TestDoc doc(TreeObjects("4 0 R", {"<< /T (g) /FT /Tx /Kids [5 0 R] >>", WidgetObject("/Parent 4 0 R /T (x.y)"),
                                      WidgetObject("/Parent 4 0 R")}));
    const LexObj unlisted = NewWidget(doc);
    LexDictPut(unlisted, parent_K, doc.At("Tessella/Fields/0"));
    DMField *field = TSDMFieldFromLexObj(unlisted);
    ASSERT_TRUE(TSDMFieldIsValid(field));
    EXPECT_STREQ(TSDMFieldGetName(field), "g");
    EXPECT_EQ(field->parent, FieldOf(doc, "g"));
}

TEST_F(NameHash, LargeFormsAreFoundWhole) {
    // Merging roots is the dearest kind of load; work that grows faster than the form would not come to its end here.
    constexpr int count = 16000;
    for (const char *extra : {"", "/NeedAppearances false"}) {
        std::vector<std::string> fields;
        const auto nameOf = [](int i) { return "part" + std::to_string(i % 100) + "_" + std::to_string(i); };
        for (int i = 0; i < count; ++i) fields.push_back("/FT /Tx /T (" + nameOf(i) + ")");
        std::vector<std::string> objects = FormObjects(fields, extra);
        objects[2] = "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] >>";
        TestDoc doc(objects);
        EXPECT_EQ(Names(doc).size(), static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i) EXPECT_NE(FieldOf(doc, nameOf(i).c_str()), nullptr);
    }
}

} // namespace
