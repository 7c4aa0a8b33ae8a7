// The handler of check boxes: a mark in a square frame.
// SPDX-License-Identifier: MIT
#include "widgets/miWChkBx.h"

#include "Common/unix/mdMessages.h"
#include "PIFrame.h"
#include "PIMain.h"
#include "base/FormStr.h"
#include "widgets/WidgetHandlers.h"

namespace {

SCWidgetHandler s_handler;

KRAtom WCheckBoxGetType(SCWidgetHandler *) {
    return CheckBox_K;
}

void WCheckBoxGetName(SCWidgetHandler *, char *buffer, std::int32_t size) {
    mdGetString(Msg::widgetCheckbox, buffer, static_cast<std::uint16_t>(size));
}

void WCheckBoxWriteAppearance(SCWidgetHandler *handler, DMAnnot annot, KRAtom state, EStr *value, KRBool forced) {
    if (WFaceShowFieldValue(annot, value, forced)) return;
    WToggleWriteAppearance(handler, annot, state, forced, /*mayBeCircular*/ false);
}

} // namespace

TSWidgetData *WCheckBox_AcquireData(DMAnnot annot) {
    return WToggleAcquireData(&s_handler, annot);
}

void WCheckBox_WriteData(DMAnnot annot, TSWidgetData *data) {
    WToggleWriteData(&s_handler, annot, data);
}

void WCheckBox_ReleaseData(TSWidgetData *data) {
    WToggleReleaseData(&s_handler, data);
}

void WCheckBox_Init() {
    s_handler.GetType = PICallback(gExtensionID, &WCheckBoxGetType);
    s_handler.GetName = PICallback(gExtensionID, &WCheckBoxGetName);
    s_handler.WriteAppearance = PICallback(gExtensionID, &WCheckBoxWriteAppearance);
    WToggleInit(&s_handler);
}
