// The stack of handler frames, and raising.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "CoreHFT.h"
#include "kernel/HostError.h"

namespace jackdaw {

void PushFrame(void *env, KRRestoreProc restore);
/** Nothing when there is no frame. */
void PopFrame();
std::size_t FrameCount();
/** Pops until `count` frames are left. */
void CutFrames(std::size_t count);

/** KRRaise itself. Without a frame, or when a restore routine returns, the process ends with one line on standard
 *  error and the exit code 70. */
[[noreturn]] void Raise(KRErrorCode code);

} // namespace jackdaw
