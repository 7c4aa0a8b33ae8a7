// Insertion and deletion of pages, on the object layer alone.
// SPDX-License-Identifier: MIT
#pragma once

#include "DocModelHFT.h"

namespace jackdaw {

/**
 * Inserts copies of pages `first` to `last` of `source` behind page `after` (-1: in front of all). `source` may be the
 * document itself. Sends DMDocWillInsertPages and DMDocDidInsertPages, with the code when it failed; then nothing was
 * inserted. Throws KRErrBadParam for indexes outside the documents, before anything is sent.
 *
 * What comes along: what the page inherits, as its own entries; its annotations; of their fields each ancestor, with
 * those of its `Kids` that came along and with all its other entries. A form's list of fields is not touched: that is
 * the forms plug-in's, when it hears DMDocDidInsertPages. References to other pages, and to fields that stay behind,
 * are dropped.
 */
void InsertPages(DMDoc doc, std::int32_t after, DMDoc source, std::int32_t first, std::int32_t last);

/** Deletes pages. Sends DMDocWillDeletePages and DMDocDidDeletePages. Throws KRErrBadParam when no page would be left.
 */
void DeletePages(DMDoc doc, std::int32_t first, std::int32_t last);

} // namespace jackdaw
