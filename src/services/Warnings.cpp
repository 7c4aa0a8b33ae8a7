// Warnings about a form.
// SPDX-License-Identifier: MIT
#include "services/Warnings.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "Common/src/miUtils.h"
#include "Common/unix/mdMessages.h"
#include "PIFrame.h"
#include "base/NtfySrvr.h"

namespace {

constexpr std::size_t s_textSize = 1024;

/** Made at the first registration; stays until the process ends. */
NotificationServer *s_observers = nullptr;

} // namespace

void TSWarn(DMDoc doc, const char *field, std::int32_t message, ...) {
    if (!s_observers) return;
    char text[s_textSize] = "";
    va_list arguments;
    va_start(arguments, message);
    std::vsnprintf(text, sizeof text, mdGetStringPtr(message), arguments);
    va_end(arguments);
    text[miHostCutLength(text, std::strlen(text), sizeof text - 1)] = '\0';
    TSFormWarning warning{doc, field ? field : "", text};
    Protect([&] { NotificationServerBroadcast(s_observers, &warning); });
}

std::int32_t TSFormWarningsObserve(TSNotifyProc proc, void *clientData) {
    if (!s_observers) s_observers = NotificationServerNew(/*maxObservers*/ 0, /*replaceOldest*/ false);
    return NotificationServerRegisterObserver(s_observers, proc, /*failureProc*/ nullptr, clientData);
}

void TSFormWarningsIgnore(std::int32_t id) {
    if (!s_observers) return;
    Protect([&] { NotificationServerUnregisterObserver(s_observers, id); });
}
