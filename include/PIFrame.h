// The C++ way through host exceptions: one construct that pairs push, body, pop and code.
//
//     const KRErrorCode code = Protect([&] { LexDictPut(dict, key, value); });
//
// Nothing else in a plug-in calls KRPushExceptionFrame. The restore routine throws a type of its own, so the body's
// objects are destroyed on the way out; destructors therefore must not raise.
// SPDX-License-Identifier: MIT
#pragma once

#include <new>

#include "CoreHFT.h"
#include "KRErrors.h"

/** Thrown by RestorePlugInFrame and caught only by Protect. */
struct PlugInFrameRestored {};

/** The restore routine handed to every KRPushExceptionFrame. */
[[noreturn]] inline void RestorePlugInFrame(void *) {
    throw PlugInFrameRestored{};
}

/** Runs `body` in a frame of its own: 0, or the code raised in it. The frame is popped on either road. */
template <class Body>
KRErrorCode Protect(Body &&body) {
    KRErrorCode code = KRErrNone;
    KRPushExceptionFrame(&code, &RestorePlugInFrame);
    try {
        body();
        KRPopExceptionFrame();
    } catch (const PlugInFrameRestored &) {
        KRPopExceptionFrame();
        code = KRGetExceptionCode();
    } catch (const std::bad_alloc &) {
        KRPopExceptionFrame();
        code = KRErrNoMemory;
    } catch (...) {
        // An exception of the plug-in's own is on its way to a handler outside of the frame.
        KRPopExceptionFrame();
        throw;
    }
    return code;
}

/** Raises `code` unless it is 0: the end of a routine that kept a code, cleaned up and now passes it on. */
inline void RaiseIf(KRErrorCode code) {
    if (code != KRErrNone) KRRaise(code);
}

/** A typed callback of this plug-in for a slot that takes the procedure in its own shape. */
template <class Proc>
Proc *PICallback(KRWord extensionID, Proc *proc) {
    return reinterpret_cast<Proc *>(KRCallbackCreate(extensionID, reinterpret_cast<KRProc>(proc)));
}
