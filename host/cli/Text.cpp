// Texts at the edge of the command line.
// SPDX-License-Identifier: MIT
#include "cli/Text.h"

#include <algorithm>

#include "CoreHFT.h"
#include "DocModelHFT.h"
#include "KernelSupportHFT.h"
#include "LexHFT.h"
#include "PIFrame.h"
#include "SiblingHFTs.h"

namespace jackdaw::cli {

namespace {

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

void RequireBaseTool() {
    if (!gBaseToolHFT) gBaseToolHFT = KRGetHFT(KRAtomFromString("BaseTool"), BaseToolHFTVersion);
    if (!gBaseToolHFT) KRRaise(KRErrNotAvailable);
}

/** One of the slots of text strings, given the room that it asks for. */
template <class Convert>
std::string Converted(const Convert &convert, std::string_view source) {
    RequireBaseTool();
    const auto length = static_cast<std::int32_t>(source.size());
    std::string target(source.size() * 2 + 2, '\0');
    for (std::int32_t error = BaseToolTargetTooSmall; error == BaseToolTargetTooSmall;) {
        const auto room = static_cast<std::int32_t>(target.size());
        target.resize(static_cast<std::size_t>(convert(source.data(), length, target.data(), room, &error)));
    }
    return target;
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
    if (IsUtf8(argument)) return argument;
    // A character takes at least one byte here and at most two units there, behind the mark and before two zeros.
    std::string bytes(argument.size() * 4 + 4, '\0');
    const std::int32_t written =
        DMXlateFromHostEnc(argument.c_str(), bytes.data(), static_cast<std::int32_t>(bytes.size()));
    return TextOfBytes({bytes.data(), static_cast<std::size_t>(written)});
}

std::string TextOfBytes(std::string_view bytes) {
    return IsAscii(bytes) ? std::string(bytes) : Converted(BaseToolTextToUTF8, bytes);
}

std::string BytesOfText(const std::string &utf8) {
    return IsAscii(utf8) ? utf8 : Converted(BaseToolUTF8ToText, utf8);
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
