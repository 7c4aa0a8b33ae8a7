// An annotation's highlight, appearance and state, and the walk over all annotations.
// SPDX-License-Identifier: MIT
#include "objects/AnnotUtl.h"

#include "Common/src/miLexType.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "objects/LexUtil.h"

namespace {

/** Runs `change` between the two announcements of a change of `key`; a failure is announced and raised again. */
template <class Change>
void AnnouncedChange(DMAnnot annot, KRAtom key, Change &&change) {
    DMAnnotNotifyWillChange(annot, key);
    const KRErrorCode code = Protect(change);
    DMAnnotNotifyDidChange(annot, key, code);
    RaiseIf(code);
}

LexObj AppearanceDict(DMAnnot annot) {
    return TSLexDictGetOfType(DMAnnotGetLexObj(annot), Appearance_K, LexDict);
}

/** A face's stream or dictionary of states. */
LexObj Face(DMAnnot annot, KRAtom mode) {
    const LexObj appearance = AppearanceDict(annot);
    if (!IsDict(appearance)) return LexNullObj;
    const LexObj face = LexDictGet(appearance, mode);
    return TSLexObjIsDictLike(face) ? face : LexNullObj;
}

void PutAppearance(DMAnnot annot, KRAtom mode, KRAtom state, LexObj appearance) {
    LexObj target = TSLexDictEnsure(DMAnnotGetLexObj(annot), Appearance_K);
    if (state != KRAtomNull) target = TSLexDictEnsure(target, mode);
    LexDictPut(target, state != KRAtomNull ? state : mode, appearance);
}

void RemoveAppearance(DMAnnot annot, KRAtom mode, KRAtom state) {
    const LexObj appearance = AppearanceDict(annot);
    if (!IsDict(appearance)) return;
    if (state == KRAtomNull) {
        LexDictRemove(appearance, mode);
        return;
    }
    const LexObj states = TSLexDictGetOfType(appearance, mode, LexDict);
    if (IsDict(states)) LexDictRemove(states, state);
}

struct PageHolder {
    DMPage page;
    ~PageHolder() {
        DMPageRelease(page);
    }
};

/** False when the walk is to end. */
bool EnumPageAnnots(DMDoc doc, std::int32_t index, KRAtom subtype, TSAnnotEnumProc proc, void *data) {
    const PageHolder holder{DMDocAcquirePage(doc, index)};
    for (std::int32_t i = DMPageGetNumAnnots(holder.page) - 1; i >= 0; --i) {
        const DMAnnot annot = DMPageGetAnnot(holder.page, i);
        if (!DMAnnotIsValid(annot) || DMAnnotGetSubtype(annot) != subtype) continue;
        if (!proc(annot, holder.page, data)) return false;
    }
    return true;
}

} // namespace

KRAtom TSDMAnnotGetHighlight(DMAnnot annot) {
    KRAtom highlight = Invert_K;
    TSLexDictLoad<LexName>(DMAnnotGetLexObj(annot), Highlight_K, &highlight);
    return highlight;
}

void TSDMAnnotSetHighlight(DMAnnot annot, KRAtom highlight) {
    if (TSDMAnnotGetHighlight(annot) == highlight) return;
    const LexObj dict = DMAnnotGetLexObj(annot);
    if (highlight == Invert_K)
        LexDictRemove(dict, Highlight_K);
    else
        LexDictPut(dict, Highlight_K, LexNewName(LexObjGetDoc(dict), /*indirect*/ false, highlight));
}

bool TSDMAnnotHasAppearance(DMAnnot annot, KRAtom mode, KRAtom state) {
    const LexObj dict = DMAnnotGetLexObj(annot);
    if (!TSLexObjIsDictLike(dict) || !LexDictKnown(dict, Appearance_K)) return false;
    if (mode == KRAtomNull) return true;
    const LexObj appearance = AppearanceDict(annot);
    if (!IsDict(appearance) || !LexDictKnown(appearance, mode)) return false;
    if (state == KRAtomNull) return true;
    const LexObj states = TSLexDictGetOfType(appearance, mode, LexDict);
    return IsDict(states) && LexDictKnown(states, state);
}

LexObj TSDMAnnotGetAppearance(DMAnnot annot, KRAtom mode, KRAtom state) {
    if (mode == KRAtomNull) return LexNullObj;
    const LexObj face = Face(annot, mode);
    if (state == KRAtomNull || IsStream(face)) return face;
    return TSLexDictGetOfType(face, state, LexStream);
}

void TSDMAnnotSetAppearance(DMAnnot annot, KRAtom mode, KRAtom state, LexObj appearance) {
    if (mode == KRAtomNull) {
        if (!LexDictKnown(DMAnnotGetLexObj(annot), Appearance_K)) return;
        AnnouncedChange(annot, Appearance_K, [&] { LexDictRemove(DMAnnotGetLexObj(annot), Appearance_K); });
        return;
    }
    if (LexObjEqual(TSDMAnnotGetAppearance(annot, mode, state), appearance)) return;
    AnnouncedChange(annot, Appearance_K, [&] {
        if (IsNull(appearance))
            RemoveAppearance(annot, mode, state);
        else
            PutAppearance(annot, mode, state, appearance);
    });
}

KRAtom TSDMAnnotGetState(DMAnnot annot) {
    KRAtom state = KRAtomNull;
    TSLexDictLoad<LexName>(DMAnnotGetLexObj(annot), State_K, &state);
    return state;
}

void TSDMAnnotSetState(DMAnnot annot, KRAtom state) {
    AnnouncedChange(annot, State_K, [&] {
        const LexObj dict = DMAnnotGetLexObj(annot);
        if (state == KRAtomNull)
            LexDictRemove(dict, State_K);
        else
            LexDictPut(dict, State_K, LexNewName(LexObjGetDoc(dict), /*indirect*/ false, state));
    });
}

bool TSDMDocEnumAnnots(DMDoc doc, KRAtom subtype, TSAnnotEnumProc proc, void *data) {
    bool goOn = true;
    for (std::int32_t i = DMDocGetNumPages(doc) - 1; goOn && i >= 0; --i) {
        const KRErrorCode code = Protect([&] { goOn = EnumPageAnnots(doc, i, subtype, proc, data); });
        if (code) return false;
    }
    return true;
}
