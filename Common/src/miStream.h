// The data of a stream as one text.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "LexHFT.h"

/**
 * The decoded data, read to its end: `Length` tells of the encoded data, if of anything. Reading stops behind the block
 * that reaches `enough` bytes. Raises KRErrBadStream.
 */
std::string miStreamData(LexObj stream, std::size_t enough = SIZE_MAX);
