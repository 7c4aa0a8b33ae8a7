// A text as a widget shows it.
// SPDX-License-Identifier: MIT
#include "widgets/miWShownText.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "Common/unix/mdMessages.h"
#include "base/miKanjiFont.h"
#include "services/Warnings.h"

namespace {

using Units = std::vector<std::uint16_t>;

constexpr std::uint16_t s_bullet = 0x2022;
constexpr unsigned char s_bulletCode = 0x80;
/** As many are told; a text may lack a whole alphabet. */
constexpr std::size_t s_mostTold = 12;

bool IsWithin(std::uint16_t unit, std::uint16_t first, std::uint16_t last) {
    return unit >= first && unit <= last;
}

bool IsBlank(std::uint16_t unit) {
    return unit == '\t' || unit == 0xA0 || unit == 0x1680 || IsWithin(unit, 0x2000, 0x200A) || unit == 0x202F ||
           unit == 0x205F;
}

bool IsInvisible(std::uint16_t unit) {
    return unit == 0xAD || unit == 0x61C || unit == 0x180E || IsWithin(unit, 0x200B, 0x200F) ||
           IsWithin(unit, 0x202A, 0x202E) || IsWithin(unit, 0x2060, 0x206F) || IsWithin(unit, 0xFE00, 0xFE0F) ||
           unit == 0xFEFF;
}

bool IsFirstHalf(std::uint16_t unit) {
    return IsWithin(unit, 0xD800, 0xDBFF);
}

Units ShownUnits(const EStr *ucs2) {
    Units units;
    for (std::size_t at = 2; at + 1 < ucs2->length; at += 2) {
        const auto high = static_cast<unsigned char>(ucs2->bytes[at]);
        const auto low = static_cast<unsigned char>(ucs2->bytes[at + 1]);
        const auto unit = static_cast<std::uint16_t>(high << 8 | low);
        if (IsInvisible(unit)) continue;
        const bool isLineEnd = unit == 0x2028 || unit == 0x2029;
        units.push_back(IsBlank(unit) ? ' ' : isLineEnd ? '\r' : unit);
    }
    return units;
}

EStrPtr TextOfUnits(const std::uint16_t *units, std::size_t count) {
    std::string bytes = "\xFE\xFF";
    for (std::size_t i = 0; i < count; ++i) {
        bytes += static_cast<char>(units[i] >> 8);
        bytes += static_cast<char>(units[i] & 0xFF);
    }
    EStrPtr text(EStrNewImpl(nullptr, EStrUCS2));
    EStrSetBytesSized(text.get(), bytes.data(), bytes.size(), EStrUCS2);
    return text;
}

/** The characters that `shown` has bullets for, each once, in the host's encoding; "U+1F600" where that lacks them. */
std::string LostCharacters(const Units &units, const EStr *shown) {
    std::vector<std::uint32_t> lost;
    std::string names;
    for (std::size_t i = 0; i < units.size() && i < shown->length && lost.size() < s_mostTold; ++i) {
        if (static_cast<unsigned char>(shown->bytes[i]) != s_bulletCode || units[i] == s_bullet) continue;
        std::uint32_t character = units[i];
        const bool isPair = IsFirstHalf(units[i]) && i + 1 < units.size();
        if (isPair) character = 0x10000u + ((character - 0xD800u) << 10) + (units[i + 1] - 0xDC00u);
        i += isPair ? 1 : 0;
        if (std::find(lost.begin(), lost.end(), character) != lost.end()) continue;
        lost.push_back(character);
        const EStrPtr one = TextOfUnits(&units[isPair ? i - 1 : i], 1);
        EStrSetEncoding(one.get(), EStrHost);
        char number[16];
        std::snprintf(number, sizeof number, "U+%04X", static_cast<unsigned>(character));
        const bool told = !isPair && EStrGetEncoding(one.get()) == EStrHost && EStrGetLen(one.get()) > 0;
        names += (names.empty() ? "" : " ") + std::string(told ? EStrGetBytes(one.get()) : number);
    }
    return names;
}

void WarnOfLost(const Units &units, const EStr *shown, DMField *field) {
    const std::string lost = LostCharacters(units, shown);
    if (lost.empty()) return;
    TSWarn(TSDMFieldGetDoc(field), TSDMFieldGetName(field), Msg::warnLostCharacters, lost.c_str());
}

} // namespace

EStrPtr TSTextForFont(const EStr *text, KRAtom font, DMField *field) {
    EStrPtr shown(EStrCopySetEncoding(text, EStrUCS2));
    if (EStrGetEncoding(shown.get()) != EStrUCS2)
        return EStrPtr(EStrCopySetEncoding(text, IsKanji(font) ? EStrUCS2 : EStrPDFDoc));
    const Units units = ShownUnits(shown.get());
    shown = TextOfUnits(units.data(), units.size());
    if (IsKanji(font)) return shown;
    EStrSetEncoding(shown.get(), EStrPDFDoc);
    // One byte a unit, unless the text was too long to be kept whole.
    if (field && shown->length == units.size()) WarnOfLost(units, shown.get(), field);
    return shown;
}
