// The allocator that host and plug-ins share.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

namespace jackdaw {

/** Null when there is no memory; a size of 0 gives a block of its own too. */
void *Allocate(std::size_t size);
/** The block grown or cut; null on failure, and then `block` stands. */
void *Reallocate(void *block, std::size_t size);
/** Null allowed. */
void Release(void *block);

/** A NUL-terminated copy for a caller who frees it with KRfree. Throws KRErrNoMemory. */
char *AllocateText(std::string_view text);

/**
 * From now on every failure of the C++ allocator is counted before it is thrown. A library may turn it into a default
 * of its own and go on with less than it was given, so that whoever is about to keep a result looks here.
 */
void WatchAllocations();
/** Allocations that failed so far: of the functions above, of the C++ allocator once it is watched, and counted ones.
 */
std::uint64_t FailedAllocations();
/** Counts a failure of another allocator, which a library tells in its own way. */
void CountFailedAllocation();

/** Copies what fits in front of a terminator; nothing into a buffer of no size. Throws KRErrBadParam for a null one. */
void FillBuffer(std::string_view text, char *buffer, std::int32_t size);

/** Fault injection: after `count` more allocations each one fails; -1 lets them succeed again. */
void LimitAllocations(std::int64_t count);

} // namespace jackdaw
