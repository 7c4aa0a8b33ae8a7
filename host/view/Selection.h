// The one selection of each view, and the servers that know what a selection is.
//
// 1. While a server's `losingSelection` runs, the view has no selection any more: what an edit does on being committed
//    may clear the selection again, and must not be told twice.
// 2. `destroy` follows `losingSelection`, also when that raised.
// SPDX-License-Identifier: MIT
#pragma once

#include "ScreenViewHFT.h"

namespace jackdaw {

/** The newest server of a type is used. False for a record that is too small to name its type. */
bool RegisterSelectionServer(SCSelectionServer *server);
/** The host's own server of type "Annotation" over the annotation handlers. Called once at start-up. */
void InstallAnnotSelection();

KRAtom SelectionType(SCDoc view);
void *SelectionData(SCDoc view);
/** False, and `data` stays the caller's, when no server knows the type or the former selection would not go. */
bool SetSelection(SCDoc view, KRAtom type, void *data, bool highlight);
/** True when nothing is selected afterwards. */
bool ClearSelection(SCDoc view, bool highlight);
/** A key for what is selected; false when nobody took it. */
bool SelectionKeyDown(SCDoc view, std::uint16_t key, std::uint32_t flags);

/** What the Edit menu does to what is selected. */
enum class SelectionEdit { Cut, Copy, Paste, Delete, SelectAll, Properties };
/** The server of what is selected has the pair, and says that it can. */
bool CanEditSelection(SCDoc view, SelectionEdit edit);
/** Does it where it can be done. */
void EditSelection(SCDoc view, SelectionEdit edit);

} // namespace jackdaw
