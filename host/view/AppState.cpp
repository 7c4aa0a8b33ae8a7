// The application's memory, and its idle procedures.
// SPDX-License-Identifier: MIT
#include "view/AppState.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <map>
#include <vector>

#include "kernel/Atoms.h"
#include "kernel/HostError.h"
#include "view/Registries.h"
#include "view/ViewPlatform.h"
#include "view/ViewRecords.h"

struct SCToolRec {
    KRAtom type;
};

namespace jackdaw {

namespace {

struct IdleProc {
    std::uint64_t id;
    SCIdleProc proc;
    void *clientData;
    std::int64_t period;
    std::int64_t due;
};

std::map<std::int32_t, KRWord> &preferences() {
    static std::map<std::int32_t, KRWord> s_words;
    return s_words;
}

std::vector<IdleProc> &idleProcs() {
    static std::vector<IdleProc> s_procs;
    return s_procs;
}

std::map<KRAtom, SCAuxDataHandler *> &auxHandlers() {
    static std::map<KRAtom, SCAuxDataHandler *> s_handlers;
    return s_handlers;
}

std::atomic<bool> s_cancelRequested{false};
static_assert(std::atomic<bool>::is_always_lock_free, "set from signal handlers");

bool s_fullScreen = false;

} // namespace

KRWord Preference(std::int32_t number) {
    const auto found = preferences().find(number);
    return found == preferences().end() ? 0 : found->second;
}

void SetPreference(std::int32_t number, KRWord value) {
    preferences()[number] = value;
}

void RequestCancel() {
    s_cancelRequested = true;
}

bool TakeCancelRequest() {
    return s_cancelRequested.exchange(false);
}

bool BeginFullScreen(const DMColorValue *background) {
    if (!s_fullScreen && Platform().beginFullScreen) s_fullScreen = Platform().beginFullScreen(background);
    return s_fullScreen;
}

void EndFullScreen() {
    if (!s_fullScreen) return;
    s_fullScreen = false;
    if (Platform().endFullScreen) Platform().endFullScreen();
}

bool DoingFullScreen() {
    return s_fullScreen;
}

SCTool ActiveTool() {
    static SCToolRec s_hand{AtomFromText("Hand")};
    return &s_hand;
}

KRAtom ToolType(SCTool tool) {
    if (tool != ActiveTool()) throw HostError{KRErrBadParam, "There is no such tool."};
    return tool->type;
}

std::int64_t TicksNow() {
    using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 60>>;
    return std::chrono::duration_cast<Ticks>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void RegisterIdle(SCIdleProc proc, void *clientData, std::uint32_t period) {
    if (!proc) throw HostError{KRErrBadParam, "An idle procedure is missing."};
    static std::uint64_t s_nextID = 0;
    idleProcs().push_back({++s_nextID, proc, clientData, period, TicksNow() + period});
}

void UnregisterIdle(SCIdleProc proc, void *clientData) {
    std::vector<IdleProc> &procs = idleProcs();
    const auto found = std::find_if(procs.begin(), procs.end(),
                                    [&](const IdleProc &p) { return p.proc == proc && p.clientData == clientData; });
    if (found != procs.end()) procs.erase(found);
}

void RunIdle() {
    RunIdleAt(TicksNow());
}

void RunIdleAt(std::int64_t now) {
    // Procedures come and go while others run: what is called is looked up again by its number.
    std::vector<std::uint64_t> due;
    for (const IdleProc &p : idleProcs()) {
        if (p.due <= now) due.push_back(p.id);
    }
    for (const std::uint64_t id : due) {
        std::vector<IdleProc> &procs = idleProcs();
        const auto found = std::find_if(procs.begin(), procs.end(), [&](const IdleProc &p) { return p.id == id; });
        if (found == procs.end()) continue;
        found->due = now + found->period;
        const IdleProc called = *found;
        HostProtect([&] { called.proc(called.clientData); });
    }
}

std::optional<std::int64_t> IdleDelay() {
    if (idleProcs().empty()) return std::nullopt;
    std::int64_t first = idleProcs().front().due;
    for (const IdleProc &p : idleProcs()) first = std::min(first, p.due);
    return std::max<std::int64_t>(0, first - TicksNow());
}

bool RegisterAuxData(KRAtom type, SCAuxDataHandler *handler) {
    if (!handler || type == KRAtomNull) return false;
    auxHandlers()[type] = handler;
    return true;
}

bool PerformAuxData(SCDoc view, KRAtom type, void *data, std::uint32_t length) {
    const auto found = auxHandlers().find(type);
    if (found == auxHandlers().end()) return false;
    const auto perform = MemberOf(found->second, &SCAuxDataHandler::perform);
    if (!perform) return false;
    bool taken = false;
    ThrowIf(HostProtect([&] { taken = perform(view, type, data, length) != 0; }));
    return taken;
}

void ForgetAppCallbacks() {
    idleProcs().clear();
    auxHandlers().clear();
}

} // namespace jackdaw
