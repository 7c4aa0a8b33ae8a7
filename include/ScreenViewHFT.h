// The screen view table: alerts, the application, views and their selection, menus, actions, the page view.
//
// The viewer also runs without a window. A document is then opened in a view whose window is null; everything works
// that needs no pixels, zoom is 1, every page counts as on show, and what only a window can do answers as it would
// with nothing on the screen: no pointer, no port, no pop-up choice. No operation here fails for want of a window.
//
// A handle of a view that is closed raises KRErrBadParam. What a plug-in's procedure raises while the host calls it is
// raised again by the operation that led there, unless its comment says otherwise.
// SPDX-License-Identifier: MIT
#pragma once

#include "HFT.h"
#include "ScreenViewNotify.h"
#include "ScreenViewTypes.h"

/** Set by the entry code. */
inline KRHFT gScreenViewHFT = nullptr;
inline constexpr std::uint32_t ScreenViewHFTVersion = KRVersion(4, 3);
inline constexpr int ScreenViewHFTCount = 110;

// Actions.

/** The handler of a type; the host's for good, never given back. */
using SCActionHandler = struct SCActionHandlerRec *;

/** With null a fresh record with no procedures, else a copy of the handler's own; KRmalloc'd, the caller frees it. */
inline constexpr Slot<&gScreenViewHFT, 1, SCActionHandlerProcs *(SCActionHandler handler)> SCActionHandlerProcsNew;
/** The handler of an action type, the name under `S`; null when the type has none. */
inline constexpr Slot<&gScreenViewHFT, 2, SCActionHandler(KRAtom type)> SCAppGetActionHandlerByType;
/**
 * Registers the handler of a type, or replaces it; `procs` and `clientData` must outlive the plug-in; `title` is host
 * text to show, both texts are copied. Raises KRErrBadParam without procedures or type.
 */
inline constexpr Slot<&gScreenViewHFT, 3,
                      void(const SCActionHandlerProcs *procs, void *clientData, const char *type, const char *title)>
    SCAppRegisterActionHandler;
/**
 * Hands the action to its type's handler and then goes on with what is under `Next`, each action once, as long as the
 * view is open. A type without a handler does nothing; a destination in the place of an action is gone to.
 */
inline constexpr Slot<&gScreenViewHFT, 4, void(SCDoc doc, DMAction action)> SCDocPerformAction;
/** A copy for the document `target`; not valid when the action's type has no handler or that no copy procedure. */
inline constexpr Slot<&gScreenViewHFT, 5, DMAction(DMDoc target, DMAction action, SCDoc source)> SCDocCopyAction;
/**
 * A new indirect action in `target` with the entries that all actions have: `Type`, `S`, and `Next` copied by the
 * handlers of what follows. Raises KRErrBadParam for what is no action.
 */
inline constexpr Slot<&gScreenViewHFT, 6, DMAction(DMDoc target, DMAction action, SCDoc source)> SCDocCopyActionCommon;

// Alerts. Without a window the text goes to standard error, and the answer is the first button unless the user of the
// command line asked for another policy.

/**
 * Shows a text and waits. `icon` is a SCAlertIcon; all texts are host text; a button whose text is null is not there,
 * but for the first, which then says "OK". `beep` not 0 calls for attention. Gives 1, 2 or 3: which button went.
 */
inline constexpr Slot<&gScreenViewHFT, 7,
                      std::int32_t(std::int32_t icon, const char *text, const char *button1, const char *button2,
                                   const char *button3, KRBool beep)>
    SCAlert;
/** Shows a text with no sign and the one button "OK". */
inline constexpr Slot<&gScreenViewHFT, 8, void(const char *text)> SCAlertNote;

// The application.

