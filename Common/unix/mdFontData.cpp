// Width records of the fourteen base fonts, one block, as the platform's text controls are given them.
// SPDX-License-Identifier: MIT
#include "Common/unix/mdUtils.h"

#include <array>
#include <bit>
#include <cstring>
#include <string_view>

#include "Common/src/miUtils.h"
#include "CoreHFT.h"

namespace {

struct FontSource {
    const char *name;
    /** Of mdFontRecord, from bboxLeft to italicAngle. */
    std::int16_t metrics[9];
    std::int16_t widths[256];
};
constexpr FontSource s_sources[] = {
#include "mdFontData.inc"
};
constexpr std::size_t s_fontCount = sizeof s_sources / sizeof *s_sources;

/** Sizes are part of the format: 108 for a fixed pitch, where one width serves all codes. */
constexpr std::uint16_t s_fixedPitchSize = 108;
constexpr std::uint16_t s_fontDataSize[] = {s_fixedPitchSize,
                                            s_fixedPitchSize,
                                            s_fixedPitchSize,
                                            s_fixedPitchSize,
                                            1316,
                                            1316,
                                            1316,
                                            1316,
                                            1316,
                                            1316,
                                            1316,
                                            1316,
                                            1004,
                                            2324};
static_assert(sizeof s_fontDataSize / sizeof *s_fontDataSize == s_fontCount);
constexpr std::size_t s_blockSize = 14288;

using Offsets = std::array<std::size_t, s_fontCount + 1>;
constexpr Offsets InitializeOffsets() {
    Offsets offsets{};
    for (std::size_t i = 0; i < s_fontCount; ++i) offsets[i + 1] = offsets[i] + s_fontDataSize[i];
    return offsets;
}
constexpr Offsets s_fontDataOff = InitializeOffsets();
static_assert(s_fontDataOff[s_fontCount] == s_blockSize);

using Block = std::array<unsigned char, s_blockSize>;

constexpr void Put16(Block *block, std::size_t at, std::uint16_t value) {
    const auto bytes = std::bit_cast<std::array<unsigned char, 2>>(value);
    (*block)[at] = bytes[0];
    (*block)[at + 1] = bytes[1];
}

/** The name under which a font's data stands. */
constexpr std::string_view RecordName(std::string_view fontName) {
    return fontName == "Times-Roman" ? "Times" : fontName;
}

constexpr Block MakeBlock() {
    Block block{};
    for (std::size_t i = 0; i < s_fontCount; ++i) {
        const FontSource &font = s_sources[i];
        const std::size_t start = s_fontDataOff[i];
        std::size_t at = start;
        for (const char character : RecordName(font.name)) block[at++] = static_cast<unsigned char>(character);
        at = start + offsetof(mdFontRecord, bboxLeft);
        for (const std::int16_t metric : font.metrics) Put16(&block, at, static_cast<std::uint16_t>(metric)), at += 2;
        const bool fixedPitch = s_fontDataSize[i] == s_fixedPitchSize;
        Put16(&block, at, fixedPitch ? 1 : 256);
        for (std::size_t code = fixedPitch ? 'A' : 0; code < (fixedPitch ? 'A' + 1 : 256); ++code)
            Put16(&block, at += 2, static_cast<std::uint16_t>(font.widths[code]));
    }
    return block;
}
constexpr Block s_fontData = MakeBlock();

const char *NameAt(std::size_t index) {
    return reinterpret_cast<const char *>(s_fontData.data() + s_fontDataOff[index]);
}

} // namespace

std::int16_t mdFontRecordWidth(const mdFontRecord *record, std::uint8_t code) {
    const std::size_t index = record->widthCount == 1 ? 0 : code;
    std::int16_t width;
    std::memcpy(&width, reinterpret_cast<const char *>(record + 1) + index * sizeof width, sizeof width);
    return width;
}

mdFontRecord *mdGetData(KRAtom fontName, std::uint16_t *size) {
    const std::string_view name = RecordName(KRAtomGetString(fontName));
    for (std::size_t i = 0; i < s_fontCount; ++i) {
        if (name != NameAt(i)) continue;
        *size = s_fontDataSize[i];
        void *copy = KRSureMalloc(*size);
        std::memcpy(copy, s_fontData.data() + s_fontDataOff[i], *size);
        return static_cast<mdFontRecord *>(copy);
    }
    return nullptr;
}

void mdReleaseData(mdFontRecord *record) {
    KRIfNotNullFree(record);
}
