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
    const auto count = static_cast<std::int32_t>(PagesOf(doc).leaves.size());
    PagesOf(source);
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
    const LexObj catalog = lex::RootOf(doc.lex);
    if (!lex::IsDict(catalog)) throw HostError{KRErrBadPDF};
    const LexObj root = lex::NewDict(doc.lex, /*indirect*/ true);
    const LexObj kids = lex::NewArray(doc.lex, /*indirect*/ false);
    const auto &leaves = doc.pageList.leaves;
    lex::DictPut(root, Keys().Type, lex::NewName(doc.lex, /*indirect*/ false, Keys().Pages));
    lex::DictPut(root, Keys().Kids, kids);
    if (!leaves.empty()) {
        lex::ArrayPut(kids, 0, leaves.front().page);
        lex::DictPut(leaves.front().page, Keys().Parent, root);
    }
    lex::DictPut(catalog, Keys().Pages, root);
    ForgetPageList(doc);
    return root;
}

TreePlace placeBehind(DMDocRec &doc, std::int32_t after) {
    const bool noTree = PagesOf(doc).nodes.empty();
    const LexObj newRoot = noTree ? makeRoot(doc) : lex::NullObj;
    const PageList &list = PagesOf(doc);
    if (list.leaves.empty()) {
        const LexObj root = noTree ? newRoot : lex::DictGet(lex::RootOf(doc.lex), Keys().Pages);
        return {root, lex::DictGet(root, Keys().Kids), 0};
    }
    const PageLeaf leaf = list.leaves[static_cast<std::size_t>(after < 0 ? 0 : after)];
    const LexObj kids = lex::DictGet(leaf.parent, Keys().Kids);
    return {leaf.parent, kids, lex::ArrayIndexOf(kids, leaf.page) + (after < 0 ? 0 : 1)};
}

void writeCount(DMDocRec &doc, const PageNode &node) {
    const LexObj count = lex::NewInteger(doc.lex, /*indirect*/ false, node.leaves);
    lex::DictPut(node.node, Keys().Count, count);
}

/** What a page inherits at its new place and did not at the old one is met by the defaults of the format. */
void shieldFromInheritance(DMDocRec &doc, LexObj page, LexObj parent) {
    const KeyAtoms &k = Keys();
    const auto wouldInherit = [&](KRAtom key) {
        return !lex::DictKnown(page, key) && !lex::IsNull(InheritedPageValue(parent, key));
    };
    if (wouldInherit(k.Rotate)) lex::DictPut(page, k.Rotate, lex::NewInteger(doc.lex, /*indirect*/ false, 0));
    if (wouldInherit(k.Resources)) lex::DictPut(page, k.Resources, lex::NewDict(doc.lex, /*indirect*/ false));
    const bool mediaBoxIsStrange = wouldInherit(k.MediaBox);
    const bool cropBoxIsStrange = wouldInherit(k.CropBox);
    KRFixedRect media{0, KRFixedFromInt(792), KRFixedFromInt(612), 0};
    ReadRect(lex::DictGet(page, k.MediaBox), &media);
    if (mediaBoxIsStrange) lex::DictPut(page, k.MediaBox, NewRectArray(doc.lex, media));
    if (cropBoxIsStrange) lex::DictPut(page, k.CropBox, NewRectArray(doc.lex, media));
}

void putIntoTree(DMDocRec &doc, std::int32_t after, const std::vector<LexObj> &pages) {
    const TreePlace place = placeBehind(doc, after);
    std::int32_t index = place.index;
    for (const LexObj page : pages) {
        shieldFromInheritance(doc, page, place.node);
        lex::DictPut(page, Keys().Parent, place.node);
        lex::ArrayInsert(place.kids, index++, page);
    }
    ForgetPageList(doc);
    const PageList &list = PagesOf(doc);
    for (auto node = list.nodes.find(place.node.node); node != list.nodes.end();
         node = list.nodes.find(node->second.parent.node)) {
        writeCount(doc, node->second);
    }
}

void copyInto(DMDocRec &doc, std::int32_t after, DMDocRec &source, std::int32_t first, std::int32_t last) {
    std::vector<LexObj> originals;
    for (std::int32_t i = first; i <= last; ++i) originals.push_back(PageLexAt(&source, i));
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
        if (childIsGone) lex::ArrayRemove(lex::DictGet(above.node, Keys().Kids), child);
        --above.leaves;
        touched.insert(above.node.node);
        child = above.node;
        childIsGone = above.leaves == 0 && !lex::IsNull(above.parent);
    }
}

void removePages(DMDocRec &doc, std::int32_t first, std::int32_t last) {
    PageList list = PagesOf(doc);
    std::unordered_set<KRWord> touched;
    for (std::int32_t i = last; i >= first; --i) {
        const PageLeaf leaf = list.leaves[static_cast<std::size_t>(i)];
        takeOut(list, leaf.page, leaf.parent, touched);
        // Destinations, names and whatever else refers to the page must not keep it in the file.
        lex::DestroyObj(leaf.page);
    }
    for (const KRWord node : touched) writeCount(doc, list.nodes[node]);
    ForgetPageList(doc);
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

void InsertPages(DMDoc handle, std::int32_t after, DMDoc sourceHandle, std::int32_t first, std::int32_t last) {
    DMDocRec &doc = CheckDoc(handle);
    DMDocRec &source = CheckDoc(sourceHandle);
    checkInsertion(doc, after, source, first, last);
    const DocHold holdDoc(doc);
    const DocHold holdSource(source);
    NotifyWillInsertPages(handle, after, sourceHandle, first, last);
    KRErrorCode code = KRErrNone;
    const std::exception_ptr failure = attempt(&code, [&] {
        // Subscribers may have edited pages themselves.
        checkInsertion(doc, after, source, first, last);
        copyInto(doc, after, source, first, last);
    });
    NotifyDidInsertPages(handle, after, sourceHandle, first, last, code);
    if (failure) std::rethrow_exception(failure);
}

void DeletePages(DMDoc handle, std::int32_t first, std::int32_t last) {
    DMDocRec &doc = CheckDoc(handle);
    const auto check = [&] {
        const auto count = static_cast<std::int64_t>(PagesOf(doc).leaves.size());
        checkRange(doc, first, last);
        const bool noneWouldBeLeft = first == 0 && last == count - 1;
        if (noneWouldBeLeft) throw HostError{KRErrBadParam, "A document keeps at least one page."};
    };
    check();
    const DocHold hold(doc);
    NotifyPages(DMDocWillDeletePages, handle, first, last);
    KRErrorCode code = KRErrNone;
    const std::exception_ptr failure = attempt(&code, [&] {
        check();
        removePages(doc, first, last);
    });
    NotifyDidDeletePages(handle, first, last, code);
    if (failure) std::rethrow_exception(failure);
}

} // namespace jackdaw
