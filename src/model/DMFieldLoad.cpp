// Finding fields: by name, by dictionary, all of them. Nothing is loaded before someone asks.
// SPDX-License-Identifier: MIT
#include "model/DMField.h"

#include <string_view>

#include "Common/src/miLexType.h"
#include "Common/unix/mdMessages.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "base/Limits.h"
#include "model/DocData.h"
#include "model/FieldArray.h"
#include "model/LexObjSet.h"
#include "model/NameHash.h"
#include "model/NameHashCheck.h"
#include "objects/LexUtil.h"
#include "objects/Tessella.h"
#include "services/Warnings.h"

namespace {

/** `Kids` decides whose a kid is: one whose `Parent` is missing, or does not list it, is the lister's. */
void HealParent(LexObj kid, LexObj owner) {
    const LexObj claimed = TSLexDictGetOfType(kid, parent_K, LexDict);
    if (IsDict(claimed) &&
        (LexObjEqual(claimed, owner) || FieldArrayHas(TSLexDictGetOfType(claimed, Kids_K, LexArray), kid)))
        return;
    LexDictPut(kid, parent_K, owner);
}

/** A root without a title is a field by its type or its kids; anything else without a name is passed over. */
void MakeNameless(LexObj root) {
    const bool isField = IsName(LexDictGet(root, FT_K)) || IsArray(LexDictGet(root, Kids_K));
    const bool fits = isField && LexObjIsIndirect(root) && !LexDictKnown(root, T_K);
    if (!fits || !DMFieldCreateNameless(root))
        TSWarn(DMDocFromLexDoc(LexObjGetDoc(root)), /*field*/ nullptr, Msg::warnNameless);
}

bool IsNamelessRoot(LexObj dict) {
    return !IsString(LexDictGet(dict, T_K)) && !IsDict(TSLexDictGetOfType(dict, parent_K, LexDict)) &&
           !TSLexObjFindDMField(dict);
}

/**
 * Makes the fields of an array and what hangs below. `owner` lists them as its `Kids`; null for the roots. A node is
 * gone through once, however many arrays list it.
 */
void ScanDMFieldsInArray(LexObj array, LexObj owner, int depth, LexObjSet *scanned) {
    if (!IsArray(array) || depth > TSLimitOf(TSLimitFieldDepth)) return;
    const bool isRoot = !IsDict(owner);
    for (std::int32_t i = LexArrayLength(array); i-- > 0;) {
        const LexObj element = LexArrayGet(array, i);
        if (!IsDict(element)) continue;
        const LexObj kids = LexDictGet(element, Kids_K);
        const bool isLeaf = IsNull(kids) || DictIsWidget(element);
        if (!isLeaf && LexObjIsIndirect(element) && !scanned->Add(element)) continue;
        if (!isRoot && LexObjIsIndirect(element)) HealParent(element, owner);
        if (isRoot && IsNamelessRoot(element)) MakeNameless(element);
        if (!isLeaf) {
            ScanDMFieldsInArray(kids, element, depth + 1, scanned);
            continue;
        }
        if (!IsNull(kids)) LexDictRemove(element, Kids_K);
        TSDMFieldFromLexObj(element);
    }
}

/** Keeps an enumeration's place known to the block, so that nothing is freed under it. */
class CursorScope : public FieldCursor {
public:
    explicit CursorScope(DocHashControl *control) : control(control) {
        outer = control->cursors;
        control->cursors = this;
    }
    ~CursorScope() {
        if (!ended) control->cursors = outer;
    }
    CursorScope(const CursorScope &) = delete;
    CursorScope &operator=(const CursorScope &) = delete;

private:
    DocHashControl *control;
};

struct FieldWalk {
    bool terminalOnly;
    bool firstOfNameOnly;
    TSFieldEnumProc proc;
    void *clientData;
};

/** One same-name list from the cursor's field on; false ends the whole enumeration. */
bool WalkList(FieldCursor *cursor, const FieldWalk &walk) {
    while (DMField *field = cursor->field) {
        cursor->field = field->nextSameName;
        if (walk.terminalOnly && field->firstChild) continue;
        if (!walk.proc(field, walk.clientData) || cursor->ended) return false;
        if (walk.firstOfNameOnly) break;
    }
    return true;
}

} // namespace

DMField *TSDMDocGetDMFieldFromName(DMDoc doc, const char *name) {
    if (!doc || !name) return nullptr;
    const LexDoc lexDoc = DMDocGetLexDoc(doc);
    DocHashControl *control = TSLexDocGetHashHead(lexDoc);
    if (!control || !control->editOK) return nullptr;
    NameEntry *entry = NameHashFind(control, name);
    if (!entry) {
        TSDMDocLoadFieldsIfNeeded(doc);
        control = TSLexDocGetHashHead(lexDoc);
        entry = control ? NameHashFind(control, name) : nullptr;
    }
    return entry ? control->lastField = entry->head : nullptr;
}

DMField *TSLexDocGetDMFieldFromNameStr(LexDoc doc, const NameStr *name) {
    if (!name || !TSLexDocFindHashHead(doc)) return nullptr;
    return reinterpret_cast<const NameEntry *>(name)->head;
}

void TSDMDocLoadDMFields(DMDoc doc) {
    const LexObj form = TSDMDocGetTessella(doc);
    if (!TessellaIsValid(form)) return;
    const LexDoc lexDoc = DMDocGetLexDoc(doc);
    DocHashControl *control = TSLexDocGetHashHead(lexDoc);
    if (!control || control->loaded || !control->editOK || control->closing) return;
    control->loaded = true;
    LexObjSet scanned;
    const KRErrorCode code =
        Protect([&] { ScanDMFieldsInArray(LexDictGet(form, Fields_K), LexNullObj, /*depth*/ 0, &scanned); });
    DocHashCheck(lexDoc);
    RaiseIf(code);
}

void TSDMDocLoadFieldsIfNeeded(DMDoc doc) {
    TJSDocData *data = TJSGetData(doc);
    if (data && !data->needLoadFields) return;
    TSDMDocLoadDMFields(doc);
    // A load that could not be done, since a save is running or there is no form yet, is still to be done.
    const DocHashControl *control = TSDMDocFindHashHead(doc);
    data = TJSFindData(doc);
    if (data && control && control->loaded) data->needLoadFields = false;
}

void TSDMDocEnumDMFields(DMDoc doc, bool terminalOnly, bool firstOfNameOnly, TSFieldEnumProc proc, void *clientData) {
    if (!doc) return;
    TSDMDocLoadFieldsIfNeeded(doc);
    DocHashControl *control = TSLexDocGetHashHead(DMDocGetLexDoc(doc));
    if (!control) return;
    const FieldWalk walk{terminalOnly, firstOfNameOnly, proc, clientData};
    CursorScope cursor(control);
    for (unsigned bucket = NameHashBucketCount; bucket-- > 0;) {
        cursor.entry = control->buckets[bucket];
        while (NameEntry *entry = cursor.entry) {
            cursor.entry = entry->next;
            cursor.field = entry->head;
            if (!WalkList(&cursor, walk)) return;
        }
    }
}
