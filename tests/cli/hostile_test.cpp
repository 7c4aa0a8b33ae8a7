// Documents that are wrong on purpose: every command ends soon, says in one line what it could not do, and what is
// sound in the document still works.
// SPDX-License-Identifier: MIT
#include <filesystem>
#include <random>

#include <gtest/gtest.h>

#include "tests/cli/Run.h"
#include "tests/support/PdfText.h"

namespace {

using Strings = std::vector<std::string>;

const std::string s_resources =
    "/DA (/Helv 10 Tf 0 g) /DR << /Font << /Helv << /Type /Font /Subtype /Type1 /BaseFont /Helvetica >> >> >>";

const RunOptions s_brief = {"", /*fileLimit*/ 0, /*seconds*/ 60};

void ExpectCalm(const Ran &ran) {
    EXPECT_TRUE(ran.exit == 0 || ran.exit == 2 || ran.exit == 3) << ran;
    std::size_t lines = 0;
    for (std::size_t start = 0; start < ran.err.size(); ++lines) {
        ASSERT_EQ(ran.err.compare(start, 9, "jackdaw: "), 0) << ran;
        start = std::min(ran.err.find('\n', start), ran.err.size() - 1) + 1;
    }
    EXPECT_EQ(ran.exit == 0, lines == 0) << ran;
}

std::string Beside(const std::string &path, const char *name) {
    return std::filesystem::path(path).replace_filename(name);
}

/** Lists, fills, resets and draws; gives the filled file's path. */
std::string Exercise(const std::string &pdf, const Json &data = {{"good", "Yes"}}) {
    const std::string filled = Beside(pdf, "filled.pdf");
    ExpectCalm(Jackdaw({"fields", pdf, "--json"}, s_brief));
    ExpectCalm(Jackdaw({"fill", pdf, "--json", TempFile("data.json", data.dump()), "-o", filled}, s_brief));
    ExpectCalm(Jackdaw({"reset", pdf, "-o", Beside(pdf, "reset.pdf")}, s_brief));
    ExpectCalm(Jackdaw({"render", pdf, "-o", Beside(pdf, "page.png")}, s_brief));
    return filled;
}

std::string Write(const Strings &objects) {
    return TempFile("hostile.pdf", PdfText(objects));
}

const std::string s_good = "/T (good) /FT /Tx ";

// Every field gets a value, and the sound one among them keeps it.
void ExerciseFields(Strings fields) {
    Json data = {{"good", "Yes"}};
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const std::string name = "f" + std::to_string(i);
        if (fields[i].find("/T ") == std::string::npos) fields[i] += " /T (" + name + ")";
        data[name] = "Yes";
    }
    fields.insert(fields.begin() + static_cast<std::ptrdiff_t>(fields.size() / 2), s_good);
    const std::string filled = Exercise(Write(FormObjects(fields, s_resources)), data);
    EXPECT_EQ(ValueIn(filled, "good"), "Yes");
}

/** Values that hardly any key is meant to have. Object 1 is the catalog, 4 the first field; 999 is missing. */
const Strings s_values = {"null",   "true",    "-7",   "99999999999999999999", "0.5",   "(text)",
                          "/Name",  "[1 (a)]", "[[]]", "<< /A 1 >>",           "4 0 R", "1 0 R",
                          "999 0 R"};

std::string Replaced(std::string text, const std::string &value) {
    for (std::size_t at; (at = text.find('@')) != std::string::npos;) text.replace(at, 1, value);
    return text;
}

class WrongType : public testing::TestWithParam<std::string> {};

/** The parts of a text between bars. */
Strings Parts(const std::string &text) {
    Strings parts(1);
    for (const char c : text) {
        if (c == '|')
            parts.emplace_back();
        else
            parts.back() += c;
    }
    return parts;
}

