// What filling in would break or leave out of date.
// SPDX-License-Identifier: MIT
#include "cli/Seals.h"

#include "CoreHFT.h"
#include "FormsAuthoringHFT.h"
#include "PIFrame.h"
#include "cli/Text.h"

namespace jackdaw::cli {

void RequireUnsealed(const OpenDocument &document, bool breakSignatures) {
    std::uint32_t seals = 0;
    const KRErrorCode code = Protect([&] { seals = Forms::TSDMDocGetSeals(document.Doc()); });
    if (code != KRErrNone) throw CommandFailed{document.Name() + ": " + SentenceOf(code)};
    if (seals & (TSSealSignature | TSSealCertificate) && !breakSignatures)
        throw CommandFailed{document.Name() + ": the document is " +
                            (seals & TSSealCertificate ? "certified" : "signed") +
                            ", and a changed file would not match the signature; --break-signatures changes it all "
                            "the same"};
    if (seals & TSSealUsageRights)
        Warn(document.Name() + ": the rights that the document grants to users of some viewers end with a change");
    if (seals & TSSealXFA)
        Warn(document.Name() + ": the form is described a second time, as XML (XFA), which keeps its former values");
}

} // namespace jackdaw::cli
