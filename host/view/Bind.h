// Puts a function of the view into a slot of a table, with the edge around it.
// SPDX-License-Identifier: MIT
#pragma once

#include <type_traits>

#include "kernel/HostError.h"
#include "kernel/Tables.h"

namespace jackdaw {

/**
 * `Bind<&FrontView>(SCAppGetActiveDoc)`: arguments pass as they are, a bool result becomes the table's 16 bits. What
 * the function throws is raised.
 */
template <auto Function, KRHFT *Table, int Selector, class Result, class... Args>
void Bind(const Slot<Table, Selector, Result(Args...)> &slot) {
    Provide(slot, [](Args... args) -> Result {
        return Edge([&]() -> Result {
            if constexpr (std::is_void_v<Result>)
                static_cast<void>(Function(args...));
            else
                return static_cast<Result>(Function(args...));
        });
    });
}

} // namespace jackdaw
