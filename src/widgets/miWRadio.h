// The handler of radio buttons.
// SPDX-License-Identifier: MIT
#pragma once

#include "widgets/miWToggle.h"

TSWidgetData *WRadioButton_AcquireData(DMAnnot annot);
void WRadioButton_WriteData(DMAnnot annot, TSWidgetData *data);
void WRadioButton_ReleaseData(TSWidgetData *data);
