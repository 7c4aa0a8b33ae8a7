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
    UseDest(PageViewOf(view), lex::DictGet(ActionLex(action), AtomFromText("D")));
}

/** Only ways about the document: a document may not save, close or print by being looked at. */
void performNamed(void *, DMAction action, SCDoc view) {
    const SCPageView page = PageViewOf(view);
    const KRAtom atom = lex::NameOrNone(lex::DictGet(ActionLex(action), AtomFromText("N")));
    const std::string_view name = AtomText(atom);
    const std::int32_t last = NumPages(DocOfView(view)) - 1;
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
    const DMDoc source = DocFromLex(lex::DocOf(page));
    const std::int32_t number = lex::IsDict(page) && source ? PageIndexOfLex(source, page) : lex::IntegerOr(page, 0);
    if (number >= 0 && number < NumPages(target)) return PageLexAt(target, number);
    return lex::NewInteger(DocLex(target), /*indirect*/ false, number);
}

LexObj copyOfDest(DMDoc target, LexObj dest) {
    const LexDoc doc = DocLex(target);
    if (isScalar(lex::TypeOf(dest))) return lex::CopyScalar(doc, dest);
    if (!lex::IsArray(dest)) return lex::NullObj;
    const LexObj copy = lex::NewArray(doc, /*indirect*/ false);
    const std::int32_t count = lex::ArrayLength(dest);
    if (count > 0) lex::ArrayPut(copy, 0, copyOfPage(target, lex::ArrayGet(dest, 0)));
    for (std::int32_t i = 1; i < count; ++i) {
        const LexObj item = lex::ArrayGet(dest, i);
        if (isScalar(lex::TypeOf(item))) lex::ArrayPut(copy, i, lex::CopyScalar(doc, item));
    }
    return copy;
}

DMAction copyGoTo(void *, DMDoc target, DMAction action, SCDoc source) {
    const DMAction copy = CopyActionCommon(target, action, source);
    const LexObj dest = copyOfDest(target, lex::DictGet(ActionLex(action), AtomFromText("D")));
    if (!lex::IsNull(dest)) lex::DictPut(ActionLex(copy), AtomFromText("D"), dest);
    return copy;
}

DMAction copyNamed(void *, DMDoc target, DMAction action, SCDoc source) {
    const DMAction copy = CopyActionCommon(target, action, source);
    const LexObj name = lex::DictGet(ActionLex(action), AtomFromText("N"));
    if (lex::IsName(name)) lex::DictPut(ActionLex(copy), AtomFromText("N"), lex::CopyScalar(DocLex(target), name));
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
    static const SCActionHandlerProcs s_goTo =
        procsOf([](void *d, DMAction a, SCDoc v) { Edge([&] { performGoTo(d, a, v); }); },
                [](void *d, DMDoc t, DMAction a, SCDoc s) { return Edge([&] { return copyGoTo(d, t, a, s); }); });
    static const SCActionHandlerProcs s_named =
        procsOf([](void *d, DMAction a, SCDoc v) { Edge([&] { performNamed(d, a, v); }); },
                [](void *d, DMDoc t, DMAction a, SCDoc s) { return Edge([&] { return copyNamed(d, t, a, s); }); });
    RegisterActionHandler(&s_goTo, /*clientData*/ nullptr, "GoTo", "Go to Page");
    RegisterActionHandler(&s_named, /*clientData*/ nullptr, "Named", "Execute Menu Item");
}

} // namespace jackdaw
