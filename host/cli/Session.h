// One run of a command: its messages and exit code, the document that it opens, the file that it leaves.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "KRErrors.h"
#include "KRTypes.h"
#include "cli/Commands.h"

namespace jackdaw::cli {

enum ExitCode : int { ExitDone = 0, ExitNothingDone = 2, ExitWarnings = 3 };

/** Ends a command with nothing done; `what` is the one line that says why, without the program's name. */
struct CommandFailed {
    std::string what;
};

/** Prints a warning line and remembers that there was one. */
void Warn(const std::string &line);
bool AnyWarnings();
/** The one line of a command that did nothing. */
void PrintFailure(const std::string &what);
/** A sentence for a code that was raised; what the host knows of file, object and offset is in it. */
std::string SentenceOf(KRErrorCode code);

/** The same for a call on the file at `path`, under the name that the user knows it by. */
std::string SentenceOfFile(KRErrorCode code, const std::string &path, const std::string &name);
/** The words for what the system said of a file. */
std::string FileReason(int errnoValue);

/** A document opened in a view without a window, for the rest of the process. */
class OpenDocument {
public:
    /** Warns about damage that was repaired. Throws CommandFailed. */
    explicit OpenDocument(const InputOptions &input);
    ~OpenDocument();
    OpenDocument(const OpenDocument &) = delete;
    OpenDocument &operator=(const OpenDocument &) = delete;

    DMDoc Doc() const {
        return doc_;
    }
    const std::string &Name() const {
        return name_;
    }
    /** Writes a new file and renames it into place; "-" is standard output. Throws CommandFailed. */
    void SaveAs(const std::string &path);
    /**
     * Warns about what was found wrong with the file since it was last asked. Throws CommandFailed when the document
     * could not be read whole, and when there was any warning and none is allowed: what was learned from it is not to
     * be shown then.
     */
    void TellDamage();
    /** Throws CommandFailed when the document has no form. */
    void RequireForm() const;
    /** Throws CommandFailed when the document's permissions forbid filling it in. */
    void RequireFilling() const;

private:
    /** Gives the code that DMDocEnumDamage raised. */
    KRErrorCode WarnOfDamage();

    std::string name_;
    /** Under which the document was opened. */
    std::string place_;
    bool strict_;
    std::size_t told_ = 0;
    SCDoc view_ = nullptr;
    DMDoc doc_ = nullptr;
};

/** Ends the process; output that cannot be written turns `code` into ExitNothingDone. */
[[noreturn]] void LeaveProcess(int code);

/** A path of the default file system, released with the object. */
class HostPath {
public:
    explicit HostPath(const std::string &platformPath);
    ~HostPath();
    HostPath(const HostPath &) = delete;
    HostPath &operator=(const HostPath &) = delete;
    KRPathName Get() const {
        return path_;
    }

private:
    KRPathName path_;
};

} // namespace jackdaw::cli
