// Colours.
// SPDX-License-Identifier: MIT
#include "objects/ColorUtl.h"

#include <algorithm>
#include <cstring>

#include "Common/src/miLexType.h"
#include "KernelSupportHFT.h"
#include "objects/FixedUtl.h"
#include "objects/LexUtil.h"

namespace {

// 0.3, 0.59 and 0.11.
constexpr std::uint32_t s_redWeight = 19659, s_greenWeight = 38660, s_blueWeight = 7208;

/** The weighted sum as the low word of its products. */
KRFixed Luminance(KRFixed red, KRFixed green, KRFixed blue) {
    return static_cast<KRFixed>(s_redWeight * static_cast<std::uint32_t>(red) +
                                s_greenWeight * static_cast<std::uint32_t>(green) +
                                s_blueWeight * static_cast<std::uint32_t>(blue));
}

KRFixed OneLess(KRFixed value) {
    return TSFixedSub(KRFixedOne, value);
}

KRFixed GrayOf(const DMColorValue &color) {
    const KRFixed *const v = color.value;
    if (color.space == TSColorCMYK) {
        return std::max(0, OneLess(TSFixedAdd(Luminance(v[0], v[1], v[2]), v[3])));
    }
    // The weights add up to a little less than a whole; white comes out as all of it.
    const bool white = std::all_of(v, v + 3, [](KRFixed part) { return part == KRFixedOne; });
    return white ? static_cast<KRFixed>(0xFFFF0000u) : Luminance(v[0], v[1], v[2]);
}

DMColorValue ToRGB(const DMColorValue &color) {
    const KRFixed *const v = color.value;
    if (color.space == TSColorGray) return {TSColorRGB, {v[0], v[0], v[0], 0}};
    const auto part = [&](int i) { return std::max(0, OneLess(TSFixedAdd(v[i], v[3]))); };
    return {TSColorRGB, {part(0), part(1), part(2), 0}};
}

DMColorValue ToCMYK(const DMColorValue &color) {
    const KRFixed *const v = color.value;
    if (color.space == TSColorGray) return {TSColorCMYK, {0, 0, 0, OneLess(v[0])}};
    return {TSColorCMYK, {OneLess(v[0]), OneLess(v[1]), OneLess(v[2]), 0}};
}

} // namespace

std::int32_t TSColorComponents(std::int32_t space) {
    switch (space) {
    case TSColorGray:
        return 1;
    case TSColorRGB:
        return 3;
    case TSColorCMYK:
        return 4;
    default:
        return 0;
    }
}

void TSDMColorValueSet(DMColorValue *color, std::int32_t space, KRFixed v0, KRFixed v1, KRFixed v2, KRFixed v3) {
    *color = {space, {v0, v1, v2, v3}};
    std::fill(color->value + TSColorComponents(space), color->value + 4, 0);
}

bool TSDMColorValueIs(const DMColorValue *color, std::int32_t space) {
    return color->space == space;
}

bool TSDMColorValueEqual(const DMColorValue *a, const DMColorValue *b) {
    if (a == b) return true;
    if (!a || !b || a->space != b->space) return false;
    return std::equal(a->value, a->value + TSColorComponents(a->space), b->value);
}

void TSDMColorValueConvert(DMColorValue *color, std::int32_t space) {
    if (color->space == space || TSColorComponents(color->space) == 0) return;
    switch (space) {
    case TSColorGray:
        *color = {TSColorGray, {GrayOf(*color), 0, 0, 0}};
        break;
    case TSColorRGB:
        *color = ToRGB(*color);
        break;
    case TSColorCMYK:
        *color = ToCMYK(*color);
        break;
    default:
        break;
    }
}

bool IsDMColorBlack(const DMColorValue *color) {
    if (color->space != TSColorRGB && color->space != TSColorCMYK) return false;
    return std::all_of(color->value, color->value + TSColorComponents(color->space), [](KRFixed v) { return v == 0; });
}

bool ValidDMColorValue(const DMColorValue *color) {
    const std::int32_t count = TSColorComponents(color->space);
    return count > 0 && std::all_of(color->value, color->value + count, [](KRFixed v) { return v <= KRFixedOne; });
}

void TSDMColorStore(LexObj dict, KRAtom key, const DMColorValue *color) {
    if (!IsDict(dict) || !ValidDMColorValue(color)) return;
    if (LexDictKnown(dict, key)) LexDictRemove(dict, key);
    const LexDoc doc = LexObjGetDoc(dict);
    const std::int32_t count = TSColorComponents(color->space);
    const LexObj array = LexNewArray(doc, /*indirect*/ false, count);
    for (std::int32_t i = 0; i < count; ++i) {
        LexArrayPut(array, i, LexNewFixed(doc, /*indirect*/ false, color->value[i]));
    }
    LexDictPut(dict, key, array);
}

void TSDMColorLoad(LexObj obj, KRAtom key, DMColorValue *color) {
    TSDMColorValueSet(color, TSColorTransparent);
    if (IsDict(obj) && key != KRAtomNull && LexDictKnown(obj, key)) obj = LexDictGet(obj, key);
    if (!IsArray(obj)) return;
    const std::int32_t count = LexArrayLength(obj);
    if (count != 1 && count != 3 && count != 4) return;
    DMColorValue loaded{count == 1 ? TSColorGray : count == 3 ? TSColorRGB : TSColorCMYK, {}};
    for (std::int32_t i = 0; i < count; ++i) {
        if (!TSLexObjGetNumber(LexArrayGet(obj, i), &loaded.value[i])) return;
    }
    *color = loaded;
}

void TSDMColorGetCString(const DMColorValue *color, bool fill, char *buffer) {
    static constexpr const char *s_operators[][2] = {{"G ", "g "}, {"RG ", "rg "}, {"K ", "k "}};
    std::memset(buffer, 0, TSDMColorTextSize);
    const std::int32_t count = TSColorComponents(color->space);
    if (count == 0) return;
    char *end = buffer;
    for (std::int32_t i = 0; i < count; ++i) {
        KRFixedToCString(color->value[i], end, /*size*/ 7, /*precision*/ 4);
        end += std::strlen(end);
        *end++ = ' ';
    }
    std::strcpy(end, s_operators[color->space][fill ? 1 : 0]);
}
