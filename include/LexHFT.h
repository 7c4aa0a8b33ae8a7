// The Lex table: the object layer of PDF and FDF files.
//
// Objects belong to their document and are never given back: a reference is good until the document closes, and reads
// as null from then on. Reading what is not there gives the null object; an operation on an object of the wrong type
// raises KRErrBadParam. A change reaches the file at the next save, and marks the document dirty when the object is
// part of what the file will hold. Keys and names are atoms without the slash.
//
// A direct object has one place, in what holds it; an indirect one has a number and is referred to.
// SPDX-License-Identifier: MIT
#pragma once

#include "HFT.h"

/** Set by the entry code. */
inline KRHFT gLexHFT = nullptr;
inline constexpr std::uint32_t LexHFTVersion = KRVersion(4, 2);
inline constexpr int LexHFTCount = 39;

/** The null object, as every absent thing reads. */
inline constexpr LexObj LexNullObj{0, 0};

/**
 * The same object: equal references, not equal contents. Two nulls are equal. Containers, strings and all indirect
 * objects are told apart by their places, whatever they hold. A direct integer, real, boolean or name has no identity
 * of its own: it cannot change, and those of one document that have the same value are mostly one object in many
 * places. So for two of these true means equal values, and false means nothing.
 */
inline constexpr Slot<&gLexHFT, 1, KRBool(LexObj a, LexObj b)> LexObjEqual;
/** A LexType. LexNull for the null object, a destroyed object and one whose document is closed. Never raises. */
inline constexpr Slot<&gLexHFT, 2, std::int32_t(LexObj obj)> LexObjGetType;
/** Has an object number; false for null. Never raises. */
inline constexpr Slot<&gLexHFT, 3, KRBool(LexObj obj)> LexObjIsIndirect;
/**
 * For a dictionary or the dictionary of a stream: `key` is the name object of the key. For an array: the element
 * stands in `key`, `value` is null. False stops the walk. The walk runs over the entries as they were at its start.
 */
using LexEnumProc = KRBool (*)(LexObj key, LexObj value, void *clientData);
/**
 * Walks the keys of a dictionary or of a stream's, without those whose value is null, or an array by its indexes, nulls
 * among them. True when the walk came to its end. Raises what `proc` raises.
 */
inline constexpr Slot<&gLexHFT, 4, KRBool(LexObj obj, LexEnumProc proc, void *clientData)> LexObjEnum;
/** The document that the object belongs to; null for the null object. Never raises. */
inline constexpr Slot<&gLexHFT, 5, LexDoc(LexObj obj)> LexObjGetDoc;

// New objects. A direct one stands alone until it is put somewhere; with `indirect` 1 it gets a number, and is in the
// file once something in the file refers to it. `doc` is the document that it will belong to. All raise KRErrBadParam
// for a document that is not open, and KRErrNoMemory.

/** The null object, LexNullObj: it belongs to no document. */
inline constexpr Slot<&gLexHFT, 6, LexObj()> LexNewNull;
/** A whole number. */
inline constexpr Slot<&gLexHFT, 7, LexObj(LexDoc doc, KRBool indirect, std::int32_t value)> LexNewInteger;
/** A real of at most five decimals, which read back as the very same 16.16. */
inline constexpr Slot<&gLexHFT, 8, LexObj(LexDoc doc, KRBool indirect, KRFixed value)> LexNewFixed;
/** True for any `value` but 0. */
inline constexpr Slot<&gLexHFT, 9, LexObj(LexDoc doc, KRBool indirect, KRBool value)> LexNewBoolean;
/** A name by its atom; KRErrBadParam for KRAtomNull. */
inline constexpr Slot<&gLexHFT, 10, LexObj(LexDoc doc, KRBool indirect, KRAtom value)> LexNewName;
/** A string of `length` bytes, which are copied and may hold NUL. */
inline constexpr Slot<&gLexHFT, 11, LexObj(LexDoc doc, KRBool indirect, const char *bytes, std::int32_t length)>
    LexNewString;
