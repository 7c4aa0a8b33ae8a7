// Rectangles and matrices of fixed numbers. Page space: top is above bottom. Overflow wraps.
// SPDX-License-Identifier: MIT
#pragma once

#include "LexHFT.h"

/** Arithmetic of fixed numbers that wraps around instead of being undefined: coordinates come from files. */
constexpr KRFixed TSFixedAdd(KRFixed a, KRFixed b) {
    return static_cast<KRFixed>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
constexpr KRFixed TSFixedSub(KRFixed a, KRFixed b) {
    return static_cast<KRFixed>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}
constexpr KRFixed TSFixedNeg(KRFixed a) {
    return TSFixedSub(0, a);
}

/** In the order of a PDF rectangle array. */
void TSFixedRectSet(KRFixedRect *rect, KRFixed left, KRFixed bottom, KRFixed right, KRFixed top);
/** Moves each vertical side inward by `dx` and each horizontal one by `dy`; negative values grow the rectangle. */
void TSFixedRectInset(KRFixedRect *rect, KRFixed dx, KRFixed dy);
/** No width or no height, or turned around. */
bool TSFixedRectEmpty(const KRFixedRect *rect);
/** What both cover; the zero rectangle when that is nothing. `out` may be either argument. */
void TSFixedRectIntersect(KRFixedRect *out, const KRFixedRect *a, const KRFixedRect *b);
/** Adds the four members of `delta`. */
void TSFixedRectDelta(KRFixedRect *rect, const KRFixedRect *delta);

void TSFixedMatrixSet(KRFixedMatrix *matrix, KRFixed a, KRFixed b, KRFixed c, KRFixed d, KRFixed e, KRFixed f);
// What follows is applied after what the matrix does already.
void TSFixedMatrixScale(KRFixedMatrix *matrix, KRFixed sx, KRFixed sy);
void TSFixedMatrixTranslate(KRFixedMatrix *matrix, KRFixed tx, KRFixed ty);
/** Clockwise, as a page's `Rotate` counts: 0, 90, 180, 270. Any other angle leaves the matrix alone. */
void TSFixedMatrixRotate(KRFixedMatrix *matrix, std::int32_t degrees);

/** A form XObject's `BBox` as its `Matrix` maps it, upright; the zero rectangle when it has none. */
void TSDMFormGetNormalizedBBox(LexObj form, KRFixedRect *rect);
