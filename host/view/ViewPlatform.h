// The seam between the views and a window: the procedures that a desktop layer installs.
//
// Without a desktop layer every member is null, and each call below gives the answer of an empty screen. Nothing else
// in host/view asks whether there is a window.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "KRTypes.h"
#include "view/Alerts.h"

using cairo_t = struct _cairo;

namespace jackdaw {

/** Every member may be null. A member that opens something may throw HostError; the others do not. */
struct ViewPlatform {
    // Windows of views.
    SCWindow (*openWindow)(SCDoc doc) = nullptr;
    void (*closeWindow)(SCWindow window) = nullptr;
    void (*raiseWindow)(SCWindow window) = nullptr;
    void (*drawWindowNow)(SCWindow window) = nullptr;
    /** Asks about unsaved changes; false when the user would rather keep the document open. */
    bool (*confirmClose)(SCDoc doc) = nullptr;
    /** The part of device space that the window shows, by the view's page as origin. */
    void (*getAperture)(SCPageView view, SCRect *rect) = nullptr;
    /** The view's page, zoom or place changed: the window is to follow. `how` is a sum of SCPageViewChange. */
    void (*viewChanged)(SCPageView view, int how) = nullptr;

    // Pixels of a view. Rectangles are in device units.
    void *(*acquirePort)(SCPageView view) = nullptr;
    void (*releasePort)(SCPageView view, void *port) = nullptr;
    /** A context in device units for drawing on the view, or null; endDrawing takes it back. */
    cairo_t *(*beginDrawing)(SCPageView view) = nullptr;
    void (*endDrawing)(SCPageView view, cairo_t *context) = nullptr;
    /** Null: all of the view. */
    void (*invalidate)(SCPageView view, const SCRect *rect) = nullptr;
    void (*drawNow)(SCPageView view) = nullptr;
    void (*invertRect)(SCPageView view, const SCRect *rect) = nullptr;
    void (*invertOutline)(SCPageView view, const SCRect *rect) = nullptr;
    void (*drawOutline)(SCPageView view, const SCRect *rect, int width, const KRFixed *dashes, int dashCount) = nullptr;
    void (*fillRect)(SCPageView view, const SCRect *rect) = nullptr;

    // The pointer and the keyboard.
    void (*getPointer)(SCPageView view, std::int16_t *x, std::int16_t *y) = nullptr;
    /** The pointer's place while a button is held; false when it is up. */
    bool (*dragPoint)(SCPageView view, std::int16_t *x, std::int16_t *y) = nullptr;
    std::uint32_t (*getModifiers)() = nullptr;
    bool (*buttonIsDown)() = nullptr;
    void (*beep)(int duration) = nullptr;
    SCCursor (*standardCursor)(int id) = nullptr;
    SCCursor (*makeCursor)(const unsigned char *bits, const unsigned char *mask, int width, int height, int hotX,
                           int hotY) = nullptr;
    void (*setCursor)(SCCursor cursor) = nullptr;
    SCCursor (*getCursor)() = nullptr;

    // Dialogs and menus.
    /** Which button went: 1, 2 or 3. */
    int (*alert)(const AlertRequest &request) = nullptr;
    /** The chosen item, not acquired; null for no choice. */
    SCMenuItem (*trackPopUp)(SCMenu menu, int x, int y, bool rightMouse) = nullptr;
    /** The bar's contents changed. */
    void (*menusChanged)() = nullptr;
    void (*showToolTip)(SCPageView view, const char *text) = nullptr;
    void (*showWidgetProperties)(SCDoc doc, const char *title, KRAtom subtype, const char *kind) = nullptr;
    void (*printPages)(SCDoc doc, int first, int last) = nullptr;
    bool (*beginFullScreen)(const DMColorValue *background) = nullptr;
    void (*endFullScreen)() = nullptr;
    SCToolBar (*toolBar)() = nullptr;
    SCToolButton (*toolButton)(SCToolBar bar, KRAtom name) = nullptr;
    void (*removeToolButton)(SCToolButton button) = nullptr;

    // The toolkit.
    void *(*topWidget)() = nullptr;
    void (*registerResources)(const char *className, const char *const *fallback) = nullptr;
    const char *(*resourceString)(void *widget, const char *key, const char *fallback) = nullptr;
    void (*modalLoop)(void *dialog, const KRBool *done) = nullptr;
};

/** The installed record; of nulls until a desktop layer fills it. */
ViewPlatform &Platform();

} // namespace jackdaw
