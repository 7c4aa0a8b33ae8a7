// Testing the invariants of a document's index of fields. Records are looked for in sets that the test makes for
// itself: a pointer is followed only when it is known to be a record's.
// SPDX-License-Identifier: MIT
#include "model/NameHashCheck.h"

#include <cstdlib>
#include <string>
#include <unordered_set>

#include "Common/unix/mdUtils.h"
#include "model/NameHash.h"

namespace {

/** Up to so many fields every edit is followed by the whole test. */
constexpr std::uint32_t s_smallForm = 64;

struct Known {
    std::unordered_set<const DMField *> fields;
    std::unordered_set<const NameEntry *> entries;
};

bool EntryStandsRight(const DocHashControl *control, const NameEntry *entry, const NameEntry *before, unsigned bucket) {
    const std::string_view name(NameStrAddr(&entry->name), NameStrLen(&entry->name));
    const auto found = control->byName.find(name);
    return entry->head && entry->prev == before && StrGetBucket(name.data(), name.size()) == bucket &&
           found != control->byName.end() && found->second == entry;
}

/** One same-name list: 0, or the invariant that it breaks. Its records become known. */
int FaultOfList(const NameEntry *entry, Known *known) {
    const DMField *before = nullptr;
    for (const DMField *field = entry->head; field; before = field, field = field->nextSameName) {
        if (!known->fields.insert(field).second || field->name != &entry->name || field->prevSameName != before)
            return 2;
        if (entry->head != entry->tail && !(field->state & DMFieldSharesName)) return 3;
        if (field->entries & entry->absent) return 8;
    }
    return before == entry->tail ? 0 : 2;
}

int FaultOfNames(const DocHashControl *control, Known *known) {
    for (unsigned bucket = 0; bucket < NameHashBucketCount; ++bucket) {
        const NameEntry *before = nullptr;
        for (const NameEntry *entry = control->buckets[bucket]; entry; before = entry, entry = entry->next) {
            if (!known->entries.insert(entry).second || !EntryStandsRight(control, entry, before, bucket)) return 1;
            if (const int fault = FaultOfList(entry, known)) return fault;
        }
    }
    if (control->byName.size() != known->entries.size()) return 1;
    return control->fieldCount == known->fields.size() ? 0 : 4;
}

int FaultOfObjects(const DocHashControl *control, const Known &known) {
    if (control->byObject.size() != known.fields.size()) return 5;
    std::unordered_set<const DMField *> found;
    for (const auto &[key, field] : control->byObject) {
        if (!known.fields.contains(field) || field->objectKey != key || !found.insert(field).second) return 5;
    }
    return !control->lastField || known.fields.contains(control->lastField) ? 0 : 5;
}

/** One list of children. `*linked` counts them. */
int FaultOfChildren(const DMField *parent, const Known &known, std::size_t *linked) {
    const DMField *before = nullptr;
    for (const DMField *child = parent->firstChild; child; before = child, child = child->nextSibling) {
        if (!known.fields.contains(child) || child->parent != parent || child->prevSibling != before) return 6;
        if (parent->terminalKnown && child->name != parent->name) return 7;
        if (++*linked > known.fields.size()) return 6;
    }
    return 0;
}

int FaultOfTree(const Known &known) {
    std::size_t linked = 0, withParent = 0;
    for (const DMField *field : known.fields) {
        if (const int fault = FaultOfChildren(field, known, &linked)) return fault;
        if (field->parent) ++withParent;
    }
    return linked == withParent ? 0 : 6;
}

int FaultOfLife(const DocHashControl *control, const Known &known) {
    for (const FieldCursor *cursor = control->cursors; cursor; cursor = cursor->outer) {
        if (cursor->ended) continue;
        if (cursor->entry && !known.entries.contains(cursor->entry)) return 9;
        if (cursor->field && !known.fields.contains(cursor->field)) return 9;
    }
    return control->closing && !known.fields.empty() ? 10 : 0;
}

} // namespace

int DocHashFault(const DocHashControl *control) {
    Known known;
    if (const int fault = FaultOfNames(control, &known)) return fault;
    if (const int fault = FaultOfObjects(control, known)) return fault;
    if (const int fault = FaultOfTree(known)) return fault;
    return FaultOfLife(control, known);
}

#ifndef NDEBUG
void DocHashCheck(LexDoc doc) {
    DocHashControl *control = TSLexDocFindHashHead(doc);
    if (!control || control->leaving > 0) return;
    if (control->fieldCount > s_smallForm && ++control->editsSinceCheck < control->fieldCount) return;
    control->editsSinceCheck = 0;
    const int fault = DocHashFault(control);
    if (fault == 0) return;
    const std::string text = "invariant " + std::to_string(fault) + " of NameHash.h";
    mdAssert(text.c_str(), __FILE__, __LINE__);
    std::abort();
}
#endif
