// The table of the host's limits.
// SPDX-License-Identifier: MIT
#include "kernel/HostLimits.h"

#include <array>
#include <cstring>

namespace jackdaw {

namespace {

constexpr std::int64_t s_mega = std::int64_t{1} << 20;
constexpr std::int64_t s_giga = std::int64_t{1} << 30;
/** Where nothing but the machine is in the way. */
constexpr std::int64_t s_any = std::int64_t{1} << 40;
/** What lengths of 32 bits still count. */
constexpr std::int64_t s_int = 0x7FFFFFFF;

constexpr KRLimit row(const char *name, std::int64_t standard, std::int64_t highest, const char *bounds) {
    return {name, bounds, standard, standard, highest};
}

// In the order of Limit. A walk that recurses takes up to 1 kB of stack a level.
std::array<KRLimit, static_cast<std::size_t>(Limit::Count)> s_limits{
    row("file-bytes", 4 * s_giga, s_any, "bytes of a document that is read whole, as from the web"),
    row("piped-file-bytes", 256 * s_mega, s_any, "bytes of a document that is read from a pipe or a device"),
    row("fdf-bytes", s_giga, s_any, "bytes of an FDF file"),
    row("stream-bytes", 256 * s_mega, s_any, "bytes of the decoded data of one stream"),
    row("new-stream-bytes", s_giga, s_any, "bytes taken from the source of a new stream"),
    row("array-length", 8 * s_mega, s_int, "elements to which an array grows by storing beyond its end"),
    // The writer goes through them recursively, and the reader takes an object with more than 500 for damaged.
    row("direct-depth", 400, 490, "levels of direct containers within each other that may be built"),
    row("shared-values", 65536, s_int, "different numbers and names of a document that stand in memory once each"),
    row("damage-lines", 100, s_int, "complaints about a file that are told; the others are counted"),
    row("damage-count", 500'000, s_int, "complaints about a file; one with more is refused"),
    row("page-tree-depth", 100, s_any, "ancestors of a page or field that are asked for what they hand down"),
    row("name-tree-levels", 64, s_any, "levels that a search goes down a name tree; a deeper one is rebuilt"),
    row("render-pixels", 100'000'000, s_int, "pixels of a page drawn as a picture"),
    row("draw-seconds", 10, 86400,
        "processor time for a picture: for reading its document, and again for drawing the page"),
    row("draw-bytes", 512 * s_mega, s_any,
        "memory for a picture: for reading its document, where 64 times its size comes to it, "
        "and again for drawing the page"),
    row("drawn-objects", 200'000, s_int, "objects that a page or appearance draws on; what is beyond is left out"),
    row("drawn-depth", 500, 2000, "levels of direct containers within each other that drawing follows"),
    row("kept-pages", 512, s_int, "pages and appearances kept open for the next drawing, about 100 kB each"),
    row("kept-page-bytes", 128 * s_mega, s_any, "bytes of what is kept open for the next drawing"),
    row("view-history", 100, s_int, "places that a view can go back to"),
    row("destination-steps", 4, s_int, "names that lead from one to the next before a destination is given up"),
    row("action-chain", 10'000, s_int, "actions that follow from one"),
    row("action-depth", 32, 1000, "actions within actions"),
    row("action-copy-depth", 64, 1000, "actions within actions that a copy takes along"),
    row("annotation-copy-depth", 100, 2000, "levels of direct containers that the copy of an annotation takes along"),
    row("input-bytes", s_giga, s_any, "bytes of a document on standard input"),
    row("data-bytes", 256 * s_mega, s_any, "bytes of the data that a form is filled with"),
    row("password-bytes", 1024, s_mega, "bytes of a password"),
};

} // namespace

std::int64_t LimitOf(Limit limit) {
    return s_limits[static_cast<std::size_t>(limit)].value;
}

bool GetLimit(std::int32_t index, KRLimit *limit) {
    if (index < 0 || static_cast<std::size_t>(index) >= s_limits.size()) return false;
    *limit = s_limits[static_cast<std::size_t>(index)];
    return true;
}

bool SetLimit(const char *name, std::int64_t value) {
    for (KRLimit &limit : s_limits) {
        if (std::strcmp(limit.name, name) != 0) continue;
        if (value < 1 || value > limit.highest) return false;
        limit.value = value;
        return true;
    }
    return false;
}

} // namespace jackdaw
