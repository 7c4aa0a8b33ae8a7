// Notification servers: a list of observers with safe failure.
// SPDX-License-Identifier: MIT
#include "base/NtfySrvr.h"

#include <limits>
#include <memory>

#include "Common/src/miUtils.h"
#include "PIFrame.h"

namespace {

struct Observer {
    TSNotifyProc proc;
    TSNotifyFailureProc failureProc;
    std::int32_t id;
    void *clientData;
};

Observer *ObserverAt(const NotificationServer *server, std::int32_t index) {
    return static_cast<Observer *>(server->observers->GetNthObject(index));
}

void RemoveAt(NotificationServer *server, std::int32_t index) {
    KRIfNotNullFree(ObserverAt(server, index));
    server->observers->RemoveObject(index);
}

void TellFailure(const NotificationServer *server, std::int32_t last, KRErrorCode code, void *data) {
    for (std::int32_t i = 0; i <= last && i < server->observers->GetNumObjects(); ++i) {
        const Observer observer = *ObserverAt(server, i);
        // A failure in the handling of a failure has nobody left to hear it.
        if (observer.failureProc) Protect([&] { observer.failureProc(code, data, observer.clientData); });
    }
}

} // namespace

NotificationServer *NotificationServerNew(std::int32_t maxObservers, bool replaceOldest) {
    auto observers = std::make_unique<CFArray>(4);
    auto *server = static_cast<NotificationServer *>(KRSureCalloc(1, sizeof(NotificationServer)));
    server->replaceOldest = replaceOldest;
    server->maxObservers = maxObservers == 0 ? std::numeric_limits<std::int32_t>::max() : maxObservers;
    server->observers = observers.release();
    return server;
}

void NotificationServerDestroy(NotificationServer *server) {
    if (!server) return;
    for (std::int32_t i = server->observers->GetNumObjects() - 1; i >= 0; --i) KRIfNotNullFree(ObserverAt(server, i));
    delete server->observers;
    KRIfNotNullFree(server);
}

std::int32_t NotificationServerRegisterObserver(NotificationServer *server, TSNotifyProc proc,
                                                TSNotifyFailureProc failureProc, void *clientData) {
    if (!server) return -1;
    if (server->observers->GetNumObjects() == server->maxObservers) {
        if (!server->replaceOldest) KRRaise(KRErrBadParam);
        RemoveAt(server, 0);
    }
    std::unique_ptr<Observer, KRFreeDeleter> observer(static_cast<Observer *>(KRSureMalloc(sizeof(Observer))));
    *observer = {proc, failureProc, server->lastId + 1, clientData};
    server->observers->AppendObject(observer.get());
    observer.release();
    return ++server->lastId;
}

void NotificationServerUnregisterObserver(NotificationServer *server, std::int32_t id) {
    if (!server) return;
    for (std::int32_t i = 0; i < server->observers->GetNumObjects(); ++i)
        if (ObserverAt(server, i)->id == id) return RemoveAt(server, i);
    if (!server->replaceOldest) KRRaise(KRErrBadParam);
}

void NotificationServerBroadcast(NotificationServer *server, void *data) {
    const std::int32_t count = server->observers->GetNumObjects();
    std::int32_t current = 0;
    const KRErrorCode code = Protect([&] {
        for (; current < count && current < server->observers->GetNumObjects(); ++current) {
            const Observer observer = *ObserverAt(server, current);
            if (observer.proc) observer.proc(data, observer.clientData);
        }
    });
    if (code == KRErrNone) return;
    TellFailure(server, current, code, data);
    KRRaise(code);
}
