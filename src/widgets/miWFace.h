// What the faces of buttons, check boxes, radio buttons and signatures share: two stores, one for the frame and one for
// the content, the clip between them, and the look of the content.
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "appearance/miCStore.h"
#include "widgets/DMWidget.h"

using CStorePtr = std::unique_ptr<CStore, CStoreDeleter>;

/** A face under way for one widget. */
struct WFace {
    DMAnnot annot;
    LexDoc doc;
    const TSWidgetData *data;
    /** Points, 16.16: the border as drawn, and as the content sees it. */
    KRFixed borderWidth;
    KRFixed margin;
    CStorePtr border;
    CStorePtr content;
};

/** Raises KRErrNoMemory. */
WFace WFaceNew(DMAnnot annot, const TSWidgetData *data);
/** Frame and clip, then the content (moved down and to the right by `shift`), saved. */
LexObj WFaceSave(WFace &face, bool down, bool circular, KRFixed shift);
/** The frame alone, saved. */
LexObj WFaceSaveFrame(WFace &face, bool down, bool circular);

/** Look of a caption: the record's font, size and colour, black on nothing else. */
TextAppearance WFaceLook(const WFace &face);
/** A host text as the look's font shows it. */
EStrPtr WFaceText(const char *hostText, const TextAppearance &look);

/**
 * For WriteAppearance without a value: the field's own value is shown, as observers of the display want it. False, and
 * nothing done, when there is a value, or no field to have one.
 */
bool WFaceShowFieldValue(DMAnnot annot, const EStr *value, bool forced);

/** CompareData of the handlers that have nothing of their own to compare. */
void WFaceCompareData(SCWidgetHandler *handler, TSWidgetData *first, const TSWidgetData *other);

/**
 * The annotation has `MK` of its own after this, if it is native. What an appearance holds stays there as well: other
 * widgets may share the stream.
 */
void WFaceOwnMakerDict(DMAnnot annot);
