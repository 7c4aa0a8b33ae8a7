// Bringing the host up and down: locale, tables, siblings, plug-ins.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace jackdaw {

struct HostOptions {
    /** Folder of the plug-ins. Empty: $JACKDAW_PLUG_INS; else `plug-ins` beside the program; else the one that the
     *  program was installed with. */
    std::string plugInDir;
    bool loadPlugIns = true;
    /** Follow the user's locale; otherwise the process's present one stays (tests set their own). */
    bool setLocale = true;
};

/**
 * Starts the host: text follows the user's locale while numbers stay in the C locale's form, every table answers, the
 * variables of include/ are set in this program, plug-ins run, SCAppDidInitialize is sent. Throws HostError when a
 * table is not whole. Nothing for a host that runs.
 */
void StartHost(const HostOptions &options = {});

/** Sends SCAppWillQuit, unloads the plug-ins and clears the tables. Nothing for a host that does not run. */
void StopHost();

bool HostIsRunning();

/** The folder that StartHost would load from; empty when none of the places exists. */
std::string PlugInFolder(const HostOptions &options);

} // namespace jackdaw
