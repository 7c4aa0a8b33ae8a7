// Viewer and plug-in in one process, for fuzz targets and benchmarks.
// SPDX-License-Identifier: MIT
#pragma once

/** Starts both, once. */
void StartForms();
