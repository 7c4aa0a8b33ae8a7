// What the plug-in warns of while a form is open, as warning lines.
// SPDX-License-Identifier: MIT
#pragma once

namespace jackdaw::cli {

/** From here on the warnings of the plug-in are lines, each once; nothing without the plug-in. Once, before opening. */
void HearFormWarnings();
/** One line for those that were only counted. */
void WarnOfUnheard();

} // namespace jackdaw::cli
