// Search, insertion and removal along one path of a name tree; what is out of order is made anew before it is changed.
// SPDX-License-Identifier: MIT
#include "doc/DocNameTree.h"

#include "doc/DocRecord.h"
#include "doc/Keys.h"
#include "doc/NameTreeWalk.h"
#include "kernel/HostError.h"
#include "kernel/HostLimits.h"
#include "lex/LexApi.h"
#include "lex/LexObjects.h"
#include "lex/Store.h"

namespace jackdaw {
namespace {

struct Step {
    /** A node with kids, and which of them the search took. */
    LexObj node;
    std::int32_t kid;
};

struct Place {
    std::vector<Step> path;
    LexObj leaf{};
    std::int32_t pair = 0;
    bool found = false;
    /** The tree is not what a search can follow. */
    bool lost = false;
};

LexObj arrayUnder(LexObj node, KRAtom key) {
    const LexObj array = lex::DictGet(node, key);
    return lex::IsArray(array) ? array : lex::NullObj;
}

/** Index of the first kid whose upper limit is not below the key, else of the last; -1 when a limit is missing. */
std::int32_t kidFor(LexObj kids, const std::string &key) {
    std::int32_t low = 0;
    std::int32_t high = lex::ArrayLength(kids) - 1;
    while (low < high) {
        const std::int32_t middle = low + (high - low) / 2;
        const LexObj kid = lex::ArrayGet(kids, middle);
        std::string lowest, highest;
        if (!lex::IsDict(kid) || !ReadNameLimits(kid, &lowest, &highest)) return -1;
        if (highest < key)
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

void searchLeaf(Place &place, const std::string &key) {
    const LexObj names = arrayUnder(place.leaf, Keys().Names);
    std::int32_t low = 0;
    std::int32_t high = lex::IsNull(names) ? 0 : lex::ArrayLength(names) / 2;
    while (low < high) {
        const std::int32_t middle = low + (high - low) / 2;
        const LexObj here = lex::ArrayGet(names, 2 * middle);
        if (!lex::IsString(here)) {
            place.lost = true;
            return;
        }
        const int order = lex::StringValue(here).compare(key);
        if (order == 0) {
            place.pair = middle;
            place.found = true;
            return;
        }
        if (order < 0)
            low = middle + 1;
        else
            high = middle;
    }
    place.pair = low;
}

Place search(LexObj root, const std::string &key) {
    Place place;
    LexObj node = root;
    while (lex::IsDict(node) && std::ssize(place.path) < LimitOf(Limit::NameTreeLevels)) {
        if (IsNameLeaf(node)) {
            place.leaf = node;
            searchLeaf(place, key);
            return place;
        }
        const LexObj kids = lex::DictGet(node, Keys().Kids);
        const std::int32_t kid = kidFor(kids, key);
        if (kid < 0) break;
        place.path.push_back({node, kid});
        node = lex::ArrayGet(kids, kid);
    }
    place.lost = true;
    return place;
}

bool knownInOrder(LexObj root) {
    const DMDoc doc = DocFromLex(lex::DocOf(root));
    if (!doc) return false;
    const auto known = doc->orderedTrees.find(root.node);
    return known != doc->orderedTrees.end() && known->second == lex::ChangeStamp(doc->lex);
}

void noteInOrder(LexObj root) {
    const DMDoc doc = DocFromLex(lex::DocOf(root));
    if (doc) doc->orderedTrees[root.node] = lex::ChangeStamp(doc->lex);
}

/** From here on a search of the tree is right. */
void bringInOrder(LexObj root) {
    if (knownInOrder(root)) return;
    NameTreeScan scan = ScanNameTree(root);
    if (!scan.inOrder) RebuildNameTree(root, std::move(scan.pairs));
    noteInOrder(root);
}

KRAtom itemsKey(LexObj node) {
    return IsNameLeaf(node) ? Keys().Names : Keys().Kids;
}

std::int32_t itemCount(LexObj node) {
    const LexObj names = arrayUnder(node, Keys().Names);
    if (!IsNameLeaf(node)) return lex::ArrayLength(lex::DictGet(node, Keys().Kids));
    return lex::IsNull(names) ? 0 : lex::ArrayLength(names) / 2;
}

void updateLimits(LexObj node) {
    const LexObj items = lex::DictGet(node, itemsKey(node));
    const std::int32_t length = lex::ArrayLength(items);
    if (IsNameLeaf(node)) {
        WriteNameLimits(node, lex::StringValue(lex::ArrayGet(items, 0)),
                        lex::StringValue(lex::ArrayGet(items, length - 2)));
        return;
    }
    std::string low, high, unused;
    ReadNameLimits(lex::ArrayGet(items, 0), &low, &unused);
    ReadNameLimits(lex::ArrayGet(items, length - 1), &unused, &high);
    WriteNameLimits(node, low, high);
}

/** Moves the upper half of a node's items into a new node. */
LexObj splitOff(LexObj node) {
    const LexDoc doc = lex::DocOf(node);
    const KRAtom key = itemsKey(node);
    const LexObj items = lex::DictGet(node, key);
    const std::int32_t length = lex::ArrayLength(items);
    const std::int32_t start = key == Keys().Names ? length / 4 * 2 : length / 2;
    const LexObj moved = lex::NewArray(doc, /*indirect*/ false);
    for (std::int32_t i = start; i < length; ++i) lex::ArrayPut(moved, i - start, lex::ArrayGet(items, i));
    for (std::int32_t i = length - 1; i >= start; --i) lex::ArrayRemoveAt(items, i);
    const LexObj right = lex::NewDict(doc, /*indirect*/ true);
    lex::DictPut(right, key, moved);
    updateLimits(right);
    return right;
}

/** The root keeps its identity: its items go into two new nodes below it. */
void splitRoot(LexObj root) {
    const LexDoc doc = lex::DocOf(root);
    const KRAtom key = itemsKey(root);
    const LexObj left = lex::NewDict(doc, /*indirect*/ true);
    lex::DictPut(left, key, lex::DictGet(root, key));
    const LexObj kids = lex::NewArray(doc, /*indirect*/ false);
    lex::ArrayPut(kids, 0, left);
    lex::ArrayPut(kids, 1, splitOff(left));
    updateLimits(left);
    lex::DictPut(root, Keys().Kids, kids);
    lex::DictRemove(root, Keys().Names);
}

void insertAt(LexObj root, const Place &place, const std::string &key, LexObj value) {
    const LexDoc doc = lex::DocOf(root);
    LexObj names = arrayUnder(place.leaf, Keys().Names);
    if (lex::IsNull(names)) {
        names = lex::NewArray(doc, /*indirect*/ false);
        lex::DictPut(place.leaf, Keys().Names, names);
    }
    // The value first: it may be refused, and then nothing has changed.
    lex::ArrayInsert(names, 2 * place.pair, value);
    lex::ArrayInsert(names, 2 * place.pair, lex::NewString(doc, /*indirect*/ false, key));
    LexObj node = place.leaf;
    for (auto step = place.path.rbegin(); step != place.path.rend(); ++step) {
        if (itemCount(node) > NameTreeBranching) {
            const LexObj right = splitOff(node);
            lex::ArrayInsert(lex::DictGet(step->node, Keys().Kids), step->kid + 1, right);
        }
        updateLimits(node);
        node = step->node;
    }
    if (itemCount(root) > NameTreeBranching) splitRoot(root);
}

void removeAt(LexObj root, const Place &place) {
    const LexObj names = lex::DictGet(place.leaf, Keys().Names);
    lex::ArrayRemoveAt(names, 2 * place.pair + 1);
    lex::ArrayRemoveAt(names, 2 * place.pair);
    LexObj node = place.leaf;
    bool isEmpty = lex::ArrayLength(names) == 0;
    for (auto step = place.path.rbegin(); step != place.path.rend(); ++step) {
        const LexObj kids = lex::DictGet(step->node, Keys().Kids);
        if (isEmpty)
            lex::ArrayRemoveAt(kids, step->kid);
        else
            updateLimits(node);
        node = step->node;
        isEmpty = lex::ArrayLength(kids) == 0;
    }
    if (place.path.empty() || !isEmpty) return;
    lex::DictRemove(root, Keys().Kids);
    lex::DictPut(root, Keys().Names, lex::NewArray(lex::DocOf(root), /*indirect*/ false));
}

LexObj valueAt(const Place &place) {
    return lex::ArrayGet(lex::DictGet(place.leaf, Keys().Names), 2 * place.pair + 1);
}

LexObj checkTree(DMNameTree tree) {
    if (!NameTreeIsValid(tree)) throw HostError{KRErrBadParam};
    return NameTreeLex(tree);
}

LexObj dictUnder(LexObj dict, KRAtom key) {
    const LexObj value = lex::IsDict(dict) ? lex::DictGet(dict, key) : lex::NullObj;
    return lex::IsDict(value) ? value : lex::NullObj;
}

LexObj ensureDictUnder(LexObj dict, KRAtom key) {
    LexObj value = dictUnder(dict, key);
    if (!lex::IsNull(value)) return value;
    value = lex::NewDict(lex::DocOf(dict), /*indirect*/ true);
    lex::DictPut(dict, key, value);
    return value;
}

DMNameTree treeFromLex(LexObj obj) {
    return {obj.node, obj.slot};
}

} // namespace

DMNameTree DocNameTree(DMDoc doc, KRAtom name) {
    return treeFromLex(dictUnder(dictUnder(lex::RootOf(DocLex(doc)), Keys().Names), name));
}

DMNameTree CreateDocNameTree(DMDoc doc, KRAtom name) {
    const LexObj catalog = lex::RootOf(DocLex(doc));
    if (!lex::IsDict(catalog) || name == KRAtomNull) throw HostError{KRErrBadParam};
    const LexObj tree = ensureDictUnder(ensureDictUnder(catalog, Keys().Names), name);
    if (IsNameLeaf(tree) && lex::IsNull(arrayUnder(tree, Keys().Names))) {
        lex::DictPut(tree, Keys().Names, lex::NewArray(DocLex(doc), /*indirect*/ false));
    }
    return treeFromLex(tree);
}

bool NameTreeIsValid(DMNameTree tree) {
    return lex::IsDict(NameTreeLex(tree));
}

void NameTreePut(DMNameTree tree, const std::string &key, LexObj value) {
    const LexObj root = checkTree(tree);
    if (lex::IsNull(value) || lex::DocOf(value) != lex::DocOf(root)) throw HostError{KRErrBadParam};
    const bool wasInOrder = knownInOrder(root);
    Place place = search(root, key);
    if (!place.found) {
        bringInOrder(root);
        place = search(root, key);
    }
    if (place.found)
        lex::ArrayPut(lex::DictGet(place.leaf, Keys().Names), 2 * place.pair + 1, value);
    else
        insertAt(root, place, key, value);
    if (wasInOrder || !place.found) noteInOrder(root);
}

bool NameTreeGet(DMNameTree tree, const std::string &key, LexObj *value) {
    const LexObj root = checkTree(tree);
    *value = lex::NullObj;
    const Place place = search(root, key);
    if (place.found) *value = valueAt(place);
    if (place.found || knownInOrder(root)) return place.found;
    const NameTreeScan scan = ScanNameTree(root);
    if (scan.inOrder) noteInOrder(root);
    for (const NamePair &pair : scan.pairs) {
        if (lex::StringValue(pair.key) != key) continue;
        *value = pair.value;
        return true;
    }
    return false;
}

void NameTreeRemove(DMNameTree tree, const std::string &key) {
    LexObj unused;
    if (!NameTreeGet(tree, key, &unused)) return;
    const LexObj root = NameTreeLex(tree);
    bringInOrder(root);
    const Place place = search(root, key);
    if (!place.found) return;
    removeAt(root, place);
    noteInOrder(root);
}

bool EnumNameTree(DMNameTree tree, const std::function<bool(LexObj key, LexObj value)> &visit) {
    if (!NameTreeIsValid(tree)) return true;
    for (const NamePair &pair : ScanNameTree(NameTreeLex(tree)).pairs) {
        if (!visit(pair.key, pair.value)) return false;
    }
    return true;
}

} // namespace jackdaw
