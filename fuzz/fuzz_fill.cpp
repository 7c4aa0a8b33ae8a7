// Fuzz target: any bytes as a document. It is opened, every field is set and reset, and it is saved.
// SPDX-License-Identifier: MIT
#include <cstdio>
#include <string>
#include <vector>

#include "LexHFT.h"
#include "PIFrame.h"
#include "ScreenViewHFT.h"
#include "doc/Document.h"
#include "kernel/HostError.h"
#include "model/DMField.h"
#include "model/DMFieldValue.h"
#include "tests/support/StartForms.h"

namespace {

KRBool Take(DMField *field, void *fields) {
    static_cast<std::vector<DMField *> *>(fields)->push_back(field);
    return true;
}

void FillAll(DMDoc doc) {
    std::vector<DMField *> fields;
    TSDMDocEnumDMFields(doc, /*terminalOnly*/ true, /*firstOfNameOnly*/ true, &Take, &fields);
    LexDoc lex = DMDocGetLexDoc(doc);
    for (DMField *field : fields) {
        if (!TSDMFieldIsValid(field)) continue;
        Protect([&] { TSDMFieldSetValue(field, LexNewString(lex, /*indirect*/ false, "some text (of) it", 17)); });
        Protect([&] { TSDMFieldSetToOptionIndex(field, 1); });
        Protect([&] { TSDMFieldReset(field); });
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    StartForms();
    Protect([&] {
        DMDoc doc = nullptr;
        try {
            doc = jackdaw::OpenDocFromBytes(std::string(reinterpret_cast<const char *>(data), size), nullptr);
        } catch (const jackdaw::HostError &) {
            return;
        }
        SCDoc view = SCDocOpenFromDMDoc(doc, nullptr);
        DMDocClose(doc);
        Protect([&] { FillAll(SCDocGetDMDoc(view)); });
        std::FILE *nowhere = std::fopen("/dev/null", "wb");
        try {
            jackdaw::SaveDocToStream(SCDocGetDMDoc(view), nowhere);
        } catch (const jackdaw::HostError &) {
        }
        std::fclose(nowhere);
        SCDocClose(view, /*noDirtyCheck*/ true);
    });
    return 0;
}
