// The object layer: identity, nulls, refusals, changes, streams, and the documents that hold it all.
// SPDX-License-Identifier: MIT
#include "lex/LexObjects.h"

#include <gtest/gtest.h>

#include "KernelSupportHFT.h"
#include "LexHFT.h"
#include "PIFrame.h"
#include "kernel/HostError.h"
#include "kernel/HostLimits.h"
#include "lex/LexApi.h"
#include "lex/LexStreams.h"
#include "lex/Store.h"
#include "tests/host/LexTestDoc.h"
#include "tests/support/HostFixture.h"

using namespace jackdaw;
using namespace lextest;

namespace {

bool Equal(LexObj a, LexObj b) {
    return LexObjEqual(a, b) != 0;
}

TEST(LexIdentity, TwoGetsOfOnePlaceGiveOneObjectHoweverItIsReached) {
    Doc doc{"<< /A << /X 1 >> /B 2 0 R /C 2 0 R /D [ << /Y 1 >> 2 0 R ] >>", "<< /Z 1 >>"};
    EXPECT_TRUE(Equal(doc.At("A"), doc.At("A")));
    EXPECT_TRUE(Equal(doc.At("B"), doc.At("C")));
    EXPECT_TRUE(Equal(doc.At("B"), doc.At("D/1")));
    EXPECT_TRUE(Equal(doc.At("D/0"), doc.At("D/0")));
    EXPECT_FALSE(Equal(doc.At("A"), doc.At("D/0")));
    EXPECT_EQ(lex::ObjectNumber(doc.At("B")), 2);
    EXPECT_FALSE(lex::IsIndirect(doc.At("A")));
}

TEST(LexIdentity, DirectElementsStayThemselvesWhenTheArrayMovesThem) {
    Doc doc{"<< /D [ << /N 0 >> << /N 1 >> << /N 2 >> << /N 3 >> ] >>"};
    const LexObj array = doc.At("D");
    const LexObj first = doc.At("D/0"), third = doc.At("D/2");
    lex::ArrayInsert(array, 1, lex::NewInteger(doc, false, 7));
    EXPECT_TRUE(Equal(lex::ArrayGet(array, 3), third));
    lex::ArrayRemove(array, first);
    EXPECT_TRUE(Equal(lex::ArrayGet(array, 2), third));
    EXPECT_EQ(lex::ArrayIndexOf(array, third), 2);
    // Never looked at before the moves: its place is right all the same.
    EXPECT_EQ(lex::IntegerValue(lex::DictGet(lex::ArrayGet(array, 3), Atom("N"))), 3);
    lex::ArrayInsert(array, 1000, first);
    EXPECT_EQ(lex::ArrayLength(array), 5);
    EXPECT_TRUE(Equal(lex::ArrayGet(array, 4), first));
    lex::ArrayRemove(array, lex::NewString(doc, false, "x"));
    EXPECT_EQ(lex::ArrayLength(array), 5);
    lex::ArrayRemove(array, lex::NewInteger(doc, false, 7));
    EXPECT_EQ(lex::ArrayLength(array), 4) << "small scalars are one object";
}

TEST(LexNulls, AllNullsAreTheNullObjectAndKnowNoKey) {
    Doc doc{"<< /A null /B 9 0 R /C 2 0 R /D [ null 9 0 R 1 ] >>", "null"};
    const LexObj root = lex::RootOf(doc);
    for (const char *key : {"A", "B", "C", "None"}) {
        EXPECT_TRUE(Equal(doc.At(key), LexNullObj)) << key;
        EXPECT_FALSE(lex::DictKnown(root, Atom(key))) << key;
    }
    EXPECT_TRUE(Equal(doc.At("D/0"), LexNullObj));
    EXPECT_TRUE(Equal(doc.At("D/1"), LexNullObj));
    EXPECT_TRUE(Equal(doc.At("D/3"), LexNullObj));
    EXPECT_EQ(lex::DictEntries(root).size(), 1u);
    lex::DictPut(root, Atom("D"), LexNullObj);
    EXPECT_FALSE(lex::DictKnown(root, Atom("D")));
    EXPECT_TRUE(lex::DictEntries(root).empty());
}

TEST(LexNulls, AnArrayGrowsWithNullsButNotWithoutBound) {
    Doc doc{"<< /D [ 1 ] >>"};
    const LexObj array = doc.At("D");
    lex::ArrayPut(array, 3, lex::NewBoolean(doc, false, true));
    EXPECT_EQ(lex::ArrayLength(array), 4);
    EXPECT_TRUE(lex::IsNull(lex::ArrayGet(array, 2)));
    EXPECT_TRUE(lex::BooleanValue(lex::ArrayGet(array, 3)));
    lex::ArrayPut(array, 0, LexNullObj);
    EXPECT_TRUE(lex::IsNull(lex::ArrayGet(array, 0)));
    EXPECT_EQ(codeOf([&] { lex::ArrayPut(array, 0x7FFFFFFF, array); }), KRErrBadParam);
    EXPECT_EQ(codeOf([&] { lex::ArrayGet(array, -1); }), KRErrBadParam);
}

TEST(LexRefusals, WrongTypesRaise) {
    Doc doc{"<< /N /Name /S (text) /I 3 /R 1.5 /D [ ] >>"};
    EXPECT_EQ(codeOf([&] { lex::IntegerValue(doc.At("R")); }), KRErrBadParam);
    EXPECT_EQ(codeOf([&] { lex::FixedValue(doc.At("I")); }), KRErrBadParam);
    EXPECT_EQ(codeOf([&] { lex::NameValue(doc.At("S")); }), KRErrBadParam);
    EXPECT_EQ(codeOf([&] { lex::DictGet(doc.At("D"), Atom("X")); }), KRErrBadParam);
    EXPECT_EQ(codeOf([&] { lex::ArrayLength(LexNullObj); }), KRErrBadParam);
    EXPECT_EQ(Protect([&] { LexStringValue(doc.At("N"), nullptr); }), KRErrBadParam);
}

TEST(LexRefusals, DirectCyclesForeignObjectsAndEndlessNesting) {
    Doc doc{"<< /A << /B << /C [ ] >> >> >>"}, other{"<< /X << >> /Y 2 0 R >>", "<< >>"};
    const LexObj a = doc.At("A");
    EXPECT_EQ(codeOf([&] { lex::ArrayInsert(doc.At("A/B/C"), 0, a); }), KRErrBadParam);
    EXPECT_EQ(codeOf([&] { lex::DictPut(a, Atom("Self"), a); }), KRErrBadParam);
    EXPECT_EQ(codeOf([&] { lex::DictPut(a, Atom("X"), other.At("X")); }), KRErrBadParam);
    EXPECT_EQ(codeOf([&] { lex::DictPut(a, Atom("X"), other.At("Y")); }), KRErrBadParam);
    EXPECT_EQ(codeOf([&] { lex::DictPut(a, Atom("X"), lex::NewInteger(other, false, 1)); }), KRErrBadParam);

    LexObj nest = lex::NewDict(doc, false);
    const auto deepen = [&] {
        for (int i = 0; i < 5000; ++i) {
            const LexObj outer = lex::NewDict(doc, false);
            lex::DictPut(outer, Atom("In"), nest);
            nest = outer;
        }
    };
    EXPECT_EQ(codeOf(deepen), KRErrBadParam);
    lex::DictPut(a, Atom("Nest"), lex::DictGet(lex::DictGet(lex::DictGet(nest, Atom("In")), Atom("In")), Atom("In")));
    lex::DictPut(a, Atom("Root"), lex::RootOf(doc));
    Doc again(lex::SaveStoreToString(doc));
    EXPECT_TRUE(Equal(again.At("A/Root"), lex::RootOf(again))) << "an indirect cycle is good";
}

TEST(LexChanges, ASharedDirectObjectMarksAnyHolderThatIsLeft) {
    Doc doc{"<< /A << >> /B << >> >>"};
    int changes = 0;
    lex::SetChangeObserver(doc, [&] { ++changes; });
    const LexObj shared = lex::NewDict(doc, false);
    lex::DictPut(shared, Atom("X"), lex::NewInteger(doc, false, 1));
    EXPECT_EQ(changes, 0) << "loose";
    lex::DictPut(doc.At("A"), Atom("S"), shared);
    lex::DictPut(doc.At("B"), Atom("S"), shared);
    EXPECT_EQ(changes, 2);
    lex::DictRemove(doc.At("A"), Atom("S"));
    lex::DictPut(shared, Atom("X"), lex::NewInteger(doc, false, 2));
    EXPECT_EQ(changes, 4) << "still held by B";
    lex::DictRemove(doc.At("B"), Atom("S"));
    const std::uint64_t stamp = lex::ChangeStamp(doc);
    lex::DictPut(shared, Atom("X"), lex::NewInteger(doc, false, 3));
    EXPECT_EQ(changes, 5) << "loose again";
    EXPECT_GT(lex::ChangeStamp(doc), stamp);
    lex::DictRemove(doc.At("B"), Atom("S"));
    EXPECT_EQ(changes, 5) << "nothing was there";
}

TEST(LexChanges, ADestroyedObjectReadsAsNullEverywhereAndAfterTheSave) {
    Doc doc{"<< /A 2 0 R /D [ 2 0 R 3 0 R ] >>", "<< /In << /X 1 >> >>", "(kept)"};
    const LexObj gone = doc.At("A"), inner = doc.At("A/In");
    lex::DestroyObj(gone);
    EXPECT_EQ(lex::TypeOf(gone), LexNull);
    EXPECT_TRUE(Equal(doc.At("A"), LexNullObj));
    EXPECT_TRUE(Equal(doc.At("D/0"), LexNullObj));
    EXPECT_EQ(lex::IntegerValue(lex::DictGet(inner, Atom("X"))), 1) << "what it held lives on, loose";
    const LexObj loose = lex::NewDict(doc, false);
    lex::DestroyObj(loose);
    EXPECT_EQ(lex::TypeOf(loose), LexNull);
    Doc again(lex::SaveStoreToString(doc));
    EXPECT_TRUE(lex::IsNull(again.At("D/0")));
    EXPECT_EQ(lex::StringValue(again.At("D/1")), "kept");
}

TEST(LexChanges, ADirectObjectMadeIndirectStaysItself) {
    Doc doc{"<< /A [ << /X 1 >> ] >>"};
    const LexObj direct = doc.At("A/0");
    EXPECT_TRUE(Equal(lex::EnsureIndirect(direct), direct));
    EXPECT_TRUE(Equal(doc.At("A/0"), direct));
    EXPECT_TRUE(lex::IsIndirect(direct));
    lex::DictPut(direct, Atom("Back"), doc.At("A"));
    EXPECT_EQ(codeOf([&] { lex::EnsureIndirect(lex::TrailerOf(doc)); }), KRErrBadParam);
    Doc again(lex::SaveStoreToString(doc));
    EXPECT_TRUE(lex::IsIndirect(again.At("A/0")));
}

TEST(LexFields, DirectFieldsBecomeIndirectWhenHandedOut) {
    Doc doc{"<< /AcroForm << /Fields [ << /T (a) /Kids [ << /T (b) >> ] >> ] >> /Fields [ << /T (no) >> ] >>"};
    int changes = 0;
    lex::SetChangeObserver(doc, [&] { ++changes; });
    EXPECT_TRUE(lex::IsIndirect(doc.At("Tessella/Fields/0")));
    EXPECT_TRUE(lex::IsIndirect(doc.At("Tessella/Fields/0/Kids/0")));
    EXPECT_FALSE(lex::IsIndirect(doc.At("Fields/0"))) << "not the form's";
    EXPECT_EQ(changes, 0) << "reading makes nothing dirty";

    const LexObj built = lex::NewArray(doc, false);
    lex::ArrayPut(built, 0, lex::NewDict(doc, false));
    lex::DictPut(doc.At("Tessella"), Atom("Fields"), built);
    EXPECT_TRUE(lex::IsIndirect(doc.At("Tessella/Fields/0")));
}

TEST(LexKeys, TheCatalogsFormKeyIsTranslatedAndNothingElse) {
    Doc doc{"<< /AcroForm << /Tessella 1 /AcroForm 2 >> /Tessella (literal) >>"};
    const LexObj root = lex::RootOf(doc);
    const LexObj form = doc.At("Tessella");
    ASSERT_EQ(lex::TypeOf(form), LexDict);
    EXPECT_EQ(lex::IntegerValue(lex::DictGet(form, Atom("Tessella"))), 1);
    EXPECT_EQ(lex::IntegerValue(lex::DictGet(form, Atom("AcroForm"))), 2);
    EXPECT_FALSE(lex::DictKnown(root, Atom("AcroForm")));
    EXPECT_EQ(codeOf([&] { lex::DictPut(root, Atom("AcroForm"), form); }), KRErrBadParam);
    const auto entries = lex::DictEntries(root);
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].first, Atom("Tessella"));

    lex::DictPut(root, Atom("Tessella"), lex::NewDict(doc, true));
    const std::string saved = lex::SaveStoreToString(doc);
    EXPECT_NE(saved.find("/AcroForm"), std::string::npos);
    EXPECT_NE(saved.find("/Tessella (literal)"), std::string::npos);
    lex::DictRemove(root, Atom("Tessella"));
    EXPECT_FALSE(lex::DictKnown(root, Atom("Tessella")));
    EXPECT_EQ(lex::SaveStoreToString(doc).find("/AcroForm"), std::string::npos);
}

