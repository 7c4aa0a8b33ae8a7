// Chains of actions, ways about a document, and copies into another one.
// SPDX-License-Identifier: MIT
#include "view/ActionDispatch.h"

#include <gtest/gtest.h>

#include "tests/host/ViewTestSupport.h"

using namespace jackdaw;
using namespace viewtest;

namespace {

std::string performed;
std::function<void(const std::string &name, SCDoc doc)> onPerform;

std::string nameOf(DMAction action) {
    return KRAtomGetString(LexNameValue(LexDictGet(DMActionGetLexObj(action), Atom("Name"))));
}

SCActionHandlerProcs logProcs() {
    SCActionHandlerProcs procs{};
    procs.size = sizeof procs;
    procs.perform = [](void *, DMAction action, SCDoc doc) {
        performed += nameOf(action);
        if (onPerform) onPerform(nameOf(action), doc);
    };
    procs.copy = [](void *, DMDoc target, DMAction action, SCDoc source) {
        return SCDocCopyActionCommon(target, action, source);
    };
    return procs;
}

class ActionTest : public testing::Test {
protected:
    ActionTest() {
        static const SCActionHandlerProcs procs = logProcs();
        SCAppRegisterActionHandler(&procs, nullptr, "Log", "Log");
        performed.clear();
        onPerform = nullptr;
    }
    /** Actions are objects 4, 5, ... of a document of one page; object 4 is the catalog's `Start`. */
    static std::vector<std::string> withActions(const std::vector<std::string> &entries) {
        std::vector<std::string> objects = pages(1, "", "/Start 4 0 R");
        for (const std::string &entry : entries) objects.push_back("<< /S /Log " + entry + " >>");
        return objects;
    }
    static DMAction start(const TestDoc &file) {
        return DMActionFromLexObj(file.At("Start"));
    }
    static std::string run(const std::vector<std::string> &entries) {
        performed.clear();
        TestDoc file(withActions(entries));
        SCDocPerformAction(file.view, start(file));
        return performed;
    }
};

} // namespace

TEST_F(ActionTest, ChainsGoOnInOrderAndCirclesEnd) {
    EXPECT_EQ(run({"/Name /A /Next 5 0 R", "/Name /B /Next 6 0 R", "/Name /C"}), "ABC");
    EXPECT_EQ(run({"/Name /A /Next [5 0 R 6 0 R]", "/Name /B /Next 7 0 R", "/Name /C", "/Name /D"}), "ABDC");
    EXPECT_EQ(run({"/Name /A /Next 4 0 R"}), "A");
    EXPECT_EQ(run({"/Name /A /Next [5 0 R 5 0 R 4 0 R]", "/Name /B /Next 4 0 R"}), "AB");
    EXPECT_EQ(run({"/Name /A /Next 5 0 R", "/S /Unknown /Name /B /Next 6 0 R", "/Name /C"}), "AC");
    EXPECT_EQ(run({"/Name /A /Next [7 (x) [5 0 R] null 5 0 R]", "/Name /B"}), "AB");
}

TEST_F(ActionTest, ARaiseOrTheEndOfTheViewEndsAChain) {
    TestDoc file(withActions({"/Name /A /Next 5 0 R", "/Name /B"}));
    onPerform = [](const std::string &, SCDoc) { KRRaise(KRErrBadField); };
    EXPECT_EQ(Protect([&] { SCDocPerformAction(file.view, start(file)); }), KRErrBadField);
    EXPECT_EQ(performed, "A");
    onPerform = [](const std::string &, SCDoc doc) { SCDocClose(doc, 1); };
    SCDocPerformAction(file.view, start(file));
    EXPECT_EQ(performed, "AA");
    file.view = nullptr;
}

TEST_F(ActionTest, ActionsThatPerformThemselvesEnd) {
    TestDoc file(withActions({"/Name /A"}));
    onPerform = [&](const std::string &, SCDoc doc) { SCDocPerformAction(doc, start(file)); };
    SCDocPerformAction(file.view, start(file));
    EXPECT_LT(performed.size(), 100u);
    onPerform = nullptr;
    performed.clear();
    SCDocPerformAction(file.view, start(file));
    EXPECT_EQ(performed, "A") << "the depth is counted down again";
}

TEST_F(ActionTest, CopiesFollowNextAndCirclesEnd) {
    TestDoc source(withActions({"/Name /A /Next [5 0 R 6 0 R 4 0 R]", "/Name /B", "/S /Unknown"}));
    const TestDoc target(pages(1));
    const DMAction copy = SCDocCopyAction(target.doc, start(source), source.view);
    ASSERT_TRUE(DMActionIsValid(copy));
    EXPECT_EQ(LexObjGetDoc(DMActionGetLexObj(copy)), target.lex);
    const LexObj next = LexDictGet(DMActionGetLexObj(copy), Atom("Next"));
    ASSERT_EQ(LexObjGetType(next), LexArray);
    EXPECT_EQ(LexArrayLength(next), 2) << "what has no copy procedure is left out";
    const DMAction unknown = DMActionFromLexObj(source.At("Start/Next/1"));
    EXPECT_FALSE(DMActionIsValid(SCDocCopyAction(target.doc, unknown, source.view)));
}

TEST_F(ActionTest, RecordsOfProceduresAreCopiedWhole) {
    SCActionHandlerProcs *fresh = SCActionHandlerProcsNew(nullptr);
    EXPECT_EQ(fresh->size, sizeof(SCActionHandlerProcs));
    EXPECT_EQ(fresh->perform, nullptr);
    KRfree(fresh);
    SCActionHandlerProcs *copy = SCActionHandlerProcsNew(SCAppGetActionHandlerByType(Atom("Log")));
    EXPECT_NE(copy->perform, nullptr);
    EXPECT_NE(copy->copy, nullptr);
    KRfree(copy);
    EXPECT_EQ(SCAppGetActionHandlerByType(Atom("NoSuchAction")), nullptr);
}

