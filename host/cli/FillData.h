// The values that `fill` is given, as arguments and as JSON.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "cli/Commands.h"

namespace jackdaw::cli {

/** One value to set. */
struct Assignment {
    enum Kind {
        Text,
        /** Clears the field. */
        Null,
        /** The choices of a list that takes several. */
        List,
        /** The data hold an object there, or an array of more than texts, which no field takes. */
        Nested
    };
    std::string name;
    Kind kind = Text;
    std::string text;
    std::vector<std::string> list;
    /** From NAME=VALUE, split at the first "=": the field's name may hold others. */
    bool isArgument = false;
    /** From a field's record as `fields --json` prints it: the field may have this value already. */
    bool isRecord = false;
};

/** What the options hold, in their order. Throws CommandFailed. */
std::vector<Assignment> ReadAssignments(const FillOptions &options);

} // namespace jackdaw::cli
