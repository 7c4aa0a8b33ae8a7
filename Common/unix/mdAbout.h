// The about box.
// SPDX-License-Identifier: MIT
#pragma once

/** Tells what this plug-in is, as a note. */
void mdDisplayAbout();
