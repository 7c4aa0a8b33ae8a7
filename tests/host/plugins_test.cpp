// Loading plug-ins: the order of the start-up, and what becomes of broken ones.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "CoreHFT.h"
#include "PIFrame.h"
#include "kernel/PlugIns.h"
#include "tests/support/HostFixture.h"

using namespace jackdaw;
namespace fs = std::filesystem;

namespace {

std::vector<std::string> linesOf(const std::string &text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

/** Loads once all test plug-ins and a file that is none. Code of a plug-in cannot be loaded anew in one process. */
class PlugIns : public testing::Test {
protected:
    static void SetUpTestSuite() {
        const std::string text = TempFile("j_text.so", "This is no shared object.\n");
        const fs::path folder = fs::path(text).parent_path();
        for (const auto &entry : fs::directory_iterator(TEST_LOADER_PLUG_INS))
            fs::create_symlink(entry.path(), folder / entry.path().filename());
        fs::create_symlink(fs::path(TEST_LOADER_PLUG_INS) / "a_server.so", folder / "k_same_again.so");
        s_log = (folder / "log").string();
        setenv("LOADER_TEST_LOG", s_log.c_str(), /*overwrite*/ 1);
        testing::internal::CaptureStderr();
        s_running = LoadPlugIns(folder);
        s_errors = testing::internal::GetCapturedStderr();
    }
    static void TearDownTestSuite() {
        UnloadPlugIns();
    }

    static std::string lineAbout(const std::string &name) {
        std::string found;
        for (const std::string &line : linesOf(s_errors)) {
            if (line.find("/" + name + ".so ") != std::string::npos) found += found.empty() ? line : "\n" + line;
        }
        return found;
    }

    static std::string s_log, s_errors;
    static int s_running;
};
std::string PlugIns::s_log, PlugIns::s_errors;
int PlugIns::s_running = 0;

} // namespace

TEST_F(PlugIns, StartPhaseByPhaseInTheOrderOfTheirNames) {
    EXPECT_EQ(s_running, 2);
    EXPECT_EQ(linesOf(ReadAll(s_log)),
              (std::vector<std::string>{"a_server export", "b_client export", "d_export_false export",
                                        "e_register_raises export", "f_init_false export", "a_server register",
                                        "b_client register", "b_client found the table", "e_register_raises register",
                                        "f_init_false register", "a_server init", "a_server jumped", "b_client init",
                                        "b_client jumped", "f_init_false init", "f_init_false jumped"}));
}

TEST_F(PlugIns, EachBrokenOneIsToldOfInOneLine) {
    const std::pair<const char *, const char *> reasons[] = {{"c_handshake_refuses", "handshake refused"},
                                                             {"d_export_false", "export of tables gave false"},
                                                             {"e_register_raises", "raised an error"},
                                                             {"f_init_false", "init gave false"},
                                                             {"g_old_version", "0x00010000"},
                                                             {"h_no_main", "no main"},
                                                             {"i_unresolved", "undefined symbol"},
                                                             {"j_text", "left out"},
                                                             {"k_same_again", "loaded already"}};
    for (const auto &[name, reason] : reasons) {
        EXPECT_NE(lineAbout(name).find(reason), std::string::npos) << name << ": " << lineAbout(name);
        EXPECT_EQ(lineAbout(name).find('\n'), std::string::npos) << name;
    }
    EXPECT_EQ(linesOf(s_errors).size(), std::size(reasons)) << s_errors;
}

TEST_F(PlugIns, AreEnumeratedAndNamed) {
    std::vector<std::string> names;
    const KRExtensionEnumProc collect = [](KRExtension extension, void *clientData) -> KRBool {
        static_cast<std::vector<std::string> *>(clientData)->push_back(KRAtomGetString(KRExtensionGetName(extension)));
        return 1;
    };
    KRExtensionEnum(collect, &names, /*onlyRunning*/ 1);
    EXPECT_EQ(names, (std::vector<std::string>{"a_server", "b_client"}));
    EXPECT_EQ(RunningPlugIns(), names);
    const KRExtensionEnumProc raise = [](KRExtension, void *) -> KRBool { KRRaise(KRErrBadField); };
    EXPECT_EQ(Protect([&] { KRExtensionEnum(raise, nullptr, 1); }), KRErrBadField);
    EXPECT_EQ(fs::path(PlugInFile(PlugInIDs().front())).filename(), "a_server.so");
    EXPECT_EQ(PlugInFile(4711), "");

    int answer = 0;
    const KRHFT table = KRGetHFT(KRAtomFromString("LoaderTest"), KRVersion(1, 1));
    ASSERT_NE(table, nullptr);
    reinterpret_cast<void (*)(int *)>(table[1])(&answer);
    EXPECT_EQ(answer, 42);
    EXPECT_EQ(KRGetHFT(KRAtomFromString("LoaderTest"), KRVersion(1, 2)), nullptr);
    EXPECT_EQ(Protect([&] { table[2](); }), KRErrNotAvailable);
}

// Last of the suite, since nothing runs after it.
TEST_F(PlugIns, UnloadInReverseWhoeverReachedItsInit) {
    const std::size_t before = linesOf(ReadAll(s_log)).size();
    UnloadPlugIns();
    std::vector<std::string> lines = linesOf(ReadAll(s_log));
    lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(before));
    EXPECT_EQ(lines, (std::vector<std::string>{"f_init_false unload", "b_client unload", "a_server unload"}));
    EXPECT_TRUE(RunningPlugIns().empty());
    EXPECT_EQ(PlugInIDs().size(), 0u);
}

TEST(PlugInFolders, CodeThatAnyoneMayWriteIsNotRun) {
    const fs::path file = TempFile("open.so", "Not even read.\n");
    const auto errorsOf = [&](const fs::path &open) {
        fs::permissions(open, fs::perms::others_write, fs::perm_options::add);
        testing::internal::CaptureStderr();
        EXPECT_EQ(LoadPlugIns(file.parent_path()), 0);
        fs::permissions(open, fs::perms::others_write, fs::perm_options::remove);
        return testing::internal::GetCapturedStderr();
    };
    const std::string ofFile = errorsOf(file), ofFolder = errorsOf(file.parent_path());
    EXPECT_NE(ofFile.find("plug-in " + file.string() + " is left out: anyone may write to it\n"), std::string::npos);
    EXPECT_NE(ofFolder.find("folder of plug-ins " + file.parent_path().string() + " is left out: anyone may write"),
              std::string::npos);
    EXPECT_EQ(linesOf(ofFolder).size(), 1u);
}

TEST(PlugInFolders, MissingOneHasNoPlugIns) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(LoadPlugIns("/nowhere/plug-ins"), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    testing::internal::CaptureStderr();
    EXPECT_EQ(LoadPlugIns("/nowhere/plug-ins", /*mustExist*/ true), 0);
    EXPECT_EQ(linesOf(testing::internal::GetCapturedStderr()).size(), 1u);
}
