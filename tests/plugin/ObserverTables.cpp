// Cases on the tables themselves: versions, slots that another plug-in replaces, absent modules.
// SPDX-License-Identifier: MIT
#include "tests/plugin/Observer.h"

#include <cctype>

namespace observer {

namespace {

std::string PlugIns(KRBool onlyRunning) {
    std::string names;
    const KRExtensionEnumProc collect = [](KRExtension extension, void *clientData) -> KRBool {
        auto *list = static_cast<std::string *>(clientData);
        *list += (list->empty() ? "" : " ") + std::string(KRAtomGetString(KRExtensionGetName(extension)));
        return true;
    };
    KRExtensionEnum(collect, &names, onlyRunning);
    return names;
}

KRBool NeverAForm(DMDoc) {
    return false;
}

} // namespace

void Tables() {
    const KRAtom forms = Atom(FormsHFTName), authoring = Atom(FormsAuthoringHFTName);
    CHECK(KRGetHFT(forms, 0x00010001) == gFormsHFT && KRGetHFT(forms, 0x00010000) == gFormsHFT);
    CHECK(KRGetHFT(forms, 1) == gFormsHFT);
    CHECK(!KRGetHFT(forms, 0x00010002) && !KRGetHFT(forms, 0x00020000));
    CHECK(KRGetHFT(authoring, 0x00010000) == gFormsAuthoringHFT && !KRGetHFT(authoring, 0x00010001));
    CHECK(!KRHFTServerNew(FormsHFTName, [](KRHFTServer, std::uint32_t) { return KRHFT{}; }));
    const KRHFTServer server = KRHFTServerNew("Observer", [](KRHFTServer, std::uint32_t) { return KRHFT{}; });
    const KRHFT empty = KRHFTNew(server, 1);
    for (int slot = 1; slot <= FormsHFTCount; ++slot) CHECK(gFormsHFT[slot] != empty[1]);
    for (int slot = 1; slot <= FormsAuthoringHFTCount; ++slot) CHECK(gFormsAuthoringHFT[slot] != empty[1]);

    // A plug-in may stand in front of a slot and call on to what was there.
    const KRProc former = gFormsHFT[Forms::IsDMDocTessella.selector];
    const KRProc own = reinterpret_cast<KRProc>(PICallback(gExtensionID, &NeverAForm));
    KRHFTSetEntry(gFormsHFT, Forms::IsDMDocTessella.selector, own, /*flags*/ 0);
    CHECK(!Forms::IsDMDocTessella(doc));
    CHECK(KRHFTGetReplacedEntry(gFormsHFT, Forms::IsDMDocTessella.selector, own) == former);
    KRHFTSetEntry(gFormsHFT, Forms::IsDMDocTessella.selector, former, /*flags*/ 0);
    CHECK(Forms::IsDMDocTessella(doc));
    CHECK_RAISES(KRErrBadParam, KRHFTSetEntry(gFormsHFT, FormsHFTCount + 1, own, /*flags*/ 0));

    CHECK_EQ(PlugIns(/*onlyRunning*/ false), "Earlier Forms Observer");
    CHECK_EQ(PlugIns(/*onlyRunning*/ true), "Earlier Forms Observer");
}

void Absences() {
    void *context = nullptr, *global = nullptr;
    const KRErrorCode codes[] = {
        Protect([] { Forms::OldExportAsFDF(doc, LexNullObj, 0, 0, 0, nullptr); }),
        Protect([] { Forms::OldExportAsHtml(doc, LexNullObj, 0, 0, nullptr); }),
        Protect([] { Forms::OldImportAnFDF(doc, nullptr); }),
        Protect([] { Forms::ResetForm(doc, LexNullObj, 0); }),
        Protect([&] { Forms::TJSGetJSContext(&context, &global); }),
        Protect([] { Forms::ExportAsFDF97(doc, LexNullObj, 0, 0, 0, nullptr, nullptr); }),
        Protect([] { Forms::ExportAsHtml(doc, LexNullObj, 0, 0, nullptr, nullptr); }),
        Protect([] { Forms::OldAssembleFormAndImportFDF(doc, nullptr, 0); }),
        Protect([] { Forms::ExportAsFDFWithParams(nullptr); }),
        Protect([] { Forms::mdDisplayAppearanceEx(nullptr); }),
        Protect([] { Forms::TJSGetJSContextEx(nullptr); }),
    };
    for (const KRErrorCode code : codes) {
        char text[256] = "";
        KRGetErrorString(code, text, sizeof text);
        const std::string sentence = text;
        CHECK((code & 0x0FFFFFFF) > KRErrRegisteredBase);
        CHECK(std::isupper(static_cast<unsigned char>(text[0])) && sentence.find("Forms") != std::string::npos);
        CHECK(sentence.find(" no ") != std::string::npos || sentence.find(" cannot ") != std::string::npos);
    }
    // The text is cut to the room that there is.
    char shorter[11] = "";
    KRGetErrorString(codes[0], shorter, sizeof shorter);
    CHECK_EQ(shorter, "This build");
}

} // namespace observer
