// The tables behind the fonts: glyph names of PDFDocEncoding, and the widths of the two Japanese fonts.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/** Elements of the `Differences` array: codes as text and glyph names, ended by an empty string. */
extern const char *const glyphNames[];

/**
 * `W` arrays, ended by a negative value. An item starts with a CID. A value below 1500 behind it is the last CID of a
 * range, and the range's width follows; a value of 1500 or more is ten times the width of the one CID.
 */
extern const std::int16_t gothicWidths[];
extern const std::int16_t minchoWidths[];
