// Atoms, the notification server, the containers and field names.
// SPDX-License-Identifier: MIT
#include <clocale>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Common/SCTE/src/ObjList.h"
#include "Common/src/CFArray.h"
#include "KernelSupportHFT.h"
#include "LexHFT.h"
#include "PIFrame.h"
#include "base/BufCont.h"
#include "base/FormStr.h"
#include "base/NameStr.h"
#include "base/NtfySrvr.h"
#include "base/miAssoc.h"

namespace {

TEST(Atoms, EntriesAndNames) {
    TessellaKRAtoms();
    EXPECT_EQ(Align_K, A_K);
    EXPECT_STREQ(KRAtomGetString(docID_K), "NeedAppearances");
    for (std::uint32_t mask = TSEntryVT; mask != 0; mask >>= 1) EXPECT_EQ(Name_to_Entry(Entry_to_Name(mask)), mask);
    for (const std::uint32_t mask : {0u, 3u, 65u, 128u, ~0u}) EXPECT_EQ(Entry_to_Name(mask), KRAtomNull);
    for (const auto &[name, entry] : {std::pair{A_K, 0u}, {Validate_K, std::uint32_t{TSEntryV}}, {KRAtomNull, 0u}})
        EXPECT_EQ(Name_to_Entry(name), entry);
}

/** What was called: observer number, negative for a failure. */
std::vector<int> s_calls;

int Number(void *clientData) {
    return static_cast<int>(reinterpret_cast<std::intptr_t>(clientData));
}
void *AsData(int number) {
    return reinterpret_cast<void *>(static_cast<std::intptr_t>(number));
}
void Note(void *, void *clientData) {
    s_calls.push_back(Number(clientData));
}
void NoteFailure(KRErrorCode code, void *, void *clientData) {
    s_calls.push_back(-Number(clientData));
    KRRaise(code + 1); // goes no further
}
void NoteAndRaise(void *record, void *clientData) {
    Note(record, clientData);
    KRRaise(KRErrBadField);
}

struct ServerDeleter {
    void operator()(NotificationServer *server) const {
        NotificationServerDestroy(server);
    }
};
using ServerPtr = std::unique_ptr<NotificationServer, ServerDeleter>;

TEST(Notification, FailurePassEndsWithTheObserverThatRaised) {
    const ServerPtr server(NotificationServerNew(0, false));
    NotificationServerRegisterObserver(server.get(), &Note, &NoteFailure, AsData(1));
    NotificationServerRegisterObserver(server.get(), nullptr, nullptr, AsData(2));
    NotificationServerRegisterObserver(server.get(), &NoteAndRaise, &NoteFailure, AsData(3));
    NotificationServerRegisterObserver(server.get(), &Note, &NoteFailure, AsData(4));
    s_calls.clear();
    EXPECT_EQ(Protect([&] { NotificationServerBroadcast(server.get(), nullptr); }), KRErrBadField);
    EXPECT_EQ(s_calls, (std::vector<int>{1, 3, -1, -3}));
    NotificationServerUnregisterObserver(server.get(), 3);
    s_calls.clear();
    NotificationServerBroadcast(server.get(), nullptr);
    EXPECT_EQ(s_calls, (std::vector<int>{1, 4}));
}

TEST(Notification, ObserversAddedMeanwhileWait) {
    const ServerPtr server(NotificationServerNew(0, false));
    const auto add = [](void *record, void *) {
        NotificationServerRegisterObserver(static_cast<NotificationServer *>(record), &Note, nullptr, AsData(2));
    };
    NotificationServerRegisterObserver(server.get(), add, nullptr, nullptr);
    s_calls.clear();
    NotificationServerBroadcast(server.get(), server.get());
    EXPECT_TRUE(s_calls.empty());
}

TEST(Notification, LimitsAndIds) {
    const ServerPtr strict(NotificationServerNew(1, false)), rolling(NotificationServerNew(1, true));
    EXPECT_EQ(NotificationServerRegisterObserver(nullptr, &Note, nullptr, nullptr), -1);
    EXPECT_EQ(NotificationServerRegisterObserver(strict.get(), &Note, nullptr, nullptr), 1);
    EXPECT_EQ(Protect([&] { NotificationServerRegisterObserver(strict.get(), &Note, nullptr, nullptr); }),
              KRErrBadParam);
    EXPECT_EQ(Protect([&] { NotificationServerUnregisterObserver(strict.get(), 9); }), KRErrBadParam);
    NotificationServerUnregisterObserver(strict.get(), 1);
    EXPECT_EQ(NotificationServerRegisterObserver(strict.get(), &Note, nullptr, nullptr), 2);
    NotificationServerRegisterObserver(rolling.get(), &Note, nullptr, AsData(1));
    NotificationServerRegisterObserver(rolling.get(), &Note, nullptr, AsData(2));
    NotificationServerUnregisterObserver(rolling.get(), 1);
    s_calls.clear();
    NotificationServerBroadcast(rolling.get(), nullptr);
    EXPECT_EQ(s_calls, std::vector<int>{2});
}

TEST(Containers, ObjectsInTheirOrder) {
    int values[7];
    CFArray array(4);
    for (int i = 0; i < 6; ++i) array.AppendObject(&values[i]);
    array.InsertObject(&values[6], -5);
    array.InsertObject(nullptr, 99);
    EXPECT_EQ(array.IndexOfObject(&values[6]), 0);
    EXPECT_EQ(array.GetNthObject(7), nullptr);
    while (array.GetNumObjects() > 4) array.RemoveObject(0);
    EXPECT_EQ(array.IndexOfObject(&values[5]), 2);
    EXPECT_EQ(Protect([&] { array.GetNthObject(4); }), KRErrBadParam);
    EXPECT_EQ(Protect([&] { array.SetObject(nullptr, -1); }), KRErrBadParam);
    EXPECT_EQ(Protect([&] { array.RemoveObject(4); }), KRErrBadParam);

    ObjList *list = ObjListNew();
    for (int i = 0; i < 2; ++i) ObjListAddObject(list, &values[i]);
    ObjListEnumerator *walk = ObjListEnumeratorCreate(list);
    std::int32_t index;
    void *object;
    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(ObjListEnumeratorAdvance(walk, &index, &object) && index == i && object == &values[i]);
    EXPECT_FALSE(ObjListEnumeratorAdvance(walk, &index, &object) || object);
    ObjListEnumeratorDestroy(walk);
    ObjListRemoveNth(list, 0);
    EXPECT_EQ(ObjListIndexOfObject(list, &values[1]), 0);
    ObjListFree(list);
}

TEST(Containers, Associations) {
    EXPECT_TRUE(AssociateNew(1, 2, 3, "abc", 4));
    EXPECT_TRUE(AssociateNew(1, 2, 4, "x", 2));
    // The new bytes are part of the old ones.
    EXPECT_TRUE(AssociateNew(1, 2, 3, static_cast<char *>(AssociateFind(1, 2, 3)) + 1, 3));
    EXPECT_STREQ(static_cast<char *>(AssociateFind(1, 2, 3)), "bc");
    EXPECT_TRUE(AssociateDelete(1, 2, 3));
    EXPECT_FALSE(AssociateDelete(1, 2, 3));
    AssociateClear();
    EXPECT_EQ(AssociateFind(1, 2, 4), nullptr);
}

TEST(Containers, BufferGrowth) {
    BufControl buffer;
    ASSERT_EQ(BufControlAlloc(&buffer, 120), 0);
    EXPECT_EQ(BufStrCat(&buffer, std::string(120, 'x').c_str()), 0);
    NameStr name;
    Str_to_NameStr(200, std::string(200, 'n').c_str(), &name);
    EXPECT_EQ(BufNmCat(&buffer, &name), 0);
    EXPECT_EQ(std::string(buffer.data), std::string(120, 'x') + std::string(200, 'n'));
    EXPECT_EQ(BufStrCat(&buffer, std::string(70000, 'z').c_str()), 1) << "beyond 65535 bytes";
    EXPECT_EQ(BufNmCat(&buffer, &name), 1);
    NameStrFree(&name);
    BufControlFree(&buffer);
}

TEST(Names, ShortLongAndWrapped) {
    NameStr six, seven, copy;
    Str_to_NameStr(6, "abcdef", &six);
    Str_to_NameStr(7, "abcdefg", &seven);
    EXPECT_FALSE(IsLongName(&six));
    EXPECT_TRUE(IsLongName(&seven));
    EXPECT_STREQ(NameStrAddr(&six), "abcdef");
    EXPECT_STREQ(NameStrAddr(&seven), "abcdefg");
    NameStr_to_NameStr(&seven, &copy);
    EXPECT_TRUE(NameStrEq(&seven, &copy));
    EXPECT_FALSE(NameStrEq(&seven, &six));
    NameStrFree(&seven);
    EXPECT_EQ(NameStrLen(&seven), 0);
    EXPECT_STREQ(NameStrAddr(&copy), "abcdefg");
    NameStrFree(&copy);

    LexDoc doc = LexDocCreate();
    const std::string text(300, 'q');
    TSLexStr_to_NameStr(LexNewString(doc, false, text.data(), 300), &copy);
    EXPECT_EQ(NameStrLen(&copy), 300 % 256);
    NameStrFree(&copy);
    TSLexStr_to_NameStr(LexNewInteger(doc, false, 5), &copy);
    EXPECT_EQ(NameStrLen(&copy), 0);
    LexDocClose(doc);
}

TEST(Names, TranslatedInPlace) {
    const std::string former = std::setlocale(LC_CTYPE, nullptr);
    std::setlocale(LC_CTYPE, "C.UTF-8");
    NameStr name;
    Str_to_NameStr(4, "\xE9\xE9\xE9\xE9", &name);
    NameStrXlateToHost(&name);
    EXPECT_STREQ(NameStrAddr(&name), "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9");
    EXPECT_TRUE(IsLongName(&name));
    NameStrXlateToPDFDocEncoding(&name);
    EXPECT_STREQ(NameStrAddr(&name), "\xE9\xE9\xE9\xE9");
    NameStrFree(&name);
    Str_to_NameStr(255, std::string(255, '\xE9').c_str(), &name);
    NameStrXlateToHost(&name);
    EXPECT_EQ(NameStrLen(&name), 254);
    NameStrFree(&name);
    std::setlocale(LC_CTYPE, former.c_str());
}

} // namespace
