// Texts at the edge of the command line.
// SPDX-License-Identifier: MIT
#include "cli/Text.h"

#include <algorithm>

#include "CoreHFT.h"
#include "KernelSupportHFT.h"
#include "LexHFT.h"
#include "PIFrame.h"
#include "SiblingHFTs.h"

namespace jackdaw::cli {

namespace {

constexpr char32_t s_replacement = 0xFFFD;

void AppendUtf8(std::string &out, char32_t c) {
    const auto put = [&](char32_t byte) { out.push_back(static_cast<char>(byte)); };
    if (c < 0x80) {
        put(c);
    } else if (c < 0x800) {
        put(0xC0 | c >> 6);
        put(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        put(0xE0 | c >> 12);
        put(0x80 | (c >> 6 & 0x3F));
        put(0x80 | (c & 0x3F));
    } else {
        put(0xF0 | c >> 18);
        put(0x80 | (c >> 12 & 0x3F));
        put(0x80 | (c >> 6 & 0x3F));
        put(0x80 | (c & 0x3F));
    }
}

// Length of the character at the start of valid UTF-8, and its number; 0 when it is not valid.
std::size_t TakeCharacter(std::string_view bytes, char32_t *c) {
    const auto lead = static_cast<unsigned char>(bytes[0]);
    const std::size_t length = lead < 0x80 ? 1 : lead >> 5 == 6 ? 2 : lead >> 4 == 14 ? 3 : lead >> 3 == 30 ? 4 : 0;
    if (length == 0 || bytes.size() < length) return 0;
    *c = length == 1 ? lead : lead & (0x7F >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const auto next = static_cast<unsigned char>(bytes[i]);
        if (next >> 6 != 2) return 0;
        *c = *c << 6 | (next & 0x3F);
    }
    static constexpr char32_t s_smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = *c >= 0xD800 && *c < 0xE000;
    return *c < s_smallest[length] || *c > 0x10FFFF || surrogate ? 0 : length;
}

std::string Utf8OfUtf16(std::string_view bytes) {
    std::string out;
    const auto unitAt = [&](std::size_t i) {
        return static_cast<char32_t>(static_cast<unsigned char>(bytes[i]) << 8 |
                                     static_cast<unsigned char>(bytes[i + 1]));
    };
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        char32_t c = unitAt(i);
        const bool high = c >= 0xD800 && c < 0xDC00;
        if (high && i + 3 < bytes.size() && unitAt(i + 2) >> 10 == 0xDC00 >> 10) {
            c = 0x10000 + ((c - 0xD800) << 10) + (unitAt(i + 2) - 0xDC00);
            i += 2;
        } else if (c >= 0xD800 && c < 0xE000) {
            c = s_replacement;
        }
        AppendUtf8(out, c);
    }
    return out;
}

std::string Utf16OfUtf8(std::string_view utf8) {
    std::string out;
    const auto put = [&](char32_t unit) {
        out.push_back(static_cast<char>(unit >> 8));
        out.push_back(static_cast<char>(unit & 0xFF));
    };
    while (!utf8.empty()) {
        char32_t c = s_replacement;
        const std::size_t length = std::max<std::size_t>(TakeCharacter(utf8, &c), 1);
        utf8.remove_prefix(length);
        if (c >= 0x10000) {
            put(0xD800 + ((c - 0x10000) >> 10));
            put(0xDC00 + ((c - 0x10000) & 0x3FF));
        } else {
            put(c);
        }
    }
    return out;
}

bool BindBaseTool() {
    if (!gBaseToolHFT) gBaseToolHFT = KRGetHFT(KRAtomFromString("BaseTool"), BaseToolHFTVersion);
    return gBaseToolHFT != nullptr;
}

// UTF-16 of bytes in an encoding; what cannot be converted ends the text.
std::string Utf16OfEncoding(const char *encoding, std::string_view bytes) {
    if (!BindBaseTool()) return {};
    std::string out(bytes.size() * 2 + 4, '\0');
    std::int32_t error = 0;
    const std::int32_t written =
        BaseToolHostToUCS(BaseToolGetConverter(encoding), bytes.data(), static_cast<std::int32_t>(bytes.size()),
                          out.data(), static_cast<std::int32_t>(out.size()), &error);
    out.resize(static_cast<std::size_t>(std::max(written, 0)));
    return out;
}

bool EncodingOfUtf16(const char *encoding, const std::string &utf16, std::string *out) {
    if (!BindBaseTool()) return false;
    out->assign(utf16.size() * 2 + 4, '\0');
    std::int32_t error = 0;
    const std::int32_t written =
        BaseToolUCSToHost(BaseToolGetConverter(encoding), utf16.data(), static_cast<std::int32_t>(utf16.size()),
                          out->data(), static_cast<std::int32_t>(out->size()), &error);
    if (error != BaseToolOK || written < 0) return false;
    out->resize(static_cast<std::size_t>(written));
    return true;
}

bool IsAscii(std::string_view bytes) {
    return std::all_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::string StreamBytes(LexObj stream) {
    std::string bytes;
    KRStm source = LexStreamOpenStm(stream, LexStreamDecoded);
    const KRErrorCode code = Protect([&] {
        char block[4096];
        for (std::int32_t got; (got = KRStmRead(block, 1, sizeof block, source)) > 0;)
            bytes.append(block, static_cast<std::size_t>(got));
    });
    KRStmClose(source);
    RaiseIf(code);
    return bytes;
}

std::string FixedText(KRFixed value) {
    char text[32];
    KRFixedToCString(value, text, sizeof text, /*precision*/ 4);
    return text;
}

} // namespace

std::size_t ValidUtf8Length(std::string_view bytes) {
    std::size_t valid = 0;
    while (valid < bytes.size()) {
        char32_t c;
        const std::size_t length = TakeCharacter(bytes.substr(valid), &c);
        if (length == 0) break;
        valid += length;
    }
    return valid;
}

bool IsUtf8(std::string_view bytes) {
    return ValidUtf8Length(bytes) == bytes.size();
}

std::string ArgumentText(const std::string &argument) {
    return IsUtf8(argument) ? argument : Utf8OfUtf16(Utf16OfEncoding("Host", argument));
}

std::string TextOfBytes(std::string_view bytes) {
    if (bytes.substr(0, 2) == "\xFE\xFF") return Utf8OfUtf16(bytes.substr(2));
    if (bytes.substr(0, 3) == "\xEF\xBB\xBF" && IsUtf8(bytes)) return std::string(bytes.substr(3));
    if (IsAscii(bytes)) return std::string(bytes);
    return Utf8OfUtf16(Utf16OfEncoding("PDFDocEncoding", bytes));
}

std::string BytesOfText(const std::string &utf8) {
    if (IsAscii(utf8)) return utf8;
    const std::string utf16 = Utf16OfUtf8(utf8);
    std::string bytes;
    if (EncodingOfUtf16("PDFDocEncoding", utf16, &bytes)) return bytes;
    return "\xFE\xFF" + utf16;
}

// Names that PDFDocEncoding cannot hold stand in UTF-8.
std::string TextOfName(std::string_view name) {
    return IsUtf8(name) ? std::string(name) : TextOfBytes(name);
}

std::string TextOfObject(LexObj obj) {
    std::int32_t length = 0;
    switch (LexObjGetType(obj)) {
    case LexString: {
        const char *bytes = LexStringValue(obj, &length);
        return TextOfBytes({bytes, static_cast<std::size_t>(length)});
    }
    case LexName:
        return TextOfName(KRAtomGetString(LexNameValue(obj)));
    case LexInteger:
        return std::to_string(LexIntegerValue(obj));
    case LexFixed:
        return FixedText(LexFixedValue(obj));
    case LexBoolean:
        return LexBooleanValue(obj) ? "true" : "false";
    case LexStream:
        return TextOfBytes(StreamBytes(obj));
    default:
        return {};
    }
}

std::size_t CountCharacters(std::string_view utf8) {
    return static_cast<std::size_t>(
        std::count_if(utf8.begin(), utf8.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string JoinTexts(const std::vector<std::string> &texts, std::size_t limit) {
    std::string joined;
    for (std::size_t i = 0; i < texts.size() && i < limit; ++i) joined += (i ? ", " : "") + texts[i];
    if (texts.size() > limit) joined += ", ... (" + std::to_string(texts.size()) + " in all)";
    return joined;
}

} // namespace jackdaw::cli
