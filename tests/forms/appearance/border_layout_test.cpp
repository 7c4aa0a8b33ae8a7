// Borders, the placing of captions and icons, and the layout entries that other plug-ins call.
// SPDX-License-Identifier: MIT
#include "appearance/miCStore.h"

#include "tests/forms/FormsFixture.h"

namespace {

using BorderTest = BuiltInWidgets;
using LayoutTest = BuiltInWidgets;

constexpr DMColorValue s_red{TSColorRGB, {KRFixedOne, 0, 0, 0}};
constexpr DMColorValue s_back{TSColorRGB, {Pt(0.75), KRFixedOne, Pt(0.5), 0}};
constexpr DMColorValue s_none{TSColorTransparent, {}};

std::string Bordered(std::int32_t style, const DMColorValue &border, const DMColorValue &back, bool down,
                     bool circular = false) {
    const StorePtr store = NewStore(100, 20);
    (circular ? CStoreDrawCircularBorder : CStoreDrawBorder)(store.get(), nullptr, style, Pt(2), &border, &back, down);
    return TextOf(store.get());
}

/** Circle operators shortened to "circle <radius> <operator>". */
std::string CircularBorder(std::int32_t style, const DMColorValue &border, const DMColorValue &back, bool down) {
    std::string text = Bordered(style, border, back, down, /*circular*/ true), out;
    const std::string start = "q 1 0 0 1 50 10 cm ";
    for (std::size_t at; (at = text.find(start)) != std::string::npos;) {
        const std::size_t radius = at + start.size(), end = text.find(" Q", at);
        out +=
            text.substr(0, at) + "circle " + text.substr(radius, text.find(' ', radius) - radius) + ' ' + text[end - 1];
        text.erase(0, end + 2);
    }
    return out + text;
}

TEST_F(BorderTest, EveryStyleUpAndDown) {
    const std::string back = "0.75 1 0.5 rg 0 0 100 20 re f", pressed = "0.499 0.749 0.249 rg 0 0 100 20 re f";
    const std::string stroke = " 1 0 0 RG 2 w 1 1 98 18 re s";
    const std::string topLeft = " g 2 2 m 2 18 l 98 18 l 96 16 l 4 16 l 4 4 l f";
    const std::string bottomRight = " 98 18 m 98 2 l 2 2 l 4 4 l 96 4 l 96 16 l f";
    EXPECT_EQ(Bordered(TSBorderSolid, s_red, s_back, false), back + stroke);
    EXPECT_EQ(Bordered(TSBorderSolid, s_red, s_back, true), pressed + stroke);
    EXPECT_EQ(Bordered(TSBorderSolid, s_none, s_back, false), back);
    EXPECT_EQ(Bordered(TSBorderSolid, s_none, s_none, true), "");
    EXPECT_EQ(Bordered(TSBorderDashed, s_red, s_none, true), "1 0 0 RG 2 w [3] 0 d 1 1 98 18 re s");
    EXPECT_EQ(Bordered(TSBorderUnderline, s_red, s_back, true), back + " 1 0 0 RG 2 w 0 1 m 100 1 l s");
    EXPECT_EQ(Bordered(5, s_red, s_back, false), "");

    const std::string shade = " 0.499 0.749 0.249 rg";
    EXPECT_EQ(Bordered(TSBorderBeveled, s_red, s_back, false), back + stroke + " 1" + topLeft + shade + bottomRight);
    EXPECT_EQ(Bordered(TSBorderBeveled, s_none, s_none, true), "0.7529" + topLeft + " 1 g" + bottomRight);
    EXPECT_EQ(Bordered(TSBorderInset, s_none, s_back, false), back + " 0.502" + topLeft + " 0.7529 g" + bottomRight);
    EXPECT_EQ(Bordered(TSBorderInset, s_none, s_back, true), pressed + " 0" + topLeft + " 1 g" + bottomRight);
}

TEST_F(BorderTest, CircularBordersStrokeTheirRims) {
    const std::string back = "0.75 1 0.5 rg circle 10 f";
    EXPECT_EQ(CircularBorder(TSBorderSolid, s_red, s_back, false), back + " 1 0 0 RG 2 w circle 9 s");
    EXPECT_EQ(CircularBorder(TSBorderSolid, s_none, s_back, true), "0.499 0.749 0.249 rg circle 10 f");
    // An underline around a circle is a solid one.
    EXPECT_EQ(CircularBorder(TSBorderUnderline, s_red, s_back, false), back + " 1 0 0 RG 2 w circle 9 s");
    EXPECT_EQ(CircularBorder(TSBorderDashed, s_red, s_none, false), "1 0 0 RG 2 w [3] 0 d circle 9 s");
    const std::string turn = " q 0.7071 0.7071 -0.7071 0.7071 50 10 cm ";
    EXPECT_EQ(CircularBorder(TSBorderInset, s_none, s_back, false),
              back + " 2 w 0.502 G" + turn + "7 0 m 7 3.8661 3.8661 7 0 7 c -3.8661 7 -7 3.8661 -7 0 c S Q 0.7529 G" +
                  turn + "-7 0 m -7 -3.8661 -3.8661 -7 0 -7 c 3.8661 -7 7 -3.8661 7 0 c S Q");
}

TEST_F(BorderTest, ABorderOfNoWidthIsLeftOut) {
    for (std::int32_t style = TSBorderSolid; style <= TSBorderUnderline; ++style) {
        for (const auto draw : {&CStoreDrawBorder, &CStoreDrawCircularBorder}) {
            const StorePtr store = NewStore(100, 20);
            draw(store.get(), nullptr, style, /*width*/ 0, &s_red, &s_back, /*down*/ false);
            const std::string text = TextOf(store.get());
            EXPECT_EQ(text.find("0.75 1 0.5 rg"), 0U) << style;
            EXPECT_EQ(text.find_first_of("wSsm", text.find(" f")), std::string::npos) << style << ' ' << text;
        }
    }
}

/** The text and the result of a layout in a box of 100 by 40 with a margin of 1 and an icon of 20 by 10. */
struct Laid {
    std::string text;
    std::uint32_t flags;
    bool fits;
};

Laid LaidOut(LexObj icon, std::int32_t layout, const char *text, double size = 10, bool isDingbat = false) {
    const StorePtr store = NewStore(100, 40);
    const TSFit fit{Always_K, Proportional_K, Pt(0.5), Pt(0.5)};
    TextAppearance look = LookOf(size);
    if (isDingbat) {
        look.baseFont = ZapfDingbats_K;
        look.fontResource = ZaDb_K;
    }
    const bool fits = CStoreLayoutIconText(store.get(), &fit, Pt(1), layout, icon, &look, text, isDingbat);
    return {TextOf(store.get()), store->flags, fits};
}

LexObj NewIcon(const TestDoc &doc) {
    const LexObj icon = NewForm(doc, "0 0 20 10 re f");
    const KRFixedRect box = Box(0, 0, 20, 10);
    TSLexPutRect(doc.lex, LexStreamDict(icon), BBox_K, &box);
    return icon;
}

TEST_F(LayoutTest, CaptionAndIconByTheirCode) {
    const TestDoc doc(FormObjects({}));
    const LexObj icon = NewIcon(doc);
    // The inside is 96 by 36 at 2, 2; "ab" is 11.12 wide and 11.56 high, its baseline 2.07 above its place.
    const auto caption = [](const char *x, const char *y) {
        return std::string("BT /Helv 10 Tf 0 g 1 0 0 1 ") + x + ' ' + y + " Tm (ab) Tj ET";
    };
    const auto show = [](const char *place, const char *matrix) {
        return std::string("q ") + place + " re W n " + matrix + " cm /FRM Do Q";
    };
    const struct {
        std::int32_t layout;
        std::string text;
        std::uint32_t flags;
    } cases[] = {
        {0, caption("44.44", "16.29"), 1},
        {1, show("2 2 96 36", "3.6 0 0 3.6 13.9999 2"), 16},
        {2, show("2 14.5601 96 23.4399", "2.344 0 0 2.344 26.5601 14.5601") + ' ' + caption("44.44", "4.07"), 17},
        {3, show("2 2 96 23.4399", "2.344 0 0 2.344 26.5601 2") + ' ' + caption("44.44", "28.5099"), 17},
        {4, show("2 2 83.88 36", "3.6 0 0 3.6 7.9399 2") + ' ' + caption("86.88", "16.29"), 17},
        {5, show("14.12 2 83.88 36", "3.6 0 0 3.6 20.0599 2") + ' ' + caption("2", "16.29"), 17},
        {6, show("2 2 96 36", "3.6 0 0 3.6 13.9999 2") + ' ' + caption("44.44", "16.29"), 17},
    };
    for (const auto &c : cases) {
        const Laid laid = LaidOut(icon, c.layout, "ab");
        EXPECT_EQ(laid.text, c.text) << c.layout;
        EXPECT_EQ(laid.flags, c.flags) << c.layout;
        EXPECT_EQ(laid.fits, c.layout != 1) << c.layout; // without a caption its place is the corner
    }
    EXPECT_EQ(LaidOut(icon, 7, "ab").flags, 0U);
}

TEST_F(LayoutTest, WhatIsMissingOrTooLargeIsLeftOut) {
    const TestDoc doc(FormObjects({}));
    const LexObj icon = NewIcon(doc);
    for (const Laid &nothing : {LaidOut(LexNullObj, 0, ""), LaidOut(LexNullObj, 2, nullptr),
                                LaidOut(LexNullObj, 1, "ab"), LaidOut(icon, 0, UCS2("").data())}) {
        EXPECT_EQ(nothing.text, "");
        EXPECT_TRUE(nothing.fits);
    }
    EXPECT_EQ(LaidOut(LexNullObj, 2, "ab").text, "BT /Helv 10 Tf 0 g 1 0 0 1 44.44 4.07 Tm (ab) Tj ET");
    // A caption that takes all the room drops the icon.
    for (const std::int32_t layout : {2, 3}) {
        const Laid laid = LaidOut(icon, layout, "ab", 40);
        EXPECT_EQ(laid.flags, CStoreUsesFont);
        EXPECT_FALSE(Has(laid.text, "Do"));
    }
    EXPECT_EQ(LaidOut(icon, 4, "a caption of some length", 10).flags, CStoreUsesFont);
    EXPECT_FALSE(LaidOut(LexNullObj, 0, "a caption of some length", 20).fits);
    EXPECT_NE(LaidOut(LexNullObj, 0, "ab", 0).text.find("/Helv 31.1"), std::string::npos); // 36 points of height
    // Marks stand in the middle by the height of their glyphs.
    EXPECT_EQ(LaidOut(LexNullObj, 0, "n", 10, true).text, "BT /ZaDb 10 Tf 0 g 1 0 0 1 46.195 16.54 Tm (n) Tj ET");
    EXPECT_EQ(LaidOut(LexNullObj, 0, "4", 10, true).text, "BT /ZaDb 10 Tf 0 g 1 0 0 1 45.77 16.545 Tm (4) Tj ET");
}

TEST_F(LayoutTest, TheFitMatrixScalesAndAligns) {
    const struct {
        KRAtom when, how;
        double dw, dh, sw, sh;
        const char *scale, *shift;
    } cases[] = {
        {Always_K, Proportional_K, 40, 40, 20, 10, "2 2", "0 5"}, // the slack is shared 1 to 3
        {Always_K, Proportional_K, 10, 40, 20, 20, "0.5 0.5", "0 7.5"},
        {Always_K, Anamorphic_K, 40, 40, 20, 10, "2 4", "0 0"},
        {TooBig_K, Proportional_K, 40, 40, 20, 10, "1 1", "5 7.5"}, // smaller: not scaled
        {TooBig_K, Proportional_K, 10, 40, 20, 20, "0.5 0.5", "0 7.5"},
        {TooBig_K, Anamorphic_K, 10, 40, 20, 20, "0.5 1", "0 5"},
        {TooSmall_K, Proportional_K, 40, 40, 20, 10, "2 2", "0 5"},
        {TooSmall_K, Proportional_K, 10, 40, 20, 20, "1 1", "-2.5 5"},
        {Never_K, Proportional_K, 40, 40, 20, 10, "1 1", "5 7.5"},
        {Always_K, Proportional_K, 20, 40, 20, 10, "1 1", "0 7.5"}, // exact on one side
        {Always_K, Proportional_K, 20, 10, 20, 10, "1 1", "0 0"},
    };
    for (const auto &c : cases) {
        const TSFit fit{c.when, c.how, Pt(0.25), Pt(0.25)};
        // The source lies away from the origin, which the shift takes back.
        const KRFixedRect dest = Box(0, 0, c.dw, c.dh), src = Box(8, 8, 8 + c.sw, 8 + c.sh);
        KRFixedMatrix m;
        GetFitMatrix(&fit, &dest, &src, &m);
        // As scale and shift of the source's own corner.
        const KRFixedRect moved{.left = m.a,
                                .top = TSFixedAdd(m.f, KRFixedMul(m.d, src.bottom)),
                                .right = TSFixedAdd(m.e, KRFixedMul(m.a, src.left)),
                                .bottom = m.d};
        EXPECT_EQ(RectText(moved), std::string(c.scale) + ' ' + c.shift) << c.dw << ' ' << c.dh << ' ' << c.sw;
    }
}

TEST_F(LayoutTest, TextIsClippedInsideItsBorder) {
    const TSBorder solid{TSBorderSolid, 1, 0, {}}, inset{TSBorderInset, 2, 0, {}};
    TextAppearance look = LookOf(12);
    for (const std::uint16_t rotation : {0, 90, 270}) {
        const StorePtr store = NewStore(200, 20, rotation);
        std::string text = "a\nb";
        TSLayoutText(store.get(), /*multiLine*/ false, /*wrap*/ true, &inset, &look, text.data());
        const std::string clip = rotation == 0 ? "q 4 4 192 12 re W n" : "q 4 4 12 192 re W n";
        EXPECT_EQ(TextOf(store.get()).substr(0, clip.size()), clip);
        EXPECT_TRUE(Has(TextOf(store.get()), "(ab) Tj ET Q")) << TextOf(store.get());
    }
    const StorePtr store = NewStore(200, 40);
    std::string wide = UCS2("a\nb");
    look.baseFont = KanjiGothic_K;
    look.fontResource = KaGo_K;
    TSLayoutText(store.get(), /*multiLine*/ false, /*wrap*/ true, &solid, &look, wide.data());
    EXPECT_TRUE(Has(TextOf(store.get()), "(\\000\\141\\000\\142) Tj")) << TextOf(store.get());

    CStoreClear(store.get());
    std::string lines = "a\nb";
    look = LookOf(0);
    TSLayoutTextEx(store.get(), /*multiLine*/ true, /*wrap*/ true, &solid, &look, lines.data(), Pt(5), Pt(9));
    EXPECT_TRUE(Has(TextOf(store.get()), "/Helv 9 Tf 0 g 1 0 0 1 1 ")) << TextOf(store.get());
    CStoreClear(store.get());
    TSLayoutText(store.get(), true, true, &solid, &look, nullptr);
    TSLayoutBorder(nullptr, &solid, &s_red, &s_back, false);
    TSLayoutText(nullptr, true, true, &solid, &look, lines.data());
    EXPECT_EQ(TextOf(store.get()), "");
    TSLayoutIconText(store.get(), 0, LexNullObj, &inset, &look, lines.data());
    EXPECT_EQ(TextOf(store.get()).substr(0, 22), "q 4 4 192 32 re W n BT");
    CStoreClear(store.get());
    TSLayoutBorder(store.get(), &inset, &s_red, nullptr, false);
    EXPECT_EQ(TextOf(store.get()).substr(0, 32), "1 0 0 RG 2 w 1 1 198 38 re s 0.5");
}

TEST_F(LayoutTest, NumbersOfHostileFilesAreHarmless) {
    const TestDoc doc(FormObjects({}));
    const KRFixedRect rects[] = {{INT32_MIN, INT32_MAX, INT32_MAX, INT32_MIN}, {}, Box(5, 5, 5, 1)};
    const LexObj icon = NewForm(doc, "f");
    for (const KRFixedRect &rect : rects) {
        for (const std::int32_t width : {INT32_MIN, -1, 0, 32767, INT32_MAX}) {
            for (const KRFixed size : {KRFixed{0}, KRFixed{1}, INT32_MAX}) {
                const StorePtr store(CStoreNew(&rect, 270));
                TextAppearance look = LookOf(0);
                look.size = size;
                for (std::int32_t style = 0; style < 6; ++style) {
                    const TSBorder border{style, width, 0, {}};
                    std::string text = "some text\nin lines";
                    TSLayoutBorder(store.get(), &border, &s_red, &s_back, style & 1);
                    CStoreDrawCircularBorder(store.get(), &rect, style, CStoreBorderMargin(&border), &s_red, &s_back,
                                             1);
                    TSLayoutText(store.get(), style & 1, style & 2, &border, &look, text.data());
                    TSLayoutIconText(store.get(), style, icon, &border, &look, text.data());
                    look.size = size;
                }
                EXPECT_EQ(LexObjGetType(CStoreSave(doc.lex, store.get())), LexStream);
            }
        }
    }
}

} // namespace
