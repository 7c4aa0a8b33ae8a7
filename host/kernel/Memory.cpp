// The allocator that host and plug-ins share: the system's, with a tap for fault injection.
// SPDX-License-Identifier: MIT
#include "kernel/Memory.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include "kernel/HostError.h"

namespace jackdaw {

namespace {

std::int64_t s_allocationsLeft = -1;
std::uint64_t s_failed = 0;

[[noreturn]] void noteFailure() {
    ++s_failed;
    throw std::bad_alloc();
}

void *counted(void *block) {
    if (!block) ++s_failed;
    return block;
}

bool mayAllocate() {
    if (s_allocationsLeft < 0) return true;
    if (s_allocationsLeft == 0) return false;
    --s_allocationsLeft;
    return true;
}

// realloc(block, 0) frees on some systems, and malloc(0) may give null, which a caller would take for failure.
std::size_t atLeastOne(std::size_t size) {
    return size ? size : 1;
}

} // namespace

void *Allocate(std::size_t size) {
    return counted(mayAllocate() ? std::malloc(atLeastOne(size)) : nullptr);
}

void *Reallocate(void *block, std::size_t size) {
    return counted(mayAllocate() ? std::realloc(block, atLeastOne(size)) : nullptr);
}

void Release(void *block) {
    std::free(block);
}

char *AllocateText(std::string_view text) {
    char *const copy = static_cast<char *>(Allocate(text.size() + 1));
    if (!copy) throw HostError{KRErrNoMemory};
    if (!text.empty()) std::memcpy(copy, text.data(), text.size());
    copy[text.size()] = '\0';
    return copy;
}

void FillBuffer(std::string_view text, char *buffer, std::int32_t size) {
    if (size <= 0) return;
    if (!buffer) throw HostError{KRErrBadParam, "A buffer is missing."};
    const std::size_t count = std::min(text.size(), static_cast<std::size_t>(size) - 1);
    text.copy(buffer, count);
    buffer[count] = '\0';
}

void WatchAllocations() {
    std::set_new_handler(&noteFailure);
}

std::uint64_t FailedAllocations() {
    return s_failed;
}

void CountFailedAllocation() {
    ++s_failed;
}

void LimitAllocations(std::int64_t count) {
    s_allocationsLeft = count;
}

} // namespace jackdaw
