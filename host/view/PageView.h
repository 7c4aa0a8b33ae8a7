// The page view: which page, at which zoom, and the way between device and page.
//
// 1. Device space has its origin at the upper left corner of the page that is shown; the other pages lie above and
//    below it in one column, without gaps. So places near the reader fit into 16 bits however long the document is;
//    what lies farther away is clamped.
// 2. The annotation page is the page that device places speak of: the page shown, unless SetAnnotPage named another for
//    the time of some work. ShownPage and ShownPageNum give it, so that page and place agree.
// 3. Without a window the aperture is the page shown, every page counts as visible, and the zoom is 1 until changed.
// SPDX-License-Identifier: MIT
#pragma once

#include "ScreenViewHFT.h"
#include "draw/PageGeometry.h"

namespace jackdaw {

inline constexpr KRFixed MinZoom = KRFixedOne / 16;
inline constexpr KRFixed MaxZoom = 64 * KRFixedOne;

SCDoc DocOfPageView(SCPageView view);

/** Not acquired; good until the view closes. */
DMPage ShownPage(SCPageView view);
std::int32_t ShownPageNum(SCPageView view);
/** Gives the earlier one; a number outside the document changes nothing. */
std::int32_t SetAnnotPage(SCPageView view, std::int32_t page);
std::int32_t FirstVisiblePage(SCPageView view);
std::int32_t LastVisiblePage(SCPageView view);
bool PageIsVisible(SCPageView view, std::int32_t page);
/** The page of an annotation, -1 when it is on none that is visible. */
std::int32_t PageOfAnnot(SCPageView view, DMAnnot annot);

SCRect ApertureOf(SCPageView view);
KRFixed ZoomOf(SCPageView view);
std::int32_t ZoomTypeOf(SCPageView view);

// Places. All speak of the annotation page, but AnnotAtPoint, which looks at whatever page lies there.
KRFixedPoint PointToPage(SCPageView view, std::int16_t x, std::int16_t y);
KRFixedRect RectToPage(SCPageView view, const SCRect &rect);
SCRect RectToDevice(SCPageView view, const KRFixedRect &rect);
/** Raises KRErrBadParam when it has no rectangle. */
SCRect AnnotRect(SCPageView view, DMAnnot annot);
/** The topmost annotation that shows; false when there is none. */
bool AnnotAtPoint(SCPageView view, std::int16_t x, std::int16_t y, DMAnnot *annot);
/** The page in the column at a height; -1 beside the document. */
std::int32_t PageAtPoint(SCPageView view, std::int16_t x, std::int16_t y);

// Going about. Each sends SCPageViewDidChange, unless an operation is under way: then its end sends what came together.
void GoToPage(SCPageView view, std::int32_t page);
void ZoomTo(SCPageView view, std::int32_t type, KRFixed zoom);
/** `x`, `y` become the upper left corner of the aperture. */
void ScrollTo(SCPageView view, std::int16_t x, std::int16_t y);
void GoBack(SCPageView view);
void GoForward(SCPageView view);
/** A destination: name, string, array, or dictionary with `D`. What leads nowhere changes nothing. */
void UseDest(SCPageView view, LexObj dest);
void BeginViewOperation(SCPageView view);
void EndViewOperation(SCPageView view);
/** The window changed its size: sends SCPageViewDidChange. */
void PageViewResized(SCPageView view);

SCDocViewDef ViewDefOf(SCPageView view);
void UseViewDef(SCPageView view, const SCDocViewDef &def);

DMColorValue DrawingColor(SCPageView view);
void SetDrawingColor(SCPageView view, const DMColorValue &color);
/** Through the platform; nothing without a window. */
void DrawStream(SCPageView view, LexObj stream, const SCRect &rect);

} // namespace jackdaw
