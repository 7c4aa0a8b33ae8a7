// The commands as a user gives them: what they write, what they say, the code that they leave with.
// SPDX-License-Identifier: MIT
#include <filesystem>

#include <gtest/gtest.h>

#include "tests/cli/Run.h"
#include "tests/support/PdfText.h"

namespace {

using testing::Test;

// A form with a field of every kind that takes a value, and one of each that does not.
std::string SmallForm() {
    static const std::string s_path = [] {
        const std::string toggle = " /AS /Off /AP << /N << /";
        const auto states = [&](const std::string &on) { return toggle + on + " 14 0 R /Off 14 0 R >> >>"; };
        std::vector<std::string> objects = FormObjects(
            {"/T (given) /FT /Tx /V (old) /DV (standard) /MaxLen 10", "/T (locked) /FT /Tx /Ff 1 /V (kept)",
             "/T (colour) /FT /Ch /Ff 131072 /Opt [[(r) (red)] [(g) (green)]] /V (r)",
             "/T (town) /FT /Ch /Ff 393216 /Opt [(Brno) (Lyon)]", "/T (days) /FT /Ch /Opt [(Mon) (Tue)] /DV (Tue)",
             "/T (agree) /FT /Btn" + states("Yes"), "/T (size) /FT /Btn /Ff 49152" + states("large"),
             "/T (secret) /FT /Tx /Ff 8192", "/T (send) /FT /Btn /Ff 65536", "/T (notes) /FT /Tx /Ff 4096"},
            "/DA (/Helv 10 Tf 0 g) /DR << /Font << /Helv << /Type /Font /Subtype /Type1 /BaseFont /Helvetica >> >> >>");
        objects.push_back("<< /Type /XObject /Subtype /Form /BBox [0 0 20 20] /Length 0 >> stream\n\nendstream");
        return TempFile("form.pdf", PdfText(objects));
    }();
    return s_path;
}

// One line that says `part`, code 2, nothing on standard output.
void ExpectNothingDone(const Ran &ran, const std::string &part) {
    EXPECT_EQ(ran.exit, 2) << ran;
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(CountLines(ran.err), 1U) << ran;
    EXPECT_TRUE(Has(ran.err, part)) << ran.err;
}

TEST(Fill, TakesEveryTypeOfDataAndChangesNothingElse) {
    const std::string out = NewName();
    const std::string data = R"({"given": 1.50, "colour": "green", "town": "þÿab", "days": "Mon", "agree": true,
                                 "size": "large", "notes": "Łódź\nline two"})";
    const Ran ran = Jackdaw({"fill", SmallForm(), "--json", TempFile("data.json", data), "-o", out});
    // All is stored; what the page cannot show of it is told.
    ASSERT_EQ(ran.exit, 3) << ran;
    EXPECT_EQ(ran.err, "jackdaw: notes: the font lacks ź: bullets are shown instead\n");
    const auto fields = FieldsOf(out);
    const Json expected = {{"given", "1.50"}, {"locked", "kept"}, {"colour", "g"},   {"town", "þÿab"},
                           {"days", "Mon"},   {"agree", "Yes"},   {"size", "large"}, {"notes", "Łódź\nline two"}};
    for (const auto &[name, value] : expected.items()) EXPECT_EQ(fields.at(name)["value"], value) << name;

    const std::string again = NewName();
    const std::string back = R"({"given": null, "town": null, "agree": false, "size": "Off"})";
    ASSERT_EQ(Jackdaw({"fill", out, "--json", TempFile("data.json", back), "--set", "days=Tue", "-o", again}).exit, 0);
    const Json cleared = {{"given", nullptr}, {"town", nullptr}, {"agree", "Off"}, {"size", "Off"}, {"days", "Tue"}};
    for (const auto &[name, value] : cleared.items()) EXPECT_EQ(ValueIn(again, name), value) << name;
}

