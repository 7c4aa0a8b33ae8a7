// Interned strings: a number of 16 bits for every text that host or plug-in uses as a key or a name.
//
// 1. Atoms are numbered from 0 in the order of their first use and are never given back.
// 2. A text is stored once, behind a slash: as a PDF library's key it is used as it stands, as an atom's text from its
//    second byte on. Its address never changes.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "KRTypes.h"

namespace jackdaw {

/** 0 to 0xFFFE. */
inline constexpr std::size_t AtomLimit = 0xFFFF;

inline constexpr const char *AtomsExhausted =
    "There are more than 65,535 different names and keys, which is more than can be told apart.";

/** Throws HostError (KRErrNoMemory) when all atoms are given out. */
KRAtom AtomFromText(std::string_view text);

/** Names were met for which no atom was left. Whoever asked may have gone on as if they were not there: nothing that
 * was learned or made since is to be trusted. */
bool AtomsWereRefused();

/** KRAtomNull for a text not yet interned. */
KRAtom ExistingAtom(std::string_view text);

/** Atom of a key or name that begins with its slash ("/Type"); the slash is not part of the atom's text. Throws as
 *  AtomFromText; a key without a slash is taken as it is. */
KRAtom AtomFromKey(std::string_view key);
KRAtom ExistingAtomFromKey(std::string_view key);

/** The text without a slash, NUL-terminated; "" for KRAtomNull and numbers never given out. Valid for ever. */
const char *AtomText(KRAtom atom);

/** The text with its slash ("/Type"), without allocating; "/" for KRAtomNull. Valid for ever. */
const std::string &AtomKey(KRAtom atom);

} // namespace jackdaw
