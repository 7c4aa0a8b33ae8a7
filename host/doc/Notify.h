// The dispatcher of the numbered notifications of ScreenViewNotify.h: subscriptions and one typed broadcast a shape.
//
// It lies below the view because operations on documents broadcast too; the view exposes it to plug-ins, and the
// application broadcasts the start and the end over it.
//
// 1. Subscribers are called in the order of subscription, each in a frame of its own: one that raises keeps no other
//    from being called, and its code goes no further. A broadcast never throws.
// 2. A subscriber may subscribe and unsubscribe during a broadcast. Who left is called no more; who came is called
//    from the next broadcast on.
// SPDX-License-Identifier: MIT
#pragma once

#include "HFT.h"
#include "ScreenViewNotify.h"

namespace jackdaw {

/** Subscribes. The same subscription made twice is called twice. Throws KRErrBadParam for a null `proc`. */
void RegisterNotification(std::int32_t number, KRWord extensionID, KRProc proc, void *clientData);
/** Takes back one subscription with exactly these arguments; nothing when there is none. */
void UnregisterNotification(std::int32_t number, KRWord extensionID, KRProc proc, void *clientData);
/** Takes back everything that a plug-in subscribed to; for the unloading of plug-ins. */
void UnregisterNotificationsOf(KRWord extensionID);

/** The notifications of the application. */
void NotifyApp(SCNotification number);
/** Those of views but SCDocDidOpen. */
void NotifyView(SCNotification number, SCDoc view);
void NotifyViewDidOpen(SCDoc view, KRErrorCode error);
void NotifyPageViewDidChange(SCPageView view, std::int16_t how);
void NotifyWillInsertPages(DMDoc doc, std::int32_t afterPage, DMDoc source, std::int32_t first, std::int32_t last);
void NotifyDidInsertPages(DMDoc doc, std::int32_t afterPage, DMDoc source, std::int32_t first, std::int32_t last,
                          KRErrorCode error);
/** DMDocWillDeletePages, DMDocWillPrintPages. */
void NotifyPages(SCNotification number, DMDoc doc, std::int32_t first, std::int32_t last);
void NotifyDidDeletePages(DMDoc doc, std::int32_t first, std::int32_t last, KRErrorCode error);
void NotifyDocWillSave(DMDoc doc, const DMDocSaveRecord *save);
void NotifyDocDidSave(DMDoc doc, KRErrorCode error);
/** DMPageWillRemoveAnnot, DMPageDidRemoveAnnot. */
void NotifyAnnotIndex(SCNotification number, DMPage page, std::int32_t index);
/** DMPageWillAddAnnot, DMPageDidAddAnnot. */
void NotifyPageAnnot(SCNotification number, DMPage page, DMAnnot annot);
void NotifyAnnotWillChange(DMAnnot annot, KRAtom key);
void NotifyAnnotDidChange(DMAnnot annot, KRAtom key, KRErrorCode error);

} // namespace jackdaw
