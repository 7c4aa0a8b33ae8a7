// The built-in widget handlers, and what all of them share.
// SPDX-License-Identifier: MIT
#pragma once

#include "FormsTypes.h"

/** Registers the handlers of all field types, in a fixed order. */
void TSSCAppInstallBuiltInWidgetHandlers();

// Each makes its handler's record and registers it.
void WText_Init();
void WComboBox_Init();
void WListBox_Init();
void WButton_Init();
void WRadioButton_Init();
void WCheckBox_Init();
void WSignature_Init();
