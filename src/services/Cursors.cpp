// The table of cursors.
// SPDX-License-Identifier: MIT
#include "services/Cursors.h"

#include <array>
#include <memory>

#include "Common/unix/mdUtils.h"
#include "ScreenViewHFT.h"

namespace {

struct CursorRow {
    std::uint16_t id;
    /** Supplied by the platform layer, not one of the host's standard cursors. */
    std::uint16_t own;
};

// Rows 1 and 2 name cursors that this platform does not have; row 3 is fetched by nobody.
constexpr CursorRow s_rows[CursorCount] = {{0, 1},    {1204, 1}, {1205, 1}, {1000, 0},
                                           {1112, 0}, {1, 0},    {0, 0},    {1100, 0}};

using Cursors = std::array<SCCursor, CursorCount>;
std::unique_ptr<Cursors> s_cursors;

} // namespace

void CursorsInit() {}

void CursorLoad(std::uint16_t index) {
    if (index >= CursorCount) return;
    if (!s_cursors) s_cursors = std::make_unique<Cursors>();
    SCCursor &cursor = (*s_cursors)[index];
    if (cursor) return;
    const CursorRow &row = s_rows[index];
    cursor = row.own ? mdGetCursor(row.id) : SCSysGetStandardCursor(static_cast<std::int16_t>(row.id));
}

SCCursor CursorGet(std::uint16_t index) {
    if (index >= CursorCount) return nullptr;
    CursorLoad(index);
    return (*s_cursors)[index];
}

void CursorsTerm() {
    if (!s_cursors) return;
    for (std::size_t i = 0; i < s_cursors->size(); ++i) {
        if ((*s_cursors)[i] && s_rows[i].own) mdReleaseCursor((*s_cursors)[i]);
    }
    s_cursors.reset();
}
