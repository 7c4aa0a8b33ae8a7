// Documents as a whole: notifications, opening and closing, saving, information, host text, file specifications.
// SPDX-License-Identifier: MIT
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "DocModelHFT.h"
#include "KernelSupportHFT.h"
#include "LexHFT.h"
#include "PIFrame.h"
#include "doc/Document.h"
#include "doc/Notify.h"
#include "kernel/HostError.h"
#include "tests/support/HostFixture.h"
#include "tests/support/Objects.h"

namespace {

using jackdaw::RegisterNotification;
using jackdaw::UnregisterNotification;

const std::vector<std::string> s_onePage = {
    "<< /Type /Catalog /Pages 2 0 R /Mark 1 >>",
    "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
    "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] >>",
};

std::vector<std::string> s_heard;
DMDocSaveRecord s_record;

KRProc procOf(auto *proc) {
    return reinterpret_cast<KRProc>(proc);
}

/** A path object that is released with it. */
class Path {
public:
    explicit Path(const std::string &text) : name(KRPathFromPlatformPath(text.c_str())) {}
    ~Path() {
        KRFileSysReleasePath(KRGetDefaultFileSys(), name);
    }
    operator KRPathName() const {
        return name;
    }

private:
    KRPathName name;
};

DMDoc open(const std::string &path) {
    return DMDocOpen(KRGetDefaultFileSys(), Path(path), nullptr);
}

std::int32_t mark(DMDoc doc) {
    return LexIntegerValue(At(LexDocGetRoot(DMDocGetLexDoc(doc)), "Mark"));
}

void change(DMDoc doc) {
    const LexDoc lex = DMDocGetLexDoc(doc);
    LexDictPut(LexDocGetRoot(lex), Atom("Mark"), LexNewInteger(lex, 0, mark(doc) + 1));
}

class DocTest : public testing::Test {
protected:
    void SetUp() override {
        s_heard.clear();
    }
    void TearDown() override {
        jackdaw::UnregisterNotificationsOf(extension);
    }
    void subscribe(std::int32_t number, KRProc proc, void *data = nullptr) {
        RegisterNotification(number, extension, proc, data);
    }
    void subscribeToSaves() {
        subscribe(DMDocWillSave, procOf(+[](DMDoc, const DMDocSaveRecord *record, void *) {
                      s_record = *record;
                      s_heard.push_back("will");
                  }));
        subscribe(DMDocDidSave,
                  procOf(+[](DMDoc, KRErrorCode error, void *) { s_heard.push_back("did " + std::to_string(error)); }));
    }
    static constexpr KRWord extension = 4711;
};

void sayData(void *data) {
    s_heard.push_back(static_cast<const char *>(data));
}

void leaveAndBring(void *) {
    s_heard.push_back("first");
    UnregisterNotification(SCAppFurtherEvent, 4711, procOf(&sayData), const_cast<char *>("leaving"));
    RegisterNotification(SCAppFurtherEvent, 4711, procOf(&sayData), const_cast<char *>("new"));
}

TEST_F(DocTest, SubscribersAreCalledInOrderWhateverOthersDo) {
    subscribe(SCAppFurtherEvent, procOf(&leaveAndBring));
    subscribe(SCAppFurtherEvent, procOf(+[](void *) { KRRaise(KRErrBadField); }));
    subscribe(SCAppFurtherEvent, procOf(&sayData), const_cast<char *>("leaving"));
    subscribe(SCAppFurtherEvent, procOf(&sayData), const_cast<char *>("last"));
    jackdaw::NotifyApp(SCAppFurtherEvent);
    EXPECT_EQ(s_heard, (std::vector<std::string>{"first", "last"}));
    s_heard.clear();
    UnregisterNotification(SCAppFurtherEvent, extension, procOf(&leaveAndBring), nullptr);
    jackdaw::NotifyApp(SCAppFurtherEvent);
    EXPECT_EQ(s_heard, (std::vector<std::string>{"last", "new"}));
}

TEST_F(DocTest, OneFileIsOneDocumentUntilItsLastReferenceGoes) {
    const std::string path = TempFile("one.pdf", PdfText(s_onePage));
    const std::string link = path + ".link";
    std::filesystem::create_symlink(path, link);
    const DMDoc doc = open(path);
    EXPECT_EQ(open(link), doc);
    const LexDoc lex = DMDocGetLexDoc(doc);
    EXPECT_EQ(DMDocFromLexDoc(lex), doc);
    DMDocClose(doc);
    EXPECT_EQ(DMDocGetNumPages(doc), 1);
    DMDocClose(doc);
    EXPECT_EQ(Protect([&] { DMDocGetNumPages(doc); }), KRErrBadParam);
    EXPECT_EQ(Protect([&] { DMDocClose(doc); }), KRErrBadParam);
    EXPECT_EQ(DMDocFromLexDoc(lex), nullptr);
    EXPECT_EQ(Protect([&] { open(path + ".missing"); }), KRErrFileNotFound);
    EXPECT_EQ(Protect([&] { open(TempFile("bad.pdf", "no such format")); }), KRErrBadPDF);
}

TEST_F(DocTest, SavingTellsSubscribersAndMovesTheDocumentToItsNewFile) {
    subscribeToSaves();
    const std::string first = TempFile("first.pdf", PdfText(s_onePage));
    const std::string second = TempFile("second.pdf", "");
    const DMDoc doc = open(first);
    EXPECT_EQ(DMDocGetFlags(doc) & DMDocDirty, 0u);
    DMDocEnsureWrite(doc, 1, 0);
    EXPECT_EQ(DMDocGetFlags(doc) & DMDocDirty, 0u) << "getting ready is no change";
    change(doc);
    EXPECT_EQ(DMDocGetFlags(doc) & DMDocDirty, DMDocDirty);
    DMDocSave(doc, 0, KRGetDefaultFileSys(), Path(second));
    EXPECT_EQ(s_heard, (std::vector<std::string>{"will", "did 0"}));
    EXPECT_EQ(s_record.size, sizeof(DMDocSaveRecord));
    EXPECT_EQ(s_record.flags, DMDocSaveFull);
    EXPECT_EQ(DMDocGetFlags(doc) & DMDocDirty, 0u);
    EXPECT_EQ(ReadAll(first), PdfText(s_onePage));
    EXPECT_EQ(open(second), doc) << "the new file is the document's, though it did not exist at the opening";
    DMDocClose(doc);
    const DMDoc other = open(first);
    EXPECT_NE(other, doc);
    DMDocClose(other);
    DMDocSave(doc, 0, nullptr, nullptr);
    EXPECT_EQ(open(second), doc) << "also after the file was renamed into place";
    DMDocClose(doc);
    DMDocClose(doc);
}

TEST_F(DocTest, ACopyLeavesFileAndDirtinessAlone) {
    subscribe(DMDocWillSave, procOf(+[](DMDoc doc, const DMDocSaveRecord *record, void *) {
                  s_record = *record;
                  change(doc);
              }));
    const std::string own = TempFile("own.pdf", PdfText(s_onePage));
    const std::string copy = TempFile("copy.pdf", "");
    const DMDoc doc = open(own);
    DMDocSave(doc, DMDocSaveCopy, KRGetDefaultFileSys(), Path(copy));
    EXPECT_EQ(s_record.flags, DMDocSaveFull | DMDocSaveCopy);
    EXPECT_EQ(DMDocGetFlags(doc) & DMDocDirty, 0u) << "what subscribers did for the copy is no change of the user's";
    EXPECT_EQ(open(own), doc);
    DMDocClose(doc);
    change(doc);
    DMDocSave(doc, DMDocSaveCopy, KRGetDefaultFileSys(), Path(copy));
    EXPECT_EQ(DMDocGetFlags(doc) & DMDocDirty, DMDocDirty);
    const DMDoc copied = open(copy);
    EXPECT_NE(copied, doc);
    EXPECT_EQ(mark(copied), mark(doc));
    DMDocClose(copied);
    DMDocClose(doc);
}

TEST_F(DocTest, AFailedSaveIsToldToAllAndLosesNothing) {
    subscribeToSaves();
    const std::string path = TempFile("own.pdf", PdfText(s_onePage));
    const DMDoc doc = open(path);
    change(doc);
    const KRErrorCode code =
        Protect([&] { DMDocSave(doc, 0, KRGetDefaultFileSys(), Path(path + ".missing/folder.pdf")); });
    EXPECT_NE(code, KRErrNone);
    EXPECT_EQ(s_heard, (std::vector<std::string>{"will", "did " + std::to_string(code)}));
    EXPECT_EQ(DMDocGetFlags(doc) & DMDocDirty, DMDocDirty);
    EXPECT_EQ(open(path), doc);
    DMDocClose(doc);
    DMDocClose(doc);
}

TEST_F(DocTest, SubscribersMayCloseTheDocumentAndMayNotSaveItAgain) {
    subscribe(DMDocWillSave, procOf(+[](DMDoc doc, const DMDocSaveRecord *, void *) {
                  s_heard.push_back(std::to_string(Protect([&] { DMDocSave(doc, 0, nullptr, nullptr); })));
                  DMDocClose(doc);
                  s_heard.push_back(std::to_string(Protect([&] { DMDocClose(doc); })));
              }));
    const DMDoc doc = open(TempFile("own.pdf", PdfText(s_onePage)));
    DMDocSave(doc, 0, nullptr, nullptr);
    const std::string refused = std::to_string(KRErrBadParam);
    EXPECT_EQ(s_heard, (std::vector<std::string>{refused, refused}));
    EXPECT_FALSE(jackdaw::IsOpenDoc(doc));
}

TEST_F(DocTest, ADocumentFromBytesHasNoFileAndIsWrittenToAStream) {
    subscribeToSaves();
    const DMDoc doc = jackdaw::OpenDocFromBytes(PdfText(s_onePage), nullptr);
    EXPECT_EQ(DMDocGetFile(doc), nullptr);
    EXPECT_EQ(Protect([&] { DMDocSave(doc, 0, nullptr, nullptr); }), KRErrBadParam);
    EXPECT_TRUE(s_heard.empty());
    change(doc);
    const std::string path = TempFile("stream.pdf", "");
    std::FILE *const stream = std::fopen(path.c_str(), "wb");
    jackdaw::SaveDocToStream(doc, stream);
    std::fclose(stream);
    EXPECT_EQ(s_heard, (std::vector<std::string>{"will", "did 0"}));
    EXPECT_EQ(DMDocGetFlags(doc) & DMDocDirty, DMDocDirty);
    DMDocClose(doc);
    const DMDoc again = open(path);
    EXPECT_EQ(DMDocGetNumPages(again), 1);
    DMDocClose(again);
}

TEST_F(DocTest, InfoIsBytes) {
    const DMDoc doc = jackdaw::OpenDocFromBytes(PdfText(s_onePage), nullptr);
    char buffer[8] = "before";
    EXPECT_EQ(DMDocGetInfo(doc, "Title", buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, "");
    DMDocSetInfo(doc, "Title", nullptr, 0);
    EXPECT_EQ(LexObjGetType(LexDictGet(LexDocGetTrailer(DMDocGetLexDoc(doc)), Atom("Info"))), LexNull);
    const std::string wide("\xFE\xFF\0T\0i\0t\0l\0e", 12);
    DMDocSetInfo(doc, "Title", wide.data(), static_cast<std::int32_t>(wide.size()));
    EXPECT_EQ(DMDocGetInfo(doc, "Title", buffer, sizeof buffer), 12);
    EXPECT_EQ(std::string(buffer, sizeof buffer), wide.substr(0, 7) + '\0');
    EXPECT_EQ(DMDocGetInfo(doc, "Title", nullptr, 0), 12);
    DMDocSetInfo(doc, "Title", "", 0);
    EXPECT_EQ(DMDocGetInfo(doc, "Title", buffer, sizeof buffer), 0);
    EXPECT_EQ(Protect([&] { DMDocSetInfo(doc, "Title", "x", -1); }), KRErrBadParam);
    DMDocClose(doc);
}

TEST(HostTextTest, ResultsAreCutAtWholeCharacters) {
    char text[16] = "\xE9tude";
    DMXlateToHost(text, sizeof text);
    EXPECT_STREQ(text, "\xC3\xA9tude");
    DMXlateToPDFDoc(text, sizeof text);
    EXPECT_STREQ(text, "\xE9tude");
    char tight[] = "ab\xE9";
    DMXlateToHost(tight, sizeof tight);
    EXPECT_STREQ(tight, "ab") << "half a character is none";
    char target[16];
    EXPECT_EQ(DMXlateFromHostEnc("\xC3\xA9", target, sizeof target), 1);
    EXPECT_EQ(DMXlateFromHostEnc("\xE4\xB8\xAD\xE6\x96\x87", target, sizeof target), 6);
    EXPECT_EQ(std::string(target, 8), std::string("\xFE\xFF\x4E\x2D\x65\x87\0\0", 8));
    char back[16];
    EXPECT_EQ(DMXlateToHostEnc(target, 6, back, sizeof back), 6);
    EXPECT_STREQ(back, "\xE4\xB8\xAD\xE6\x96\x87");
    EXPECT_EQ(DMXlateToHostEnc(target, 6, back, 6), 3);
    EXPECT_EQ(DMXlateFromHostEnc("\xE4\xB8\xAD\xE6\x96\x87", target, 7), 4);
    EXPECT_EQ(DMXlateFromHostEnc("\xF0\x9F\x98\x80", target, 7), 2) << "half a surrogate pair is none";
    EXPECT_EQ(DMXlateFromHostEnc("\xE4\xB8\xAD", target, 3), 0);
    EXPECT_EQ(DMXlateFromHostEnc("", target, 1), 0);
    EXPECT_NE(DMHostEncodingIsKnown(nullptr), nullptr);
    EXPECT_EQ(DMHostEncodingIsKnown("no such encoding"), nullptr);
}

class FileSpecTest : public testing::Test {
protected:
    DMDoc doc = jackdaw::OpenDocFromBytes(
        PdfText({"<< /Type /Catalog /Specs [(sub/a.pdf) << /F (f.pdf) /UF <FEFF00E9> >> << /F 7 /DOS (d\\\\e.pdf) >>"
                 " << /FS /Nowhere /F (x) >> << /F () >> 5 (/abs/a.pdf)] >>"}),
        nullptr);
    ~FileSpecTest() override {
        DMDocClose(doc);
    }
    DMFileSpec spec(std::int32_t index) const {
        const LexObj specs = LexDictGet(LexDocGetRoot(DMDocGetLexDoc(doc)), Atom("Specs"));
        return DMFileSpecFromLexObj(LexArrayGet(specs, index));
    }
    static std::string diPath(DMFileSpec spec, KRPathName base) {
        char buffer[64];
        DMFileSpecGetDIPath(spec, base, buffer, sizeof buffer);
        return buffer;
    }
    static std::string path(DMFileSpec spec, KRPathName base) {
        const KRPathName name = DMFileSpecAcquirePath(spec, base);
        if (name == nullptr) return "none";
        char *const text = KRFileSysPlatformPath(KRGetDefaultFileSys(), name);
        const std::string result = text;
        KRfree(text);
        KRFileSysReleasePath(KRGetDefaultFileSys(), name);
        return result;
    }
};

TEST_F(FileSpecTest, TheSpeakingEntryIsFoundAndResolved) {
    const Path base("/home/of/base.pdf");
    EXPECT_EQ(path(spec(0), base), "/home/of/sub/a.pdf");
    EXPECT_EQ(diPath(spec(0), nullptr), "sub/a.pdf");
    EXPECT_EQ(diPath(spec(0), base), "/home/of/sub/a.pdf");
    EXPECT_EQ(diPath(spec(1), nullptr), "\xC3\xA9");
    EXPECT_EQ(diPath(spec(2), nullptr), "d/e.pdf");
    EXPECT_EQ(path(spec(6), base), "/abs/a.pdf");
    EXPECT_EQ(DMFileSpecGetFileSys(spec(0)), KRGetDefaultFileSys());
    EXPECT_EQ(DMFileSpecGetFileSys(spec(3)), nullptr);
    EXPECT_EQ(path(spec(3), base), "none");
    for (const std::int32_t bad : {4, 5, 99}) {
        EXPECT_FALSE(DMFileSpecIsValid(spec(bad))) << bad;
        EXPECT_EQ(path(spec(bad), base), "none") << bad;
    }
    char tiny[2] = {'x', 'x'};
    DMFileSpecGetDIPath(spec(1), nullptr, tiny, sizeof tiny);
    EXPECT_STREQ(tiny, "");
}

} // namespace
