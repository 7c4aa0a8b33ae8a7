// The core table: the functions of the kernel in the slots of CoreHFT.h.
// SPDX-License-Identifier: MIT
#include "kernel/Tables.h"

#include "CoreHFT.h"
#include "kernel/Atoms.h"
#include "kernel/Bind.h"
#include "kernel/Callbacks.h"
#include "kernel/Frames.h"
#include "kernel/PlugIns.h"

namespace jackdaw {

namespace {

KRAtom atomFromString(const char *text) {
    if (!text) throw HostError{KRErrBadParam, "An atom needs a text."};
    return AtomFromText(text);
}

KRAtom existingAtomForString(const char *text) {
    return text ? ExistingAtom(text) : KRAtomNull;
}

} // namespace

void FillCoreTable() {
    // It leaves by the caller's own restore routine, which no edge must stand in the way of.
    Provide(KRRaiseSlot, &Raise);
    Bind<&PushFrame>(KRPushExceptionFrame);
    Bind<&PopFrame>(KRPopExceptionFrame);
    Bind<&RaisedCode>(KRGetExceptionCode);
    Bind<&atomFromString>(KRAtomFromString);
    Bind<&AtomText>(KRAtomGetString);
    Bind<&CreateCallback>(KRCallbackCreate);
    Bind<&DestroyCallback>(KRCallbackDestroy);
    Bind<&FindTable>(KRGetHFT);
    Bind<&GetConfiguration>(KRGetConfiguration);
    Bind<&EnumPlugIns>(KRExtensionEnum);
    Bind<&PlugInName>(KRExtensionGetName);
    Bind<&existingAtomForString>(KRExistingAtomForString);
}

} // namespace jackdaw
