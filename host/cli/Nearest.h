// The names nearest to one that is not there.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace jackdaw::cli {

/** The word that was probably meant; empty when none is near. For few words, such as options. */
std::string NearestWord(const std::vector<std::string> &words, std::string_view wanted);

/** Names by their starts, by their ends, and by their last parts, so that a question looks at few of many. */
class NameIndex {
public:
    explicit NameIndex(std::vector<std::string> names);
    /** At most `count` names, the nearest first; letters count alike in both cases. */
    std::vector<std::string> Nearest(std::string_view wanted, std::size_t count) const;
    std::size_t Size() const {
        return names_.size();
    }

private:
    /** What a name is found by, and its number; sorted. */
    using Keys = std::vector<std::pair<std::string, std::uint32_t>>;
    std::vector<std::string> names_;
    Keys byStart_;
    Keys byEnd_;
    Keys byLastPart_;
};

} // namespace jackdaw::cli
