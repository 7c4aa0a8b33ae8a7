// One line of text, and blocks of lines.
// SPDX-License-Identifier: MIT
#include "appearance/miCStore.h"
#include "appearance/miCStoreParts.h"

#include <cstring>

#include "Common/src/miEStr.h"
#include "Common/src/miUtils.h"
#include "KernelSupportHFT.h"
#include "PIFrame.h"
#include "base/BufCont.h"
#include "base/miKanjiFont.h"
#include "objects/TextLook.h"

namespace {

// A printed string is cut at 1025 bytes, and an octal escape takes four for one: slices stay clear of that.
constexpr std::size_t s_sliceBytes = 64;
constexpr std::size_t s_sliceUCS2Bytes = 62;

constexpr std::uint32_t s_lookBuffer = 130;

EStrPtr TextForFont(const char *text, KRAtom font) {
    return EStrPtr(EStrNewImpl(text, IsKanji(font) ? EStrUCS2 : EStrPDFDoc));
}

void ShowByteSlices(CStore *store, const char *text) {
    const std::size_t length = std::strlen(text);
    for (std::size_t at = 0; at < length; at += s_sliceBytes)
        CStorePrintf(store, "%s Tj", std::string(text + at, std::min(s_sliceBytes, length - at)).c_str());
}

// Each slice stands as a marked string of its own; the first has its mark from the text.
void ShowUCS2Slices(CStore *store, const char *text) {
    const std::size_t length = miStrlen(text);
    std::string slice;
    for (std::size_t at = 0; at < length; at += s_sliceUCS2Bytes) {
        slice.assign(at == 0 ? "" : "\xFE\xFF");
        slice.append(text + at, std::min(s_sliceUCS2Bytes, length - at));
        slice.append(2, '\0');
        CStorePrintf(store, "%s Tj", slice.data());
    }
}

KRFixed AutomaticSize(const CStore *store, KRFixed margin, const TextAppearance &look, const char *text,
                      KRFixed minSize, KRFixed maxSize, bool calcSize) {
    if (!calcSize) return CStoreFittingSize(store, margin, look, /*multiLine*/ false, minSize, maxSize, text);
    const KRFixed size = CStoreCalcTextSize(&store->bbox, look.baseFont, margin);
    return size == 0 ? CStoreDefaultSize : size;
}

// Place of the text on a line between margins `left` and `right` by quadding.
KRFixed QuaddedX(const CStore *store, std::uint16_t quadding, KRFixed inset, KRFixed width) {
    if (quadding == 0) return TSFixedAdd(store->bbox.left, inset);
    if (quadding == 1) return TSFixedSub(CStoreWidth(store), width) / 2;
    return TSFixedSub(TSFixedSub(store->bbox.right, inset), width);
}

void UseFont(CStore *store, const TextAppearance *look) {
    store->flags = CStoreUsesFont;
    CStoreGetMetrics(look->baseFont, look->size, &store->metrics);
}

} // namespace

void CStoreShowText(CStore *store, const char *text) {
    if (miIsUCS(text))
        ShowUCS2Slices(store, text);
    else
        ShowByteSlices(store, text);
}

bool CStoreLookUsable(const TextAppearance *look) {
    return look && look->quadding <= 2 && look->renderMode <= 3 && look->baseFont != KRAtomNull && look->size >= 0;
}

std::string CStoreLookText(TextAppearance look) {
    BufControl buffer{};
    if (BufControlAlloc(&buffer, s_lookBuffer) != 0) KRRaise(KRErrNoMemory);
    const bool written = TextAppearanceSTRM(&look, &buffer) == 0;
    std::string text = written ? std::string(buffer.data, buffer.length) : std::string();
    BufControlFree(&buffer);
    if (!written) KRRaise(KRErrBadParam);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\0')) text.pop_back();
    return text;
}

