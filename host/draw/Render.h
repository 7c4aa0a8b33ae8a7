// Whole pages to pixels: content, then the normal appearance of each annotation in the order of `Annots`.
//
// An annotation is left out when it is hidden (flag 2), not for viewing (32), invisible (1) while its subtype is none
// that the format defines, a Popup, without an appearance for its state, or when its rectangle or box is empty. One
// that has no appearances at all is drawn as the drawing library sees fit, which gives notes a symbol, links a border
// and markup its lines; a widget has only what the form gave it. What reaches over the page's edge is cut.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "draw/Draw.h"
#include "draw/PageGeometry.h"

using cairo_surface_t = struct _cairo_surface;

namespace jackdaw {

struct SurfaceFree {
    void operator()(cairo_surface_t *surface) const;
};
using SurfacePtr = std::unique_ptr<cairo_surface_t, SurfaceFree>;

/** The stream under `AP` `N`, chosen by `AS` where `N` is a dictionary of states; null when there is none. */
LexObj NormalAppearance(LexObj annot);
/** False for the annotations that the first comment names, as far as flags and subtype tell. */
bool AnnotIsShown(LexObj annot);

/**
 * Draws an appearance fitted into `rect` (device units of `context`), turned with a page of rotation `pageRotate`.
 * Nothing when there is nothing to draw.
 */
void DrawAppearance(cairo_t *context, LexObj stream, LexObj optionalContent, const DeviceRect &rect, int pageRotate);

/** The page's content, and its annotations, at `scale` device units to the point. */
void DrawPageContent(cairo_t *context, DMPage page, double scale);
void DrawPageAnnots(cairo_t *context, DMPage page, double scale);

/**
 * A page on white paper as an RGB image. `page` counts from 0. Raises KRErrBadParam for a page that is not there, a
 * `dpi` below 1 and an image above Limit::RenderPixels, KRErrBadPDF for a page that cannot be opened, KRErrNoMemory for
 * one that takes more time or memory than drawing may: it is drawn apart (Apart.h).
 */
SurfacePtr RenderPage(DMDoc doc, std::int32_t page, std::int32_t dpi);
std::string PngOf(cairo_surface_t *surface);

/** As PNG into a file, which is written beside and renamed into place: a failure leaves the former file. */
void RenderPageToFile(DMDoc doc, std::int32_t page, std::int32_t dpi, KRFileSys fs, KRPathName path);
/** As PNG to an open stream such as standard output. Raises KRErrFileIO. */
void RenderPageToStream(DMDoc doc, std::int32_t page, std::int32_t dpi, std::FILE *stream);

} // namespace jackdaw
