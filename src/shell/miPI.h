// The plug-in's shell: handshake, start-up order, shut-down.
// SPDX-License-Identifier: MIT
#pragma once

#include "KRTypes.h"

/** What the platform layer and the widget handlers share. */
struct TSPlugInData {
    /** The platform layer's shell; null without a window. */
    void *topWidget;
    /** Raised while a widget handler runs an action. */
    bool inAction;
};
extern TSPlugInData *gData;
