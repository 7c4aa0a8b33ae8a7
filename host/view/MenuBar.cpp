// The host's own menus: a table of items and what they do to the view in front.
// SPDX-License-Identifier: MIT
#include "doc/Document.h"
#include "doc/Pages.h"
#include "kernel/HostError.h"
#include "kernel/PlugIns.h"
#include "view/Alerts.h"
#include "view/AppState.h"
#include "view/MenuRecords.h"
#include "view/Menus.h"
#include "view/PageView.h"
#include "view/Selection.h"
#include "view/ViewPlatform.h"
#include "view/Views.h"

namespace jackdaw {

namespace {

struct HostItem {
    const char *name;
    const char *title;
    void (*run)(SCDoc front);
    /** Null: whenever a view is open. */
    bool (*enabled)(SCDoc front);
    /** Also without an open view. */
    bool always = false;
};

struct HostMenu {
    const char *name;
    const char *title;
    std::vector<HostItem> items;
};

SCPageView page(SCDoc view) {
    return PageViewOf(view);
}

std::int32_t lastPage(SCDoc view) {
    return NumPages(DocOfView(view)) - 1;
}

bool notFirst(SCDoc view) {
    return ShownPageNum(page(view)) > 0;
}

bool notLast(SCDoc view) {
    return ShownPageNum(page(view)) < lastPage(view);
}

bool canSave(SCDoc view) {
    return (DocFlags(DocOfView(view)) & DMDocDirty) != 0 && DocFile(DocOfView(view)) != nullptr;
}

void save(SCDoc view) {
    SaveDoc(DocOfView(view), DMDocSaveFull, /*fs*/ nullptr, /*path*/ nullptr);
}

/** Tells which plug-ins run. */
void aboutExtensions(SCDoc) {
    std::string text = "Plug-ins:";
    for (const std::string &name : RunningPlugIns()) text += "\n" + name;
    ShowAlert({SCAlertIconNone, text, {"OK", "", ""}, /*beep*/ false});
}

template <SelectionEdit Edit>
HostItem editItem(const char *name, const char *title) {
    return {name, title, [](SCDoc v) { EditSelection(v, Edit); }, [](SCDoc v) { return CanEditSelection(v, Edit); }};
}

std::vector<HostItem> editItems() {
    return {editItem<SelectionEdit::Cut>("Cut", "Cu&t"),
            editItem<SelectionEdit::Copy>("Copy", "&Copy"),
            editItem<SelectionEdit::Paste>("Paste", "&Paste"),
            editItem<SelectionEdit::Delete>("Clear", "De&lete"),
            editItem<SelectionEdit::SelectAll>("SelectAll", "Select &All"),
            {"DeselectAll", "&Deselect", [](SCDoc v) { ClearSelection(v, /*highlight*/ true); },
             [](SCDoc v) { return SelectionType(v) != KRAtomNull; }},
            editItem<SelectionEdit::Properties>("Properties", "P&roperties...")};
}

const std::vector<HostMenu> &hostMenus() {
    static const std::vector<HostMenu> s_menus{
        {"File",
         "&File",
         {{"Save", "&Save", &save, &canSave},
          {"Close", "&Close", [](SCDoc v) { CloseView(v, /*noDirtyCheck*/ false); }, nullptr}}},
        {"Edit", "&Edit", editItems()},
        {"Document",
         "&Document",
         {{"FirstPage", "&First Page", [](SCDoc v) { GoToPage(page(v), 0); }, &notFirst},
          {"PrevPage", "&Previous Page", [](SCDoc v) { GoToPage(page(v), ShownPageNum(page(v)) - 1); }, &notFirst},
          {"NextPage", "&Next Page", [](SCDoc v) { GoToPage(page(v), ShownPageNum(page(v)) + 1); }, &notLast},
          {"LastPage", "&Last Page", [](SCDoc v) { GoToPage(page(v), lastPage(v)); }, &notLast},
          {"GoBack", "Go &Back", [](SCDoc v) { GoBack(page(v)); }, nullptr},
          {"GoForward", "Go F&orward", [](SCDoc v) { GoForward(page(v)); }, nullptr}}},
        {"View",
         "&View",
         {{"ActualSize", "&Actual Size", [](SCDoc v) { ZoomTo(page(v), SCZoomNoVary, KRFixedOne); }, nullptr},
          {"FitPage", "Fit &Page", [](SCDoc v) { ZoomTo(page(v), SCZoomFitPage, 0); }, nullptr},
          {"FitWidth", "Fit &Width", [](SCDoc v) { ZoomTo(page(v), SCZoomFitWidth, 0); }, nullptr}}},
        {"Tools", "&Tools", {}},
        {"Window", "&Window", {}},
        {"Help", "&Help", {{"AboutExtensions", "About &Plug-ins...", &aboutExtensions, nullptr, /*always*/ true}}},
    };
    return s_menus;
}

const HostItem &itemOf(void *clientData) {
    return *static_cast<const HostItem *>(clientData);
}

// Menu procedures are called by plug-ins through the table too, hence the edges.

void execute(void *clientData) {
    Edge([&] { itemOf(clientData).run(FrontView()); });
}

KRBool enabled(void *clientData) {
    return Edge([&]() -> KRBool {
        const HostItem &item = itemOf(clientData);
        const SCDoc front = FrontView();
        if (item.always) return 1;
        return front && (!item.enabled || item.enabled(front));
    });
}

} // namespace

void FillMenubar(SCMenubar bar) {
    for (const HostMenu &hostMenu : hostMenus()) {
        const SCMenu menu = NewMenu(hostMenu.title, hostMenu.name, /*extensionID*/ 0);
        for (const HostItem &hostItem : hostMenu.items) {
            const SCMenuItem item = NewMenuItem(hostItem.title, hostItem.name, /*submenu*/ nullptr,
                                                /*longMenusOnly*/ false, /*shortcut*/ 0, /*modifiers*/ 0,
                                                /*extensionID*/ 0);
            void *const data = const_cast<HostItem *>(&hostItem);
            SetItemExecute(item, &execute, data);
            SetItemEnabled(item, &enabled, data);
            AddItem(menu, item, SCMenuEnd);
            ReleaseItem(item);
        }
        AddMenuToBar(bar, menu);
        ReleaseMenu(menu);
    }
}

} // namespace jackdaw
