// A second plug-in beside Forms: its start, its checks and its view of objects.
// SPDX-License-Identifier: MIT
#include "tests/plugin/Observer.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>
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
    {"registration", &Registration},
    {"vetoes", &Vetoes},
    {"rewriting", &Rewriting},
    {"failures", &Failures},
    {"form-life", &FormLife},
    {"defining", &Defining},
    {"defining-refused", &DefiningRefused},
    {"groups", &Groups},
    {"renaming", &Renaming},
    {"removing", &Removing},
    {"copying", &Copying},
    {"values", &Values},
    {"other-values", &OtherValues},
    {"no-fields", &NoFields},
    {"choices", &Choices},
    {"flags-and-types", &FlagsAndTypes},
    {"looks", &Looks},
    {"unreadable-looks", &UnreadableLooks},
    {"widget-faces", &WidgetFaces},
    {"layouts", &Layouts},
    {"icons", &Icons},
    {"handlers", &Handlers},
    {"widget-records", &WidgetRecords},
    {"name-trees", &NameTrees},
    {"upheavals", &Upheavals},
    {"upheavals-in-walks", &UpheavalsInWalks},
    {"saving", &Saving},
    {"second-document", &SecondDocument},
    {"odd-objects", &OddObjects},
    {"odd-handles", &OddHandles},
    {"odd-numbers", &OddNumbers},
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

std::string Text(LexObj obj) {
    std::int32_t length = 0;
    switch (LexObjGetType(obj)) {
    case LexNull:
        return "null";
    case LexInteger:
        return std::to_string(LexIntegerValue(obj));
    case LexFixed: {
        char text[32];
        KRFixedToCString(LexFixedValue(obj), text, sizeof text, /*precision*/ 4);
        return text;
    }
    case LexName:
        return std::string("/") + KRAtomGetString(LexNameValue(obj));
    case LexString: {
        const char *const bytes = LexStringValue(obj, &length);
        return {bytes, static_cast<std::size_t>(length)};
    }
    case LexArray: {
        std::string text;
        for (std::int32_t i = 0; i < LexArrayLength(obj); ++i) text += (i ? " " : "[") + Text(LexArrayGet(obj, i));
        return text.empty() ? "[]" : text + "]";
    }
    default:
        return "type " + std::to_string(LexObjGetType(obj));
    }
}

std::string Text(const EStr *text) {
    return {text->bytes, text->length};
}

LexObj At(LexObj from, const std::string &path) {
    std::istringstream parts(path);
    for (std::string part; std::getline(parts, part, '/');) {
        const std::int32_t type = LexObjGetType(from);
        if (type == LexStream) from = LexStreamDict(from);
        if (type == LexArray)
            from = LexArrayGet(from, std::atoi(part.c_str()));
        else if (type == LexDict || type == LexStream)
            from = LexDictGet(from, Atom(part.c_str()));
        else
            return LexNullObj;
    }
    return from;
}

LexObj At(const std::string &path) {
    return At(LexDocGetRoot(lex), path);
}

std::string Data(LexObj stream) {
    if (LexObjGetType(stream) != LexStream) return {};
    const KRStm in = LexStreamOpenStm(stream, LexStreamDecoded);
    std::string data;
    char block[512];
    for (std::int32_t got; (got = KRStmRead(block, 1, sizeof block, in)) > 0;)
        data.append(block, static_cast<std::size_t>(got));
    KRStmClose(in);
    return data;
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

DMField *FieldOf(const char *name) {
    return Forms::TSDMDocGetDMFieldFromName(doc, name);
}

std::string ValueOf(const char *name) {
    return Text(Forms::TSDMFieldGetValue(FieldOf(name)));
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

Listener::Listener(TSServer server, Reaction reaction)
    : server(server), reaction(std::move(reaction)),
      id(Forms::TessellaRegisterObserver(server, PICallback(gExtensionID, &Told), PICallback(gExtensionID, &Failed),
                                         this)) {}

Listener::~Listener() {
    Forms::TessellaUnregisterObserver(server, id);
}

void Listener::Told(void *record, void *clientData) {
    const auto *self = static_cast<Listener *>(clientData);
    auto &told = *static_cast<TSFieldNotifyRec *>(record);
    s_heard += (s_heard.empty() ? "" : ", ") + std::to_string(self->server);
    if (told.doc != doc) s_heard += " of another document";
    if (told.field) s_heard += std::string(" ") + Forms::TSDMFieldGetName(told.field);
    if (told.value) s_heard += "=" + Text(told.value);
    if (told.entries) s_heard += " #" + std::to_string(told.entries);
    if (self->reaction) self->reaction(told);
}

void Listener::Failed(KRErrorCode, void *, void *clientData) {
    s_heard += ", !" + std::to_string(static_cast<Listener *>(clientData)->server);
}

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
