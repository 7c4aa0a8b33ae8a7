// Views without a window: what is told when, the selection, menus, actions and places.
// SPDX-License-Identifier: MIT
#include "Views.h"

#include <cstdio>
#include <functional>
#include <gtest/gtest.h>
#include <memory>

#include "ActionDispatch.h"
#include "Alerts.h"
#include "AppState.h"
#include "HostError.h"
#include "HostFixture.h"
#include "KernelSupportHFT.h"
#include "LexHFT.h"
#include "Menus.h"
#include "PIFrame.h"
#include "PageView.h"
#include "Progress.h"
#include "ScreenViewUserInterfaceHFT.h"
#include "UnixHFT.h"
#include "ViewPlatform.h"

using namespace jackdaw;

namespace {

KRAtom atom(const char *text) {
    return KRAtomFromString(text);
}

/** `count` pages, page i being 100 + 10 i points high; `extra` are entries of all pages, `catalog` of the catalog. */
std::vector<std::string> pages(int count, const std::string &extra = "", const std::string &catalog = "") {
    std::vector<std::string> objects{"<< /Type /Catalog /Pages 2 0 R " + catalog + " >>", ""};
    std::string kids;
    for (int i = 0; i < count; ++i) {
        kids += std::to_string(3 + i) + " 0 R ";
        objects.push_back("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 " + std::to_string(100 + 10 * i) + "] " +
                          extra + " >>");
    }
    objects[1] = "<< /Type /Pages /Kids [" + kids + "] /Count " + std::to_string(count) + " >>";
    return objects;
}

/** Subscriptions for the life of the object; what was told stands in `told` as "number:name". */
class Listener {
public:
    Listener() {
        for (const int number : {2, 5, 6, 7, 8}) add(number, reinterpret_cast<KRProc>(&onView));
        add(SCDocDidOpen, reinterpret_cast<KRProc>(&onOpen));
        add(SCPageViewDidChange, reinterpret_cast<KRProc>(&onPageView));
    }
    ~Listener() {
        for (const auto &s : subscriptions) SCAppUnregisterNotification(s->number, 0, s->proc, s.get());
    }
    Listener(const Listener &) = delete;
    Listener &operator=(const Listener &) = delete;

    void name(SCDoc view, const std::string &text) {
        names.emplace_back(view, text);
    }
    std::string take() {
        return std::exchange(told, {});
    }

    std::string told;
    std::function<void(int number, SCDoc view)> react;

private:
    struct Subscription {
        Listener *listener;
        int number;
        KRProc proc;
    };

    void add(int number, KRProc proc) {
        subscriptions.push_back(std::make_unique<Subscription>(Subscription{this, number, proc}));
        SCAppRegisterNotification(number, 0, proc, subscriptions.back().get());
    }
    void tell(int number, SCDoc view, const std::string &extra) {
        std::string text = view == nullptr ? "-" : "?";
        for (const auto &[known, name] : names) {
            if (known == view) text = name;
        }
        told += (told.empty() ? "" : " ") + std::to_string(number) + ":" + text + extra;
        if (react) react(number, view);
    }
    static void onView(SCDoc view, void *data) {
        const auto *s = static_cast<Subscription *>(data);
        s->listener->tell(s->number, view, "");
    }
    static void onOpen(SCDoc view, KRErrorCode error, void *data) {
        static_cast<Subscription *>(data)->listener->tell(SCDocDidOpen, view, error != 0 ? "!" : "");
    }
    static void onPageView(SCPageView view, std::int16_t how, void *data) {
        static_cast<Subscription *>(data)->listener->tell(SCPageViewDidChange, SCPageViewGetDoc(view),
                                                          "/" + std::to_string(how));
    }

    std::vector<std::unique_ptr<Subscription>> subscriptions;
    std::vector<std::pair<SCDoc, std::string>> names;
};

bool isListed(SCDoc view) {
    struct Search {
        SCDoc view;
        bool found = false;
    } search{view};
    SCAppEnumDocs(
        [](SCDoc doc, void *data) -> KRBool {
            auto *s = static_cast<Search *>(data);
            s->found = s->found || doc == s->view;
            return !s->found;
        },
        &search);
    return search.found;
}

} // namespace

