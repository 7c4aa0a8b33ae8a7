// Function tables: how an entry of a table is declared and called.
//
// A table is an array of procedures; slot n stands at index n, slot 0 is the host's. An entry is a typed constant:
//
//     inline constexpr Slot<&gLexHFT, 22, LexObj(LexObj dict, KRAtom key)> LexDictGet;
//
// so that a call reads as a plain function and the compiler checks caller and provider alike. Selectors are part of
// the contract: they never change meaning and are never reused.
//
// What holds for every entry of every table, unless its own comment says otherwise:
//
// 1. Failure is raised (CoreHFT.h) and the call does not come back. A null, closed or made-up handle raises
//    KRErrBadParam wherever the host can tell; so does a null pointer where something is to be stored or read.
// 2. What an entry named Acquire, New or Open gives, the caller gives back, once, through the entry that the comment
//    names. What an entry named Get gives is the host's: it is used and not given back. Menus and their items alone are
//    always given back, as ScreenViewHFT.h tells.
// 3. Texts and records that go in are read, or copied, before the call comes back. Records and procedures that are
//    registered are kept: they live as long as the plug-in.
// 4. A record that starts with `size` holds its own size in bytes. Who reads it takes no member that ends behind that,
//    so that records grow at their end and older plug-ins go on working.
// 5. Everything is called on the host's one thread, and calls back on that thread.
// SPDX-License-Identifier: MIT
#pragma once

#include "KRTypes.h"

/** A procedure of unknown shape. Callbacks are made and destroyed as this; they are called in their own shape. */
using KRProc = void (*)();

/** A function table. Null when the table was not found. */
using KRHFT = KRProc *;

/**
 * Entry `Selector` of the table that `*Table` points to. `*Table` is set before the first call: PIMain.cpp sets those
 * of the host, a plug-in the others. A slot that nobody filled raises KRErrNotAvailable.
 */
template <KRHFT *Table, int Selector, class Signature>
struct Slot;

template <KRHFT *Table, int Selector, class Result, class... Args>
struct Slot<Table, Selector, Result(Args...)> {
    using Proc = Result (*)(Args...);
    /** For the operations on slots as such: KRHFTSetEntry and KRHFTGetReplacedEntry. */
    static constexpr int selector = Selector;

    Result operator()(Args... args) const {
        return reinterpret_cast<Proc>((*Table)[Selector])(args...);
    }
};

/** A table version: major in the high 16 bits, minor in the low. */
constexpr std::uint32_t KRVersion(std::uint32_t major, std::uint32_t minor) {
    return major << 16 | minor;
}
