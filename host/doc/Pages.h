// Pages: the page list, page handles, what a page inherits, its boxes and its matrix.
//
// 1. The list is made by a walk of `Kids` that meets every node once, whatever `Count`, `Type` and `Parent` claim. It
//    is kept until an edit of pages.
// 2. A page has one handle for as long as it belongs to an open document; acquiring counts.
// 3. A page that was deleted keeps its handle while it is acquired: it has no number, its object reads as null.
// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include "DocModelHFT.h"
#include "LexHFT.h"

namespace jackdaw {

std::int32_t NumPages(DMDoc doc);
/** The caller releases the page. Throws KRErrBadParam outside the document. */
DMPage AcquirePage(DMDoc doc, std::int32_t index);
DMPage AcquirePageAgain(DMPage page);
/** A handle of a closed document is let pass: it went with the document. */
void ReleasePage(DMPage page);
/** Acquires the page of a page dictionary; throws KRErrBadParam when it is no page of its document. */
DMPage AcquirePageOfLex(LexObj obj);

DMDoc PageDoc(DMPage page);
LexObj PageLex(DMPage page);
/** -1 for a page that was deleted. */
std::int32_t PageNumber(DMPage page);

/** Page dictionary by index, without a handle. Throws KRErrBadParam outside the document. */
LexObj PageLexAt(DMDoc doc, std::int32_t index);
/** Index of a page dictionary; -1 when it is no page of the document. Costs a look-up. */
std::int32_t PageIndexOfLex(DMDoc doc, LexObj obj);

/** The value under `key` of a page dictionary or of the nearest node above it that has one; null when none has. */
LexObj InheritedPageValue(LexObj page, KRAtom key);
/** 0, 90, 180 or 270. */
std::int32_t PageRotate(DMPage page);
/** Crop box cut to the media box, in points. */
KRFixedRect PageCropBox(DMPage page);
KRFixedRect PageMediaBox(DMPage page);
/** From page space to the upright page with its crop box's corner at the origin, y upward. */
KRFixedMatrix PageDefaultMatrix(DMPage page);

/** Four numbers in file order as a normalised rectangle; false when `obj` is none. */
bool ReadRect(LexObj obj, KRFixedRect *rect);
/** A direct array of four numbers in file order. */
LexObj NewRectArray(LexDoc doc, const KRFixedRect &rect);

/** Holds an acquired page. */
class PageRef {
public:
    explicit PageRef(DMPage acquired) : page_(acquired) {}
    PageRef(PageRef &&other) noexcept : page_(std::exchange(other.page_, nullptr)) {}
    PageRef &operator=(PageRef &&) = delete;
    ~PageRef() {
        if (page_) ReleasePage(page_);
    }
    DMPage get() const {
        return page_;
    }

private:
    DMPage page_;
};

} // namespace jackdaw
