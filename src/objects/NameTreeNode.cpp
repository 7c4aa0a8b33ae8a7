// The walks over the nodes of one name tree.
// SPDX-License-Identifier: MIT
#include "objects/NameTreeNode.h"

#include <unordered_set>

#include "Common/src/miLexType.h"
#include "CoreHFT.h"
#include "KRErrors.h"
#include "base/FormStr.h"
#include "base/Limits.h"
#include "objects/LexCopy.h"
#include "objects/LexUtil.h"
#include "objects/NameTree.h"

namespace {

/** Object numbers of the indirect nodes that a walk has come through. */
using SeenNodes = std::unordered_set<std::int32_t>;

LexObj Kids(LexObj node) {
    return TSLexDictGetOfType(node, Kids_K, LexArray);
}

LexObj Names(LexObj node) {
    return TSLexDictGetOfType(node, Names_K, LexArray);
}

void CheckDepth(int depth) {
    if (depth > TSLimitOf(TSLimitNameTreeDepth)) KRRaise(KRErrBadParam);
}

/** True once for every node of a walk: a node reached twice belongs to a circle or to two parents. */
bool EnterNode(LexObj node, int depth, SeenNodes &seen) {
    CheckDepth(depth);
    if (!IsDict(node)) return false;
    return !LexObjIsIndirect(node) || seen.insert(LexObjGetID(node)).second;
}

std::string_view Limit(LexObj node, std::int32_t which) {
    const LexObj limits = TSLexDictGetOfType(node, Limits_K, LexArray);
    return IsArray(limits) ? TSStringOf(LexArrayGet(limits, which)) : std::string_view();
}

void WidenLimits(const TSNodeEdit &edit, LexObj node) {
    const LexObj limits = TSLexDictGetOfType(node, Limits_K, LexArray);
    if (!IsArray(limits)) return;
    if (TSStringCompare(edit.name, Limit(node, 0)) < 0) LexArrayPut(limits, 0, TSNewKey(edit.doc, edit.name));
    if (TSStringCompare(edit.name, Limit(node, 1)) > 0) LexArrayPut(limits, 1, TSNewKey(edit.doc, edit.name));
}

/** The kid that a name belongs to: the first whose upper limit is not below it, else the last. */
LexObj ChooseKid(LexObj kids, std::string_view name) {
    LexObj last = LexNullObj;
    const std::int32_t count = LexArrayLength(kids);
    for (std::int32_t i = 0; i < count; ++i) {
        const LexObj kid = LexArrayGet(kids, i);
        if (!IsDict(kid)) continue;
        if (TSStringCompare(Limit(kid, 1), name) >= 0) return kid;
        last = kid;
    }
    return last;
}

LexObj WithoutPair(LexDoc doc, LexObj names, std::int32_t pair) {
    const std::int32_t count = LexArrayLength(names);
    const LexObj result = LexNewArray(doc, LexObjIsIndirect(names), count);
    for (std::int32_t i = 0; i + 1 < count; i += 2) {
        if (i == 2 * pair) continue;
        const std::int32_t end = LexArrayLength(result);
        LexArrayPut(result, end, TSNewKey(doc, TSStringOf(LexArrayGet(names, i))));
        LexArrayPut(result, end + 1, TSMovedValue(doc, LexArrayGet(names, i + 1)));
    }
    return result;
}

bool RemoveFromLeaf(const TSNodeEdit &edit, LexObj leaf) {
    LexObj names = Names(leaf);
    if (!IsArray(names)) return false;
    bool touchedEdge = false;
    for (std::int32_t pair = 0; 2 * pair + 1 < LexArrayLength(names);) {
        const int order = TSStringCompare(TSStringOf(LexArrayGet(names, 2 * pair)), edit.name);
        if (order > 0) break;
        if (order < 0) {
            ++pair;
            continue;
        }
        const LexObj old = LexArrayGet(names, 2 * pair + 1);
        names = WithoutPair(edit.doc, names, pair);
        LexDictPut(leaf, Names_K, names);
        if (edit.mode & (TSNameDestroyOld | TSNameRemoveDestroy)) LexObjDestroy(old);
        if (pair == 0 || 2 * pair >= LexArrayLength(names)) touchedEdge = true;
    }
    return touchedEdge;
}

void ReplacePair(const TSNodeEdit &edit, LexObj names, std::int32_t pair) {
    const LexObj old = LexArrayGet(names, 2 * pair + 1);
    LexArrayPut(names, 2 * pair, TSNewKey(edit.doc, edit.name));
    LexArrayPut(names, 2 * pair + 1, edit.value);
    if ((edit.mode & TSNameDestroyOld) && !LexObjEqual(old, edit.value)) LexObjDestroy(old);
}

bool AddToLeaf(const TSNodeEdit &edit, LexObj leaf) {
    const LexObj names = TSLexArrayEnsure(leaf, Names_K, /*indirect*/ false);
    const std::int32_t pairs = LexArrayLength(names) / 2;
    std::int32_t pair = 0;
    for (; pair < pairs; ++pair) {
        const int order = TSStringCompare(TSStringOf(LexArrayGet(names, 2 * pair)), edit.name);
        if (order == 0) {
            ReplacePair(edit, names, pair);
            return pair == 0;
        }
        if (order > 0) break;
    }
    LexArrayInsert(names, 2 * pair, TSNewKey(edit.doc, edit.name));
    LexArrayInsert(names, 2 * pair + 1, edit.value);
    return pair == 0 || pair == pairs;
}

bool EditNode(const TSNodeEdit &edit, LexObj node, int depth) {
    CheckDepth(depth);
    const bool removing = (edit.mode & (TSNameRemoveDestroy | TSNameRemove)) != 0;
    if (!removing) WidenLimits(edit, node);
    const LexObj kids = Kids(node);
    if (IsArray(kids)) {
        const LexObj kid = ChooseKid(kids, edit.name);
        if (IsDict(kid)) return EditNode(edit, kid, depth + 1);
        // Kids without a node among them: it may as well be a leaf.
        if (!removing) LexDictRemove(node, Kids_K);
    }
    return removing ? RemoveFromLeaf(edit, node) : AddToLeaf(edit, node);
}

LexObj FindInLeaf(LexObj leaf, std::string_view name) {
    const LexObj names = Names(leaf);
    const std::int32_t count = IsArray(names) ? LexArrayLength(names) : 0;
    for (std::int32_t i = 0; i + 1 < count; i += 2) {
        const int order = TSStringCompare(TSStringOf(LexArrayGet(names, i)), name);
        if (order == 0) return LexArrayGet(names, i + 1);
        if (order > 0) break;
    }
    return LexNullObj;
}

bool EnumLeaves(LexObj node, int depth, SeenNodes &seen, Forms::NameEntryProc proc, void *data) {
    if (!EnterNode(node, depth, seen)) return true;
    const LexObj kids = Kids(node);
    if (IsArray(kids)) {
        for (std::int32_t i = 0; i < LexArrayLength(kids); ++i) {
            if (!EnumLeaves(LexArrayGet(kids, i), depth + 1, seen, proc, data)) return false;
        }
        return true;
    }
    const LexObj names = Names(node);
    if (!IsArray(names)) return true;
    for (std::int32_t i = 0; i + 1 < LexArrayLength(names); i += 2) {
        if (!proc(LexArrayGet(names, i), LexArrayGet(names, i + 1), data)) return false;
    }
    return true;
}

struct LimitPair {
    std::string_view lower, upper;
    bool known = false;
};

LimitPair LeafLimits(LexObj leaf) {
    const LexObj names = Names(leaf);
    const std::int32_t pairs = IsArray(names) ? LexArrayLength(names) / 2 : 0;
    if (pairs == 0) return {};
    return {TSStringOf(LexArrayGet(names, 0)), TSStringOf(LexArrayGet(names, 2 * (pairs - 1))), /*known*/ true};
}

LimitPair KidLimits(LexObj kids) {
    LimitPair limits;
    for (std::int32_t i = 0; i < LexArrayLength(kids); ++i) {
        const LexObj kid = LexArrayGet(kids, i);
        if (!IsArray(TSLexDictGetOfType(kid, Limits_K, LexArray))) continue;
        if (!limits.known) limits.lower = Limit(kid, 0);
        limits.upper = Limit(kid, 1);
        limits.known = true;
    }
    return limits;
}

void PutLimits(LexObj node, const LimitPair &limits) {
    const LexDoc doc = LexObjGetDoc(node);
    const LexObj lower = TSNewKey(doc, limits.lower);
    const LexObj upper = TSNewKey(doc, limits.upper);
    const LexObj array = TSLexArrayEnsure(node, Limits_K, /*indirect*/ false);
    LexArrayPut(array, 0, lower);
    LexArrayPut(array, 1, upper);
}

void RemoveKey(LexObj dict, KRAtom key) {
    if (LexDictKnown(dict, key)) LexDictRemove(dict, key);
}

void UpdateLimits(LexObj node, int depth, SeenNodes &seen) {
    if (!EnterNode(node, depth, seen)) return;
    const LexObj kids = Kids(node);
    if (IsArray(kids)) {
        for (std::int32_t i = 0; i < LexArrayLength(kids); ++i) UpdateLimits(LexArrayGet(kids, i), depth + 1, seen);
    }
    RemoveKey(node, nKids_K);
    if (depth == 0) {
        RemoveKey(node, Limits_K);
        return;
    }
    const LimitPair limits = IsArray(kids) ? KidLimits(kids) : LeafLimits(node);
    if (limits.known) PutLimits(node, limits);
}

void DestroyNodes(LexObj node, int depth, SeenNodes &seen) {
    if (!EnterNode(node, depth, seen)) return;
    const LexObj kids = Kids(node);
    if (IsArray(kids)) {
        for (std::int32_t i = 0; i < LexArrayLength(kids); ++i) DestroyNodes(LexArrayGet(kids, i), depth + 1, seen);
    }
    LexObjDestroy(node);
}

} // namespace

