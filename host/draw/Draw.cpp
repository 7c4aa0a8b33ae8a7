// Opens snapshots in poppler, draws them, and keeps them.
// SPDX-License-Identifier: MIT
#include "Draw.h"

#include <list>
#include <map>
#include <poppler.h>
#include <string>
#include <tuple>

#include "Document.h"
#include "HostError.h"
#include "LexApi.h"
#include "LexObjects.h"
#include "Pages.h"
#include "Snapshot.h"

namespace jackdaw {

namespace {

struct ObjectUnref {
    void operator()(void *object) const {
        g_object_unref(object);
    }
};

} // namespace

class OnePage {
public:
    /** Null when the bytes cannot be opened. */
    static OnePagePtr open(std::string bytes) {
        auto page = std::make_shared<OnePage>();
        page->bytes_ = std::move(bytes);
        // The library reads on from these bytes as long as the document lives: hence the order of the members.
        GBytes *data = g_bytes_new_static(page->bytes_.data(), page->bytes_.size());
        GError *error = nullptr;
        page->document_.reset(poppler_document_new_from_bytes(data, nullptr, &error));
        g_bytes_unref(data);
        g_clear_error(&error);
        if (page->document_ == nullptr || poppler_document_get_n_pages(page->document_.get()) < 1) return nullptr;
        page->page_.reset(poppler_document_get_page(page->document_.get(), 0));
        if (page->page_ == nullptr) return nullptr;
        poppler_page_get_size(page->page_.get(), &page->width, &page->height);
        if (!(page->width > 0) || !(page->height > 0)) return nullptr;
        return page;
    }

    PopplerPage *page() const {
        return page_.get();
    }
    double width = 0, height = 0;

private:
    std::string bytes_;
    std::unique_ptr<PopplerDocument, ObjectUnref> document_;
    std::unique_ptr<PopplerPage, ObjectUnref> page_;
};

namespace {

/** The object that the snapshot was made from, and the layer of the annotation. */
using KeptKey = std::tuple<KRWord, KRWord, KRWord>;

struct Kept {
    KeptKey key;
    OnePagePtr page;
    std::string outline;
    /** Of the snapshot. */
    std::size_t size;
    std::uint64_t stamp;
};

/** The latest in front. */
struct KeptPages {
    std::list<Kept> order;
    std::map<KeptKey, std::list<Kept>::iterator> byKey;
    std::size_t bytes = 0;
    std::size_t limit = 512;
    std::size_t byteLimit = std::size_t{128} << 20;

    void erase(std::list<Kept>::iterator place) {
        bytes -= place->size;
        byKey.erase(place->key);
        order.erase(place);
    }
    void trim() {
        while (!order.empty() && (order.size() > limit || bytes > byteLimit)) erase(std::prev(order.end()));
    }
    void dropDead() {
        for (auto it = order.begin(); it != order.end();) {
            const auto here = it++;
            if (lex::isNull({std::get<0>(here->key), std::get<1>(here->key)})) erase(here);
        }
    }
};

KeptPages &kept() {
    static KeptPages pages;
    return pages;
}

/** `build` makes the snapshot in either form; an empty one is nothing to draw and is not kept. */
template <class Build>
OnePagePtr keptOr(LexObj source, LexObj layer, Build build) {
    KeptPages &cache = kept();
    const KeptKey key{source.node, source.slot, layer.node};
    const std::uint64_t stamp = lex::changeStamp(lex::docOf(source));
    const auto found = cache.byKey.find(key);
    if (found != cache.byKey.end()) {
        cache.order.splice(cache.order.begin(), cache.order, found->second);
        Kept &entry = cache.order.front();
        if (entry.stamp == stamp) return entry.page;
    }
    std::string outline = build(SnapshotForm::Outline);
    if (found != cache.byKey.end()) {
        Kept &entry = cache.order.front();
        if (entry.outline == outline) {
            entry.stamp = stamp;
            return entry.page;
        }
        cache.erase(cache.order.begin());
    }
    if (outline.empty()) return nullptr;
    std::string bytes = build(SnapshotForm::File);
    const std::size_t size = bytes.size();
    OnePagePtr page = OnePage::open(std::move(bytes));
    if (page == nullptr) return nullptr;
    cache.dropDead();
    cache.order.push_front({key, page, std::move(outline), size, stamp});
    cache.byKey[key] = cache.order.begin();
    cache.bytes += size;
    cache.trim();
    return page;
}

} // namespace

OnePagePtr KeptPage(DMPage page) {
    OnePagePtr result =
        keptOr(pageLex(page), lex::nullObj, [&](SnapshotForm form) { return PageSnapshot(page, form); });
    if (result == nullptr)
        throw HostError{KRErrBadPDF, "Page " + std::to_string(pageNumber(page) + 1) + " cannot be drawn."};
    return result;
}

OnePagePtr KeptAppearance(LexObj stream, LexObj optionalContent) {
    if (lex::typeOf(stream) != LexStream) return nullptr;
    return keptOr(stream, optionalContent,
                  [&](SnapshotForm form) { return AppearanceSnapshot(stream, optionalContent, form); });
}

double OnePageWidth(const OnePage &page) {
    return page.width;
}

double OnePageHeight(const OnePage &page) {
    return page.height;
}

void DrawOnePage(const OnePage &page, cairo_t *context) {
    poppler_page_render(page.page(), context);
}

void SetKeptLimit(std::size_t count) {
    kept().limit = count;
    kept().trim();
}

std::size_t KeptCount() {
    return kept().order.size();
}

void DropKept() {
    kept().byKey.clear();
    kept().order.clear();
    kept().bytes = 0;
}

} // namespace jackdaw
