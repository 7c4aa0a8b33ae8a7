// Writes the progress line.
// SPDX-License-Identifier: MIT
#include "view/Progress.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <unistd.h>

namespace jackdaw {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds s_usualDelay{1000};
constexpr std::chrono::milliseconds s_betweenLines{100};

struct ProgressState {
    int depth = 0;
    std::string what;
    std::int32_t last = 0;
    std::int32_t value = 0;
    Clock::time_point due;
    /** Of the line that stands on the terminal; 0 for none. */
    std::size_t shownLength = 0;
    std::FILE *output = nullptr;
    std::chrono::milliseconds delay = s_usualDelay;
};

ProgressState &state() {
    static ProgressState s_progress;
    return s_progress;
}

std::FILE *output() {
    if (state().output) return state().output;
    return isatty(STDERR_FILENO) != 0 ? stderr : nullptr;
}

void writeLine(const std::string &line) {
    ProgressState &s = state();
    std::FILE *stream = output();
    if (!stream) return;
    const std::size_t wipe = s.shownLength > line.size() ? s.shownLength - line.size() : 0;
    const std::string text = "\r" + line + std::string(wipe, ' ') + (line.empty() ? "\r" : "");
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fflush(stream);
    s.shownLength = line.size();
}

void showWhenDue() {
    ProgressState &s = state();
    const Clock::time_point now = Clock::now();
    if (s.depth == 0 || now < s.due) return;
    s.due = now + s_betweenLines;
    std::string line = s.what;
    if (s.last > 0) {
        const std::int64_t percent = std::clamp<std::int64_t>(std::int64_t{100} * s.value / s.last, 0, 100);
        line += " " + std::to_string(percent) + "%";
    } else {
        line += " ...";
    }
    writeLine(line);
}

} // namespace

void BeginProgress(const char *what) {
    ProgressState &s = state();
    if (s.depth++ > 0) return;
    s.what = what ? what : "Working:";
    s.last = 0;
    s.value = 0;
    s.due = Clock::now() + s.delay;
}

void SetProgressRange(std::int32_t last) {
    if (state().depth == 1) state().last = last;
    showWhenDue();
}

void SetProgressValue(std::int32_t value) {
    if (state().depth == 1) state().value = value;
    showWhenDue();
}

void EndProgress() {
    ProgressState &s = state();
    if (s.depth == 0 || --s.depth > 0) return;
    if (s.shownLength > 0) writeLine("");
}

const SCProgressMonitor *ProgressMonitor() {
    static const SCProgressMonitor s_monitor{
        sizeof(SCProgressMonitor),
        [](void *) { BeginProgress(/*what*/ nullptr); },
        [](std::int32_t last, void *) { SetProgressRange(last); },
        [](std::int32_t value, void *) { SetProgressValue(value); },
        [](void *) { EndProgress(); },
    };
    return &s_monitor;
}

void SetProgressOutput(std::FILE *stream, int delayMs) {
    state().output = stream;
    state().delay = std::chrono::milliseconds(delayMs);
}

} // namespace jackdaw
