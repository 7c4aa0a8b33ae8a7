// The about box: without dialogs of its own, the plug-in uses the host's note.
// SPDX-License-Identifier: MIT
#include "mdAbout.h"

#include "ScreenViewHFT.h"
#include "mdMessages.h"

void mdDisplayAbout() {
    SCAlertNote(mdGetStringPtr(Msg::fullName));
}
