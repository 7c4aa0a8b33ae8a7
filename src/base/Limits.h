// The limits of the plug-in: what it takes on from a file before it passes the rest over, so that a small hostile file
// can neither exhaust the stack nor the clock. Lengths that the file format or a record lays down stand where they are
// used; they cannot be set.
// SPDX-License-Identifier: MIT
#pragma once

#include "KRTypes.h"

/** Rows of the table. */
enum TSLimitIndex : std::int32_t {
    TSLimitFieldDepth,
    TSLimitInheritanceDepth,
    TSLimitComparisonDepth,
    TSLimitComparisonPairs,
    TSLimitNameTreeDepth,
    TSLimitCount
};

/** Slots of "FormsAuthoring", where they are described. */
bool TSLimitGet(std::int32_t index, KRLimit *limit);
bool TSLimitSet(const char *name, std::int64_t value);

/** The limit in force. */
std::int64_t TSLimitOf(TSLimitIndex index);
