// The on-state, read from the appearance or held aside while that is rebuilt.
// SPDX-License-Identifier: MIT
#include "model/OnKey.h"

#include "Common/src/miLexType.h"
#include "Common/unix/mdMessages.h"
#include "CoreHFT.h"
#include "DocModelHFT.h"
#include "base/FormStr.h"
#include "objects/LexUtil.h"

namespace {

/** Catalogue number of the on-state of a button that has no appearance yet. */
constexpr std::int32_t s_defaultOnKey = 125;

KRBool TakeFirstOnKey(LexObj key, LexObj, void *clientData) {
    const KRAtom state = LexNameValue(key);
    if (state == Off_K) return true;
    *static_cast<KRAtom *>(clientData) = state;
    return false;
}

} // namespace

KRAtom WButtonGetOnKeyEx(DMAnnot annot) {
    const LexObj faces = TSLexDictGetOfType(DMAnnotGetLexObj(annot), Appearance_K, LexDict);
    const LexObj states = TSLexDictGetOfType(faces, FaceNormal_K, LexDict);
    KRAtom key = KRAtomNull;
    if (IsDict(states)) LexObjEnum(states, &TakeFirstOnKey, &key);
    return key;
}

KRAtom WButtonGetOnKey(DMAnnot annot) {
    const LexObj kept = TSLexDictGetOfType(DMAnnotGetLexObj(annot), TempOn_K, LexName);
    if (IsName(kept)) return LexNameValue(kept);
    const KRAtom key = WButtonGetOnKeyEx(annot);
    if (key != KRAtomNull) return key;
    char text[64] = "";
    mdGetString(s_defaultOnKey, text, sizeof text);
    return KRAtomFromString(text);
}

void WButtonSetOnKey(DMAnnot annot, KRAtom key) {
    if (key != KRAtomNull) TSLexDictStore<LexName>(DMAnnotGetLexObj(annot), TempOn_K, /*indirect*/ false, key);
}

void WButtonCleanUpKeys(DMAnnot annot) {
    const LexObj obj = DMAnnotGetLexObj(annot);
    if (IsDict(obj)) LexDictRemove(obj, TempOn_K);
}

KRAtom WButtonGetOffKey() {
    return Off_K;
}