TEST(Fill, WarnsOfWhatAFieldCannotTakeAndFillsTheRest) {
    const struct {
        const char *set, *says;
    } s_cases[] = {
        {"givn=x", "givn: no such field; there are: given"},
        {"colour=blue", "it takes: r (red), g (green)"},
        {"days=Sun", "it takes: Mon, Tue"},
        {"agree=maybe", "it takes: Yes, true, false"},
        {"size=huge", "it takes: large, Off"},
        {"given=12345678901", "has 11 characters; the field takes 10"},
        {"locked=x", "locked: the field is read-only"},
        {"send=x", "takes no value"},
    };
    std::vector<std::string> all = {"fill", SmallForm(), "--set", "notes=done"};
    for (const auto &[set, says] : s_cases) all.insert(all.end(), {"--set", set});
    const std::string out = NewName();
    all.insert(all.end(), {"-o", out});
    const Ran ran = Jackdaw(all);
    EXPECT_EQ(ran.exit, 3) << ran;
    EXPECT_EQ(CountLines(ran.err), std::size(s_cases)) << ran;
    for (const auto &[set, says] : s_cases) EXPECT_TRUE(Has(ran.err, says)) << says << "\n" << ran.err;
    EXPECT_EQ(ValueIn(out, "notes"), "done");
    EXPECT_EQ(ValueIn(out, "given"), "old");
    EXPECT_EQ(ValueIn(out, "locked"), "kept");
}

TEST(Fill, WritesNothingWhenNothingIsFilled) {
    const std::string out = NewName();
    const Ran ran = Jackdaw({"fill", SmallForm(), "--set", "nobody=x", "-o", out});
    EXPECT_EQ(ran.exit, 2) << ran;
    EXPECT_EQ(CountLines(ran.err), 2U) << ran;
    EXPECT_FALSE(std::filesystem::exists(out));
}

TEST(Fill, PassesOverDataThatNoFieldTakes) {
    const std::string out = NewName();
    const std::string data =
        R"({"given": ["a", {"given": "b"}], "town": {"town": "Brno", "notes": []}, "notes": "kept"})";
    const Ran ran = Jackdaw({"fill", SmallForm(), "--json", TempFile("data.json", data), "-o", out});
    EXPECT_EQ(ran.exit, 3) << ran;
    EXPECT_EQ(CountLines(ran.err), 2U) << ran;
    EXPECT_EQ(ValueIn(out, "given"), "old");
    EXPECT_EQ(ValueIn(out, "town"), nullptr);
    EXPECT_EQ(ValueIn(out, "notes"), "kept");
}

TEST(Fill, KeepsNoPassword) {
    const std::string out = NewName();
    const Ran ran = Jackdaw({"fill", SmallForm(), "--set", "secret=opensesame", "-o", out});
    EXPECT_EQ(ran.exit, 3) << ran;
    EXPECT_TRUE(Has(ran.err, "secret: a password")) << ran;
    EXPECT_FALSE(Has(RunProgram({"qpdf", "--qdf", out, "-"}).out, "opensesame"));
}

TEST(Fill, CountsCharactersAgainstTheMaximumLength) {
    const std::string out = NewName();
    const std::string tenLetters = "žžžžžžžžžž";
    EXPECT_EQ(Jackdaw({"fill", SmallForm(), "--set", "given=" + tenLetters, "-o", out}).exit, 0);
    EXPECT_EQ(ValueIn(out, "given"), tenLetters);
}

TEST(Fill, MayReplaceItsInput) {
    const std::string file = TempFile("form.pdf", ReadAll(SmallForm()));
    EXPECT_EQ(Jackdaw({"fill", file, "--set", "given=new", "-o", file}).exit, 0);
    EXPECT_EQ(ValueIn(file, "given"), "new");
    EXPECT_EQ(ValueIn(file, "notes"), nullptr);
}

TEST(Reset, GoesBackToDefaultsAllOrNamed) {
    const std::string filled = NewName(), one = NewName(), all = NewName();
    ASSERT_EQ(Jackdaw({"fill", SmallForm(), "--set", "given=new", "--set", "days=Mon", "--set", "colour=green", "--set",
                       "agree=true", "-o", filled})
                  .exit,
              0);
    Ran ran = Jackdaw({"reset", filled, "given", "nobody", "-o", one});
    EXPECT_EQ(ran.exit, 3) << ran;
    EXPECT_TRUE(Has(ran.err, "nobody: no such field")) << ran;
    EXPECT_EQ(ValueIn(one, "given"), "standard");
    EXPECT_EQ(ValueIn(one, "colour"), "g");
    ran = Jackdaw({"reset", filled, "-o", all});
    EXPECT_EQ(ran.exit, 0) << ran;
    EXPECT_EQ(ValueIn(all, "days"), "Tue");
    // A choice without a default goes to its first.
    EXPECT_EQ(ValueIn(all, "colour"), "r");
    EXPECT_EQ(ValueIn(all, "agree"), "Off");
    ran = Jackdaw({"reset", filled, "send", "-o", NewName()});
    EXPECT_EQ(ran.exit, 2) << ran;
    EXPECT_TRUE(Has(ran.err, "send: a field of type button has no value to reset")) << ran;
}

