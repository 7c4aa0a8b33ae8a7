// EStr: cutting, searching, comparing.
// SPDX-License-Identifier: MIT
#include "Common/src/miEStr.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "Common/src/miEStrParts.h"
#include "Common/src/miUtils.h"

namespace {

/** Content as new bytes of a string of this encoding. `content` may lie in the string's own buffer. */
void SetContent(EStr *str, std::string_view content, std::int32_t encoding) {
    std::string bytes = encoding == EStrUCS2 ? "\xFE\xFF" : "";
    bytes += content;
    EStrSetBytesSized(str, bytes.data(), bytes.size(), encoding);
}

std::size_t UnitBytes(const EStr *str) {
    return str->encoding == EStrUCS2 ? 2 : 1;
}

bool IsSpaceAt(const EStr *str, std::int32_t index) {
    const std::uint16_t character = EStrCharAt(str, index);
    return str->encoding == EStrUCS2 ? miUCSIsSpace(character) : miIsspace(character);
}

/** A copy of `other` in the encoding of `str`; null when that cannot be reached, and for null. */
EStrPtr InEncodingOf(const EStr *str, const EStr *other) {
    EStrPtr copy(EStrCopySetEncoding(other, str->encoding));
    if (copy && copy->encoding != str->encoding) copy.reset();
    return copy;
}

std::string_view Slice(const EStr *str, std::int32_t from, std::int32_t to) {
    const std::size_t unit = UnitBytes(str);
    const auto start = static_cast<std::size_t>(from), end = static_cast<std::size_t>(std::max(from, to));
    return EStrContent(str).substr(start * unit, (end - start) * unit);
}

} // namespace

void EStrTrunc(EStr *str, std::int32_t chars) {
    if (chars < 0 || chars >= EStrGetCharLen(str)) return;
    const std::string_view content = EStrContent(str);
    const std::size_t end = EStrCutBytes(content, static_cast<std::size_t>(chars) * UnitBytes(str), str->encoding);
    SetContent(str, content.substr(0, end), str->encoding);
    // Measured anew: what stands behind a zero inside is gone from here on.
    EStrSetBytes(str, str->bytes, str->encoding);
}

void EStrReplace(EStr *str, const EStr *find, const EStr *with) {
    if (EStrIsNull(str) || EStrIsNull(find)) return;
    const EStrPtr findCopy = InEncodingOf(str, find), withCopy = InEncodingOf(str, with);
    if (!findCopy || (with && !withCopy)) return;
    const std::string_view wanted = EStrContent(findCopy.get()), fresh = EStrContent(withCopy.get());
    std::string_view rest = EStrContent(str);
    std::string result;
    // Many short matches and a long replacement would fill the memory with what is cut at the end.
    while (!rest.empty() && result.size() <= EStrMaxLength) {
        const bool match = rest.starts_with(wanted);
        const std::size_t taken = match ? wanted.size() : EStrCharBytes(rest, str->encoding);
        result += match ? fresh : rest.substr(0, taken);
        rest.remove_prefix(taken);
    }
    SetContent(str, result, str->encoding);
}

void EStrSubstr(EStr *out, const EStr *str, std::int32_t start, std::int32_t count) {
    const std::int32_t length = EStrGetCharLen(str);
    std::int64_t end = std::int64_t{start} + count;
    if (end < 0 || end > length) end = length;
    const std::int32_t from = std::clamp(start, 0, length);
    SetContent(out, Slice(str, from, static_cast<std::int32_t>(end)), str->encoding);
}

std::int32_t EStrSnarf(const EStr *str, const EStr *left, const EStr *right, EStr *out) {
    if (!str) return -1;
    std::int32_t start = 0;
    if (left) {
        const EStrPtr open = InEncodingOf(str, left);
        start = EStrFindStr(str, open.get(), 0);
        if (start < 0) return -1;
        start += EStrGetCharLen(open.get());
    }
    const EStrPtr close = InEncodingOf(str, right);
    const std::int32_t found = EStrFindStr(str, close.get(), start);
    const std::int32_t end = found < 0 ? EStrGetCharLen(str) : found;
    const std::int32_t behind = found < 0 ? end : end + EStrGetCharLen(close.get());
    if (out) SetContent(out, Slice(str, start, end), str->encoding);
    return behind;
}

void EStrStrip(EStr *str) {
    std::int32_t start = 0, end = EStrGetCharLen(str);
    while (start < end && IsSpaceAt(str, start)) ++start;
    while (end > start && IsSpaceAt(str, end - 1)) --end;
    if (end - start != EStrGetCharLen(str)) SetContent(str, Slice(str, start, end), str->encoding);
}

int EStrCmp(const EStr *a, const EStr *b) {
    if (!a || !b) return (a != nullptr) - (b != nullptr);
    if (a->encoding == b->encoding) return miStrcmp(a->bytes, b->bytes);
    const EStrPtr copy(EStrCopySetEncoding(b, a->encoding));
    return miStrcmp(a->bytes, copy->bytes);
}

std::int32_t EStrIndexOf(const EStr *str, std::uint16_t character, bool forward) {
    const std::int32_t length = EStrGetCharLen(str);
    for (std::int32_t i = 0; i < length; ++i) {
        const std::int32_t index = forward ? i : length - 1 - i;
        if (EStrCharAt(str, index) == character) return index;
    }
    return -1;
}

std::int32_t EStrFindStr(const EStr *str, const EStr *find, std::int32_t from) {
    if (!str || !find) return -1;
    const EStrPtr copy = InEncodingOf(str, find);
    if (!copy) return -1;
    const std::string_view wanted = EStrContent(copy.get());
    const std::int32_t last = EStrGetCharLen(str) - EStrGetCharLen(copy.get());
    for (std::int32_t i = std::max(from, 0); i <= last; ++i)
        if (Slice(str, i, EStrGetCharLen(str)).starts_with(wanted)) return i;
    return -1;
}
