#include "Node.h"

#include <algorithm>
#include <unordered_set>

#include "Atoms.h"
#include "HostError.h"
#include "LexApi.h"
#include "Limits.h"

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

/** The place of a file's own direct scalar among the shared ones. A real is known by its text, which the file keeps, and a
 *  name interns nothing: only one that is an atom already is shared. */
Node **sharedPlaceOf(LexDocRec &doc, QPDFObjectHandle h, LexType type) {
    if (type == LexInteger) return sharedPlace(doc, type, h.getIntValue());
    if (type == LexBoolean) return sharedPlace(doc, type, h.getBoolValue());
    if (type != LexName) return nullptr;
    const KRAtom atom = ExistingAtomFromKey(h.getName());
    return atom == KRAtomNull ? nullptr : sharedPlace(doc, type, atom);
}

std::vector<MemoEntry>::iterator placeOf(std::vector<MemoEntry> &memo, KRAtom key) {
    return std::lower_bound(memo.begin(), memo.end(), key,
                            [](const MemoEntry &entry, KRAtom wanted) { return entry.key < wanted; });
}

/** Calls `visit` for every direct holder of `node`, not for the holders of those. */
template <class Visit>
void forEachHolder(Node &node, Visit visit) {
    if (node.number != 0 || !node.up) return;
    visit(node.up);
    if (!(node.flags & NodeHasManyHolders)) return;
    const auto [first, last] = node.doc->moreHolders.equal_range(&node);
    for (auto it = first; it != last; ++it) visit(it->second);
}

/** Whether `test` is true for `start` or anything that holds it, up to and including the indirect objects. */
template <class Test>
bool anyHolder(Node &start, Test test) {
    Node *node = &start;
    while (node && !(node->flags & NodeHasManyHolders)) {
        if (test(*node)) return true;
        node = node->number != 0 ? nullptr : node->up;
    }
    if (!node) return false;
    std::vector<Node *> waiting{node};
    std::unordered_set<Node *> seen{node};
    while (!waiting.empty()) {
        Node *next = waiting.back();
        waiting.pop_back();
        if (test(*next)) return true;
        forEachHolder(*next, [&](Node *holder) {
            if (seen.insert(holder).second) waiting.push_back(holder);
        });
    }
    return false;
}

/** Notes that `container` will hold direct containers `height` levels deep; false beyond the limit. What it noted until
 *  then stays: heights may be too high, never too low. */
bool raiseHeights(Node &container, unsigned height) {
    std::vector<std::pair<Node *, unsigned>> rising{{&container, height}};
    while (!rising.empty()) {
        const auto [node, level] = rising.back();
        rising.pop_back();
        if (node->height >= level) continue;
        if (level > limits().directDepth) return false;
        node->height = static_cast<std::uint16_t>(level);
        forEachHolder(*node, [&](Node *holder) { rising.emplace_back(holder, level + 1); });
    }
    return true;
}

// Fields that a file holds directly become indirect when they are first handed out, since fields are known by their
// references: the elements of the form's `Fields` and of any `Kids`. This marks the arrays; childAt does it.
void noteRole(Node &dict, KRAtom key, Node *child) {
    if (!child || dict.doc->fdf) return;
    if (child->type == LexArray) {
        if (key == known().kids || (key == known().fields && dict.flags & NodeIsForm)) child->flags |= NodeHoldsFields;
    } else if (key == known().form && dict.flags & NodeIsCatalog && child->type == LexDict) {
        child->flags |= NodeIsForm;
        if (MemoEntry *fields = remembered(*child, known().fields)) noteRole(*child, known().fields, fields->child);
    }
}

} // namespace

void openSlot(LexDocRec &doc) {
    std::size_t index = 1;
    while (index < s_slots.size() && s_slots[index].doc) ++index;
    if (index == s_slots.size()) s_slots.push_back({nullptr, index});
    DocSlot &slot = s_slots[index];
    slot.doc = &doc;
    slot.word += KRWord{1} << 32;
    doc.slot = slot.word;
}

