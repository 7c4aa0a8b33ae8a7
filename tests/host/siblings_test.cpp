// The sibling "BaseTool" and the text conversions of the host.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include "CoreHFT.h"
#include "PIFrame.h"
#include "SiblingHFTs.h"
#include "siblings/TextConvert.h"

using namespace jackdaw;
using std::string_literals::operator""s;

namespace {

struct Converted {
    std::string bytes;
    std::int32_t error;
    bool operator==(const Converted &) const = default;
};

Converted toUCS(const char *converter, const std::string &text, std::int32_t room = 64) {
    char target[64];
    std::int32_t error = -1;
    const std::int32_t count = BaseToolHostToUCS(BaseToolGetConverter(converter), text.data(),
                                                 static_cast<std::int32_t>(text.size()), target, room, &error);
    return {std::string(target, static_cast<std::size_t>(count)), error};
}

Converted fromUCS(const char *converter, const std::string &text, std::int32_t room = 64) {
    char target[64];
    std::int32_t error = -1;
    const std::int32_t count = BaseToolUCSToHost(BaseToolGetConverter(converter), text.data(),
                                                 static_cast<std::int32_t>(text.size()), target, room, &error);
    return {std::string(target, static_cast<std::size_t>(count)), error};
}

/** The process's encoding for the length of a test. */
class InLocale {
public:
    explicit InLocale(const char *name) : former_(std::setlocale(LC_CTYPE, nullptr)) {
        std::setlocale(LC_CTYPE, name);
    }
    ~InLocale() {
        std::setlocale(LC_CTYPE, former_.c_str());
    }

private:
    std::string former_;
};

} // namespace

TEST(BaseTool, MetricsOfTheFourteenFonts) {
    BaseToolFontMetrics metrics{};
    std::int32_t widths[256];
    ASSERT_TRUE(BaseToolGetFontMetrics("Helvetica", &metrics, widths));
    EXPECT_EQ(metrics.bboxLeft, -166);
    EXPECT_EQ(metrics.bboxTop, 931);
    EXPECT_EQ(metrics.descender, -207);
    EXPECT_EQ(widths['A'], 667);
    EXPECT_EQ(widths[160], 556); // the Euro of PDFDocEncoding
    EXPECT_EQ(widths[127], 0);
    std::int32_t roman[256];
    ASSERT_TRUE(BaseToolGetFontMetrics("Times", &metrics, widths));
    ASSERT_TRUE(BaseToolGetFontMetrics("Times-Roman", &metrics, roman));
    EXPECT_TRUE(std::equal(widths, widths + 256, roman));
    ASSERT_TRUE(BaseToolGetFontMetrics("Symbol", &metrics, widths));
    EXPECT_EQ(widths[160], 750);
    EXPECT_EQ(metrics.ascender, 1010);
    EXPECT_FALSE(BaseToolGetFontMetrics("Arial", &metrics, widths));
    EXPECT_FALSE(BaseToolGetFontMetrics(nullptr, &metrics, widths));
    EXPECT_NE(KRGetHFT(KRAtomFromString("BaseTool"), BaseToolHFTVersion), nullptr);
}

TEST(BaseTool, PDFDocEncodingBothWays) {
    int lacking = 0;
    for (int code = 0; code < 256; ++code) {
        const std::string text(1, static_cast<char>(code));
        const Converted unicode = toUCS("PDFDocEncoding", text);
        if (unicode.error != BaseToolOK) {
            ++lacking;
            continue;
        }
        EXPECT_EQ(fromUCS("PDFDocEncoding", unicode.bytes), (Converted{text, BaseToolOK})) << code;
    }
    EXPECT_EQ(lacking, 3);
    EXPECT_EQ(toUCS("PDFDocEncoding", "\xA0\x05"), (Converted{"\x20\xAC\x00\x05"s, BaseToolOK}));
    EXPECT_EQ(fromUCS("PDFDocEncoding", "\0a\x30\x42\0b"s), (Converted{"a", BaseToolNotConvertible}));
    EXPECT_EQ(fromUCS("PDFDocEncoding", "\0a\0"s), (Converted{"a", BaseToolNotConvertible}));
}

