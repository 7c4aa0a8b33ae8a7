// Rules of Japanese text: the two tables of line breaking marks.
// SPDX-License-Identifier: MIT
#include "Common/src/miKanji.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr std::uint16_t s_openingMarks[] = {0x2018, 0x201C, 0xFF08, 0x3014, 0xFF3B, 0xFF5B,
                                            0x3008, 0x300A, 0x300C, 0x300E, 0x3010};

constexpr std::uint16_t s_closingMarks[] = {0x3001, 0x3002, 0xFF0C, 0xFF0E, 0xFF1A, 0xFF1B, 0xFF1F,
                                            0xFF01, 0x2019, 0x201D, 0xFF09, 0x3015, 0xFF3D, 0xFF5D,
                                            0x3009, 0x300B, 0x300D, 0x300F, 0x3011};

template <std::size_t Count>
bool Contains(const std::uint16_t (&table)[Count], std::uint16_t code) {
    return std::find(std::begin(table), std::end(table), code) != std::end(table);
}

} // namespace

bool KanjiGlyphCannotEndLine(std::uint16_t code) {
    return Contains(s_openingMarks, code);
}

bool KanjiGlyphCannotBeginLine(std::uint16_t code) {
    return Contains(s_closingMarks, code);
}

bool Is2Byte(std::uint8_t first, std::uint8_t second) {
    const bool lead = (first >= 0x81 && first <= 0x9F) || (first >= 0xE0 && first <= 0xEF);
    const bool trail = (second >= 0x40 && second <= 0x7E) || (second >= 0x80 && second <= 0xFC);
    return lead && trail;
}

bool IsASCII_JIS_Roman(std::uint8_t byte) {
    return byte >= 0x21 && byte <= 0x7E;
}
