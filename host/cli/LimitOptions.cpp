// The limits of host and plug-in as the command line shows and sets them.
// SPDX-License-Identifier: MIT
#include "cli/LimitOptions.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>

#include "CoreHFT.h"
#include "FormsAuthoringHFT.h"
#include "KernelSupportHFT.h"
#include "cli/Nearest.h"
#include "cli/Session.h"

namespace jackdaw::cli {

namespace {

/** Without the plug-in its limits are unknown, which is told like any unknown name. */
bool BindAuthoring() {
    if (!gFormsAuthoringHFT)
        gFormsAuthoringHFT = KRGetHFT(KRAtomFromString(FormsAuthoringHFTName), FormsAuthoringHFTVersion);
    return gFormsAuthoringHFT != nullptr;
}

/** The host's, then the plug-in's. */
std::vector<KRLimit> AllLimits() {
    std::vector<KRLimit> limits;
    KRLimit limit{};
    for (std::int32_t i = 0; KRLimitGet(i, &limit); ++i) limits.push_back(limit);
    if (!BindAuthoring()) return limits;
    for (std::int32_t i = 0; Forms::TSLimitGet(i, &limit); ++i) limits.push_back(limit);
    return limits;
}

std::vector<KRLimit>::const_iterator FindLimit(const std::vector<KRLimit> &limits, const std::string &name) {
    return std::find_if(limits.begin(), limits.end(), [&](const KRLimit &limit) { return name == limit.name; });
}

[[noreturn]] void FailAsUnknown(const std::vector<KRLimit> &limits, const std::string &name) {
    std::vector<std::string> names;
    for (const KRLimit &limit : limits) names.emplace_back(limit.name);
    const std::string nearest = NearestWord(names, name);
    throw CommandFailed{"there is no limit " + name +
                        (nearest.empty() ? "; see jackdaw --help limits" : "; did you mean " + nearest + "?")};
}

void SetLimit(const std::vector<KRLimit> &limits, const std::string &setting) {
    const std::size_t equals = setting.find('=');
    if (equals == std::string::npos) throw CommandFailed{"--limit " + setting + ": not of the form NAME=N"};
    const std::string name = setting.substr(0, equals);
    const auto limit = FindLimit(limits, name);
    if (limit == limits.end()) FailAsUnknown(limits, name);
    const char *const begin = setting.c_str() + equals + 1;
    const char *const end = setting.c_str() + setting.size();
    std::int64_t value = 0;
    const auto read = std::from_chars(begin, end, value);
    const bool isNumber = read.ec == std::errc{} && read.ptr == end;
    if (!isNumber || value < 1 || value > limit->highest)
        throw CommandFailed{"--limit " + setting + ": " + name + " takes a whole number from 1 to " +
                            std::to_string(limit->highest)};
    if (!KRLimitSet(limit->name, value)) Forms::TSLimitSet(limit->name, value);
}

} // namespace

void SetLimits(const std::vector<std::string> &settings) {
    if (settings.empty()) return;
    const std::vector<KRLimit> limits = AllLimits();
    for (const std::string &setting : settings) SetLimit(limits, setting);
}

void ListLimits() {
    const std::vector<KRLimit> limits = AllLimits();
    std::size_t width = 0;
    for (const KRLimit &limit : limits) width = std::max(width, std::strlen(limit.name));
    std::printf(
        "What is taken on from a file. --limit NAME=N sets a limit for one run; its default stands behind it.\n");
    for (const KRLimit &limit : limits)
        std::printf("  %-*s %12lld  %s\n", static_cast<int>(width), limit.name, static_cast<long long>(limit.standard),
                    limit.bounds);
}

std::int64_t LimitNamed(const char *name) {
    const std::vector<KRLimit> limits = AllLimits();
    const auto limit = FindLimit(limits, name);
    return limit == limits.end() ? 0 : limit->value;
}

} // namespace jackdaw::cli
