// Building menu items, and the one that the plug-in always has.
// SPDX-License-Identifier: MIT
#include "MenuItems.h"

#include "PIFrame.h"
#include "PIMain.h"
#include "mdAbout.h"
#include "mdMessages.h"

namespace {

constexpr std::int32_t s_menuEnd = 9999;
constexpr std::uint16_t s_titleSize = 258;
constexpr std::uint16_t s_aboutSize = 130;

SCMenuItem NewItem(const char *title, const char *name, char shortcut) {
    return SCMenuItemNew(title, name, /*submenu*/ nullptr, /*longMenusOnly*/ false, shortcut, /*modifiers*/ 0,
                         gExtensionID);
}

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

void TSSCMenuAddSeparator(SCMenu menu, std::int32_t index) {
    SCMenuItem item = NewItem("-", "Tessella:Separator", /*shortcut*/ 0);
    SCMenuAddMenuItem(menu, item, index);
    SCMenuItemRelease(item);
}

void TSSCMenuAddMenuItemEx(SCMenu menu, const char *name, std::int32_t stringId, SCExecuteProc execute,
                           SCComputeProc enabled, SCComputeProc marked, char shortcut, std::int32_t index,
                           void *clientData) {
    char title[s_titleSize] = "";
    if (!(stringId & TSMenuNoTitle)) mdGetString(stringId, title, sizeof title);
    SCMenuItem item = NewItem(title, name, shortcut);
    if (execute) SCMenuItemSetExecuteProc(item, PICallback(gExtensionID, execute), clientData);
    if (enabled) SCMenuItemSetComputeEnabledProc(item, PICallback(gExtensionID, enabled), clientData);
    if (marked) SCMenuItemSetComputeMarkedProc(item, PICallback(gExtensionID, marked), clientData);
    SCMenuAddMenuItem(menu, item, index);
    SCMenuItemRelease(item);
}

void miPIAddMenuItems() {
    SCMenuItem about = SCMenubarAcquireMenuItemByName(SCAppGetMenubar(), "AboutExtensions");
    if (!about) return;
    SCMenu menu = SCMenuItemGetParentMenu(about);
    SCMenuItemRelease(about);
    char title[s_aboutSize];
    mdGetString(Msg::menuAbout, title, sizeof title);
    SCMenuItem item = NewItem(title, "Tessella:About", /*shortcut*/ 0);
    SCMenuItemSetComputeEnabledProc(item, PICallback(gExtensionID, &Always), nullptr);
    SCMenuItemSetComputeMarkedProc(item, PICallback(gExtensionID, &Never), nullptr);
    SCMenuItemSetExecuteProc(item, PICallback(gExtensionID, &ShowAbout), nullptr);
    SCMenuAddMenuItem(menu, item, s_menuEnd);
    SCMenuItemRelease(item);
    SCMenuRelease(menu);
}
