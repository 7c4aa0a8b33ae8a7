// Messages, documents and files of one command.
// SPDX-License-Identifier: MIT
#include "cli/Session.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <unistd.h>

#include "DocModelHFT.h"
#include "KernelSupportHFT.h"
#include "PIFrame.h"
#include "ScreenViewHFT.h"
#include "cli/Field.h"
#include "cli/Input.h"
#include "cli/Printable.h"

namespace jackdaw::cli {

namespace {

constexpr std::uint32_t s_fillPermissions = 0x8 | 0x20 | 0x8000;
bool s_warned = false;

using File = std::unique_ptr<std::FILE, int (*)(std::FILE *)>;

void FillScratch(const ScratchFile &scratch) {
    const File out(std::fopen(scratch.Path().c_str(), "wb"), &std::fclose);
    if (!out) throw CommandFailed{scratch.Path() + ": " + FileReason(errno)};
    CopyInputTo(out.get());
    if (std::fflush(out.get()) != 0) throw CommandFailed{scratch.Path() + ": " + FileReason(errno)};
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
    std::string sentence = SentenceOf(code);
    if (sentence.rfind(path, 0) != 0) return name + ": " + sentence;
    return name + sentence.substr(path.size());
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

ScratchFile::ScratchFile() {
    std::string name = (std::filesystem::temp_directory_path() / "jackdaw-XXXXXX").string();
    const int file = mkstemp(name.data());
    if (file < 0) throw CommandFailed{name + ": " + FileReason(errno)};
    close(file);
    path = name;
}

ScratchFile::~ScratchFile() {
    std::remove(path.c_str());
}

HostPath::HostPath(const std::string &platformPath) : path(KRPathFromPlatformPath(platformPath.c_str())) {}

HostPath::~HostPath() {
    KRFileSysReleasePath(KRGetDefaultFileSys(), path);
}

OpenDocument::OpenDocument(const std::string &path, const std::string &passwordFile)
    : name(path == "-" ? "standard input" : path) {
    const std::string password = passwordFile.empty() ? "" : ReadPassword(passwordFile);
    const SCDocOpenParams params{sizeof params, passwordFile.empty() ? nullptr : password.c_str(), false};
    // The document reads from its file as long as it is open; a removed file stays readable until then.
    std::unique_ptr<ScratchFile> scratch;
    if (path == "-") {
        scratch = std::make_unique<ScratchFile>();
        FillScratch(*scratch);
    }
    const std::string place = scratch ? scratch->Path() : path;
    const KRErrorCode code = Protect([&] {
        const HostPath hostPath(place);
        view = SCDocOpenFromFileWithParams(hostPath.Get(), KRGetDefaultFileSys(), &params);
        doc = SCDocGetDMDoc(view);
    });
    if (code != KRErrNone) throw CommandFailed{SentenceOfOpening(code, place, name, passwordFile)};
}

// A large form is a million small blocks, which take seconds to free one by one. The process is about to end: a release
// build leaves them to the system.
OpenDocument::~OpenDocument() {
#ifndef NDEBUG
    Protect([&] { SCDocClose(view, /*noDirtyCheck*/ true); });
#endif
}

void OpenDocument::SaveAs(const std::string &path) {
    std::unique_ptr<ScratchFile> scratch;
    if (path == "-") scratch = std::make_unique<ScratchFile>();
    const std::string place = scratch ? scratch->Path() : path;
    const KRErrorCode code = Protect([&] {
        const HostPath hostPath(place);
        DMDocSave(doc, DMDocSaveFull, KRGetDefaultFileSys(), hostPath.Get());
    });
    if (code != KRErrNone) throw CommandFailed{SentenceOfFile(code, place, scratch ? "standard output" : path)};
    if (scratch) CopyToOutput(scratch->Path());
}

void OpenDocument::RequireForm() const {
    if (!BindForms()) throw CommandFailed{"the plug-in Forms is not loaded; --plug-ins names its folder"};
    if (!Forms::IsDMDocTessella(doc)) throw CommandFailed{name + ": the document has no form"};
}

void OpenDocument::RequireFilling() const {
    if (!(DMDocGetPermissions(doc) & s_fillPermissions))
        throw CommandFailed{name + ": the document does not permit filling in; its owner's password may"};
}

void LeaveProcess(int code) {
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
        PrintFailure("standard output: " + FileReason(errno));
        code = ExitNothingDone;
    }
#ifdef NDEBUG
    std::fflush(stderr);
    std::_Exit(code);
#else
    std::exit(code);
#endif
}

void CopyToOutput(const std::string &path) {
    const File in(std::fopen(path.c_str(), "rb"), &std::fclose);
    if (!in) throw CommandFailed{path + ": " + FileReason(errno)};
    char block[65536];
    for (std::size_t got; (got = std::fread(block, 1, sizeof block, in.get())) > 0;) {
        if (std::fwrite(block, 1, got, stdout) < got) throw CommandFailed{"standard output: " + FileReason(errno)};
    }
    if (std::ferror(in.get())) throw CommandFailed{path + ": " + FileReason(errno)};
    if (std::fflush(stdout) != 0) throw CommandFailed{"standard output: " + FileReason(errno)};
}

} // namespace jackdaw::cli
