// The list of the built-in widget handlers.
// SPDX-License-Identifier: MIT
#include "widgets/WidgetHandlers.h"

void TSSCAppInstallBuiltInWidgetHandlers() {
    WText_Init();
    WComboBox_Init();
    WListBox_Init();
    WButton_Init();
    WRadioButton_Init();
    WCheckBox_Init();
    WSignature_Init();
}
