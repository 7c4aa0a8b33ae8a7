// What a command reads beside its document.
// SPDX-License-Identifier: MIT
#include "cli/Input.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "cli/Blocks.h"
#include "cli/LimitOptions.h"
#include "cli/Session.h"

namespace jackdaw::cli {

namespace {

/** A file being read, with the name that messages give it. */
struct Source {
    Source(int fd, std::string name) : fd(fd), name(std::move(name)) {}
    ~Source() {
        if (fd != STDIN_FILENO) close(fd);
    }
    Source(const Source &) = delete;
    Source &operator=(const Source &) = delete;

    int fd;
    std::string name;
};

Source TakeStandardInput() {
    static bool s_taken = false;
    if (s_taken) throw CommandFailed{"standard input is asked for twice"};
    s_taken = true;
    return {STDIN_FILENO, "standard input"};
}

Source Open(const std::string &path) {
    if (path == "-") return TakeStandardInput();
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) throw CommandFailed{path + ": " + FileReason(errno)};
    return {fd, path};
}

/** Gives the bytes to `take` block by block, until it wants no more. */
template <class Take>
void ReadBlocks(const Source &source, Take take) {
    char block[BlockSize];
    while (const std::size_t count = ReadBlock(source.fd, block, source.name)) {
        if (!take(block, count)) return;
    }
}

[[noreturn]] void FailAsTooLong(const Source &source, std::int64_t limit) {
    throw CommandFailed{source.name + ": longer than " + std::to_string(limit) + " bytes"};
}

} // namespace

std::string ReadData(const std::string &path) {
    const Source source = Open(path);
    const std::int64_t limit = LimitNamed("data-bytes");
    std::string bytes;
    ReadBlocks(source, [&](const char *block, std::size_t count) {
        bytes.append(block, count);
        if (static_cast<std::int64_t>(bytes.size()) > limit) FailAsTooLong(source, limit);
        return true;
    });
    return bytes;
}

std::string ReadPassword(const std::string &path) {
    const Source source = Open(path);
    const std::int64_t limit = LimitNamed("password-bytes");
    std::string line;
    ReadBlocks(source, [&](const char *block, std::size_t count) {
        const char *const end = std::find_if(block, block + count, [](char c) { return c == '\r' || c == '\n'; });
        line.append(block, end);
        if (static_cast<std::int64_t>(line.size()) > limit)
            throw CommandFailed{source.name + ": the first line is longer than a password can be"};
        return end == block + count;
    });
    return line;
}

void CopyInputTo(int fd) {
    const Source source = TakeStandardInput();
    // What is made of the document is as private as the document is.
    struct stat facts;
    const bool isFile = fstat(source.fd, &facts) == 0 && S_ISREG(facts.st_mode);
    fchmod(fd, isFile ? facts.st_mode & 0666 : 0666);
    const std::int64_t limit = LimitNamed("input-bytes");
    std::int64_t copied = 0;
    ReadBlocks(source, [&](const char *block, std::size_t count) {
        copied += static_cast<std::int64_t>(count);
        if (copied > limit) FailAsTooLong(source, limit);
        WriteBlock(fd, {block, count}, "the temporary file for standard input");
        return true;
    });
}

} // namespace jackdaw::cli
