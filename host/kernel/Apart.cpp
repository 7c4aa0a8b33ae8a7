// A forked child does the work and leaves its outcome in shared memory.
// SPDX-License-Identifier: MIT
#include "kernel/Apart.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "kernel/Ending.h"
#include "kernel/HostError.h"

namespace jackdaw {

namespace {

/** What the child leaves behind. `done` is written last. */
struct Outcome {
    KRErrorCode code;
    char what[1024];
    volatile bool done;
};

/** The soft bound: the signal comes, and a child can still have more. Never above what the process was started with. */
void setBound(int resource, rlim_t value) {
    struct rlimit bound {};
    if (getrlimit(static_cast<__rlimit_resource_t>(resource), &bound) != 0) return;
    bound.rlim_cur = std::min(bound.rlim_max, value);
    setrlimit(static_cast<__rlimit_resource_t>(resource), &bound);
}

/** Private writable memory of the process, which RLIMIT_DATA counts. */
std::int64_t privateBytes() {
    std::FILE *const file = std::fopen("/proc/self/status", "re");
    if (!file) return 0;
    long long kilobytes = 0;
    char line[256];
    while (std::fgets(line, sizeof line, file) && std::sscanf(line, "VmData: %lld", &kilobytes) != 1) {
    }
    std::fclose(file);
    return kilobytes * 1024;
}

void endLate(int) {
    EndWithFailure("the document takes longer to read than is allowed");
}

void enterBounds(const ApartBounds &bounds, pid_t parent) {
    // Nobody waits for the picture of a program that was killed.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(1);
    const int nothing = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nothing >= 0) dup2(nothing, STDERR_FILENO);
    std::signal(SIGXCPU, SIG_DFL);
    setBound(RLIMIT_CORE, 0);
    setBound(RLIMIT_CPU, static_cast<rlim_t>(bounds.seconds));
    setBound(RLIMIT_DATA, static_cast<rlim_t>(privateBytes() + bounds.bytes));
}

void note(Outcome &outcome, KRErrorCode code, const char *what) {
    outcome.code = code;
    std::snprintf(outcome.what, sizeof outcome.what, "%s", what);
}

void doWork(Outcome &outcome, const std::function<void()> &work) {
    try {
        work();
    } catch (const HostError &error) {
        note(outcome, error.code, error.what.c_str());
    } catch (const std::bad_alloc &) {
        note(outcome, KRErrNoMemory, "");
    } catch (const std::exception &error) {
        note(outcome, KRErrBadPDF, error.what());
    }
    outcome.done = true;
}

int waitFor(pid_t child) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR)
            throw HostError{KRErrFileIO, std::string("A child process is lost: ") + std::strerror(errno)};
    }
    return status;
}

[[noreturn]] void throwPassed(const std::string &what, const ApartBounds &bounds, int status) {
    const bool killed = WIFSIGNALED(status);
    if (killed && (WTERMSIG(status) == SIGXCPU || WTERMSIG(status) == SIGKILL))
        throw HostError{KRErrNoMemory, what + " takes longer than " + std::to_string(bounds.seconds) + " s"};
    if (killed && WTERMSIG(status) == SIGSEGV) throw HostError{KRErrBadPDF, what + " is more than the stack holds"};
    throw HostError{KRErrNoMemory, what + " takes more memory than " + std::to_string(bounds.bytes >> 20) + " MB"};
}

} // namespace

SharedBlock::SharedBlock(std::size_t size)
    : data_(mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)), size_(size) {
    if (data_ == MAP_FAILED) throw HostError{KRErrNoMemory};
}

SharedBlock::~SharedBlock() {
    munmap(data_, size_);
}

void RunApart(const std::string &what, const ApartBounds &bounds, const std::function<void()> &work) {
    const SharedBlock shared(sizeof(Outcome));
    Outcome &outcome = *new (shared.data()) Outcome{};
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child < 0) throw HostError{KRErrNoMemory, std::string("No child process: ") + std::strerror(errno)};
    if (child == 0) {
        enterBounds(bounds, parent);
        doWork(outcome, work);
        _exit(0);
    }
    const int status = waitFor(child);
    if (!outcome.done || (outcome.code == KRErrNoMemory && !outcome.what[0])) throwPassed(what, bounds, status);
    if (outcome.code != KRErrNone) throw HostError{outcome.code, outcome.what};
}

void BoundProcess(const ApartBounds &bounds) {
    std::signal(SIGXCPU, &endLate);
    setBound(RLIMIT_CPU, static_cast<rlim_t>(bounds.seconds));
    setBound(RLIMIT_DATA, static_cast<rlim_t>(privateBytes() + bounds.bytes));
}

} // namespace jackdaw
