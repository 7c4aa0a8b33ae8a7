// Services over the host's views: which view, page and rectangle a widget is at, focus, frames. Those that nothing
// calls yet wait for the annotation handler of a window, which moves, frames and focuses widgets.
//
// SCRect is in device units of the page view, KRFixedRect in points of the page.
// SPDX-License-Identifier: MIT
#pragma once

#include "FormsTypes.h"
#include "KRTypes.h"

/** The first open view on the document of this object store; null. */
SCDoc TSLexDocGetSCDoc(LexDoc doc);

/** The host speaks Japanese: its language is exactly "JPN". */
bool TSSCLanguageIsJPN();

/**
 * For scripts of a document that no view shows: a record to stand where a view is wanted and none exists: it carries
 * the document and nothing else. Never given to the host. Raises KRErrNoMemory.
 */
SCDoc TSMallocSCDocShell();
void TSSCDocShellSetDMDoc(SCDoc shell, DMDoc doc);
/** Null allowed. */
void TSFreeSCDocShell(SCDoc shell);

// Rectangles.

/** Each short in the high half of a 16.16 number. */
void TSSCRectToFixedRect(const SCRect *rect, KRFixedRect *result);
/** Rounded to whole units, half upward. */
void TSFixedRectRoundToSCRect(const KRFixedRect *rect, SCRect *result);
/** Edges belong to the rectangle. */
bool TSSCRectPointInRect(const SCRect *rect, std::int16_t x, std::int16_t y);
/** The four corner handles: squares of 6 units inside the corners. */
void SCRectGetHandles(const SCRect *rect, SCRect *topLeft, SCRect *topRight, SCRect *bottomRight, SCRect *bottomLeft);
/** 1 top left, 2 top right, 3 bottom right, 4 bottom left; 0 for none. */
std::int32_t TSSCRectHitAHandle(const SCRect *rect, std::int16_t x, std::int16_t y);

// Annotations in a page view.

/** Moves an annotation to a device rectangle; what the host raises is dropped. */
void TSSCPageViewSetAnnotRect(SCPageView view, DMAnnot annot, const SCRect *rect);
/** A device rectangle in page space, in whole points, snapped by the host. */
void TSSCPageViewSnapRect(SCPageView view, const SCRect *rect, KRFixedRect *result);
/** Of TSSCPageViewInvalidateAnnot. */
enum TSInvalidate : std::uint32_t { TSInvalidateOutline = 0x1, TSInvalidateHandles = 0x10, TSInvalidateRect = 0x100 };
/** `lineWidth` in points; `flags` a sum of TSInvalidate. */
void TSSCPageViewInvalidateAnnot(SCPageView view, DMAnnot annot, KRFixed lineWidth, std::uint32_t flags);
/** Draws the frame of an annotation, and its corner handles. */
void TSSCPageViewFrameAnnot(SCPageView view, DMAnnot annot, bool handles);
/**
 * The visible page that an annotation is on, acquired: the caller releases it. A missing or wrong `P` is mended
 * without making the document dirty. On none of them: the last visible page. Null when no page is visible.
 */
DMPage TSSCPageViewGetDMPageFromAnnot(SCPageView view, DMAnnot annot);

// Focus and selection.

bool TSSCDocIsWidgetFocus(SCDoc doc, DMAnnot annot);
/** Nothing for a button while a movie is selected. */
void TSSCDocFocusWidget(SCDoc doc, DMAnnot annot);
/** A widget, a group of fields or an open text edit is selected. */
bool TSSCDocIsWidgetSelected(SCDoc doc);
