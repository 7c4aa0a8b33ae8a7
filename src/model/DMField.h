// The record of one field, and what can be asked of it. The field's dictionary is the truth; the record caches a few of
// its entries and holds the links of the tree, so that questions about names and inheritance cost no climbing.
//
//  1. Every record stands in exactly one same-name list, that of the name entry that `name` points into, for as long as
//     it lives. The head is the same-named non-terminal field, if there is one.
//  2. `parent` is set exactly while the record stands in its parent's child list. Only DMFieldLinkChild and
//     DMFieldUnlinkChild touch `parent`, `firstChild` and the sibling links.
//  3. `obj` of a record is indirect, and changes only through DMFieldSetObj: the document's index finds records by it.
//  4. A record whose state has DMFieldInvalid is being built or was wiped; it is in the lists all the same.
//  5. No chain of parents is longer than the limit "field-depth".
// SPDX-License-Identifier: MIT
#pragma once

#include "DocModelHFT.h"
#include "FormsTypes.h"
#include "LexHFT.h"

struct NameStr;

/** A full name has at most this many bytes. */
inline constexpr std::size_t MaxFieldNameLength = 254;

/** Bits of DMField::state; there are no others. */
enum DMFieldState : std::uint32_t {
    /** The record is being built, or has been wiped. */
    DMFieldInvalid = 0x1,
    /** Inside TSDMFieldSetValue. */
    DMFieldSettingValue = 0x2,
    /** Shares its name with other fields. */
    DMFieldSharesName = 0x8,
    /** The display must be made anew at the next update. */
    DMFieldDisplayDue = 0x10,
    /** Its same-named kids are being loaded. */
    DMFieldLoadingKids = 0x20,
    /** Known not to be terminal; stays. */
    DMFieldNotTerminal = 0x40,
    /** Locked against removal. */
    DMFieldLocked = 0x80,
    /** Seen on a page, during TessellaOptimize. */
    DMFieldSeen = 0x200,
    /** The widget wrapped its text. */
    DMFieldWrapped = 0x400,
    /** A display notification of this field is running. */
    DMFieldDisplaying = 0x800
};

struct DMField {
    DMField *parent;
    DMField *nextSameName;
    DMField *nextSibling;
    DMField *firstChild;
    /** The full name, shared by all fields of that name in the document: equal names are equal pointers. Not owned. */
    const NameStr *name;
    LexObj obj;
    /** Which of the entries (masks TSEntry of FormStr.h) this very dictionary holds. */
    std::uint32_t entries;
    /** [0] `F`, own dictionary only; [1] `Ff`, inherited from the parent when absent. */
    std::uint32_t flags[2];
    std::uint32_t state;
    /** `FT`, inherited; KRAtomNull when none. */
    KRAtom type;

    // Beside the structure: links back, so that leaving a list does not walk it. Nobody else uses these.
    /** TSDMFieldIsTerminal went through all children and found them terminal, and nothing has changed since. */
    bool terminalKnown;
    /** Key of this record in the index by object. */
    std::int32_t objectKey;
    /** Top of a group: the length of `Kids` when all of them had records; 0 when one of them has gone since. */
    std::int32_t kidsLoaded;
    DMField *prevSameName;
    DMField *prevSibling;
};
static_assert(sizeof(void *) != 8 || sizeof(DMField) <= 104, "a form may have a hundred thousand of these");

// Finding and making records. All give null during a save, and when the document has no form to put a field into.

/** The field of an indirect field dictionary, made with its ancestors and same-named siblings when it has no record. */
DMField *TSDMFieldFromLexObj(LexObj dict);
/** The last field made or found by name, if it is the field of this dictionary; else null. Makes nothing. */
DMField *TSLexObjGetCachedDMField(LexObj dict);
/** The record of this dictionary, valid or not; null when it has none. Makes nothing, loads nothing. */
DMField *TSLexObjFindDMField(LexObj dict);
/** The field of a `Widget`; null for other annotations. */
DMField *TSDMAnnotGetField(DMAnnot annot);

/** Head of the fields with this full name (raw bytes). On a miss all fields are loaded, if that was not done yet. */
DMField *TSDMDocGetDMFieldFromName(DMDoc doc, const char *name);
/** Head of the same-name list; `name` must be a field's own `name`, and is compared as a pointer. */
DMField *TSLexDocGetDMFieldFromNameStr(LexDoc doc, const NameStr *name);

/** Loads all fields of the form, once. */
void TSDMDocLoadDMFields(DMDoc doc);
/** Loads the fields if the document's script record says that this has yet to be done. Lazy loading goes through here.
 */
void TSDMDocLoadFieldsIfNeeded(DMDoc doc);

/**
 * Enumerates the fields, loading them first: buckets from the last to the first, chains and same-name lists from the
 * front. `terminalOnly` passes over records with children; `firstOfNameOnly` leaves a list after the first call. `proc`
 * may undefine and make fields, also the one that it is called with; a field made meanwhile may or may not be reached.
 */
void TSDMDocEnumDMFields(DMDoc doc, bool terminalOnly, bool firstOfNameOnly, TSFieldEnumProc proc, void *clientData);

// Questions. Every one of them takes a null field and an invalid one, and gives false, null or KRAtomNull for them.

