// Texts of documents and arguments made fit for a terminal: whatever a file holds, it steers nothing.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace jackdaw::cli {

/**
 * One line of UTF-8. Control characters, line and paragraph separators, marks that turn the direction of writing, and
 * bytes that are no UTF-8 become escapes: `\n`, `\u202e`, `\x9b`.
 */
std::string Printable(std::string_view bytes);

/** JSON text, whose strings alone hold other than ASCII, with the same characters as JSON's escapes. */
std::string PrintableJson(std::string_view json);

/** Columns that a printable text takes on a terminal. */
std::size_t CountColumns(std::string_view printable);

/** A printable text in at most `columns` columns; what is cut off leaves an ellipsis. */
std::string CutToColumns(std::string printable, std::size_t columns);

} // namespace jackdaw::cli
