// What the content store's own files share.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <string>

#include "appearance/miCStore.h"
#include "objects/FixedUtl.h"

/** Appearance streams of at most so many bytes stay uncompressed: they gain nothing and read well. */
inline constexpr std::int32_t CStorePlainLimit = 256;

/** Automatic font sizes: the defaults of their limits, how close is close enough, and what 0 becomes. Points, 16.16. */
inline constexpr KRFixed CStoreMinSize = KRFixedFromInt(4);
inline constexpr KRFixed CStoreMaxSize = KRFixedFromInt(144);
inline constexpr KRFixed CStoreSizePrecision = 0x1000;
inline constexpr KRFixed CStoreDefaultSize = KRFixedFromInt(12);

/** A direct dictionary with `Filter` [/FlateDecode]. */
LexObj CStoreFlateAttributes(LexDoc doc);

/** The decoded data of a stream. Raises KRErrBadStream. */
std::string CStoreReadStream(LexObj stream);

/** |a - b|, clamped: boxes of hostile files may be anything. */
inline KRFixed CStoreDistance(KRFixed a, KRFixed b) {
    const std::int64_t d = std::llabs(static_cast<std::int64_t>(a) - b);
    return d > INT32_MAX ? INT32_MAX : static_cast<KRFixed>(d);
}

/** Sum of widths, none of them negative: a long text's stays at the largest number rather than turning negative. */
inline KRFixed CStoreWiden(KRFixed width, KRFixed more) {
    const std::int64_t sum = static_cast<std::int64_t>(width) + more;
    return sum > INT32_MAX ? INT32_MAX : static_cast<KRFixed>(sum);
}

/** n times a length, wrapping. */
inline KRFixed CStoreTimes(KRFixed a, std::int32_t n) {
    return static_cast<KRFixed>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(n));
}

/** The text starts with the UCS-2 mark. */
inline bool CStoreIsUCS2(const char *text) {
    return text && text[0] == '\xFE' && text[1] == '\xFF';
}

/** Big-endian unit at a byte position. */
inline std::uint16_t CStoreUnitAt(const char *text, std::size_t position) {
    return static_cast<std::uint16_t>(static_cast<unsigned char>(text[position]) << 8 |
                                      static_cast<unsigned char>(text[position + 1]));
}