const Strings s_fieldHoles =
    Parts("/FT @|/Ff @|/F @|/V @|/DV @|/Opt @|/DA @|/DR @|/MK @|/AP @|/AS @|/Rect @|/Parent @|/Kids @|/T @|/TU @|"
          "/MaxLen @|/Q @|/BS @|/Border @|/Subtype @|/P @|/I @|/TI @|/AA @|/Opt [@ (Yes)]|/AP << /N @ >>|/Kids [@]|"
          "/MK << /R @ /BC @ /BG @ /CA @ /I @ /TP @ /IF @ >>|/BS << /W @ /S @ /D @ >>|/AP << /N << /Yes @ /Off @ >> >>|"
          "/Border [0 0 @ @]|/Rect [@ @ 300 720]|/DR << /Font << /Helv @ >> >>|/AA << /K @ /F @ /V @ /C @ >>");

INSTANTIATE_TEST_SUITE_P(Field, WrongType, testing::ValuesIn(s_fieldHoles));

TEST_P(WrongType, SpoilsItsOwnFieldAtMost) {
    const std::string faces = "/AP << /N << /Yes 4 0 R >> >> ";
    const Strings kinds = {"/FT /Tx /DA (/Helv 0 Tf 0 g) ",
                           "/FT /Tx /Ff 4096 ",
                           "/FT /Btn " + faces,
                           "/FT /Btn /Ff 49152 " + faces,
                           "/FT /Btn /Ff 65536 ",
                           "/FT /Ch /Ff 131072 /Opt [(Yes)] ",
                           "/FT /Ch /Opt [(Yes) (No)] ",
                           "/FT /Sig "};
    Strings fields;
    for (const std::string &kind : kinds) {
        // The last of two equal keys is the one that counts.
        for (const std::string &value : s_values) fields.push_back(kind + Replaced(GetParam(), value));
    }
    ExerciseFields(fields);
}

TEST(WrongTypeOfDocument, EndsInOneLineOrNotAtAll) {
    const Strings holes = {
        "<< /Type /Catalog /Pages @ /AcroForm << /Fields [4 0 R] >> >>",
        "<< /Type /Catalog /Pages 2 0 R /AcroForm @ >>",
        "<< /Type /Catalog /Pages 2 0 R /AcroForm << /Fields @ >> >>",
        "<< /Type /Catalog /Pages 2 0 R /AcroForm << /Fields [@ 4 0 R @] >> >>",
        "<< /Type /Catalog /Pages 2 0 R /AcroForm << /Fields [4 0 R] /DR @ /DA @ /Q @ /CO @ /SigFlags @ >> >>",
        "<< /Type /Catalog /Pages 2 0 R /AcroForm << /Fields [4 0 R] /DR << /Font @ /Encoding @ >> >> >>",
        "<< /Type /Catalog /Pages 2 0 R /AcroForm << /Fields [4 0 R] /NeedAppearances @ >> >>",
        "<< /Type /Catalog /Pages 2 0 R /AcroForm << /Fields [4 0 R] >> /Names @ /OpenAction @ /AA @ >>",
        "<< /Type /Pages /Kids @ /Count 1 >>",
        "<< /Type /Pages /Kids [@ 3 0 R @] /Count @ >>",
        "<< /Type /Page /Parent @ /MediaBox [0 0 612 792] /Annots [4 0 R] >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox @ /Rotate @ /Contents @ /Resources @ /Annots [4 0 R] >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] /Annots @ >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 @ @] /Annots [@ 4 0 R] >>",
    };
    for (const std::string &hole : holes) {
        for (const std::string &value : s_values) {
            Strings objects = FormObjects({s_good}, s_resources);
            const std::size_t place = hole.find("/Catalog") != std::string::npos  ? 0
                                      : hole.find("/Pages ") != std::string::npos ? 1
                                                                                  : 2;
            objects[place] = Replaced(hole, value);
            SCOPED_TRACE(objects[place]);
            const std::string pdf = Write(objects);
            ExpectCalm(Jackdaw({"fill", pdf, "--set", "good=Yes", "-o", Beside(pdf, "filled.pdf")}, s_brief));
        }
    }
}

