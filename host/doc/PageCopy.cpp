// The copy works through a list of containers to be filled, since chains of references are as long as they like.
// SPDX-License-Identifier: MIT
#include "doc/PageCopy.h"

#include "doc/Keys.h"
#include "doc/Pages.h"
#include "kernel/HostLimits.h"
#include "lex/LexObjects.h"
#include "lex/LexStreams.h"
#include "lex/Store.h"

namespace jackdaw {
namespace {

KRAtom nameUnder(LexObj dict, KRAtom key) {
    return lex::NameOrNone(lex::DictGet(dict, key));
}

bool isWidget(LexObj dict) {
    return nameUnder(dict, Keys().Subtype) == Keys().Widget;
}

/** A node of a field tree: it has a title, and a type or kids. */
bool isField(LexObj dict) {
    if (!lex::IsString(lex::DictGet(dict, Keys().T))) return false;
    return nameUnder(dict, Keys().FT) != KRAtomNull || lex::IsArray(lex::DictGet(dict, Keys().Kids));
}

} // namespace

PageCopier::PageCopier(DMDocRec &targetDoc, DMDocRec &sourceDoc)
    : target_(targetDoc.lex), sameDoc_(&targetDoc == &sourceDoc), sourceCatalog_(lex::RootOf(sourceDoc.lex)),
      sourcePages_(PagesOf(sourceDoc)) {}

std::vector<LexObj> PageCopier::copy(const std::vector<LexObj> &pages) {
    for (const LexObj page : pages) announcePage(page);
    while (!pending_.empty()) {
        const Task task = pending_.back();
        pending_.pop_back();
        fill(task);
    }
    std::vector<LexObj> copies;
    for (const LexObj page : pages) copies.push_back(copyOf(page));
    return copies;
}

LexObj PageCopier::copyOf(LexObj obj) const {
    const auto known = memo_.find(obj.node);
    return known == memo_.end() ? lex::NullObj : known->second;
}

void PageCopier::announce(LexObj obj, Role role) {
    const LexObj copy = lex::NewDict(target_, /*indirect*/ true);
    memo_[obj.node] = copy;
    pending_.push_back({obj, copy, role, role == Role::page});
}

void PageCopier::announcePage(LexObj page) {
    announce(page, Role::page);
    const LexObj annots = lex::DictGet(page, Keys().Annots);
    if (!lex::IsArray(annots)) return;
    const std::int32_t length = lex::ArrayLength(annots);
    for (std::int32_t i = 0; i < length; ++i) announceAnnot(lex::ArrayGet(annots, i));
}

void PageCopier::announceAnnot(LexObj annot) {
    if (!lex::IsDict(annot) || memo_.contains(annot.node)) return;
    announce(annot, Role::annot);
    if (!isWidget(annot)) return;
    LexObj ancestor = lex::DictGet(annot, Keys().Parent);
    for (int step = 0; step < LimitOf(Limit::PageTreeDepth); ++step) {
        if (!lex::IsDict(ancestor) || memo_.contains(ancestor.node)) return;
        announce(ancestor, Role::field);
        ancestor = lex::DictGet(ancestor, Keys().Parent);
    }
}

void PageCopier::fill(const Task &task) {
    if (task.role == Role::page) {
        fillPage(task);
    } else if (lex::IsArray(task.from)) {
        const std::int32_t length = lex::ArrayLength(task.from);
        for (std::int32_t i = 0; i < length; ++i) {
            lex::ArrayPut(task.to, i, valueCopy(lex::ArrayGet(task.from, i), task.share));
        }
    } else {
        fillDict(task);
    }
}

void PageCopier::fillDict(const Task &task) {
    const bool inFieldTree = task.role == Role::field || (task.role == Role::annot && isWidget(task.from));
    for (const auto &[key, value] : lex::DictEntries(task.from)) {
        const bool setByPage = task.role == Role::annot && (key == Keys().P || key == Keys().StructParent);
        const bool setByWriter = key == Keys().Length && lex::IsStream(task.from);
        if (setByPage || setByWriter) continue;
        LexObj copied;
        if (inFieldTree && key == Keys().Kids && lex::IsArray(value))
            copied = copiesAmong(value);
        else if (inFieldTree && key == Keys().Parent)
            copied = copyOf(value);
        else
            copied = valueCopy(value, task.share);
        if (!lex::IsNull(copied)) lex::DictPut(task.to, key, copied);
    }
}

void PageCopier::fillPage(const Task &task) {
    const KeyAtoms &k = Keys();
    for (const auto &[key, value] : lex::DictEntries(task.from)) {
        // Threads of beads and the structure tree belong to the source as a whole.
        if (key == k.Parent || key == k.B || key == k.StructParents) continue;
        const bool isAnnots = key == k.Annots && lex::IsArray(value);
        const LexObj copied = isAnnots ? copiesAmong(value) : valueCopy(value, task.share);
        if (!lex::IsNull(copied)) lex::DictPut(task.to, key, copied);
    }
    for (const KRAtom key : {k.Resources, k.MediaBox, k.CropBox, k.Rotate}) {
        if (lex::DictKnown(task.to, key)) continue;
        const LexObj copied = valueCopy(InheritedPageValue(task.from, key), task.share);
        if (!lex::IsNull(copied)) lex::DictPut(task.to, key, copied);
    }
    const LexObj annots = lex::DictGet(task.to, k.Annots);
    if (!lex::IsArray(annots)) return;
    const std::int32_t length = lex::ArrayLength(annots);
    for (std::int32_t i = 0; i < length; ++i) lex::DictPut(lex::ArrayGet(annots, i), k.P, task.to);
}

LexObj PageCopier::copiesAmong(LexObj kids) const {
    const LexObj copies = lex::NewArray(target_, /*indirect*/ false);
    const std::int32_t length = lex::ArrayLength(kids);
    std::int32_t place = 0;
    for (std::int32_t i = 0; i < length; ++i) {
        const LexObj copy = copyOf(lex::ArrayGet(kids, i));
        if (!lex::IsNull(copy)) lex::ArrayPut(copies, place++, copy);
    }
    return copies;
}

bool PageCopier::isShared(LexObj obj, bool share) const {
    if (!sameDoc_ || !lex::IsIndirect(obj)) return false;
    return share || staysBehind(obj) || (lex::IsDict(obj) && nameUnder(obj, Keys().Type) == Keys().Font);
}

bool PageCopier::staysBehind(LexObj obj) const {
    if (sourcePages_.indexOf.contains(obj.node) || sourcePages_.nodes.contains(obj.node)) return true;
    if (lex::Same(obj, sourceCatalog_)) return true;
    if (!lex::IsDict(obj) || !lex::IsIndirect(obj)) return false;
    const KRAtom type = nameUnder(obj, Keys().Type);
    return type == Keys().Page || type == Keys().Pages || isWidget(obj) || isField(obj);
}

LexObj PageCopier::valueCopy(LexObj value, bool share) {
    const LexType type = lex::TypeOf(value);
    if (type == LexNull) return lex::NullObj;
    if (type != LexDict && type != LexArray && type != LexStream) return lex::CopyScalar(target_, value);
    const LexObj known = copyOf(value);
    if (!lex::IsNull(known)) return known;
    if (isShared(value, share)) return value;
    return staysBehind(value) ? lex::NullObj : containerCopy(value, share);
}

LexObj PageCopier::containerCopy(LexObj value, bool share) {
    const LexType type = lex::TypeOf(value);
    const bool indirect = lex::IsIndirect(value);
    LexObj copy;
    LexObj contents;
    if (type == LexStream) {
        contents = lex::NewDict(target_, /*indirect*/ false);
        copy = lex::NewStream(target_, lex::RawData(value), /*encode*/ false, contents, lex::NullObj);
        contents = lex::StreamDict(copy);
    } else {
        copy = type == LexArray ? lex::NewArray(target_, indirect) : lex::NewDict(target_, indirect);
        contents = copy;
    }
    if (indirect) memo_[value.node] = copy;
    pending_.push_back({value, contents, Role::plain, share});
    return copy;
}

} // namespace jackdaw
