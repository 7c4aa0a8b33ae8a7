// The handler of signature fields: the unsigned and signed look, and what keeps a signed appearance undistorted when
// the widget's rectangle changes. Signing itself belongs to another plug-in.
// SPDX-License-Identifier: MIT
#pragma once

#include "widgets/DMWidget.h"

/** Behind the TSWidgetData of a signature field. */
struct TSSignatureData {
    /** The signature dictionary, or the null object. */
    LexObj value;
};

TSWidgetData *WSignature_AcquireData(DMAnnot annot);
void WSignature_WriteData(DMAnnot annot, TSWidgetData *data);
void WSignature_ReleaseData(TSWidgetData *data);

/**
 * After a change of the rectangle: the wrapper around a signed field's appearance is fitted, so that the form inside
 * keeps its proportions. False for an unsigned field and an appearance that is no wrapper.
 */
bool WSignature_NotifyWasResized(DMAnnot annot);

/**
 * An indirect stream of the lines, each with a line feed, up to a null or empty one. `bbox` null means 0 0 100 100.
 * `resources` (may be null) gets the stream's resource dictionary.
 */
LexObj CreateStreamFromStringArray(LexDoc doc, const char *const *lines, const KRFixedRect *bbox, LexObj *resources);
/**
 * The stream, or a copy of it unless `inPlace`, as a form XObject. `matrix` comes in front of the one it has; `bbox`
 * and `matrix` may be null.
 */
LexObj StreamToXObject(LexObj stream, const KRFixedMatrix *matrix, const KRFixedRect *bbox, bool inPlace);
/** A one-line stream that shows the form under the name FRM. */
LexObj XObjectToStream(LexObj xobject, const KRFixedMatrix *matrix, const KRFixedRect *bbox);
/** The name of the form that the stream shows, if it does nothing else; else KRAtomNull. */
KRAtom StreamWrapsXObject(LexObj stream);
/** The mark in the look's colour, centred on the origin; null for a transparent colour. */
LexObj GetThumper(LexDoc doc, const TextAppearance *look);
/** The matrix that turns an appearance of these sides by 0, 90, 180 or 270 degrees within its box. */
void DefaultAPMatrixFM(KRFixedMatrix *matrix, std::int32_t rotation, KRFixed width, KRFixed height);
/**
 * Widens the wrapper's box so that the form of box `bbox` is scaled alike both ways in `rect`, from the proportions of
 * the form: what an earlier fit for another rectangle added goes. Null for no stream.
 */
LexObj FitAp(const KRFixedRect *rect, LexObj stream, const KRFixedRect *bbox);
