// Start and stop of the platform layer.
// SPDX-License-Identifier: MIT
#include "mdPI.h"

#include "mdUtils.h"

void mdInit() {
    void *shell = mdInitUtils();
    if (shell) mdGetToolkit()->addActions(shell);
}

void mdTerm() {
    mdTermUtils();
}
