// EStr: the record and its content.
// SPDX-License-Identifier: MIT
#include "Common/src/miEStr.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>

#include "Common/src/miEStrParts.h"
#include "Common/src/miKanji.h"
#include "Common/src/miUtils.h"

namespace {

constexpr char s_mark[] = "\xFE\xFF\0";
/** A buffer of 65,535 bytes is the largest that `capacity` can tell. */
constexpr std::uint32_t s_maxCapacity = 65535;

bool HasMark(std::string_view bytes) {
    return bytes.size() >= 2 && bytes[0] == s_mark[0] && bytes[1] == s_mark[1];
}

/** The tag that is stored for bytes that come in under `encoding`. Either byte of a mark is enough to be believed. */
std::int32_t StoredEncoding(std::string_view bytes, std::int32_t encoding) {
    if (encoding == EStrText) return HasMark(bytes) ? EStrUCS2 : EStrPDFDoc;
    if (encoding != EStrUCS2) return encoding;
    const bool first = !bytes.empty() && bytes[0] == s_mark[0];
    const bool second = bytes.size() > 1 && bytes[1] == s_mark[1];
    return first || second ? EStrUCS2 : EStrPDFDoc;
}

/** The third zero ends a marked text of odd length for those who read it by units. */
void SetLength(EStr *str, std::size_t length) {
    str->length = static_cast<std::uint16_t>(length);
    std::memset(str->bytes + length, 0, 3);
}

/** Stores `bytes` as they are but for the cut. They may lie in the string's own buffer. */
void Store(EStr *str, std::string_view bytes, std::int32_t encoding) {
    const std::size_t length = EStrCutBytes(bytes, EStrMaxLength, encoding);
    const std::string kept(bytes.substr(0, length));
    EStrCheckImpl(str, static_cast<std::uint32_t>(length + 2));
    std::copy(kept.begin(), kept.end(), str->bytes);
    str->encoding = encoding;
    SetLength(str, length);
}

EStrPtr NewRecord() {
    return EStrPtr(static_cast<EStr *>(KRSureCalloc(1, sizeof(EStr))));
}

std::string_view AllBytes(const EStr *str) {
    return {str->bytes, str->length};
}

/** `bytes` as content in the encoding of `str`: without mark, converted where they are marked otherwise than it. */
std::string ContentFor(const EStr *str, const char *bytes) {
    const bool marked = miIsUCS(bytes), wide = str->encoding == EStrUCS2;
    if (!marked && !wide) return bytes;
    if (marked && wide) return std::string(bytes + 2, miStrlen(bytes) - 2);
    const EStrPtr part(EStrNewImpl(bytes, marked ? EStrUCS2 : EStrHost));
    EStrSetEncoding(part.get(), str->encoding);
    if (part->encoding != str->encoding) return {};
    return std::string(EStrContent(part.get()));
}

/** The string's bytes, never without the mark that its tag asks for. */
std::string Marked(const EStr *str) {
    if (str->encoding == EStrUCS2 && str->length < 2) return std::string(s_mark, 2);
    return std::string(AllBytes(str));
}

} // namespace

std::size_t EStrCharBytes(std::string_view text, std::int32_t encoding) {
    if (text.empty()) return 0;
    if (encoding == EStrHost) return miHostCharLength(text.data(), text.size());
    if (text.size() == 1) return 1;
    if (encoding == EStrUCS2) return 2;
    const auto first = static_cast<std::uint8_t>(text[0]), second = static_cast<std::uint8_t>(text[1]);
    return encoding == EStrShiftJIS && Is2Byte(first, second) ? 2 : 1;
}

std::size_t EStrCutBytes(std::string_view text, std::size_t limit, std::int32_t encoding) {
    if (encoding == EStrUCS2) {
        const std::size_t even = std::min(text.size(), limit) & ~std::size_t{1};
        // A surrogate pair is one character.
        const bool inPair = even < text.size() && even >= 2 && (miUCSUnit(text.data() + even - 2) & 0xFC00) == 0xD800;
        return inPair ? even - 2 : even;
    }
    if (text.size() <= limit) return text.size();
    if (encoding == EStrPDFDoc) return limit;
    std::size_t end = 0;
    for (;;) {
        const std::size_t next = end + EStrCharBytes(text.substr(end), encoding);
        if (next > limit) return end;
        end = next;
    }
}

std::string_view EStrContent(const EStr *str) {
    if (!str || !str->bytes) return {};
    std::string_view all = AllBytes(str);
    all.remove_prefix(std::min(EStrMarkLength(str->encoding), all.size()));
    return all;
}

void EStrDelete(EStr *str) {
    if (!str) return;
    KRIfNotNullFree(str->bytes);
    KRIfNotNullFree(str);
}

void EStrDeleteSecure(EStr *str) {
    if (!str) return;
    if (str->bytes) explicit_bzero(str->bytes, str->capacity);
    KRIfNotNullFree(str->bytes);
    explicit_bzero(str, sizeof *str);
    KRIfNotNullFree(str);
}

void EStrDestroy(EStr **str) {
    EStrDeleteSecure(*str);
    *str = nullptr;
}

EStr *EStrNewImpl(const char *bytes, std::int32_t encoding) {
    EStrPtr str = NewRecord();
    EStrSetBytes(str.get(), bytes, encoding);
    return str.release();
}

EStr *EStrNewSizeImpl(std::uint32_t size, std::int32_t encoding) {
    EStrPtr str = NewRecord();
    str->encoding = encoding == EStrText ? EStrPDFDoc : encoding;
    EStrSetSize(str.get(), size);
    return str.release();
}

