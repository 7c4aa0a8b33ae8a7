// Search, replacement, white space and list entries in texts.
// SPDX-License-Identifier: MIT
#include "Common/src/miUtils.h"

#include <cstring>

namespace {

const char *SkipMark(const char *text, std::size_t *length) {
    if (*length < 2 || !miIsUCS(text)) return text;
    *length -= 2;
    return text + 2;
}

/** Byte offsets of the text without white space at its ends; `step` is the size of a unit, `first` skips a mark. */
struct Span {
    std::size_t begin, end;
};
template <class IsSpace>
Span Inner(const char *text, std::size_t first, std::size_t length, std::size_t step, IsSpace isSpace) {
    Span span{first, length};
    while (span.begin < span.end && isSpace(text + span.begin)) span.begin += step;
    while (span.end > span.begin && isSpace(text + span.end - step)) span.end -= step;
    return span;
}

/** What a backslash and `character` stand for. */
char Unescaped(char character) {
    if (character == 'n') return '\n';
    return character == 'r' ? '\r' : character;
}

/** Start of the component that ends at `end`. */
std::size_t ComponentStart(const std::string &path, std::size_t end) {
    const std::size_t slash = end == 0 ? std::string::npos : path.rfind('/', end - 1);
    return slash == std::string::npos ? 0 : slash + 1;
}

void RemoveParents(std::string *path) {
    std::size_t from = 0;
    while ((from = path->find("/../", from)) != std::string::npos) {
        const std::size_t start = ComponentStart(*path, from);
        if (path->compare(start, from - start, "..") == 0) {
            ++from; // a relative path that climbs: nothing to take it out with
        } else if (from == 0) {
            path->erase(0, 3); // above the root is the root
        } else {
            path->erase(start, from + 4 - start);
            from = start == 0 ? 0 : start - 1;
        }
    }
}

} // namespace

char *miReplaceStrEx(char *target, const char *source, const char *find, std::size_t findLength, const char *with,
                     std::size_t withLength) {
    const bool wide = miIsUCS(source);
    const std::size_t step = wide ? 2 : 1;
    const std::size_t length = miStrlen(source);
    if (wide) {
        find = SkipMark(find, &findLength);
        with = SkipMark(with, &withLength);
    }
    std::size_t i = wide ? 2 : 0;
    if (length != 0) std::memmove(target, source, i);
    target += i;
    while (i < length) {
        if (find && findLength != 0 && findLength <= length - i && std::memcmp(source + i, find, findLength) == 0) {
            if (with) std::memmove(target, with, withLength);
            target += with ? withLength : 0;
            i += findLength;
        } else {
            std::memmove(target, source + i, step);
            target += step;
            i += step;
        }
    }
    target[0] = 0;
    if (wide) target[1] = 0;
    return target;
}

char *miReplaceStr(char *target, const char *source, const char *find, const char *with) {
    return miReplaceStrEx(target, source, find, miStrlen(find), with, miStrlen(with));
}

std::int32_t miCountStr(const char *text, const char *find) {
    const bool wide = miIsUCS(text) && miIsUCS(find);
    const std::size_t step = wide ? 2 : 1, length = miStrlen(text);
    std::size_t findLength = miStrlen(find);
    if (wide) find = SkipMark(find, &findLength);
    if (findLength == 0) return 0;
    std::int32_t count = 0;
    for (std::size_t i = wide ? 2 : 0; i + findLength <= length;) {
        const bool match = std::memcmp(text + i, find, findLength) == 0;
        count += match;
        i += match ? findLength : step;
    }
    return count;
}

const char *miSnarf(const char *text, const char *left, const char *right, char *out, std::size_t size) {
    const char *start = left ? std::strstr(text, left) : text;
    if (!start) return nullptr;
    if (left) start += std::strlen(left);
    const char *end = right ? std::strstr(start, right) : nullptr;
    const char *behind = end ? end + std::strlen(right) : start + std::strlen(start);
    if (size != 0) {
        const std::size_t length =
            miHostCutLength(start, static_cast<std::size_t>((end ? end : behind) - start), size - 1);
        std::memmove(out, start, length);
        out[length] = 0;
    }
    return behind;
}

bool miSnarfEntry(const char *text, std::int32_t *position, bool keepEscapes, std::string *entry) {
    const char *at = text + *position;
    while (miIsspace(static_cast<unsigned char>(*at))) ++at;
    entry->clear();
    const bool found = *at != 0;
    bool quoted = false;
    std::size_t keep = 0; // trailing blanks outside quotes lie behind it
    for (; *at && (quoted || *at != ','); ++at) {
        if (*at == '"') {
            quoted = !quoted;
            keep = entry->size();
        } else if (*at == '\\' && at[1]) {
            if (keepEscapes) *entry += *at;
            ++at;
            *entry += keepEscapes ? *at : Unescaped(*at);
            keep = entry->size();
        } else {
            *entry += *at;
            if (quoted || !miIsspace(static_cast<unsigned char>(*at))) keep = entry->size();
        }
    }
    entry->resize(keep);
    *position = static_cast<std::int32_t>(at - text) + (*at == ',');
    return found;
}

void miSubstituteDots(char *path) {
    std::string work = path;
    RemoveParents(&work);
    for (std::size_t at; (at = work.find("/./")) != std::string::npos;) work.erase(at, 2);
    // The result is never longer.
    std::memcpy(path, work.c_str(), work.size() + 1);
}

void miTranslate(char *text, char from, char to) {
    if (from == 0) return;
    for (; *text; ++text)
        if (*text == from) *text = to;
}

bool miIsspace(int character) {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

bool miUCSIsSpace(std::uint16_t unit) {
    return unit <= 0xFF && miIsspace(unit);
}

char *miStrip(char *text) {
    if (miIsUCS(text)) return miUCSStrip(text);
    const auto isSpace = [](const char *at) { return miIsspace(static_cast<unsigned char>(*at)); };
    const Span span = Inner(text, 0, std::strlen(text), 1, isSpace);
    std::memmove(text, text + span.begin, span.end - span.begin);
    text[span.end - span.begin] = 0;
    return text;
}

char *miUCSStrip(char *text) {
    const auto isSpace = [](const char *at) { return miUCSIsSpace(miUCSUnit(at)); };
    const Span span = Inner(text, 2, miStrlen(text), 2, isSpace);
    std::memmove(text + 2, text + span.begin, span.end - span.begin);
    char *end = text + 2 + (span.end - span.begin);
    end[0] = end[1] = 0;
    return text;
}
