// Services over the host's views.
// SPDX-License-Identifier: MIT
#include "life/SCUtils.h"

#include <cstring>
#include <utility>

#include "DocModelHFT.h"
#include "KernelSupportHFT.h"
#include "PIFrame.h"
#include "PIMain.h"
#include "ScreenViewHFT.h"
#include "base/FormStr.h"
#include "model/WidgetReg.h"
#include "model/WidgetType.h"
#include "objects/LexUtil.h"

namespace {

/** Side of a corner handle in device units. */
constexpr std::int16_t s_handleSize = 6;

/** What stands in for a view: only the last word is ever looked at. */
struct DocShell {
    KRWord reserved[7];
    DMDoc doc;
};

struct ViewSearch {
    LexDoc lexDoc;
    SCDoc found;
};

KRBool StopAtView(SCDoc view, void *clientData) {
    auto *search = static_cast<ViewSearch *>(clientData);
    const DMDoc doc = SCDocGetDMDoc(view);
    if (!doc || DMDocGetLexDoc(doc) != search->lexDoc) return true;
    search->found = view;
    return false;
}

/** Device coordinates wrap as 16-bit ones do. */
std::int16_t Offset(std::int16_t value, int delta) {
    return static_cast<std::int16_t>(value + delta);
}

KRFixed FixedOfShort(std::int16_t value) {
    return KRFixedFromInt(value);
}

std::int16_t RoundToShort(KRFixed value) {
    return static_cast<std::int16_t>((static_cast<std::int64_t>(value) + 0x8000) >> 16);
}

KRFixed RoundToWhole(KRFixed value) {
    return KRFixedFromInt(RoundToShort(value));
}

DMAnnot SelectedAnnot(SCDoc doc) {
    const auto *selected = static_cast<const DMAnnot *>(SCDocGetSelection(doc));
    return selected ? *selected : DMAnnot{0, 0};
}

KRAtom SelectedAnnotSubtype(SCDoc doc) {
    const DMAnnot selected = SelectedAnnot(doc);
    return DMAnnotIsValid(selected) ? DMAnnotGetSubtype(selected) : KRAtomNull;
}

SCWidgetHandler *HandlerOf(DMAnnot annot) {
    return TSSCAppGetWidgetHandlerByName(TSDMWidgetGetSubType(annot));
}

bool PageHasAnnot(DMPage page, DMAnnot annot) {
    const std::int32_t count = DMPageGetNumAnnots(page);
    for (std::int32_t i = 0; i < count; ++i)
        if (DMAnnotEqual(DMPageGetAnnot(page, i), annot)) return true;
    return false;
}

/** Writes `P` and takes back the flags that this raised: a mended entry is no change of the user's. */
void MendPageEntry(DMPage page, DMAnnot annot) {
    const DMDoc doc = DMPageGetDoc(page);
    const std::uint32_t before = DMDocGetFlags(doc);
    LexDictPut(DMAnnotGetLexObj(annot), PageFromAnnot_K, DMPageGetLexObj(page));
    DMDocClearFlags(doc, before ^ DMDocGetFlags(doc));
}

/** Pages from `first` to `last` until one is the annotation's; the last one tried otherwise. `*found` is acquired. */
void FindPage(SCPageView view, DMAnnot annot, std::int32_t first, std::int32_t last, DMPage *found) {
    const DMDoc doc = SCDocGetDMDoc(SCPageViewGetDoc(view));
    const LexObj pageEntry = LexDictGet(DMAnnotGetLexObj(annot), PageFromAnnot_K);
    for (std::int32_t number = first; number <= last; ++number) {
        if (*found) DMPageRelease(std::exchange(*found, nullptr));
        SCPageViewGetVisibleAnnotPage(view, number);
        *found = DMDocAcquirePage(doc, number);
        if (LexObjEqual(DMPageGetLexObj(*found), pageEntry)) return;
        if (!PageHasAnnot(*found, annot)) continue;
        MendPageEntry(*found, annot);
        return;
    }
}

} // namespace

SCDoc TSLexDocGetSCDoc(LexDoc doc) {
    ViewSearch search{doc, nullptr};
    SCAppEnumDocs(&StopAtView, &search);
    return search.found;
}

bool TSSCLanguageIsJPN() {
    const char *language = SCAppGetLanguage();
    return language && std::strcmp(language, "JPN") == 0;
}

SCDoc TSMallocSCDocShell() {
    void *shell = KRmalloc(sizeof(DocShell));
    if (!shell) KRRaise(KRErrNoMemory);
    std::memset(shell, 0, sizeof(DocShell));
    return static_cast<SCDoc>(shell);
}

void TSSCDocShellSetDMDoc(SCDoc shell, DMDoc doc) {
    static_cast<DocShell *>(static_cast<void *>(shell))->doc = doc;
}

void TSFreeSCDocShell(SCDoc shell) {
    KRfree(shell);
}

void TSSCRectToFixedRect(const SCRect *rect, KRFixedRect *result) {
    *result = {FixedOfShort(rect->left), FixedOfShort(rect->top), FixedOfShort(rect->right),
               FixedOfShort(rect->bottom)};
}

void TSFixedRectRoundToSCRect(const KRFixedRect *rect, SCRect *result) {
    *result = {RoundToShort(rect->left), RoundToShort(rect->top), RoundToShort(rect->right),
               RoundToShort(rect->bottom)};
}

bool TSSCRectPointInRect(const SCRect *rect, std::int16_t x, std::int16_t y) {
    return rect->left <= x && x <= rect->right && rect->top <= y && y <= rect->bottom;
}

