// The core table: every slot of CoreHFT.h behind the host's edge.
// SPDX-License-Identifier: MIT
#include "kernel/Tables.h"

#include "CoreHFT.h"
#include "kernel/Atoms.h"
#include "kernel/Callbacks.h"
#include "kernel/Frames.h"
#include "kernel/HostError.h"
#include "kernel/PlugIns.h"

namespace jackdaw {

namespace {

void krRaise(KRErrorCode code) {
    Raise(code);
}

void krPushExceptionFrame(void *env, KRRestoreProc restore) {
    Edge([&] { PushFrame(env, restore); });
}

void krPopExceptionFrame() {
    PopFrame();
}

KRErrorCode krGetExceptionCode() {
    return RaisedCode();
}

KRAtom krAtomFromString(const char *text) {
    return Edge([&] {
        if (!text) throw HostError{KRErrBadParam, "An atom needs a text."};
        return AtomFromText(text);
    });
}

const char *krAtomGetString(KRAtom atom) {
    return AtomText(atom);
}

KRProc krCallbackCreate(KRWord extensionID, KRProc proc) {
    return Edge([&] { return CreateCallback(extensionID, proc); });
}

void krCallbackDestroy(KRProc callback) {
    DestroyCallback(callback);
}

KRHFT krGetHFT(KRAtom name, std::uint32_t version) {
    return Edge([&] { return FindTable(name, version); });
}

const char *krGetConfiguration(KRAtom key) {
    return GetConfiguration(key);
}

void krExtensionEnum(KRExtensionEnumProc proc, void *clientData, KRBool onlyRunning) {
    Edge([&] {
        if (!proc) throw HostError{KRErrBadParam, "An enumeration needs a procedure."};
        EnumPlugIns(proc, clientData, onlyRunning);
    });
}

KRAtom krExtensionGetName(KRExtension extension) {
    return PlugInName(extension);
}

KRAtom krExistingAtomForString(const char *text) {
    return text ? ExistingAtom(text) : KRAtomNull;
}

} // namespace

void FillCoreTable() {
    Provide(KRRaiseSlot, &krRaise);
    Provide(KRPushExceptionFrame, &krPushExceptionFrame);
    Provide(KRPopExceptionFrame, &krPopExceptionFrame);
    Provide(KRGetExceptionCode, &krGetExceptionCode);
    Provide(KRAtomFromString, &krAtomFromString);
    Provide(KRAtomGetString, &krAtomGetString);
    Provide(KRCallbackCreate, &krCallbackCreate);
    Provide(KRCallbackDestroy, &krCallbackDestroy);
    Provide(KRGetHFT, &krGetHFT);
    Provide(KRGetConfiguration, &krGetConfiguration);
    Provide(KRExtensionEnum, &krExtensionEnum);
    Provide(KRExtensionGetName, &krExtensionGetName);
    Provide(KRExistingAtomForString, &krExistingAtomForString);
}

} // namespace jackdaw
