// A field as the holder of a value: value, default, options, type, the two flag words, and what its widget shows.
//
// The value of a group of same-named widgets stands in the group's top dictionary and nowhere else. A display is due
// while DMFieldDisplayDue is set; it is cleared by the next complete display.
// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "FormsTypes.h"
#include "LexHFT.h"

struct DMField;

// Value.

/** `V`, inherited and shared by same-named fields; a check box or radio button without one gives the name `Off`. */
LexObj TSDMFieldGetValue(DMField *field);

/**
 * Changes the value: observers of TSValueWillChange may rewrite or refuse it, it is stored as a direct string (a name
 * for buttons, an array for several choices of a list) at the top of its group, observers of TSValueDidChange
 * calculate, and every widget of the name shows it. False when refused, for a non-terminal field, and for an on-state
 * that no widget has. Re-entry for the same name gives true and does nothing. Read-only is the caller's concern. What
 * an observer raises is raised.
 */
bool TSDMFieldSetValue(DMField *field, LexObj value);

/** For those who wrote `V` themselves: notes that the field has one and lets TSFieldWillDisplay observers see it. */
void TSDMFieldValueChanged(DMDoc doc, DMField *field);

/** Back to the default value; a field without one that has options takes its first choice. False as SetValue. */
bool TSDMFieldReset(DMField *field);

/** Takes `V` out of every dictionary of the name, telling nobody and showing nothing. */
void DMFieldDropValue(DMField *field);

/** Lists the field in the form's `$Vo`: its value goes before the next save. */
void TSDMFieldMarkVolatile(DMField *field);

// What the widget shows.

/**
 * Brings the field's widget to show `value`: by its appearance state when there is a stream for it and the display is
 * not due, else by its handler. An export value shows its option's text. A hidden text or choice field loses `AP`.
 */
void TSDMFieldProduceDisplayFromValue(DMField *field, LexObj value);
/** Marks the display as due and produces it from the value. Nothing while TSFieldDelay is set. */
void TSDMFieldUpdateAppearance(DMField *field);
/** The display is due. */
bool TSDMFieldWasAppearanceUpdated(DMField *field);
/** Marks the display as due, for a field that can display. */
void TSDMFieldAppearanceWasUpdated(DMField *field);

// Options: `Opt`, inherited.

/** The export value of an element of `Opt`: the element, or the first member of a pair (the second if that is null). */
LexObj RetrieveOptVal(LexObj element);
/**
 * Index of the value (of several the first) among the options, the highest of equal ones; -1 when it is none of them.
 * `*name` gets the export value's atom (KRAtomNull when it is no name), `*value` the export value. Either may be null.
 */
std::int32_t TSDMFieldGetOptionIndex(DMField *field, KRAtom *name, LexObj *value);
/** Indexes of all options that the value names, in order: several for a list of which several may be chosen. */
std::vector<std::int32_t> DMFieldGetOptionIndexes(DMField *field);
/** Sets the value to an option; past the end means the first. A negative index gives true and does nothing. */
bool TSDMFieldSetToOptionIndex(DMField *field, std::int32_t index);
/** Stores an array as `Opt` as it is; empty or anything else removes it. 0, or 1 for an invalid field. */
std::int32_t TSDMFieldSetOptions(DMField *field, LexObj options);

// Flags, type, default value.

/** The word that `which`, a TSFlagWord, names; 0 for any other, and for an invalid field. */
std::uint32_t TSDMFieldGetFlags(DMField *field, std::int32_t which);
/** Annotation flags only for a widget; showing a hidden one builds its appearance. Field flags go to the group's top.
 */
void TSDMFieldSetFlags(DMField *field, std::int32_t which, std::uint32_t value);
/** Rereads both words from the dictionaries, here and for all that inherit from here. */
void TSDMFieldUpdateFlags(DMField *field);

/** 0; 1 when refused (one of several widgets cannot change alone); a code when the store failed. Low 12 flags stay. */
std::int32_t TSDMFieldSetType(DMField *field, KRAtom type);

/** Null removes it. 0; 1 when refused: push buttons have none, a choice's default is one of its options. */
std::int32_t TSDMFieldSetDefaultValue(DMField *field, LexObj value);

// The annotation's `MK` and its rotation.

/** `MK` of the annotation, else of its normal appearance; the null object. */
LexObj TSDMAnnotGetMK(DMAnnot annot);
/** Removes `MK` from the annotation, else from its normal appearance. */
void TSDMAnnotRemoveMakerDict(DMAnnot annot);
/** Stores the angle, normalised, as `MK` `R`; 0 removes it. */
void TSDMAnnotSetRotation(DMAnnot annot, std::int32_t degrees);
/** 0 to 359. Without `MK` the appearance's matrix tells, and an angle found there is written to a new `MK`. */
std::int32_t TSDMAnnotGetRotation(DMAnnot annot);
