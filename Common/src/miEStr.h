// EStr, the plug-in's string: bytes with a tag for their encoding. The record stands in FormsTypes.h.
//
// 1. `bytes` comes from KRmalloc, is never null in a record made here, and ends in two zero bytes behind `length`.
// 2. A UCS-2 string starts with the mark 254, 255, which `length` counts; characters are counted without it.
// 3. `length` is 16 bits: a text of more than EStrMaxLength bytes is cut behind its last whole character.
// 4. Conversions do not fail loudly: when a tag cannot be reached, the string keeps the old one. Compare with
//    EStrGetEncoding where it matters. Allocation raises KRErrNoMemory.
// A null EStr reads as an empty string; `const char *` arguments may be null unless it says otherwise.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <memory>

#include "FormsTypes.h"
#include "KRTypes.h"

/** Bytes of the longest text; the zero pair and a capacity of 16 bits leave no more. */
inline constexpr std::uint16_t EStrMaxLength = 65533;

// Deletion. Null allowed.

void EStrDelete(EStr *str);
/** Clears the buffer and the record first: for passwords. */
void EStrDeleteSecure(EStr *str);
/** The same, and sets the pointer to null. */
void EStrDestroy(EStr **str);

struct EStrDeleter {
    void operator()(EStr *str) const {
        EStrDelete(str);
    }
};
/** Holder of an EStr that is ours. */
using EStrPtr = std::unique_ptr<EStr, EStrDeleter>;

// Creation. What comes back belongs to the caller.

/**
 * `encoding` EStrText becomes EStrUCS2 when the bytes start with the mark, else EStrPDFDoc. EStrUCS2 with bytes that
 * do not begin like a mark falls back to EStrPDFDoc; with null it is the bare mark.
 */
EStr *EStrNewImpl(const char *bytes, std::int32_t encoding);
/** `size` zero bytes that count as its length. */
EStr *EStrNewSizeImpl(std::uint32_t size, std::int32_t encoding);
/** UCS-2 from program text; without converters the same bytes as host text. */
EStr *EStrNewFromUTF8(const char *text);
EStr *EStrNewFromIntImpl(std::int32_t value);
/** See EStrSetBytesFromLexObj. */
EStr *EStrNewFromLexObjImpl(LexObj obj);
/** Null for null. */
EStr *EStrCopyImpl(const EStr *str);
/** A copy in another encoding, where it can be reached. Null for null. */
EStr *EStrCopySetEncoding(const EStr *str, std::int32_t encoding);

// Content.

/** `target` takes content and tag of `source`; empty when that is null. */
void EStrAssign(EStr *target, const EStr *source);
/** As EStrNewImpl over an existing string. `bytes` may lie within the string's own buffer. */
void EStrSetBytes(EStr *str, const char *bytes, std::int32_t encoding);
/** The same for `size` bytes, which may hold zeros. A UCS-2 text loses an odd last byte. */
void EStrSetBytesSized(EStr *str, const char *bytes, std::size_t size, std::int32_t encoding);
void EStrSetBytesFromInt(EStr *str, std::int32_t value);
/**
 * Text of an object: the bytes of a string and the decoded data of a stream (UCS-2 by their mark, else
 * PDFDocEncoding), a name's text, a number, "true" or "false", "<<dict>>", "[array]", nothing for the null object.
 * Raises KRErrBadStream.
 */
