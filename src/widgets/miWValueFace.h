// The faces that show a field's value: text, combo boxes and lists draw into a marked part of the appearance, and leave
// a foreign frame around it as it is.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "widgets/DMWidget.h"
#include "widgets/miWFace.h"

/** A value's face under way. */
struct WValueFace {
    DMAnnot annot;
    DMField *field;
    TSBorder border;
    KRFixed margin;
    TextAppearance look;
    CStorePtr store;
    /** The stream whose variable part is replaced; null when the whole face is ours. */
    LexObj present;
};

/** Draws the frame, or finds the face to keep. Raises what the look raises. */
WValueFace WValueFaceNew(DMAnnot annot, DMField *field);
/** Draws `content` between the marks, clipped when the face is ours. */
void WValueFaceDraw(WValueFace &face, const std::function<void()> &content);
/** Makes the stream and sets it as the normal face; the other faces go. */
void WValueFaceSet(WValueFace &face);
/** Frame, text and face in one. `value` may be null or empty: then only the frame is drawn. */
void WValueFaceWriteText(DMAnnot annot, const EStr *value, bool multiLine, bool password);
