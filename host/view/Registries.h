// Emptying what plug-ins registered, before the tables are filled for another run of the host.
// SPDX-License-Identifier: MIT
#pragma once

namespace jackdaw {

void ForgetActionHandlers();
void ForgetAnnotHandlers();
void ForgetSelectionServers();
/** Idle procedures and handlers of auxiliary data. */
void ForgetAppCallbacks();

} // namespace jackdaw
