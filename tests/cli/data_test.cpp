// Names and values on their way in and out: JSON both ways, names that are hard to give, texts that are hard to show.
// SPDX-License-Identifier: MIT
#include <array>
#include <sstream>
#include <tuple>

#include <gtest/gtest.h>

#include "tests/cli/Run.h"
#include "tests/support/PdfText.h"

namespace {

// One object for each field, with whatever is in it: what is as it was is left alone, read-only fields too.
TEST(Fill, TakesTheRecordsThatFieldsPrints) {
    const std::string form =
        TempFile("form.pdf",
                 PdfText(FormObjects({"/T (given) /FT /Tx /V (old)", "/T (locked) /FT /Tx /Ff 1 /V (kept)",
                                      "/T (days) /FT /Ch /Ff 2097152 /Opt [(Mon) (Tue) (Wed)] /V [(Mon) (Wed)]",
                                      "/T (odd) /FT /Ch /Opt [(Mon)] /V (Sun)", "/T (send) /FT /Btn /Ff 65536",
                                      "/T (agree) /FT /Btn", "/T (secret) /FT /Tx /Ff 8192", "/T (sign) /FT /Sig"})));
    const std::string out = NewName(), changed = NewName();
    std::string records = Jackdaw({"fields", form, "--json"}).out;
    const Ran same = Jackdaw({"fill", form, "--json", "-", "-o", out}, {records});
    EXPECT_EQ(same.exit, 0) << same;
    EXPECT_EQ(Jackdaw({"fields", out, "--json"}).out, records);
    Json array = Json::array();
    std::istringstream lines(records);
    for (std::string line; std::getline(lines, line);) array.push_back(Json::parse(line));
    array[0]["value"] = "new";
    array[1]["value"] = "forced";
    const Ran ran = Jackdaw({"fill", form, "--json", "-", "-o", changed}, {array.dump()});
    EXPECT_EQ(ran.exit, 3) << ran;
    EXPECT_EQ(ran.err, "jackdaw: locked: the field is read-only\n");
    EXPECT_EQ(ValueIn(changed, "given"), "new");
    // An object that is no field's record holds names and values, whatever they are called.
    const Ran plain = Jackdaw({"fill", form, "--json", "-", "-o", out}, {R"({"name": "given", "value": "x"})"});
    EXPECT_EQ(plain.exit, 2) << plain;
    EXPECT_TRUE(Has(plain.err, "value: no such field")) << plain;
}

TEST(Fill, ListsTakeAsManyChoicesAsTheirFlagsSay) {
    const std::string options = " /FT /Ch /Opt [[(m) (Mon)] (Tue) (Wed)]", several = " /Ff 2097152";
    const std::string form =
        TempFile("lists.pdf", PdfText(FormObjects({"/T (several)" + options + several, "/T (one)" + options,
                                                   "/T (text) /FT /Tx", "/T (combo) /Ff 131072" + options})));
    const std::tuple<const char *, const char *, Json, const char *> s_cases[] = {
        {"several", R"(["Wed", "Mon"])", {"Wed", "m"}, ""},
        {"several", R"(["Tue"])", "Tue", ""},
        {"several", "[]", nullptr, ""},
        {"several", R"(["Tue", "Sun"])", nullptr, "no such choice \"Sun\""},
        {"several", R"(["Tue", 3])", nullptr, "no such choice \"3\""},
        {"several", R"(["Tue", null])", nullptr, "nor a list of texts"},
        {"one", R"(["Mon"])", "m", ""},
        {"one", R"(["Mon", "Tue"])", nullptr, "takes one choice, not 2"},
        {"combo", R"(["Mon", "Tue"])", nullptr, "takes one choice, not 2"},
        {"text", R"(["x"])", nullptr, "takes one value"}};
    for (const auto &[name, value, stored, says] : s_cases) {
        SCOPED_TRACE(value);
        const std::string out = NewName(), data = "{\"" + std::string(name) + "\": " + value + "}";
        const Ran ran = Jackdaw({"fill", form, "--json", "-", "-o", out}, {data});
        EXPECT_EQ(ran.exit, *says ? 2 : 0) << ran;
        EXPECT_TRUE(Has(ran.err, says)) << ran;
        if (ran.exit != 0) continue;
        EXPECT_EQ(ValueIn(out, name), stored);
    }
}

TEST(Fill, NamesMayHoldEquals) {
    const std::string pdf =
        TempFile("equals.pdf", PdfText(FormObjects({"/FT /Tx /T (a)", "/FT /Tx /T (a=b)", "/FT /Tx /T (a=b=c=d=e)"})));
    const struct {
        const char *set, *name, *value;
    } s_cases[] = {{"a=1", "a", "1"},
                   {"a=c=1", "a", "c=1"},
                   {"a==", "a", "="},
                   {"a=b=1", "a=b", "1"},
                   {"a=b=c=d=1", "a=b", "c=d=1"},
                   {"a=b=c=d=e=", "a=b=c=d=e", ""},
                   {"a=b=c=d=e==1", "a=b=c=d=e", "=1"}};
    for (const auto &[set, name, value] : s_cases) {
        const std::string out = NewName();
        const Ran ran = Jackdaw({"fill", pdf, "--set", set, "-o", out});
        EXPECT_EQ(ran.exit, 0) << ran;
        EXPECT_EQ(ValueIn(out, name), *value ? Json(value) : Json(nullptr)) << set;
    }
}

TEST(Fill, SuggestsNearNamesAndCountsTheRest) {
    std::vector<std::string> fields, wrong = {"fill", "", "--set", "address.street[0]=x"};
    for (int i = 0; i < 3000; ++i) fields.push_back("/FT /Tx /T (field" + std::to_string(i) + ")");
    for (const char *name : {"address.street[0]", "Signature date", "vorname"})
        fields.push_back("/FT /Tx /T (" + std::string(name) + ")");
    wrong[1] = TempFile("many.pdf", PdfText(FormObjects(fields)));
    const std::pair<const char *, const char *> s_near[] = {{"street", "address.street[0]"},
                                                            {"Vorname", "vorname"},
                                                            {"nachname", "vorname"},
                                                            {"signature-date", "Signature date"},
                                                            {"filed7", "field7"}};
    for (const auto &[name, near] : s_near) wrong.insert(wrong.end(), {"--set", std::string(name) + "=x"});
    for (int i = 0; i < 2000; ++i) wrong.insert(wrong.end(), {"--set", "none" + std::to_string(i) + "=x"});
    wrong.insert(wrong.end(), {"-o", NewName()});
    const Ran ran = Jackdaw(wrong);
    EXPECT_EQ(ran.exit, 3) << ran;
    EXPECT_EQ(CountLines(ran.err), 21U) << ran;
    for (const auto &[name, near] : s_near)
        EXPECT_TRUE(Has(ran.err, std::string(name) + ": no such field; the nearest of 3003: " + near)) << ran;
    EXPECT_TRUE(Has(ran.err, "no such field: 1985 more names\n")) << ran;
}

TEST(Fill, CountsScriptsThatNothingRuns) {
    const std::string script = " << /S /JavaScript /JS (1) >> ";
    std::vector<std::string> objects =
        FormObjects({"/FT /Tx /T (plain)", "/FT /Tx /T (formatted) /AA << /F" + script + "/K" + script + ">>",
                     "/FT /Tx /T (total) /AA << /C" + script + ">>"});
    const std::string quiet = TempFile("quiet.pdf", PdfText(objects));
    objects[0].replace(objects[0].find("/Fields"), 7, "/CO [6 0 R] /Fields");
    const std::string calculated = TempFile("calculated.pdf", PdfText(objects));
    const std::tuple<std::string, const char *, const char *> s_cases[] = {
        {quiet, "plain=1", ""},
        {quiet, "formatted=1", "scripts not run: 2;"},
        {calculated, "plain=1", "scripts not run: 1;"},
        {calculated, "formatted=1", "run: 3;"}};
    for (const auto &[pdf, set, says] : s_cases) {
        const Ran ran = Jackdaw({"fill", pdf, "--set", set, "-o", NewName()});
        EXPECT_EQ(ran.exit, *says ? 3 : 0) << ran;
        EXPECT_EQ(CountLines(ran.err), *says ? 1U : 0U) << ran;
        EXPECT_TRUE(Has(ran.err, says)) << ran;
    }
}

// Wide characters take two columns and marks none; what is cut says so, and `--json` has all of it.
TEST(Fields, TableCutsLongValuesByColumns) {
    const auto wide = [](int count) {
        std::string text = "\\376\\377";
        for (int i = 0; i < count; ++i) text += "\\145\\207\\003\\001";
        return text;
    };
    const std::string pdf = TempFile("wide.pdf", PdfText(FormObjects({"/FT /Tx /T (a) /V (" + wide(25) + ")",
                                                                      "/FT /Tx /T (b) /Ff 1 /V (" + wide(26) + ")"})));
    const std::string one = "文\u0301";
    const auto times = [&](int count) {
        std::string text;
        for (int i = 0; i < count; ++i) text += one;
        return text;
    };
    const Ran ran = Jackdaw({"fields", pdf});
    EXPECT_TRUE(Has(ran.out, "  a     " + times(25) + "\n")) << ran;
    EXPECT_TRUE(Has(ran.out, "  b     " + times(24) + "…   readonly\n")) << ran;
    EXPECT_EQ(ValueIn(pdf, "b"), times(26));
}

// Whatever a document or an argument holds, it steers no terminal.
class Unsafe : public testing::TestWithParam<std::array<const char *, 4>> {};

INSTANTIATE_TEST_SUITE_P(Characters, Unsafe,
                         testing::Values(std::array{"\\033[31m", "\033", "\\u001b", "\\u001b"},
                                         std::array{"\\nq", "\nq", "\\n", "\\n"},
                                         std::array{"\\376\\377\\000\\233", "\xC2\x9B", "\\u009b", "\\u009b"},
                                         std::array{"\\376\\377\\000\\205", "\xC2\x85", "\\u0085", "\\u0085"},
                                         std::array{"\\376\\377\\040\\056", "\u202e", "\\u202e", "\\u202e"},
                                         std::array{"\\376\\377\\040\\150", "\u2068", "\\u2068", "\\u2068"},
                                         std::array{"\\376\\377\\040\\050", "\u2028", "\\u2028", "\\u2028"}));

TEST_P(Unsafe, AreEscapedWhereverTheyAreShown) {
    const auto [inFile, raw, inTable, inJson] = GetParam();
    const std::string value = std::string(inFile).substr(0, 8) == "\\376\\377" ? inFile : std::string("d") + inFile;
    const std::string pdf =
        TempFile("odd.pdf", PdfText(FormObjects({"/FT /Tx /T (" + value + ") /V (" + value + ")"})));
    const Ran table = Jackdaw({"fields", pdf});
    EXPECT_EQ(CountLines(table.out), 2U) << table;
    EXPECT_FALSE(Has(table.out, raw)) << table;
    EXPECT_TRUE(Has(table.out, inTable)) << table;
    const Ran json = Jackdaw({"fields", pdf, "--json"});
    EXPECT_FALSE(Has(json.out, raw)) << json;
    EXPECT_TRUE(Has(json.out, inJson)) << json;
    const Ran warned = Jackdaw({"fill", pdf, "--set", std::string(raw) + "\x9B=x", "-o", NewName()});
    EXPECT_FALSE(Has(warned.err, raw)) << warned;
    EXPECT_FALSE(Has(warned.err, "\x9B")) << warned;
    EXPECT_TRUE(Has(warned.err, inTable)) << warned;
}

} // namespace
