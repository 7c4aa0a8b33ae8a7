// EStr: to and from PDF objects.
// SPDX-License-Identifier: MIT
#include "Common/src/miEStr.h"

#include <string>

#include "Common/src/miLexType.h"
#include "Common/src/miStream.h"
#include "Common/src/miUtils.h"
#include "KernelSupportHFT.h"
#include "LexHFT.h"
#include "PIFrame.h"

namespace {

void SetFromString(EStr *str, LexObj obj) {
    std::int32_t length = 0;
    const char *bytes = LexStringValue(obj, &length);
    EStrSetBytesSized(str, bytes, static_cast<std::size_t>(length), EStrText);
}

void SetFromStream(EStr *str, LexObj obj) {
    // A few bytes over the limit, so that the cut sees whole characters.
    const std::string data = miStreamData(obj, EStrMaxLength + 2);
    EStrSetBytesSized(str, data.data(), data.size(), EStrText);
}

void SetFromFixed(EStr *str, LexObj obj) {
    char text[34];
    KRFixedToCString(LexFixedValue(obj), text, sizeof text, /*precision*/ 4);
    EStrSetBytes(str, text, EStrPDFDoc);
}

} // namespace

void EStrSetBytesFromLexObj(EStr *str, LexObj obj) {
    switch (LexObjGetType(obj)) {
    case LexString:
        return SetFromString(str, obj);
    case LexName:
        return EStrSetBytes(str, KRAtomGetString(LexNameValue(obj)), EStrPDFDoc);
    case LexInteger:
        EStrThisIsTheEncoding(str, EStrPDFDoc);
        return EStrPrintf(str, "%ld", static_cast<long>(LexIntegerValue(obj)));
    case LexFixed:
        return SetFromFixed(str, obj);
    case LexBoolean:
        return EStrSetBytes(str, LexBooleanValue(obj) ? "true" : "false", EStrPDFDoc);
    case LexDict:
        return EStrSetBytes(str, "<<dict>>", EStrPDFDoc);
    case LexArray:
        return EStrSetBytes(str, "[array]", EStrPDFDoc);
    case LexStream:
        return SetFromStream(str, obj);
    default:
        return EStrSetBytes(str, nullptr, EStrPDFDoc);
    }
}

void EStrLexDictPut(LexObj dict, KRAtom key, const EStr *str) {
    if (!str || key == KRAtomNull) return;
    if (!IsDict(dict)) KRRaise(KRErrNoMemory);
    const EStrPtr text(EStrCopySetEncoding(str, EStrText));
    LexDictPut(dict, key, LexNewString(LexObjGetDoc(dict), /*indirect*/ false, text->bytes, text->length));
}

EStr *EStrLexDictGet(LexObj dict, KRAtom key) {
    EStrPtr str;
    const KRErrorCode code = Protect([&] {
        const LexObj value = LexDictGet(dict, key);
        if (IsString(value)) str.reset(EStrNewFromLexObjImpl(value));
    });
    return code == KRErrNone ? str.release() : nullptr;
}