TEST(Views, NotificationsOfOpeningAndClosing) {
    Listener listener;
    const TestDoc a(pages(1));
    EXPECT_EQ(listener.take(), "4:? 5:? 2:?");
    listener.name(a.view, "a");
    std::unique_ptr<TestDoc> b = std::make_unique<TestDoc>(pages(1));
    listener.name(b->view, "b");
    EXPECT_EQ(listener.take(), "4:? 6:a 5:? 2:?");
    EXPECT_EQ(SCAppGetActiveDoc(), b->view);
    BringToFront(a.view);
    EXPECT_EQ(listener.take(), "6:b 5:a 2:a");
    BringToFront(b->view);
    listener.take();

    // The view is among the open ones at 7 and no more at 8.
    bool listedAt7 = false;
    bool listedAt8 = true;
    bool closedAgain = true;
    listener.react = [&](int number, SCDoc view) {
        if (number == SCDocWillClose) {
            listedAt7 = isListed(view);
            closedAgain = SCDocClose(view, 1) != 0;
        }
        if (number == SCDocDidClose) listedAt8 = isListed(view);
    };
    EXPECT_TRUE(SCDocClose(b->view, 0));
    EXPECT_EQ(listener.take(), "7:b 6:b 8:b 5:a 2:a");
    EXPECT_TRUE(listedAt7);
    EXPECT_FALSE(listedAt8);
    EXPECT_FALSE(closedAgain);
    EXPECT_EQ(Protect([&] { SCDocGetDMDoc(b->view); }), KRErrBadParam);
    b->view = nullptr;
    EXPECT_EQ(SCAppGetActiveDoc(), a.view);
}

TEST(Views, OneThatIsClosedWhileItOpens) {
    const TestDoc keep(pages(1));
    Listener listener;
    listener.react = [](int number, SCDoc view) {
        if (number == SCDocDidOpen) SCDocClose(view, 1);
    };
    const std::size_t open = OpenViews().size();
    listener.take();
    const std::string path = TempFile("closing.pdf", PdfText(pages(1)));
    const KRPathName name = KRPathFromPlatformPath(path.c_str());
    EXPECT_EQ(SCDocOpenFromFile(name, KRGetDefaultFileSys(), nullptr), nullptr);
    EXPECT_EQ(OpenViews().size(), open);
    KRFileSysReleasePath(KRGetDefaultFileSys(), name);
}

TEST(Views, ADocumentHasOneViewAndAViewItsOwnReference) {
    const std::string path = TempFile("twice.pdf", PdfText(pages(2)));
    const KRPathName name = KRPathFromPlatformPath(path.c_str());
    const DMDoc doc = DMDocOpen(KRGetDefaultFileSys(), name, nullptr);
    const SCDoc view = SCDocOpenFromDMDoc(doc, nullptr);
    DMDocClose(doc);
    EXPECT_EQ(DMDocGetNumPages(SCDocGetDMDoc(view)), 2);
    EXPECT_EQ(SCDocOpenFromFile(name, KRGetDefaultFileSys(), nullptr), view);
    EXPECT_TRUE(SCDocClose(view, 1));
    EXPECT_EQ(Protect([&] { DMDocGetNumPages(doc); }), KRErrBadParam) << "the last reference went with the view";
    KRFileSysReleasePath(KRGetDefaultFileSys(), name);
}

TEST(Views, OpeningGoesThroughTheReplaceableEntry) {
    static SCDoc answer = nullptr;
    static int asked = 0;
    const KRProc mine = reinterpret_cast<KRProc>(
        +[](KRPathName, KRFileSys, const SCDocOpenParams *) -> SCDoc { return ++asked, answer; });
    const KRProc callback = KRCallbackCreate(1, mine);
    KRHFTSetEntry(gScreenViewHFT, SCDocOpenFromFileWithParams.selector, callback, 0);
    EXPECT_EQ(SCDocOpenFromFile(nullptr, nullptr, "x"), nullptr);
    EXPECT_EQ(asked, 1);
    const KRProc host = KRHFTGetReplacedEntry(gScreenViewHFT, SCDocOpenFromFileWithParams.selector, callback);
    KRHFTSetEntry(gScreenViewHFT, SCDocOpenFromFileWithParams.selector, host, 0);
}

TEST(Views, AWindowThatFailsIsToldAndLeavesNothing) {
    Listener listener;
    const std::size_t open = OpenViews().size();
    Platform().openWindow = [](SCDoc) -> SCWindow { throw HostError{KRErrNoMemory}; };
    const std::string path = TempFile("window.pdf", PdfText(pages(1)));
    const KRPathName name = KRPathFromPlatformPath(path.c_str());
    EXPECT_EQ(Protect([&] { SCDocOpenFromFile(name, KRGetDefaultFileSys(), nullptr); }), KRErrNoMemory);
    Platform() = {};
    EXPECT_EQ(listener.take(), "4:?!");
    EXPECT_EQ(OpenViews().size(), open);
    KRFileSysReleasePath(KRGetDefaultFileSys(), name);
}

