// The document store: what opens, what is refused, and what a save keeps.
// SPDX-License-Identifier: MIT
#include "lex/Store.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <set>

#include <gtest/gtest.h>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFWriter.hh>

#include "KernelSupportHFT.h"
#include "LexHFT.h"
#include "PIFrame.h"
#include "kernel/Files.h"
#include "lex/LexApi.h"
#include "lex/LexStreams.h"
#include "tests/host/LexTestDoc.h"
#include "tests/support/PdfObjects.h"

using namespace jackdaw;
using namespace lextest;

namespace {

const std::vector<std::string> s_form = {
    "<< /Type /Catalog /Pages 2 0 R /AcroForm << /Fields [3 0 R] >> >>",
    "<< /Type /Pages /Kids [ ] /Count 0 >>",
    "<< /T (name) /V (value) /R [ 1. .50 ] >>",
    "<< /Length 5 0 R /Filter /ASCIIHexDecode >>\nstream\n41 4 2>\nendstream",
    "7",
};

/** Writes a document with the library itself. */
std::string Rewritten(const std::string &bytes, const std::function<void(QPDFWriter &)> &setUp) {
    QPDF pdf;
    pdf.processMemoryFile("source", bytes.data(), bytes.size());
    QPDFWriter writer(pdf);
    writer.setOutputMemory();
    setUp(writer);
    writer.write();
    const std::shared_ptr<Buffer> buffer = writer.getBufferSharedPointer();
    return {reinterpret_cast<const char *>(buffer->getBuffer()), buffer->getSize()};
}

std::string Encrypted(const std::string &user, const std::string &owner, bool fillIn) {
    return Rewritten(PdfText(s_form), [&](QPDFWriter &writer) {
        writer.setR6EncryptionParameters(user.c_str(), owner.c_str(), true, true, /*assemble*/ false,
                                         /*annotate*/ false, fillIn, /*modify*/ false, qpdf_r3p_none, true);
    });
}

std::string OpenedAndSaved(const std::string &bytes) {
    Doc doc(bytes);
    return lex::SaveStoreToString(doc);
}

bool opens(const std::string &bytes) {
    return codeOf([&] { Doc doc(bytes); }) == KRErrNone;
}

TEST(StoreSave, KeepsEveryObjectAndEveryStreamsBytes) {
    const std::string classic = PdfText(s_form);
    const std::string packed =
        Rewritten(classic, [](QPDFWriter &writer) { writer.setObjectStreamMode(qpdf_o_generate); });
    std::vector<std::string> sources = {TempFile("classic.pdf", classic), TempFile("packed.pdf", packed)};
    for (const char *folder : {TESSELLA_FORMS_DIR, TESSELLA_SAMPLES_DIR, TESSELLA_TEST_DATA_DIR}) {
        std::error_code absent;
        for (const auto &entry : std::filesystem::directory_iterator(folder, absent))
            if (entry.path().extension() == ".pdf") sources.push_back(entry.path().string());
    }
    for (const std::string &source : sources) {
        Doc before(lex::OpenPdfFile(source, nullptr));
        const std::string saved = TempFile("saved.pdf", lex::SaveStoreToString(before));
        for (const std::string &difference : CompareObjects(source, saved)) ADD_FAILURE() << source << difference;
        Doc after(lex::OpenPdfFile(saved, nullptr));
        EXPECT_TRUE(lex::DamageOf(after).empty()) << source << ": " << lex::DamageOf(after)[0];
        EXPECT_FALSE(lex::FactsOf(after).repaired) << source;
        EXPECT_EQ(lex::FactsOf(after).encrypted, lex::FactsOf(before).encrypted) << source;
    }
    EXPECT_NE(OpenedAndSaved(packed).find("/ObjStm"), std::string::npos);
    EXPECT_EQ(OpenedAndSaved(packed).find("(name)"), std::string::npos) << "object streams are packed again";
    EXPECT_EQ(OpenedAndSaved(classic).find("/ObjStm"), std::string::npos);
}

TEST(StoreSave, ADocumentWithoutSizeOrWithADirectCatalogComesOutWhole) {
    const std::string body = "%PDF-1.4\n2 0 obj\n<< /X (x) >>\nendobj\n";
    for (const char *trailer : {"1 0 obj\n<< /A 2 0 R /AcroForm << >> >>\nendobj\ntrailer\n<< /Root 1 0 R >>\n",
                                "trailer\n<< /Root << /A 2 0 R /AcroForm << >> >> >>\n"}) {
        Doc doc(body + trailer);
        EXPECT_TRUE(lex::FactsOf(doc).repaired);
        EXPECT_EQ(lex::TypeOf(doc.At("Tessella")), LexDict);
        Doc again(lex::SaveStoreToString(doc));
        EXPECT_TRUE(lex::DamageOf(again).empty()) << lex::DamageOf(again)[0];
        EXPECT_EQ(lex::StringValue(again.At("A/X")), "x");
        EXPECT_EQ(lex::TypeOf(again.At("Tessella")), LexDict);
    }
}

TEST(StoreSave, OverItsOwnFileTwiceAndNeverLosingItOnFailure) {
    const std::string path = TempFile("own.pdf", PdfText(s_form));
    LexDoc opened = lex::OpenPdfFile(path, nullptr);
    Doc doc(opened);
    for (const char *value : {"first", "second"}) {
        lex::DictPut(doc.At("Tessella/Fields/0"), Atom("V"), lex::NewString(doc, false, value));
        lex::SaveStore(doc, path);
        Doc again(ReadAll(path));
        EXPECT_EQ(lex::StringValue(again.At("Tessella/Fields/0/V")), value);
    }
    if (const std::string full = FullDevice(); !full.empty()) {
        EXPECT_EQ(codeOf([&] { lex::SaveStore(doc, full); }), KRErrDiskFull);
    }
    EXPECT_NE(codeOf([&] { lex::SaveStore(doc, path + "/no/folder"); }), KRErrNone);
    lex::DestroyObj(lex::RootOf(doc));
    const std::string former = ReadAll(path);
    EXPECT_EQ(codeOf([&] { lex::SaveStore(doc, path); }), KRErrBadPDF);
    EXPECT_EQ(ReadAll(path), former);
}

/** A form of a few hundred thousand bytes, of which little is read when it is opened. */
std::string LargeForm() {
    std::vector<std::string> objects = s_form;
    objects[3] = "<< /Length 300000 >>\nstream\n" + std::string(300000, 'x') + "\nendstream";
    objects.push_back("<< /Contents 4 0 R >>");
    objects[1] = "<< /Type /Pages /Kids [ ] /Count 0 /Kept 6 0 R >>";
    return PdfText(objects);
}

TEST(StoreSave, NothingIsSavedOfAFileThatChangedWhileItWasOpen) {
    const std::string bytes = LargeForm();
    const std::pair<const char *, std::function<void(const std::string &)>> s_changes[] = {
        {"cut", [&](const std::string &path) { std::filesystem::resize_file(path, bytes.size() / 2); }},
        {"grown", [&](const std::string &path) { std::ofstream(path, std::ios::app) << "more"; }},
        {"written over",
         [&](const std::string &path) {
             std::fstream(path, std::ios::in | std::ios::out).seekp(1000) << "y";
             const auto time = std::filesystem::last_write_time(path);
             std::filesystem::last_write_time(path, time + std::chrono::seconds(1));
         }},
    };
    for (const auto &[name, change] : s_changes) {
        SCOPED_TRACE(name);
        const std::string path = TempFile("changing.pdf", bytes), target = TempFile("target.pdf", "former");
        Doc doc(lex::OpenPdfFile(path, nullptr));
        change(path);
        EXPECT_EQ(codeOf([&] { lex::SaveStore(doc, target); }), KRErrFileIO);
        EXPECT_EQ(codeOf([&] { lex::DamageOf(doc); }), KRErrFileIO);
        EXPECT_EQ(ReadAll(target), "former");
    }
}

TEST(StoreSave, DamageIsToldAndCanBeRefused) {
    const std::string classic = PdfText(s_form);
    const std::string cut = classic.substr(0, classic.find("5 0 obj"));
    std::string wrongOffsets = classic, unreadable = classic;
    wrongOffsets.insert(wrongOffsets.find("3 0 obj"), "          ");
    unreadable.replace(unreadable.find("/V (value)"), 10, "/V >>>>>>>");
    for (const std::string &bytes : {cut, wrongOffsets, unreadable}) {
        const std::string target = TempFile("target.pdf", "former");
        Doc doc(bytes);
        EXPECT_EQ(codeOf([&] { lex::SaveStore(doc, target, lex::Damage::Refused); }), KRErrBadPDF);
        EXPECT_EQ(ReadAll(target), "former");
        lex::SaveStore(doc, target);
        EXPECT_FALSE(lex::DamageOf(doc).empty());
        Doc sound(ReadAll(target));
        EXPECT_EQ(lex::DamageOf(sound), std::vector<std::string>());
        lex::SaveStore(sound, target, lex::Damage::Refused);
    }
    Doc doc(cut);
    const auto lines = lex::DamageOf(doc);
    EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [](const std::string &line) {
        return line.find("(object 5 0): is missing") != std::string::npos;
    }));
}

