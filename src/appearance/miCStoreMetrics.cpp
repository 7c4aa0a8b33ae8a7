// Font metrics and the widths of texts.
// SPDX-License-Identifier: MIT
#include "appearance/miCStore.h"
#include "appearance/miCStoreParts.h"

#include <iterator>
#include <unordered_map>

#include "Common/src/miKanji.h"
#include "Common/src/miUtils.h"
#include "CoreHFT.h"
#include "KernelSupportHFT.h"
#include "SiblingHFTs.h"
#include "base/FormStr.h"
#include "base/miKanjiFont.h"

namespace {

/** A font's numbers as fractions of the em. Asked for once: the automatic size wants them at a dozen sizes a field. */
struct EmMetrics {
    KRFixed height = 0;
    KRFixed ascent = 0;
    KRFixed descent = 0;
    KRFixed widths[256] = {};
};

// Widths in thousandths of the Japanese fonts' Roman characters: gothic, and mincho.
// From U+0020.
constexpr std::uint16_t s_gothicBasic[] = {
    278, 278, 355, 556, 556, 889, 667, 191, 333, 333, 389, 584, 278, 584,  278, 278, 556, 556, 556,
    556, 556, 556, 556, 556, 556, 556, 278, 278, 584, 584, 584, 556, 1015, 667, 667, 722, 722, 667,
    611, 778, 722, 278, 500, 667, 556, 833, 722, 778, 667, 778, 722, 667,  611, 722, 667, 944, 667,
    667, 611, 278, 278, 278, 469, 556, 333, 556, 556, 500, 556, 556, 278,  556, 556, 222, 222, 500,
    222, 833, 556, 556, 556, 556, 333, 500, 278, 556, 500, 722, 500, 500,  500, 334, 260, 334, 584,
};
constexpr std::uint16_t s_minchoBasic[] = {
    250, 333, 408, 500, 500, 833, 778, 180, 333, 333, 500, 564, 250, 564, 250, 278, 500, 500, 500,
    500, 500, 500, 500, 500, 500, 500, 278, 278, 564, 564, 564, 444, 921, 722, 667, 667, 722, 611,
    556, 722, 722, 333, 389, 722, 611, 889, 722, 722, 556, 722, 667, 556, 611, 722, 722, 944, 722,
    722, 611, 333, 278, 333, 469, 500, 333, 444, 500, 444, 500, 444, 333, 500, 500, 278, 278, 500,
    278, 778, 500, 500, 500, 500, 333, 389, 278, 500, 500, 722, 500, 500, 444, 480, 200, 480, 541,
};

// From U+00A1.
constexpr std::uint16_t s_gothicLatin1[] = {
    333,  556, 556,  556, 556, 260, 1000, 1000, 737, 370, 556,  584, 333, 737, 333, 1000, 1000, 333, 333,
    1000, 556, 1000, 278, 333, 333, 365,  556,  834, 834, 834,  611, 667, 667, 667, 667,  667,  667, 1000,
    722,  667, 667,  667, 667, 278, 278,  278,  278, 722, 722,  778, 778, 778, 778, 778,  1000, 778, 722,
    722,  722, 722,  667, 667, 611, 556,  556,  556, 556, 556,  556, 889, 500, 556, 556,  556,  556, 278,
    278,  278, 278,  556, 556, 556, 556,  556,  556, 556, 1000, 611, 556, 556, 556, 556,  500,  556, 500,
};
constexpr std::uint16_t s_minchoLatin1[] = {
    333,  500, 500,  500, 500, 200, 1000, 1000, 760, 276, 500,  564, 333, 760, 333, 1000, 1000, 300, 300,
    1000, 500, 1000, 250, 333, 300, 310,  500,  750, 750, 750,  444, 722, 722, 722, 722,  722,  722, 889,
    667,  611, 611,  611, 611, 333, 333,  333,  333, 722, 722,  722, 722, 722, 722, 722,  1000, 722, 722,
    722,  722, 722,  722, 556, 500, 444,  444,  444, 444, 444,  444, 667, 444, 444, 444,  444,  444, 278,
    278,  278, 278,  500, 500, 500, 500,  500,  500, 500, 1000, 500, 500, 500, 500, 500,  500,  500, 500,
};

// From U+0300.
constexpr std::uint16_t s_gothicAccents[] = {
    333, 333, 333, 333, 333, 556, 333, 333, 333, 1000, 333, 333, 333,
};
constexpr std::uint16_t s_minchoAccents[] = {
    333, 333, 333, 333, 333, 500, 333, 333, 333, 1000, 333, 333, 333,
};

struct OtherWidth {
    std::uint16_t first, last;
    std::uint16_t gothic, mincho;
};
constexpr OtherWidth s_otherWidths[] = {
    {0xFF61, 0xFF9F, 500, 500},  {0x0131, 0x0131, 278, 278}, {0x0141, 0x0141, 556, 611},  {0x0142, 0x0142, 222, 278},
    {0x0152, 0x0152, 1000, 889}, {0x0153, 0x0153, 944, 722}, {0x0160, 0x0160, 667, 556},  {0x0161, 0x0161, 500, 389},
    {0x0178, 0x0178, 667, 722},  {0x017D, 0x017D, 611, 611}, {0x017E, 0x017E, 500, 444},  {0x01C0, 0x01C0, 260, 200},
    {0x0327, 0x0328, 333, 333},  {0x0332, 0x0332, 556, 500}, {0x2012, 0x2013, 556, 500},  {0x2002, 0x2002, 500, 500},
    {0x201A, 0x201A, 222, 333},  {0x201E, 0x201E, 333, 444}, {0x2022, 0x2022, 350, 350},  {0x2039, 0x203A, 333, 333},
    {0x203E, 0x203E, 500, 500},  {0x2044, 0x2044, 167, 167}, {0x2122, 0x2122, 1000, 980}, {0xFB01, 0xFB02, 500, 556},
};
constexpr std::int32_t s_fullWidth = 1000;

KRFixed OfEm(std::int32_t thousandths) {
    return KRFixedDiv(KRFixedFromInt(thousandths), KRFixedFromInt(1000));
}

/** False when nobody can tell: the sibling is not there (yet), or it does not know the font. */
bool ReadMetrics(KRAtom font, EmMetrics *em) {
    if (!gBaseToolHFT) gBaseToolHFT = KRGetHFT(KRAtomFromString("BaseTool"), BaseToolHFTOldest);
    BaseToolFontMetrics raw;
    std::int32_t widths[256];
    const KRAtom asked = IsKanji(font) ? Helvetica_K : font;
    if (!gBaseToolHFT || !BaseToolGetFontMetrics(KRAtomGetString(asked), &raw, widths)) return false;
    em->height = OfEm(raw.bboxTop - raw.bboxBottom);
    em->ascent = OfEm(raw.ascender);
    em->descent = OfEm(raw.descender);
    for (int code = 0; code < 256; ++code) em->widths[code] = OfEm(widths[code]);
    return true;
}

/** Only what was answered is kept. A base font's numbers never change, so that they may be kept for good. */
const EmMetrics &MetricsOf(KRAtom font) {
    static std::unordered_map<KRAtom, EmMetrics> s_known;
    static const EmMetrics s_unknown;
    const auto found = s_known.find(font);
    if (found != s_known.end()) return found->second;
    EmMetrics em;
    return ReadMetrics(font, &em) ? s_known.emplace(font, em).first->second : s_unknown;
}

template <std::size_t N>
bool WidthIn(const std::uint16_t (&gothic)[N], const std::uint16_t (&mincho)[N], std::uint16_t first,
             std::uint16_t unit, bool isGothic, std::int32_t *width) {
    if (unit < first || unit >= first + N) return false;
    *width = (isGothic ? gothic : mincho)[unit - first];
    return true;
}

std::int32_t UnitThousandths(std::uint16_t unit, bool gothic) {
    std::int32_t width = 0;
    if (WidthIn(s_gothicBasic, s_minchoBasic, 0x0020, unit, gothic, &width)) return width;
    if (WidthIn(s_gothicLatin1, s_minchoLatin1, 0x00A1, unit, gothic, &width)) return width;
    if (WidthIn(s_gothicAccents, s_minchoAccents, 0x0300, unit, gothic, &width)) return width;
    for (const OtherWidth &other : s_otherWidths) {
        if (unit >= other.first && unit <= other.last) return gothic ? other.gothic : other.mincho;
    }
    return s_fullWidth;
}

} // namespace

