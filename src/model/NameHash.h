// The index of a document's fields: by full name in 23 hash chains, whose order is the order of enumeration, which
// exports and scripts can see. Beside the chains stand indexes and notes that only answer questions. What stands here
// is changed in groups; of each group one pair of routines knows all members.
//
// Names (EnterName, LeaveName of NameHash.cpp): `buckets`, `byName`, the same-name lists, DMFieldSharesName,
// `fieldCount`
//  1. A name entry stands in the chain of its name's bucket and in `byName`, for as long as a field has its name.
//  2. A record stands in the list of the entry that its `name` points into, once. `tail` ends the list.
//  3. All fields of a list of several have DMFieldSharesName.
//  4. `fieldCount` is the number of records.
// Objects (EnterObject, LeaveObject of NameHash.cpp): `byObject`, `lastField`
//  5. A record stands in `byObject` under its `objectKey`, once. `lastField` is a record or null.
// Tree (DMFieldLinkChild, DMFieldUnlinkChild of DMFieldLinks.cpp): the links of DMField, `terminalKnown`, `kidsLoaded`
//  6. `parent` is set exactly while the record stands in its parent's list of children, once.
//  7. A record known as terminal has only children of its own name.
// Notes (DMFieldNoteEntry; a bit that leaves `entries` makes none of them false): `absent`
//  8. No field of a list has an entry that the list's `absent` names.
// Life (FreeIndex, and the routines above for what leaves alone): `cursors`, `closing`
//  9. A running enumeration stands on records and entries that live, or has ended.
// 10. A block marked `closing` holds no records and waits to be freed.
//
// They hold whenever no record is on its way out (`leaving`); DocHashCheck (NameHashCheck.h) tests them. A record is
// freed by FieldRemoval, or by DocFreeLex with all others; nothing else frees one.
// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>
#include <unordered_map>

#include "KRErrors.h"
#include "base/NameStr.h"
#include "model/DMFieldRecord.h"
#include "model/DocStamp.h"
#include "model/FieldArrayIndex.h"

/** All fields of one full name. `name` comes first: a field's `name` pointer is its entry's address. */
struct NameEntry {
    NameStr name;
    NameEntry *next;
    DMField *head;

    // Beside the structure: the list's end, and the way back in the chain. They spare walks and order nothing.
    DMField *tail;
    NameEntry *prev;
    /** Entries (TSEntryV, TSEntryDV) that no field of the list was found to hold, and none has got since. */
    std::uint32_t absent;
};

/** The entry of a field's name. */
inline NameEntry *NameEntryOf(const DMField *field) {
    return reinterpret_cast<NameEntry *>(const_cast<NameStr *>(field->name));
}

inline constexpr unsigned NameHashBucketCount = 23;

/** What a running enumeration comes to next; records and entries that go away meanwhile move it on. */
struct FieldCursor {
    FieldCursor *outer = nullptr;
    NameEntry *entry = nullptr;
    DMField *field = nullptr;
    /** The index was dropped: there is no next, and the block may be gone. */
    bool ended = false;
};

/** Per-document control block. */
struct DocHashControl {
    DocHashControl *next = nullptr;
    DMDoc doc = nullptr;
    LexDoc lexDoc = nullptr;
    DocStamp stamp;

    // Names.
    /** New entries go to the front. */
    NameEntry *buckets[NameHashBucketCount] = {};
    /** Entries by full name: the order within `buckets` is untouched by it. */
    std::unordered_map<std::string_view, NameEntry *> byName;
    std::uint32_t fieldCount = 0;

    // Objects.
    /** Records by object number, beside the same-name lists: LexObjEqual decides, and it orders nothing. */
    std::unordered_multimap<std::int32_t, DMField *> byObject;
    /** The last field created or found by name: who found a field by name asks for it by its dictionary next. */
    DMField *lastField = nullptr;

    // Life.
    /** All fields of `Fields` have been scanned. */
    bool loaded = false;
    /** Pages are coming in: roots that belong into others are merged. */
    bool assembling = false;
    /** Fields may be read and made; clear during a save. */
    bool editOK = true;
    /** The document is going away; the block waits to be freed. */
    bool closing = false;
    /** The innermost running enumeration. */
    FieldCursor *cursors = nullptr;
    /** Records that have left their lists and are still linked in the tree, while observers hear of it. */
    std::uint32_t leaving = 0;

    // Helpers, each true by itself.
    /** Members of long `Fields` and `Kids` arrays, beside the arrays, whose order it leaves alone. */
    FieldArrayIndex arrays;
    /** The name `Off` that buttons without a value read as, made once. */
    LexObj offName = LexNullObj;
    /** Edits since all invariants were last tested; counted in debug builds. */
    std::uint32_t editsSinceCheck = 0;
    /** Helvetica under resource names that no resources define: the fields of a name share one copy. */
    std::unordered_map<KRAtom, LexObj> namedHelveticas;
};

/** The blocks of all documents that were touched, newest first. */
extern DocHashControl *OpenDocsHashControls;

/**
 * Bucket of a name of `length` bytes (of which the low eight bits count). A name of one byte has a formula of its own;
 * files' orders depend on it.
 */
unsigned StrGetBucket(const char *text, std::size_t length);

/**
 * The document's block, made when there is none: that frees the blocks of closed documents and makes the document
 * writable. Null for an object store that is no document's.
 */
DocHashControl *TSLexDocGetHashHead(LexDoc doc);
/** The block, or null when there is none. Makes nothing. */
DocHashControl *TSLexDocFindHashHead(LexDoc doc);
DocHashControl *TSDMDocFindHashHead(DMDoc doc);

/** Fields of the document may be read and made. */
bool TSLexDocEditOK(LexDoc doc);

// For an import that makes a document which no view opens.

/** A block for the document without making it writable. */
void TSDMDocAcquireFormsData(DMDoc doc);
/** Drops the index and frees the block. */
void TSDMDocReleaseFormsData(DMDoc doc);

/** The entry of a full name; null when no field has it. Makes and loads nothing. */
NameEntry *NameHashFind(DocHashControl *control, std::string_view name);

/** The record of this dictionary, valid or not; null when it has none. Makes nothing, loads nothing. */
DMField *TSLexObjFindDMField(LexObj dict);
/** The last field made or found by name, if it is the field of this dictionary; else null. Makes nothing. */
DMField *TSLexObjGetCachedDMField(LexObj dict);

/**
 * A cleared, invalid record for an indirect dictionary, entered under its full name; null when fields cannot be made
 * now.
 */
DMField *AllocDMField(std::string_view name, LexObj dict);
/**
 * Enters a new record: a dictionary with `Kids` goes to the head of its same-name list, any other to the tail. 0 on
 * success; 1 after freeing the record when the document cannot take fields or the name is too long. Raises
 * KRErrNoMemory, the record freed.
 */
std::int32_t TSDMFieldDefine(DMField *field, std::string_view name);
/** Gives a record another dictionary. */
void DMFieldSetObj(DMField *field, LexObj dict);
/**
 * Takes a record out of its name's list and out of the index by object, and frees an entry that is left without fields.
 * TSFieldDidJoin observers hear of a whole field that is alone under its name from now on. Gives the code of what one
 * of them raised.
 */
KRErrorCode NameHashLeave(DocHashControl *control, DMField *field);

/**
 * Frees all records and names of a document without touching a dictionary. With `closing` the block takes no more
 * fields and waits to be freed.
 */
void DocFreeLex(DMDoc doc, bool closing);
/** Frees the blocks of closed documents, with a view or without. */
void CleanUpOpenDocsHashControls();
