// What a command reads beside its document.
// SPDX-License-Identifier: MIT
#include "cli/Input.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <memory>

#include <sys/stat.h>

#include "cli/InputLimits.h"
#include "cli/Session.h"

namespace jackdaw::cli {

namespace {

struct FileCloser {
    void operator()(std::FILE *file) const {
        if (file != stdin) std::fclose(file);
    }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

/** A file being read, with the name that messages give it. */
struct Source {
    File file;
    std::string name;
};

Source TakeStandardInput() {
    static bool s_taken = false;
    if (s_taken) throw CommandFailed{"standard input is asked for twice"};
    s_taken = true;
    return {File(stdin), "standard input"};
}

Source Open(const std::string &path) {
    if (path == "-") return TakeStandardInput();
    File file(std::fopen(path.c_str(), "rb"));
    if (!file) throw CommandFailed{path + ": " + FileReason(errno)};
    struct stat facts;
    if (fstat(fileno(file.get()), &facts) == 0 && S_ISDIR(facts.st_mode))
        throw CommandFailed{path + ": " + FileReason(EISDIR)};
    return {std::move(file), path};
}

/** Gives the bytes to `take` block by block, until it wants no more. */
template <class Take>
void ReadBlocks(const Source &source, Take take) {
    char block[65536];
    for (std::size_t got; (got = std::fread(block, 1, sizeof block, source.file.get())) > 0;) {
        if (!take(block, got)) return;
    }
    if (std::ferror(source.file.get())) throw CommandFailed{source.name + ": " + FileReason(errno)};
}

[[noreturn]] void FailAsTooLong(const Source &source, std::int64_t limit) {
    throw CommandFailed{source.name + ": longer than " + std::to_string(limit) + " bytes"};
}

} // namespace

std::string ReadData(const std::string &path) {
    const Source source = Open(path);
    std::string bytes;
    ReadBlocks(source, [&](const char *block, std::size_t count) {
        bytes.append(block, count);
        if (static_cast<std::int64_t>(bytes.size()) > DataBytes) FailAsTooLong(source, DataBytes);
        return true;
    });
    return bytes;
}

std::string ReadPassword(const std::string &path) {
    const Source source = Open(path);
    std::string line;
    ReadBlocks(source, [&](const char *block, std::size_t count) {
        const char *const end = std::find_if(block, block + count, [](char c) { return c == '\r' || c == '\n'; });
        line.append(block, end);
        if (static_cast<std::int64_t>(line.size()) > PasswordBytes)
            throw CommandFailed{source.name + ": the first line is longer than a password can be"};
        return end == block + count;
    });
    return line;
}

void CopyInputTo(std::FILE *out) {
    const Source source = TakeStandardInput();
    std::int64_t copied = 0;
    ReadBlocks(source, [&](const char *block, std::size_t count) {
        copied += static_cast<std::int64_t>(count);
        if (copied > PipedDocumentBytes) FailAsTooLong(source, PipedDocumentBytes);
        if (std::fwrite(block, 1, count, out) < count)
            throw CommandFailed{"the temporary file for standard input: " + FileReason(errno)};
        return true;
    });
}

} // namespace jackdaw::cli