void SCRectGetHandles(const SCRect *rect, SCRect *topLeft, SCRect *topRight, SCRect *bottomRight, SCRect *bottomLeft) {
    const std::int16_t leftIn = Offset(rect->left, s_handleSize);
    const std::int16_t rightIn = Offset(rect->right, -s_handleSize);
    const std::int16_t topIn = Offset(rect->top, s_handleSize);
    const std::int16_t bottomIn = Offset(rect->bottom, -s_handleSize);
    *topLeft = {rect->left, rect->top, leftIn, topIn};
    *topRight = {rightIn, rect->top, rect->right, topIn};
    *bottomRight = {rightIn, bottomIn, rect->right, rect->bottom};
    *bottomLeft = {rect->left, bottomIn, leftIn, rect->bottom};
}

std::int32_t TSSCRectHitAHandle(const SCRect *rect, std::int16_t x, std::int16_t y) {
    SCRect handles[4];
    SCRectGetHandles(rect, &handles[0], &handles[1], &handles[2], &handles[3]);
    for (std::int32_t i = 0; i < 4; ++i)
        if (TSSCRectPointInRect(&handles[i], x, y)) return i + 1;
    return 0;
}

void TSSCPageViewSetAnnotRect(SCPageView view, DMAnnot annot, const SCRect *rect) {
    // A widget that cannot be moved stays where it is.
    (void)Protect([&] {
        KRFixedRect pageRect;
        SCPageViewDeviceRectToPage(view, rect, &pageRect);
        DMAnnotSetRect(annot, &pageRect);
    });
}

void TSSCPageViewSnapRect(SCPageView view, const SCRect *rect, KRFixedRect *result) {
    SCPageViewDeviceRectToPage(view, rect, result);
    *result = {RoundToWhole(result->left), RoundToWhole(result->top), RoundToWhole(result->right),
               RoundToWhole(result->bottom)};
    SCPageViewSnapRect(view, result);
}

void TSSCPageViewInvalidateAnnot(SCPageView view, DMAnnot annot, KRFixed lineWidth, std::uint32_t flags) {
    SCRect rect;
    SCPageViewGetAnnotRect(view, annot, &rect);
    if (flags & TSInvalidateRect) SCPageViewInvalidateRect(view, &rect);
    if (flags & TSInvalidateOutline) {
        const int width = RoundToShort(KRFixedMul(SCPageViewGetZoom(view), lineWidth));
        const SCRect edges[4] = {{rect.left, rect.top, rect.right, Offset(rect.top, width)},
                                 {rect.left, Offset(rect.bottom, -width), rect.right, rect.bottom},
                                 {rect.left, rect.top, Offset(rect.left, width), rect.bottom},
                                 {Offset(rect.right, -width), rect.top, rect.right, rect.bottom}};
        for (const SCRect &edge : edges) SCPageViewInvalidateRect(view, &edge);
    }
    if (flags & TSInvalidateHandles) {
        SCRect handles[4];
        SCRectGetHandles(&rect, &handles[0], &handles[1], &handles[2], &handles[3]);
        for (const SCRect &handle : handles) SCPageViewInvalidateRect(view, &handle);
    }
}

void TSSCPageViewFrameAnnot(SCPageView view, DMAnnot annot, bool handles) {
    SCRect rect;
    SCPageViewGetAnnotRect(view, annot, &rect);
    SCPageViewBeginOperation(view);
    const KRErrorCode code = Protect([&] {
        SCPageViewDrawRectOutline(view, &rect, /*width*/ 1, /*dashes*/ nullptr, /*dashCount*/ 0);
        if (!handles) return;
        SCRect corners[4];
        SCRectGetHandles(&rect, &corners[0], &corners[1], &corners[2], &corners[3]);
        for (const SCRect &corner : corners) SCPageViewDrawRect(view, &corner);
    });
    SCPageViewEndOperation(view);
    RaiseIf(code);
}

DMPage TSSCPageViewGetDMPageFromAnnot(SCPageView view, DMAnnot annot) {
    const std::int32_t current = SCPageViewGetPageNum(view);
    DMPage page = nullptr;
    const KRErrorCode code = Protect([&] {
        FindPage(view, annot, SCPageViewGetFirstVisiblePageNum(view), SCPageViewGetLastVisiblePageNum(view), &page);
    });
    SCPageViewGetVisibleAnnotPage(view, current);
    if (code && page) DMPageRelease(page);
    RaiseIf(code);
    return page;
}

bool TSSCDocIsWidgetFocus(SCDoc doc, DMAnnot annot) {
    return TSSCWidgetHandlerIsFocus(HandlerOf(annot), annot, SCDocGetPageView(doc));
}

void TSSCDocFocusWidget(SCDoc doc, DMAnnot annot) {
    const bool movie = SCDocGetSelectionType(doc) == Annotation_K && SelectedAnnotSubtype(doc) == Movie_K;
    if (movie && TSDMWidgetGetSubType(annot) == Button_K) return;
    TSSCWidgetHandlerFocus(HandlerOf(annot), annot, SCDocGetPageView(doc));
}

bool TSSCDocIsWidgetSelected(SCDoc doc) {
    const KRAtom type = SCDocGetSelectionType(doc);
    if (type == KRAtomNull) return false;
    if (type == Fields_K || type == KRExistingAtomForString("TSSCTextEditSelection")) return true;
    return type == Annotation_K && SelectedAnnotSubtype(doc) == Widget_K;
}
