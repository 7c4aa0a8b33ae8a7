// Writing a file so that its former content stands until the new one is wholly on the disk.
//
// 1. A file without a name goes with its last descriptor. It gets one at the very end, since no call renames a file
//    that has none over another.
// 2. `temporary_` is not empty as long as a file of that name may lie beside the target and has to be removed.
// 3. After commit() there is neither descriptor nor temporary, and the destructor has nothing to do.
// SPDX-License-Identifier: MIT
#include "kernel/AtomicFile.h"

#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "kernel/Files.h"
#include "kernel/HostError.h"

namespace jackdaw {

namespace {

constexpr int s_nameTries = 100;
constexpr int s_linkSteps = 40;
constexpr mode_t s_modeBits = 07777;
constexpr mode_t s_ownersRights = S_IRUSR | S_IWUSR;

std::string folderOf(const std::string &path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

std::string openableFolderOf(const std::string &path) {
    const std::string folder = folderOf(path);
    return folder.empty() ? "." : folder;
}

/** False when there is no file. A file that cannot be examined is there for all we know. */
bool examine(const std::string &path, struct stat *facts) {
    if (stat(path.c_str(), facts) == 0) return true;
    if (errno != ENOENT) ThrowFileError("examine", path, errno);
    return false;
}

/** Where the last of the symbolic links leads, whether or not a file is there. */
std::string endOfLinks(std::string path) {
    for (int step = 0; step < s_linkSteps; ++step) {
        char text[PATH_MAX];
        const ssize_t length = readlink(path.c_str(), text, sizeof text);
        if (length < 0 && (errno == EINVAL || errno == ENOENT)) return path;
        if (length < 0) ThrowFileError("examine", path, errno);
        const std::string next(text, static_cast<std::size_t>(length));
        path = next.front() == '/' ? next : folderOf(path) + next;
    }
    ThrowFileError("write", path, ELOOP);
}

/** Not every file system can synchronise a folder, and the file is in place already: failure is of no account. */
void syncFolder(const std::string &folder) {
    const int fd = OpenAgain(folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    (void)fsync(fd);
    close(fd);
}

std::string pathOfDescriptor(int fd) {
    return "/proc/self/fd/" + std::to_string(fd);
}

} // namespace

AtomicFile::AtomicFile(const std::string &target, mode_t rights) : target_(target) {
    struct stat former;
    const bool exists = examine(target, &former);
    if (exists && S_ISDIR(former.st_mode)) fail(EISDIR);
    direct_ = exists && (!S_ISREG(former.st_mode) || former.st_nlink == 0);
    if (direct_) {
        openDirect();
        return;
    }
    target_ = endOfLinks(target);
    // A rename would get round the file's own write protection, which is not what its owner meant.
    if (exists && access(target_.c_str(), W_OK) != 0) fail(errno);
    openTemporary(exists ? s_ownersRights : OpenToAll & (rights | s_ownersRights));
    if (!exists) return;
    try {
        takeOver(former);
    } catch (...) {
        discard();
        throw;
    }
}

AtomicFile::~AtomicFile() {
    discard();
}

void AtomicFile::fail(int errnoValue) const {
    ThrowFileError("write", target_, errnoValue);
}

void AtomicFile::openDirect() {
    fd_ = OpenAgain(target_, O_WRONLY | O_TRUNC | O_CLOEXEC | O_NOCTTY);
    if (fd_ < 0) fail(errno);
}

void AtomicFile::openTemporary(mode_t mode) {
    fd_ = OpenAgain(openableFolderOf(target_), O_WRONLY | O_TMPFILE | O_CLOEXEC, mode);
    if (fd_ >= 0 && access(pathOfDescriptor(fd_).c_str(), F_OK) == 0) return;
    closeFile();
    openNamed(mode);
}

/** Where a file needs a name from the start. */
void AtomicFile::openNamed(mode_t mode) {
    for (int tries = 0; fd_ < 0 && tries < s_nameTries; ++tries) {
        newName();
        fd_ = OpenAgain(temporary_, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (fd_ < 0 && errno != EEXIST) break;
    }
    if (fd_ >= 0) return;
    const int reason = errno;
    temporary_.clear();
    watched_.reset();
    fail(reason);
}

/** The mode comes last: a change of the owner takes bits away. */
void AtomicFile::takeOver(const struct stat &former) {
    struct stat own;
    if (fstat(fd_, &own) != 0) fail(errno);
    const bool sameOwner = own.st_uid == former.st_uid && own.st_gid == former.st_gid;
    if (!sameOwner && fchown(fd_, former.st_uid, former.st_gid) != 0)
        throw HostError{KRErrFileOpen, "Cannot write " + target_ +
                                           ": it belongs to another user or group, and saving would change that"};
    if (fchmod(fd_, former.st_mode & s_modeBits) != 0) fail(errno);
}

/** A name of its own is watched before there is a file of that name, so that no signal finds a file that is not. */
void AtomicFile::newName() {
    static unsigned s_number = 0;
    watched_.reset();
    temporary_ = folderOf(target_) + ".jackdaw-" + std::to_string(getpid()) + "-" + std::to_string(++s_number);
    watched_ = std::make_unique<TemporaryName>(temporary_);
}

void AtomicFile::write(const void *bytes, std::size_t count) {
    const auto *next = static_cast<const char *>(bytes);
    while (count > 0) {
        const ssize_t written = ::write(fd_, next, count);
        if (written < 0 && TryAgain(errno, fd_, POLLOUT)) continue;
        if (written < 0) fail(errno);
        next += written;
        count -= static_cast<std::size_t>(written);
    }
}

void AtomicFile::synchronise() {
    while (fsync(fd_) != 0) {
        if (TryAgain(errno, fd_, POLLOUT)) continue;
        // A device or a pipe has nothing to synchronise.
        if (direct_ && (errno == EINVAL || errno == EROFS || errno == ENOTSUP)) return;
        fail(errno);
    }
}

void AtomicFile::giveName() {
    const std::string source = pathOfDescriptor(fd_);
    for (int tries = 0; tries < s_nameTries; ++tries) {
        newName();
        if (linkat(AT_FDCWD, source.c_str(), AT_FDCWD, temporary_.c_str(), AT_SYMLINK_FOLLOW) == 0) return;
        if (errno != EEXIST && errno != EINTR) break;
    }
    const int reason = errno;
    // It may be another's file.
    if (reason == EEXIST) temporary_.clear();
    fail(reason);
}

void AtomicFile::commit() {
    synchronise();
    if (!direct_ && temporary_.empty()) giveName();
    const int fd = fd_;
    fd_ = -1;
    // The descriptor is gone even when the closing was interrupted.
    if (close(fd) != 0 && errno != EINTR) fail(errno);
    if (direct_) return;
    while (rename(temporary_.c_str(), target_.c_str()) != 0) {
        if (errno != EINTR) fail(errno);
    }
    temporary_.clear();
    watched_.reset();
    syncFolder(openableFolderOf(target_));
}

void AtomicFile::closeFile() {
    if (fd_ >= 0) close(fd_);
    fd_ = -1;
}

void AtomicFile::discard() {
    closeFile();
    if (!temporary_.empty()) unlink(temporary_.c_str());
    temporary_.clear();
    watched_.reset();
}

} // namespace jackdaw
