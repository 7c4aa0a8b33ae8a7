// The handler of list boxes, which draw their lines into their appearance.
// SPDX-License-Identifier: MIT
#pragma once

#include "widgets/miWChoice.h"

TSWidgetData *WListBox_AcquireData(DMAnnot annot);
void WListBox_WriteData(DMAnnot annot, TSWidgetData *data);
void WListBox_ReleaseData(TSWidgetData *data);

/** Colours of the selected line: the text's and the background's, exchanged. No defined colour becomes white. */
void mdListBoxGetHighlightColor(const TSWidgetData *data, DMColorValue *color, bool foreground);
