// Typed access to objects.
// SPDX-License-Identifier: MIT
#include "objects/LexUtil.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <unordered_set>

#include "Common/src/miLexType.h"
#include "CoreHFT.h"
#include "KernelSupportHFT.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "base/Limits.h"

namespace {

/** Pairs under comparison or already found alike, as two object numbers, which hold still within one comparison. */
using PairSet = std::unordered_set<std::uint64_t>;

bool EquivalentStrings(LexObj a, LexObj b) {
    std::int32_t lengthA = 0, lengthB = 0;
    const char *const bytesA = LexStringValue(a, &lengthA);
    const char *const bytesB = LexStringValue(b, &lengthB);
    return lengthA == lengthB && std::memcmp(bytesA, bytesB, static_cast<std::size_t>(lengthA)) == 0;
}

bool Equivalent(LexObj a, LexObj b, int depth, PairSet &seen);

bool EquivalentArrays(LexObj a, LexObj b, int depth, PairSet &seen) {
    if (depth >= TSLimitOf(TSLimitComparisonDepth)) return false;
    const std::int32_t length = LexArrayLength(a);
    if (length != LexArrayLength(b)) return false;
    if (LexObjIsIndirect(a) && LexObjIsIndirect(b)) {
        const auto numberA = static_cast<std::uint32_t>(LexObjGetID(a));
        const auto numberB = static_cast<std::uint32_t>(LexObjGetID(b));
        if (!seen.insert(std::uint64_t{numberA} << 32 | numberB).second) return true;
        if (std::ssize(seen) > TSLimitOf(TSLimitComparisonPairs)) return false;
    }
    for (std::int32_t i = length - 1; i >= 0; --i) {
        if (!Equivalent(LexArrayGet(a, i), LexArrayGet(b, i), depth + 1, seen)) return false;
    }
    return true;
}

bool Equivalent(LexObj a, LexObj b, int depth, PairSet &seen) {
    if (LexObjEqual(a, b)) return true;
    const std::int32_t type = LexObjGetType(a);
    if (type != LexObjGetType(b)) return false;
    switch (type) {
    case LexNull:
        return true;
    case LexInteger:
        return LexIntegerValue(a) == LexIntegerValue(b);
    case LexFixed:
        return LexFixedValue(a) == LexFixedValue(b);
    case LexBoolean:
        return LexBooleanValue(a) == LexBooleanValue(b);
    case LexName:
        return LexNameValue(a) == LexNameValue(b);
    case LexString:
        return EquivalentStrings(a, b);
    case LexArray:
        return EquivalentArrays(a, b, depth, seen);
    default:
        return false;
    }
}

LexObj NewNumber(LexDoc doc, LexType type, bool indirect, std::int32_t value) {
    return type == LexFixed ? LexNewFixed(doc, indirect, value) : LexNewInteger(doc, indirect, value);
}

/** `count` numbers from the start of an array; false when it is none or one of them is no number. */
bool GetNumbers(LexObj array, KRFixed *out, std::int32_t count) {
    if (!IsArray(array)) return false;
    for (std::int32_t i = 0; i < count; ++i) {
        if (!TSLexObjGetNumber(LexArrayGet(array, i), &out[i])) return false;
    }
    return true;
}

void PutNumbers(LexDoc doc, LexObj dict, KRAtom key, const KRFixed *values, std::int32_t count) {
    const LexObj array = LexNewArray(doc, /*indirect*/ false, count);
    for (std::int32_t i = 0; i < count; ++i) LexArrayPut(array, i, LexNewFixed(doc, /*indirect*/ false, values[i]));
    LexDictPut(dict, key, array);
}

void CopyText(std::string_view text, char *buffer, std::int32_t size) {
    const std::size_t length = std::min(text.size(), static_cast<std::size_t>(size - 2));
    if (length > 0) std::memcpy(buffer, text.data(), length);
    buffer[length] = buffer[length + 1] = '\0';
}

} // namespace

bool TSLexObjIsDictLike(LexObj obj) {
    const std::int32_t type = LexObjGetType(obj);
    return type == LexDict || type == LexStream;
}

LexObj TSLexDictGetOfType(LexObj obj, KRAtom key, LexType type) {
    if (!TSLexObjIsDictLike(obj)) return LexNullObj;
    const LexObj value = LexDictGet(obj, key);
    return LexObjGetType(value) == type ? value : LexNullObj;
}

bool TSLexObjGetNumber(LexObj obj, KRFixed *out) {
    switch (LexObjGetType(obj)) {
    case LexInteger:
        *out = KRFixedFromInt(std::clamp(LexIntegerValue(obj), -0x8000, 0x7FFF));
        return true;
    case LexFixed:
        *out = LexFixedValue(obj);
        return true;
    default:
        return false;
    }
}

std::int32_t TSLexDictGetLen(LexObj dict) {
    if (!TSLexObjIsDictLike(dict)) return 0;
    std::int32_t count = 0;
    LexObjEnum(
        dict,
        [](LexObj, LexObj, void *data) -> KRBool {
            ++*static_cast<std::int32_t *>(data);
            return true;
        },
        &count);
    return count;
}

LexObj TSLexArrayEnsure(LexObj dict, KRAtom key, bool indirect) {
    LexObj array = LexDictGet(dict, key);
    if (IsArray(array)) return array;
    array = LexNewArray(LexObjGetDoc(dict), indirect, /*sizeHint*/ 0);
    LexDictPut(dict, key, array);
    return array;
}

LexObj TSLexDictEnsure(LexObj dict, KRAtom key) {
    return TSLexDictEnsureEx(dict, key, /*indirect*/ false);
}

