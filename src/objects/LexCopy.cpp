// Deep copies of objects.
// SPDX-License-Identifier: MIT
#include "objects/LexCopy.h"

#include <cstddef>

#include "Common/src/miLexType.h"
#include "KernelSupportHFT.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "objects/LexUtil.h"

namespace {

/** An element or entry that waits to be copied; `place` is its index or its key's atom. */
struct PendingEntry {
    std::int32_t place;
    LexObj value;
};

/** A container under way. */
struct CopyFrame {
    /** Dictionary or array that receives the copies: for a stream its dictionary. */
    LexObj into;
    /** What stands for the container in its own parent. */
    LexObj result;
    bool isArray;
    std::vector<PendingEntry> entries;
    std::size_t next = 0;
};

struct Copier {
    TSLexObjTrack *memo;
    LexDoc target;
    bool shallow;
    TSLexCopyPredicate predicate;
    void *data;
    std::vector<CopyFrame> stack;
};

void Remember(TSLexObjTrack *memo, LexObj source, LexObj copy) {
    if (!LexObjIsIndirect(source)) return;
    memo->index.emplace(LexObjGetID(source), memo->pairs.size());
    memo->pairs.emplace_back(source, copy);
}

struct StmCloser {
    KRStm stream;
    ~StmCloser() {
        if (stream) KRStmClose(stream);
    }
};

LexObj CopyString(LexDoc target, LexObj source, bool indirect) {
    std::int32_t length = 0;
    const char *const bytes = LexStringValue(source, &length);
    return LexNewString(target, indirect, bytes, length);
}

std::vector<PendingEntry> DictEntries(LexObj dict) {
    std::vector<PendingEntry> entries;
    LexObjEnum(
        dict,
        [](LexObj key, LexObj value, void *data) -> KRBool {
            static_cast<std::vector<PendingEntry> *>(data)->push_back({LexNameValue(key), value});
            return true;
        },
        &entries);
    return entries;
}

LexObj BeginArray(Copier &copier, LexObj source, bool indirect) {
    const std::int32_t length = LexArrayLength(source);
    const LexObj copy = LexNewArray(copier.target, indirect, length);
    Remember(copier.memo, source, copy);
    CopyFrame frame{copy, copy, /*isArray*/ true, {}};
    frame.entries.reserve(static_cast<std::size_t>(length));
    for (std::int32_t i = length - 1; i >= 0; --i) frame.entries.push_back({i, LexArrayGet(source, i)});
    copier.stack.push_back(std::move(frame));
    return copy;
}

LexObj BeginDict(Copier &copier, LexObj source, bool indirect) {
    const LexObj copy = LexNewDict(copier.target, indirect, /*sizeHint*/ 4);
    Remember(copier.memo, source, copy);
    copier.stack.push_back({copy, copy, /*isArray*/ false, DictEntries(source)});
    return copy;
}

/**
 * The new stream is made first, from the data as it stands, and its dictionary filled afterwards: so that a stream
 * whose resources lead back to it finds its own copy in the memo.
 */
LexObj BeginStream(Copier &copier, LexObj source) {
    const StmCloser raw{LexStreamOpenStm(source, LexStreamRaw)};
    const LexObj attributes = LexNewDict(copier.target, /*indirect*/ false, /*sizeHint*/ 4);
    const LexObj copy = LexNewStream(copier.target, /*indirect*/ true, raw.stream, /*start*/ -1, /*encode*/ false,
                                     attributes, LexNullObj, LexStreamLength(source));
    Remember(copier.memo, source, copy);
    std::vector<PendingEntry> entries = DictEntries(LexStreamDict(source));
    // The store keeps the length itself, and what the source says of it may be wrong.
    std::erase_if(entries, [](const PendingEntry &entry) { return entry.place == Length_K; });
    copier.stack.push_back({LexStreamDict(copy), copy, /*isArray*/ false, std::move(entries)});
    return copy;
}

LexObj CopyScalar(LexDoc target, LexObj source, std::int32_t type, bool indirect) {
    switch (type) {
    case LexInteger:
        return LexNewInteger(target, indirect, LexIntegerValue(source));
    case LexFixed:
        return LexNewFixed(target, indirect, LexFixedValue(source));
    case LexBoolean:
        return LexNewBoolean(target, indirect, LexBooleanValue(source));
    case LexName:
        return LexNewName(target, indirect, LexNameValue(source));
    case LexString:
        return CopyString(target, source, indirect);
    default:
        return LexNullObj;
    }
}

/** The copy of one object. A new container is empty yet: its frame is then on top of the stack. */
LexObj Begin(Copier &copier, LexObj source) {
    const bool indirect = LexObjIsIndirect(source) != 0;
    if (indirect) {
        const bool sameDoc = LexObjGetDoc(source) == copier.target;
        if (copier.shallow && sameDoc) return source;
        const LexObj earlier = TSLexObjTrackFind(*copier.memo, source);
        if (!IsNull(earlier)) return earlier;
        if (sameDoc && copier.predicate && copier.predicate(source, copier.data)) return source;
    }
    const std::int32_t type = LexObjGetType(source);
    switch (type) {
    case LexNull:
        return LexNullObj;
    case LexArray:
        return BeginArray(copier, source, indirect);
    case LexDict:
        return BeginDict(copier, source, indirect);
    case LexStream:
        return BeginStream(copier, source);
    default: {
        const LexObj copy = CopyScalar(copier.target, source, type, indirect);
        Remember(copier.memo, source, copy);
        return copy;
    }
    }
}

/** Stores the copy of the entry that was waited for. */
void Finish(CopyFrame &frame, LexObj copy) {
    const PendingEntry &entry = frame.entries[frame.next++];
    if (frame.isArray)
        LexArrayPut(frame.into, entry.place, copy);
    else
        LexDictPut(frame.into, static_cast<KRAtom>(entry.place), copy);
}

} // namespace