std::string_view TSStringOf(LexObj key) {
    if (!IsString(key)) return {};
    std::int32_t length = 0;
    const char *const bytes = LexStringValue(key, &length);
    return {bytes, static_cast<std::size_t>(length)};
}

int TSStringCompare(std::string_view a, std::string_view b) {
    const int order = a.compare(b);
    return (order > 0) - (order < 0);
}

LexObj TSNewKey(LexDoc doc, std::string_view name) {
    return LexNewString(doc, /*indirect*/ false, name.data(), static_cast<std::int32_t>(name.size()));
}

LexObj TSMovedValue(LexDoc doc, LexObj value) {
    TSLexObjTrack memo;
    return TSLexObjCopyEx(&memo, doc, value, /*shallow*/ true, /*predicate*/ nullptr, /*data*/ nullptr);
}

bool TSAddNodeToTree(const TSNodeEdit &edit, LexObj node) {
    return EditNode(edit, node, /*depth*/ 0);
}

LexObj TSFindLeafInTree(LexObj node, std::string_view name) {
    for (int depth = 0;; ++depth) {
        CheckDepth(depth);
        const LexObj kids = Kids(node);
        if (!IsArray(kids)) return FindInLeaf(node, name);
        LexObj next = LexNullObj;
        const std::int32_t count = LexArrayLength(kids);
        for (std::int32_t i = 0; i < count; ++i) {
            const LexObj kid = LexArrayGet(kids, i);
            if (!IsDict(kid)) continue;
            if (TSStringCompare(name, Limit(kid, 0)) < 0) return LexNullObj;
            if (TSStringCompare(Limit(kid, 1), name) < 0) continue;
            next = kid;
            break;
        }
        if (!IsDict(next)) return LexNullObj;
        node = next;
    }
}

std::int32_t TSCountLeavesInTree(LexObj node) {
    std::int32_t count = 0;
    TSEnumLeavesInTree(
        node,
        [](LexObj, LexObj, void *data) -> KRBool {
            ++*static_cast<std::int32_t *>(data);
            return true;
        },
        &count);
    return count;
}

bool TSEnumLeavesInTree(LexObj node, Forms::NameEntryProc proc, void *data) {
    SeenNodes seen;
    return EnumLeaves(node, /*depth*/ 0, seen, proc, data);
}

void TSUpdateNodeLimits(LexObj root) {
    SeenNodes seen;
    UpdateLimits(root, /*depth*/ 0, seen);
}

void TSDestroyNodes(LexObj root) {
    SeenNodes seen;
    DestroyNodes(root, /*depth*/ 0, seen);
}
