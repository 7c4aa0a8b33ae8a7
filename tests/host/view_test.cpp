// Views without a window: what is told when, the selection, and the application around them.
// SPDX-License-Identifier: MIT
#include "view/Views.h"

#include <cstdio>
#include <gtest/gtest.h>

#include "ScreenViewUserInterfaceHFT.h"
#include "UnixHFT.h"
#include "kernel/HostError.h"
#include "tests/host/ViewTestSupport.h"
#include "view/Alerts.h"
#include "view/AppState.h"
#include "view/Progress.h"
#include "view/ViewPlatform.h"

using namespace jackdaw;
using namespace viewtest;

namespace {

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
    EXPECT_EQ(SCDocOpenFromFile(nullptr, nullptr, nullptr), nullptr);
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
    [] { return Atom("TestSelection"); },
    [](SCDoc, void *data, KRBool) {
        selectionLog += data == &selectionA ? "+a" : "+b";
        if (raiseOnGetting) KRRaise(KRErrBadField);
    },
    [](SCDoc doc, void *data, KRBool) {
        selectionLog += data == &selectionA ? "-a" : "-b";
        SCDocClearSelection(doc, 1);
        if (reselectOnLosing) SCDocSetSelection(doc, Atom("TestSelection"), &selectionB, 1);
    },
    [](SCDoc, void *, std::uint16_t key, std::uint32_t) -> KRBool { return key == 'k'; },
    [](SCDoc, void *data) { selectionLog += data == &selectionA ? "xa" : "xb"; },
};

class SelectionTest : public testing::Test {
protected:
    SelectionTest() : file(pages(1)), type(Atom("TestSelection")) {
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
    EXPECT_FALSE(SCDocSetSelection(file.view, Atom("NoSuchServer"), &selectionA, 1));
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
    handler.getType = [](SCAnnotHandler *) { return Atom("Marker"); };
    handler.addedToSelection = [](SCAnnotHandler *, DMAnnot, SCPageView) { log += "+"; };
    handler.removedFromSelection = [](SCAnnotHandler *, DMAnnot, SCPageView) { log += "-"; };
    handler.doKeyDown = [](SCAnnotHandler *, DMAnnot, std::uint16_t key, std::uint32_t) -> KRBool { return key == 9; };
    SCAppRegisterAnnotHandler(&handler);
    const TestDoc file(pages(1, "/Annots [<< /Subtype /Marker /Rect [0 0 9 9] >> << /Subtype /X /Rect [0 0 9 9] >>]"));
    const DMPage page = SCPageViewGetPage(SCDocGetPageView(file.view));
    for (const int index : {0, 1}) {
        auto *pair = static_cast<DMAnnot *>(KRmalloc(sizeof(DMAnnot)));
        *pair = DMPageGetAnnot(page, index);
        EXPECT_TRUE(SCDocSetSelection(file.view, Atom("Annotation"), pair, 1));
        EXPECT_TRUE(DMAnnotEqual(*static_cast<DMAnnot *>(SCDocGetSelection(file.view)), DMPageGetAnnot(page, index)));
    }
    SCDocClearSelection(file.view, 1);
    EXPECT_EQ(log, "+-");
}

// The rest of the application.

TEST(Alerts, AreWrittenCountedAndAnsweredByPolicy) {
    std::FILE *output = std::tmpfile();
    SetAlertOutput(output);
    ResetAlertCount();
    EXPECT_EQ(SCAlert(SCAlertIconWarning, "Two\rlines \x1b[2J\n", "Yes", "No", nullptr, 1), 1);
    SetAlertPolicy([](const AlertRequest &request) { return request.buttons[1] == "No" ? 2 : 3; });
    EXPECT_EQ(SCAlert(SCAlertIconQuestion, "Really?", "Yes", "No", nullptr, 0), 2);
    EXPECT_EQ(SCAlert(SCAlertIconError, "Sorry", nullptr, nullptr, nullptr, 0), 1)
        << "a button that is not there does not go";
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
    EXPECT_FALSE(SCAppBeginFullScreen(nullptr) || SCAppDoingFullScreen());
    EXPECT_STREQ(KRAtomGetString(SCToolGetType(SCAppGetActiveTool())), "Hand");
    const SCRect rect{0, 0, 9, 9};
    SCPageViewDrawLexObj(view, LexNullObj, &rect);
    SCPageViewInvalidateRect(view, nullptr);
    EXPECT_FALSE(SCUIDragPoint(view, nullptr, nullptr));
    EXPECT_EQ(UnixGetTopWidget(), nullptr);
    EXPECT_STREQ(UnixGetResourceString(nullptr, "key", "fallback"), "fallback");
    EXPECT_EQ(Protect([] { UnixGetPlugInDir(12345); }), KRErrBadParam);
    EXPECT_EQ(Protect([] { SCPageViewGetZoom(nullptr); }), KRErrBadParam);
}

TEST(App, AskingToStopIsHeardOnce) {
    void *data = &data;
    const SCCancelProc cancelled = SCAppGetCancelProc(&data);
    EXPECT_FALSE(cancelled(data));
    RequestCancel();
    EXPECT_TRUE(cancelled(data));
    EXPECT_FALSE(cancelled(data)) << "a request is for the work under way";
}
