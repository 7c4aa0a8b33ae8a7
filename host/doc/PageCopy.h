// Deep copies of pages with what hangs on them.
//
// 1. An indirect object is copied once: a memo keeps cycles and shared objects whole.
// 2. Pages, their annotations and the ancestors of their fields are in the memo before anything is filled in. So what
//    refers to one of them finds its copy, and what refers to a page or a field that is not among them is dropped:
//    otherwise one link would drag in the whole source.
// 3. Within one document what a page is made of (contents, resources) and fonts are shared, not copied; a reference to
//    what is not copied stays as it is.
// SPDX-License-Identifier: MIT
#pragma once

#include <unordered_map>
#include <vector>

#include "doc/DocRecord.h"

namespace jackdaw {

class PageCopier {
public:
    PageCopier(DMDocRec &targetDoc, DMDocRec &sourceDoc);

    /** Copies, in the order of `pages`, each with its inherited entries as its own, none in a page tree yet. */
    std::vector<LexObj> copy(const std::vector<LexObj> &pages);

private:
    enum class Role { plain, page, annot, field };
    struct Task {
        LexObj from, to;
        Role role;
        bool share;
    };

    void announcePage(LexObj page);
    void announceAnnot(LexObj annot);
    void announce(LexObj obj, Role role);
    void fill(const Task &task);
    void fillDict(const Task &task);
    void fillPage(const Task &task);
    /** The copies of those elements of an array that come along. */
    LexObj copiesAmong(LexObj kids) const;
    LexObj valueCopy(LexObj value, bool share);
    LexObj containerCopy(LexObj value, bool share);
    LexObj copyOf(LexObj obj) const;
    bool staysBehind(LexObj obj) const;
    bool isShared(LexObj obj, bool share) const;

    LexDoc target_;
    bool sameDoc_;
    LexObj sourceCatalog_;
    const PageList &sourcePages_;
    std::unordered_map<KRWord, LexObj> memo_;
    std::vector<Task> pending_;
};

} // namespace jackdaw
