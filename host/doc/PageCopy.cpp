// The copy works through a list of containers to be filled, since chains of references are as long as they like.
// SPDX-License-Identifier: MIT
#include "doc/PageCopy.h"

#include "doc/Keys.h"
#include "doc/Pages.h"
#include "lex/LexObjects.h"
#include "lex/LexStreams.h"
#include "lex/Store.h"

namespace jackdaw {
namespace {

KRAtom nameUnder(LexObj dict, KRAtom key) {
    return lex::nameOrNone(lex::dictGet(dict, key));
}

bool isWidget(LexObj dict) {
    return nameUnder(dict, keys().Subtype) == keys().Widget;
}

/** A node of a field tree: it has a title, and a type or kids. */
bool isField(LexObj dict) {
    if (lex::typeOf(lex::dictGet(dict, keys().T)) != LexString) return false;
    return nameUnder(dict, keys().FT) != KRAtomNull || lex::typeOf(lex::dictGet(dict, keys().Kids)) == LexArray;
}

} // namespace

PageCopier::PageCopier(DMDocRec &targetDoc, DMDocRec &sourceDoc)
    : target(targetDoc.lex), sameDoc(&targetDoc == &sourceDoc), sourceCatalog(lex::rootOf(sourceDoc.lex)),
      sourcePages(pagesOf(sourceDoc)) {}

std::vector<LexObj> PageCopier::copy(const std::vector<LexObj> &pages) {
    for (const LexObj page : pages) announcePage(page);
    while (!pending.empty()) {
        const Task task = pending.back();
        pending.pop_back();
        fill(task);
    }
    std::vector<LexObj> copies;
    for (const LexObj page : pages) copies.push_back(copyOf(page));
    return copies;
}

LexObj PageCopier::copyOf(LexObj obj) const {
    const auto known = memo.find(obj.node);
    return known == memo.end() ? lex::nullObj : known->second;
}

void PageCopier::announce(LexObj obj, Role role) {
    const LexObj copy = lex::newDict(target, /*indirect*/ true);
    memo[obj.node] = copy;
    pending.push_back({obj, copy, role, role == Role::page});
}

void PageCopier::announcePage(LexObj page) {
    announce(page, Role::page);
    const LexObj annots = lex::dictGet(page, keys().Annots);
    if (lex::typeOf(annots) != LexArray) return;
    const std::int32_t length = lex::arrayLength(annots);
    for (std::int32_t i = 0; i < length; ++i) announceAnnot(lex::arrayGet(annots, i));
}

void PageCopier::announceAnnot(LexObj annot) {
    if (lex::typeOf(annot) != LexDict || memo.contains(annot.node)) return;
    announce(annot, Role::annot);
    if (!isWidget(annot)) return;
    LexObj ancestor = lex::dictGet(annot, keys().Parent);
    for (int step = 0; step < maxParentSteps; ++step) {
        if (lex::typeOf(ancestor) != LexDict || memo.contains(ancestor.node)) return;
        announce(ancestor, Role::field);
        ancestor = lex::dictGet(ancestor, keys().Parent);
    }
}

void PageCopier::fill(const Task &task) {
    if (task.role == Role::page) {
        fillPage(task);
    } else if (lex::typeOf(task.from) == LexArray) {
        const std::int32_t length = lex::arrayLength(task.from);
        for (std::int32_t i = 0; i < length; ++i) {
            lex::arrayPut(task.to, i, valueCopy(lex::arrayGet(task.from, i), task.share));
        }
    } else {
        fillDict(task);
    }
}

void PageCopier::fillDict(const Task &task) {
    const bool inFieldTree = task.role == Role::field || (task.role == Role::annot && isWidget(task.from));
    for (const auto &[key, value] : lex::dictEntries(task.from)) {
        const bool setByPage = task.role == Role::annot && (key == keys().P || key == keys().StructParent);
        const bool setByWriter = key == keys().Length && lex::typeOf(task.from) == LexStream;
        if (setByPage || setByWriter) continue;
        LexObj copied;
        if (inFieldTree && key == keys().Kids && lex::typeOf(value) == LexArray)
            copied = copiesAmong(value);
        else if (inFieldTree && key == keys().Parent)
            copied = copyOf(value);
        else
            copied = valueCopy(value, task.share);
        if (!lex::isNull(copied)) lex::dictPut(task.to, key, copied);
    }
}

void PageCopier::fillPage(const Task &task) {
    const Keys &k = keys();
    for (const auto &[key, value] : lex::dictEntries(task.from)) {
        // Threads of beads and the structure tree belong to the source as a whole.
        if (key == k.Parent || key == k.B || key == k.StructParents) continue;
        const bool isAnnots = key == k.Annots && lex::typeOf(value) == LexArray;
        const LexObj copied = isAnnots ? copiesAmong(value) : valueCopy(value, task.share);
        if (!lex::isNull(copied)) lex::dictPut(task.to, key, copied);
    }
    for (const KRAtom key : {k.Resources, k.MediaBox, k.CropBox, k.Rotate}) {
        if (lex::dictKnown(task.to, key)) continue;
        const LexObj copied = valueCopy(inheritedValue(task.from, key), task.share);
        if (!lex::isNull(copied)) lex::dictPut(task.to, key, copied);
    }
    const LexObj annots = lex::dictGet(task.to, k.Annots);
    if (lex::typeOf(annots) != LexArray) return;
    const std::int32_t length = lex::arrayLength(annots);
    for (std::int32_t i = 0; i < length; ++i) lex::dictPut(lex::arrayGet(annots, i), k.P, task.to);
}

LexObj PageCopier::copiesAmong(LexObj kids) const {
    const LexObj copies = lex::newArray(target, /*indirect*/ false);
    const std::int32_t length = lex::arrayLength(kids);
    std::int32_t place = 0;
    for (std::int32_t i = 0; i < length; ++i) {
        const LexObj copy = copyOf(lex::arrayGet(kids, i));
        if (!lex::isNull(copy)) lex::arrayPut(copies, place++, copy);
    }
    return copies;
}

bool PageCopier::isShared(LexObj obj, bool share) const {
    if (!sameDoc || !lex::isIndirect(obj)) return false;
    return share || staysBehind(obj) || (lex::typeOf(obj) == LexDict && nameUnder(obj, keys().Type) == keys().Font);
}

bool PageCopier::staysBehind(LexObj obj) const {
    if (sourcePages.indexOf.contains(obj.node) || sourcePages.nodes.contains(obj.node)) return true;
    if (lex::same(obj, sourceCatalog)) return true;
    if (lex::typeOf(obj) != LexDict || !lex::isIndirect(obj)) return false;
    const KRAtom type = nameUnder(obj, keys().Type);
    return type == keys().Page || type == keys().Pages || isWidget(obj) || isField(obj);
}

LexObj PageCopier::valueCopy(LexObj value, bool share) {
    const LexType type = lex::typeOf(value);
    if (type == LexNull) return lex::nullObj;
    if (type != LexDict && type != LexArray && type != LexStream) return lex::copyScalar(target, value);
    const LexObj known = copyOf(value);
    if (!lex::isNull(known)) return known;
    if (isShared(value, share)) return value;
    return staysBehind(value) ? lex::nullObj : containerCopy(value, share);
}

LexObj PageCopier::containerCopy(LexObj value, bool share) {
    const LexType type = lex::typeOf(value);
    const bool indirect = lex::isIndirect(value);
    LexObj copy;
    LexObj contents;
    if (type == LexStream) {
        contents = lex::newDict(target, /*indirect*/ false);
        copy = lex::newStream(target, lex::rawData(value), /*encode*/ false, contents, lex::nullObj);
        contents = lex::streamDict(copy);
    } else {
        copy = type == LexArray ? lex::newArray(target, indirect) : lex::newDict(target, indirect);
        contents = copy;
    }
    if (indirect) memo[value.node] = copy;
    pending.push_back({value, contents, Role::plain, share});
    return copy;
}

} // namespace jackdaw