// Selections.

namespace {

std::string selectionLog;
bool raiseOnGetting = false;
bool reselectOnLosing = false;
int selectionA = 0;
int selectionB = 0;

SCSelectionServer testServer{
    sizeof(SCSelectionServer),
    [] { return KRAtomFromString("TestSelection"); },
    [](SCDoc, void *data, KRBool) {
        selectionLog += data == &selectionA ? "+a" : "+b";
        if (raiseOnGetting) KRRaise(KRErrBadField);
    },
    [](SCDoc doc, void *data, KRBool) {
        selectionLog += data == &selectionA ? "-a" : "-b";
        SCDocClearSelection(doc, 1);
        if (reselectOnLosing) SCDocSetSelection(doc, KRAtomFromString("TestSelection"), &selectionB, 1);
    },
    [](SCDoc, void *, std::uint16_t key, std::uint32_t) -> KRBool { return key == 'k'; },
    [](SCDoc, void *data) { selectionLog += data == &selectionA ? "xa" : "xb"; },
};

class SelectionTest : public testing::Test {
protected:
    SelectionTest() : file(pages(1)), type(atom("TestSelection")) {
        SCDocRegisterSelectionServer(&testServer);
        selectionLog.clear();
        raiseOnGetting = reselectOnLosing = false;
    }
    TestDoc file;
    KRAtom type;
};

} // namespace

TEST_F(SelectionTest, IsLostOnceAndDestroyed) {
    EXPECT_TRUE(SCDocSetSelection(file.view, type, &selectionA, 1));
    EXPECT_EQ(SCDocGetSelectionType(file.view), type);
    EXPECT_TRUE(SCDocSetSelection(file.view, type, &selectionA, 1)) << "selecting it again changes nothing";
    EXPECT_TRUE(SCDocSetSelection(file.view, type, &selectionB, 1));
    EXPECT_EQ(selectionLog, "+a-axa+b");
    EXPECT_EQ(SCDocGetSelection(file.view), &selectionB);
    EXPECT_TRUE(SCDocClearSelection(file.view, 1));
    EXPECT_EQ(selectionLog, "+a-axa+b-bxb");
    EXPECT_EQ(SCDocGetSelectionType(file.view), KRAtomNull);
    EXPECT_TRUE(SCDocClearSelection(file.view, 1));
    EXPECT_FALSE(SCDocSetSelection(file.view, atom("NoSuchServer"), &selectionA, 1));
}

TEST_F(SelectionTest, OneThatComesBackIsNotCleared) {
    SCDocSetSelection(file.view, type, &selectionA, 1);
    reselectOnLosing = true;
    EXPECT_FALSE(SCDocClearSelection(file.view, 1));
    EXPECT_EQ(SCDocGetSelection(file.view), &selectionB);
    reselectOnLosing = false;
}

TEST_F(SelectionTest, OneThatCannotBeMadeIsDestroyed) {
    raiseOnGetting = true;
    EXPECT_EQ(Protect([&] { SCDocSetSelection(file.view, type, &selectionA, 1); }), KRErrBadField);
    EXPECT_EQ(SCDocGetSelectionType(file.view), KRAtomNull);
    EXPECT_EQ(selectionLog, "+axa");
}

TEST_F(SelectionTest, ClosingCommitsBeforeTheOthersHear) {
    Listener listener;
    listener.react = [](int number, SCDoc) {
        if (number == SCDocWillClose) selectionLog += "|7";
    };
    SCDocSetSelection(file.view, type, &selectionA, 1);
    SCDocClose(file.view, 1);
    file.view = nullptr;
    EXPECT_EQ(selectionLog, "+a-axa|7");
}

TEST(Selection, AnnotationsGoToTheirHandler) {
    static std::string log;
    static SCAnnotHandler handler{};
    handler.size = sizeof handler;
    handler.getType = [](SCAnnotHandler *) { return KRAtomFromString("Marker"); };
    handler.addedToSelection = [](SCAnnotHandler *, DMAnnot, SCPageView) { log += "+"; };
    handler.removedFromSelection = [](SCAnnotHandler *, DMAnnot, SCPageView) { log += "-"; };
    handler.doKeyDown = [](SCAnnotHandler *, DMAnnot, std::uint16_t key, std::uint32_t) -> KRBool { return key == 9; };
    SCAppRegisterAnnotHandler(&handler);
    const TestDoc file(pages(1, "/Annots [<< /Subtype /Marker /Rect [0 0 9 9] >> << /Subtype /X /Rect [0 0 9 9] >>]"));
    const DMPage page = SCPageViewGetPage(SCDocGetPageView(file.view));
    for (const int index : {0, 1}) {
        auto *pair = static_cast<DMAnnot *>(KRmalloc(sizeof(DMAnnot)));
        *pair = DMPageGetAnnot(page, index);
        EXPECT_TRUE(SCDocSetSelection(file.view, atom("Annotation"), pair, 1));
        EXPECT_TRUE(DMAnnotEqual(*static_cast<DMAnnot *>(SCDocGetSelection(file.view)), DMPageGetAnnot(page, index)));
    }
    SCDocClearSelection(file.view, 1);
    EXPECT_EQ(log, "+-");
}

