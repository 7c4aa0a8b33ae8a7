// Rules of Japanese text: line breaking marks and the bytes of Shift-JIS.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/** An opening mark (UCS-2), which may not stand last on a line. */
bool KanjiGlyphCannotEndLine(std::uint16_t code);
/** A closing mark or punctuation (UCS-2), which may not stand first on a line. */
bool KanjiGlyphCannotBeginLine(std::uint16_t code);

/** The two bytes are one Shift-JIS character. */
bool Is2Byte(std::uint8_t first, std::uint8_t second);
/** Printing ASCII without the blank. */
bool IsASCII_JIS_Roman(std::uint8_t byte);
