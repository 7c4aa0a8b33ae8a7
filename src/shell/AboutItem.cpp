// The one menu item that the plug-in always has.
// SPDX-License-Identifier: MIT
#include "shell/AboutItem.h"

#include "Common/unix/mdAbout.h"
#include "Common/unix/mdMessages.h"
#include "PIFrame.h"
#include "PIMain.h"
#include "ScreenViewHFT.h"

namespace {

constexpr std::uint16_t s_aboutSize = 130;

KRBool Always(void *) {
    return true;
}
KRBool Never(void *) {
    return false;
}
void ShowAbout(void *) {
    mdDisplayAbout();
}

} // namespace

void miPIAddMenuItems() {
    SCMenuItem about = SCMenubarAcquireMenuItemByName(SCAppGetMenubar(), "AboutExtensions");
    if (!about) return;
    SCMenu menu = SCMenuItemGetParentMenu(about);
    SCMenuItemRelease(about);
    char title[s_aboutSize];
    mdGetString(Msg::menuAbout, title, sizeof title);
    SCMenuItem item =
        SCMenuItemNew(title, "Tessella:About", /*submenu*/ nullptr, /*longMenusOnly*/ false, /*shortcut*/ 0,
                      /*modifiers*/ 0, gExtensionID);
    SCMenuItemSetComputeEnabledProc(item, PICallback(gExtensionID, &Always), nullptr);
    SCMenuItemSetComputeMarkedProc(item, PICallback(gExtensionID, &Never), nullptr);
    SCMenuItemSetExecuteProc(item, PICallback(gExtensionID, &ShowAbout), nullptr);
    SCMenuAddMenuItem(menu, item, SCMenuEnd);
    SCMenuItemRelease(item);
    SCMenuRelease(menu);
}
