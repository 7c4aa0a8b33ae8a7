// The plug-in's cursors, loaded when they are first asked for. Without a window every cursor is null.
// SPDX-License-Identifier: MIT
#pragma once

#include "KRTypes.h"

/** Indexes of the table of cursors. */
enum CursorIndex : std::uint16_t {
    CursorCalculate = 0,
    CursorTransfer = 4,
    CursorText = 5,
    CursorArrow = 6,
    CursorButton = 7,
    CursorCount = 8
};

/** For the widgets of a window, and for what takes its time. Null for an index outside the table, and for a cursor that
 * the platform lacks. */
SCCursor CursorGet(std::uint16_t index);
/** Loads without returning it. */
void CursorLoad(std::uint16_t index);
/** Does nothing: cursors load at first use. */
void CursorsInit();
void CursorsTerm();
