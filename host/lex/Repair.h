// Repairs of file text that the PDF library does not make itself. Each gives the patched bytes, or "" when the file
// offers nothing to go by.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace jackdaw::lex {

/** A file that ends in a cross-reference stream but lost its startxref. */
std::string WithStartOfXRefStream(const std::string &bytes);

/**
 * A PDF cut before its trailer: one is appended for the last catalog that stands in the open. Nothing for a file whose
 * encryption dictionary shows: with the trailer the key is gone, and its strings would be read as rubbish.
 */
std::string WithTrailerForCatalog(const std::string &bytes);

/** An FDF without a trailer, or with one that no line starts with. */
std::string WithTrailerForFdf(const std::string &bytes);

} // namespace jackdaw::lex
