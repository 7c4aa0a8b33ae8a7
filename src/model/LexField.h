// The shape of the field tree: hangs dictionaries into it under dotted names, takes them out, copies and renames them.
//
// Invariants that every operation keeps, in the dictionaries (T, Parent, Kids, Fields), in the records and in the
// name index alike:
//  1. A full name is the T texts of the path joined by "."; no T holds one.
//  2. A dictionary without T but with Parent has its parent's full name.
//  3. Fields of one full name are the widgets of one logical field. Their only form is a group: a top dictionary with
//     T, FT, Ff, the value entries and Opt, whose Kids are widgets without T.
//  4. The top of a group counts as terminal and stands first in its same-name list.
//  5. A field merged with its widget in one dictionary has no Kids.
// SPDX-License-Identifier: MIT
#pragma once

#include "FormsTypes.h"
#include "LexHFT.h"

struct DMField;

/**
 * Hangs an indirect dictionary into the form under a full name (raw bytes), making the form and the nodes on the way.
 * Null when something stands in the way: a terminal field on the path, a clash of types, a name that is empty or too
 * long. Then `T` and `Parent` are removed from the dictionary; nodes already made stay. The same when it raises, which
 * it does with KRErrBadParam for the name of a node. A dictionary that is a field of this name already gives that
 * field; one that is a field of another name leaves it first. Null, with nothing changed, during a save and for a
 * dictionary with fields below it.
 */
DMField *TSLexDictDefineField(LexObj dict, const char *fullName);

/**
 * The same for a `Widget`, whose appearance is then brought up to date. A widget with a field gives that field,
 * whatever `name` says.
 */
DMField *TSDMAnnotDefineField(DMAnnot annot, const char *name);

/**
 * Prepares `dict` as a further widget beside `field`: the single field becomes a group, or the group takes one more.
 * True when it did. False for different types and when an observer of TSFieldDidSplit rejects (the split stands).
 * Raises KRErrBadParam for a field that is not terminal.
 */
bool TSDMFieldNewTocayo(DMField *field, LexObj dict);

/**
 * Gives a dictionary its title (null removes `T`) and makes or rebuilds its record. Entries that the parent already
 * has go, and the dictionary ends last among its siblings. Null when the dictionary cannot be a field; a record that
 * fails TSDMFieldIsValidCheckType is given back as it is.
 */
DMField *TSLexDictSetTitleGetField(LexObj dict, LexObj title);

/** Valid, and no field of its name has another type. Null gives false. */
bool TSDMFieldIsValidCheckType(DMField *field);

/**
 * The record of a dictionary, null when there is none; it makes none. With `wipe` the record is cleared to be rebuilt
 * in place: it keeps its name, object, state and same-name links, leaves its parent's child list, and is invalid.
 */
DMField *EnsureNoDMFieldForDict(LexObj dict, bool wipe);

/** Keeps the field of a widget from being removed, or lets it go. */
void TSDMAnnotLockField(DMAnnot annot, bool lock);

/**
 * Takes a widget's field away; the annotation stays, without `T`, `Parent`, `V` and `Opt`. With `keepValue` a field
 * that is alone under its name goes on as a value without a widget. Nothing for a locked field. `flag` has no effect.
 */
void TSDMAnnotRemoveField(DMAnnot annot, DMPage page, bool flag, bool keepValue);

/**
 * Makes the indirect dictionary `target` a field like `source`, in the same document or another. `name` null means the
 * source's; another name starts without a value. With `fresh` the appearance is rebuilt. Null on failure.
 */
DMField *TSLexDictCopyField(LexObj target, DMField *source, const char *name, bool fresh, bool noActions);

/** Replaces the indirect values of a dictionary, but `Parent`, by copies: it shares nothing with its old place. */
void TSLexDictReplaceIndirects(LexObj dict);

/**
 * The field under its new name, with its looks, flags, actions and place in the calculation order, and reset. An equal
 * name gives the field; the name of a terminal field makes it one of that field's widgets. Raises KRErrBadParam, with
 * nothing changed, for a field with children, an empty name, and a name that is a node's or stands below a widget. Null
 * when an observer took the field away meanwhile.
 */
DMField *TSDMFieldRename(DMField *field, const char *newName);
