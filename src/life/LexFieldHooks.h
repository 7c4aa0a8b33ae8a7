// Keeps fields and widgets in step with what the host does to pages and annotations.
// SPDX-License-Identifier: MIT
#pragma once

#include "FormsTypes.h"
#include "LexHFT.h"

/** Subscribes the hooks below to the host's notifications. Once, at start. */
void InitProtoField();

/** DMPageDidAddAnnot: a `Widget` without a field came onto a page; it gets the print flag and sits upright on a rotated
 * page. */
void TSDMFieldAnnotWasCreated(DMPage page, DMAnnot annot, void *clientData);
/** DMPageWillRemoveAnnot: a widget's field leaves with it, unless it is locked. */
void TSDMPageWillRemoveFieldAnnot(DMPage page, std::int32_t index, void *clientData);
/** DMDocWillInsertPages: keeps the calculation order of the document that pages come into. */
void TSDMDocWillInsertPagesHdl(DMDoc doc, std::int32_t afterPage, DMDoc source, std::int32_t first, std::int32_t last,
                               void *clientData);
/** DMDocDidInsertPages: the widgets that came in become fields of this document, or go. */
void TSDMDocDidInsertPagesHdl(DMDoc doc, std::int32_t afterPage, DMDoc source, std::int32_t first, std::int32_t last,
                              KRErrorCode error, void *clientData);
/** DMDocWillDeletePages: the fields with a record whose widgets stand on these pages are undefined. */
void TSDMDocWillDeletePagesHdl(DMDoc doc, std::int32_t first, std::int32_t last, void *clientData);
/** DMAnnotDidChange: rereads the flags of a widget whose `F` changed. */
void TSDMAnnotDidChangeHdl(DMAnnot annot, KRAtom key, KRErrorCode error, void *clientData);