/** An empty array. `sizeHint` is how many elements are expected; it binds nobody. */
inline constexpr Slot<&gLexHFT, 12, LexObj(LexDoc doc, KRBool indirect, std::int32_t sizeHint)> LexNewArray;
/** An empty dictionary. `sizeHint` as above. */
inline constexpr Slot<&gLexHFT, 13, LexObj(LexDoc doc, KRBool indirect, std::int32_t sizeHint)> LexNewDict;
/**
 * A stream object (always indirect) from `source`, which is read before the call returns and stays the caller's.
 * `start` bytes are skipped and `length` taken; -1 for either means from here and to the end. With `encode` the
 * data is decoded and is encoded by the filters of `attributes`; without, it is stored as it stands. `attributes`
 * (a direct dictionary or null) becomes the stream's dictionary; `encodeParms` is null or the `DecodeParms`. Raises
 * what reading `source` raises, and KRErrBadStream for more data than the host's limit.
 */
inline constexpr Slot<&gLexHFT, 14,
                      LexObj(LexDoc doc, KRBool indirect, KRStm source, std::int32_t start, KRBool encode,
                             LexObj attributes, LexObj encodeParms, std::int32_t length)>
    LexNewStream;
/**
 * Takes an indirect object out of the file: references to it read as null at once, wherever they stand. A direct
 * container that nothing holds is gone likewise; a direct object that stands somewhere is left alone, as are null and
 * the trailer.
 */
inline constexpr Slot<&gLexHFT, 15, void(LexObj obj)> LexObjDestroy;

// Values. Each raises KRErrBadParam for an object of another type: ask LexObjGetType first.

/** Of a LexInteger; numbers beyond 32 bits are clamped. */
inline constexpr Slot<&gLexHFT, 16, std::int32_t(LexObj obj)> LexIntegerValue;
/** Of a LexFixed: 16.16, rounded to nearest, clamped. A whole number of a file is a LexInteger. */
inline constexpr Slot<&gLexHFT, 17, KRFixed(LexObj obj)> LexFixedValue;
/** Of a LexBoolean: 0 or 1. */
inline constexpr Slot<&gLexHFT, 18, KRBool(LexObj obj)> LexBooleanValue;
/** Of a LexName: its atom. Raises KRErrNoMemory when no atom is left for a new text. */
inline constexpr Slot<&gLexHFT, 19, KRAtom(LexObj obj)> LexNameValue;
/**
 * Of a LexString: its bytes, decrypted, NUL-terminated besides; the host's memory, valid until the object's document
 * closes. `*length` gets their number; `length` may be null.
 */
inline constexpr Slot<&gLexHFT, 20, const char *(LexObj obj, std::int32_t *length)> LexStringValue;

/** Object number of an indirect object, 0 for others: for messages, never an identity. Never raises. */
inline constexpr Slot<&gLexHFT, 21, std::int32_t(LexObj obj)> LexObjGetID;

// Dictionaries. A stream stands for its dictionary in all four. A key whose value is null is as good as absent.

/** Value under `key` of a dictionary or of a stream's dictionary; the null object when absent. */
inline constexpr Slot<&gLexHFT, 22, LexObj(LexObj dict, KRAtom key)> LexDictGet;
/**
 * Stores `value` under `key`, in place of a former one; a null value removes the key. A direct container may be put in
 * more than one place, and then changes in all of them. Raises KRErrBadParam for a value of another document, a direct
 * cycle, and direct containers nested deeper than the host's limit.
 */
inline constexpr Slot<&gLexHFT, 23, void(LexObj dict, KRAtom key, LexObj value)> LexDictPut;
/** Takes a key out; nothing when it is not there. The value lives on, if anybody refers to it. */
inline constexpr Slot<&gLexHFT, 24, void(LexObj dict, KRAtom key)> LexDictRemove;
/** The key is there with a value; false also for a key whose value is null. */
inline constexpr Slot<&gLexHFT, 25, KRBool(LexObj dict, KRAtom key)> LexDictKnown;

