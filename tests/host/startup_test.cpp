// The running host: what start-up leaves behind, and where plug-ins are looked for.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "CoreHFT.h"
#include "app/Startup.h"
#include "tests/support/HostFixture.h"

using namespace jackdaw;

namespace {

struct EnvironmentVariable {
    EnvironmentVariable(const char *variable, const char *value) : name(variable) {
        setenv(name, value, /*overwrite*/ 1);
    }
    ~EnvironmentVariable() {
        unsetenv(name);
    }
    const char *name;
};

} // namespace

TEST(Startup, EveryTableAnswersUnderItsName) {
    EXPECT_TRUE(HostIsRunning());
    const std::pair<const char *, std::uint32_t> tables[] = {
        {"KernelSupport", KRVersion(4, 2)}, {"Lex", KRVersion(4, 2)},  {"DocModel", KRVersion(4, 3)},
        {"ScreenView", KRVersion(4, 3)},    {"Unix", KRVersion(4, 2)}, {"ScreenViewUserInterface", KRVersion(4, 0)},
        {"BaseTool", KRVersion(4, 1)}};
    for (const auto &[name, version] : tables) {
        EXPECT_NE(KRGetHFT(KRAtomFromString(name), version), nullptr) << name;
        EXPECT_EQ(KRGetHFT(KRAtomFromString(name), version + 1), nullptr) << name;
    }
    EXPECT_STREQ(KRGetConfiguration(KRAtomFromString("Product")), "Jackdaw");
    EXPECT_EQ(KRGetConfiguration(KRAtomFromString("no such key")), nullptr);
    const KRHFT core = gCoreHFT;
    StartHost();
    EXPECT_EQ(gCoreHFT, core);
}

TEST(Startup, NumbersKeepTheirPointInEveryLocale) {
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
    char text[16];
    std::snprintf(text, sizeof text, "%.1f", 0.5);
    EXPECT_STREQ(text, "0.5");
}

TEST(Startup, PlugInsAreSoughtWhereAskedFirst) {
    HostOptions options;
    {
        const EnvironmentVariable variable("JACKDAW_PLUG_INS", "/from/environment");
        EXPECT_EQ(PlugInFolder(options), "/from/environment");
        options.plugInDir = "/from/option";
        EXPECT_EQ(PlugInFolder(options), "/from/option");
    }
    options.plugInDir.clear();
    const auto beside = std::filesystem::read_symlink("/proc/self/exe").parent_path() / "plug-ins";
    std::filesystem::create_directory(beside);
    EXPECT_EQ(PlugInFolder(options), beside);
    std::filesystem::remove(beside);
    EXPECT_EQ(PlugInFolder(options), "");
}
