// The host's name trees: keys are bytes in byte order, values any object.
//
// Grammar of a tree:
//     root  = << Kids [node ...] >> | << Names [key value ...] >>
//     node  = << Kids [node ...] Limits [lowest highest] >> | << Names [key value ...] Limits [lowest highest] >>
//
// 1. What is written here is sorted, keeps its `Limits`, and splits a leaf that passes 64 names and a node that passes
//    64 kids; an emptied leaf leaves its parent.
// 2. What others wrote may be unsorted, have wrong `Limits` or loop. A search that misses is repeated by a walk of the
//    whole tree unless the tree is known to be in order; a walk meets every node once. Before such a tree is changed it
//    is made anew in order; of equal keys the first stays.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

#include "DocModelHFT.h"
#include "LexHFT.h"

namespace jackdaw {

inline LexObj NameTreeLex(DMNameTree tree) {
    return {tree.node, tree.slot};
}

/** The tree `name` under the catalog's `Names`; {0, 0} when it is absent. */
DMNameTree DocNameTree(DMDoc doc, KRAtom name);
/** The same, made when absent, `Names` too. */
DMNameTree CreateDocNameTree(DMDoc doc, KRAtom name);

bool NameTreeIsValid(DMNameTree tree);
/** Stores the value, in place of the one that is there. Throws KRErrBadParam for a null value or a tree not valid. */
void NameTreePut(DMNameTree tree, const std::string &key, LexObj value);
/** False when the key is not there; then `value` is the null object. */
bool NameTreeGet(DMNameTree tree, const std::string &key, LexObj *value);
/** Nothing when the key is not there. */
void NameTreeRemove(DMNameTree tree, const std::string &key);
/**
 * Calls `visit` with the string object of each key and its value, in the order of the tree as it was at the start.
 * False from `visit` stops. True when the walk came to its end.
 */
bool EnumNameTree(DMNameTree tree, const std::function<bool(LexObj key, LexObj value)> &visit);

} // namespace jackdaw
