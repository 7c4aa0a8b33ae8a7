// The early end of the process.
//
// 1. All that runs in the handlers is safe in a signal handler: no memory, no locks, no stdio.
// 2. A slot belongs to the process that took it: a forked child that is killed removes nothing of its parent's.
// SPDX-License-Identifier: MIT
#include "kernel/Ending.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <exception>
#include <new>
#include <unistd.h>

#include "kernel/HostError.h"

namespace jackdaw {

namespace {

/** A temporary file: `owner` is 0 while the slot is free, and is written last. */
struct Slot {
    volatile sig_atomic_t owner;
    char path[PATH_MAX];
};
Slot s_slots[8];

void removeTemporaries() {
    for (Slot &slot : s_slots) {
        if (slot.owner == getpid()) unlink(slot.path);
    }
}

void put(const char *text) {
    std::size_t left = std::strlen(text);
    while (left > 0) {
        const ssize_t count = write(STDERR_FILENO, text, left);
        if (count < 0 && errno != EINTR) return;
        if (count > 0) text += count;
        if (count > 0) left -= static_cast<std::size_t>(count);
    }
}

/** The handler is gone by then (SA_RESETHAND), so that the signal ends the process as it is used to. */
void endBySignal(int number) {
    removeTemporaries();
    raise(number);
}

[[noreturn]] void endByException() {
    if (!std::current_exception()) EndWithFailure("internal error");
    try {
        throw;
    } catch (const std::bad_alloc &) {
        EndWithFailure("Out of memory.");
    } catch (const std::exception &error) {
        EndWithFailure(error.what());
    } catch (...) {
        EndWithFailure("internal error: an exception that nobody caught");
    }
}

void handle(int number, void (*handler)(int)) {
    struct sigaction former {};
    if (sigaction(number, nullptr, &former) != 0 || former.sa_handler == SIG_IGN) return;
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    sigemptyset(&action.sa_mask);
    sigaction(number, &action, nullptr);
}

} // namespace

void WatchExceptions() noexcept {
    std::set_terminate(&endByException);
}

void WatchEnding() {
    WatchExceptions();
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) handle(number, &endBySignal);
    std::signal(SIGXFSZ, SIG_IGN);
}

TemporaryName::TemporaryName(const std::string &path) : slot_(0) {
    constexpr int count = sizeof s_slots / sizeof *s_slots;
    while (slot_ < count && s_slots[slot_].owner != 0) ++slot_;
    if (slot_ == count || path.size() >= sizeof s_slots->path)
        throw HostError{KRErrFileOpen, "Too many files are being written: " + path};
    std::memcpy(s_slots[slot_].path, path.c_str(), path.size() + 1);
    s_slots[slot_].owner = getpid();
}

TemporaryName::~TemporaryName() {
    s_slots[slot_].owner = 0;
}

void EndWithFailure(const char *why) noexcept {
    removeTemporaries();
    put("jackdaw: ");
    put(why);
    put("\n");
    _exit(ExitOfFailure);
}

} // namespace jackdaw
