// Values and choices of a widget, and the small numbers of its field.
// SPDX-License-Identifier: MIT
#include "widgets/DMWidget.h"

#include <algorithm>
#include <cstring>

#include "Common/src/miLexType.h"
#include "Common/src/miUtils.h"
#include "CoreHFT.h"
#include "KRErrors.h"
#include "base/FormStr.h"
#include "model/DMField.h"
#include "model/DMFieldValue.h"
#include "model/WidgetReg.h"
#include "objects/LexUtil.h"

namespace {

std::int16_t ShortEntry(DMField *field, KRAtom key, std::int16_t missing) {
    LexObj value = TSDMFieldGetObj(field, key);
    if (!IsInteger(value)) return missing;
    return static_cast<std::int16_t>(std::clamp<std::int32_t>(LexIntegerValue(value), INT16_MIN, INT16_MAX));
}

void SetShortEntry(DMField *field, KRAtom key, std::int16_t value, bool remove) {
    if (!TSDMFieldIsValid(field)) return;
    DMField *top = DMFieldTopOfName(field);
    if (remove)
        LexDictRemove(top->obj, key);
    else
        TSLexDictStore<LexInteger>(top->obj, key, /*indirect*/ false, value);
}

bool IsScalar(LexObj obj) {
    return !IsNull(obj) && !IsDict(obj) && !IsArray(obj) && !IsStream(obj);
}

std::string ScalarText(LexObj obj) {
    return IsScalar(obj) ? TSHostTextOf(obj) : std::string();
}

// An element of `Opt` offers something: a pair of export and text, or a text that is not empty.
bool IsChoice(LexObj element) {
    switch (LexObjGetType(element)) {
    case LexArray:
        return LexArrayLength(element) == 2;
    case LexString: {
        std::int32_t length = 0;
        LexStringValue(element, &length);
        return length > 0;
    }
    default:
        return IsScalar(element);
    }
}

/** The text of an element of `Opt`: the second of a pair, or the first where that is null. */
LexObj ShownObj(LexObj element) {
    if (!IsArray(element)) return element;
    const LexObj text = LexArrayGet(element, 1);
    return IsNull(text) ? LexArrayGet(element, 0) : text;
}

/** None for an element that is one text, and for a pair of which one is null. An empty export is one. */
std::optional<std::string> ExportOf(LexObj element) {
    if (!IsArray(element) || IsNull(LexArrayGet(element, 0)) || IsNull(LexArrayGet(element, 1))) return std::nullopt;
    return ScalarText(LexArrayGet(element, 0));
}

/** Of the several choices of a list the first. */
std::string ValueText(LexObj value) {
    if (!IsArray(value)) return TSHostTextOf(value);
    return LexArrayLength(value) > 0 ? ScalarText(LexArrayGet(value, 0)) : std::string();
}

// Lists are never found equal, so that writing one always stores it; only two empty ones are.
bool ChoicesEqual(const TSChoices &a, const TSChoices &b) {
    return a.values.empty() && b.values.empty();
}

LexObj NewChoice(LexDoc doc, const TSChoices &choices, std::size_t i) {
    const bool hasExport = i < choices.exports.size() && choices.exports[i];
    if (!hasExport) return TSNewTextOf(doc, choices.values[i]);
    LexObj pair = LexNewArray(doc, /*indirect*/ false, 2);
    LexArrayPut(pair, 0, TSNewTextOf(doc, *choices.exports[i]));
    LexArrayPut(pair, 1, TSNewTextOf(doc, choices.values[i]));
    return pair;
}

} // namespace

std::string TSHostTextOf(LexObj obj) {
    const EStrPtr text(EStrNewFromLexObjImpl(obj));
    EStrSetEncoding(text.get(), EStrHost);
    return std::string(EStrGetBytes(text.get()), EStrGetLen(text.get()));
}

LexObj TSNewTextOf(LexDoc doc, const std::string &host) {
    const EStrPtr text(EStrNewImpl(host.c_str(), EStrHost));
    EStrSetEncoding(text.get(), EStrText);
    return LexNewString(doc, /*indirect*/ false, EStrGetBytes(text.get()), EStrGetLen(text.get()));
}

char *TSDMWidgetAcquireStringValue(DMAnnot annot) {
    LexObj value = TSDMFieldGetValue(TSDMAnnotGetField(annot));
    return IsNull(value) ? nullptr : miCopyStrImpl(ValueText(value).c_str());
}

bool TSDMWidgetSetStringValue(DMAnnot annot, LexType type, const char *text) {
    DMField *field = TSDMAnnotGetField(annot);
    LexDoc doc = LexObjGetDoc(DMAnnotGetLexObj(annot));
    LexObj value = TSDMFieldGetValue(field);
    // What was acquired and comes back as it was is the same value, also where its text does not tell all of it.
    if (IsArray(value) && text && ValueText(value) == text) return TSDMFieldSetValue(field, value);
    value = LexNullObj;
    if (text && *text)
        value = type == LexName ? LexNewName(doc, /*indirect*/ false, KRAtomFromString(text)) : TSNewTextOf(doc, text);
    return TSDMFieldSetValue(field, value);
}

