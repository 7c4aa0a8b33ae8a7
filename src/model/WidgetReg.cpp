// The handlers of the widget types.
// SPDX-License-Identifier: MIT
#include "model/WidgetReg.h"

#include <algorithm>
#include <vector>

#include "DocModelHFT.h"
#include "KernelSupportHFT.h"
#include "PIFrame.h"
#include "ScreenViewHFT.h"
#include "base/FormStr.h"

namespace {

/** Head first. A type occurs once. */
std::vector<SCWidgetHandler *> s_handlers;

KRAtom TypeOf(SCWidgetHandler *handler) {
    return handler->GetType ? handler->GetType(handler) : KRAtomNull;
}

} // namespace

void TSSCAppRegisterWidgetHandler(SCWidgetHandler *handler) {
    if (!handler || !handler->GetName) return;
    const KRAtom type = TypeOf(handler);
    std::erase_if(s_handlers, [type](SCWidgetHandler *other) { return TypeOf(other) == type; });
    s_handlers.insert(s_handlers.begin(), handler);
}

SCWidgetHandler *TSSCAppGetWidgetHandlerByName(KRAtom type) {
    const auto found = std::find_if(s_handlers.begin(), s_handlers.end(),
                                    [type](SCWidgetHandler *handler) { return TypeOf(handler) == type; });
    return found == s_handlers.end() ? nullptr : *found;
}

void TSSCAppEnumWidgetHandlers(WidgetHandlerEnumProc proc, void *clientData) {
    const std::vector<SCWidgetHandler *> handlers = s_handlers;
    for (SCWidgetHandler *handler : handlers) proc(handler, clientData);
}

void TSSCWidgetHandlerFocus(SCWidgetHandler *handler, DMAnnot annot, SCPageView view) {
    if (!view || !handler) return;
    if (handler->Focus) {
        handler->Focus(handler, annot, view);
        return;
    }
    const SCDoc doc = SCPageViewGetDoc(view);
    // What is selected may insist, by raising or staying; the pair is made when the way is free.
    if (!SCDocClearSelection(doc, /*highlight*/ true)) return;
    auto *selection = static_cast<DMAnnot *>(KRmalloc(sizeof(DMAnnot)));
    if (!selection) KRRaise(KRErrNoMemory);
    *selection = annot;
    // A selection that was made belongs to its server; one that was refused is still ours.
    if (!SCDocSetSelection(doc, Annotation_K, selection, /*highlight*/ true)) KRfree(selection);
}

bool TSSCWidgetHandlerIsFocus(SCWidgetHandler *handler, DMAnnot annot, SCPageView view) {
    if (!view || !handler) return false;
    if (handler->IsFocus) return handler->IsFocus(handler, annot, view) != 0;
    const SCDoc doc = SCPageViewGetDoc(view);
    if (SCDocGetSelectionType(doc) != Annotation_K) return false;
    const auto *selected = static_cast<const DMAnnot *>(SCDocGetSelection(doc));
    return selected && DMAnnotEqual(*selected, annot);
}
