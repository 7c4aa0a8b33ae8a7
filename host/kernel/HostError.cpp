// From C++ exceptions to codes and back, and the sentence of the last error.
// SPDX-License-Identifier: MIT
#include "kernel/HostError.h"

#include <exception>
#include <new>
#include <vector>

#include "kernel/Errors.h"
#include "kernel/Frames.h"

namespace jackdaw {

namespace {

struct NotedError {
    KRErrorCode code = KRErrNone;
    std::string text;
};
NotedError s_noted;

std::vector<ExceptionTranslator> &translators() {
    static std::vector<ExceptionTranslator> s_translators;
    return s_translators;
}

bool translate(KRErrorCode &code, std::string &what) {
    for (const ExceptionTranslator translator : translators()) {
        if (translator(code, what)) return true;
    }
    return false;
}

[[noreturn]] void restoreHostFrame(void *) {
    throw HostFrameRestored{};
}

} // namespace

KRErrorCode CodeOfCurrentException() {
    try {
        throw;
    } catch (const HostError &error) {
        NoteError(error.code, error.what);
        return error.code;
    } catch (const std::bad_alloc &) {
        NoteError(KRErrNoMemory, {});
        return KRErrNoMemory;
    } catch (const std::exception &error) {
        KRErrorCode code = KRErrBadParam;
        std::string what;
        if (!translate(code, what)) what = error.what();
        NoteError(code, what);
        return code;
    }
}

void AddExceptionTranslator(ExceptionTranslator translator) {
    for (const ExceptionTranslator known : translators()) {
        if (known == translator) return;
    }
    translators().push_back(translator);
}

void RaiseFromHost(KRErrorCode code) {
    Raise(code);
}

void NoteError(KRErrorCode code, const std::string &what) {
    s_noted.code = code;
    try {
        s_noted.text = what;
    } catch (const std::bad_alloc &) {
        s_noted.text.clear();
    }
}

void ForgetErrorUnless(KRErrorCode code) {
    if (s_noted.code == code) return;
    s_noted.code = code;
    s_noted.text.clear();
}

const std::string &LastErrorText() {
    return s_noted.text;
}

std::string ErrorSentence(KRErrorCode code) {
    if (code == s_noted.code && !s_noted.text.empty()) return s_noted.text;
    return ErrorText(code);
}

std::size_t PushHostFrame() {
    const std::size_t depth = FrameCount();
    PushFrame(nullptr, &restoreHostFrame);
    return depth;
}

void PopHostFrame(std::size_t depth) {
    CutFrames(depth);
}

void ThrowIf(KRErrorCode code) {
    if (code == KRErrNone) return;
    throw HostError{code, code == s_noted.code ? s_noted.text : std::string()};
}

} // namespace jackdaw
