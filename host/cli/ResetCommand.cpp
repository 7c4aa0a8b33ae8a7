// `jackdaw reset`: fields go back to their default values.
// SPDX-License-Identifier: MIT
#include "cli/Commands.h"

#include "DocModelHFT.h"
#include "PIFrame.h"
#include "cli/Field.h"
#include "cli/Scripts.h"
#include "cli/Seals.h"
#include "cli/Session.h"
#include "cli/Text.h"
#include "cli/UnknownNames.h"

namespace jackdaw::cli {

namespace {

/** What resetting many fields shares and finds out. */
struct Resetting {
    DMDoc doc;
    /** The user named the fields. */
    bool isNamed;
    UnknownNames unknown;
    UnrunScripts scripts;
};

bool ResetOne(Resetting &all, const std::string &name) {
    DMField *field = FindField(all.doc, name);
    if (!field) {
        all.unknown.Add(name);
        return false;
    }
    const FieldType type = TypeOfField(field);
    const bool isGroup = !Forms::TSDMFieldIsTerminal(field);
    if (isGroup || type == FieldType::Button || type == FieldType::Signature) {
        // Among all fields these are only passed by.
        const std::string what = isGroup ? "group of fields" : std::string("field of type ") + WordOfType(type);
        if (all.isNamed) Warn(name + ": a " + what + " has no value to reset");
        return false;
    }
    bool accepted = false;
    const KRErrorCode code = Protect([&] { accepted = Forms::TSDMFieldReset(field); });
    if (code == KRErrNoMemory) throw CommandFailed{SentenceOf(code)};
    if (code != KRErrNone)
        Warn(name + ": " + SentenceOf(code));
    else if (!accepted)
        Warn(name + ": the form refused the default value");
    if (accepted) all.scripts.AddField(field);
    return accepted;
}

} // namespace

void RunReset(const ResetOptions &options) {
    OpenDocument document(options.input);
    document.RequireForm();
    document.RequireFilling();
    RequireUnsealed(document, options.breakSignatures);
    std::vector<std::string> names = options.names;
    for (std::string &name : names) name = ArgumentText(name);
    if (names.empty()) names = FieldNames(document.Doc());
    Resetting all{document.Doc(), !options.names.empty(), UnknownNames(document.Doc()), {}};
    std::size_t done = 0;
    for (const std::string &name : names) done += ResetOne(all, name) ? 1 : 0;
    all.unknown.WarnOfRest();
    if (done == 0) throw CommandFailed{document.Name() + ": no field was reset"};
    all.scripts.Warn(DMDocGetLexDoc(document.Doc()));
    document.SaveAs(options.output);
}

} // namespace jackdaw::cli
