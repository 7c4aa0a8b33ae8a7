// The host's function tables: how they are filled, started and found.
//
// 1. A table is defined by the address of its variable in include/, filled slot by slot with Provide, and started.
// 2. A table that is not wholly filled does not start, so that no caller ever meets an empty slot of the host's.
// 3. Tables of plug-ins (HFTServers.h) are found through the same FindTable.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "HFT.h"

namespace jackdaw {

/**
 * Begins a table of slots 1 to `count`. `variable` is the one that its slots call through in this program; it is set at
 * once. A null `name` makes a table that nobody can ask for. Defining a table again replaces it.
 */
void DefineTable(KRHFT *variable, const char *name, std::uint32_t version, int count);

/** Fills a slot of a defined table. Throws HostError for an unknown table, a selector outside it or a filled slot. */
void ProvideSlot(KRHFT *variable, int selector, KRProc proc);

/** Fills a slot with a procedure of exactly its type: `Provide(LexDictGet, &lexDictGet)`. */
template <KRHFT *Table, int Selector, class Signature>
void Provide(const Slot<Table, Selector, Signature> &, typename Slot<Table, Selector, Signature>::Proc proc) {
    ProvideSlot(Table, Selector, reinterpret_cast<KRProc>(proc));
}

/**
 * Starts all tables defined: from now on they are found. Throws HostError (KRErrNotAvailable) with
 * the names and empty slots of all tables that are not wholly filled.
 */
void StartTables();

/** Forgets all tables and servers and clears the variables: the host is going away. */
void StopTables();

/** A table by name: of the host, when `version` has its major and is not above it; of a plug-in's server, as that
 *  server answers. Null for none. */
KRHFT FindTable(KRAtom name, std::uint32_t version);

/** Whether a table of the host has this name. */
bool HostHasTable(KRAtom name);

/** Fills the table in CoreHFT.h, which has been defined. */
void FillCoreTable();
/** Fills the table in KernelSupportHFT.h, which has been defined. */
void FillKernelSupportTable();

} // namespace jackdaw
