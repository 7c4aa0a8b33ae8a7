// What can be asked of a field, and how its record comes to be.
// SPDX-License-Identifier: MIT
#pragma once

#include "DocModelHFT.h"
#include "FormsTypes.h"
#include "LexHFT.h"
#include "model/DMFieldLinks.h"
#include "model/DMFieldRecord.h"

// Finding and making records. All give null during a save, and when the document has no form to put a field into.

/** The field of an indirect field dictionary, made with its ancestors and same-named siblings when it has no record. */
DMField *TSDMFieldFromLexObj(LexObj dict);
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
/** The dictionary is a widget. */
bool TSDMFieldIsAnnot(const DMField *field);
/** Has a widget to be drawn in its own dictionary. */
bool TSDMFieldCanDisplay(const DMField *field);
/** For those who lay out forms. The parent has the same name and more than one child. */
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
/** For exports and scripts, which ask a group by one widget. The field itself if it is a widget, else its first child;
 * null if it is not terminal. */
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

/** For actions, which name pages by their dictionaries. The page, acquired; null when the object is none or the host
 * refuses. */
DMPage TSDMPageAcquireFromLexObj(LexObj page);

// For those who edit the tree. These keep the invariants at the top of this file.

/** Reads flags, entries and type from the dictionary. The parent must be linked. */
void PopulateDMField(DMField *field);
/**
 * Finishes a record in place: populates it, makes it valid, produces the display if that is due. What is raised on the
 * way undefines the record and is raised again.
 */
void DMFieldComplete(DMField *field);
/** The field of a dictionary in `Fields` that has no title: it has the empty name. */
DMField *DMFieldCreateNameless(LexObj root);
/**
 * Links a record to the field of its dictionary's `Parent`, which is made when needed, and loads its same-named
 * siblings when it is the first of them. False when there is no such field; the caller then undefines the record.
 */
bool DMFieldLinkToParent(DMField *field);
/**
 * Takes apart a non-terminal dictionary whose place is inside another root: each kid gets the dotted name of its path
 * as its own `T` and loses `Parent`, inheriting what the dictionary had. A dictionary without `T` is destroyed.
 */
void TSLexDictRemoveHierarchy(LexObj dict);
