// The whole of a name tree, read in one walk that trusts nothing, and made anew.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "KRTypes.h"

namespace jackdaw {

/** Names of a leaf, and kids of a node, that are at most written here. */
inline constexpr std::int32_t NameTreeBranching = 64;

struct NamePair {
    /** A string object. */
    LexObj key;
    LexObj value;
};

struct NameTreeScan {
    std::vector<NamePair> pairs;
    /** Keys ascend strictly, every node but the root tells its true limits, no leaf is empty, not too deep: a search
     * finds all. */
    bool inOrder = true;
};

/** Meets every node once, depth first; what is no key with a value is passed over. */
NameTreeScan ScanNameTree(LexObj root);

/** Writes the pairs, sorted, as a balanced tree under `root`; of equal keys the first stays. */
void RebuildNameTree(LexObj root, std::vector<NamePair> pairs);

/** A node without kids to follow. */
bool IsNameLeaf(LexObj node);
/** Both limits of a node; false when it has none. */
bool ReadNameLimits(LexObj node, std::string *low, std::string *high);
void WriteNameLimits(LexObj node, const std::string &low, const std::string &high);

} // namespace jackdaw
