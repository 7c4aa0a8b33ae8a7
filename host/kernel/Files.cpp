// File systems and files: the registry, path objects, and the default file system over POSIX.
// SPDX-License-Identifier: MIT
#include "kernel/Files.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <map>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include "kernel/HostError.h"

namespace jackdaw {

namespace {

KRErrorCode codeOfErrno(int value) {
    switch (value) {
    case ENOENT:
    case ENOTDIR:
        return KRErrFileNotFound;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return KRErrDiskFull;
    case ENOMEM:
        return KRErrNoMemory;
    case EACCES:
    case EPERM:
    case EISDIR:
    case EMFILE:
    case ENFILE:
    case EROFS:
    case ENAMETOOLONG:
    case ELOOP:
    case ETXTBSY:
    case ENXIO:
        return KRErrFileOpen;
    default:
        return KRErrFileIO;
    }
}

/** Which folder of the path is missing decides between a wrong name and a wrong place. */
std::string missingPart(const std::string &path) {
    const std::size_t slash = path.rfind('/');
    const std::string folder = slash == std::string::npos ? "" : path.substr(0, slash);
    struct stat info;
    const bool known = folder.empty() || stat(folder.c_str(), &info) == 0;
    return known ? "there is no such file" : "there is no folder " + folder;
}

std::string reasonOf(const char *tried, const std::string &path, int errnoValue) {
    switch (errnoValue) {
    case ENOENT:
        return missingPart(path);
    case ENOTDIR:
        return "a part of the path is no folder";
    case EISDIR:
        return "is a folder";
    case EACCES:
    case EPERM:
        return "permission denied";
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return "the disk is full, or the file larger than is allowed";
    default:
        return "cannot " + std::string(tried) + " it: " + std::strerror(errnoValue);
    }
}

/** A file of the default file system. stdio wants a positioning between reading and writing; `last_` knows when. */
class PosixFile final : public KRFileRec {
public:
    PosixFile(KRFileSys fs, const std::string &place, std::FILE *stream) : KRFileRec(fs, place), stream_(stream) {}
    ~PosixFile() override {
        if (stream_) std::fclose(stream_);
    }

    std::int64_t read(void *buffer, std::int64_t count) override {
        turnTo(Reading);
        auto *const bytes = static_cast<char *>(buffer);
        std::size_t got = 0;
        do got += std::fread(bytes + got, 1, static_cast<std::size_t>(count) - got, stream_);
        while (goesOn("read", POLLIN));
        return static_cast<std::int64_t>(got);
    }
    std::int64_t write(const void *buffer, std::int64_t count) override {
        turnTo(Writing);
        const auto *const bytes = static_cast<const char *>(buffer);
        std::size_t put = 0;
        do put += std::fwrite(bytes + put, 1, static_cast<std::size_t>(count) - put, stream_);
        while (goesOn("write", POLLOUT));
        return count;
    }
    void setPosition(std::int64_t place) override {
        if (place < 0) throw HostError{KRErrBadParam, "A position in a file lies before its start: " + path};
        if (fseeko(stream_, place, SEEK_SET) != 0) fail("seek in");
        last_ = Nothing;
    }
    std::int64_t position() override {
        const off_t place = ftello(stream_);
        if (place < 0) fail("seek in");
        return place;
    }
    std::int64_t size() override {
        if (last_ == Writing && std::fflush(stream_) != 0) fail("write");
        struct stat info;
        if (fstat(fileno(stream_), &info) != 0) fail("examine");
        return info.st_size;
    }
    void close() override {
        std::FILE *const stream = stream_;
        stream_ = nullptr;
        if (std::fclose(stream) != 0) ThrowFileError("write", path, errno);
    }

private:
    enum Operation { Nothing, Reading, Writing };

    void turnTo(Operation next) {
        if (last_ != Nothing && last_ != next && fseeko(stream_, 0, SEEK_CUR) != 0) fail("seek in");
        last_ = next;
    }
    /** Whether the call just made is to be made again for the rest. Throws what made it fail. */
    bool goesOn(const char *tried, short events) {
        if (!std::ferror(stream_)) return false;
        if (!TryAgain(errno, fileno(stream_), events)) fail(tried);
        std::clearerr(stream_);
        return true;
    }
    [[noreturn]] void fail(const char *tried) {
        const int reason = errno;
        std::clearerr(stream_);
        ThrowFileError(tried, path, reason);
    }

