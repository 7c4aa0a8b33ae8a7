// The limits of host and plug-in as the command line shows and sets them.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace jackdaw::cli {

/** Sets each "NAME=N" in whichever table has the name. Throws CommandFailed for the first that cannot be set. */
void SetLimits(const std::vector<std::string> &settings);

/** Prints what can be set, with default and meaning. */
void ListLimits();

/** The limit in force, of either table; the name must be in one of them. */
std::int64_t LimitNamed(const char *name);

} // namespace jackdaw::cli
