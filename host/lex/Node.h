// Nodes: thin views of the PDF library's objects, which remember what was looked up and give each object its identity.
//
// 1. A node is made when its object is first asked for and lives until its document closes. Its address is the
//    object's identity: two gets of one place give one node.
// 2. An indirect object's node is found by its number; a direct one's only through the memo of what holds it. Direct
//    names, integers, booleans and reals of one value share a node and the library's object: they cannot change, and a
//    form has hundreds of thousands of them.
// 3. All changes go through this layer and straight into the library's object, so that a memo never contradicts it.
// 4. `up` of a direct container has one entry for every memo entry that holds it; other nodes have none.
// 5. Nulls have no node. A destroyed node keeps its memory, has the type LexNull and an empty handle.
// 6. The library's document always holds the standard's names: KeyText and KeyAtom translate at the one key where this
//    system's name differs, so that no way of saving or drawing has to undo anything.
//
// Internal to this folder, the only one that changes objects of the library. What builds snapshots for drawing reads
// them too, by the handle that LexApi.h gives.
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
#include "lex/Store.h"

namespace jackdaw::lex {

class FileSource;
struct Node;
struct Container;

/** Of a dictionary: sorted by key, the child null for a key known to be absent. Of an array: by index, null for an
 *  element not yet looked at or shared. Of a stream: its dictionary alone. */
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
    NodeHasManyHolders = 16,
    /** A string whose bytes were asked for. */
    NodeHasBytes = 32,
    /** A direct scalar that stands in `shared` or `sharedReals`: one node and one library object for all places. */
    NodeIsShared = 64
};

// A form of 100,000 fields has a million nodes or more: these records are kept small, and a node is only as large as
// its type needs.
struct Node {
    QPDFObjectHandle h;
    LexDocRec *doc;
    /** Object number; 0 for a direct object. */
    std::int32_t number;
    /** Of a name: its atom, KRAtomNull until it is asked for. Of a container: the levels of direct containers below it
     *  that callers put there; never lowered. */
    std::uint16_t atomOrHeight;
    std::uint8_t type;
    std::uint8_t flags;

    bool isContainer() const {
        return type >= LexDict;
    }
    bool isDirect() const {
        return number == 0;
    }
    bool isShared() const {
        return flags & NodeIsShared;
    }
};

/** Node of a dictionary, an array or a stream. */
struct Container : Node {
    std::vector<MemoEntry> memo;
    Container *up = nullptr;
};

/** Node of a string. */
struct StringNode : Node {
    /** As they were handed out, for as long as the document is open. */
    std::string bytes;
};

} // namespace jackdaw::lex

/** An open document. */
struct LexDocRec {
    std::shared_ptr<QPDF> pdf = std::make_shared<QPDF>();
    /** The file that the library goes on reading from; null when it was opened from memory. */
    std::shared_ptr<jackdaw::lex::FileSource> source;
    /** The file when it was opened from memory. */
    std::shared_ptr<const std::string> fileBytes;
    /** Of the process, when the document was opened. */
    std::uint64_t failedAllocations = 0;
    bool fdf = false;
    jackdaw::lex::OpenFacts facts;
    std::uint32_t permissionBits = 0xFFFFFFFF;
    std::vector<std::string> warnings;
    /** Complaints beyond those kept. */
    std::size_t moreWarnings = 0;
    /** The objects that a repair did not find were looked for. */
    bool soughtMissing = false;
    /** The library ran out of memory and went on. */
    bool lacksMemory = false;

    /** Second word of all references to this document's objects. */
    KRWord slot = 0;
    std::deque<jackdaw::lex::Node> scalars;
    std::deque<jackdaw::lex::StringNode> strings;
    std::deque<jackdaw::lex::Container> containers;
    /** By number and generation. */
    std::unordered_map<std::uint64_t, jackdaw::lex::Node *> indirect;
    std::unordered_multimap<jackdaw::lex::Container *, jackdaw::lex::Container *> moreHolders;
    /** The direct scalars that are shared: by type and value, and reals by their text. */
    std::unordered_map<std::uint64_t, jackdaw::lex::Node *> shared;
    std::unordered_map<std::string, jackdaw::lex::Node *> sharedReals;
    jackdaw::lex::Container *root = nullptr;
    jackdaw::lex::Container *trailer = nullptr;

    void *client = nullptr;
    std::function<void()> onChange;
    std::uint64_t stamp = 0;
};

namespace jackdaw::lex {

// Documents and references.

/** Gives the record its slot, from which references to its objects are good. */
void OpenSlot(LexDocRec &doc);
/** Ends all references. The record is the caller's to delete. */
void CloseSlot(LexDocRec &doc);
/** Throws HostError{KRErrBadParam} for a document that is not open. */
LexDocRec &OpenRecord(LexDoc doc);

/** Null for the null object, a destroyed one and one whose document is closed. */
Node *NodeOf(LexObj obj);
/** The same, but throws HostError{KRErrBadParam} unless it has this type. */
Node &NodeOfType(LexObj obj, LexType type);
/** The same for a dictionary, an array or a stream. */
Container &ContainerOfType(LexObj obj, LexType type);
/** The null object for null and for a destroyed node. */
LexObj ReferenceTo(const Node *node);

// Finding and making nodes.

/** Node of an object that has none yet, is shared or indirect; null for nulls. A direct one is linked by the caller. */
Node *NodeForHandle(LexDocRec &doc, const QPDFObjectHandle &h);
/** Makes the nodes of the catalog and the trailer, and the catalog's flag. */
void AdoptRoot(LexDocRec &doc);
/** The dictionary that the dictionary operations work on: of a stream, its own. Throws for other types. */
Container &DictionaryOf(LexObj obj);
Container &DictionaryOfStream(Container &stream);
/** Null for an absent key and for a null. */
Node *ChildByKey(Container &dict, KRAtom key);
/** Null for a null and past the end. */
Node *ChildAt(Container &array, std::int32_t index);
/** Key text in the library's form; null for a key that cannot stand in this dictionary. */
const std::string *KeyText(const Container &dict, KRAtom key);
/** KRAtomNull for a key that stays hidden or finds no atom. */
KRAtom KeyAtom(const Container &dict, const std::string &text);

// Keeping memos and holders in step with a change that was or will be made in the library.

/** Throws HostError{KRErrBadParam} for a value of another document, a direct cycle and too deep nesting. */
void Admit(Container &container, const Node &value);
void RememberKey(Container &dict, KRAtom key, Node *child);
/** The memo's entry; null for a key not yet looked up. */
MemoEntry *RememberedKey(Container &dict, KRAtom key);
/** The next look-up asks the library again. */
void ForgetKey(Container &dict, KRAtom key);
/** The memo's entry of an element, made when it is not there. */
MemoEntry &ElementEntry(Container &array, std::size_t index);
void LinkChild(Container &holder, Node *child);
void UnlinkChild(Container &holder, Node *child);

/** Counts a change, and tells the observer when the file will hold it. */
void NoteChange(Container &node);
/** Turns a direct dictionary or array indirect in place. */
void MakeIndirect(Container &node);
/** The object is gone: the node reads as null from now on and holds nothing. */
void Bury(Node &node);

} // namespace jackdaw::lex
