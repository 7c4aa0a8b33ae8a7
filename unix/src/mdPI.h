// Start and stop of the platform layer.
// SPDX-License-Identifier: MIT
#pragma once

/**
 * Makes the plug-in's shell and adds its actions. False when there are a window and a toolkit, but no shell came of
 * them; without a window there is nothing to make, and nothing fails.
 */
bool mdInit();
/** Destroys the shell, if there is one. */
void mdTerm();
