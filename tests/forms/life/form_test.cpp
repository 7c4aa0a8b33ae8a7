// The form dictionary: validity, defaults, announcements, and the clean-up before a save.
// SPDX-License-Identifier: MIT
#include "life/TessellaClean.h"
#include "objects/Tessella.h"

#include <algorithm>

#include "KRErrors.h"
#include "ScreenViewHFT.h"
#include "model/DocData.h"
#include "model/FieldArray.h"
#include "model/LexField.h"
#include "model/NameHash.h"
#include "objects/LexUtil.h"
#include "objects/TextLook.h"
#include "tests/forms/ModelFixture.h"

namespace {

using Form = Model;

/** Notes the entries of each broadcast. */
Listener::Reaction NoteIn(std::vector<std::uint32_t> &log) {
    return [&log](TSFieldNotifyRec &record) { log.push_back(record.entries); };
}

TEST_F(Form, ValidityAsksForFieldsAndAVersionOfToday) {
    for (const auto &[version, valid] : {std::pair{"", true},
                                         {"/Tessella 1", true},
                                         {"/Tessella 0.8001", true},
                                         {"/Tessella 0.5", false},
                                         {"/Tessella 0", false},
                                         {"/Tessella (x)", true}}) {
        TestDoc doc(FormObjects({}, version));
        EXPECT_EQ(IsDMDocTessella(doc.doc), valid) << version;
        EXPECT_EQ(LexObjGetType(TessellaGetLexObj(TSDMDocGetTessella(doc.doc))), valid ? LexDict : LexNull);
    }
    TestDoc doc(FormObjects({}));
    const LexObj form = LexNewDict(doc.lex, true, 2);
    EXPECT_FALSE(TessellaIsValid(form));
    LexDictPut(form, formFields_K, LexNewArray(doc.lex, false, 0));
    EXPECT_TRUE(TessellaIsValid(form)) << "valid as soon as the array is there";
    EXPECT_FALSE(TessellaIsValid(LexNullObj));
    EXPECT_FALSE(TessellaIsValid(doc.At("Tessella/Fields")));
}

TEST_F(Form, LookUpsGiveNullForWhatHasNoForm) {
    TestDoc doc(PageObjects());
    EXPECT_EQ(LexObjGetType(TSDMDocGetTessella(nullptr)), LexNull);
    EXPECT_EQ(LexObjGetType(TSDMDocGetTessella(doc.doc)), LexNull);
    TestDoc form(FormObjects({"/T (a) /FT /Tx"}, "/Q 1"));
    EXPECT_TRUE(LexObjEqual(TSLexObjGetTessella(form.At("Tessella/Fields/0")), form.At("Tessella")));
    EXPECT_EQ(LexObjGetType(TSLexObjGetTessella(form.At("Tessella/Fields"))), LexNull) << "a direct object";
    EXPECT_EQ(LexIntegerValue(TessellaGetEntry(form.At("Tessella"), TSEntryQ)), 1);
    for (const std::uint32_t entry : {3u, 0u, 65u, 4u})
        EXPECT_EQ(LexObjGetType(TessellaGetEntry(form.At("Tessella"), entry)), LexNull);
    EXPECT_EQ(LexObjGetType(TessellaGetEntry(LexNullObj, TSEntryQ)), LexNull);
}

TEST_F(Form, ANewFormHasADefaultLook) {
    TestDoc doc(PageObjects());
    std::vector<std::uint32_t> created;
    const Listener listener(TSFormDidCreate, NoteIn(created));
    const LexObj form = TSDMDocCreateForm(doc.doc);
    EXPECT_TRUE(TessellaIsValid(form));
    EXPECT_TRUE(LexObjIsIndirect(form));
    EXPECT_EQ(created.size(), 1u);
    // The default quadding 0 is not written.
    EXPECT_EQ(Text(form), "<< /DA (/Helv 0 Tf 0 g ) /DR << /Encoding << /PDFDocEncoding R >> /Font << /Helv R /ZaDb R "
                          ">> >> /Fields [] >>");
    TextAppearance look{};
    TessellaGetDefaultTextAppearance(form, &look);
    EXPECT_EQ(look.baseFont, Helvetica_K);
    EXPECT_EQ(look.fontResource, Helv_K);
    EXPECT_EQ(look.size, 0);
}

TEST_F(Form, ADictionaryWithoutFieldsIsMadeAFormByItsFirstField) {
    auto objects = PageObjects("/AcroForm << /Q 1 >>", {"<< /T (g) /FT /Tx /Kids [5 0 R 6 0 R] >>",
                                                        WidgetObject("/Parent 4 0 R"), WidgetObject("/Parent 4 0 R")});
    objects[2] = "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] /Annots [5 0 R 6 0 R] >>";
    TestDoc doc(objects);
    const LexObj widget = doc.At("Pages/Kids/0/Annots/0");
    EXPECT_STREQ(TSDMFieldGetName(TSDMAnnotGetField(DMAnnotFromLexObj(widget))), "g");
    EXPECT_TRUE(LexObjEqual(doc.At("Tessella/Fields/0"), LexDictGet(widget, parent_K)));
}

TEST_F(Form, SettingTheDefaultLookTellsWhatChanged) {
    TestDoc doc(PageObjects());
    const LexObj form = TSDMDocCreateForm(doc.doc);
    std::vector<std::uint32_t> changes;
    const Listener listener(TSFormEntryDidChange, NoteIn(changes));
    TextAppearance look{};
    TessellaGetDefaultTextAppearance(form, &look);
    TessellaSetDefaultTextAppearance(form, &look);
    EXPECT_TRUE(changes.empty()) << "nothing new, nothing written";
    look.baseFont = CourierBold_K;
    look.size = KRFixedFromInt(11);
    look.quadding = 2;
    TessellaSetDefaultTextAppearance(form, &look);
    ASSERT_EQ(changes.size(), 1u);
    EXPECT_TRUE(changes[0] & TSEntryDA);
    EXPECT_TRUE(changes[0] & TSEntryQ);
    EXPECT_EQ(Text(LexDictGet(form, textApp_K)), "/CoBo 11 Tf 0 g ");
    EXPECT_EQ(LexIntegerValue(LexDictGet(form, quadding_K)), 2);
    look.baseFont = Atom("NoSuchFont");
    EXPECT_EQ(Protect([&] { TessellaSetDefaultTextAppearance(form, &look); }), KRErrBadParam);
    TessellaSetDefaultTextAppearance(form, nullptr);
    TessellaSetDefaultTextAppearance(LexNullObj, &look);
}

TEST_F(Form, DefaultLooksThatCannotBeRead) {
    TextAppearance look{};
    TestDoc none(FormObjects({}, "/Q 2"));
    TessellaGetDefaultTextAppearance(none.At("Tessella"), &look);
    EXPECT_EQ(look.baseFont, KRAtomNull);
    EXPECT_EQ(look.fontResource, KRAtomNull);
    EXPECT_EQ(look.quadding, 2);
    for (const char *entries : {"/DA (/Helv 9 Tf)", "/DA (/Helv 9 Tf) /DR (x)", "/DA (/Helv 9 Tf) /DR << /Font 3 >>"}) {
        TestDoc doc(FormObjects({}, entries));
        EXPECT_EQ(Protect([&] { TessellaGetDefaultTextAppearance(doc.At("Tessella"), &look); }), KRErrBadResource)
            << entries;
        // A new default takes the place of one that nobody can read.
        TextAppearance fresh = TextAppearanceDefault();
        EXPECT_EQ(Protect([&] { TessellaSetDefaultTextAppearance(doc.At("Tessella"), &fresh); }), KRErrNone) << entries;
    }
}

TEST_F(Form, DisplayedFieldsFollowADefaultThatTheyInherit) {
    TestDoc doc(FormObjects({"/FT /Tx /T (own) /DA (/Helv 8 Tf) /V (1)", "/FT /Tx /T (inherits) /V (2)"},
                            "/DA (/Helv 9 Tf 0 g) /DR << /Font << >> >>"));
    TextAppearance look = TextAppearanceDefault();
    look.size = KRFixedFromInt(12);
    TessellaSetDefaultTextAppearance(doc.At("Tessella"), &look);
    ASSERT_EQ(DrawnLog().size(), 1u);
    EXPECT_EQ(DrawnLog()[0].field, "inherits");
}

TEST_F(Form, WasteIsMarkedOnceAndCleanedWhateverItsValue) {
    TestDoc doc(FormObjects({"/FT /Tx /T (a)"}, "/$Wa false /MaxLen 7"));
    const LexObj form = doc.At("Tessella");
    TessellaHasWastedAnnots(form);
    EXPECT_FALSE(LexBooleanValue(LexDictGet(form, waste_K))) << "an existing mark stays as it is";
    // Off its page behind the plug-in's back: the field has no widget any more.
    ASSERT_NE(FieldOf(doc, "a"), nullptr);
    LexDictRemove(doc.At("Pages/Kids/0"), Annots_K);
    TessellaOptimize(form);
    EXPECT_EQ(FieldOf(doc, "a"), nullptr);
    EXPECT_EQ(LexArrayLength(doc.At("Tessella/Fields")), 0);
    for (const KRAtom key : {waste_K, volatile_K, maxLen_K}) EXPECT_FALSE(LexDictKnown(form, key));
}

TEST_F(Form, WithoutWasteASaveTouchesNoWidget) {
    TestDoc doc(FormObjects({"/FT /Tx /T (a)", "/F 3"}));
    TessellaOptimize(doc.At("Tessella"));
    EXPECT_EQ(LexArrayLength(doc.At("Pages/Kids/0/Annots")), 2);
    TessellaHasWastedAnnots(doc.At("Tessella"));
    TessellaOptimize(doc.At("Tessella"));
    EXPECT_EQ(LexArrayLength(doc.At("Pages/Kids/0/Annots")), 1) << "a hidden widget without a field goes";
    EXPECT_FALSE(FieldOf(doc, "a")->state & DMFieldSeen);
}

TEST_F(Form, VolatileValuesDoNotReachTheFile) {
    TestDoc doc(FormObjects({"/FT /Tx /T (secret) /Ff 8192", "/FT /Tx /T (open)"}));
    ASSERT_TRUE(TSDMFieldSetValue(FieldOf(doc, "secret"), Str(doc, "pass-word")));
    ASSERT_TRUE(TSDMFieldSetValue(FieldOf(doc, "open"), Str(doc, "kept")));
    EXPECT_TRUE(LexDictKnown(doc.At("Tessella"), volatile_K));
    TestDoc saved(TempFile("saved.pdf", doc.Saved()).c_str());
    EXPECT_FALSE(LexDictKnown(saved.At("Tessella"), volatile_K));
    EXPECT_EQ(Text(saved.At("Tessella/Fields/0/V")), "null");
    EXPECT_EQ(Text(saved.At("Tessella/Fields/1/V")), "kept");
}

/** What an observer may do to a value that is being cleared. */
struct Meddler {
    const char *what;
    TSServer server;
    void (*react)(const TestDoc &doc, TSFieldNotifyRec &record);
};

class PasswordsMeddledWith : public Form, public testing::WithParamInterface<Meddler> {};

TEST_P(PasswordsMeddledWith, DoNotReachTheFile) {
    TestDoc doc(FormObjects({"/FT /Tx /T (a) /Ff 8192", "/FT /Tx /T (b) /Ff 8192", "/FT /Tx /T (c) /Ff 8192"}));
    for (const char *name : {"a", "b", "c"})
        ASSERT_TRUE(TSDMFieldSetValue(FieldOf(doc, name), Str(doc, std::string("pass-word-") + name)));
    const Listener meddler(GetParam().server, [&](TSFieldNotifyRec &record) { GetParam().react(doc, record); });
    EXPECT_EQ(doc.Saved().find("pass-word"), std::string::npos);
    EXPECT_FALSE(LexDictKnown(doc.At("Tessella"), volatile_K));
}

void RaiseAlways(const TestDoc &, TSFieldNotifyRec &) {
    KRRaise(KRErrPermission);
}

void SetAnother(const TestDoc &doc, TSFieldNotifyRec &record) {
    const char *other = record.field == FieldOf(doc, "a") ? "c" : "a";
    TSDMFieldSetValue(FieldOf(doc, other), Str(doc, "pass-word-again"));
}

const Meddler s_meddlers[] = {
    {"RaiseBefore", TSValueWillChange, &RaiseAlways},
    {"RaiseAfter", TSValueDidChange, &RaiseAlways},
    {"RaiseAtDisplay", TSFieldWillDisplay, &RaiseAlways},
    {"Refuse", TSValueWillChange, [](const TestDoc &, TSFieldNotifyRec &record) { record.reject = 1; }},
    {"Rewrite", TSValueWillChange,
     [](const TestDoc &, TSFieldNotifyRec &record) { EStrSetBytes(record.value, "pass-word", EStrPDFDoc); }},
    {"SetAnother", TSValueDidChange, &SetAnother},
};
INSTANTIATE_TEST_SUITE_P(All, PasswordsMeddledWith, testing::ValuesIn(s_meddlers),
                         [](const auto &info) { return std::string(info.param.what); });

const TestDoc *s_edited = nullptr;

TEST_F(Form, AnEditBehindTheFrontViewIsCommittedBeforePasswordsGo) {
    static SCSelectionServer s_edit{
        sizeof(SCSelectionServer),
        [] { return KRAtomFromString("TestEdit"); },
        [](SCDoc, void *, KRBool) {},
        [](SCDoc, void *data, KRBool) { TSDMFieldSetValue(static_cast<DMField *>(data), Str(*s_edited, "pass-word")); },
        [](SCDoc, void *, std::uint16_t, std::uint32_t) -> KRBool { return false; },
        [](SCDoc, void *) {}};
    SCDocRegisterSelectionServer(&s_edit);
    const TestDoc doc(FormObjects({"/FT /Tx /T (a) /Ff 8192"}));
    const TestDoc front(FormObjects({}));
    ASSERT_EQ(SCAppGetActiveDoc(), front.view);
    s_edited = &doc;
    SCDocSetSelection(doc.view, KRAtomFromString("TestEdit"), FieldOf(doc, "a"), /*highlight*/ true);
    EXPECT_EQ(doc.Saved().find("pass-word"), std::string::npos);
    EXPECT_EQ(SCDocGetSelectionType(doc.view), KRAtomNull);
}

TEST_F(Form, DestroyingAFormTakesItsWidgetsAlong) {
    TestDoc doc(FormObjects({"/FT /Tx /T (a)", "/FT /Tx /T (b)", "/F 3", "/F 4"}));
    std::vector<std::uint32_t> told;
    const Listener listener(TSFormWillDestroy, NoteIn(told));
    TSDMDocDestroyForm(doc.doc, /*flag*/ false);
    EXPECT_EQ(told.size(), 1u);
    EXPECT_EQ(LexObjGetType(doc.At("Tessella")), LexNull);
    EXPECT_EQ(LexArrayLength(doc.At("Pages/Kids/0/Annots")), 1) << "a widget without a field, not hidden, stays";
    TestDoc invalid(FormObjects({}, "/Tessella 0.1"));
    TSDMDocDestroyForm(invalid.doc, false);
    EXPECT_EQ(LexObjGetType(invalid.At("Tessella")), LexNull) << "also one that is not valid";
    TSDMDocDestroyForm(nullptr, false);
}

} // namespace
