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

constexpr int maxDepth = 32;
constexpr std::size_t maxChain = 10'000;
constexpr int maxCopyDepth = 64;

using HandlerMap = std::map<KRAtom, std::unique_ptr<SCActionHandlerRec>>;

HandlerMap &handlers() {
    static HandlerMap byType;
    return byType;
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
    const LexObj next = lex::dictGet(action, AtomFromText("Next"));
    std::vector<LexObj> result;
    if (lex::typeOf(next) == LexDict) result.push_back(next);
    if (lex::typeOf(next) == LexArray) {
        const std::int32_t count = std::min<std::int32_t>(lex::arrayLength(next), maxChain);
        for (std::int32_t i = count - 1; i >= 0; --i) result.push_back(lex::arrayGet(next, i));
    }
    return result;
}

void performOne(SCDoc view, DMAction action) {
    const SCActionHandler handler = ActionHandlerByType(actionSubtype(action));
    if (handler == nullptr) return;
    const auto perform = MemberOf(handler->procs, &SCActionHandlerProcs::perform);
    if (perform != nullptr) ThrowIf(HostProtect([&] { perform(handler->clientData, action, view); }));
}

/** The copied counterparts of what follows `from`, put under `Next` of `to`; nothing for what cannot be copied. */
void copyNext(DMDoc target, LexObj from, SCDoc source, LexObj to) {
    const LexObj next = lex::dictGet(from, AtomFromText("Next"));
    const LexDoc doc = docLex(target);
    std::vector<LexObj> copies;
    std::vector<LexObj> originals = following(from);
    for (auto it = originals.rbegin(); it != originals.rend(); ++it) {
        const DMAction copy = CopyAction(target, actionFromLex(*it), source);
        if (actionIsValid(copy)) copies.push_back(actionLex(copy));
    }
    if (copies.empty()) return;
    if (lex::typeOf(next) == LexDict) {
        lex::dictPut(to, AtomFromText("Next"), copies.front());
        return;
    }
    const LexObj array = lex::newArray(doc, /*indirect*/ false);
    for (std::size_t i = 0; i < copies.size(); ++i) lex::arrayPut(array, static_cast<std::int32_t>(i), copies[i]);
    lex::dictPut(to, AtomFromText("Next"), array);
}

} // namespace

SCActionHandlerProcs *NewActionProcs(SCActionHandler handler) {
    const std::size_t own = handler != nullptr ? handler->procs->size : 0;
    const std::size_t size = std::max(sizeof(SCActionHandlerProcs), own);
    void *block = Allocate(size);
    if (block == nullptr) throw HostError{KRErrNoMemory};
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
    if (procs == nullptr || type == nullptr || procs->size < sizeof procs->size)
        throw HostError{KRErrBadParam, "An action handler needs procedures and a type."};
    std::unique_ptr<SCActionHandlerRec> &handler = handlers()[AtomFromText(type)];
    if (handler == nullptr) handler = std::make_unique<SCActionHandlerRec>();
    *handler = {procs, clientData, title != nullptr ? title : ""};
}

void PerformAction(SCDoc view, DMAction action) {
    static int depth = 0;
    RecordOf(view);
    if (depth >= maxDepth) return;
    const Nested nested(depth);
    const LexObj first = actionLex(action);
    if (!lex::isNull(first) && lex::typeOf(first) != LexDict) {
        UseDest(PageViewOf(view), first);
        return;
    }
    std::set<std::pair<KRWord, KRWord>> done;
    std::vector<LexObj> pending{first};
    while (!pending.empty() && done.size() < maxChain && ViewIsOpen(view)) {
        const LexObj now = pending.back();
        pending.pop_back();
        if (lex::typeOf(now) != LexDict || !done.emplace(now.node, now.slot).second) continue;
        // Read before performing: what an action does to the document does not change the chain that it stands in.
        const std::vector<LexObj> next = following(now);
        performOne(view, actionFromLex(now));
        pending.insert(pending.end(), next.begin(), next.end());
    }
}

DMAction CopyAction(DMDoc target, DMAction action, SCDoc source) {
    static int depth = 0;
    const SCActionHandler handler = ActionHandlerByType(actionSubtype(action));
    if (handler == nullptr || depth >= maxCopyDepth) return {0, 0};
    const Nested nested(depth);
    const auto copy = MemberOf(handler->procs, &SCActionHandlerProcs::copy);
    DMAction result{0, 0};
    if (copy != nullptr) ThrowIf(HostProtect([&] { result = copy(handler->clientData, target, action, source); }));
    return result;
}

DMAction CopyActionCommon(DMDoc target, DMAction action, SCDoc source) {
    const LexObj from = actionLex(action);
    if (!actionIsValid(action)) throw HostError{KRErrBadParam, "There is no action to copy."};
    const LexDoc doc = docLex(target);
    const LexObj to = lex::newDict(doc, /*indirect*/ true);
    for (const char *key : {"Type", "S"}) {
        const LexObj value = lex::dictGet(from, AtomFromText(key));
        if (lex::typeOf(value) == LexName) lex::dictPut(to, AtomFromText(key), lex::copyScalar(doc, value));
    }
    // Copies on the way, so that a chain that leads back into itself ends.
    static std::vector<LexObj> underWay;
    const bool isUnderWay =
        std::any_of(underWay.begin(), underWay.end(), [&](LexObj obj) { return lex::same(obj, from); });
    if (isUnderWay) return actionFromLex(to);
    underWay.push_back(from);
    try {
        copyNext(target, from, source, to);
    } catch (...) {
        underWay.pop_back();
        throw;
    }
    underWay.pop_back();
    return actionFromLex(to);
}

void ForgetActionHandlers() {
    handlers().clear();
}

} // namespace jackdaw