// A crypt filter without parameters is the identity: its stream is neither decrypted nor in the way of saving.
TEST(StoreSave, ACryptFilterNeedsNoParameters) {
    const std::string text = "<x:xmpmeta> in the clear </x:xmpmeta>";
    std::vector<std::string> objects = s_form;
    objects[0] = "<< /Type /Catalog /Pages 2 0 R /Metadata 6 0 R /AcroForm << /Fields [3 0 R] >> >>";
    objects.push_back("<< /Type /Metadata /Subtype /XML /Length " + std::to_string(text.size()) + " >>\nstream\n" +
                      text + "\nendstream");
    std::string bytes = Rewritten(PdfText(objects), [](QPDFWriter &writer) {
        writer.setR6EncryptionParameters("", "owner", true, true, true, true, true, true, qpdf_r3p_full,
                                         /*encryptMetadata*/ false);
        writer.setStreamDataMode(qpdf_s_preserve);
    });
    // Of the same length, so that the offsets hold.
    const std::size_t subtype = bytes.find("/Subtype /XML");
    ASSERT_NE(subtype, std::string::npos);
    bytes.replace(bytes.find("/Type /Metadata"), 15, "/Filter[/Crypt]");
    bytes.replace(subtype, 13, "/Subt    /XML");
    Doc doc(bytes);
    Doc saved(lex::SaveStoreToString(doc));
    EXPECT_EQ(lex::RawData(saved.At("Metadata")), text);
    EXPECT_EQ(lex::StringValue(saved.At("Tessella/Fields/0/V")), "value");
    EXPECT_EQ(lex::DamageOf(saved), std::vector<std::string>());
}

