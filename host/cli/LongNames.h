// Field names that hold "=", which NAME=VALUE splits at the wrong place.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <unordered_set>

#include "KRTypes.h"
#include "cli/FillData.h"

namespace jackdaw::cli {

class NamesWithEquals {
public:
    explicit NamesWithEquals(DMDoc doc) : doc_(doc) {}
    /** Splits an argument anew behind the longest name of the form that it begins with, if that holds "=". */
    void Resolve(Assignment &assignment);

private:
    void Read();

    DMDoc doc_;
    bool read_ = false;
    /** The form's names with "=" in them, and the length of the longest. */
    std::unordered_set<std::string> names_;
    std::size_t longest_ = 0;
};

} // namespace jackdaw::cli
