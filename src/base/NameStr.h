// NameStr: a field name with inline storage up to 6 bytes.
//
// 1. A short name (`len` below 7) stands in `text`; a long one in the block `longText`, which the record owns.
// 2. `len` is 8 bits. A longer text keeps its first (length modulo 256) bytes, since its length is taken as a byte.
// 3. Both kinds are NUL-terminated behind `len` bytes. A record filled with zeros is the empty name.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "KRTypes.h"

struct NameStr {
    std::uint8_t len;
    char text[7];
    char *longText;
};

std::uint8_t NameStrLen(const NameStr *name);
bool IsLongName(const NameStr *name);
/** The characters, NUL-terminated; valid until the record changes. */
const char *NameStrAddr(const NameStr *name);
/** Frees a long name; the record becomes the empty name. */
void NameStrFree(NameStr *name);
/** Copies the characters without a terminator into `target`, which has room for 255 bytes. */
void NameStrCpy(char *target, const NameStr *name);

// These fill a fresh record: what `out` held is not freed. Without memory it becomes the empty name.

void Str_to_NameStr(std::uint8_t len, const char *text, NameStr *out);
// What follows is for data exchange, which reads names from files and writes them in the host's encoding.

/** The bytes of a string object; the empty name for any other. */
void TSLexStr_to_NameStr(LexObj obj, NameStr *out);
void NameStr_to_NameStr(const NameStr *source, NameStr *out);

/** Same length and bytes. */
bool NameStrEq(const NameStr *a, const NameStr *b);

// In place; a name that grows past 255 bytes is cut behind a whole character.

void NameStrXlateToPDFDocEncoding(NameStr *name);
void NameStrXlateToHost(NameStr *name);
