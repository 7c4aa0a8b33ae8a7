// The Lex table: the object layer of PDF and FDF files.
//
// Objects belong to their document. Reading what is not there gives the null object; a predicate or typed read on
// the wrong type raises KRErrBadParam. A change reaches the file at the next save, and marks the document dirty.
// Keys and names are atoms without the slash.
// SPDX-License-Identifier: MIT
#pragma once

#include "HFT.h"

inline KRHFT gLexHFT = nullptr;
inline constexpr std::uint32_t LexHFTVersion = KRVersion(4, 2);
inline constexpr int LexHFTCount = 39;

inline constexpr LexObj LexNullObj{0, 0};

/** The same object: equal references, not equal contents. Two nulls are equal. */
inline constexpr Slot<&gLexHFT, 1, KRBool(LexObj a, LexObj b)> LexObjEqual;
/** A LexType. LexNull for the null object, a destroyed object and one whose document is closed. */
inline constexpr Slot<&gLexHFT, 2, std::int32_t(LexObj obj)> LexObjGetType;
inline constexpr Slot<&gLexHFT, 3, KRBool(LexObj obj)> LexObjIsIndirect;
/**
 * For a dictionary or the dictionary of a stream: `key` is the name object of the key. For an array: the element
 * stands in `key`, `value` is null. False stops the walk. The walk runs over the entries as they were at its start.
 */
using LexEnumProc = KRBool (*)(LexObj key, LexObj value, void *clientData);
/** True when the walk came to its end. */
inline constexpr Slot<&gLexHFT, 4, KRBool(LexObj obj, LexEnumProc proc, void *clientData)> LexObjEnum;
/** Null for the null object. */
inline constexpr Slot<&gLexHFT, 5, LexDoc(LexObj obj)> LexObjGetDoc;

// New objects. A direct one stands alone until it is put somewhere. Raise KRErrNoMemory, KRErrBadParam.
inline constexpr Slot<&gLexHFT, 6, LexObj()> LexNewNull;
inline constexpr Slot<&gLexHFT, 7, LexObj(LexDoc doc, KRBool indirect, std::int32_t value)> LexNewInteger;
inline constexpr Slot<&gLexHFT, 8, LexObj(LexDoc doc, KRBool indirect, KRFixed value)> LexNewFixed;
inline constexpr Slot<&gLexHFT, 9, LexObj(LexDoc doc, KRBool indirect, KRBool value)> LexNewBoolean;
inline constexpr Slot<&gLexHFT, 10, LexObj(LexDoc doc, KRBool indirect, KRAtom value)> LexNewName;
/** The bytes are copied; they may hold NUL. */
inline constexpr Slot<&gLexHFT, 11, LexObj(LexDoc doc, KRBool indirect, const char *bytes, std::int32_t length)>
    LexNewString;
inline constexpr Slot<&gLexHFT, 12, LexObj(LexDoc doc, KRBool indirect, std::int32_t sizeHint)> LexNewArray;
inline constexpr Slot<&gLexHFT, 13, LexObj(LexDoc doc, KRBool indirect, std::int32_t sizeHint)> LexNewDict;
/**
 * A stream object (always indirect) from `source`, which is read before the call returns and stays the caller's.
 * `start` bytes are skipped and `length` taken; -1 for either means from here and to the end. With `encode` the
 * data is decoded and is encoded by the filters of `attributes`; without, it is stored as it stands. `attributes`
 * (a direct dictionary or null) becomes the stream's dictionary; `encodeParms` is null or the `DecodeParms`.
 */
inline constexpr Slot<&gLexHFT, 14,
                      LexObj(LexDoc doc, KRBool indirect, KRStm source, std::int32_t start, KRBool encode,
                             LexObj attributes, LexObj encodeParms, std::int32_t length)>
    LexNewStream;
/** References to a destroyed indirect object read as null at once. A direct object merely loses its handle. */
inline constexpr Slot<&gLexHFT, 15, void(LexObj obj)> LexObjDestroy;

