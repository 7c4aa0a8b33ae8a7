// Progress of long work: a line on a terminal once the work has taken a second, nothing anywhere else.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <cstdio>

#include "ScreenViewHFT.h"

namespace jackdaw {

/** Works may be nested: only the outermost one shows. */
void BeginProgress(const char *what);
/** `last` is the value at which the work is done. */
void SetProgressRange(std::int32_t last);
void SetProgressValue(std::int32_t value);
/** Wipes the line. */
void EndProgress();

/** The same as the record that plug-ins get. */
const SCProgressMonitor *ProgressMonitor();

/** Writes to `stream`, as to a terminal, after `delayMs`; null goes back to standard error if that is a terminal. */
void SetProgressOutput(std::FILE *stream, int delayMs);

} // namespace jackdaw
