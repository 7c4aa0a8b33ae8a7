// A list of pointers that it does not own, with an enumerator.
// SPDX-License-Identifier: MIT
#include "Common/SCTE/src/ObjList.h"

#include <algorithm>

#include "Common/src/miUtils.h"

ObjList *ObjListNew() {
    return static_cast<ObjList *>(KRSureCalloc(1, sizeof(ObjList)));
}

void ObjListFree(ObjList *list) {
    if (!list) return;
    KRIfNotNullFree(list->data);
    KRIfNotNullFree(list);
}

void ObjListAddObject(ObjList *list, void *object) {
    const auto needed = static_cast<std::size_t>(list->count) + 1;
    list->data = static_cast<void **>(KRSureRealloc(list->data, needed * sizeof(void *)));
    list->data[list->count++] = object;
}

void ObjListRemoveNth(ObjList *list, std::int32_t index) {
    if (list->count < 2) {
        KRIfNotNullFree(list->data);
        list->data = nullptr;
        list->count = 0;
    } else if (index >= 0 && index < list->count) {
        std::copy(list->data + index + 1, list->data + list->count, list->data + index);
        --list->count;
    }
}

std::int32_t ObjListIndexOfObject(const ObjList *list, const void *object) {
    const auto *found = std::find(list->data, list->data + list->count, object);
    return found == list->data + list->count ? -1 : static_cast<std::int32_t>(found - list->data);
}

ObjListEnumerator *ObjListEnumeratorCreate(ObjList *list) {
    auto *enumerator = static_cast<ObjListEnumerator *>(KRSureMalloc(sizeof(ObjListEnumerator)));
    *enumerator = {list, -1};
    return enumerator;
}

void ObjListEnumeratorDestroy(ObjListEnumerator *enumerator) {
    KRIfNotNullFree(enumerator);
}

bool ObjListEnumeratorAdvance(ObjListEnumerator *enumerator, std::int32_t *index, void **object) {
    const ObjList *list = enumerator->list;
    const bool more = enumerator->current < list->count - 1;
    enumerator->current = more ? enumerator->current + 1 : list->count;
    if (index) *index = enumerator->current;
    if (object) *object = more ? list->data[enumerator->current] : nullptr;
    return more;
}