void closeSlot(LexDocRec &doc) {
    for (DocSlot &slot : s_slots) {
        if (slot.doc != &doc) continue;
        slot.doc = nullptr;
        slot.word += KRWord{1} << 32;
    }
}

bool isOpen(LexDoc doc) {
    return doc && std::any_of(s_slots.begin(), s_slots.end(), [&](const DocSlot &slot) { return slot.doc == doc; });
}

KRWord slotOf(LexDoc doc) {
    return isOpen(doc) ? doc->slot : 0;
}

LexDocRec &openRecord(LexDoc doc) {
    if (!isOpen(doc)) throw HostError{KRErrBadParam};
    return *doc;
}

Node *nodeOf(LexObj obj) {
    const std::size_t index = obj.slot & 0xFFFFFFFF;
    if (index == 0 || index >= s_slots.size() || s_slots[index].word != obj.slot || !s_slots[index].doc) return nullptr;
    return alive(reinterpret_cast<Node *>(obj.node));
}

Node &nodeOfType(LexObj obj, LexType type) {
    Node *node = nodeOf(obj);
    if (!node || node->type != type) throw HostError{KRErrBadParam};
    return *node;
}

LexObj referenceTo(const Node *node) {
    if (!node || node->type == LexNull) return {0, 0};
    return {reinterpret_cast<KRWord>(node), node->doc->slot};
}

Node **sharedPlace(LexDocRec &doc, LexType type, std::int64_t value) {
    constexpr std::int64_t reach = std::int64_t{1} << 31;
    constexpr std::size_t most = 1 << 16;
    if (value < -reach || value >= reach) return nullptr;
    const auto key = static_cast<std::uint64_t>(type) << 32 | static_cast<std::uint32_t>(value);
    if (doc.shared.size() < most) return &doc.shared[key];
    const auto found = doc.shared.find(key);
    return found == doc.shared.end() ? nullptr : &found->second;
}

Node *nodeForHandle(LexDocRec &doc, const QPDFObjectHandle &h) {
    const LexType type = lexTypeOf(h);
    if (type == LexNull) return nullptr;
    Node *unshared = nullptr;
    Node **place = h.isIndirect() ? &doc.indirect[indirectKey(h)] : sharedPlaceOf(doc, h, type);
    Node *&node = place ? *place : unshared;
    if (!node) {
        node = &doc.nodes.emplace_back(&doc, h, type);
        node->number = h.getObjectID();
    }
    return node;
}

void adoptRoot(LexDocRec &doc) {
    doc.trailer = nodeForHandle(doc, doc.pdf->getTrailer());
    if (!doc.trailer || doc.trailer->type != LexDict) throw HostError{KRErrBadPDF};
    doc.trailer->flags |= NodeIsTrailer;
    doc.root = childByKey(*doc.trailer, AtomFromText("Root"));
    if (!doc.root || doc.root->type != LexDict) throw HostError{KRErrBadPDF};
    if (!doc.fdf) doc.root->flags |= NodeIsCatalog;
}

Node &dictionaryOf(Node *node) {
    if (node && node->type == LexDict) return *node;
    if (!node || node->type != LexStream) throw HostError{KRErrBadParam};
    if (!node->memo) {
        Node *dict = nodeForHandle(*node->doc, node->h.getDict());
        memoOf(*node).push_back({dict, KRAtomNull});
        link(*node, dict);
    }
    return *node->memo->front().child;
}

Node *childByKey(Node &dict, KRAtom key) {
    if (const MemoEntry *entry = remembered(dict, key)) return alive(entry->child);
    const std::string *text = keyText(dict, key);
    if (!text) return nullptr;
    // Asking first: getKey builds a described null for a key that is not there.
    Node *child = dict.h.hasKey(*text) ? nodeForHandle(*dict.doc, dict.h.getKey(*text)) : nullptr;
    rememberKey(dict, key, child);
    return child;
}

