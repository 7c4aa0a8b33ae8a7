// The record of a text look and its form as a default appearance string, such as "/Helv 12 Tf 0 g".
// SPDX-License-Identifier: MIT
#pragma once

#include "FormsTypes.h"
#include "LexHFT.h"

struct BufControl;

/** Helvetica (no resource name yet) of automatic size in black, unscaled, identity matrix, quadding left. */
TextAppearance TextAppearanceDefault();

/** Quadding and render mode in range, a base font, no negative size. */
bool TextAppearanceIsWellFormed(const TextAppearance *look);

/** Byte for byte, which is how looks are told apart. */
bool TextAppearanceEqual(const TextAppearance *a, const TextAppearance *b);

/**
 * Parses a default appearance string. The base font is left at Helvetica: only resources tell what the resource name
 * stands for. Raises KRErrBadParam when `string` is no string; KRErrBadField when it has no `Tf`, more than 30 tokens,
 * or colour operators without their operands (the look is cleared then, with both fonts KRAtomNull).
 */
void TSLexStringGetTextAppearance(LexObj string, TextAppearance *look);

/**
 * Appends the look as text with a trailing blank to `buffer`, which grows as needed; a NUL stands behind it that
 * `length` does not count. Colours are homogenised and a missing resource name is filled in on the way. 0 on success; 1
 * for a look that is not well-formed and without memory.
 */
std::int32_t TextAppearanceSTRM(TextAppearance *look, BufControl *buffer);

/** Colours that the render mode does not draw become black, and every black becomes gray 0: equal looks, equal bytes.
 */
void TextAppearanceHomogenizeColors(TextAppearance *look);