void CStoreSimpleText(CStore *store, KRFixed margin, TextAppearance *look, const char *text) {
    bool calcSize = false;
    if (look && look->size < 0) {
        look->size = 0;
        calcSize = true;
    }
    CStoreSimpleTextEx(store, margin, look, text, CStoreNoLimit, CStoreNoLimit, calcSize);
}

void CStoreSimpleTextEx(CStore *store, KRFixed margin, const TextAppearance *look, const char *text, KRFixed minSize,
                        KRFixed maxSize, bool calcSize) {
    if (!CStoreLookUsable(look) || !text || !*text || look->fillColor.space < 0) return;
    TextAppearance own = *look;
    if (own.size == 0) own.size = AutomaticSize(store, margin, own, text, minSize, maxSize, calcSize);

    const std::string operators = CStoreLookText(own);
    const EStrPtr string = TextForFont(text, own.baseFont);
    CStorePrintf(store, "BT %c", operators.c_str());
    UseFont(store, &own);

    const KRFixed height = CStoreGetFontHeight(&store->metrics);
    const KRFixed y = TSFixedSub(TSFixedSub(CStoreHeight(store), height) / 2, store->metrics.descent);
    const KRFixed width = CStoreStringWidth(&store->metrics, string->bytes);
    const KRFixed x = QuaddedX(store, own.quadding, CStoreTimes(margin, 2), width);
    CStorePrintf(store, "%f %f Td", x, y);
    CStoreShowText(store, string->bytes);
    CStorePrintf(store, "ET");
}

CStoreBlock *CStoreBlockStart(CStore *store, KRFixed margin, const TextAppearance *look) {
    auto *block = new (std::nothrow) CStoreBlock{};
    if (!block) return nullptr;
    block->store = store;
    block->look = *look;
    block->margin = margin;
    if (block->look.size == 0) block->look.size = CStoreDefaultSize;
    UseFont(store, &block->look);
    return block;
}

std::int32_t CStoreBlockGetNumLines(const CStoreBlock *block) {
    const KRFixed height = CStoreGetFontHeight(&block->store->metrics);
    const KRFixed room = TSFixedSub(CStoreHeight(block->store), CStoreTimes(block->margin, 2));
    if (height <= 0) return 0;
    return (KRFixedDiv(room, height) >> 16) + 1;
}

void CStoreBlockHighlightLine(CStoreBlock *block, std::int32_t line, const DMColorValue *color) {
    if (block->started) return;
    const KRFixed height = CStoreGetFontHeight(&block->store->metrics);
    KRFixedRect bar = block->store->bbox;
    TSFixedRectInset(&bar, block->margin, block->margin);
    bar.top = TSFixedSub(bar.top, CStoreTimes(height, line));
    bar.bottom = TSFixedSub(bar.top, height);
    CStoreSetColor(block->store, color, /*fill*/ true);
    CStoreRect(block->store, bar.left, bar.bottom, CStoreDistance(bar.right, bar.left),
               CStoreDistance(bar.top, bar.bottom), 'f');
}

void CStoreBlockLine(CStoreBlock *block, const char *text) {
    CStore *store = block->store;
    if (!block->started) {
        CStorePrintf(store, "BT %c", CStoreLookText(block->look).c_str());
        const KRFixed top = TSFixedSub(TSFixedSub(CStoreHeight(store), store->metrics.descent), block->margin);
        CStorePrintf(store, "1 0 0 1 %f %f Tm", block->margin, top);
        block->started = true;
    }
    if (!text) return;
    const KRFixed width = CStoreStringWidth(&store->metrics, text);
    const KRFixed place = QuaddedX(store, block->look.quadding, CStoreTimes(block->margin, 2), width);
    // The origin of Tm lies one margin in already.
    const KRFixed x = TSFixedSub(place, block->margin);
    CStorePrintf(store, "%f %f Td", TSFixedSub(x, block->lastX), TSFixedNeg(CStoreGetFontHeight(&store->metrics)));
    CStoreShowText(store, text);
    block->lastX = x;
}

void CStoreBlockEnd(CStoreBlock *block) {
    CStorePrintf(block->store, "ET");
    delete block;
}
