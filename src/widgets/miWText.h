// The handler of text fields: their data, and the appearance from the value. The live edit over a focused field belongs
// to the window.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "widgets/DMWidget.h"

/** Behind a text field's TSWidgetData. */
struct TSTextData {
    /** What WTextCompareData found different; what is set is not written. */
    std::uint32_t changed;
    /** `DV`, host text; empty when there is none. */
    std::string defaultValue;
    bool multiLine;
    /** Characters; 0 no limit, -1 without a valid field. */
    std::int16_t maxLength;
    bool password;
    /** 0 left, 1 centre, 2 right. */
    std::int32_t justification;
    /** Points, 16.16; 0 automatic. */
    KRFixed fontSize;
};

/** Bits of TSTextData::changed. */
enum TSTextChanged : std::uint32_t {
    TSTextDefault = 1,
    TSTextMultiLine = 2,
    TSTextMaxLength = 4,
    TSTextPassword = 8,
    TSTextJustification = 16,
    /** The other widget is of another type. */
    TSTextAll = 0x7FFFFFFF
};

TSWidgetData *WText_AcquireData(DMAnnot annot);
void WText_WriteData(DMAnnot annot, TSWidgetData *data);
void WText_ReleaseData(TSWidgetData *data);

/** Host text cut to so many characters. */
std::string WTextCut(const std::string &host, std::int32_t characters);
