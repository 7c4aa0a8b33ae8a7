// What modules share of the running plug-in: the table of cursors and the building of menu items.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "Common/unix/mdMessages.h"
#include "KernelSupportHFT.h"
#include "services/Cursors.h"
#include "services/MenuItems.h"
#include "tests/support/HostFixture.h"
#include "view/Menus.h"
#include "view/ViewPlatform.h"

namespace {

TEST(Cursors, WithoutAWindowThereAreNone) {
    for (std::uint16_t index = 0; index <= CursorCount; ++index) EXPECT_EQ(CursorGet(index), nullptr) << index;
    CursorsTerm();
}

std::vector<int> s_asked;

TEST(Cursors, EachIsFetchedOnceWhenItIsFirstAskedFor) {
    s_asked.clear();
    const KRProc former = gScreenViewHFT[SCSysGetStandardCursor.selector];
    gScreenViewHFT[SCSysGetStandardCursor.selector] = reinterpret_cast<KRProc>(+[](std::int16_t id) {
        s_asked.push_back(id);
        return reinterpret_cast<SCCursor>(static_cast<KRWord>(id + 1));
    });
    CursorsInit();
    EXPECT_TRUE(s_asked.empty());
    CursorLoad(CursorText);
    for (const CursorIndex index : {CursorText, CursorArrow, CursorButton, CursorTransfer, CursorText, CursorArrow})
        EXPECT_NE(CursorGet(index), nullptr) << index;
    EXPECT_EQ(s_asked, (std::vector<int>{1, 0, 1100, 1112}));
    EXPECT_EQ(CursorGet(CursorCalculate), nullptr) << "the platform's own; there is none";
    EXPECT_EQ(CursorGet(CursorCount), nullptr);
    CursorsTerm();
    CursorsTerm();
    CursorGet(CursorText);
    EXPECT_EQ(s_asked.size(), 5u) << "forgotten at the end";
    CursorsTerm();
    gScreenViewHFT[SCSysGetStandardCursor.selector] = former;
}

TEST(MenuItems, TakeTitleProceduresAndPlace) {
    static int s_data = 0;
    const SCMenu menu = SCMenuNew("m", "Test:Menu", 1);
    const SCComputeProc isOdd = [](void *data) -> KRBool { return *static_cast<int *>(data) % 2; };
    TSSCMenuAddMenuItemEx(
        menu, "Test:Cut", Msg::menuEditCut, [](void *data) { ++*static_cast<int *>(data); }, nullptr, isOdd, 'X',
        /*index*/ 9999, &s_data);
    TSSCMenuAddMenuItemEx(menu, "Test:Bare", TSMenuNoTitle | Msg::menuEditCut, nullptr, isOdd, nullptr, 0,
                          /*index*/ 0, &s_data);
    TSSCMenuAddSeparator(menu, 1);
    const auto items = jackdaw::ItemsOfMenu(menu);
    ASSERT_EQ(items.size(), 3u);
    EXPECT_EQ(jackdaw::ItemName(items[0]) + jackdaw::ItemTitle(items[0]), "Test:Bare");
    EXPECT_EQ(jackdaw::ItemTitle(items[1]), "-");
    EXPECT_EQ(jackdaw::ItemTitle(items[2]), "Cu&t");
    EXPECT_EQ(jackdaw::ItemShortcut(items[2]), 'X');
    EXPECT_FALSE(jackdaw::ItemIsEnabled(items[0]) || jackdaw::ItemIsMarked(items[2]));
    SCMenuItemExecute(items[2]);
    EXPECT_TRUE(jackdaw::ItemIsEnabled(items[0]) && jackdaw::ItemIsMarked(items[2]));
    SCMenuRelease(menu);
}

} // namespace
