// The per-document control blocks, and the lists of names and objects in them.
//
// What can fail while a record is entered is done before the first link is changed.
// SPDX-License-Identifier: MIT
#include "model/NameHash.h"

#include <string>
#include <utility>

#include "Common/src/miLexType.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "model/DMFieldLinks.h"
#include "objects/Tessella.h"

DocHashControl *OpenDocsHashControls = nullptr;

namespace {

std::string_view NameOf(const NameEntry *entry) {
    return {NameStrAddr(&entry->name), NameStrLen(&entry->name)};
}

void FreeEntry(NameEntry *entry) {
    NameStrFree(&entry->name);
    delete entry;
}

/** Frees records, names and entries; running enumerations end. */
void FreeIndex(DocHashControl *control) {
    for (FieldCursor *cursor = control->cursors; cursor; cursor = cursor->outer) cursor->ended = true;
    control->cursors = nullptr;
    control->lastField = nullptr;
    for (unsigned bucket = NameHashBucketCount; bucket-- > 0;) {
        for (NameEntry *entry = control->buckets[bucket]; entry;) {
            for (DMField *field = entry->head; field;) delete std::exchange(field, field->nextSameName);
            FreeEntry(std::exchange(entry, entry->next));
        }
        control->buckets[bucket] = nullptr;
    }
    control->byName.clear();
    control->byObject.clear();
    control->arrays.clear();
    control->fieldCount = 0;
}

void FreeBlock(DocHashControl **link) {
    DocHashControl *control = *link;
    *link = control->next;
    FreeIndex(control);
    delete control;
}

DocHashControl *NewBlock(LexDoc lexDoc, DMDoc doc, bool ensureWrite) {
    CleanUpOpenDocsHashControls();
    auto control = std::make_unique<DocHashControl>();
    control->lexDoc = lexDoc;
    control->doc = doc;
    control->stamp = DocStampOf(lexDoc);
    if (ensureWrite) DMDocEnsureWrite(doc, /*load*/ true, /*flags*/ 0);
    control->next = OpenDocsHashControls;
    return OpenDocsHashControls = control.release();
}

NameEntry *NewEntry(DocHashControl *control, std::string_view name) {
    auto entry = std::make_unique<NameEntry>();
    Str_to_NameStr(static_cast<std::uint8_t>(name.size()), name.data(), &entry->name);
    if (NameStrLen(&entry->name) != name.size()) KRRaise(KRErrNoMemory);
    const KRErrorCode code = Protect([&] { control->byName.emplace(NameOf(entry.get()), entry.get()); });
    if (code != KRErrNone) {
        NameStrFree(&entry->name);
        KRRaise(code);
    }
    NameEntry *&first = control->buckets[StrGetBucket(name.data(), name.size())];
    entry->next = first;
    if (first) first->prev = entry.get();
    return first = entry.release();
}

void DropEntry(DocHashControl *control, NameEntry *entry) {
    for (FieldCursor *cursor = control->cursors; cursor; cursor = cursor->outer) {
        if (cursor->entry == entry) cursor->entry = entry->next;
    }
    const std::string_view name = NameOf(entry);
    control->byName.erase(name);
    if (entry->prev)
        entry->prev->next = entry->next;
    else
        control->buckets[StrGetBucket(name.data(), name.size())] = entry->next;
    if (entry->next) entry->next->prev = entry->prev;
    FreeEntry(entry);
}

/** A non-terminal goes in front, a leaf to the end; all of the list then share their name. */
void EnterList(NameEntry *entry, DMField *field, bool inFront) {
    entry->absent = 0;
    if (!entry->head) {
        entry->head = entry->tail = field;
        return;
    }
    field->state |= DMFieldSharesName;
    if (inFront) {
        field->nextSameName = entry->head;
        entry->head->prevSameName = field;
        entry->head->state |= DMFieldSharesName;
        entry->head = field;
    } else {
        field->prevSameName = entry->tail;
        entry->tail->nextSameName = field;
        entry->tail->state |= DMFieldSharesName;
        entry->tail = field;
    }
}

void LeaveList(DocHashControl *control, NameEntry *entry, DMField *field) {
    for (FieldCursor *cursor = control->cursors; cursor; cursor = cursor->outer) {
        if (cursor->field == field) cursor->field = field->nextSameName;
    }
    (field->prevSameName ? field->prevSameName->nextSameName : entry->head) = field->nextSameName;
    (field->nextSameName ? field->nextSameName->prevSameName : entry->tail) = field->prevSameName;
}

void EnterObject(DocHashControl *control, DMField *field) {
    field->objectKey = LexObjGetID(field->obj);
    control->byObject.emplace(field->objectKey, field);
}

void LeaveObject(DocHashControl *control, DMField *field) {
    if (control->lastField == field) control->lastField = nullptr;
    const auto [first, last] = control->byObject.equal_range(field->objectKey);
    for (auto it = first; it != last; ++it) {
        if (it->second != field) continue;
        control->byObject.erase(it);
        return;
    }
}

/** The record's place under its full name: in an entry's list, at the front if it is to lead. Raises KRErrNoMemory. */
void EnterName(DocHashControl *control, DMField *field, std::string_view name, bool inFront) {
    NameEntry *entry = NameHashFind(control, name);
    if (!entry) entry = NewEntry(control, name);
    field->name = &entry->name;
    EnterList(entry, field, inFront);
    ++control->fieldCount;
}

/** A field is alone under its name from now on: it says so if it is a whole field. */
KRErrorCode TellJoined(DocHashControl *control, DMField *field) {
    return Protect([&] {
        if (!TSDMFieldIsTerminal(field)) return;
        TSFieldNotifyRec record{};
        record.doc = control->doc;
        record.field = field;
        TessellaBroadcast(TSFieldDidJoin, &record);
    });
}

/** Takes a record out of its name's list. `*kept` is the code of what an observer raised. */
void LeaveName(DocHashControl *control, DMField *field, KRErrorCode *kept) {
    NameEntry *entry = NameEntryOf(field);
    LeaveList(control, entry, field);
    --control->fieldCount;
    if (entry->head && entry->head == entry->tail) {
        DMField *alone = entry->head;
        // An observer may undefine that one too, and with it the entry.
        const std::string name(NameOf(entry));
        *kept = TellJoined(control, alone);
        entry = NameHashFind(control, name);
        if (entry && entry->head == alone) alone->state ^= DMFieldSharesName;
    }
    if (entry && !entry->head) DropEntry(control, entry);
}

} // namespace

