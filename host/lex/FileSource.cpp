// The file under a document: blocks kept as they are read, and the failures of the system in the library's words.
// SPDX-License-Identifier: MIT
#include "lex/FileSource.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include <qpdf/QPDFExc.hh>
#include <sys/stat.h>
#include <unistd.h>

namespace jackdaw::lex {

FileSource::FileSource(std::string name, int fd) : name_(std::move(name)), fd_(fd) {}

FileSource::~FileSource() {
    ::close(fd_);
}

const FileSource::Block &FileSource::blockAt(qpdf_offset_t offset) {
    constexpr auto size = static_cast<qpdf_offset_t>(s_blockSize);
    const qpdf_offset_t number = offset / size;
    Block &block = blocks_[static_cast<std::size_t>(number) % s_blockCount];
    if (block.start == number * size) return block;
    if (!block.bytes) block.bytes = std::make_unique<char[]>(s_blockSize);
    block.start = -1;
    block.length = 0;
    while (block.length < s_blockSize) {
        const auto place = static_cast<off_t>(number * size + static_cast<qpdf_offset_t>(block.length));
        const ssize_t count = ::pread(fd_, block.bytes.get() + block.length, s_blockSize - block.length, place);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) throw QPDFExc(qpdf_e_system, name_, "", place, std::string("cannot read: ") + strerror(errno));
        if (count == 0) break;
        block.length += static_cast<std::size_t>(count);
    }
    block.start = number * size;
    return block;
}

std::size_t FileSource::read(char *buffer, std::size_t length) {
    setLastOffset(position_);
    std::size_t done = 0;
    while (done < length) {
        const Block &block = blockAt(position_);
        const auto inside = static_cast<std::size_t>(position_ - block.start);
        if (inside >= block.length) break;
        const std::size_t count = std::min(length - done, block.length - inside);
        std::memcpy(buffer + done, block.bytes.get() + inside, count);
        done += count;
        position_ += static_cast<qpdf_offset_t>(count);
    }
    if (done == 0 && length > 0) {
        seek(0, SEEK_END);
        setLastOffset(position_);
    }
    return done;
}

/** Stops at the first byte behind the next run of line ends, or at the end of the file. */
qpdf_offset_t FileSource::findAndSkipNextEOL() {
    const auto isEnd = [](char c) { return c == '\r' || c == '\n'; };
    bool found = false;
    char c = 0;
    qpdf_offset_t end = position_;
    while (read(&c, 1) == 1) {
        if (found && !isEnd(c)) {
            unreadCh(c);
            return end;
        }
        if (!found && isEnd(c)) {
            found = true;
            end = position_ - 1;
        }
    }
    return found ? end : position_;
}

const std::string &FileSource::getName() const {
    return name_;
}

qpdf_offset_t FileSource::tell() {
    return position_;
}

void FileSource::seek(qpdf_offset_t offset, int whence) {
    qpdf_offset_t base = 0;
    if (whence == SEEK_CUR) base = position_;
    if (whence == SEEK_END) {
        struct stat facts;
        base = ::fstat(fd_, &facts) == 0 ? facts.st_size : 0;
    }
    qpdf_offset_t target = 0;
    if (__builtin_add_overflow(base, offset, &target) || target < 0)
        throw QPDFExc(qpdf_e_damaged_pdf, name_, "", position_, "a place outside of the file is named");
    position_ = target;
}

void FileSource::rewind() {
    position_ = 0;
}

void FileSource::unreadCh(char) {
    if (position_ > 0) --position_;
}

} // namespace jackdaw::lex
