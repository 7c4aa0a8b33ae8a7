// Typed access to objects: reading that forgives a wrong type, writing that makes what is missing.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>
#include <type_traits>

#include "LexHFT.h"

/** A dictionary, or a stream, whose dictionary answers for it: what may be given to LexDictGet without raising. */
bool TSLexObjIsDictLike(LexObj obj);

/** The value under `key` when `obj` is a dictionary or stream and the value has this type; else the null object. */
LexObj TSLexDictGetOfType(LexObj obj, KRAtom key, LexType type);

/** Integer or fixed number (an integer shifted up 16 bits, clamped); false for anything else, and then `*out` stands.
 */
bool TSLexObjGetNumber(LexObj obj, KRFixed *out);

/** Number of entries; 0 when `dict` is neither dictionary nor stream. */
std::int32_t TSLexDictGetLen(LexObj dict);

/** The array under `key`. When it is missing or something else stands there, a new empty one is stored and given. */
LexObj TSLexArrayEnsure(LexObj dict, KRAtom key, bool indirect);

/** The dictionary under `key`, made direct when it is missing or something else stands there. */
LexObj TSLexDictEnsure(LexObj dict, KRAtom key);
/** The same, with the choice of an indirect one. */
LexObj TSLexDictEnsureEx(LexObj dict, KRAtom key, bool indirect);

/**
 * Text of an object in `buffer`, always ended by two NUL bytes, so that it may hold marked UCS-2: "true" or "false",
 * an integer, a fixed number with up to 9 decimals, the bytes of a string cut to `size` less 2, the text of a name.
 * Any other type gives the empty text. Nothing happens with a `size` below 2.
 */
void TSLexCStringValue(LexObj obj, char *buffer, std::int32_t size);

/** Six fixed numbers under `key`. */
void TSLexPutMatrix(LexDoc doc, LexObj dict, KRAtom key, const KRFixedMatrix *matrix);
/** Anything but an array reads as the identity; so does an array of less than six numbers. */
void TSLexGetMatrix(LexObj dict, KRAtom key, KRFixedMatrix *matrix);

/** Left, bottom, right, top under `key`, the order of a PDF rectangle. */
void TSLexPutRect(LexDoc doc, LexObj dict, KRAtom key, const KRFixedRect *rect);
/** The rectangle as it stands (not normalised), or the zero rectangle when there is none that can be read. */
void TSLexGetRect(LexObj dict, KRAtom key, KRFixedRect *rect);
/** The four numbers of a rectangle array itself; false, and the zero rectangle, when it is none. */
bool TSLexArrayGetRect(LexObj array, KRFixedRect *rect);

/** The C++ type that stands for an object type in TSLexDictLoad: containers and strings come as the object itself. */
template <LexType Type>
using TSLexLoaded = std::conditional_t<
    Type == LexInteger || Type == LexFixed, std::int32_t,
    std::conditional_t<Type == LexBoolean, bool, std::conditional_t<Type == LexName, KRAtom, LexObj>>>;

std::int32_t TSLexDictLoadNumber(LexObj dict, KRAtom key, LexType type, std::int32_t *out);
std::int32_t TSLexDictLoadBoolean(LexObj dict, KRAtom key, bool *out);
std::int32_t TSLexDictLoadName(LexObj dict, KRAtom key, KRAtom *out);
std::int32_t TSLexDictLoadObj(LexObj dict, KRAtom key, LexType type, LexObj *out);

/**
 * Value of the wanted type under `key`: `TSLexDictLoad<LexName>(dict, FT_K, &type)`. 0 with the value stored; 1 when
 * the type differs or the key is missing, and then `*out` stands. A wanted fixed number accepts an integer. Raises
 * nothing.
 */
template <LexType Type>
std::int32_t TSLexDictLoad(LexObj dict, KRAtom key, TSLexLoaded<Type> *out) {
    if constexpr (Type == LexInteger || Type == LexFixed)
        return TSLexDictLoadNumber(dict, key, Type, out);
    else if constexpr (Type == LexBoolean)
        return TSLexDictLoadBoolean(dict, key, out);
    else if constexpr (Type == LexName)
        return TSLexDictLoadName(dict, key, out);
    else
        return TSLexDictLoadObj(dict, key, Type, out);
}

/** What TSLexDictStore takes for an object type: numbers, booleans and atoms by value, strings as their bytes. */
template <LexType Type>
using TSLexStored = std::conditional_t<Type == LexString, std::string_view, TSLexLoaded<Type>>;

std::int32_t TSLexDictStoreNumber(LexObj dict, KRAtom key, LexType type, bool indirect, std::int32_t value);
std::int32_t TSLexDictStoreBoolean(LexObj dict, KRAtom key, bool indirect, bool value);
std::int32_t TSLexDictStoreName(LexObj dict, KRAtom key, bool indirect, KRAtom value);
std::int32_t TSLexDictStoreString(LexObj dict, KRAtom key, bool indirect, std::string_view value);

/**
 * Makes a scalar or string of the type and stores it: `TSLexDictStore<LexInteger>(dict, Rot_K, false, 90)`. 0 on
 * success; 1 on failure, which is swallowed.
 */
template <LexType Type>
std::int32_t TSLexDictStore(LexObj dict, KRAtom key, bool indirect, TSLexStored<Type> value) {
    static_assert(Type == LexInteger || Type == LexFixed || Type == LexBoolean || Type == LexName || Type == LexString);
    if constexpr (Type == LexInteger || Type == LexFixed)
        return TSLexDictStoreNumber(dict, key, Type, indirect, value);
    else if constexpr (Type == LexBoolean)
        return TSLexDictStoreBoolean(dict, key, indirect, value);
    else if constexpr (Type == LexName)
        return TSLexDictStoreName(dict, key, indirect, value);
    else
        return TSLexDictStoreString(dict, key, indirect, value);
}

/**
 * The same object, or the same type and value: scalars by value, strings byte by byte, arrays element by element from
 * the last to the first. Dictionaries and streams that are not the same object are not equivalent. Arrays nested
 * deeper than any form nests them count as different; arrays that hold themselves end.
 */
bool TSLexObjEquivalent(LexObj a, LexObj b);

/** The value under `key` of `obj` or of the nearest `Parent` that has it; the null object when none does. */
LexObj TSLexObjInheritedValue(LexObj obj, KRAtom key);