/** The version of the viewer; either may be null. */
inline constexpr Slot<&gScreenViewHFT, 9, void(std::int16_t *major, std::int16_t *minor)> SCAppGetVersion;
/** The language of the viewer's own texts: three letters, such as "ENU"; the host's memory. */
inline constexpr Slot<&gScreenViewHFT, 10, const char *()> SCAppGetLanguage;
/** True when the user asked to stop since it was last called: asking takes the request away. */
using SCCancelProc = KRBool (*)(void *clientData);
/** What long work asks now and then. Never null; `*clientData` (may be null) gets what to call it with. */
inline constexpr Slot<&gScreenViewHFT, 11, SCCancelProc(void **clientData)> SCAppGetCancelProc;
/** The view in front; null when none is open. */
inline constexpr Slot<&gScreenViewHFT, 12, SCDoc()> SCAppGetActiveDoc;
/** One view. False ends the walk. */
using SCAppEnumDocsProc = KRBool (*)(SCDoc doc, void *clientData);
/** Open views in front-to-back order, as they were at the start, without those that were closed on the way. */
inline constexpr Slot<&gScreenViewHFT, 13, void(SCAppEnumDocsProc proc, void *clientData)> SCAppEnumDocs;
/** The host's monitor, never null; `*clientData` (may be null) gets what to call its procedures with. */
inline constexpr Slot<&gScreenViewHFT, 14, const SCProgressMonitor *(void **clientData)> SCAppGetDocProgressMonitor;
/** The menu bar, never null, never given back. */
inline constexpr Slot<&gScreenViewHFT, 15, SCMenubar()> SCAppGetMenubar;
/** The tool bar, the host's; null without a window. */
inline constexpr Slot<&gScreenViewHFT, 16, SCToolBar()> SCAppGetToolBar;
/** The tool that is chosen, the host's, never null: "Hand" without a window. */
inline constexpr Slot<&gScreenViewHFT, 17, SCTool()> SCAppGetActiveTool;
/**
 * Registers the handler of a subtype; the newest one is used, and the record must outlive the plug-in. Raises
 * KRErrBadParam for a record that does not tell its type.
 */
inline constexpr Slot<&gScreenViewHFT, 18, void(SCAnnotHandler *handler)> SCAppRegisterAnnotHandler;
/** A numbered preference as a word, for the life of the process; 0 for a number never set. */
inline constexpr Slot<&gScreenViewHFT, 19, KRWord(std::int32_t number)> SCAppGetPreference;
/** Sets a preference. A word that points somewhere stays the caller's. */
inline constexpr Slot<&gScreenViewHFT, 20, void(std::int32_t number, KRWord value)> SCAppSetPreference;
/** Shows the front view over the whole screen. `background` may be null. True: it does now; false without a window. */
inline constexpr Slot<&gScreenViewHFT, 21, KRBool(const DMColorValue *background)> SCAppBeginFullScreen;
/** Back to the window; nothing when it is not full. */
inline constexpr Slot<&gScreenViewHFT, 22, void()> SCAppEndFullScreen;
/** Full-screen mode is on. */
inline constexpr Slot<&gScreenViewHFT, 23, KRBool()> SCAppDoingFullScreen;
using SCIdleProc = void (*)(void *clientData);
/**
 * Calls `proc` about every `period` ticks (1/60 s) while the host is idle, until it is unregistered. What it raises is
 * dropped. Raises KRErrBadParam for a null `proc`.
 */
inline constexpr Slot<&gScreenViewHFT, 24, void(SCIdleProc proc, void *clientData, std::uint32_t period)>
    SCAppRegisterIdleProc;
/** Ends one registration of this very pair; nothing when there is none. */
inline constexpr Slot<&gScreenViewHFT, 25, void(SCIdleProc proc, void *clientData)> SCAppUnregisterIdleProc;
/**
 * Subscribes to a SCNotification; ScreenViewNotify.h tells the shape of each `proc`. The subscription ends with
 * SCAppUnregisterNotification or with the plug-in `extensionID`. Raises KRErrBadParam for a null `proc`.
 */
inline constexpr Slot<&gScreenViewHFT, 26, void(std::int32_t number, KRWord extensionID, KRProc proc, void *clientData)>
    SCAppRegisterNotification;
/** Ends one subscription with the same four arguments; nothing when there is none. */
inline constexpr Slot<&gScreenViewHFT, 27, void(std::int32_t number, KRWord extensionID, KRProc proc, void *clientData)>
    SCAppUnregisterNotification;
/** The newest handler of a type is used; the record must outlive the plug-in. False for a null handler or type. */
inline constexpr Slot<&gScreenViewHFT, 28, KRBool(KRWord extensionID, KRAtom type, SCAuxDataHandler *handler)>
    SCAppRegisterAuxDataHandler;

// Views. One document has one view: opening it again brings the view to the front. Opening and closing send what
// ScreenViewNotify.h tells; any of these may close the view, so a handle is not used after one without asking.

