// Starts the plug-in by hand, as its own start-up would.
// SPDX-License-Identifier: MIT
#include "tests/support/StartForms.h"

#include "app/Startup.h"
#include "base/FormStr.h"
#include "life/DMFieldLife.h"
#include "life/LexFieldHooks.h"
#include "objects/FontMgr.h"
#include "objects/Tessella.h"
#include "unix/src/mdPI.h"
#include "widgets/WidgetHandlers.h"

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