LexObj TSLexObjTrackFind(const TSLexObjTrack &memo, LexObj source) {
    const auto [first, last] = memo.index.equal_range(LexObjGetID(source));
    for (auto it = first; it != last; ++it) {
        const auto &[original, copy] = memo.pairs[it->second];
        if (LexObjEqual(original, source)) return copy;
    }
    return LexNullObj;
}

LexObj TSLexObjCopyEx(TSLexObjTrack *memo, LexDoc target, LexObj source, bool shallow, TSLexCopyPredicate predicate,
                      void *data) {
    Copier copier{memo, target, shallow, predicate, data, {}};
    const LexObj result = Begin(copier, source);
    while (!copier.stack.empty()) {
        CopyFrame &frame = copier.stack.back();
        if (frame.next == frame.entries.size()) {
            // A container goes into its parent when it is whole, as a direct one may not be reached before.
            const LexObj whole = frame.result;
            copier.stack.pop_back();
            if (!copier.stack.empty()) Finish(copier.stack.back(), whole);
            continue;
        }
        const std::size_t depth = copier.stack.size();
        const LexObj copy = Begin(copier, frame.entries[frame.next].value);
        if (copier.stack.size() == depth) Finish(copier.stack.back(), copy);
    }
    return result;
}

LexObj TSLexObjCopy(LexDoc target, LexObj source, bool shallow) {
    LexObj copy = LexNullObj;
    const KRErrorCode code = Protect([&] {
        TSLexObjTrack memo;
        copy = TSLexObjCopyEx(&memo, target, source, shallow, /*predicate*/ nullptr, /*data*/ nullptr);
    });
    return code ? LexNullObj : copy;
}

LexObj TSLexObjCopyWithPredicate(LexDoc target, LexObj source, TSLexCopyPredicate predicate, void *data) {
    LexObj copy = LexNullObj;
    const KRErrorCode code = Protect([&] {
        TSLexObjTrack memo;
        copy = TSLexObjCopyEx(&memo, target, source, /*shallow*/ false, predicate, data);
    });
    return code ? LexNullObj : copy;
}

void TSLexObjCopyEntry(LexObj source, LexObj target, KRAtom key, std::int32_t mode) {
    if (!LexDictKnown(source, key)) return;
    const LexObj value = LexDictGet(source, key);
    bool shallow = LexObjIsIndirect(value) != 0;
    if (mode == TSLexCopyEntryShallow) shallow = true;
    if (mode == TSLexCopyEntryDeep) shallow = false;
    LexDictPut(target, key, TSLexObjCopy(LexObjGetDoc(target), value, shallow));
}

bool CopyShallowQuery(LexObj obj, void *data) {
    const auto *const copy = static_cast<const TSPartialCopy *>(data);
    if (copy && copy->sameDocument) return true;
    if (!IsDict(obj)) return false;
    if (LexDictKnown(obj, parent_K) || LexDictKnown(obj, Kids_K)) return true;
    KRAtom subtype = KRAtomNull;
    return TSLexDictLoad<LexName>(obj, Subtype_K, &subtype) == 0 && subtype == Widget_K;
}

void TSLexDictPartialCopy(LexObj source, LexObj target, bool sameDocument) {
    TSPartialCopy query{sameDocument};
    const LexDoc doc = LexObjGetDoc(target);
    for (const PendingEntry &entry : DictEntries(source)) {
        const auto key = static_cast<KRAtom>(entry.place);
        if (LexDictKnown(target, key)) continue;
        LexDictPut(target, key, TSLexObjCopyWithPredicate(doc, entry.value, &CopyShallowQuery, &query));
    }
}
