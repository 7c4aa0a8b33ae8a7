// The registry of action handlers, chains of actions, and the copying of actions.
// SPDX-License-Identifier: MIT
#include "view/ActionDispatch.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "doc/Actions.h"
#include "doc/Document.h"
#include "kernel/Atoms.h"
#include "kernel/HostError.h"
#include "kernel/HostLimits.h"
#include "kernel/Memory.h"
#include "lex/LexObjects.h"
#include "view/PageView.h"
#include "view/Registries.h"
#include "view/ViewRecords.h"
#include "view/Views.h"

/** Registered once a type; what is registered later for the type replaces the contents. */
struct SCActionHandlerRec {
    const SCActionHandlerProcs *procs;
    void *clientData;
    std::string title;
};

namespace jackdaw {

namespace {

using HandlerMap = std::map<KRAtom, std::unique_ptr<SCActionHandlerRec>>;

HandlerMap &handlers() {
    static HandlerMap s_byType;
    return s_byType;
}

/** Counts a nesting for the life of the object. */
class Nested {
public:
    explicit Nested(int &depth) : depth_(depth) {
        ++depth_;
    }
    ~Nested() {
        --depth_;
    }
    Nested(const Nested &) = delete;
    Nested &operator=(const Nested &) = delete;

private:
    int &depth_;
};

/** What follows, the first one last: the elements of an array, or the one action. */
std::vector<LexObj> following(LexObj action) {
    const LexObj next = lex::DictGet(action, AtomFromText("Next"));
    std::vector<LexObj> result;
    if (lex::IsDict(next)) result.push_back(next);
    if (lex::IsArray(next)) {
        const std::int32_t count =
            static_cast<std::int32_t>(std::min<std::int64_t>(lex::ArrayLength(next), LimitOf(Limit::ActionChain)));
        for (std::int32_t i = count - 1; i >= 0; --i) result.push_back(lex::ArrayGet(next, i));
    }
    return result;
}

void performOne(SCDoc view, DMAction action) {
    const SCActionHandler handler = ActionHandlerByType(ActionSubtype(action));
    if (!handler) return;
    const auto perform = MemberOf(handler->procs, &SCActionHandlerProcs::perform);
    if (perform) ThrowIf(HostProtect([&] { perform(handler->clientData, action, view); }));
}

/** The copied counterparts of what follows `from`, put under `Next` of `to`; nothing for what cannot be copied. */
void copyNext(DMDoc target, LexObj from, SCDoc source, LexObj to) {
    const LexObj next = lex::DictGet(from, AtomFromText("Next"));
    const LexDoc doc = DocLex(target);
    std::vector<LexObj> copies;
    std::vector<LexObj> originals = following(from);
    for (auto it = originals.rbegin(); it != originals.rend(); ++it) {
        const DMAction copy = CopyAction(target, ActionFromLex(*it), source);
        if (ActionIsValid(copy)) copies.push_back(ActionLex(copy));
    }
    if (copies.empty()) return;
    if (lex::IsDict(next)) {
        lex::DictPut(to, AtomFromText("Next"), copies.front());
        return;
    }
    const LexObj array = lex::NewArray(doc, /*indirect*/ false);
    for (std::size_t i = 0; i < copies.size(); ++i) lex::ArrayPut(array, static_cast<std::int32_t>(i), copies[i]);
    lex::DictPut(to, AtomFromText("Next"), array);
}

} // namespace

SCActionHandlerProcs *NewActionProcs(SCActionHandler handler) {
    const std::size_t own = handler ? handler->procs->size : 0;
    const std::size_t size = std::max(sizeof(SCActionHandlerProcs), own);
    void *block = Allocate(size);
    if (!block) throw HostError{KRErrNoMemory};
    std::memset(block, 0, size);
    if (own > 0) std::memcpy(block, handler->procs, own);
    auto *procs = static_cast<SCActionHandlerProcs *>(block);
    procs->size = static_cast<std::uint32_t>(size);
    return procs;
}

SCActionHandler ActionHandlerByType(KRAtom type) {
    const auto found = handlers().find(type);
    return found == handlers().end() ? nullptr : found->second.get();
}

void RegisterActionHandler(const SCActionHandlerProcs *procs, void *clientData, const char *type, const char *title) {
    if (!procs || !type || procs->size < sizeof procs->size)
        throw HostError{KRErrBadParam, "An action handler needs procedures and a type."};
    std::unique_ptr<SCActionHandlerRec> &handler = handlers()[AtomFromText(type)];
    if (!handler) handler = std::make_unique<SCActionHandlerRec>();
    *handler = {procs, clientData, title ? title : ""};
}

void PerformAction(SCDoc view, DMAction action) {
    static int s_depth = 0;
    RecordOf(view);
    if (s_depth >= LimitOf(Limit::ActionDepth)) return;
    const Nested nested(s_depth);
    const LexObj first = ActionLex(action);
    if (!lex::IsNull(first) && !lex::IsDict(first)) {
        UseDest(PageViewOf(view), first);
        return;
    }
    std::set<std::pair<KRWord, KRWord>> done;
    std::vector<LexObj> pending{first};
    while (!pending.empty() && std::ssize(done) < LimitOf(Limit::ActionChain) && ViewIsOpen(view)) {
        const LexObj now = pending.back();
        pending.pop_back();
        if (!lex::IsDict(now) || !done.emplace(now.node, now.slot).second) continue;
        // Read before performing: what an action does to the document does not change the chain that it stands in.
        const std::vector<LexObj> next = following(now);
        performOne(view, ActionFromLex(now));
        pending.insert(pending.end(), next.begin(), next.end());
    }
}

DMAction CopyAction(DMDoc target, DMAction action, SCDoc source) {
    static int s_depth = 0;
    const SCActionHandler handler = ActionHandlerByType(ActionSubtype(action));
    if (!handler || s_depth >= LimitOf(Limit::ActionCopyDepth)) return {0, 0};
    const Nested nested(s_depth);
    const auto copy = MemberOf(handler->procs, &SCActionHandlerProcs::copy);
    DMAction result{0, 0};
    if (copy) ThrowIf(HostProtect([&] { result = copy(handler->clientData, target, action, source); }));
    return result;
}

DMAction CopyActionCommon(DMDoc target, DMAction action, SCDoc source) {
    const LexObj from = ActionLex(action);
    if (!ActionIsValid(action)) throw HostError{KRErrBadParam, "There is no action to copy."};
    const LexDoc doc = DocLex(target);
    const LexObj to = lex::NewDict(doc, /*indirect*/ true);
    for (const char *key : {"Type", "S"}) {
        const LexObj value = lex::DictGet(from, AtomFromText(key));
        if (lex::IsName(value)) lex::DictPut(to, AtomFromText(key), lex::CopyScalar(doc, value));
    }
    // Copies on the way, so that a chain that leads back into itself ends.
    static std::vector<LexObj> s_underWay;
    const bool isUnderWay =
        std::any_of(s_underWay.begin(), s_underWay.end(), [&](LexObj obj) { return lex::Same(obj, from); });
    if (isUnderWay) return ActionFromLex(to);
    s_underWay.push_back(from);
    try {
        copyNext(target, from, source, to);
    } catch (...) {
        s_underWay.pop_back();
        throw;
    }
    s_underWay.pop_back();
    return ActionFromLex(to);
}

void ForgetActionHandlers() {
    handlers().clear();
}

} // namespace jackdaw
