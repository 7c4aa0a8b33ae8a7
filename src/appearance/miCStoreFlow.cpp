// Breaking text into lines, the automatic font size, and flowed text.
//
// A position is a byte index into the text. UCS-2 text is cut in units from position 2; the last of its two bytes of
// zero ends it. A line end (CR, LF, or CR LF as one) is consumed and belongs to no line.
// SPDX-License-Identifier: MIT
#include "appearance/miCStore.h"
#include "appearance/miCStoreParts.h"

#include "Common/src/miEStr.h"
#include "Common/src/miKanji.h"
#include "Common/src/miUtils.h"
#include "KernelSupportHFT.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "base/miKanjiFont.h"

namespace {

constexpr int s_sizeTries = 33;
// A sixteenth of a point: an automatic size that is closer to the limit is close enough.
constexpr KRFixed s_sizePrecision = 0x1000;
// 9.0 / 10.0: what the text takes of the height when the size comes from the box alone.
constexpr KRFixed s_nine = KRFixedFromInt(9);
constexpr KRFixed s_ten = KRFixedFromInt(10);

/** A text read in characters of one kind. Made once for all lines: `anywhere` takes a look at the whole text. */
struct Reader {
    const CStoreMetrics *metrics;
    const char *text;
    bool ucs2;
    bool gothic;
    /** UCS-2 with characters that are not Roman, cut at any of them; other text is cut at blanks. */
    bool anywhere;
    std::size_t step;
};

bool UCSStringHasSomeNonRomanChars(const char *text) {
    for (std::size_t at = 2; miUCSUnit(text + at) != 0; at += 2) {
        if (text[at] != 0) return true;
    }
    return false;
}

Reader ReaderOf(const CStoreMetrics *metrics, const char *text) {
    const bool ucs2 = miIsUCS(text);
    const bool anywhere = ucs2 && UCSStringHasSomeNonRomanChars(text);
    return {metrics, text, ucs2, metrics->font == KanjiGothic_K, anywhere, ucs2 ? std::size_t{2} : std::size_t{1}};
}

std::uint16_t CharAt(const Reader &reader, std::size_t at) {
    return reader.ucs2 ? miUCSUnit(reader.text + at) : static_cast<unsigned char>(reader.text[at]);
}

bool IsLineEnd(std::uint16_t c) {
    return c == '\r' || c == '\n';
}

bool IsPair(const Reader &reader, std::size_t at) {
    return !reader.ucs2 && reader.metrics->isKanji &&
           Is2Byte(static_cast<unsigned char>(reader.text[at]), static_cast<unsigned char>(reader.text[at + 1]));
}

KRFixed WidthAt(const Reader &reader, std::size_t at) {
    const std::uint16_t c = CharAt(reader, at);
    if (reader.ucs2) return KRFixedMul(GetUnicodeCharWidth(c, reader.gothic), reader.metrics->size);
    return reader.metrics->widths[c];
}

std::size_t SkipLineEnd(const Reader &reader, std::size_t at) {
    const bool pair = CharAt(reader, at) == '\r' && CharAt(reader, at + reader.step) == '\n';
    return at + (pair ? 2 : 1) * reader.step;
}

/** What one cut took. */
struct Cut {
    KRFixed width;
    std::size_t next;
    /** The line ended at a line end or at the text's end, not for want of room. */
    bool whole;
};

// Takes characters until one would pass `maxWidth`; the first always goes in, so that a line never stays empty. A text
// that is not cut anywhere is cut back to the last blank.
Cut TakeLine(const Reader &reader, KRFixed maxWidth, std::string &line, std::size_t from) {
    const std::size_t start = line.size();
    KRFixed width = 0;
    std::size_t at = from;
    bool blankSeen = false;
    Cut blank{};
    std::size_t blankLine = start;
    while (CharAt(reader, at) != 0) {
        const std::uint16_t c = CharAt(reader, at);
        if (IsLineEnd(c)) return {width, SkipLineEnd(reader, at), true};
        if (!reader.anywhere && c == ' ') {
            blankSeen = true;
            blank = {width, at + reader.step, false};
            blankLine = line.size();
        }
        const KRFixed wider = CStoreWiden(width, WidthAt(reader, at));
        if (width > 0 && wider > maxWidth) {
            if (!blankSeen) return {width, at, false};
            line.resize(blankLine);
            return blank;
        }
        const std::size_t bytes = IsPair(reader, at) ? 2 : reader.step;
        line.append(reader.text + at, bytes);
        width = wider;
        at += bytes;
    }
    return {width, at, true};
}

// Bytes of the line end in front of a position.
std::size_t LineEndBefore(const Reader &reader, std::size_t at) {
    const bool pair = CharAt(reader, at - reader.step) == '\n' && CharAt(reader, at - 2 * reader.step) == '\r';
    return (pair ? 2 : 1) * reader.step;
}

// The rules of Japanese line breaking: the line's last character moves down when it may not end a line, or when the
// next one may not begin one.
void ApplyKinsoku(const Reader &reader, KRFixed maxWidth, std::string &line, std::size_t lineStart, std::size_t *next) {
    if (maxWidth / 3 < reader.metrics->size || line.size() - lineStart < 3) return;
    const std::uint16_t following = CharAt(reader, *next);
    if (following == 0) return;
    const std::uint16_t last = miUCSUnit(line.data() + line.size() - 2);
    const bool endBehind = IsLineEnd(CharAt(reader, *next - 2));
    if (KanjiGlyphCannotEndLine(last)) {
        *next -= 2 + (endBehind ? LineEndBefore(reader, *next) : 0);
    } else if (KanjiGlyphCannotBeginLine(following) && !endBehind) {
        *next -= 2;
    } else {
        return;
    }
    line.resize(line.size() - 2);
}

bool TextEndsAt(const char *text, std::int32_t position) {
    return miIsUCS(text) ? miUCSUnit(text + position) == 0 : text[position] == '\0';
}

// The character in front of `position` is white space, which is where a line may end.
bool BlankBefore(const char *text, std::int32_t position) {
    if (!miIsUCS(text)) return position > 0 && miIsspace(text[position - 1]);
    return position >= 4 && text[position - 2] == 0 && miIsspace(text[position - 1]);
}

KRFixed NeededHeight(const TextAppearance *look, const CStoreMetrics &metrics, KRFixed width, bool multiLine,
                     bool breakAnywhere, const char *text, bool *tooBig) {
    if (!multiLine) return CStoreGetFontHeight(&metrics);
    const std::int32_t lines = CStoreWrappedLineCount(look, width, breakAnywhere, text);
    *tooBig = lines < 0;
    return lines < 0 ? 0 : CStoreHeightFromLineCount(look, lines);
}

KRFixed FitLine(const Reader &reader, KRFixed maxWidth, std::string &line, std::int32_t *position) {
    const std::size_t lineStart = line.size();
    Cut cut = TakeLine(reader, maxWidth, line, static_cast<std::size_t>(*position));
    if (reader.anywhere) ApplyKinsoku(reader, maxWidth, line, lineStart, &cut.next);
    *position = static_cast<std::int32_t>(cut.next);
    return cut.width;
}

// One line of flowed text: cut by width, or up to the next line end when it may not be wrapped.
void NextLine(const Reader &reader, bool wrap, KRFixed width, std::string &line, std::int32_t *position) {
    line.assign(reader.ucs2 ? "\xFE\xFF" : "");
    if (wrap) {
        FitLine(reader, width, line, position);
    } else {
        auto at = static_cast<std::size_t>(*position);
        for (; CharAt(reader, at) != 0 && !IsLineEnd(CharAt(reader, at)); at += reader.step)
            line.append(reader.text + at, reader.step);
        *position = static_cast<std::int32_t>(CharAt(reader, at) == 0 ? at : SkipLineEnd(reader, at));
    }
    if (reader.ucs2) line.append(2, '\0');
}

void FlowLines(CStore *store, bool wrap, KRFixed margin, CStoreBlock *block, const char *text) {
    const KRFixed width = TSFixedSub(CStoreWidth(store), CStoreTimes(margin, 4));
    std::int32_t budget = CStoreBlockGetNumLines(block);
    const Reader reader = ReaderOf(&store->metrics, text);
    std::int32_t position = reader.ucs2 ? 2 : 0;
    std::string line;
    for (; budget > 0 && !TextEndsAt(text, position); --budget) {
        NextLine(reader, wrap, width, line, &position);
        CStoreBlockLine(block, line.data());
    }
}

} // namespace