// Menus.

namespace {

int executed = 0;

void count(void *) {
    ++executed;
}

SCMenuItem newItem(const char *name, SCMenu submenu = nullptr) {
    const SCMenuItem item = SCMenuItemNew(name, name, submenu, 0, 0, 0, 1);
    SCMenuItemSetExecuteProc(item, &count, nullptr);
    return item;
}

bool isThere(const char *name) {
    const SCMenuItem item = SCMenubarAcquireMenuItemByName(SCAppGetMenubar(), name);
    if (item != nullptr) SCMenuItemRelease(item);
    return item != nullptr;
}

} // namespace

TEST(Menus, APlugInsItemBesideTheHosts) {
    const SCMenuItem about = SCMenubarAcquireMenuItemByName(SCAppGetMenubar(), "AboutExtensions");
    ASSERT_NE(about, nullptr);
    const SCMenu help = SCMenuItemGetParentMenu(about);
    SCMenuItemRelease(about);
    const SCMenuItem item = newItem("Test:About");
    EXPECT_FALSE(SCMenuItemIsVisible(item));
    SCMenuAddMenuItem(help, item, 9999);
    EXPECT_EQ(ItemsOfMenu(help).back(), item);
    EXPECT_TRUE(SCMenuItemIsVisible(item));
    executed = 0;
    SCMenuItemExecute(item);
    SCMenuItemSetComputeEnabledProc(
        item, [](void *) -> KRBool { return 0; }, nullptr);
    SCMenuItemExecute(item);
    EXPECT_EQ(executed, 1);
    SCMenuItemRemove(item);
    SCMenuItemRelease(item);
    EXPECT_FALSE(isThere("Test:About"));
    EXPECT_EQ(Protect([&] { SCMenuItemExecute(item); }), KRErrBadParam) << "a handle that is gone is not followed";
}

TEST(Menus, AHiddenItemStillRuns) {
    const SCMenu hidden = SCMenuNew("Hidden", "Test:Hidden", 1);
    const SCMenu help = SCMenubarAcquireMenuByName(SCAppGetMenubar(), "Help");
    const SCMenuItem item = newItem("Test:Movable");
    SCMenuAddMenuItem(help, item, 0);
    SCMenuAddMenuItem(hidden, item, 9999);
    EXPECT_EQ(SCMenuItemGetParentMenu(item), hidden);
    EXPECT_FALSE(SCMenuItemIsVisible(item));
    SCMenuItemRelease(item);
    EXPECT_TRUE(isThere("Test:Movable"));
    EXPECT_EQ(SCMenubarAcquireMenuByName(SCAppGetMenubar(), "Test:Hidden"), nullptr);

    // A whole menu of the bar, wrapped into an item of the hidden one.
    const SCMenu tools = SCMenubarAcquireMenuByName(SCAppGetMenubar(), "Tools");
    EXPECT_EQ(SCMenuGetParentMenuItem(tools), nullptr);
    SCMenuRemove(tools);
    const SCMenuItem wrapper = SCMenuItemNew("Tools", "Test:Wrapper", tools, 0, 0, 0, 1);
    SCMenuAddMenuItem(hidden, wrapper, 9999);
    SCMenuItemRelease(wrapper);
    EXPECT_EQ(SCMenuGetParentMenuItem(tools), wrapper);
    EXPECT_EQ(SCMenubarAcquireMenuByName(SCAppGetMenubar(), "Tools"), nullptr);
    SCMenuRelease(tools);
    SCMenuRelease(help);
    SCMenuRelease(hidden);
    EXPECT_FALSE(isThere("Test:Movable"));
}