TEST(Hostile, DefaultAppearances) {
    Strings looks = Parts(
        "|/Helv|/Helv Tf|/Helv x Tf|/Helv 1e99 Tf|(((((|0 g|/Helv -5 Tf 0 g|/Helv 99999 Tf 0 g|/Gone 9 Tf 0 g|/ 9 Tf|"
        "[ 1 2|<< /A|Tf Tf Tf g rg k|/Helv 9 Tf 1 0 0 0 0 rg|\\377\\376\\000|/Helv 9 Tf -9 w 9 Tr 500 Tz|%");
    looks.push_back(std::string(70000, '1'));
    std::string longName = "/";
    longName.append(5000, 'x');
    looks.push_back(longName + " 9 Tf");
    Strings fields;
    for (const std::string &look : looks) {
        const std::string escaped = look.find('(') == std::string::npos ? look : "\\(\\(\\(";
        for (const char *kind :
             {"/FT /Tx", "/FT /Tx /Ff 4096", "/FT /Ch /Ff 131072 /Opt [(Yes)]", "/FT /Ch /Opt [(Yes)]"})
            fields.push_back(std::string(kind) + " /DA (" + escaped + ")");
    }
    ExerciseFields(fields);
}

TEST(Hostile, Measures) {
    Strings fields;
    for (const char *box :
         {"[0 0 0 0]", "[300 720 100 700]", "[0 0 99999999999 99999999999]", "[-32768 -32768 32767 32767]", "[1 2 3]",
          "[]", "[100 700 100 720]", "[100 700 100.001 700.001]", "[0 0 32767 1]"}) {
        for (const char *kind :
             {"/FT /Tx", "/FT /Tx /Ff 4096", "/FT /Ch /Opt [(Yes)]", "/FT /Btn /AP << /N << /Yes 4 0 R >> >>"}) {
            for (const char *size : {"0", "10", "32767"})
                fields.push_back(std::string(kind) + " /Rect " + box + " /DA (/Helv " + size +
                                 " Tf 0 g) /MK << /BC [0] /R 90 >> /BS << /W 32767 /S /B >>");
        }
    }
    for (const char *odd :
         {"/MaxLen -1", "/MaxLen 2147483647", "/Q 99", "/Q -1", "/Ff -1", "/Ff 2147483647", "/F -1",
          "/MK << /R 45 /BC [1 2 3 4 5 6] >>", "/OH 1e-5", "/BS << /W -5 /S /D /D [] >>", "/Border [1]"})
        fields.push_back(std::string("/FT /Tx ") + odd);
    ExerciseFields(fields);
}

TEST(Hostile, Names) {
    Strings names = Parts("|.|..|a..b|.a|a.|good|good.x|\\000\\000|\\376\\377|\\376\\377\\330\\000|x\\ny|f0");
    names.push_back(std::string(255, 'n'));
    names.push_back(std::string(40000, 'm'));
    Strings fields;
    for (const std::string &name : names) {
        fields.push_back("/FT /Tx /T (" + name + ")");
        fields.push_back("/FT /Btn /AP << /N << /" + (name.size() > 60 ? name.substr(0, 255) : std::string("On")) +
                         " 4 0 R >> >> /T (b" + name + ")");
    }
    const std::string pdf = Write(FormObjects(fields, s_resources));
    Exercise(pdf);
    // Whatever name is listed can be used.
    Json data;
    for (const auto &[name, field] : FieldsOf(pdf)) data[name] = field["type"] == "checkbox" ? "Off" : "Yes";
    const Ran ran =
        Jackdaw({"fill", pdf, "--json", TempFile("data.json", data.dump()), "-o", Beside(pdf, "all.pdf")}, s_brief);
    EXPECT_EQ(ran.exit, 0) << ran;
    EXPECT_TRUE(data.contains(std::string(253, 'n')));
}

// `fields` stand from object 4 on; `roots` are the form's list.
Strings TreeObjects(const Strings &fields, const std::string &roots) {
    Strings objects = FormObjects(fields, s_resources);
    objects[0] = "<< /Type /Catalog /Pages 2 0 R /AcroForm << /Fields [" + roots + "] " + s_resources + " >> >>";
    return objects;
}

