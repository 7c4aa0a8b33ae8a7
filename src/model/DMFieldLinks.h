// The links between records: parents and children, and what follows from names along them. Dictionaries stay as they
// are.
// SPDX-License-Identifier: MIT
#pragma once

#include "model/DMFieldRecord.h"

/** Null and invalid give false. Holds a value of its own: a leaf, or the top of a group of same-named widgets. */
bool TSDMFieldIsTerminal(DMField *field);
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