unsigned StrGetBucket(const char *text, std::size_t length) {
    length %= 256;
    std::uint32_t hash = 0;
    if (length == 1) {
        hash = static_cast<unsigned char>(text[0]) * 8u + 1;
    } else {
        for (std::size_t i = 0; i < length; ++i) hash = hash * 31 + static_cast<unsigned char>(text[i]);
    }
    return hash % NameHashBucketCount;
}

DocHashControl *TSLexDocFindHashHead(LexDoc doc) {
    if (!doc) return nullptr;
    for (DocHashControl **link = &OpenDocsHashControls; *link; link = &(*link)->next) {
        if ((*link)->lexDoc != doc) continue;
        if (!DocIsGone((*link)->stamp)) return *link;
        FreeBlock(link);
        return nullptr;
    }
    return nullptr;
}

DocHashControl *TSLexDocGetHashHead(LexDoc doc) {
    if (DocHashControl *control = TSLexDocFindHashHead(doc)) return control;
    const DMDoc owner = doc ? DMDocFromLexDoc(doc) : nullptr;
    return owner ? NewBlock(doc, owner, /*ensureWrite*/ true) : nullptr;
}

DocHashControl *TSDMDocFindHashHead(DMDoc doc) {
    for (DocHashControl *control = OpenDocsHashControls; control; control = control->next) {
        if (control->doc == doc && !DocIsGone(control->stamp)) return control;
    }
    return nullptr;
}

