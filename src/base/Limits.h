// The limits of the plug-in: what it takes on from a file before it passes the rest over, so that a small hostile file
// can neither exhaust the stack nor the clock. Lengths that the file format or a record lays down stand where they are
// used; they cannot be set.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/** Rows of the table. */
enum TSLimitIndex : std::int32_t {
    TSLimitFieldDepth,
    TSLimitInheritanceDepth,
    TSLimitComparisonDepth,
    TSLimitComparisonPairs,
    TSLimitNameTreeDepth,
    TSLimitCount
};

struct TSLimit {
    /** As a user writes it. */
    const char *name;
    std::int64_t standard;
    /** The limit in force. */
    std::int64_t value;
    /** The highest that may be set: beyond it the stack is no longer safe. */
    std::int64_t highest;
    /** What it bounds, as a phrase for a list. */
    const char *bounds;
};

/** A row; null for an index outside the table. */
const TSLimit *TSLimitAt(std::int32_t index);

/** Sets a limit for the whole process. False for an unknown name, and for a value below 1 or above the highest. */
bool TSLimitSet(const char *name, std::int64_t value);

/** The limit in force. */
std::int64_t TSLimitOf(TSLimitIndex index);
