// `jackdaw reset`: fields go back to their default values.
// SPDX-License-Identifier: MIT
#include "cli/Commands.h"

#include "PIFrame.h"
#include "cli/Field.h"
#include "cli/Session.h"
#include "cli/Text.h"

namespace jackdaw::cli {

namespace {

constexpr std::size_t s_listed = 12;

bool ResetOne(DMDoc doc, const std::string &name) {
    DMField *field = FindField(doc, name);
    if (!field || !Forms::TSDMFieldIsTerminal(field)) {
        Warn(name + ": no such field; there are: " + JoinTexts(FieldNames(doc), s_listed));
        return false;
    }
    const FieldType type = TypeOfField(field);
    if (type == FieldType::Button || type == FieldType::Signature) return false;
    bool accepted = false;
    const KRErrorCode code = Protect([&] { accepted = Forms::TSDMFieldReset(field); });
    if (code != KRErrNone)
        Warn(name + ": " + SentenceOf(code));
    else if (!accepted)
        Warn(name + ": the form refused the default value");
    return accepted;
}

} // namespace

void RunReset(const ResetOptions &options) {
    OpenDocument document(options.input.file, options.input.passwordFile);
    document.RequireForm();
    document.RequireFilling();
    std::vector<std::string> names = options.names;
    for (std::string &name : names) name = ArgumentText(name);
    if (names.empty()) names = FieldNames(document.Doc());
    std::size_t done = 0;
    for (const std::string &name : names) done += ResetOne(document.Doc(), name) ? 1 : 0;
    if (done == 0) throw CommandFailed{document.Name() + ": no field was reset"};
    document.SaveAs(options.output);
}

} // namespace jackdaw::cli
