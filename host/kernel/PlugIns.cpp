// Loading plug-ins and walking them through start-up and unloading.
//
// 1. A plug-in is in the list from its handshake on; what is refused earlier leaves no trace but what it registered.
// 2. `state` only ever grows, save that any state before Running may turn into Refused.
// 3. A file whose code has run is never unmapped: its callbacks and static objects may be known elsewhere.
// SPDX-License-Identifier: MIT
#include "kernel/PlugIns.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <deque>
#include <dirent.h>
#include <dlfcn.h>
#include <map>
#include <memory>
#include <sys/stat.h>

#include "PIMain.h"
#include "kernel/Atoms.h"
#include "kernel/Callbacks.h"
#include "kernel/HostError.h"

struct KRExtensionRec {
    enum State { Loaded, Running, Refused };
    KRWord id = 0;
    std::string file;
    void *library = nullptr;
    PIHandshakeRecord record{};
    State state = Loaded;
    /** Its init was called, so that its unload has to be. */
    bool reachedInit = false;
};

namespace jackdaw {

namespace {

using PlugIn = KRExtensionRec;

/** Never destroyed: a plug-in's handle may be asked about until the process ends. */
std::vector<std::unique_ptr<PlugIn>> &plugIns() {
    static auto &s_plugIns = *new std::vector<std::unique_ptr<PlugIn>>;
    return s_plugIns;
}

KRWord s_lastID = 0;

PlugIn *plugInWithID(KRWord id) {
    for (const auto &plugIn : plugIns()) {
        if (plugIn->id == id) return plugIn.get();
    }
    return nullptr;
}

std::string oneLine(std::string text) {
    for (char &c : text) {
        if (static_cast<unsigned char>(c) < ' ') c = ' ';
    }
    return text;
}

void tell(const std::string &file, const std::string &reason) {
    std::fprintf(stderr, "jackdaw: plug-in %s is left out: %s\n", oneLine(file).c_str(), oneLine(reason).c_str());
}

std::string hexadecimal(std::uint32_t number) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%08X", number);
    return text;
}

/** The loader's reason without the path that tell() gives anyway. */
std::string loaderReason(const std::string &file) {
    const char *const message = dlerror();
    std::string reason = message ? message : "it cannot be loaded";
    if (reason.starts_with(file + ": ")) reason.erase(0, file.size() + 2);
    return reason;
}

/** Runs a step of the plug-in's; throws HostError with a reason when it raised. */
template <class Step>
void runStep(const char *name, Step &&step) {
    const KRErrorCode code = HostProtect(std::forward<Step>(step));
    if (code != KRErrNone)
        throw HostError{code, std::string("its ") + name + " raised an error: " + ErrorSentence(code)};
}

/** `main` and set-up: leaves the handshake's callback in `setup`. */
void setUp(const PlugIn &plugIn, PIMainProc entry, PISetupRecord &setup) {
    std::uint32_t agreed = 0;
    PISetupProc proc = nullptr;
    std::int32_t result = 0;
    runStep("main", [&] { result = entry(PIHandshakeVersion, &agreed, &proc); });
    if (result == 0 || !proc) throw HostError{KRErrNotAvailable, "its main refused"};
    if (agreed != PIHandshakeVersion)
        throw HostError{KRErrNotAvailable, "it speaks version " + hexadecimal(agreed) + " of the start-up, this host " +
                                               hexadecimal(PIHandshakeVersion)};
    setup = {agreed, plugIn.id, gCoreHFT, nullptr};
    runStep("set-up", [&] { result = proc(agreed, &setup); });
    if (result == 0 || !setup.handshake)
        throw HostError{KRErrNotAvailable, "its set-up refused (a table that it needs may be missing)"};
}

void shakeHands(PlugIn &plugIn, PIMainProc entry) {
    PISetupRecord setup{};
    setUp(plugIn, entry, setup);
    plugIn.record.version = PIHandshakeVersion;
    plugIn.record.appName = AtomFromText("Jackdaw");
    plugIn.record.extensionName = KRAtomNull;
    std::int32_t result = 0;
    runStep("handshake", [&] { result = setup.handshake(PIHandshakeVersion, &plugIn.record); });
    if (result == 0) throw HostError{KRErrNotAvailable, "its handshake refused"};
}

bool isMapped(const void *library) {
    return std::any_of(plugIns().begin(), plugIns().end(),
                       [&](const auto &known) { return known->library == library; });
}

/** Why code from this file or folder is not run; null for no reason. Whoever can write there can run as the user. */
const char *reasonAgainst(const std::string &path) {
    struct stat facts;
    if (stat(path.c_str(), &facts) != 0) return std::strerror(errno);
    return facts.st_mode & S_IWOTH ? "anyone may write to it" : nullptr;
}

/** Opens the file and finds its entry; throws with the file closed again. */
PIMainProc openLibrary(PlugIn &plugIn) {
    if (const char *const unsafe = reasonAgainst(plugIn.file)) throw HostError{KRErrNotAvailable, unsafe};
    plugIn.library = dlopen(plugIn.file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!plugIn.library) throw HostError{KRErrNotAvailable, loaderReason(plugIn.file)};
    const auto entry = reinterpret_cast<PIMainProc>(dlsym(plugIn.library, "main"));
    const char *const reason = isMapped(plugIn.library) ? "it is loaded already" : entry ? nullptr : "it has no main";
    if (!reason) return entry;
    dlclose(plugIn.library);
    throw HostError{KRErrNotAvailable, reason};
}

std::unique_ptr<PlugIn> loadPlugIn(const std::string &file) {
    auto plugIn = std::make_unique<PlugIn>();
    plugIn->file = file;
    plugIn->id = ++s_lastID;
    try {
        shakeHands(*plugIn, openLibrary(*plugIn));
    } catch (const HostError &error) {
        // No fault of the plug-in's.
        if (error.code == KRErrNoMemory) throw;
        tell(file, error.what);
        return nullptr;
    }
    return plugIn;
}

void tellOfFolder(const std::string &folder, const char *reason) {
    std::fprintf(stderr, "jackdaw: the folder of plug-ins %s is left out: %s\n", oneLine(folder).c_str(), reason);
}

/** Paths of the folder's `*.so`, in the order of their names' bytes. */
std::vector<std::string> plugInFiles(const std::string &folder, bool mustExist) {
    std::vector<std::string> files;
    const std::unique_ptr<DIR, int (*)(DIR *)> entries(opendir(folder.c_str()), &closedir);
    const char *const reason = entries ? reasonAgainst(folder) : std::strerror(errno);
    if (reason && (entries || mustExist || errno != ENOENT)) tellOfFolder(folder, reason);
    if (reason) return files;
    for (;;) {
        errno = 0;
        const dirent *const entry = readdir(entries.get());
        if (!entry) break;
        const std::string name = entry->d_name;
        if (name.size() > 3 && name.ends_with(".so")) files.push_back(folder + "/" + name);
    }
    if (errno != 0) tellOfFolder(folder, std::strerror(errno));
    std::sort(files.begin(), files.end());
    return files;
}

/** One phase of the start-up for one plug-in. */
void runPhase(PlugIn &plugIn, const char *name, PICallbackProc callback) {
    if (plugIn.state == PlugIn::Refused || !callback) return;
    KRBool good = 0;
    try {
        runStep(name, [&] { good = callback(); });
        if (!good) throw HostError{KRErrNotAvailable, std::string("its ") + name + " gave false"};
    } catch (const HostError &error) {
        if (error.code == KRErrNoMemory) throw;
        plugIn.state = PlugIn::Refused;
        tell(plugIn.file, error.what);
    }
}

void startPlugIns(const std::vector<PlugIn *> &loaded) {
    for (PlugIn *plugIn : loaded) runPhase(*plugIn, "export of tables", plugIn->record.exportHFTs);
    for (PlugIn *plugIn : loaded) runPhase(*plugIn, "replace and register", plugIn->record.replaceAndRegister);
    for (PlugIn *plugIn : loaded) {
        if (plugIn->state == PlugIn::Refused) continue;
        plugIn->reachedInit = true;
        runPhase(*plugIn, "init", plugIn->record.init);
        if (plugIn->state == PlugIn::Loaded) plugIn->state = PlugIn::Running;
    }
}

std::map<KRAtom, std::string> &configuration() {
    static auto &s_configuration = *new std::map<KRAtom, std::string>;
    return s_configuration;
}

} // namespace

