// The document model table (DocModelHFT.h).
// SPDX-License-Identifier: MIT
#pragma once

namespace jackdaw {

/** Fills every slot of the table, which has been defined. */
void FillDocModelTable();

} // namespace jackdaw
