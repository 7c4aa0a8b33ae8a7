// What takes fields and widgets out of a form: the clean-up before a save, and the end of the whole form.
// SPDX-License-Identifier: MIT
#include "life/TessellaClean.h"

#include <vector>

#include "Common/src/miLexType.h"
#include "base/FormStr.h"
#include "model/DMField.h"
#include "model/DMFieldValue.h"
#include "model/FieldArray.h"
#include "model/LexField.h"
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

/** Clears the values of the fields that are listed, the last first. */
void ClearVolatileValues(LexObj form) {
    const LexObj listed = TSLexDictGetOfType(form, volatile_K, LexArray);
    std::vector<LexObj> fields;
    if (IsArray(listed)) {
        for (std::int32_t i = LexArrayLength(listed); i-- > 0;) fields.push_back(LexArrayGet(listed, i));
    }
    // Clearing a value lists its field anew: in a list of its own, which then goes as well.
    LexDictRemove(form, volatile_K);
    for (const LexObj dict : fields) TSDMFieldSetValue(TSDMFieldFromLexObj(dict), LexNullObj);
    LexDictRemove(form, volatile_K);
}

} // namespace

void TessellaOptimize(LexObj form) {
    if (!TessellaIsValid(form)) return;
    if (LexDictKnown(form, waste_K)) {
        const LexDoc lexDoc = LexObjGetDoc(form);
        const DMDoc doc = lexDoc ? DMDocFromLexDoc(lexDoc) : nullptr;
        if (doc) RemoveOrphans(doc);
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
