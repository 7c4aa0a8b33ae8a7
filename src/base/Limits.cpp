// The table of limits.
// SPDX-License-Identifier: MIT
#include "base/Limits.h"

#include <array>
#include <cstring>

namespace {

constexpr std::int64_t s_any = std::int64_t{1} << 40;

constexpr KRLimit Row(const char *name, std::int64_t standard, std::int64_t highest, const char *bounds) {
    return {name, bounds, standard, standard, highest};
}

// In the order of TSLimitIndex. A walk that recurses takes up to 1 kB of stack a level.
std::array<KRLimit, TSLimitCount> s_limits{
    // Names allow 127 titled levels; the rest is for levels without a title.
    Row("field-depth", 256, 2000, "levels of fields below a root; what stands deeper is no field"),
    Row("inheritance-depth", 1024, s_any, "ancestors that are asked for an inherited value"),
    Row("comparison-depth", 64, 2000, "levels of arrays within arrays that a comparison of values goes down"),
    Row("comparison-pairs", 100'000, s_any, "pairs of arrays that one comparison of values takes on"),
    Row("name-tree-depth", 64, 2000, "levels of a name tree")};

} // namespace

bool TSLimitGet(std::int32_t index, KRLimit *limit) {
    if (index < 0 || index >= TSLimitCount) return false;
    *limit = s_limits[static_cast<std::size_t>(index)];
    return true;
}

bool TSLimitSet(const char *name, std::int64_t value) {
    for (KRLimit &limit : s_limits) {
        if (std::strcmp(limit.name, name) != 0) continue;
        if (value < 1 || value > limit.highest) return false;
        limit.value = value;
        return true;
    }
    return false;
}

std::int64_t TSLimitOf(TSLimitIndex index) {
    return s_limits[index].value;
}