TEST(Actions, WaysAboutADocument) {
    const TestDoc file(pages(4, "",
                             "/Dests << /old [5 0 R /Fit] >> /Names << /Dests << /Names "
                             "[(chapter) << /D [6 0 R /XYZ 20 70 2] >> (loop) (loop)] >> >> "
                             "/A [<< /S /Named /N /NextPage >> << /S /Named /N /LastPage >> "
                             "<< /S /GoTo /D /old >> << /S /GoTo /D (chapter) >> << /S /GoTo /D [1 /Fit] >> "
                             "<< /S /GoTo /D (loop) >> << /S /GoTo /D [99 /Fit] >> << /S /GoTo >> "
                             "<< /S /Named /N /PrevPage >> << /S /Named /N /Close >>]"));
    const SCPageView view = SCDocGetPageView(file.view);
    const auto after = [&](int i) {
        SCDocPerformAction(file.view, DMActionFromLexObj(file.At("A/" + std::to_string(i))));
        return SCPageViewGetPageNum(view);
    };
    EXPECT_EQ(after(0), 1);
    EXPECT_EQ(after(1), 3);
    EXPECT_EQ(after(0), 3) << "no page follows the last";
    EXPECT_EQ(after(2), 2);
    EXPECT_EQ(after(3), 3);
    EXPECT_EQ(SCPageViewGetZoom(view), KRFixedFromInt(2));
    SCRect aperture;
    SCPageViewGetAperture(view, &aperture);
    EXPECT_EQ(aperture.left, 40);
    EXPECT_EQ(aperture.top, 120) << "(130 - 70) points below the top, twice";
    EXPECT_EQ(after(4), 1);
    for (const int nowhere : {5, 6, 7}) EXPECT_EQ(after(nowhere), 1) << nowhere;
    EXPECT_EQ(after(8), 0);
    EXPECT_EQ(after(8), 0);
    EXPECT_EQ(after(9), 0) << "a document does not close itself by name";
    SCPageViewGoBack(view);
    EXPECT_EQ(SCPageViewGetPageNum(view), 1);
    SCPageViewGoBack(view);
    EXPECT_EQ(SCPageViewGetPageNum(view), 3);
    SCPageViewGoForward(view);
    EXPECT_EQ(SCPageViewGetPageNum(view), 1);
    // A destination performed as if it were an action.
    SCDocPerformAction(file.view, DMActionFromLexObj(file.At("A/4/D")));
    EXPECT_EQ(SCPageViewGetPageNum(view), 1);
}

TEST(Actions, ALinkFollowsThePageNumberIntoAnotherDocument) {
    const TestDoc source(pages(3, "", "/A << /S /GoTo /D [5 0 R /XYZ null 1.25 0] >>"));
    const DMAction action = DMActionFromLexObj(source.At("A"));
    const TestDoc longer(pages(5));
    const TestDoc shorter(pages(1));
    const auto dest = [&](const TestDoc &target) {
        const DMAction copy = SCDocCopyAction(target.doc, action, source.view);
        return LexDictGet(DMActionGetLexObj(copy), Atom("D"));
    };
    EXPECT_TRUE(LexObjEqual(LexArrayGet(dest(longer), 0), longer.At("Pages/Kids/2")));
    EXPECT_EQ(LexIntegerValue(LexArrayGet(dest(shorter), 0)), 2);
    EXPECT_EQ(LexFixedValue(LexArrayGet(dest(longer), 3)), KRFixedOne + KRFixedOne / 4);
}

TEST(Annots, AnAnnotationIsCopiedWithWhatItNeeds) {
    std::vector<std::string> objects = pages(1, "/Annots [4 0 R]");
    objects.push_back("<< /Type /Annot /Subtype /Stamp /Rect [1 2 30 40] /P 3 0 R /AP << /N 5 0 R >> /Loop 4 0 R "
                      "/Parent 3 0 R /Popup 4 0 R /F 4 /Where 3 0 R >>");
    objects.push_back("<< /Length 5 /Scale 0.333333333 >>\nstream\n0 g f\nendstream");
    const TestDoc source(objects);
    const TestDoc target(pages(2));
    const DMPage page = DMDocAcquirePage(target.doc, 1);
    const DMAnnot annot = DMPageGetAnnot(SCPageViewGetPage(SCDocGetPageView(source.view)), 0);
    const DMAnnot copy = SCDocCopyAnnot(target.doc, page, annot, source.view);
    const LexObj dict = DMAnnotGetLexObj(copy);
    EXPECT_EQ(LexObjGetDoc(dict), target.lex);
    EXPECT_TRUE(LexObjEqual(LexDictGet(dict, Atom("P")), DMPageGetLexObj(page)));
    EXPECT_EQ(DMPageGetAnnotIndex(page, copy), -1);
    for (const char *key : {"Parent", "Popup", "Where"}) EXPECT_FALSE(LexDictKnown(dict, Atom(key))) << key;
    const LexObj stream = LexDictGet(LexDictGet(dict, Atom("AP")), Atom("N"));
    EXPECT_EQ(LexStreamLength(stream), 5);
    DMPageAddAnnot(page, DMAnnotLast, copy);
    EXPECT_NE(target.Saved().find("0.333333333"), std::string::npos);
    DMPageRelease(page);
}