TEST(Menus, CirclesAreRefusedAndDeepOnesGoAway) {
    const SCMenu outer = SCMenuNew("o", "o", 1);
    const SCMenu inner = SCMenuNew("i", "i", 1);
    const SCMenuItem toInner = newItem("toInner", inner);
    const SCMenuItem toOuter = newItem("toOuter", outer);
    SCMenuAddMenuItem(outer, toInner, 9999);
    EXPECT_EQ(Protect([&] { SCMenuAddMenuItem(inner, toOuter, 9999); }), KRErrBadParam);
    EXPECT_EQ(Protect([&] { SCMenuAddMenuItem(outer, toOuter, 9999); }), KRErrBadParam);
    for (const SCMenuItem item : {toInner, toOuter}) SCMenuItemRelease(item);
    SCMenuRelease(inner);

    SCMenu deepest = outer;
    for (int i = 0; i < 50'000; ++i) {
        const SCMenu above = SCMenuNew("m", "m", 1);
        const SCMenuItem item = newItem("deep", deepest);
        SCMenuAddMenuItem(above, item, 0);
        SCMenuItemRelease(item);
        SCMenuRelease(deepest);
        deepest = above;
    }
    EXPECT_TRUE(isThere("toInner"));
    SCMenuRelease(deepest);
    EXPECT_FALSE(isThere("toInner"));
    EXPECT_FALSE(isThere("deep"));
}

TEST(Menus, AnItemMayRemoveItselfWhileItRuns) {
    static SCMenuItem item;
    const SCMenu menu = SCMenuNew("m", "m", 1);
    item = newItem("Test:Suicide");
    SCMenuAddMenuItem(menu, item, 0);
    SCMenuItemSetExecuteProc(
        item,
        [](void *) {
            SCMenuItemRemove(item);
            SCMenuItemRelease(item);
            KRRaise(KRErrBadField);
        },
        nullptr);
    EXPECT_EQ(Protect([&] { SCMenuItemExecute(item); }), KRErrBadField);
    EXPECT_FALSE(isThere("Test:Suicide"));
    SCMenuRelease(menu);
}

// Actions.

namespace {

std::string performed;
std::function<void(const std::string &name, SCDoc doc)> onPerform;

std::string nameOf(DMAction action) {
    return KRAtomGetString(LexNameValue(LexDictGet(DMActionGetLexObj(action), KRAtomFromString("Name"))));
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
    const LexObj next = LexDictGet(DMActionGetLexObj(copy), atom("Next"));
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
    SCActionHandlerProcs *copy = SCActionHandlerProcsNew(SCAppGetActionHandlerByType(atom("Log")));
    EXPECT_NE(copy->perform, nullptr);
    EXPECT_NE(copy->copy, nullptr);
    KRfree(copy);
    EXPECT_EQ(SCAppGetActionHandlerByType(atom("NoSuchAction")), nullptr);
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
        return LexDictGet(DMActionGetLexObj(copy), atom("D"));
    };
    EXPECT_TRUE(LexObjEqual(LexArrayGet(dest(longer), 0), longer.At("Pages/Kids/2")));
    EXPECT_EQ(LexIntegerValue(LexArrayGet(dest(shorter), 0)), 2);
    EXPECT_EQ(LexFixedValue(LexArrayGet(dest(longer), 3)), KRFixedOne + KRFixedOne / 4);
}

// Places.

class Rotated : public testing::TestWithParam<std::tuple<int, KRFixed>> {};

TEST_P(Rotated, DeviceAndPageAgree) {
    const auto [rotate, zoom] = GetParam();
    const TestDoc file(pages(1, "/MediaBox [-20 -10 400 300] /CropBox [10 20 210 120] /Rotate " +
                                    std::to_string(rotate) + " /Annots [<< /Subtype /X /Rect [20 40 60 50] >>]"));
    const SCPageView view = SCDocGetPageView(file.view);
    SCPageViewZoomTo(view, SCZoomNoVary, zoom);
    SCRect aperture;
    SCPageViewGetAperture(view, &aperture);
    const bool sideways = rotate % 180 != 0;
    const int scale = zoom >> 16;
    EXPECT_EQ(aperture.right, (sideways ? 100 : 200) * scale);
    EXPECT_EQ(aperture.bottom, (sideways ? 200 : 100) * scale);

    SCRect device;
    const DMAnnot annot = DMPageGetAnnot(SCPageViewGetPage(view), 0);
    SCPageViewGetAnnotRect(view, annot, &device);
    const SCRect expected[] = {{10, 70, 50, 80}, {20, 10, 30, 50}, {150, 20, 190, 30}, {70, 150, 80, 190}};
    const SCRect &at1 = expected[rotate / 90];
    EXPECT_EQ(device.left, at1.left * scale);
    EXPECT_EQ(device.top, at1.top * scale);
    EXPECT_EQ(device.right, at1.right * scale);
    EXPECT_EQ(device.bottom, at1.bottom * scale);

    KRFixedRect page;
    SCPageViewDeviceRectToPage(view, &device, &page);
    EXPECT_EQ(page.left, KRFixedFromInt(20));
    EXPECT_EQ(page.bottom, KRFixedFromInt(40));
    EXPECT_EQ(page.right, KRFixedFromInt(60));
    EXPECT_EQ(page.top, KRFixedFromInt(50));
    const auto middleX = static_cast<std::int16_t>((device.left + device.right) / 2);
    const auto middleY = static_cast<std::int16_t>((device.top + device.bottom) / 2);
    KRFixedPoint point;
    SCPageViewDevicePointToPage(view, middleX, middleY, &point);
    EXPECT_EQ(point.h, KRFixedFromInt(40));
    EXPECT_EQ(point.v, KRFixedFromInt(45));
    DMAnnot hit{};
    EXPECT_TRUE(SCPageViewIsAnnotAtPoint(view, middleX, middleY, &hit));
    EXPECT_TRUE(DMAnnotEqual(hit, annot));
    EXPECT_FALSE(SCPageViewIsAnnotAtPoint(view, static_cast<std::int16_t>(device.right + 2), middleY, &hit));
}

