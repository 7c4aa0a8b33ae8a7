// What the cases of the observing plug-in share: the document under test, checks, and readers and makers of objects.
//
// The plug-in knows include/ alone. The case that OBSERVER_CASE names runs once, when the first document is open in its
// view. A check that fails prints a line, and the case goes on.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <type_traits>

#include "CoreHFT.h"
#include "DocModelHFT.h"
#include "FormsAuthoringHFT.h"
#include "FormsHFT.h"
#include "KernelSupportHFT.h"
#include "LexHFT.h"
#include "PIFrame.h"
#include "PIMain.h"
#include "ScreenViewHFT.h"

namespace observer {

inline DMDoc doc = nullptr;
inline LexDoc lex = nullptr;

void ReportFailure(const char *file, int line, const std::string &what);

template <class T>
std::string Show(const T &value) {
    if constexpr (std::is_convertible_v<T, std::string>)
        return '"' + std::string(value) + '"';
    else if constexpr (std::is_pointer_v<T>)
        return value ? "a pointer" : "null";
    else
        return std::to_string(value);
}

template <class A, class B>
bool Same(const A &a, const B &b) {
    if constexpr (std::is_convertible_v<A, std::string>)
        return std::string(a) == std::string(b);
    else if constexpr (std::is_arithmetic_v<A> || std::is_enum_v<A>)
        return static_cast<long long>(a) == static_cast<long long>(b);
    else
        return a == b;
}

template <class A, class B>
void CheckSame(const char *file, int line, const char *text, const A &actual, const B &expected) {
    if (!Same(actual, expected)) ReportFailure(file, line, std::string(text) + " is " + Show(actual));
}

#define CHECK(condition)                                                                                               \
    do {                                                                                                               \
        if (!(condition)) observer::ReportFailure(__FILE__, __LINE__, #condition " is false");                         \
    } while (false)
#define CHECK_EQ(actual, expected) observer::CheckSame(__FILE__, __LINE__, #actual, actual, expected)
/** `code` 0: nothing is raised. */
#define CHECK_RAISES(code, statement)                                                                                  \
    observer::CheckSame(__FILE__, __LINE__, "code of " #statement, Protect([&] { statement; }), code)

inline KRAtom Atom(const char *text) {
    return KRAtomFromString(text);
}
LexObj Str(const std::string &text);
LexObj Name(const char *text);
/** Bytes of a string, a name with its slash, an integer, "[a b]", "null", "type 6" for what has no short text. */
std::string Text(LexObj obj);
std::string Text(const EStr *text);
/** What a path such as "Tessella/Fields/0/V" leads to from `from`. */
LexObj At(LexObj from, const std::string &path);
/** The same from the catalog. */
LexObj At(const std::string &path);
/** Decoded data of a stream; empty for what is none. */
std::string Data(LexObj stream);
/** Puts other text into a record's, as include/FormsTypes.h asks. */
void PutText(EStr *text, std::int32_t encoding, const std::string &bytes);

DMField *FieldOf(const char *name);
/** `V` of a field, as Text. */
std::string ValueOf(const char *name);
/** Decoded normal appearance of the field's widget. */
std::string FaceOf(DMField *field);
DMAnnot AnnotOf(DMField *field);

/** A page of the document, released with the object. */
struct Page {
    Page() : page(DMDocAcquirePage(doc, 0)) {}
    ~Page() {
        DMPageRelease(page);
    }
    Page(const Page &) = delete;
    Page &operator=(const Page &) = delete;
    DMPage page;
};
/** A widget on the first page, with a field type unless that is null, and no field yet. */
DMAnnot NewWidget(const char *type);

/**
 * Observes a server as long as it lives: notes what it hears and then does `reaction`, which may raise. Failures are
 * noted with the server's number negated by "!".
 */
class Listener {
public:
    using Reaction = std::function<void(TSFieldNotifyRec &record)>;
    explicit Listener(TSServer server, Reaction reaction = {});
    ~Listener();
    Listener(const Listener &) = delete;
    Listener &operator=(const Listener &) = delete;

private:
    static void Told(void *record, void *clientData);
    static void Failed(KRErrorCode code, void *record, void *clientData);

    TSServer server;
    Reaction reaction;
    std::int32_t id;
};
/** What was heard since the last call, such as "0 alpha=two, 1 alpha=two, 3 #4". */
std::string Heard();

// The cases.
void Tables();
void Absences();
void Registration();
void Vetoes();
void Rewriting();
void Failures();
void FormLife();
void Defining();
void DefiningRefused();
void Groups();
void Renaming();
void Removing();
void Copying();
void Values();
void OtherValues();
void NoFields();
void Choices();
void FlagsAndTypes();
void Looks();
void UnreadableLooks();
void WidgetFaces();
void Layouts();
void Icons();
void Handlers();
void WidgetRecords();
void NameTrees();
void Upheavals();
void UpheavalsInWalks();
void Saving();
void SecondDocument();
void OddObjects();
void OddHandles();
void OddNumbers();

/** Leaves observers behind that judge what others do to the form. */
void Watch();

} // namespace observer
