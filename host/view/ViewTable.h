// Fills the screen view table, and installs what the host itself registers in it.
// SPDX-License-Identifier: MIT
#pragma once

namespace jackdaw {

/** After the tables of the object layer and the document model; once. */
void FillScreenViewTable();

} // namespace jackdaw
