// EStr and the text utilities below it: conversions, cutting, searching, objects, hostile content.
// SPDX-License-Identifier: MIT
#include <clocale>
#include <string>

#include <gtest/gtest.h>

#include "Common/src/miEStr.h"
#include "Common/src/miKanji.h"
#include "Common/src/miUtils.h"
#include "CoreHFT.h"
#include "DocModelHFT.h"
#include "KernelSupportHFT.h"
#include "LexHFT.h"
#include "PIFrame.h"
#include "SiblingHFTs.h"
#include "base/FormStr.h"
#include "base/miKanjiFont.h"
#include "tests/support/HostFixture.h"

namespace {

using namespace std::string_literals;

const std::string s_mark = "\xFE\xFF";
/** "日本" and a bullet as host text, as UCS-2 units, as Shift-JIS. */
const std::string s_nihonUTF8 = "\xE6\x97\xA5\xE6\x9C\xAC", s_nihonUCS = "\x65\xE5\x67\x2C",
                  s_nihonSJIS = "\x93\xFA\x96\x7B";
const std::string s_bulletUTF8 = "\xE2\x80\xA2";

std::string Bytes(const EStr *str) {
    return {str->bytes, str->length};
}

EStrPtr Make(const std::string &bytes, std::int32_t encoding) {
    EStrPtr str(EStrNewImpl(nullptr, EStrHost));
    EStrSetBytesSized(str.get(), bytes.data(), bytes.size(), encoding);
    return str;
}

EStrPtr To(const std::string &bytes, std::int32_t from, std::int32_t to) {
    EStrPtr str = Make(bytes, from);
    EStrSetEncoding(str.get(), to);
    return str;
}

void ExpectWhole(const EStr *str, std::int32_t encoding, const std::string &bytes) {
    EXPECT_EQ(str->encoding, encoding);
    EXPECT_EQ(Bytes(str), bytes);
    ASSERT_GE(str->capacity, str->length + 2);
    EXPECT_EQ(str->bytes[str->length], 0);
    EXPECT_EQ(str->bytes[str->length + 1], 0);
}

class EStrTest : public testing::Test {
protected:
    void SetUp() override {
        locale_ = std::setlocale(LC_CTYPE, nullptr);
        std::setlocale(LC_CTYPE, "C.UTF-8");
        TessellaKRAtoms();
    }
    void TearDown() override {
        std::setlocale(LC_CTYPE, locale_.c_str());
    }
    std::string locale_;
};

TEST_F(EStrTest, TagOfNewStrings) {
    ExpectWhole(EStrPtr(EStrNewImpl("abc", EStrText)).get(), EStrPDFDoc, "abc");
    ExpectWhole(EStrPtr(EStrNewImpl("\xFE\xFF\0A\0", EStrText)).get(), EStrUCS2, "\xFE\xFF\0A"s);
    ExpectWhole(EStrPtr(EStrNewImpl("AB", EStrUCS2)).get(), EStrPDFDoc, "AB");
    const EStrPtr bare(EStrNewImpl(nullptr, EStrUCS2));
    ExpectWhole(bare.get(), EStrUCS2, s_mark);
    EXPECT_TRUE(EStrIsNull(bare.get()));
    EXPECT_EQ(EStrGetCharLen(bare.get()), 0);
    EXPECT_TRUE(EStrIsNull(nullptr));
    // A hostile string: an odd last byte is no unit.
    ExpectWhole(Make(s_mark + "\0AB"s, EStrUCS2).get(), EStrUCS2, s_mark + "\0A"s);
}

TEST_F(EStrTest, ConvertsWithoutLoss) {
    ExpectWhole(To("abc", EStrHost, EStrText).get(), EStrPDFDoc, "abc");
    ExpectWhole(To("caf\xC3\xA9 \xE2\x82\xAC", EStrHost, EStrText).get(), EStrPDFDoc, "caf\xE9 \xA0");
    ExpectWhole(To(s_nihonUTF8, EStrHost, EStrText).get(), EStrUCS2, s_mark + s_nihonUCS);
    ExpectWhole(To(s_mark + s_nihonUCS, EStrUCS2, EStrHost).get(), EStrHost, s_nihonUTF8);
    ExpectWhole(To(s_nihonSJIS, EStrShiftJIS, EStrHost).get(), EStrHost, s_nihonUTF8);
    ExpectWhole(To(s_nihonUTF8, EStrHost, EStrShiftJIS).get(), EStrShiftJIS, s_nihonSJIS);
    ExpectWhole(To(s_mark + "\0a"s, EStrUCS2, EStrText).get(), EStrPDFDoc, "a");
    // Text that begins with the letters that the mark's bytes are in PDFDocEncoding.
    const std::string letters = s_mark + "\0\xFE\0\xFF\0a"s;
    ExpectWhole(To("\xC3\xBE\xC3\xBF"
                   "a",
                   EStrHost, EStrText)
                    .get(),
                EStrUCS2, letters);
    const EStrPtr doc = To(letters, EStrUCS2, EStrPDFDoc);
    EStrSetEncoding(doc.get(), EStrText);
    ExpectWhole(doc.get(), EStrUCS2, letters);
    // What begins with another letter stays as it is, codes that mean nothing included.
    ExpectWhole(To("\xE9\x9F", EStrPDFDoc, EStrText).get(), EStrPDFDoc, "\xE9\x9F");
    // Only the tag of an empty string changes, with the mark that belongs to it.
    ExpectWhole(To("", EStrHost, EStrUCS2).get(), EStrUCS2, s_mark);
    ExpectWhole(To(s_mark, EStrUCS2, EStrText).get(), EStrPDFDoc, "");
    // 24 is a control code to the host and a breve to PDF.
    ExpectWhole(To("\x18", EStrPDFDoc, EStrHost).get(), EStrHost, "\xCB\x98");
}

TEST_F(EStrTest, EachCharacterThatIsLackingCostsOneBullet) {
    ExpectWhole(To("a" + s_nihonUTF8 + "b", EStrHost, EStrPDFDoc).get(), EStrPDFDoc, "a\x80\x80"s + "b");
    ExpectWhole(To(s_mark + "\xFF\x9B", EStrUCS2, EStrPDFDoc).get(), EStrPDFDoc, "\xA0");
    // Beyond the basic plane, and bytes that are no character at all: the rest of the text stays.
    ExpectWhole(To("a\xF0\x9F\x98\x80z", EStrHost, EStrUCS2).get(), EStrUCS2, s_mark + "\0a\x20\x22\0z"s);
    ExpectWhole(To("a\xFFz\xE6\x97", EStrHost, EStrPDFDoc).get(), EStrPDFDoc, "a\x80z\x80\x80");
    ExpectWhole(To(s_mark + "\xD8\x3D\0z"s, EStrUCS2, EStrHost).get(), EStrHost, s_bulletUTF8 + "z");
    std::setlocale(LC_CTYPE, "C");
    ExpectWhole(To("caf\xE9", EStrPDFDoc, EStrHost).get(), EStrHost, "caf?");
}

TEST_F(EStrTest, LongTextsAreCutAtACharacterAndNeverWrap) {
    std::string text = "x";
    while (text.size() < 70000) text += s_nihonUTF8;
    const EStrPtr host(EStrNewImpl(text.c_str(), EStrHost));
    EXPECT_EQ(host->length, 65533 - (65533 - 1) % 3);
    ExpectWhole(host.get(), EStrHost, text.substr(0, host->length));

    const EStrPtr wide = Make(s_mark + std::string(70001, 'A'), EStrUCS2);
    EXPECT_EQ(wide->length, 65532);
    EStrCat(wide.get(), "more");
    EXPECT_EQ(wide->length, 65532);
    const EStrPtr sjis = Make("x" + std::string(70000, '\x93'), EStrShiftJIS);
    EXPECT_EQ(sjis->length, 65533);

    // As many units would not fit, yet the text goes from one byte encoding to the other whole.
    const EStrPtr back = To("\xC3\xA9" + std::string(60000, 'e'), EStrHost, EStrPDFDoc);
    ExpectWhole(back.get(), EStrPDFDoc, "\xE9" + std::string(60000, 'e'));

    const EStrPtr number(EStrNewImpl("", EStrHost));
    EStrPrintf(number.get(), "%070000d", 1);
    EXPECT_EQ(number->length, EStrMaxLength);
}

TEST_F(EStrTest, Concatenates) {
    const EStrPtr host = Make("a", EStrHost), doc = Make("\xE9", EStrPDFDoc),
                  wide = Make(s_mark + s_nihonUCS, EStrUCS2);
    const EStrPtr empty = Make("", EStrShiftJIS);
    const EStrPtr all(EStrNewFromEStr(host.get(), doc.get(), empty.get(), wide.get(), nullptr, host.get()));
    ExpectWhole(all.get(), EStrHost, "a\xC3\xA9" + s_nihonUTF8);
    EStrCatEStr(wide.get(), doc.get(), wide.get(), nullptr);
    ExpectWhole(wide.get(), EStrUCS2, s_mark + s_nihonUCS + "\0\xE9"s + s_nihonUCS);

    const EStrPtr marked = Make(s_mark + "\0x"s, EStrUCS2);
    EStrCat(marked.get(), "\xFE\xFF\0y\0");
    EStrCat(marked.get(), "\xC3\xA9"); // host text, though it should have had a mark
    EStrCat(marked.get(), marked->bytes);
    EStrPrepend(marked.get(), "\xFE\xFF\0<\0");
    ExpectWhole(marked.get(), EStrUCS2, s_mark + "\0<\0x\0y\0\xE9\0x\0y\0\xE9"s);
}

TEST_F(EStrTest, SubstringsReplacementAndSearch) {
    const EStrPtr out(EStrNewImpl("", EStrHost)), text = Make("hello", EStrHost);
    const auto sub = [&](std::int32_t start, std::int32_t count) {
        EStrSubstr(out.get(), text.get(), start, count);
        return Bytes(out.get());
    };
    EXPECT_EQ(sub(1, 3), "ell");
    EXPECT_EQ(sub(-2, 4), "he");
    EXPECT_EQ(sub(3, 99), "lo");
    EXPECT_EQ(sub(1, -5), "ello");
    EXPECT_EQ(sub(4, -2), "");
    EXPECT_EQ(sub(99, INT32_MAX), "");

    const EStrPtr wide = Make(s_mark + "\0a\x61\0\0a"s, EStrUCS2), a = Make("a", EStrHost),
                  with = Make("\xE9", EStrPDFDoc);
    EXPECT_EQ(EStrFindStr(wide.get(), a.get(), 1), 2); // 0x6100 holds the bytes of "a" across two units
    EXPECT_EQ(EStrIndexOf(wide.get(), 'a', /*forward*/ false), 2);
    EXPECT_EQ(EStrIndexOf(wide.get(), 0x6100, /*forward*/ true), 1);
    EXPECT_EQ(EStrCharAt(wide.get(), 1), 0x6100);
    EXPECT_EQ(EStrCharAt(wide.get(), 3), 0);
    EStrReplace(wide.get(), a.get(), with.get());
    ExpectWhole(wide.get(), EStrUCS2, s_mark + "\0\xE9\x61\0\0\xE9"s);
    EStrReplace(text.get(), Make("l", EStrHost).get(), nullptr);
    EXPECT_EQ(Bytes(text.get()), "heo");
    // The second byte of this character is a backslash.
    const EStrPtr sjis = Make("\x83\x5C\x5C", EStrShiftJIS);
    EStrReplace(sjis.get(), Make("\\", EStrShiftJIS).get(), Make("/", EStrShiftJIS).get());
    EXPECT_EQ(Bytes(sjis.get()), "\x83\x5C/");

    const EStrPtr tagged = Make("x<b>y</b>z", EStrHost), open = Make("<b>", EStrPDFDoc),
                  close = Make("</b>", EStrPDFDoc);
    EXPECT_EQ(EStrSnarf(tagged.get(), open.get(), close.get(), out.get()), 9);
    EXPECT_EQ(Bytes(out.get()), "y");
    EXPECT_EQ(EStrSnarf(tagged.get(), nullptr, Make("?", EStrHost).get(), out.get()), 10);
    EXPECT_EQ(Bytes(out.get()), "x<b>y</b>z");
    EXPECT_EQ(EStrSnarf(tagged.get(), Make("?", EStrHost).get(), nullptr, out.get()), -1);
}

TEST_F(EStrTest, TruncatesStripsAndCompares) {
    const EStrPtr host = Make("a" + s_nihonUTF8, EStrHost), wide = Make(s_mark + s_nihonUCS, EStrUCS2);
    EStrTrunc(host.get(), 9);
    EXPECT_EQ(EStrGetLen(host.get()), 7);
    EStrTrunc(host.get(), 5);
    EXPECT_EQ(Bytes(host.get()), "a" + s_nihonUTF8.substr(0, 3));
    EStrTrunc(wide.get(), 1);
    ExpectWhole(wide.get(), EStrUCS2, s_mark + s_nihonUCS.substr(0, 2));
    const EStrPtr spaced = Make(s_mark + "\0 \0\t\0x\0 "s, EStrUCS2), plain = Make("x", EStrPDFDoc);
    EStrStrip(spaced.get());
    ExpectWhole(spaced.get(), EStrUCS2, s_mark + "\0x"s);
    EXPECT_EQ(EStrCmp(spaced.get(), plain.get()), 0);
    EXPECT_EQ(EStrCmp(plain.get(), spaced.get()), 0);
    EXPECT_LT(EStrCmp(plain.get(), Make("\xE9", EStrPDFDoc).get()), 0);
    EXPECT_LT(EStrCmp(nullptr, plain.get()), 0);
}

TEST_F(EStrTest, SecureDeletionAndAbsentConverters) {
    EStr *secret = EStrNewImpl("secret", EStrHost);
    EStrDestroy(&secret);
    EXPECT_EQ(secret, nullptr);
    EStrDestroy(&secret);

    const KRHFT table = gBaseToolHFT, core = gCoreHFT;
    KRProc without[CoreHFTCount + 1];
    std::copy(core, core + CoreHFTCount + 1, without);
    without[KRGetHFT.selector] = reinterpret_cast<KRProc>(+[](KRAtom, std::uint32_t) -> KRHFT { return nullptr; });
    gCoreHFT = without;
    gBaseToolHFT = nullptr;
    const EStrPtr kept = To(s_nihonUTF8, EStrHost, EStrPDFDoc), plain = To("ab", EStrHost, EStrText);
    gCoreHFT = core;
    gBaseToolHFT = table;
    ExpectWhole(kept.get(), EStrHost, s_nihonUTF8);
    ExpectWhole(plain.get(), EStrPDFDoc, "ab");
}

TEST_F(EStrTest, TextOfObjects) {
    LexDoc doc = LexDocCreate();
    const auto text = [](LexObj obj) { return EStrPtr(EStrNewFromLexObjImpl(obj)); };
    ExpectWhole(text(LexNewString(doc, false, "a\0b", 3)).get(), EStrPDFDoc, "a\0b"s);
    ExpectWhole(text(LexNewString(doc, false, "\xFE\xFF\x65\xE5", 4)).get(), EStrUCS2, s_mark + "\x65\xE5");
    ExpectWhole(text(LexNewInteger(doc, false, -12)).get(), EStrPDFDoc, "-12");
    ExpectWhole(text(LexNewFixed(doc, false, KRFixedOne * 5 / 2)).get(), EStrPDFDoc, "2.5");
    ExpectWhole(text(LexNewBoolean(doc, false, true)).get(), EStrPDFDoc, "true");
    ExpectWhole(text(LexNewName(doc, false, Off_K)).get(), EStrPDFDoc, "Off");
    ExpectWhole(text(LexNewDict(doc, false, 1)).get(), EStrPDFDoc, "<<dict>>");
    ExpectWhole(text(LexNewArray(doc, false, 1)).get(), EStrPDFDoc, "[array]");
    ExpectWhole(text(LexNullObj).get(), EStrPDFDoc, "");
    // Longer than a block, with the mark kept.
    std::string units = s_mark;
    for (int i = 0; i < 2000; ++i) units += s_nihonUCS.substr(0, 2);
    KRStm source = KRMemStmOpen(units.data(), static_cast<std::int64_t>(units.size()));
    const LexObj stream = LexNewStream(doc, true, source, -1, false, LexNullObj, LexNullObj, -1);
    KRStmClose(source);
    ExpectWhole(text(stream).get(), EStrUCS2, units);
    LexDocClose(doc);
}

TEST_F(EStrTest, DictionaryEntries) {
    LexDoc doc = LexDocCreate();
    const LexObj dict = LexDocGetRoot(doc);
    EStrLexDictPut(dict, T_K, Make("caf\xC3\xA9", EStrHost).get());
    ExpectWhole(EStrPtr(EStrLexDictGet(dict, T_K)).get(), EStrPDFDoc, "caf\xE9");
    EStrLexDictPut(dict, T_K, nullptr);
    EStrLexDictPut(dict, KRAtomNull, Make("x", EStrHost).get());
    EXPECT_EQ(EStrGetLen(EStrPtr(EStrLexDictGet(dict, T_K)).get()), 4);
    EXPECT_EQ(EStrLexDictGet(dict, value_K), nullptr);
    EXPECT_EQ(EStrLexDictGet(LexDictGet(dict, T_K), value_K), nullptr); // raises within
    const EStrPtr text = Make("x", EStrHost);
    EXPECT_EQ(Protect([&] { EStrLexDictPut(LexDictGet(dict, T_K), value_K, text.get()); }), KRErrNoMemory);
    LexDocClose(doc);
}

TEST_F(EStrTest, FontsDecideTheEncoding) {
    const EStrPtr str(EStrNewImpl("", EStrHost));
    const auto tag = [&](const char *bytes, KRAtom font) {
        EStrCorrectEncoding(str.get(), bytes, font);
        return str->encoding;
    };
    EXPECT_EQ(tag("\xFE\xFF\0a\0", Helvetica_K), EStrUCS2);
    EXPECT_EQ(tag(s_nihonSJIS.c_str(), KanjiMincho_K), EStrShiftJIS);
    EXPECT_EQ(tag("a", Helvetica_K), EStrHost);
    char target[16];
    EXPECT_EQ(TSDMXlateHostToExportEnc("\xC3\xA9\xE2\x82\xAC", target, sizeof target, Helvetica_K), 2);
    EXPECT_STREQ(target, "\xE9\xA0");
    EXPECT_EQ(TSDMXlateHostToExportEnc(s_nihonUTF8.c_str(), target, sizeof target, KanjiGothic_K), 6);
    EXPECT_EQ(TSDMXlateExportToHostEnc("\xFE\xFF\x65\xE5\0", target, sizeof target, Helvetica_K), 3);
    EXPECT_EQ(TSDMXlateExportToHostEnc("ab\xE9", target, 4, Helvetica_K), 2);
    EXPECT_STREQ(target, "ab");
    EXPECT_TRUE(KanjiGlyphCannotEndLine(0x3010) && !KanjiGlyphCannotEndLine(0x3011));
    EXPECT_TRUE(KanjiGlyphCannotBeginLine(0x3011) && !KanjiGlyphCannotBeginLine(0x3010));
    EXPECT_TRUE(Is2Byte(0x9F, 0x40) && !Is2Byte(0xA0, 0x40) && !Is2Byte(0x81, 0x7F) && Is2Byte(0xE0, 0xFC));
}

TEST(TextUtilities, UCSTextIsComparedByUnits) {
    const char *wide = "\xFE\xFF\0A\0", *small = "\xFE\xFF\0a\0", *other = "\xFE\xFF\x41\0\0";
    EXPECT_EQ(miStrlen("\xFE\xFF\x41\0\0B\0"), 6u);
    EXPECT_EQ(miStricmp(wide, small), 0);
    EXPECT_NE(miStricmp("\xFE\xFF\1A\0", "\xFE\xFF\1a\0"), 0);
    EXPECT_LT(miStrcmp(wide, small), 0);
    EXPECT_LT(miStrcmp(wide, other), 0);
    EXPECT_EQ(miStrncmp(wide, small, 2), 0);
    EXPECT_EQ(miStricmp("ABC", "abd"), -1);
    EXPECT_GT(miStrcmp("\xE9", "z"), 0);
    EXPECT_TRUE(miStrEq(nullptr, nullptr));
    EXPECT_FALSE(miStrEq("", nullptr));
    char joined[12];
    miStrcat(miStrcpy(joined, wide), small);
    EXPECT_EQ(std::string(joined, 8), "\xFE\xFF\0A\0a\0\0"s);
}

TEST(TextUtilities, ReplacesAndCounts) {
    char buffer[64];
    EXPECT_EQ(miReplaceStr(buffer, "a\nb\n", "\n", nullptr) - buffer, 2);
    EXPECT_STREQ(buffer, "ab");
    char same[] = "aXXbXX";
    miReplaceStr(same, same, "XX", "-");
    EXPECT_STREQ(same, "a-b-");
    // 0x0A00 is no line feed.
    EXPECT_EQ(miReplaceStrEx(buffer, "\xFE\xFF\x0A\0\0\n\0x\0", "\0\n", 2, nullptr, 0) - buffer, 6);
    EXPECT_EQ(std::string(buffer, 8), "\xFE\xFF\x0A\0\0x\0\0"s);
    EXPECT_EQ(miCountStr("aaaa", "aa"), 2);
    EXPECT_EQ(miCountStr("aaaa", ""), 0);
}

TEST(TextUtilities, SnarfsAndStrips) {
    char buffer[4];
    const char *text = "k=(value)rest";
    EXPECT_STREQ(miSnarf(text, "(", ")", buffer, sizeof buffer), "rest");
    EXPECT_STREQ(buffer, "val");
    EXPECT_EQ(miSnarf(text, "[", "]", buffer, sizeof buffer), nullptr);

    std::int32_t position = 0;
    std::string entry;
    const char *list = "  one ,\"two, 2 \",a\\nb\\,c,,last";
    for (const char *wanted : {"one", "two, 2 ", "a\nb,c", "", "last"}) {
        EXPECT_TRUE(miSnarfEntry(list, &position, /*keepEscapes*/ false, &entry));
        EXPECT_EQ(entry, wanted);
    }
    EXPECT_FALSE(miSnarfEntry(list, &position, /*keepEscapes*/ false, &entry));

    const auto dots = [](std::string path) {
        miSubstituteDots(path.data());
        return std::string(path.c_str());
    };
    EXPECT_EQ(dots("/a/b/../../c/./d"), "/c/d");
    EXPECT_EQ(dots("/../x"), "/x");
    EXPECT_EQ(dots("../../x"), "../../x");
    char wide[] = "\xFE\xFF\0 \0a\0 \0";
    EXPECT_EQ(miStrlen(miStrip(wide)), 4u);
    char blank[] = " \t\r\n";
    EXPECT_STREQ(miStrip(blank), "");
    char cut[6] = "ab";
    EXPECT_STREQ(miStrncat(cut, "cdefg", sizeof cut), "abcde");
}

} // namespace
