// The object layer as host code calls it: the operations of the table Lex, raising by HostError.
//
// The rules are those of LexHFT.h: reading what is not there gives the null object; a typed read on the wrong type, a
// value of another document and a direct cycle throw HostError{KRErrBadParam}. Host code calls these and never the
// slots, since a slot raises through the frames and would skip the destructors on its way.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "KRTypes.h"

namespace jackdaw::lex {

inline constexpr LexObj NullObj{0, 0};

inline bool Same(LexObj a, LexObj b) {
    return a.node == b.node && a.slot == b.slot;
}

/** LexNull also for a destroyed object and for one whose document is closed; never throws. */
LexType TypeOf(LexObj obj);
inline bool IsNull(LexObj obj) {
    return TypeOf(obj) == LexNull;
}
inline bool IsName(LexObj obj) {
    return TypeOf(obj) == LexName;
}
inline bool IsString(LexObj obj) {
    return TypeOf(obj) == LexString;
}
inline bool IsArray(LexObj obj) {
    return TypeOf(obj) == LexArray;
}
/** Not for a stream, whose dictionary is its own. */
inline bool IsDict(LexObj obj) {
    return TypeOf(obj) == LexDict;
}
inline bool IsStream(LexObj obj) {
    return TypeOf(obj) == LexStream;
}
/** A dictionary or a stream: what the dictionary operations take. */
inline bool HasKeys(LexObj obj) {
    const LexType type = TypeOf(obj);
    return type == LexDict || type == LexStream;
}
bool IsIndirect(LexObj obj);
/** Object number, 0 for a direct object. */
int ObjectNumber(LexObj obj);
/** Null for the null object. */
LexDoc DocOf(LexObj obj);

// New objects: direct and loose, or indirect. Direct names, integers, booleans and reals of one value are one object,
// since nothing can change them.

LexObj NewInteger(LexDoc doc, bool indirect, std::int64_t value);
LexObj NewFixed(LexDoc doc, bool indirect, KRFixed value);
LexObj NewBoolean(LexDoc doc, bool indirect, bool value);
LexObj NewName(LexDoc doc, bool indirect, KRAtom value);
LexObj NewString(LexDoc doc, bool indirect, std::string_view bytes);
LexObj NewArray(LexDoc doc, bool indirect);
LexObj NewDict(LexDoc doc, bool indirect);
/** A direct copy of an integer, real, boolean, name or string of any document, with a number's text as it stands. */
LexObj CopyScalar(LexDoc doc, LexObj scalar);
/** An indirect object reads as null everywhere from now on; a loose container loses its handle; others stay. */
void DestroyObj(LexObj obj);

std::int32_t IntegerValue(LexObj obj);
KRFixed FixedValue(LexObj obj);
/** Integer or real as 16.16, clamped; `otherwise` for anything else. */
KRFixed NumberOr(LexObj obj, KRFixed otherwise);
/** An integer, clamped to 32 bits; `otherwise` for anything else, reals included. */
std::int32_t IntegerOr(LexObj obj, std::int32_t otherwise);
bool BooleanValue(LexObj obj);
KRAtom NameValue(LexObj obj);
/** KRAtomNull for anything but a name. */
KRAtom NameOrNone(LexObj obj);
/** Lives until the object's document closes. */
const std::string &StringValue(LexObj obj);

// Dictionaries, and streams by their dictionary.

LexObj DictGet(LexObj dict, KRAtom key);
void DictPut(LexObj dict, KRAtom key, LexObj value);
void DictRemove(LexObj dict, KRAtom key);
bool DictKnown(LexObj dict, KRAtom key);
/** All entries whose value is not null, in the order of the key texts. Keys that find no atom are passed over. */
std::vector<std::pair<KRAtom, LexObj>> DictEntries(LexObj dict);

// Arrays.

LexObj ArrayGet(LexObj array, std::int32_t index);
void ArrayPut(LexObj array, std::int32_t index, LexObj value);
void ArrayInsert(LexObj array, std::int32_t index, LexObj value);
/** Removes the first element that is `value`. */
void ArrayRemove(LexObj array, LexObj value);
void ArrayRemoveAt(LexObj array, std::int32_t index);
std::int32_t ArrayLength(LexObj array);
/** Index of the first element that is `value`; -1 when there is none. */
std::int32_t ArrayIndexOf(LexObj array, LexObj value);

} // namespace jackdaw::lex
