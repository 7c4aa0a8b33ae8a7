// Taking fields away.
// SPDX-License-Identifier: MIT
#include "model/FieldRemoval.h"

#include <memory>
#include <utility>

#include "Common/src/miLexType.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "model/DMFieldLinks.h"
#include "model/FieldArray.h"
#include "model/NameHash.h"
#include "model/NameHashCheck.h"
#include "objects/LexUtil.h"
#include "objects/Tessella.h"

FieldRemoval::~FieldRemoval() {
    Protect([&] { Finish(); });
}

void FieldRemoval::Undefine(DMField *field) {
    if (!field || !IsDict(field->obj) || !LexObjIsIndirect(field->obj)) return;
    DocHashControl *control = TSLexDocGetHashHead(LexObjGetDoc(field->obj));
    if (!control) return;
    doc_ = control->lexDoc;
    const KRErrorCode raised = NameHashLeave(control, field);
    if (raised != KRErrNone) kept_ = raised;
    while (field->firstChild) DMFieldUnlinkChild(field->firstChild);
    const std::unique_ptr<DMField> freed(field);
    const DMField *parent = field->parent;
    DMFieldUnlinkChild(field);
    control->lastField = nullptr;
    --control->leaving;
    const KRErrorCode code = Protect([&] {
        if (parent) LexDictRemove(field->obj, parent_K);
        NoteLeaving(parent ? parent->obj : TSLexObjGetTessella(field->obj), parent ? Kids_K : formFields_K, field->obj);
    });
    if (code != KRErrNone) kept_ = code;
}

void FieldRemoval::NoteLeaving(LexObj owner, KRAtom key, LexObj dict) {
    const std::int32_t id = LexObjGetID(owner);
    const auto [first, last] = byOwner_.equal_range(id);
    for (auto it = first; it != last; ++it) {
        Leaving &leaving = leaving_[it->second];
        if (leaving.key != key || !LexObjEqual(leaving.owner, owner)) continue;
        leaving.dicts.Add(dict);
        return;
    }
    byOwner_.emplace(id, leaving_.size());
    leaving_.push_back({owner, key, {}});
    leaving_.back().dicts.Add(dict);
}

void FieldRemoval::LeaveArray(const Leaving &leaving) {
    const LexObj array = TSLexDictGetOfType(leaving.owner, leaving.key, LexArray);
    if (IsArray(array)) FieldArrayRemoveAll(leaving.owner, leaving.key, leaving.dicts);
    if (leaving.key != Kids_K) return;
    const LexObj rest = TSLexDictGetOfType(leaving.owner, Kids_K, LexArray);
    if (IsArray(rest) && LexArrayLength(rest) > 0) return;
    LexDictRemove(leaving.owner, Kids_K);
    // A parent that is being built or loads its kids is in use further up; whoever builds it sees to it.
    DMField *parent = TSLexObjFindDMField(leaving.owner);
    if (parent && !(parent->state & (DMFieldInvalid | DMFieldLoadingKids))) Undefine(parent);
}

void FieldRemoval::Finish() {
    // Parents that are left without kids follow them, and so on upward.
    while (!leaving_.empty()) {
        const std::vector<Leaving> round = std::exchange(leaving_, {});
        byOwner_.clear();
        for (const Leaving &leaving : round) {
            const KRErrorCode code = Protect([&] { LeaveArray(leaving); });
            if (code != KRErrNone) kept_ = code;
        }
    }
    if (doc_) DocHashCheck(doc_);
    RaiseIf(std::exchange(kept_, KRErrNone));
}

void TSDMFieldUndefine(DMField *field) {
    FieldRemoval removal;
    removal.Undefine(field);
    removal.Finish();
}
