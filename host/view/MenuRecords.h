// The records behind the menu handles; for the sources of host/view alone.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "ScreenViewHFT.h"

struct SCMenubarRec {
    std::vector<SCMenu> menus;
    bool filled = false;
};

struct SCMenuRec {
    /** Of callers; standing in the bar or on an item is none. */
    int references = 1;
    /** In the order of making: an item outside the bar is found in the oldest menu that has it. */
    std::uint64_t number = 0;
    std::string title, name;
    KRWord extensionID = 0;
    /** The item that it hangs on, or the bar that it stands in; never both. */
    SCMenuItem parentItem = nullptr;
    SCMenubar bar = nullptr;
    std::vector<SCMenuItem> items;
};

struct SCMenuItemRec {
    /** Of callers; standing in a menu is none. */
    int references = 1;
    std::string title, name;
    KRWord extensionID = 0;
    SCMenu submenu = nullptr;
    SCMenu parent = nullptr;
    bool longMenusOnly = false;
    char shortcut = 0;
    std::uint16_t modifiers = 0;
    SCExecuteProc execute = nullptr;
    void *executeData = nullptr;
    SCComputeProc enabled = nullptr;
    void *enabledData = nullptr;
    SCComputeProc marked = nullptr;
    void *markedData = nullptr;
};

namespace jackdaw {

/** Puts the host's menus into an empty bar. */
void FillMenubar(SCMenubar bar);
/** Puts a menu that stands nowhere behind the others. */
void AddMenuToBar(SCMenubar bar, SCMenu menu);

} // namespace jackdaw
