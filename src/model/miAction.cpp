// Actions by key, and their script text.
// SPDX-License-Identifier: MIT
#include "model/miAction.h"

#include "Common/src/miEStr.h"
#include "Common/src/miLexType.h"
#include "DocModelHFT.h"
#include "KernelSupportHFT.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "model/DMField.h"
#include "objects/LexCopy.h"
#include "objects/LexUtil.h"

namespace {

/** Script text from this length on goes into a compressed stream. */
constexpr std::size_t s_shortestStream = 257;

/** Events of a field, not of a widget: inherited, and shared by the widgets of a group. */
bool IsFieldEvent(KRAtom key) {
    return key == Format_K || key == Keystroke_K || key == Validate_K || key == Calculate_K;
}

bool IsMainAction(KRAtom key, bool isAnnot) {
    return isAnnot && key == MouseUp_K;
}

bool Known(LexObj obj, KRAtom key) {
    return TSLexObjIsDictLike(obj) && LexDictKnown(obj, key);
}

void RemoveKnown(LexObj obj, KRAtom key) {
    if (LexDictKnown(obj, key)) LexDictRemove(obj, key);
}

LexObj FindAction(LexObj obj, KRAtom key, bool isAnnot) {
    if (!TSLexObjIsDictLike(obj)) return LexNullObj;
    if (!IsMainAction(key, isAnnot)) {
        const LexObj events = LexDictGet(obj, AA_K);
        return TSLexObjIsDictLike(events) ? LexDictGet(events, key) : LexNullObj;
    }
    return LexDictGet(obj, LexDictKnown(obj, Dest_K) ? Dest_K : A_K);
}

LexObj PageObj(DMPage page) {
    return DMPageGetLexObj(page);
}

/** Script text as an object of `doc`. A long one is compressed: scripts of forms run to hundreds of lines. */
LexObj ScriptObj(LexDoc doc, const EStr *text) {
    const char *bytes = EStrGetBytes(text);
    const std::size_t length = EStrGetLen(text);
    if (length < s_shortestStream)
        return LexNewString(doc, /*indirect*/ false, bytes, static_cast<std::int32_t>(length));
    const LexObj attributes = LexNewDict(doc, /*indirect*/ false, 2);
    LexArrayPut(TSLexArrayEnsure(attributes, Filter_K, /*indirect*/ false), 0,
                LexNewName(doc, /*indirect*/ false, FlateDecode_K));
    const KRStm source = KRMemStmOpen(bytes, static_cast<std::int64_t>(length));
    LexObj stream = LexNullObj;
    const KRErrorCode code = Protect([&] {
        stream = LexNewStream(doc, /*indirect*/ true, source, 0, /*encode*/ true, attributes, LexNullObj,
                              static_cast<std::int32_t>(length));
    });
    KRStmClose(source);
    RaiseIf(code);
    return stream;
}

} // namespace

bool TSLexObjHasAction(LexObj obj, KRAtom key, bool isAnnot) {
    bool has = false;
    const KRErrorCode code = Protect([&] {
        if (key == KRAtomNull)
            has = Known(obj, Dest_K) || Known(obj, A_K) || Known(obj, AA_K);
        else if (IsMainAction(key, isAnnot))
            has = Known(obj, Dest_K) || Known(obj, A_K);
        else
            has = Known(obj, AA_K) && Known(LexDictGet(obj, AA_K), key);
    });
    return code == KRErrNone && has;
}

DMAction TSLexObjGetAction(LexObj obj, KRAtom key, bool isAnnot) {
    DMAction action{0, 0};
    const KRErrorCode code = Protect([&] {
        const LexObj found = FindAction(obj, key, isAnnot);
        if (!IsNull(found)) action = DMActionFromLexObj(found);
    });
    return code == KRErrNone ? action : DMAction{0, 0};
}

void TSLexObjSetAction(LexObj obj, KRAtom key, DMAction action, bool isAnnot) {
    const LexObj value = DMActionGetLexObj(action);
    const std::int32_t type = LexObjGetType(value);
    if (!IsMainAction(key, isAnnot)) {
        const LexObj events = TSLexDictEnsure(obj, AA_K);
        if (type == LexNull)
            RemoveKnown(events, key);
        else
            LexDictPut(events, key, value);
    } else if (type != LexNull) {
        LexDictPut(obj, type == LexDict ? A_K : Dest_K, value);
    } else {
        RemoveKnown(obj, Dest_K);
        RemoveKnown(obj, A_K);
    }
}

