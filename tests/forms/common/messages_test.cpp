// The catalogue, its cutting, the alerts and the font width records.
// SPDX-License-Identifier: MIT
#include <clocale>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Common/src/miEStr.h"
#include "Common/unix/mdMessages.h"
#include "Common/unix/mdUtils.h"
#include "CoreHFT.h"
#include "ScreenViewHFT.h"
#include "SiblingHFTs.h"

namespace {

/** What the host's alert was last asked, and which button it is to answer. */
struct AskedAlert {
    std::int32_t icon;
    std::string text;
    std::vector<std::string> buttons;
    std::int32_t answer;
} s_asked;

std::int32_t FakeAlert(std::int32_t icon, const char *text, const char *button1, const char *button2,
                       const char *button3, KRBool) {
    s_asked.icon = icon;
    s_asked.text = text;
    s_asked.buttons.clear();
    for (const char *button : {button1, button2, button3})
        if (button) s_asked.buttons.push_back(button);
    return s_asked.answer;
}

class MessagesTest : public testing::Test {
protected:
    void SetUp() override {
        locale_ = std::setlocale(LC_CTYPE, nullptr);
        std::setlocale(LC_CTYPE, "C.UTF-8");
        alert_ = gScreenViewHFT[SCAlert.selector];
        gScreenViewHFT[SCAlert.selector] = reinterpret_cast<KRProc>(&FakeAlert);
    }
    void TearDown() override {
        gScreenViewHFT[SCAlert.selector] = alert_;
        std::setlocale(LC_CTYPE, locale_.c_str());
    }
    std::string locale_;
    KRProc alert_ = nullptr;
};

TEST_F(MessagesTest, EveryNumberHasItsKeyAndText) {
    for (std::int32_t id = 0; id < Msg::Count; ++id) {
        const bool aboutBox = (id >= 4 && id <= 20) || (id >= 359 && id <= 361);
        EXPECT_EQ(*mdGetStringKey(id) == 0, aboutBox) << id;
        EXPECT_EQ(*mdGetStringPtr(id) == 0, aboutBox || id == Msg::realVersion) << id;
    }
    EXPECT_STREQ(mdGetStringKey(409), "menuEditDelete");
    EXPECT_STREQ(mdGetStringKey(68), "jswarningCancelscriptexecution");
    EXPECT_STREQ(mdGetStringPtr(Msg::Count), "Bad String ID");
    EXPECT_STREQ(mdGetStringPtr(-1), "Bad String ID");
    EXPECT_STREQ(mdGetStringPtr(Msg::pnfcsSymbolPound), "\xC2\xA3");
}

TEST_F(MessagesTest, TextsAreCutAtACharacter) {
    char buffer[64];
    EXPECT_STREQ(mdGetString(68, buffer, 10), "You are i");
    EXPECT_STREQ(mdGetString(1000, buffer, sizeof buffer), "Bad String ID");
    EXPECT_STREQ(mdGetString(Msg::pnfcsSymbolYen, buffer, 2), "");
    EXPECT_STREQ(mdGetButtonString(371, buffer, sizeof buffer), "Cut");
    EXPECT_STREQ(mdGetButtonString(Msg::menuJsCalcorder, buffer, sizeof buffer), "Set Field Calculation Order...");
    buffer[0] = 'x';
    mdGetString(68, buffer, 0);
    EXPECT_EQ(buffer[0], 'x');
    EXPECT_STREQ(EStrPtr(EStrNewFromIDImpl(Msg::language))->bytes, "ENU");
}

TEST_F(MessagesTest, ButtonsAnswerByTheirMeaning) {
    const auto answers = [](std::int32_t buttons) {
        std::vector<std::int32_t> all;
        for (s_asked.answer = 1; s_asked.answer <= 3; ++s_asked.answer)
            all.push_back(mdAlertText(nullptr, mdAlertError, buttons, "?"));
        return all;
    };
    EXPECT_EQ(answers(mdAlertOKCancel), (std::vector<std::int32_t>{1, 2, 2}));
    EXPECT_EQ(answers(mdAlertYesNo), (std::vector<std::int32_t>{4, 3, 3}));
    EXPECT_EQ(answers(mdAlertYesNoCancel), (std::vector<std::int32_t>{4, 3, 2}));
    EXPECT_EQ(s_asked.buttons, (std::vector<std::string>{"Yes", "No", "Cancel"}));
    EXPECT_EQ(answers(mdAlertOK), (std::vector<std::int32_t>{1, 1, 1}));
    EXPECT_EQ(s_asked.buttons, std::vector<std::string>{"OK"});
    EXPECT_EQ(answers(7), (std::vector<std::int32_t>{0, 0, 0}));

    const std::int32_t hostIcons[] = {1, 3, 2, 3, 0};
    for (std::int32_t icon = 0; icon < 5; ++icon) {
        mdAlertText(nullptr, icon, mdAlertOK, "");
        EXPECT_EQ(s_asked.icon, hostIcons[icon]);
    }
}

TEST_F(MessagesTest, AlertsFormatAndCut) {
    s_asked.answer = 1;
    mdAlertEx(nullptr, mdAlertError, mdAlertYesNo, Msg::errorFdfNf, "a.fdf");
    EXPECT_EQ(s_asked.text, "FDF \"a.fdf\" was not found. Would you like to browse for it?");
    std::string longName = "x";
    while (longName.size() < 5000) longName += "\xE6\x97\xA5";
    mdAlert(mdAlertError, mdAlertOK, Msg::genericString, longName.c_str());
    EXPECT_EQ(s_asked.text, longName.substr(0, 2077));
}

TEST_F(MessagesTest, FontRecordsAgreeWithTheMetricsOfTheHost) {
    std::size_t total = 0;
    for (const char *name : {"Courier", "Courier-Oblique", "Courier-Bold", "Courier-BoldOblique", "Helvetica",
                             "Helvetica-Oblique", "Helvetica-Bold", "Helvetica-BoldOblique", "Times-Roman",
                             "Times-Italic", "Times-Bold", "Times-BoldItalic", "Symbol", "ZapfDingbats"}) {
        std::uint16_t size = 0;
        mdFontRecord *record = mdGetData(KRAtomFromString(name), &size);
        ASSERT_NE(record, nullptr) << name;
        EXPECT_STREQ(record->name, std::strcmp(name, "Times-Roman") == 0 ? "Times" : name);
        total += size;
        BaseToolFontMetrics metrics;
        std::int32_t widths[256];
        ASSERT_TRUE(BaseToolGetFontMetrics(name, &metrics, widths));
        EXPECT_EQ(record->descender, metrics.descender);
        EXPECT_EQ(record->bboxRight, metrics.bboxRight);
        for (int code = 32; code < 127; ++code)
            EXPECT_EQ(mdFontRecordWidth(record, static_cast<std::uint8_t>(code)), widths[code]) << name << " " << code;
        mdReleaseData(record);
    }
    EXPECT_EQ(total, 14288u);
    std::uint16_t size = 0;
    EXPECT_EQ(mdGetData(KRAtomFromString("Arial"), &size), nullptr);
    EXPECT_EQ(mdGetData(KRAtomNull, &size), nullptr);
}

TEST_F(MessagesTest, TextsCompareWithoutRegardToCase) {
    EXPECT_EQ(mdStricmp("Cut", "cUT"), 0);
    EXPECT_EQ(mdStricmp("a", "B"), -1);
    EXPECT_EQ(mdStricmp("ab", "A"), 1);
}

} // namespace
