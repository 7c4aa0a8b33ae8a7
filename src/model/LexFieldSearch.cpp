// Searching siblings by title, from the last to the first.
//
//  1. Only true siblings count: elements whose `Parent` is the place searched, roots without one. A widget that is on
//  its
//     way from `Fields` into the tree has its new title already and must not be met as a root. Elements without a title
//     are looked through by their `Kids`.
//  2. On a long array the index by full name finds the last such element. It stands beside the search and answers the
//     same, since a true sibling's full name is the place's name and its title.
// SPDX-License-Identifier: MIT
#include "model/LexFieldParts.h"

#include <cstring>
#include <unordered_set>

#include "Common/src/miLexType.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "base/Limits.h"
#include "model/DMField.h"
#include "model/FieldArray.h"
#include "model/FieldName.h"
#include "objects/LexUtil.h"

namespace {

/** Below this length there is no index; the search is as quick. */
constexpr std::int32_t s_longArray = 64;

/** The titles stand for the same part of a name, whatever their encodings. */
bool SameTitle(LexObj a, LexObj b) {
    if (TSLexObjEquivalent(a, b)) return true;
    FieldName first, second;
    return FieldTitleText(a, &first) && FieldTitleText(b, &second) && first.length == second.length &&
           std::memcmp(first.text, second.text, first.length) == 0;
}

/** The search along an array. A holder of kids is entered once, however often it is listed. */
class TitleSearch {
public:
    explicit TitleSearch(LexObj title) : title_(title) {}

    /** True when the search is over; `*field` is then the result. `place` is what holds the array. */
    bool In(LexObj array, LexObj place, int depth, DMField **field) {
        if (depth > TSLimitOf(TSLimitFieldDepth) || !IsArray(array)) return false;
        for (std::int32_t i = LexArrayLength(array) - 1; i >= 0; --i) {
            const LexObj element = LexArrayGet(array, i);
            if (!IsDict(element)) continue;
            const LexObj own = LexDictGet(element, T_K);
            if (IsString(own)) {
                if (!SameTitle(own, title_) || !IsTrueSibling(element, place)) continue;
                *field = TSDMFieldFromLexObj(element);
                return true;
            }
            const LexObj kids = TSLexDictGetOfType(element, Kids_K, LexArray);
            const bool enters = IsArray(kids) && entered_.insert(kids.node).second;
            if (enters && In(kids, element, depth + 1, field)) return true;
        }
        return false;
    }

private:
    static bool IsTrueSibling(LexObj element, LexObj place) {
        return LexObjEqual(TSLexDictGetOfType(element, parent_K, LexDict), place);
    }

    LexObj title_;
    std::unordered_set<KRWord> entered_;
};

KRBool TakeKey(LexObj key, LexObj, void *clientData) {
    static_cast<std::vector<KRAtom> *>(clientData)->push_back(LexNameValue(key));
    return true;
}

} // namespace

DMField *FieldSiblingFind(DMDoc doc, DMField *at, LexObj array, LexObj title, const std::string &fullName) {
    if (!IsArray(array)) return nullptr;
    if (LexArrayLength(array) >= s_longArray) {
        LexObj last = LexNullObj;
        const KRErrorCode code = Protect([&] { last = FieldArrayLastNamed(array, fullName); });
        if (IsDict(last) && SameTitle(LexDictGet(last, T_K), title)) return TSDMFieldFromLexObj(last);
        // What is deeper down, below elements without a title, has a record under this name if it is a field.
        if (code == KRErrNone && !TSDMDocGetDMFieldFromName(doc, fullName.c_str())) return nullptr;
    }
    DMField *field = nullptr;
    TitleSearch(title).In(array, at ? at->obj : LexNullObj, /*depth*/ 0, &field);
    return field;
}

std::vector<KRAtom> LexDictKeys(LexObj dict) {
    std::vector<KRAtom> keys;
    if (TSLexObjIsDictLike(dict)) LexObjEnum(dict, &TakeKey, &keys);
    return keys;
}
