// The file under a document: blocks kept as they are read, and the failures of the system in the library's words.
// SPDX-License-Identifier: MIT
#include "lex/FileSource.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include <poll.h>
#include <qpdf/QPDFExc.hh>
#include <unistd.h>

#include "kernel/Files.h"
#include "kernel/HostError.h"

namespace jackdaw::lex {

FileSource::FileSource(std::string name, int fd) : name_(std::move(name)), fd_(fd) {
    if (::fstat(fd_, &facts_) == 0) return;
    const int reason = errno;
    ::close(fd_);
    ThrowFileError("examine", name_, reason);
}

FileSource::~FileSource() {
    ::close(fd_);
}

void FileSource::fail(const std::string &why, qpdf_offset_t place) {
    if (failure_.empty()) failure_ = why;
    throw QPDFExc(qpdf_e_system, name_, "", place, why);
}

void FileSource::readBlock(Block &block, qpdf_offset_t start) {
    block.length = 0;
    const qpdf_offset_t left = std::max<qpdf_offset_t>(facts_.st_size - start, 0);
    const std::size_t wanted = std::min(s_blockSize, static_cast<std::size_t>(left));
    while (block.length < wanted) {
        const auto place = static_cast<off_t>(start + static_cast<qpdf_offset_t>(block.length));
        const ssize_t count = ::pread(fd_, block.bytes.get() + block.length, wanted - block.length, place);
        if (count < 0 && TryAgain(errno, fd_, POLLIN)) continue;
        if (count < 0) fail(std::string("cannot be read: ") + strerror(errno), place);
        if (count == 0) fail("is shorter than when it was opened", place);
        block.length += static_cast<std::size_t>(count);
    }
}

const FileSource::Block &FileSource::blockAt(qpdf_offset_t offset) {
    constexpr auto size = static_cast<qpdf_offset_t>(s_blockSize);
    const qpdf_offset_t number = offset / size;
    Block &block = blocks_[static_cast<std::size_t>(number) % s_blockCount];
    if (block.start == number * size) return block;
    if (!block.bytes) block.bytes = std::make_unique<char[]>(s_blockSize);
    block.start = -1;
    readBlock(block, number * size);
    block.start = number * size;
    return block;
}

void FileSource::requireWhole() const {
    if (!failure_.empty()) throw HostError{KRErrFileIO, name_ + ": " + failure_};
    struct stat facts;
    if (::fstat(fd_, &facts) != 0) ThrowFileError("examine", name_, errno);
    const bool same = facts.st_size == facts_.st_size && facts.st_mtim.tv_sec == facts_.st_mtim.tv_sec &&
                      facts.st_mtim.tv_nsec == facts_.st_mtim.tv_nsec;
    if (!same) throw HostError{KRErrFileIO, name_ + ": was changed by another program since it was opened"};
}

std::size_t FileSource::read(char *buffer, std::size_t length) {
    if (++reads_ == 0 && onProgress) onProgress();
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
    if (whence == SEEK_END) base = facts_.st_size;
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
