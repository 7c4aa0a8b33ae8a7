// Menus as data: the bar, its menus, their items. A window shows them; nothing here needs one.
//
// 1. Menus and items live as long as they stand somewhere or somebody refers to them. Only callers' references are
//    counted: a menu in the bar, an item in a menu and a menu on an item stand by that alone, so that a release too
//    many frees nothing. The pointers upward are weak.
// 2. An item that was moved out of the bar into a menu of a plug-in's is still found by its name and still runs.
// 3. A menu never comes to stand below itself.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "ScreenViewHFT.h"

namespace jackdaw {

/** The bar, with the host's menus in it from the first call on. */
SCMenubar Menubar();
/** Takes down the bar and all that is left; for the end of the process. */
void DestroyMenus();

// Acquired by the caller; null when there is none.
SCMenu AcquireMenuByName(SCMenubar bar, const char *name);
SCMenuItem AcquireItemByName(SCMenubar bar, const char *name);
SCMenu AcquireSubmenu(SCMenuItem item);
SCMenuItem AcquireParentItem(SCMenu menu);
SCMenu AcquireParentMenu(SCMenuItem item);

SCMenu NewMenu(const char *title, const char *name, KRWord extensionID);
SCMenuItem NewMenuItem(const char *title, const char *name, SCMenu submenu, bool longMenusOnly, char shortcut,
                       std::uint16_t modifiers, KRWord extensionID);
void AcquireItem(SCMenuItem item);
/** Raises KRErrBadParam, and frees nothing, where there is no reference to give up. */
void ReleaseMenu(SCMenu menu);
void ReleaseItem(SCMenuItem item);

/** Out of the bar, or out of the item that it hangs on. */
void RemoveMenu(SCMenu menu);
void RemoveItem(SCMenuItem item);
/** Moves an item that stands in another menu. Raises KRErrBadParam where that would close a circle. */
void AddItem(SCMenu menu, SCMenuItem item, std::int32_t index);

void SetItemExecute(SCMenuItem item, SCExecuteProc proc, void *clientData);
void SetItemEnabled(SCMenuItem item, SCComputeProc proc, void *clientData);
void SetItemMarked(SCMenuItem item, SCComputeProc proc, void *clientData);
bool ItemIsEnabled(SCMenuItem item);
bool ItemIsMarked(SCMenuItem item);
/** It stands in the bar, at any depth. */
bool ItemIsVisible(SCMenuItem item);
/** Runs it when it is enabled; an item of a submenu runs nothing. */
void ExecuteItem(SCMenuItem item);

// For who shows them. Not acquired.
std::vector<SCMenu> MenusOfBar(SCMenubar bar);
std::vector<SCMenuItem> ItemsOfMenu(SCMenu menu);
SCMenu SubmenuOf(SCMenuItem item);
const std::string &MenuTitle(SCMenu menu);
const std::string &MenuName(SCMenu menu);
const std::string &ItemTitle(SCMenuItem item);
const std::string &ItemName(SCMenuItem item);
char ItemShortcut(SCMenuItem item);
std::uint16_t ItemModifiers(SCMenuItem item);

} // namespace jackdaw
