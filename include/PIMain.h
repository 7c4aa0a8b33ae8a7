// How a plug-in meets the host. PIMain.cpp is linked into every plug-in; the plug-in supplies PIHandshake.
//
// The host calls the shared object's one exported symbol, `main`, which hands out PISetupSDK; that negotiates the
// tables and leaves a callback for the handshake, which names the plug-in and its four callbacks.
// SPDX-License-Identifier: MIT
#pragma once

#include "HFT.h"

inline constexpr std::uint32_t PIHandshakeVersion = KRVersion(2, 0);

struct PISetupRecord;
using PISetupProc = std::int32_t (*)(std::uint32_t version, PISetupRecord *record);
struct PIHandshakeRecord;
using PIHandshakeProc = std::int32_t (*)(std::uint32_t version, PIHandshakeRecord *record);

/** `main` of a plug-in: gives 1. Agrees on the smaller of `highestVersion` and PIHandshakeVersion. */
using PIMainProc = std::int32_t (*)(std::uint32_t highestVersion, std::uint32_t *agreedVersion, PISetupProc *setup);

struct PISetupRecord {
    /** Equals the agreed version. */
    std::uint32_t version;
    KRWord extensionID;
    KRHFT coreHFT;
    /** Out. */
    PIHandshakeProc handshake;
};

using PICallbackProc = KRBool (*)();

struct PIHandshakeRecord {
    std::uint32_t version;
    KRAtom appName;
    /** Out: the plug-in's name. */
    KRAtom extensionName;
    /** Out. Called in this order; an empty one is passed over. False from either of the last two stops the plug-in. */
    PICallbackProc exportHFTs;
    PICallbackProc replaceAndRegister;
    PICallbackProc init;
    PICallbackProc unload;
};

/** The identity given in the set-up, passed to every registration. */
inline KRWord gExtensionID = 0;

// The versions that the negotiation settled on.
inline std::uint32_t gCoreVersion = 0;
inline std::uint32_t gKernelSupportVersion = 0;
inline std::uint32_t gLexVersion = 0;
inline std::uint32_t gDocModelVersion = 0;
inline std::uint32_t gScreenViewVersion = 0;
inline std::uint32_t gUnixVersion = 0;

/** Supplied by the plug-in: fills the record; 1, or 0 to refuse. */
std::int32_t PIHandshake(std::uint32_t version, PIHandshakeRecord *record);
