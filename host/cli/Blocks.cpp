// Bytes in and out by descriptors, and files without a name.
// SPDX-License-Identifier: MIT
#include "cli/Blocks.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <unistd.h>

#include "cli/Session.h"

namespace jackdaw::cli {

namespace {

const char *const s_outputName = "standard output";
std::string s_lines;

/** Whether a call that failed with `errnoValue` is to be made again, once the file is ready. */
bool TryAgain(int errnoValue, int fd, short events) {
    if (errnoValue == EINTR) return true;
    if (errnoValue != EAGAIN) return false;
    pollfd wait{fd, events, 0};
    return poll(&wait, 1, /*timeout*/ -1) >= 0 || errno == EINTR;
}

} // namespace

std::size_t ReadBlock(int fd, char *block, const std::string &name) {
    for (;;) {
        const ssize_t count = read(fd, block, BlockSize);
        if (count >= 0) return static_cast<std::size_t>(count);
        if (!TryAgain(errno, fd, POLLIN)) throw CommandFailed{name + ": " + FileReason(errno)};
    }
}

void WriteBlock(int fd, std::string_view bytes, const std::string &name) {
    while (!bytes.empty()) {
        const ssize_t count = write(fd, bytes.data(), bytes.size());
        if (count < 0 && TryAgain(errno, fd, POLLOUT)) continue;
        if (count < 0) throw CommandFailed{name + ": " + FileReason(errno)};
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

void PrintLine(std::string_view line) {
    s_lines.append(line);
    s_lines += '\n';
    if (s_lines.size() >= BlockSize) FlushLines();
}

void FlushLines() {
    // Lines that cannot be written are told of once.
    const std::string lines = std::move(s_lines);
    s_lines.clear();
    WriteBlock(STDOUT_FILENO, lines, s_outputName);
}

ScratchFile::ScratchFile() {
    std::string name = std::filesystem::temp_directory_path();
    fd = open(name.c_str(), O_RDWR | O_TMPFILE | O_EXCL | O_CLOEXEC, 0600);
    if (fd >= 0) return;
    // Not every file system has files without a name.
    name += "/jackdaw-XXXXXX";
    fd = mkostemp(name.data(), O_CLOEXEC);
    if (fd < 0) throw CommandFailed{name + ": " + FileReason(errno)};
    unlink(name.c_str());
}

ScratchFile::~ScratchFile() {
    close(fd);
}

std::string ScratchFile::Path() const {
    return "/proc/self/fd/" + std::to_string(fd);
}

void ScratchFile::CopyToOutput() const {
    const std::string name = "the temporary file for standard output";
    if (lseek(fd, 0, SEEK_SET) != 0) throw CommandFailed{name + ": " + FileReason(errno)};
    char block[BlockSize];
    while (const std::size_t count = ReadBlock(fd, block, name))
        WriteBlock(STDOUT_FILENO, {block, count}, s_outputName);
}

} // namespace jackdaw::cli
