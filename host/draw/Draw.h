// One-page documents open for drawing, kept for the next time.
//
// 1. A kept page is found by the object it was made from and is good as long as the document's change stamp stands.
// 2. When the stamp has moved on, the outline of the snapshot is made again (cheap) and compared: an equal one keeps
//    the open page, whose fonts and glyphs are warm, so that typing into one field does not redraw every other from
//    scratch.
// 3. What was used least lately goes first; what belongs to a closed document goes at the next addition.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <span>

#include "KRTypes.h"

using cairo_t = struct _cairo;

namespace jackdaw {

/** A snapshot open in the drawing library. It stays good while held, whatever happens to its document. */
struct OnePage;
using OnePagePtr = std::shared_ptr<const OnePage>;

/** The page's content. Raises KRErrBadPDF when the drawing library cannot open it. */
OnePagePtr KeptPage(DMPage page);
/** The appearance, its box in the middle (Snapshot.h); null when there is nothing to draw or it cannot be opened.
 * `optionalContent` as for the snapshot. */
OnePagePtr KeptAppearance(LexObj stream, LexObj optionalContent);

/** Annotations of the page that have no appearance, as the drawing library shows them, over a page without content.
 * Null when they cannot be opened. */
OnePagePtr KeptAnnots(DMPage page, std::span<const LexObj> annots);

/** Size in points, as it is looked at (page rotation done). Never 0. */
double OnePageWidth(const OnePage &page);
double OnePageHeight(const OnePage &page);

/** Draws at the context's origin, y downward, one unit a point. Paints no paper. */
void DrawOnePage(const OnePage &page, cairo_t *context);

/** How many one-page documents are kept. */
std::size_t KeptCount();
void DropKept();

} // namespace jackdaw
