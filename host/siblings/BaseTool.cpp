// The sibling "BaseTool": metrics of the fourteen base fonts, and text converters.
// SPDX-License-Identifier: MIT
#include "siblings/BaseTool.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "kernel/Bind.h"
#include "siblings/Converters.h"
#include "siblings/TextConvert.h"

namespace jackdaw {

namespace {

struct BaseFont {
    const char *name;
    BaseToolFontMetrics metrics;
    std::int16_t widths[256];
};
#include "BaseFonts.inc"

bool getFontMetrics(const char *fontName, BaseToolFontMetrics *metrics, std::int32_t *widths) {
    if (!metrics || !widths) throw HostError{KRErrBadParam, "Font metrics need a place to be stored in."};
    return fontName && BaseFontMetrics(fontName, *metrics, widths);
}

/** A text converted, as the slots of text strings hand it out. */
template <auto Convert>
std::int32_t convertText(const char *source, std::int32_t sourceLength, char *target, std::int32_t targetSize,
                         std::int32_t *error) {
    if (sourceLength < 0 || (!source && sourceLength > 0) || (!target && targetSize > 0))
        throw HostError{KRErrBadParam, "A text to be converted, or a place for it, is missing."};
    const std::string text = Convert({source, static_cast<std::size_t>(sourceLength)});
    const bool fits = std::ssize(text) <= targetSize;
    if (fits) text.copy(target, text.size());
    if (error) *error = fits ? BaseToolOK : BaseToolTargetTooSmall;
    return static_cast<std::int32_t>(text.size());
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
    Bind<&getFontMetrics>(BaseToolGetFontMetrics);
    Bind<&ConverterNamed>(BaseToolGetConverter);
    Bind<&ConvertToUCS>(BaseToolHostToUCS);
    Bind<&ConvertFromUCS>(BaseToolUCSToHost);
    Bind<&convertText<&UnicodeToTextString>>(BaseToolUCSToText);
    Bind<&convertText<&UTF8ToTextString>>(BaseToolUTF8ToText);
    Bind<&convertText<&TextStringToUTF8>>(BaseToolTextToUTF8);
}

} // namespace jackdaw
