// Menus as data: plug-ins' items, hidden ones, circles, and handles that are gone.
// SPDX-License-Identifier: MIT
#include "view/Menus.h"

#include <gtest/gtest.h>

#include "tests/host/ViewTestSupport.h"
#include "view/ViewPlatform.h"

using namespace jackdaw;
using namespace viewtest;

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
    SCMenuAddMenuItem(help, item, SCMenuEnd);
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
    SCMenuRelease(help);
    EXPECT_FALSE(isThere("Test:About"));
    EXPECT_EQ(Protect([&] { SCMenuItemExecute(item); }), KRErrBadParam) << "a handle that is gone is not followed";
}

TEST(Menus, AHiddenItemStillRuns) {
    const SCMenu hidden = SCMenuNew("Hidden", "Test:Hidden", 1);
    const SCMenu help = SCMenubarAcquireMenuByName(SCAppGetMenubar(), "Help");
    const SCMenuItem item = newItem("Test:Movable");
    SCMenuAddMenuItem(help, item, 0);
    SCMenuAddMenuItem(hidden, item, SCMenuEnd);
    EXPECT_EQ(SCMenuItemGetParentMenu(item), hidden);
    SCMenuRelease(hidden);
    EXPECT_FALSE(SCMenuItemIsVisible(item));
    SCMenuItemRelease(item);
    EXPECT_TRUE(isThere("Test:Movable"));
    EXPECT_EQ(SCMenubarAcquireMenuByName(SCAppGetMenubar(), "Test:Hidden"), nullptr);

    // A whole menu of the bar, wrapped into an item of the hidden one.
    const SCMenu tools = SCMenubarAcquireMenuByName(SCAppGetMenubar(), "Tools");
    EXPECT_EQ(SCMenuGetParentMenuItem(tools), nullptr);
    SCMenuRemove(tools);
    const SCMenuItem wrapper = SCMenuItemNew("Tools", "Test:Wrapper", tools, 0, 0, 0, 1);
    SCMenuAddMenuItem(hidden, wrapper, SCMenuEnd);
    SCMenuItemRelease(wrapper);
    EXPECT_EQ(SCMenuGetParentMenuItem(tools), wrapper);
    SCMenuItemRelease(wrapper);
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
    SCMenuAddMenuItem(outer, toInner, SCMenuEnd);
    EXPECT_EQ(Protect([&] { SCMenuAddMenuItem(inner, toOuter, SCMenuEnd); }), KRErrBadParam);
    EXPECT_EQ(Protect([&] { SCMenuAddMenuItem(outer, toOuter, SCMenuEnd); }), KRErrBadParam);
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

TEST(Menus, WhatIsChosenFromAPopUpHasRun) {
    const SCMenu menu = SCMenuNew("m", "m", 1);
    const SCMenuItem item = newItem("Test:Chosen");
    SCMenuAddMenuItem(menu, item, 0);
    SCMenuItemRelease(item);
    EXPECT_EQ(SCMenuTrackPopUp(menu, 1, 2, /*rightMouse*/ 0), nullptr) << "nobody chooses without a window";
    Platform().trackPopUp = [](SCMenu shown, int, int, bool) { return ItemsOfMenu(shown).front(); };
    executed = 0;
    EXPECT_EQ(SCMenuTrackPopUp(menu, 1, 2, /*rightMouse*/ 0), item);
    EXPECT_EQ(executed, 1);
    SCMenuItemRelease(item);
    SCMenuItemSetExecuteProc(
        item, [](void *) { KRRaise(KRErrBadField); }, nullptr);
    EXPECT_EQ(Protect([&] { SCMenuTrackPopUp(menu, 1, 2, /*rightMouse*/ 0); }), KRErrBadField);
    EXPECT_EQ(Protect([&] { SCMenuItemRelease(item); }), KRErrBadParam) << "no reference is left behind";
    Platform() = {};
    SCMenuRelease(menu);
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
