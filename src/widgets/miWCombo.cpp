// The handler of combo boxes.
// SPDX-License-Identifier: MIT
#include "widgets/miWCombo.h"

#include "Common/unix/mdMessages.h"
#include "PIFrame.h"
#include "PIMain.h"
#include "base/FormStr.h"
#include "widgets/WidgetHandlers.h"
#include "widgets/miWValueFace.h"

namespace {

SCWidgetHandler s_handler;

KRAtom WComboBoxGetType(SCWidgetHandler *) {
    return ComboBox_K;
}

void WComboBoxGetName(SCWidgetHandler *, char *buffer, std::int32_t size) {
    mdGetString(Msg::widgetCombo, buffer, static_cast<std::uint16_t>(size));
}

void WComboBoxWriteAppearance(SCWidgetHandler *, DMAnnot annot, KRAtom, EStr *value, KRBool forced) {
    if (WFaceShowFieldValue(annot, value, forced)) return;
    WValueFaceWriteText(annot, value, /*multiLine*/ false, /*password*/ false);
}

} // namespace

TSWidgetData *WComboBox_AcquireData(DMAnnot annot) {
    return WChoiceAcquireData(&s_handler, annot);
}

void WComboBox_WriteData(DMAnnot annot, TSWidgetData *data) {
    WChoiceWriteData(&s_handler, annot, data);
}

void WComboBox_ReleaseData(TSWidgetData *data) {
    WChoiceReleaseData(&s_handler, data);
}

void WComboBox_Init() {
    s_handler.GetType = PICallback(gExtensionID, &WComboBoxGetType);
    s_handler.GetName = PICallback(gExtensionID, &WComboBoxGetName);
    s_handler.WriteAppearance = PICallback(gExtensionID, &WComboBoxWriteAppearance);
    WChoiceInit(&s_handler);
}
