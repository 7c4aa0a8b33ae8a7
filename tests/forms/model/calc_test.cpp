// The calculation order: the list, its form in the file, fields that come and go, page insertions, saves.
// SPDX-License-Identifier: MIT
#include "model/miCalc.h"

#include "life/DMFieldLife.h"
#include "model/DocData.h"
#include "model/FieldRemoval.h"
#include "model/LexField.h"
#include "model/NameHash.h"
#include "objects/LexUtil.h"
#include "tests/forms/ModelFixture.h"

namespace {

using CalcOrder = Model;

const std::string s_calculates = " /AA << /C << /S /JavaScript /JS (1) >> >>";

std::vector<std::string> ThreeFields(const std::string &order) {
    return FormObjects({"/FT /Tx /T (a)" + s_calculates, "/FT /Tx /T (b)" + s_calculates, "/FT /Tx /T (c)"}, order);
}

std::string Order(const TestDoc &doc) {
    std::string names;
    for (const std::string &name : TJSGetCalcArray(doc.doc)->names) names += name + " ";
    return names;
}

/** The names that `CO` refers to; "-" for what is no field. */
std::string Stored(const TestDoc &doc) {
    const LexObj order = doc.At("Tessella/CO");
    if (LexObjGetType(order) != LexArray) return "none";
    std::string names;
    for (std::int32_t i = 0; i < LexArrayLength(order); ++i) {
        const char *name = TSDMFieldGetName(TSDMFieldFromLexObj(LexArrayGet(order, i)));
        names += std::string(name ? name : "-") + " ";
    }
    return names;
}

TEST_F(CalcOrder, ListKeepsCountAndOrder) {
    TestDoc doc(ThreeFields(""));
    DMField *a = FieldOf(doc, "a"), *b = FieldOf(doc, "b"), *c = FieldOf(doc, "c");
    TSCalcArray *list = TSCalcArrayNew();
    TSCalcArrayInsertEntry(list, TSCalcArrayEnd, b);
    TSCalcArrayInsertEntry(list, -5, a);
    TSCalcArrayInsertEntry(list, 99, c);
    TSCalcArrayInsertEntry(list, 1, b);
    EXPECT_EQ(list->names, (std::deque<std::string>{"a", "b", "b", "c"}));
    EXPECT_EQ(TSCalcArrayGetFieldIndex(list, "b"), 1) << "the first of two";
    EXPECT_EQ(TSCalcArrayGetFieldIndex(list, "B"), -1);
    TSCalcArraySetNthEntry(list, 1, c);
    EXPECT_EQ(TSCalcArrayGetFieldIndex(list, "b"), 2);
    EXPECT_EQ(TSCalcArrayGetFieldIndex(list, "c"), 1);
    TSCalcArrayDeleteEntry(list, 1);
    TSCalcArrayDeleteEntry(list, 7);
    EXPECT_EQ(TSCalcArrayGetFieldIndex(list, "c"), 2);
    EXPECT_EQ(TSCalcArrayGetFieldIndex(list, "a"), 0) << "in front of where the last search ended";
    EXPECT_EQ(TSCalcArrayGetNthEntry(doc.doc, list, 1), b);
    EXPECT_EQ(TSCalcArrayGetNthEntry(doc.doc, list, 3), nullptr);
    TSCalcArray *copy = TSCalcArrayCopy(list), *empty = TSCalcArrayCopy(nullptr);
    EXPECT_TRUE(TSCalcArrayEq(list, copy));
    TSCalcArrayDeleteEntry(copy, 0);
    EXPECT_FALSE(TSCalcArrayEq(list, copy));
    EXPECT_TRUE(TSCalcArrayEq(empty, nullptr));
    for (TSCalcArray *array : {list, copy, empty}) TSCalcArrayDelete(array);
    TSCalcArrayDelete(nullptr);
}

TEST_F(CalcOrder, WhatIsNoFieldVanishesOnReading) {
    TestDoc doc(ThreeFields("/CO [5 0 R null 3 0 R (x) 4 0 R]"));
    EXPECT_EQ(Order(doc), "b a ");
    TestDoc strange(ThreeFields("/CO 12"));
    EXPECT_EQ(Order(strange), "");
}

TEST_F(CalcOrder, AnEmptyListWritesNothingAndRemovesWhatWasThere) {
    TestDoc none(PageObjects());
    TSDMDocSetCalcArray(none.doc, TJSGetCalcArray(none.doc));
    EXPECT_EQ(LexObjGetType(none.At("Tessella")), LexNull);
    TestDoc doc(ThreeFields("/CO [4 0 R]"));
    EXPECT_TRUE(TJSCalcFieldsListDelete(doc.doc, FieldOf(doc, "a"), /*force*/ true));
    EXPECT_EQ(Stored(doc), "a ") << "the file's order changes at a save only";
    doc.Saved();
    EXPECT_EQ(Stored(doc), "none");
}

TEST_F(CalcOrder, FieldsAreListedOnceAndLast) {
    TestDoc doc(ThreeFields("/CO [5 0 R]"));
    EXPECT_FALSE(TJSCalcFieldsListAdd(doc.doc, FieldOf(doc, "c"))) << "no calculate action";
    EXPECT_TRUE(TJSCalcFieldsListAdd(doc.doc, FieldOf(doc, "a")));
    EXPECT_TRUE(TJSCalcFieldsListAdd(doc.doc, FieldOf(doc, "b")));
    EXPECT_EQ(Order(doc), "b a ");
    EXPECT_TRUE(TJSCalcFieldsListDelete(doc.doc, FieldOf(doc, "c"), /*force*/ false)) << "not listed is as good";
    EXPECT_FALSE(TJSCalcFieldsListDelete(doc.doc, nullptr, /*force*/ true));
    TJSDocTerm(doc.view, /*saveCalcArray*/ true);
    EXPECT_EQ(Stored(doc), "b a ");
}

TEST_F(CalcOrder, AFieldWithAnotherWidgetStaysListed) {
    TestDoc doc(ThreeFields("/CO [4 0 R 5 0 R]"));
    ASSERT_EQ(Order(doc), "a b ");
    const LexObj widget = NewWidget(doc);
    ASSERT_NE(TSLexDictDefineField(widget, "a"), nullptr);
    EXPECT_TRUE(TJSCalcFieldsListDelete(doc.doc, TSDMFieldFromLexObj(widget), /*force*/ false));
    EXPECT_EQ(Order(doc), "a b ");
    TSDMFieldUndefine(TSDMFieldFromLexObj(widget));
    EXPECT_TRUE(TJSCalcFieldsListDelete(doc.doc, FieldOf(doc, "a")->firstChild, /*force*/ false));
    EXPECT_EQ(Order(doc), "b ");
}

TEST_F(CalcOrder, ASaveThatRenumbersDropsTheListAndAsksForAReload) {
    TestDoc doc(ThreeFields("/CO [4 0 R]"));
    ASSERT_TRUE(TJSCalcFieldsListAdd(doc.doc, FieldOf(doc, "b")));
    TJSDocData *data = TJSGetData(doc.doc);
    EXPECT_FALSE(FieldOf(doc, "none"));
    ASSERT_FALSE(data->needLoadFields);
    DMDocSaveRecord save{sizeof save, DMDocSaveCopy, nullptr, nullptr};
    JSDocWillSaveEx(doc.doc, &save);
    EXPECT_NE(data->calcArray, nullptr);
    EXPECT_FALSE(data->needLoadFields);
    save.flags = DMDocSaveFull;
    JSDocWillSaveEx(doc.doc, &save);
    EXPECT_EQ(data->calcArray, nullptr);
    EXPECT_TRUE(data->needLoadFields);
    EXPECT_EQ(Order(doc), "a b ");
}

TEST_F(CalcOrder, SwitchesDefaultToOnForADocumentWithoutARecord) {
    TestDoc doc(ThreeFields(""));
    EXPECT_TRUE(TJSDocGetCalculate(nullptr));
    TJSDocSetCalculate(doc.doc, false);
    EXPECT_FALSE(TJSDocGetCalculate(doc.doc));
    TJSDocSetDelay(doc.doc, true);
    EXPECT_TRUE(TJSDocGetDelay(doc.doc));
    TJSDocTerm(doc.view, /*saveCalcArray*/ false);
    EXPECT_TRUE(TJSDocGetCalculate(doc.doc));
    EXPECT_TRUE(TJSDocInit(doc.view));
    EXPECT_EQ(TJSGetData(doc.doc)->scDoc, doc.view);
    EXPECT_FALSE(TJSDocGetDelay(doc.doc));
}

std::string &Calls() {
    static std::string s_calls;
    return s_calls;
}

TEST_F(CalcOrder, UpperLayersAreCalledInTheirOrderAndMayFail) {
    gDocSeams.runDocumentScripts = [](TJSDocData *data) { Calls() += data->scDoc ? "scripts " : "no view "; };
    gDocSeams.formDidOpen = [](SCDoc) { Calls() += "open "; };
    gDocSeams.formWillClose = [](SCDoc) { Calls() += "closing "; };
    gDocSeams.dropEngineObjects = [](TJSDocData *) { Calls() += "dropped "; };
    {
        TestDoc doc(ThreeFields(""));
        EXPECT_EQ(Calls(), "scripts open ");
    }
    EXPECT_EQ(Calls(), "scripts open closing dropped ");
    // An engine that cannot take a document: the form works all the same.
    gDocSeams = {};
    gDocSeams.attachEngine = [](TJSDocData *) { return false; };
    {
        TestDoc doc(ThreeFields("/CO [4 0 R]"));
        EXPECT_EQ(TJSGetData(doc.doc), nullptr);
        EXPECT_NE(FieldOf(doc, "c"), nullptr);
        EXPECT_EQ(TJSGetCalcArray(doc.doc), nullptr);
        EXPECT_FALSE(TJSCalcFieldsListDelete(doc.doc, FieldOf(doc, "a"), /*force*/ true));
        doc.Saved();
        EXPECT_EQ(Stored(doc), "a ");
    }
    gDocSeams = {};
}

} // namespace
