// The handler of check boxes.
// SPDX-License-Identifier: MIT
#pragma once

#include "widgets/miWToggle.h"

TSWidgetData *WCheckBox_AcquireData(DMAnnot annot);
void WCheckBox_WriteData(DMAnnot annot, TSWidgetData *data);
void WCheckBox_ReleaseData(TSWidgetData *data);