TEST(LexNumbers, TextsOutliveTheSaveAndValuesAreRoundedAndClamped) {
    Doc doc{"<< /R [ 4. .333333333 -.5 +2.25 99999.75 -99999 1.99999999 ] /I [ 99999999999 -99999999999 ] /Far 1e5 >>"};
    const KRFixed expected[] = {4 << 16, 21845, -0x8000, 0x24000, 0x7FFFFFFF};
    for (int i = 0; i < 5; ++i) EXPECT_EQ(lex::FixedValue(lex::ArrayGet(doc.At("R"), i)), expected[i]) << i;
    EXPECT_EQ(lex::NumberOr(doc.At("R/5"), 0), INT32_MIN);
    EXPECT_EQ(lex::FixedValue(doc.At("R/6")), 2 << 16);
    EXPECT_EQ(lex::IntegerValue(doc.At("I/0")), INT32_MAX);
    EXPECT_EQ(lex::IntegerValue(doc.At("I/1")), INT32_MIN);
    EXPECT_EQ(lex::NumberOr(doc.At("Far"), 5), 5);
    const KRFixed samples[] = {1, -1, 0x7FFFFFFF, INT32_MIN, 0x12345, 0};
    const LexObj fixed = lex::NewArray(doc, false);
    for (int i = 0; i < 6; ++i) lex::ArrayPut(fixed, i, lex::NewFixed(doc, false, samples[i]));
    lex::DictPut(lex::RootOf(doc), Atom("F"), fixed);
    const std::string saved = lex::SaveStoreToString(doc);
    EXPECT_NE(saved.find("4. .333333333 -.5"), std::string::npos);
    Doc again(saved);
    for (int i = 0; i < 6; ++i) EXPECT_EQ(lex::NumberOr(lex::ArrayGet(again.At("F"), i), 7), samples[i]) << i;
}

