// A growing text buffer of at most 65,535 bytes, which reports by result code.
// SPDX-License-Identifier: MIT
#include "base/BufCont.h"

#include <cstring>

#include "Common/src/miUtils.h"
#include "KernelSupportHFT.h"

namespace {

constexpr std::uint16_t s_maxSize = 65535;
/** 65,535 is a whole number of steps. */
constexpr std::uint32_t s_step = 255;

std::int32_t Grow(BufControl *control) {
    if (control->size == s_maxSize) return 1;
    const std::uint32_t size = (control->size / s_step + 1) * s_step;
    char *data = static_cast<char *>(KRrealloc(control->data, size));
    if (!data) {
        BufControlFree(control);
        return 1;
    }
    std::memset(data + control->size, 0, size - control->size);
    control->data = data;
    control->size = static_cast<std::uint16_t>(size);
    return 0;
}

} // namespace

std::int32_t BufControlAlloc(BufControl *control, std::uint16_t size) {
    *control = {nullptr, 0, 0};
    if (size == 0) return 0;
    control->data = static_cast<char *>(AScalloc(1, size));
    if (!control->data) return 1;
    control->size = size;
    return 0;
}

void BufControlFree(BufControl *control) {
    if (control->size != 0) KRIfNotNullFree(control->data);
    *control = {nullptr, 0, 0};
}

std::int32_t BufStrCat(BufControl *control, const char *text) {
    for (; *text; ++text) {
        if (control->length == control->size && Grow(control) != 0) return 1;
        control->data[control->length++] = *text;
        if (control->length == control->size && Grow(control) != 0) return 1;
    }
    return 0;
}

std::int32_t BufNmCat(BufControl *control, const NameStr *name) {
    const std::uint32_t end = std::uint32_t{control->length} + name->len;
    if (end >= s_maxSize) return 1;
    while (end >= control->size)
        if (Grow(control) != 0) return 1;
    NameStrCpy(control->data + control->length, name);
    control->data[end] = 0;
    control->length = static_cast<std::uint16_t>(end);
    return 0;
}
