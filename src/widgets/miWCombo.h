// The handler of combo boxes. At rest a combo box shows the text of its choice; arrow and menu belong to the window.
// SPDX-License-Identifier: MIT
#pragma once

#include "widgets/miWChoice.h"

TSWidgetData *WComboBox_AcquireData(DMAnnot annot);
void WComboBox_WriteData(DMAnnot annot, TSWidgetData *data);
void WComboBox_ReleaseData(TSWidgetData *data);
