// Bytes in and out by descriptors: nothing is lost when a call is interrupted or a pipe is not ready.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace jackdaw::cli {

/** Bytes that are read or written at a time. */
inline constexpr std::size_t BlockSize = 65536;

/** Up to BlockSize bytes; 0 at the end. Throws CommandFailed with `name`. */
std::size_t ReadBlock(int fd, char *block, const std::string &name);
/** All of `bytes`. Throws CommandFailed with `name`. */
void WriteBlock(int fd, std::string_view bytes, const std::string &name);

/** A line on standard output, which waits until there are enough of them. Throws CommandFailed. */
void PrintLine(std::string_view line);
/** Writes what waits. Throws CommandFailed. */
void FlushLines();

/** A temporary file without a name, which is gone with the process however that ends. */
class ScratchFile {
public:
    /** Throws CommandFailed. */
    ScratchFile();
    ~ScratchFile();
    ScratchFile(const ScratchFile &) = delete;
    ScratchFile &operator=(const ScratchFile &) = delete;
    int Descriptor() const {
        return fd;
    }
    /** Under which this process can open it. */
    std::string Path() const;
    /** What it holds goes to standard output. Throws CommandFailed. */
    void CopyToOutput() const;

private:
    int fd;
};

} // namespace jackdaw::cli
