// The numbered notifications of the host, each with the shape of its procedure. All end with the client data of
// SCAppRegisterNotification. Subscribers are called in the order of subscription; one that raises does not keep the
// others from being called, and its code goes no further.
// SPDX-License-Identifier: MIT
#pragma once

#include "DocModelHFT.h"
#include "KRTypes.h"

enum SCNotification : std::int32_t {
    SCAppDidInitialize = 0,
    SCAppWillQuit = 1,
    SCAppFrontDocDidChange = 2,
    SCDocDidOpen = 4,
    SCDocDidActivate = 5,
    SCDocDidDeactivate = 6,
    SCDocWillClose = 7,
    SCDocDidClose = 8,
    SCPageViewDidChange = 14,
    DMDocWillInsertPages = 15,
    DMDocDidInsertPages = 16,
    DMDocWillDeletePages = 21,
    DMDocDidDeletePages = 22,
    DMDocWillPrintPages = 26,
    DMDocDidSave = 33,
    DMPageWillRemoveAnnot = 37,
    DMPageWillAddAnnot = 38,
    DMPageDidAddAnnot = 39,
    DMAnnotWillChange = 40,
    DMAnnotDidChange = 41,
    DMPageDidRemoveAnnot = 42,
    SCAppFurtherEvent = 54,
    DMDocWillSave = 56
};

/** 0, 1, 54. */
using SCAppNotifyProc = void (*)(void *clientData);
/** 2: the view in front, null for none. 5, 6, 7, 8: the view. At 8 the handle serves for comparing only. */
using SCDocNotifyProc = void (*)(SCDoc doc, void *clientData);
/** 4: `error` is not 0 when the opening failed half-way. */
using SCDocDidOpenProc = void (*)(SCDoc doc, KRErrorCode error, void *clientData);
/** What `how` of SCPageViewDidChange adds up from. */
enum SCPageViewChange : std::int16_t {
    SCPageViewScrolled = 0x1,
    SCPageViewPageChanged = 0x2,
    SCPageViewZoomed = 0x4,
    SCPageViewResized = 0x8
};
/** 14: `how` is a sum of SCPageViewChange. */
using SCPageViewNotifyProc = void (*)(SCPageView view, std::int16_t how, void *clientData);
/** 15: `source` may be null (blank pages). */
using DMDocWillInsertProc = void (*)(DMDoc doc, std::int32_t afterPage, DMDoc source, std::int32_t first,
                                     std::int32_t last, void *clientData);
/** 16. */
using DMDocDidInsertProc = void (*)(DMDoc doc, std::int32_t afterPage, DMDoc source, std::int32_t first,
                                    std::int32_t last, KRErrorCode error, void *clientData);
/** 21, 26. */
using DMDocPagesProc = void (*)(DMDoc doc, std::int32_t first, std::int32_t last, void *clientData);
/** 22. */
using DMDocPagesDoneProc = void (*)(DMDoc doc, std::int32_t first, std::int32_t last, KRErrorCode error,
                                    void *clientData);
/** 56. */
using DMDocWillSaveProc = void (*)(DMDoc doc, const DMDocSaveRecord *save, void *clientData);
/** 33: `error` is not 0 when the save failed. */
using DMDocDidSaveProc = void (*)(DMDoc doc, KRErrorCode error, void *clientData);
/** 37, 42: the annotation's index. */
using DMPageAnnotIndexProc = void (*)(DMPage page, std::int32_t index, void *clientData);
/** 38, 39. */
using DMPageAnnotProc = void (*)(DMPage page, DMAnnot annot, void *clientData);
/** 40. */
using DMAnnotWillChangeProc = void (*)(DMAnnot annot, KRAtom key, void *clientData);
/** 41. */
using DMAnnotDidChangeProc = void (*)(DMAnnot annot, KRAtom key, KRErrorCode error, void *clientData);
