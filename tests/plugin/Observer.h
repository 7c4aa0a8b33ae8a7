// What the cases of the observing plug-in share: the document under test, checks, and short ways to its fields.
//
// The plug-in knows include/ alone. The case that OBSERVER_CASE names runs once, when the first document is open in its
// view. A check that fails prints a line, and the case goes on. What an operation makes of a document is tested where
// the operation stands; here each slot is called once for what it alone does, and what lies between two plug-ins is
// tried: notifications, raises, handlers, a form that is pulled down in use.
// SPDX-License-Identifier: MIT
#pragma once

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
#include "tests/support/Listener.h"
#include "tests/support/Objects.h"

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

LexObj Str(const std::string &text);
LexObj Name(const char *text);
using ::Text;
std::string Text(const EStr *text);
using ::At;
/** From the catalog. */
LexObj At(const std::string &path);
/** Puts other text into a record's, as include/FormsTypes.h asks. */
void PutText(EStr *text, std::int32_t encoding, const std::string &bytes);
bool Has(const std::string &text, const std::string &part);

DMField *FieldOf(const char *name);
LexObj DictOf(const char *name);
/** `V` of a field, as Text. */
std::string ValueOf(const char *name);
bool Set(const char *name, const std::string &value);
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
DMField *Define(const char *type, const char *name);

/** Notes what it hears before it reacts, and with "!" which broadcasts failed. */
class Listener : public ServerListener<Forms::TessellaRegisterObserver, Forms::TessellaUnregisterObserver> {
public:
    explicit Listener(TSServer server, Reaction reaction = {});
};
/** What was heard since the last call, such as "0 alpha=two, 1 alpha=two, 3 #4". */
std::string Heard();

// The cases.
void Tables();
void Absences();
void Fields();
void FieldTree();
void Looks();
void NameTrees();
void Handlers();
void WidgetRecords();
void Registration();
void Vetoes();
void Rewriting();
void Failures();
void FormLife();
void Menus();
void Selections();
void Upheavals();
void UpheavalsInWalks();
void Saving();
void SecondDocument();
void OddObjects();
void OddHandles();

/** Leaves observers behind that judge what others do to the form. */
void Watch();

} // namespace observer
