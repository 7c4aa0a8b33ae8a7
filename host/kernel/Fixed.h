// 16.16 numbers: arithmetic that saturates, text, matrices. No function here follows the locale.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "KRTypes.h"

namespace jackdaw {

/** The nearest number that 32 bits hold. */
KRFixed SaturateFixed(std::int64_t value);

/** Rounded to nearest, halves away from zero. */
KRFixed FixedMul(KRFixed a, KRFixed b);
/** Rounded as FixedMul; by 0 the greatest or least number by the sign of `a`, and 0 for 0 / 0. */
KRFixed FixedDiv(KRFixed a, KRFixed b);

/** Decimal text with at most `precision` decimals (16 tell every number exactly), no trailing zeros, never "-0". */
std::string FixedToText(KRFixed value, int precision);
/** The number at the start of the text, rounded to nearest; 0 when there is none. */
KRFixed TextToFixed(std::string_view text);

/** 16.16 of a double, rounded; saturated, 0 for what is no number. */
KRFixed FixedFromDouble(double value);
constexpr double FixedToDouble(KRFixed value) {
    return value / 65536.0;
}

/** `first` applied before `second`. */
KRFixedMatrix FixedMatrixConcat(const KRFixedMatrix &first, const KRFixedMatrix &second);
KRFixedPoint FixedMatrixTransform(const KRFixedMatrix &matrix, KRFixedPoint point);
/** The smallest upright rectangle around the transformed one, left <= right and bottom <= top. */
KRFixedRect FixedMatrixTransformRect(const KRFixedMatrix &matrix, const KRFixedRect &rect);
/** The inverse; false (and `result` untouched) when there is none that 16.16 can hold. */
bool FixedMatrixInvert(KRFixedMatrix &result, const KRFixedMatrix &matrix);

} // namespace jackdaw
