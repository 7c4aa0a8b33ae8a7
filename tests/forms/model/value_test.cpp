// Values, options, flags, types and what widgets show of them.
// SPDX-License-Identifier: MIT
#include "model/DMFieldValue.h"

#include <functional>

#include "KRErrors.h"
#include "model/LexField.h"
#include "model/WidgetType.h"
#include "objects/LexUtil.h"
#include "tests/forms/ModelFixture.h"

namespace {

class Value : public Model {};

/** Calls a function for each broadcast of a server. */
bool SetText(const TestDoc &doc, const char *name, const std::string &text) {
    return TSDMFieldSetValue(FieldOf(doc, name), Str(doc, text));
}

/** A button widget with the on-state `on`, which starts off. */
std::string Toggle(const std::string &entries, const std::string &on) {
    return "/FT /Btn /AS /Off /AP << /N << /" + on + " 5 0 R /Off 5 0 R >> >> " + entries;
}

const std::string s_emptyForm = StreamObject("/Type /XObject /Subtype /Form /BBox [0 0 1 1]", "");

std::vector<std::string> OneToggle(const std::string &entries) {
    auto objects = FormObjects({Toggle(entries, "Yes")});
    objects.push_back(s_emptyForm);
    return objects;
}

/** Object 4 is the top of a group of two widgets, objects 5 and 6. */
std::vector<std::string> Group(const std::string &top, const std::string &first, const std::string &second) {
    return TreeObjects("4 0 R", {"<< /T (g) /Kids [5 0 R 6 0 R] " + top + " >>", WidgetObject("/Parent 4 0 R " + first),
                                 WidgetObject("/Parent 4 0 R " + second), s_emptyForm});
}

TEST_F(Value, AChangeIsToldStoredAndShownInThisOrder) {
    auto objects = FormObjects({"/FT /Tx /T (a) /V (old) /AP << /N 5 0 R >>"});
    objects.push_back(s_emptyForm);
    TestDoc doc(objects);
    DMField *field = FieldOf(doc, "a");
    std::vector<std::string> steps;
    const auto note = [&](const char *step) {
        return [&steps, &doc, field, step](TSFieldNotifyRec &record) {
            EXPECT_EQ(record.doc, doc.doc);
            EXPECT_EQ(record.field, field);
            steps.push_back(std::string(step) + " " + EStrGetBytes(record.value) + " " +
                            Text(doc.At("Tessella/Fields/0/V")));
        };
    };
    const Listener will(TSValueWillChange, note("will")), did(TSValueDidChange, note("did")),
        show(TSFieldWillDisplay, note("show"));
    EXPECT_TRUE(SetText(doc, "a", "new"));
    EXPECT_EQ(steps, (std::vector<std::string>{"will new old", "did new new", "show new new"}));
    EXPECT_FALSE(LexObjIsIndirect(doc.At("Tessella/Fields/0/V")));
    ASSERT_EQ(DrawnLog().size(), 1u);
    EXPECT_EQ(DrawnLog()[0].text, "new");
    // The same again is no change.
    EXPECT_TRUE(SetText(doc, "a", "new"));
    EXPECT_EQ(steps.size(), 3u);
    EXPECT_FALSE(field->state & DMFieldSettingValue);
}

TEST_F(Value, ADueDisplayRunsWithoutAChange) {
    TestDoc doc(FormObjects({"/FT /Tx /T (a) /V (v)"}));
    DMField *field = FieldOf(doc, "a");
    const LexObj stored = doc.At("Tessella/Fields/0/V");
    int told = 0, changed = 0;
    bool rewrite = false;
    const Listener will(TSValueWillChange, [&](TSFieldNotifyRec &record) {
        ++told;
        if (rewrite) EStrSetBytes(record.value, "other", EStrPDFDoc);
    });
    const Listener did(TSValueDidChange, [&](TSFieldNotifyRec &) { ++changed; });
    TSDMFieldAppearanceWasUpdated(field);
    EXPECT_TRUE(SetText(doc, "a", "v"));
    EXPECT_EQ(told, 1);
    EXPECT_EQ(changed, 0);
    EXPECT_TRUE(LexObjEqual(doc.At("Tessella/Fields/0/V"), stored));
    ASSERT_EQ(DrawnLog().size(), 1u);
    EXPECT_TRUE(DrawnLog()[0].forced);
    EXPECT_FALSE(TSDMFieldWasAppearanceUpdated(field));
    // What an observer makes of it counts as a change.
    rewrite = true;
    TSDMFieldAppearanceWasUpdated(field);
    EXPECT_TRUE(SetText(doc, "a", "v"));
    EXPECT_EQ(changed, 1);
    EXPECT_EQ(Text(TSDMFieldGetValue(field)), "other");
    EXPECT_EQ(DrawnLog().back().text, "other");
}

TEST_F(Value, RefusalsAndErrorsLeaveTheFieldUsable) {
    TestDoc doc(FormObjects({"/FT /Tx /T (a) /V (old)"}));
    DMField *field = FieldOf(doc, "a");
    {
        const Listener refuse(TSValueWillChange, [](TSFieldNotifyRec &record) { record.reject = 1; });
        EXPECT_FALSE(SetText(doc, "a", "new"));
    }
    EXPECT_EQ(Text(doc.At("Tessella/Fields/0/V")), "old");
    for (const TSServer server : {TSValueWillChange, TSValueDidChange, TSFieldWillDisplay}) {
        const Listener raise(server, [](TSFieldNotifyRec &) { KRRaise(KRErrPermission); });
        EXPECT_EQ(Protect([&] { SetText(doc, "a", "x" + std::to_string(server)); }), KRErrPermission);
        EXPECT_EQ(field->state & (DMFieldSettingValue | DMFieldDisplaying), 0u);
    }
    EXPECT_TRUE(SetText(doc, "a", ""));
    EXPECT_FALSE(LexDictKnown(doc.At("Tessella/Fields/0"), value_K));
}

TEST_F(Value, ReentryForTheSameNameDoesNothing) {
    TestDoc doc(FormObjects({"/FT /Tx /T (a)", "/FT /Tx /T (b)"}));
    bool nested = false;
    const Listener will(TSValueWillChange, [&](TSFieldNotifyRec &record) {
        if (std::string(TSDMFieldGetName(record.field)) != "a") return;
        nested = TSDMFieldSetValue(record.field, Str(doc, "nested"));
        EXPECT_TRUE(SetText(doc, "b", "also"));
    });
    EXPECT_TRUE(SetText(doc, "a", "outer"));
    EXPECT_TRUE(nested);
    EXPECT_EQ(Text(TSDMFieldGetValue(FieldOf(doc, "a"))), "outer");
    EXPECT_EQ(Text(TSDMFieldGetValue(FieldOf(doc, "b"))), "also");
}

TEST_F(Value, AnObserverMayTakeTheFieldAway) {
    for (const TSServer server : {TSValueWillChange, TSValueDidChange, TSFieldWillDisplay}) {
        TestDoc doc(Group("/FT /Tx /V (old)", "", ""));
        ASSERT_NE(FieldOf(doc, "g"), nullptr);
        const LexObj group = doc.At("Tessella/Fields/0");
        const DMAnnot kids[] = {DMAnnotFromLexObj(At(group, "Kids/0")), DMAnnotFromLexObj(At(group, "Kids/1"))};
        const Listener remove(server, [&](TSFieldNotifyRec &) {
            for (const DMAnnot kid : kids) TSDMAnnotRemoveField(kid, nullptr, /*flag*/ false, /*keepValue*/ false);
        });
        TSDMFieldSetValue(FieldOf(doc, "g"), Str(doc, "new"));
        EXPECT_EQ(FieldOf(doc, "g"), nullptr) << server;
    }
}

TEST_F(Value, ObserversFormatWhatIsShownOnly) {
    TestDoc doc(FormObjects({"/FT /Tx /T (a)"}));
    int shown = 0;
    const Listener show(TSFieldWillDisplay, [&](TSFieldNotifyRec &record) {
        ++shown;
        EStrSetBytes(record.value, "1,000.00", EStrPDFDoc);
        // A display from within does not ask again.
        TSDMFieldUpdateAppearance(record.field);
    });
    EXPECT_TRUE(SetText(doc, "a", "1000"));
    EXPECT_EQ(shown, 1);
    EXPECT_EQ(Text(TSDMFieldGetValue(FieldOf(doc, "a"))), "1000");
    EXPECT_EQ(DrawnLog().back().text, "1,000.00");
    TSDMFieldValueChanged(doc.doc, FieldOf(doc, "a"));
    EXPECT_EQ(shown, 2);
    TSDMFieldValueChanged(doc.doc, nullptr);
}

TEST_F(Value, CheckBoxesKnowTheirStates) {
    TestDoc doc(OneToggle("/T (c)"));
    DMField *field = FieldOf(doc, "c");
    int told = 0;
    const Listener will(TSValueWillChange, [&](TSFieldNotifyRec &) { ++told; });
    EXPECT_FALSE(TSDMFieldSetValue(field, Name(doc, "No")));
    EXPECT_EQ(told, 0);
    EXPECT_TRUE(TSDMFieldSetValue(field, Name(doc, "Yes")));
    EXPECT_EQ(Text(doc.At("Tessella/Fields/0/V")), "/Yes");
    // There is a stream for the state, so that is all it takes.
    EXPECT_EQ(Text(doc.At("Tessella/Fields/0/AS")), "/Yes");
    EXPECT_TRUE(DrawnLog().empty());
    EXPECT_TRUE(TSDMFieldSetValue(field, Name(doc, "Off")));
    EXPECT_FALSE(LexDictKnown(doc.At("Tessella/Fields/0"), value_K));
    EXPECT_EQ(Text(TSDMFieldGetValue(field)), "/Off");
    ASSERT_EQ(DrawnLog().size(), 1u);
    EXPECT_EQ(DrawnLog()[0].state, KRAtomNull);
}

TEST_F(Value, PushButtonsHoldNothing) {
    TestDoc doc(OneToggle("/T (p) /Ff 65536"));
    DMField *field = FieldOf(doc, "p");
    EXPECT_TRUE(TSDMFieldSetValue(field, Name(doc, "Yes")));
    EXPECT_FALSE(LexDictKnown(doc.At("Tessella/Fields/0"), value_K));
    EXPECT_TRUE(DrawnLog().empty());
    TSDMFieldAppearanceWasUpdated(field);
    EXPECT_TRUE(TSDMFieldSetValue(field, LexNullObj));
    EXPECT_EQ(DrawnLog().size(), 1u);
    EXPECT_EQ(TSDMFieldSetDefaultValue(field, Name(doc, "Yes")), 1);
}

TEST_F(Value, AGroupHoldsItsValueAtTheTop) {
    TestDoc doc(Group("/FT /Btn /Ff 32768", "/AP << /N << /A 7 0 R /Off 7 0 R >> >>",
                      "/V /B /AP << /N << /B 7 0 R /Off 7 0 R >> >>"));
    DMField *second = TSDMFieldFromLexObj(doc.At("Tessella/Fields/0/Kids/1"));
    EXPECT_EQ(Text(TSDMFieldGetValue(FieldOf(doc, "g"))), "/B");
    EXPECT_TRUE(TSDMFieldSetValue(second, Name(doc, "A")));
    EXPECT_EQ(Text(doc.At("Tessella/Fields/0/V")), "/A");
    EXPECT_FALSE(LexDictKnown(second->obj, value_K));
    EXPECT_EQ(Text(doc.At("Tessella/Fields/0/Kids/0/AS")), "/A");
    ASSERT_EQ(DrawnLog().size(), 1u);
    EXPECT_EQ(DrawnLog()[0].state, Atom("A"));
    EXPECT_FALSE(TSDMFieldSetValue(second, Name(doc, "C")));
}

TEST_F(Value, LongAndMarkedTextsAreStoredWhole) {
    TestDoc doc(FormObjects({"/FT /Tx /T (a)"}));
    const std::string longText(200'000, 'x');
    EXPECT_TRUE(SetText(doc, "a", longText));
    EXPECT_EQ(Text(TSDMFieldGetValue(FieldOf(doc, "a"))).size(), longText.size());
    const std::string marked("\xFE\xFF\x04\x16\x00\x41", 6);
    EXPECT_TRUE(SetText(doc, "a", marked));
    EXPECT_EQ(Text(TSDMFieldGetValue(FieldOf(doc, "a"))), marked);
    EXPECT_TRUE(TSDMFieldSetValue(FieldOf(doc, "a"), LexNewInteger(doc.lex, false, 42)));
    EXPECT_EQ(Text(TSDMFieldGetValue(FieldOf(doc, "a"))), "42");
}

TEST_F(Value, OptionsGoByTheirExportValue) {
    TestDoc doc(FormObjects({"/FT /Ch /T (l) /Opt [[(1) (one)] [null (two)] (one) [(1) null]] /V (two)"}));
    DMField *field = FieldOf(doc, "l");
    KRAtom name = 0;
    LexObj value;
    EXPECT_EQ(TSDMFieldGetOptionIndex(field, &name, &value), 1);
    EXPECT_EQ(name, KRAtomNull);
    EXPECT_EQ(Text(value), "two");
    EXPECT_TRUE(TSDMFieldSetToOptionIndex(field, 9));
    EXPECT_EQ(Text(TSDMFieldGetValue(field)), "1");
    // Duplicates resolve to the highest, which here has no text of its own.
    EXPECT_EQ(TSDMFieldGetOptionIndex(field, nullptr, nullptr), 3);
    EXPECT_EQ(DrawnLog().back().text, "1");
    EXPECT_TRUE(TSDMFieldSetToOptionIndex(field, -1));
    EXPECT_EQ(TSDMFieldSetOptions(field, LexNullObj), 0);
    EXPECT_FALSE(LexDictKnown(field->obj, options_K));
    EXPECT_EQ(TSDMFieldGetOptionIndex(field, &name, &value), -1);
    EXPECT_EQ(LexObjGetType(value), LexNull);
}

/** Several choices of a list: the array is kept, told as its first, and followed by the indexes. */
TEST_F(Value, SeveralChoicesStayAnArray) {
    TestDoc doc(
        FormObjects({"/FT /Ch /Ff 2097152 /T (l) /Opt [(a) [(b) (Bee)] (c)] /V [(a) (c)] /I [0 2] /DV [(c) (b)]",
                     "/FT /Tx /T (t)", "/FT /Ch /T (one) /Opt [(a) (b)] /V (a)"}));
    DMField *list = FieldOf(doc, "l");
    const auto selection = [&] { return Text(doc.At("Tessella/Fields/0/I")); };
    EXPECT_EQ(TSDMFieldGetOptionIndex(list, nullptr, nullptr), 0);
    EXPECT_EQ(DMFieldGetOptionIndexes(list), (std::vector<std::int32_t>{0, 2}));
    EXPECT_TRUE(SetText(doc, "l", "b"));
    EXPECT_EQ(selection(), "[1]");
    EXPECT_TRUE(TSDMFieldReset(list));
    EXPECT_EQ(Text(doc.At("Tessella/Fields/0/V")), "[(c) (b)]");
    EXPECT_EQ(selection(), "[1 2]");
    EXPECT_EQ(TSDMFieldSetDefaultValue(list, doc.At("Tessella/Fields/0/V")), 0);
    EXPECT_TRUE(SetText(doc, "l", "none of them"));
    EXPECT_EQ(selection(), "null");
    // What an observer makes of it is one text; a field that holds one text takes the first.
    {
        const Listener rewrite(TSValueWillChange,
                               [](TSFieldNotifyRec &record) { EStrSetBytes(record.value, "b", EStrPDFDoc); });
        EXPECT_TRUE(TSDMFieldReset(list));
        EXPECT_EQ(Text(doc.At("Tessella/Fields/0/V")), "b");
    }
    EXPECT_TRUE(TSDMFieldSetValue(FieldOf(doc, "t"), doc.At("Tessella/Fields/0/DV")));
    EXPECT_EQ(Text(doc.At("Tessella/Fields/1/V")), "c");
    // A field that had none gets no indexes for one choice.
    EXPECT_TRUE(SetText(doc, "one", "b"));
    EXPECT_EQ(LexObjGetType(doc.At("Tessella/Fields/2/I")), LexNull);
}

TEST_F(Value, AValueThatIsThereAlreadyIsDrawnWhereNothingShowsIt) {
    auto objects = Group("/FT /Tx /V (v)", "", "/AP << /N 7 0 R >>");
    TestDoc doc(objects);
    int told = 0;
    const Listener will(TSValueWillChange, [&](TSFieldNotifyRec &) { ++told; });
    EXPECT_TRUE(SetText(doc, "g", "v"));
    ASSERT_EQ(DrawnLog().size(), 1u) << "the widget that has a picture keeps it";
    EXPECT_EQ(DrawnLog()[0].text, "v");
    EXPECT_EQ(told, 0);
}

TEST_F(Value, ShownTextReplacesTheExportValue) {
    TestDoc doc(FormObjects({"/FT /Ch /T (l) /Opt [[(1) (one)] [(2) (two)]] /DV (2)"}));
    EXPECT_TRUE(SetText(doc, "l", "1"));
    EXPECT_EQ(DrawnLog().back().text, "one");
    EXPECT_TRUE(TSDMFieldReset(FieldOf(doc, "l")));
    EXPECT_EQ(DrawnLog().back().text, "two");
    EXPECT_EQ(TSDMFieldSetDefaultValue(FieldOf(doc, "l"), LexNullObj), 0);
    EXPECT_TRUE(TSDMFieldReset(FieldOf(doc, "l")));
    EXPECT_EQ(Text(TSDMFieldGetValue(FieldOf(doc, "l"))), "1");
    TestDoc prompt(FormObjects({"/FT /Ch /T (l) /Opt [[() (Choose)] (1)] /V (1)"}));
    EXPECT_TRUE(TSDMFieldSetToOptionIndex(FieldOf(prompt, "l"), 0));
    EXPECT_FALSE(LexDictKnown(prompt.At("Tessella/Fields/0"), value_K));
    ASSERT_FALSE(DrawnLog().empty());
    EXPECT_EQ(DrawnLog().back().text, "Choose") << "an empty export value has a text, too";
}

TEST_F(Value, DefaultsOfChoicesAreChoices) {
    TestDoc doc(FormObjects({"/FT /Ch /T (l) /Opt [(a) (b)] /DV (a)", "/FT /Tx /T (t)"}));
    DMField *field = FieldOf(doc, "l");
    EXPECT_EQ(TSDMFieldSetDefaultValue(field, Str(doc, "c")), 1);
    EXPECT_EQ(Text(doc.At("Tessella/Fields/0/DV")), "a");
    EXPECT_EQ(TSDMFieldSetDefaultValue(field, Str(doc, "b")), 0);
    EXPECT_EQ(Text(TSDMFieldGetEntry(field, TSEntryDV)), "b");
    EXPECT_EQ(TSDMFieldSetDefaultValue(FieldOf(doc, "t"), Str(doc, "anything")), 0);
    EXPECT_EQ(Text(doc.At("Tessella/Fields/1/DV")), "anything");
    EXPECT_EQ(TSDMFieldSetDefaultValue(nullptr, LexNullObj), 1);
}

TEST_F(Value, HidingTakesTheAppearanceAndShowingBringsItBack) {
    auto objects = FormObjects({"/FT /Tx /T (a) /V (v) /F 2 /AP << /N 5 0 R >>"});
    objects.push_back(s_emptyForm);
    TestDoc doc(objects);
    DMField *field = FieldOf(doc, "a");
    EXPECT_EQ(TSDMFieldGetFlags(field, TSAnnotWord), DMAnnotHidden);
    SetText(doc, "a", "w");
    EXPECT_FALSE(LexDictKnown(field->obj, Appearance_K));
    EXPECT_TRUE(DrawnLog().empty());
    TSDMFieldSetFlags(field, TSAnnotWord, DMAnnotPrint);
    EXPECT_EQ(TSDMFieldGetFlags(field, TSAnnotWord), DMAnnotPrint);
    ASSERT_EQ(DrawnLog().size(), 1u);
    EXPECT_EQ(DrawnLog()[0].text, "w");
}

TEST_F(Value, FieldFlagsLiveAtTheTopAndAreInherited) {
    TestDoc doc(TreeObjects("4 0 R", {"<< /T (n) /Ff 1 /Kids [5 0 R] >>",
                                      "<< /T (g) /Parent 4 0 R /FT /Tx /Kids [6 0 R 7 0 R] >>",
                                      WidgetObject("/Parent 5 0 R /Ff 3"), WidgetObject("/Parent 5 0 R")}));
    DMField *top = FieldOf(doc, "n.g");
    DMField *first = TSDMFieldFromLexObj(doc.At("Tessella/Fields/0/Kids/0/Kids/0"));
    EXPECT_EQ(TSDMFieldGetFlags(first, TSFieldWord), TSFieldReadOnly)
        << "a widget without a title has no word of its own";
    EXPECT_EQ(TSDMFieldGetFlags(top, TSFieldWord), TSFieldReadOnly);
    TSDMFieldSetFlags(first, TSFieldWord, TSFieldRequired);
    EXPECT_FALSE(LexDictKnown(first->obj, flagsF_K));
    EXPECT_TRUE(LexDictKnown(top->obj, flagsF_K));
    // Inheritance gives the value already: nothing is written.
    TSDMFieldSetFlags(first, TSFieldWord, TSFieldReadOnly);
    EXPECT_FALSE(LexDictKnown(top->obj, flagsF_K));
    EXPECT_EQ(TSDMFieldGetFlags(first, TSFieldWord), TSFieldReadOnly);
    TSDMFieldSetFlags(FieldOf(doc, "n"), TSFieldWord, TSFieldRequired);
    EXPECT_EQ(TSDMFieldGetFlags(first, TSFieldWord), TSFieldRequired);
    TSDMFieldSetFlags(first, 7, 2);
    EXPECT_EQ(TSDMFieldGetFlags(first, 7), 0u);
}

TEST_F(Value, TypesChangeAloneOnly) {
    TestDoc doc(FormObjects({"/FT /Tx /T (a) /Ff 4097"}));
    DMField *field = FieldOf(doc, "a");
    EXPECT_EQ(TSDMFieldSetType(field, Choice_K), 0);
    EXPECT_EQ(Text(doc.At("Tessella/Fields/0/FT")), "/Ch");
    EXPECT_EQ(TSDMFieldGetFlags(field, TSFieldWord), TSFieldReadOnly);
    EXPECT_TRUE(TSDMFieldWasAppearanceUpdated(field));

    TestDoc group(Group("/FT /Tx /V (v)", "", ""));
    const LexObj first = group.At("Tessella/Fields/0/Kids/0");
    const LexObj second = group.At("Tessella/Fields/0/Kids/1");
    EXPECT_EQ(TSDMFieldSetType(TSDMFieldFromLexObj(first), Choice_K), 1);
    EXPECT_EQ(TSDMFieldSetType(FieldOf(group, "g"), Choice_K), 1);
    // The last widget of a group becomes the field itself.
    TSDMAnnotRemoveField(DMAnnotFromLexObj(second), nullptr, false, false);
    EXPECT_EQ(TSDMFieldSetType(TSDMFieldFromLexObj(first), Choice_K), 0);
    EXPECT_TRUE(LexObjEqual(group.At("Tessella/Fields/0"), first));
    EXPECT_EQ(LexArrayLength(group.At("Tessella/Fields")), 1);
    EXPECT_FALSE(LexDictKnown(first, parent_K));
    EXPECT_EQ(Text(TSDMFieldGetValue(FieldOf(group, "g"))), "v");
    EXPECT_EQ(FieldOf(group, "g")->type, Choice_K);
}

TEST_F(Value, RotationStandsInTheMakerDictionary) {
    auto objects = FormObjects({"/FT /Tx /T (a)", "/FT /Btn /T (b) /AP << /N << /Yes 6 0 R /Off 6 0 R >> >>"});
    objects.push_back(
        "<< /Subtype /Form /BBox [0 0 1 1] /Matrix [0 1 -1 0 0 0] /MK 7 /Length 0 >>\nstream\n\nendstream");
    TestDoc doc(objects);
    const DMAnnot a = DMAnnotFromLexObj(doc.At("Tessella/Fields/0"));
    TSDMAnnotSetRotation(a, 0);
    EXPECT_EQ(LexObjGetType(doc.At("Tessella/Fields/0/MK")), LexNull);
    TSDMAnnotSetRotation(a, -90);
    EXPECT_EQ(LexIntegerValue(doc.At("Tessella/Fields/0/MK/R")), 270);
    EXPECT_EQ(TSDMAnnotGetRotation(a), 270);
    TSDMAnnotSetRotation(a, INT32_MIN);
    EXPECT_EQ(TSDMAnnotGetRotation(a), 232);
    TSDMAnnotSetRotation(a, 720);
    EXPECT_EQ(LexObjGetType(doc.At("Tessella/Fields/0/MK/R")), LexNull);
    TSDMAnnotRemoveMakerDict(a);
    EXPECT_EQ(LexObjGetType(TSDMAnnotGetMK(a)), LexNull);
    // Read from the appearance, and kept.
    EXPECT_EQ(TSDMAnnotGetRotation(DMAnnotFromLexObj(doc.At("Tessella/Fields/1"))), 90);
    EXPECT_EQ(LexIntegerValue(doc.At("Tessella/Fields/1/MK/R")), 90);
}

} // namespace
