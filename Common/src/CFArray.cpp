// A growing array of pointers that it does not own.
// SPDX-License-Identifier: MIT
#include "Common/src/CFArray.h"

#include <algorithm>
#include <cstring>

#include "Common/src/miUtils.h"
#include "CoreHFT.h"
#include "KRErrors.h"

CFArray::CFArray(std::int32_t initialSize) : minCapacity_(std::max(initialSize, 0)) {
    AdjustArraySize(0);
}

CFArray::~CFArray() {
    KRIfNotNullFree(data_);
}

std::int32_t CFArray::GetNumObjects() const {
    return count_;
}

std::int32_t CFArray::GetCapacity() const {
    return capacity_;
}

void CFArray::CheckIndex(std::int32_t index) const {
    if (index < 0 || index >= count_) KRRaise(KRErrBadParam);
}

void *CFArray::GetNthObject(std::int32_t index) const {
    CheckIndex(index);
    return data_[index];
}

void CFArray::AppendObject(void *object) {
    InsertObject(object, count_);
}

void CFArray::InsertObject(void *object, std::int32_t index) {
    AdjustArraySize(count_ + 1);
    index = std::clamp(index, 0, count_);
    std::copy_backward(data_ + index, data_ + count_, data_ + count_ + 1);
    data_[index] = object;
    ++count_;
}

void CFArray::SetObject(void *object, std::int32_t index) {
    CheckIndex(index);
    data_[index] = object;
}

void CFArray::RemoveObject(std::int32_t index) {
    CheckIndex(index);
    std::copy(data_ + index + 1, data_ + count_, data_ + index);
    --count_;
    AdjustArraySize(count_);
}

std::int32_t CFArray::IndexOfObject(const void *object) const {
    const auto *found = std::find(data_, data_ + count_, object);
    return found == data_ + count_ ? -1 : static_cast<std::int32_t>(found - data_);
}

void CFArray::AdjustArraySize(std::int32_t needed) {
    std::int64_t capacity = minCapacity_;
    if (minCapacity_ < needed) {
        capacity = needed;
        if (capacity_ / 2 < needed) capacity *= 2;
    } else if (capacity_ == minCapacity_) {
        return;
    }
    if (capacity > INT32_MAX) KRRaise(KRErrNoMemory);
    data_ = static_cast<void **>(KRSureRealloc(data_, static_cast<std::size_t>(capacity) * sizeof(void *)));
    capacity_ = static_cast<std::int32_t>(capacity);
}