TEST(Commands, StandardInputAndOutput) {
    const std::string form = ReadAll(SmallForm());
    const Ran filled = Jackdaw({"fill", "-", "--set", "given=piped", "-o", "-"}, {form});
    ASSERT_EQ(filled.exit, 0) << filled.err;
    EXPECT_EQ(filled.err, "");
    const Ran listed = Jackdaw({"fields", "-"}, {filled.out});
    EXPECT_EQ(listed.exit, 0) << listed;
    EXPECT_TRUE(Has(listed.out, "given")) << listed;
    EXPECT_TRUE(Has(listed.out, "piped")) << listed;
    const std::string out = NewName();
    EXPECT_EQ(Jackdaw({"fill", SmallForm(), "--json", "-", "-o", out}, {R"({"given": "data"})"}).exit, 0);
    EXPECT_EQ(ValueIn(out, "given"), "data");
    ExpectNothingDone(Jackdaw({"fill", "-", "--json", "-", "-o", out}, {form}), "standard input is asked for twice");
    const Ran picture = Jackdaw({"render", "-", "-o", "-"}, {form});
    EXPECT_EQ(picture.out.substr(0, 4), "\x89PNG") << picture.err;
}

TEST(Commands, PasswordFile) {
    if (!HasProgram("qpdf")) GTEST_SKIP();
    const std::string locked = NewName(), out = NewName();
    ASSERT_EQ(
        RunProgram({"qpdf", "--encrypt", "reader", "owner", "256", "--modify=none", "--", SmallForm(), locked}).exit,
        0);
    const auto fill = [&](const char *password) {
        return Jackdaw(
            {"fill", locked, "--password-file", TempFile("password", password), "--set", "given=x", "-o", out});
    };
    ExpectNothingDone(Jackdaw({"fields", locked}), "password");
    ExpectNothingDone(fill("wrong"), "password");
    EXPECT_EQ(Jackdaw({"fields", locked, "--password-file", TempFile("password", "reader")}).exit, 0);
    ExpectNothingDone(fill("reader\n"), "does not permit filling in");
    EXPECT_FALSE(std::filesystem::exists(out));
    EXPECT_EQ(fill("owner\nsecond line").exit, 0);
    // The filled document is locked as before.
    ExpectNothingDone(Jackdaw({"fields", out}), "password");
    EXPECT_TRUE(
        Has(RunProgram({"qpdf", "--password=reader", "--show-encryption", out}).out, "modify forms: not allowed"));
}

