// What modules share of the running plug-in.
// SPDX-License-Identifier: MIT
#include "services/PlugInData.h"

TSPlugInData *gData = nullptr;