TEST(LexStrings, BytesWithNulsKeepTheirLengthAndTheirPlaceInMemory) {
    Doc doc{"<< /S <410042> >>"};
    const LexObj text = doc.At("S");
    std::int32_t length = 0;
    const char *bytes = LexStringValue(text, &length);
    EXPECT_EQ(std::string(bytes, 3), std::string("A\0B", 3));
    EXPECT_EQ(length, 3);
    lex::DictRemove(lex::RootOf(doc), Atom("S"));
    EXPECT_EQ(LexStringValue(text, nullptr), bytes);
    const LexObj copy = lex::CopyScalar(doc, text);
    EXPECT_FALSE(Equal(copy, text));
    EXPECT_EQ(lex::StringValue(copy), lex::StringValue(text));
}

struct Walk {
    Doc *doc;
    std::string seen;
    KRErrorCode raise = KRErrNone;
};

KRBool Visit(LexObj key, LexObj value, void *clientData) {
    auto &walk = *static_cast<Walk *>(clientData);
    if (LexObjGetType(key) == LexName) walk.seen += KRAtomGetString(LexNameValue(key));
    walk.seen += std::to_string(LexObjGetType(value)) + " ";
    if (walk.doc) LexDictRemove(LexDocGetRoot(*walk.doc), Atom("C"));
    RaiseIf(walk.raise);
    return walk.seen.size() < 12;
}

