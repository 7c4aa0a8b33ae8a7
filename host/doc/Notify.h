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
void registerNotification(std::int32_t number, KRWord extensionID, KRProc proc, void *clientData);
/** Takes back one subscription with exactly these arguments; nothing when there is none. */
void unregisterNotification(std::int32_t number, KRWord extensionID, KRProc proc, void *clientData);
/** Takes back everything that a plug-in subscribed to; for the unloading of plug-ins. */
void unregisterNotificationsOf(KRWord extensionID);

/** 0, 1, 54. */
void notifyApp(SCNotification number);
/** 2, 5, 6, 7, 8. */
void notifyView(SCNotification number, SCDoc view);
/** 4. */
void notifyViewDidOpen(SCDoc view, KRErrorCode error);
/** 14. */
void notifyPageViewDidChange(SCPageView view, std::int16_t how);
/** 15. */
void notifyWillInsertPages(DMDoc doc, std::int32_t afterPage, DMDoc source, std::int32_t first, std::int32_t last);
/** 16. */
void notifyDidInsertPages(DMDoc doc, std::int32_t afterPage, DMDoc source, std::int32_t first, std::int32_t last,
                          KRErrorCode error);
/** 21, 26. */
void notifyPages(SCNotification number, DMDoc doc, std::int32_t first, std::int32_t last);
/** 22. */
void notifyDidDeletePages(DMDoc doc, std::int32_t first, std::int32_t last, KRErrorCode error);
/** 56. */
void notifyDocWillSave(DMDoc doc, const DMDocSaveRecord *save);
/** 33. */
void notifyDocDidSave(DMDoc doc, KRErrorCode error);
/** 37, 42. */
void notifyAnnotIndex(SCNotification number, DMPage page, std::int32_t index);
/** 38, 39. */
void notifyPageAnnot(SCNotification number, DMPage page, DMAnnot annot);
/** 40. */
void notifyAnnotWillChange(DMAnnot annot, KRAtom key);
/** 41. */
void notifyAnnotDidChange(DMAnnot annot, KRAtom key, KRErrorCode error);

} // namespace jackdaw
