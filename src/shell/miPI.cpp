// The plug-in's shell: the handshake, and the one list of what is started in which order.
// SPDX-License-Identifier: MIT
#include <new>

#include "Common/unix/mdUtils.h"
#include "CoreHFT.h"
#include "PIFrame.h"
#include "PIMain.h"
#include "ScreenViewHFT.h"
#include "ScreenViewUserInterfaceHFT.h"
#include "SiblingHFTs.h"
#include "base/FormStr.h"
#include "life/DMFieldLife.h"
#include "life/LexFieldHooks.h"
#include "objects/FontMgr.h"
#include "objects/Tessella.h"
#include "services/Cursors.h"
#include "services/PlugInData.h"
#include "services/Subscribe.h"
#include "shell/AboutItem.h"
#include "shell/FormsTables.h"
#include "unix/src/mdPI.h"
#include "widgets/WidgetHandlers.h"

namespace {

KRBool TessellaExportHFT() {
    return ServeFormsTables() && CreateTessellaNotificationServer();
}

// An edit in progress is committed, and no selection handles are printed.
KRBool miPIDocEnum(SCDoc view, void *doc) {
    if (SCDocGetDMDoc(view) != doc) return true;
    const KRAtom type = SCDocGetSelectionType(view);
    if (type == Annotation_K || (type != KRAtomNull && type == KRExistingAtomForString("TSSCTextEditSelection")))
        SCDocClearSelection(view, /*highlight*/ true);
    return true;
}

void miPIDocWillPrintPages(DMDoc doc, std::int32_t, std::int32_t, void *) {
    SCAppEnumDocs(&miPIDocEnum, doc);
}

bool miPIRegisterNotifications() {
    Subscribe(DMDocWillPrintPages, &miPIDocWillPrintPages);
    return true;
}

// Absent siblings leave null tables, and their callers test for that.
bool miPIReplaceHFTEntries() {
    gScreenViewUserInterfaceHFT =
        KRGetHFT(KRAtomFromString("ScreenViewUserInterface"), ScreenViewUserInterfaceHFTVersion);
    gNLHFT = KRGetHFT(KRAtomFromString("NetAnchor"), NetAnchorHFTVersion);
    gPostOutHFT = KRGetHFT(KRAtomFromString("PostOut"), PostOutHFTVersion);
    return true;
}

KRBool ExtensionReplaceAndRegister() {
    return miPIRegisterNotifications() && miPIReplaceHFTEntries();
}

// Undoes what Start did, as far as it came. Subscriptions and callbacks go with the process.
KRBool ExtensionTerm() {
    CursorsTerm();
    if (!gData) return true;
    DestroyTessellaNotificationServer();
    mdTerm();
    delete gData;
    gData = nullptr;
    return true;
}

// The form model's observers need the notification servers, which the export callback has made.
bool Start() {
    TessellaKRAtoms();
    gData = new (std::nothrow) TSPlugInData{};
    if (!gData || !mdInit()) return false;
    gData->topWidget = mdGetRootWidget();
    miPIAddMenuItems();
    InitProtoField();
    FontMgrInit();
    TSSCAppInstallBuiltInWidgetHandlers();
    if (!NameHashInit()) return false;
    CursorsInit();
    return true;
}

KRBool ExtensionInit() {
    if (Start()) return true;
    ExtensionTerm();
    return false;
}

} // namespace

std::int32_t PIHandshake(std::uint32_t version, PIHandshakeRecord *record) {
    if (version != PIHandshakeVersion) return 0;
    TessellaNotificationServer = nullptr;
    record->extensionName = KRAtomFromString("Forms");
    record->exportHFTs = PICallback(gExtensionID, &TessellaExportHFT);
    record->init = PICallback(gExtensionID, &ExtensionInit);
    record->unload = PICallback(gExtensionID, &ExtensionTerm);
    record->replaceAndRegister = PICallback(gExtensionID, &ExtensionReplaceAndRegister);
    return 1;
}
