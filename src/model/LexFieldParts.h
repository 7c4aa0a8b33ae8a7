// Searching siblings by title, and small helpers of the tree's editors.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "DocModelHFT.h"
#include "LexHFT.h"

struct DMField;

/**
 * The field titled `title` among the `Kids` of `at` (null: among `Fields`), which are `array`; the last one wins.
 * `fullName` is the name that such a field has. Null when there is none.
 */
DMField *FieldSiblingFind(DMDoc doc, DMField *at, LexObj array, LexObj title, const std::string &fullName);

/** The keys of a dictionary, as they are now. */
std::vector<KRAtom> LexDictKeys(LexObj dict);