KRFixed CStoreStringFit(const CStoreMetrics *metrics, KRFixed maxWidth, const char *text, std::string &line,
                        std::int32_t *position) {
    return FitLine(ReaderOf(metrics, text), maxWidth, line, position);
}

std::int32_t CStoreWrappedLineCount(const TextAppearance *look, KRFixed width, bool breakAnywhere, const char *text) {
    CStoreMetrics metrics;
    CStoreGetMetrics(look->baseFont, look->size, &metrics);
    const Reader reader = ReaderOf(&metrics, text);
    std::int32_t position = reader.ucs2 ? 2 : 0;
    std::int32_t count = 0;
    std::string line;
    while (!TextEndsAt(text, position)) {
        const std::int32_t before = position;
        line.clear();
        if (FitLine(reader, width, line, &position) > width || position <= before) return -1;
        if (!breakAnywhere && !TextEndsAt(text, position) && !BlankBefore(text, position)) return -1;
        ++count;
    }
    return count;
}

KRFixed CStoreHeightFromLineCount(const TextAppearance *look, std::int32_t count) {
    CStoreMetrics metrics;
    CStoreGetMetrics(look->baseFont, look->size, &metrics);
    const std::int64_t height = static_cast<std::int64_t>(CStoreGetFontHeight(&metrics)) * count;
    return height > INT32_MAX ? INT32_MAX : static_cast<KRFixed>(height);
}

