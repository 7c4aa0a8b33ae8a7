// What a document holds that is void, or out of date, once the file is changed and written anew.
// SPDX-License-Identifier: MIT
#pragma once

#include "FormsTypes.h"
#include "KRTypes.h"

/** A sum of TSSeal; 0 for a null document. Loads the fields. */
std::uint32_t TSDMDocGetSeals(DMDoc doc);
