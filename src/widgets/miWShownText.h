// A text as a widget shows it. The value that is stored stays what was given.
// SPDX-License-Identifier: MIT
#pragma once

#include "Common/src/miEStr.h"
#include "model/DMField.h"

/**
 * The text in UCS-2 for Japanese fonts, else in PDFDocEncoding with a bullet for what it lacks. Blanks of every width
 * and tabs are blanks, line and paragraph separators line ends; what steers direction or joining and shows nothing
 * itself is left out. With a field, its observers are warned of the characters that become bullets; null is no field.
 */
EStrPtr TSTextForFont(const EStr *text, KRAtom font, DMField *field);