Node *childAt(Node &array, std::int32_t index) {
    const auto place = static_cast<std::size_t>(index);
    Node *child = array.memo && place < array.memo->size() ? alive((*array.memo)[place].child) : nullptr;
    if (!child) {
        if (index >= array.h.getArrayNItems()) return nullptr;
        child = nodeForHandle(*array.doc, array.h.getArrayItem(index));
        if (!child) return nullptr;
        std::vector<MemoEntry> &memo = memoOf(array);
        if (memo.size() <= place) memo.resize(place + 1, {nullptr, KRAtomNull});
        memo[place].child = child;
        link(array, child);
    }
    if (array.flags & NodeHoldsFields && child->type == LexDict && child->number == 0) makeIndirect(*child);
    return child;
}

// A literal key of this system's name in a file's catalog is not the form: it is hidden and stays in the file. The
// standard's name is hidden likewise, or the form would be met twice.
const std::string *keyText(const Node &dict, KRAtom key) {
    if (key == KRAtomNull) return nullptr;
    const std::string &text = AtomKey(key);
    if (!(dict.flags & NodeIsCatalog)) return &text;
    if (key == known().form) return &s_standardFormKey;
    return text == s_standardFormKey ? nullptr : &text;
}

KRAtom keyAtom(const Node &dict, const std::string &text) {
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

void admit(Node &container, const Node &value) {
    if (value.doc != container.doc) throw HostError{KRErrBadParam};
    if (!value.isContainer() || value.number != 0) return;
    if (anyHolder(container, [&](const Node &holder) { return &holder == &value; })) throw HostError{KRErrBadParam};
    if (!raiseHeights(container, value.height + 1u)) throw HostError{KRErrBadParam};
}

std::vector<MemoEntry> &memoOf(Node &node) {
    if (!node.memo) node.memo = std::make_unique<std::vector<MemoEntry>>();
    return *node.memo;
}

MemoEntry *remembered(Node &dict, KRAtom key) {
    if (!dict.memo) return nullptr;
    const auto place = placeOf(*dict.memo, key);
    return place != dict.memo->end() && place->key == key ? &*place : nullptr;
}

void rememberKey(Node &dict, KRAtom key, Node *child) {
    std::vector<MemoEntry> &memo = memoOf(dict);
    const auto place = placeOf(memo, key);
    if (place != memo.end() && place->key == key) {
        unlink(dict, place->child);
        place->child = child;
    } else {
        memo.insert(place, {child, key});
    }
    link(dict, child);
    noteRole(dict, key, child);
}

void forgetKey(Node &dict, KRAtom key) {
    MemoEntry *entry = remembered(dict, key);
    if (!entry) return;
    unlink(dict, entry->child);
    dict.memo->erase(dict.memo->begin() + (entry - dict.memo->data()));
}

void link(Node &holder, Node *child) {
    if (!child || !child->isContainer() || child->number != 0) return;
    if (!child->up) {
        child->up = &holder;
        return;
    }
    child->doc->moreHolders.emplace(child, &holder);
    child->flags |= NodeHasManyHolders;
}

void unlink(Node &holder, Node *child) {
    if (!child || !child->isContainer() || child->number != 0) return;
    if (!(child->flags & NodeHasManyHolders)) {
        if (child->up == &holder) child->up = nullptr;
        return;
    }
    auto &more = child->doc->moreHolders;
    const auto [first, last] = more.equal_range(child);
    auto found = std::find_if(first, last, [&](const auto &entry) { return entry.second == &holder; });
    if (found == last) {
        found = first;
        child->up = first->second;
    }
    more.erase(found);
    if (!more.contains(child)) child->flags &= static_cast<std::uint8_t>(~NodeHasManyHolders);
}

void changed(Node &node) {
    LexDocRec &doc = *node.doc;
    ++doc.stamp;
    if (!doc.onChange) return;
    const auto inFile = [](const Node &holder) { return holder.number != 0 || holder.flags & NodeIsTrailer; };
    if (anyHolder(node, inFile)) doc.onChange();
}

void makeIndirect(Node &node) {
    if (node.number != 0) return;
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

void bury(Node &node) {
    if (node.memo) {
        for (const MemoEntry &entry : *node.memo) unlink(node, entry.child);
    }
    if (node.number != 0) node.doc->indirect.erase(indirectKey(node.h));
    node.memo.reset();
    node.type = LexNull;
    node.h = QPDFObjectHandle();
}

} // namespace jackdaw::lex
