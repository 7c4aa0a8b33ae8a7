// Warnings about names that a form does not have: a line each with what may be meant, and from some number on a count.
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "KRTypes.h"
#include "cli/Nearest.h"

namespace jackdaw::cli {

class UnknownNames {
public:
    explicit UnknownNames(DMDoc doc) : doc_(doc) {}
    void Add(const std::string &name);
    /** Warns of those that were only counted. */
    void WarnOfRest() const;

private:
    DMDoc doc_;
    /** Made when the first unknown name comes. */
    std::optional<NameIndex> index_;
    std::size_t unknown_ = 0;
};

} // namespace jackdaw::cli
