// The calculation order of a document: a list of full field names, kept in memory while the document is open and as the
// array `CO` of field dictionaries in the form. Names are listed, not fields, since a field's record changes under a
// rename or a reload; a name is turned into a field at each use.
// SPDX-License-Identifier: MIT
#pragma once

#include "DocModelHFT.h"
#include "FormsTypes.h"
#include "model/CalcArray.h"

/** Append, as an index of TSCalcArrayInsertEntry. */
inline constexpr std::int32_t TSCalcArrayEnd = 0x7FFFFFFF;

TSCalcArray *TSCalcArrayNew();
/** A copy of its own; empty for an empty or null source. */
TSCalcArray *TSCalcArrayCopy(const TSCalcArray *source);
/** Null allowed. */
void TSCalcArrayDelete(TSCalcArray *array);
void TSCalcArrayInit(TSCalcArray *array);
/** For the dialog that edits the order, as TSCalcArraySetNthEntry. The same names in the same order. */
bool TSCalcArrayEq(const TSCalcArray *a, const TSCalcArray *b);
/** 0 for null. */
std::int32_t TSCalcArrayGetNumEntries(const TSCalcArray *array);
/** The field of the name at `index`; null when there is none, or no such index. */
DMField *TSCalcArrayGetNthEntry(DMDoc doc, const TSCalcArray *array, std::int32_t index);
/** Nothing for an index outside the list. */
void TSCalcArraySetNthEntry(TSCalcArray *array, std::int32_t index, const DMField *field);
/** Index of the first entry of this name, or -1. */
std::int32_t TSCalcArrayGetFieldIndex(const TSCalcArray *array, const char *name);
/** Inserts the field's name before `index`, which is clamped to 0 and to the count. */
void TSCalcArrayInsertEntry(TSCalcArray *array, std::int32_t index, const DMField *field);
/** Nothing for an index outside the list. */
void TSCalcArrayDeleteEntry(TSCalcArray *array, std::int32_t index);

/** Fills the list from `CO`. Elements that are no fields are left out; what cannot be read ends the list. */
void TSDMDocGetCalcArray(DMDoc doc, TSCalcArray *array);
/** Writes the list to `CO`; an empty one removes `CO` and makes nothing. A name without a field is written as null. */
void TSDMDocSetCalcArray(DMDoc doc, const TSCalcArray *array);

/** The document's working list, made and filled from `CO` when it has none; null without a record. */
TSCalcArray *TJSGetCalcArray(DMDoc doc);
/** Lists a field that has a calculate action, last, unless it is listed. True when it is listed then. */
bool TJSCalcFieldsListAdd(DMDoc doc, DMField *field);
/**
 * Takes a field off the list; one with another widget stays, unless forced. False for an invalid field or when there is
 * no list.
 */
bool TJSCalcFieldsListDelete(DMDoc doc, DMField *field, bool force);

/**
 * After pages came from `source` into `target`: the entries that came in go behind those of `saved` (the target's list
 * before), in the order that they have in the source. Writes `CO`; the working list is read anew. Deletes `saved`.
 */
void TSFixCalcOrderAfterSpawnOrInsert(DMDoc source, DMDoc target, TSCalcArray *saved);

/** Before a save: writes the list to `CO`; before one that renumbers objects it drops the list and asks for a reload.
 */
void JSDocWillSaveEx(DMDoc doc, const DMDocSaveRecord *save);
