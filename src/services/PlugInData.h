// What modules share of the running plug-in.
// SPDX-License-Identifier: MIT
#pragma once

/** Made by the shell at start, freed by it at the end. */
struct TSPlugInData {
    /** The platform layer's shell; null without a window. */
    void *topWidget;
    /** Raised while a widget handler runs an action. */
    bool inAction;
};
/** Null before the plug-in's start and after its end. */
extern TSPlugInData *gData;
