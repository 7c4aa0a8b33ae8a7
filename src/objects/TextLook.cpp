// Default appearance strings.
//
//     string   = { operand } operator ...          tokens, parted by white space, at most 30
//     operator = Tf | Tc | Tw | Tz | TL | Ts | Tr  one number before it, and for Tf a "/name" before that
//              | g | rg | k | G | RG | K           one, three or four components
//
// A name may have lost its slash. What is neither is passed over. Components are told by their first character: "." and
// "0" start a number, "1" is 1.0 whatever follows; those that begin otherwise do not count.
// SPDX-License-Identifier: MIT
#include "objects/TextLook.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <string>
#include <string_view>

#include "Common/src/miLexType.h"
#include "Common/src/miUtils.h"
#include "CoreHFT.h"
#include "KRErrors.h"
#include "KernelSupportHFT.h"
#include "base/BufCont.h"
#include "base/FormStr.h"
#include "objects/ColorUtl.h"
#include "objects/FontMgr.h"

namespace {

constexpr int s_maxTokens = 30;
constexpr KRFixed s_fullScale = 100 * KRFixedOne;

struct Tokens {
    /** The string with a NUL behind each token. */
    std::string text;
    std::array<const char *, s_maxTokens> starts;
    int count = 0;

    /** Empty past the end. */
    const char *operator[](int index) const {
        return index < count ? starts[static_cast<std::size_t>(index)] : "";
    }
};

/** False when there are too many tokens. A leading blank makes an empty first one. */
bool Split(LexObj string, Tokens &tokens) {
    std::int32_t length = 0;
    const char *const bytes = LexStringValue(string, &length);
    tokens.text.assign(bytes, strnlen(bytes, static_cast<std::size_t>(length)));
    tokens.starts[0] = tokens.text.data();
    tokens.count = 1;
    bool between = false;
    for (char &c : tokens.text) {
        if (miIsspace(static_cast<unsigned char>(c))) {
            c = '\0';
            between = true;
        } else if (between) {
            if (tokens.count == s_maxTokens) return false;
            tokens.starts[static_cast<std::size_t>(tokens.count++)] = &c;
            between = false;
        }
    }
    return true;
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

/** Atom of a name as it stands in content, where "#20" is a blank. */
KRAtom AtomOfName(const char *name) {
    if (!std::strchr(name, '#')) return KRAtomFromString(name);
    std::string text;
    for (const char *c = name; *c; ++c) {
        const int high = *c == '#' ? HexDigit(c[1]) : -1;
        const int low = high >= 0 ? HexDigit(c[2]) : -1;
        if (low >= 0 && high * 16 + low != 0) {
            text += static_cast<char>(high * 16 + low);
            c += 2;
        } else {
            text += *c;
        }
    }
    return KRAtomFromString(text.c_str());
}

void AppendName(std::string &text, KRAtom atom) {
    for (const char *c = KRAtomGetString(atom); *c; ++c) {
        const auto byte = static_cast<unsigned char>(*c);
        if (byte > ' ' && byte < 127 && !std::strchr("#()<>[]{}/%", *c)) {
            text += *c;
        } else {
            char escape[4];
            std::snprintf(escape, sizeof escape, "#%02X", static_cast<unsigned>(byte));
            text += escape;
        }
    }
}

/** Stores the number before a text operator; true for the one that no string may lack. */
bool StoreTextState(TextAppearance *look, char operation, KRFixed value) {
    switch (operation) {
    case 'f':
        look->size = value;
        return true;
    case 'c':
        look->charSpacing = value;
        break;
    case 'w':
        look->wordSpacing = value;
        break;
    case 'z':
        look->hScale = value;
        break;
    case 'L':
        look->leading = value;
        break;
    case 's':
        look->rise = value;
        break;
    case 'r':
        // From 4 on the text also becomes a clip, for which a face has no use.
        look->renderMode = static_cast<std::uint16_t>(value >> 16 & 3);
        break;
    default:
        break;
    }
    return false;
}

/** The components that wait for their operator. */
struct Operands {
    KRFixed values[4] = {};
    int count = 0;
};

/** What comes of a token that stands for itself: false when it breaks the rules for colours. */
bool TakeColorToken(const char *token, Operands &operands, TextAppearance *look) {
    std::int32_t space = TSColorTransparent;
    switch (*token) {
    case '.':
    case '0':
    case '1':
        if (operands.count == 4) return false;
        operands.values[operands.count++] = *token == '1' ? KRFixedOne : KRCStringToFixed(token);
        return true;
    case 'g':
    case 'G':
        space = TSColorGray;
        break;
    case 'r':
    case 'R':
        if (token[1] != (*token == 'r' ? 'g' : 'G')) return false;
        space = TSColorRGB;
        break;
    case 'k':
    case 'K':
        space = TSColorCMYK;
        break;
    default:
        return true;
    }
    if (operands.count != TSColorComponents(space)) return false;
    const bool fill = *token >= 'a';
    const KRFixed *const v = operands.values;
    TSDMColorValueSet(fill ? &look->fillColor : &look->strokeColor, space, v[0], v[1], v[2], v[3]);
    operands.count = 0;
    return true;
}

/** The font's name in front of size and `Tf`, without its slash, which some writers lose; null when there is none. */
const char *FontNameAt(const Tokens &tokens, int i) {
    if (std::strcmp(tokens[i + 2], "Tf") != 0) return nullptr;
    if (*tokens[i] == '/') return tokens[i] + 1;
    const bool isWord = std::isalpha(static_cast<unsigned char>(*tokens[i]));
    // Operators in front of a size are operators: the name is missing then.
    static constexpr std::string_view s_operators[] = {"g", "G", "rg", "RG", "k", "K", "q", "Q", "BT", "ET"};
    return isWord && std::ranges::find(s_operators, tokens[i]) == std::end(s_operators) ? tokens[i] : nullptr;
}

/** False for a colour error; `*hasFont` tells of `Tf`. */
bool Parse(const Tokens &tokens, TextAppearance *look, bool *hasFont) {
    Operands operands;
    for (int i = 0; i < tokens.count; ++i) {
        if (const char *const name = FontNameAt(tokens, i)) {
            look->fontResource = AtomOfName(name);
        } else if (*tokens[i + 1] == 'T') {
            if (StoreTextState(look, tokens[i + 1][1], KRCStringToFixed(tokens[i]))) *hasFont = true;
            ++i;
        } else if (!TakeColorToken(tokens[i], operands, look)) {
            return false;
        }
    }
    return true;
}

/** A number as content has it: at most 4 decimals, none for a whole one. */
void AppendNumber(std::string &text, KRFixed value, const char *behind) {
    char number[34];
    if (value & 0xFFFF)
        KRFixedToCString(value, number, sizeof number, /*precision*/ 4);
    else
        std::snprintf(number, sizeof number, "%d", value >> 16);
    text += number;
    text += behind;
}

void AppendColor(std::string &text, const DMColorValue *color, bool fill) {
    char buffer[TSDMColorTextSize];
    TSDMColorGetCString(color, fill, buffer);
    text += buffer;
}

} // namespace

TextAppearance TextAppearanceDefault() {
    TextAppearance look{};
    look.hScale = s_fullScale;
    look.matrix = KRFixedMatrixIdentity;
    look.baseFont = Helvetica_K;
    look.fontResource = KRAtomNull;
    return look;
}

bool TextAppearanceIsWellFormed(const TextAppearance *look) {
    return look->quadding < 3 && look->renderMode < 4 && look->baseFont != KRAtomNull && look->size >= 0;
}

bool TextAppearanceEqual(const TextAppearance *a, const TextAppearance *b) {
    return std::memcmp(a, b, sizeof *a) == 0;
}

void TSLexStringGetTextAppearance(LexObj string, TextAppearance *look) {
    if (!IsString(string)) KRRaise(KRErrBadParam);
    *look = TextAppearanceDefault();
    Tokens tokens;
    bool hasFont = false;
    if (!Split(string, tokens) || !Parse(tokens, look, &hasFont)) {
        *look = {};
        look->baseFont = look->fontResource = KRAtomNull;
        KRRaise(KRErrBadField);
    }
    if (!hasFont) KRRaise(KRErrBadField);
}

std::int32_t TextAppearanceSTRM(TextAppearance *look, BufControl *buffer) {
    if (!TextAppearanceIsWellFormed(look)) return 1;
    TextAppearanceHomogenizeColors(look);
    if (look->fontResource == KRAtomNull) look->fontResource = MapBaseFontToNameFont(look->baseFont);
    std::string text = "/";
    AppendName(text, look->fontResource);
    text += ' ';
    AppendNumber(text, look->size, " Tf ");
    if (look->charSpacing != 0) AppendNumber(text, look->charSpacing, " Tc ");
    if (look->wordSpacing != 0) AppendNumber(text, look->wordSpacing, " Tw ");
    if (look->hScale != s_fullScale) AppendNumber(text, look->hScale, " Tz ");
    if (look->leading != 0) AppendNumber(text, look->leading, " TL ");
    if (look->rise != 0) AppendNumber(text, look->rise, " Ts ");
    if (look->renderMode != 0) {
        AppendNumber(text, KRFixedFromInt(look->renderMode), " Tr ");
        AppendColor(text, &look->strokeColor, /*fill*/ false);
    }
    if (look->renderMode != 1) AppendColor(text, &look->fillColor, /*fill*/ true);
    return BufStrCat(buffer, text.c_str());
}

void TextAppearanceHomogenizeColors(TextAppearance *look) {
    const std::uint16_t mode = look->renderMode;
    if (mode == 1 || mode == 3) TSDMColorValueSet(&look->fillColor, TSColorGray);
    if (mode == 0 || mode == 3) TSDMColorValueSet(&look->strokeColor, TSColorGray);
    for (DMColorValue *color : {&look->fillColor, &look->strokeColor}) {
        if (IsDMColorBlack(color)) TSDMColorValueSet(color, TSColorGray);
    }
}
