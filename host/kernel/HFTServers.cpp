// Tables that plug-ins serve, and the replacement of slots in any table.
// SPDX-License-Identifier: MIT
#include "kernel/HFTServers.h"

#include <memory>
#include <unordered_map>
#include <vector>

#include "kernel/Atoms.h"
#include "kernel/Frames.h"
#include "kernel/HostError.h"
#include "kernel/Tables.h"

struct KRHFTServerRec {
    KRAtom name;
    KRHFTProvideProc provide;
};

namespace jackdaw {

namespace {

struct TableRecord {
    std::int32_t count;
    /** Who stood in a slot, oldest first, the present one last; a slot that was only ever filled once is not here. */
    std::unordered_map<std::int32_t, std::vector<KRProc>> history;
};

struct ServerState {
    std::vector<std::unique_ptr<KRHFTServerRec>> servers;
    std::unordered_map<KRHFT, TableRecord> tables;
    /** Kept to the end of the process: whoever fetched a table may still call through it. */
    std::vector<std::unique_ptr<KRProc[]>> arrays;
};

ServerState &state() {
    static ServerState &s_state = *new ServerState;
    return s_state;
}

void raiseNotAvailable() {
    Raise(KRErrNotAvailable);
}

TableRecord &recordOf(KRHFT table, std::int32_t selector) {
    const auto found = state().tables.find(table);
    if (found == state().tables.end()) throw HostError{KRErrBadParam, "This is no function table."};
    if (selector < 1 || selector > found->second.count)
        throw HostError{KRErrBadParam, "The table has no slot " + std::to_string(selector) + "."};
    return found->second;
}

KRHFTServerRec *serverNamed(KRAtom name) {
    for (const auto &server : state().servers) {
        if (server->name == name) return server.get();
    }
    return nullptr;
}

} // namespace

KRProc EmptySlot() {
    return &raiseNotAvailable;
}

KRHFTServer NewTableServer(const char *name, KRHFTProvideProc provide) {
    if (!name || !provide) throw HostError{KRErrBadParam, "A table server needs a name and a procedure."};
    const KRAtom atom = AtomFromText(name);
    if (HostHasTable(atom) || serverNamed(atom)) return nullptr;
    state().servers.push_back(std::make_unique<KRHFTServerRec>(KRHFTServerRec{atom, provide}));
    return state().servers.back().get();
}

KRHFT TableOfServer(KRAtom name, std::uint32_t version) {
    KRHFTServerRec *const server = serverNamed(name);
    if (!server) return nullptr;
    KRHFT table = nullptr;
    ThrowIf(HostProtect([&] { table = server->provide(server, version); }));
    return table;
}

KRHFT NewTable(KRHFTServer, std::int32_t count) {
    if (count < 0 || count > 0xFFFF) throw HostError{KRErrBadParam, "A table has 0 to 65535 slots."};
    auto slots = std::make_unique<KRProc[]>(static_cast<std::size_t>(count) + 1);
    for (std::int32_t i = 0; i <= count; ++i) slots[static_cast<std::size_t>(i)] = EmptySlot();
    state().arrays.push_back(std::move(slots));
    const KRHFT table = state().arrays.back().get();
    AdoptTable(table, count);
    return table;
}

void AdoptTable(KRHFT table, std::int32_t count) {
    state().tables[table] = TableRecord{count, {}};
}

void SetTableEntry(KRHFT table, std::int32_t selector, KRProc callback) {
    TableRecord &record = recordOf(table, selector);
    if (!callback) throw HostError{KRErrBadParam, "A slot needs a procedure."};
    const KRProc present = table[selector];
    // Set twice, a callback would be its own predecessor, and whoever calls on to that would never come back.
    if (present == callback) return;
    if (present != EmptySlot()) {
        std::vector<KRProc> &history = record.history[selector];
        if (history.empty()) history.push_back(present);
        history.push_back(callback);
    }
    table[selector] = callback;
}

KRProc ReplacedTableEntry(KRHFT table, std::int32_t selector, KRProc callback) {
    const auto &histories = recordOf(table, selector).history;
    const auto found = histories.find(selector);
    if (found == histories.end()) return nullptr;
    const std::vector<KRProc> &history = found->second;
    for (std::size_t i = history.size(); i-- > 1;) {
        if (history[i] == callback) return history[i - 1];
    }
    return nullptr;
}

void ForgetTableServers() {
    state().servers.clear();
    state().tables.clear();
}

} // namespace jackdaw
