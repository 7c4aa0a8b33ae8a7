// The cursor of a calculation pass: a small calculator.
// SPDX-License-Identifier: MIT
#include "Common/unix/mdUtils.h"

#include <array>
#include <cstddef>

#include "UnixHFT.h"

namespace {

constexpr int s_side = 32;
using Bitmap = std::array<unsigned char, s_side * s_side / 8>;

/** '#' is black, '.' white, a blank shows what lies beneath. Rows may end early. */
constexpr const char *s_picture[] = {
    "",
    "",
    "    ######################",
    "    #....................#",
    "    #.##################.#",
    "    #.#................#.#",
    "    #.#............###.#.#",
    "    #.#............#.#.#.#",
    "    #.#............###.#.#",
    "    #.#................#.#",
    "    #.##################.#",
    "    #....................#",
    "    #.####.####.####.###.#",
    "    #.####.####.####.###.#",
    "    #.####.####.####.###.#",
    "    #....................#",
    "    #.####.####.####.###.#",
    "    #.####.####.####.###.#",
    "    #.####.####.####.###.#",
    "    #....................#",
    "    #.####.####.####.###.#",
    "    #.####.####.####.###.#",
    "    #.####.####.####.###.#",
    "    #................###.#",
    "    #.####.####.####.###.#",
    "    #.####.####.####.###.#",
    "    #.####.####.####.###.#",
    "    #....................#",
    "    ######################",
};

/** Bits in X order: rows of whole bytes, the left pixel in the lowest bit. */
constexpr Bitmap Bits(bool mask) {
    Bitmap bits{};
    std::size_t y = 0;
    for (const char *row : s_picture) {
        for (std::size_t x = 0; row[x] != 0; ++x) {
            const bool set = row[x] == '#' || (mask && row[x] == '.');
            if (set) bits[y * s_side / 8 + x / 8] |= static_cast<unsigned char>(1u << x % 8);
        }
        ++y;
    }
    return bits;
}

struct CursorRow {
    const char *name;
    const char *resource;
    Bitmap bits, mask;
    std::int32_t hotX, hotY;
};
constexpr CursorRow s_cursorData[] = {
    {"calculate", "calcCursor", Bits(/*mask*/ false), Bits(/*mask*/ true), 6, 21},
};
constexpr std::size_t s_cursorCount = sizeof s_cursorData / sizeof *s_cursorData;

SCCursor s_cursorCache[s_cursorCount];

} // namespace

SCCursor mdGetCursor(std::uint16_t id) {
    if (id >= s_cursorCount) return nullptr;
    if (!s_cursorCache[id] && mdGetRootWidget()) {
        const CursorRow &row = s_cursorData[id];
        s_cursorCache[id] = UnixMakeCursor(row.bits.data(), row.mask.data(), s_side, s_side, row.hotX, row.hotY);
    }
    return s_cursorCache[id];
}

void mdReleaseCursor(SCCursor) {
    // The host has no way to give one back, and the next pass will want it again.
}
