// Cases on what goes on around a form in use: observers that pull it down, saves, a second document, odd arguments.
// SPDX-License-Identifier: MIT
#include "tests/plugin/Observer.h"

#include <cstdlib>
#include <utility>

namespace observer {

namespace {

std::string s_seenInSave;

void NoteInSave(DMDoc saved, const DMDocSaveRecord *, void *) {
    s_seenInSave += saved == doc && !FieldOf("alpha") ? "no field" : "a field";
    s_seenInSave += Forms::TSLexDictDefineField(LexNewDict(lex, /*indirect*/ true, 1), "late") ? " defined" : "";
}
void NoteAfterSave(DMDoc saved, KRErrorCode error, void *) {
    s_seenInSave += saved == doc && FieldOf("alpha") && !error ? ", then a field" : ", then none";
}

/** The path that the test gave, opened or saved to. */
struct GivenPath {
    GivenPath() : path(KRPathFromPlatformPath(std::getenv("OBSERVER_FILE"))) {}
    ~GivenPath() {
        KRFileSysReleasePath(KRGetDefaultFileSys(), path);
    }
    GivenPath(const GivenPath &) = delete;
    GivenPath &operator=(const GivenPath &) = delete;
    KRPathName path;
};

void SaveCopy() {
    const GivenPath given;
    DMDocSave(doc, DMDocSaveFull | DMDocSaveCopy, KRGetDefaultFileSys(), given.path);
}

void Subscribe(std::int32_t number, KRProc proc) {
    SCAppRegisterNotification(number, gExtensionID, proc, nullptr);
}

/** Takes the field of a broadcast, or all fields, away from under the broadcaster. */
void RemoveField(TSFieldNotifyRec &record) {
    const Page page;
    if (record.field) Forms::TSDMAnnotRemoveField(AnnotOf(record.field), page.page, 0, /*keepValue*/ false);
}
void RenameField(TSFieldNotifyRec &record) {
    if (record.field) Forms::TSDMFieldRename(record.field, "elsewhere");
}
void DestroyForm(TSFieldNotifyRec &) {
    Forms::TSDMDocDestroyForm(doc, /*flag*/ 0);
}
/** Another widget joins the field, which becomes a group. */
void SplitField(TSFieldNotifyRec &record) {
    if (record.field) Define("Tx", Forms::TSDMFieldGetName(record.field));
}

using Upheaval = void (*)(TSFieldNotifyRec &record);

/** Sets a value while the first observer of `server` does the upheaval. */
void SetInUpheaval(TSServer server, Upheaval upheaval, DMField *field) {
    bool done = false;
    const Listener listener(server, [&](TSFieldNotifyRec &record) {
        if (std::exchange(done, true)) return;
        (void)Protect([&] { upheaval(record); });
    });
    (void)Protect([&] { Forms::TSDMFieldSetValue(field, Str("value")); });
    CHECK(done);
}

} // namespace

void Upheavals() {
    int number = 0;
    for (const TSServer server : {TSValueWillChange, TSValueDidChange, TSFieldWillDisplay}) {
        for (const Upheaval upheaval : {&RemoveField, &RenameField, &SplitField, &DestroyForm}) {
            for (const int widgets : {1, 2}) {
                const std::string name = "field" + std::to_string(++number);
                for (int i = 0; i < widgets; ++i) Define("Tx", name.c_str());
                SetInUpheaval(server, upheaval, FieldOf(name.c_str()));
                // Whatever is left is whole.
                Define("Tx", "after.all");
                CHECK(Set("after.all", "value"));
            }
        }
    }
    for (const Upheaval upheaval : {&RemoveField, &DestroyForm}) {
        const Listener split(TSFieldDidSplit, upheaval), joined(TSFieldDidJoin, upheaval);
        for (int widgets = 0; widgets < 3; ++widgets) (void)Protect([] { Define("Tx", "torn"); });
    }
}

void UpheavalsInWalks() {
    // A walk over the fields takes each of them away.
    const TSFieldEnumProc removeEach = [](DMField *field, void *) -> KRBool {
        const Page page;
        Forms::TSDMAnnotRemoveField(AnnotOf(field), page.page, 0, /*keepValue*/ false);
        return true;
    };
    const TSFieldEnumProc destroyAll = [](DMField *, void *) -> KRBool {
        Forms::TSDMDocDestroyForm(doc, /*flag*/ 0);
        return true;
    };
    for (const TSFieldEnumProc proc : {removeEach, destroyAll}) {
        for (const char *name : {"w.a", "w.b", "w.b", "v"}) Define("Tx", name);
        Forms::TSDMDocEnumDMFields(doc, /*terminalOnly*/ true, /*firstOfNameOnly*/ false, proc, nullptr);
        for (const char *name : {"w.a", "w.b", "v"}) CHECK(!FieldOf(name));
    }
    Forms::TSDMDocCreateForm(doc);
    // What raises while something is taken down does not leave it half down.
    Define("Tx", "pair");
    Define("Tx", "pair");
    const Listener raiser(TSFieldDidJoin, [](TSFieldNotifyRec &) { KRRaise(KRErrBadResource); });
    const LexObj group = DictOf("pair");
    const DMAnnot kids[] = {DMAnnotFromLexObj(At(group, "Kids/0")), DMAnnotFromLexObj(At(group, "Kids/1"))};
    const Page page;
    Forms::TSDMAnnotRemoveField(kids[0], page.page, 0, /*keepValue*/ false);
    CHECK_RAISES(KRErrBadResource, Forms::TSDMAnnotRemoveField(kids[1], page.page, 0, /*keepValue*/ false));
    CHECK(!FieldOf("pair"));
    const Listener defender(TSFormWillDestroy, [](TSFieldNotifyRec &) { KRRaise(KRErrBadField); });
    CHECK_RAISES(KRErrBadField, Forms::TSDMDocDestroyForm(doc, /*flag*/ 0));
    CHECK(Forms::IsDMDocTessella(doc));
}

void Saving() {
    Subscribe(DMDocWillSave, reinterpret_cast<KRProc>(PICallback(gExtensionID, &NoteInSave)));
    Subscribe(DMDocDidSave, reinterpret_cast<KRProc>(PICallback(gExtensionID, &NoteAfterSave)));
    CHECK(Set("secret", "pass"));
    CHECK(Set("alpha", "kept"));
    SaveCopy();
    CHECK_EQ(s_seenInSave, "no field, then a field");
    CHECK_EQ(ValueOf("alpha") + ValueOf("secret"), "keptnull");
    CHECK(!LexDictKnown(At("Tessella"), Atom("$Vo")));
    CHECK(!FieldOf("late"));
}

void SecondDocument() {
    CHECK(Set("alpha", "first"));
    SaveCopy();
    CHECK(Set("alpha", "changed"));
    const GivenPath given;
    // A document in no view has a form all the same.
    const DMDoc other = DMDocOpen(KRGetDefaultFileSys(), given.path, /*password*/ nullptr);
    const LexDoc otherLex = DMDocGetLexDoc(other);
    CHECK(other != doc && Forms::IsDMDocTessella(other));
    DMField *source = Forms::TSDMDocGetDMFieldFromName(other, "alpha");
    CHECK(source && source != FieldOf("alpha"));
    CHECK_EQ(Text(Forms::TSDMFieldGetValue(source)), "first");
    CHECK_EQ(ValueOf("alpha"), "changed");
    // Texts go from one to the other by value, objects do not go at all.
    CHECK(Forms::TSDMFieldSetValue(FieldOf("alpha"), Forms::TSDMFieldGetValue(source)));
    CHECK_EQ(ValueOf("alpha"), "first");
    CHECK_EQ(Forms::TSDMFieldSetDefaultValue(FieldOf("alpha"), Forms::TSDMFieldGetValue(source)), 0);
    const LexObj foreign = LexNewArray(otherLex, /*indirect*/ true, 1);
    LexArrayPut(foreign, 0, LexNewString(otherLex, /*indirect*/ false, "x", 1));
    CHECK_RAISES(KRErrBadParam, Forms::TSDMFieldSetOptions(FieldOf("pick"), foreign));
    CHECK_EQ(LexArrayLength(At(DictOf("pick"), "Opt")), 3);

    // A copy brings along what its source inherits, and pages become forms in another document.
    LexDictPut(DMAnnotGetLexObj(AnnotOf(source)), Atom("MK"), LexNewDict(otherLex, /*indirect*/ true, 1));
    DMField *copy = Forms::TSLexDictCopyField(DMAnnotGetLexObj(NewWidget(nullptr)), source, "copied",
                                              /*fresh*/ true, /*noActions*/ false);
    CHECK_EQ(Forms::TSDMFieldGetName(copy), "copied");
    CHECK_EQ(Text(At(Forms::TSDMFieldGetLexObj(copy), "DV")), "start");
    CHECK(LexObjGetDoc(At(Forms::TSDMFieldGetLexObj(copy), "MK")) == lex);
    CHECK(Forms::TSDMFieldSetValue(copy, Str("here")));

    const LexObj dict = Forms::TSDMFieldGetLexObj(source);
    DMDocClose(other);
    CHECK(!Forms::TSDMFieldFromLexObj(dict));
    CHECK_EQ(ValueOf("copied"), "here");
    // The same file again is another document, whose fields are its own.
    const DMDoc again = DMDocOpen(KRGetDefaultFileSys(), given.path, /*password*/ nullptr);
    source = Forms::TSDMDocGetDMFieldFromName(again, "alpha");
    CHECK_EQ(Text(Forms::TSDMFieldGetValue(source)), "first");
    CHECK(!Forms::TSDMDocGetDMFieldFromName(again, "copied"));
    DMDocClose(again);
}

void OddObjects() {
    const LexObj objects[] = {LexNewDict(lex, false, 1),   LexNewDict(lex, true, 1),     LexNewArray(lex, false, 1),
                              LexNewInteger(lex, true, 7), LexNewBoolean(lex, false, 1), Str(std::string(70000, 'x')),
                              LexDocGetRoot(lex)};
    for (const LexObj odd : objects) {
        const char *const names[] = {"alpha", "agree", "pick", "push", "secret"};
        for (const char *name : names) {
            (void)Protect([&] { Forms::TSDMFieldSetValue(FieldOf(name), odd); });
            (void)Protect([&] { Forms::TSDMFieldSetDefaultValue(FieldOf(name), odd); });
            (void)Protect([&] { Forms::TSDMFieldSetOptions(FieldOf(name), odd); });
            (void)Protect([&] { Forms::TSDMFieldReset(FieldOf(name)); });
            (void)Protect([&] { Forms::TSDMFieldUpdateAppearance(FieldOf(name)); });
        }
        (void)Protect([&] { Forms::TSDMFieldFromLexObj(odd); });
        (void)Protect([&] { Forms::TSLexDictDefineField(odd, "odd"); });
        (void)Protect([&] { Forms::TSLexDictCopyField(odd, FieldOf("alpha"), nullptr, true, true); });
    }
    CHECK(Forms::IsDMDocTessella(doc) && FieldOf("alpha"));
}

void OddHandles() {
    CHECK(!Forms::IsDMDocTessella(nullptr));
    CHECK(!Forms::TSDMDocGetDMFieldFromName(nullptr, "alpha"));
    Forms::TSDMDocLoadDMFields(nullptr);
    CHECK_EQ(Text(Forms::TSDMDocCreateForm(nullptr)), "null");
    const DMAnnot noWidgets[] = {
        {0, 0}, DMAnnotFromLexObj(LexNewDict(lex, false, 1)), DMAnnotFromLexObj(LexNewInteger(lex, true, 7))};
    for (const DMAnnot annot : noWidgets) {
        TSBorder border{};
        DMColorValue color;
        (void)Protect([&] { Forms::TSDMWidgetGetSubType(annot); });
        (void)Protect([&] { Forms::TSDMWidgetGetRotation(annot); });
        (void)Protect([&] { Forms::TSDMWidgetGetBorder(annot, &border); });
        (void)Protect([&] { Forms::TSDMWidgetSetBorder(annot, nullptr); });
        (void)Protect([&] { Forms::TSDMWidgetGetAreaColors(annot, &color, &color); });
        (void)Protect([&] { Forms::WButtonGetOnKey(annot); });
        (void)Protect([&] { Forms::TSDMAnnotLockField(annot, true); });
        (void)Protect([&] { Forms::TSDMAnnotRemoveField(annot, nullptr, 0, 0); });
        CHECK(!Forms::TSDMAnnotDefineField(annot, "none"));
    }
}

} // namespace observer
