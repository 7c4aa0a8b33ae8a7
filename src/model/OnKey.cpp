// The on-state, read from the appearance or held aside while that is rebuilt.
// SPDX-License-Identifier: MIT
#include "model/OnKey.h"

#include <algorithm>

#include "Common/src/miLexType.h"
#include "Common/unix/mdMessages.h"
#include "CoreHFT.h"
#include "DocModelHFT.h"
#include "KernelSupportHFT.h"
#include "LexHFT.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "objects/AnnotUtl.h"
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

bool IsBlank(char c) {
    return c == ' ' || c == '\n' || c == '\r' || c == '\t' || c == '\f' || c == '\0';
}

/** The decoded content begins with anything but blanks. */
bool HasContent(LexObj stream) {
    const KRStm content = LexStreamOpenStm(stream, LexStreamDecoded);
    char block[256];
    std::int32_t got = 0;
    bool found = false;
    const KRErrorCode code = Protect([&] {
        while (!found && (got = KRStmRead(block, 1, sizeof block, content)) > 0)
            found = !std::all_of(block, block + got, &IsBlank);
    });
    KRStmClose(content);
    return found && code == KRErrNone;
}

bool DrawsSomething(LexObj face) {
    if (!IsStream(face)) return false;
    KRFixedRect box;
    TSLexGetRect(LexStreamDict(face), BBox_K, &box);
    if (box.left == box.right || box.bottom == box.top) return false;
    bool draws = false;
    const KRErrorCode code = Protect([&] { draws = HasContent(face); });
    return draws && code == KRErrNone;
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

bool WButtonHasUsableFaces(DMAnnot annot) {
    const KRAtom key = WButtonGetOnKeyEx(annot);
    const LexObj states = TSDMAnnotGetAppearance(annot, FaceNormal_K, KRAtomNull);
    return key != KRAtomNull && IsDict(states) && DrawsSomething(LexDictGet(states, key));
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
