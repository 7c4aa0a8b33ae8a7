// Page handles, inheritance and geometry.
// SPDX-License-Identifier: MIT
#include "doc/Pages.h"

#include <algorithm>
#include <unordered_set>

#include "doc/DocRecord.h"
#include "doc/Keys.h"
#include "kernel/Fixed.h"
#include "kernel/HostError.h"
#include "lex/LexObjects.h"

namespace jackdaw {
namespace {

constexpr KRFixedRect letterPage{0, KRFixedFromInt(792), KRFixedFromInt(612), 0};

std::unordered_set<DMPage> &livePages() {
    static std::unordered_set<DMPage> s_live;
    return s_live;
}

DMPage acquire(DMDocRec &doc, LexObj dict) {
    std::unique_ptr<DMPageRec> &page = doc.pages[dict.node];
    if (!page) {
        page = std::make_unique<DMPageRec>();
        page->doc = &doc;
        page->dict = dict;
        livePages().insert(page.get());
    }
    ++page->references;
    return page.get();
}

bool isEmpty(const KRFixedRect &rect) {
    return rect.left >= rect.right || rect.bottom >= rect.top;
}

KRFixedRect mediaBoxOf(LexObj page) {
    KRFixedRect box;
    return readRect(inheritedValue(page, keys().MediaBox), &box) && !isEmpty(box) ? box : letterPage;
}

KRFixed negated(KRFixed value) {
    return SaturateFixed(-static_cast<std::int64_t>(value));
}

} // namespace

DMPageRec &checkPage(DMPage page) {
    if (!livePages().contains(page)) throw HostError{KRErrBadParam};
    return *page;
}

const PageList &pagesOf(DMDocRec &doc) {
    if (!doc.pagesKnown) {
        doc.pageList = readPageList(doc.lex);
        doc.pagesKnown = true;
    }
    return doc.pageList;
}

void forgetPageList(DMDocRec &doc) {
    doc.pagesKnown = false;
    const PageList &list = pagesOf(doc);
    std::erase_if(doc.pages, [&](auto &entry) {
        DMPageRec &page = *entry.second;
        page.deleted = !list.indexOf.contains(entry.first);
        if (!page.deleted || page.references > 0) return false;
        livePages().erase(&page);
        return true;
    });
}

void dropPages(DMDocRec &doc) {
    for (const auto &[node, page] : doc.pages) livePages().erase(page.get());
    doc.pages.clear();
}

std::int32_t numPages(DMDoc doc) {
    return static_cast<std::int32_t>(pagesOf(checkDoc(doc)).leaves.size());
}

LexObj pageLexAt(DMDoc doc, std::int32_t index) {
    const PageList &list = pagesOf(checkDoc(doc));
    if (index < 0 || static_cast<std::size_t>(index) >= list.leaves.size()) throw HostError{KRErrBadParam};
    return list.leaves[static_cast<std::size_t>(index)].page;
}

std::int32_t pageIndexOfLex(DMDoc doc, LexObj obj) {
    const PageList &list = pagesOf(checkDoc(doc));
    const auto found = list.indexOf.find(obj.node);
    if (found == list.indexOf.end()) return -1;
    return lex::same(list.leaves[static_cast<std::size_t>(found->second)].page, obj) ? found->second : -1;
}

DMPage acquirePage(DMDoc doc, std::int32_t index) {
    return acquire(checkDoc(doc), pageLexAt(doc, index));
}

DMPage acquirePageAgain(DMPage page) {
    ++checkPage(page).references;
    return page;
}

void releasePage(DMPage page) {
    if (!livePages().contains(page) || page->references == 0) return;
    if (--page->references > 0 || !page->deleted) return;
    livePages().erase(page);
    page->doc->pages.erase(page->dict.node);
}

DMPage acquirePageOfLex(LexObj obj) {
    const DMDoc doc = docFromLex(lex::docOf(obj));
    if (doc == nullptr || pageIndexOfLex(doc, obj) < 0) throw HostError{KRErrBadParam};
    return acquire(*doc, obj);
}

DMDoc pageDoc(DMPage page) {
    return checkPage(page).doc;
}

LexObj pageLex(DMPage page) {
    return checkPage(page).dict;
}

std::int32_t pageNumber(DMPage page) {
    const DMPageRec &record = checkPage(page);
    return record.deleted ? -1 : pageIndexOfLex(record.doc, record.dict);
}

LexObj inheritedValue(LexObj page, KRAtom key) {
    LexObj node = page;
    for (int step = 0; step < maxParentSteps && lex::typeOf(node) == LexDict; ++step) {
        const LexObj value = lex::dictGet(node, key);
        if (!lex::isNull(value)) return value;
        node = lex::dictGet(node, keys().Parent);
    }
    return lex::nullObj;
}

std::int32_t pageRotate(DMPage page) {
    const LexObj value = inheritedValue(pageLex(page), keys().Rotate);
    const std::int64_t degrees =
        lex::typeOf(value) == LexFixed ? lex::fixedValue(value) / KRFixedOne : lex::integerOr(value, 0);
    const std::int64_t positive = (degrees % 360 + 360) % 360;
    return static_cast<std::int32_t>(positive / 90 * 90);
}

KRFixedRect pageMediaBox(DMPage page) {
    return mediaBoxOf(pageLex(page));
}

KRFixedRect pageCropBox(DMPage page) {
    const LexObj dict = pageLex(page);
    const KRFixedRect media = mediaBoxOf(dict);
    KRFixedRect crop;
    if (!readRect(inheritedValue(dict, keys().CropBox), &crop)) return media;
    crop = {std::max(crop.left, media.left), std::min(crop.top, media.top), std::min(crop.right, media.right),
            std::max(crop.bottom, media.bottom)};
    return isEmpty(crop) ? media : crop;
}

KRFixedMatrix pageDefaultMatrix(DMPage page) {
    const KRFixedRect box = pageCropBox(page);
    constexpr KRFixed one = KRFixedOne;
    switch (pageRotate(page)) {
    case 90:
        return {0, -one, one, 0, negated(box.bottom), box.right};
    case 180:
        return {-one, 0, 0, -one, box.right, box.top};
    case 270:
        return {0, one, -one, 0, box.top, negated(box.left)};
    default:
        return {one, 0, 0, one, negated(box.left), negated(box.bottom)};
    }
}

bool readRect(LexObj obj, KRFixedRect *rect) {
    if (lex::typeOf(obj) != LexArray || lex::arrayLength(obj) < 4) return false;
    KRFixed sides[4];
    for (std::int32_t i = 0; i < 4; ++i) {
        const LexObj number = lex::arrayGet(obj, i);
        const LexType type = lex::typeOf(number);
        if (type != LexInteger && type != LexFixed) return false;
        sides[i] = lex::numberOr(number, 0);
    }
    *rect = {std::min(sides[0], sides[2]), std::max(sides[1], sides[3]), std::max(sides[0], sides[2]),
             std::min(sides[1], sides[3])};
    return true;
}

LexObj newRectArray(LexDoc doc, const KRFixedRect &rect) {
    const LexObj array = lex::newArray(doc, /*indirect*/ false);
    const KRFixed inFileOrder[4] = {rect.left, rect.bottom, rect.right, rect.top};
    for (std::int32_t i = 0; i < 4; ++i) {
        lex::arrayPut(array, i, lex::newFixed(doc, /*indirect*/ false, inFileOrder[i]));
    }
    return array;
}

} // namespace jackdaw
