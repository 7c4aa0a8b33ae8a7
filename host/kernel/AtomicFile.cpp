// Writing a file so that its former content stands until the new one is wholly on the disk.
//
// 1. `temporary_` is not empty as long as the new file lies beside the target and has to be removed on failure.
// 2. After commit() both `stream_` and `temporary_` are empty, and the destructor has nothing to do.
// SPDX-License-Identifier: MIT
#include "kernel/Files.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "kernel/HostError.h"

namespace jackdaw {

namespace {

constexpr int NameTries = 100;

/** The file that a path leads to through symbolic links; the path itself when there is none yet. */
std::string realTarget(const std::string &path) {
    char resolved[PATH_MAX];
    return realpath(path.c_str(), resolved) ? std::string(resolved) : path;
}

std::string folderOf(const std::string &path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

/** Not every file system can synchronise a folder, and the file is in place already: failure is of no account. */
void syncFolder(const std::string &folder) {
    const int fd = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    (void)fsync(fd);
    close(fd);
}

} // namespace

AtomicFile::AtomicFile(std::string target) : target_(realTarget(target)) {
    struct stat info;
    exists_ = stat(target_.c_str(), &info) == 0;
    if (exists_ && S_ISDIR(info.st_mode)) ThrowFileError("write", target_, EISDIR);
    if (exists_ && !S_ISREG(info.st_mode)) {
        openDirect();
        return;
    }
    // A rename would get round the file's own write protection, which is not what its owner meant.
    if (exists_ && access(target_.c_str(), W_OK) != 0) ThrowFileError("write", target_, errno);
    if (exists_) mode_ = info.st_mode & 07777;
    openTemporary();
}

AtomicFile::~AtomicFile() {
    discard();
}

void AtomicFile::openDirect() {
    const int fd = open(target_.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    if (fd < 0) ThrowFileError("write", target_, errno);
    adopt(fd);
}

void AtomicFile::openTemporary() {
    static unsigned s_number = 0;
    int fd = -1;
    for (int tries = 0; fd < 0 && tries < NameTries; ++tries) {
        temporary_ = folderOf(target_) + ".jackdaw-" + std::to_string(getpid()) + "-" + std::to_string(++s_number);
        fd = open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd < 0 && errno != EEXIST) break;
    }
    if (fd < 0) {
        temporary_.clear();
        ThrowFileError("write", target_, errno);
    }
    adopt(fd);
    if (exists_ && fchmod(fd, mode_) != 0) {
        const int reason = errno;
        discard();
        ThrowFileError("write", target_, reason);
    }
}

void AtomicFile::adopt(int fd) {
    stream_ = fdopen(fd, "wb");
    if (stream_) return;
    const int reason = errno;
    close(fd);
    discard();
    ThrowFileError("write", target_, reason);
}

void AtomicFile::discard() {
    if (stream_) std::fclose(stream_);
    stream_ = nullptr;
    if (!temporary_.empty()) unlink(temporary_.c_str());
    temporary_.clear();
}

void AtomicFile::throwWriteError(int errnoValue) {
    ThrowFileError("write", target_, errnoValue);
}

void AtomicFile::write(const void *bytes, std::size_t count) {
    if (count > 0 && std::fwrite(bytes, 1, count, stream_) < count) throwWriteError(errno);
}

void AtomicFile::syncStream() {
    if (std::fflush(stream_) != 0) throwWriteError(errno);
    if (std::ferror(stream_)) throwWriteError(EIO);
    // A device or a pipe has nothing to synchronise.
    if (fsync(fileno(stream_)) != 0 && errno != EINVAL && errno != EROFS && errno != ENOTSUP) throwWriteError(errno);
    std::FILE *const stream = stream_;
    stream_ = nullptr;
    if (std::fclose(stream) != 0) throwWriteError(errno);
}

void AtomicFile::moveIntoPlace() {
    if (rename(temporary_.c_str(), target_.c_str()) != 0) throwWriteError(errno);
    temporary_.clear();
    syncFolder(folderOf(target_));
}

void AtomicFile::commit() {
    syncStream();
    if (!temporary_.empty()) moveIntoPlace();
}

} // namespace jackdaw
