// The rendering module: pages drawn by poppler.
// SPDX-License-Identifier: MIT
#include "draw/PageRenderer.h"

#include <memory>

#include <poppler.h>

namespace {

struct ObjectUnref {
    void operator()(void *object) const {
        g_object_unref(object);
    }
};

struct OpenPage {
    std::unique_ptr<PopplerDocument, ObjectUnref> document;
    std::unique_ptr<PopplerPage, ObjectUnref> page;
};

void *openPage(const char *bytes, std::size_t length, double *width, double *height) {
    auto open = std::make_unique<OpenPage>();
    GBytes *data = g_bytes_new_static(bytes, length);
    GError *error = nullptr;
    open->document.reset(poppler_document_new_from_bytes(data, nullptr, &error));
    g_bytes_unref(data);
    g_clear_error(&error);
    if (!open->document || poppler_document_get_n_pages(open->document.get()) < 1) return nullptr;
    open->page.reset(poppler_document_get_page(open->document.get(), 0));
    if (!open->page) return nullptr;
    poppler_page_get_size(open->page.get(), width, height);
    return open.release();
}

void renderPage(void *page, cairo_t *context) {
    poppler_page_render(static_cast<OpenPage *>(page)->page.get(), context);
}

void closePage(void *page) {
    delete static_cast<OpenPage *>(page);
}

constexpr PageRenderer s_renderer{&openPage, &renderPage, &closePage};

} // namespace

extern "C" __attribute__((visibility("default"))) const PageRenderer *jackdawPageRenderer() {
    return &s_renderer;
}
