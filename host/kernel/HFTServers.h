// Tables that plug-ins serve, and the replacement of slots in any table.
//
// 1. A table is an array of count + 1 procedures; index 0 is the host's and points nowhere useful.
// 2. Every slot remembers who stood in it: what a callback replaced is what stood there before it.
// SPDX-License-Identifier: MIT
#pragma once

#include "KernelSupportHFT.h"

namespace jackdaw {

/** Null when a host table or another server has the name. */
KRHFTServer NewTableServer(const char *name, KRHFTProvideProc provide);
/** Asks the server of this name; null when there is none or it refuses. A raise of the server is thrown on. */
KRHFT TableOfServer(KRAtom name, std::uint32_t version);

/** A table whose slots raise KRErrNotAvailable. Throws KRErrBadParam for a count below 0 or beyond 65,535. */
KRHFT NewTable(KRHFTServer server, std::int32_t count);
/** Makes a slot array known to the two functions below; `count` slots from index 1. */
void AdoptTable(KRHFT table, std::int32_t count);
void SetTableEntry(KRHFT table, std::int32_t selector, KRProc callback);
KRProc ReplacedTableEntry(KRHFT table, std::int32_t selector, KRProc callback);

/** The procedure that stands in an empty slot. */
KRProc EmptySlot();

/** Forgets servers, their tables and all replacements. */
void ForgetTableServers();

} // namespace jackdaw
