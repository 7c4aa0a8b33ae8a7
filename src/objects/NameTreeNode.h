// The walks over the nodes of one name tree: finding, editing, counting, limits, and the shape of a new tree. For
// NameTree.cpp, which knows where trees stand in a document.
// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "FormsAuthoringHFT.h"
#include "LexHFT.h"

/** Bytes of a key; empty for what is no string. Valid as long as the document is open. */
std::string_view TSStringOf(LexObj key);
/** By unsigned bytes, the shorter first: -1, 0, 1. */
int TSStringCompare(std::string_view a, std::string_view b);
/** A direct copy of a key. */
LexObj TSNewKey(LexDoc doc, std::string_view name);
/** A value that is to stand in another array: a direct one as a copy, since it stands in the old array yet. */
LexObj TSMovedValue(LexDoc doc, LexObj value);

/** One change of a tree. `mode` is a sum of TSNameTreeFlags. */
struct TSNodeEdit {
    LexDoc doc;
    std::string_view name;
    LexObj value;
    std::uint32_t mode;
};
/**
 * Inserts, replaces or removes below a node, widening limits on the way when not removing. True when the place was the
 * first of its leaf or one past the last: a limit may have moved.
 */
bool TSAddNodeToTree(const TSNodeEdit &edit, LexObj node);

/** The value of a name, or the null object. */
LexObj TSFindLeafInTree(LexObj node, std::string_view name);
std::int32_t TSCountLeavesInTree(LexObj node);
/** Pairs in order; false when `proc` stopped the walk. */
bool TSEnumLeavesInTree(LexObj node, Forms::NameEntryProc proc, void *data);
/** Limits of all nodes below from their keys; the root keeps none. Takes `nKids` away. An empty leaf keeps its limits.
 */
void TSUpdateNodeLimits(LexObj root);
/** Destroys a tree's nodes, the lowest first. Keys and values that are indirect stay. */
void TSDestroyNodes(LexObj root);

/**
 * An empty tree for `count` entries, at most `branching` a node. Each node says under `nKids` how many entries it is
 * meant to hold.
 */
LexObj TSGenerateNewNodes(LexDoc doc, std::int32_t count, std::int32_t branching);
/** One node of it with all below. */
LexObj TSGenerateANewNode(LexDoc doc, std::int32_t count, std::int32_t branching, bool isRoot);
/** Moves every pair of a tree into a new empty one. */
void TSCopyTreeLeaves(LexObj from, LexObj to);
/** Stores the pair with number `index` in a new tree. */
void TSAddNewLeaf(LexObj root, std::int32_t index, LexObj key, LexObj value);
