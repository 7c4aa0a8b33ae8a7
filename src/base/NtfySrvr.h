// Notification servers: a list of observers with safe failure.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "Common/src/CFArray.h"
#include "FormsTypes.h"

struct NotificationServer {
    /** When full: not 0 drops the oldest observer, 0 raises. */
    std::uint32_t replaceOldest;
    std::int32_t maxObservers;
    /** Ids start at 1 and are never given twice. */
    std::int32_t lastId;
    /** Records of NtfySrvr.cpp, in the order of registration. */
    CFArray *observers;
};

/** `maxObservers` 0 means no limit. Raises KRErrNoMemory. */
NotificationServer *NotificationServerNew(std::int32_t maxObservers, bool replaceOldest);
/** Null allowed. */
void NotificationServerDestroy(NotificationServer *server);
/** An id; -1 for a null server. Either procedure may be null. Raises KRErrBadParam when full. */
std::int32_t NotificationServerRegisterObserver(NotificationServer *server, TSNotifyProc proc,
                                                TSNotifyFailureProc failureProc, void *clientData);
/** An unknown id raises KRErrBadParam, unless the server drops its oldest. A null server is ignored. */
void NotificationServerUnregisterObserver(NotificationServer *server, std::int32_t id);
/**
 * Calls the observers that were there at the start, in order. When one raises, those up to and including it get their
 * failure procedure, the others nothing, and the code is raised again. An observer must not unregister meanwhile.
 */
void NotificationServerBroadcast(NotificationServer *server, void *data);
