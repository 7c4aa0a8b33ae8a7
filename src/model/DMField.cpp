// What can be asked of a field's record without changing anything.
// SPDX-License-Identifier: MIT
#include "model/DMField.h"

#include "Common/src/miLexType.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "base/NameStr.h"
#include "objects/LexUtil.h"
#include "objects/Tessella.h"

bool DictIsWidget(LexObj dict) {
    KRAtom subtype = KRAtomNull;
    return TSLexDictLoad<LexName>(dict, Subtype_K, &subtype) == 0 && subtype == Widget_K;
}

bool TSDMFieldIsValid(const DMField *field) {
    return field && !(field->state & DMFieldInvalid);
}

bool TSDMFieldIsAnnot(const DMField *field) {
    return TSDMFieldIsValid(field) && DictIsWidget(field->obj);
}

bool TSDMFieldCanDisplay(const DMField *field) {
    return TSDMFieldIsAnnot(field);
}

bool TSDMFieldIsTocayo(const DMField *field) {
    if (!TSDMFieldIsValid(field) || !field->parent) return false;
    return field->parent->name == field->name && field->parent->firstChild->nextSibling;
}

LexObj TSDMFieldGetLexObj(const DMField *field) {
    return TSDMFieldIsValid(field) ? field->obj : LexNullObj;
}

const char *TSDMFieldGetName(const DMField *field) {
    return TSDMFieldIsValid(field) ? NameStrAddr(field->name) : nullptr;
}

KRAtom TSDMFieldGetType(const DMField *field) {
    return TSDMFieldIsValid(field) ? field->type : KRAtomNull;
}

LexDoc TSDMFieldGetLexDoc(const DMField *field) {
    // Also for a record that is being built: its tree is linked through here.
    return field ? LexObjGetDoc(field->obj) : nullptr;
}

DMDoc TSDMFieldGetDoc(const DMField *field) {
    const LexDoc doc = TSDMFieldIsValid(field) ? TSDMFieldGetLexDoc(field) : nullptr;
    return doc ? DMDocFromLexDoc(doc) : nullptr;
}

LexObj TSDMFieldGetTessella(const DMField *field) {
    return TSDMFieldIsValid(field) ? TessellaGetLexObj(TSLexObjGetTessella(field->obj)) : LexNullObj;
}

DMAnnot TSDMFieldGetDMAnnot(const DMField *field) {
    return TSDMFieldIsAnnot(field) ? DMAnnotFromLexObj(field->obj) : DMAnnot{};
}

DMField *TSDMFieldDrillToAnnot(DMField *field) {
    if (!TSDMFieldIsTerminal(field)) return nullptr;
    return TSDMFieldIsAnnot(field) ? field : field->firstChild;
}

DMField *TSDMAnnotGetField(DMAnnot annot) {
    const LexObj dict = DMAnnotGetLexObj(annot);
    return IsDict(dict) && DictIsWidget(dict) ? TSDMFieldFromLexObj(dict) : nullptr;
}

DMPage TSDMPageAcquireFromLexObj(LexObj page) {
    if (!IsDict(page) || !LexDictKnown(page, Type_K) || !LexObjGetDoc(page)) return nullptr;
    DMPage acquired = nullptr;
    const KRErrorCode code = Protect([&] { acquired = DMPageFromLexObj(page); });
    return code == KRErrNone ? acquired : nullptr;
}
