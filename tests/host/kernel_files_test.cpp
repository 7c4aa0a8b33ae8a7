// The kernel's files and streams, and the safe way to write a file.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "KernelSupportHFT.h"
#include "PIFrame.h"
#include "kernel/AtomicFile.h"
#include "kernel/Files.h"
#include "kernel/Frames.h"
#include "kernel/HostError.h"
#include "kernel/Streams.h"
#include "tests/support/HostFixture.h"

using namespace jackdaw;
namespace fs = std::filesystem;

namespace {

/** A path object that is released with it. */
struct Path {
    explicit Path(const std::string &text) : name(KRPathFromPlatformPath(text.c_str())) {}
    ~Path() {
        KRFileSysReleasePath(KRGetDefaultFileSys(), name);
    }
    KRPathName name;
};

KRErrorCode openFile(const std::string &path, std::int32_t mode, KRFile *file) {
    return KRFileSysOpenFile(KRGetDefaultFileSys(), Path(path).name, mode, file);
}

std::string fromString(const char *text, const char *base) {
    const KRFileSys fileSys = KRGetDefaultFileSys();
    const Path basePath(base ? base : "unused");
    const KRPathName path = KRFileSysPathFromString(fileSys, text, base ? basePath.name : nullptr);
    char *const shown = KRFileSysDisplayPath(fileSys, path, 0);
    const std::string result = shown;
    KRfree(shown);
    KRFileSysReleasePath(fileSys, path);
    return result;
}

std::size_t filesBeside(const std::string &path) {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(fs::path(path).parent_path()), fs::directory_iterator()));
}

unsigned modeOf(const std::string &path) {
    struct stat info {};
    stat(path.c_str(), &info);
    return info.st_mode & 07777;
}

/** As long as it lives, no file grows beyond `bytes`: the nearest to a full disk that a test can have. */
class SmallDisk {
public:
    explicit SmallDisk(rlim_t bytes) : former_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &limit_);
        const rlimit small{bytes, limit_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~SmallDisk() {
        setrlimit(RLIMIT_FSIZE, &limit_);
        std::signal(SIGXFSZ, former_);
    }

private:
    void (*former_)(int);
    rlimit limit_{};
};

KRErrorCode saveAtomically(const std::string &path, const std::string &bytes) {
    return CodeOf([&] {
        AtomicFile file(path);
        file.write(bytes.data(), bytes.size());
        file.commit();
    });
}

} // namespace

TEST(Files, ReadsAndWritesMixWithPositions) {
    const std::string path = TempFile("mixed", "former content, longer than the new");
    KRFile file = nullptr;
    ASSERT_EQ(openFile(path, KRFileRead_ + KRFileWrite_ + KRFileCreate, &file), KRErrNone);
    EXPECT_EQ(KRFileGetSize(file), 0);
    char text[16] = "";
    KRFileWrite(file, "0123456789", 10);
    EXPECT_EQ(KRFileGetSize(file), 10);
    KRFileSetPos(file, 2);
    EXPECT_EQ(KRFileRead(file, text, 3), 3);
    KRFileWrite(file, "xy", 2);
    EXPECT_EQ(KRFileGetPos(file), 7);
    EXPECT_EQ(KRFileRead(file, text, sizeof text), 3);
    EXPECT_EQ(Protect([&] { KRFileSetPos(file, -1); }), KRErrBadParam);
    EXPECT_EQ(Protect([&] { KRFileRead(file, text, -1); }), KRErrBadParam);
    EXPECT_EQ(KRFileClose(file), KRErrNone);
    EXPECT_EQ(ReadAll(path), "01234xy789");
}

TEST(Files, FailuresHaveTheirCodes) {
    const std::string path = TempFile("plain", "text");
    KRFile file = nullptr;
    EXPECT_EQ(openFile(path + "-not-there", KRFileRead_, &file), KRErrFileNotFound);
    EXPECT_NE(LastErrorText().find("plain-not-there"), std::string::npos);
    EXPECT_EQ(openFile(path + "/below", KRFileRead_, &file), KRErrFileNotFound);
    EXPECT_EQ(openFile(fs::path(path).parent_path(), KRFileRead_, &file), KRErrFileOpen);
    EXPECT_EQ(file, nullptr);
    EXPECT_EQ(KRFileSysRemoveFile(KRGetDefaultFileSys(), Path(path + "-not-there").name), KRErrFileNotFound);
    EXPECT_EQ(KRFileSysRemoveFile(KRGetDefaultFileSys(), Path(path).name), KRErrNone);
    EXPECT_EQ(KRFileSysOpenFile(nullptr, nullptr, KRFileRead_, &file), KRErrBadParam);
    EXPECT_EQ(Protect([] { KRPathFromPlatformPath(""); }), KRErrBadParam);
    const std::string full = FullDevice();
    if (full.empty()) GTEST_SKIP() << "no device that is full";
    ASSERT_EQ(openFile(full, KRFileWrite_, &file), KRErrNone);
    KRFileWrite(file, "x", 1);
    EXPECT_EQ(KRFileClose(file), KRErrDiskFull);
}

