// The sibling "BaseTool": metrics of the fourteen base fonts, and text converters.
// SPDX-License-Identifier: MIT
#pragma once

#include "SiblingHFTs.h"

namespace jackdaw {

/** Fills the table "BaseTool" in SiblingHFTs.h, which has been defined. */
void FillBaseToolTable();

/** BaseToolGetFontMetrics for host code. */
bool BaseFontMetrics(const char *fontName, BaseToolFontMetrics &metrics, std::int32_t widths[256]);

} // namespace jackdaw
