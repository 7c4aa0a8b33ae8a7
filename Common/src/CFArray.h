// A growing array of pointers that it does not own.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/**
 * Above the initial size every change of the count reallocates, to the need or twice the need; when the need fits in
 * the initial size the capacity falls back to that. Growing raises KRErrNoMemory.
 */
class CFArray {
public:
    explicit CFArray(std::int32_t initialSize);
    ~CFArray();
    CFArray(const CFArray &) = delete;
    CFArray &operator=(const CFArray &) = delete;

    std::int32_t GetNumObjects() const;
    std::int32_t GetCapacity() const;
    /** Raises KRErrBadParam outside the array, as do SetObject and RemoveObject. */
    void *GetNthObject(std::int32_t index) const;
    void AppendObject(void *object);
    /** The index is clamped into the array. */
    void InsertObject(void *object, std::int32_t index);
    void SetObject(void *object, std::int32_t index);
    void RemoveObject(std::int32_t index);
    /** First match, -1 when there is none. */
    std::int32_t IndexOfObject(const void *object) const;

private:
    void AdjustArraySize(std::int32_t needed);
    void CheckIndex(std::int32_t index) const;

    std::int32_t count_ = 0;
    std::int32_t minCapacity_;
    std::int32_t capacity_ = 0;
    void **data_ = nullptr;
};
