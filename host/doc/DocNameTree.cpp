// Search, insertion and removal along one path of a name tree; what is out of order is made anew before it is changed.
// SPDX-License-Identifier: MIT
#include "doc/DocNameTree.h"

#include "doc/DocRecord.h"
#include "doc/Keys.h"
#include "doc/NameTreeWalk.h"
#include "kernel/HostError.h"
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
    const LexObj array = lex::dictGet(node, key);
    return lex::typeOf(array) == LexArray ? array : lex::nullObj;
}

/** Index of the first kid whose upper limit is not below the key, else of the last; -1 when a limit is missing. */
std::int32_t kidFor(LexObj kids, const std::string &key) {
    std::int32_t low = 0;
    std::int32_t high = lex::arrayLength(kids) - 1;
    while (low < high) {
        const std::int32_t middle = low + (high - low) / 2;
        const LexObj kid = lex::arrayGet(kids, middle);
        std::string lowest, highest;
        if (lex::typeOf(kid) != LexDict || !readNameLimits(kid, &lowest, &highest)) return -1;
        if (highest < key)
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

void searchLeaf(Place &place, const std::string &key) {
    const LexObj names = arrayUnder(place.leaf, keys().Names);
    std::int32_t low = 0;
    std::int32_t high = lex::isNull(names) ? 0 : lex::arrayLength(names) / 2;
    while (low < high) {
        const std::int32_t middle = low + (high - low) / 2;
        const LexObj here = lex::arrayGet(names, 2 * middle);
        if (lex::typeOf(here) != LexString) {
            place.lost = true;
            return;
        }
        const int order = lex::stringValue(here).compare(key);
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
    while (lex::typeOf(node) == LexDict && place.path.size() < nameTreeLevels) {
        if (isNameLeaf(node)) {
            place.leaf = node;
            searchLeaf(place, key);
            return place;
        }
        const LexObj kids = lex::dictGet(node, keys().Kids);
        const std::int32_t kid = kidFor(kids, key);
        if (kid < 0) break;
        place.path.push_back({node, kid});
        node = lex::arrayGet(kids, kid);
    }
    place.lost = true;
    return place;
}

bool knownInOrder(LexObj root) {
    const DMDoc doc = docFromLex(lex::docOf(root));
    if (doc == nullptr) return false;
    const auto known = doc->orderedTrees.find(root.node);
    return known != doc->orderedTrees.end() && known->second == lex::changeStamp(doc->lex);
}

void noteInOrder(LexObj root) {
    const DMDoc doc = docFromLex(lex::docOf(root));
    if (doc != nullptr) doc->orderedTrees[root.node] = lex::changeStamp(doc->lex);
}

/** From here on a search of the tree is right. */
void bringInOrder(LexObj root) {
    if (knownInOrder(root)) return;
    NameTreeScan scan = scanNameTree(root);
    if (!scan.inOrder) rebuildNameTree(root, std::move(scan.pairs));
    noteInOrder(root);
}

KRAtom itemsKey(LexObj node) {
    return isNameLeaf(node) ? keys().Names : keys().Kids;
}

std::int32_t itemCount(LexObj node) {
    const LexObj names = arrayUnder(node, keys().Names);
    if (!isNameLeaf(node)) return lex::arrayLength(lex::dictGet(node, keys().Kids));
    return lex::isNull(names) ? 0 : lex::arrayLength(names) / 2;
}

void updateLimits(LexObj node) {
    const LexObj items = lex::dictGet(node, itemsKey(node));
    const std::int32_t length = lex::arrayLength(items);
    if (isNameLeaf(node)) {
        writeNameLimits(node, lex::stringValue(lex::arrayGet(items, 0)),
                        lex::stringValue(lex::arrayGet(items, length - 2)));
        return;
    }
    std::string low, high, unused;
    readNameLimits(lex::arrayGet(items, 0), &low, &unused);
    readNameLimits(lex::arrayGet(items, length - 1), &unused, &high);
    writeNameLimits(node, low, high);
}

/** Moves the upper half of a node's items into a new node. */
LexObj splitOff(LexObj node) {
    const LexDoc doc = lex::docOf(node);
    const KRAtom key = itemsKey(node);
    const LexObj items = lex::dictGet(node, key);
    const std::int32_t length = lex::arrayLength(items);
    const std::int32_t start = key == keys().Names ? length / 4 * 2 : length / 2;
    const LexObj moved = lex::newArray(doc, /*indirect*/ false);
    for (std::int32_t i = start; i < length; ++i) lex::arrayPut(moved, i - start, lex::arrayGet(items, i));
    for (std::int32_t i = length - 1; i >= start; --i) lex::arrayRemoveAt(items, i);
    const LexObj right = lex::newDict(doc, /*indirect*/ true);
    lex::dictPut(right, key, moved);
    updateLimits(right);
    return right;
}

/** The root keeps its identity: its items go into two new nodes below it. */
void splitRoot(LexObj root) {
    const LexDoc doc = lex::docOf(root);
    const KRAtom key = itemsKey(root);
    const LexObj left = lex::newDict(doc, /*indirect*/ true);
    lex::dictPut(left, key, lex::dictGet(root, key));
    const LexObj kids = lex::newArray(doc, /*indirect*/ false);
    lex::arrayPut(kids, 0, left);
    lex::arrayPut(kids, 1, splitOff(left));
    updateLimits(left);
    lex::dictPut(root, keys().Kids, kids);
    lex::dictRemove(root, keys().Names);
}

void insertAt(LexObj root, const Place &place, const std::string &key, LexObj value) {
    const LexDoc doc = lex::docOf(root);
    LexObj names = arrayUnder(place.leaf, keys().Names);
    if (lex::isNull(names)) {
        names = lex::newArray(doc, /*indirect*/ false);
        lex::dictPut(place.leaf, keys().Names, names);
    }
    // The value first: it may be refused, and then nothing has changed.
    lex::arrayInsert(names, 2 * place.pair, value);
    lex::arrayInsert(names, 2 * place.pair, lex::newString(doc, /*indirect*/ false, key));
    LexObj node = place.leaf;
    for (auto step = place.path.rbegin(); step != place.path.rend(); ++step) {
        if (itemCount(node) > nameTreeBranching) {
            const LexObj right = splitOff(node);
            lex::arrayInsert(lex::dictGet(step->node, keys().Kids), step->kid + 1, right);
        }
        updateLimits(node);
        node = step->node;
    }
    if (itemCount(root) > nameTreeBranching) splitRoot(root);
}

void removeAt(LexObj root, const Place &place) {
    const LexObj names = lex::dictGet(place.leaf, keys().Names);
    lex::arrayRemoveAt(names, 2 * place.pair + 1);
    lex::arrayRemoveAt(names, 2 * place.pair);
    LexObj node = place.leaf;
    bool isEmpty = lex::arrayLength(names) == 0;
    for (auto step = place.path.rbegin(); step != place.path.rend(); ++step) {
        const LexObj kids = lex::dictGet(step->node, keys().Kids);
        if (isEmpty)
            lex::arrayRemoveAt(kids, step->kid);
        else
            updateLimits(node);
        node = step->node;
        isEmpty = lex::arrayLength(kids) == 0;
    }
    if (place.path.empty() || !isEmpty) return;
    lex::dictRemove(root, keys().Kids);
    lex::dictPut(root, keys().Names, lex::newArray(lex::docOf(root), /*indirect*/ false));
}

LexObj valueAt(const Place &place) {
    return lex::arrayGet(lex::dictGet(place.leaf, keys().Names), 2 * place.pair + 1);
}

LexObj checkTree(DMNameTree tree) {
    if (!nameTreeIsValid(tree)) throw HostError{KRErrBadParam};
    return nameTreeLex(tree);
}

LexObj dictUnder(LexObj dict, KRAtom key) {
    const LexObj value = lex::typeOf(dict) == LexDict ? lex::dictGet(dict, key) : lex::nullObj;
    return lex::typeOf(value) == LexDict ? value : lex::nullObj;
}

LexObj ensureDictUnder(LexObj dict, KRAtom key) {
    LexObj value = dictUnder(dict, key);
    if (!lex::isNull(value)) return value;
    value = lex::newDict(lex::docOf(dict), /*indirect*/ true);
    lex::dictPut(dict, key, value);
    return value;
}

DMNameTree treeFromLex(LexObj obj) {
    return {obj.node, obj.slot};
}

} // namespace

DMNameTree docNameTree(DMDoc doc, KRAtom name) {
    return treeFromLex(dictUnder(dictUnder(lex::rootOf(docLex(doc)), keys().Names), name));
}

DMNameTree createDocNameTree(DMDoc doc, KRAtom name) {
    const LexObj catalog = lex::rootOf(docLex(doc));
    if (lex::typeOf(catalog) != LexDict || name == KRAtomNull) throw HostError{KRErrBadParam};
    const LexObj tree = ensureDictUnder(ensureDictUnder(catalog, keys().Names), name);
    if (isNameLeaf(tree) && lex::isNull(arrayUnder(tree, keys().Names))) {
        lex::dictPut(tree, keys().Names, lex::newArray(docLex(doc), /*indirect*/ false));
    }
    return treeFromLex(tree);
}

bool nameTreeIsValid(DMNameTree tree) {
    return lex::typeOf(nameTreeLex(tree)) == LexDict;
}

void nameTreePut(DMNameTree tree, const std::string &key, LexObj value) {
    const LexObj root = checkTree(tree);
    if (lex::isNull(value) || lex::docOf(value) != lex::docOf(root)) throw HostError{KRErrBadParam};
    const bool wasInOrder = knownInOrder(root);
    Place place = search(root, key);
    if (!place.found) {
        bringInOrder(root);
        place = search(root, key);
    }
    if (place.found)
        lex::arrayPut(lex::dictGet(place.leaf, keys().Names), 2 * place.pair + 1, value);
    else
        insertAt(root, place, key, value);
    if (wasInOrder || !place.found) noteInOrder(root);
}

bool nameTreeGet(DMNameTree tree, const std::string &key, LexObj *value) {
    const LexObj root = checkTree(tree);
    *value = lex::nullObj;
    const Place place = search(root, key);
    if (place.found) *value = valueAt(place);
    if (place.found || knownInOrder(root)) return place.found;
    const NameTreeScan scan = scanNameTree(root);
    if (scan.inOrder) noteInOrder(root);
    for (const NamePair &pair : scan.pairs) {
        if (lex::stringValue(pair.key) != key) continue;
        *value = pair.value;
        return true;
    }
    return false;
}

void nameTreeRemove(DMNameTree tree, const std::string &key) {
    LexObj unused;
    if (!nameTreeGet(tree, key, &unused)) return;
    const LexObj root = nameTreeLex(tree);
    bringInOrder(root);
    const Place place = search(root, key);
    if (!place.found) return;
    removeAt(root, place);
    noteInOrder(root);
}

bool enumNameTree(DMNameTree tree, const std::function<bool(LexObj key, LexObj value)> &visit) {
    if (!nameTreeIsValid(tree)) return true;
    for (const NamePair &pair : scanNameTree(nameTreeLex(tree)).pairs) {
        if (!visit(pair.key, pair.value)) return false;
    }
    return true;
}

} // namespace jackdaw
