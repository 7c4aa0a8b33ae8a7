// The walk keeps its own stack and a set of the nodes met, since a file nests and loops as it likes.
// SPDX-License-Identifier: MIT
#include "doc/NameTreeWalk.h"

#include <algorithm>
#include <unordered_set>

#include "doc/Keys.h"
#include "lex/LexObjects.h"

namespace jackdaw {
namespace {

/** Names of a leaf and kids of a node when a tree is made anew: room to grow before the first split. */
constexpr std::size_t rebuiltBranching = 48;

struct OpenNode {
    LexObj kids;
    std::int32_t next;
    std::int32_t length;
    bool isRoot;
    std::size_t pairsBefore;
    std::string low, high;
    /** Upper limit of the kid before. */
    std::string lastHigh;
    bool hasLast;
};

struct Walk {
    NameTreeScan scan;
    std::vector<OpenNode> open;
    std::unordered_set<KRWord> met;

    const std::string &keyAt(std::size_t index) const {
        return lex::stringValue(scan.pairs[index].key);
    }

    void readLeaf(LexObj node) {
        const LexObj names = lex::dictGet(node, keys().Names);
        if (lex::typeOf(names) != LexArray) return;
        const std::int32_t length = lex::arrayLength(names);
        if (length % 2 != 0) scan.inOrder = false;
        for (std::int32_t i = 0; i + 1 < length; i += 2) {
            const LexObj key = lex::arrayGet(names, i);
            if (lex::typeOf(key) != LexString) {
                scan.inOrder = false;
                continue;
            }
            const bool ascends = scan.pairs.empty() || keyAt(scan.pairs.size() - 1) < lex::stringValue(key);
            if (!ascends) scan.inOrder = false;
            scan.pairs.push_back({key, lex::arrayGet(names, i + 1)});
        }
    }

    /** Whether the limits of a node hold its keys and stand behind those of the kid before. */
    void checkLimits(const OpenNode &node) {
        const std::size_t end = scan.pairs.size();
        if (node.pairsBefore == end || keyAt(node.pairsBefore) < node.low || node.high < keyAt(end - 1)) {
            scan.inOrder = false;
        }
        OpenNode &parent = open.back();
        if (parent.hasLast && !(parent.lastHigh < node.low)) scan.inOrder = false;
        parent.lastHigh = node.high;
        parent.hasLast = true;
    }

    void enter(LexObj node, bool isRoot) {
        if (lex::typeOf(node) != LexDict || !met.insert(node.node).second) {
            scan.inOrder = false;
            return;
        }
        OpenNode opened{lex::nullObj, 0, 0, isRoot, scan.pairs.size(), {}, {}, {}, false};
        if (!isRoot && !readNameLimits(node, &opened.low, &opened.high)) scan.inOrder = false;
        if (isNameLeaf(node)) {
            readLeaf(node);
            if (!isRoot) checkLimits(opened);
            return;
        }
        opened.kids = lex::dictGet(node, keys().Kids);
        opened.length = lex::arrayLength(opened.kids);
        open.push_back(std::move(opened));
        if (open.size() >= nameTreeLevels) scan.inOrder = false;
    }