KRFixed CStoreStringMaxFontSize(TextAppearance *look, KRFixed width, KRFixed height, bool multiLine, bool breakAnywhere,
                                KRFixed minSize, KRFixed maxSize, KRFixed precision, const char *text) {
    KRFixed low = TSFixedAdd(minSize, precision);
    KRFixed high = TSFixedAdd(maxSize, precision);
    // Not even the smallest try may fit; then the result is the minimum itself.
    KRFixed result = minSize;
    for (int tries = 0; tries < s_sizeTries; ++tries) {
        const KRFixed mid = KRFixedDiv(TSFixedAdd(low, high), KRFixedFromInt(2));
        look->size = mid;
        CStoreMetrics metrics;
        CStoreGetMetrics(look->baseFont, mid, &metrics);
        bool tooBig = false;
        const KRFixed needHeight = NeededHeight(look, metrics, width, multiLine, breakAnywhere, text, &tooBig);
        const KRFixed needWidth = multiLine ? 0 : CStoreStringWidth(&metrics, text);
        tooBig = tooBig || needHeight > height || (!multiLine && needWidth > width);
        if (tooBig) {
            high = mid;
        } else {
            low = result = mid;
            const bool close =
                height < TSFixedAdd(needHeight, precision) || (!multiLine && width < TSFixedAdd(needWidth, precision));
            if (close) break;
        }
        if (TSFixedSub(high, low) < precision) break;
    }
    return std::min(std::max(result, minSize), maxSize);
}

KRFixed CStoreFittingSize(const CStore *store, KRFixed margin, TextAppearance look, bool multiLine, KRFixed minSize,
                          KRFixed maxSize, const char *text) {
    const KRFixed margins = CStoreTimes(margin, 4);
    const KRFixed size = CStoreStringMaxFontSize(&look, TSFixedSub(CStoreWidth(store), margins),
                                                 TSFixedSub(CStoreHeight(store), margins), multiLine,
                                                 /*breakAnywhere*/ false, minSize < 0 ? CStoreMinSize : minSize,
                                                 maxSize < 0 ? CStoreMaxSize : maxSize, s_sizePrecision, text);
    return size == 0 ? CStoreDefaultSize : size;
}

KRFixed CStoreCalcTextSize(const KRFixedRect *rect, KRAtom font, KRFixed margin) {
    CStoreMetrics metrics;
    CStoreGetMetrics(font, s_ten, &metrics);
    const KRFixed room = TSFixedSub(CStoreDistance(rect->top, rect->bottom), margin);
    const KRFixed full = KRFixedDiv(KRFixedMul(room, s_ten), CStoreGetFontHeight(&metrics));
    const KRFixed size = KRFixedMul(full, KRFixedDiv(s_nine, s_ten));
    return std::min(std::max(size, CStoreMinSize), CStoreMaxSize);
}

void CStoreFlowText(CStore *store, bool wrap, KRFixed margin, TextAppearance *look, const char *text) {
    CStoreFlowTextEx(store, wrap, margin, look, text, CStoreNoLimit, CStoreNoLimit);
}

void CStoreFlowTextEx(CStore *store, bool wrap, KRFixed margin, TextAppearance *look, const char *text, KRFixed minSize,
                      KRFixed maxSize) {
    if (!CStoreLookUsable(look) || !text || !*text) return;
    CStoreSetColor(store, &look->fillColor, /*fill*/ true);
    if (look->size == 0)
        look->size = CStoreFittingSize(store, margin, *look, /*multiLine*/ true, minSize, maxSize, text);
    const EStrPtr string(EStrNewImpl(text, IsKanji(look->baseFont) ? EStrUCS2 : EStrPDFDoc));
    CStoreBlock *block = CStoreBlockStart(store, margin, look);
    if (!block) return;
    const KRErrorCode code = Protect([&] { FlowLines(store, wrap, margin, block, string->bytes); });
    CStoreBlockEnd(block);
    RaiseIf(code);
}