TEST(LexEnum, WalksWhatWasThereAtItsStartAndLetsARaisePass) {
    Doc doc{"<< /B 1 /A (x) /C /N /D [ 5 null ] /Z null >>"};
    Walk walk{nullptr, {}};
    EXPECT_FALSE(LexObjEnum(lex::RootOf(doc), &Visit, &walk));
    EXPECT_EQ(walk.seen, "A5 B1 C4 D7 ");
    walk = {&doc, {}};
    LexObjEnum(lex::RootOf(doc), &Visit, &walk);
    EXPECT_EQ(walk.seen, "A5 B1 C4 D7 ") << "removed during the walk, told all the same";
    walk = {nullptr, {}};
    EXPECT_TRUE(LexObjEnum(doc.At("D"), &Visit, &walk));
    EXPECT_EQ(walk.seen, "0 0 ");
    walk = {nullptr, {}, KRErrDefineFailed};
    EXPECT_EQ(Protect([&] { LexObjEnum(doc.At("D"), &Visit, &walk); }), KRErrDefineFailed);
}

TEST(LexStreams, NewDataIsEncodedByTheFiltersOrTakenAsItStands) {
    Doc doc{"<< >>"};
    const std::string data = "Four zeros: " + std::string(4, '\0') + " and a tail of 3.";
    const char *filters[] = {"/FlateDecode",
                             "/ASCIIHexDecode",
                             "/ASCII85Decode",
                             "[/ASCII85Decode /FlateDecode]",
                             "[/FlateDecode /FlateDecode]",
                             "/LZWDecode",
                             "[/DCTDecode 7]"};
    LexObj list = lex::NewArray(doc, false);
    lex::DictPut(lex::RootOf(doc), Atom("L"), list);
    for (const char *filter : filters) {
        Doc attributes{std::string("<< /Filter ") + filter + " /DecodeParms << /Predictor 12 >> /BBox [0 0 1 1] >>"};
        const LexObj stream =
            lex::NewStream(doc, data, /*encode*/ true, copyDict(doc, lex::RootOf(attributes)), LexNullObj);
        EXPECT_EQ(lex::DecodedData(stream), data) << filter;
        EXPECT_NE(lex::RawData(stream), data) << filter;
        lex::ArrayInsert(list, 1000, stream);
    }
    Doc again(lex::SaveStoreToString(doc));
    for (int i = 0; i < 7; ++i) EXPECT_EQ(lex::DecodedData(lex::ArrayGet(again.At("L"), i)), data) << filters[i];

    KRStm source = KRMemStmOpen("skip<41 42>tail", 15);
    const LexObj attributes = lex::NewDict(doc, false);
    lex::DictPut(attributes, Atom("Filter"), lex::NewName(doc, false, Atom("ASCIIHexDecode")));
    const LexObj stream = LexNewStream(doc, 1, source, 5, 0, attributes, LexNullObj, 6);
    KRStmClose(source);
    EXPECT_EQ(lex::RawData(stream), "41 42>");
    EXPECT_EQ(lex::DecodedData(stream), "AB");
    EXPECT_EQ(LexStreamLength(stream), 6);
    EXPECT_TRUE(Equal(LexStreamDict(stream), attributes)) << "a loose dictionary becomes the stream's own";
    EXPECT_TRUE(Equal(lex::DictGet(stream, Atom("Filter")), lex::DictGet(attributes, Atom("Filter"))));
    const LexObj twin = lex::NewStream(doc, "x", /*encode*/ true, lex::StreamDict(stream), LexNullObj);
    EXPECT_FALSE(Equal(lex::StreamDict(twin), attributes)) << "one that is taken is copied";
    EXPECT_EQ(lex::DecodedData(stream), "AB");
}

