// Building menu items.
// SPDX-License-Identifier: MIT
#pragma once

#include "ScreenViewHFT.h"

/** A string number with this bit means an empty title. */
inline constexpr std::int32_t TSMenuNoTitle = 0x8000;

// The items that data exchange and scripts add.

void TSSCMenuAddSeparator(SCMenu menu, std::int32_t index);

/** An item with a title from the catalogue (at most 258 bytes). Each procedure may be null. `index` as in
 * SCMenuAddMenuItem. */
void TSSCMenuAddMenuItemEx(SCMenu menu, const char *name, std::int32_t stringId, SCExecuteProc execute,
                           SCComputeProc enabled, SCComputeProc marked, char shortcut, std::int32_t index,
                           void *clientData);