bool TSDMPageHasAction(DMPage page, KRAtom key) {
    return TSLexObjHasAction(PageObj(page), key, /*isAnnot*/ false);
}

DMAction TSDMPageGetAction(DMPage page, KRAtom key) {
    return TSLexObjGetAction(PageObj(page), key, /*isAnnot*/ false);
}

void TSDMPageSetAction(DMPage page, KRAtom key, DMAction action) {
    TSLexObjSetAction(PageObj(page), key, action, /*isAnnot*/ false);
}

bool TSDMAnnotHasAction(DMAnnot annot, KRAtom key) {
    return TSLexObjHasAction(DMAnnotGetLexObj(annot), key, /*isAnnot*/ true);
}

DMAction TSDMAnnotGetAction(DMAnnot annot, KRAtom key) {
    return TSLexObjGetAction(DMAnnotGetLexObj(annot), key, /*isAnnot*/ true);
}

void TSDMAnnotSetAction(DMAnnot annot, KRAtom key, DMAction action) {
    TSLexObjSetAction(DMAnnotGetLexObj(annot), key, action, /*isAnnot*/ true);
}

bool TSDMFieldHasAction(DMField *field, KRAtom key) {
    return TSLexObjHasAction(TSDMFieldGetLexObj(field), key, /*isAnnot*/ false);
}

DMAction TSDMFieldGetAction(DMField *field, KRAtom key) {
    DMAction action{0, 0};
    for (DMField *at = field; at; at = at->parent) {
        action = TSLexObjGetAction(TSDMFieldGetLexObj(at), key, /*isAnnot*/ false);
        if (!IsFieldEvent(key) || !IsNull(DMActionGetLexObj(action))) break;
    }
    return action;
}

void TSDMFieldSetAction(DMField *field, KRAtom key, DMAction action) {
    if (!TSDMFieldIsValid(field)) return;
    const bool ofGroup = !field->firstChild && field->parent && field->parent->name == field->name;
    const DMField *holder = ofGroup && IsFieldEvent(key) ? field->parent : field;
    TSLexObjSetAction(holder->obj, key, action, /*isAnnot*/ true);
}

bool TSDMActionGetJavaScript(DMAction action, EStr *text) {
    EStrSetBytes(text, nullptr, EStrHost);
    bool isDict = false;
    const KRErrorCode code = Protect([&] {
        const LexObj dict = DMActionGetLexObj(action);
        isDict = IsDict(dict);
        if (!isDict || !LexDictKnown(dict, JS_K)) return;
        EStrSetBytesFromLexObj(text, LexDictGet(dict, JS_K));
        EStrSetEncoding(text, EStrHost);
    });
    return isDict && code == KRErrNone;
}

void TSDMActionSetJavaScript(DMAction action, EStr *text) {
    const EStrPtr present(EStrNewImpl(nullptr, EStrHost));
    const LexObj dict = DMActionGetLexObj(action);
    if (!IsDict(dict)) return;
    TSDMActionGetJavaScript(action, present.get());
    if (EStrCmp(present.get(), text) == 0) return;
    const KRErrorCode code = Protect([&] {
        EStrSetEncoding(text, EStrText);
        LexDictPut(dict, JS_K, ScriptObj(LexObjGetDoc(dict), text));
    });
    EStrSetEncoding(text, EStrHost);
    RaiseIf(code);
}

DMAction TSDMActionNewJavaScript(DMDoc doc, EStr *text) {
    if (!text) return DMAction{0, 0};
    const LexDoc lexDoc = DMDocGetLexDoc(doc);
    const LexObj dict = LexNewDict(lexDoc, /*indirect*/ true, 2);
    LexDictPut(dict, S_K, LexNewName(lexDoc, /*indirect*/ false, JavaScript_K));
    const DMAction action = DMActionFromLexObj(dict);
    TSDMActionSetJavaScript(action, text);
    return action;
}

KRBool TSCopyDocScripts(LexObj key, LexObj value, void *destDoc) {
    const auto doc = static_cast<DMDoc>(destDoc);
    const DMNameTree tree = DMDocCreateNameTree(doc, JavaScript_K);
    std::int32_t length = 0;
    const char *bytes = LexStringValue(key, &length);
    LexObj present = LexNullObj;
    if (!DMNameTreeGet(tree, bytes, length, &present))
        DMNameTreePut(tree, bytes, length, TSLexObjCopy(DMDocGetLexDoc(doc), value, /*shallow*/ false));
    return true;
}
