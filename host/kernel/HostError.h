// Failure inside the host: the one error type, and the two walls between C++ exceptions and host exceptions.
//
// 1. Host code throws HostError. Nothing else of the host's leaves a function of a table.
// 2. `Edge` stands around every function that is installed in a table. It raises only after the last C++ object of the
//    call is gone, so that a restore routine may long-jump.
// 3. `HostProtect` stands around every call into a plug-in that is made while C++ objects of the host are alive.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <type_traits>
#include <utility>

#include "KRErrors.h"
#include "KRTypes.h"

namespace jackdaw {

/** What host code throws. `what` is a sentence for a user, with object and offset where they are known; may be empty.
 */
struct HostError {
    KRErrorCode code;
    std::string what = {};
};

/**
 * Turns the exception being handled into a code and notes its sentence. HostError gives its own code, bad_alloc
 * KRErrNoMemory, what a translator knows the translator's, another std::exception KRErrBadParam. Throws on whatever is
 * none of these (a plug-in's frame on its way out). Call only from a catch clause.
 */
KRErrorCode CodeOfCurrentException();

/**
 * Teaches CodeOfCurrentException the types of a library: rethrows the exception being handled, and gives false for a
 * type that is not its own. Translators live as long as the process and are asked before std::exception is.
 */
using ExceptionTranslator = bool (*)(KRErrorCode &code, std::string &what);
void AddExceptionTranslator(ExceptionTranslator translator);

/** Runs `body`: 0, or the code of what it threw. For operations whose result is a code, and for clean-up. */
template <class Body>
KRErrorCode CodeOf(Body &&body) {
    try {
        std::forward<Body>(body)();
    } catch (...) {
        return CodeOfCurrentException();
    }
    return KRErrNone;
}

/** Raises `code` in the innermost frame; no C++ object of the caller's may be alive. */
[[noreturn]] void RaiseFromHost(KRErrorCode code);

/** Notes the sentence that belongs to `code`; LastErrorText and ErrorSentence give it until another code is raised. */
void NoteError(KRErrorCode code, const std::string &what);

/** Makes the sentence void when it belongs to another code. */
void ForgetErrorUnless(KRErrorCode code);

/** Sentence of the error last noted; empty when it had none. */
const std::string &LastErrorText();

/** The sentence for the user: the one noted with `code`, else the code's own text. */
std::string ErrorSentence(KRErrorCode code);

/**
 * The body of a function in a table. What it throws becomes a host exception, raised outside of any live object:
 *
 *     KRBool lexDictKnown(LexObj dict, KRAtom key) { return Edge([&]() -> KRBool { ... }); }
 */
template <class Body>
auto Edge(Body &&body) -> std::invoke_result_t<Body> {
    KRErrorCode code;
    try {
        return std::forward<Body>(body)();
    } catch (...) {
        code = CodeOfCurrentException();
    }
    RaiseFromHost(code);
}

/** Thrown by the restore routine of a host frame and caught only by HostProtect. */
struct HostFrameRestored {};

/** Pushes a host frame; gives the number of frames before it. */
std::size_t PushHostFrame();
/** Takes away the host frame and whatever a callback left above it. */
void PopHostFrame(std::size_t depth);
/** Code of the exception being handled. */
KRErrorCode RaisedCode();

/** Runs a call into a plug-in in a host frame: 0, or the code raised or thrown. The caller's objects stay whole. */
template <class Body>
KRErrorCode HostProtect(Body &&body) {
    const std::size_t depth = PushHostFrame();
    KRErrorCode code = KRErrNone;
    try {
        std::forward<Body>(body)();
    } catch (const HostFrameRestored &) {
        code = RaisedCode();
    } catch (...) {
        PopHostFrame(depth);
        return CodeOfCurrentException();
    }
    PopHostFrame(depth);
    return code;
}

/** Throws the code of a HostProtect on, with the sentence noted for it; nothing for 0. */
void ThrowIf(KRErrorCode code);

} // namespace jackdaw
