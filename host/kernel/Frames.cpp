// The stack of handler frames, and raising.
//
// 1. A raise leaves the frame pushed: its owner pops it, on this road as on the other.
// 2. The sentence noted for a code lives as long as that code is raised on; another code makes it void.
// SPDX-License-Identifier: MIT
#include "kernel/Frames.h"

#include <cstdio>
#include <string>
#include <vector>

#include "kernel/Ending.h"
#include "kernel/Errors.h"

namespace jackdaw {

namespace {

struct Frame {
    void *env;
    KRRestoreProc restore;
};

std::vector<Frame> s_frames;
KRErrorCode s_raised = KRErrNone;

[[noreturn]] void endProcess(const char *why) {
    std::fflush(stdout);
    EndWithFailure((std::string(why) + ": " + ErrorSentence(s_raised)).c_str());
}

} // namespace

void PushFrame(void *env, KRRestoreProc restore) {
    if (!restore) throw HostError{KRErrBadParam, "A handler frame needs a restore routine."};
    s_frames.push_back({env, restore});
}

void PopFrame() {
    if (!s_frames.empty()) s_frames.pop_back();
}

std::size_t FrameCount() {
    return s_frames.size();
}

void CutFrames(std::size_t count) {
    while (s_frames.size() > count) s_frames.pop_back();
}

KRErrorCode RaisedCode() {
    return s_raised;
}

void Raise(KRErrorCode code) {
    s_raised = code == KRErrNone ? KRErrBadParam : code;
    ForgetErrorUnless(s_raised);
    if (s_frames.empty()) endProcess("an error was raised outside of any handler");
    const Frame frame = s_frames.back();
    frame.restore(frame.env);
    endProcess("a handler's restore routine came back");
}

} // namespace jackdaw
