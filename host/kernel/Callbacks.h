// Callback thunks and whose they are.
//
// A thunk is the procedure itself: host and plug-in share one calling convention. What is kept is the owner, so that a
// plug-in's callbacks are known when it goes away. The same procedure may be made into a callback several times.
// SPDX-License-Identifier: MIT
#pragma once

#include "HFT.h"

namespace jackdaw {

/** Throws KRErrBadParam for a null procedure. */
KRProc CreateCallback(KRWord extensionID, KRProc proc);
/** Nothing for null or for what is no callback. */
void DestroyCallback(KRProc callback);
/** Whether the procedure is a live callback; with its owner when `extensionID` is not null. */
bool FindCallback(KRProc callback, KRWord *extensionID = nullptr);
/** Destroys all of a plug-in's. */
void DestroyCallbacksOf(KRWord extensionID);

} // namespace jackdaw