TEST(Hostile, CyclesInTheFieldTree) {
    const std::string good = " 8 0 R";
    const Strings rest = {"/T (d) /FT /Tx", s_good};
    const std::pair<Strings, const char *> s_cases[] = {
        {{"/T (a) /Kids [4 0 R]", "/T (b) /Kids [6 0 R]", "/T (c) /Kids [5 0 R]"}, "4 0 R 5 0 R"},
        {{"/T (a) /Parent 4 0 R /FT /Tx", "/T (b) /Parent 6 0 R /FT /Tx", "/T (c) /Parent 5 0 R"}, "4 0 R 5 0 R"},
        {{"/T (a) /Kids [5 0 R]", "/T (b) /Parent 6 0 R", "/T (c) /Parent 4 0 R /Kids [5 0 R]"}, "4 0 R 5 0 R 6 0 R"},
        {{"/T (a) /FT /Tx /Kids [5 0 R 6 0 R 5 0 R]", "/Parent 4 0 R", "/Parent 4 0 R"}, "4 0 R 4 0 R 5 0 R"},
        {{"/Kids [5 0 R]", "/Kids [6 0 R]", "/Kids [4 0 R]"}, "4 0 R"},
        {{"/T (a) /Kids [1 0 R 2 0 R 3 0 R]", "/T (b) /Kids [[4 0 R]]", "/T (c) /Kids << /A 4 0 R >>"},
         "4 0 R 5 0 R 6 0 R"},
    };
    for (const auto &[fields, roots] : s_cases) {
        SCOPED_TRACE(fields[0]);
        Strings all = fields;
        all.insert(all.end(), rest.begin(), rest.end());
        const Json data = {{"good", "Yes"}, {"a", "Yes"}, {"a.b", "Yes"}, {"b", "Yes"}, {"c.b", "Yes"}};
        const std::string filled = Exercise(Write(TreeObjects(all, roots + good)), data);
        EXPECT_EQ(ValueIn(filled, "good"), "Yes");
    }
    Strings pages = FormObjects({s_good}, s_resources);
    pages[1] = "<< /Type /Pages /Kids [3 0 R 2 0 R 3 0 R] /Count 3 >>";
    Exercise(Write(pages));
}

TEST(Hostile, DeepTrees) {
    for (const bool parents : {true, false}) {
        Strings fields;
        for (int i = 0; i < 20000; ++i) {
            fields.push_back("/T (a) /Kids [" + std::to_string(i + 5) + " 0 R]" +
                             (parents && i > 0 ? " /Parent " + std::to_string(i + 3) + " 0 R" : ""));
        }
        fields.push_back("/T (leaf) /FT /Tx" + std::string(parents ? " /Parent 20003 0 R" : ""));
        fields.push_back(s_good);
        Exercise(Write(TreeObjects(fields, "4 0 R 20005 0 R")));
    }
    std::string nested = std::string(20000, '[') + std::string(20000, ']');
    ExerciseFields({"/FT /Ch /Opt " + nested, "/FT /Tx /V " + nested});
}

TEST(Hostile, ManyOfAKind) {
    Strings same(3000, "/T (same) /FT /Tx");
    same.push_back(s_good);
    EXPECT_EQ(ValueIn(Exercise(Write(FormObjects(same, s_resources)), {{"same", "Yes"}, {"good", "Yes"}}), "good"),
              "Yes");
    std::string options;
    for (int i = 0; i < 50000; ++i) options += "(choice " + std::to_string(i) + ") ";
    ExerciseFields({"/FT /Ch /Ff 131072 /Opt [" + options + "(Yes)]", "/FT /Ch /Opt [" + options + "(Yes)]",
                    "/FT /Tx /Ff 4096 /DA (/Helv 0 Tf 0 g) /V (" + std::string(100000, 'w') + ")"});
}

/** Documents that a small file makes large, and how each is turned down. */
struct Exploding {
    const char *name;
    std::string (*text)();
    Strings command;
    const char *line;
};

class Explodes : public testing::TestWithParam<Exploding> {};

