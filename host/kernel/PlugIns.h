// Loading plug-ins and walking them through start-up and unloading.
//
// Start-up goes phase by phase, each for all plug-ins in the order of their file names: entry, set-up and handshake;
// export of tables; replace and register; init. So a table that one exports is there before another asks for it. A
// plug-in that is broken or gives false is left out of what follows, with one line on standard error.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "CoreHFT.h"

namespace jackdaw {

/** Loads every `*.so` of the folder, beside those already loaded. Gives how many now run. Code that anyone may write is
 *  not run: such a file or folder is left out and told. One that does not exist is told only when `mustExist`. */
int LoadPlugIns(const std::string &folder, bool mustExist = false);

/** Runs the unload callbacks, last loaded first, of all that reached their init. The code stays mapped, since others
 *  may hold its addresses. */
void UnloadPlugIns();

/** Extension IDs of all that were loaded and not refused before their init, in the order of loading. */
std::vector<KRWord> PlugInIDs();

/** Path of a plug-in's file by its extension ID; empty for an unknown one. */
std::string PlugInFile(KRWord extensionID);

/** Names of the plug-ins that run, in the order of loading. */
std::vector<std::string> RunningPlugIns();

/** False from `proc` stops. Throws KRErrBadParam for a null one, and what it raises. */
void EnumPlugIns(KRExtensionEnumProc proc, void *clientData, bool onlyRunning);
/** KRAtomNull for an unknown one. */
KRAtom PlugInName(KRExtension extension);

/** Configuration values that plug-ins read by KRGetConfiguration. */
void SetConfiguration(const char *key, std::string value);
const char *GetConfiguration(KRAtom key);

} // namespace jackdaw