LexObj TSLexDictEnsureEx(LexObj dict, KRAtom key, bool indirect) {
    LexObj value = LexDictGet(dict, key);
    if (IsDict(value)) return value;
    value = LexNewDict(LexObjGetDoc(dict), indirect, /*sizeHint*/ 4);
    LexDictPut(dict, key, value);
    return value;
}

void TSLexCStringValue(LexObj obj, char *buffer, std::int32_t size) {
    if (size < 2) return;
    char number[34];
    std::string_view text;
    std::int32_t length = 0;
    switch (LexObjGetType(obj)) {
    case LexBoolean:
        text = LexBooleanValue(obj) ? "true" : "false";
        break;
    case LexInteger:
        std::snprintf(number, sizeof number, "%d", LexIntegerValue(obj));
        text = number;
        break;
    case LexFixed:
        KRFixedToCString(LexFixedValue(obj), number, sizeof number, /*precision*/ 9);
        text = number;
        break;
    case LexString: {
        const char *const bytes = LexStringValue(obj, &length);
        text = std::string_view(bytes, static_cast<std::size_t>(length));
        break;
    }
    case LexName:
        text = KRAtomGetString(LexNameValue(obj));
        break;
    default:
        break;
    }
    CopyText(text, buffer, size);
}

void TSLexPutMatrix(LexDoc doc, LexObj dict, KRAtom key, const KRFixedMatrix *matrix) {
    const KRFixed values[] = {matrix->a, matrix->b, matrix->c, matrix->d, matrix->e, matrix->f};
    PutNumbers(doc, dict, key, values, 6);
}

void TSLexGetMatrix(LexObj dict, KRAtom key, KRFixedMatrix *matrix) {
    KRFixed v[6];
    if (GetNumbers(TSLexDictGetOfType(dict, key, LexArray), v, 6)) {
        *matrix = {v[0], v[1], v[2], v[3], v[4], v[5]};
    } else {
        *matrix = KRFixedMatrixIdentity;
    }
}

void TSLexPutRect(LexDoc doc, LexObj dict, KRAtom key, const KRFixedRect *rect) {
    const KRFixed values[] = {rect->left, rect->bottom, rect->right, rect->top};
    PutNumbers(doc, dict, key, values, 4);
}

void TSLexGetRect(LexObj dict, KRAtom key, KRFixedRect *rect) {
    TSLexArrayGetRect(TSLexDictGetOfType(dict, key, LexArray), rect);
}

bool TSLexArrayGetRect(LexObj array, KRFixedRect *rect) {
    KRFixed v[4];
    const bool isRect = GetNumbers(array, v, 4);
    if (isRect)
        *rect = {.left = v[0], .top = v[3], .right = v[2], .bottom = v[1]};
    else
        *rect = {};
    return isRect;
}

std::int32_t TSLexDictLoadNumber(LexObj dict, KRAtom key, LexType type, std::int32_t *out) {
    const LexObj value = TSLexObjIsDictLike(dict) ? LexDictGet(dict, key) : LexNullObj;
    if (type == LexFixed) return TSLexObjGetNumber(value, out) ? 0 : 1;
    if (!IsInteger(value)) return 1;
    *out = LexIntegerValue(value);
    return 0;
}

std::int32_t TSLexDictLoadBoolean(LexObj dict, KRAtom key, bool *out) {
    const LexObj value = TSLexDictGetOfType(dict, key, LexBoolean);
    if (!IsBoolean(value)) return 1;
    *out = LexBooleanValue(value) != 0;
    return 0;
}

std::int32_t TSLexDictLoadName(LexObj dict, KRAtom key, KRAtom *out) {
    const LexObj value = TSLexDictGetOfType(dict, key, LexName);
    if (!IsName(value)) return 1;
    *out = LexNameValue(value);
    return 0;
}

std::int32_t TSLexDictLoadObj(LexObj dict, KRAtom key, LexType type, LexObj *out) {
    const LexObj value = TSLexDictGetOfType(dict, key, type);
    if (LexObjGetType(value) != type) return 1;
    *out = value;
    return 0;
}

std::int32_t TSLexDictStoreNumber(LexObj dict, KRAtom key, LexType type, bool indirect, std::int32_t value) {
    return Protect([&] { LexDictPut(dict, key, NewNumber(LexObjGetDoc(dict), type, indirect, value)); }) ? 1 : 0;
}

std::int32_t TSLexDictStoreBoolean(LexObj dict, KRAtom key, bool indirect, bool value) {
    return Protect([&] { LexDictPut(dict, key, LexNewBoolean(LexObjGetDoc(dict), indirect, value)); }) ? 1 : 0;
}

std::int32_t TSLexDictStoreName(LexObj dict, KRAtom key, bool indirect, KRAtom value) {
    return Protect([&] { LexDictPut(dict, key, LexNewName(LexObjGetDoc(dict), indirect, value)); }) ? 1 : 0;
}

std::int32_t TSLexDictStoreString(LexObj dict, KRAtom key, bool indirect, std::string_view value) {
    return Protect([&] {
        const auto length = static_cast<std::int32_t>(value.size());
        LexDictPut(dict, key, LexNewString(LexObjGetDoc(dict), indirect, value.data(), length));
    })
               ? 1
               : 0;
}

bool TSLexObjEquivalent(LexObj a, LexObj b) {
    PairSet seen;
    return Equivalent(a, b, /*depth*/ 0, seen);
}

LexObj TSLexObjInheritedValue(LexObj obj, KRAtom key) {
    const std::int64_t most = TSLimitOf(TSLimitInheritanceDepth); // a longer chain of `Parent` is a circle
    for (std::int64_t i = 0; i < most && TSLexObjIsDictLike(obj); ++i) {
        const LexObj value = LexDictGet(obj, key);
        if (!IsNull(value)) return value;
        obj = LexDictGet(obj, parent_K);
    }
    return LexNullObj;
}
