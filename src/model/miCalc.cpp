// The calculation order: the list of names, its form in the file, and how it follows fields that come and go.
// SPDX-License-Identifier: MIT
#include "model/miCalc.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "Common/src/miLexType.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "model/DMField.h"
#include "model/DocData.h"
#include "model/miAction.h"
#include "objects/LexUtil.h"
#include "objects/Tessella.h"

namespace {

bool InList(const TSCalcArray *array, std::int32_t index) {
    return index >= 0 && index < TSCalcArrayGetNumEntries(array);
}

void Count(TSCalcArray *array, const std::string &name, std::int32_t change) {
    std::int32_t &count = array->counts[name];
    count += change;
    if (count <= 0) array->counts.erase(name);
}

/** Index of the only entry of this name; the search goes on where the last one ended, as edits mostly go in order. */
std::size_t IndexOfOnly(const TSCalcArray *array, const std::string &name) {
    const auto begin = array->names.begin();
    const auto start = begin + static_cast<std::ptrdiff_t>(std::min(array->hint, array->names.size()));
    auto found = std::find(start, array->names.end(), name);
    if (found == array->names.end()) found = std::find(begin, start, name);
    return array->hint = static_cast<std::size_t>(found - begin);
}

/** Calculation entry of the form; the null object. */
LexObj CalcOrderOf(DMDoc doc) {
    const LexObj root = LexDocGetRoot(DMDocGetLexDoc(doc));
    return TSLexDictGetOfType(TSLexDictGetOfType(root, spec_K, LexDict), CalcOrder_K, LexArray);
}

void DropWorkingList(TJSDocData *data) {
    TSCalcArrayDelete(std::exchange(data->calcArray, nullptr));
}

/** The fields that `current` has beyond `saved`, with their places in the source's list, in the order of those places.
 */
std::vector<std::pair<std::int32_t, DMField *>> NewFields(DMDoc target, const TSCalcArray *current,
                                                          const TSCalcArray *saved, const TSCalcArray *source) {
    std::vector<std::pair<std::int32_t, DMField *>> fields;
    for (std::int32_t i = TSCalcArrayGetNumEntries(saved); i < TSCalcArrayGetNumEntries(current); ++i) {
        DMField *field = TSCalcArrayGetNthEntry(target, current, i);
        const char *name = TSDMFieldGetName(field);
        const std::int32_t place = name && source ? TSCalcArrayGetFieldIndex(source, name) : -1;
        if (place >= 0) fields.emplace_back(place, field);
    }
    // Later ones go in front of those with an equal place.
    std::reverse(fields.begin(), fields.end());
    std::stable_sort(fields.begin(), fields.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
    return fields;
}

} // namespace

TSCalcArray *TSCalcArrayNew() {
    return new TSCalcArray{};
}

TSCalcArray *TSCalcArrayCopy(const TSCalcArray *source) {
    return source ? new TSCalcArray(*source) : TSCalcArrayNew();
}

void TSCalcArrayDelete(TSCalcArray *array) {
    delete array;
}

void TSCalcArrayInit(TSCalcArray *array) {
    *array = TSCalcArray{};
}

bool TSCalcArrayEq(const TSCalcArray *a, const TSCalcArray *b) {
    if (!a || !b) return TSCalcArrayGetNumEntries(a) == TSCalcArrayGetNumEntries(b);
    return a->names == b->names;
}

std::int32_t TSCalcArrayGetNumEntries(const TSCalcArray *array) {
    return array ? static_cast<std::int32_t>(array->names.size()) : 0;
}

DMField *TSCalcArrayGetNthEntry(DMDoc doc, const TSCalcArray *array, std::int32_t index) {
    if (!InList(array, index)) return nullptr;
    return TSDMDocGetDMFieldFromName(doc, array->names[static_cast<std::size_t>(index)].c_str());
}

void TSCalcArraySetNthEntry(TSCalcArray *array, std::int32_t index, const DMField *field) {
    const char *name = TSDMFieldGetName(field);
    if (!name || !InList(array, index)) return;
    std::string &entry = array->names[static_cast<std::size_t>(index)];
    Count(array, entry, -1);
    entry = name;
    Count(array, entry, 1);
}

std::int32_t TSCalcArrayGetFieldIndex(const TSCalcArray *array, const char *name) {
    if (!array || !name) return -1;
    const std::string wanted(name);
    const auto count = array->counts.find(wanted);
    if (count == array->counts.end()) return -1;
    if (count->second == 1) return static_cast<std::int32_t>(IndexOfOnly(array, wanted));
    return static_cast<std::int32_t>(std::find(array->names.begin(), array->names.end(), wanted) -
                                     array->names.begin());
}

void TSCalcArrayInsertEntry(TSCalcArray *array, std::int32_t index, const DMField *field) {
    const char *name = TSDMFieldGetName(field);
    if (!name) return;
    const std::int32_t place = std::clamp(index, 0, TSCalcArrayGetNumEntries(array));
    array->names.insert(array->names.begin() + place, name);
    Count(array, name, 1);
}

void TSCalcArrayDeleteEntry(TSCalcArray *array, std::int32_t index) {
    if (!InList(array, index)) return;
    Count(array, array->names[static_cast<std::size_t>(index)], -1);
    array->names.erase(array->names.begin() + index);
}

void TSDMDocGetCalcArray(DMDoc doc, TSCalcArray *array) {
    TSCalcArrayInit(array);
    if (!doc) return;
    Protect([&] {
        const LexObj order = CalcOrderOf(doc);
        if (!IsArray(order)) return;
        for (std::int32_t i = 0, length = LexArrayLength(order); i < length; ++i)
            TSCalcArrayInsertEntry(array, TSCalcArrayEnd, TSDMFieldFromLexObj(LexArrayGet(order, i)));
    });
}

void TSDMDocSetCalcArray(DMDoc doc, const TSCalcArray *array) {
    if (!doc) return;
    const LexDoc lexDoc = DMDocGetLexDoc(doc);
    const LexObj root = LexDocGetRoot(lexDoc);
    const std::int32_t count = TSCalcArrayGetNumEntries(array);
    if (count == 0) {
        const LexObj form = TSLexDictGetOfType(root, spec_K, LexDict);
        if (IsDict(form) && LexDictKnown(form, CalcOrder_K)) LexDictRemove(form, CalcOrder_K);
        return;
    }
    const LexObj form = TSLexDictEnsureEx(root, spec_K, /*indirect*/ true);
    const LexObj order = LexNewArray(lexDoc, /*indirect*/ false, count);
    LexDictPut(form, CalcOrder_K, order);
    for (std::int32_t i = 0; i < count; ++i)
        LexArrayPut(order, i, TSDMFieldGetLexObj(TSCalcArrayGetNthEntry(doc, array, i)));
}

TSCalcArray *TJSGetCalcArray(DMDoc doc) {
    TJSDocData *data = TJSGetData(doc);
    if (!data) return nullptr;
    if (!data->calcArray) {
        data->calcArray = TSCalcArrayNew();
        TSDMDocGetCalcArray(doc, data->calcArray);
    }
    return data->calcArray;
}

bool TJSCalcFieldsListAdd(DMDoc doc, DMField *field) {
    const bool compiled = gDocSeams.hasCalculateScript && gDocSeams.hasCalculateScript(field);
    if (!compiled && IsNull(DMActionGetLexObj(TSDMFieldGetAction(field, Calculate_K)))) return false;
    TSCalcArray *array = TJSGetCalcArray(doc);
    const char *name = TSDMFieldGetName(field);
    if (!array || !name) return false;
    if (TSCalcArrayGetFieldIndex(array, name) < 0) TSCalcArrayInsertEntry(array, TSCalcArrayEnd, field);
    return true;
}

bool TJSCalcFieldsListDelete(DMDoc doc, DMField *field, bool force) {
    TSCalcArray *array = TSDMFieldIsValid(field) ? TJSGetCalcArray(doc) : nullptr;
    if (!array) return false;
    const std::int32_t index = TSCalcArrayGetFieldIndex(array, TSDMFieldGetName(field));
    if (index < 0) return true;
    if (!force) {
        const DMField *widgets = DMFieldTopOfName(field)->firstChild;
        if (widgets && widgets->nextSibling) return true;
    }
    TSCalcArrayDeleteEntry(array, index);
    return true;
}

void TSFixCalcOrderAfterSpawnOrInsert(DMDoc source, DMDoc target, TSCalcArray *saved) {
    const std::unique_ptr<TSCalcArray> repaired(saved);
    TJSDocData *data = TJSGetData(target);
    const TSCalcArray *current = TJSGetCalcArray(target);
    if (!data || !repaired || repaired->names.size() >= static_cast<std::size_t>(TSCalcArrayGetNumEntries(current)))
        return;
    for (const auto &[place, field] : NewFields(target, current, repaired.get(), TJSGetCalcArray(source)))
        TSCalcArrayInsertEntry(repaired.get(), TSCalcArrayEnd, field);
    TSDMDocSetCalcArray(target, repaired.get());
    DropWorkingList(data);
}

void JSDocWillSaveEx(DMDoc doc, const DMDocSaveRecord *save) {
    TJSDocData *data = TJSGetData(doc);
    if (!data) return;
    if (data->calcArray) TSDMDocSetCalcArray(doc, data->calcArray);
    if (!save || !(save->flags & DMDocSaveFull)) return;
    data->needLoadFields = true;
    DropWorkingList(data);
}
