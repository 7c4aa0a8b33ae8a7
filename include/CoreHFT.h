// The core table: exceptions, atoms, callbacks, tables, plug-ins. The host hands it over in the set-up record; it is
// never looked up by name.
//
// An exception is a code that travels to the innermost frame. Whoever must clean up, or cross code that cannot be
// unwound, pushes a frame; whoever has nothing to clean up lets the code pass.
// SPDX-License-Identifier: MIT
#pragma once

#include "HFT.h"

/** Set by the entry code before anything else of a plug-in runs. */
inline KRHFT gCoreHFT = nullptr;
/** Slots of the table. */
inline constexpr int CoreHFTCount = 13;

/**
 * Undoes the frame it was pushed with and does not return: a C plug-in long-jumps, a C++ plug-in throws a type of its
 * own. `env` is the address given to KRPushExceptionFrame.
 */
using KRRestoreProc = void (*)(void *env);

/** Slot behind KRRaise below, which tells the compiler that it does not return. */
inline constexpr Slot<&gCoreHFT, 1, void(KRErrorCode code)> KRRaiseSlot;

/**
 * Raises an exception: notes `code` and calls the restore routine of the innermost frame. The frame stays pushed; its
 * owner pops it. Code 0 is raised as KRErrBadParam. Without any frame the process ends with one line on standard error.
 */
[[noreturn]] inline void KRRaise(KRErrorCode code) {
    KRRaiseSlot(code);
    __builtin_unreachable();
}

/**
 * Pushes a handler frame: what is raised from here on calls `restore(env)`. `env` belongs to the caller and lives until
 * the pop. Each frame is popped exactly once, on either road. PIFrame.h pairs the calls for C++. Raises KRErrBadParam
 * for a null `restore`.
 */
inline constexpr Slot<&gCoreHFT, 2, void(void *env, KRRestoreProc restore)> KRPushExceptionFrame;
/** Pops the innermost frame: its owner's last step on the normal road, its first on the exceptional one. */
inline constexpr Slot<&gCoreHFT, 3, void()> KRPopExceptionFrame;

/** Code of the exception being handled; valid after the pop until the next raise. */
inline constexpr Slot<&gCoreHFT, 4, KRErrorCode()> KRGetExceptionCode;

/**
 * The atom of a NUL-terminated string of bytes (no slash), which is interned when it is new and copied then. Raises
 * KRErrNoMemory when all 65,535 atoms are given out, KRErrBadParam for null.
 */
inline constexpr Slot<&gCoreHFT, 5, KRAtom(const char *text)> KRAtomFromString;

/** Text of an atom, the host's memory for the life of the process; "" for KRAtomNull and numbers never given out. */
inline constexpr Slot<&gCoreHFT, 6, const char *(KRAtom atom)> KRAtomGetString;

/**
 * Makes a callback thunk for a procedure of the plug-in `extensionID`. What comes back is called in the shape of
 * `proc`. It is the caller's to destroy; what is left goes when the plug-in is unloaded. Raises KRErrBadParam for a
 * null `proc`.
 */
inline constexpr Slot<&gCoreHFT, 7, KRProc(KRWord extensionID, KRProc proc)> KRCallbackCreate;
/** Destroys a callback, which nobody may call any more. What is no callback is left alone. */
inline constexpr Slot<&gCoreHFT, 8, void(KRProc callback)> KRCallbackDestroy;

/**
 * A table by the atom of its name, in a version that serves a caller of `version`; null when there is none. The table
 * is its server's memory, good until the process ends. Raises what the server's procedure raises.
 */
inline constexpr Slot<&gCoreHFT, 9, KRHFT(KRAtom name, std::uint32_t version)> KRGetHFT;

/** A text of the host's configuration ("Product": the viewer type), the host's memory; null for an unknown key. */
inline constexpr Slot<&gCoreHFT, 10, const char *(KRAtom key)> KRGetConfiguration;

/** One plug-in. `extension` serves for KRExtensionGetName as long as the plug-in is loaded. False ends the walk. */
using KRExtensionEnumProc = KRBool (*)(KRExtension extension, void *clientData);
/**
 * Enumerates the loaded plug-ins in the order of loading. `onlyRunning` leaves out those not yet initialised; those
 * that refused are left out always. Raises what `proc` raises, and KRErrBadParam for null.
 */
inline constexpr Slot<&gCoreHFT, 11, void(KRExtensionEnumProc proc, void *clientData, KRBool onlyRunning)>
    KRExtensionEnum;

/** The name that the plug-in gave in its handshake; KRAtomNull for what is no loaded plug-in. */
inline constexpr Slot<&gCoreHFT, 12, KRAtom(KRExtension extension)> KRExtensionGetName;

/** Atom like KRAtomFromString, but KRAtomNull where that would raise, and none made for a string not yet interned. */
inline constexpr Slot<&gCoreHFT, 13, KRAtom(const char *text)> KRExistingAtomForString;
