// The content store as a form XObject, and back.
// SPDX-License-Identifier: MIT
#include "appearance/miCStore.h"
#include "appearance/miCStoreParts.h"

#include "Common/src/miLexType.h"
#include "Common/src/miStream.h"
#include "Common/src/miUtils.h"
#include "KernelSupportHFT.h"
#include "LexHFT.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "objects/FontMgr.h"
#include "objects/LexUtil.h"

namespace {

LexObj NewName(LexDoc doc, KRAtom name) {
    return LexNewName(doc, /*indirect*/ false, name);
}

LexObj NewDictUnder(LexDoc doc, LexObj dict, KRAtom key) {
    LexObj made = LexNewDict(doc, /*indirect*/ false, 2);
    LexDictPut(dict, key, made);
    return made;
}

LexObj NewStreamOfText(LexDoc doc, const CStore *store) {
    LexObj attributes = LexNullObj;
    if (store->length > CStorePlainLimit) attributes = CStoreFlateAttributes(doc);
    KRStm source = KRMemStmOpen(store->text, store->length);
    LexObj stream = LexNullObj;
    const KRErrorCode code = Protect([&] {
        stream = LexNewStream(doc, /*indirect*/ true, source, /*start*/ 0, /*encode*/ true, attributes, LexNullObj,
                              store->length);
    });
    KRStmClose(source);
    RaiseIf(code);
    return stream;
}

// False when the document cannot have the font: an appearance that names a font it lacks shows nothing.
bool PutFont(LexDoc doc, const CStore *store, LexObj resources, LexObj procSet) {
    LexObj fontDict = TSLexDocGetTextFont(doc, store->metrics.font);
    if (!IsDict(fontDict)) return false;
    LexObj given = LexDictGet(fontDict, Name_K);
    const KRAtom name = IsName(given) ? LexNameValue(given) : MapBaseFontToNameFont(FontDictGetBaseFontName(fontDict));
    LexDictPut(NewDictUnder(doc, resources, Font_K), name, fontDict);
    LexArrayPut(procSet, 1, NewName(doc, Text_K));
    return true;
}

// The order of the keys is the order in which a reader of the file meets them.
bool PutDictionary(LexDoc doc, const CStore *store, LexObj stream) {
    LexObj dict = LexStreamDict(stream);
    LexDictPut(dict, Subtype_K, NewName(doc, Form_K));
    TSLexPutRect(doc, dict, BBox_K, &store->bbox);
    if (store->rotation != 0) {
        KRFixedMatrix matrix;
        CStoreGetMatrix(store, &matrix);
        TSLexPutMatrix(doc, dict, Matrix_K, &matrix);
    }
    LexObj resources = NewDictUnder(doc, dict, Resources_K);
    LexObj procSet = LexNewArray(doc, /*indirect*/ false, 2);
    LexDictPut(resources, ProcSet_K, procSet);
    LexArrayPut(procSet, 0, NewName(doc, PDF_K));
    const bool usesFont = (store->flags & CStoreUsesFont) && store->metrics.font != 0;
    if (usesFont && !PutFont(doc, store, resources, procSet)) return false;
    if ((store->flags & CStoreUsesXObject) && !IsNull(store->xobject))
        LexDictPut(NewDictUnder(doc, resources, XObject_K), FRM_K, store->xobject);
    return true;
}

void LoadText(CStore *store, LexObj stream) {
    const std::string text = miStreamData(stream);
    store->text = static_cast<char *>(KRSureMalloc(text.size() + 1));
    text.copy(store->text, text.size());
    store->text[text.size()] = '\0';
    store->length = static_cast<std::int32_t>(text.size());
    TSLexGetRect(LexStreamDict(stream), BBox_K, &store->bbox);
}

} // namespace

LexObj CStoreFlateAttributes(LexDoc doc) {
    LexObj attributes = LexNewDict(doc, /*indirect*/ false, 1);
    LexObj filters = LexNewArray(doc, /*indirect*/ false, 1);
    LexArrayPut(filters, 0, NewName(doc, FlateDecode_K));
    LexDictPut(attributes, Filter_K, filters);
    return attributes;
}

LexObj CStoreSave(LexDoc doc, const CStore *store) {
    LexObj result = LexNullObj;
    if (store->length == 0 || store->text[0] == '\0') return result;
    Protect([&] {
        LexObj stream = NewStreamOfText(doc, store);
        if (PutDictionary(doc, store, stream)) result = stream;
    });
    return result;
}

void CStoreLoad(CStore *store, LexObj stream) {
    CStoreClear(store);
    *store = {};
    if (IsStream(stream)) Protect([&] { LoadText(store, stream); });
}
