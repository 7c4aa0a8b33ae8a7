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

/** Fault injection: after `count` more allocations each one fails; -1 lets them succeed again. */
void LimitAllocations(std::int64_t count);

} // namespace jackdaw
