// Warnings about names that a form does not have.
// SPDX-License-Identifier: MIT
#include "cli/UnknownNames.h"

#include "cli/Field.h"
#include "cli/Session.h"
#include "cli/Text.h"

namespace jackdaw::cli {

namespace {

/** Unknown names that get a line of their own. */
constexpr std::size_t s_told = 20;
/** A form with no more names than this is listed whole. */
constexpr std::size_t s_listed = 12;
constexpr std::size_t s_suggested = 5;

std::string Suggestions(const NameIndex &index, const std::string &name) {
    const bool all = index.Size() <= s_listed;
    const std::vector<std::string> nearest = index.Nearest(name, all ? s_listed : s_suggested);
    const std::string intro = all ? "there are: " : "the nearest of " + std::to_string(index.Size()) + ": ";
    return intro + JoinTexts(nearest, s_listed);
}

} // namespace

void UnknownNames::Add(const std::string &name) {
    if (++unknown_ > s_told) return;
    if (!index_) index_.emplace(FieldNames(doc_));
    Warn(name + ": no such field; " + Suggestions(*index_, name));
}

void UnknownNames::WarnOfRest() const {
    if (unknown_ > s_told) Warn("no such field: " + std::to_string(unknown_ - s_told) + " more names");
}

} // namespace jackdaw::cli
