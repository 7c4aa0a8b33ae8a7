// The real program with Forms and two plug-ins that know nothing but include/: one in C++, one in C.
//
// The plug-ins check what they see and print a line for whatever is wrong; the tests judge the program around them.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/wait.h>
#include <vector>

#include "tests/support/HostFixture.h"

namespace fs = std::filesystem;

namespace {

std::string FormFile() {
    std::vector<std::string> objects =
        FormObjects({"/FT /Tx /T (alpha) /TU (Alpha's text) /V (one) /DV (start) /F 4",
                     "/FT /Btn /T (agree) /F 4 /AS /Off /AP << /N << /Yes 11 0 R /Off 12 0 R >> >>",
                     "/FT /Ch /Ff 131072 /T (pick) /V (b) /Opt [[(a) (Apple)] [(b) (Berry)] (c)] /F 4",
                     "/FT /Btn /Ff 65536 /T (push) /F 4", "/FT /Tx /Ff 8192 /T (secret) /F 4",
                     "/FT /Tx /T (twin) /V (1) /F 4", "/FT /Tx /T (twin) /V (1) /F 4"},
                    "/DA (/Helv 0 Tf 0 g) /DR << /Font << /Helv 13 0 R >> >>");
    for (const char *drawing : {"0 0 9 9 re f", "0 0 9 9 re s"})
        objects.push_back("<< /Type /XObject /Subtype /Form /BBox [0 0 9 9] /Length 12 >>\nstream\n" +
                          std::string(drawing) + "\nendstream");
    objects.push_back("<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica /Name /Helv >>");
    return TempFile("form.pdf", PdfText(objects));
}

struct Ran {
    int exitCode;
    std::string out, err;
};

/** Runs jackdaw with the plug-ins of a folder; `environment` is a list of assignments for a shell. */
Ran RunJackdaw(const std::string &environment, const std::string &arguments,
               const std::string &folder = CONTRACT_PLUG_INS) {
    const std::string out = TempFile("out", ""), err = TempFile("err", "");
    const std::string command = environment + " '" JACKDAW_PROGRAM "' --plug-ins '" + folder + "' " + arguments +
                                " >'" + out + "' 2>'" + err + "'";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadAll(out), ReadAll(err)};
}

class Contract : public testing::TestWithParam<const char *> {};

} // namespace

TEST_P(Contract, HoldsFor) {
    const std::string name = GetParam();
    const Ran ran = RunJackdaw("OBSERVER_FILE='" + TempFile("copy.pdf", "") + "' OBSERVER_CASE=" + name,
                               "fields '" + FormFile() + "'");
    EXPECT_EQ(ran.err, "observer: " + name + " ok\n");
    // The command goes on with the form as the plug-in left it.
    EXPECT_EQ(ran.exitCode, 0);
    EXPECT_EQ(ran.out.substr(0, 4), "PAGE");
}

INSTANTIATE_TEST_SUITE_P(Cases, Contract,
                         testing::Values("tables", "absences", "fields", "field-tree", "looks", "name-trees",
                                         "handlers", "widget-records", "registration", "vetoes", "rewriting",
                                         "failures", "form-life", "upheavals", "upheavals-in-walks", "saving",
                                         "second-document", "odd-objects", "odd-handles", "menus", "selections", "c"),
                         [](const auto &info) {
                             std::string name = info.param;
                             std::erase(name, '-');
                             return name;
                         });

TEST(ContractOfPlugIns, EveryExportComesBeforeAnyInit) {
    const Ran ran = RunJackdaw("OBSERVER_PHASES=1", "fields '" + FormFile() + "'");
    EXPECT_EQ(ran.exitCode, 0);
    EXPECT_EQ(ran.err, "earlier: export, Forms is not there, 0 running\n"
                       "earlier: register, Forms is there, 0 running\n"
                       "earlier: init, Forms is there, 0 running\n");
}

TEST(ContractOfPlugIns, WhoNeedsFormsGoesWithoutIt) {
    const fs::path folder = fs::path(TempFile("link", "")).parent_path();
    for (const char *name : {"Earlier.so", "Observer.so"})
        fs::create_symlink(fs::path(CONTRACT_PLUG_INS) / name, folder / name);
    const Ran ran = RunJackdaw("OBSERVER_CASE=fields", "fields '" + FormFile() + "'", folder.string());
    EXPECT_EQ(ran.exitCode, 2);
    EXPECT_NE(ran.err.find("Earlier.so is left out: its replace and register gave false"), std::string::npos);
    EXPECT_NE(ran.err.find("Observer.so is left out: its replace and register gave false"), std::string::npos);
    EXPECT_TRUE(ran.err.ends_with("jackdaw: the plug-in Forms is not loaded; --plug-ins names its folder\n"))
        << ran.err;
}

// What the command line does to a form, other plug-ins hear of, and may refuse or change.
TEST(ContractOfPlugIns, ObserversJudgeTheCommandLine) {
    const std::string form = FormFile(), filled = TempFile("filled.pdf", "");
    const auto fill = [&](const std::string &sets) {
        return RunJackdaw("OBSERVER_CASE=watch", "fill '" + form + "' " + sets + " -o '" + filled + "'");
    };
    Ran ran = fill("--set alpha=lower --set secret=broken --set twin=forbidden");
    EXPECT_EQ(ran.exitCode, 3);
    EXPECT_NE(ran.err.find("jackdaw: twin: the form refused the value \"forbidden\"\n"), std::string::npos) << ran.err;
    EXPECT_NE(ran.err.find("jackdaw: secret: "), std::string::npos) << ran.err;
    ran = RunJackdaw("", "fields --json '" + filled + "'");
    EXPECT_NE(ran.out.find(R"("name":"alpha","type":"text","value":"UPPER")"), std::string::npos) << ran.out;
    EXPECT_NE(ran.out.find(R"("name":"twin","type":"text","value":"1")"), std::string::npos) << ran.out;
    ran = fill("--set \"alpha=raised in C\" --set \"twin=forbidden in C\"");
    EXPECT_EQ(ran.exitCode, 2);
}
