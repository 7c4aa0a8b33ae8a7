// What check boxes and radio buttons have in common: data, states and faces.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "widgets/DMWidget.h"
#include "widgets/miWFace.h"

/** Behind the TSWidgetData of a check box or radio button. */
struct TSToggleData {
    /** `CA`: the mark as a character of ZapfDingbats. 4 check, l circle, 8 cross, n square, u diamond, H star. */
    std::string caption;
    /** Key of the on state. */
    KRAtom onKey;
    /** The default value is the on key. */
    bool isDefault;
};

/** Fills everything but the type-specific slots of a handler, and registers it. */
void WToggleInit(SCWidgetHandler *handler);

TSWidgetData *WToggleAcquireData(SCWidgetHandler *handler, DMAnnot annot);
void WToggleWriteData(SCWidgetHandler *handler, DMAnnot annot, TSWidgetData *data);
void WToggleReleaseData(SCWidgetHandler *handler, TSWidgetData *data);

/** Draws the mark into the face's content. `circular` faces hold a disc, others the caption's glyph. */
void WToggleDrawMark(WFace &face, const TSToggleData &toggle, bool circular);
/**
 * Writes the four faces when forced, or when the widget has none yet, and sets the appearance state: the widget's own
 * key when `state` is that, else Off. `mayBeCircular`: the mark l makes round faces.
 */
void WToggleWriteAppearance(SCWidgetHandler *handler, DMAnnot annot, KRAtom state, bool forced, bool mayBeCircular);
