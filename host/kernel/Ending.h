// How the process ends when it does not come to its own end: on a signal, without memory, on an exception that nobody
// caught. Files under temporary names go first, then it says why, in one line.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace jackdaw {

/** Exit status of a process that ends with nothing done. */
inline constexpr int ExitOfFailure = 2;

/** An uncaught exception removes the temporaries and ends the process with one line and ExitOfFailure. */
void WatchExceptions() noexcept;
/**
 * The same, and INT, TERM, HUP and PIPE remove the temporaries before they end the process, unless the process was
 * started with the signal ignored; XFSZ is ignored, so that a file that grows too large is an error of the write.
 */
void WatchEnding();

/** As long as it lives, `path` is removed when the process ends early. Throws KRErrFileOpen when too many are alive. */
class TemporaryName {
public:
    explicit TemporaryName(const std::string &path);
    ~TemporaryName();
    TemporaryName(const TemporaryName &) = delete;
    TemporaryName &operator=(const TemporaryName &) = delete;

private:
    int slot_;
};

/** Ends the process at once: the temporaries go, `why` is the line. Neither allocates nor throws. */
[[noreturn]] void EndWithFailure(const char *why) noexcept;

} // namespace jackdaw