TEST(LexStreams, BadDataAndBombsRaiseAndTheDocumentStaysGood) {
    Doc doc{"<< /Unknown 2 0 R /Broken 3 0 R /Wrong 4 0 R >>",
            "<< /Length 3 /Filter /Nobody >>\nstream\nabc\nendstream",
            "<< /Length 4 /Filter /FlateDecode >>\nstream\nabcd\nendstream",
            "<< /Length 5 >>\nstream\ntwelve bytes\nendstream"};
    EXPECT_EQ(codeOf([&] { lex::DecodedData(doc.At("Unknown")); }), KRErrBadStream);
    EXPECT_EQ(codeOf([&] { lex::DecodedData(doc.At("Broken")); }), KRErrBadStream);
    EXPECT_EQ(lex::RawData(doc.At("Broken")), "abcd");
    EXPECT_EQ(lex::RawData(doc.At("Wrong")), "twelve bytes\n");
    EXPECT_EQ(lex::StreamLength(doc.At("Wrong")), 13);

    const LexObj attributes = lex::NewDict(doc, false);
    lex::DictPut(attributes, Atom("Filter"), lex::NewName(doc, false, Atom("FlateDecode")));
    const LexObj bomb = lex::NewStream(doc, std::string(3 << 20, 'x'), /*encode*/ true, attributes, LexNullObj);
    ASSERT_TRUE(SetLimit("stream-bytes", 1 << 20));
    EXPECT_EQ(Protect([&] { LexStreamOpenStm(bomb, LexStreamDecoded); }), KRErrBadStream);
    ASSERT_TRUE(SetLimit("stream-bytes", 256 << 20));
    EXPECT_EQ(lex::DecodedData(bomb).size(), 3u << 20);
    EXPECT_EQ(codeOf([&] { lex::OpenData(bomb, static_cast<LexStreamMode>(3)); }), KRErrBadParam);
}

TEST(LexDead, ReferencesOutliveTheirDocumentAndThenReadAsNull) {
    auto doc = std::make_unique<Doc>(PdfText({"<< /A << /X 1 >> >>"}));
    const LexObj inner = doc->At("A");
    const LexDoc closed = *doc;
    doc.reset();
    EXPECT_EQ(LexObjGetType(inner), LexNull);
    EXPECT_EQ(LexObjGetDoc(inner), nullptr);
    EXPECT_EQ(codeOf([&] { lex::DictGet(inner, Atom("X")); }), KRErrBadParam);
    EXPECT_EQ(codeOf([&] { lex::NewDict(closed, false); }), KRErrBadParam);
    Doc next{"<< /A << /X 1 >> >>"};
    EXPECT_EQ(lex::TypeOf(inner), LexNull) << "the slot was used again";
    EXPECT_FALSE(Equal(inner, next.At("A")));
    lex::DictPut(lex::RootOf(next), Atom("A"), inner);
    EXPECT_FALSE(lex::DictKnown(lex::RootOf(next), Atom("A"))) << "a dead value is a null";
}

} // namespace