bool TSDMFieldIsValid(const DMField *field);
/** Holds a value of its own: a leaf, or the top of a group of same-named widgets. */
bool TSDMFieldIsTerminal(DMField *field);
/** The dictionary is a widget. */
bool TSDMFieldIsAnnot(const DMField *field);
/** Has a widget to be drawn in its own dictionary. */
bool TSDMFieldCanDisplay(const DMField *field);
/** The parent has the same name and more than one child. */
bool TSDMFieldIsTocayo(const DMField *field);
LexObj TSDMFieldGetLexObj(const DMField *field);
/** Full name in raw bytes, NUL-terminated; valid as long as the field. */
const char *TSDMFieldGetName(const DMField *field);
KRAtom TSDMFieldGetType(const DMField *field);
/** The form dictionary of the field's document; the null object when the field or the form is invalid. */
LexObj TSDMFieldGetTessella(const DMField *field);
/** Null when the field is invalid. */
DMDoc TSDMFieldGetDoc(const DMField *field);
LexDoc TSDMFieldGetLexDoc(const DMField *field);
/** Not valid when the field's dictionary is no widget. */
DMAnnot TSDMFieldGetDMAnnot(const DMField *field);
/** The field itself if it is a widget, else its first child; null if it is not terminal. */
DMField *TSDMFieldDrillToAnnot(DMField *field);

/**
 * The value of any key: of the own dictionary, else of the nearest ancestor that has it, else of the first child. The
 * null object when none has it.
 */
LexObj TSDMFieldGetObj(const DMField *field, KRAtom key);
/** Writes to the own dictionary, unless the inherited value is equivalent already. */
void TSDMFieldPutObj(DMField *field, KRAtom key, LexObj value);

/**
 * An entry by its mask, as forms inherit it. `DA`, `OH`, `DR`, `Q`: the nearest field upward, then the form. `V`, `DV`:
 * the own dictionary, then the first of the same name that has it; a signature's must have `Contents`; a check box or
 * radio button without one gives the name `Off`. Any other mask gives the null object.
 */
LexObj TSDMFieldGetEntry(const DMField *field, std::uint32_t entry);
/** Recomputes `entries` from the dictionary. */
void TSDMFieldUpdateEntries(DMField *field);
/** Notes in `entries` that the dictionary holds an entry now. Values and defaults are noted in no other way. */
void DMFieldNoteEntry(DMField *field, std::uint32_t entry);

/** A dictionary whose `Subtype` is `Widget`; false for any other object. */
bool DictIsWidget(LexObj dict);

/** The page of a page dictionary, acquired; null when the object is none or the host refuses. */
DMPage TSDMPageAcquireFromLexObj(LexObj page);

// Names.

/** A name in the caller's memory, NUL-terminated. */
struct FieldName {
    char text[MaxFieldNameLength + 2];
    std::size_t length;
};
/**
 * What a title (the value of `T`) stands for in a full name. Names are bytes in PDFDocEncoding; other writers give
 * titles in UCS-2, which holds zero bytes, so a marked title is brought to PDFDocEncoding, or to UTF-8 when that loses.
 * At most 253 bytes are taken. Titles are compared in this form. False when the object is no string.
 */
bool FieldTitleText(LexObj title, FieldName *text);
/**
 * The full name of a field dictionary: the title texts of its path joined by dots. False when it has none: no
 * `T` on a root, a `T` that is no string, 255 bytes or more, a path that is too deep. Raises KRErrBadResource for a dot
 * in the `T` of a kid. A parent with a record gives its name without climbing on.
 */
bool FormFieldNameAcquire(LexObj dict, FieldName *name);

// For those who edit the tree. These keep the invariants at the top of this file.

/** Reads flags, entries and type from the dictionary. The parent must be linked. */
void PopulateDMField(DMField *field);
/**
 * Finishes a record in place: populates it, makes it valid, produces the display if that is due. What is raised on the
 * way undefines the record and is raised again.
 */
void DMFieldComplete(DMField *field);
/**
 * Links a record to the field of its dictionary's `Parent`, which is made when needed, and loads its same-named
 * siblings when it is the first of them. False when there is no such field; the caller then undefines the record.
 */
bool DMFieldLinkToParent(DMField *field);
/**
 * Puts a record at the front of a parent's children; nothing when it is there. It leaves another parent first. False,
 * and nothing done, when that would make a cycle or pass the limit "field-depth".
 */
bool DMFieldLinkChild(DMField *parent, DMField *child);
/** Takes a record out of its parent's children, if it has a parent. Dictionaries stay as they are. */
void DMFieldUnlinkChild(DMField *child);
/**
 * Clears a record to be rebuilt in place: it keeps name, dictionary, same-name links, children and state, leaves its
 * parent, and is invalid.
 */
void DMFieldWipe(DMField *field);
/** The topmost ancestor with the same name; the field itself when its parent has another name. */
DMField *DMFieldTopOfName(DMField *field);

/**
 * Takes apart a non-terminal dictionary whose place is inside another root: each kid gets the dotted name of its path
 * as its own `T` and loses `Parent`, inheriting what the dictionary had. A dictionary without `T` is destroyed.
 */
void TSLexDictRemoveHierarchy(LexObj dict);
