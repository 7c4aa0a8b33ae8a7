// Shows alerts through the platform, or writes and answers them.
// SPDX-License-Identifier: MIT
#include "view/Alerts.h"

#include "view/ViewPlatform.h"

namespace jackdaw {

namespace {

struct AlertState {
    AlertPolicy policy;
    int count = 0;
    std::string lastText;
    std::FILE *output = stderr;
};

AlertState &state() {
    static AlertState s_alerts;
    return s_alerts;
}

/** Line ends of any kind become line feeds; other control characters would steer the terminal. */
std::string printable(const std::string &text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c == '\r') {
            if (i + 1 == text.size() || text[i + 1] != '\n') result += '\n';
        } else if (c == '\n' || c == '\t' || (c >= ' ' && c != 127)) {
            result += text[i];
        }
    }
    while (!result.empty() && result.back() == '\n') result.pop_back();
    return result;
}

const char *prefixOf(SCAlertIcon icon) {
    switch (icon) {
    case SCAlertIconError:
        return "Error: ";
    case SCAlertIconQuestion:
        return "Question: ";
    case SCAlertIconWarning:
        return "Warning: ";
    default:
        return "";
    }
}

/** One write, so that the blocks of two processes do not mix. */
void write(const AlertRequest &request, int answer) {
    if (!state().output) return;
    std::string block = prefixOf(request.icon) + printable(request.text) + "\n";
    if (!request.buttons[1].empty()) block += "  [" + printable(request.buttons[answer - 1]) + "]\n";
    std::fwrite(block.data(), 1, block.size(), state().output);
    std::fflush(state().output);
}

int valid(const AlertRequest &request, int answer) {
    const bool isButton = answer >= 1 && answer <= 3 && !request.buttons[answer - 1].empty();
    return isButton ? answer : 1;
}

} // namespace

void SetAlertPolicy(AlertPolicy policy) {
    state().policy = std::move(policy);
}

int ShowAlert(const AlertRequest &request) {
    ++state().count;
    state().lastText = request.text;
    if (Platform().alert) return valid(request, Platform().alert(request));
    // A policy may set another one while it runs.
    const AlertPolicy policy = state().policy;
    const int answer = valid(request, policy ? policy(request) : 1);
    write(request, answer);
    return answer;
}

int AlertCount() {
    return state().count;
}

void ResetAlertCount() {
    state().count = 0;
}

const std::string &LastAlertText() {
    return state().lastText;
}

void SetAlertOutput(std::FILE *stream) {
    state().output = stream;
}

} // namespace jackdaw