TEST(Commands, RefuseWhatTheyCannotUse) {
    const std::string form = SmallForm(), out = NewName();
    const std::string folder = std::filesystem::path(out).parent_path();
    const auto data = [&](const char *json) {
        return std::vector<std::string>{"fill", form, "--json", TempFile("data.json", json), "-o", out};
    };
    const std::pair<std::vector<std::string>, const char *> s_cases[] = {
        {{}, "no command is given; see jackdaw --help"},
        {{"bogus"}, "there is no command \"bogus\"; see jackdaw --help"},
        {{"feilds", form}, "there is no command \"feilds\"; did you mean fields?"},
        {{"fields"}, "fields needs FILE; see jackdaw fields --help"},
        {{"fill", form, "--set", "given=x"}, "fill needs -o PATH"},
        {{"fields", form, "--zzz"}, "fields has no option --zzz; see jackdaw fields --help"},
        {{"fill", form, "--sett", "given=x"}, "fill has no option --sett; did you mean --set?"},
        {{"fields", "-json", form}, "fields has no option -json; did you mean --json?"},
        {{"fields", form, form}, "is one argument too many; see jackdaw fields --help"},
        {{"fill", form, "given=x", "-o", out}, "one argument too many; did you mean --set \"given=x\"?"},
        {{"fill", form, "--json", "{\"given\": 1}", "-o", out}, "--json takes the path of a file"},
        {{"fields", form, "--json=yes"}, "--json takes no value"},
        {{"fill", form, "--json"}, "--json needs a value: --json DATA"},
        {{"fill", form, "-o", "a", "-o", "b"}, "--output is given twice"},
        {{"render", form, "--page", "one", "-o", out}, "--page: \"one\" is no whole number"},
        {{"render", form, "--page", "99999999999", "-o", out}, "--page: 99999999999 is too large"},
        {{"fields", folder + "/none.pdf"}, "none.pdf: there is no such file"},
        {{"fields", folder + "/none/x.pdf"}, "x.pdf: there is no folder"},
        {{"fields", form + "/x.pdf"}, "x.pdf: a part of the path is no folder"},
        {{"fields", folder}, "is a folder"},
        {{"fields", ""}, "FILE"},
        {{"fields", TempFile("empty.pdf", "")}, "the file is empty"},
        {{"fields", TempFile("plain.txt", "Dear reader,\n")}, "not a PDF document"},
        {{"fields", TempFile("head.pdf", "%PDF-1.7\n")}, "damaged and could not be repaired"},
        {{"fields", "/dev/zero"}, "/dev/zero: no regular file, and longer than"},
        {{"fields", TempFile("plain.pdf",
                             PdfText({"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [] /Count 0 >>"}))},
         "no form"},
        {{"fill", form, "-o", out}, "no values given"},
        {{"fill", form, "--set", "given=x", "-o", ""}, "--output"},
        {{"fill", form, "--set", "given", "-o", out}, "NAME=VALUE"},
        {{"fill", form, "--set", "=x", "-o", out}, "NAME=VALUE"},
        {{"fill", form, "--json", folder + "/none.json", "-o", out}, "none.json"},
        {{"fill", form, "--json", folder, "-o", out}, "is a folder"},
        {{"fill", form, "--json", "/dev/zero", "-o", out}, "/dev/zero: longer than"},
        {{"fill", form, "--set", "given=x", "--password-file", folder + "/none", "-o", out}, "there is no such file"},
        {{"fill", form, "--set", "given=x", "--password-file", "/dev/zero", "-o", out}, "longer than a password"},
        {{"fill", form, "--set", "given=x", "-o", folder + "/none/x.pdf"}, "x.pdf: there is no folder"},
        {{"fill", form, "--set", "given=x", "-o", folder}, "is a folder"},
        {data(""), "not valid JSON: it ends too early"},
        {data("{\"given\": \"x\""), "not valid JSON: it ends too early, at line 1, column 14"},
        {data("{\"given\":\n  \"é\xe9\"}"), "not UTF-8 at line 2, column 5"},
        {data("{\"given\":\n  \"é\",\n}"), "not valid JSON at line 3, column 1"},
        {data("\xff\xfe{"), "the text is UTF-16"},
        {data("{\"given\": \"x\"} [[]]"), "not a JSON object"},
        {data("[1, 2]"), "not a JSON object"},
        {data("3"), "not a JSON object"},
        {data("{}"), "no values given"},
        {{"render", form, "--page", "2", "-o", out}, "no page 2"},
        {{"render", form, "--page", "0", "-o", out}, "no page 0"},
        {{"render", form, "--dpi", "0", "-o", out}, "--dpi"},
        {{"fields", "--limit", "data-bytes", form}, "not of the form NAME=N"},
        {{"fields", "--limit", "dat-bytes=1", form}, "there is no limit dat-bytes; did you mean data-bytes?"},
        {{"fields", form, "--limit", "data-bytes=1k"}, "data-bytes takes a whole number from 1 to "},
        {{"fields", form, "--limit", "field-depth=2001"}, "field-depth takes a whole number from 1 to 2000"},
        // Of the command line and of the host; the plug-in's below.
        {{"--limit", "data-bytes=5", "fill", "--json", TempFile("d.json", "{\"given\": 1}"), form, "-o", out},
         "d.json: longer than 5 bytes"},
        {{"render", form, "--limit", "render-pixels=10", "-o", out}, "more than the limit allows"},
    };
    for (const auto &[arguments, says] : s_cases) {
        SCOPED_TRACE(says);
        ExpectNothingDone(Jackdaw(arguments), says);
        EXPECT_FALSE(std::filesystem::exists(out));
    }
    const std::string nested = TempFile(
        "nested.pdf", PdfText({"<< /Type /Catalog /Pages 2 0 R /AcroForm << /Fields [4 0 R] >> >>",
                               "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
                               "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 99 99] /Annots [6 0 R] >>",
                               "<< /T (a) /Kids [5 0 R] >>", "<< /T (b) /Parent 4 0 R /Kids [6 0 R] >>",
                               "<< /Type /Annot /Subtype /Widget /Rect [0 0 9 9] /FT /Tx /T (c) /Parent 5 0 R >>"}));
    EXPECT_TRUE(Has(Jackdaw({"fields", nested, "--limit", "field-depth=2"}).out, "a.b.c"));
    EXPECT_FALSE(Has(Jackdaw({"fields", nested, "--limit", "field-depth=1"}).out, "a.b.c"));
    const Ran two = Jackdaw({"fields", form, "--jsn", "--zzz"});
    EXPECT_EQ(CountLines(two.err), 2U) << two;
    EXPECT_TRUE(Has(two.err, "no option --jsn; did you mean --json?\n")) << two;
    EXPECT_TRUE(Has(two.err, "no option --zzz;")) << two;
    const Ran noPlugIns = Jackdaw({"--plug-ins", folder + "/none", "fields", form});
    EXPECT_EQ(noPlugIns.exit, 2) << noPlugIns;
    EXPECT_TRUE(Has(noPlugIns.err, "plug-in Forms is not loaded")) << noPlugIns;
}