TEST(Files, PathsAreTakenFromTheFolderOfTheBase) {
    EXPECT_EQ(fromString("b.fdf", "/forms/a.pdf"), "/forms/b.fdf");
    EXPECT_EQ(fromString("../b.fdf", "a/c.pdf"), "a/../b.fdf");
    EXPECT_EQ(fromString("/b.fdf", "/forms/a.pdf"), "/b.fdf");
    EXPECT_EQ(fromString("b.fdf", "a.pdf"), "b.fdf");
    EXPECT_EQ(fromString("b.fdf", nullptr), "b.fdf");
    EXPECT_EQ(Protect([] { fromString("", "/forms/a.pdf"); }), KRErrBadParam);
    EXPECT_EQ(KRFileSysPathFromFileSpec(KRGetDefaultFileSys(), KRAtomFromString("Unknown"), "x"), nullptr);
}

TEST(Files, FileSystemsAreFoundByTheirAtom) {
    const KRAtom name = KRAtomFromString("KernelTestFS");
    EXPECT_EQ(KRFileSysFromAtom(name), nullptr);
    KRFileSysRegister(name, KRGetDefaultFileSys());
    EXPECT_EQ(KRFileSysFromAtom(name), KRGetDefaultFileSys());
    KRFileSysRegister(name, nullptr);
    EXPECT_EQ(KRFileSysFromAtom(name), nullptr);
}

TEST(AtomicFiles, ReplaceKeepingModeAndLinks) {
    const std::string path = TempFile("target", "former");
    chmod(path.c_str(), 0640);
    const std::string link = path + "-link";
    fs::create_symlink(path, link);
    EXPECT_EQ(saveAtomically(link, "new"), KRErrNone);
    EXPECT_EQ(ReadAll(path), "new");
    EXPECT_EQ(modeOf(path), 0640u);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(filesBeside(path), 2u);

    // A link that points nowhere gets its file, over as many steps and folders as it takes.
    fs::create_directory(path + "-folder");
    fs::create_symlink(fs::path(path + "-folder").filename() / "step", path + "-dangling");
    fs::create_symlink("../made", path + "-folder/step");
    EXPECT_EQ(saveAtomically(path + "-dangling", "made"), KRErrNone);
    EXPECT_TRUE(fs::is_symlink(path + "-dangling"));
    EXPECT_EQ(ReadAll(fs::path(path).replace_filename("made")), "made");
    fs::create_symlink("endless", fs::path(path).replace_filename("endless"));
    EXPECT_EQ(saveAtomically(fs::path(path).replace_filename("endless"), "x"), KRErrFileOpen);
}

TEST(AtomicFiles, NewOnesAreAsPrivateAsTheirSource) {
    const std::string path = TempFile("unused", "");
    const mode_t mask = umask(027);
    const auto modeOfNew = [&](mode_t rights) {
        const std::string fresh = path + std::to_string(rights);
        AtomicFile file(fresh, rights);
        file.commit();
        return modeOf(fresh);
    };
    EXPECT_EQ(modeOfNew(OpenToAll), 0640u);
    EXPECT_EQ(modeOfNew(0600), 0600u);
    EXPECT_EQ(modeOfNew(0400), 0600u);
    EXPECT_EQ(modeOfNew(0755), 0640u);
    umask(mask);
}

TEST(AtomicFiles, KeepTheirOwnerOrAreRefused) {
    if (getuid() != 0) GTEST_SKIP() << "only the superuser can make another's file";
    const std::string path = TempFile("target", "former");
    ASSERT_EQ(chown(path.c_str(), 1234, 5678), 0);
    chmod(path.c_str(), 04664);
    EXPECT_EQ(saveAtomically(path, "new"), KRErrNone);
    struct stat info {};
    stat(path.c_str(), &info);
    EXPECT_EQ(info.st_uid, 1234u);
    EXPECT_EQ(info.st_gid, 5678u);
    EXPECT_EQ(modeOf(path), 04664u);

    fs::permissions(fs::path(path).parent_path(), fs::perms::all);
    chmod(path.c_str(), 0666);
    const auto asNobody = [&] {
        if (setgid(65534) != 0 || setuid(65534) != 0) _exit(9);
        const KRErrorCode code = saveAtomically(path, "another's");
        std::fprintf(stderr, "%s", LastErrorText().c_str());
        _exit(code == KRErrFileOpen ? 0 : 1);
    };
    EXPECT_EXIT(asNobody(), testing::ExitedWithCode(0), "belongs to another user");
    EXPECT_EQ(ReadAll(path), "new");
    EXPECT_EQ(filesBeside(path), 1u);
}

