// The sibling "BaseTool": metrics of the fourteen base fonts, and text converters.
// SPDX-License-Identifier: MIT
#include "siblings/BaseTool.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "kernel/HostError.h"
#include "kernel/Tables.h"
#include "siblings/Converters.h"

namespace jackdaw {

namespace {

struct BaseFont {
    const char *name;
    BaseToolFontMetrics metrics;
    std::int16_t widths[256];
};
#include "BaseFonts.inc"

KRBool baseToolGetFontMetrics(const char *fontName, BaseToolFontMetrics *metrics, std::int32_t *widths) {
    return Edge([&]() -> KRBool {
        if (!metrics || !widths) throw HostError{KRErrBadParam, "Font metrics need a place to be stored in."};
        return fontName && BaseFontMetrics(fontName, *metrics, widths);
    });
}

BaseToolConverter baseToolGetConverter(const char *name) {
    return Edge([&] { return ConverterNamed(name); });
}

std::int32_t baseToolHostToUCS(BaseToolConverter converter, const char *source, std::int32_t sourceLength, char *target,
                               std::int32_t targetSize, std::int32_t *error) {
    return Edge([&] { return ConvertToUCS(converter, source, sourceLength, target, targetSize, error); });
}

std::int32_t baseToolUCSToHost(BaseToolConverter converter, const char *source, std::int32_t sourceLength, char *target,
                               std::int32_t targetSize, std::int32_t *error) {
    return Edge([&] { return ConvertFromUCS(converter, source, sourceLength, target, targetSize, error); });
}

} // namespace

bool BaseFontMetrics(const char *fontName, BaseToolFontMetrics &metrics, std::int32_t widths[256]) {
    // Old forms name the family alone.
    if (std::strcmp(fontName, "Times") == 0) fontName = "Times-Roman";
    const auto *const font = std::find_if(std::begin(s_baseFonts), std::end(s_baseFonts), [&](const BaseFont &known) {
        return std::strcmp(known.name, fontName) == 0;
    });
    if (font == std::end(s_baseFonts)) return false;
    metrics = font->metrics;
    std::copy(std::begin(font->widths), std::end(font->widths), widths);
    return true;
}

void FillBaseToolTable() {
    Provide(BaseToolGetFontMetrics, &baseToolGetFontMetrics);
    Provide(BaseToolGetConverter, &baseToolGetConverter);
    Provide(BaseToolHostToUCS, &baseToolHostToUCS);
    Provide(BaseToolUCSToHost, &baseToolUCSToHost);
}

} // namespace jackdaw
