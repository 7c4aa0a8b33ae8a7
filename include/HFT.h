// Function tables: how an entry of a table is declared and called.
//
// A table is an array of procedures; slot n stands at index n, slot 0 is the host's. An entry is a typed constant:
//
//     inline constexpr Slot<&gLexHFT, 22, LexObj(LexObj dict, KRAtom key)> LexDictGet;
//
// so that a call reads as a plain function and the compiler checks caller and provider alike. Selectors are part of
// the contract: they never change meaning and are never reused.
// SPDX-License-Identifier: MIT
#pragma once

#include "KRTypes.h"

/** A procedure of unknown shape. Callbacks are made and destroyed as this; they are called in their own shape. */
using KRProc = void (*)();

/** A function table. Null when the table was not found. */
using KRHFT = KRProc *;

template <KRHFT *Table, int Selector, class Signature>
struct Slot;

template <KRHFT *Table, int Selector, class Result, class... Args>
struct Slot<Table, Selector, Result(Args...)> {
    using Proc = Result (*)(Args...);
    static constexpr int selector = Selector;

    Result operator()(Args... args) const {
        return reinterpret_cast<Proc>((*Table)[Selector])(args...);
    }
};

/** A table version: major in the high 16 bits, minor in the low. */
constexpr std::uint32_t KRVersion(std::uint32_t major, std::uint32_t minor) {
    return major << 16 | minor;
}
