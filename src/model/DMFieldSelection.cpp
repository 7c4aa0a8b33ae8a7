// What is selected in a choice field: the options that its value names, and their indexes.
// SPDX-License-Identifier: MIT
#include "model/DMFieldValue.h"

#include <string>
#include <unordered_set>
#include <vector>

#include "CoreHFT.h"
#include "base/FormStr.h"
#include "model/DMField.h"
#include "model/DMFieldValueParts.h"
#include "objects/LexUtil.h"

namespace {

/** `I`: as an atom the same as the key of a button's icon. */
KRAtom IndexesKey() {
    return Icon_K;
}

std::string BytesOf(LexObj obj) {
    if (IsName(obj)) return KRAtomGetString(LexNameValue(obj));
    std::int32_t length = 0;
    const char *bytes = IsString(obj) ? LexStringValue(obj, &length) : "";
    return {bytes, static_cast<std::size_t>(length)};
}

/** Indexes of the options that an array of values names, in order. A list may have a hundred thousand of either. */
std::vector<std::int32_t> IndexesOf(LexObj options, LexObj values) {
    std::unordered_set<std::string> wanted;
    for (std::int32_t i = LexArrayLength(values); i-- > 0;) wanted.insert(BytesOf(LexArrayGet(values, i)));
    std::vector<std::int32_t> indexes;
    for (std::int32_t i = 0; i < LexArrayLength(options); ++i) {
        if (wanted.contains(BytesOf(RetrieveOptVal(LexArrayGet(options, i))))) indexes.push_back(i);
    }
    return indexes;
}

bool RemoveIndexes(DMField *field) {
    bool had = false;
    for (DMField *at = DMFieldHeadOfName(field); at; at = at->nextSameName) {
        had = had || LexDictKnown(at->obj, IndexesKey());
        LexDictRemove(at->obj, IndexesKey());
    }
    return had;
}

} // namespace

std::int32_t DMFieldFindOption(LexObj options, LexObj value) {
    std::int32_t index = LexArrayLength(options) - 1;
    while (index >= 0 && !TSLexObjEquivalent(RetrieveOptVal(LexArrayGet(options, index)), value)) --index;
    return index;
}

std::vector<std::int32_t> DMFieldGetOptionIndexes(DMField *field) {
    const LexObj options = TSDMFieldGetObj(field, options_K);
    const LexObj value = TSDMFieldGetValue(field);
    if (!IsArray(options)) return {};
    if (IsArray(value)) return IndexesOf(options, value);
    const std::int32_t index = DMFieldFindOption(options, value);
    return index < 0 ? std::vector<std::int32_t>{} : std::vector<std::int32_t>{index};
}

void DMFieldUpdateSelection(DMField *field) {
    if (field->type != Choice_K) return;
    const bool had = RemoveIndexes(field);
    const LexObj value = TSDMFieldGetValue(field);
    if (IsNull(value) || (!had && !IsArray(value))) return;
    const std::vector<std::int32_t> indexes = DMFieldGetOptionIndexes(field);
    if (indexes.empty()) return;
    const LexObj top = DMFieldTopOfName(field)->obj;
    const LexDoc doc = LexObjGetDoc(top);
    const LexObj array = LexNewArray(doc, /*indirect*/ false, static_cast<std::int32_t>(indexes.size()));
    for (std::size_t i = 0; i < indexes.size(); ++i)
        LexArrayPut(array, static_cast<std::int32_t>(i), LexNewInteger(doc, /*indirect*/ false, indexes[i]));
    LexDictPut(top, IndexesKey(), array);
}
