// `jackdaw reset`: fields go back to their default values.
// SPDX-License-Identifier: MIT
#include "cli/Commands.h"

#include "PIFrame.h"
#include "cli/Field.h"
#include "cli/Session.h"
#include "cli/Text.h"
#include "cli/UnknownNames.h"

namespace jackdaw::cli {

namespace {

bool ResetOne(DMDoc doc, const std::string &name, UnknownNames &unknown) {
    DMField *field = FindField(doc, name);
    if (!field || !Forms::TSDMFieldIsTerminal(field)) {
        unknown.Add(name);
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
    UnknownNames unknown(document.Doc());
    for (const std::string &name : names) done += ResetOne(document.Doc(), name, unknown) ? 1 : 0;
    unknown.WarnOfRest();
    if (done == 0) throw CommandFailed{document.Name() + ": no field was reset"};
    document.SaveAs(options.output);
}

} // namespace jackdaw::cli
