// The walk keeps its own stack and a set of the nodes met, since a file nests and loops as it likes.
// SPDX-License-Identifier: MIT
#include "doc/NameTreeWalk.h"

#include <algorithm>
#include <unordered_set>

#include "doc/Keys.h"
#include "kernel/HostLimits.h"
#include "lex/LexObjects.h"

namespace jackdaw {
namespace {

/** Names of a leaf and kids of a node when a tree is made anew: room to grow before the first split. */
constexpr std::size_t s_rebuiltBranching = 48;

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
        return lex::StringValue(scan.pairs[index].key);
    }

    void readLeaf(LexObj node) {
        const LexObj names = lex::DictGet(node, Keys().Names);
        if (!lex::IsArray(names)) return;
        const std::int32_t length = lex::ArrayLength(names);
        if (length % 2 != 0) scan.inOrder = false;
        for (std::int32_t i = 0; i + 1 < length; i += 2) {
            const LexObj key = lex::ArrayGet(names, i);
            if (!lex::IsString(key)) {
                scan.inOrder = false;
                continue;
            }
            const bool ascends = scan.pairs.empty() || keyAt(scan.pairs.size() - 1) < lex::StringValue(key);
            if (!ascends) scan.inOrder = false;
            scan.pairs.push_back({key, lex::ArrayGet(names, i + 1)});
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
        if (!lex::IsDict(node) || !met.insert(node.node).second) {
            scan.inOrder = false;
            return;
        }
        OpenNode opened{lex::NullObj, 0, 0, isRoot, scan.pairs.size(), {}, {}, {}, false};
        if (!isRoot && !ReadNameLimits(node, &opened.low, &opened.high)) scan.inOrder = false;
        if (IsNameLeaf(node)) {
            readLeaf(node);
            if (!isRoot) checkLimits(opened);
            return;
        }
        opened.kids = lex::DictGet(node, Keys().Kids);
        opened.length = lex::ArrayLength(opened.kids);
        open.push_back(std::move(opened));
        if (std::ssize(open) >= LimitOf(Limit::NameTreeLevels)) scan.inOrder = false;
    }

    void run(LexObj root) {
        enter(root, /*isRoot*/ true);
        while (!open.empty()) {
            OpenNode &node = open.back();
            if (node.next < node.length) {
                enter(lex::ArrayGet(node.kids, node.next++), /*isRoot*/ false);
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
    const LexObj names = lex::NewArray(doc, /*indirect*/ false);
    std::int32_t place = 0;
    for (std::size_t i = first; i < last; ++i) {
        lex::ArrayPut(names, place++, pairs[i].key);
        lex::ArrayPut(names, place++, pairs[i].value);
    }
    return names;
}

LexObj kidsArray(LexDoc doc, const std::vector<Built> &level, std::size_t first, std::size_t last) {
    const LexObj kids = lex::NewArray(doc, /*indirect*/ false);
    for (std::size_t i = first; i < last; ++i) {
        lex::ArrayPut(kids, static_cast<std::int32_t>(i - first), level[i].node);
    }
    return kids;
}

Built newNode(LexDoc doc, KRAtom key, LexObj array, const std::string &low, const std::string &high) {
    const LexObj node = lex::NewDict(doc, /*indirect*/ true);
    lex::DictPut(node, key, array);
    WriteNameLimits(node, low, high);
    return {node, low, high};
}

std::vector<Built> buildLeaves(LexDoc doc, const std::vector<NamePair> &pairs) {
    std::vector<Built> leaves;
    for (std::size_t first = 0; first < pairs.size(); first += s_rebuiltBranching) {
        const std::size_t last = std::min(first + s_rebuiltBranching, pairs.size());
        leaves.push_back(newNode(doc, Keys().Names, namesArray(doc, pairs, first, last),
                                 lex::StringValue(pairs[first].key), lex::StringValue(pairs[last - 1].key)));
    }
    return leaves;
}

std::vector<Built> buildAbove(LexDoc doc, const std::vector<Built> &level) {
    std::vector<Built> above;
    for (std::size_t first = 0; first < level.size(); first += s_rebuiltBranching) {
        const std::size_t last = std::min(first + s_rebuiltBranching, level.size());
        above.push_back(
            newNode(doc, Keys().Kids, kidsArray(doc, level, first, last), level[first].low, level[last - 1].high));
    }
    return above;
}

void sortPairs(std::vector<NamePair> &pairs) {
    const auto keyOf = [](const NamePair &pair) -> const std::string & { return lex::StringValue(pair.key); };
    std::stable_sort(pairs.begin(), pairs.end(),
                     [&](const NamePair &a, const NamePair &b) { return keyOf(a) < keyOf(b); });
    const auto end = std::unique(pairs.begin(), pairs.end(),
                                 [&](const NamePair &a, const NamePair &b) { return keyOf(a) == keyOf(b); });
    pairs.erase(end, pairs.end());
}

} // namespace

bool IsNameLeaf(LexObj node) {
    const LexObj kids = lex::DictGet(node, Keys().Kids);
    return !lex::IsArray(kids) || lex::ArrayLength(kids) == 0;
}

bool ReadNameLimits(LexObj node, std::string *low, std::string *high) {
    const LexObj limits = lex::DictGet(node, Keys().Limits);
    if (!lex::IsArray(limits) || lex::ArrayLength(limits) < 2) return false;
    const LexObj first = lex::ArrayGet(limits, 0);
    const LexObj last = lex::ArrayGet(limits, 1);
    if (!lex::IsString(first) || !lex::IsString(last)) return false;
    *low = lex::StringValue(first);
    *high = lex::StringValue(last);
    return true;
}

void WriteNameLimits(LexObj node, const std::string &low, const std::string &high) {
    std::string oldLow, oldHigh;
    if (ReadNameLimits(node, &oldLow, &oldHigh) && oldLow == low && oldHigh == high) return;
    const LexDoc doc = lex::DocOf(node);
    const LexObj limits = lex::NewArray(doc, /*indirect*/ false);
    lex::ArrayPut(limits, 0, lex::NewString(doc, /*indirect*/ false, low));
    lex::ArrayPut(limits, 1, lex::NewString(doc, /*indirect*/ false, high));
    lex::DictPut(node, Keys().Limits, limits);
}

NameTreeScan ScanNameTree(LexObj root) {
    Walk walk;
    walk.run(root);
    return std::move(walk.scan);
}

void RebuildNameTree(LexObj root, std::vector<NamePair> pairs) {
    const LexDoc doc = lex::DocOf(root);
    sortPairs(pairs);
    lex::DictRemove(root, Keys().Limits);
    if (pairs.size() <= static_cast<std::size_t>(NameTreeBranching)) {
        lex::DictPut(root, Keys().Names, namesArray(doc, pairs, 0, pairs.size()));
        lex::DictRemove(root, Keys().Kids);
        return;
    }
    std::vector<Built> level = buildLeaves(doc, pairs);
    while (level.size() > static_cast<std::size_t>(NameTreeBranching)) level = buildAbove(doc, level);
    lex::DictPut(root, Keys().Kids, kidsArray(doc, level, 0, level.size()));
    lex::DictRemove(root, Keys().Names);
}

} // namespace jackdaw
