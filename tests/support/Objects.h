// Documents as tests read them: by path, as short texts. Needs include/ alone, so that a plug-in under test can use it.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "CoreHFT.h"
#include "LexHFT.h"

inline KRAtom Atom(const std::string &text) {
    return KRAtomFromString(text.c_str());
}

/** What a path such as "Fields/0/V" leads to from `from`; the null object where it breaks off. */
LexObj At(LexObj from, const std::string &path);

/**
 * An object in one line: a string as its bytes, all else as in a file, keys in their order. Inside others, strings have
 * their parentheses, and what is indirect shows as "R", or as "S" for a stream.
 */
std::string Text(LexObj obj);

/** The data of a stream; what is none as Text has it. */
std::string Data(LexObj stream, LexStreamMode mode = LexStreamDecoded);
