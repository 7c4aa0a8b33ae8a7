// The content store's life, its print language and the plain drawing operations.
// SPDX-License-Identifier: MIT
#include "appearance/miCStore.h"
#include "appearance/miCStoreParts.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Common/src/miUtils.h"
#include "CoreHFT.h"
#include "KernelSupportHFT.h"
#include "LexHFT.h"
#include "objects/FixedUtl.h"

namespace {

// One call prints at most so much, which is why long strings are shown in slices.
constexpr std::size_t s_printLimit = 1025;
constexpr std::int32_t s_quoteLimit = 1024;

void AppendCut(std::string &out, const char *piece, std::size_t length) {
    out.append(piece, std::min(length, s_printLimit - std::min(s_printLimit, out.size())));
}

void AppendText(std::string &out, const char *piece) {
    if (piece) AppendCut(out, piece, std::strlen(piece));
}

void AppendFixed(std::string &out, KRFixed value) {
    char number[32];
    KRFixedToCString(value, number, sizeof number, /*precision*/ 4);
    AppendText(out, number);
}

void AppendInteger(std::string &out, std::int32_t value) {
    char number[16];
    std::snprintf(number, sizeof number, "%ld", static_cast<long>(value));
    AppendText(out, number);
}

void AppendQuoted(std::string &out, const char *text) {
    char quoted[s_quoteLimit + 4];
    CStoreSanitize(text, quoted, s_quoteLimit);
    AppendText(out, "(");
    AppendText(out, quoted);
    AppendText(out, ")");
}

void AppendDirective(std::string &out, char directive, std::va_list &args) {
    switch (directive) {
    case 'b':
        AppendText(out, va_arg(args, int) ? "true" : "false");
        break;
    case 'c':
        AppendText(out, va_arg(args, const char *));
        break;
    case 'd':
        AppendInteger(out, va_arg(args, int));
        break;
    case 'f':
        AppendFixed(out, va_arg(args, KRFixed));
        break;
    case 'n':
        AppendText(out, "/");
        AppendText(out, KRAtomGetString(static_cast<KRAtom>(va_arg(args, int))));
        break;
    case 's':
        AppendQuoted(out, va_arg(args, const char *));
        break;
    default:
        AppendCut(out, &directive, 1);
        break;
    }
}

// False without memory: then nothing has changed.
bool AppendToStore(CStore *store, const char *piece, std::size_t length) {
    const std::size_t old = store->length > 0 ? static_cast<std::size_t>(store->length) + 1 : 0;
    char *grown = static_cast<char *>(KRrealloc(store->text, old + length + 1));
    if (!grown) return false;
    if (old > 0) grown[old - 1] = ' ';
    std::memcpy(grown + old, piece, length);
    grown[old + length] = '\0';
    store->text = grown;
    store->length = static_cast<std::int32_t>(old + length);
    return true;
}

// A half-printed appearance would be worse than none.
void DropText(CStore *store) {
    KRfree(store->text);
    store->text = nullptr;
    store->length = 0;
}

void SanitizeUCS2(const char *source, char *destination, std::int32_t capacity) {
    const auto *unit = reinterpret_cast<const unsigned char *>(source) + 2;
    while ((unit[0] || unit[1]) && capacity >= 9) {
        std::snprintf(destination, 9, "\\%03o\\%03o", static_cast<unsigned>(unit[0]), static_cast<unsigned>(unit[1]));
        unit += 2;
        destination += 8;
        capacity -= 8;
    }
    destination[0] = destination[1] = '\0';
}

} // namespace

CStore *CStoreNew(const KRFixedRect *rect, std::uint16_t rotation) {
    auto *store = static_cast<CStore *>(KRSureCalloc(1, sizeof(CStore)));
    const KRFixed width = CStoreDistance(rect->right, rect->left);
    const KRFixed height = CStoreDistance(rect->top, rect->bottom);
    // Any other angle has no matrix, and the face would vanish.
    store->rotation = rotation % 90 == 0 ? rotation % 360 : 0;
    const bool crossed = store->rotation == 90 || store->rotation == 270;
    TSFixedRectSet(&store->bbox, 0, 0, crossed ? height : width, crossed ? width : height);
    store->xobject = LexNullObj;
    return store;
}

void CStoreDelete(CStore *store) {
    if (!store) return;
    CStoreClear(store);
    KRfree(store);
}

void CStoreClear(CStore *store) {
    DropText(store);
    store->xobject = LexNullObj;
    store->metrics = {};
}

void CStoreGetBbox(const CStore *store, KRFixedRect *rect) {
    *rect = store->bbox;
}

std::uint16_t CStoreGetRotation(const CStore *store) {
    return store->rotation;
}

KRFixed CStoreWidth(const CStore *store) {
    return CStoreDistance(store->bbox.right, store->bbox.left);
}

KRFixed CStoreHeight(const CStore *store) {
    return CStoreDistance(store->bbox.top, store->bbox.bottom);
}