TEST(Commands, TellAboutThemselves) {
    for (const char *option : {"-h", "--help", "fill -h", "--version", "--print-manual", "--print-completion"}) {
        const Ran ran = RunProgram({"sh", "-c", std::string(TEST_JACKDAW " ") + option});
        EXPECT_EQ(ran.exit, 0) << ran;
        EXPECT_EQ(ran.err, "");
        EXPECT_TRUE(Has(ran.out, "jackdaw")) << option;
        const Ran full = RunProgram({"sh", "-c", std::string(TEST_JACKDAW " ") + option + " > /dev/full"});
        EXPECT_EQ(full.exit, 2) << option;
        EXPECT_EQ(full.err, "jackdaw: standard output: the disk is full\n") << option;
    }
    const Ran limits = Jackdaw({"--help", "limits"});
    EXPECT_EQ(limits.exit, 0) << limits;
    for (const char *row : {"stream-bytes  ", " 268435456  bytes of the decoded data of one stream\n", "field-depth  "})
        EXPECT_TRUE(Has(limits.out, row)) << limits;
    for (const char *command : {"fields", "fill", "reset", "render"}) {
        EXPECT_EQ(Jackdaw({command, "--help"}).exit, 0);
        EXPECT_TRUE(Has(Jackdaw({"--print-manual"}).out, command));
    }
}

// Whatever keeps the new file from being written whole, the former one stands and nothing is left beside it.
TEST(Save, LosesNothingWhenWritingFails) {
    const std::string file = TempFile("form.pdf", ReadAll(SmallForm()));
    const auto entries = [&] {
        const auto folder = std::filesystem::directory_iterator(std::filesystem::path(file).parent_path());
        return std::distance(begin(folder), end(folder));
    };
    const std::vector<std::string> fill = {"fill", file, "--set", "given=new", "-o"};
    const auto fillTo = [&](const std::string &path, const RunOptions &options) {
        std::vector<std::string> command = fill;
        command.push_back(path);
        return Jackdaw(command, options);
    };
    for (const long limit : {200L, 600L, 2200L}) {
        ExpectNothingDone(fillTo(file, {"", limit}), "disk is full");
        EXPECT_EQ(ReadAll(file), ReadAll(SmallForm()));
        EXPECT_EQ(entries(), 1);
    }
    ExpectNothingDone(fillTo(file + "/x.pdf", {}), "x.pdf");
    const std::string folder = file + ".folder";
    std::filesystem::create_directory(folder);
    ExpectNothingDone(fillTo(folder, {}), ".folder");
    ExpectNothingDone(fillTo(folder + "/none/x.pdf", {}), "x.pdf");
    EXPECT_EQ(entries(), 2);
    EXPECT_TRUE(std::filesystem::is_empty(folder));
    if (const std::string full = FullDevice(); !full.empty()) {
        ExpectNothingDone(fillTo(full, {}), "full");
        EXPECT_EQ(RunProgram({"sh", "-c", TEST_JACKDAW " fields " + file + " > " + full}).exit, 2);
    }
}

