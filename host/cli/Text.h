// Texts at the edge of the command line: UTF-8 outside, PDF strings and field names inside.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "KRTypes.h"

namespace jackdaw::cli {

/** How many bytes at the start are UTF-8. */
std::size_t ValidUtf8Length(std::string_view bytes);
bool IsUtf8(std::string_view bytes);

/** UTF-8 of an argument: as it stands when it is UTF-8, else from the locale's encoding. */
std::string ArgumentText(const std::string &argument);

/** UTF-8 of the bytes of a PDF text string: marked UTF-16 or UTF-8, else PDFDocEncoding. */
std::string TextOfBytes(std::string_view bytes);
/** Bytes of a PDF text string: PDFDocEncoding when nothing is lost and it begins with no mark, else marked UTF-16. */
std::string BytesOfText(const std::string &utf8);

/** UTF-8 of a full field name as the table "Forms" gives it. */
std::string TextOfName(std::string_view name);

/** Text of a string, name, number, boolean or stream object; empty for others. */
std::string TextOfObject(LexObj obj);

/** How many characters a text has. */
std::size_t CountCharacters(std::string_view utf8);

/** `texts` joined by commas, cut after `limit` of them. */
std::string JoinTexts(const std::vector<std::string> &texts, std::size_t limit);

} // namespace jackdaw::cli