EStr *EStrNewFromIntImpl(std::int32_t value) {
    EStrPtr str = NewRecord();
    EStrSetBytesFromInt(str.get(), value);
    return str.release();
}

EStr *EStrNewFromLexObjImpl(LexObj obj) {
    EStrPtr str = NewRecord();
    EStrSetBytesFromLexObj(str.get(), obj);
    return str.release();
}

EStr *EStrCopyImpl(const EStr *str) {
    if (!str) return nullptr;
    EStrPtr copy = NewRecord();
    Store(copy.get(), AllBytes(str), str->encoding);
    return copy.release();
}

EStr *EStrCopySetEncoding(const EStr *str, std::int32_t encoding) {
    EStrPtr copy(EStrCopyImpl(str));
    EStrSetEncoding(copy.get(), encoding);
    return copy.release();
}

void EStrAssign(EStr *target, const EStr *source) {
    if (source)
        Store(target, AllBytes(source), source->encoding);
    else
        EStrSetBytes(target, nullptr, target->encoding);
}

void EStrSetBytes(EStr *str, const char *bytes, std::int32_t encoding) {
    EStrSetBytesSized(str, bytes, miStrlen(bytes), encoding);
}

void EStrSetBytesSized(EStr *str, const char *bytes, std::size_t size, std::int32_t encoding) {
    if (!bytes && encoding == EStrUCS2)
        Store(str, {s_mark, 2}, EStrUCS2);
    else
        Store(str, {bytes, size}, StoredEncoding({bytes, size}, encoding));
}

void EStrSetBytesFromInt(EStr *str, std::int32_t value) {
    EStrPrintf(str, "%ld", static_cast<long>(value));
}

void EStrSetSize(EStr *str, std::uint32_t size) {
    size = std::min<std::uint32_t>(size, EStrMaxLength);
    const std::uint32_t old = str->length;
    EStrCheckImpl(str, size + 2);
    if (size > old) std::memset(str->bytes + old, 0, size - old);
    SetLength(str, size);
}

void EStrCheckImpl(EStr *str, std::uint32_t wanted) {
    const std::uint32_t size = std::min((std::min(wanted, s_maxCapacity) & ~31u) + 32, s_maxCapacity);
    if (str->bytes && str->capacity >= size && str->capacity / 2u < size) return;
    // One byte more than is told, for the third zero behind the longest text.
    str->bytes = static_cast<char *>(KRSureRealloc(str->bytes, size + 1));
    str->capacity = static_cast<std::uint16_t>(size);
}

void EStrCat(EStr *str, const char *bytes) {
    if (!str || !bytes || !*bytes) return;
    Store(str, Marked(str) + ContentFor(str, bytes), str->encoding);
}

void EStrPrepend(EStr *str, const char *bytes) {
    if (!str || !bytes || !*bytes) return;
    const std::string own = Marked(str);
    const std::size_t mark = EStrMarkLength(str->encoding);
    Store(str, own.substr(0, mark) + ContentFor(str, bytes) + own.substr(mark), str->encoding);
}

void EStrPrintf(EStr *str, const char *format, ...) {
    va_list arguments, again;
    va_start(arguments, format);
    va_copy(again, arguments);
    // What is longer is cut anyway; the few bytes more let the cut see whole characters.
    const int length = std::clamp(std::vsnprintf(nullptr, 0, format, arguments), 0, EStrMaxLength + 8);
    va_end(arguments);
    std::string text(static_cast<std::size_t>(length) + 1, 0);
    std::vsnprintf(text.data(), text.size(), format, again);
    va_end(again);
    EStrSetBytesSized(str, text.data(), static_cast<std::size_t>(length), str->encoding);
}

void EStrCatList(EStr *str, const EStr *const *parts, std::size_t count) {
    std::string bytes = Marked(str);
    for (; count != 0 && *parts; ++parts, --count) {
        if (EStrIsNull(*parts)) continue;
        const EStrPtr part(EStrCopySetEncoding(*parts, str->encoding));
        if (part->encoding == str->encoding) bytes += EStrContent(part.get());
    }
    Store(str, bytes, str->encoding);
}

EStr *EStrNewFromList(const EStr *const *parts, std::size_t count) {
    EStrPtr str(count != 0 && *parts ? EStrCopyImpl(*parts) : EStrNewImpl(nullptr, EStrHost));
    if (count != 0 && *parts) EStrCatList(str.get(), parts + 1, count - 1);
    return str.release();
}

char *EStrGetBytes(const EStr *str) {
    return str ? str->bytes : nullptr;
}

std::uint16_t EStrGetLen(const EStr *str) {
    return str ? str->length : 0;
}

std::int32_t EStrGetCharLen(const EStr *str) {
    if (!str) return 0;
    return str->encoding == EStrUCS2 ? std::max(str->length - 2, 0) / 2 : str->length;
}

std::int32_t EStrGetEncoding(const EStr *str) {
    return str ? str->encoding : EStrHost;
}

bool EStrIsNull(const EStr *str) {
    if (!str) return true;
    return str->encoding == EStrUCS2 ? str->length < 3 : str->length == 0;
}

std::uint16_t EStrCharAt(const EStr *str, std::int32_t index) {
    if (index < 0 || index >= EStrGetCharLen(str)) return 0;
    if (str->encoding == EStrUCS2) return miUCSUnit(str->bytes + 2 + 2 * static_cast<std::size_t>(index));
    return static_cast<std::uint8_t>(str->bytes[index]);
}
