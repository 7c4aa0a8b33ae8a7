// The about box: without dialogs of its own, the plug-in uses the host's note.
// SPDX-License-Identifier: MIT
#include "Common/unix/mdAbout.h"

#include "Common/unix/mdMessages.h"
#include "ScreenViewHFT.h"

void mdDisplayAbout() {
    SCAlertNote(mdGetStringPtr(Msg::fullName));
}
