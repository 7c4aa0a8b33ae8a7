// The mark of a signature field.
// SPDX-License-Identifier: MIT
#pragma once

/** Lines of a content stream, ended by null. */
extern const char *const thumper[];
/** The line that sets the colour, replaced by the look's. */
inline constexpr int ThumperColorLine = 3;
