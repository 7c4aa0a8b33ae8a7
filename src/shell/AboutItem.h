// The one menu item that the plug-in always has.
// SPDX-License-Identifier: MIT
#pragma once

/** The plug-in's own item "Tessella:About" beside the host's "AboutExtensions". */
void miPIAddMenuItems();
