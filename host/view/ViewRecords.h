// The records behind the handles SCDoc and SCPageView; for the sources of host/view alone.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "ScreenViewHFT.h"

namespace jackdaw {

/** Where a view was: what going back restores. */
struct ViewPlace {
    std::int32_t page = 0;
    KRFixed zoom = KRFixedOne;
    std::int32_t zoomType = SCZoomNoVary;
    /** Upper left corner of the aperture, in device units of the page. */
    std::int16_t x = 0, y = 0;
};

} // namespace jackdaw

struct SCPageViewRec {
    SCDoc owner = nullptr;
    jackdaw::ViewPlace place;
    std::int32_t annotPage = 0;
    DMColorValue color{};
    std::vector<jackdaw::ViewPlace> back, forward;
    /** Operations under way, and what `how` they have gathered. */
    int operations = 0;
    int gathered = 0;
    /** Pages that were handed out, each acquired once. */
    std::unordered_set<DMPage> held;
};

struct SCDocRec {
    DMDoc doc = nullptr;
    SCWindow window = nullptr;
    std::string title;
    bool readOnly = false;
    bool closing = false;
    KRAtom selectionType = KRAtomNull;
    void *selection = nullptr;
    SCPageViewRec pageView;
};

namespace jackdaw {

/** Throws KRErrBadParam for a handle of no open view. */
SCDocRec &RecordOf(SCDoc view);
SCPageViewRec &RecordOf(SCPageView view);

/** Gives back the pages handed out. */
void ReleaseHeldPages(SCPageViewRec &view);

/** A member of a plug-in's record; null where the record, by its size, ends before it. */
template <class Record, class Member>
Member MemberOf(const Record *record, Member Record::*member) {
    const auto *start = reinterpret_cast<const char *>(record);
    const auto *end = reinterpret_cast<const char *>(&(record->*member)) + sizeof(Member);
    return static_cast<std::size_t>(end - start) <= record->size ? record->*member : nullptr;
}

} // namespace jackdaw
