// Viewer and plug-in in one process, for fuzzing.
// SPDX-License-Identifier: MIT
#include "Forms.h"

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