/**
 * Opens a file in a view, by way of SCDocOpenFromFileWithParams with the same arguments, so that a plug-in which
 * replaced that slot is asked. `params` may be null: no password, and open for changes. Null when a plug-in took the
 * file for its own, or the view was closed while it opened. Raises what DMDocOpen raises.
 */
inline constexpr Slot<&gScreenViewHFT, 29, SCDoc(KRPathName path, KRFileSys fs, const SCDocOpenParams *params)>
    SCDocOpenFromFile;
/**
 * The slot that all opening of files goes through. A plug-in may replace it (KRHFTSetEntry), and passes on to the entry
 * that it replaced what it does not open itself. Arguments and result as above.
 */
inline constexpr Slot<&gScreenViewHFT, 30, SCDoc(KRPathName path, KRFileSys fs, const SCDocOpenParams *params)>
    SCDocOpenFromFileWithParams;
/** A view on an open document, of which it holds a reference. `params` may be null. Null as above. */
inline constexpr Slot<&gScreenViewHFT, 31, SCDoc(DMDoc doc, const SCDocOpenParams *params)> SCDocOpenFromDMDoc;
/**
 * Closes a view and gives up its reference to the document. The user is asked about unsaved changes unless
 * `noDirtyCheck` is not 0 or there is no window; false when he would rather keep it open, or it is being closed
 * already. What an edit raises on being committed is dropped.
 */
inline constexpr Slot<&gScreenViewHFT, 32, KRBool(SCDoc doc, KRBool noDirtyCheck)> SCDocClose;
/** The document that is shown, without a reference: as long as the view is open. */
inline constexpr Slot<&gScreenViewHFT, 33, DMDoc(SCDoc doc)> SCDocGetDMDoc;
/** The view's page view, never null. */
inline constexpr Slot<&gScreenViewHFT, 34, SCPageView(SCDoc doc)> SCDocGetPageView;
/** The view's window, the host's; null without one. */
inline constexpr Slot<&gScreenViewHFT, 35, SCWindow(SCDoc doc)> SCDocGetWindow;

// Selections. A view has at most one, of a type; the selection server of the type knows what its data are.

/** The type of what is selected; KRAtomNull when nothing is. */
inline constexpr Slot<&gScreenViewHFT, 36, KRAtom(SCDoc doc)> SCDocGetSelectionType;
/** The data of what is selected, the selection server's; null when nothing is. */
inline constexpr Slot<&gScreenViewHFT, 37, void *(SCDoc doc)> SCDocGetSelection;
/**
 * Clears what is selected and selects this; `data` belongs to the selection server from here on. `highlight` not 0: it
 * is to show. False, and `data` stays the caller's, when no server knows the type or the former selection would not go.
 */
inline constexpr Slot<&gScreenViewHFT, 38, KRBool(SCDoc doc, KRAtom type, void *data, KRBool highlight)>
    SCDocSetSelection;
/** Clears the selection, which commits an edit in progress. True when nothing is selected afterwards. */
inline constexpr Slot<&gScreenViewHFT, 39, KRBool(SCDoc doc, KRBool highlight)> SCDocClearSelection;
/**
 * Registers the server of a type; the newest one is used, and the record must outlive the plug-in. False for one that
 * does not tell its type. The host's own server of type "Annotation" takes a DMAnnot on the heap (KRmalloc).
 */
inline constexpr Slot<&gScreenViewHFT, 40, KRBool(SCSelectionServer *server)> SCDocRegisterSelectionServer;
/** Prints pages `first` to `last` (from 0). Sends DMDocWillPrintPages, also without a window. */
inline constexpr Slot<&gScreenViewHFT, 41, void(SCDoc doc, std::int32_t first, std::int32_t last)> SCDocPrintPages;
/** Where the view is; `def->size` is set by the caller, 0 for all of the record. */
inline constexpr Slot<&gScreenViewHFT, 42, void(SCDoc doc, SCDocViewDef *def)> SCDocGetViewDef;
/** Goes there, as SCPageViewGoTo and SCPageViewZoomTo do. Raises KRErrBadParam for a record that is too small. */
inline constexpr Slot<&gScreenViewHFT, 43, void(SCDoc doc, const SCDocViewDef *def)> SCDocSetViewDef;
/** The document is shown inside a web browser: never, here. */
inline constexpr Slot<&gScreenViewHFT, 44, KRBool(SCDoc doc)> SCDocIsExternal;
/**
 * A copy of an annotation for a page of `target`, by its subtype's handler or entry by entry; not on the page until
 * DMPageAddAnnot. Raises KRErrBadParam for what is no annotation, and for a page of another document.
 */
