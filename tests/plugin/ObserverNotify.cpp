// Cases on the notification servers: who is told what in which order, and what observers may do about it.
// SPDX-License-Identifier: MIT
#include "tests/plugin/Observer.h"

#include <vector>

namespace observer {

namespace {

/** Listens to the servers of a value's way: 0, 1, 10. */
struct ValueListeners {
    Listener will{TSValueWillChange}, did{TSValueDidChange}, display{TSFieldWillDisplay};
};

void Count(void *, void *clientData) {
    ++*static_cast<int *>(clientData);
}

std::int32_t CountOn(std::int32_t server, int *calls) {
    return Forms::TessellaRegisterObserver(server, PICallback(gExtensionID, &Count), /*failure*/ nullptr, calls);
}

} // namespace

void Registration() {
    int calls = 0;
    std::vector<std::int32_t> ids;
    for (std::int32_t server = 0; server < TSServerCount; ++server) {
        const std::int32_t gone = CountOn(server, &calls);
        CHECK(gone > 0);
        Forms::TessellaUnregisterObserver(server, gone);
        CHECK_RAISES(KRErrBadParam, Forms::TessellaUnregisterObserver(server, gone));
        ids.push_back(CountOn(server, &calls));
        CHECK(ids.back() > gone);
    }
    for (const std::int32_t server : {-1, static_cast<int>(TSServerCount), 0x7FFFFFFF}) {
        CHECK_EQ(CountOn(server, &calls), -1);
        CHECK_RAISES(0, Forms::TessellaUnregisterObserver(server, 1));
    }
    calls = 0;
    CHECK(Set("alpha", "two"));
    CHECK_EQ(calls, 3);
    for (std::size_t server = 0; server < ids.size(); ++server)
        Forms::TessellaUnregisterObserver(static_cast<std::int32_t>(server), ids[server]);
    CHECK(Set("alpha", "three"));
    CHECK_EQ(calls, 3);
}

void Vetoes() {
    const ValueListeners listeners;
    // The value that it has already: nothing changes, but a widget without an appearance is drawn.
    CHECK_EQ(Set("alpha", "one"), true);
    CHECK_EQ(Heard(), "10 alpha=one");
    {
        const Listener veto(TSValueWillChange, [](TSFieldNotifyRec &record) {
            CHECK(record.field == FieldOf("alpha"));
            CHECK_EQ(record.value->encoding, EStrPDFDoc);
            CHECK(record.value->bytes[record.value->length] == 0 && record.value->bytes[record.value->length + 1] == 0);
            CHECK(!record.change && !record.selStart && !record.selEnd && !record.entries && !record.reject);
            CHECK(!record.reserved3 && !record.reserved4);
            record.reject = 1;
        });
        CHECK(!Set("alpha", "two"));
        CHECK_EQ(Heard(), "0 alpha=two, 0 alpha=two");
        CHECK_EQ(ValueOf("alpha"), "one");
    }
    {
        // Whoever sets the field that is being set is told that all is well, and changes nothing.
        const Listener again(TSValueWillChange, [](TSFieldNotifyRec &) { CHECK(Set("alpha", "inner")); });
        const Listener other(TSValueDidChange, [](TSFieldNotifyRec &record) {
            if (record.field == FieldOf("alpha")) CHECK(Set("secret", Text(record.value) + "!"));
        });
        Heard();
        CHECK(Set("alpha", "three"));
        CHECK_EQ(Heard().find("inner"), std::string::npos);
        CHECK_EQ(ValueOf("alpha"), "three");
        CHECK_EQ(ValueOf("secret"), "three!");
    }
    const Listener late(TSValueDidChange, [](TSFieldNotifyRec &record) { record.reject = 1; });
    CHECK(!Set("alpha", "four"));
    CHECK_EQ(ValueOf("alpha"), "four");
}

void Rewriting() {
    std::string wanted = "A text that is a good deal longer than what was to be stored";
    std::int32_t encoding = EStrPDFDoc;
    {
        const Listener rewriter(TSValueWillChange,
                                [&](TSFieldNotifyRec &record) { PutText(record.value, encoding, wanted); });
        const ValueListeners listeners;
        CHECK(Set("alpha", "x"));
        CHECK_EQ(ValueOf("alpha"), wanted);
        CHECK_EQ(Heard(), "0 alpha=x, 0 alpha=" + wanted + ", 1 alpha=" + wanted + ", 10 alpha=" + wanted);
        CHECK(Has(FaceOf(FieldOf("alpha")), "(" + wanted + ") Tj"));
        // A joiner, which PDFDocEncoding lacks and no picture needs.
        wanted = std::string("\xFE\xFF\x20\x0D\0A", 6);
        encoding = EStrUCS2;
        CHECK(Set("alpha", "y"));
        CHECK_EQ(ValueOf("alpha"), wanted);
        wanted.clear();
        encoding = EStrPDFDoc;
        CHECK(Set("alpha", "z"));
        CHECK_EQ(ValueOf("alpha"), "null");
    }
    const Listener formatter(TSFieldWillDisplay,
                             [](TSFieldNotifyRec &record) { PutText(record.value, EStrPDFDoc, "shown"); });
    CHECK(Set("alpha", "stored"));
    CHECK_EQ(ValueOf("alpha"), "stored");
    CHECK(Has(FaceOf(FieldOf("alpha")), "(shown) Tj"));
}

void Failures() {
    for (const TSServer server : {TSValueWillChange, TSValueDidChange, TSFieldWillDisplay}) {
        const std::string before = ValueOf("alpha"), value = "raised on " + std::to_string(server);
        {
            const Listener raiser(server, [](TSFieldNotifyRec &) { KRRaise(KRErrBadResource); });
            const Listener untold(server);
            CHECK_RAISES(KRErrBadResource, Set("alpha", value));
            CHECK_EQ(Heard(), std::to_string(server) + " alpha=" + value + ", !" + std::to_string(server));
        }
        // What was stored stands, and the field is free for the next change.
        CHECK_EQ(ValueOf("alpha"), server == TSValueWillChange ? before : value);
        const ValueListeners listeners;
        CHECK(Set("alpha", "free again"));
        CHECK_EQ(Heard(), "0 alpha=free again, 1 alpha=free again, 10 alpha=free again");
    }
}

void FormLife() {
    const Listener created(TSFormDidCreate), entry(TSFormEntryDidChange),
        destroyed(TSFormWillDestroy, [](auto &) { CHECK(Forms::IsDMDocTessella(doc)); });
    // Nothing to write, nothing to tell but that a form is there.
    CHECK(LexObjEqual(Forms::TSDMDocCreateForm(doc), At("Tessella")));
    CHECK_EQ(Heard(), "2");
    const std::int32_t widgets = LexArrayLength(At("Pages/Kids/0/Annots"));
    DMAnnot stranger = NewWidget("Tx");
    Forms::TSDMDocDestroyForm(doc, /*flag*/ 0);
    CHECK_EQ(Heard(), "4");
    CHECK(!Forms::IsDMDocTessella(doc));
    CHECK(!LexDictKnown(At(""), Atom("Tessella")));
    CHECK(!FieldOf("alpha"));
    // Widgets go with their fields; one that is no field's stays.
    CHECK(widgets > 1);
    CHECK_EQ(LexArrayLength(At("Pages/Kids/0/Annots")), 1);
    {
        const Listener raiser(TSFormEntryDidChange, [](TSFieldNotifyRec &) { KRRaise(KRErrBadField); });
        CHECK_EQ(LexObjGetType(Forms::TSDMDocCreateForm(doc)), LexNull);
        CHECK_EQ(Heard(), "3 #4, 3 #4, !3, !3");
    }
    Forms::TSDMDocDestroyForm(doc, /*flag*/ 0);
    Heard();
    const LexObj form = Forms::TSDMDocCreateForm(doc);
    CHECK_EQ(Heard(), "3 #4, 2");
    CHECK(LexObjIsIndirect(form));
    // The first field of a document without a form makes that, too.
    Forms::TSDMDocDestroyForm(doc, /*flag*/ 0);
    Heard();
    CHECK(Forms::TSDMAnnotDefineField(stranger, "first") != nullptr);
    CHECK_EQ(Heard(), "3 #4, 2");
    CHECK_EQ(Text(At("Tessella/Fields/0/T")), "first");
    Forms::TSDMDocDestroyForm(nullptr, /*flag*/ 0);
}

// The observers live as long as the process.
void Watch() {
    static const Listener judge(TSValueWillChange, [](TSFieldNotifyRec &record) {
        const std::string text = Text(record.value);
        if (text == "forbidden") record.reject = 1;
        if (text == "broken") KRRaise(KRErrBadResource);
        if (text == "lower") PutText(record.value, EStrPDFDoc, "UPPER");
    });
}

} // namespace observer
