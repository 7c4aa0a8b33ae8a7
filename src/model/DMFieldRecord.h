// The record of one field. The field's dictionary is the truth; the record caches a few of its entries and holds the
// links of the tree, so that questions about names and inheritance cost no climbing.
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

#include <cstddef>
#include <cstdint>

#include "FormsTypes.h"

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
    /** By TSFlagWord: `F` of the own dictionary, and `Ff`, inherited from the parent when absent. */
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
