// Indexes of long arrays of field dictionaries, and of the names in `Fields`.
//
//  1. An index is trusted only after Sync, which compares length and last element. Growth at the end is taken in; any
//     other difference rebuilds.
//  2. Names are only hints: an element is asked for its present name before it counts, since titles change while an
//     element keeps its place.
// SPDX-License-Identifier: MIT
#include "model/FieldArray.h"

#include <algorithm>

#include "Common/src/miLexType.h"
#include "PIFrame.h"
#include "model/FieldName.h"
#include "model/NameHash.h"
#include "objects/LexUtil.h"

namespace {

/** Shorter arrays are searched as they are. */
constexpr std::int32_t IndexedLength = 64;
/** Arrays of a document that are indexed at a time. */
constexpr std::size_t IndexedArrays = 8;
/** From this many elements on, removing them one by one costs more than writing the array anew. */
constexpr std::size_t RewriteFrom = 8;

FieldArrayMembers::Member *FindMember(FieldArrayMembers &index, LexObj obj) {
    const auto [first, last] = index.members.equal_range(LexObjGetID(obj));
    for (auto it = first; it != last; ++it) {
        if (LexObjEqual(it->second.obj, obj)) return &it->second;
    }
    return nullptr;
}

bool IsMember(FieldArrayMembers &index, LexObj obj) {
    const FieldArrayMembers::Member *member = FindMember(index, obj);
    return member && member->count > 0;
}

/** The element's full name; false when it has none that is fit to use. */
bool NameOfElement(LexObj dict, FieldName *name) {
    bool named = false;
    const KRErrorCode code = Protect([&] { named = FormFieldNameAcquire(dict, name); });
    return named && code == KRErrNone;
}

bool HasName(LexObj dict, std::string_view wanted) {
    FieldName name;
    return NameOfElement(dict, &name) && wanted == std::string_view(name.text, name.length);
}

/** Enters an element as the last of its name. */
void NoteName(FieldArrayNames &names, LexObj obj) {
    if (!IsDict(obj)) return;
    const FieldArrayNames::Element element{obj, names.nextSequence++};
    FieldName name;
    if (!NameOfElement(obj, &name)) return;
    auto &same = names.byName[std::string(name.text, name.length)];
    if (!same.empty() && LexObjEqual(same.back().obj, obj)) same.pop_back();
    same.push_back(element);
}

void NoteMember(FieldArrayMembers &index, LexObj obj) {
    if (LexObjIsIndirect(obj)) {
        if (FieldArrayMembers::Member *member = FindMember(index, obj))
            ++member->count;
        else
            index.members.emplace(LexObjGetID(obj), FieldArrayMembers::Member{obj, 1});
    }
    if (index.names) NoteName(*index.names, obj);
}

/** Takes in what the array has beyond the index. */
void TakeTail(FieldArrayMembers &index) {
    const std::int32_t length = LexArrayLength(index.array);
    for (std::int32_t i = index.length; i < length; ++i) NoteMember(index, LexArrayGet(index.array, i));
    index.length = length;
    index.last = length > 0 ? LexArrayGet(index.array, length - 1) : LexNullObj;
}

void Sync(FieldArrayMembers &index) {
    const std::int32_t length = LexArrayLength(index.array);
    const bool kept = index.length <= length &&
                      (index.length == 0 || LexObjEqual(LexArrayGet(index.array, index.length - 1), index.last));
    if (kept && index.length == length) return;
    if (!kept) index = FieldArrayMembers(index.array);
    TakeTail(index);
}

FieldArrayIndex *IndexesOf(LexObj array) {
    DocHashControl *control = TSLexDocFindHashHead(LexObjGetDoc(array));
    return control ? &control->arrays : nullptr;
}

FieldArrayMembers *FindIndex(LexObj array) {
    FieldArrayIndex *indexes = IndexesOf(array);
    if (!indexes) return nullptr;
    const auto found = std::find_if(indexes->begin(), indexes->end(), [array](const FieldArrayMembers &index) {
        return LexObjEqual(index.array, array) != 0;
    });
    if (found == indexes->end()) return nullptr;
    // The one used longest ago goes first: `Fields` is needed for every node whose `Kids` are indexed meanwhile.
    std::rotate(indexes->begin(), found, found + 1);
    return &indexes->front();
}

/** The index of an array, up to date; null when the document has no block. */
FieldArrayMembers *EnsureIndex(LexObj array) {
    FieldArrayMembers *index = FindIndex(array);
    if (!index) {
        FieldArrayIndex *indexes = IndexesOf(array);
        if (!indexes) return nullptr;
        if (indexes->size() == IndexedArrays) indexes->pop_back();
        index = &*indexes->emplace(indexes->begin(), array);
    }
    Sync(*index);
    return index;
}

bool FoundBySearch(LexObj array, LexObj dict) {
    for (std::int32_t i = LexArrayLength(array) - 1; i >= 0; --i) {
        if (LexObjEqual(LexArrayGet(array, i), dict)) return true;
    }
    return false;
}

FieldArrayNames &EnsureNames(FieldArrayMembers &index) {
    if (!index.names) {
        index.names = std::make_unique<FieldArrayNames>();
        for (std::int32_t i = 0; i < index.length; ++i) NoteName(*index.names, LexArrayGet(index.array, i));
    }
    return *index.names;
}

/** Sequence of the last element of exactly this name, other than `dict`; -1 when there is none. */
std::int64_t LastNamed(FieldArrayMembers &index, LexObj dict, std::string_view name) {
    const auto found = index.names->byName.find(std::string(name));
    if (found == index.names->byName.end()) return -1;
    auto &same = found->second;
    for (std::size_t i = same.size(); i-- > 0;) {
        if (LexObjEqual(same[i].obj, dict)) continue;
        if (IsMember(index, same[i].obj) && HasName(same[i].obj, name)) return same[i].sequence;
        same.erase(same.begin() + static_cast<std::ptrdiff_t>(i));
    }
    return -1;
}

} // namespace

