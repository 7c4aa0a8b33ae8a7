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

inline constexpr LexObj nullObj{0, 0};

inline bool same(LexObj a, LexObj b) {
    return a.node == b.node && a.slot == b.slot;
}

/** LexNull also for a destroyed object and for one whose document is closed; never throws. */
LexType typeOf(LexObj obj);
inline bool isNull(LexObj obj) {
    return typeOf(obj) == LexNull;
}
/** A dictionary or a stream: what the dictionary operations take. */
inline bool hasKeys(LexObj obj) {
    const LexType type = typeOf(obj);
    return type == LexDict || type == LexStream;
}
bool isIndirect(LexObj obj);
/** Object number, 0 for a direct object. */
int objectNumber(LexObj obj);
/** Null for the null object. */
LexDoc docOf(LexObj obj);

// New objects: direct and loose, or indirect. Direct names, integers, booleans and reals of one value are one object,
// since nothing can change them.

LexObj newInteger(LexDoc doc, bool indirect, std::int64_t value);
LexObj newFixed(LexDoc doc, bool indirect, KRFixed value);
LexObj newBoolean(LexDoc doc, bool indirect, bool value);
LexObj newName(LexDoc doc, bool indirect, KRAtom value);
LexObj newString(LexDoc doc, bool indirect, std::string_view bytes);
LexObj newArray(LexDoc doc, bool indirect);
LexObj newDict(LexDoc doc, bool indirect);
/** A direct copy of an integer, real, boolean, name or string of any document, with a number's text as it stands. */
LexObj copyScalar(LexDoc doc, LexObj scalar);
/** An indirect object reads as null everywhere from now on; a loose container loses its handle; others stay. */
void destroy(LexObj obj);

std::int32_t integerValue(LexObj obj);
KRFixed fixedValue(LexObj obj);
/** Integer or real as 16.16, clamped; `otherwise` for anything else. */
KRFixed numberOr(LexObj obj, KRFixed otherwise);
/** An integer, clamped to 32 bits; `otherwise` for anything else, reals included. */
std::int32_t integerOr(LexObj obj, std::int32_t otherwise);
bool booleanValue(LexObj obj);
KRAtom nameValue(LexObj obj);
/** KRAtomNull for anything but a name. */
KRAtom nameOrNone(LexObj obj);
/** Lives until the object's document closes. */
const std::string &stringValue(LexObj obj);

// Dictionaries, and streams by their dictionary.

LexObj dictGet(LexObj dict, KRAtom key);
void dictPut(LexObj dict, KRAtom key, LexObj value);
void dictRemove(LexObj dict, KRAtom key);
bool dictKnown(LexObj dict, KRAtom key);
/** All entries whose value is not null, in the order of the key texts. Keys that find no atom are passed over. */
std::vector<std::pair<KRAtom, LexObj>> dictEntries(LexObj dict);

// Arrays.

LexObj arrayGet(LexObj array, std::int32_t index);
void arrayPut(LexObj array, std::int32_t index, LexObj value);
void arrayInsert(LexObj array, std::int32_t index, LexObj value);
/** Removes the first element that is `value`. */
void arrayRemove(LexObj array, LexObj value);
void arrayRemoveAt(LexObj array, std::int32_t index);
std::int32_t arrayLength(LexObj array);
/** Index of the first element that is `value`; -1 when there is none. */
std::int32_t arrayIndexOf(LexObj array, LexObj value);

} // namespace jackdaw::lex