TEST_P(Explodes, InOneLineWithNothingDone) {
    const std::string out = NewName();
    Strings command = GetParam().command;
    command.insert(command.begin() + 1, TempFile("small.pdf", GetParam().text()));
    if (command.front() != "fields") command.insert(command.end(), {"-o", out});
    const Ran ran = Jackdaw(command, {"", /*fileLimit*/ 0, /*seconds*/ 300});
    EXPECT_EQ(ran.exit, 2) << ran;
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(CountLines(ran.err), 1u) << ran;
    EXPECT_TRUE(Has(ran.err, GetParam().line)) << ran;
    EXPECT_FALSE(std::filesystem::exists(out));
}

/** Forty forms, each of which draws the next ten times. */
std::string FormsWithinForms() {
    const std::string start = "/Type /XObject /Subtype /Form /BBox [0 0 9 9] /Resources << /XObject << /X ";
    Strings more = {StreamObject("", "/X Do")};
    std::string ten;
    for (int i = 0; i < 10; ++i) ten += "/X Do ";
    for (int i = 0; i < 40; ++i) more.push_back(StreamObject(start + std::to_string(i + 6) + " 0 R >> >>", ten));
    more.push_back(StreamObject("/Type /XObject /Subtype /Form /BBox [0 0 9 9]", "0 0 9 9 re f"));
    Strings objects = PageObjects("", more);
    objects[2] =
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 99 99] /Contents 4 0 R /Resources << /XObject << /X 5 0 R "
        ">> >> >>";
    return PdfText(objects);
}

/** A radio group of more states than there are atoms. */
std::string StatesWithoutEnd() {
    constexpr int count = 66000;
    std::string kids;
    Strings more = {""};
    for (int i = 0; i < count; ++i) {
        kids += std::to_string(i + 5) + " 0 R ";
        more.push_back("<< /Parent 4 0 R /Type /Annot /Subtype /Widget /Rect [0 0 9 9] /AP << /N << /s" +
                       std::to_string(i) + " 2 0 R >> >> >>");
    }
    more.front() = "<< /T (r) /FT /Btn /Ff 32768 /Kids [" + kids + "] >>";
    return PdfText(PageObjects("/AcroForm << /Fields [4 0 R] >>", more));
}

/** Trailers within trailers, each of which is read as deep as the reader goes. */
std::string TrailersWithinTrailers() {
    std::string text = "%PDF-1.7\n1 0 obj\n<< /Type /Catalog >>\nendobj\n";
    while (text.size() < 2'000'000) text += "trailer <<\n";
    return text;
}

INSTANTIATE_TEST_SUITE_P(Small, Explodes,
                         testing::Values(Exploding{"Forms", &FormsWithinForms, {"render"}, "takes longer than 10 s"},
                                         Exploding{"Trailers", &TrailersWithinTrailers, {"fields"}, "more places"},
                                         Exploding{"States", &StatesWithoutEnd, {"fill", "--set", "r=s5"}, "65,535"}),
                         [](const auto &row) { return row.param.name; });

TEST(Hostile, BrokenFiles) {
    const std::string whole = PdfText(FormObjects({s_good, "/T (b) /FT /Ch /Opt [(x) (y)]"}, s_resources));
    for (std::size_t length = 0; length < whole.size(); length += whole.size() / 16)
        Exercise(TempFile("cut.pdf", whole.substr(0, length)));
    for (const char *text :
         {"%PDF-1.4", "%PDF-1.7\ntrailer << /Root 1 0 R >>", "startxref\n99999999999\n%%EOF", "\xff\xfe\0\0"})
        ExpectCalm(Jackdaw({"fields", TempFile("garbage.pdf", text)}, s_brief));
    std::mt19937 random(20);
    for (int round = 0; round < 24; ++round) {
        std::string broken = whole;
        for (int i = 0; i < 12; ++i) broken[random() % broken.size()] = static_cast<char>(random());
        const std::string pdf = TempFile("broken.pdf", broken);
        SCOPED_TRACE(pdf);
        ExpectCalm(
            Jackdaw({"fill", pdf, "--set", "good=Yes", "--set", "b=y", "-o", Beside(pdf, "filled.pdf")}, s_brief));
    }
}

} // namespace
