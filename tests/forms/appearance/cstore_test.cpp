// The content store: its print language, one-line text and blocks, and the form XObjects that come out of it.
// SPDX-License-Identifier: MIT
#include "appearance/miCStore.h"

#include <algorithm>
#include <cstring>

#include "tests/forms/FormsFixture.h"

namespace {

using CStoreTest = BuiltInWidgets;

std::string Sanitized(const char *source, std::int32_t capacity) {
    char buffer[1100];
    CStoreSanitize(source, buffer, capacity);
    return buffer;
}

std::string SimpleText(StorePtr store, TextAppearance look, const std::string &text, double margin = 1) {
    CStoreSimpleText(store.get(), Pt(margin), &look, text.c_str());
    return TextOf(store.get());
}

LexObj Replaced(const TestDoc &doc, LexObj old, CStore *store) {
    const TextAppearance look = LookOf(12);
    return CStoreReplace(old, store, &look, doc.At("Tessella/DR"));
}

/** What `old` becomes when the variable part of `fresh` takes the place of its own. */
std::string ReplacedText(const TestDoc &doc, const std::string &old, const std::string &fresh) {
    const StorePtr store = NewStore(100, 20);
    CStorePrintf(store.get(), "%c", fresh.c_str());
    return Data(Replaced(doc, NewForm(doc, old), store.get()));
}

TEST_F(CStoreTest, ANewStoreStartsAtTheOriginAndTurnsItsSides) {
    const struct {
        std::uint16_t rotation;
        const char *box;
        KRFixedMatrix matrix;
    } cases[] = {
        {0, "0 0 200 20", KRFixedMatrixIdentity},
        {90, "0 0 20 200", {0, KRFixedOne, -KRFixedOne, 0, Pt(200), 0}},
        {180, "0 0 200 20", {-KRFixedOne, 0, 0, -KRFixedOne, Pt(200), Pt(20)}},
        {270, "0 0 20 200", {0, -KRFixedOne, KRFixedOne, 0, 0, Pt(20)}},
        {45, "0 0 200 20", KRFixedMatrixIdentity},
    };
    for (const auto &c : cases) {
        const KRFixedRect rect = Box(300, 720, 100, 700);
        const StorePtr store(CStoreNew(&rect, c.rotation));
        EXPECT_EQ(RectText(store->bbox), c.box) << c.rotation;
        KRFixedMatrix matrix;
        CStoreGetMatrix(store.get(), &matrix);
        EXPECT_EQ(std::memcmp(&matrix, &c.matrix, sizeof matrix), 0) << c.rotation;
    }
    const KRFixedRect widest{INT32_MIN, INT32_MAX, INT32_MAX, INT32_MIN};
    EXPECT_EQ(CStoreWidth(StorePtr(CStoreNew(&widest, 90)).get()), INT32_MAX);
}

TEST_F(CStoreTest, PrintingJoinsPiecesByOneBlankAndCutsThem) {
    const StorePtr store = NewStore(100, 20);
    CStorePrintf(store.get(), "%b %b %c %d %f %n %s %% %x%", 1, 0, "as (it) stands", -7, Pt(-0.25), Helv_K, "a(b");
    CStorePrintf(store.get(), "Q");
    EXPECT_EQ(TextOf(store.get()), "true false as (it) stands -7 -0.25 /Helv (a\\(b) % x Q");
    EXPECT_EQ(store->length, static_cast<std::int32_t>(TextOf(store.get()).size()));

    store->flags = CStoreUsesFont;
    CStoreClear(store.get());
    EXPECT_EQ(store->flags, CStoreUsesFont);
    CStorePrintf(store.get(), "%c", std::string(3000, 'x').c_str());
    EXPECT_EQ(TextOf(store.get()), std::string(1025, 'x'));
}

TEST_F(CStoreTest, LiteralStringsAreQuoted) {
    EXPECT_EQ(Sanitized("a(b)c\\d[e]\x80\n", 1024), "a\\(b\\)c\\\\d\\[e\\]\\200\\012");
    EXPECT_EQ(Sanitized("", 1024), "");
    const std::string wide = UCS2("A", {0x3042});
    EXPECT_EQ(Sanitized(wide.data(), 1024), "\\000\\101\\060\\102");
    // A capacity that does not come out even: nothing is written past its three spare bytes.
    for (std::int32_t capacity = 1; capacity < 20; ++capacity) {
        const auto limit = static_cast<std::size_t>(capacity);
        EXPECT_LE(Sanitized(std::string(100, '\x80').c_str(), capacity).size(), limit + 2);
        EXPECT_LT(Sanitized(std::string(100, 'x').c_str(), capacity).size(), limit);
        EXPECT_LE(Sanitized(UCS2(std::string(100, 'x')).data(), capacity).size(), limit);
    }
}

TEST_F(CStoreTest, DrawingOperationsPrintTheirOperators) {
    const KRFixedRect clip = Box(1, 2, 99, 18);
    for (const std::uint16_t rotation : {0, 90}) {
        const StorePtr store = NewStore(100, 20, rotation);
        CStoreVariableData(store.get(), Tx_K);
        CStoreStartRectClip(store.get(), &clip);
        CStoreEndRectClip(store.get());
        CStoreVariableData(store.get(), KRAtomNull);
        EXPECT_EQ(TextOf(store.get()),
                  rotation == 0 ? "/Tx BMC q 1 2 98 16 re W n Q EMC" : "/Tx BMC q 2 1 16 98 re W n Q EMC");
    }
    const StorePtr store = NewStore(100, 20);
    const DMColorValue unknown{3, {}}, gray{1, {Pt(0.5), Pt(0.5), Pt(0.5)}};
    CStoreSetColor(store.get(), &unknown, /*fill*/ true);
    CStoreSetColor(store.get(), &gray, /*fill*/ false);
    EXPECT_EQ(TextOf(store.get()), "0.5 G");
    CStoreClear(store.get());
    CStoreCircle(store.get(), Pt(50), Pt(10), Pt(10), 'f');
    EXPECT_EQ(TextOf(store.get()), "q 1 0 0 1 50 10 cm 10 0 m 10 5.5231 5.5231 10 0 10 c -5.5231 10 -10 5.5231 -10 0 c "
                                   "-10 -5.5231 -5.5231 -10 0 -10 c 5.5231 -10 10 -5.5231 10 0 c f Q");
}

TEST_F(CStoreTest, ASavedStoreNamesWhatItUses) {
    const TestDoc doc(FormObjects({}));
    const StorePtr store = NewStore(200, 20, 90);
    EXPECT_EQ(Text(CStoreSave(doc.lex, store.get())), "null");
    TextAppearance look = LookOf(12);
    CStoreSimpleText(store.get(), 0, &look, "x");
    store->flags |= CStoreUsesXObject;
    store->xobject = NewForm(doc, "f");
    const LexObj form = CStoreSave(doc.lex, store.get());
    EXPECT_EQ(Data(form), TextOf(store.get()));
    EXPECT_EQ(Text(At(form, "Subtype")), "/Form");
    EXPECT_EQ(RectOf(form, BBox_K), "0 0 20 200");
    KRFixedMatrix matrix;
    TSLexGetMatrix(LexStreamDict(form), Matrix_K, &matrix);
    EXPECT_EQ(matrix.b, KRFixedOne);
    EXPECT_EQ(matrix.e, Pt(200));
    const LexObj resources = At(form, "Resources");
    EXPECT_EQ(Text(At(resources, "Font/Helv/BaseFont")), "/Helvetica");
    EXPECT_EQ(Text(LexArrayGet(At(resources, "ProcSet"), 0)), "/PDF");
    EXPECT_EQ(Text(LexArrayGet(At(resources, "ProcSet"), 1)), "/Text");
    EXPECT_TRUE(LexObjEqual(At(resources, "XObject/FRM"), store->xobject));
    EXPECT_FALSE(LexDictKnown(LexStreamDict(form), Type_K));

    store->metrics.font = Atom("NoSuchFont");
    EXPECT_EQ(Text(CStoreSave(doc.lex, store.get())), "null");

    const StorePtr read = NewStore(1, 1);
    CStoreLoad(read.get(), form);
    EXPECT_EQ(TextOf(read.get()), Data(form));
    EXPECT_EQ(RectText(read->bbox), "0 0 20 200");
    CStoreLoad(read.get(), doc.At("Pages"));
    EXPECT_EQ(read->length, 0);
}

TEST_F(CStoreTest, StreamsAreCompressedAbove256Bytes) {
    const TestDoc doc(FormObjects({}));
    for (const std::size_t length : {256U, 257U}) {
        const StorePtr store = NewStore(100, 20);
        CStorePrintf(store.get(), "%c", std::string(length, ' ').c_str());
        const LexObj form = CStoreSave(doc.lex, store.get());
        EXPECT_EQ(LexDictKnown(LexStreamDict(form), Filter_K), length > 256);
        EXPECT_EQ(Data(form).size(), length);
        EXPECT_FALSE(LexDictKnown(At(form, "Resources"), Font_K));
    }
}

TEST_F(CStoreTest, OneLineStandsByItsQuadding) {
    TextAppearance look = LookOf(12);
    // Helvetica: box height 1156, descender -207, "abc" 1612 thousandths.
    EXPECT_EQ(SimpleText(NewStore(200, 20), look, "abc"), "BT /Helv 12 Tf 0 g 2 5.548 Td (abc) Tj ET");
    look.quadding = 1;
    EXPECT_EQ(SimpleText(NewStore(200, 20), look, "abc"), "BT /Helv 12 Tf 0 g 90.328 5.548 Td (abc) Tj ET");
    look.quadding = 2;
    EXPECT_EQ(SimpleText(NewStore(200, 20), look, "abc"), "BT /Helv 12 Tf 0 g 178.656 5.548 Td (abc) Tj ET");

    TextAppearance bad[5] = {look, look, look, look, look};
    bad[0].quadding = 3;
    bad[1].renderMode = 4;
    bad[2].baseFont = KRAtomNull;
    bad[3].fillColor.space = TSColorTransparent;
    for (int i = 0; i < 4; ++i) EXPECT_EQ(SimpleText(NewStore(200, 20), bad[i], "abc"), "") << i;
    EXPECT_EQ(SimpleText(NewStore(200, 20), look, ""), "");
    bad[4].size = -1;
    const StorePtr store = NewStore(200, 20);
    CStoreSimpleTextEx(store.get(), 0, &bad[4], "abc", CStoreNoLimit, CStoreNoLimit, /*calcSize*/ false);
    EXPECT_EQ(TextOf(store.get()), "");
    // The plain form takes a negative size as automatic, by the height alone.
    CStoreSimpleText(store.get(), 0, &bad[4], "abc");
    EXPECT_EQ(bad[4].size, 0);
    EXPECT_EQ(TextOf(store.get()).substr(0, 17), "BT /Helv 15.5708 ");
}

TEST_F(CStoreTest, LongTextsShowInSlices) {
    const auto after = [](const std::string &text) { return text.substr(text.find("Td ") + 3); };
    const std::string head(64, 'a'), tail(36, 'b');
    EXPECT_EQ(after(SimpleText(NewStore(200, 20), LookOf(12), head + tail)), "(" + head + ") Tj (" + tail + ") Tj ET");

    TextAppearance look = LookOf(12);
    look.baseFont = KanjiGothic_K;
    look.fontResource = KaGo_K;
    std::string shown = "(";
    for (int i = 0; i < 61; ++i) shown += (i == 30 ? ") Tj (\\000a" : "\\000a");
    shown += ") Tj ET";
    std::string octal;
    for (std::size_t i = 0; i < shown.size(); ++i) octal += shown[i] == 'a' ? "\\141" : std::string(1, shown[i]);
    const StorePtr store = NewStore(200, 20);
    const std::string wide = UCS2(std::string(61, 'a'));
    CStoreSimpleText(store.get(), 0, &look, wide.data());
    EXPECT_EQ(after(TextOf(store.get())), octal);
}

// What one print cannot hold was cut within an escape, without the end of the string and of the text object.
TEST_F(CStoreTest, LongLinesAndCaptionsAreWholeAndEnded) {
    const std::string accents(300, '\xE9');
    TextAppearance look = LookOf(4);
    const TSFit fit{Always_K, Proportional_K, 0, 0};
    const StorePtr flowed = NewStore(1000, 50), laid = NewStore(1000, 50);
    CStoreFlowText(flowed.get(), /*wrap*/ true, 0, &look, accents.c_str());
    CStoreLayoutIconText(laid.get(), &fit, 0, /*layout*/ 0, LexNullObj, &look, accents.c_str(), /*isDingbat*/ false);
    for (const std::string &text : {TextOf(flowed.get()), TextOf(laid.get())}) {
        EXPECT_TRUE(text.ends_with(") Tj ET")) << text;
        EXPECT_EQ(std::ranges::count(text, '\\'), 300);
        EXPECT_EQ(std::ranges::count(text, '('), std::ranges::count(text, ')'));
    }
}

TEST_F(CStoreTest, BlocksWriteLineBelowLine) {
    TextAppearance look = LookOf(10);
    const StorePtr store = NewStore(100, 50);
    CStoreBlock *block = CStoreBlockStart(store.get(), Pt(1), &look);
    EXPECT_EQ(CStoreBlockGetNumLines(block), 5); // 48 points, 11.56 each, and the one that is cut
    const DMColorValue gray{TSColorGray, {Pt(0.5)}};
    CStoreBlockHighlightLine(block, 1, &gray);
    CStoreBlockLine(block, nullptr);
    CStoreBlockHighlightLine(block, 2, &gray);
    CStoreBlockLine(block, "a");
    CStoreBlockLine(block, "b");
    CStoreBlockEnd(block);
    EXPECT_EQ(TextOf(store.get()), "0.5 g 1 25.8799 98 11.5601 re f BT /Helv 10 Tf 0 g 1 0 0 1 1 51.07 Tm "
                                   "1 -11.5601 Td (a) Tj 0 -11.5601 Td (b) Tj ET");

    // Two margins lie between the text and the edge, on the right as on the left; "a" is 5.56 wide.
    look.quadding = 2;
    CStoreClear(store.get());
    block = CStoreBlockStart(store.get(), Pt(1), &look);
    CStoreBlockLine(block, "a");
    CStoreBlockLine(block, "aa");
    CStoreBlockEnd(block);
    EXPECT_TRUE(Has(TextOf(store.get()), "91.44 -11.5601 Td (a) Tj -5.56 -11.5601 Td (aa) Tj")) << TextOf(store.get());

    CStoreClear(store.get());
    CStoreBlockEnd(CStoreBlockStart(store.get(), Pt(1), &look));
    EXPECT_EQ(TextOf(store.get()), "ET");
}

TEST_F(CStoreTest, SplicingReplacesTheVariablePartOnly) {
    const TestDoc doc(FormObjects({}, "/DR << /Font << /Helv << /Type /Font /BaseFont /Helvetica >> >> >>"));
    const std::string fresh = "/Tx BMC new words EMC";
    // Blanks of any kind stand for each other at the marks; a string is not understood.
    const char *const cases[][2] = {
        {"q 1 w /Tx BMC old EMC Q", "q 1 w /Tx BMC new words EMC\nQ"},
        {"q\r\n/Tx BMC \r\nold\r\nEMC\r\nQ", "q\r\n/Tx BMC new words EMC\n\nQ"},
        {"1 g /Tx BMC (a EMC b) Tj EMC Q", "1 g /Tx BMC new words EMC\nb) Tj EMC Q"},
        {"0 0 9 9 re f", "0 0 9 9 re f/Tx BMC new words EMC\n"},
        {"q /Tx BMC never ended", "q /Tx BMC new words EMC\n"},
    };
    for (const auto &c : cases) EXPECT_EQ(ReplacedText(doc, c[0], fresh), c[1]) << c[0];
    // What stands behind the last EMC stays out; without marks there is nothing to put in.
    EXPECT_EQ(ReplacedText(doc, "q /Tx BMC old EMC Q", fresh + " stray"), "q /Tx BMC new words EMC\nQ");
    EXPECT_EQ(ReplacedText(doc, "q /Tx BMC old EMC Q", "no marks at all"), "null");
    // An emptied store makes the bare marks, and less than 16 bytes is no appearance.
    EXPECT_EQ(ReplacedText(doc, "1 1 1 rg /Tx BMC old EMC Q", ""), "1 1 1 rg /Tx BMC EMC\nQ");
    EXPECT_EQ(ReplacedText(doc, "/Tx BMC old EMC", ""), "null");
    const StorePtr store = NewStore(100, 20);
    EXPECT_EQ(Text(Replaced(doc, doc.At("Pages"), store.get())), "null");
}

TEST_F(CStoreTest, SplicingKeepsFilterAndResources) {
    const TestDoc doc(FormObjects({}, "/DR << /Font << /Helv << /Type /Font /BaseFont /Helvetica >> >> >>"));
    const StorePtr store = NewStore(100, 20, 90);
    CStorePrintf(store.get(), "/Tx BMC %c EMC", std::string(300, 'x').c_str());
    const LexObj old = NewForm(doc, "q /Tx BMC a EMC Q");
    const LexObj first = Replaced(doc, old, store.get());
    EXPECT_EQ(Text(LexArrayGet(At(first, "Filter"), 0)), "/FlateDecode");
    // The frame that stays was drawn in the widget's own box.
    EXPECT_EQ(RectOf(first, BBox_K), "0 0 100 20");
    EXPECT_EQ(LexArrayLength(At(first, "Matrix")), 6);
    EXPECT_EQ(Text(At(first, "Resources/Font/Helv/BaseFont")), "/Helvetica");

    const LexObj attributes = LexNewDict(doc.lex, false, 1);
    LexDictPut(attributes, Filter_K, Name(doc, "ASCIIHexDecode"));
    const LexObj hex = NewForm(doc, "q /Tx BMC a EMC Q", attributes);
    LexObj resources = TSLexDictEnsure(LexStreamDict(hex), Resources_K);
    LexDictPut(TSLexDictEnsure(resources, Font_K), Atom("Own"), LexNewDict(doc.lex, false, 1));
    const LexObj second = Replaced(doc, hex, store.get());
    EXPECT_EQ(Text(At(second, "Filter")), "/ASCIIHexDecode");
    const LexObj fonts = At(second, "Resources/Font");
    EXPECT_TRUE(LexDictKnown(fonts, Atom("Own")) && LexDictKnown(fonts, Helv_K));
    EXPECT_FALSE(LexDictKnown(At(hex, "Resources/Font"), Helv_K)) << "who shares the old stream keeps its fonts";
    EXPECT_EQ(Data(second), Data(first));
}

TEST_F(CStoreTest, AFontThatTheFormHoldsUnderAnotherKeyComesAlong) {
    const TestDoc doc(FormObjects({}, "/DR << /Font << /Helv << /Type /Font /Name /F1 /BaseFont /Helvetica >> >> >>"));
    const StorePtr store = NewStore(100, 20);
    CStorePrintf(store.get(), "/Tx BMC BT /F1 9 Tf ET EMC");
    TextAppearance look = LookOf(9);
    look.fontResource = Atom("F1");
    const LexObj form = CStoreReplace(NewForm(doc, "q /Tx BMC a EMC Q"), store.get(), &look, doc.At("Tessella/DR"));
    EXPECT_EQ(Text(At(form, "Resources/Font/F1/BaseFont")), "/Helvetica");
}

} // namespace
