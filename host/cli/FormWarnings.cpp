// What the plug-in warns of while a form is open.
// SPDX-License-Identifier: MIT
#include "cli/FormWarnings.h"

#include <set>
#include <string>

#include "CoreHFT.h"
#include "FormsAuthoringHFT.h"
#include "cli/Field.h"
#include "cli/Session.h"
#include "cli/Text.h"

namespace jackdaw::cli {

namespace {

/** Warnings that get a line of their own. */
constexpr std::size_t s_told = 100;

struct Heard {
    std::set<std::string> lines;
    std::size_t more = 0;
};

Heard &AllHeard() {
    static Heard s_heard;
    return s_heard;
}

void Hear(void *record, void *) {
    const auto *const warning = static_cast<const TSFormWarning *>(record);
    const std::string name = TextOfName(warning->field);
    const std::string line = (name.empty() ? "" : name + ": ") + warning->text;
    Heard &heard = AllHeard();
    if (heard.lines.size() < s_told) {
        if (heard.lines.insert(line).second) Warn(line);
    } else if (!heard.lines.contains(line)) {
        ++heard.more;
    }
}

} // namespace

void HearFormWarnings() {
    if (!gFormsAuthoringHFT) gFormsAuthoringHFT = KRGetHFT(AtomOf(FormsAuthoringHFTName), FormsAuthoringHFTVersion);
    if (gFormsAuthoringHFT) Forms::TSFormWarningsObserve(&Hear, nullptr);
}

void WarnOfUnheard() {
    if (AllHeard().more > 0) Warn("more warnings about the form: " + std::to_string(AllHeard().more));
}

} // namespace jackdaw::cli
