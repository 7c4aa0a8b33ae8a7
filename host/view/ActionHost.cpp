// The host's own actions: GoTo and Named.
// SPDX-License-Identifier: MIT
#include <string_view>

#include "doc/Actions.h"
#include "doc/Document.h"
#include "doc/Pages.h"
#include "kernel/Atoms.h"
#include "kernel/HostError.h"
#include "lex/LexObjects.h"
#include "view/ActionDispatch.h"
#include "view/PageView.h"
#include "view/Views.h"

namespace jackdaw {

namespace {

void performGoTo(void *, DMAction action, SCDoc view) {
    UseDest(PageViewOf(view), lex::dictGet(actionLex(action), AtomFromText("D")));
}

/** Only ways about the document: a document may not save, close or print by being looked at. */
void performNamed(void *, DMAction action, SCDoc view) {
    const SCPageView page = PageViewOf(view);
    const KRAtom atom = lex::nameOrNone(lex::dictGet(actionLex(action), AtomFromText("N")));
    const std::string_view name = AtomText(atom);
    const std::int32_t last = numPages(DocOfView(view)) - 1;
    if (name == "FirstPage") GoToPage(page, 0);
    if (name == "LastPage") GoToPage(page, last);
    if (name == "NextPage" && ShownPageNum(page) < last) GoToPage(page, ShownPageNum(page) + 1);
    if (name == "PrevPage" && ShownPageNum(page) > 0) GoToPage(page, ShownPageNum(page) - 1);
    if (name == "GoBack") GoBack(page);
    if (name == "GoForward") GoForward(page);
}

bool isScalar(LexType type) {
    return type != LexNull && type != LexDict && type != LexArray && type != LexStream;
}

/** The page of the same number in `target`, else the number: a link follows its page's number. */
LexObj copyOfPage(DMDoc target, LexObj page) {
    const DMDoc source = docFromLex(lex::docOf(page));
    const std::int32_t number =
        lex::typeOf(page) == LexDict && source != nullptr ? pageIndexOfLex(source, page) : lex::integerOr(page, 0);
    if (number >= 0 && number < numPages(target)) return pageLexAt(target, number);
    return lex::newInteger(docLex(target), /*indirect*/ false, number);
}

LexObj copyOfDest(DMDoc target, LexObj dest) {
    const LexDoc doc = docLex(target);
    if (isScalar(lex::typeOf(dest))) return lex::copyScalar(doc, dest);
    if (lex::typeOf(dest) != LexArray) return lex::nullObj;
    const LexObj copy = lex::newArray(doc, /*indirect*/ false);
    const std::int32_t count = lex::arrayLength(dest);
    if (count > 0) lex::arrayPut(copy, 0, copyOfPage(target, lex::arrayGet(dest, 0)));
    for (std::int32_t i = 1; i < count; ++i) {
        const LexObj item = lex::arrayGet(dest, i);
        if (isScalar(lex::typeOf(item))) lex::arrayPut(copy, i, lex::copyScalar(doc, item));
    }
    return copy;
}

DMAction copyGoTo(void *, DMDoc target, DMAction action, SCDoc source) {
    const DMAction copy = CopyActionCommon(target, action, source);
    const LexObj dest = copyOfDest(target, lex::dictGet(actionLex(action), AtomFromText("D")));
    if (!lex::isNull(dest)) lex::dictPut(actionLex(copy), AtomFromText("D"), dest);
    return copy;
}

DMAction copyNamed(void *, DMDoc target, DMAction action, SCDoc source) {
    const DMAction copy = CopyActionCommon(target, action, source);
    const LexObj name = lex::dictGet(actionLex(action), AtomFromText("N"));
    if (lex::typeOf(name) == LexName)
        lex::dictPut(actionLex(copy), AtomFromText("N"), lex::copyScalar(docLex(target), name));
    return copy;
}

SCActionHandlerProcs procsOf(decltype(SCActionHandlerProcs::perform) perform,
                             decltype(SCActionHandlerProcs::copy) copy) {
    SCActionHandlerProcs procs{};
    procs.size = sizeof procs;
    procs.perform = perform;
    procs.copy = copy;
    return procs;
}

} // namespace

void InstallHostActions() {
    // Plug-ins may fetch and call these procedures, so each has the table's edge around it.
    static const SCActionHandlerProcs goTo =
        procsOf([](void *d, DMAction a, SCDoc v) { Edge([&] { performGoTo(d, a, v); }); },
                [](void *d, DMDoc t, DMAction a, SCDoc s) { return Edge([&] { return copyGoTo(d, t, a, s); }); });
    static const SCActionHandlerProcs named =
        procsOf([](void *d, DMAction a, SCDoc v) { Edge([&] { performNamed(d, a, v); }); },
                [](void *d, DMDoc t, DMAction a, SCDoc s) { return Edge([&] { return copyNamed(d, t, a, s); }); });
    RegisterActionHandler(&goTo, /*clientData*/ nullptr, "GoTo", "Go to Page");
    RegisterActionHandler(&named, /*clientData*/ nullptr, "Named", "Execute Menu Item");
}

} // namespace jackdaw
