// Start and stop of the platform layer.
// SPDX-License-Identifier: MIT
#include "unix/src/mdPI.h"

#include "Common/unix/mdUtils.h"
#include "UnixHFT.h"

bool mdInit() {
    void *shell = mdInitUtils();
    if (!shell) return !UnixGetTopWidget() || !mdGetToolkit();
    mdGetToolkit()->addActions(shell);
    return true;
}

void mdTerm() {
    mdTermUtils();
}
