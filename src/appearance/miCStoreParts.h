// What the content store's own files share.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <string>

#include "appearance/miCStore.h"
#include "objects/FixedUtl.h"

/** Appearance streams of at most so many bytes stay uncompressed: they gain nothing and read well. */
inline constexpr std::int32_t CStorePlainLimit = 256;

/** Automatic font sizes in points, 16.16: the limits that hold by default, and the size of a text that has none. */
inline constexpr KRFixed CStoreMinSize = KRFixedFromInt(4);
inline constexpr KRFixed CStoreMaxSize = KRFixedFromInt(144);
inline constexpr KRFixed CStoreDefaultSize = KRFixedFromInt(12);

/** 0.5523 in 16.16: how far out the control points of a quarter circle lie, in radii. */
inline constexpr KRFixed CStoreCircleFactor = 36196;

/**
 * The largest size of the look's font at which the text fits between two margins on each side; limits as for
 * CStoreSimpleTextEx.
 */
KRFixed CStoreFittingSize(const CStore *store, KRFixed margin, TextAppearance look, bool multiLine, KRFixed minSize,
                          KRFixed maxSize, const char *text);

/** Shows a text between BT and ET, in as many strings as it takes: one print has a limit. An empty text shows nothing.
 */
void CStoreShowText(CStore *store, const char *text);

/** A direct dictionary with `Filter` [/FlateDecode]. */
LexObj CStoreFlateAttributes(LexDoc doc);

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
