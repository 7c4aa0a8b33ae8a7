// Where things are in a view: pages in their column, points, rectangles, annotations.
// SPDX-License-Identifier: MIT
#include "view/PageViewPlaces.h"

#include <algorithm>
#include <cmath>

#include "doc/Annots.h"
#include "doc/Document.h"
#include "doc/Pages.h"
#include "draw/Render.h"
#include "kernel/Atoms.h"
#include "kernel/Fixed.h"
#include "kernel/HostError.h"
#include "lex/LexObjects.h"
#include "view/ViewPlatform.h"
#include "view/ViewRecords.h"

namespace jackdaw {

namespace {

std::int32_t pageCount(const SCPageViewRec &rec) {
    return NumPages(rec.owner->doc);
}

/** Pages may have been deleted since the numbers were set. */
std::int32_t inDocument(const SCPageViewRec &rec, std::int32_t page) {
    return std::clamp(page, 0, std::max(0, pageCount(rec) - 1));
}

std::int32_t shown(const SCPageViewRec &rec) {
    return inDocument(rec, rec.place.page);
}

std::int32_t annotPage(const SCPageViewRec &rec) {
    return inDocument(rec, rec.annotPage);
}

/** Acquired once for each view, and held until the view closes. */
DMPage heldPage(SCPageViewRec &rec, std::int32_t index) {
    const DMPage page = AcquirePage(rec.owner->doc, index);
    if (!rec.held.insert(page).second) ReleasePage(page);
    return page;
}

double zoomOf(const SCPageViewRec &rec) {
    return FixedToDouble(rec.place.zoom);
}

std::int16_t clamped(double value) {
    return static_cast<std::int16_t>(std::lround(std::clamp(value, -32768.0, 32767.0)));
}

SCRect rounded(const DeviceRect &r, double down) {
    return {clamped(r.left), clamped(r.top + down), clamped(r.right), clamped(r.bottom + down)};
}

/** Height in the column at which a page begins; the page shown begins at 0. */
double topOfPage(SCPageView view, std::int32_t page) {
    const SCPageViewRec &rec = RecordOf(view);
    const std::int32_t origin = shown(rec);
    double top = 0;
    for (std::int32_t i = std::min(page, origin); i < std::max(page, origin); ++i)
        top += PlacedGeometry(view, i, zoomOf(rec)).height;
    return page < origin ? -top : top;
}

/** The annotation page in its place of the column. */
struct Placed {
    PageGeometry geometry;
    double top;
};

Placed placedAnnotPage(SCPageView view) {
    const SCPageViewRec &rec = RecordOf(view);
    const std::int32_t page = annotPage(rec);
    return {PlacedGeometry(view, page, zoomOf(rec)), topOfPage(view, page)};
}

bool hasWindow(const SCPageViewRec &rec) {
    return rec.owner->window && Platform().getAperture;
}

/** The farthest page in a direction that still shows in the window. */
std::int32_t lastInAperture(SCPageView view, int step) {
    const SCPageViewRec &rec = RecordOf(view);
    const SCRect aperture = ApertureOf(view);
    std::int32_t page = shown(rec);
    double edge = step > 0 ? PlacedGeometry(view, page, zoomOf(rec)).height : 0;
    const auto shows = [&] { return step > 0 ? edge < aperture.bottom : edge > aperture.top; };
    while (shows() && page + step >= 0 && page + step < pageCount(rec)) {
        page += step;
        edge += step * PlacedGeometry(view, page, zoomOf(rec)).height;
    }
    return page;
}

bool contains(const KRFixedRect &rect, KRFixedPoint point) {
    return rect.left <= point.h && point.h <= rect.right && rect.bottom <= point.v && point.v <= rect.top;
}

/** Gives the context back whatever drawing throws. */
class PlatformDrawing {
public:
    explicit PlatformDrawing(SCPageView view)
        : view_(view), context_(Platform().beginDrawing ? Platform().beginDrawing(view) : nullptr) {}
    ~PlatformDrawing() {
        if (context_ && Platform().endDrawing) Platform().endDrawing(view_, context_);
    }
    PlatformDrawing(const PlatformDrawing &) = delete;
    PlatformDrawing &operator=(const PlatformDrawing &) = delete;
    cairo_t *context() const {
        return context_;
    }

private:
    SCPageView view_;
    cairo_t *context_;
};

} // namespace

void ReleaseHeldPages(SCPageViewRec &view) {
    for (const DMPage page : view.held) ReleasePage(page);
    view.held.clear();
}

PageGeometry PlacedGeometry(SCPageView view, std::int32_t page, double scale) {
    SCPageViewRec &rec = RecordOf(view);
    if (pageCount(rec) == 0) return MakePageGeometry({0, 0, 0, 0}, /*rotate*/ 0, scale);
    return GeometryOfPage(heldPage(rec, inDocument(rec, page)), scale);
}

DMPage ShownPage(SCPageView view) {
    SCPageViewRec &rec = RecordOf(view);
    return heldPage(rec, annotPage(rec));
}

std::int32_t ShownPageNum(SCPageView view) {
    return annotPage(RecordOf(view));
}

std::int32_t SetAnnotPage(SCPageView view, std::int32_t page) {
    SCPageViewRec &rec = RecordOf(view);
    const std::int32_t former = annotPage(rec);
    if (page >= 0 && page < pageCount(rec)) rec.annotPage = page;
    return former;
}

std::int32_t FirstVisiblePage(SCPageView view) {
    return hasWindow(RecordOf(view)) ? lastInAperture(view, /*step*/ -1) : 0;
}

std::int32_t LastVisiblePage(SCPageView view) {
    const SCPageViewRec &rec = RecordOf(view);
    return hasWindow(rec) ? lastInAperture(view, /*step*/ 1) : pageCount(rec) - 1;
}

bool PageIsVisible(SCPageView view, std::int32_t page) {
    return page >= FirstVisiblePage(view) && page <= LastVisiblePage(view);
}

std::int32_t PageOfAnnot(SCPageView view, DMAnnot annot) {
    SCPageViewRec &rec = RecordOf(view);
    if (!AnnotIsValid(annot)) return -1;
    const std::int32_t first = FirstVisiblePage(view);
    const std::int32_t last = LastVisiblePage(view);
    const LexObj page = lex::DictGet(AnnotLex(annot), AtomFromText("P"));
    const std::int32_t named = PageIndexOfLex(rec.owner->doc, page);
    const auto isOn = [&](std::int32_t i) { return AnnotIndex(heldPage(rec, i), annot) >= 0; };
    if (named >= first && named <= last && isOn(named)) return named;
    for (std::int32_t i = first; i <= last; ++i) {
        if (isOn(i)) return i;
    }
    return -1;
}

SCRect ApertureOf(SCPageView view) {
    const SCPageViewRec &rec = RecordOf(view);
    SCRect rect{};
    if (hasWindow(rec)) {
        Platform().getAperture(view, &rect);
        return rect;
    }
    const PageGeometry page = PlacedGeometry(view, shown(rec), zoomOf(rec));
    const double x = rec.place.x;
    const double y = rec.place.y;
    return rounded({x, y, x + page.width, y + page.height}, /*down*/ 0);
}

KRFixedPoint PointToPage(SCPageView view, std::int16_t x, std::int16_t y) {
    const Placed page = placedAnnotPage(view);
    const DevicePoint point = Apply(page.geometry.toPage, x, y - page.top);
    return {FixedFromDouble(point.x), FixedFromDouble(point.y)};
}

KRFixedRect RectToPage(SCPageView view, const SCRect &rect) {
    const Placed page = placedAnnotPage(view);
    return DeviceRectToPage(page.geometry, {static_cast<double>(rect.left), rect.top - page.top,
                                            static_cast<double>(rect.right), rect.bottom - page.top});
}

SCRect RectToDevice(SCPageView view, const KRFixedRect &rect) {
    const Placed page = placedAnnotPage(view);
    return rounded(PageRectToDevice(page.geometry, rect), page.top);
}

SCRect AnnotRect(SCPageView view, DMAnnot annot) {
    return RectToDevice(view, RectOfAnnot(annot));
}

std::int32_t PageAtPoint(SCPageView view, std::int16_t x, std::int16_t y) {
    const SCPageViewRec &rec = RecordOf(view);
    std::int32_t page = shown(rec);
    double top = 0;
    while (y < top && page > 0) top -= PlacedGeometry(view, --page, zoomOf(rec)).height;
    for (; page < pageCount(rec); ++page) {
        const PageGeometry geometry = PlacedGeometry(view, page, zoomOf(rec));
        if (y < top) return -1;
        if (y < top + geometry.height) return x >= 0 && x < geometry.width ? page : -1;
        top += geometry.height;
    }
    return -1;
}

bool AnnotAtPoint(SCPageView view, std::int16_t x, std::int16_t y, DMAnnot *annot) {
    SCPageViewRec &rec = RecordOf(view);
    const std::int32_t number = PageAtPoint(view, x, y);
    if (number < 0) return false;
    const PageGeometry geometry = PlacedGeometry(view, number, zoomOf(rec));
    const DevicePoint place = Apply(geometry.toPage, x, y - topOfPage(view, number));
    const KRFixedPoint point{FixedFromDouble(place.x), FixedFromDouble(place.y)};
    const DMPage page = heldPage(rec, number);
    for (std::int32_t i = NumAnnots(page) - 1; i >= 0; --i) {
        const DMAnnot candidate = PageAnnot(page, i);
        KRFixedRect rect;
        if (!AnnotIsShown(AnnotLex(candidate))) continue;
        if (!ReadRect(lex::DictGet(AnnotLex(candidate), AtomFromText("Rect")), &rect)) continue;
        if (!contains(rect, point)) continue;
        if (annot) *annot = candidate;
        return true;
    }
    return false;
}

void DrawStream(SCPageView view, LexObj stream, const SCRect &rect) {
    const int rotate = PageRotate(ShownPage(view));
    const PlatformDrawing drawing(view);
    if (!drawing.context()) return;
    DrawAppearance(drawing.context(), stream, lex::NullObj,
                   {static_cast<double>(rect.left), static_cast<double>(rect.top), static_cast<double>(rect.right),
                    static_cast<double>(rect.bottom)},
                   rotate);
}

} // namespace jackdaw