int LoadPlugIns(const std::string &folder, bool mustExist) {
    std::vector<PlugIn *> loaded;
    for (const std::string &file : plugInFiles(folder, mustExist)) {
        std::unique_ptr<PlugIn> plugIn = loadPlugIn(file);
        if (!plugIn) continue;
        loaded.push_back(plugIn.get());
        plugIns().push_back(std::move(plugIn));
    }
    startPlugIns(loaded);
    return static_cast<int>(std::count_if(loaded.begin(), loaded.end(),
                                          [](const PlugIn *plugIn) { return plugIn->state == PlugIn::Running; }));
}

void UnloadPlugIns() {
    auto &list = plugIns();
    for (std::size_t i = list.size(); i-- > 0;) {
        PlugIn &plugIn = *list[i];
        if (plugIn.reachedInit && plugIn.record.unload) (void)HostProtect([&] { plugIn.record.unload(); });
        DestroyCallbacksOf(plugIn.id);
    }
    list.clear();
}

std::vector<KRWord> PlugInIDs() {
    std::vector<KRWord> ids;
    for (const auto &plugIn : plugIns()) ids.push_back(plugIn->id);
    return ids;
}

std::string PlugInFile(KRWord extensionID) {
    const PlugIn *const plugIn = plugInWithID(extensionID);
    return plugIn ? plugIn->file : std::string();
}

std::vector<std::string> RunningPlugIns() {
    std::vector<std::string> names;
    for (const auto &plugIn : plugIns()) {
        if (plugIn->state == PlugIn::Running) names.push_back(AtomText(plugIn->record.extensionName));
    }
    return names;
}

void EnumPlugIns(KRExtensionEnumProc proc, void *clientData, bool onlyRunning) {
    if (!proc) throw HostError{KRErrBadParam, "An enumeration needs a procedure."};
    for (const auto &plugIn : plugIns()) {
        const bool wanted = onlyRunning ? plugIn->state == PlugIn::Running : plugIn->state != PlugIn::Refused;
        if (!wanted) continue;
        KRBool goOn = 0;
        ThrowIf(HostProtect([&] { goOn = proc(plugIn.get(), clientData); }));
        if (!goOn) return;
    }
}

KRAtom PlugInName(KRExtension extension) {
    for (const auto &plugIn : plugIns()) {
        if (plugIn.get() == extension) return plugIn->record.extensionName;
    }
    return KRAtomNull;
}

void SetConfiguration(const char *key, std::string value) {
    configuration()[AtomFromText(key)] = std::move(value);
}

const char *GetConfiguration(KRAtom key) {
    const auto found = configuration().find(key);
    return found == configuration().end() ? nullptr : found->second.c_str();
}

} // namespace jackdaw
