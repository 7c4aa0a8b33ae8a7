// Documents whose signatures, usage rights or second description do not outlive a change.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <filesystem>
#include <ostream>

#include <gtest/gtest.h>

#include "tests/cli/Run.h"
#include "tests/support/PdfText.h"

namespace {

constexpr char s_signature[] = "/V << /Type /Sig /ByteRange [0 10 20 10] /Contents <00> >>";

struct Seal {
    const char *what;
    /** Goes into the signature field, the form and the catalog. */
    std::string field, form, catalog;
    /** Code of a fill, with and without --break-signatures, and what it says. */
    int exit, exitBreaking;
    const char *says;
};

class Sealed : public testing::TestWithParam<Seal> {
protected:
    std::string Document() const {
        auto objects =
            FormObjects({"/FT /Tx /T (name) /DV (standard)", "/T (sign) " + GetParam().field}, GetParam().form);
        objects[0].insert(objects[0].find("/Type /Catalog"), GetParam().catalog + " ");
        return TempFile("sealed.pdf", PdfText(objects));
    }
    /** Gives the code; the output is there exactly when it is not 2. */
    void ExpectExit(std::vector<std::string> arguments, int code) const {
        const std::string out = std::filesystem::path(TempFile("x", "")).replace_filename("out.pdf");
        arguments.insert(arguments.end(), {"-o", out});
        const Ran ran = Jackdaw(arguments);
        EXPECT_EQ(ran.exit, code) << ran;
        EXPECT_EQ(std::filesystem::exists(out), code != 2);
        EXPECT_EQ(std::count(ran.err.begin(), ran.err.end(), '\n'), code == 0 ? 0 : 1) << ran;
        EXPECT_TRUE(code == 0 || Has(ran.err, GetParam().says)) << ran;
    }
};

TEST_P(Sealed, IsChangedOnlyByThoseWhoKnow) {
    const std::string pdf = Document();
    ExpectExit({"fill", pdf, "--set", "name=x"}, GetParam().exit);
    ExpectExit({"fill", pdf, "--set", "name=x", "--break-signatures"}, GetParam().exitBreaking);
    ExpectExit({"reset", pdf, "name"}, GetParam().exit);
    EXPECT_EQ(Jackdaw({"fields", pdf}).exit, 0) << "looking breaks nothing";
    const int strict = Jackdaw({"fill", pdf, "--set", "name=x", "--strict", "-o", "-"}).exit;
    EXPECT_EQ(strict, GetParam().exit == 0 ? 0 : 2);
}

const Seal s_seals[] = {
    {"Signed", std::string("/FT /Sig ") + s_signature, "", "", 2, 0, "the document is signed"},
    {"SignedByItsWord", "/FT /Sig", "/SigFlags 3", "", 2, 0, "the document is signed"},
    {"Certified", std::string("/FT /Sig ") + s_signature, "", "/Perms << /DocMDP << >> >>", 2, 0, "certified"},
    {"Granted", "/FT /Tx", "", "/Perms << /UR3 << >> >>", 3, 3, "rights"},
    {"DescribedTwice", "/FT /Tx", "/XFA [(template) (x)]", "", 3, 3, "XFA"},
    {"NotSignedYet", "/FT /Sig", "/SigFlags 1", "", 0, 0, ""},
    {"ApprovedWithoutBytes", "/FT /Sig /V << /Type /Sig /Contents <00> >>", "", "", 0, 0, ""},
};
INSTANTIATE_TEST_SUITE_P(All, Sealed, testing::ValuesIn(s_seals),
                         [](const auto &info) { return std::string(info.param.what); });

TEST(Seals, ASignatureBelowAGroupCounts) {
    auto objects = FormObjects({"/FT /Tx /T (name)"});
    objects[0].replace(objects[0].find("/Fields ["), 9, "/Fields [5 0 R ");
    objects.push_back("<< /T (group) /FT /Sig /Kids [6 0 R] >>");
    objects.push_back(std::string("<< /T (sign) /Parent 5 0 R /Type /Annot /Subtype /Widget /Rect [0 0 0 0] ") +
                      s_signature + " >>");
    const std::string pdf = TempFile("grouped.pdf", PdfText(objects));
    EXPECT_EQ(Jackdaw({"fill", pdf, "--set", "name=x", "-o", "-"}).exit, 2);
}

} // namespace
