// Puts a function of the host into a slot of a table, with the edge around it.
// SPDX-License-Identifier: MIT
#pragma once

#include <type_traits>

#include "kernel/HostError.h"
#include "kernel/Tables.h"

namespace jackdaw {

/**
 * `Bind<&FrontView>(SCAppGetActiveDoc)`: the function stands in the slot, and what it throws is raised. Arguments pass
 * as they are, the table's 16-bit predicates as bool too. A result must fit the slot's without narrowing, so that a
 * function that does not fit does not compile.
 */
template <auto Function, KRHFT *Table, int Selector, class Result, class... Args>
void Bind(const Slot<Table, Selector, Result(Args...)> &slot) {
    Provide(slot, [](Args... args) -> Result {
        return Edge([&]() -> Result {
            if constexpr (std::is_void_v<Result>)
                static_cast<void>(Function(args...));
            else
                return Result{Function(args...)};
        });
    });
}

/** What an argument points to; throws KRErrBadParam for null. */
template <class T>
T &Required(T *pointer) {
    if (!pointer) throw HostError{KRErrBadParam, "An argument is missing."};
    return *pointer;
}

} // namespace jackdaw