void CStoreGetMetrics(KRAtom font, KRFixed size, CStoreMetrics *metrics) {
    const EmMetrics &em = MetricsOf(font);
    metrics->font = font;
    metrics->size = size;
    metrics->height = KRFixedMul(em.height, size);
    metrics->ascent = KRFixedMul(em.ascent, size);
    metrics->descent = KRFixedMul(em.descent, size);
    for (int code = 0; code < 256; ++code) metrics->widths[code] = KRFixedMul(em.widths[code], size);
    metrics->isKanji = IsKanji(font);
}

KRFixed CStoreGetFontHeight(const CStoreMetrics *metrics) {
    return metrics->height;
}

KRFixed CStoreStringWidth(const CStoreMetrics *metrics, const char *text) {
    KRFixed width = 0;
    if (!text) return width;
    if (miIsUCS(text)) {
        const bool gothic = metrics->font == KanjiGothic_K;
        for (std::size_t at = 2; miUCSUnit(text + at) != 0; at += 2)
            width = CStoreWiden(width, KRFixedMul(GetUnicodeCharWidth(miUCSUnit(text + at), gothic), metrics->size));
        return width;
    }
    for (const auto *at = reinterpret_cast<const unsigned char *>(text); *at; ++at) {
        width = CStoreWiden(width, metrics->isKanji ? metrics->size : metrics->widths[*at]);
        if (metrics->isKanji && Is2Byte(at[0], at[1])) ++at;
    }
    return width;
}

KRFixed GetUnicodeCharWidth(std::uint16_t unit, bool gothic) {
    return OfEm(UnitThousandths(unit, gothic));
}
