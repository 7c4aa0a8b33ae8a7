// Deep copies of objects within a document and between documents.
//
// 1. An indirect source object is copied once for a memo, so cycles and shared objects stay whole.
// 2. A copy is as deep as its source, without recursion: the walk keeps its own stack.
// 3. A copy is indirect where its source is.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <unordered_map>
#include <utility>
#include <vector>

#include "LexHFT.h"

/** Says that `obj`, an indirect object of the target document, is shared rather than copied. */
using TSLexCopyPredicate = bool (*)(LexObj obj, void *data);

/** The memo of a copy: what was copied, and as what. Only indirect objects enter it. */
struct TSLexObjTrack {
    /** Source and copy, in the order of copying. */
    std::vector<std::pair<LexObj, LexObj>> pairs;
    /** Positions in `pairs` by the source's object number, which finds candidates; LexObjEqual decides. */
    std::unordered_multimap<std::int32_t, std::size_t> index;
};

/** The copy made of `source`, or the null object. */
LexObj TSLexObjTrackFind(const TSLexObjTrack &memo, LexObj source);

/**
 * The copy itself. With `shallow`, an indirect object of the target document is given as it is. `predicate` may be
 * null. Raises what the object layer raises.
 */
LexObj TSLexObjCopyEx(TSLexObjTrack *memo, LexDoc target, LexObj source, bool shallow, TSLexCopyPredicate predicate,
                      void *data);

/** A deep copy with a memo of its own; the null object on failure. Raises nothing. */
LexObj TSLexObjCopy(LexDoc target, LexObj source, bool shallow);
LexObj TSLexObjCopyWithPredicate(LexDoc target, LexObj source, TSLexCopyPredicate predicate, void *data);

enum TSLexCopyEntryMode : std::int32_t {
    /** Indirect objects of the target document are shared. */
    TSLexCopyEntryShallow = 0,
    TSLexCopyEntryDeep = 1,
    /** Shallow when the entry's value is indirect, else deep. */
    TSLexCopyEntryByKind = 2
};
/** Copies one entry, if the source has it, into the target's document. */
void TSLexObjCopyEntry(LexObj source, LexObj target, KRAtom key, std::int32_t mode);

/** What CopyShallowQuery is told; null data counts as false. */
struct TSPartialCopy {
    bool sameDocument;
};
/**
 * A TSLexCopyPredicate with a TSPartialCopy behind `data`: true within one document, and for a dictionary that belongs
 * to the field tree or is a widget, so that a copy never drags those along.
 */
bool CopyShallowQuery(LexObj obj, void *data);

/** Copies each entry that the target lacks; within one document its indirect objects are shared. */
void TSLexDictPartialCopy(LexObj source, LexObj target, bool sameDocument);
