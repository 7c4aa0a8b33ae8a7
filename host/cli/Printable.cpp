// Texts made fit for a terminal. The C library knows the characters; its UTF-8 locale is used whatever the user's is.
// SPDX-License-Identifier: MIT
#include "cli/Printable.h"

#include <algorithm>
#include <cstdio>
#include <cwchar>
#include <cwctype>
#include <locale.h>

namespace jackdaw::cli {

namespace {

constexpr const char *s_ellipsis = "\xE2\x80\xA6";

/** The UTF-8 locale as long as it lives. Where there is none, whatever is not ASCII is escaped. */
class Utf8Locale {
public:
    Utf8Locale() {
        static const locale_t s_utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", locale_t{});
        former = uselocale(s_utf8);
    }
    ~Utf8Locale() {
        uselocale(former);
    }
    Utf8Locale(const Utf8Locale &) = delete;
    Utf8Locale &operator=(const Utf8Locale &) = delete;

private:
    locale_t former;
};

bool IsPlainAscii(char c) {
    return c >= ' ' && c < 0x7F;
}

bool TurnsDirection(wchar_t c) {
    return c == 0x61C || c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

bool IsSafe(wchar_t c) {
    const auto wide = static_cast<wint_t>(c);
    return c != 0x2028 && c != 0x2029 && !iswcntrl(wide) && !TurnsDirection(c);
}

// The character at the start of `bytes` and its length; 0 when it is none.
std::size_t TakeCharacter(std::string_view bytes, wchar_t *c) {
    std::mbstate_t state{};
    const std::size_t length = std::mbrtowc(c, bytes.data(), bytes.size(), &state);
    if (length == 0) return 1;
    return length > bytes.size() ? 0 : length;
}

std::string Escape(const char *format, unsigned number) {
    char text[16];
    std::snprintf(text, sizeof text, format, number);
    return text;
}

std::string EscapeOf(wchar_t c) {
    if (c == '\n') return "\\n";
    if (c == '\t') return "\\t";
    if (c == '\r') return "\\r";
    return Escape("\\u%04x", static_cast<unsigned>(c));
}

/** `bytes` with every unsafe character put through `escape`, and the bytes that are none through `escapeByte`. */
template <class EscapeCharacter, class EscapeByte>
std::string Escaped(std::string_view bytes, EscapeCharacter escape, EscapeByte escapeByte) {
    if (std::all_of(bytes.begin(), bytes.end(), IsPlainAscii)) return std::string(bytes);
    const Utf8Locale locale;
    std::string out;
    while (!bytes.empty()) {
        wchar_t c = 0;
        const std::size_t length = TakeCharacter(bytes, &c);
        if (length == 0)
            out += escapeByte(static_cast<unsigned char>(bytes[0]));
        else if (IsSafe(c))
            out += bytes.substr(0, length);
        else
            out += escape(c);
        bytes.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return out;
}

std::size_t ColumnsOf(wchar_t c) {
    const int columns = wcwidth(c);
    return columns < 0 ? 1 : static_cast<std::size_t>(columns);
}

// How many bytes of `printable` fit into `columns`; `used` gets the columns that they take.
std::size_t BytesThatFit(std::string_view printable, std::size_t columns, std::size_t *used) {
    const Utf8Locale locale;
    std::size_t at = 0;
    *used = 0;
    while (at < printable.size()) {
        wchar_t c = 0;
        const std::size_t length = std::max<std::size_t>(TakeCharacter(printable.substr(at), &c), 1);
        if (*used + ColumnsOf(c) > columns) break;
        *used += ColumnsOf(c);
        at += length;
    }
    return at;
}

} // namespace

std::string Printable(std::string_view bytes) {
    return Escaped(bytes, EscapeOf, [](unsigned char byte) { return Escape("\\x%02x", byte); });
}

std::string PrintableJson(std::string_view json) {
    // All that is unsafe lies below the surrogates. Line ends stand between values only.
    const auto escape = [](wchar_t c) { return c == '\n' ? "\n" : Escape("\\u%04x", static_cast<unsigned>(c)); };
    return Escaped(json, escape, [](unsigned char) { return std::string("\\ufffd"); });
}

std::size_t CountColumns(std::string_view printable) {
    std::size_t used = 0;
    BytesThatFit(printable, SIZE_MAX, &used);
    return used;
}

std::string CutToColumns(std::string printable, std::size_t columns) {
    std::size_t used = 0;
    if (BytesThatFit(printable, columns, &used) == printable.size()) return printable;
    printable.resize(BytesThatFit(printable, columns - 1, &used));
    return printable + s_ellipsis;
}

} // namespace jackdaw::cli
