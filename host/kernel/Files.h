// File systems, path objects and open files as the host sees them, and the safe way to write a file.
//
// A file system is a record of virtual operations: the default one stands over POSIX, others (the web's) are registered
// under an atom. What these operations cannot do they throw as HostError with the path and the system's reason.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <cstdio>
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
std::string ReadWholeFile(KRFile file, std::int64_t limit = std::int64_t{1} << 32);
/** Opens, reads and closes. */
std::string ReadWholeFile(KRFileSys fs, KRPathName path, std::int64_t limit = std::int64_t{1} << 32);

/** Error of the system for `path` as a HostError: what was tried ("open"), on what, and errno's own words. */
[[noreturn]] void ThrowFileError(const char *tried, const std::string &path, int errnoValue);

/**
 * Writes a file so that its former content stands until the new one is wholly on the disk: a new file in the same
 * folder, flushed, synchronised and renamed into place. It takes the mode of the file that it replaces; a symbolic link
 * goes on pointing where it did. Unless commit() succeeded the new file is removed and the old one is as it was.
 * A target that is no regular file (a device, a pipe) is written directly.
 */
class AtomicFile {
public:
    /** Throws HostError: KRErrFileNotFound (folder), KRErrFileOpen (no right to write, a folder), KRErrDiskFull. */
    explicit AtomicFile(std::string target);
    ~AtomicFile();
    AtomicFile(const AtomicFile &) = delete;
    AtomicFile &operator=(const AtomicFile &) = delete;

    /** The file to write to, from front to back. Its errors are found by write() and commit(). */
    std::FILE *stream() {
        return stream_;
    }
    /** Throws KRErrDiskFull or KRErrFileIO. */
    void write(const void *bytes, std::size_t count);
    /** Throws as write(). Nothing may be written afterwards. */
    void commit();
    /** The errno that belongs to a failed stdio call of another on stream(), as a HostError. */
    [[noreturn]] void throwWriteError(int errnoValue);

private:
    void openTemporary();
    void openDirect();
    void adopt(int fd);
    void discard();
    void syncStream();
    void moveIntoPlace();

    std::string target_;
    std::string temporary_;
    std::FILE *stream_ = nullptr;
    bool exists_ = false;
    unsigned mode_ = 0;
};

} // namespace jackdaw
