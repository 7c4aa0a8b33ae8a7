// A growing text buffer of at most 65,535 bytes, which reports by result code.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "base/NameStr.h"

/** `length` stays below `size` except when the buffer is full; what lies behind it is zero. */
struct BufControl {
    char *data;
    std::uint16_t length;
    std::uint16_t size;
};

/** 0, or 1 when there is no memory. */
std::int32_t BufControlAlloc(BufControl *control, std::uint16_t size);
void BufControlFree(BufControl *control);
/** Appends; 0, or 1 when the buffer is full or memory fails. In the latter case the buffer is freed. */
std::int32_t BufStrCat(BufControl *control, const char *text);
/** For data exchange, which writes names. Appends a name and a terminator that `length` does not count; results as
 * BufStrCat. */
std::int32_t BufNmCat(BufControl *control, const NameStr *name);