    void run(LexObj root) {
        enter(root, /*isRoot*/ true);
        while (!open.empty()) {
            OpenNode &node = open.back();
            if (node.next < node.length) {
                enter(lex::arrayGet(node.kids, node.next++), /*isRoot*/ false);
                continue;
            }
            const OpenNode done = std::move(open.back());
            open.pop_back();
            if (!done.isRoot) checkLimits(done);
        }
    }
};

struct Built {
    LexObj node;
    std::string low, high;
};

/** An array of the items of [first, last), two for each pair and one for each node. */
LexObj namesArray(LexDoc doc, const std::vector<NamePair> &pairs, std::size_t first, std::size_t last) {
    const LexObj names = lex::newArray(doc, /*indirect*/ false);
    std::int32_t place = 0;
    for (std::size_t i = first; i < last; ++i) {
        lex::arrayPut(names, place++, pairs[i].key);
        lex::arrayPut(names, place++, pairs[i].value);
    }
    return names;
}

LexObj kidsArray(LexDoc doc, const std::vector<Built> &level, std::size_t first, std::size_t last) {
    const LexObj kids = lex::newArray(doc, /*indirect*/ false);
    for (std::size_t i = first; i < last; ++i) {
        lex::arrayPut(kids, static_cast<std::int32_t>(i - first), level[i].node);
    }
    return kids;
}

Built newNode(LexDoc doc, KRAtom key, LexObj array, const std::string &low, const std::string &high) {
    const LexObj node = lex::newDict(doc, /*indirect*/ true);
    lex::dictPut(node, key, array);
    writeNameLimits(node, low, high);
    return {node, low, high};
}

std::vector<Built> buildLeaves(LexDoc doc, const std::vector<NamePair> &pairs) {
    std::vector<Built> leaves;
    for (std::size_t first = 0; first < pairs.size(); first += rebuiltBranching) {
        const std::size_t last = std::min(first + rebuiltBranching, pairs.size());
        leaves.push_back(newNode(doc, keys().Names, namesArray(doc, pairs, first, last),
                                 lex::stringValue(pairs[first].key), lex::stringValue(pairs[last - 1].key)));
    }
    return leaves;
}

std::vector<Built> buildAbove(LexDoc doc, const std::vector<Built> &level) {
    std::vector<Built> above;
    for (std::size_t first = 0; first < level.size(); first += rebuiltBranching) {
        const std::size_t last = std::min(first + rebuiltBranching, level.size());
        above.push_back(
            newNode(doc, keys().Kids, kidsArray(doc, level, first, last), level[first].low, level[last - 1].high));
    }
    return above;
}

void sortPairs(std::vector<NamePair> &pairs) {
    const auto keyOf = [](const NamePair &pair) -> const std::string & { return lex::stringValue(pair.key); };
    std::stable_sort(pairs.begin(), pairs.end(),
                     [&](const NamePair &a, const NamePair &b) { return keyOf(a) < keyOf(b); });
    const auto end = std::unique(pairs.begin(), pairs.end(),
                                 [&](const NamePair &a, const NamePair &b) { return keyOf(a) == keyOf(b); });
    pairs.erase(end, pairs.end());
}

} // namespace

bool isNameLeaf(LexObj node) {
    const LexObj kids = lex::dictGet(node, keys().Kids);
    return lex::typeOf(kids) != LexArray || lex::arrayLength(kids) == 0;
}

bool readNameLimits(LexObj node, std::string *low, std::string *high) {
    const LexObj limits = lex::dictGet(node, keys().Limits);
    if (lex::typeOf(limits) != LexArray || lex::arrayLength(limits) < 2) return false;
    const LexObj first = lex::arrayGet(limits, 0);
    const LexObj last = lex::arrayGet(limits, 1);
    if (lex::typeOf(first) != LexString || lex::typeOf(last) != LexString) return false;
    *low = lex::stringValue(first);
    *high = lex::stringValue(last);
    return true;
}

void writeNameLimits(LexObj node, const std::string &low, const std::string &high) {
    std::string oldLow, oldHigh;
    if (readNameLimits(node, &oldLow, &oldHigh) && oldLow == low && oldHigh == high) return;
    const LexDoc doc = lex::docOf(node);
    const LexObj limits = lex::newArray(doc, /*indirect*/ false);
    lex::arrayPut(limits, 0, lex::newString(doc, /*indirect*/ false, low));
    lex::arrayPut(limits, 1, lex::newString(doc, /*indirect*/ false, high));
    lex::dictPut(node, keys().Limits, limits);
}

NameTreeScan scanNameTree(LexObj root) {
    Walk walk;
    walk.run(root);
    return std::move(walk.scan);
}

void rebuildNameTree(LexObj root, std::vector<NamePair> pairs) {
    const LexDoc doc = lex::docOf(root);
    sortPairs(pairs);
    lex::dictRemove(root, keys().Limits);
    if (pairs.size() <= static_cast<std::size_t>(nameTreeBranching)) {
        lex::dictPut(root, keys().Names, namesArray(doc, pairs, 0, pairs.size()));
        lex::dictRemove(root, keys().Kids);
        return;
    }
    std::vector<Built> level = buildLeaves(doc, pairs);
    while (level.size() > static_cast<std::size_t>(nameTreeBranching)) level = buildAbove(doc, level);
    lex::dictPut(root, keys().Kids, kidsArray(doc, level, 0, level.size()));
    lex::dictRemove(root, keys().Names);
}

} // namespace jackdaw
