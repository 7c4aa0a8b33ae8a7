// What takes fields and widgets out of a form: the clean-up before a save, and the end of the whole form.
// SPDX-License-Identifier: MIT
#include "life/TessellaClean.h"

#include <cstdint>
#include <vector>

#include "Common/src/miLexType.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "model/DMField.h"
#include "model/DMFieldValue.h"
#include "model/FieldArray.h"
#include "model/FieldRemoval.h"
#include "model/LexField.h"
#include "model/LexObjSet.h"
#include "model/NameHash.h"
#include "objects/AnnotUtl.h"
#include "objects/LexUtil.h"
#include "objects/Tessella.h"

namespace {

void RemoveFromPage(DMAnnot annot, DMPage page) {
    const std::int32_t index = DMPageGetAnnotIndex(page, annot);
    if (index >= 0) DMPageRemoveAnnot(page, index);
}

bool IsWasted(DMAnnot annot) {
    return (DMAnnotGetFlags(annot) & TessellaWastedFlags) == TessellaWastedFlags;
}

/**
 * A step over all widgets. Without client data it notes which fields are on a page and removes hidden leftovers; with
 * it (a bool) every widget with a field goes, field first.
 */
bool deleteField(DMAnnot annot, DMPage page, void *clientData) {
    DMField *field = TSDMAnnotGetField(annot);
    const bool hasField = TSDMFieldIsValid(field);
    if (hasField && !clientData) {
        field->state |= DMFieldSeen;
        return true;
    }
    if (hasField) TSDMAnnotRemoveField(annot, page, *static_cast<const bool *>(clientData), /*keepValue*/ false);
    if (hasField || IsWasted(annot)) RemoveFromPage(annot, page);
    return true;
}

/** A step over all terminal fields: lists those with a widget that is on no page, and clears the marks. */
KRBool fieldCleanup(DMField *field, void *orphans) {
    if (!TSDMFieldIsAnnot(field)) return true;
    if (field->state & DMFieldSeen)
        field->state &= ~DMFieldSeen;
    else
        static_cast<std::vector<LexObj> *>(orphans)->push_back(field->obj);
    return true;
}

void RemoveOrphans(DMDoc doc) {
    std::vector<LexObj> orphans;
    const bool allPages = TSDMDocEnumAnnots(doc, Widget_K, &deleteField, /*data*/ nullptr);
    TSDMDocEnumDMFields(doc, /*terminalOnly*/ true, /*firstOfNameOnly*/ false, &fieldCleanup, &orphans);
    // A page that cannot be read ended the walk: fields of the pages in front of it only look like orphans.
    if (!allPages) return;
    FieldRemoval removal;
    for (auto orphan = orphans.rbegin(); orphan != orphans.rend(); ++orphan)
        removal.Undefine(TSLexObjFindDMField(*orphan));
    removal.Finish();
}

/** Takes the value away, if need be without asking: an observer that refuses, rewrites or raises keeps nothing. */
void ClearValue(LexObj dict) {
    (void)Protect([&] { TSDMFieldSetValue(TSDMFieldFromLexObj(dict), LexNullObj); });
    if (DMField *field = TSLexObjFindDMField(dict))
        DMFieldDropValue(field);
    else
        LexDictRemove(dict, value_K);
}

/** The dictionaries listed in `$Vo`, the last first. */
std::vector<LexObj> VolatileFields(LexObj form) {
    const LexObj listed = TSLexDictGetOfType(form, volatile_K, LexArray);
    std::vector<LexObj> fields;
    for (std::int32_t i = IsArray(listed) ? LexArrayLength(listed) : 0; i-- > 0;) {
        const LexObj dict = LexArrayGet(listed, i);
        if (IsDict(dict)) fields.push_back(dict);
    }
    return fields;
}

/**
 * Clears the values of the fields that are listed. Clearing one lists it anew, and observers may set and so list
 * others: rounds go on until a round finds nothing new, and the last one takes what observers put back.
 */
void ClearVolatileValues(LexObj form) {
    LexObjSet cleared;
    for (std::size_t before = SIZE_MAX; before != cleared.Size();) {
        before = cleared.Size();
        for (const LexObj dict : VolatileFields(form)) {
            if (cleared.Add(dict)) ClearValue(dict);
        }
    }
    for (const auto &[id, dict] : cleared) {
        if (DMField *field = TSLexObjFindDMField(dict)) DMFieldDropValue(field);
    }
    LexDictRemove(form, volatile_K);
}

} // namespace

void TessellaOptimize(LexObj form) {
    if (!TessellaIsValid(form)) return;
    if (LexDictKnown(form, waste_K)) {
        const LexDoc lexDoc = LexObjGetDoc(form);
        const DMDoc doc = lexDoc ? DMDocFromLexDoc(lexDoc) : nullptr;
        // Leftovers that cannot be removed are saved; values that were given in confidence are not.
        if (doc) (void)Protect([&] { RemoveOrphans(doc); });
        LexDictRemove(form, waste_K);
    }
    if (LexDictKnown(form, volatile_K)) ClearVolatileValues(form);
    if (LexDictKnown(form, maxLen_K)) LexDictRemove(form, maxLen_K);
}

void TSDMDocDestroyForm(DMDoc doc, bool flag) {
    if (!doc) return;
    const LexObj form = TSDMDocGetTessella(doc);
    TSFieldNotifyRec record{};
    record.doc = doc;
    TessellaBroadcast(TSFormWillDestroy, &record);
    if (TessellaIsValid(form)) TSDMDocEnumAnnots(doc, Widget_K, &deleteField, &flag);
    if (!IsDict(form)) return;
    // An empty array instead of taking the elements out of the old one, which would cost their number squared.
    const LexDoc lexDoc = DMDocGetLexDoc(doc);
    if (IsArray(LexDictGet(form, formFields_K)))
        LexDictPut(form, formFields_K, LexNewArray(lexDoc, /*indirect*/ false, /*sizeHint*/ 0));
    FieldArraysForget(lexDoc);
    LexDictRemove(LexDocGetRoot(lexDoc), spec_K);
}
