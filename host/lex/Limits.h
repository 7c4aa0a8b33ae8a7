// What the object layer refuses, so that a small file cannot eat the machine. All can be set.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace jackdaw {

struct Limits {
    /** Bytes that the decoded data of one stream may have. */
    std::int64_t decodedStreamBytes = std::int64_t{256} << 20;
    /** Bytes that are taken from the source of a new stream. */
    std::int64_t newStreamBytes = std::int64_t{1} << 30;
    /** Elements to which an array may be grown by storing beyond its end. */
    std::int32_t arrayLength = 1 << 23;
    /** Levels of direct containers in each other that callers may build. The writer goes through them recursively, and
     *  the reader takes an object with more than 500 for damaged. */
    std::uint16_t directDepth = 400;
    /** Bytes of a document that is read from a pipe or a device. */
    std::int64_t pipedFileBytes = std::int64_t{256} << 20;
    /** Bytes of an FDF file. */
    std::int64_t fdfBytes = std::int64_t{1} << 30;
};

/** The limits in force. */
inline Limits &limits() {
    static Limits s_limits;
    return s_limits;
}

} // namespace jackdaw
