// The records behind DMDoc and DMPage, for the files of this folder.
//
// 1. A document's record lives while it is open; a page's as long as its document, or until a deleted page is released.
// 2. What comes in as a handle goes through CheckDoc or CheckPage before it is followed.
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <utility>

#include <sys/types.h>

#include "doc/Document.h"
#include "doc/PageList.h"
#include "kernel/Files.h"

struct DMPageRec {
    DMDoc doc = nullptr;
    LexObj dict{};
    int references = 0;
    bool deleted = false;
    /** Places in `Annots` by node, as they were at `annotStamp`; a place is checked before it is believed. */
    std::unordered_map<KRWord, std::int32_t> annotPlaces;
    std::uint64_t annotStamp = 0;
    /** An annotation stands there twice: then only fresh places tell which is its first. */
    bool annotsRepeat = false;
};

struct DMDocRec {
    LexDoc lex = nullptr;
    int references = 1;
    /** Operations under way. With references gone, the document goes when the last of them ends. */
    int holds = 0;
    std::uint32_t flags = 0;
    bool saving = false;
    /** The library has read all that it needs before a change. */
    bool writable = false;

    /** The own file; a null `fileSys` for a document from bytes. */
    KRFileSys fileSys = nullptr;
    std::string path;
    std::unique_ptr<KRFileRec> file;
    bool hasIdentity = false;
    dev_t device = 0;
    ino_t inode = 0;

    bool pagesKnown = false;
    jackdaw::PageList pageList;
    /** By the node of the page dictionary. */
    std::unordered_map<KRWord, std::unique_ptr<DMPageRec>> pages;

    /** Name trees found in order, by the node of the root, with the change stamp at which they were. */
    std::unordered_map<KRWord, std::uint64_t> orderedTrees;
};

namespace jackdaw {

/** Throws KRErrBadParam for null and for a document that is not open. */
DMDocRec &CheckDoc(DMDoc doc);
/** Throws KRErrBadParam for null and for a page whose document is closed. */
DMPageRec &CheckPage(DMPage page);

/** The page list, made when it is not known. */
const PageList &PagesOf(DMDocRec &doc);
/** The page list is to be made anew; handles of pages that are in it no more become those of deleted pages. */
void ForgetPageList(DMDocRec &doc);
/** All page handles of a document that goes away. */
void DropPages(DMDocRec &doc);

void EndHold(DMDocRec &doc);

/** Keeps a document's record during a broadcast, whatever the subscribers close. */
class DocHold {
public:
    explicit DocHold(DMDocRec &held) : doc_(held) {
        ++doc_.holds;
    }
    ~DocHold() {
        EndHold(doc_);
    }
    DocHold(const DocHold &) = delete;
    DocHold &operator=(const DocHold &) = delete;

private:
    DMDocRec &doc_;
};

} // namespace jackdaw
