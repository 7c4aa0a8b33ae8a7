// Page handles, inheritance and geometry.
// SPDX-License-Identifier: MIT
#include "doc/Pages.h"

#include <algorithm>
#include <unordered_set>

#include "doc/DocRecord.h"
#include "doc/Keys.h"
#include "kernel/Fixed.h"
#include "kernel/HostError.h"
#include "kernel/HostLimits.h"
#include "lex/LexObjects.h"

namespace jackdaw {
namespace {

constexpr KRFixedRect s_letterPage{0, KRFixedFromInt(792), KRFixedFromInt(612), 0};

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
    return ReadRect(InheritedPageValue(page, Keys().MediaBox), &box) && !isEmpty(box) ? box : s_letterPage;
}

KRFixed negated(KRFixed value) {
    return SaturateFixed(-static_cast<std::int64_t>(value));
}

} // namespace

DMPageRec &CheckPage(DMPage page) {
    if (!livePages().contains(page)) throw HostError{KRErrBadParam};
    return *page;
}

const PageList &PagesOf(DMDocRec &doc) {
    if (!doc.pagesKnown) {
        doc.pageList = ReadPageList(doc.lex);
        doc.pagesKnown = true;
    }
    return doc.pageList;
}

void ForgetPageList(DMDocRec &doc) {
    doc.pagesKnown = false;
    const PageList &list = PagesOf(doc);
    std::erase_if(doc.pages, [&](auto &entry) {
        DMPageRec &page = *entry.second;
        page.deleted = !list.indexOf.contains(entry.first);
        if (!page.deleted || page.references > 0) return false;
        livePages().erase(&page);
        return true;
    });
}

void DropPages(DMDocRec &doc) {
    for (const auto &[node, page] : doc.pages) livePages().erase(page.get());
    doc.pages.clear();
}

std::int32_t NumPages(DMDoc doc) {
    return static_cast<std::int32_t>(PagesOf(CheckDoc(doc)).leaves.size());
}

LexObj PageLexAt(DMDoc doc, std::int32_t index) {
    const PageList &list = PagesOf(CheckDoc(doc));
    if (index < 0 || static_cast<std::size_t>(index) >= list.leaves.size()) throw HostError{KRErrBadParam};
    return list.leaves[static_cast<std::size_t>(index)].page;
}

std::int32_t PageIndexOfLex(DMDoc doc, LexObj obj) {
    const PageList &list = PagesOf(CheckDoc(doc));
    const auto found = list.indexOf.find(obj.node);
    if (found == list.indexOf.end()) return -1;
    return lex::Same(list.leaves[static_cast<std::size_t>(found->second)].page, obj) ? found->second : -1;
}

DMPage AcquirePage(DMDoc doc, std::int32_t index) {
    return acquire(CheckDoc(doc), PageLexAt(doc, index));
}

DMPage AcquirePageAgain(DMPage page) {
    ++CheckPage(page).references;
    return page;
}

void ReleasePage(DMPage page) {
    if (!livePages().contains(page) || page->references == 0) return;
    if (--page->references > 0 || !page->deleted) return;
    livePages().erase(page);
    page->doc->pages.erase(page->dict.node);
}

DMPage AcquirePageOfLex(LexObj obj) {
    const DMDoc doc = DocFromLex(lex::DocOf(obj));
    if (!doc || PageIndexOfLex(doc, obj) < 0) throw HostError{KRErrBadParam};
    return acquire(*doc, obj);
}

DMDoc PageDoc(DMPage page) {
    return CheckPage(page).doc;
}

LexObj PageLex(DMPage page) {
    return CheckPage(page).dict;
}

std::int32_t PageNumber(DMPage page) {
    const DMPageRec &record = CheckPage(page);
    return record.deleted ? -1 : PageIndexOfLex(record.doc, record.dict);
}

LexObj InheritedPageValue(LexObj page, KRAtom key) {
    LexObj node = page;
    for (int step = 0; step < LimitOf(Limit::PageTreeDepth) && lex::IsDict(node); ++step) {
        const LexObj value = lex::DictGet(node, key);
        if (!lex::IsNull(value)) return value;
        node = lex::DictGet(node, Keys().Parent);
    }
    return lex::NullObj;
}

std::int32_t PageRotate(DMPage page) {
    const LexObj value = InheritedPageValue(PageLex(page), Keys().Rotate);
    const std::int64_t degrees =
        lex::TypeOf(value) == LexFixed ? lex::FixedValue(value) / KRFixedOne : lex::IntegerOr(value, 0);
    const std::int64_t positive = (degrees % 360 + 360) % 360;
    return static_cast<std::int32_t>(positive / 90 * 90);
}

KRFixedRect PageMediaBox(DMPage page) {
    return mediaBoxOf(PageLex(page));
}

KRFixedRect PageCropBox(DMPage page) {
    const LexObj dict = PageLex(page);
    const KRFixedRect media = mediaBoxOf(dict);
    KRFixedRect crop;
    if (!ReadRect(InheritedPageValue(dict, Keys().CropBox), &crop)) return media;
    crop = {std::max(crop.left, media.left), std::min(crop.top, media.top), std::min(crop.right, media.right),
            std::max(crop.bottom, media.bottom)};
    return isEmpty(crop) ? media : crop;
}

KRFixedMatrix PageDefaultMatrix(DMPage page) {
    const KRFixedRect box = PageCropBox(page);
    constexpr KRFixed one = KRFixedOne;
    switch (PageRotate(page)) {
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

bool ReadRect(LexObj obj, KRFixedRect *rect) {
    if (!lex::IsArray(obj) || lex::ArrayLength(obj) < 4) return false;
    KRFixed sides[4];
    for (std::int32_t i = 0; i < 4; ++i) {
        const LexObj number = lex::ArrayGet(obj, i);
        const LexType type = lex::TypeOf(number);
        if (type != LexInteger && type != LexFixed) return false;
        sides[i] = lex::NumberOr(number, 0);
    }
    *rect = {std::min(sides[0], sides[2]), std::max(sides[1], sides[3]), std::max(sides[0], sides[2]),
             std::min(sides[1], sides[3])};
    return true;
}

LexObj NewRectArray(LexDoc doc, const KRFixedRect &rect) {
    const LexObj array = lex::NewArray(doc, /*indirect*/ false);
    const KRFixed inFileOrder[4] = {rect.left, rect.bottom, rect.right, rect.top};
    for (std::int32_t i = 0; i < 4; ++i) {
        lex::ArrayPut(array, i, lex::NewFixed(doc, /*indirect*/ false, inFileOrder[i]));
    }
    return array;
}

} // namespace jackdaw
