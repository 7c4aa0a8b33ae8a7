// Cases on the tables themselves and on what stands in no widget: versions, absent modules, name trees.
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

/** A text in the encoding of name trees, freed with the object. */
struct TreeName {
    explicit TreeName(const char *bytes) {
        PutText(&text, EStrPDFDoc, bytes);
    }
    ~TreeName() {
        KRfree(text.bytes);
    }
    TreeName(const TreeName &) = delete;
    TreeName &operator=(const TreeName &) = delete;
    const EStr *Get() const {
        return &text;
    }
    EStr text{};
};

LexObj Number(int number) {
    return LexNewInteger(lex, /*indirect*/ true, number);
}

KRAtom Tree() {
    return Atom("Observed");
}

void Add(const char *name, LexObj value, std::uint32_t flags = 0) {
    Forms::TSAddNameEntry(lex, Tree(), TreeName(name).Get(), value, flags);
}

void Remove(const char *name, KRBool updateLimits, std::uint32_t flags) {
    Forms::TSRemoveNameEntry(lex, Tree(), TreeName(name).Get(), updateLimits, flags);
}

LexObj Find(const char *name) {
    return Forms::TSFindNameEntry(lex, Tree(), TreeName(name).Get());
}

std::string Entries() {
    std::string entries;
    const Forms::NameEntryProc collect = [](LexObj key, LexObj value, void *clientData) -> KRBool {
        auto *list = static_cast<std::string *>(clientData);
        *list += (list->empty() ? "" : " ") + Text(key) + Text(value);
        return true;
    };
    CHECK(Forms::TSEnumNameTree(lex, Tree(), collect, &entries));
    return entries;
}

bool HoldsKey(LexObj node, KRAtom key) {
    if (LexDictKnown(node, key)) return true;
    const LexObj kids = At(node, "Kids");
    for (std::int32_t i = 0; LexObjGetType(kids) == LexArray && i < LexArrayLength(kids); ++i) {
        if (HoldsKey(LexArrayGet(kids, i), key)) return true;
    }
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
        Protect([] { Forms::OldExportAsFDF(doc, LexNullObj, 0, 0); }),
        Protect([] { Forms::OldExportAsHtml(doc, LexNullObj, 0, 0, nullptr); }),
        Protect([] { Forms::OldImportAnFDF(doc, nullptr); }),
        Protect([] { Forms::ResetForm(doc, LexNullObj, 0); }),
        Protect([&] { Forms::TJSGetJSContext(&context, &global); }),
        Protect([] { Forms::ExportAsFDF97(doc, LexNullObj, 0, 0, nullptr); }),
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

void NameTrees() {
    const Forms::NameEntryProc stop = [](LexObj, LexObj, void *) -> KRBool { return false; };
    CHECK_EQ(Text(Find("x")), "null");
    CHECK(Forms::TSEnumNameTree(lex, Tree(), stop, nullptr));
    Remove("x", /*updateLimits*/ true, TSNameRemove);
    Forms::TSRegenerateNameTree(lex, Tree(), /*branching*/ 2);
    CHECK(!LexDictKnown(At(""), Atom("Names")));

    const LexObj first = Number(1), later = Number(2), last = Number(3);
    Add("m", Number(5));
    Add("b", first);
    Add("z", Number(9));
    Add("b", later);
    CHECK_EQ(Entries(), "b2 m5 z9");
    CHECK_EQ(Text(first), "1");
    Add("b", last, TSNameDestroyOld);
    CHECK_EQ(Text(later), "null");
    CHECK(LexObjEqual(Find("b"), last));
    CHECK_EQ(Text(Forms::TSFindNameEntryByObj(lex, Tree(), last)), "b");
    CHECK_EQ(Text(Forms::TSFindNameEntryByObj(lex, Tree(), first)), "null");
    CHECK(!Forms::TSEnumNameTree(lex, Tree(), stop, nullptr));
    // The host reads the same tree, bytes above 127 in their order.
    Add("\xE4", Number(10));
    LexObj value;
    CHECK(DMNameTreeGet(DMDocGetNameTree(doc, Tree()), "\xE4", 1, &value));
    CHECK_EQ(Text(value), "10");

    Add("n", Number(6));
    Forms::TSRegenerateNameTree(lex, Tree(), /*branching*/ 2);
    CHECK_EQ(Entries(), "b3 m5 n6 z9 \xE4"
                        "10");
    const LexObj root = At("Names/Observed");
    CHECK(!LexDictKnown(root, Atom("Limits")) && LexArrayLength(At(root, "Kids")) == 2);
    CHECK_EQ(Text(At(root, "Kids/0/Limits")) + Text(At(root, "Kids/1/Limits")), "[b z][\xE4 \xE4]");
    CHECK(!HoldsKey(root, Atom("nKids")));
    for (const char *name : {"b", "m", "n", "z", "\xE4"}) CHECK(LexObjGetType(Find(name)) == LexInteger);
    CHECK_RAISES(KRErrBadParam, Forms::TSRegenerateNameTree(lex, Tree(), 1));
    // Below all others: limits widen down the whole path.
    Add("a", Number(0));
    CHECK_EQ(Text(At(root, "Kids/0/Limits")) + Text(At(root, "Kids/0/Kids/0/Limits")), "[a z][a m]");
    Remove("a", /*updateLimits*/ true, TSNameRemove);
    CHECK_EQ(Text(At(root, "Kids/0/Limits")), "[b z]");
    Remove("b", /*updateLimits*/ false, TSNameRemoveDestroy);
    CHECK_EQ(Text(last), "null");
    Remove("\xE4", /*updateLimits*/ false, TSNameRemove);
    CHECK_EQ(Entries(), "m5 n6 z9");
    CHECK_EQ(Text(At(root, "Kids/1/Names")), "[]");
}

} // namespace observer