TEST(StoreOpen, EncryptionAsksForAPasswordAndGivesTheRightsOfWhoOpened) {
    const std::string bytes = Encrypted("user", "owner", /*fillIn*/ true);
    const auto open = [&](const char *password) { return lex::OpenPdfBytes("locked.pdf", bytes, password); };
    EXPECT_EQ(codeOf([&] { open(nullptr); }), KRErrPassword);
    EXPECT_EQ(codeOf([&] { open("wrong"); }), KRErrPassword);
    Doc user(open("user")), owner(open("owner"));
    EXPECT_FALSE(lex::FactsOf(user).owner);
    EXPECT_TRUE(lex::FactsOf(owner).owner);
    EXPECT_EQ(lex::PermissionsOf(owner), 0xFFFFFFFF);
    EXPECT_EQ(lex::PermissionsOf(user) & (0x8000 | 256 | 32 | 8), 256u | 32u);
    Doc readOnly(Encrypted("", "owner", /*fillIn*/ false));
    EXPECT_TRUE(lex::FactsOf(readOnly).encrypted);
    EXPECT_EQ(lex::PermissionsOf(readOnly) & (0x8000 | 256 | 32 | 8), 0u);
    Doc plain(PdfText(s_form));
    EXPECT_EQ(lex::PermissionsOf(plain), 0xFFFFFFFF);

    const std::string saved = lex::SaveStoreToString(user);
    EXPECT_EQ(codeOf([&] { Doc doc(saved); }), KRErrPassword);
    for (const char *password : {"user", "owner"}) {
        Doc again(lex::OpenPdfBytes("saved.pdf", saved, password));
        EXPECT_EQ(lex::StringValue(again.At("Tessella/Fields/0/V")), "value") << password;
    }
    const std::size_t trailer = bytes.find("trailer");
    EXPECT_FALSE(opens(bytes.substr(0, trailer))) << "without its key the file would read as rubbish";
}