inline constexpr Slot<&gScreenViewHFT, 45, DMAnnot(DMDoc target, DMPage page, DMAnnot annot, SCDoc source)>
    SCDocCopyAnnot;

// Menus, kept as data whether or not a window shows them. Names are language-neutral, titles host text with "&" before
// the letter of access; both are copied.
//
// Menus and items are counted. Each menu or item that an operation below gives, whether its name says New, Acquire, Get
// or Track, is a reference of the caller's own, which he releases once: menus with SCMenuRelease, items with
// SCMenuItemRelease. What stands in the bar or in a menu lives on without such references; a release that nobody
// acquired for raises KRErrBadParam and frees nothing. A handle that is gone raises KRErrBadParam.
//
// The host's own names. File: Save, Close. Edit: Cut, Copy, Paste, Clear, SelectAll, DeselectAll, Properties. Document:
// FirstPage, PrevPage, NextPage, LastPage, GoBack, GoForward. View: ActualSize, FitPage, FitWidth. Tools. Window. Help:
// AboutExtensions.

/** The menu of this name in the bar, at any depth; null when there is none. */
inline constexpr Slot<&gScreenViewHFT, 46, SCMenu(SCMenubar bar, const char *name)> SCMenubarAcquireMenuByName;
/** The item of this name in the bar at any depth, else in any other menu; null when there is none. */
inline constexpr Slot<&gScreenViewHFT, 47, SCMenuItem(SCMenubar bar, const char *name)> SCMenubarAcquireMenuItemByName;
/** A new, empty menu that stands nowhere. Where an item takes it, as its submenu, it lives as long as that. */
inline constexpr Slot<&gScreenViewHFT, 48, SCMenu(const char *title, const char *name, KRWord extensionID)> SCMenuNew;
/** Gives up one reference. A menu that stands nowhere goes with its last one, and releases its items. */
inline constexpr Slot<&gScreenViewHFT, 49, void(SCMenu menu)> SCMenuRelease;
/** Takes a menu out of the bar, or off the item that it hangs on; nothing when it stands nowhere. */
inline constexpr Slot<&gScreenViewHFT, 50, void(SCMenu menu)> SCMenuRemove;
/** The item that a menu hangs on, to be released; null for a menu of the bar and for one that stands nowhere. */
inline constexpr Slot<&gScreenViewHFT, 51, SCMenuItem(SCMenu menu)> SCMenuGetParentMenuItem;
/** As an index: behind the last item. */
inline constexpr std::int32_t SCMenuEnd = 9999;
/**
 * Puts the item in front of item `index`, or at SCMenuEnd, which any number outside the menu means; an item that stands
 * in a menu leaves it. Raises KRErrBadParam where a menu would come to stand below itself.
 */
inline constexpr Slot<&gScreenViewHFT, 52, void(SCMenu menu, SCMenuItem item, std::int32_t index)> SCMenuAddMenuItem;
/**
 * A new item that stands nowhere. A title of "-" is a separator. `submenu` may be null; it leaves its former place.
 * `shortcut` is a character or 0, pressed with `modifiers`, a sum of SCModifier. `longMenusOnly` is 0.
 */
inline constexpr Slot<&gScreenViewHFT, 53,
                      SCMenuItem(const char *title, const char *name, SCMenu submenu, KRBool longMenusOnly,
                                 char shortcut, std::uint16_t modifiers, KRWord extensionID)>
    SCMenuItemNew;
/** The menu that hangs on an item, to be released; null when there is none. */
inline constexpr Slot<&gScreenViewHFT, 54, SCMenu(SCMenuItem item)> SCMenuItemAcquireSubmenu;
/** Gives up one reference. An item that stands nowhere goes with its last one, and releases its submenu. */
inline constexpr Slot<&gScreenViewHFT, 55, void(SCMenuItem item)> SCMenuItemRelease;
/** Takes an item out of its menu; nothing when it stands in none. */
inline constexpr Slot<&gScreenViewHFT, 56, void(SCMenuItem item)> SCMenuItemRemove;
/** What an item does. It may remove and release the item. */
using SCExecuteProc = void (*)(void *clientData);
/** Whether an item can be chosen, or bears a mark; asked whenever it is about to show, and before it runs. */
using SCComputeProc = KRBool (*)(void *clientData);
/** Sets what the item does; null for nothing. */
inline constexpr Slot<&gScreenViewHFT, 57, void(SCMenuItem item, SCExecuteProc proc, void *clientData)>
    SCMenuItemSetExecuteProc;