bool FieldArrayHas(LexObj array, LexObj dict) {
    if (!IsArray(array)) return false;
    if (LexArrayLength(array) < IndexedLength || !LexObjIsIndirect(dict)) return FoundBySearch(array, dict);
    FieldArrayMembers *index = EnsureIndex(array);
    return index ? IsMember(*index, dict) : FoundBySearch(array, dict);
}

void FieldArrayAppend(LexObj array, LexObj dict) {
    if (IsArray(array)) LexArrayInsert(array, LexArrayLength(array), dict);
}

void FieldArrayRemove(LexObj array, LexObj dict) {
    if (!FieldArrayHas(array, dict)) return;
    FieldArrayMembers *index = FindIndex(array);
    if (index) Sync(*index);
    LexArrayRemove(array, dict);
    FieldArrayMembers::Member *member = index ? FindMember(*index, dict) : nullptr;
    if (!member) return;
    const std::int32_t length = LexArrayLength(array);
    // Only one occurrence left: the others kept their order, and so did the sequence numbers of their names.
    --member->count;
    index->length = length;
    index->last = length > 0 ? LexArrayGet(array, length - 1) : LexNullObj;
}

void FieldArrayMoveToEnd(LexObj array, LexObj dict) {
    if (!IsArray(array)) return;
    const std::int32_t length = LexArrayLength(array);
    if (length > 0 && LexObjEqual(LexArrayGet(array, length - 1), dict)) {
        FieldArrayMembers *index = FindIndex(array);
        if (!index) return;
        // Its name may be another than when it came.
        Sync(*index);
        if (index->names) NoteName(*index->names, dict);
        return;
    }
    FieldArrayRemove(array, dict);
    FieldArrayAppend(array, dict);
}

bool FieldArrayReplace(LexObj array, LexObj dict, LexObj replacement) {
    if (!FieldArrayHas(array, dict)) return false;
    for (std::int32_t i = 0, length = LexArrayLength(array); i < length; ++i) {
        if (!LexObjEqual(LexArrayGet(array, i), dict)) continue;
        LexArrayPut(array, i, replacement);
        FieldArraysForget(LexObjGetDoc(array));
        return true;
    }
    return false;
}

LexObj FieldArrayLastNamed(LexObj array, std::string_view name) {
    if (!IsArray(array) || LexArrayLength(array) < IndexedLength) return LexNullObj;
    FieldArrayMembers *index = EnsureIndex(array);
    if (!index) return LexNullObj;
    EnsureNames(*index);
    if (LastNamed(*index, LexNullObj, name) < 0) return LexNullObj;
    // The search dropped whatever stood behind its result.
    return index->names->byName.find(std::string(name))->second.back().obj;
}

bool FieldArrayHasRootOf(LexObj fields, LexObj dict, std::string_view name) {
    FieldArrayMembers *index = IsArray(fields) ? EnsureIndex(fields) : nullptr;
    if (!index) return false;
    EnsureNames(*index);
    for (std::size_t dot = name.find('.');; dot = name.find('.', dot + 1)) {
        if (LastNamed(*index, dict, name.substr(0, dot)) >= 0) return true;
        if (dot == std::string_view::npos) return false;
    }
}

void FieldArrayRemoveAll(LexObj owner, KRAtom key, const LexObjSet &elements) {
    const LexObj array = TSLexDictGetOfType(owner, key, LexArray);
    if (!IsArray(array)) return;
    if (elements.Size() < RewriteFrom) {
        for (const auto &[id, element] : elements) FieldArrayRemove(array, element);
        return;
    }
    const std::int32_t length = LexArrayLength(array);
    const LexObj kept = LexNewArray(LexObjGetDoc(owner), LexObjIsIndirect(array), length);
    for (std::int32_t i = 0, next = 0; i < length; ++i) {
        const LexObj element = LexArrayGet(array, i);
        if (!elements.Has(element)) LexArrayPut(kept, next++, element);
    }
    LexDictPut(owner, key, kept);
    FieldArraysForget(LexObjGetDoc(owner));
}

void FieldArraysForget(LexDoc doc) {
    if (DocHashControl *control = TSLexDocFindHashHead(doc)) control->arrays.clear();
}
