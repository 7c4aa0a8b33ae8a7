// Work that is done apart: in a child process with bounds of its own, so that what a library does with a hostile
// document can neither exhaust the machine nor end the program.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace jackdaw {

/** Memory that the process shares with its children; zero at the start. */
class SharedBlock {
public:
    /** Throws KRErrNoMemory. */
    explicit SharedBlock(std::size_t size);
    ~SharedBlock();
    SharedBlock(const SharedBlock &) = delete;
    SharedBlock &operator=(const SharedBlock &) = delete;

    void *data() const {
        return data_;
    }

private:
    void *data_;
    std::size_t size_;
};

struct ApartBounds {
    /** Of processor time. */
    std::int64_t seconds;
    /** Beyond what the process has when the work begins; what is shared does not count. */
    std::int64_t bytes;
};

/**
 * Runs `work` in a child process. Of what it does, only what it writes into shared blocks and files is left. Throws
 * what it throws as HostError; KRErrNoMemory with a sentence that begins with `what` when it passes a bound,
 * KRErrBadPDF when it ends in another way. Its error output is dropped.
 */
void RunApart(const std::string &what, const ApartBounds &bounds, const std::function<void()> &work);

/** From now on the process itself has bounds: lack of memory is raised as usual, lack of time ends it with one line. */
void BoundProcess(const ApartBounds &bounds);

} // namespace jackdaw