INSTANTIATE_TEST_SUITE_P(Places, Rotated,
                         testing::Combine(testing::Values(0, 90, 180, 270),
                                          testing::Values(KRFixedOne, 3 * KRFixedOne)));

TEST(Places, PagesStandInOneColumn) {
    const TestDoc file(pages(3, "/Annots [<< /Subtype /X /Rect [0 0 50 50] >> << /Subtype /X /Rect [0 0 50 50] >> "
                                "<< /Subtype /X /F 2 /Rect [0 0 50 50] >>]"));
    const SCPageView view = SCDocGetPageView(file.view);
    EXPECT_EQ(SCPageViewGetFirstVisiblePageNum(view), 0);
    EXPECT_EQ(SCPageViewGetLastVisiblePageNum(view), 2);
    EXPECT_FALSE(SCPageViewIsPageVisible(view, 3));
    SCPageViewGoTo(view, 1);
    const DMAnnot onLast = [&] {
        const std::int32_t former = SCPageViewGetVisibleAnnotPage(view, 2);
        EXPECT_EQ(former, 1);
        const DMAnnot annot = DMPageGetAnnot(SCPageViewGetPage(view), 0);
        EXPECT_EQ(DMPageGetNumber(SCPageViewGetPage(view)), 2);
        return annot;
    }();
    SCRect rect;
    SCPageViewGetAnnotRect(view, onLast, &rect);
    EXPECT_EQ(rect.top, 110 + 120 - 50) << "below page 1, at the bottom of page 2";
    EXPECT_EQ(SCPageViewGetVisibleAnnotPage(view, 99), 2) << "a page that is not there changes nothing";
    EXPECT_EQ(SCPageViewGetVisibleAnnotPage(view, 1), 2);
    EXPECT_EQ(SCDMAnnotGetPageNum(view, onLast), 2);

    DMAnnot hit{};
    ASSERT_TRUE(SCPageViewIsAnnotAtPoint(view, 10, -10, &hit));
    EXPECT_EQ(SCDMAnnotGetPageNum(view, hit), 0);
    ASSERT_TRUE(SCPageViewIsAnnotAtPoint(view, 10, 220, &hit));
    EXPECT_EQ(SCDMAnnotGetPageNum(view, hit), 2);
    EXPECT_EQ(DMPageGetAnnotIndex(SCPageViewGetPage(view), hit), -1);
    SCPageViewGetVisibleAnnotPage(view, 2);
    EXPECT_EQ(DMPageGetAnnotIndex(SCPageViewGetPage(view), hit), 1) << "the topmost that is not hidden";
    for (const int y : {-200, 240})
        EXPECT_FALSE(SCPageViewIsAnnotAtPoint(view, 10, static_cast<std::int16_t>(y), &hit));
    std::int16_t x = 0;
    std::int16_t y = 0;
    SCPageViewGetMousePosition(view, &x, &y);
    EXPECT_FALSE(SCPageViewIsAnnotAtPoint(view, x, y, &hit)) << "no pointer is on no page";
}