TEST(AtomicFiles, FormerContentStandsOnEveryFailure) {
    const std::string path = TempFile("target", "former");
    { AtomicFile(path).write("half", 4); }
    EXPECT_EQ(ReadAll(path), "former");
    {
        const SmallDisk disk(4096);
        EXPECT_EQ(saveAtomically(path, std::string(100, 'x')), KRErrNone);
        EXPECT_EQ(saveAtomically(path, std::string(100000, 'y')), KRErrDiskFull);
    }
    EXPECT_EQ(ReadAll(path), std::string(100, 'x'));
    EXPECT_EQ(filesBeside(path), 1u);

    // The folder goes away between writing and renaming.
    const std::string folder = path + "-folder";
    fs::create_directory(folder);
    const KRErrorCode code = CodeOf([&] {
        AtomicFile file(folder + "/file");
        fs::remove_all(folder);
        file.commit();
    });
    EXPECT_EQ(code, KRErrFileNotFound);
    EXPECT_EQ(saveAtomically(folder + "/file", "x"), KRErrFileNotFound);
    EXPECT_EQ(saveAtomically(fs::path(path).parent_path(), "x"), KRErrFileOpen);
}

TEST(AtomicFiles, WhatIsNoPlainFileIsWrittenAndNeverReplaced) {
    const std::string pipe = TempFile("none", "") + ".pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const int reader = open(pipe.c_str(), O_RDWR | O_NONBLOCK);
    EXPECT_EQ(saveAtomically(pipe, "x"), KRErrNone);
    char byte = 0;
    EXPECT_TRUE(read(reader, &byte, 1) == 1 && byte == 'x');
    EXPECT_TRUE(fs::is_fifo(pipe));
    close(reader);
    const std::string full = FullDevice();
    if (full.empty()) GTEST_SKIP() << "no device that is full";
    EXPECT_EQ(saveAtomically(full, "x"), KRErrDiskFull);
    EXPECT_TRUE(fs::is_character_file(full));
}

TEST(Streams, WholeItemsOutOfShortReads) {
    // Hands out "abcdefg" in pieces of at most two bytes.
    struct Source {
        const char *next = "abcdefg";
    } source;
    const KRStmProc inPieces = [](char *buffer, std::int32_t size, void *clientData) -> std::int32_t {
        const char *&next = static_cast<Source *>(clientData)->next;
        std::int32_t count = 0;
        for (; *next && count < size && count < 2; ++count) buffer[count] = *next++;
        return count;
    };
    const KRStm stream = KRProcStmOpen(inPieces, &source);
    char text[16] = "";
    EXPECT_EQ(KRStmRead(text, 3, 1, stream), 1);
    EXPECT_EQ(KRStmRead(text, 3, 5, stream), 1);
    EXPECT_EQ(std::string(text, 4), "defg");
    EXPECT_EQ(KRStmRead(text, 1, 5, stream), 0);
    EXPECT_EQ(KRStmRead(text, INT32_MAX, INT32_MAX, stream), 0);
    KRStmClose(stream);
}

TEST(Streams, FailingSourcesRaise) {
    const auto codeOfReading = [](KRStmProc proc) {
        const KRStm stream = KRProcStmOpen(proc, nullptr);
        char byte;
        const KRErrorCode code = Protect([&] { KRStmRead(&byte, 1, 1, stream); });
        KRStmClose(stream);
        return code;
    };
    EXPECT_EQ(codeOfReading([](char *, std::int32_t, void *) { return -1; }), KRErrBadStream);
    EXPECT_EQ(codeOfReading([](char *, std::int32_t size, void *) { return size + 1; }), KRErrBadStream);
    EXPECT_EQ(codeOfReading([](char *, std::int32_t, void *) -> std::int32_t { KRRaise(KRErrPassword); }),
              KRErrPassword);
}

TEST(Streams, DrainingSkipsCutsAndStopsAtTheLimit) {
    const auto drain = [](std::int64_t start, std::int64_t length, std::int64_t limit) {
        const KRStm stream = OpenOwnedStream(std::string(20000, 'a') + "end");
        std::string result = "too large";
        (void)CodeOf([&] { result = DrainStream(stream, start, length, limit); });
        CloseStream(stream);
        return result;
    };
    EXPECT_EQ(drain(19999, -1, 100), "aend");
    EXPECT_EQ(drain(20000, 2, 100), "en");
    EXPECT_EQ(drain(30000, -1, 100), "");
    EXPECT_EQ(drain(0, -1, 20002), "too large");
    EXPECT_EQ(drain(0, 5, 5), "aaaaa");

    KRFile file = nullptr;
    ASSERT_EQ(openFile(TempFile("streamed", "0123456789"), KRFileRead_, &file), KRErrNone);
    KRFileSetPos(file, 4);
    const KRStm stream = KRFileStmOpen(file);
    EXPECT_EQ(DrainStream(stream, 0, -1, 100), "456789");
    KRStmClose(stream);
    EXPECT_EQ(ReadWholeFile(file, /*limit*/ 10), "0123456789");
    KRFileClose(file);
}
