// Action handlers by type, and the performing of actions with what follows under `Next`.
//
// 1. An action is performed once in a chain, however often `Next` leads back to it.
// 2. A chain ends when a handler raises (the code goes on to the caller) or the view was closed on the way.
// 3. Actions that perform actions end at a depth that no honest document reaches.
// SPDX-License-Identifier: MIT
#pragma once

#include "ScreenViewHFT.h"

namespace jackdaw {

/** The host's own: `GoTo` and `Named`. Called once at start-up; a plug-in may replace them. */
void InstallHostActions();

/** See SCActionHandlerProcsNew. */
SCActionHandlerProcs *NewActionProcs(SCActionHandler handler);
SCActionHandler ActionHandlerByType(KRAtom type);
void RegisterActionHandler(const SCActionHandlerProcs *procs, void *clientData, const char *type, const char *title);

void PerformAction(SCDoc view, DMAction action);
/** Not valid when the type has no copy procedure. */
DMAction CopyAction(DMDoc target, DMAction action, SCDoc source);
DMAction CopyActionCommon(DMDoc target, DMAction action, SCDoc source);

} // namespace jackdaw
