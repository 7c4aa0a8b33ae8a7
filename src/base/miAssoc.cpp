// A process-wide store of blocks by a key of three parts.
// SPDX-License-Identifier: MIT
#include "base/miAssoc.h"

#include <cstring>
#include <memory>

#include "Common/src/miUtils.h"
#include "KernelSupportHFT.h"

namespace {

struct Associate {
    KRWord owner;
    std::uint16_t first, second;
    void *data;
    std::uint32_t size;
    Associate *next;
};

Associate *s_associates = nullptr;

/** The link that leads to the entry, or the one at the end of the list. */
Associate **LinkTo(KRWord owner, std::uint16_t first, std::uint16_t second) {
    Associate **link = &s_associates;
    while (*link && ((*link)->owner != owner || (*link)->first != first || (*link)->second != second))
        link = &(*link)->next;
    return link;
}

void RemoveAt(Associate **link) {
    Associate *entry = *link;
    *link = entry->next;
    KRIfNotNullFree(entry->data);
    KRIfNotNullFree(entry);
}

} // namespace

bool AssociateNew(KRWord owner, std::uint16_t first, std::uint16_t second, const void *bytes, std::uint32_t size) {
    // Copied before the old block goes, since the new bytes may come from it.
    std::unique_ptr<void, KRFreeDeleter> copy(AScalloc(1, size));
    if (!copy) return false;
    miCopyMem(copy.get(), bytes, size);
    Associate *entry = *LinkTo(owner, first, second);
    if (entry) {
        KRIfNotNullFree(entry->data);
    } else {
        entry = static_cast<Associate *>(AScalloc(1, sizeof(Associate)));
        if (!entry) return false;
        *entry = {owner, first, second, nullptr, 0, s_associates};
        s_associates = entry;
    }
    entry->data = copy.release();
    entry->size = size;
    return true;
}

bool AssociateDelete(KRWord owner, std::uint16_t first, std::uint16_t second) {
    Associate **link = LinkTo(owner, first, second);
    if (!*link) return false;
    RemoveAt(link);
    return true;
}

void *AssociateFind(KRWord owner, std::uint16_t first, std::uint16_t second) {
    const Associate *entry = *LinkTo(owner, first, second);
    return entry ? entry->data : nullptr;
}

void AssociateClear() {
    while (s_associates) RemoveAt(&s_associates);
}