TEST(BaseTool, ConvertersStopWhereTheyMust) {
    EXPECT_EQ(toUCS("UTF-8", "\xC3\xA4x"), (Converted{"\0\xE4\0x"s, BaseToolOK}));
    EXPECT_EQ(toUCS("UTF-8", "abc", 5), (Converted{"\0a\0b"s, BaseToolTargetTooSmall}));
    EXPECT_EQ(toUCS("UTF-8", "a\xF0\x9F\x98\x80"), (Converted{"\0a"s, BaseToolNotConvertible}));
    EXPECT_EQ(toUCS("UTF-8", "a\xC3"), (Converted{"\0a"s, BaseToolNotConvertible}));
    EXPECT_EQ(fromUCS("UTF-8", "\0a\xD8\x3D\xDE\x00"s), (Converted{"a", BaseToolNotConvertible}));
    EXPECT_EQ(fromUCS("UTF-8", "\0a\x30\x42"s, 3), (Converted{"a", BaseToolTargetTooSmall}));
    EXPECT_EQ(toUCS("UTF-8", ""), (Converted{"", BaseToolOK}));
    // The backslash of Shift-JIS is a backslash, and its half-width letters have places of their own.
    EXPECT_EQ(toUCS("Shift-JIS", "\\\xB1\x82\xA0"), (Converted{"\0\\\xFF\x71\x30\x42"s, BaseToolOK}));
    EXPECT_EQ(fromUCS("Shift-JIS", "\x30\x42"s), (Converted{"\x82\xA0", BaseToolOK}));
    EXPECT_EQ(BaseToolGetConverter("KOI8-R"), nullptr);
    EXPECT_EQ(BaseToolGetConverter(nullptr), nullptr);
    EXPECT_EQ(Protect([] { BaseToolHostToUCS(nullptr, "a", 1, nullptr, 0, nullptr); }), KRErrBadParam);
    EXPECT_NE(ConverterOfEncoding("ISO-8859-15"), nullptr);
    EXPECT_EQ(ConverterOfEncoding("UTF-8//IGNORE"), nullptr);
    EXPECT_EQ(ConverterOfEncoding("no such encoding"), nullptr);
}

TEST(HostText, FollowsTheLocale) {
    const InLocale utf8("C.UTF-8");
    EXPECT_EQ(toUCS("Host", "\xE2\x82\xAC"), (Converted{"\x20\xAC", BaseToolOK}));
    EXPECT_EQ(HostToPDFDoc("\xE2\x82\xAC"), "\xA0");
    {
        const InLocale ascii("C");
        bool lost = false;
        EXPECT_EQ(PDFDocToHost("a\xA0", &lost), "a?");
        EXPECT_TRUE(lost);
        EXPECT_EQ(toUCS("Host", "\xC3"), (Converted{"", BaseToolNotConvertible}));
    }
    EXPECT_EQ(PDFDocToHost("a\xA0"), "a\xE2\x82\xAC");
}

TEST(HostText, SubstitutesWhatIsLacking) {
    const InLocale utf8("C.UTF-8");
    bool lost = false;
    EXPECT_EQ(HostToPDFDoc("a\xE3\x81\x82\xF0\x9F\x98\x80z", &lost), "a\x80\x80z");
    EXPECT_TRUE(lost);
    EXPECT_EQ(HostToUnicode("a\xFFz"), "\0a\xFF\xFD\0z"s);
    EXPECT_EQ(UnicodeToHost("\0a\xD8\x00\0z"s), "a?z");
    EXPECT_EQ(UnicodeToHost("\0a\0"s), "a?");
    EXPECT_EQ(PDFDocToHost("\x7F"), "\xEF\xBF\xBD");
}

TEST(HostText, TextStringsLoseNothing) {
    const InLocale utf8("C.UTF-8");
    const std::string smile = "\xF0\x9F\x98\x80";
    EXPECT_EQ(HostToTextString("\xC3\xA4"), "\xE4");
    EXPECT_EQ(HostToTextString(smile), "\xFE\xFF\xD8\x3D\xDE\x00"s);
    EXPECT_EQ(TextStringToHost(HostToTextString(smile)), smile);
    // These two letters are the mark's bytes in PDFDocEncoding.
    const std::string marked = "\xC3\xBE\xC3\xBF";
    EXPECT_EQ(HostToTextString(marked), "\xFE\xFF\0\xFE\0\xFF"s);
    EXPECT_EQ(TextStringToHost(HostToTextString(marked)), marked);
    // Others write UTF-8 behind its mark, whose bytes are three letters otherwise.
    EXPECT_EQ(TextStringToHost("\xEF\xBB\xBF" + smile), smile);
    const std::string letters = "\xC3\xAF\xC2\xBB\xC2\xBF";
    EXPECT_EQ(TextStringToHost(HostToTextString(letters)), letters);
    EXPECT_EQ(TextStringToHost("\xEF\xBB\xBF\xE9"), letters + "\xC3\xA9");
    const InLocale ascii("C");
    EXPECT_EQ(TextStringToUTF8(UTF8ToTextString(smile + "\xE2\x82\xAC")), smile + "\xE2\x82\xAC");
    std::string longText;
    for (int i = 0; i < 5000; ++i) longText += smile;
    EXPECT_EQ(TextStringToUTF8(UTF8ToTextString(longText)), longText);
}
