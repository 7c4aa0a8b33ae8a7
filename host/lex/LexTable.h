// Fills the table Lex.
// SPDX-License-Identifier: MIT
#pragma once

namespace jackdaw {

/** Puts every operation of LexHFT.h into gLexHFT, which the kernel has made. */
void FillLexTable();

} // namespace jackdaw
