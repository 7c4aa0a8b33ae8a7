// What combo boxes and list boxes have in common: their data and how it is written.
// SPDX-License-Identifier: MIT
#pragma once

#include "widgets/DMWidget.h"

/** Behind the TSWidgetData of a choice field. */
struct TSChoiceData {
    /** What a compare found different; what is set is not written. */
    std::uint32_t changed;
    bool sort;
    /** Combo boxes: it can be typed into. */
    bool editable;
    /** Index of the default value; -1 for none. */
    std::int16_t defaultIndex;
    /** List boxes: index of the first line on show. */
    std::int16_t topIndex;
    TSChoices choices;
};

/** Bits of TSChoiceData::changed. */
enum TSChoiceChanged : std::uint32_t {
    TSChoiceSort = 1,
    TSChoiceEditable = 2,
    TSChoiceDefault = 4,
    TSChoiceList = 8,
    TSChoiceAll = 0x7FFFFFFF
};

TSWidgetData *WChoiceAcquireData(SCWidgetHandler *handler, DMAnnot annot);
void WChoiceReleaseData(SCWidgetHandler *handler, TSWidgetData *data);
void WChoiceCompareData(SCWidgetHandler *handler, TSWidgetData *first, const TSWidgetData *other);
void WChoiceWriteData(SCWidgetHandler *handler, DMAnnot annot, TSWidgetData *data);
/** Fills everything but the type-specific slots of a handler, and registers it. */
void WChoiceInit(SCWidgetHandler *handler);
