// The balanced shape of a new name tree, and how its leaves are filled.
// SPDX-License-Identifier: MIT
#include "objects/NameTreeNode.h"

#include <algorithm>

#include "Common/src/miLexType.h"
#include "base/FormStr.h"
#include "objects/LexUtil.h"

namespace {

struct LeafCopy {
    LexObj target;
    std::int32_t next = 0;
};

/** The smallest power of the branching factor that leaves no more subtrees than a node may have. */
std::int64_t SubtreeSize(std::int64_t count, std::int64_t branching) {
    std::int64_t size = branching;
    while ((count + size - 1) / size > branching) size *= branching;
    return size;
}

void AddKids(LexDoc doc, LexObj node, std::int32_t count, std::int32_t branching) {
    const std::int64_t size = SubtreeSize(count, branching);
    const LexObj kids = LexNewArray(doc, /*indirect*/ false, branching);
    LexDictPut(node, Kids_K, kids);
    std::int32_t index = 0;
    for (std::int64_t left = count; left > 0; left -= size) {
        const auto part = static_cast<std::int32_t>(std::min(left, size));
        LexArrayPut(kids, index++, TSGenerateANewNode(doc, part, branching, /*isRoot*/ false));
    }
}

std::int32_t PlannedLeaves(LexObj node) {
    std::int32_t count = 0;
    TSLexDictLoad<LexInteger>(node, nKids_K, &count);
    return count;
}

} // namespace

LexObj TSGenerateNewNodes(LexDoc doc, std::int32_t count, std::int32_t branching) {
    return TSGenerateANewNode(doc, count, branching, /*isRoot*/ true);
}

LexObj TSGenerateANewNode(LexDoc doc, std::int32_t count, std::int32_t branching, bool isRoot) {
    const LexObj node = LexNewDict(doc, /*indirect*/ true, isRoot ? 2 : 3);
    LexDictPut(node, nKids_K, LexNewInteger(doc, /*indirect*/ false, count));
    if (count <= branching) {
        LexDictPut(node, Names_K, LexNewArray(doc, /*indirect*/ false, count * 2));
    } else {
        AddKids(doc, node, count, branching);
    }
    if (!isRoot) LexDictPut(node, Limits_K, LexNewArray(doc, /*indirect*/ false, /*sizeHint*/ 2));
    return node;
}

void TSCopyTreeLeaves(LexObj from, LexObj to) {
    LeafCopy copy{to};
    TSEnumLeavesInTree(
        from,
        [](LexObj key, LexObj value, void *data) -> KRBool {
            auto &leaves = *static_cast<LeafCopy *>(data);
            TSAddNewLeaf(leaves.target, leaves.next++, key, value);
            return true;
        },
        &copy);
}

void TSAddNewLeaf(LexObj root, std::int32_t index, LexObj key, LexObj value) {
    LexObj node = root;
    for (;;) {
        const LexObj kids = TSLexDictGetOfType(node, Kids_K, LexArray);
        if (!IsArray(kids)) break;
        // All kids but the last hold what the first holds.
        const std::int32_t size = PlannedLeaves(LexArrayGet(kids, 0));
        node = LexArrayGet(kids, index / size);
        index %= size;
    }
    const LexDoc doc = LexObjGetDoc(root);
    const LexObj names = TSLexDictGetOfType(node, Names_K, LexArray);
    LexArrayPut(names, index * 2, TSNewKey(doc, TSStringOf(key)));
    LexArrayPut(names, index * 2 + 1, TSMovedValue(doc, value));
}
