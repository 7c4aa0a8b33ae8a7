// Cases on the menu bar and the Edit menu: every item taken and given back, a selection of the plug-in's own.
// SPDX-License-Identifier: MIT
#include "tests/plugin/Observer.h"

#include <cstddef>
#include <vector>

namespace observer {

namespace {

struct MenuOfBar {
    const char *name;
    std::vector<const char *> items;
};
const MenuOfBar s_bar[] = {
    {"File", {"Save", "Close"}},
    {"Edit", {"Cut", "Copy", "Paste", "Clear", "SelectAll", "DeselectAll", "Properties"}},
    {"Document", {"FirstPage", "PrevPage", "NextPage", "LastPage", "GoBack", "GoForward"}},
    {"View", {"ActualSize", "FitPage", "FitWidth"}},
    {"Tools", {}},
    {"Window", {}},
    {"Help", {"AboutExtensions", "Tessella:About"}},
};

SCMenuItem AcquireItem(const char *name) {
    return SCMenubarAcquireMenuItemByName(SCAppGetMenubar(), name);
}

void TakeAndRelease(const char *name, SCMenu menu) {
    const SCMenuItem item = AcquireItem(name);
    const SCMenu parent = SCMenuItemGetParentMenu(item);
    CHECK(item && parent == menu && SCMenuItemIsVisible(item) && !SCMenuItemAcquireSubmenu(item));
    SCMenuRelease(parent);
    SCMenuItemRelease(item);
    CHECK_RAISES(KRErrBadParam, SCMenuItemRelease(item));
}

void WalkBar() {
    for (const MenuOfBar &expected : s_bar) {
        const SCMenu menu = SCMenubarAcquireMenuByName(SCAppGetMenubar(), expected.name);
        CHECK(menu && !SCMenuGetParentMenuItem(menu));
        for (const char *name : expected.items) TakeAndRelease(name, menu);
        SCMenuRelease(menu);
        CHECK_RAISES(KRErrBadParam, SCMenuRelease(menu));
    }
}

/** A menu below an item of the bar, given up by name alone: the bar keeps it. */
void HangSubmenu() {
    const SCMenu tools = SCMenubarAcquireMenuByName(SCAppGetMenubar(), "Tools");
    const SCMenu below = SCMenuNew("Below", "Observer:Below", gExtensionID);
    const SCMenuItem item = SCMenuItemNew("Hangs", "Observer:Hangs", below, /*longMenusOnly*/ 0, /*shortcut*/ 0,
                                          /*modifiers*/ 0, gExtensionID);
    SCMenuAddMenuItem(tools, item, SCMenuEnd);
    for (const SCMenu menu : {tools, below}) SCMenuRelease(menu);
    SCMenuItemRelease(item);

    const SCMenu found = SCMenubarAcquireMenuByName(SCAppGetMenubar(), "Observer:Below");
    const SCMenuItem holder = SCMenuGetParentMenuItem(found);
    CHECK(found == below && holder == item);
    SCMenuItemRemove(holder);
    CHECK(!SCMenuItemGetParentMenu(holder));
    SCMenuItemRelease(holder);
    // The item is gone; the menu that hung on it is the plug-in's alone.
    CHECK_RAISES(KRErrBadParam, SCMenuItemRelease(holder));
    CHECK(!SCMenuGetParentMenuItem(found));
    SCMenuRelease(found);
    CHECK_RAISES(KRErrBadParam, SCMenuRelease(found));
}

// A selection that notes what the Edit menu asks of it.

std::string s_done;
bool s_allowed;

KRBool Can(SCDoc, void *data) {
    return *static_cast<bool *>(data);
}
template <char Letter>
KRBool Do(SCDoc, void *) {
    s_done += Letter;
    if (Letter == 'P') KRRaise(KRErrBadField);
    return 1;
}

SCSelectionServer NewServer() {
    SCSelectionServer server{};
    server.size = sizeof server;
    server.getType = [] { return Atom("ObserverSelection"); };
    server.canCut = server.canCopy = server.canPaste = server.canDelete = server.canSelectAll = &Can;
    server.canProperties = &Can;
    server.cut = &Do<'x'>;
    server.copy = &Do<'c'>;
    server.paste = &Do<'v'>;
    server.deleteSelection = &Do<'d'>;
    server.selectAll = &Do<'a'>;
    server.properties = &Do<'P'>;
    return server;
}

/** What was done when every item of the Edit menu that can be chosen was chosen. */
std::string Edit() {
    s_done.clear();
    for (const char *name : {"Cut", "Copy", "Paste", "Clear", "SelectAll", "Properties"}) {
        const SCMenuItem item = AcquireItem(name);
        const KRErrorCode code = Protect([&] { SCMenuItemExecute(item); });
        if (code != KRErrNone) s_done += '!';
        SCMenuItemRelease(item);
    }
    return s_done;
}

} // namespace

void Menus() {
    WalkBar();
    HangSubmenu();
    WalkBar();
}

void Selections() {
    static SCSelectionServer s_server = NewServer();
    const SCDoc view = SCAppGetActiveDoc();
    CHECK_EQ(Edit(), "");
    CHECK(SCDocRegisterSelectionServer(&s_server));
    CHECK(SCDocSetSelection(view, Atom("ObserverSelection"), &s_allowed, /*highlight*/ 1));
    CHECK_EQ(Edit(), "");
    s_allowed = true;
    CHECK_EQ(Edit(), "xcvdaP!");
    // Half a pair is none, and a record of an older plug-in ends before the pairs.
    s_server.canCopy = nullptr;
    s_server.paste = nullptr;
    CHECK_EQ(Edit(), "xdaP!");
    s_server.size = offsetof(SCSelectionServer, canCut);
    CHECK_EQ(Edit(), "");
    CHECK(SCDocClearSelection(view, /*highlight*/ 0));
}

} // namespace observer