/** Sets what tells whether it can be chosen; without it, it always can. */
inline constexpr Slot<&gScreenViewHFT, 58, void(SCMenuItem item, SCComputeProc proc, void *clientData)>
    SCMenuItemSetComputeEnabledProc;
/** Sets what tells whether it bears a mark; without it, it never does. */
inline constexpr Slot<&gScreenViewHFT, 59, void(SCMenuItem item, SCComputeProc proc, void *clientData)>
    SCMenuItemSetComputeMarkedProc;
/** The menu that an item stands in, to be released as all menus are; null when it stands in none. */
inline constexpr Slot<&gScreenViewHFT, 60, SCMenu(SCMenuItem item)> SCMenuItemGetParentMenu;
/** Runs the item when it can be chosen; an item with a submenu runs nothing. Raises what its procedures raise. */
inline constexpr Slot<&gScreenViewHFT, 61, void(SCMenuItem item)> SCMenuItemExecute;
/** The item stands in the bar, at any depth; window or not. */
inline constexpr Slot<&gScreenViewHFT, 62, KRBool(SCMenuItem item)> SCMenuItemIsVisible;
/**
 * Shows a menu and waits for a choice. `x`, `y` is where its upper left corner goes, in device units of the page view
 * of the front view, as SCPageViewGetMousePosition gives them. `rightMouse` not 0: the second button holds it open. The
 * item that was chosen has been run, as by SCMenuItemExecute, when the call comes back with it; null for no choice, and
 * always without a window.
 */
inline constexpr Slot<&gScreenViewHFT, 63, SCMenuItem(SCMenu menu, std::int16_t x, std::int16_t y, KRBool rightMouse)>
    SCMenuTrackPopUp;

// The page view. Device units are pixels at the view's zoom, 72 to the inch at zoom 1, y growing downward, the page's
// upper left corner at the origin; pages lie below each other in one column. What lies farther away than 16 bits reach
// is clamped. The page is that which the view shows, or the one that SCPageViewGetVisibleAnnotPage named.

/** The view that it is part of. */
inline constexpr Slot<&gScreenViewHFT, 64, SCDoc(SCPageView view)> SCPageViewGetDoc;
/** The part of device space that the window shows; without one, the page shown. */
inline constexpr Slot<&gScreenViewHFT, 65, void(SCPageView view, SCRect *rect)> SCPageViewGetAperture;
/** The page, not acquired: good until the view closes. */
inline constexpr Slot<&gScreenViewHFT, 66, DMPage(SCPageView view)> SCPageViewGetPage;
/** The zoom factor: device units a point. */
inline constexpr Slot<&gScreenViewHFT, 67, KRFixed(SCPageView view)> SCPageViewGetZoom;
/** A SCZoomType. */
inline constexpr Slot<&gScreenViewHFT, 68, std::int32_t(SCPageView view)> SCPageViewGetZoomType;
/** Number of the page, from 0. */
inline constexpr Slot<&gScreenViewHFT, 69, std::int32_t(SCPageView view)> SCPageViewGetPageNum;
/** The colour that SCPageViewDrawRect and SCPageViewDrawRectOutline draw in. */
inline constexpr Slot<&gScreenViewHFT, 70, void(SCPageView view, DMColorValue *color)> SCPageViewGetColor;
/** Sets that colour, for this view. */
inline constexpr Slot<&gScreenViewHFT, 71, void(SCPageView view, const DMColorValue *color)> SCPageViewSetColor;
/** Starts a group of moves, which may be nested: the outermost end sends what came together. */
inline constexpr Slot<&gScreenViewHFT, 72, void(SCPageView view)> SCPageViewBeginOperation;
/** Ends it. Each begin has its end, also where something is raised between them. */
inline constexpr Slot<&gScreenViewHFT, 73, void(SCPageView view)> SCPageViewEndOperation;
// Ways about. Each sends SCPageViewDidChange, unless nothing moved; one to another page is noted for going back.

