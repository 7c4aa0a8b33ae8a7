// The plug-in's start and stop, by the callbacks that the loader calls. Each case is a process of its own, since what
// was started stays with its process.
// SPDX-License-Identifier: MIT
#include <cstdio>
#include <cstdlib>

#include <gtest/gtest.h>

#include "CoreHFT.h"
#include "FormsAuthoringHFT.h"
#include "FormsHFT.h"
#include "KernelSupportHFT.h"
#include "PIFrame.h"
#include "PIMain.h"
#include "ScreenViewHFT.h"
#include "ScreenViewUserInterfaceHFT.h"
#include "kernel/Memory.h"
#include "objects/Tessella.h"
#include "services/PlugInData.h"
#include "tests/support/HostFixture.h"
#include "view/Menus.h"

namespace {

PIHandshakeRecord ShakenHands() {
    PIHandshakeRecord record{};
    record.version = PIHandshakeVersion;
    gExtensionID = 4711;
    EXPECT_EQ(PIHandshake(PIHandshakeVersion, &record), 1);
    return record;
}

KRHFT FormsTable(std::uint32_t version = FormsHFTVersion) {
    return KRGetHFT(KRAtomFromString(FormsHFTName), version);
}

std::vector<std::string> NamesOf(SCMenu menu) {
    std::vector<std::string> names;
    for (const SCMenuItem item : jackdaw::ItemsOfMenu(menu)) names.push_back(jackdaw::ItemName(item));
    return names;
}

/** Ends the case's process: 0 when no check in it failed. */
[[noreturn]] void Leave() {
    std::fflush(nullptr);
    std::_Exit(testing::Test::HasFailure() ? 1 : 0);
}

void StartAndStop() {
    const SCMenu help = SCMenubarAcquireMenuByName(SCAppGetMenubar(), "Help");
    std::vector<std::string> items = NamesOf(help);
    const PIHandshakeRecord forms = ShakenHands();
    EXPECT_STREQ(KRAtomGetString(forms.extensionName), "Forms");
    EXPECT_EQ(FormsTable(), nullptr);
    EXPECT_EQ(gData, nullptr);
    ASSERT_TRUE(forms.exportHFTs());
    // Others bind to the tables and register observers before the form model starts.
    EXPECT_NE(FormsTable(), nullptr);
    EXPECT_EQ(FormsTable(FormsHFTVersion + 1), nullptr);
    EXPECT_NE(TessellaGetNotificationServer(TSValueWillChange), nullptr);
    ASSERT_TRUE(forms.replaceAndRegister());
    EXPECT_NE(gScreenViewUserInterfaceHFT, nullptr);
    EXPECT_EQ(gData, nullptr);
    ASSERT_TRUE(forms.init());
    ASSERT_NE(gData, nullptr);
    EXPECT_EQ(gData->topWidget, nullptr) << "no window";
    EXPECT_FALSE(gData->inAction);
    items.push_back("Tessella:About");
    EXPECT_EQ(NamesOf(help), items);
    {
        const TestDoc doc(FormObjects({"/FT /Tx /T (a) /V (x)"}));
        gFormsHFT = FormsTable();
        EXPECT_NE(Forms::TSDMDocGetDMFieldFromName(doc.doc, "a"), nullptr);
    }
    for (int times = 0; times < 2; ++times) {
        EXPECT_TRUE(forms.unload());
        EXPECT_EQ(gData, nullptr);
        EXPECT_EQ(TessellaNotificationServer, nullptr);
    }
    Leave();
}

void AnotherServesTheTable() {
    const PIHandshakeRecord forms = ShakenHands();
    KRHFTServerNew(FormsHFTName, [](KRHFTServer, std::uint32_t) -> KRHFT { return nullptr; });
    EXPECT_FALSE(forms.exportHFTs());
    EXPECT_TRUE(forms.unload());
    Leave();
}

// Wherever memory runs out, a step says so, and the stop copes with what had been started.
void MemoryRunsOut() {
    const PIHandshakeRecord forms = ShakenHands();
    bool started = false;
    jackdaw::LimitAllocations(std::atoi(std::getenv("TEST_ALLOCATIONS")));
    const KRErrorCode code =
        Protect([&] { started = forms.exportHFTs() && forms.replaceAndRegister() && forms.init(); });
    jackdaw::LimitAllocations(-1);
    EXPECT_TRUE(code == KRErrNone || code == KRErrNoMemory);
    EXPECT_FALSE(started && code != KRErrNone);
    EXPECT_TRUE(forms.unload());
    EXPECT_EQ(gData, nullptr);
    std::fprintf(stderr, started ? "started" : "stopped");
    Leave();
}

TEST(StartDeathTest, StepByStepAndBack) {
    EXPECT_EXIT(StartAndStop(), testing::ExitedWithCode(0), "");
}

TEST(StartDeathTest, ATableThatAnotherServesEndsTheStart) {
    EXPECT_EXIT(AnotherServesTheTable(), testing::ExitedWithCode(0), "");
}

TEST(StartDeathTest, AFailingStepLeavesNothingThatTheStopCannotTakeDown) {
    for (const int allocations : {0, 1, 5, 11, 12, 20}) {
        setenv("TEST_ALLOCATIONS", std::to_string(allocations).c_str(), /*overwrite*/ 1);
        EXPECT_EXIT(MemoryRunsOut(), testing::ExitedWithCode(0), "stopped") << allocations;
    }
    setenv("TEST_ALLOCATIONS", "1000000", /*overwrite*/ 1);
    EXPECT_EXIT(MemoryRunsOut(), testing::ExitedWithCode(0), "started");
}

TEST(Start, AHandshakeOfAnotherVersionIsRefused) {
    for (const std::uint32_t version : {PIHandshakeVersion - 1, PIHandshakeVersion + 1, 0u}) {
        PIHandshakeRecord record{};
        EXPECT_EQ(PIHandshake(version, &record), 0) << version;
        EXPECT_EQ(record.init, nullptr);
    }
}

} // namespace
