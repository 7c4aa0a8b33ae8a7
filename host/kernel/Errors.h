// Texts of the error codes, and codes that plug-ins register.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "KRErrors.h"

namespace jackdaw {

/** The text of a code of KRErrors.h or a registered one; "Error 0x%08X" for any other. */
std::string ErrorText(KRErrorCode code);

/** A new code in the severity's range for `text`. Throws KRErrBadParam for a severity outside 0 to 15. */
KRErrorCode RegisterErrorText(int severity, const char *text);

} // namespace jackdaw
