// Nodes: thin views of the PDF library's objects, which remember what was looked up and give each object its identity.
//
// 1. A node is made when its object is first asked for and lives until its document closes. Its address is the
//    object's identity: two gets of one place give one node.
// 2. An indirect object's node is found by its number; a direct one's only through the memo of what holds it. Direct
//    names, small integers, booleans and new reals of one value share a node and the library's object: they cannot
//    change, and a form has hundreds of thousands of them.
// 3. All changes go through this layer and straight into the library's object, so that a memo never contradicts it.
// 4. `up` of a direct container has one entry for every memo entry that holds it; other nodes have none.
// 5. Nulls have no node. A destroyed node keeps its memory, has the type LexNull and an empty handle.
// 6. The library's document always holds the standard's names: keyText and keyAtom translate at the one key where this
//    system's name differs, so that no way of saving or drawing has to undo anything.
//
// Internal to this folder: nothing else includes the library's object headers for reading or changing objects.
// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

#include "KRTypes.h"
#include "Store.h"

namespace jackdaw::lex {

struct Node;

/** Of a dictionary: sorted by key, the child null for a key known to be absent. Of an array: by index, null for an
 *  element not yet looked at. Of a stream: its dictionary alone. */
struct MemoEntry {
    Node *child;
    KRAtom key;
};

enum NodeFlags : std::uint8_t {
    NodeIsCatalog = 1,
    NodeIsTrailer = 2,
    /** The form dictionary: what the catalog holds under its form key. */
    NodeIsForm = 4,
    /** An array whose direct dictionaries become indirect when they are handed out. */
    NodeHoldsFields = 8,
    /** Held more than once: the further holders stand in LexDocRec::moreHolders. */
    NodeHasManyHolders = 16
};

// A form of 100,000 fields has millions of these: one cache line each.
struct Node {
    Node(LexDocRec *owner, QPDFObjectHandle object, LexType lexType)
        : h(std::move(object)), doc(owner), type(static_cast<std::uint8_t>(lexType)) {
    }

    QPDFObjectHandle h;
    LexDocRec *doc;
    /** Containers only, made at the first look-up. */
    std::unique_ptr<std::vector<MemoEntry>> memo;
    /** Strings only: the bytes as they were handed out. */
    std::unique_ptr<std::string> bytes;
    Node *up = nullptr;
    /** Object number; 0 for a direct object. */
    std::int32_t number = 0;
    /** Names only: KRAtomNull until it is asked for. */
    KRAtom name = KRAtomNull;
    /** Levels of direct containers below this one that were put there by callers; never lowered. */
    std::uint16_t height = 0;
    std::uint8_t type;
    std::uint8_t flags = 0;

    bool isContainer() const {
        return type >= LexDict;
    }
};

} // namespace jackdaw::lex

/** An open document. */
struct LexDocRec {
    std::shared_ptr<QPDF> pdf = std::make_shared<QPDF>();
    /** The file when it was opened from memory: the library goes on reading from it. */
    std::shared_ptr<const std::string> fileBytes;
    bool fdf = false;
    jackdaw::lex::OpenFacts facts;
    std::uint32_t permissionBits = 0xFFFFFFFF;
    std::vector<std::string> warnings;

    /** Second word of all references to this document's objects. */
    KRWord slot = 0;
    std::deque<jackdaw::lex::Node> nodes;
    /** By number and generation. */
    std::unordered_map<std::uint64_t, jackdaw::lex::Node *> indirect;
    std::unordered_multimap<jackdaw::lex::Node *, jackdaw::lex::Node *> moreHolders;
    /** The direct scalars that are shared, by type and value. */
    std::unordered_map<std::uint64_t, jackdaw::lex::Node *> shared;
    jackdaw::lex::Node *root = nullptr;
    jackdaw::lex::Node *trailer = nullptr;

    void *client = nullptr;
    std::function<void()> onChange;
    std::uint64_t stamp = 0;
};

namespace jackdaw::lex {

// Documents and references.

/** Gives the record its slot, from which references to its objects are good. */
void openSlot(LexDocRec &doc);
/** Ends all references. The record is the caller's to delete. */
void closeSlot(LexDocRec &doc);
/** Throws HostError{KRErrBadParam} for a document that is not open. */
LexDocRec &openRecord(LexDoc doc);

/** Null for the null object, a destroyed one and one whose document is closed. */
Node *nodeOf(LexObj obj);
/** The same, but throws HostError{KRErrBadParam} unless it has this type. */
Node &nodeOfType(LexObj obj, LexType type);
/** The null object for null and for a destroyed node. */
LexObj referenceTo(const Node *node);

// Finding and making nodes.

/** Node of an object that has none yet, is shared or indirect; null for nulls. A direct one is linked by the caller. */
Node *nodeForHandle(LexDocRec &doc, const QPDFObjectHandle &h);
/** Where the shared node of a direct scalar of this value (an atom, an integer, a KRFixed, 0 or 1) stands or will
 *  stand; null for a value that is not shared. */
Node **sharedPlace(LexDocRec &doc, LexType type, std::int64_t value);
/** Makes the nodes of the catalog and the trailer, and the catalog's flag. */
void adoptRoot(LexDocRec &doc);
/** The dictionary that the dictionary operations work on: of a stream, its own. Throws for other types. */
Node &dictionaryOf(Node *node);
/** Null for an absent key and for a null. */
Node *childByKey(Node &dict, KRAtom key);
/** Null for a null and past the end. */
Node *childAt(Node &array, std::int32_t index);
/** Key text in the library's form; null for a key that cannot stand in this dictionary. */
const std::string *keyText(const Node &dict, KRAtom key);
/** KRAtomNull for a key that stays hidden or finds no atom. */
KRAtom keyAtom(const Node &dict, const std::string &text);

// Keeping memos and holders in step with a change that was or will be made in the library.

/** Throws HostError{KRErrBadParam} for a value of another document, a direct cycle and too deep nesting. */
void admit(Node &container, const Node &value);
void rememberKey(Node &dict, KRAtom key, Node *child);
/** The memo's entry; null for a key not yet looked up. */
MemoEntry *remembered(Node &dict, KRAtom key);
/** The next look-up asks the library again. */
void forgetKey(Node &dict, KRAtom key);
void link(Node &holder, Node *child);
void unlink(Node &holder, Node *child);
std::vector<MemoEntry> &memoOf(Node &node);

/** Counts a change, and tells the observer when the file will hold it. */
void changed(Node &node);
/** Turns a direct dictionary or array indirect in place. */
void makeIndirect(Node &node);
/** The object is gone: the node reads as null from now on and holds nothing. */
void bury(Node &node);

} // namespace jackdaw::lex
