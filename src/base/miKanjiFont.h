// Text whose encoding depends on the font that shows it.
// SPDX-License-Identifier: MIT
#pragma once

#include "FormsTypes.h"
#include "KRTypes.h"

/** One of the two Japanese base fonts, by the atom of its `BaseFont`. */
bool IsKanji(KRAtom fontAtom);

/** For the captions that scripts set. Sets bytes with the tag that fits: UCS-2 by their mark, else Shift-JIS for a
 * Japanese font, else host text. */
void EStrCorrectEncoding(EStr *str, const char *bytes, KRAtom fontAtom);

// Both give the bytes written without terminator; the target is cut to `size` bytes behind a whole character.

/** Host text to PDFDocEncoding; for a Japanese font to marked UCS-2 when that would lose. */
std::int32_t TSDMXlateHostToExportEnc(const char *source, char *target, std::int32_t size, KRAtom fontAtom);
/** PDFDocEncoding or marked UCS-2 to host text. */
std::int32_t TSDMXlateExportToHostEnc(const char *source, char *target, std::int32_t size, KRAtom fontAtom);
