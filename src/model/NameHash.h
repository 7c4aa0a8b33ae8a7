// A document's index of its fields by full name, and the block that owns all of a document's field records.
//
// The chains and lists below are the order of enumeration, which exports and scripts can see. Beside them stand indexes
// that only answer questions; each says which order it leaves alone. Both are changed by the same few operations.
//
//  1. A name entry lives as long as a field has its name; `head` is never null.
//  2. A record is freed by TSDMFieldUndefine, or by DocFreeLex with all others; nothing else frees one.
//  3. A block marked `closing` holds no records and waits to be freed.
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "KRErrors.h"
#include "base/NameStr.h"
#include "model/DMField.h"
#include "model/FieldArray.h"
#include "model/LexObjSet.h"

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
    /** The last field created or found by name. */
    DMField *lastField = nullptr;
    /** New entries go to the front. */
    NameEntry *buckets[NameHashBucketCount] = {};
    /** All fields of `Fields` have been scanned. */
    bool loaded = false;
    /** Fields may be read and made; clear during a save. */
    bool editOK = true;
    /** The document is going away; the block waits to be freed. */
    bool closing = false;
    std::uint32_t fieldCount = 0;

    /** Entries by full name, beside the chains: the order within `buckets` is untouched by it. */
    std::unordered_map<std::string_view, NameEntry *> byName;
    /** Records by object number, beside the same-name lists: LexObjEqual decides, and it orders nothing. */
    std::unordered_multimap<std::int32_t, DMField *> byObject;
    /** Members of long `Fields` and `Kids` arrays, beside the arrays, whose order it leaves alone. */
    FieldArrayIndex arrays;
    /** Tops of groups whose kids were loaded, with the length of their `Kids` then; emptied when a field is undefined.
     */
    std::unordered_map<const DMField *, std::int32_t> kidsLoaded;
    /** Widgets under a dotted title that are on their way into the tree, without title and parent for the moment. */
    std::vector<LexObj> moving;
    /** Those that are through with it and still stand in `Fields`; they leave it together when the load is through. */
    LexObjSet moved;
    /** TSDMDocLoadDMFields is scanning. */
    bool loading = false;
    /** The name `Off` that buttons without a value read as, made once. */
    LexObj offName = LexNullObj;
    /** Tells a block whose document is gone, should its handle be given out again: the catalog reads as null then. */
    LexObj catalog = LexNullObj;
    /** The innermost running enumeration. */
    FieldCursor *cursors = nullptr;
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

/** A block for the document without making it writable. */
void TSDMDocAcquireFormsData(DMDoc doc);
/** Drops the index and frees the block. */
void TSDMDocReleaseFormsData(DMDoc doc);

/** The entry of a full name; null when no field has it. Makes and loads nothing. */
NameEntry *NameHashFind(DocHashControl *control, std::string_view name);

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
/**
 * Frees a record and takes its dictionary out of the tree: out of `Fields`, or out of the parent's `Kids`, and then a
 * parent left without kids goes as well, up to the root. Server 6 hears of a terminal field that is alone under its
 * name from now on. Children of the field lose their parent. Null allowed.
 */
void TSDMFieldUndefine(DMField *field);

/**
 * TSDMFieldUndefine for many fields of one document. The dictionaries leave their arrays together in Finish, so that a
 * long array is gone through once and not once for each; until then they still stand there.
 */
class FieldRemoval {
public:
    FieldRemoval() = default;
    /** Finishes, what is raised then being lost. */
    ~FieldRemoval();
    FieldRemoval(const FieldRemoval &) = delete;
    FieldRemoval &operator=(const FieldRemoval &) = delete;

    /** Null allowed. Raises nothing: what observers raised comes out of Finish. */
    void Undefine(DMField *field);
    void Finish();

private:
    struct Leaving {
        LexObj owner;
        KRAtom key;
        LexObjSet dicts;
    };
    void NoteLeaving(LexObj owner, KRAtom key, LexObj dict);
    void LeaveArray(const Leaving &leaving);

    std::vector<Leaving> leaving_;
    /** Places in `leaving_` by the owner's object number. */
    std::unordered_multimap<std::int32_t, std::size_t> byOwner_;
    KRErrorCode kept_ = KRErrNone;
};

/**
 * Frees all records and names of a document without touching a dictionary. With `closing` the block takes no more
 * fields and waits to be freed.
 */
void DocFreeLex(DMDoc doc, bool closing);
/** Frees the blocks of closed documents, with a view or without. */
void CleanUpOpenDocsHashControls();
