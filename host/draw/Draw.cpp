// Opens snapshots in the rendering module, draws them, and keeps them.
// SPDX-License-Identifier: MIT
#include "draw/Draw.h"

#include <dlfcn.h>
#include <filesystem>
#include <list>
#include <map>
#include <string>
#include <tuple>

#include "doc/Document.h"
#include "doc/Pages.h"
#include "draw/PageRenderer.h"
#include "draw/Snapshot.h"
#include "kernel/HostError.h"
#include "kernel/HostLimits.h"
#include "lex/LexApi.h"
#include "lex/LexObjects.h"

namespace jackdaw {

namespace {

namespace fs = std::filesystem;

// Beside the program, one folder up (programs in subfolders of a build), or where both were installed.
const PageRenderer *loadRenderer() {
    std::error_code error;
    const fs::path folder = fs::read_symlink("/proc/self/exe", error).parent_path();
    for (const fs::path &place : {folder, folder.parent_path(), folder.parent_path() / JACKDAW_LIBDIR / "jackdaw"}) {
        const fs::path file = place / PageRendererModule;
        if (!fs::exists(file, error)) continue;
        // Never unloaded: the library keeps things in the process that must not lose their code.
        void *module = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
        void *symbol = module ? dlsym(module, PageRendererSymbol) : nullptr;
        if (symbol) return reinterpret_cast<PageRendererProc>(symbol)();
    }
    throw HostError{KRErrNotAvailable,
                    std::string("The rendering module ") + PageRendererModule + " cannot be loaded."};
}

const PageRenderer &renderer() {
    static const PageRenderer *const s_renderer = loadRenderer();
    return *s_renderer;
}

struct PageClose {
    void operator()(void *page) const {
        renderer().close(page);
    }
};

} // namespace

struct OnePage {
    /** The library reads on from these as long as the page lives: hence the order of the members. */
    std::string bytes;
    std::unique_ptr<void, PageClose> page;
    double width = 0, height = 0;
};

namespace {

/** Null when the bytes cannot be opened. */
OnePagePtr openPage(std::string bytes) {
    const auto opened = std::make_shared<OnePage>();
    opened->bytes = std::move(bytes);
    opened->page.reset(renderer().open(opened->bytes.data(), opened->bytes.size(), &opened->width, &opened->height));
    if (!opened->page || !(opened->width > 0) || !(opened->height > 0)) return nullptr;
    return opened;
}

/** The object that the snapshot was made from, and the layer of the annotation. */
using KeptKey = std::tuple<KRWord, KRWord, KRWord>;

struct Kept {
    KeptKey key;
    OnePagePtr page;
    std::string outline;
    /** Of the snapshot. */
    std::int64_t size;
    std::uint64_t stamp;
};

/** The latest in front. */
struct KeptPages {
    std::list<Kept> order;
    std::map<KeptKey, std::list<Kept>::iterator> byKey;
    std::int64_t bytes = 0;

    void erase(std::list<Kept>::iterator place) {
        bytes -= place->size;
        byKey.erase(place->key);
        order.erase(place);
    }
    void trim() {
        while (!order.empty() &&
               (std::ssize(order) > LimitOf(Limit::KeptPages) || bytes > LimitOf(Limit::KeptPageBytes)))
            erase(std::prev(order.end()));
    }
    void dropDead() {
        for (auto it = order.begin(); it != order.end();) {
            const auto here = it++;
            if (lex::IsNull({std::get<0>(here->key), std::get<1>(here->key)})) erase(here);
        }
    }
};

// Never destroyed: at the end of the process the rendering module may have gone before. DropKept empties it in time.
KeptPages &kept() {
    static KeptPages &s_pages = *new KeptPages;
    return s_pages;
}

/** `build` makes the snapshot in either form; an empty one is nothing to draw and is not kept. */
template <class Build>
OnePagePtr keptOr(LexObj source, LexObj layer, Build build) {
    KeptPages &cache = kept();
    const KeptKey key{source.node, source.slot, layer.node};
    const std::uint64_t stamp = lex::ChangeStamp(lex::DocOf(source));
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
    const std::int64_t size = std::ssize(bytes);
    OnePagePtr page = openPage(std::move(bytes));
    if (!page) return nullptr;
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
        keptOr(PageLex(page), lex::NullObj, [&](SnapshotForm form) { return PageSnapshot(page, form); });
    if (!result) throw HostError{KRErrBadPDF, "Page " + std::to_string(PageNumber(page) + 1) + " cannot be drawn."};
    return result;
}

OnePagePtr KeptAppearance(LexObj stream, LexObj optionalContent) {
    if (!lex::IsStream(stream)) return nullptr;
    return keptOr(stream, optionalContent,
                  [&](SnapshotForm form) { return AppearanceSnapshot(stream, optionalContent, form); });
}

OnePagePtr KeptAnnots(DMPage page, std::span<const LexObj> annots) {
    return keptOr(annots.front(), annots.back(), [&](SnapshotForm form) { return AnnotsSnapshot(page, annots, form); });
}

double OnePageWidth(const OnePage &page) {
    return page.width;
}

double OnePageHeight(const OnePage &page) {
    return page.height;
}

void DrawOnePage(const OnePage &page, cairo_t *context) {
    renderer().render(page.page.get(), context);
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
