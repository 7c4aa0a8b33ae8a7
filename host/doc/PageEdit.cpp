// Page insertion and deletion: the copies are whole before the tree is touched.
// SPDX-License-Identifier: MIT
#include "doc/PageEdit.h"

#include <exception>
#include <unordered_set>

#include "doc/DocRecord.h"
#include "doc/Keys.h"
#include "doc/Notify.h"
#include "doc/PageCopy.h"
#include "doc/Pages.h"
#include "kernel/HostError.h"
#include "lex/LexApi.h"
#include "lex/LexObjects.h"
#include "lex/Store.h"

namespace jackdaw {
namespace {

void checkRange(const DMDocRec &doc, std::int32_t first, std::int32_t last) {
    const auto count = static_cast<std::int32_t>(doc.pageList.leaves.size());
    if (first < 0 || last < first || last >= count) throw HostError{KRErrBadParam};
}

void checkInsertion(DMDocRec &doc, std::int32_t after, DMDocRec &source, std::int32_t first, std::int32_t last) {
    const auto count = static_cast<std::int32_t>(pagesOf(doc).leaves.size());
    pagesOf(source);
    if (after < -1 || after >= count) throw HostError{KRErrBadParam};
    checkRange(source, first, last);
}

/** Node and place in its `Kids` where pages go in. */
struct TreePlace {
    LexObj node;
    LexObj kids;
    std::int32_t index;
};

/** A fresh root for a document whose tree is missing or is one lone page, which then hangs below it. */
LexObj makeRoot(DMDocRec &doc) {
    const LexObj catalog = lex::rootOf(doc.lex);
    if (lex::typeOf(catalog) != LexDict) throw HostError{KRErrBadPDF};
    const LexObj root = lex::newDict(doc.lex, /*indirect*/ true);
    const LexObj kids = lex::newArray(doc.lex, /*indirect*/ false);
    const auto &leaves = doc.pageList.leaves;
    lex::dictPut(root, keys().Type, lex::newName(doc.lex, /*indirect*/ false, keys().Pages));
    lex::dictPut(root, keys().Kids, kids);
    if (!leaves.empty()) {
        lex::arrayPut(kids, 0, leaves.front().page);
        lex::dictPut(leaves.front().page, keys().Parent, root);
    }
    lex::dictPut(catalog, keys().Pages, root);
    forgetPageList(doc);
    return root;
}

TreePlace placeBehind(DMDocRec &doc, std::int32_t after) {
    const bool noTree = pagesOf(doc).nodes.empty();
    const LexObj newRoot = noTree ? makeRoot(doc) : lex::nullObj;
    const PageList &list = pagesOf(doc);
    if (list.leaves.empty()) {
        const LexObj root = noTree ? newRoot : lex::dictGet(lex::rootOf(doc.lex), keys().Pages);
        return {root, lex::dictGet(root, keys().Kids), 0};
    }
    const PageLeaf leaf = list.leaves[static_cast<std::size_t>(after < 0 ? 0 : after)];
    const LexObj kids = lex::dictGet(leaf.parent, keys().Kids);
    return {leaf.parent, kids, lex::arrayIndexOf(kids, leaf.page) + (after < 0 ? 0 : 1)};
}

void writeCount(DMDocRec &doc, const PageNode &node) {
    const LexObj count = lex::newInteger(doc.lex, /*indirect*/ false, node.leaves);
    lex::dictPut(node.node, keys().Count, count);
}

/** What a page inherits at its new place and did not at the old one is met by the defaults of the format. */
void shieldFromInheritance(DMDocRec &doc, LexObj page, LexObj parent) {
    const Keys &k = keys();
    const auto wouldInherit = [&](KRAtom key) {
        return !lex::dictKnown(page, key) && !lex::isNull(inheritedValue(parent, key));
    };
    if (wouldInherit(k.Rotate)) lex::dictPut(page, k.Rotate, lex::newInteger(doc.lex, /*indirect*/ false, 0));
    if (wouldInherit(k.Resources)) lex::dictPut(page, k.Resources, lex::newDict(doc.lex, /*indirect*/ false));
    const bool mediaBoxIsStrange = wouldInherit(k.MediaBox);
    const bool cropBoxIsStrange = wouldInherit(k.CropBox);
    KRFixedRect media{0, KRFixedFromInt(792), KRFixedFromInt(612), 0};
    readRect(lex::dictGet(page, k.MediaBox), &media);
    if (mediaBoxIsStrange) lex::dictPut(page, k.MediaBox, newRectArray(doc.lex, media));
    if (cropBoxIsStrange) lex::dictPut(page, k.CropBox, newRectArray(doc.lex, media));
}

void putIntoTree(DMDocRec &doc, std::int32_t after, const std::vector<LexObj> &pages) {
    const TreePlace place = placeBehind(doc, after);
    std::int32_t index = place.index;
    for (const LexObj page : pages) {
        shieldFromInheritance(doc, page, place.node);
        lex::dictPut(page, keys().Parent, place.node);
        lex::arrayInsert(place.kids, index++, page);
    }
    forgetPageList(doc);
    const PageList &list = pagesOf(doc);
    for (auto node = list.nodes.find(place.node.node); node != list.nodes.end();
         node = list.nodes.find(node->second.parent.node)) {
        writeCount(doc, node->second);
    }
}

void copyInto(DMDocRec &doc, std::int32_t after, DMDocRec &source, std::int32_t first, std::int32_t last) {
    std::vector<LexObj> originals;
    for (std::int32_t i = first; i <= last; ++i) originals.push_back(pageLexAt(&source, i));
    const std::vector<LexObj> copies = PageCopier(doc, source).copy(originals);
    putIntoTree(doc, after, copies);
}

/** Takes a page out, and every node above it that is left without pages, but for the root. */
void takeOut(PageList &list, LexObj page, LexObj parent, std::unordered_set<KRWord> &touched) {
    LexObj child = page;
    bool childIsGone = true;
    for (auto node = list.nodes.find(parent.node); node != list.nodes.end();
         node = list.nodes.find(node->second.parent.node)) {
        PageNode &above = node->second;
        if (childIsGone) lex::arrayRemove(lex::dictGet(above.node, keys().Kids), child);
        --above.leaves;
        touched.insert(above.node.node);
        child = above.node;
        childIsGone = above.leaves == 0 && !lex::isNull(above.parent);
    }
}

void removePages(DMDocRec &doc, std::int32_t first, std::int32_t last) {
    PageList list = pagesOf(doc);
    std::unordered_set<KRWord> touched;
    for (std::int32_t i = last; i >= first; --i) {
        const PageLeaf leaf = list.leaves[static_cast<std::size_t>(i)];
        takeOut(list, leaf.page, leaf.parent, touched);
        // Destinations, names and whatever else refers to the page must not keep it in the file.
        lex::destroy(leaf.page);
    }
    for (const KRWord node : touched) writeCount(doc, list.nodes[node]);
    forgetPageList(doc);
}

template <class Edit>
std::exception_ptr attempt(KRErrorCode *code, Edit &&edit) {
    try {
        edit();
    } catch (...) {
        const std::exception_ptr failure = std::current_exception();
        *code = CodeOfCurrentException();
        return failure;
    }
    return nullptr;
}

} // namespace

void insertPages(DMDoc handle, std::int32_t after, DMDoc sourceHandle, std::int32_t first, std::int32_t last) {
    DMDocRec &doc = checkDoc(handle);
    DMDocRec &source = checkDoc(sourceHandle);
    checkInsertion(doc, after, source, first, last);
    const DocHold holdDoc(doc);
    const DocHold holdSource(source);
    notifyWillInsertPages(handle, after, sourceHandle, first, last);
    KRErrorCode code = KRErrNone;
    const std::exception_ptr failure = attempt(&code, [&] {
        // Subscribers may have edited pages themselves.
        checkInsertion(doc, after, source, first, last);
        copyInto(doc, after, source, first, last);
    });
    notifyDidInsertPages(handle, after, sourceHandle, first, last, code);
    if (failure) std::rethrow_exception(failure);
}

void deletePages(DMDoc handle, std::int32_t first, std::int32_t last) {
    DMDocRec &doc = checkDoc(handle);
    const auto check = [&] {
        const auto count = static_cast<std::int64_t>(pagesOf(doc).leaves.size());
        checkRange(doc, first, last);
        const bool noneWouldBeLeft = first == 0 && last == count - 1;
        if (noneWouldBeLeft) throw HostError{KRErrBadParam, "A document keeps at least one page."};
    };
    check();
    const DocHold hold(doc);
    notifyPages(DMDocWillDeletePages, handle, first, last);
    KRErrorCode code = KRErrNone;
    const std::exception_ptr failure = attempt(&code, [&] {
        check();
        removePages(doc, first, last);
    });
    notifyDidDeletePages(handle, first, last, code);
    if (failure) std::rethrow_exception(failure);
}

} // namespace jackdaw
