// The user interface table of the screen view: dialogs, tool tips, pointer tracking. Without a window nothing is shown
// and the pointer is never down.
// SPDX-License-Identifier: MIT
#pragma once

#include "HFT.h"

inline KRHFT gScreenViewUserInterfaceHFT = nullptr;
inline constexpr std::uint32_t ScreenViewUserInterfaceHFTVersion = KRVersion(4, 0);
inline constexpr int ScreenViewUserInterfaceHFTCount = 3;

/** Opens the host's properties dialog for a `Widget` of a kind such as "Signature". */
inline constexpr Slot<&gScreenViewUserInterfaceHFT, 1,
                      void(SCDoc doc, const char *title, KRAtom subtype, const char *kind)>
    SCUIShowWidgetProperties;
/** Null text hides the tip. */
inline constexpr Slot<&gScreenViewUserInterfaceHFT, 2, void(SCPageView view, const char *text)> SCUIToolTip;
/** The pointer's place while a button is held; false when it is up. */
inline constexpr Slot<&gScreenViewUserInterfaceHFT, 3, KRBool(SCPageView view, std::int16_t *x, std::int16_t *y)>
    SCUIDragPoint;
