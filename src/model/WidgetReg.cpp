// The handlers of the widget types, and which type a widget is.
// SPDX-License-Identifier: MIT
#include "model/WidgetReg.h"

#include <algorithm>
#include <vector>

#include "Common/src/miLexType.h"
#include "DocModelHFT.h"
#include "KernelSupportHFT.h"
#include "PIFrame.h"
#include "ScreenViewHFT.h"
#include "base/FormStr.h"
#include "model/DMField.h"
#include "model/DMFieldValue.h"
#include "objects/LexUtil.h"

namespace {

/** Head first. A type occurs once. */
std::vector<SCWidgetHandler *> s_handlers;

KRAtom TypeOf(SCWidgetHandler *handler) {
    return handler->GetType ? handler->GetType(handler) : KRAtomNull;
}

KRAtom SubTypeOfButton(std::uint32_t flags) {
    if (flags & TSFieldPushButton) return Button_K;
    return flags & TSFieldRadio ? RadioButton_K : CheckBox_K;
}

/** The type of a widget that is no field: what its dictionaries say. */
KRAtom SubTypeWithoutField(LexObj obj) {
    const LexObj type = TSLexObjInheritedValue(obj, FT_K);
    if (!IsName(type)) return KRAtomNull;
    if (LexNameValue(type) != Btn_K) return LexNameValue(type);
    const LexObj flags = TSLexObjInheritedValue(obj, flagsF_K);
    const bool push = IsInteger(flags) && (LexIntegerValue(flags) & TSFieldPushButton) != 0;
    return push ? Button_K : Btn_K;
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

KRAtom TSDMWidgetGetSubType(DMAnnot annot) {
    const DMField *field = TSDMAnnotGetField(annot);
    if (!TSDMFieldIsValid(field)) return SubTypeWithoutField(DMAnnotGetLexObj(annot));
    if (field->type == Btn_K) return SubTypeOfButton(field->flags[1]);
    if (field->type == Choice_K) return field->flags[1] & TSFieldCombo ? ComboBox_K : ListBox_K;
    return field->type == Tx_K ? Text_K : field->type;
}

void TSSCWidgetHandlerFocus(SCWidgetHandler *handler, DMAnnot annot, SCPageView view) {
    if (!view || !handler) return;
    if (handler->Focus) {
        handler->Focus(handler, annot, view);
        return;
    }
    // The selection server owns the pair from here on.
    auto *selection = static_cast<DMAnnot *>(KRmalloc(sizeof(DMAnnot)));
    if (!selection) KRRaise(KRErrNoMemory);
    *selection = annot;
    SCDocSetSelection(SCPageViewGetDoc(view), Annotation_K, selection, /*highlight*/ true);
}

bool TSSCWidgetHandlerIsFocus(SCWidgetHandler *handler, DMAnnot annot, SCPageView view) {
    if (!view || !handler) return false;
    if (handler->IsFocus) return handler->IsFocus(handler, annot, view) != 0;
    const SCDoc doc = SCPageViewGetDoc(view);
    if (SCDocGetSelectionType(doc) != Annotation_K) return false;
    const auto *selected = static_cast<const DMAnnot *>(SCDocGetSelection(doc));
    return selected && DMAnnotEqual(*selected, annot);
}
