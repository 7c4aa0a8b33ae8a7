// 16.16 numbers. All arithmetic is done in 64 bits and brought back by SaturateFixed.
// SPDX-License-Identifier: MIT
#include "kernel/Fixed.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace jackdaw {

namespace {

constexpr std::int64_t s_half = 0x8000;
constexpr int s_fractionDigits = 16;

/** Magnitude as unsigned, since the least number has none among the signed. */
std::uint64_t magnitude(std::int64_t value) {
    return value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
}

/** Product in 16.16, rounded away from zero at a half, of up to 47 bits. */
std::int64_t wideMul(std::int64_t a, std::int64_t b) {
    const std::int64_t product = a * b;
    return product < 0 ? -((-product + s_half) >> 16) : (product + s_half) >> 16;
}

/** All sixteen decimals of a fraction of 16 bits. */
void writeDecimals(std::uint32_t fraction, char (&digits)[s_fractionDigits]) {
    for (char &digit : digits) {
        fraction *= 10;
        digit = static_cast<char>('0' + (fraction >> 16));
        fraction &= 0xFFFF;
    }
}

/** Adds one to the last of `count` decimals; true when that carries into the whole part. */
bool roundUp(char *digits, int count) {
    for (int i = count - 1; i >= 0; --i) {
        if (digits[i] != '9') {
            ++digits[i];
            return false;
        }
        digits[i] = '0';
    }
    return true;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/** Digits behind the point as a 16-bit fraction, up to 65,536 by rounding. */
std::uint64_t readFraction(std::string_view digits) {
    // Fourteen decimals and sixteen bits are the most that 64 bits carry; the fifteenth is below a millionth of a unit.
    constexpr std::size_t most = 14;
    std::uint64_t numerator = 0, denominator = 1;
    for (std::size_t i = 0; i < digits.size() && i < most && isDigit(digits[i]); ++i) {
        numerator = numerator * 10 + static_cast<std::uint64_t>(digits[i] - '0');
        denominator *= 10;
    }
    return (numerator * 65536 + denominator / 2) / denominator;
}

struct WidePoint {
    std::int64_t h, v;
};

WidePoint transformWide(const KRFixedMatrix &m, KRFixed h, KRFixed v) {
    return {wideMul(h, m.a) + wideMul(v, m.c) + m.e, wideMul(h, m.b) + wideMul(v, m.d) + m.f};
}

} // namespace

KRFixed SaturateFixed(std::int64_t value) {
    using Limits = std::numeric_limits<KRFixed>;
    return static_cast<KRFixed>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

KRFixed FixedMul(KRFixed a, KRFixed b) {
    return SaturateFixed(wideMul(a, b));
}

KRFixed FixedDiv(KRFixed a, KRFixed b) {
    using Limits = std::numeric_limits<KRFixed>;
    if (b == 0) return a == 0 ? 0 : a > 0 ? Limits::max() : Limits::min();
    const std::uint64_t divisor = magnitude(b);
    const auto quotient = static_cast<std::int64_t>(((magnitude(a) << 16) + divisor / 2) / divisor);
    return SaturateFixed((a < 0) == (b < 0) ? quotient : -quotient);
}

std::string FixedToText(KRFixed value, int precision) {
    const auto size = static_cast<std::uint32_t>(magnitude(value));
    char digits[s_fractionDigits];
    writeDecimals(size & 0xFFFF, digits);
    int count = std::clamp(precision, 0, s_fractionDigits);
    std::uint32_t whole = size >> 16;
    if (count < s_fractionDigits && digits[count] >= '5' && roundUp(digits, count)) ++whole;
    while (count > 0 && digits[count - 1] == '0') --count;
    std::string text = std::to_string(whole);
    if (count > 0) text.append(1, '.').append(digits, static_cast<std::size_t>(count));
    return value < 0 && text != "0" ? "-" + text : text;
}

KRFixed TextToFixed(std::string_view text) {
    std::size_t at = 0;
    while (at < text.size() && isBlank(text[at])) ++at;
    const bool negative = at < text.size() && text[at] == '-';
    if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;
    std::int64_t whole = 0;
    for (; at < text.size() && isDigit(text[at]); ++at)
        whole = std::min<std::int64_t>(whole * 10 + (text[at] - '0'), 0x10000);
    std::int64_t value = whole << 16;
    if (at < text.size() && text[at] == '.') value += static_cast<std::int64_t>(readFraction(text.substr(at + 1)));
    return SaturateFixed(negative ? -value : value);
}

KRFixed FixedFromDouble(double value) {
    const double scaled = std::round(value * 65536.0);
    if (std::isnan(scaled)) return 0;
    if (scaled >= 2147483647.0) return std::numeric_limits<KRFixed>::max();
    if (scaled <= -2147483648.0) return std::numeric_limits<KRFixed>::min();
    return static_cast<KRFixed>(scaled);
}

KRFixedMatrix FixedMatrixConcat(const KRFixedMatrix &first, const KRFixedMatrix &second) {
    const auto entry = [](KRFixed x, KRFixed y, KRFixed p, KRFixed q, KRFixed add) {
        return SaturateFixed(wideMul(x, p) + wideMul(y, q) + add);
    };
    return {
        entry(first.a, first.b, second.a, second.c, 0),        entry(first.a, first.b, second.b, second.d, 0),
        entry(first.c, first.d, second.a, second.c, 0),        entry(first.c, first.d, second.b, second.d, 0),
        entry(first.e, first.f, second.a, second.c, second.e), entry(first.e, first.f, second.b, second.d, second.f)};
}

KRFixedPoint FixedMatrixTransform(const KRFixedMatrix &matrix, KRFixedPoint point) {
    const WidePoint wide = transformWide(matrix, point.h, point.v);
    return {SaturateFixed(wide.h), SaturateFixed(wide.v)};
}

KRFixedRect FixedMatrixTransformRect(const KRFixedMatrix &matrix, const KRFixedRect &rect) {
    const WidePoint corners[] = {
        transformWide(matrix, rect.left, rect.top), transformWide(matrix, rect.right, rect.top),
        transformWide(matrix, rect.left, rect.bottom), transformWide(matrix, rect.right, rect.bottom)};
    WidePoint least = corners[0], most = corners[0];
    for (const WidePoint &corner : corners) {
        least = {std::min(least.h, corner.h), std::min(least.v, corner.v)};
        most = {std::max(most.h, corner.h), std::max(most.v, corner.v)};
    }
    return {SaturateFixed(least.h), SaturateFixed(most.v), SaturateFixed(most.h), SaturateFixed(least.v)};
}

bool FixedMatrixInvert(KRFixedMatrix &result, const KRFixedMatrix &matrix) {
    const double a = FixedToDouble(matrix.a), b = FixedToDouble(matrix.b), c = FixedToDouble(matrix.c);
    const double d = FixedToDouble(matrix.d), e = FixedToDouble(matrix.e), f = FixedToDouble(matrix.f);
    const double determinant = a * d - b * c;
    if (determinant == 0) return false;
    const double inverse[] = {d, -b, -c, a, c * f - d * e, b * e - a * f};
    KRFixed entries[6];
    for (int i = 0; i < 6; ++i) {
        const double entry = inverse[i] / determinant;
        if (std::abs(entry) >= 32768.0) return false;
        entries[i] = FixedFromDouble(entry);
    }
    result = {entries[0], entries[1], entries[2], entries[3], entries[4], entries[5]};
    return true;
}

} // namespace jackdaw
