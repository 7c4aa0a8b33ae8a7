// The safe way to write a file.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <sys/stat.h>

#include "kernel/Ending.h"

namespace jackdaw {

/** Rights that a new file has at most, below what the user's mask leaves: those of every new file. */
inline constexpr mode_t OpenToAll = 0666;

/**
 * Writes a file so that its former content stands until the new one is wholly on the disk: a new file in the same
 * folder, without a name where the system can do that, flushed, synchronised and renamed into place. It takes owner,
 * group and mode of the file that it replaces; symbolic links go on pointing where they did, and one that points to no
 * file gets one. Unless commit() succeeded the new file is gone and the old one is as it was, also when a signal ends
 * the process. A target that is no regular file (a device, a pipe) or has no name is written directly.
 */
class AtomicFile {
public:
    /**
     * `rights` bounds the mode of a file that is not there yet: that of the file whose content it takes.
     * Throws HostError: KRErrFileNotFound (folder), KRErrFileOpen (no right to write or to keep the owner, a folder),
     * KRErrDiskFull, KRErrFileIO.
     */
    explicit AtomicFile(const std::string &target, mode_t rights = OpenToAll);
    ~AtomicFile();
    AtomicFile(const AtomicFile &) = delete;
    AtomicFile &operator=(const AtomicFile &) = delete;

    /** Throws KRErrDiskFull or KRErrFileIO. */
    void write(const void *bytes, std::size_t count);
    /** Throws as write(). Nothing may be written afterwards. */
    void commit();

private:
    void openDirect();
    void openTemporary(mode_t mode);
    void openNamed(mode_t mode);
    void takeOver(const struct stat &former);
    void synchronise();
    void giveName();
    void closeFile();
    void discard();
    void newName();
    [[noreturn]] void fail(int errnoValue) const;

    std::string target_;
    int fd_ = -1;
    /** The target itself is written: nothing is renamed or removed. */
    bool direct_ = false;
    /** The new file's name beside the target; empty while it has none. */
    std::string temporary_;
    std::unique_ptr<TemporaryName> watched_;
};

} // namespace jackdaw
