// Text whose encoding depends on the font that shows it.
// SPDX-License-Identifier: MIT
#include "base/miKanjiFont.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "Common/src/miEStr.h"
#include "Common/src/miUtils.h"
#include "DocModelHFT.h"
#include "base/FormStr.h"

namespace {

/** Translates in a buffer with room for the longer of the two encodings, and copies what fits. */
template <class Translate, class Cut>
std::int32_t Xlate(const char *source, char *target, std::int32_t size, Translate translate, Cut cut) {
    if (size <= 0) return 0;
    std::string text(source);
    text.resize(4 * text.size() + 2);
    translate(text.data(), static_cast<std::int32_t>(std::min<std::size_t>(text.size(), INT32_MAX)));
    const std::size_t length = cut(text.data(), strnlen(text.data(), text.size()), static_cast<std::size_t>(size - 1));
    miCopyMem(target, text.data(), length);
    target[length] = 0;
    return static_cast<std::int32_t>(length);
}

std::size_t CutBytes(const char *, std::size_t size, std::size_t limit) {
    return std::min(size, limit);
}

} // namespace

bool IsKanji(KRAtom fontAtom) {
    return fontAtom == KanjiGothic_K || fontAtom == KanjiMincho_K;
}

void EStrCorrectEncoding(EStr *str, const char *bytes, KRAtom fontAtom) {
    EStrSetBytes(str, bytes, miIsUCS(bytes) ? EStrUCS2 : IsKanji(fontAtom) ? EStrShiftJIS : EStrHost);
}

std::int32_t TSDMXlateHostToExportEnc(const char *source, char *target, std::int32_t size, KRAtom fontAtom) {
    if (IsKanji(fontAtom)) return DMXlateFromHostEnc(source, target, size);
    return Xlate(
        source, target, size, [](char *text, std::int32_t room) { DMXlateToPDFDoc(text, room); }, &CutBytes);
}

std::int32_t TSDMXlateExportToHostEnc(const char *source, char *target, std::int32_t size, KRAtom) {
    if (miIsUCS(source)) return DMXlateToHostEnc(source, static_cast<std::int32_t>(miStrlen(source)), target, size);
    return Xlate(
        source, target, size, [](char *text, std::int32_t room) { DMXlateToHost(text, room); }, &miHostCutLength);
}
