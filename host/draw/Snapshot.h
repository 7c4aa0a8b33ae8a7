// Small PDFs of one page, built in memory from the object model: the only thing that the drawing library ever sees.
//
// The user's file is never opened for drawing. So a change shows at once, pages of any origin can be drawn, and no form
// is loaded a second time. Both builders give the bytes of a complete, unencrypted PDF file.
// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>

#include "KRTypes.h"

namespace jackdaw {

/**
 * What is written: a file, or the same with the number of each stream in the place of its data. Since the data of a
 * stream never changes, two equal outlines of one document stand for equal files, without a byte being read.
 */
enum class SnapshotForm { File, Outline };

/**
 * The page without its annotations: what it inherits becomes its own, and the catalog's `OCProperties` come along, or
 * hidden layers would show. Raises what reading the page's objects raises.
 */
std::string PageSnapshot(DMPage page, SnapshotForm form = SnapshotForm::File);

/**
 * An appearance stream on a page of its own. The box that `BBox` makes through `Matrix` is the middle ninth of the
 * page: so the page's edge, at which the drawing library clips, never falls on the edge of the box, at which it clips
 * too and would thin out a smoothed edge twice. `optionalContent` is the `OC` entry of the annotation that wears it, or
 * null. Empty text when there is nothing to draw: no stream, no box, an empty box.
 */
std::string AppearanceSnapshot(LexObj stream, LexObj optionalContent, SnapshotForm form = SnapshotForm::File);

/**
 * Annotations of the page, on a page of its size without content, as they are: the drawing library gives those that
 * have no appearance one of its own.
 */
std::string AnnotsSnapshot(DMPage page, std::span<const LexObj> annots, SnapshotForm form = SnapshotForm::File);

} // namespace jackdaw
