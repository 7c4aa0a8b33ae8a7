// Membership of field dictionaries in `Fields` and `Kids` arrays. Forms are edited through "is it there", "append" and
// "take it out"; on long arrays these answer from an index, so that building a form costs the same for every field.
//
//  1. The arrays are the truth. An index belongs to one array and is thrown away when length or last element are not
//     what it left behind.
//  2. The order of the array's elements is never changed, except by what the operation says.
//  3. Whoever changes such an array in another way that keeps length and last element calls FieldArraysForget.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

#include "LexHFT.h"
#include "model/LexObjSet.h"

/** `dict` is an element of the array. False when `array` is no array. */
bool FieldArrayHas(LexObj array, LexObj dict);
/** Appends, whether or not it is there already. */
void FieldArrayAppend(LexObj array, LexObj dict);
/** Removes the first occurrence; costs nothing when there is none. */
void FieldArrayRemove(LexObj array, LexObj dict);
/** Takes it out, if it is there, and appends it: it ends last. */
void FieldArrayMoveToEnd(LexObj array, LexObj dict);
/** Puts `replacement` where `dict` stands first; false when it is not there. */
bool FieldArrayReplace(LexObj array, LexObj dict, LexObj replacement);

/**
 * The last element, a dictionary, whose full name is `name`; the null object when there is none, and for an array too
 * short to have an index. Raises what FormFieldNameAcquire raises.
 */
LexObj FieldArrayLastNamed(LexObj array, std::string_view name);

/**
 * `Fields` has a root, other than `dict` itself, that a field of the full name `name` belongs into: one of that name,
 * or of a name that it continues behind a dot.
 */
bool FieldArrayHasRootOf(LexObj fields, LexObj dict, std::string_view name);
/** Takes many elements out at once: `array` under `key` of `owner` is rewritten when that is cheaper. */
void FieldArrayRemoveAll(LexObj owner, KRAtom key, const LexObjSet &elements);

/** Forgets all indexes of a document. */
void FieldArraysForget(LexDoc doc);
