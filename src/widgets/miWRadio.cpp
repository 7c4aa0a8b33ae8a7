// The handler of radio buttons: round faces when the mark is a circle. That one of a group is on at a time comes
// from the field's value, which is one widget's key.
// SPDX-License-Identifier: MIT
#include "widgets/miWRadio.h"

#include "Common/unix/mdMessages.h"
#include "PIFrame.h"
#include "PIMain.h"
#include "base/FormStr.h"
#include "widgets/WidgetHandlers.h"

namespace {

SCWidgetHandler s_handler;

KRAtom WRadioButtonGetType(SCWidgetHandler *) {
    return RadioButton_K;
}

void WRadioButtonGetName(SCWidgetHandler *, char *buffer, std::int32_t size) {
    mdGetString(Msg::widgetRadio, buffer, static_cast<std::uint16_t>(size));
}

void WRadioButtonWriteAppearance(SCWidgetHandler *handler, DMAnnot annot, KRAtom state, EStr *value, KRBool forced) {
    if (WFaceShowFieldValue(annot, value, forced)) return;
    WToggleWriteAppearance(handler, annot, state, forced, /*mayBeCircular*/ true);
}

} // namespace

TSWidgetData *WRadioButton_AcquireData(DMAnnot annot) {
    return WToggleAcquireData(&s_handler, annot);
}

void WRadioButton_WriteData(DMAnnot annot, TSWidgetData *data) {
    WToggleWriteData(&s_handler, annot, data);
}

void WRadioButton_ReleaseData(TSWidgetData *data) {
    WToggleReleaseData(&s_handler, data);
}

void WRadioButton_Init() {
    s_handler.GetType = PICallback(gExtensionID, &WRadioButtonGetType);
    s_handler.GetName = PICallback(gExtensionID, &WRadioButtonGetName);
    s_handler.WriteAppearance = PICallback(gExtensionID, &WRadioButtonWriteAppearance);
    WToggleInit(&s_handler);
}
