// What the rendering module does for the drawing layer: a one-page document from bytes to a cairo context.
//
// The renderer is a module of its own, loaded at the first page drawn: it brings some forty libraries with it, which
// would double the start-up time and the memory of every run that draws nothing. It sees bytes and a context only.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

using cairo_t = struct _cairo;

struct PageRenderer {
    /** The first page of the document, and its size in points; null when it cannot be opened. The bytes stay in use. */
    void *(*open)(const char *bytes, std::size_t length, double *width, double *height);
    /** At the context's origin, y downward, one unit a point. */
    void (*render)(void *page, cairo_t *context);
    void (*close)(void *page);
};

inline constexpr char PageRendererModule[] = "jackdaw-render.so";
inline constexpr char PageRendererSymbol[] = "jackdawPageRenderer";
/** Symbol of the module. */
using PageRendererProc = const PageRenderer *(*)();