TEST(StoreOpen, CutFilesComeBackAndRubbishIsRefused) {
    std::string classic = PdfText(s_form);
    Doc cut(lex::OpenPdfFile(TempFile("cut.pdf", classic.substr(0, classic.find("xref\n"))), nullptr));
    EXPECT_TRUE(lex::FactsOf(cut).repaired);
    EXPECT_EQ(lex::StringValue(cut.At("Tessella/Fields/0/V")), "value");
    for (const std::size_t percent : {10, 30, 50, 70, 90, 99}) {
        const std::string part = classic.substr(0, classic.size() * percent / 100);
        if (part.find("endobj") == std::string::npos) continue;
        Doc doc(part);
        EXPECT_EQ(lex::TypeOf(doc.At("Tessella")), LexDict) << percent;
        EXPECT_FALSE(lex::SaveStoreToString(doc).empty());
    }
    std::string packed = Rewritten(classic, [](QPDFWriter &writer) { writer.setObjectStreamMode(qpdf_o_generate); });
    packed.resize(packed.rfind("startxref"));
    Doc doc(packed);
    EXPECT_EQ(lex::StringValue(doc.At("Tessella/Fields/0/V")), "value");

    for (const char *rubbish : {"", "%PDF-1.4\n", "just text", "%PDF-1.4\ntrailer << /Root 9 0 R >>\n",
                                "%PDF-1.4\n1 0 obj\n[ /Type /Catalog ]\nendobj\n", "/Type /Catalog 1 0 obj /XRef obj"})
        EXPECT_EQ(codeOf([&] { Doc bad(rubbish); }), KRErrBadPDF) << rubbish;
    EXPECT_EQ(codeOf([&] { lex::OpenPdfFile("/nowhere/at/all.pdf", nullptr); }), KRErrFileNotFound);
    EXPECT_NE(codeOf([&] { lex::OpenPdfFile("/", nullptr); }), KRErrNone);
    try {
        lex::OpenPdfFile(TempFile("poor.pdf", "poor"), nullptr);
        FAIL();
    } catch (const HostError &error) {
        EXPECT_NE(error.what.find("poor.pdf"), std::string::npos) << error.what;
    }
}

TEST(StoreOpen, ALargeFileIsReadRightInWhateverOrder) {
    // Beyond what is kept of the file at a time, with streams across the borders of what is read at once.
    std::vector<std::string> objects = {"<< /L [ ] >>"};
    std::string refs;
    for (int i = 2; i < 60; ++i) {
        const std::string data(static_cast<std::size_t>(i) * 397, static_cast<char>('A' + i % 26));
        objects.push_back("<< /Length " + std::to_string(data.size()) + " >>\nstream\n" + data + "\nendstream");
        refs += std::to_string(i) + " 0 R ";
    }
    objects[0] = "<< /L [ " + refs + "] >>";
    const std::string bytes = PdfText(objects);
    ASSERT_GT(bytes.size(), 600000u);
    Doc doc(lex::OpenPdfFile(TempFile("large.pdf", bytes), nullptr));
    for (int step = 0; step < 58; ++step) {
        const int i = step * 23 % 58;
        const std::string data = lex::RawData(lex::ArrayGet(doc.At("L"), i));
        EXPECT_EQ(data, std::string(static_cast<std::size_t>(i + 2) * 397, static_cast<char>('A' + (i + 2) % 26)));
    }
    EXPECT_TRUE(lex::DamageOf(doc).empty());
    const std::string broken = bytes.substr(0, bytes.rfind("startxref")) + "startxref\n99999999999999\n%%EOF\n";
    Doc repaired(lex::OpenPdfFile(TempFile("broken.pdf", broken), nullptr));
    EXPECT_TRUE(lex::FactsOf(repaired).repaired);
    EXPECT_EQ(lex::StreamLength(repaired.At("L/57")), 59 * 397);
}

TEST(StoreOpen, DeepAndLoopedFilesAreReadWithoutHarm) {
    const std::string deep = "<< /Deep " + std::string(100000, '[') + std::string(100000, ']') + " /Level " +
                             std::string(300, '[') + std::string(300, ']') + " >>";
    Doc nested{"<< /A 2 0 R /B 3 0 R >>", deep, "[ 3 0 R 3 0 R << /Kids [ 3 0 R ] /Parent 3 0 R >> ]"};
    EXPECT_FALSE(lex::SaveStoreToString(nested).empty());
    LexObj level = nested.At("B");
    for (int i = 0; i < 10000; ++i) level = lex::ArrayGet(level, 0);
    EXPECT_EQ(lex::ArrayLength(level), 3);

    Doc odd{"<< /A 2 0 R /B 3 0 R /C 4 0 R >>", "3 0 R", "2 0 R", "<< 1 2 /X#00Y 1 (k) /V >>"};
    lex::TypeOf(odd.At("A"));
    for (const auto &[key, value] : lex::DictEntries(odd.At("C"))) EXPECT_NE(key, KRAtomNull);
    EXPECT_FALSE(lex::DamageOf(odd).empty());
}

