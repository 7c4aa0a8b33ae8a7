// Text flow: widths, line cutting with its Japanese rules, the automatic size, and flowed text.
// SPDX-License-Identifier: MIT
#include "appearance/miCStore.h"

#include "Common/src/miUtils.h"
#include "tests/forms/FormsFixture.h"

namespace {

using FlowTest = BuiltInWidgets;

CStoreMetrics MetricsOf(KRAtom font, double size) {
    CStoreMetrics metrics;
    CStoreGetMetrics(font, Pt(size), &metrics);
    return metrics;
}

/** The lines of a text, UCS-2 ones as the low bytes of Roman units and "<3042>" for others. */
std::vector<std::string> LinesOf(const CStoreMetrics &metrics, double width, const std::string &text) {
    const bool wide = miIsUCS(text.data());
    std::vector<std::string> lines;
    for (std::int32_t at = wide ? 2 : 0; wide ? miUCSUnit(text.data() + at) : text.c_str()[at];) {
        std::string line, shown;
        CStoreStringFit(&metrics, Pt(width), text.data(), line, &at);
        for (std::size_t i = 0; wide && i < line.size(); i += 2) {
            char unit[8];
            std::snprintf(unit, sizeof unit, line[i] ? "<%04X>" : "%c", miUCSUnit(line.data() + i));
            shown += unit;
        }
        lines.push_back(wide ? shown : line);
    }
    return lines;
}

using Lines = std::vector<std::string>;

std::string Flowed(StorePtr store, TextAppearance look, const std::string &text, bool wrap = true) {
    CStoreFlowText(store.get(), wrap, Pt(1), &look, text.data());
    return TextOf(store.get());
}

/** Size that a text gets in a box; 4 to 144 points. */
double FittedSize(const std::string &text, double width, double height, bool multiLine, bool breakAnywhere = false) {
    TextAppearance look = LookOf(0);
    return CStoreStringMaxFontSize(&look, Pt(width), Pt(height), multiLine, breakAnywhere, Pt(4), Pt(144), 0x1000,
                                   text.data()) /
           65536.0;
}

TEST_F(FlowTest, WidthsOfTexts) {
    const CStoreMetrics helvetica = MetricsOf(Helvetica_K, 10), gothic = MetricsOf(KanjiGothic_K, 10);
    EXPECT_EQ(CStoreStringWidth(&helvetica, nullptr), 0);
    EXPECT_EQ(CStoreStringWidth(&helvetica, UCS2("").data()), 0);
    EXPECT_NEAR(CStoreStringWidth(&helvetica, "abc"), Pt(16.12), 30);
    // Shift-JIS: one character, one or two bytes, is one em.
    EXPECT_EQ(CStoreStringWidth(&gothic, "a\x82\xA0z"), Pt(30));
    EXPECT_NEAR(CStoreStringWidth(&gothic, UCS2("i", {0x3042, 0xFF71}).data()), Pt(17.22), 30);
    // A sum that passes the largest number stays there rather than turning negative.
    EXPECT_EQ(CStoreStringWidth(&helvetica, std::string(60000, 'W').c_str()), INT32_MAX);

    const struct {
        std::uint16_t unit;
        int gothic, mincho;
    } units[] = {{0x20, 278, 250},   {0x7E, 584, 541},     {0x7F, 1000, 1000},  {0xA0, 1000, 1000},
                 {0xA1, 333, 333},   {0xFF, 500, 500},     {0x305, 556, 500},   {0x30C, 333, 333},
                 {0x142, 222, 278},  {0x152, 1000, 889},   {0x2013, 556, 500},  {0x2122, 1000, 980},
                 {0xFF61, 500, 500}, {0xFFA0, 1000, 1000}, {0x3042, 1000, 1000}};
    for (const auto &u : units) {
        EXPECT_EQ(GetUnicodeCharWidth(u.unit, true), KRFixedDiv(Pt(u.gothic), Pt(1000))) << std::hex << u.unit;
        EXPECT_EQ(GetUnicodeCharWidth(u.unit, false), KRFixedDiv(Pt(u.mincho), Pt(1000))) << std::hex << u.unit;
    }
}

TEST_F(FlowTest, LinesAreCutAtBlanksOrWhereTheyEnd) {
    const CStoreMetrics metrics = MetricsOf(Courier_K, 10); // 6 points each
    EXPECT_EQ(LinesOf(metrics, 60, "one two three"), (Lines{"one two", "three"}));
    EXPECT_EQ(LinesOf(metrics, 43, "one two three"), (Lines{"one two", "three"}));
    EXPECT_EQ(LinesOf(metrics, 31, "abcdefgh i"), (Lines{"abcde", "fgh i"}));
    EXPECT_EQ(LinesOf(metrics, 1, "abc"), (Lines{"a", "b", "c"}));
    EXPECT_EQ(LinesOf(metrics, 60, "a\rb\n\nc\r\nd"), (Lines{"a", "b", "", "c", "d"}));
    EXPECT_EQ(LinesOf(MetricsOf(KanjiGothic_K, 10), 70, UCS2("one two three")), (Lines{"one two three"}));
    EXPECT_EQ(LinesOf(MetricsOf(KanjiGothic_K, 10), 45, UCS2("one two three")), (Lines{"one two", "three"}));

    std::string line;
    std::int32_t position = 3;
    EXPECT_EQ(CStoreStringFit(&metrics, Pt(60), "abc", line, &position), 0);
    EXPECT_EQ(line, "");
    position = 0;
    EXPECT_NEAR(CStoreStringFit(&metrics, Pt(60), "one two three", line, &position), Pt(42), 40);
    EXPECT_EQ(position, 8);
}

TEST_F(FlowTest, JapaneseLinesBreakByTheRules) {
    const CStoreMetrics metrics = MetricsOf(KanjiGothic_K, 10);
    const int a = 0x3042, stop = 0x3002, open = 0x300C;
    const auto lines = [&](double width, const std::vector<int> &units) {
        return LinesOf(metrics, width, UCS2("", units));
    };
    EXPECT_EQ(lines(30, {a, a, a, a}), (Lines{"<3042><3042><3042>", "<3042>"}));
    // The next character may not begin a line; the last may not end one.
    EXPECT_EQ(lines(30, {a, a, a, stop}), (Lines{"<3042><3042>", "<3042><3002>"}));
    EXPECT_EQ(lines(30, {a, a, open, a}), (Lines{"<3042><3042>", "<300C><3042>"}));
    // Too narrow for the rules, or a line of one character: nothing moves.
    EXPECT_EQ(lines(29, {a, a, stop}), (Lines{"<3042><3042>", "<3002>"}));
    EXPECT_EQ(lines(30, {open, '\r', a}), (Lines{"<300C>", "<3042>"}));
    // A line end is stepped back over with the character, as one or two units; in front of a closing mark it counts.
    EXPECT_EQ(lines(30, {a, open, '\r', a}), (Lines{"<3042>", "<300C>", "<3042>"}));
    EXPECT_EQ(lines(30, {a, open, '\r', '\n', a}), (Lines{"<3042>", "<300C>", "<3042>"}));
    EXPECT_EQ(lines(30, {a, a, '\n', stop}), (Lines{"<3042><3042>", "<3002>"}));
}

TEST_F(FlowTest, LinesAreCounted) {
    TextAppearance look = LookOf(10);
    look.baseFont = Courier_K;
    const auto count = [&](double width, bool anywhere, const char *text) {
        return CStoreWrappedLineCount(&look, Pt(width), anywhere, text);
    };
    EXPECT_EQ(count(60, false, ""), 0);
    EXPECT_EQ(count(60, false, "one two three"), 2);
    EXPECT_EQ(count(60, false, "one\n\ntwo"), 3);
    EXPECT_EQ(count(30, false, "abcdefgh"), -1);
    EXPECT_EQ(count(30, true, "abcdefgh"), 2);
    EXPECT_EQ(count(1, true, "ab"), -1); // wider than the line
    EXPECT_EQ(CStoreHeightFromLineCount(&look, 3), 3 * MetricsOf(Courier_K, 10).height);
    EXPECT_EQ(CStoreHeightFromLineCount(&look, 1 << 30), INT32_MAX);
}

TEST_F(FlowTest, TheAutomaticSizeIsTheLargestThatFits) {
    EXPECT_NEAR(FittedSize("abc", 100, 20, false), 20 / 1.156, 0.07); // by the height
    EXPECT_NEAR(FittedSize("abc", 10, 200, false), 10 / 1.612, 0.07); // by the width
    EXPECT_EQ(FittedSize("abc", 1000, 1000, false), 144);
    EXPECT_EQ(FittedSize("abc", 100, 3, false), 4);
    EXPECT_EQ(FittedSize(std::string(60000, 'W'), 100, 20, false), 4);
    // A word may not be broken, so the size shrinks until it fits, or to the smallest.
    const double word = FittedSize("mmmmmmmmmm", 100, 100, true);
    EXPECT_NEAR(word, 100 / 8.33, 0.07);
    EXPECT_GT(FittedSize("mmmmmmmmmm", 100, 100, true, /*breakAnywhere*/ true), word);
    EXPECT_EQ(FittedSize(std::string(100, 'm'), 100, 100, true), 4);

    const KRFixedRect box = Box(0, 0, 100, 20), high = Box(0, 0, 1, 30000), flat = Box(0, 0, 100, 0);
    EXPECT_NEAR(CStoreCalcTextSize(&box, Helvetica_K, Pt(2)), Pt(18 / 1.156 * 0.9), 100);
    EXPECT_EQ(CStoreCalcTextSize(&high, Helvetica_K, 0), Pt(144));
    EXPECT_EQ(CStoreCalcTextSize(&flat, Helvetica_K, Pt(2)), Pt(4));
    EXPECT_EQ(CStoreCalcTextSize(&box, Atom("NoSuchFont"), 0), Pt(144));
}

TEST_F(FlowTest, FlowedTextFillsItsLines) {
    TextAppearance look = LookOf(10);
    EXPECT_EQ(Flowed(NewStore(60, 40), look, "one two three\nfour"),
              "0 g BT /Helv 10 Tf 0 g 1 0 0 1 1 41.07 Tm 1 -11.5601 Td (one two) Tj 0 -11.5601 Td (three) Tj "
              "0 -11.5601 Td (four) Tj ET");
    // Unwrapped lines go on to their end; what is behind the last line that fits is dropped.
    EXPECT_EQ(Flowed(NewStore(60, 13), look, "one two three\nfour", /*wrap*/ false),
              "0 g BT /Helv 10 Tf 0 g 1 0 0 1 1 14.07 Tm 1 -11.5601 Td (one two three) Tj ET");
    EXPECT_EQ(Flowed(NewStore(60, 40), look, ""), "");
    look.size = -1;
    EXPECT_EQ(Flowed(NewStore(60, 40), look, "x"), "");
    // No line fits, so the text object has no beginning.
    EXPECT_EQ(Flowed(NewStore(60, 1), LookOf(10), "x"), "0 g ET");

    TextAppearance kanji = LookOf(10);
    kanji.baseFont = KanjiGothic_K;
    kanji.fontResource = KaGo_K;
    EXPECT_EQ(Flowed(NewStore(24, 40), kanji, UCS2("", {0x3042, 0x3044, 0x3046})),
              "0 g BT /KaGo 10 Tf 0 g 1 0 0 1 1 41.07 Tm 1 -11.5601 Td (\\060\\102\\060\\104) Tj "
              "0 -11.5601 Td (\\060\\106) Tj ET");

    const StorePtr store = NewStore(100, 50);
    TextAppearance automatic = LookOf(0);
    CStoreFlowText(store.get(), /*wrap*/ true, Pt(1), &automatic, "some words to flow");
    EXPECT_GT(automatic.size, Pt(12));
    EXPECT_EQ(store->metrics.size, automatic.size);
    automatic.size = 0;
    CStoreFlowTextEx(store.get(), /*wrap*/ true, Pt(1), &automatic, "some words to flow", Pt(6), Pt(8));
    EXPECT_EQ(automatic.size, Pt(8));
}

TEST_F(FlowTest, TextsAsLongAsTheyComeEnd) {
    std::string words;
    while (words.size() < 60000) words += "a b ";
    for (const std::string &text : {words, UCS2(words.substr(0, 32000)), std::string(60000, 'x'),
                                    UCS2("", std::vector<int>(30000, 0x3042)), std::string(60000, '\n')}) {
        TextAppearance look = LookOf(0);
        look.baseFont = miIsUCS(text.data()) ? KanjiGothic_K : Helvetica_K;
        Flowed(NewStore(8, 32000), look, text);
        Flowed(NewStore(32000, 32000), look, text);
        SCOPED_TRACE(text.size());
        const StorePtr store = NewStore(200, 20);
        CStoreSimpleText(store.get(), 0, &look, text.data());
        EXPECT_LE(store->length, 1 << 20);
    }
}

} // namespace