TEST(Save, TellsOfDamageAndRefusesItWhenStrict) {
    const std::string whole = ReadAll(SmallForm());
    // Without its end the file has lost an appearance and the table of its objects.
    const std::string damaged = TempFile("damaged.pdf", whole.substr(0, whole.find("14 0 obj")));
    const std::string out = NewName();
    for (const std::vector<std::string> &command : std::vector<std::vector<std::string>>{
             {"fields", damaged},
             {"fill", damaged, "--set", "given=new", "-o", out},
             {"reset", damaged, "given", "-o", out},
             {"render", damaged, "-o", out},
         }) {
        SCOPED_TRACE(command[0]);
        const Ran told = Jackdaw(command);
        EXPECT_EQ(told.exit, 3) << told;
        EXPECT_TRUE(Has(told.err, "Attempting to reconstruct")) << told.err;
        EXPECT_TRUE(Has(told.err, "(object 14 0): is missing")) << told.err;
        std::filesystem::remove(out);
        std::vector<std::string> strict = command;
        strict.emplace_back("--strict");
        const Ran refused = Jackdaw(strict);
        EXPECT_EQ(refused.exit, 2) << refused;
        EXPECT_EQ(refused.out, "");
        EXPECT_TRUE(Has(refused.err, "--strict")) << refused.err;
        EXPECT_FALSE(std::filesystem::exists(out));
    }
    EXPECT_EQ(Jackdaw({"fill", SmallForm(), "--strict", "--set", "given=new", "-o", out}).exit, 0);
}

TEST(Save, WhatComesOfAPrivateFormIsPrivate) {
    using std::filesystem::perms;
    const std::string form = TempFile("private.pdf", ReadAll(SmallForm())), out = NewName();
    std::filesystem::permissions(form, perms::owner_read | perms::owner_write);
    for (const std::vector<std::string> &command : std::vector<std::vector<std::string>>{
             {TEST_JACKDAW, "fill", form, "--set", "given=new", "-o", out},
             {TEST_JACKDAW, "render", form, "-o", out},
             {"sh", "-c", TEST_JACKDAW " fill - --set given=new -o \"$1\" <\"$0\"", form, out},
         }) {
        std::filesystem::remove(out);
        const Ran ran = RunProgram(command);
        EXPECT_EQ(ran.exit, 0) << ran;
        EXPECT_EQ(std::filesystem::status(out).permissions(), perms::owner_read | perms::owner_write);
    }
}

TEST(Fields, TableForPeople) {
    const Ran ran = Jackdaw({"fields", SmallForm()});
    ASSERT_EQ(ran.exit, 0) << ran;
    EXPECT_EQ(ran.out.substr(0, ran.out.find('\n')).substr(0, 10), "PAGE  TYPE");
    EXPECT_EQ(CountLines(ran.out), 11U) << ran;
    EXPECT_TRUE(Has(ran.out, "readonly")) << ran;
}

TEST(Render, DrawsAtTheWantedSize) {
    const std::string out = NewName();
    ASSERT_EQ(Jackdaw({"render", SmallForm(), "--dpi", "36", "-o", out}).exit, 0);
    const std::string png = ReadAll(out);
    ASSERT_GT(png.size(), 24U);
    const auto number = [&](std::size_t at) {
        return static_cast<unsigned char>(png[at + 2]) << 8 | static_cast<unsigned char>(png[at + 3]);
    };
    EXPECT_EQ(number(16), 306);
    EXPECT_EQ(number(20), 396);
}

} // namespace
