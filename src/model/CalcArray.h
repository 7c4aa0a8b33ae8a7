// The list that a document's calculation order is kept in while it is open.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <unordered_map>

/** A list of names. Change it through the operations of miCalc.h: they keep the count of each name beside it in step.
 */
struct TSCalcArray {
    std::deque<std::string> names;
    /** How often each name stands in the list. Beside the list: it answers "is it listed" and orders nothing. */
    std::unordered_map<std::string, std::int32_t> counts;
    /** Where a search begins; positions found are the same from anywhere. */
    mutable std::size_t hint = 0;
};
