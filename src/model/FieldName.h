// Full names: what a title stands for, and how the titles of a path make a name.
// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "LexHFT.h"
#include "model/DMFieldRecord.h"

/** A name in the caller's memory, NUL-terminated. */
struct FieldName {
    char text[MaxFieldNameLength + 2];
    std::size_t length;
};
/**
 * What a title (the value of `T`) stands for in a full name. Names are bytes in PDFDocEncoding; other writers give
 * titles in UCS-2, which holds zero bytes, so a marked title is brought to PDFDocEncoding, or to UTF-8 when that loses.
 * At most 253 bytes are taken. Titles are compared in this form. False when the object is no string.
 */
bool FieldTitleText(LexObj title, FieldName *text);
/** A title for a text of full names, as FieldTitleText gives it: what PDFDocEncoding cannot hold becomes UCS-2 again.
 */
LexObj FieldTitleOfText(LexDoc doc, std::string_view text);
/**
 * The full name of a field dictionary: the title texts of its path joined by dots. False when it has none: no `T` on a
 * root, a `T` that is no string, 255 bytes or more, a path that is too deep. Raises KRErrBadResource for a dot in the
 * `T` of a kid. A parent with a record gives its name without climbing on; one with the empty name adds nothing.
 */
bool FormFieldNameAcquire(LexObj dict, FieldName *name);
