// Copies annotations between documents, by their handler or entry by entry.
//
// 1. Objects to be copied stand in a work list, so that a long chain of references costs no stack; direct parts are
//    followed to a fixed depth.
// 2. Pages and nodes of the page tree are not followed: a copy would bring the document along.
// SPDX-License-Identifier: MIT
#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include "doc/Annots.h"
#include "doc/Document.h"
#include "doc/Pages.h"
#include "kernel/Atoms.h"
#include "kernel/HostError.h"
#include "kernel/HostLimits.h"
#include "lex/LexObjects.h"
#include "lex/LexStreams.h"
#include "view/AnnotHandlers.h"
#include "view/ViewRecords.h"

namespace jackdaw {

namespace {

class TreeCopier {
public:
    explicit TreeCopier(LexDoc target) : target_(target) {}

    /** The counterpart of a value; what it refers to is copied by finish. */
    LexObj copy(LexObj value, int depth = 0) {
        if (depth > LimitOf(Limit::AnnotCopyDepth)) return lex::NullObj;
        if (lex::IsIndirect(value)) return copyIndirect(value);
        return copyDirect(value, depth);
    }

    void finish() {
        while (!pending_.empty()) {
            const auto [from, to] = pending_.back();
            pending_.pop_back();
            fill(from, to, 0);
        }
    }

private:
    static bool isPageNode(LexObj obj) {
        if (!lex::IsDict(obj)) return false;
        const std::string_view type = AtomText(lex::NameOrNone(lex::DictGet(obj, AtomFromText("Type"))));
        return type == "Page" || type == "Pages" || type == "Catalog";
    }

    LexObj copyIndirect(LexObj value) {
        const auto key = std::make_pair(value.node, value.slot);
        const auto known = copies_.find(key);
        if (known != copies_.end()) return known->second;
        const LexType type = lex::TypeOf(value);
        LexObj result = lex::NullObj;
        if (type == LexDict && !isPageNode(value)) result = lex::NewDict(target_, /*indirect*/ true);
        if (type == LexArray) result = lex::NewArray(target_, /*indirect*/ true);
        if (type == LexStream)
            result = lex::NewStream(target_, lex::RawData(value), /*encode*/ false, lex::NullObj, lex::NullObj);
        const bool isContainer = !lex::IsNull(result);
        if (!isContainer && type != LexDict && type != LexNull) result = lex::CopyScalar(target_, value);
        copies_[key] = result;
        if (isContainer) pending_.emplace_back(value, result);
        return result;
    }

    LexObj copyDirect(LexObj value, int depth) {
        const LexType type = lex::TypeOf(value);
        if (type == LexNull || isPageNode(value)) return lex::NullObj;
        if (type != LexDict && type != LexArray) return lex::CopyScalar(target_, value);
        const LexObj result =
            type == LexDict ? lex::NewDict(target_, /*indirect*/ false) : lex::NewArray(target_, /*indirect*/ false);
        fill(value, result, depth + 1);
        return result;
    }

    void fill(LexObj from, LexObj to, int depth) {
        if (lex::IsArray(from)) {
            const std::int32_t count = lex::ArrayLength(from);
            for (std::int32_t i = 0; i < count; ++i) lex::ArrayPut(to, i, copy(lex::ArrayGet(from, i), depth));
            return;
        }
        const bool isStream = lex::IsStream(from);
        for (const auto &[key, value] : lex::DictEntries(from)) {
            if (isStream && std::string_view(AtomText(key)) == "Length") continue;
            lex::DictPut(to, key, copy(value, depth));
        }
    }

    LexDoc target_;
    std::map<std::pair<KRWord, KRWord>, LexObj> copies_;
    std::vector<std::pair<LexObj, LexObj>> pending_;
};

bool staysBehind(KRAtom key) {
    const std::string_view name = AtomText(key);
    return name == "P" || name == "Parent" || name == "Kids" || name == "Popup" || name == "IRT" ||
           name == "StructParent";
}

} // namespace

DMAnnot CopyAnnot(DMDoc target, DMPage page, DMAnnot annot, SCDoc source) {
    SCAnnotHandler *handler = AnnotHandlerFor(annot);
    DMAnnot result{0, 0};
    if (const auto copy = handler ? MemberOf(handler, &SCAnnotHandler::copy) : nullptr) {
        ThrowIf(HostProtect([&] { result = copy(handler, target, page, annot, source); }));
        return result;
    }
    if (!AnnotIsValid(annot)) throw HostError{KRErrBadParam, "There is no annotation to copy."};
    if (PageDoc(page) != target) throw HostError{KRErrBadParam, "The page is not one of the document."};
    const LexObj copy = lex::NewDict(DocLex(target), /*indirect*/ true);
    TreeCopier copier(DocLex(target));
    for (const auto &[key, value] : lex::DictEntries(AnnotLex(annot))) {
        if (!staysBehind(key)) lex::DictPut(copy, key, copier.copy(value));
    }
    copier.finish();
    lex::DictPut(copy, AtomFromText("P"), PageLex(page));
    return AnnotFromLex(copy);
}

} // namespace jackdaw
