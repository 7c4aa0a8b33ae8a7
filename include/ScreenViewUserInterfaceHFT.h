// The user interface table of the screen view: dialogs, tool tips, pointer tracking. Without a window nothing is shown
// and the pointer is never down.
// SPDX-License-Identifier: MIT
#pragma once

#include "HFT.h"

/** Set by whoever means to call through it: KRGetHFT of "ScreenViewUserInterface". */
inline KRHFT gScreenViewUserInterfaceHFT = nullptr;
inline constexpr std::uint32_t ScreenViewUserInterfaceHFTVersion = KRVersion(4, 0);
inline constexpr int ScreenViewUserInterfaceHFTCount = 3;

/**
 * Opens the host's properties dialog under `title` (host text) for annotations of `subtype` ("Widget") of a kind such
 * as "Signature", in front of the view. Nothing without a window.
 */
inline constexpr Slot<&gScreenViewUserInterfaceHFT, 1,
                      void(SCDoc doc, const char *title, KRAtom subtype, const char *kind)>
    SCUIShowWidgetProperties;
/** Shows a tip (host text, copied) at the pointer until it is hidden: null text hides it. */
inline constexpr Slot<&gScreenViewUserInterfaceHFT, 2, void(SCPageView view, const char *text)> SCUIToolTip;
/** The pointer's place in device units while a button is held; false, and nothing stored, when it is up. */
inline constexpr Slot<&gScreenViewUserInterfaceHFT, 3, KRBool(SCPageView view, std::int16_t *x, std::int16_t *y)>
    SCUIDragPoint;