/** To the top of page `page`, from 0. Raises KRErrBadParam outside the document. */
inline constexpr Slot<&gScreenViewHFT, 74, void(SCPageView view, std::int32_t page)> SCPageViewGoTo;
/** To a SCZoomType; `zoom` counts with SCZoomNoVary alone, held to 1/16 to 64, and 0 or less leaves the zoom. */
inline constexpr Slot<&gScreenViewHFT, 75, void(SCPageView view, std::int32_t type, KRFixed zoom)> SCPageViewZoomTo;
/** Makes `x`, `y` (device units) the upper left corner of what shows. */
inline constexpr Slot<&gScreenViewHFT, 76, void(SCPageView view, std::int16_t x, std::int16_t y)> SCPageViewScrollTo;
/** To where the view was before the last change of page; nothing when there is no such place. */
inline constexpr Slot<&gScreenViewHFT, 77, void(SCPageView view)> SCPageViewGoBack;
/** To where the view was before going back; nothing when there is no such place. */
inline constexpr Slot<&gScreenViewHFT, 78, void(SCPageView view)> SCPageViewGoForward;
// Drawing. Rectangles are in device units. Without a window these do nothing.

/** What is in the rectangle must be drawn anew, soon. Null means all of the view. */
inline constexpr Slot<&gScreenViewHFT, 79, void(SCPageView view, const SCRect *rect)> SCPageViewInvalidateRect;
/** Draws at once what must be drawn anew. */
inline constexpr Slot<&gScreenViewHFT, 80, void(SCPageView view)> SCPageViewDrawNow;
/** Inverts the pixels of a rectangle; done twice it leaves no trace. */
inline constexpr Slot<&gScreenViewHFT, 81, void(SCPageView view, const SCRect *rect)> SCPageViewInvertRect;
/** Inverts a rectangle's outline, one unit wide, likewise. */
inline constexpr Slot<&gScreenViewHFT, 82, void(SCPageView view, const SCRect *rect)> SCPageViewInvertRectOutline;
/** Draws an outline in the view's colour, `width` device units wide; `dashes` is null or `dashCount` lengths. */
inline constexpr Slot<&gScreenViewHFT, 83,
                      void(SCPageView view, const SCRect *rect, std::int16_t width, const KRFixed *dashes,
                           std::int32_t dashCount)>
    SCPageViewDrawRectOutline;
/** Fills a rectangle with the view's colour. */
inline constexpr Slot<&gScreenViewHFT, 84, void(SCPageView view, const SCRect *rect)> SCPageViewDrawRect;
/** The pointer's place in device units; -1, -1 without a pointer. Either may be null. */
inline constexpr Slot<&gScreenViewHFT, 85, void(SCPageView view, std::int16_t *x, std::int16_t *y)>
    SCPageViewGetMousePosition;
/** The topmost annotation that shows at a device point of any page; false, and `*annot` untouched, for none. */
inline constexpr Slot<&gScreenViewHFT, 86, KRBool(SCPageView view, std::int16_t x, std::int16_t y, DMAnnot *annot)>
    SCPageViewIsAnnotAtPoint;
/** `Rect` of an annotation of the page in device units. Raises KRErrBadParam when it is no rectangle. */
inline constexpr Slot<&gScreenViewHFT, 87, void(SCPageView view, DMAnnot annot, SCRect *rect)> SCPageViewGetAnnotRect;
/** What the platform draws on, until it is released; null without a window: nothing can be drawn. */
inline constexpr Slot<&gScreenViewHFT, 88, void *(SCPageView view)> SCPageViewAcquireMachinePort;
/** Gives a port back, also that of a view which was closed meanwhile. Null allowed. */
inline constexpr Slot<&gScreenViewHFT, 89, void(SCPageView view, void *port)> SCPageViewReleaseMachinePort;
/** A device point in points of the page. */
inline constexpr Slot<&gScreenViewHFT, 90, void(SCPageView view, std::int16_t x, std::int16_t y, KRFixedPoint *point)>
    SCPageViewDevicePointToPage;
