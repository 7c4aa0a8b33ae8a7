// Menus, their items, and the counting of both.
// SPDX-License-Identifier: MIT
#include "view/Menus.h"

#include <algorithm>
#include <unordered_set>

#include "kernel/HostError.h"
#include "view/MenuRecords.h"
#include "view/ViewPlatform.h"

namespace jackdaw {

namespace {

/** All there are; what is left at the end of the process goes with it. */
struct LiveMenus {
    LiveMenus() = default;
    ~LiveMenus() {
        clear();
    }
    LiveMenus(const LiveMenus &) = delete;
    LiveMenus &operator=(const LiveMenus &) = delete;

    void clear() {
        for (const SCMenu menu : menus) delete menu;
        for (const SCMenuItem item : items) delete item;
        menus.clear();
        items.clear();
    }
    /** The oldest first. */
    std::vector<SCMenu> inOrder() const {
        std::vector<SCMenu> result(menus.begin(), menus.end());
        std::sort(result.begin(), result.end(), [](SCMenu a, SCMenu b) { return a->number < b->number; });
        return result;
    }

    std::unordered_set<SCMenu> menus;
    std::unordered_set<SCMenuItem> items;
};

LiveMenus &live() {
    static LiveMenus s_menus;
    return s_menus;
}

SCMenuRec &checked(SCMenu menu) {
    if (!live().menus.contains(menu)) throw HostError{KRErrBadParam, "There is no such menu."};
    return *menu;
}

SCMenuItemRec &checked(SCMenuItem item) {
    if (!live().items.contains(item)) throw HostError{KRErrBadParam, "There is no such menu item."};
    return *item;
}

SCMenubarRec &checked(SCMenubar bar) {
    if (bar != Menubar()) throw HostError{KRErrBadParam, "There is no such menu bar."};
    return *bar;
}

template <class T>
void eraseOne(std::vector<T> &list, T value) {
    const auto found = std::find(list.begin(), list.end(), value);
    if (found != list.end()) list.erase(found);
}

bool stands(SCMenu menu) {
    return menu->bar || menu->parentItem;
}

/** Frees what stands nowhere and nobody refers to: a menu's end lets go of its items, an item's of its submenu. */
void freeIfLoose(std::vector<SCMenu> menus, std::vector<SCMenuItem> items) {
    while (!menus.empty() || !items.empty()) {
        if (!menus.empty()) {
            const SCMenu menu = menus.back();
            menus.pop_back();
            if (menu->references > 0 || stands(menu)) continue;
            for (const SCMenuItem item : menu->items) {
                item->parent = nullptr;
                items.push_back(item);
            }
            live().menus.erase(menu);
            delete menu;
        } else {
            const SCMenuItem item = items.back();
            items.pop_back();
            if (item->references > 0 || item->parent) continue;
            if (item->submenu) {
                item->submenu->parentItem = nullptr;
                menus.push_back(item->submenu);
            }
            live().items.erase(item);
            delete item;
        }
    }
}

void barChanged() {
    if (Platform().menusChanged) Platform().menusChanged();
}

template <class Handle>
void acquire(Handle handle) {
    if (handle) ++handle->references;
}

/** The host cannot tell whose a reference is, but it can tell when there is none. */
void dropReference(int &references) {
    if (references == 0) throw HostError{KRErrBadParam, "A menu or an item is released that nobody acquired."};
    --references;
}

/** Off whatever holds the menu; the caller frees it or puts it somewhere. */
void detachMenu(SCMenu menu) {
    if (menu->parentItem)
        menu->parentItem->submenu = nullptr;
    else if (menu->bar)
        eraseOne(menu->bar->menus, menu);
    menu->parentItem = nullptr;
    menu->bar = nullptr;
}

void detachItem(SCMenuItem item) {
    if (!item->parent) return;
    eraseOne(item->parent->items, item);
    item->parent = nullptr;
}

/** Walks a menu and all below it, outer before inner, until `visit` gives true. */
template <class Visit>
bool walk(std::vector<SCMenu> pending, Visit visit) {
    std::reverse(pending.begin(), pending.end());
    while (!pending.empty()) {
        const SCMenu menu = pending.back();
        pending.pop_back();
        if (visit(menu)) return true;
        for (auto it = menu->items.rbegin(); it != menu->items.rend(); ++it) {
            if ((*it)->submenu) pending.push_back((*it)->submenu);
        }
    }
    return false;
}

SCMenuItem itemNamed(const std::vector<SCMenu> &menus, const std::string &name) {
    SCMenuItem found = nullptr;
    walk(menus, [&](SCMenu menu) {
        for (const SCMenuItem item : menu->items) {
            if (item->name != name) continue;
            found = item;
            return true;
        }
        return false;
    });
    return found;
}

bool compute(SCComputeProc proc, void *clientData, bool otherwise) {
    if (!proc) return otherwise;
    bool result = false;
    ThrowIf(HostProtect([&] { result = proc(clientData) != 0; }));
    return result;
}

std::string textOf(const char *text) {
    return text ? text : "";
}

} // namespace

SCMenubar Menubar() {
    static SCMenubarRec s_bar;
    if (!s_bar.filled) {
        s_bar.filled = true;
        FillMenubar(&s_bar);
    }
    return &s_bar;
}

void DestroyMenus() {
    SCMenubarRec &bar = *Menubar();
    live().clear();
    bar = {};
}

void AddMenuToBar(SCMenubar bar, SCMenu menu) {
    checked(menu);
    menu->bar = bar;
    bar->menus.push_back(menu);
}

SCMenu AcquireMenuByName(SCMenubar bar, const char *name) {
    SCMenu found = nullptr;
    walk(checked(bar).menus, [&](SCMenu menu) {
        if (menu->name != textOf(name)) return false;
        found = menu;
        return true;
    });
    acquire(found);
    return found;
}

SCMenuItem AcquireItemByName(SCMenubar bar, const char *name) {
    SCMenuItem found = itemNamed(checked(bar).menus, textOf(name));
    if (!found) found = itemNamed(live().inOrder(), textOf(name));
    acquire(found);
    return found;
}

SCMenu AcquireSubmenu(SCMenuItem item) {
    const SCMenu menu = checked(item).submenu;
    acquire(menu);
    return menu;
}

SCMenuItem AcquireParentItem(SCMenu menu) {
    const SCMenuItem item = checked(menu).parentItem;
    acquire(item);
    return item;
}

SCMenu AcquireParentMenu(SCMenuItem item) {
    const SCMenu menu = checked(item).parent;
    acquire(menu);
    return menu;
}

SCMenu NewMenu(const char *title, const char *name, KRWord extensionID) {
    static std::uint64_t s_made = 0;
    const SCMenu menu = new SCMenuRec;
    menu->title = textOf(title);
    menu->name = textOf(name);
    menu->extensionID = extensionID;
    menu->number = ++s_made;
    live().menus.insert(menu);
    return menu;
}

SCMenuItem NewMenuItem(const char *title, const char *name, SCMenu submenu, bool longMenusOnly, char shortcut,
                       std::uint16_t modifiers, KRWord extensionID) {
    if (submenu) checked(submenu);
    const SCMenuItem item = new SCMenuItemRec;
    item->title = textOf(title);
    item->name = textOf(name);
    item->longMenusOnly = longMenusOnly;
    item->shortcut = shortcut;
    item->modifiers = modifiers;
    item->extensionID = extensionID;
    live().items.insert(item);
    if (submenu) {
        detachMenu(submenu);
        item->submenu = submenu;
        submenu->parentItem = item;
    }
    return item;
}

void AcquireItem(SCMenuItem item) {
    acquire(&checked(item));
}

void ReleaseMenu(SCMenu menu) {
    dropReference(checked(menu).references);
    freeIfLoose({menu}, {});
}

void ReleaseItem(SCMenuItem item) {
    dropReference(checked(item).references);
    freeIfLoose({}, {item});
}

void RemoveMenu(SCMenu menu) {
    checked(menu);
    detachMenu(menu);
    freeIfLoose({menu}, {});
    barChanged();
}

void RemoveItem(SCMenuItem item) {
    checked(item);
    detachItem(item);
    freeIfLoose({}, {item});
    barChanged();
}

void AddItem(SCMenu menu, SCMenuItem item, std::int32_t index) {
    checked(menu);
    checked(item);
    for (SCMenu above = menu; above;) {
        if (above == item->submenu) throw HostError{KRErrBadParam, "A menu cannot stand below itself."};
        above = above->parentItem ? above->parentItem->parent : nullptr;
    }
    detachItem(item);
    const auto count = static_cast<std::int32_t>(menu->items.size());
    const std::int32_t place = index < 0 || index > count ? count : index;
    menu->items.insert(menu->items.begin() + place, item);
    item->parent = menu;
    barChanged();
}

void SetItemExecute(SCMenuItem item, SCExecuteProc proc, void *clientData) {
    checked(item).execute = proc;
    item->executeData = clientData;
}

void SetItemEnabled(SCMenuItem item, SCComputeProc proc, void *clientData) {
    checked(item).enabled = proc;
    item->enabledData = clientData;
}

void SetItemMarked(SCMenuItem item, SCComputeProc proc, void *clientData) {
    checked(item).marked = proc;
    item->markedData = clientData;
}

bool ItemIsEnabled(SCMenuItem item) {
    return compute(checked(item).enabled, item->enabledData, /*otherwise*/ true);
}

bool ItemIsMarked(SCMenuItem item) {
    return compute(checked(item).marked, item->markedData, /*otherwise*/ false);
}

bool ItemIsVisible(SCMenuItem item) {
    checked(item);
    for (SCMenu menu = item->parent; menu;) {
        if (menu->bar) return true;
        menu = menu->parentItem ? menu->parentItem->parent : nullptr;
    }
    return false;
}

void ExecuteItem(SCMenuItem item) {
    if (!checked(item).execute || item->submenu || !ItemIsEnabled(item)) return;
    // The item may remove itself while it runs.
    AcquireItem(item);
    const SCExecuteProc execute = item->execute;
    void *const clientData = item->executeData;
    const KRErrorCode code = HostProtect([&] { execute(clientData); });
    if (live().items.contains(item)) ReleaseItem(item);
    ThrowIf(code);
}

std::vector<SCMenu> MenusOfBar(SCMenubar bar) {
    return checked(bar).menus;
}

std::vector<SCMenuItem> ItemsOfMenu(SCMenu menu) {
    return checked(menu).items;
}

SCMenu SubmenuOf(SCMenuItem item) {
    return checked(item).submenu;
}

const std::string &MenuTitle(SCMenu menu) {
    return checked(menu).title;
}

const std::string &MenuName(SCMenu menu) {
    return checked(menu).name;
}

const std::string &ItemTitle(SCMenuItem item) {
    return checked(item).title;
}

const std::string &ItemName(SCMenuItem item) {
    return checked(item).name;
}

char ItemShortcut(SCMenuItem item) {
    return checked(item).shortcut;
}

std::uint16_t ItemModifiers(SCMenuItem item) {
    return checked(item).modifiers;
}

} // namespace jackdaw
