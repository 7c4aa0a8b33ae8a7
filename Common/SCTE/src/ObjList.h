// A list of pointers that it does not own, with an enumerator.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

struct ObjList {
    std::int32_t count;
    /** Null when the list is empty. */
    void **data;
};

struct ObjListEnumerator {
    ObjList *list;
    /** Of the object given last; -1 at first. */
    std::int32_t current;
};

/** Raises KRErrNoMemory, as do ObjListAddObject and ObjListEnumeratorCreate. */
ObjList *ObjListNew();
/** Null allowed. */
void ObjListFree(ObjList *list);
void ObjListAddObject(ObjList *list, void *object);
/** The last object goes whatever the index says; otherwise nothing for an index outside the list. */
void ObjListRemoveNth(ObjList *list, std::int32_t index);
/** First match, -1 when there is none. */
std::int32_t ObjListIndexOfObject(const ObjList *list, const void *object);

ObjListEnumerator *ObjListEnumeratorCreate(ObjList *list);
/** Null allowed. */
void ObjListEnumeratorDestroy(ObjListEnumerator *enumerator);
/** Steps to the next object; past the end false, the count and null. Either out pointer may be null. */
bool ObjListEnumeratorAdvance(ObjListEnumerator *enumerator, std::int32_t *index, void **object);
