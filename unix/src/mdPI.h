// Start and stop of the platform layer.
// SPDX-License-Identifier: MIT
#pragma once

/** Makes the plug-in's shell and adds its actions. Without a window neither, and that is no failure. */
void mdInit();
/** Destroys the shell. */
void mdTerm();
