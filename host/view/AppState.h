// What the application as a whole remembers: version, language, preferences, cancelling, full screen, the tool, idle
// procedures and the handlers of auxiliary data.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

#include "ScreenViewHFT.h"

namespace jackdaw {

inline constexpr std::int16_t AppVersionMajor = 4;
inline constexpr std::int16_t AppVersionMinor = 0;
inline constexpr const char *AppLanguage = "ENU";

/** Words by number, 0 for one never set. A word that points belongs to whoever set it. Kept for the session. */
KRWord Preference(std::int32_t number);
void SetPreference(std::int32_t number, KRWord value);

/** Asks what is under way to stop; may be called from a signal handler. */
void RequestCancel();
/** The user asked to stop; asking takes the request away. */
bool TakeCancelRequest();

bool BeginFullScreen(const DMColorValue *background);
void EndFullScreen();
bool DoingFullScreen();

/** The active tool: the hand. */
SCTool ActiveTool();
KRAtom ToolType(SCTool tool);

/** Ticks are sixtieths of a second of a clock that never goes back. */
std::int64_t TicksNow();
void RegisterIdle(SCIdleProc proc, void *clientData, std::uint32_t period);
/** The first registration of this pair; nothing when there is none. */
void UnregisterIdle(SCIdleProc proc, void *clientData);
/** Calls what is due. One that raises does not keep the others from being called. */
void RunIdle();
void RunIdleAt(std::int64_t now);
/** Ticks until something is due, 0 when something is; nothing when there are no idle procedures. */
std::optional<std::int64_t> IdleDelay();

/** Replaces an earlier handler of the type. */
bool RegisterAuxData(KRAtom type, SCAuxDataHandler *handler);
/** Hands bytes to the type's handler; false when there is none or it did not care. */
bool PerformAuxData(SCDoc view, KRAtom type, void *data, std::uint32_t length);

} // namespace jackdaw
