// File systems, path objects and open files as the host sees them.
//
// A file system is a record of virtual operations: the default one stands over POSIX, others (the web's) are registered
// under an atom. What these operations cannot do they throw as HostError with the path and the system's reason.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "KernelSupportHFT.h"

/** A place in a file system: its text (a Unix path, a URL) in the file system's own form. */
struct KRPathNameRec {
    KRFileSys fileSys;
    std::string text;
};

/** An open file. Deleting it closes it and drops what close() would have told. */
struct KRFileRec {
    KRFileRec(KRFileSys owner, std::string place) : fileSys(owner), path(std::move(place)) {}
    virtual ~KRFileRec() = default;
    KRFileRec(const KRFileRec &) = delete;
    KRFileRec &operator=(const KRFileRec &) = delete;

    virtual std::int64_t read(void *buffer, std::int64_t count) = 0;
    virtual std::int64_t write(const void *buffer, std::int64_t count) = 0;
    virtual void setPosition(std::int64_t position) = 0;
    virtual std::int64_t position() = 0;
    virtual std::int64_t size() = 0;
    /** Writes out what is buffered and closes; throws when data is lost. Called once. */
    virtual void close() = 0;

    KRFileSys fileSys;
    std::string path;
};

/** A file system. */
struct KRFileSysRec {
    virtual ~KRFileSysRec() = default;

    /** Text of the place that `text` names, seen from `base` (its file, not its folder; null for the working folder).
     *  Empty when it names nothing. */
    virtual std::string resolve(const std::string &text, const std::string *base) = 0;
    virtual std::string displayText(const std::string &path) {
        return path;
    }
    /** The Unix path; empty when the file system has none. */
    virtual std::string platformPath(const std::string &) {
        return {};
    }
    /** `mode` is a sum of KRFileMode. KRFileCreate makes a file that is missing and empties one that is there. */
    virtual std::unique_ptr<KRFileRec> open(const std::string &path, std::int32_t mode) = 0;
    virtual void remove(const std::string &path) = 0;
};

namespace jackdaw {

KRFileSys DefaultFileSys();
/** Null for none. */
KRFileSys FileSysFromAtom(KRAtom name);
/** Null removes it. The file system stays the caller's. */
void RegisterFileSys(KRAtom name, KRFileSys fs);

/** Path objects for host code; the text is the file system's own. The caller releases. */
KRPathName MakePath(KRFileSys fs, const std::string &text);
KRPathName CopyPath(KRPathName path);
void ReleasePath(KRPathName path);

/** The Unix path of a path of the default file system; throws KRErrBadParam for null or for another file system. */
const std::string &UnixPathOf(KRFileSys fs, KRPathName path);

/** The bytes of a whole file from its start, wherever its position is; throws KRErrNoMemory beyond `limit`. */
std::string ReadWholeFile(KRFile file, std::int64_t limit);
/** Opens, reads and closes. */
std::string ReadWholeFile(KRFileSys fs, KRPathName path, std::int64_t limit);

/** Error of the system for `path` as a HostError: what was tried ("open"), on what, and errno's own words. */
[[noreturn]] void ThrowFileError(const char *tried, const std::string &path, int errnoValue);

/** Whether a call on `fd` that failed with `errnoValue` is to be made again: it was interrupted, or the file was not
 *  ready for `events` of poll(2), which is waited for. */
bool TryAgain(int errnoValue, int fd, short events);
/** open(2), again when it is interrupted. */
int OpenAgain(const std::string &path, int flags, unsigned mode = 0);

} // namespace jackdaw
