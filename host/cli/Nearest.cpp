// The names nearest to one that is not there.
// SPDX-License-Identifier: MIT
#include "cli/Nearest.h"

#include <algorithm>
#include <set>

namespace jackdaw::cli {

namespace {

/** Bytes of a name that are compared. */
constexpr std::size_t s_compared = 64;
/** Names that are looked at on either side of the wanted one's place. */
constexpr std::size_t s_neighbours = 16;

std::string Folded(std::string_view name) {
    std::string folded(name.substr(0, s_compared));
    for (char &c : folded) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return folded;
}

std::string FoldedFromEnd(std::string_view name) {
    std::string folded = Folded(name.substr(name.size() - std::min(name.size(), s_compared)));
    std::reverse(folded.begin(), folded.end());
    return folded;
}

// Without the levels above, and without a number in brackets: people leave both out.
std::string FoldedLastPart(std::string_view name) {
    name.remove_prefix(name.rfind('.') + 1);
    if (!name.empty() && name.back() == ']') name = name.substr(0, std::min(name.rfind('['), name.size()));
    return Folded(name);
}

// How many bytes to put in, take out or change, or neighbours to swap, until one is the other.
std::size_t EditDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> beforeLast, last(b.size() + 1), row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        beforeLast = std::exchange(last, row);
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const bool same = a[i - 1] == b[j - 1];
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (same ? 0 : 1)});
            const bool swapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
            if (swapped) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
        }
    }
    return row[b.size()];
}

std::size_t NameDistance(std::string_view a, std::string_view b) {
    const std::size_t whole = EditDistance(Folded(a), Folded(b));
    return std::min(whole, EditDistance(FoldedLastPart(a), FoldedLastPart(b)) + 1);
}

template <class KeyOf>
std::vector<std::pair<std::string, std::uint32_t>> Sorted(const std::vector<std::string> &names, KeyOf keyOf) {
    std::vector<std::pair<std::string, std::uint32_t>> keys;
    keys.reserve(names.size());
    for (const std::string &name : names) keys.emplace_back(keyOf(name), static_cast<std::uint32_t>(keys.size()));
    std::sort(keys.begin(), keys.end());
    return keys;
}

void TakeNeighbours(const std::vector<std::pair<std::string, std::uint32_t>> &keys, const std::string &wanted,
                    std::set<std::uint32_t> &found) {
    const auto place = std::lower_bound(keys.begin(), keys.end(), std::pair(wanted, std::uint32_t{0}));
    const auto before = std::min<std::ptrdiff_t>(place - keys.begin(), s_neighbours);
    const auto after = std::min<std::ptrdiff_t>(keys.end() - place, s_neighbours);
    for (auto key = place - before; key != place + after; ++key) found.insert(key->second);
}

} // namespace

std::string NearestWord(const std::vector<std::string> &words, std::string_view wanted) {
    std::string nearest;
    // A third of the word may be wrong.
    std::size_t least = std::max<std::size_t>(wanted.size() / 3, 1) + 1;
    for (const std::string &word : words) {
        const bool begun = wanted.size() > 2 && word.compare(0, wanted.size(), wanted) == 0;
        const std::size_t distance = begun ? 1 : EditDistance(Folded(word), Folded(wanted));
        if (distance >= least) continue;
        least = distance;
        nearest = word;
    }
    return nearest;
}

NameIndex::NameIndex(std::vector<std::string> names)
    : names_(std::move(names)), byStart_(Sorted(names_, Folded)), byEnd_(Sorted(names_, FoldedFromEnd)),
      byLastPart_(Sorted(names_, FoldedLastPart)) {}

std::vector<std::string> NameIndex::Nearest(std::string_view wanted, std::size_t count) const {
    std::set<std::uint32_t> found;
    TakeNeighbours(byStart_, Folded(wanted), found);
    TakeNeighbours(byEnd_, FoldedFromEnd(wanted), found);
    TakeNeighbours(byLastPart_, FoldedLastPart(wanted), found);
    std::vector<std::pair<std::size_t, std::uint32_t>> ranked;
    for (const std::uint32_t number : found) ranked.emplace_back(NameDistance(wanted, names_[number]), number);
    std::sort(ranked.begin(), ranked.end());
    std::vector<std::string> nearest;
    for (std::size_t i = 0; i < ranked.size() && i < count; ++i) nearest.push_back(names_[ranked[i].second]);
    return nearest;
}

} // namespace jackdaw::cli
