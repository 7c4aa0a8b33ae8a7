// Fills the Unix table.
// SPDX-License-Identifier: MIT
#pragma once

namespace jackdaw {

void FillUnixTable();

} // namespace jackdaw
