// The entry code of a plug-in: version agreement and the negotiation of the host's tables.
// SPDX-License-Identifier: MIT
#include "PIMain.h"

#include "CoreHFT.h"
#include "DocModelHFT.h"
#include "KernelSupportHFT.h"
#include "LexHFT.h"
#include "PIFrame.h"
#include "ScreenViewHFT.h"
#include "UnixHFT.h"

namespace {

struct TableWish {
    const char *name;
    KRHFT *table;
    std::uint32_t *version;
    std::uint32_t start;
    std::uint32_t floor;
};

// The order is part of the start-up. A table is asked for at every version from start down to floor, one by one: a
// version is a plain number, so that the walk for "Unix" crosses the low words of all majors between.
const TableWish s_wishes[] = {
    {"KernelSupport", &gKernelSupportHFT, &gKernelSupportVersion, KRVersion(4, 2), KRVersion(4, 0)},
    {"Lex", &gLexHFT, &gLexVersion, KRVersion(4, 2), KRVersion(4, 0)},
    {"DocModel", &gDocModelHFT, &gDocModelVersion, KRVersion(4, 3), KRVersion(4, 0)},
    {"ScreenView", &gScreenViewHFT, &gScreenViewVersion, KRVersion(4, 3), KRVersion(4, 0)},
    {"Unix", &gUnixHFT, &gUnixVersion, KRVersion(4, 2), KRVersion(2, 0)},
};

bool FindTable(const TableWish &wish) {
    const KRAtom name = KRAtomFromString(wish.name);
    for (std::uint32_t version = wish.start; version >= wish.floor; --version) {
        *wish.table = KRGetHFT(name, version);
        *wish.version = version;
        if (*wish.table) return true;
    }
    return false;
}

std::int32_t PISetupSDK(std::uint32_t version, PISetupRecord *record) {
    if (version != PIHandshakeVersion || record->version != version) return 0;
    gExtensionID = record->extensionID;
    gCoreHFT = record->coreHFT;
    gCoreVersion = PIHandshakeVersion;
    for (const TableWish &wish : s_wishes) {
        if (!FindTable(wish)) return 0;
    }
    record->handshake = PICallback(gExtensionID, &PIHandshake);
    return 1;
}

} // namespace

// C++ keeps the name `main` for a program's entry, so the function is written under another name and given that
// symbol. It is the shared object's only visible one.
extern "C" __attribute__((visibility("default"))) std::int32_t
PIMainEntry(std::uint32_t highestVersion, std::uint32_t *agreedVersion, PISetupProc *setup) asm("main");

extern "C" std::int32_t PIMainEntry(std::uint32_t highestVersion, std::uint32_t *agreedVersion, PISetupProc *setup) {
    *agreedVersion = highestVersion < PIHandshakeVersion ? highestVersion : PIHandshakeVersion;
    *setup = &PISetupSDK;
    return 1;
}
