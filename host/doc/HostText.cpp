// Conversion into buffers, and cutting at whole characters.
// SPDX-License-Identifier: MIT
#include "doc/HostText.h"

#include <algorithm>
#include <cstring>
#include <cwchar>

#include "kernel/HostError.h"
#include "siblings/TextConvert.h"

namespace jackdaw {
namespace {

/** At most `room` bytes of marked UTF-16, without half a unit and without half a surrogate pair. */
std::string_view cutUnicode(std::string_view text, std::size_t room) {
    if (text.size() <= room) return text;
    std::size_t end = room & ~std::size_t{1};
    const auto unitBefore = [&](std::size_t at) { return static_cast<unsigned char>(text[at - 2]); };
    if (end >= 4 && unitBefore(end) >= 0xD8 && unitBefore(end) <= 0xDB) end -= 2;
    return text.substr(0, end);
}

/** Copies `bytes`, which leave room for a zero byte; a second one follows where there is room. */
std::int32_t store(std::string_view bytes, char *target, std::size_t size) {
    bytes.copy(target, bytes.size());
    const std::size_t zeros = std::min<std::size_t>(2, size - bytes.size());
    std::memset(target + bytes.size(), 0, zeros);
    return static_cast<std::int32_t>(bytes.size());
}

} // namespace

std::string_view CutHostText(std::string_view text, std::size_t room) {
    if (text.size() <= room) return text;
    std::mbstate_t state{};
    std::size_t end = 0;
    while (end < room) {
        const std::size_t length = std::mbrlen(text.data() + end, text.size() - end, &state);
        const bool isCharacter = length != 0 && length <= text.size() - end;
        if (!isCharacter) state = {};
        const std::size_t step = isCharacter ? length : 1;
        if (end + step > room) break;
        end += step;
    }
    return text.substr(0, end);
}

void XlateToPDFDoc(char *text, std::int32_t size) {
    if (!text) throw HostError{KRErrBadParam};
    if (size <= 0) return;
    const std::string converted = HostToPDFDoc({text, strnlen(text, static_cast<std::size_t>(size))});
    const auto room = static_cast<std::size_t>(size) - 1;
    store(std::string_view(converted).substr(0, room), text, static_cast<std::size_t>(size));
}

void XlateToHost(char *text, std::int32_t size) {
    if (!text) throw HostError{KRErrBadParam};
    if (size <= 0) return;
    const std::string converted = PDFDocToHost({text, strnlen(text, static_cast<std::size_t>(size))});
    store(CutHostText(converted, static_cast<std::size_t>(size) - 1), text, static_cast<std::size_t>(size));
}

std::int32_t XlateFromHostEnc(const char *source, char *target, std::int32_t size) {
    if (!source || !target) throw HostError{KRErrBadParam};
    if (size <= 0) return 0;
    const auto whole = static_cast<std::size_t>(size);
    const std::string converted = HostToTextString(source);
    if (!HasUnicodeMark(converted)) return store(std::string_view(converted).substr(0, whole - 1), target, whole);
    // Less than the mark with its two zero bytes would be read as another encoding.
    if (whole < 4) return store({}, target, whole);
    return store(cutUnicode(converted, whole - 2), target, whole);
}

std::int32_t XlateToHostEnc(const char *source, std::int32_t length, char *target, std::int32_t size) {
    if ((!source && length > 0) || length < 0 || !target) throw HostError{KRErrBadParam};
    if (size <= 0) return 0;
    const std::string converted = TextStringToHost({source, static_cast<std::size_t>(length)});
    return store(CutHostText(converted, static_cast<std::size_t>(size) - 1), target, static_cast<std::size_t>(size));
}

} // namespace jackdaw
