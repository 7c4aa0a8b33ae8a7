// Bringing the host up and down.
// SPDX-License-Identifier: MIT
#include "app/Startup.h"

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <sys/auxv.h>
#include <system_error>
#include <vector>

#include "CoreHFT.h"
#include "DocModelHFT.h"
#include "KernelSupportHFT.h"
#include "LexHFT.h"
#include "ScreenViewHFT.h"
#include "ScreenViewUserInterfaceHFT.h"
#include "SiblingHFTs.h"
#include "UnixHFT.h"
#include "doc/DocTable.h"
#include "doc/Notify.h"
#include "draw/Draw.h"
#include "kernel/HostError.h"
#include "kernel/Memory.h"
#include "kernel/PlugIns.h"
#include "kernel/Tables.h"
#include "lex/LexTable.h"
#include "siblings/BaseTool.h"
#include "view/UITable.h"
#include "view/UnixTable.h"
#include "view/ViewTable.h"

namespace jackdaw {

namespace {

namespace fs = std::filesystem;

struct TableToStart {
    KRHFT *variable;
    const char *name;
    std::uint32_t version;
    int count;
    void (*fill)();
};

/** From the bottom up: what fills a table may use those before it. The core table is handed over, never asked for. */
const TableToStart s_tables[] = {
    {&gCoreHFT, nullptr, 0, CoreHFTCount, &FillCoreTable},
    {&gKernelSupportHFT, "KernelSupport", KernelSupportHFTVersion, KernelSupportHFTCount, &FillKernelSupportTable},
    {&gBaseToolHFT, "BaseTool", BaseToolHFTVersion, BaseToolHFTCount, &FillBaseToolTable},
    {&gLexHFT, "Lex", LexHFTVersion, LexHFTCount, &FillLexTable},
    {&gDocModelHFT, "DocModel", DocModelHFTVersion, DocModelHFTCount, &FillDocModelTable},
    {&gScreenViewHFT, "ScreenView", ScreenViewHFTVersion, ScreenViewHFTCount, &FillScreenViewTable},
    {&gScreenViewUserInterfaceHFT, "ScreenViewUserInterface", ScreenViewUserInterfaceHFTVersion,
     ScreenViewUserInterfaceHFTCount, &FillScreenViewUserInterfaceTable},
    {&gUnixHFT, "Unix", UnixHFTVersion, UnixHFTCount, &FillUnixTable},
};

bool s_running = false;

bool localeIsChosen() {
    for (const char *name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char *const value = std::getenv(name);
        if (value && *value) return true;
    }
    return false;
}

/** Numbers in PDF, FDF and messages keep their point, so that LC_NUMERIC never follows the user. */
void followUsersLocale() {
    const bool known = std::setlocale(LC_ALL, "") != nullptr;
    // A process started with no locale at all, or one that is not installed, would lose every letter beyond ASCII.
    if (!known || !localeIsChosen()) std::setlocale(LC_CTYPE, "C.UTF-8");
    std::setlocale(LC_NUMERIC, "C");
}

bool isFolder(const fs::path &path) {
    std::error_code ignored;
    return fs::is_directory(path, ignored);
}

/** Nothing in a program with more rights than its user's: who starts it must not say what code it runs. */
const char *folderFromEnvironment() {
    const char *const folder = secure_getenv("JACKDAW_PLUG_INS");
    return folder && *folder ? folder : nullptr;
}

void startPlugIns(const HostOptions &options) {
    if (!options.plugInDir.empty() && getauxval(AT_SECURE) != 0)
        throw HostError{KRErrPermission, "A program that runs with more rights than its user's takes no --plug-ins."};
    const std::string folder = PlugInFolder(options);
    const bool asked = !options.plugInDir.empty() || folderFromEnvironment();
    if (!folder.empty()) LoadPlugIns(folder, /*mustExist*/ asked);
}

} // namespace

std::string PlugInFolder(const HostOptions &options) {
    if (!options.plugInDir.empty()) return options.plugInDir;
    if (const char *const folder = folderFromEnvironment()) return folder;
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    if (error) return {};
    for (const fs::path &folder :
         {program.parent_path() / "plug-ins", program.parent_path() / JACKDAW_INSTALLED_PLUG_INS}) {
        if (isFolder(folder)) return folder.lexically_normal().string();
    }
    return {};
}

void StartHost(const HostOptions &options) {
    if (s_running) return;
    if (options.setLocale) followUsersLocale();
    for (const TableToStart &table : s_tables) {
        DefineTable(table.variable, table.name, table.version, table.count);
    }
    for (const TableToStart &table : s_tables) table.fill();
    StartTables();
    SetConfiguration("Product", "Jackdaw");
    s_running = true;
    const std::uint64_t failedAllocations = FailedAllocations();
    if (options.loadPlugIns) startPlugIns(options);
    // A plug-in may run on with half of its parts.
    if (FailedAllocations() != failedAllocations) throw HostError{KRErrNoMemory};
    NotifyApp(SCAppDidInitialize);
}

void StopHost() {
    if (!s_running) return;
    NotifyApp(SCAppWillQuit);
    const std::vector<KRWord> plugIns = PlugInIDs();
    UnloadPlugIns();
    for (const KRWord plugIn : plugIns) UnregisterNotificationsOf(plugIn);
    DropKept();
    StopTables();
    s_running = false;
}

bool HostIsRunning() {
    return s_running;
}

} // namespace jackdaw
