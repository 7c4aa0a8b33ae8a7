// What a document holds that is void, or out of date, once the file is changed and written anew.
// SPDX-License-Identifier: MIT
#include "model/DocSeals.h"

#include "Common/src/miLexType.h"
#include "CoreHFT.h"
#include "DocModelHFT.h"
#include "LexHFT.h"
#include "base/FormStr.h"
#include "model/DMField.h"
#include "objects/LexUtil.h"
#include "objects/Tessella.h"

namespace {

/** Bit of the form's `SigFlags`: the file holds signatures, and is to be changed only by appending to it. */
constexpr std::int32_t s_appendOnly = 2;

bool Known(LexObj dict, const char *key) {
    return IsDict(dict) && LexDictKnown(dict, KRAtomFromString(key));
}

/** Stops at the first signature that covers bytes of the file. */
KRBool stopAtSignature(DMField *field, void *isSigned) {
    if (TSDMFieldGetType(field) != Sig_K || !Known(TSDMFieldGetObj(field, value_K), "ByteRange")) return true;
    *static_cast<bool *>(isSigned) = true;
    return false;
}

bool IsSigned(DMDoc doc, LexObj form) {
    const LexObj flags = TSLexDictGetOfType(form, KRAtomFromString("SigFlags"), LexInteger);
    if (IsInteger(flags) && LexIntegerValue(flags) & s_appendOnly) return true;
    bool isSigned = false;
    TSDMDocEnumDMFields(doc, /*terminalOnly*/ true, /*firstOfNameOnly*/ true, &stopAtSignature, &isSigned);
    return isSigned;
}

} // namespace

std::uint32_t TSDMDocGetSeals(DMDoc doc) {
    if (!doc) return 0;
    const LexObj form = TSDMDocGetTessella(doc);
    const LexObj permissions =
        TSLexDictGetOfType(LexDocGetRoot(DMDocGetLexDoc(doc)), KRAtomFromString("Perms"), LexDict);
    std::uint32_t seals = 0;
    if (IsSigned(doc, form)) seals |= TSSealSignature;
    if (Known(permissions, "DocMDP")) seals |= TSSealCertificate;
    if (Known(permissions, "UR3") || Known(permissions, "UR")) seals |= TSSealUsageRights;
    if (Known(form, "XFA")) seals |= TSSealXFA;
    return seals;
}
