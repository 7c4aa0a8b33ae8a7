// Going about in a view: pages, zoom, scrolling, history, destinations, and the telling of it.
// SPDX-License-Identifier: MIT
#include "view/PageView.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>
#include <utility>

#include "doc/DocNameTree.h"
#include "doc/Document.h"
#include "doc/Notify.h"
#include "doc/Pages.h"
#include "kernel/Atoms.h"
#include "kernel/Fixed.h"
#include "kernel/HostError.h"
#include "kernel/HostLimits.h"
#include "lex/LexObjects.h"
#include "lex/Store.h"
#include "view/PageViewPlaces.h"
#include "view/ViewPlatform.h"
#include "view/ViewRecords.h"

namespace jackdaw {

namespace {

void changed(SCPageView view, int how) {
    SCPageViewRec &rec = RecordOf(view);
    if (rec.operations > 0) {
        rec.gathered |= how;
        return;
    }
    if (Platform().viewChanged) Platform().viewChanged(view, how);
    NotifyPageViewDidChange(view, static_cast<std::int16_t>(how));
}

void remember(std::vector<ViewPlace> &history, const ViewPlace &place) {
    if (std::ssize(history) >= LimitOf(Limit::ViewHistory)) history.erase(history.begin());
    history.push_back(place);
}

/** Goes there without making history. */
void moveTo(SCPageView view, const ViewPlace &place) {
    SCPageViewRec &rec = RecordOf(view);
    const ViewPlace former = rec.place;
    rec.place = place;
    rec.place.page = std::clamp(place.page, 0, std::max(0, NumPages(rec.owner->doc) - 1));
    rec.annotPage = rec.place.page;
    int how = 0;
    if (rec.place.page != former.page) how |= SCPageViewPageChanged | SCPageViewScrolled;
    if (rec.place.x != former.x || rec.place.y != former.y) how |= SCPageViewScrolled;
    if (rec.place.zoom != former.zoom || rec.place.zoomType != former.zoomType) how |= SCPageViewZoomed;
    if (how != 0) changed(view, how);
}

void moveAndRemember(SCPageView view, const ViewPlace &place) {
    SCPageViewRec &rec = RecordOf(view);
    if (place.page != rec.place.page) {
        remember(rec.back, rec.place);
        rec.forward.clear();
    }
    moveTo(view, place);
}

void travel(SCPageView view, std::vector<ViewPlace> &from, std::vector<ViewPlace> &to) {
    if (from.empty()) return;
    const ViewPlace place = from.back();
    from.pop_back();
    remember(to, RecordOf(view).place);
    moveTo(view, place);
}

/** The zoom that makes the page fit the window; without one there is nothing to fit. */
KRFixed fittingZoom(SCPageView view, const ViewPlace &place) {
    if (!Platform().getAperture || !RecordOf(view).owner->window) return place.zoom;
    const SCRect aperture = ApertureOf(view);
    const PageGeometry page = PlacedGeometry(view, place.page, /*scale*/ 1.0);
    const double across = (aperture.right - aperture.left) / std::max(1.0, page.width);
    const double down = (aperture.bottom - aperture.top) / std::max(1.0, page.height);
    const double fit = place.zoomType == SCZoomFitPage ? std::min(across, down) : across;
    return std::clamp(FixedFromDouble(fit), MinZoom, MaxZoom);
}

ViewPlace zoomed(SCPageView view, ViewPlace place, std::int32_t type, KRFixed zoom) {
    place.zoomType = type == SCZoomFitPage || type == SCZoomFitWidth ? type : SCZoomNoVary;
    if (place.zoomType != SCZoomNoVary)
        place.zoom = fittingZoom(view, place);
    else if (zoom > 0)
        place.zoom = std::clamp(zoom, MinZoom, MaxZoom);
    return place;
}

// Destinations.

LexObj namedDest(DMDoc doc, LexObj name) {
    const bool isName = lex::IsName(name);
    const std::string text = isName ? AtomText(lex::NameValue(name)) : lex::StringValue(name);
    LexObj dest = lex::NullObj;
    const DMNameTree tree = DocNameTree(doc, AtomFromText("Dests"));
    if (NameTreeIsValid(tree) && NameTreeGet(tree, text, &dest)) return dest;
    const LexObj old = lex::DictGet(lex::RootOf(DocLex(doc)), AtomFromText("Dests"));
    const KRAtom key = ExistingAtom(text);
    return lex::HasKeys(old) && key != KRAtomNull ? lex::DictGet(old, key) : lex::NullObj;
}

/** The array that a destination comes to; null when it comes to none. */
LexObj explicitDest(DMDoc doc, LexObj dest) {
    for (int step = 0; step < LimitOf(Limit::DestinationSteps); ++step) {
        switch (lex::TypeOf(dest)) {
        case LexArray:
            return dest;
        case LexDict:
            dest = lex::DictGet(dest, AtomFromText("D"));
            break;
        case LexName:
        case LexString:
            dest = namedDest(doc, dest);
            break;
        default:
            return lex::NullObj;
        }
    }
    return lex::NullObj;
}

std::int32_t pageOfDest(DMDoc doc, LexObj page) {
    return lex::IsDict(page) ? PageIndexOfLex(doc, page) : lex::IntegerOr(page, -1);
}

std::int16_t toDevice16(double value) {
    return static_cast<std::int16_t>(std::lround(std::clamp(value, -32768.0, 32767.0)));
}

/** The corner that a destination names, in page space; null objects for what it leaves open. */
struct DestCorner {
    LexObj left = lex::NullObj;
    LexObj top = lex::NullObj;
};

DestCorner cornerOf(LexObj dest, std::string_view fit) {
    if (fit == "XYZ") return {lex::ArrayGet(dest, 2), lex::ArrayGet(dest, 3)};
    if (fit == "FitR") return {lex::ArrayGet(dest, 2), lex::ArrayGet(dest, 5)};
    if (fit == "FitH" || fit == "FitBH") return {lex::NullObj, lex::ArrayGet(dest, 2)};
    if (fit == "FitV" || fit == "FitBV") return {lex::ArrayGet(dest, 2), lex::NullObj};
    return {};
}

/** Makes the destination's corner that of the aperture. */
void placeCorner(SCPageView view, LexObj dest, std::string_view fit, ViewPlace &place) {
    const DestCorner corner = cornerOf(dest, fit);
    const PageGeometry page = PlacedGeometry(view, place.page, FixedToDouble(place.zoom));
    const DevicePoint point =
        Apply(page.toDevice, FixedToDouble(lex::NumberOr(corner.left, 0)), FixedToDouble(lex::NumberOr(corner.top, 0)));
    place.x = lex::IsNull(corner.left) ? std::int16_t{0} : toDevice16(point.x);
    place.y = lex::IsNull(corner.top) ? std::int16_t{0} : toDevice16(point.y);
}

} // namespace

SCDoc DocOfPageView(SCPageView view) {
    return RecordOf(view).owner;
}

KRFixed ZoomOf(SCPageView view) {
    return RecordOf(view).place.zoom;
}

std::int32_t ZoomTypeOf(SCPageView view) {
    return RecordOf(view).place.zoomType;
}

void GoToPage(SCPageView view, std::int32_t page) {
    const SCPageViewRec &rec = RecordOf(view);
    if (page < 0 || page >= NumPages(rec.owner->doc)) throw HostError{KRErrBadParam, "There is no such page."};
    ViewPlace place = rec.place;
    place.page = page;
    if (page != rec.place.page) place.x = place.y = 0;
    moveAndRemember(view, place);
}

void ZoomTo(SCPageView view, std::int32_t type, KRFixed zoom) {
    moveTo(view, zoomed(view, RecordOf(view).place, type, zoom));
}

void ScrollTo(SCPageView view, std::int16_t x, std::int16_t y) {
    ViewPlace place = RecordOf(view).place;
    place.x = x;
    place.y = y;
    moveTo(view, place);
}

void GoBack(SCPageView view) {
    SCPageViewRec &rec = RecordOf(view);
    travel(view, rec.back, rec.forward);
}

void GoForward(SCPageView view) {
    SCPageViewRec &rec = RecordOf(view);
    travel(view, rec.forward, rec.back);
}

void UseDest(SCPageView view, LexObj dest) {
    const DMDoc doc = RecordOf(view).owner->doc;
    const LexObj array = explicitDest(doc, dest);
    if (lex::IsNull(array) || lex::ArrayLength(array) < 1) return;
    ViewPlace place = RecordOf(view).place;
    place.page = pageOfDest(doc, lex::ArrayGet(array, 0));
    if (place.page < 0 || place.page >= NumPages(doc)) return;
    const std::string_view fit = AtomText(lex::NameOrNone(lex::ArrayGet(array, 1)));
    if (fit == "XYZ") place = zoomed(view, place, SCZoomNoVary, lex::NumberOr(lex::ArrayGet(array, 4), 0));
    if (fit == "Fit" || fit == "FitB") place = zoomed(view, place, SCZoomFitPage, 0);
    if (fit == "FitH" || fit == "FitBH") place = zoomed(view, place, SCZoomFitWidth, 0);
    placeCorner(view, array, fit, place);
    moveAndRemember(view, place);
}

void BeginViewOperation(SCPageView view) {
    ++RecordOf(view).operations;
}

void EndViewOperation(SCPageView view) {
    SCPageViewRec &rec = RecordOf(view);
    if (rec.operations == 0 || --rec.operations > 0 || rec.gathered == 0) return;
    changed(view, std::exchange(rec.gathered, 0));
}

void PageViewResized(SCPageView view) {
    SCPageViewRec &rec = RecordOf(view);
    int how = SCPageViewResized;
    if (rec.place.zoomType != SCZoomNoVary) {
        const KRFixed former = rec.place.zoom;
        rec.place.zoom = fittingZoom(view, rec.place);
        if (rec.place.zoom != former) how |= SCPageViewZoomed;
    }
    changed(view, how);
}

SCDocViewDef ViewDefOf(SCPageView view) {
    const ViewPlace &place = RecordOf(view).place;
    return {sizeof(SCDocViewDef), place.page, place.zoom, place.zoomType, place.x, place.y};
}

void UseViewDef(SCPageView view, const SCDocViewDef &def) {
    ViewPlace place{def.pageNum, RecordOf(view).place.zoom, def.zoomType, def.x, def.y};
    moveAndRemember(view, zoomed(view, place, def.zoomType, def.zoom));
}

DMColorValue DrawingColor(SCPageView view) {
    return RecordOf(view).color;
}

void SetDrawingColor(SCPageView view, const DMColorValue &color) {
    RecordOf(view).color = color;
}

} // namespace jackdaw
