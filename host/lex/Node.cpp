// Nodes: made on demand, found again by number or memo, linked to what holds them, buried when destroyed.
// SPDX-License-Identifier: MIT
#include "lex/Node.h"

#include <algorithm>
#include <unordered_set>

#include "kernel/Atoms.h"
#include "kernel/HostError.h"
#include "kernel/HostLimits.h"
#include "lex/LexApi.h"

namespace jackdaw::lex {

namespace {

static_assert(sizeof(KRWord) == 8, "a reference's second word holds a slot and its generation");

/** What ISO 32000 calls the catalog's form entry. Here alone. */
const std::string s_standardFormKey = "/AcroForm";

struct KnownAtoms {
    KRAtom form = AtomFromText("Tessella");
    KRAtom fields = AtomFromText("Fields");
    KRAtom kids = AtomFromText("Kids");
};

const KnownAtoms &known() {
    static const KnownAtoms s_atoms;
    return s_atoms;
}

// The documents of the process. A slot is used again under a higher generation, so that a reference to a former
// document never matches. Slot 0 stays empty, as it is the null object's.
struct DocSlot {
    LexDocRec *doc;
    KRWord word;
};
std::vector<DocSlot> s_slots(1);

Node *alive(Node *node) {
    return node && node->type != LexNull ? node : nullptr;
}

std::uint64_t indirectKey(const QPDFObjectHandle &h) {
    return static_cast<std::uint64_t>(static_cast<std::uint32_t>(h.getObjectID())) << 32 |
           static_cast<std::uint32_t>(h.getGeneration());
}

LexType lexTypeOf(QPDFObjectHandle h) {
    switch (h.getTypeCode()) {
    case ot_boolean:
        return LexBoolean;
    case ot_integer:
        return LexInteger;
    case ot_real:
        return LexFixed;
    case ot_string:
        return LexString;
    case ot_name:
        return LexName;
    case ot_array:
        return LexArray;
    case ot_dictionary:
        return LexDict;
    case ot_stream:
        return LexStream;
    default:
        return LexNull;
    }
}

template <class Map, class Key>
Node **placeIn(Map &map, const Key &key) {
    // A file may hold any number of different values.
    if (std::ssize(map) < LimitOf(Limit::SharedValues)) return &map[key];
    const auto found = map.find(key);
    return found == map.end() ? nullptr : &found->second;
}

/** Where the shared node of a direct scalar stands or will stand; null for a value that is not shared. A name interns
 *  nothing: only one that is an atom already is shared. */
Node **sharedPlace(LexDocRec &doc, QPDFObjectHandle h, LexType type) {
    if (type == LexFixed) return placeIn(doc.sharedReals, h.getRealValue());
    long long value = 0;
    if (type == LexInteger) value = h.getIntValue();
    if (type == LexBoolean) value = h.getBoolValue();
    if (type == LexName) value = ExistingAtomFromKey(h.getName());
    if (type > LexName || value != static_cast<std::int32_t>(value) || (type == LexName && value == KRAtomNull))
        return nullptr;
    return placeIn(doc.shared, static_cast<std::uint64_t>(type) << 32 | static_cast<std::uint32_t>(value));
}

Node *makeNode(LexDocRec &doc, const QPDFObjectHandle &h, LexType type) {
    const std::uint16_t atomOrHeight = type == LexName ? KRAtomNull : 0;
    const Node base{h, &doc, h.getObjectID(), atomOrHeight, static_cast<std::uint8_t>(type), /*flags*/ 0};
    if (type == LexString) return &doc.strings.emplace_back(StringNode{base, {}});
    if (type >= LexDict) return &doc.containers.emplace_back(Container{base, {}, nullptr});
    return &doc.scalars.emplace_back(base);
}

std::vector<MemoEntry>::iterator placeOf(std::vector<MemoEntry> &memo, KRAtom key) {
    return std::lower_bound(memo.begin(), memo.end(), key,
                            [](const MemoEntry &entry, KRAtom wanted) { return entry.key < wanted; });
}

/** Calls `visit` for every direct holder of `node`, not for the holders of those. */
template <class Visit>
void forEachHolder(Container &node, Visit visit) {
    if (!node.isDirect() || !node.up) return;
    visit(node.up);
    if (!(node.flags & NodeHasManyHolders)) return;
    const auto [first, last] = node.doc->moreHolders.equal_range(&node);
    for (auto it = first; it != last; ++it) visit(it->second);
}

/** Whether `test` is true for `start` or anything that holds it, up to and including the indirect objects. */
template <class Test>
bool anyHolder(Container &start, Test test) {
    Container *node = &start;
    while (node && !(node->flags & NodeHasManyHolders)) {
        if (test(*node)) return true;
        node = node->isDirect() ? node->up : nullptr;
    }
    if (!node) return false;
    std::vector<Container *> waiting{node};
    std::unordered_set<Container *> seen{node};
    while (!waiting.empty()) {
        Container *next = waiting.back();
        waiting.pop_back();
        if (test(*next)) return true;
        forEachHolder(*next, [&](Container *holder) {
            if (seen.insert(holder).second) waiting.push_back(holder);
        });
    }
    return false;
}

/** Notes that `container` will hold direct containers `height` levels deep; false beyond the limit. What it noted until
 *  then stays: heights may be too high, never too low. */
bool raiseHeights(Container &container, unsigned height) {
    if (container.atomOrHeight >= height) return true;
    std::vector<std::pair<Container *, unsigned>> rising{{&container, height}};
    while (!rising.empty()) {
        Container *const node = rising.back().first;
        const unsigned level = rising.back().second;
        rising.pop_back();
        if (node->atomOrHeight >= level) continue;
        if (level > LimitOf(Limit::DirectDepth)) return false;
        node->atomOrHeight = static_cast<std::uint16_t>(level);
        forEachHolder(*node, [&](Container *holder) { rising.emplace_back(holder, level + 1); });
    }
    return true;
}

// Fields that a file holds directly become indirect when they are first handed out, since fields are known by their
// references: the elements of the form's `Fields` and of any `Kids`. This marks the arrays; ChildAt does it.
void noteRole(Container &dict, KRAtom key, Node *child) {
    if (!child || dict.doc->fdf) return;
    if (child->type == LexArray) {
        if (key == known().kids || (key == known().fields && dict.flags & NodeIsForm)) child->flags |= NodeHoldsFields;
    } else if (key == known().form && dict.flags & NodeIsCatalog && child->type == LexDict) {
        child->flags |= NodeIsForm;
        auto &form = static_cast<Container &>(*child);
        if (const MemoEntry *fields = RememberedKey(form, known().fields))
            noteRole(form, known().fields, fields->child);
    }
}

} // namespace

void OpenSlot(LexDocRec &doc) {
    std::size_t index = 1;
    while (index < s_slots.size() && s_slots[index].doc) ++index;
    if (index == s_slots.size()) s_slots.push_back({nullptr, index});
    DocSlot &slot = s_slots[index];
    slot.doc = &doc;
    slot.word += KRWord{1} << 32;
    doc.slot = slot.word;
}

void CloseSlot(LexDocRec &doc) {
    for (DocSlot &slot : s_slots) {
        if (slot.doc != &doc) continue;
        slot.doc = nullptr;
        slot.word += KRWord{1} << 32;
    }
}

bool IsOpenStore(LexDoc doc) {
    return doc && std::any_of(s_slots.begin(), s_slots.end(), [&](const DocSlot &slot) { return slot.doc == doc; });
}

KRWord SlotOf(LexDoc doc) {
    return IsOpenStore(doc) ? doc->slot : 0;
}

LexDocRec &OpenRecord(LexDoc doc) {
    if (!IsOpenStore(doc)) throw HostError{KRErrBadParam};
    return *doc;
}

Node *NodeOf(LexObj obj) {
    const std::size_t index = obj.slot & 0xFFFFFFFF;
    if (index == 0 || index >= s_slots.size() || s_slots[index].word != obj.slot || !s_slots[index].doc) return nullptr;
    return alive(reinterpret_cast<Node *>(obj.node));
}

Node &NodeOfType(LexObj obj, LexType type) {
    Node *node = NodeOf(obj);
    if (!node || node->type != type) throw HostError{KRErrBadParam};
    return *node;
}

Container &ContainerOfType(LexObj obj, LexType type) {
    return static_cast<Container &>(NodeOfType(obj, type));
}

LexObj ReferenceTo(const Node *node) {
    if (!node || node->type == LexNull) return {0, 0};
    return {reinterpret_cast<KRWord>(node), node->doc->slot};
}

Node *NodeForHandle(LexDocRec &doc, const QPDFObjectHandle &h) {
    const LexType type = lexTypeOf(h);
    if (type == LexNull) return nullptr;
    const bool indirect = h.isIndirect();
    Node **place = indirect ? &doc.indirect[indirectKey(h)] : sharedPlace(doc, h, type);
    if (place && *place) return *place;
    Node *node = makeNode(doc, h, type);
    if (!place) return node;
    if (!indirect) node->flags |= NodeIsShared;
    return *place = node;
}

void AdoptRoot(LexDocRec &doc) {
    Node *trailer = NodeForHandle(doc, doc.pdf->getTrailer());
    if (!trailer || trailer->type != LexDict) throw HostError{KRErrBadPDF, "the catalog is missing"};
    trailer->flags |= NodeIsTrailer;
    doc.trailer = static_cast<Container *>(trailer);
    Node *root = ChildByKey(*doc.trailer, AtomFromText("Root"));
    if (!root || root->type != LexDict) throw HostError{KRErrBadPDF, "the catalog is missing"};
    if (!doc.fdf) root->flags |= NodeIsCatalog;
    doc.root = static_cast<Container *>(root);
}

Container &DictionaryOf(LexObj obj) {
    Node *node = NodeOf(obj);
    if (!node || (node->type != LexDict && node->type != LexStream)) throw HostError{KRErrBadParam};
    auto &container = static_cast<Container &>(*node);
    return node->type == LexDict ? container : DictionaryOfStream(container);
}

Container &DictionaryOfStream(Container &stream) {
    if (stream.memo.empty()) {
        Node *dict = NodeForHandle(*stream.doc, stream.h.getDict());
        stream.memo.push_back({dict, KRAtomNull});
        LinkChild(stream, dict);
    }
    return static_cast<Container &>(*stream.memo.front().child);
}

Node *ChildByKey(Container &dict, KRAtom key) {
    if (const MemoEntry *entry = RememberedKey(dict, key)) return alive(entry->child);
    const std::string *text = KeyText(dict, key);
    if (!text) return nullptr;
    Node *child = nullptr;
    // Asking first: getKey builds a described null for a key that is not there.
    if (dict.h.hasKey(*text)) {
        const QPDFObjectHandle h = dict.h.getKey(*text);
        child = NodeForHandle(*dict.doc, h);
        // The file's own object makes room: half of what a large form takes is equal numbers and names.
        if (child && child->isShared() && !child->h.isSameObjectAs(h)) dict.h.replaceKey(*text, child->h);
    }
    RememberKey(dict, key, child);
    return child;
}

Node *ChildAt(Container &array, std::int32_t index) {
    const auto place = static_cast<std::size_t>(index);
    Node *child = place < array.memo.size() ? alive(array.memo[place].child) : nullptr;
    if (!child) {
        if (index >= array.h.getArrayNItems()) return nullptr;
        const QPDFObjectHandle h = array.h.getArrayItem(index);
        child = NodeForHandle(*array.doc, h);
        if (!child) return nullptr;
        if (child->isShared()) {
            // As in ChildByKey; and found again by its value, so that an array of numbers needs no memo.
            if (!child->h.isSameObjectAs(h)) array.h.setArrayItem(index, child->h);
            return child;
        }
        ElementEntry(array, place).child = child;
        LinkChild(array, child);
    }
    const bool directField = array.flags & NodeHoldsFields && child->type == LexDict && child->isDirect();
    if (directField) MakeIndirect(static_cast<Container &>(*child));
    return child;
}

// A literal key of this system's name in a file's catalog is not the form: it is hidden and stays in the file. The
// standard's name is hidden likewise, or the form would be met twice.
const std::string *KeyText(const Container &dict, KRAtom key) {
    if (key == KRAtomNull) return nullptr;
    const std::string &text = AtomKey(key);
    if (!(dict.flags & NodeIsCatalog)) return &text;
    if (key == known().form) return &s_standardFormKey;
    return text == s_standardFormKey ? nullptr : &text;
}

KRAtom KeyAtom(const Container &dict, const std::string &text) {
    if (dict.flags & NodeIsCatalog) {
        if (text == s_standardFormKey) return known().form;
        if (text == AtomKey(known().form)) return KRAtomNull;
    }
    if (text.find('\0') != std::string::npos) return KRAtomNull;
    try {
        return AtomFromKey(text);
    } catch (const HostError &) {
        return KRAtomNull;
    }
}

void Admit(Container &container, const Node &value) {
    if (value.doc != container.doc) throw HostError{KRErrBadParam};
    if (!value.isContainer() || !value.isDirect()) return;
    if (anyHolder(container, [&](const Container &holder) { return &holder == &value; }))
        throw HostError{KRErrBadParam};
    if (!raiseHeights(container, value.atomOrHeight + 1u)) throw HostError{KRErrBadParam};
}

MemoEntry *RememberedKey(Container &dict, KRAtom key) {
    const auto place = placeOf(dict.memo, key);
    return place != dict.memo.end() && place->key == key ? &*place : nullptr;
}

void RememberKey(Container &dict, KRAtom key, Node *child) {
    if (MemoEntry *entry = RememberedKey(dict, key)) {
        UnlinkChild(dict, entry->child);
        entry->child = child;
    } else {
        // Doubling would leave much of a large form's memos empty.
        if (dict.memo.size() == dict.memo.capacity()) dict.memo.reserve(dict.memo.size() + dict.memo.size() / 4 + 1);
        dict.memo.insert(placeOf(dict.memo, key), {child, key});
    }
    LinkChild(dict, child);
    noteRole(dict, key, child);
}

void ForgetKey(Container &dict, KRAtom key) {
    MemoEntry *entry = RememberedKey(dict, key);
    if (!entry) return;
    UnlinkChild(dict, entry->child);
    dict.memo.erase(dict.memo.begin() + (entry - dict.memo.data()));
}

MemoEntry &ElementEntry(Container &array, std::size_t index) {
    if (array.memo.size() <= index) array.memo.resize(index + 1, {nullptr, KRAtomNull});
    return array.memo[index];
}

void LinkChild(Container &holder, Node *child) {
    if (!child || !child->isContainer() || !child->isDirect()) return;
    auto &held = static_cast<Container &>(*child);
    if (!held.up) {
        held.up = &holder;
        return;
    }
    held.doc->moreHolders.emplace(&held, &holder);
    held.flags |= NodeHasManyHolders;
}

void UnlinkChild(Container &holder, Node *child) {
    if (!child || !child->isContainer() || !child->isDirect()) return;
    auto &held = static_cast<Container &>(*child);
    if (!(held.flags & NodeHasManyHolders)) {
        if (held.up == &holder) held.up = nullptr;
        return;
    }
    auto &more = held.doc->moreHolders;
    const auto [first, last] = more.equal_range(&held);
    auto found = std::find_if(first, last, [&](const auto &entry) { return entry.second == &holder; });
    if (found == last) {
        found = first;
        held.up = first->second;
    }
    more.erase(found);
    if (more.count(&held) == 0) held.flags &= static_cast<std::uint8_t>(~NodeHasManyHolders);
}

void NoteChange(Container &node) {
    LexDocRec &doc = *node.doc;
    ++doc.stamp;
    if (!doc.onChange) return;
    const auto inFile = [](const Container &holder) { return !holder.isDirect() || holder.flags & NodeIsTrailer; };
    if (anyHolder(node, inFile)) doc.onChange();
}

void MakeIndirect(Container &node) {
    if (!node.isDirect()) return;
    const bool ofStream = node.up && node.up->type == LexStream;
    if (ofStream || node.flags & NodeIsTrailer) throw HostError{KRErrBadParam};
    LexDocRec &doc = *node.doc;
    // In place: the library numbers the very object that sits in its holders.
    node.h = doc.pdf->makeIndirectObject(node.h);
    node.number = node.h.getObjectID();
    node.up = nullptr;
    doc.moreHolders.erase(&node);
    node.flags &= static_cast<std::uint8_t>(~NodeHasManyHolders);
    doc.indirect[indirectKey(node.h)] = &node;
}

void Bury(Node &node) {
    if (node.isContainer()) {
        auto &container = static_cast<Container &>(node);
        for (const MemoEntry &entry : container.memo) UnlinkChild(container, entry.child);
        container.memo = {};
    }
    if (!node.isDirect()) node.doc->indirect.erase(indirectKey(node.h));
    node.type = LexNull;
    node.h = QPDFObjectHandle();
}

} // namespace jackdaw::lex
