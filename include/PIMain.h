// How a plug-in meets the host. PIMain.cpp is linked into every plug-in; the plug-in supplies PIHandshake.
//
// The host calls the shared object's one exported symbol, `main`, which hands out PISetupSDK; that negotiates the
// tables and leaves a callback for the handshake, which names the plug-in and its four callbacks.
//
// A plug-in may refuse at each step until it is initialised: `main`, the set-up and the handshake by giving 0, the
// export, the registration and the init by giving false, any of them by raising. It is then left out with one line that
// says where, is called no more (but for `unload`, if its init was reached), and the others start without it.
// SPDX-License-Identifier: MIT
#pragma once

#include "HFT.h"

/** The one version of this start-up. A host that agrees on less is refused. */
inline constexpr std::uint32_t PIHandshakeVersion = KRVersion(2, 0);

struct PISetupRecord;
/** Negotiates the tables: 1, or 0 to refuse, as PIMain.cpp does when a table that it needs is missing. */
using PISetupProc = std::int32_t (*)(std::uint32_t version, PISetupRecord *record);
struct PIHandshakeRecord;
/** Fills the record: 1, or 0 to refuse. */
using PIHandshakeProc = std::int32_t (*)(std::uint32_t version, PIHandshakeRecord *record);

/** `main` of a plug-in: gives 1, or 0 to refuse. Agrees on the smaller of `highestVersion` and PIHandshakeVersion. */
using PIMainProc = std::int32_t (*)(std::uint32_t highestVersion, std::uint32_t *agreedVersion, PISetupProc *setup);

/** What the host gives for the set-up; the host's, for the time of the call. */
struct PISetupRecord {
    /** Equals the agreed version. */
    std::uint32_t version;
    /** The identity of the plug-in. */
    KRWord extensionID;
    /** The core table: the only one that is handed over. */
    KRHFT coreHFT;
    /** Out: a callback, to be called once. */
    PIHandshakeProc handshake;
};

/** A step of a plug-in's life. False refuses, where that is possible. */
using PICallbackProc = KRBool (*)();

/** What the plug-in tells of itself; the host's, which keeps it. */
struct PIHandshakeRecord {
    std::uint32_t version;
    /** The viewer: "Jackdaw". */
    KRAtom appName;
    /** Out: the plug-in's name. */
    KRAtom extensionName;
    // Out. An empty one is passed over. Each is called for all plug-ins, in the order of loading, before the next;
    // false from one of the first three, or a raise, stops the plug-in there.

    /** Serves the plug-in's tables: no other plug-in's can be had yet. */
    PICallbackProc exportHFTs;
    /** Fetches tables, replaces slots, subscribes to notifications. */
    PICallbackProc replaceAndRegister;
    /** Starts. What earlier steps did stands, whatever this gives. */
    PICallbackProc init;
    /** At the end, the last loaded first, for each plug-in whose init was called. It cannot refuse. */
    PICallbackProc unload;
};

/** The identity given in the set-up, passed to every registration. */
inline KRWord gExtensionID = 0;

// The versions that the negotiation settled on; a version has its major number in the high 16 bits.
inline std::uint32_t gCoreVersion = 0;
inline std::uint32_t gKernelSupportVersion = 0;
inline std::uint32_t gLexVersion = 0;
inline std::uint32_t gDocModelVersion = 0;
inline std::uint32_t gScreenViewVersion = 0;
inline std::uint32_t gUnixVersion = 0;

/** Supplied by the plug-in: fills the record; 1, or 0 to refuse. */
std::int32_t PIHandshake(std::uint32_t version, PIHandshakeRecord *record);