TEST(Places, FarPagesAreClampedAndDeletedPagesForgotten) {
    const TestDoc file(pages(400));
    const SCPageView view = SCDocGetPageView(file.view);
    SCPageViewGetVisibleAnnotPage(view, 399);
    SCRect rect = RectToDevice(view, {0, KRFixedFromInt(10), KRFixedFromInt(10), 0});
    EXPECT_EQ(rect.top, 32767);
    SCPageViewGoTo(view, 399);
    const DMPage last = SCPageViewGetPage(view);
    rect = RectToDevice(view, {0, KRFixedFromInt(10), KRFixedFromInt(10), 0});
    EXPECT_EQ(rect.bottom, 100 + 3990);
    DMDocDeletePages(file.doc, 300, 399);
    EXPECT_EQ(SCPageViewGetPageNum(view), 299);
    EXPECT_EQ(DMPageGetNumber(SCPageViewGetPage(view)), 299);
    EXPECT_EQ(DMPageGetNumber(last), -1) << "a page that was handed out stays good until the view closes";
    EXPECT_EQ(Protect([&] { SCPageViewGoTo(view, 300); }), KRErrBadParam);
    SCPageViewZoomTo(view, SCZoomNoVary, 0x7FFFFFFF);
    EXPECT_EQ(SCPageViewGetZoom(view), MaxZoom);
    SCPageViewZoomTo(view, SCZoomNoVary, -5);
    EXPECT_EQ(SCPageViewGetZoom(view), MaxZoom);
}

TEST(Places, ChangesAreToldOnceForAnOperation) {
    const TestDoc file(pages(3));
    const SCPageView view = SCDocGetPageView(file.view);
    Listener listener;
    listener.name(file.view, "v");
    SCPageViewGoTo(view, 0);
    EXPECT_EQ(listener.take(), "");
    SCPageViewGoTo(view, 1);
    SCPageViewZoomTo(view, SCZoomNoVary, 2 * KRFixedOne);
    SCPageViewScrollTo(view, 5, 6);
    EXPECT_EQ(listener.take(), "14:v/3 14:v/4 14:v/1");
    SCPageViewBeginOperation(view);
    SCPageViewBeginOperation(view);
    SCPageViewGoTo(view, 2);
    SCPageViewZoomTo(view, SCZoomNoVary, KRFixedOne);
    SCPageViewEndOperation(view);
    EXPECT_EQ(listener.take(), "");
    SCPageViewEndOperation(view);
    EXPECT_EQ(listener.take(), "14:v/7");
    SCPageViewEndOperation(view);
    SCDocViewDef def{};
    SCDocGetViewDef(file.view, &def);
    SCPageViewGoTo(view, 0);
    SCDocSetViewDef(file.view, &def);
    EXPECT_EQ(SCPageViewGetPageNum(view), 2);
}

TEST(Places, AWindowShowsSomePages) {
    const TestDoc file(pages(6));
    const SCPageView view = SCDocGetPageView(file.view);
    Platform().getAperture = [](SCPageView, SCRect *rect) { *rect = {0, -30, 200, 300}; };
    Platform().openWindow = [](SCDoc) { return reinterpret_cast<SCWindow>(1); };
    {
        const TestDoc windowed(pages(6));
        const SCPageView inWindow = SCDocGetPageView(windowed.view);
        SCPageViewGoTo(inWindow, 2);
        EXPECT_EQ(SCPageViewGetFirstVisiblePageNum(inWindow), 1);
        EXPECT_EQ(SCPageViewGetLastVisiblePageNum(inWindow), 4);
        SCPageViewZoomTo(inWindow, SCZoomFitPage, 0);
        EXPECT_EQ(SCPageViewGetZoom(inWindow), KRFixedOne) << "200 across allow no more";
        EXPECT_EQ(SCPageViewGetLastVisiblePageNum(view), 5) << "a view without a window is not bound by one";
    }
    Platform() = {};
}

// The rest of the application.

TEST(Alerts, AreWrittenCountedAndAnsweredByPolicy) {
    std::FILE *output = std::tmpfile();
    SetAlertOutput(output);
    ResetAlertCount();
    EXPECT_EQ(SCAlert(3, "Two\rlines \x1b[2J\n", "Yes", "No", nullptr, 1), 1);
    SetAlertPolicy([](const AlertRequest &request) { return request.buttons[1] == "No" ? 2 : 3; });
    EXPECT_EQ(SCAlert(2, "Really?", "Yes", "No", nullptr, 0), 2);
    EXPECT_EQ(SCAlert(1, "Sorry", nullptr, nullptr, nullptr, 0), 1) << "a button that is not there does not go";
    SCAlertNote(nullptr);
    SetAlertPolicy(nullptr);
    SetAlertOutput(stderr);
    EXPECT_EQ(AlertCount(), 4);
    std::string written(static_cast<std::size_t>(std::ftell(output)), '\0');
    std::rewind(output);
    EXPECT_EQ(std::fread(written.data(), 1, written.size(), output), written.size());
    std::fclose(output);
    EXPECT_EQ(written, "Warning: Two\nlines [2J\n  [Yes]\nQuestion: Really?\n  [No]\nError: Sorry\n\n");
}