/** Moves the sides of a rectangle (points) to the grid in place, if there is one; there is none today. */
inline constexpr Slot<&gScreenViewHFT, 91, void(SCPageView view, KRFixedRect *rect)> SCPageViewSnapRect;
/** A device rectangle in points of the page, left <= right and bottom <= top. */
inline constexpr Slot<&gScreenViewHFT, 92, void(SCPageView view, const SCRect *rect, KRFixedRect *pageRect)>
    SCPageViewDeviceRectToPage;
/** The first page of which any part shows, from 0; 0 without a window. */
inline constexpr Slot<&gScreenViewHFT, 93, std::int32_t(SCPageView view)> SCPageViewGetFirstVisiblePageNum;
/** The last one; the last page without a window. */
inline constexpr Slot<&gScreenViewHFT, 94, std::int32_t(SCPageView view)> SCPageViewGetLastVisiblePageNum;
/** Any part of page `page` shows: it is one of those from the first to the last. */
inline constexpr Slot<&gScreenViewHFT, 95, KRBool(SCPageView view, std::int32_t page)> SCPageViewIsPageVisible;
/**
 * Makes `page` (from 0) the page that device units speak of, until the view moves, and gives the earlier one, to be set
 * again afterwards. A number outside the document changes nothing.
 */
inline constexpr Slot<&gScreenViewHFT, 96, std::int32_t(SCPageView view, std::int32_t page)>
    SCPageViewGetVisibleAnnotPage;
/** Draws an appearance stream scaled into a device rectangle, turned as the page is; nothing without a window. */
inline constexpr Slot<&gScreenViewHFT, 97, void(SCPageView view, LexObj stream, const SCRect *rect)>
    SCPageViewDrawLexObj;
/** Goes to a destination: a name, string, array, or dictionary with `D`. One that leads nowhere changes nothing. */
inline constexpr Slot<&gScreenViewHFT, 98, void(SCPageView view, LexObj dest)> SCPageViewUseDestInfo;
/** The page that an annotation is on, from 0; -1 when it is on none of those that show. */
inline constexpr Slot<&gScreenViewHFT, 99, std::int32_t(SCPageView view, DMAnnot annot)> SCDMAnnotGetPageNum;

// The system and the tools.

/** The keys held now, a sum of SCModifier; 0 without a window. */
inline constexpr Slot<&gScreenViewHFT, 100, std::uint32_t()> SCSysGetModifiers;
/** The button that was pressed is held still; false without a window. */
inline constexpr Slot<&gScreenViewHFT, 101, KRBool()> SCSysMouseIsStillDown;
/** Sounds the bell; `duration` in ticks (1/60 s), where the bell has one. Nothing without a window. */
inline constexpr Slot<&gScreenViewHFT, 102, void(std::int32_t duration)> SCSysBeep;
/** A cursor by its number, the host's, never given back; null for an unknown one, and without a window. */
inline constexpr Slot<&gScreenViewHFT, 103, SCCursor(std::int16_t id)> SCSysGetStandardCursor;
/** Makes it the pointer's shape until the pointer moves on. */
inline constexpr Slot<&gScreenViewHFT, 104, void(SCCursor cursor)> SCSysSetCursor;
/** The pointer's shape now; null without a window. */
inline constexpr Slot<&gScreenViewHFT, 105, SCCursor()> SCSysGetCursor;
/** The type of a tool, such as "Hand". */
inline constexpr Slot<&gScreenViewHFT, 106, KRAtom(SCTool tool)> SCToolGetType;
/** The button of this name, the host's; null when there is none, and for a null bar. */
inline constexpr Slot<&gScreenViewHFT, 107, SCToolButton(SCToolBar bar, KRAtom name)> SCToolBarGetButtonByName;
/** Takes a button off its bar, for good. Null allowed. */
inline constexpr Slot<&gScreenViewHFT, 108, void(SCToolButton button)> SCToolButtonRemove;
/** Draws at once whatever of a window must be drawn anew. Null allowed. */
inline constexpr Slot<&gScreenViewHFT, 109, void(SCWindow window)> SCWindowDrawNow;
/**
 * Pixels of a document, drawn without a view: page `page` (from 0) with its annotations at `dpi` pixels an inch,
 * written as a PNG file that is renamed into place. Raises KRErrBadParam for a page outside the document and for a size
 * that is none, and the file errors.
 */
inline constexpr Slot<&gScreenViewHFT, 110,
                      void(DMDoc doc, std::int32_t page, std::int32_t dpi, KRFileSys fs, KRPathName path)>
    SCDocRenderPage;
