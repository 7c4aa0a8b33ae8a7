// Start and stop of the platform layer.
// SPDX-License-Identifier: MIT
#include "unix/src/mdPI.h"

#include "Common/unix/mdUtils.h"

void mdInit() {
    void *shell = mdInitUtils();
    if (shell) mdGetToolkit()->addActions(shell);
}

void mdTerm() {
    mdTermUtils();
}