bool CStoreQuarterTurn(std::int32_t rotation, KRFixed width, KRFixed height, KRFixedMatrix *matrix) {
    constexpr KRFixed one = KRFixedOne;
    switch (rotation) {
    case 0:
        *matrix = KRFixedMatrixIdentity;
        return true;
    case 90:
        *matrix = {0, one, -one, 0, height, 0};
        return true;
    case 180:
        *matrix = {-one, 0, 0, -one, width, height};
        return true;
    case 270:
        *matrix = {0, -one, one, 0, 0, width};
        return true;
    default:
        return false;
    }
}

void CStoreGetMatrix(const CStore *store, KRFixedMatrix *matrix) {
    *matrix = {};
    CStoreQuarterTurn(store->rotation, CStoreWidth(store), CStoreHeight(store), matrix);
}

void CStorePrintf(CStore *store, const char *format, ...) {
    std::string piece;
    std::va_list args;
    va_start(args, format);
    for (const char *at = format; *at; ++at) {
        if (*at != '%')
            AppendCut(piece, at, 1);
        else if (at[1])
            AppendDirective(piece, *++at, args);
    }
    va_end(args);
    if (!AppendToStore(store, piece.data(), piece.size())) DropText(store);
}

void CStoreSscanf(CStore *, const char *, ...) {}

void CStoreSanitize(const char *source, char *destination, std::int32_t capacity) {
    if (!source) source = "";
    if (miIsUCS(source)) {
        SanitizeUCS2(source, destination, capacity);
        return;
    }
    // The bound asks for two bytes where an octal escape takes four, so up to three bytes more than `capacity` are
    // written: the caller's buffer has them to spare.
    std::int32_t left = capacity;
    for (; *source && left >= 2; ++source) {
        const auto byte = static_cast<unsigned char>(*source);
        if (std::strchr("()\\[]", byte)) {
            *destination++ = '\\';
            *destination++ = *source;
            left -= 2;
        } else if (byte < 32 || byte > 126) {
            std::snprintf(destination, 5, "\\%03o", static_cast<unsigned>(byte));
            destination += 4;
            left -= 4;
        } else {
            *destination++ = *source;
            --left;
        }
    }
    *destination = '\0';
}

void CStoreAdd(CStore *store, const CStore *other) {
    const bool hasText = other->length > 0;
    if (hasText && !AppendToStore(store, other->text, static_cast<std::size_t>(other->length))) return;
    store->flags |= other->flags;
    if (other->flags & CStoreUsesXObject) store->xobject = other->xobject;
    if (other->flags & CStoreUsesFont) store->metrics = other->metrics;
}

void CStoreSetColor(CStore *store, const DMColorValue *color, bool fill) {
    const KRFixed *v = color->value;
    // Gray is the shorter way to say the same.
    const bool gray = color->space == TSColorGray || (color->space == TSColorRGB && v[0] == v[1] && v[1] == v[2]);
    if (gray)
        CStorePrintf(store, fill ? "%f g" : "%f G", v[0]);
    else if (color->space == TSColorRGB)
        CStorePrintf(store, fill ? "%f %f %f rg" : "%f %f %f RG", v[0], v[1], v[2]);
    else if (color->space == TSColorCMYK)
        CStorePrintf(store, fill ? "%f %f %f %f k" : "%f %f %f %f K", v[0], v[1], v[2], v[3]);
}

void CStoreRect(CStore *store, KRFixed x, KRFixed y, KRFixed width, KRFixed height, char op) {
    const char text[] = {op, '\0'};
    CStorePrintf(store, "%f %f %f %f re %c", x, y, width, height, text);
}

void CStoreCircle(CStore *store, KRFixed centerX, KRFixed centerY, KRFixed radius, char op) {
    const KRFixed r = radius;
    const KRFixed k = KRFixedMul(r, CStoreCircleFactor);
    const KRFixed nr = TSFixedNeg(r);
    const KRFixed nk = TSFixedNeg(k);
    const char text[] = {op, '\0'};
    CStorePrintf(store, "q 1 0 0 1 %f %f cm", centerX, centerY);
    CStorePrintf(store, "%f 0 m", r);
    CStorePrintf(store, "%f %f %f %f 0 %f c", r, k, k, r, r);
    CStorePrintf(store, "%f %f %f %f %f 0 c", nk, r, nr, k, nr);
    CStorePrintf(store, "%f %f %f %f 0 %f c", nr, nk, nk, nr, nr);
    CStorePrintf(store, "%f %f %f %f %f 0 c %c", k, nr, r, nk, r, text);
    CStorePrintf(store, "Q");
}

void CStoreStartRectClip(CStore *store, const KRFixedRect *rect) {
    const KRFixed width = CStoreDistance(rect->right, rect->left);
    const KRFixed height = CStoreDistance(rect->top, rect->bottom);
    CStorePrintf(store, "q");
    if (store->rotation == 90 || store->rotation == 270)
        CStoreRect(store, rect->bottom, rect->left, height, width, 'W');
    else
        CStoreRect(store, rect->left, rect->bottom, width, height, 'W');
    CStorePrintf(store, "n");
}

void CStoreEndRectClip(CStore *store) {
    CStorePrintf(store, "Q");
}

void CStoreVariableData(CStore *store, KRAtom tag) {
    if (tag == KRAtomNull)
        CStorePrintf(store, "EMC");
    else
        CStorePrintf(store, "/%c BMC", KRAtomGetString(tag));
}
