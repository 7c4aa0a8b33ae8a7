// The numbered notifications of the host, each with the shape of its procedure. All end with the client data of
// SCAppRegisterNotification. Subscribers are called in the order of subscription; one that raises does not keep the
// others from being called, and its code goes no further. One that subscribes while a notification runs hears the next;
// one that unsubscribes hears no more of this one. Handles are not acquired: who keeps a page acquires it again.
// SPDX-License-Identifier: MIT
#pragma once

#include "DocModelHFT.h"
#include "KRTypes.h"

/** What happened, or will. Procedures stand below under the numbers. */
enum SCNotification : std::int32_t {
    /** All plug-ins are initialised. */
    SCAppDidInitialize = 0,
    /** Plug-ins are unloaded next. */
    SCAppWillQuit = 1,
    /** Another view is in front, or none. */
    SCAppFrontDocDidChange = 2,
    /** The view is on the list and in front. */
    SCDocDidOpen = 4,
    /** It came to the front. */
    SCDocDidActivate = 5,
    /** It left the front, or is about to close there. */
    SCDocDidDeactivate = 6,
    /** The selection is gone, the view is still on the list. */
    SCDocWillClose = 7,
    /** The handle serves for comparing only. */
    SCDocDidClose = 8,
    SCPageViewDidChange = 14,
    DMDocWillInsertPages = 15,
    DMDocDidInsertPages = 16,
    DMDocWillDeletePages = 21,
    DMDocDidDeletePages = 22,
    DMDocWillPrintPages = 26,
    /** Follows each DMDocWillSave, on failure too. */
    DMDocDidSave = 33,
    DMPageWillRemoveAnnot = 37,
    DMPageWillAddAnnot = 38,
    DMPageDidAddAnnot = 39,
    /** A key of its dictionary. DMAnnotDidChange follows. */
    DMAnnotWillChange = 40,
    DMAnnotDidChange = 41,
    DMPageDidRemoveAnnot = 42,
    /** While a modal prompt of a plug-in waits. */
    SCAppFurtherEvent = 54,
    /** What subscribers change now is saved. */
    DMDocWillSave = 56
};

/** SCAppDidInitialize, SCAppWillQuit, SCAppFurtherEvent. */
using SCAppNotifyProc = void (*)(void *clientData);
/**
 * SCAppFrontDocDidChange: the view in front, null for none. SCDocDidActivate, SCDocDidDeactivate, SCDocWillClose,
 * SCDocDidClose: the view.
 */
using SCDocNotifyProc = void (*)(SCDoc doc, void *clientData);
/** SCDocDidOpen: `error` is not 0 when the opening failed half-way. */
using SCDocDidOpenProc = void (*)(SCDoc doc, KRErrorCode error, void *clientData);
/** What `how` of SCPageViewDidChange adds up from. */
enum SCPageViewChange : std::int16_t {
    /** Another part of the page shows. */
    SCPageViewScrolled = 0x1,
    /** Another page is the one shown. */
    SCPageViewPageChanged = 0x2,
    SCPageViewZoomed = 0x4,
    /** The window changed its size. */
    SCPageViewResized = 0x8
};
/** SCPageViewDidChange: `how` is a sum of SCPageViewChange. */
using SCPageViewNotifyProc = void (*)(SCPageView view, std::int16_t how, void *clientData);
/** DMDocWillInsertPages: `source` may be null (blank pages). */
using DMDocWillInsertProc = void (*)(DMDoc doc, std::int32_t afterPage, DMDoc source, std::int32_t first,
                                     std::int32_t last, void *clientData);
/** DMDocDidInsertPages: `error` is not 0 when nothing was inserted; else the pages stand from `afterPage` + 1 on. */
using DMDocDidInsertProc = void (*)(DMDoc doc, std::int32_t afterPage, DMDoc source, std::int32_t first,
                                    std::int32_t last, KRErrorCode error, void *clientData);
/** DMDocWillDeletePages, DMDocWillPrintPages: pages `first` to `last`, from 0. */
using DMDocPagesProc = void (*)(DMDoc doc, std::int32_t first, std::int32_t last, void *clientData);
/** DMDocDidDeletePages: the numbers that the pages had; `error` is not 0 when they are still there. */
using DMDocPagesDoneProc = void (*)(DMDoc doc, std::int32_t first, std::int32_t last, KRErrorCode error,
                                    void *clientData);
/** DMDocWillSave: `save` lives for the time of the call. */
using DMDocWillSaveProc = void (*)(DMDoc doc, const DMDocSaveRecord *save, void *clientData);
/** DMDocDidSave: `error` is not 0 when the save failed. */
using DMDocDidSaveProc = void (*)(DMDoc doc, KRErrorCode error, void *clientData);
/** DMPageWillRemoveAnnot, DMPageDidRemoveAnnot: the index that the annotation has, or had. */
using DMPageAnnotIndexProc = void (*)(DMPage page, std::int32_t index, void *clientData);
/** DMPageWillAddAnnot, DMPageDidAddAnnot: not yet on the page, and on it. */
using DMPageAnnotProc = void (*)(DMPage page, DMAnnot annot, void *clientData);
/** DMAnnotWillChange: `key` still has its former value. */
using DMAnnotWillChangeProc = void (*)(DMAnnot annot, KRAtom key, void *clientData);
/** DMAnnotDidChange: `error` is not 0 when the change failed. */
using DMAnnotDidChangeProc = void (*)(DMAnnot annot, KRAtom key, KRErrorCode error, void *clientData);
