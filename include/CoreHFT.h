// The core table: exceptions, atoms, callbacks, tables, plug-ins. The host hands it over in the set-up record; it is
// never looked up by name.
// SPDX-License-Identifier: MIT
#pragma once

#include "HFT.h"

/** Set by the entry code before anything else of a plug-in runs. */
inline KRHFT gCoreHFT = nullptr;
inline constexpr int CoreHFTCount = 13;

/**
 * Undoes the frame it was pushed with and does not return: a C plug-in long-jumps, a C++ plug-in throws a type of its
 * own. `env` is the address given to KRPushExceptionFrame.
 */
using KRRestoreProc = void (*)(void *env);

/** Slot behind KRRaise, which tells the compiler that it does not return. */
inline constexpr Slot<&gCoreHFT, 1, void(KRErrorCode code)> KRRaiseSlot;

/**
 * Raises an exception: notes `code` and calls the restore routine of the innermost frame. The frame stays pushed; its
 * owner pops it. Code 0 is raised as KRErrBadParam. Without any frame the process ends with one line on standard error.
 */
[[noreturn]] inline void KRRaise(KRErrorCode code) {
    KRRaiseSlot(code);
    __builtin_unreachable();
}

/** Pushes a handler frame. Each frame is popped exactly once, on either road. PIFrame.h pairs the calls for C++. */
inline constexpr Slot<&gCoreHFT, 2, void(void *env, KRRestoreProc restore)> KRPushExceptionFrame;
inline constexpr Slot<&gCoreHFT, 3, void()> KRPopExceptionFrame;

/** Code of the exception being handled; valid after the pop until the next raise. */
inline constexpr Slot<&gCoreHFT, 4, KRErrorCode()> KRGetExceptionCode;

/** Interns a NUL-terminated string of bytes (no slash). Raises KRErrNoMemory when all 65,535 atoms are given out. */
inline constexpr Slot<&gCoreHFT, 5, KRAtom(const char *text)> KRAtomFromString;

/** Text of an atom, valid for the life of the process; "" for KRAtomNull and numbers never given out. */
inline constexpr Slot<&gCoreHFT, 6, const char *(KRAtom atom)> KRAtomGetString;

/**
 * Makes a callback thunk for a procedure of the plug-in `extensionID`. What comes back is called in the shape of
 * `proc`. Thunks live until destroyed or until their plug-in is unloaded.
 */
inline constexpr Slot<&gCoreHFT, 7, KRProc(KRWord extensionID, KRProc proc)> KRCallbackCreate;
inline constexpr Slot<&gCoreHFT, 8, void(KRProc callback)> KRCallbackDestroy;

/** A table by its name atom and exact or lower version; null when there is none that serves. */
inline constexpr Slot<&gCoreHFT, 9, KRHFT(KRAtom name, std::uint32_t version)> KRGetHFT;

/** Host configuration by key ("Product" gives the viewer type text); null for an unknown key. The host's memory. */
inline constexpr Slot<&gCoreHFT, 10, const char *(KRAtom key)> KRGetConfiguration;

/** Stops the enumeration by giving false. */
using KRExtensionEnumProc = KRBool (*)(KRExtension extension, void *clientData);
/** Enumerates the loaded plug-ins in the order of loading. `onlyRunning` leaves out those not yet initialised. */
inline constexpr Slot<&gCoreHFT, 11, void(KRExtensionEnumProc proc, void *clientData, KRBool onlyRunning)>
    KRExtensionEnum;

/** The name that the plug-in gave in its handshake. */
inline constexpr Slot<&gCoreHFT, 12, KRAtom(KRExtension extension)> KRExtensionGetName;

/** Atom like KRAtomFromString, but KRAtomNull where that would raise, and none made for a string not yet interned. */
inline constexpr Slot<&gCoreHFT, 13, KRAtom(const char *text)> KRExistingAtomForString;
