// A growing array of pointers that it does not own.
// SPDX-License-Identifier: MIT
#include "CFArray.h"

#include <algorithm>
#include <cstring>

#include "CoreHFT.h"
#include "KRErrors.h"
#include "miUtils.h"

CFArray::CFArray(std::int32_t initialSize) : m_minCapacity(std::max(initialSize, 0)) {
    AdjustArraySize(0);
}

CFArray::~CFArray() {
    KRIfNotNullFree(m_data);
}

std::int32_t CFArray::GetNumObjects() const {
    return m_count;
}

std::int32_t CFArray::GetCapacity() const {
    return m_capacity;
}

void CFArray::CheckIndex(std::int32_t index) const {
    if (index < 0 || index >= m_count) KRRaise(KRErrBadParam);
}

void *CFArray::GetNthObject(std::int32_t index) const {
    CheckIndex(index);
    return m_data[index];
}

void CFArray::AppendObject(void *object) {
    InsertObject(object, m_count);
}

void CFArray::InsertObject(void *object, std::int32_t index) {
    AdjustArraySize(m_count + 1);
    index = std::clamp(index, 0, m_count);
    std::copy_backward(m_data + index, m_data + m_count, m_data + m_count + 1);
    m_data[index] = object;
    ++m_count;
}

void CFArray::SetObject(void *object, std::int32_t index) {
    CheckIndex(index);
    m_data[index] = object;
}

void CFArray::RemoveObject(std::int32_t index) {
    CheckIndex(index);
    std::copy(m_data + index + 1, m_data + m_count, m_data + index);
    --m_count;
    AdjustArraySize(m_count);
}

std::int32_t CFArray::IndexOfObject(const void *object) const {
    const auto *found = std::find(m_data, m_data + m_count, object);
    return found == m_data + m_count ? -1 : static_cast<std::int32_t>(found - m_data);
}

void CFArray::AdjustArraySize(std::int32_t needed) {
    std::int64_t capacity = m_minCapacity;
    if (m_minCapacity < needed) {
        capacity = needed;
        if (m_capacity / 2 < needed) capacity *= 2;
    } else if (m_capacity == m_minCapacity) {
        return;
    }
    if (capacity > INT32_MAX) KRRaise(KRErrNoMemory);
    m_data = static_cast<void **>(KRSureRealloc(m_data, static_cast<std::size_t>(capacity) * sizeof(void *)));
    m_capacity = static_cast<std::int32_t>(capacity);
}
