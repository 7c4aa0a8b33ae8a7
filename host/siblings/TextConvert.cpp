// Text between the process's encoding, PDFDocEncoding and big-endian Unicode, with substitutes for what is lacking.
// SPDX-License-Identifier: MIT
#include "siblings/TextConvert.h"

#include <cerrno>

#include "siblings/Converters.h"

namespace jackdaw {

namespace {

constexpr char s_bullet = '\x80';
constexpr std::string_view s_unicodeMark = "\xFE\xFF";
constexpr std::string_view s_utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view s_unicodeSubstitute = "\xFF\xFD";

/** The two coders of an encoding, opened at the first use. */
struct EncodingCoders {
    std::string name;
    Coder toUnicode, fromUnicode;
};

/** Coders of the process's encoding; another setlocale() makes them anew. ASCII serves where iconv knows no better. */
EncodingCoders &hostCoders() {
    static EncodingCoders s_host;
    const std::string name = HostEncodingName();
    if (s_host.name == name) return s_host;
    s_host = {name, Coder("UTF-16BE", name), Coder(name, "UTF-16BE")};
    if (!s_host.toUnicode.isOpen() || !s_host.fromUnicode.isOpen())
        s_host = {name, Coder("UTF-16BE", "ASCII"), Coder("ASCII", "UTF-16BE")};
    return s_host;
}

EncodingCoders &utf8Coders() {
    static EncodingCoders s_utf8{"UTF-8", Coder("UTF-16BE", "UTF-8"), Coder("UTF-8", "UTF-16BE")};
    return s_utf8;
}

bool isSurrogatePair(std::string_view text) {
    return text.size() >= 4 && (text[0] & 0xFC) == 0xD8 && (text[2] & 0xFC) == 0xDC;
}

std::size_t oneByte(std::string_view) {
    return 1;
}

/** Bytes of the UTF-16 character at the start of the text. */
std::size_t oneCharacter(std::string_view text) {
    return isSurrogatePair(text) ? 4 : std::min<std::size_t>(text.size(), 2);
}

/** Converts all of `text`; what fails is stepped over by `stepOver` and replaced by `substitute`. */
std::string convertAll(Coder &coder, std::string_view text, std::string_view substitute,
                       std::size_t (*stepOver)(std::string_view), bool *lost) {
    std::string result;
    char block[512];
    const char *source = text.data();
    std::size_t left = text.size();
    coder.reset();
    const auto keep = [&](auto &&step) {
        char *target = block;
        std::size_t room = sizeof block;
        const int reason = step(target, room);
        result.append(block, sizeof block - room);
        return reason;
    };
    while (left > 0) {
        const int reason =
            keep([&](char *&target, std::size_t &room) { return coder.run(source, left, target, room); });
        if (reason == 0 || reason == E2BIG) continue;
        result += substitute;
        if (lost) *lost = true;
        const std::size_t step = std::min(stepOver({source, left}), left);
        source += step;
        left -= step;
    }
    keep([&](char *&target, std::size_t &room) { return coder.finish(target, room); });
    return result;
}

std::string utf8ToUnicode(std::string_view utf8, bool *lost) {
    return convertAll(utf8Coders().toUnicode, utf8, s_unicodeSubstitute, &oneByte, lost);
}

/** Whoever reads a text that begins so takes it for another encoding than PDFDocEncoding. */
bool beginsLikeMark(std::string_view text) {
    return text.starts_with(s_unicodeMark) || text.starts_with(s_utf8Mark);
}

std::string fromTextString(std::string_view text, bool *lost) {
    if (HasUnicodeMark(text)) return std::string(text.substr(s_unicodeMark.size()));
    if (text.starts_with(s_utf8Mark)) {
        bool broken = false;
        std::string unicode = utf8ToUnicode(text.substr(s_utf8Mark.size()), &broken);
        if (!broken) return unicode;
    }
    return PDFDocToUnicode(text, lost);
}

} // namespace

std::string HostToUnicode(std::string_view host, bool *lost) {
    return convertAll(hostCoders().toUnicode, host, s_unicodeSubstitute, &oneByte, lost);
}

std::string UnicodeToHost(std::string_view unicode, bool *lost) {
    return convertAll(hostCoders().fromUnicode, unicode, "?", &oneCharacter, lost);
}

std::string PDFDocToUnicode(std::string_view text, bool *lost) {
    std::string unicode;
    unicode.reserve(text.size() * 2);
    for (const char c : text) {
        const int value = PDFDocCodeToUnicode(static_cast<unsigned char>(c));
        if (value < 0) {
            unicode += s_unicodeSubstitute;
            if (lost) *lost = true;
            continue;
        }
        unicode += static_cast<char>(value >> 8);
        unicode += static_cast<char>(value & 0xFF);
    }
    return unicode;
}

std::string UnicodeToPDFDoc(std::string_view unicode, bool *lost) {
    std::string text;
    text.reserve(unicode.size() / 2);
    for (std::size_t step; !unicode.empty(); unicode.remove_prefix(step)) {
        step = oneCharacter(unicode);
        int code = -1;
        if (step == 2)
            code = UnicodeToPDFDocCode(static_cast<char32_t>(static_cast<unsigned char>(unicode[0]) << 8 |
                                                             static_cast<unsigned char>(unicode[1])));
        if (code < 0 && lost) *lost = true;
        text += code < 0 ? s_bullet : static_cast<char>(code);
    }
    return text;
}

std::string HostToPDFDoc(std::string_view host, bool *lost) {
    return UnicodeToPDFDoc(HostToUnicode(host, lost), lost);
}

std::string PDFDocToHost(std::string_view text, bool *lost) {
    return UnicodeToHost(PDFDocToUnicode(text, lost), lost);
}

std::string TextStringToHost(std::string_view text, bool *lost) {
    return UnicodeToHost(fromTextString(text, lost), lost);
}

std::string HostToTextString(std::string_view host) {
    return UnicodeToTextString(HostToUnicode(host));
}

std::string UnicodeToTextString(std::string_view unicode) {
    bool lost = false;
    std::string text = UnicodeToPDFDoc(unicode, &lost);
    if (lost || beginsLikeMark(text)) text.assign(s_unicodeMark).append(unicode);
    return text;
}

bool HasUnicodeMark(std::string_view text) {
    return text.starts_with(s_unicodeMark);
}

std::string UTF8ToTextString(std::string_view utf8) {
    return UnicodeToTextString(utf8ToUnicode(utf8, /*lost*/ nullptr));
}

std::string TextStringToUTF8(std::string_view text) {
    return convertAll(utf8Coders().fromUnicode, fromTextString(text, nullptr), "\xEF\xBF\xBD", &oneCharacter, nullptr);
}

} // namespace jackdaw
