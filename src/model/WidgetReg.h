// The registry of widget handlers, by type atom. Handlers stand above the model and are found only here.
// SPDX-License-Identifier: MIT
#pragma once

#include "FormsTypes.h"

/** Puts a handler in front; one of its type that is there goes. Ignores null and a handler without a name. */
void TSSCAppRegisterWidgetHandler(SCWidgetHandler *handler);

/** The handler of a type; null when there is none. KRAtomNull finds the handler that has no type. */
SCWidgetHandler *TSSCAppGetWidgetHandlerByName(KRAtom type);

using WidgetHandlerEnumProc = void (*)(SCWidgetHandler *handler, void *clientData);
/** The newest first. `proc` may register handlers; they are not called. */
void TSSCAppEnumWidgetHandlers(WidgetHandlerEnumProc proc, void *clientData);

/** Gives the widget the focus: by its handler, or as the view's selected annotation. Nothing without a view. */
void TSSCWidgetHandlerFocus(SCWidgetHandler *handler, DMAnnot annot, SCPageView view);
bool TSSCWidgetHandlerIsFocus(SCWidgetHandler *handler, DMAnnot annot, SCPageView view);
