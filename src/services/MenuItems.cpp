// Building menu items.
// SPDX-License-Identifier: MIT
#include "services/MenuItems.h"

#include "Common/unix/mdMessages.h"
#include "PIFrame.h"
#include "PIMain.h"

namespace {

constexpr std::uint16_t s_titleSize = 258;

SCMenuItem NewItem(const char *title, const char *name, char shortcut) {
    return SCMenuItemNew(title, name, /*submenu*/ nullptr, /*longMenusOnly*/ false, shortcut, /*modifiers*/ 0,
                         gExtensionID);
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
