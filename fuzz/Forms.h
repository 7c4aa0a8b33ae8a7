// What the fuzz targets stand on: viewer and plug-in in one process.
// SPDX-License-Identifier: MIT
#pragma once

/** Starts both, once. */
void StartForms();
