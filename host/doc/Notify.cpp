// Keeps who subscribed to what, and calls them.
// SPDX-License-Identifier: MIT
#include "doc/Notify.h"

#include <algorithm>
#include <map>
#include <vector>

#include "kernel/HostError.h"

namespace jackdaw {
namespace {

struct Subscription {
    KRWord extension;
    KRProc proc;
    void *clientData;
    /** Tells two equal subscriptions apart, and the older from the newer. */
    std::uint64_t serial;
};

struct Registry {
    std::map<std::int32_t, std::vector<Subscription>> byNumber;
    std::uint64_t lastSerial = 0;
};

Registry &registry() {
    static Registry s_instance;
    return s_instance;
}

bool stillSubscribed(std::int32_t number, std::uint64_t serial) {
    const std::vector<Subscription> &list = registry().byNumber[number];
    return std::any_of(list.begin(), list.end(), [&](const Subscription &s) { return s.serial == serial; });
}

template <class Proc, class... Args>
void broadcast(std::int32_t number, Args... args) {
    const std::vector<Subscription> atStart = registry().byNumber[number];
    for (const Subscription &subscription : atStart) {
        if (!stillSubscribed(number, subscription.serial)) continue;
        HostProtect([&] { reinterpret_cast<Proc>(subscription.proc)(args..., subscription.clientData); });
    }
}

} // namespace

void RegisterNotification(std::int32_t number, KRWord extensionID, KRProc proc, void *clientData) {
    if (!proc) throw HostError{KRErrBadParam};
    Registry &all = registry();
    all.byNumber[number].push_back({extensionID, proc, clientData, ++all.lastSerial});
}

void UnregisterNotification(std::int32_t number, KRWord extensionID, KRProc proc, void *clientData) {
    std::vector<Subscription> &list = registry().byNumber[number];
    const auto found = std::find_if(list.begin(), list.end(), [&](const Subscription &s) {
        return s.extension == extensionID && s.proc == proc && s.clientData == clientData;
    });
    if (found != list.end()) list.erase(found);
}

void UnregisterNotificationsOf(KRWord extensionID) {
    for (auto &[number, list] : registry().byNumber) {
        std::erase_if(list, [&](const Subscription &s) { return s.extension == extensionID; });
    }
}

void NotifyApp(SCNotification number) {
    broadcast<SCAppNotifyProc>(number);
}

void NotifyView(SCNotification number, SCDoc view) {
    broadcast<SCDocNotifyProc>(number, view);
}

void NotifyViewDidOpen(SCDoc view, KRErrorCode error) {
    broadcast<SCDocDidOpenProc>(SCDocDidOpen, view, error);
}

void NotifyPageViewDidChange(SCPageView view, std::int16_t how) {
    broadcast<SCPageViewNotifyProc>(SCPageViewDidChange, view, how);
}

void NotifyWillInsertPages(DMDoc doc, std::int32_t afterPage, DMDoc source, std::int32_t first, std::int32_t last) {
    broadcast<DMDocWillInsertProc>(DMDocWillInsertPages, doc, afterPage, source, first, last);
}

void NotifyDidInsertPages(DMDoc doc, std::int32_t afterPage, DMDoc source, std::int32_t first, std::int32_t last,
                          KRErrorCode error) {
    broadcast<DMDocDidInsertProc>(DMDocDidInsertPages, doc, afterPage, source, first, last, error);
}

void NotifyPages(SCNotification number, DMDoc doc, std::int32_t first, std::int32_t last) {
    broadcast<DMDocPagesProc>(number, doc, first, last);
}

void NotifyDidDeletePages(DMDoc doc, std::int32_t first, std::int32_t last, KRErrorCode error) {
    broadcast<DMDocPagesDoneProc>(DMDocDidDeletePages, doc, first, last, error);
}

void NotifyDocWillSave(DMDoc doc, const DMDocSaveRecord *save) {
    broadcast<DMDocWillSaveProc>(DMDocWillSave, doc, save);
}

void NotifyDocDidSave(DMDoc doc, KRErrorCode error) {
    broadcast<DMDocDidSaveProc>(DMDocDidSave, doc, error);
}

void NotifyAnnotIndex(SCNotification number, DMPage page, std::int32_t index) {
    broadcast<DMPageAnnotIndexProc>(number, page, index);
}

void NotifyPageAnnot(SCNotification number, DMPage page, DMAnnot annot) {
    broadcast<DMPageAnnotProc>(number, page, annot);
}

void NotifyAnnotWillChange(DMAnnot annot, KRAtom key) {
    broadcast<DMAnnotWillChangeProc>(DMAnnotWillChange, annot, key);
}

void NotifyAnnotDidChange(DMAnnot annot, KRAtom key, KRErrorCode error) {
    broadcast<DMAnnotDidChangeProc>(DMAnnotDidChange, annot, key, error);
}

} // namespace jackdaw
