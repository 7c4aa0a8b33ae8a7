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
#include "cli/Text.h"

namespace jackdaw::cli {

namespace {

constexpr std::uint32_t s_fillPermissions = 0x8 | 0x20 | 0x8000;
bool s_warned = false;

using File = std::unique_ptr<std::FILE, int (*)(std::FILE *)>;

std::string Reason() {
    return std::strerror(errno);
}

std::string ReadStream(std::FILE *in, const std::string &name) {
    std::string bytes;
    char block[65536];
    for (std::size_t got; (got = std::fread(block, 1, sizeof block, in)) > 0;) bytes.append(block, got);
    if (std::ferror(in)) throw CommandFailed{name + ": " + Reason()};
    return bytes;
}

void WriteScratch(const ScratchFile &scratch, const std::string &bytes) {
    const File out(std::fopen(scratch.Path().c_str(), "wb"), &std::fclose);
    if (!out || std::fwrite(bytes.data(), 1, bytes.size(), out.get()) != bytes.size() || std::fflush(out.get()) != 0)
        throw CommandFailed{scratch.Path() + ": " + Reason()};
}

// The first line of the file, without its end.
std::string ReadPassword(const std::string &path) {
    if (path.empty()) return {};
    std::string password = ReadInput(path);
    password.resize(std::min(password.find_first_of("\r\n"), password.size()));
    return password;
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
    std::fprintf(stderr, "jackdaw: %s\n", OneLine(what).c_str());
}

std::string SentenceOf(KRErrorCode code) {
    char text[512];
    return KRGetErrorString(code, text, sizeof text);
}

std::string ReadInput(const std::string &path) {
    if (path == "-") {
        if (std::feof(stdin)) throw CommandFailed{"standard input is asked for twice"};
        return ReadStream(stdin, "standard input");
    }
    const File in(std::fopen(path.c_str(), "rb"), &std::fclose);
    if (!in) throw CommandFailed{path + ": " + Reason()};
    return ReadStream(in.get(), path);
}

ScratchFile::ScratchFile() {
    std::string name = (std::filesystem::temp_directory_path() / "jackdaw-XXXXXX").string();
    const int file = mkstemp(name.data());
    if (file < 0) throw CommandFailed{name + ": " + Reason()};
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
    const std::string password = ReadPassword(passwordFile);
    const SCDocOpenParams params{sizeof params, passwordFile.empty() ? nullptr : password.c_str(), false};
    // The document reads from its file as long as it is open; a removed file stays readable until then.
    std::unique_ptr<ScratchFile> scratch;
    if (path == "-") {
        scratch = std::make_unique<ScratchFile>();
        WriteScratch(*scratch, ReadInput(path));
    }
    const KRErrorCode code = Protect([&] {
        const HostPath hostPath(scratch ? scratch->Path() : path);
        view = SCDocOpenFromFileWithParams(hostPath.Get(), KRGetDefaultFileSys(), &params);
        doc = SCDocGetDMDoc(view);
    });
    if (code != KRErrNone) throw CommandFailed{name + ": " + SentenceOf(code)};
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
    const KRErrorCode code = Protect([&] {
        const HostPath hostPath(scratch ? scratch->Path() : path);
        DMDocSave(doc, DMDocSaveFull, KRGetDefaultFileSys(), hostPath.Get());
    });
    if (code != KRErrNone) throw CommandFailed{path + ": " + SentenceOf(code)};
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
    if (std::fflush(stdout) != 0) {
        PrintFailure("standard output cannot be written: " + Reason());
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
    const std::string bytes = ReadInput(path);
    if (std::fwrite(bytes.data(), 1, bytes.size(), stdout) != bytes.size() || std::fflush(stdout) != 0)
        throw CommandFailed{"standard output: " + Reason()};
}

} // namespace jackdaw::cli
