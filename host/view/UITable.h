// Fills the user interface table of the screen view.
// SPDX-License-Identifier: MIT
#pragma once

namespace jackdaw {

void FillScreenViewUserInterfaceTable();

} // namespace jackdaw
