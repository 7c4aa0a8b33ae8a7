// Dictionaries and arrays: the operations of LexObjects.h that change containers or list them.
// SPDX-License-Identifier: MIT
#include "lex/LexContainers.h"

#include <algorithm>

#include "kernel/HostError.h"
#include "lex/Limits.h"
#include "lex/Node.h"

namespace jackdaw::lex {

namespace {

Container &arrayOf(LexObj obj, std::int32_t index) {
    Container &array = containerOfType(obj, LexArray);
    if (index < 0) throw HostError{KRErrBadParam};
    return array;
}

QPDFObjectHandle handleOf(const Node *value) {
    return value ? value->h : QPDFObjectHandle::newNull();
}

/** Notes what now stands at `index`; what stood there before is unlinked. */
void rememberAt(Container &array, std::size_t index, Node *child) {
    // Shared scalars are found by their value: an array of numbers needs no memo.
    if (child && child->isShared()) child = nullptr;
    if (!child && index >= array.memo.size()) return;
    MemoEntry &entry = elementEntry(array, index);
    unlink(array, entry.child);
    entry.child = child;
    link(array, child);
}

/** Whether the element at `index` is this node's object; makes no node for one that is not. */
bool standsAt(Container &array, std::int32_t index, const Node &value) {
    const auto place = static_cast<std::size_t>(index);
    if (place < array.memo.size() && array.memo[place].child) return array.memo[place].child == &value;
    // A direct object without an entry in the memo was never handed out, so it is not the value.
    if (value.isShared()) return childAt(array, index) == &value;
    return !value.isDirect() && array.h.getArrayItem(index).getObjGen() == value.h.getObjGen();
}

} // namespace

LexObj dictGet(LexObj dict, KRAtom key) {
    return referenceTo(childByKey(dictionaryOf(dict), key));
}

bool dictKnown(LexObj dict, KRAtom key) {
    return childByKey(dictionaryOf(dict), key) != nullptr;
}

void dictPut(LexObj obj, KRAtom key, LexObj valueObj) {
    Container &dict = dictionaryOf(obj);
    Node *value = nodeOf(valueObj);
    if (!value) return dictRemove(obj, key);
    const std::string *text = keyText(dict, key);
    if (!text) throw HostError{KRErrBadParam};
    if (const MemoEntry *entry = remembered(dict, key); entry && entry->child == value) return;
    admit(dict, *value);
    dict.h.replaceKey(*text, value->h);
    rememberKey(dict, key, value);
    changed(dict);
}

void dictRemove(LexObj obj, KRAtom key) {
    Container &dict = dictionaryOf(obj);
    const std::string *text = keyText(dict, key);
    if (!text || !dict.h.hasKey(*text)) return;
    dict.h.removeKey(*text);
    rememberKey(dict, key, nullptr);
    changed(dict);
}

std::vector<std::pair<KRAtom, LexObj>> dictEntries(LexObj obj) {
    Container &dict = dictionaryOf(obj);
    std::vector<std::pair<KRAtom, LexObj>> entries;
    for (auto &[text, value] : dict.h.getDictAsMap()) {
        // The map lists null values and references to nothing as well.
        if (value.isNull()) continue;
        const KRAtom key = keyAtom(dict, text);
        if (key == KRAtomNull) continue;
        entries.emplace_back(key, referenceTo(childByKey(dict, key)));
    }
    return entries;
}

std::vector<std::pair<LexObj, LexObj>> entriesForWalk(LexObj obj) {
    std::vector<std::pair<LexObj, LexObj>> entries;
    if (typeOf(obj) == LexArray) {
        const std::int32_t length = arrayLength(obj);
        entries.reserve(static_cast<std::size_t>(length));
        for (std::int32_t i = 0; i < length; ++i) entries.emplace_back(arrayGet(obj, i), nullObj);
        return entries;
    }
    const LexDoc doc = dictionaryOf(obj).doc;
    for (const auto &[key, value] : dictEntries(obj))
        entries.emplace_back(newName(doc, /*indirect*/ false, key), value);
    return entries;
}

LexObj arrayGet(LexObj obj, std::int32_t index) {
    return referenceTo(childAt(arrayOf(obj, index), index));
}

void arrayPut(LexObj obj, std::int32_t index, LexObj valueObj) {
    Container &array = arrayOf(obj, index);
    Node *value = nodeOf(valueObj);
    const std::int32_t length = array.h.getArrayNItems();
    if (index >= length && index >= limits().arrayLength) throw HostError{KRErrBadParam};
    if (value) {
        if (index < length && standsAt(array, index, *value)) return;
        admit(array, *value);
    }
    if (index < length) {
        array.h.setArrayItem(index, handleOf(value));
    } else {
        for (std::int32_t i = length; i < index; ++i) array.h.appendItem(QPDFObjectHandle::newNull());
        array.h.appendItem(handleOf(value));
    }
    rememberAt(array, static_cast<std::size_t>(index), value);
    changed(array);
}

void arrayInsert(LexObj obj, std::int32_t index, LexObj valueObj) {
    Container &array = arrayOf(obj, index);
    Node *value = nodeOf(valueObj);
    if (value) admit(array, *value);
    const std::int32_t place = std::min(index, array.h.getArrayNItems());
    if (place == array.h.getArrayNItems())
        array.h.appendItem(handleOf(value));
    else
        array.h.insertItem(place, handleOf(value));
    // The memo moves with the elements: clearing it would give direct elements another identity.
    if (static_cast<std::size_t>(place) < array.memo.size())
        array.memo.insert(array.memo.begin() + place, {nullptr, KRAtomNull});
    rememberAt(array, static_cast<std::size_t>(place), value);
    changed(array);
}

void arrayRemoveAt(LexObj obj, std::int32_t index) {
    Container &array = arrayOf(obj, index);
    if (index >= array.h.getArrayNItems()) return;
    array.h.eraseItem(index);
    if (static_cast<std::size_t>(index) < array.memo.size()) {
        unlink(array, array.memo[static_cast<std::size_t>(index)].child);
        array.memo.erase(array.memo.begin() + index);
    }
    changed(array);
}

void arrayRemove(LexObj array, LexObj value) {
    const std::int32_t index = arrayIndexOf(array, value);
    if (index >= 0) arrayRemoveAt(array, index);
}

std::int32_t arrayLength(LexObj array) {
    return containerOfType(array, LexArray).h.getArrayNItems();
}

std::int32_t arrayIndexOf(LexObj obj, LexObj valueObj) {
    Container &array = containerOfType(obj, LexArray);
    const Node *value = nodeOf(valueObj);
    if (!value) return -1;
    const std::int32_t length = array.h.getArrayNItems();
    for (std::int32_t i = 0; i < length; ++i) {
        if (standsAt(array, i, *value)) return i;
    }
    return -1;
}

} // namespace jackdaw::lex