void EStrSetBytesFromLexObj(EStr *str, LexObj obj);
/** Cuts or extends with zero bytes to `size` bytes. */
void EStrSetSize(EStr *str, std::uint32_t size);
/** Makes room for `wanted` bytes, in steps of 32, and gives room back when more than half would stand empty. */
void EStrCheckImpl(EStr *str, std::uint32_t wanted);
/** Appends bytes in the string's encoding; to UCS-2 marked ones, or else host text, which is converted. */
void EStrCat(EStr *str, const char *bytes);
/** Puts bytes in the string's encoding in front, with the same rules. */
void EStrPrepend(EStr *str, const char *bytes);
/** Replaces the content by formatted text in the string's encoding; a UCS-2 string becomes EStrPDFDoc. */
void EStrPrintf(EStr *str, const char *format, ...) __attribute__((format(printf, 2, 3)));
/** Keeps the first `chars` characters, of multibyte text the whole ones in that many bytes. More leaves it alone. */
void EStrTrunc(EStr *str, std::int32_t chars);
/** Replaces each `find`, left to right. Null or empty `with` removes; null or empty `find` leaves the string alone. */
void EStrReplace(EStr *str, const EStr *find, const EStr *with);
/**
 * `count` characters from `start` into `out`, which takes the tag of `str` and may be `str`. A negative start counts
 * as 0 with the end kept; an end past the string, or a negative one, takes all that remains.
 */
void EStrSubstr(EStr *out, const EStr *str, std::int32_t start, std::int32_t count);
/**
 * What stands between the first `left` (null: the start) and the next `right` (null or not there: the end) goes to
 * `out` (null allowed). Gives the character index behind `right`, -1 when there is no `left`.
 */
std::int32_t EStrSnarf(const EStr *str, const EStr *left, const EStr *right, EStr *out);
/** Takes leading and trailing white space out. */
void EStrStrip(EStr *str);

/** Appends the parts up to the first null in the encoding of `str`; an empty part adds nothing. */
void EStrCatList(EStr *str, const EStr *const *parts, std::size_t count);
template <class... Parts>
void EStrCatEStr(EStr *str, Parts... parts) {
    const std::array<const EStr *, sizeof...(Parts) + 1> list{static_cast<const EStr *>(parts)..., nullptr};
    EStrCatList(str, list.data(), list.size());
}
/** A new string of all parts up to the first null, in the encoding of the first. */
EStr *EStrNewFromList(const EStr *const *parts, std::size_t count);
template <class... Parts>
EStr *EStrNewFromEStr(Parts... parts) {
    const std::array<const EStr *, sizeof...(Parts) + 1> list{static_cast<const EStr *>(parts)..., nullptr};
    return EStrNewFromList(list.data(), list.size());
}

// Queries.

/** The record's own bytes; null for null. */
char *EStrGetBytes(const EStr *str);
/** Bytes in use, the mark included. */
std::uint16_t EStrGetLen(const EStr *str);
/** Characters: units behind the mark for UCS-2, bytes for all others. */
std::int32_t EStrGetCharLen(const EStr *str);
std::int32_t EStrGetEncoding(const EStr *str);
/** Empty, or the bare mark. */
bool EStrIsNull(const EStr *str);
/** As miStrcmp, in the encoding of `a`. A null string comes before all others. */
int EStrCmp(const EStr *a, const EStr *b);
/** Character index of the first (`forward`) or last place of a character, -1 when there is none. */
std::int32_t EStrIndexOf(const EStr *str, std::uint16_t character, bool forward);
/** Character index of `find` from the index `from` on; -1 when there is none. */
std::int32_t EStrFindStr(const EStr *str, const EStr *find, std::int32_t from);
/** The unit or byte at a character index; 0 outside the string. */
std::uint16_t EStrCharAt(const EStr *str, std::int32_t index);

// Encoding.

/**
 * Converts. To EStrHost, EStrPDFDoc and EStrShiftJIS with loss: a character that the target lacks becomes a bullet,
 * or "?" where there is no bullet either. EStrText gives PDFDocEncoding if nothing is lost, else UCS-2.
 */
void EStrSetEncoding(EStr *str, std::int32_t encoding);
/** Relabels without converting. */
void EStrThisIsTheEncoding(EStr *str, std::int32_t encoding);

// In dictionaries.

/** A direct string in EStrText. Nothing for a null string or key; raises KRErrNoMemory for what is no dictionary. */
void EStrLexDictPut(LexObj dict, KRAtom key, const EStr *str);
/** Null unless the entry is a string, and on every failure. The caller deletes it. */
EStr *EStrLexDictGet(LexObj dict, KRAtom key);
