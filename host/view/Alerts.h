// Alerts, and what answers them when there is no window.
//
// Without a window the text goes to standard error as one block, and the policy names the button: the first one unless
// another policy was set. The text comes from documents and scripts, so control characters are left out of it.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <functional>
#include <string>

#include "ScreenViewHFT.h"

namespace jackdaw {

struct AlertRequest {
    SCAlertIcon icon = SCAlertIconNone;
    std::string text;
    /** As they read; an absent button is empty. The first is never empty. */
    std::string buttons[3];
    bool beep = false;
};

/** Gives 1, 2 or 3. A number without a button counts as 1. */
using AlertPolicy = std::function<int(const AlertRequest &request)>;
/** An empty policy answers with the first button. */
void SetAlertPolicy(AlertPolicy policy);

/** Shows it, or writes and answers it; gives 1, 2 or 3. */
int ShowAlert(const AlertRequest &request);

/** Alerts since the process began, or since the last reset. */
int AlertCount();
void ResetAlertCount();
/** The text of the latest alert, for those who tell of it afterwards. */
const std::string &LastAlertText();

/** Standard error unless set; null switches the output off (the policy and the count work on). */
void SetAlertOutput(std::FILE *stream);

} // namespace jackdaw
