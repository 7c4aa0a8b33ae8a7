// Colours: comparison, conversion, and their forms as arrays and as operators of a content stream.
// SPDX-License-Identifier: MIT
#pragma once

#include "LexHFT.h"

/** Components of a space: 1, 3, 4; 0 for transparent and for numbers that are no space. */
std::int32_t TSColorComponents(std::int32_t space);

/** Components that the space has no use for are cleared. */
void TSDMColorValueSet(DMColorValue *color, std::int32_t space, KRFixed v0 = 0, KRFixed v1 = 0, KRFixed v2 = 0,
                       KRFixed v3 = 0);

bool TSDMColorValueIs(const DMColorValue *color, std::int32_t space);

/** Same space and same components of that space. A null is equal to itself only. */
bool TSDMColorValueEqual(const DMColorValue *a, const DMColorValue *b);

/**
 * Converts in place; transparent and the colour's own space leave it alone. A conversion to gray gives the low word of
 * a product that is not shifted back, so it is no gray value to draw with: white becomes 0xFFFF0000.
 */
void TSDMColorValueConvert(DMColorValue *color, std::int32_t space);

/** RGB or CMYK with all components 0; false for gray and transparent. */
bool IsDMColorBlack(const DMColorValue *color);

/** A space to draw in, and no component of it above 1. */
bool ValidDMColorValue(const DMColorValue *color);

/** An array of the components under `key`. Nothing for a colour that is not valid or a target that is no dictionary. */
void TSDMColorStore(LexObj dict, KRAtom key, const DMColorValue *color);

/**
 * Colour of an array: the entry `key` of a dictionary that has it, else the object itself. One number is gray, three
 * RGB, four CMYK; anything else loads as transparent.
 */
void TSDMColorLoad(LexObj obj, KRAtom key, DMColorValue *color);

/** Room that TSDMColorGetCString asks for: four components of at most 6 characters, an operator and their blanks. */
inline constexpr std::int32_t TSDMColorTextSize = 31;
/**
 * The components and the operator, each followed by a blank: "0 0 1 rg ". `fill` chooses g, rg, k over G, RG, K.
 * Transparent gives the empty text. `buffer` holds TSDMColorTextSize bytes.
 */
void TSDMColorGetCString(const DMColorValue *color, bool fill, char *buffer);