bool TSLexDocEditOK(LexDoc doc) {
    const DocHashControl *control = TSLexDocGetHashHead(doc);
    return control && control->editOK;
}

void TSDMDocAcquireFormsData(DMDoc doc) {
    if (!doc) return;
    const LexDoc lexDoc = DMDocGetLexDoc(doc);
    if (!TSLexDocFindHashHead(lexDoc)) NewBlock(lexDoc, doc, /*ensureWrite*/ false);
}

void TSDMDocReleaseFormsData(DMDoc doc) {
    for (DocHashControl **link = &OpenDocsHashControls; *link; link = &(*link)->next) {
        if ((*link)->doc != doc) continue;
        FreeBlock(link);
        return;
    }
}

NameEntry *NameHashFind(DocHashControl *control, std::string_view name) {
    const auto found = control->byName.find(name);
    return found == control->byName.end() ? nullptr : found->second;
}

DMField *TSLexObjFindDMField(LexObj dict) {
    DocHashControl *control = TSLexDocFindHashHead(LexObjGetDoc(dict));
    if (!control) return nullptr;
    const auto [first, last] = control->byObject.equal_range(LexObjGetID(dict));
    for (auto it = first; it != last; ++it) {
        if (LexObjEqual(it->second->obj, dict)) return it->second;
    }
    return nullptr;
}

DMField *TSLexObjGetCachedDMField(LexObj dict) {
    const DocHashControl *control = TSLexDocFindHashHead(LexObjGetDoc(dict));
    if (!control || !control->lastField || !LexObjEqual(control->lastField->obj, dict)) return nullptr;
    return control->lastField;
}

DMField *AllocDMField(std::string_view name, LexObj dict) {
    auto *field = new DMField{};
    field->type = KRAtomNull;
    field->state = DMFieldInvalid;
    field->obj = dict;
    return TSDMFieldDefine(field, name) == 0 ? field : nullptr;
}

std::int32_t TSDMFieldDefine(DMField *newField, std::string_view name) {
    std::unique_ptr<DMField> field(newField);
    DocHashControl *control = TSLexDocGetHashHead(LexObjGetDoc(field->obj));
    if (!control || !control->editOK || control->closing || name.size() > MaxFieldNameLength) return 1;
    const bool inFront = LexDictKnown(field->obj, Kids_K);
    EnterObject(control, field.get());
    const KRErrorCode code = Protect([&] { EnterName(control, field.get(), name, inFront); });
    if (code != KRErrNone) {
        LeaveObject(control, field.get());
        field.reset();
        KRRaise(code);
    }
    control->lastField = field.release();
    return 0;
}

void DMFieldSetObj(DMField *field, LexObj dict) {
    DocHashControl *control = TSLexDocGetHashHead(LexObjGetDoc(field->obj));
    if (control) LeaveObject(control, field);
    field->obj = dict;
    if (control) EnterObject(control, field);
}

KRErrorCode NameHashLeave(DocHashControl *control, DMField *field) {
    KRErrorCode raised = KRErrNone;
    ++control->leaving;
    LeaveName(control, field, &raised);
    LeaveObject(control, field);
    return raised;
}

void DocFreeLex(DMDoc doc, bool closing) {
    DocHashControl *control = TSDMDocFindHashHead(doc);
    if (!control || control->closing) return;
    FreeIndex(control);
    if (!closing) return;
    control->closing = true;
    control->editOK = false;
}

void CleanUpOpenDocsHashControls() {
    for (DocHashControl **link = &OpenDocsHashControls; *link;) {
        if ((*link)->closing || DocIsGone((*link)->stamp))
            FreeBlock(link);
        else
            link = &(*link)->next;
    }
}