TEST(StoreFdf, IsBuiltSavedUnderItsHeaderAndReadAgain) {
    const std::string path = TempFile("made.fdf", "");
    const LexDoc made = LexDocCreate();
    const LexObj fdf = LexNewDict(made, 0, 1);
    LexDictPut(LexDocGetRoot(made), Atom("FDF"), fdf);
    LexDictPut(fdf, Atom("Kids"), lex::NewArray(made, false));
    LexArrayInsert(LexDictGet(fdf, Atom("Kids")), 0, LexNewDict(made, 0, 0));
    LexDictPut(LexDocGetRoot(made), Atom("AcroForm"), LexNewString(made, 0, "own name", 8));
    EXPECT_TRUE(lex::IsNull(lex::DictGet(lex::RootOf(made), Atom("Tessella")))) << "no translation in an FDF";
    KRPathName name = KRPathFromPlatformPath(path.c_str());
    LexDocSaveToFile(made, KRGetDefaultFileSys(), name);
    LexDocClose(made);
    EXPECT_EQ(ReadAll(path).substr(0, 9), "%FDF-1.2\n");

    const LexDoc opened = LexDocOpen(KRGetDefaultFileSys(), name);
    EXPECT_TRUE(lex::DamageOf(opened).empty());
    EXPECT_FALSE(lex::FactsOf(opened).repaired);
    std::filesystem::remove(path);
    LexObj kids = LexDictGet(LexDictGet(LexDocGetRoot(opened), Atom("FDF")), Atom("Kids"));
    EXPECT_EQ(LexObjGetType(LexArrayGet(kids, 0)), LexDict);
    EXPECT_FALSE(LexObjIsIndirect(LexArrayGet(kids, 0))) << "an FDF's fields stay direct";
    EXPECT_EQ(lex::SaveStoreToString(opened).substr(0, 9), "%FDF-1.2\n");
    LexDocClose(opened);
    KRFileSysReleasePath(KRGetDefaultFileSys(), name);
    EXPECT_EQ(Protect([&] { LexDocClose(opened); }), KRErrBadParam);
}

TEST(StoreFdf, OpensWhatOthersWriteAndRefusesWhatIsNoFdf) {
    const std::string object = "1 0 obj\n<< /FDF << /Fields [ << /T (a) /V (line\\nend) >> ] >> >>\nendobj\n";
    for (const std::string &text :
         {"%FDF-1.2\n" + object + "trailer\n<< /Root 1 0 R >>\n%%EOF\n",
          "\r\n  %FDF-1.2\r" + object + "trailer << /Root 1 0 R >>", "%FDF-1.2\n" + object,
          "%FDF-1.2 " + object.substr(0, object.size() - 7),
          std::string("%FDF-1.2\ntrailer << /Root << /FDF << /Fields [ << /T (a) >> ] >> >> >>\n"),
          "%FDF-1.2\n" + object + "trailer\n<< /Root 1 0 R >>\nstartxref\n0\n%%EOF"}) {
        Doc doc(lex::OpenFdfBytes("in.fdf", text));
        EXPECT_EQ(lex::StringValue(doc.At("FDF/Fields/0/T")), "a") << text;
        Doc again(lex::OpenFdfBytes("out.fdf", lex::SaveStoreToString(doc)));
        EXPECT_TRUE(lex::DamageOf(again).empty()) << lex::DamageOf(again)[0];
        EXPECT_EQ(lex::StringValue(again.At("FDF/Fields/0/T")), "a");
    }
    for (const std::string &text : {PdfText(s_form), std::string(), std::string(1024, ' ') + "%FDF-1.2\n" + object}) {
        try {
            lex::OpenFdfBytes("in.fdf", text);
            ADD_FAILURE() << text;
        } catch (const HostError &error) {
            EXPECT_EQ(error.code, KRErrNotFDF);
            EXPECT_NE(error.what.find("%PDF"), std::string::npos);
        }
    }
    EXPECT_EQ(codeOf([&] { lex::OpenFdfBytes("in.fdf", "%FDF-1.2\nnothing else"); }), KRErrBadPDF);
    Doc pdf(PdfText(s_form));
    EXPECT_EQ(Protect([&] { LexDocClose(pdf); }), KRErrBadParam) << "the document model closes it";
}

} // namespace
