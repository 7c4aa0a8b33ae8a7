// The open views, front to back: opening, closing, and which is in front.
//
// 1. One view a document: opening a document that is shown already brings its view to the front and sends nothing else.
// 2. Opening sends SCDocDidOpen when the view is on the list and in front; then SCDocDidDeactivate for the view that
// was
//    in front, SCDocDidActivate for the new one, and SCAppFrontDocDidChange. A window that cannot be opened makes
//    SCDocDidOpen carry the code, and the view is gone before it is thrown.
// 3. Closing clears the selection, then sends SCDocWillClose, and SCDocDidDeactivate for a view in front, while the
// view
//    is still on the list; takes it off and sends SCDocDidClose; then SCDocDidActivate and SCAppFrontDocDidChange for
//    the view that is in front then. The document is given up last.
// 4. Any of these notifications may close the view; nothing is done with a view after one without asking ViewIsOpen.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "ScreenViewHFT.h"

namespace jackdaw {

/** Opens the file without asking the table: what SCDocOpenFromFileWithParams is unless a plug-in replaced it. */
SCDoc OpenFileInView(KRPathName path, KRFileSys fs, const SCDocOpenParams *params);
/** Opens through the table's entry, as a user's "Open" does. Null when a plug-in took the file. */
SCDoc OpenFileThroughTable(KRPathName path, KRFileSys fs, const SCDocOpenParams *params);
/** References `doc`. */
SCDoc OpenDocInView(DMDoc doc, const SCDocOpenParams *params);
/** False when the user refused, or the view is being closed already. Raises KRErrBadParam for no open view. */
bool CloseView(SCDoc view, bool noDirtyCheck);
/** Closes all, unasked, from the front. */
void CloseAllViews();

/** The address is one of an open view. */
bool ViewIsOpen(SCDoc view);
/** Front to back. */
std::vector<SCDoc> OpenViews();
SCDoc FrontView();
/** Sends what opening sends after SCDocDidOpen; nothing when it is in front already. */
void BringToFront(SCDoc view);
/** The view of a document; null when it is not shown. */
SCDoc ViewOfDoc(DMDoc doc);

DMDoc DocOfView(SCDoc view);
SCPageView PageViewOf(SCDoc view);
SCWindow WindowOfView(SCDoc view);
const std::string &TitleOfView(SCDoc view);
bool ViewIsReadOnly(SCDoc view);

} // namespace jackdaw
