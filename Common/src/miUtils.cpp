// Memory, and the length, copy and comparison of texts.
// SPDX-License-Identifier: MIT
#include "Common/src/miUtils.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <cwchar>

#include "CoreHFT.h"
#include "KRErrors.h"
#include "KernelSupportHFT.h"

namespace {

std::size_t AtLeastOne(std::size_t size) {
    return std::max<std::size_t>(size, 1);
}

/** The text, or the empty one (with a zero pair) for null. */
const char *Text(const char *text) {
    return text ? text : "\0";
}

int Sign(int value) {
    return (value > 0) - (value < 0);
}

/** ASCII alone: a byte of a multibyte character must not change with the locale. */
int Fold(int character) {
    return character >= 'A' && character <= 'Z' ? character - 'A' + 'a' : character;
}

int CompareBytes(const char *a, const char *b, bool fold) {
    for (;; ++a, ++b) {
        const int left = static_cast<unsigned char>(*a), right = static_cast<unsigned char>(*b);
        const int order = fold ? Fold(left) - Fold(right) : left - right;
        if (order != 0 || left == 0) return Sign(order);
    }
}

/** From behind the marks, at most `count` bytes. A high byte of 0 makes the unit its low byte, which Fold can see. */
int CompareUnits(const char *a, const char *b, std::size_t count, bool fold) {
    for (std::size_t i = 2; i + 1 < count; i += 2) {
        const int left = miUCSUnit(a + i), right = miUCSUnit(b + i);
        const int order = fold ? Fold(left) - Fold(right) : left - right;
        if (order != 0 || left == 0) return Sign(order);
    }
    return 0;
}

} // namespace

void *KRSureMalloc(std::size_t size) {
    void *block = KRmalloc(AtLeastOne(size));
    if (!block) KRRaise(KRErrNoMemory);
    return block;
}

void *KRSureCalloc(std::size_t count, std::size_t size) {
    void *block = AScalloc(count, size);
    if (!block) KRRaise(KRErrNoMemory);
    return block;
}

void *KRSureRealloc(void *block, std::size_t size) {
    void *grown = KRrealloc(block, AtLeastOne(size));
    if (!grown) KRRaise(KRErrNoMemory);
    return grown;
}

void *AScalloc(std::size_t count, std::size_t size) {
    if (size != 0 && count > PTRDIFF_MAX / size) return nullptr;
    void *block = KRmalloc(AtLeastOne(count * size));
    if (block) std::memset(block, 0, AtLeastOne(count * size));
    return block;
}

void KRIfNotNullFree(void *block) {
    if (block) KRfree(block);
}

bool miIsUCS(const char *text) {
    return text && static_cast<unsigned char>(text[0]) == 254 && static_cast<unsigned char>(text[1]) == 255;
}

std::size_t miStrlen(const char *text) {
    if (!miIsUCS(text)) return std::strlen(Text(text));
    std::size_t length = 2;
    while (miUCSUnit(text + length) != 0) length += 2;
    return length;
}

char *miStrcpy(char *target, const char *source) {
    const std::size_t length = miStrlen(source);
    std::memmove(target, Text(source), length + (miIsUCS(source) ? 2 : 1));
    return target;
}

char *miStrcat(char *target, const char *source) {
    const std::size_t skip = miIsUCS(source) ? 2 : 0;
    const bool wide = skip != 0 || miIsUCS(target);
    const std::size_t length = miStrlen(source) - skip;
    char *end = target + miStrlen(target);
    std::memmove(end, Text(source) + skip, length);
    end[length] = 0;
    if (wide) end[length + 1] = 0;
    return target;
}

int miStrcmp(const char *a, const char *b) {
    if (miIsUCS(a) && miIsUCS(b)) return CompareUnits(a, b, SIZE_MAX, /*fold*/ false);
    return CompareBytes(Text(a), Text(b), /*fold*/ false);
}

int miStrncmp(const char *a, const char *b, std::size_t count) {
    if (count >= 2 && miIsUCS(a) && miIsUCS(b)) return CompareUnits(a, b, count, /*fold*/ false);
    return Sign(std::strncmp(Text(a), Text(b), count));
}

int miStricmp(const char *a, const char *b) {
    if (miIsUCS(a) && miIsUCS(b)) return CompareUnits(a, b, SIZE_MAX, /*fold*/ true);
    return CompareBytes(Text(a), Text(b), /*fold*/ true);
}

bool miStrEq(const char *a, const char *b) {
    if (!a || !b) return a == b;
    return miStrcmp(a, b) == 0;
}

char *miCopyStrImpl(const char *text) {
    if (!text) return nullptr;
    const std::size_t length = miStrlen(text);
    char *copy = static_cast<char *>(KRSureMalloc(length + 2));
    std::memcpy(copy, text, length);
    copy[length] = copy[length + 1] = 0;
    return copy;
}

char *miStrncpy(char *target, const char *source, std::size_t size) {
    if (size == 0) return target;
    const std::size_t length = std::min(std::strlen(Text(source)), size - 1);
    std::memmove(target, Text(source), length);
    target[length] = 0;
    return target;
}

char *miStrncat(char *target, const char *source, std::size_t size) {
    const std::size_t used = strnlen(target, size);
    if (used < size) miStrncpy(target + used, source, size - used);
    return target;
}

std::int32_t miAtoi(const char *text) {
    return static_cast<std::int32_t>(std::clamp<long>(miAtol(text), INT32_MIN, INT32_MAX));
}

long miAtol(const char *text) {
    return std::strtol(Text(text), nullptr, 10);
}

const char *miStrchr(const char *text, char character) {
    return std::strchr(Text(text), character);
}

const char *miStrrchr(const char *text, char character) {
    return std::strrchr(Text(text), character);
}

const char *miStrstr(const char *text, const char *find) {
    return std::strstr(Text(text), Text(find));
}

void miCopyMem(void *target, const void *source, std::size_t count) {
    if (count != 0) std::memmove(target, source, count);
}

std::size_t miStrftime(char *target, std::size_t size, const char *format, const std::tm *time) {
    if (size == 0) return 0;
    const std::size_t length = std::strftime(target, size, format, time);
    // Nothing is promised about the buffer's contents when the result does not fit.
    if (length == 0) target[0] = 0;
    return length;
}

namespace {

/** 0 for a character that is not valid or not whole. */
std::size_t ValidCharLength(const char *text, std::size_t size) {
    if (size == 0) return 0;
    if (static_cast<unsigned char>(*text) < 0x80 || MB_CUR_MAX < 2) return 1;
    std::mbstate_t state{};
    const std::size_t length = std::mbrlen(text, size, &state);
    return length > size ? 0 : length;
}

} // namespace

std::size_t miHostCharLength(const char *text, std::size_t size) {
    const std::size_t length = ValidCharLength(text, size);
    return length == 0 && size > 0 ? 1 : length;
}

std::size_t miHostCharCount(const char *text, std::size_t size) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < size; i += miHostCharLength(text + i, size - i)) ++count;
    return count;
}

std::size_t miHostCutLength(const char *text, std::size_t size, std::size_t limit) {
    if (size <= limit) return size;
    if (MB_CUR_MAX < 2) return limit;
    std::size_t end = 0;
    for (std::size_t length; (length = ValidCharLength(text + end, size - end)) != 0; end += length) {
        if (end + length > limit) break;
    }
    return end;
}