// Arrays, by indexes from 0. A negative index raises KRErrBadParam; values as for LexDictPut.

/** The element; the null object for an index past the end. */
inline constexpr Slot<&gLexHFT, 26, LexObj(LexObj array, std::int32_t index)> LexArrayGet;
/** Stores in place of an element; past the end the array grows with nulls, up to the host's limit. */
inline constexpr Slot<&gLexHFT, 27, void(LexObj array, std::int32_t index, LexObj value)> LexArrayPut;
/** Inserts before element `index`, and moves the rest up; at or past the end it appends. */
inline constexpr Slot<&gLexHFT, 28, void(LexObj array, std::int32_t index, LexObj value)> LexArrayInsert;
/**
 * Removes the first element for which LexObjEqual is true; nothing when there is none. For a direct number, boolean or
 * name that is the first of this value that counts as the same object: who means a certain element of such an array
 * rebuilds the array. Null elements are never found.
 */
inline constexpr Slot<&gLexHFT, 29, void(LexObj array, LexObj value)> LexArrayRemove;
/** How many elements there are, nulls among them. */
inline constexpr Slot<&gLexHFT, 30, std::int32_t(LexObj array)> LexArrayLength;

// Streams.

/**
 * Bytes of the raw data, whatever `Length` says, clamped to 31 bits. The decoded data may be longer or shorter: read to
 * its end. Raises KRErrBadStream when the file cannot give them.
 */
inline constexpr Slot<&gLexHFT, 31, std::int32_t(LexObj stream)> LexStreamLength;
/** The stream's own dictionary, a direct one: what is changed in it is changed in the stream. */
inline constexpr Slot<&gLexHFT, 32, LexObj(LexObj stream)> LexStreamDict;
/** How a stream's data is wanted. */
enum LexStreamMode : std::int32_t {
    /** Decrypted, encoded by its filters as the file has it. */
    LexStreamRaw = 1,
    LexStreamDecoded = 2
};
/**
 * The data as it is now, for KRStmRead; the caller closes it with KRStmClose. `mode` is a LexStreamMode. Raises
 * KRErrBadStream for data that cannot be decoded or passes the host's limit.
 */
inline constexpr Slot<&gLexHFT, 33, KRStm(LexObj stream, std::int32_t mode)> LexStreamOpenStm;

// Documents. A PDF is opened and closed through DocModelHFT.h; these open and close FDF files.

/** The catalog of a PDF; the root dictionary of an FDF. */
inline constexpr Slot<&gLexHFT, 34, LexObj(LexDoc doc)> LexDocGetRoot;
/**
 * Opens an FDF and reads it whole; the caller closes it with LexDocClose. Raises KRErrNotFDF unless "%FDF-" stands
 * within the first 1024 bytes, KRErrBadPDF for one that cannot be repaired, KRErrNoMemory for one above the host's
 * limit, and the file errors.
 */
inline constexpr Slot<&gLexHFT, 35, LexDoc(KRFileSys fs, KRPathName path)> LexDocOpen;
/** Closes an FDF; what was not saved is lost. Raises KRErrBadParam for a PDF's store, which is the document's. */
inline constexpr Slot<&gLexHFT, 36, void(LexDoc doc)> LexDocClose;
/** A new FDF with an empty root dictionary, for the caller to fill, save and close with LexDocClose. */
inline constexpr Slot<&gLexHFT, 37, LexDoc()> LexDocCreate;
/**
 * Writes an FDF, made here or opened, under the header "%FDF-1.2", as a new file renamed into place: a former file is
 * untouched on every failure. Raises KRErrBadParam for a PDF's store, and the file errors.
 */
inline constexpr Slot<&gLexHFT, 38, void(LexDoc doc, KRFileSys fs, KRPathName path)> LexDocSaveToFile;

/** The trailer dictionary: what stands beside the catalog, such as `Info` and `ID`. */
inline constexpr Slot<&gLexHFT, 39, LexObj(LexDoc doc)> LexDocGetTrailer;
