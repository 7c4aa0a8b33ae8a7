// Hooks on pages and annotations; actions by key; the registry of handlers; services over views.
// SPDX-License-Identifier: MIT
#include "life/LexFieldHooks.h"

#include "KernelSupportHFT.h"
#include "ScreenViewHFT.h"
#include "life/SCUtils.h"
#include "model/LexField.h"
#include "model/OnKey.h"
#include "model/WidgetType.h"
#include "model/miAction.h"
#include "model/miCalc.h"
#include "objects/LexUtil.h"
#include "tests/forms/ModelFixture.h"

namespace {

using Hooks = Model;

DMAnnot AnnotAt(const TestDoc &doc, const std::string &path) {
    return DMAnnotFromLexObj(doc.At(path));
}

DMAction ScriptAction(const TestDoc &doc, const std::string &script) {
    const EStrPtr text(EStrNewImpl(script.c_str(), EStrHost));
    return TSDMActionNewJavaScript(doc.doc, text.get());
}

TEST_F(Hooks, ANewWidgetPrintsAndSitsUpright) {
    auto objects = FormObjects({});
    objects[0] = "<< /Type /Catalog /Pages 2 0 R >>";
    objects[2] = "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] /Rotate 90 >>";
    TestDoc doc(objects);
    const DMPage page = DMDocAcquirePage(doc.doc, 0);
    const KRFixedRect rect{0, KRFixedFromInt(20), KRFixedFromInt(90), 0};
    const DMAnnot widget = DMPageCreateAnnot(page, Widget_K, &rect);
    DMPageAddAnnot(page, DMAnnotLast, widget);
    EXPECT_TRUE(IsDMDocTessella(doc.doc));
    EXPECT_EQ(DMAnnotGetFlags(widget), DMAnnotPrint);
    EXPECT_EQ(TSDMAnnotGetRotation(widget), 90);
    const DMAnnot link = DMPageCreateAnnot(page, Atom("Link"), &rect);
    DMPageAddAnnot(page, DMAnnotLast, link);
    EXPECT_EQ(DMAnnotGetFlags(link), 0u);
    DMPageRelease(page);
}

TEST_F(Hooks, AFieldLeavesWithItsWidget) {
    TestDoc doc(
        FormObjects({"/FT /Tx /T (a) /AA << /C << /S /JavaScript /JS (1) >> >>", "/FT /Tx /T (b)"}, "/CO [4 0 R]"));
    ASSERT_EQ(TSCalcArrayGetNumEntries(TJSGetCalcArray(doc.doc)), 1);
    const DMPage page = DMDocAcquirePage(doc.doc, 0);
    TSDMAnnotLockField(AnnotAt(doc, "Tessella/Fields/1"), true);
    DMPageRemoveAnnot(page, 1);
    EXPECT_NE(FieldOf(doc, "b"), nullptr);
    DMPageRemoveAnnot(page, 0);
    EXPECT_EQ(FieldOf(doc, "a"), nullptr);
    EXPECT_EQ(TSCalcArrayGetNumEntries(TJSGetCalcArray(doc.doc)), 0);
    EXPECT_EQ(LexArrayLength(doc.At("Tessella/Fields")), 1);
    DMPageRelease(page);
}

TEST_F(Hooks, FieldsGoBeforeTheirPages) {
    auto objects = FormObjects({"/FT /Tx /T (a)"});
    objects[1] = "<< /Type /Pages /Kids [3 0 R 5 0 R] /Count 2 >>";
    objects.push_back("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] >>");
    TestDoc doc(objects);
    // Nobody has asked for the field before.
    DMDocDeletePages(doc.doc, 0, 0);
    EXPECT_EQ(FieldOf(doc, "a"), nullptr);
    EXPECT_EQ(LexArrayLength(doc.At("Tessella/Fields")), 0);
}

TEST_F(Hooks, InsertedWidgetsBecomeFieldsInTheOrderOfTheirSource) {
    const std::string calc = " /AA << /C << /S /JavaScript /JS (1) >> >>";
    TestDoc target(FormObjects({"/FT /Tx /T (mine)" + calc, "/FT /Tx /T (both) /V (here)"}, "/CO [4 0 R]"));
    auto objects = FormObjects({"/FT /Tx /T (x)" + calc, "/FT /Tx /T (y)" + calc, "/FT /Tx /T (both) /V (there)"},
                               "/CO [5 0 R 4 0 R]");
    objects[0].insert(objects[0].size() - 2,
                      "/Names << /JavaScript << /Names [(s) << /S /JavaScript /JS (0) >>] >> >> ");
    TestDoc source(objects);
    ASSERT_NE(FieldOf(target, "mine"), nullptr);
    ASSERT_NE(FieldOf(source, "x"), nullptr);
    DMDocInsertPages(target.doc, 0, source.doc, 0, 0);
    EXPECT_TRUE(TSDMFieldIsValid(FieldOf(target, "x")));
    DMField *both = FieldOf(target, "both");
    ASSERT_TRUE(TSDMFieldIsValid(both));
    EXPECT_NE(both->firstChild, nullptr);
    EXPECT_EQ(Text(TSDMFieldGetValue(both)), "here");
    EXPECT_FALSE(LexDictKnown(target.At("Tessella"), docID_K));
    const TSCalcArray *order = TJSGetCalcArray(target.doc);
    ASSERT_EQ(TSCalcArrayGetNumEntries(order), 3);
    EXPECT_EQ(TSCalcArrayGetFieldIndex(order, "mine"), 0);
    EXPECT_EQ(TSCalcArrayGetFieldIndex(order, "y"), 1);
    EXPECT_EQ(TSCalcArrayGetFieldIndex(order, "x"), 2);
    EXPECT_EQ(Text(target.At("Names/JavaScript/Names/0")), "s");
}

TEST_F(Hooks, ActionsStandWhereTheirEventBelongs) {
    TestDoc doc(FormObjects({"/FT /Tx /T (a)"}));
    DMField *field = FieldOf(doc, "a");
    const DMAnnot annot = TSDMFieldGetDMAnnot(field);
    const DMAction script = ScriptAction(doc, "1;");
    EXPECT_FALSE(TSDMAnnotHasAction(annot, KRAtomNull));
    TSDMAnnotSetAction(annot, MouseUp_K, script);
    EXPECT_TRUE(LexObjEqual(LexDictGet(field->obj, A_K), DMActionGetLexObj(script)));
    EXPECT_TRUE(TSDMAnnotHasAction(annot, MouseUp_K));
    // A field writes U as its annotation's own and looks for it among the events.
    EXPECT_FALSE(TSDMFieldHasAction(field, MouseUp_K));
    TSDMFieldSetAction(field, MouseUp_K, DMAction{0, 0});
    EXPECT_FALSE(LexDictKnown(field->obj, A_K));
    const LexObj destination = LexNewArray(doc.lex, false, 1);
    TSDMAnnotSetAction(annot, MouseUp_K, DMAction{destination.node, destination.slot});
    EXPECT_EQ(LexObjGetType(LexDictGet(field->obj, Dest_K)), LexArray);
    EXPECT_TRUE(TSDMAnnotHasAction(annot, KRAtomNull));

    // Events of the value belong to the group and are inherited.
    const LexObj added = NewWidget(doc);
    DMField *second = TSLexDictDefineField(added, "a");
    ASSERT_NE(second, nullptr);
    TSDMFieldSetAction(second, Calculate_K, script);
    TSDMFieldSetAction(second, MouseEnter_K, script);
    EXPECT_FALSE(LexDictKnown(TSLexDictGetOfType(added, AA_K, LexDict), Calculate_K));
    EXPECT_TRUE(TSDMFieldHasAction(FieldOf(doc, "a"), Calculate_K));
    EXPECT_TRUE(DMActionIsValid(TSDMFieldGetAction(second, Calculate_K)));
    EXPECT_TRUE(TSDMFieldHasAction(second, MouseEnter_K));
    EXPECT_EQ(LexObjGetType(DMActionGetLexObj(TSDMFieldGetAction(FieldOf(doc, "a"), MouseEnter_K))), LexNull);
}

TEST_F(Hooks, ScriptsAreStringsOrStreams) {
    TestDoc doc(FormObjects({}));
    const std::string shortText(256, 's'), longText(257, 'l');
    const DMAction action = ScriptAction(doc, shortText);
    const LexObj dict = DMActionGetLexObj(action);
    EXPECT_EQ(LexObjGetType(LexDictGet(dict, JS_K)), LexString);
    const EStrPtr text(EStrNewImpl(longText.c_str(), EStrHost));
    TSDMActionSetJavaScript(action, text.get());
    const LexObj stream = LexDictGet(dict, JS_K);
    ASSERT_EQ(LexObjGetType(stream), LexStream);
    EXPECT_LT(LexStreamLength(stream), 100);
    EXPECT_EQ(EStrGetEncoding(text.get()), EStrHost);
    TSDMActionSetJavaScript(action, text.get());
    EXPECT_TRUE(LexObjEqual(LexDictGet(dict, JS_K), stream));
    EXPECT_TRUE(TSDMActionGetJavaScript(action, text.get()));
    EXPECT_EQ(EStrGetBytes(text.get()), longText);
    EXPECT_FALSE(TSDMActionGetJavaScript(DMAction{0, 0}, text.get()));
    EXPECT_TRUE(EStrIsNull(text.get()));
    EXPECT_EQ(LexObjGetType(DMActionGetLexObj(TSDMActionNewJavaScript(doc.doc, nullptr))), LexNull);
}

TEST_F(Hooks, TheNewestHandlerOfATypeIsFound) {
    SCWidgetHandler first{}, second{};
    first.GetType = second.GetType = [](SCWidgetHandler *) { return Atom("TestType"); };
    second.GetName = [](SCWidgetHandler *, char *, std::int32_t) {};
    TSSCAppRegisterWidgetHandler(&first);
    EXPECT_EQ(TSSCAppGetWidgetHandlerByName(Atom("TestType")), nullptr) << "it has no name";
    first.GetName = second.GetName;
    TSSCAppRegisterWidgetHandler(&first);
    TSSCAppRegisterWidgetHandler(&second);
    EXPECT_EQ(TSSCAppGetWidgetHandlerByName(Atom("TestType")), &second);
    std::vector<SCWidgetHandler *> seen;
    TSSCAppEnumWidgetHandlers(
        [](SCWidgetHandler *handler, void *data) { static_cast<decltype(seen) *>(data)->push_back(handler); }, &seen);
    EXPECT_EQ(seen.front(), &second);
    EXPECT_EQ(std::count(seen.begin(), seen.end(), &first), 0);
    TSSCWidgetHandlerFocus(&second, DMAnnot{0, 0}, nullptr);
    EXPECT_FALSE(TSSCWidgetHandlerIsFocus(&second, DMAnnot{0, 0}, nullptr));
    // The record goes out of scope; one that outlives the test takes its place.
    static SCWidgetHandler s_last = second;
    TSSCAppRegisterWidgetHandler(&s_last);
}

TEST_F(Hooks, WidgetTypesFollowTypeAndFlags) {
    TestDoc doc(FormObjects({"/FT /Btn /T (a) /Ff 65536", "/FT /Btn /T (b) /Ff 32768", "/FT /Btn /T (c)",
                             "/FT /Ch /T (d) /Ff 131072", "/FT /Ch /T (e)", "/FT /Sig /T (f)",
                             "/T 1 /FT /Btn /Ff 65536", "/T 1 /FT /Btn", "/T 1 /FT 1"}));
    const char *const types[] = {"Button", "RadioButton", "CheckBox", "ComboBox", "ListBox",
                                 "Sig",    "Button",      "Btn",      ""};
    for (int i = 0; i < 9; ++i)
        EXPECT_STREQ(KRAtomGetString(TSDMWidgetGetSubType(AnnotAt(doc, "Pages/Kids/0/Annots/" + std::to_string(i)))),
                     types[i]);
}

TEST_F(Hooks, OnKeysOutliveTheirAppearance) {
    TestDoc doc(
        FormObjects({"/FT /Btn /T (a) /AP << /N << /Off null /Ja << >> >> >>", "/FT /Btn /T (b) /AP << /N 3 >>"}));
    const DMAnnot a = AnnotAt(doc, "Tessella/Fields/0");
    EXPECT_EQ(WButtonGetOnKey(a), Atom("Ja"));
    WButtonSetOnKey(a, KRAtomNull);
    WButtonSetOnKey(a, Atom("Kept"));
    EXPECT_EQ(WButtonGetOnKey(a), Atom("Kept"));
    WButtonCleanUpKeys(a);
    EXPECT_EQ(WButtonGetOnKey(a), Atom("Ja"));
    EXPECT_EQ(WButtonGetOnKeyEx(AnnotAt(doc, "Tessella/Fields/1")), KRAtomNull);
    EXPECT_NE(WButtonGetOnKey(AnnotAt(doc, "Tessella/Fields/1")), KRAtomNull);
}

TEST_F(Hooks, AWidgetFindsItsPageAndFocus) {
    auto objects = FormObjects({"/FT /Tx /T (a)"});
    objects[1] = "<< /Type /Pages /Kids [5 0 R 3 0 R] /Count 2 >>";
    objects[3] = "<< /Type /Annot /Subtype /Widget /Rect [0 0 9 9] /P 5 0 R /FT /Tx /T (a) >>";
    objects.push_back("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] >>");
    objects[3].replace(objects[3].find("/P 5 0 R"), 8, "/P (bad)");
    TestDoc doc(objects);
    EXPECT_EQ(TSLexDocGetSCDoc(doc.lex), doc.view);
    EXPECT_EQ(TSLexDocGetSCDoc(nullptr), nullptr);
    const SCPageView view = SCDocGetPageView(doc.view);
    const DMAnnot annot = AnnotAt(doc, "Tessella/Fields/0");
    DMDocClearFlags(doc.doc, DMDocDirty);
    const DMPage page = TSSCPageViewGetDMPageFromAnnot(view, annot);
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(DMPageGetNumber(page), 1);
    EXPECT_TRUE(LexObjEqual(LexDictGet(DMAnnotGetLexObj(annot), PageFromAnnot_K), DMPageGetLexObj(page)));
    EXPECT_EQ(DMDocGetFlags(doc.doc) & DMDocDirty, 0u);
    DMPageRelease(page);

    EXPECT_FALSE(TSSCDocIsWidgetSelected(doc.view));
    TSSCDocFocusWidget(doc.view, annot);
    EXPECT_TRUE(TSSCDocIsWidgetFocus(doc.view, annot));
    EXPECT_TRUE(TSSCDocIsWidgetSelected(doc.view));
    SCDocClearSelection(doc.view, false);
    EXPECT_FALSE(TSSCDocIsWidgetFocus(doc.view, annot));
}

TEST_F(Hooks, RectanglesAndHandles) {
    const SCRect rect{-10, 0, 90, 40};
    EXPECT_TRUE(TSSCRectPointInRect(&rect, 90, 40));
    EXPECT_FALSE(TSSCRectPointInRect(&rect, 91, 40));
    EXPECT_EQ(TSSCRectHitAHandle(&rect, -10, 6), 1);
    EXPECT_EQ(TSSCRectHitAHandle(&rect, 84, 0), 2);
    EXPECT_EQ(TSSCRectHitAHandle(&rect, 90, 34), 3);
    EXPECT_EQ(TSSCRectHitAHandle(&rect, -5, 40), 4);
    EXPECT_EQ(TSSCRectHitAHandle(&rect, 40, 20), 0);
    KRFixedRect fixed;
    TSSCRectToFixedRect(&rect, &fixed);
    EXPECT_EQ(fixed.left, -10 * KRFixedOne);
    fixed.left += 0x8000;
    fixed.right = INT32_MAX;
    SCRect back;
    TSFixedRectRoundToSCRect(&fixed, &back);
    EXPECT_EQ(back.left, -9);
    EXPECT_EQ(back.bottom, 40);
    EXPECT_FALSE(TSSCLanguageIsJPN());
    const SCDoc shell = TSMallocSCDocShell();
    TSSCDocShellSetDMDoc(shell, nullptr);
    TSFreeSCDocShell(shell);
}

} // namespace
