// The page tree as it is found: its leaves in order, its inner nodes with how many leaves hang below them.
// SPDX-License-Identifier: MIT
#pragma once

#include <unordered_map>
#include <vector>

#include "KRTypes.h"

namespace jackdaw {

struct PageLeaf {
    LexObj page;
    /** The node in whose `Kids` it was met; null for a lone page that stands where the tree should. */
    LexObj parent;
};

struct PageNode {
    LexObj node;
    /** Null for the root. */
    LexObj parent;
    std::int32_t leaves = 0;
};

struct PageList {
    std::vector<PageLeaf> leaves;
    /** Index of a leaf by the node of its dictionary. */
    std::unordered_map<KRWord, std::int32_t> indexOf;
    std::unordered_map<KRWord, PageNode> nodes;
};

/**
 * Walks the tree under the catalog's `Pages`. Every dictionary counts once, at its first place; `Count` and `Parent`
 * are not asked. A dictionary without `Kids` is a page unless its `Type` says that it is an empty node or the catalog.
 * A page that `Kids` holds directly becomes an indirect object.
 */
PageList ReadPageList(LexDoc lex);

} // namespace jackdaw
