// The host's function tables: how they are filled, started and found.
// SPDX-License-Identifier: MIT
#include "kernel/Tables.h"

#include <memory>
#include <string>
#include <vector>

#include "kernel/Atoms.h"
#include "kernel/HFTServers.h"
#include "kernel/HostError.h"

namespace jackdaw {

namespace {

struct HostTable {
    KRHFT *variable;
    /** KRAtomNull for a table that nobody can ask for. */
    KRAtom name;
    std::uint32_t version;
    int count;
    KRHFT slots;
    bool started;
};

std::vector<HostTable> &tables() {
    static std::vector<HostTable> s_tables;
    return s_tables;
}

HostTable *tableOf(const KRHFT *variable) {
    for (HostTable &table : tables()) {
        if (table.variable == variable) return &table;
    }
    return nullptr;
}

HostTable *tableNamed(KRAtom name) {
    for (HostTable &table : tables()) {
        if (name != KRAtomNull && table.name == name) return &table;
    }
    return nullptr;
}

std::string titleOf(const HostTable &table) {
    return table.name == KRAtomNull ? "core" : AtomText(table.name);
}

/** "Lex 3, 17; " for a table with the empty slots 3 and 17; nothing for a whole one. */
std::string emptySlotsOf(const HostTable &table) {
    std::string slots;
    for (int i = 1; i <= table.count; ++i) {
        if (table.slots[i] == EmptySlot()) slots += (slots.empty() ? " " : ", ") + std::to_string(i);
    }
    return slots.empty() ? slots : titleOf(table) + slots + "; ";
}

constexpr std::uint32_t s_majorMask = 0xFFFF0000;

} // namespace

void DefineTable(KRHFT *variable, const char *name, std::uint32_t version, int count) {
    const KRAtom atom = name ? AtomFromText(name) : KRAtomNull;
    const HostTable table{variable, atom, version, count, NewTable(nullptr, count), false};
    if (HostTable *const former = tableOf(variable))
        *former = table;
    else
        tables().push_back(table);
    *variable = table.slots;
}

void ProvideSlot(KRHFT *variable, int selector, KRProc proc) {
    HostTable *const table = tableOf(variable);
    if (!table) throw HostError{KRErrBadParam, "A slot was provided for a table that is not defined."};
    const std::string slot = "Slot " + std::to_string(selector) + " of the table " + titleOf(*table);
    if (selector < 1 || selector > table->count) throw HostError{KRErrBadParam, slot + " does not exist."};
    if (table->slots[selector] != EmptySlot()) throw HostError{KRErrBadParam, slot + " was provided twice."};
    table->slots[selector] = proc;
}

void StartTables() {
    std::string empty;
    for (const HostTable &table : tables()) empty += emptySlotsOf(table);
    if (!empty.empty()) {
        empty.resize(empty.size() - 2);
        throw HostError{KRErrNotAvailable, "Tables of the host are not whole: " + empty + "."};
    }
    for (HostTable &table : tables()) table.started = true;
}

void StopTables() {
    for (const HostTable &table : tables()) *table.variable = nullptr;
    tables().clear();
    ForgetTableServers();
}

bool HostHasTable(KRAtom name) {
    return tableNamed(name) != nullptr;
}

KRHFT FindTable(KRAtom name, std::uint32_t version) {
    const HostTable *const table = tableNamed(name);
    if (!table) return TableOfServer(name, version);
    const bool serves =
        table->started && version <= table->version && (version & s_majorMask) == (table->version & s_majorMask);
    return serves ? table->slots : nullptr;
}

} // namespace jackdaw
