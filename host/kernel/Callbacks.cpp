// Callback thunks and whose they are.
// SPDX-License-Identifier: MIT
#include "kernel/Callbacks.h"

#include <unordered_map>

#include "kernel/HostError.h"

namespace jackdaw {

namespace {

struct Ownership {
    KRWord extensionID;
    int count;
};

std::unordered_map<KRProc, Ownership> s_callbacks;

} // namespace

KRProc CreateCallback(KRWord extensionID, KRProc proc) {
    if (!proc) throw HostError{KRErrBadParam, "A callback needs a procedure."};
    Ownership &owner = s_callbacks.try_emplace(proc, Ownership{extensionID, 0}).first->second;
    ++owner.count;
    return proc;
}

void DestroyCallback(KRProc callback) {
    const auto found = s_callbacks.find(callback);
    if (found != s_callbacks.end() && --found->second.count == 0) s_callbacks.erase(found);
}

bool FindCallback(KRProc callback, KRWord *extensionID) {
    const auto found = s_callbacks.find(callback);
    if (found == s_callbacks.end()) return false;
    if (extensionID) *extensionID = found->second.extensionID;
    return true;
}

void DestroyCallbacksOf(KRWord extensionID) {
    std::erase_if(s_callbacks, [&](const auto &entry) { return entry.second.extensionID == extensionID; });
}

} // namespace jackdaw
