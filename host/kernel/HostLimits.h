// The limits of the host: what it takes on from a file before it refuses or passes over the rest, so that a small
// hostile file can exhaust neither the memory nor the stack nor the clock. Lengths that the file format, the contract
// or a library lays down stand where they are used; they cannot be set.
// SPDX-License-Identifier: MIT
#pragma once

#include "KRTypes.h"

namespace jackdaw {

/** Rows of the table. */
enum class Limit : std::int32_t {
    // Files and their objects.
    FileBytes,
    PipedFileBytes,
    FdfBytes,
    StreamBytes,
    NewStreamBytes,
    ArrayLength,
    DirectDepth,
    SharedValues,
    DamageLines,
    DamageCount,
    // The document model.
    PageTreeDepth,
    NameTreeLevels,
    // Drawing.
    RenderPixels,
    DrawSeconds,
    DrawBytes,
    DrawnObjects,
    DrawnDepth,
    KeptPages,
    KeptPageBytes,
    // The view.
    ViewHistory,
    DestinationSteps,
    ActionChain,
    ActionDepth,
    ActionCopyDepth,
    AnnotCopyDepth,
    // What the command line reads beside its document.
    InputBytes,
    DataBytes,
    PasswordBytes,
    Count
};

/** The limit in force. */
std::int64_t LimitOf(Limit limit);

/** KRLimitGet and KRLimitSet. */
bool GetLimit(std::int32_t index, KRLimit *limit);
bool SetLimit(const char *name, std::int64_t value);

} // namespace jackdaw