/** Numbers beyond 32 bits are clamped. */
inline constexpr Slot<&gLexHFT, 16, std::int32_t(LexObj obj)> LexIntegerValue;
/** A real as 16.16, rounded, clamped. Only for type LexFixed. */
inline constexpr Slot<&gLexHFT, 17, KRFixed(LexObj obj)> LexFixedValue;
inline constexpr Slot<&gLexHFT, 18, KRBool(LexObj obj)> LexBooleanValue;
inline constexpr Slot<&gLexHFT, 19, KRAtom(LexObj obj)> LexNameValue;
/** The bytes, NUL-terminated besides; the host's memory, valid until the object's document closes. `length` may be
 * null. */
inline constexpr Slot<&gLexHFT, 20, const char *(LexObj obj, std::int32_t *length)> LexStringValue;

/** Object number of an indirect object, 0 for others: for messages, never an identity. */
inline constexpr Slot<&gLexHFT, 21, std::int32_t(LexObj obj)> LexObjGetID;

/** Value under `key` of a dictionary or of a stream's dictionary; the null object when absent. */
inline constexpr Slot<&gLexHFT, 22, LexObj(LexObj dict, KRAtom key)> LexDictGet;
/** A null value removes the key. Raises KRErrBadParam for a value of another document and for a direct cycle. */
inline constexpr Slot<&gLexHFT, 23, void(LexObj dict, KRAtom key, LexObj value)> LexDictPut;
inline constexpr Slot<&gLexHFT, 24, void(LexObj dict, KRAtom key)> LexDictRemove;
/** False also for a key whose value is null. */
inline constexpr Slot<&gLexHFT, 25, KRBool(LexObj dict, KRAtom key)> LexDictKnown;

/** The null object for an index past the end; raises KRErrBadParam for a negative one. */
inline constexpr Slot<&gLexHFT, 26, LexObj(LexObj array, std::int32_t index)> LexArrayGet;
/** Stores; past the end the array grows with nulls. */
inline constexpr Slot<&gLexHFT, 27, void(LexObj array, std::int32_t index, LexObj value)> LexArrayPut;
/** Inserts before `index`; at or past the end appends. */
inline constexpr Slot<&gLexHFT, 28, void(LexObj array, std::int32_t index, LexObj value)> LexArrayInsert;
/** Removes the first element that is this object; nothing when there is none. */
inline constexpr Slot<&gLexHFT, 29, void(LexObj array, LexObj value)> LexArrayRemove;
inline constexpr Slot<&gLexHFT, 30, std::int32_t(LexObj array)> LexArrayLength;

/** Length of the raw data, whatever `Length` says. The decoded data may be longer or shorter: read to its end. */
inline constexpr Slot<&gLexHFT, 31, std::int32_t(LexObj stream)> LexStreamLength;
inline constexpr Slot<&gLexHFT, 32, LexObj(LexObj stream)> LexStreamDict;
enum LexStreamMode : std::int32_t { LexStreamRaw = 1, LexStreamDecoded = 2 };
/** Raises KRErrBadStream for data that cannot be decoded or passes the host's limit. The caller closes the stream. */
inline constexpr Slot<&gLexHFT, 33, KRStm(LexObj stream, std::int32_t mode)> LexStreamOpenStm;

/** The catalog; for an FDF its root dictionary. */
inline constexpr Slot<&gLexHFT, 34, LexObj(LexDoc doc)> LexDocGetRoot;
/** Opens an FDF. Raises KRErrNotFDF unless "%FDF-" stands within the first 1024 bytes. The caller closes it. */
inline constexpr Slot<&gLexHFT, 35, LexDoc(KRFileSys fs, KRPathName path)> LexDocOpen;
inline constexpr Slot<&gLexHFT, 36, void(LexDoc doc)> LexDocClose;
/** A new object document with an empty root dictionary: used to build FDF. The caller closes it. */
inline constexpr Slot<&gLexHFT, 37, LexDoc()> LexDocCreate;
/** Writes an object document made here or opened from FDF, under the header "%FDF-1.2", as a new file renamed into
 * place. */
inline constexpr Slot<&gLexHFT, 38, void(LexDoc doc, KRFileSys fs, KRPathName path)> LexDocSaveToFile;

/** The trailer dictionary of a PDF document. */
inline constexpr Slot<&gLexHFT, 39, LexObj(LexDoc doc)> LexDocGetTrailer;
