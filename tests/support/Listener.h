// An observer of the form's notification servers: for the model itself, and for plug-ins that reach it by its table.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <utility>

#include "FormsTypes.h"
#include "PIFrame.h"
#include "PIMain.h"

/** Observes a server as long as it lives. `Register` and `Unregister` are the operations or the slots of a table. */
template <auto &Register, auto &Unregister>
class ServerListener {
public:
    using Reaction = std::function<void(TSFieldNotifyRec &record)>;

    /** `told` may raise; `failed` hears of a broadcast that was told to this observer and then raised. */
    ServerListener(TSServer server, Reaction told, Reaction failed = {})
        : told_(std::move(told)), failed_(std::move(failed)), server_(server),
          id_(Register(server, PICallback(gExtensionID, &Told), PICallback(gExtensionID, &Failed), this)) {}
    ~ServerListener() {
        Unregister(server_, id_);
    }
    ServerListener(const ServerListener &) = delete;
    ServerListener &operator=(const ServerListener &) = delete;

private:
    static void Told(void *record, void *self) {
        const Reaction &told = static_cast<ServerListener *>(self)->told_;
        if (told) told(*static_cast<TSFieldNotifyRec *>(record));
    }
    static void Failed(KRErrorCode, void *record, void *self) {
        const Reaction &failed = static_cast<ServerListener *>(self)->failed_;
        if (failed) failed(*static_cast<TSFieldNotifyRec *>(record));
    }

    Reaction told_, failed_;
    TSServer server_;
    std::int32_t id_;
};
