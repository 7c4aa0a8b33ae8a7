// Hearing the host's notifications.
// SPDX-License-Identifier: MIT
#pragma once

#include "PIMain.h"
#include "ScreenViewHFT.h"

/** Has the host call `proc` at each notification of this number, with null client data, until it exits. */
template <class Proc>
void Subscribe(std::int32_t notification, Proc *proc) {
    Proc *const callback = PICallback(gExtensionID, proc);
    SCAppRegisterNotification(notification, gExtensionID, reinterpret_cast<KRProc>(callback), /*clientData*/ nullptr);
}
