// Dictionaries and arrays: the operations of LexObjects.h that change containers or list them.
// SPDX-License-Identifier: MIT
#include "lex/LexContainers.h"

#include <algorithm>

#include "kernel/HostError.h"
#include "kernel/HostLimits.h"
#include "lex/Node.h"

namespace jackdaw::lex {

namespace {

Container &arrayOf(LexObj obj, std::int32_t index) {
    Container &array = ContainerOfType(obj, LexArray);
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
    MemoEntry &entry = ElementEntry(array, index);
    UnlinkChild(array, entry.child);
    entry.child = child;
    LinkChild(array, child);
}

/** Whether the element at `index` is this node's object; makes no node for one that is not. */
bool standsAt(Container &array, std::int32_t index, const Node &value) {
    const auto place = static_cast<std::size_t>(index);
    if (place < array.memo.size() && array.memo[place].child) return array.memo[place].child == &value;
    // A direct object without an entry in the memo was never handed out, so it is not the value.
    if (value.isShared()) return ChildAt(array, index) == &value;
    return !value.isDirect() && array.h.getArrayItem(index).getObjGen() == value.h.getObjGen();
}

} // namespace

LexObj DictGet(LexObj dict, KRAtom key) {
    return ReferenceTo(ChildByKey(DictionaryOf(dict), key));
}

bool DictKnown(LexObj dict, KRAtom key) {
    return ChildByKey(DictionaryOf(dict), key) != nullptr;
}

void DictPut(LexObj obj, KRAtom key, LexObj valueObj) {
    Container &dict = DictionaryOf(obj);
    Node *value = NodeOf(valueObj);
    if (!value) return DictRemove(obj, key);
    const std::string *text = KeyText(dict, key);
    if (!text) throw HostError{KRErrBadParam};
    if (const MemoEntry *entry = RememberedKey(dict, key); entry && entry->child == value) return;
    Admit(dict, *value);
    dict.h.replaceKey(*text, value->h);
    RememberKey(dict, key, value);
    NoteChange(dict);
}

void DictRemove(LexObj obj, KRAtom key) {
    Container &dict = DictionaryOf(obj);
    const std::string *text = KeyText(dict, key);
    if (!text || !dict.h.hasKey(*text)) return;
    dict.h.removeKey(*text);
    RememberKey(dict, key, nullptr);
    NoteChange(dict);
}

std::vector<std::pair<KRAtom, LexObj>> DictEntries(LexObj obj) {
    Container &dict = DictionaryOf(obj);
    std::vector<std::pair<KRAtom, LexObj>> entries;
    for (auto &[text, value] : dict.h.getDictAsMap()) {
        // The map lists null values and references to nothing as well.
        if (value.isNull()) continue;
        const KRAtom key = KeyAtom(dict, text);
        if (key == KRAtomNull) continue;
        entries.emplace_back(key, ReferenceTo(ChildByKey(dict, key)));
    }
    return entries;
}

std::vector<std::pair<LexObj, LexObj>> EntriesForWalk(LexObj obj) {
    std::vector<std::pair<LexObj, LexObj>> entries;
    if (IsArray(obj)) {
        const std::int32_t length = ArrayLength(obj);
        entries.reserve(static_cast<std::size_t>(length));
        for (std::int32_t i = 0; i < length; ++i) entries.emplace_back(ArrayGet(obj, i), NullObj);
        return entries;
    }
    const LexDoc doc = DictionaryOf(obj).doc;
    for (const auto &[key, value] : DictEntries(obj))
        entries.emplace_back(NewName(doc, /*indirect*/ false, key), value);
    return entries;
}

LexObj ArrayGet(LexObj obj, std::int32_t index) {
    return ReferenceTo(ChildAt(arrayOf(obj, index), index));
}

void ArrayPut(LexObj obj, std::int32_t index, LexObj valueObj) {
    Container &array = arrayOf(obj, index);
    Node *value = NodeOf(valueObj);
    const std::int32_t length = array.h.getArrayNItems();
    if (index >= length && index >= LimitOf(Limit::ArrayLength)) throw HostError{KRErrBadParam};
    if (value) {
        if (index < length && standsAt(array, index, *value)) return;
        Admit(array, *value);
    }
    if (index < length) {
        array.h.setArrayItem(index, handleOf(value));
    } else {
        for (std::int32_t i = length; i < index; ++i) array.h.appendItem(QPDFObjectHandle::newNull());
        array.h.appendItem(handleOf(value));
    }
    rememberAt(array, static_cast<std::size_t>(index), value);
    NoteChange(array);
}

void ArrayInsert(LexObj obj, std::int32_t index, LexObj valueObj) {
    Container &array = arrayOf(obj, index);
    Node *value = NodeOf(valueObj);
    if (value) Admit(array, *value);
    const std::int32_t place = std::min(index, array.h.getArrayNItems());
    if (place == array.h.getArrayNItems())
        array.h.appendItem(handleOf(value));
    else
        array.h.insertItem(place, handleOf(value));
    // The memo moves with the elements: clearing it would give direct elements another identity.
    if (static_cast<std::size_t>(place) < array.memo.size())
        array.memo.insert(array.memo.begin() + place, {nullptr, KRAtomNull});
    rememberAt(array, static_cast<std::size_t>(place), value);
    NoteChange(array);
}

void ArrayRemoveAt(LexObj obj, std::int32_t index) {
    Container &array = arrayOf(obj, index);
    if (index >= array.h.getArrayNItems()) return;
    array.h.eraseItem(index);
    if (static_cast<std::size_t>(index) < array.memo.size()) {
        UnlinkChild(array, array.memo[static_cast<std::size_t>(index)].child);
        array.memo.erase(array.memo.begin() + index);
    }
    NoteChange(array);
}

void ArrayRemove(LexObj array, LexObj value) {
    const std::int32_t index = ArrayIndexOf(array, value);
    if (index >= 0) ArrayRemoveAt(array, index);
}

std::int32_t ArrayLength(LexObj array) {
    return ContainerOfType(array, LexArray).h.getArrayNItems();
}

std::int32_t ArrayIndexOf(LexObj obj, LexObj valueObj) {
    Container &array = ContainerOfType(obj, LexArray);
    const Node *value = NodeOf(valueObj);
    if (!value) return -1;
    const std::int32_t length = array.h.getArrayNItems();
    for (std::int32_t i = 0; i < length; ++i) {
        if (standsAt(array, i, *value)) return i;
    }
    return -1;
}

} // namespace jackdaw::lex
