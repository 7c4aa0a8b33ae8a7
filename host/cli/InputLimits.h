// How much is read of what may be endless.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace jackdaw::cli {

/** Bytes of the data of `fill`. */
inline constexpr std::int64_t DataBytes = std::int64_t{256} << 20;
/** Bytes of a password. */
inline constexpr std::int64_t PasswordBytes = 1024;
/** Bytes of a document on standard input. */
inline constexpr std::int64_t PipedDocumentBytes = std::int64_t{1} << 30;

} // namespace jackdaw::cli