TEST(Idle, ProceduresRunWhenDueAndMayLeave) {
    static int often = 0;
    static int once = 0;
    static const SCIdleProc onceProc = [](void *) {
        ++once;
        SCAppUnregisterIdleProc(onceProc, nullptr);
        KRRaise(KRErrBadField);
    };
    static const SCIdleProc oftenProc = [](void *) { ++often; };
    SCAppRegisterIdleProc(onceProc, nullptr, 60);
    SCAppRegisterIdleProc(oftenProc, &often, 30);
    const std::int64_t now = TicksNow();
    EXPECT_LE(IdleDelay().value(), 30);
    RunIdleAt(now);
    EXPECT_EQ(often, 0);
    RunIdleAt(now + 31);
    EXPECT_EQ(often, 1);
    RunIdleAt(now + 50);
    EXPECT_EQ(often, 1);
    RunIdleAt(now + 200);
    RunIdleAt(now + 400);
    EXPECT_EQ(once, 1);
    EXPECT_EQ(often, 3);
    SCAppUnregisterIdleProc(oftenProc, &often);
    EXPECT_FALSE(IdleDelay().has_value());
}

TEST(App, ProgressShowsOneLineForTheOutermostWork) {
    std::FILE *output = std::tmpfile();
    SetProgressOutput(output, /*delayMs*/ 0);
    void *data = nullptr;
    const SCProgressMonitor *monitor = SCAppGetDocProgressMonitor(&data);
    monitor->begin(data);
    monitor->setRange(200, data);
    monitor->begin(data);
    monitor->setValue(7, data);
    monitor->end(data);
    monitor->end(data);
    monitor->end(data);
    SetProgressOutput(nullptr, /*delayMs*/ 1000);
    std::string written(static_cast<std::size_t>(std::ftell(output)), '\0');
    std::rewind(output);
    EXPECT_EQ(std::fread(written.data(), 1, written.size(), output), written.size());
    std::fclose(output);
    EXPECT_EQ(written, "\rWorking: 0%\r           \r");
}

TEST(App, AnswersWithoutAWindow) {
    const TestDoc file(pages(1));
    const SCPageView view = SCDocGetPageView(file.view);
    EXPECT_EQ(SCDocGetWindow(file.view), nullptr);
    EXPECT_EQ(SCPageViewAcquireMachinePort(view), nullptr);
    EXPECT_EQ(SCAppGetToolBar(), nullptr);
    EXPECT_FALSE(SCAppBeginFullScreen(nullptr));
    EXPECT_FALSE(SCAppDoingFullScreen());
    EXPECT_STREQ(KRAtomGetString(SCToolGetType(SCAppGetActiveTool())), "Hand");
    const SCRect rect{0, 0, 9, 9};
    SCPageViewDrawLexObj(view, LexNullObj, &rect);
    SCPageViewInvalidateRect(view, nullptr);
    EXPECT_EQ(SCMenuTrackPopUp(SCMenubarAcquireMenuByName(SCAppGetMenubar(), "Help"), 0, 0, 0), nullptr);
    EXPECT_FALSE(SCUIDragPoint(view, nullptr, nullptr));
    EXPECT_EQ(UnixGetTopWidget(), nullptr);
    EXPECT_STREQ(UnixGetResourceString(nullptr, "key", "fallback"), "fallback");
    EXPECT_EQ(Protect([] { UnixGetPlugInDir(12345); }), KRErrBadParam);
    void *data = &data;
    const SCCancelProc cancelled = SCAppGetCancelProc(&data);
    EXPECT_FALSE(cancelled(data));
    RequestCancel();
    EXPECT_TRUE(cancelled(data));
    ClearCancel();
    EXPECT_EQ(Protect([] { SCPageViewGetZoom(nullptr); }), KRErrBadParam);
}

TEST(App, AnAnnotationIsCopiedWithWhatItNeeds) {
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
    EXPECT_TRUE(LexObjEqual(LexDictGet(dict, atom("P")), DMPageGetLexObj(page)));
    EXPECT_EQ(DMPageGetAnnotIndex(page, copy), -1);
    for (const char *key : {"Parent", "Popup", "Where"}) EXPECT_FALSE(LexDictKnown(dict, atom(key))) << key;
    const LexObj stream = LexDictGet(LexDictGet(dict, atom("AP")), atom("N"));
    EXPECT_EQ(LexStreamLength(stream), 5);
    DMPageAddAnnot(page, -2, copy);
    EXPECT_NE(target.Saved().find("0.333333333"), std::string::npos);
    DMPageRelease(page);
}
