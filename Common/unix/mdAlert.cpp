// Alerts: the host's icons and buttons for ours.
// SPDX-License-Identifier: MIT
#include "Common/unix/mdMessages.h"

#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "Common/src/miUtils.h"
#include "ScreenViewHFT.h"

namespace {

constexpr std::uint16_t s_formatSize = 2050;
constexpr std::size_t s_textSize = 2080;

struct ButtonRow {
    /** Numbers of the buttons' texts from left to right, as mdGetAlertButtonPtr counts them; -1 where none stands. */
    int texts[3];
    /** What the press of each of the three means to the caller. */
    mdAlertAnswer answers[3];
};
constexpr ButtonRow s_buttons[] = {
    {{0, -1, -1}, {mdAnswerOK, mdAnswerOK, mdAnswerOK}},
    {{0, 1, -1}, {mdAnswerOK, mdAnswerCancel, mdAnswerCancel}},
    {{2, 3, -1}, {mdAnswerYes, mdAnswerNo, mdAnswerNo}},
    {{2, 3, 1}, {mdAnswerYes, mdAnswerNo, mdAnswerCancel}},
};

std::int32_t HostIcon(std::int32_t icon) {
    switch (icon) {
    case mdAlertError:
        return SCAlertIconError;
    case mdAlertQuestion:
        return SCAlertIconQuestion;
    case mdAlertWarning:
    case mdAlertStatus:
        return SCAlertIconWarning;
    default:
        return SCAlertIconNone;
    }
}

std::int32_t Show(SCDoc doc, std::int32_t icon, std::int32_t buttons, const char *format, va_list arguments) {
    // A few bytes more than go out, so that the cut sees whole characters.
    char text[s_textSize + MB_LEN_MAX] = "";
    std::vsnprintf(text, sizeof text, format, arguments);
    text[miHostCutLength(text, std::strlen(text), s_textSize - 1)] = 0;
    return mdAlertText(doc, icon, buttons, text);
}

} // namespace

std::int32_t mdAlert(std::int32_t icon, std::int32_t buttons, std::int32_t id, ...) {
    char format[s_formatSize];
    va_list arguments;
    va_start(arguments, id);
    const std::int32_t answer = Show(nullptr, icon, buttons, mdGetString(id, format, sizeof format), arguments);
    va_end(arguments);
    return answer;
}

std::int32_t mdAlertEx(SCDoc doc, std::int32_t icon, std::int32_t buttons, std::int32_t id, ...) {
    char format[s_formatSize];
    va_list arguments;
    va_start(arguments, id);
    const std::int32_t answer = Show(doc, icon, buttons, mdGetString(id, format, sizeof format), arguments);
    va_end(arguments);
    return answer;
}

std::int32_t mdAlertStr(SCDoc doc, std::int32_t icon, std::int32_t buttons, const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const std::int32_t answer = Show(doc, icon, buttons, format, arguments);
    va_end(arguments);
    return answer;
}

std::int32_t mdAlertText(SCDoc, std::int32_t icon, std::int32_t buttons, const char *text) {
    const auto index = static_cast<std::size_t>(buttons);
    if (index >= sizeof s_buttons / sizeof *s_buttons) return mdAnswerNone;
    const ButtonRow &row = s_buttons[index];
    const std::int32_t went =
        SCAlert(HostIcon(icon), text, mdGetAlertButtonPtr(row.texts[0]), mdGetAlertButtonPtr(row.texts[1]),
                mdGetAlertButtonPtr(row.texts[2]), /*beep*/ true);
    return row.answers[went == 1 ? 0 : went == 2 ? 1 : 2];
}
