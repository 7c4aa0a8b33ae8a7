// The Unix table: what the platform layer of a plug-in needs of the host. Widgets travel as void pointers, so that no
// toolkit header is needed here.
// SPDX-License-Identifier: MIT
#pragma once

#include "HFT.h"

/** Set by the entry code. */
inline KRHFT gUnixHFT = nullptr;
inline constexpr std::uint32_t UnixHFTVersion = KRVersion(4, 2);
inline constexpr int UnixHFTCount = 7;

/** The application's top-level widget, the host's; null when there is no display or no window yet. */
inline constexpr Slot<&gUnixHFT, 1, void *()> UnixGetTopWidget;
/** Fall-back resources for a class: a null-ended list of "*key: text" lines, or null. They outlive the call. */
inline constexpr Slot<&gUnixHFT, 2, void(const char *className, const char *const *fallback)> UnixRegisterResources;
/** Runs a dialog modally until `*done` is not 0. Comes back at once without a display. */
inline constexpr Slot<&gUnixHFT, 3, void(void *dialog, const KRBool *done)> UnixModalLoop;
/** Folder of a plug-in, by its extension ID: a KRmalloc'd Unix path. Raises KRErrBadParam for an unknown ID. */
inline constexpr Slot<&gUnixHFT, 4, char *(KRWord extensionID)> UnixGetPlugInDir;
/** The user's home folder, a Unix path; the host's memory, good until the next call. */
inline constexpr Slot<&gUnixHFT, 5, const char *()> UnixGetUserDir;
/** The resource `key` of a widget's class, or `fallback`. Valid as long as the widget. */
inline constexpr Slot<&gUnixHFT, 6, const char *(void *widget, const char *key, const char *fallback)>
    UnixGetResourceString;
/**
 * A new cursor from bits and mask in X bitmap order, `width` by `height` pixels, its hot spot counted from the upper
 * left corner; the host's for good. Null without a display.
 */
inline constexpr Slot<&gUnixHFT, 7,
                      SCCursor(const unsigned char *bits, const unsigned char *mask, std::int32_t width,
                               std::int32_t height, std::int32_t hotX, std::int32_t hotY)>
    UnixMakeCursor;
