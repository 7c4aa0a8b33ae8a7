// A second plug-in beside Forms: its start, its checks and its view of objects.
// SPDX-License-Identifier: MIT
#include "tests/plugin/Observer.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace observer {

namespace {

struct Case {
    const char *name;
    void (*run)();
};
const Case s_cases[] = {
    {"tables", &Tables},
    {"absences", &Absences},
    {"fields", &Fields},
    {"field-tree", &FieldTree},
    {"looks", &Looks},
    {"name-trees", &NameTrees},
    {"handlers", &Handlers},
    {"widget-records", &WidgetRecords},
    {"registration", &Registration},
    {"vetoes", &Vetoes},
    {"rewriting", &Rewriting},
    {"failures", &Failures},
    {"form-life", &FormLife},
    {"menus", &Menus},
    {"selections", &Selections},
    {"upheavals", &Upheavals},
    {"upheavals-in-walks", &UpheavalsInWalks},
    {"saving", &Saving},
    {"second-document", &SecondDocument},
    {"odd-objects", &OddObjects},
    {"odd-handles", &OddHandles},
    {"watch", &Watch},
};

int s_failures = 0;
std::string s_heard;

void RunCase(const Case &todo) {
    const KRErrorCode code = Protect(todo.run);
    if (code != KRErrNone) {
        char text[256];
        ReportFailure(__FILE__, __LINE__, std::string("the case raised: ") + KRGetErrorString(code, text, sizeof text));
    }
    if (s_failures == 0) std::fprintf(stderr, "observer: %s ok\n", todo.name);
}

void DocDidOpen(SCDoc view, KRErrorCode error, void *) {
    const char *const wanted = std::getenv("OBSERVER_CASE");
    if (error != KRErrNone || !wanted || doc) return;
    doc = SCDocGetDMDoc(view);
    lex = DMDocGetLexDoc(doc);
    for (const Case &todo : s_cases) {
        if (std::strcmp(todo.name, wanted) == 0) return RunCase(todo);
    }
}

KRBool ReplaceAndRegister() {
    gFormsHFT = KRGetHFT(Atom(FormsHFTName), FormsHFTVersion);
    gFormsAuthoringHFT = KRGetHFT(Atom(FormsAuthoringHFTName), FormsAuthoringHFTVersion);
    return gFormsHFT && gFormsAuthoringHFT;
}

// After the form's own, which subscribed in its init: the form is alive when the case runs.
KRBool Init() {
    const auto proc = PICallback(gExtensionID, &DocDidOpen);
    SCAppRegisterNotification(SCDocDidOpen, gExtensionID, reinterpret_cast<KRProc>(proc), nullptr);
    return 1;
}

void Note(TSServer server, const TSFieldNotifyRec &told) {
    s_heard += (s_heard.empty() ? "" : ", ") + std::to_string(server);
    if (told.doc != doc) s_heard += " of another document";
    if (told.field) s_heard += std::string(" ") + Forms::TSDMFieldGetName(told.field);
    if (told.value) s_heard += "=" + Text(told.value);
    if (told.entries) s_heard += " #" + std::to_string(told.entries);
}

} // namespace

void ReportFailure(const char *file, int line, const std::string &what) {
    ++s_failures;
    const char *const slash = std::strrchr(file, '/');
    std::fprintf(stderr, "%s:%d: %s\n", slash ? slash + 1 : file, line, what.c_str());
}

LexObj Str(const std::string &text) {
    return LexNewString(lex, /*indirect*/ false, text.data(), static_cast<std::int32_t>(text.size()));
}

LexObj Name(const char *text) {
    return LexNewName(lex, /*indirect*/ false, Atom(text));
}

std::string Text(const EStr *text) {
    return {text->bytes, text->length};
}

LexObj At(const std::string &path) {
    return At(LexDocGetRoot(lex), path);
}

void PutText(EStr *text, std::int32_t encoding, const std::string &bytes) {
    const std::size_t capacity = bytes.size() + 2;
    text->bytes = static_cast<char *>(KRrealloc(text->bytes, capacity));
    std::memcpy(text->bytes, bytes.data(), bytes.size());
    text->bytes[bytes.size()] = text->bytes[bytes.size() + 1] = '\0';
    text->encoding = encoding;
    text->length = static_cast<std::uint16_t>(bytes.size());
    text->capacity = static_cast<std::uint16_t>(capacity);
}

bool Has(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

DMField *FieldOf(const char *name) {
    return Forms::TSDMDocGetDMFieldFromName(doc, name);
}

LexObj DictOf(const char *name) {
    return Forms::TSDMFieldGetLexObj(FieldOf(name));
}

std::string ValueOf(const char *name) {
    return Text(Forms::TSDMFieldGetValue(FieldOf(name)));
}

bool Set(const char *name, const std::string &value) {
    return Forms::TSDMFieldSetValue(FieldOf(name), Str(value));
}

std::string FaceOf(DMField *field) {
    return Data(At(Forms::TSDMFieldGetLexObj(field), "AP/N"));
}

DMAnnot AnnotOf(DMField *field) {
    return DMAnnotFromLexObj(Forms::TSDMFieldGetLexObj(field));
}

DMAnnot NewWidget(const char *type) {
    const Page page;
    const KRFixedRect rect{KRFixedFromInt(50), KRFixedFromInt(70), KRFixedFromInt(150), KRFixedFromInt(50)};
    const DMAnnot annot = DMPageCreateAnnot(page.page, Atom("Widget"), &rect);
    DMPageAddAnnot(page.page, DMAnnotLast, annot);
    if (type) LexDictPut(DMAnnotGetLexObj(annot), Atom("FT"), Name(type));
    return annot;
}

DMField *Define(const char *type, const char *name) {
    return Forms::TSDMAnnotDefineField(NewWidget(type), name);
}

Listener::Listener(TSServer server, Reaction reaction)
    : ServerListener(
          server,
          [server, reaction](TSFieldNotifyRec &record) {
              Note(server, record);
              if (reaction) reaction(record);
          },
          [server](TSFieldNotifyRec &) { s_heard += ", !" + std::to_string(server); }) {}

std::string Heard() {
    return std::exchange(s_heard, {});
}

} // namespace observer

std::int32_t PIHandshake(std::uint32_t version, PIHandshakeRecord *record) {
    if (version != PIHandshakeVersion) return 0;
    record->extensionName = KRAtomFromString("Observer");
    record->replaceAndRegister = PICallback(gExtensionID, &observer::ReplaceAndRegister);
    record->init = PICallback(gExtensionID, &observer::Init);
    return 1;
}
