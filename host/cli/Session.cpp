// Messages, documents and files of one command.
// SPDX-License-Identifier: MIT
#include "cli/Session.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "DocModelHFT.h"
#include "KernelSupportHFT.h"
#include "LexHFT.h"
#include "PIFrame.h"
#include "ScreenViewHFT.h"
#include "cli/Blocks.h"
#include "cli/Field.h"
#include "cli/FormWarnings.h"
#include "cli/Input.h"
#include "cli/Printable.h"

namespace jackdaw::cli {

namespace {

constexpr std::uint32_t s_fillPermissions = DMPermissionChange | DMPermissionFillIn | DMPermissionAll;
bool s_warned = false;

/** A sentence about the file at `path`, under the name that the user knows it by. */
std::string Renamed(const std::string &sentence, const std::string &path, const std::string &name) {
    if (sentence.rfind(path, 0) != 0) return name + ": " + sentence;
    return name + sentence.substr(path.size());
}

/** Fields of the form's list that are not in the file: each is a reference to nothing. */
std::size_t CountLostFields(DMDoc doc) {
    std::size_t lost = 0;
    Protect([&] {
        const LexObj form = LexDictGet(LexDocGetRoot(DMDocGetLexDoc(doc)), AtomOf("Tessella"));
        if (LexObjGetType(form) != LexDict) return;
        const LexObj fields = LexDictGet(form, AtomOf("Fields"));
        if (LexObjGetType(fields) != LexArray) return;
        for (std::int32_t i = 0; i < LexArrayLength(fields); ++i)
            lost += LexObjGetType(LexArrayGet(fields, i)) == LexNull ? 1u : 0u;
    });
    return lost;
}

std::string SentenceOfOpening(KRErrorCode code, const std::string &path, const std::string &name,
                              const std::string &passwordFile) {
    if (code != KRErrPassword) return SentenceOfFile(code, path, name);
    if (passwordFile.empty()) return name + ": needs a password; --password-file names a file that holds it";
    return name + ": the password in " + passwordFile + " does not open it";
}

} // namespace

void Warn(const std::string &line) {
    s_warned = true;
    PrintFailure(line);
}

bool AnyWarnings() {
    return s_warned;
}

void PrintFailure(const std::string &what) {
    std::fprintf(stderr, "jackdaw: %s\n", Printable(what).c_str());
}

std::string SentenceOf(KRErrorCode code) {
    char text[512];
    return KRGetErrorString(code, text, sizeof text);
}

std::string SentenceOfFile(KRErrorCode code, const std::string &path, const std::string &name) {
    return Renamed(SentenceOf(code), path, name);
}

std::string FileReason(int errnoValue) {
    switch (errnoValue) {
    case ENOENT:
        return "there is no such file";
    case EISDIR:
        return "is a folder";
    case EACCES:
    case EPERM:
        return "permission denied";
    case ENOSPC:
        return "the disk is full";
    default:
        return std::strerror(errnoValue);
    }
}

HostPath::HostPath(const std::string &platformPath) : path_(KRPathFromPlatformPath(platformPath.c_str())) {}

HostPath::~HostPath() {
    KRFileSysReleasePath(KRGetDefaultFileSys(), path_);
}

OpenDocument::OpenDocument(const InputOptions &input)
    : name_(input.file == "-" ? "standard input" : input.file), place_(input.file), strict_(input.strict) {
    const std::string password = input.passwordFile.empty() ? "" : ReadPassword(input.passwordFile);
    const SCDocOpenParams params{sizeof params, input.passwordFile.empty() ? nullptr : password.c_str(), false};
    // The document reads from its file as long as it is open: the host has a descriptor of its own.
    std::unique_ptr<ScratchFile> scratch;
    if (input.file == "-") {
        scratch = std::make_unique<ScratchFile>();
        CopyInputTo(scratch->Descriptor());
        place_ = scratch->Path();
    }
    HearFormWarnings();
    const KRErrorCode code = Protect([&] {
        const HostPath hostPath(place_);
        view_ = SCDocOpenFromFileWithParams(hostPath.Get(), KRGetDefaultFileSys(), &params);
        doc_ = SCDocGetDMDoc(view_);
    });
    if (code != KRErrNone) throw CommandFailed{SentenceOfOpening(code, place_, name_, input.passwordFile)};
    TellDamage();
}

// A large form is a million small blocks, which take seconds to free one by one. The process is about to end: a release
// build leaves them to the system.
OpenDocument::~OpenDocument() {
#ifndef NDEBUG
    Protect([&] { SCDocClose(view_, /*noDirtyCheck*/ true); });
#endif
}

KRErrorCode OpenDocument::WarnOfDamage() {
    std::vector<std::string> lines;
    const DMDamageProc keep = [](const char *line, void *kept) {
        static_cast<std::vector<std::string> *>(kept)->push_back(line);
    };
    const KRErrorCode code = Protect([&] { DMDocEnumDamage(doc_, keep, &lines); });
    const bool first = told_ == 0 && !lines.empty();
    for (; told_ < lines.size(); ++told_) Warn(Renamed(lines[told_], place_, name_));
    const std::size_t lost = first ? CountLostFields(doc_) : 0;
    if (lost > 0) Warn(name_ + ": fields that the form lists and the file does not hold: " + std::to_string(lost));
    return code;
}

void OpenDocument::TellDamage() {
    const KRErrorCode code = WarnOfDamage();
    if (code != KRErrNone) throw CommandFailed{SentenceOfFile(code, place_, name_)};
    if (strict_ && AnyWarnings()) throw CommandFailed{name_ + ": nothing is done, since --strict allows no warning"};
}

void OpenDocument::SaveAs(const std::string &path) {
    // What is read for the first time when it is written would be told too late.
    const KRErrorCode reading = Protect([&] { DMDocEnsureWrite(doc_, /*load*/ true, 0); });
    if (reading != KRErrNone) throw CommandFailed{SentenceOfFile(reading, place_, name_)};
    TellDamage();
    std::unique_ptr<ScratchFile> scratch;
    if (path == "-") scratch = std::make_unique<ScratchFile>();
    const std::string target = scratch ? scratch->Path() : path;
    const std::uint32_t flags = DMDocSaveFull | (strict_ ? DMDocSaveSound : 0u);
    const KRErrorCode code = Protect([&] {
        const HostPath hostPath(target);
        DMDocSave(doc_, flags, KRGetDefaultFileSys(), hostPath.Get());
    });
    if (code != KRErrNone) throw CommandFailed{SentenceOfFile(code, target, scratch ? "standard output" : path)};
    // A file that stands is not taken back.
    (void)WarnOfDamage();
    if (scratch) scratch->CopyToOutput();
}

void OpenDocument::RequireForm() const {
    if (!BindForms()) throw CommandFailed{"the plug-in Forms is not loaded; --plug-ins names its folder"};
    if (!Forms::IsDMDocTessella(doc_)) throw CommandFailed{name_ + ": the document has no form"};
}

void OpenDocument::RequireFilling() const {
    if (!(DMDocGetPermissions(doc_) & s_fillPermissions))
        throw CommandFailed{name_ + ": the document does not permit filling in; its owner's password may"};
}

void LeaveProcess(int code) {
    WarnOfUnheard();
    std::string failure;
    try {
        FlushLines();
    } catch (const CommandFailed &failed) {
        failure = failed.what;
    }
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) failure = "standard output: " + FileReason(errno);
    if (!failure.empty()) PrintFailure(failure);
    if (!failure.empty()) code = ExitNothingDone;
#ifdef NDEBUG
    std::fflush(stderr);
    std::_Exit(code);
#else
    std::exit(code);
#endif
}

} // namespace jackdaw::cli
