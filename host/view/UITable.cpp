// The user interface table over the platform's procedures.
// SPDX-License-Identifier: MIT
#include "view/UITable.h"

#include "ScreenViewUserInterfaceHFT.h"
#include "kernel/Bind.h"
#include "view/ViewPlatform.h"
#include "view/ViewRecords.h"
#include "view/Views.h"

namespace jackdaw {

namespace {

void showWidgetProperties(SCDoc view, const char *title, KRAtom subtype, const char *kind) {
    RecordOf(view);
    if (Platform().showWidgetProperties) Platform().showWidgetProperties(view, title, subtype, kind);
}

void showToolTip(SCPageView view, const char *text) {
    RecordOf(view);
    if (Platform().showToolTip) Platform().showToolTip(view, text);
}

bool dragPoint(SCPageView view, std::int16_t *x, std::int16_t *y) {
    RecordOf(view);
    std::int16_t h = 0;
    std::int16_t v = 0;
    if (!Platform().dragPoint || !Platform().dragPoint(view, &h, &v)) return false;
    if (x) *x = h;
    if (y) *y = v;
    return true;
}

} // namespace

void FillScreenViewUserInterfaceTable() {
    Bind<&showWidgetProperties>(SCUIShowWidgetProperties);
    Bind<&showToolTip>(SCUIToolTip);
    Bind<&dragPoint>(SCUIDragPoint);
}

} // namespace jackdaw
