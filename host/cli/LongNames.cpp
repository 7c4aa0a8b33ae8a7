// Field names that hold "=".
// SPDX-License-Identifier: MIT
#include "cli/LongNames.h"

#include <algorithm>

#include "cli/Field.h"

namespace jackdaw::cli {

void NamesWithEquals::Read() {
    read_ = true;
    for (const std::string &name : FieldNames(doc_)) {
        if (name.find('=') == std::string::npos) continue;
        names_.insert(name);
        longest_ = std::max(longest_, name.size());
    }
}

void NamesWithEquals::Resolve(Assignment &assignment) {
    if (!assignment.isArgument || assignment.text.find('=') == std::string::npos) return;
    if (!read_) Read();
    if (names_.empty()) return;
    const std::string whole = assignment.name + "=" + assignment.text;
    const std::size_t shortest = assignment.name.size();
    for (std::size_t end = std::min(longest_, whole.size()); end > shortest; --end) {
        if (whole[end] != '=' || !names_.count(whole.substr(0, end))) continue;
        assignment.name = whole.substr(0, end);
        assignment.text = whole.substr(end + 1);
        return;
    }
}

} // namespace jackdaw::cli
