// Warnings about a form: what was passed over, put right or done in another way than the form asks, told to whoever
// observes them (slots TSFormWarningsObserve and TSFormWarningsIgnore of "FormsAuthoring").
// SPDX-License-Identifier: MIT
#pragma once

#include "FormsTypes.h"

/**
 * Tells the observers. `field` is the full name of the field (TSDMFieldGetName), null for the form as a whole; text
 * `message` of the catalogue is the format of the further arguments. It may be said again of the same field: observers
 * sort that out. What an observer raises is dropped, as what warns has its own work to finish.
 */
void TSWarn(DMDoc doc, const char *field, std::int32_t message, ...);

/** An id for TSFormWarningsIgnore. `proc` gets a TSFormWarning. */
std::int32_t TSFormWarningsObserve(TSNotifyProc proc, void *clientData);
/** An unknown id is ignored. */
void TSFormWarningsIgnore(std::int32_t id);