    std::FILE *stream_;
    Operation last_ = Nothing;
};

class PosixFileSys final : public KRFileSysRec {
public:
    std::string resolve(const std::string &text, const std::string *base) override {
        if (text.empty() || text.front() == '/' || !base) return text;
        const std::size_t slash = base->rfind('/');
        return slash == std::string::npos ? text : base->substr(0, slash + 1) + text;
    }
    std::string platformPath(const std::string &path) override {
        return path;
    }
    std::unique_ptr<KRFileRec> open(const std::string &path, std::int32_t mode) override;
    void remove(const std::string &path) override {
        if (unlink(path.c_str()) != 0) ThrowFileError("remove", path, errno);
    }
};

std::unique_ptr<KRFileRec> PosixFileSys::open(const std::string &path, std::int32_t mode) {
    const bool writes = mode & (KRFileWrite_ | KRFileCreate);
    const bool reads = (mode & KRFileRead_) || !writes;
    int flags = O_CLOEXEC | O_NOCTTY | (writes ? reads ? O_RDWR : O_WRONLY : O_RDONLY);
    if (mode & KRFileCreate) flags |= O_CREAT | O_TRUNC;
    const int fd = OpenAgain(path, flags, 0666);
    if (fd < 0) ThrowFileError("open", path, errno);
    struct stat info;
    const bool folder = fstat(fd, &info) == 0 && S_ISDIR(info.st_mode);
    std::FILE *const stream = folder ? nullptr : fdopen(fd, writes ? reads ? "r+b" : "wb" : "rb");
    if (!stream) {
        const int reason = folder ? EISDIR : errno;
        ::close(fd);
        ThrowFileError("open", path, reason);
    }
    return std::make_unique<PosixFile>(this, path, stream);
}

std::map<KRAtom, KRFileSys> s_fileSystems;

} // namespace

void ThrowFileError(const char *tried, const std::string &path, int errnoValue) {
    throw HostError{codeOfErrno(errnoValue), path + ": " + reasonOf(tried, path, errnoValue)};
}

bool TryAgain(int errnoValue, int fd, short events) {
    if (errnoValue == EINTR) return true;
    if (errnoValue != EAGAIN) return false;
    pollfd wait{fd, events, 0};
    return poll(&wait, 1, /*timeout*/ -1) >= 0 || errno == EINTR;
}

int OpenAgain(const std::string &path, int flags, unsigned mode) {
    int fd;
    do fd = ::open(path.c_str(), flags, mode);
    while (fd < 0 && errno == EINTR);
    return fd;
}

KRFileSys DefaultFileSys() {
    static PosixFileSys s_default;
    return &s_default;
}

KRFileSys FileSysFromAtom(KRAtom name) {
    const auto found = s_fileSystems.find(name);
    return found == s_fileSystems.end() ? nullptr : found->second;
}

void RegisterFileSys(KRAtom name, KRFileSys fs) {
    if (fs)
        s_fileSystems[name] = fs;
    else
        s_fileSystems.erase(name);
}

KRPathName MakePath(KRFileSys fs, const std::string &text) {
    return new KRPathNameRec{fs, text};
}

KRPathName CopyPath(KRPathName path) {
    return path ? new KRPathNameRec(*path) : nullptr;
}

void ReleasePath(KRPathName path) {
    delete path;
}

const std::string &UnixPathOf(KRFileSys fs, KRPathName path) {
    if (!path || (fs && fs != path->fileSys) || path->fileSys != DefaultFileSys())
        throw HostError{KRErrBadParam, "A path of the default file system is needed here."};
    return path->text;
}

std::string ReadWholeFile(KRFile file, std::int64_t limit) {
    constexpr std::int64_t step = 1 << 16;
    std::string bytes;
    file->setPosition(0);
    bytes.reserve(static_cast<std::size_t>(std::min(file->size(), limit)));
    for (;;) {
        const std::size_t before = bytes.size();
        bytes.resize(before + step);
        const std::int64_t got = file->read(bytes.data() + before, step);
        bytes.resize(before + static_cast<std::size_t>(got));
        if (static_cast<std::int64_t>(bytes.size()) > limit)
            throw HostError{KRErrNoMemory, "Too large to read: " + file->path};
        if (got == 0) return bytes;
    }
}

std::string ReadWholeFile(KRFileSys fs, KRPathName path, std::int64_t limit) {
    if (!path) throw HostError{KRErrBadParam, "No path was given."};
    return ReadWholeFile((fs ? fs : path->fileSys)->open(path->text, KRFileRead_).get(), limit);
}

} // namespace jackdaw
