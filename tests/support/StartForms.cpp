// Starts the plug-in by hand, as its own start-up would.
// SPDX-License-Identifier: MIT
#include "StartForms.h"

#include "DMFieldLife.h"
#include "FontMgr.h"
#include "FormStr.h"
#include "LexFieldHooks.h"
#include "Startup.h"
#include "Tessella.h"
#include "WidgetHandlers.h"
#include "mdPI.h"

void StartForms() {
    static bool s_started = false;
    if (s_started) return;
    s_started = true;
    jackdaw::HostOptions options;
    options.loadPlugIns = false;
    jackdaw::StartHost(options);
    CreateTessellaNotificationServer();
    TessellaKRAtoms();
    mdInit();
    InitProtoField();
    FontMgrInit();
    TSSCAppInstallBuiltInWidgetHandlers();
    NameHashInit();
}