void TSDMWidgetAcquireChoices(DMAnnot annot, TSChoices *choices) {
    *choices = {};
    LexObj options = TSDMFieldGetObj(TSDMAnnotGetField(annot), options_K);
    if (!IsArray(options)) return;
    bool anyExport = false;
    for (const std::int32_t index : TSOptionsGetChoices(options)) {
        LexObj element = LexArrayGet(options, index);
        choices->values.push_back(TSOptionGetShownText(element));
        choices->exports.push_back(ExportOf(element));
        anyExport = anyExport || choices->exports.back();
    }
    if (!anyExport) choices->exports.clear();
}

std::vector<std::int32_t> TSOptionsGetChoices(LexObj options) {
    std::vector<std::int32_t> indexes;
    const std::int32_t count = IsArray(options) ? LexArrayLength(options) : 0;
    for (std::int32_t index = 0; index < count; ++index) {
        if (IsChoice(LexArrayGet(options, index))) indexes.push_back(index);
    }
    return indexes;
}

std::string TSOptionGetShownText(LexObj element) {
    return ScalarText(ShownObj(element));
}

void TSDMWidgetWriteChoices(DMAnnot annot, const TSChoices &choices) {
    TSChoices present;
    TSDMWidgetAcquireChoices(annot, &present);
    if (ChoicesEqual(present, choices)) return;
    LexObj options = LexNullObj;
    if (!choices.values.empty()) {
        LexDoc doc = LexObjGetDoc(DMAnnotGetLexObj(annot));
        options = LexNewArray(doc, /*indirect*/ false, static_cast<std::int32_t>(choices.values.size()));
        for (std::size_t i = choices.values.size(); i-- > 0;)
            LexArrayPut(options, static_cast<std::int32_t>(i), NewChoice(doc, choices, i));
    }
    if (TSDMFieldSetOptions(TSDMAnnotGetField(annot), options) != 0) KRRaise(KRErrBadParam);
}

void TSDMWidgetReleaseChoices(TSChoices *choices) {
    *choices = {};
}

std::int32_t TSDMWidgetGetChoiceIndex(const TSChoices &choices, const char *text, std::int32_t missing) {
    if (!text) return missing;
    const auto found = std::find(choices.values.begin(), choices.values.end(), text);
    return found == choices.values.end() ? missing : static_cast<std::int32_t>(found - choices.values.begin());
}

void TSDMWidgetSetNextOption(DMAnnot annot) {
    DMField *field = TSDMAnnotGetField(annot);
    LexObj options = TSDMFieldGetObj(field, options_K);
    const std::int32_t count = IsArray(options) ? LexArrayLength(options) : 0;
    const std::int32_t index = TSDMFieldGetOptionIndex(field, nullptr, nullptr);
    if (count == 1 && index == 0)
        TSDMFieldReset(field);
    else
        TSDMFieldSetToOptionIndex(field, index + 1);
}

std::int16_t TSDMFieldGetMaxLen(DMField *field) {
    return TSDMFieldIsValid(field) ? ShortEntry(field, maxLen_K, 0) : std::int16_t{-1};
}

void TSDMFieldSetMaxLen(DMField *field, std::int16_t length) {
    SetShortEntry(field, maxLen_K, length, /*remove*/ length <= 0);
}

std::int16_t TSDMFieldGetTopIndex(DMField *field) {
    return ShortEntry(field, topIndex_K, 0);
}

void TSDMFieldSetTopIndex(DMField *field, std::int16_t index) {
    if (TSDMFieldGetTopIndex(field) == index) return;
    SetShortEntry(field, topIndex_K, index, /*remove*/ index == 0);
}

std::int16_t TSDMFieldGetDefaultIndex(DMField *field) {
    LexObj options = TSDMFieldGetObj(field, options_K);
    LexObj standard = TSDMFieldGetEntry(field, TSEntryDV);
    if (!IsArray(options) || IsNull(standard)) return -1;
    for (std::int32_t i = LexArrayLength(options) - 1; i >= 0; --i) {
        if (TSLexObjEquivalent(RetrieveOptVal(LexArrayGet(options, i)), standard))
            return static_cast<std::int16_t>(std::min(i, INT16_MAX + 0));
    }
    return -1;
}

void TSDMFieldSetWidgetWrappedText(DMField *field) {
    if (TSDMFieldIsValid(field)) field->state |= DMFieldWrapped;
}

void TSDMFieldClearWidgetWrappedText(DMField *field) {
    if (TSDMFieldIsValid(field)) field->state &= ~static_cast<std::uint32_t>(DMFieldWrapped);
}
