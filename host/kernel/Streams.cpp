// Streams of bytes, one small class a source.
// SPDX-License-Identifier: MIT
#include "kernel/Streams.h"

#include <algorithm>
#include <cstring>

#include "kernel/Files.h"
#include "kernel/HostError.h"

namespace jackdaw {

namespace {

/** A block that `owner` keeps alive, or that outlives the stream when there is no owner. */
class BlockStream final : public KRStmRec {
public:
    BlockStream(std::shared_ptr<const void> owner, const void *data, std::int64_t length)
        : owner_(std::move(owner)), next_(static_cast<const char *>(data)),
          left_(data ? std::max<std::int64_t>(length, 0) : 0) {}
    std::int64_t read(char *buffer, std::int64_t size) override {
        const std::int64_t count = std::min(size, left_);
        if (count > 0) std::memcpy(buffer, next_, static_cast<std::size_t>(count));
        next_ += count;
        left_ -= count;
        return count;
    }

private:
    std::shared_ptr<const void> owner_;
    const char *next_;
    std::int64_t left_;
};

class SourceStream final : public KRStmRec {
public:
    explicit SourceStream(std::function<std::int64_t(char *, std::int64_t)> source) : source_(std::move(source)) {}
    std::int64_t read(char *buffer, std::int64_t size) override {
        return source_(buffer, size);
    }

private:
    std::function<std::int64_t(char *, std::int64_t)> source_;
};

class ProcStream final : public KRStmRec {
public:
    ProcStream(KRStmProc callback, void *clientData) : callback_(callback), clientData_(clientData) {}
    std::int64_t read(char *buffer, std::int64_t size) override {
        const auto most = static_cast<std::int32_t>(std::min<std::int64_t>(size, INT32_MAX));
        std::int32_t got = 0;
        ThrowIf(HostProtect([&] { got = callback_(buffer, most, clientData_); }));
        if (got < 0 || got > most) throw HostError{KRErrBadStream, "The source of a stream failed."};
        return got;
    }

private:
    KRStmProc callback_;
    void *clientData_;
};

class FileStream final : public KRStmRec {
public:
    explicit FileStream(KRFile file) : file_(file) {}
    std::int64_t read(char *buffer, std::int64_t size) override {
        return file_->read(buffer, size);
    }

private:
    KRFile file_;
};

} // namespace

KRStm OpenMemoryStream(const void *data, std::int64_t length) {
    return new BlockStream(nullptr, data, length);
}

KRStm OpenOwnedStream(std::string bytes) {
    const auto owner = std::make_shared<const std::string>(std::move(bytes));
    return new BlockStream(owner, owner->data(), static_cast<std::int64_t>(owner->size()));
}

KRStm OpenSharedStream(std::shared_ptr<const void> owner, const void *data, std::int64_t length) {
    return new BlockStream(std::move(owner), data, length);
}

KRStm OpenSourceStream(std::function<std::int64_t(char *buffer, std::int64_t size)> source) {
    return new SourceStream(std::move(source));
}

KRStm OpenProcStream(KRStmProc callback, void *clientData) {
    if (!callback) throw HostError{KRErrBadParam, "A stream needs a procedure to read from."};
    return new ProcStream(callback, clientData);
}

KRStm OpenFileStream(KRFile file) {
    if (!file) throw HostError{KRErrBadParam, "A stream needs a file to read from."};
    return new FileStream(file);
}

void CloseStream(KRStm stream) {
    delete stream;
}

std::string DrainStream(KRStm stream, std::int64_t start, std::int64_t length, std::int64_t limit) {
    char block[16384];
    for (std::int64_t skip = start; skip > 0;) {
        const std::int64_t got = stream->read(block, std::min<std::int64_t>(skip, sizeof block));
        if (got == 0) return {};
        skip -= got;
    }
    std::string bytes;
    for (std::int64_t left = length < 0 ? INT64_MAX : length; left > 0;) {
        const std::int64_t got = stream->read(block, std::min<std::int64_t>(left, sizeof block));
        if (got == 0) break;
        if (static_cast<std::int64_t>(bytes.size()) + got > limit)
            throw HostError{KRErrBadStream, "A stream is too large."};
        bytes.append(block, static_cast<std::size_t>(got));
        left -= got;
    }
    return bytes;
}

} // namespace jackdaw
