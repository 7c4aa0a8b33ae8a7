// A host without plug-ins for in-process tests.
// SPDX-License-Identifier: MIT
#include "tests/support/HostFixture.h"

#include <gtest/gtest.h>

#include "CoreHFT.h"
#include "DocModelHFT.h"
#include "KernelSupportHFT.h"
#include "LexHFT.h"
#include "ScreenViewHFT.h"
#include "app/Startup.h"
#include "doc/Document.h"
#include "lex/Store.h"
#include "tests/support/Objects.h"

namespace {

class RunningHost : public testing::Environment {
public:
    void SetUp() override {
        jackdaw::HostOptions options;
        options.loadPlugIns = false;
        jackdaw::StartHost(options);
    }
    void TearDown() override {
        jackdaw::StopHost();
    }
};

[[maybe_unused]] const auto *const s_host = testing::AddGlobalTestEnvironment(new RunningHost);

SCDoc OpenView(const std::string &path) {
    KRPathName name = KRPathFromPlatformPath(path.c_str());
    SCDoc view = SCDocOpenFromFile(name, KRGetDefaultFileSys(), /*params*/ nullptr);
    KRFileSysReleasePath(KRGetDefaultFileSys(), name);
    return view;
}

} // namespace

TestDoc::TestDoc(const std::vector<std::string> &objects)
    : TestDoc(TempFile("document.pdf", PdfText(objects)).c_str()) {}

TestDoc::TestDoc(const char *path) {
    view = OpenView(path);
    doc = SCDocGetDMDoc(view);
    lex = DMDocGetLexDoc(doc);
}

TestDoc::TestDoc(DMDoc opened) : doc(opened), lex(DMDocGetLexDoc(opened)) {}

TestDoc::TestDoc(LexDoc opened) : lex(opened) {}

TestDoc::~TestDoc() {
    if (view)
        SCDocClose(view, /*noDirtyCheck*/ true);
    else if (!doc)
        jackdaw::lex::CloseStore(lex);
    else if (jackdaw::IsOpenDoc(doc))
        DMDocClose(doc);
}

std::string TestDoc::Saved() const {
    const std::string target = TempFile("saved.pdf", "");
    KRPathName name = KRPathFromPlatformPath(target.c_str());
    DMDocSave(doc, DMDocSaveFull | DMDocSaveCopy, KRGetDefaultFileSys(), name);
    KRFileSysReleasePath(KRGetDefaultFileSys(), name);
    return ReadAll(target);
}

LexObj TestDoc::At(const std::string &path) const {
    return ::At(LexDocGetRoot(lex), path);
}
