// The Unix table: folders, and what of the toolkit the platform has.
// SPDX-License-Identifier: MIT
#include "view/UnixTable.h"

#include <cstdlib>
#include <pwd.h>
#include <string>
#include <unistd.h>

#include "UnixHFT.h"
#include "kernel/Bind.h"
#include "kernel/Memory.h"
#include "kernel/PlugIns.h"
#include "view/ViewPlatform.h"

namespace jackdaw {

namespace {

void *topWidget() {
    return Platform().topWidget ? Platform().topWidget() : nullptr;
}

void registerResources(const char *className, const char *const *fallback) {
    if (Platform().registerResources) Platform().registerResources(className, fallback);
}

void modalLoop(void *dialog, const KRBool *done) {
    if (Platform().modalLoop && dialog && done) Platform().modalLoop(dialog, done);
}

char *plugInDir(KRWord extensionID) {
    const std::string file = PlugInFile(extensionID);
    if (file.empty()) throw HostError{KRErrBadParam, "There is no such plug-in."};
    const std::size_t slash = file.rfind('/');
    return AllocateText(slash == std::string::npos ? "." : file.substr(0, slash == 0 ? 1 : slash));
}

/** $HOME as it is now, so that a user's own setting holds; the password file for those without. */
const char *userDir() {
    static std::string s_folder;
    const char *home = std::getenv("HOME");
    if (home && *home != '\0') {
        s_folder = home;
    } else {
        const passwd *entry = getpwuid(getuid());
        s_folder = entry && entry->pw_dir ? entry->pw_dir : "/";
    }
    return s_folder.c_str();
}

const char *resourceString(void *widget, const char *key, const char *fallback) {
    if (!Platform().resourceString || !widget) return fallback;
    return Platform().resourceString(widget, key, fallback);
}

SCCursor makeCursor(const unsigned char *bits, const unsigned char *mask, std::int32_t width, std::int32_t height,
                    std::int32_t hotX, std::int32_t hotY) {
    if (!Platform().makeCursor) return nullptr;
    return Platform().makeCursor(bits, mask, width, height, hotX, hotY);
}

} // namespace

void FillUnixTable() {
    Bind<&topWidget>(UnixGetTopWidget);
    Bind<&registerResources>(UnixRegisterResources);
    Bind<&modalLoop>(UnixModalLoop);
    Bind<&plugInDir>(UnixGetPlugInDir);
    Bind<&userDir>(UnixGetUserDir);
    Bind<&resourceString>(UnixGetResourceString);
    Bind<&makeCursor>(UnixMakeCursor);
}

} // namespace jackdaw
