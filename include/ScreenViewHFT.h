// The screen view table: alerts, the application, views and their selection, menus, actions, the page view.
//
// The viewer also runs without a window. A document is then opened in a view whose window is null; everything works
// that needs no pixels, zoom is 1, every page counts as on show, and what only a window can do answers as it would
// with nothing on the screen: no pointer, no port, no pop-up choice. No operation here fails for want of a window.
// SPDX-License-Identifier: MIT
#pragma once

#include "HFT.h"
#include "ScreenViewNotify.h"

inline KRHFT gScreenViewHFT = nullptr;
inline constexpr std::uint32_t ScreenViewHFTVersion = KRVersion(4, 3);
inline constexpr int ScreenViewHFTCount = 110;

// Actions.

/** The procedures of an action type. A slot that is null means that the operation is absent. */
struct SCActionHandlerProcs {
    std::uint32_t size;
    void (*perform)(void *clientData, DMAction action, SCDoc doc);
    void (*doProperties)(void *clientData, DMAction action, SCDoc doc);
    void (*fillActionDict)(void *clientData, LexObj dict, SCDoc doc);
    void (*getInstructions)(void *clientData, char *buffer, std::int32_t size);
    void (*getButtonText)(void *clientData, char *buffer, std::int32_t size);
    void (*getStringOneText)(void *clientData, char *buffer, std::int32_t size);
    void (*getStringTwoText)(void *clientData, char *buffer, std::int32_t size);
    DMAction (*copy)(void *clientData, DMDoc target, DMAction action, SCDoc source);
};
using SCActionHandler = struct SCActionHandlerRec *;

/** With null a fresh, cleared record, otherwise a copy of the handler's own; KRmalloc'd, the caller frees it. */
inline constexpr Slot<&gScreenViewHFT, 1, SCActionHandlerProcs *(SCActionHandler handler)> SCActionHandlerProcsNew;
/** Null when the type has no handler. */
inline constexpr Slot<&gScreenViewHFT, 2, SCActionHandler(KRAtom type)> SCAppGetActionHandlerByType;
/** Registers or replaces; `procs` must outlive the plug-in; both texts are copied. */
inline constexpr Slot<&gScreenViewHFT, 3,
                      void(const SCActionHandlerProcs *procs, void *clientData, const char *type, const char *title)>
    SCAppRegisterActionHandler;
/** Hands the action to its type's handler and then goes on with `Next`. A type without a handler does nothing. */
inline constexpr Slot<&gScreenViewHFT, 4, void(SCDoc doc, DMAction action)> SCDocPerformAction;
/** A copy for another document; not valid when the action's type has no copy procedure. */
inline constexpr Slot<&gScreenViewHFT, 5, DMAction(DMDoc target, DMAction action, SCDoc source)> SCDocCopyAction;
/** A new action in `target` with the entries that all actions have: `Type`, `S`, `Next`. */
inline constexpr Slot<&gScreenViewHFT, 6, DMAction(DMDoc target, DMAction action, SCDoc source)> SCDocCopyActionCommon;

// Alerts. Without a window the text goes to standard error, and the answer is the first button unless the user of the
// command line asked for another policy.

enum SCAlertIcon : std::int32_t {
    SCAlertIconNone = 0,
    SCAlertIconError = 1,
    SCAlertIconQuestion = 2,
    SCAlertIconWarning = 3
};
/** `icon` is a SCAlertIcon; button texts may be null. Gives 1, 2 or 3: which button went. */
inline constexpr Slot<&gScreenViewHFT, 7,
                      std::int32_t(std::int32_t icon, const char *text, const char *button1, const char *button2,
                                   const char *button3, KRBool beep)>
    SCAlert;
inline constexpr Slot<&gScreenViewHFT, 8, void(const char *text)> SCAlertNote;

// The application.

inline constexpr Slot<&gScreenViewHFT, 9, void(std::int16_t *major, std::int16_t *minor)> SCAppGetVersion;
/** Three letters, such as "ENU"; the host's memory. */
inline constexpr Slot<&gScreenViewHFT, 10, const char *()> SCAppGetLanguage;
/** True when the user asked to stop since it was last called: asking takes the request away. */
using SCCancelProc = KRBool (*)(void *clientData);
inline constexpr Slot<&gScreenViewHFT, 11, SCCancelProc(void **clientData)> SCAppGetCancelProc;
/** The front document; null when none is open. */
inline constexpr Slot<&gScreenViewHFT, 12, SCDoc()> SCAppGetActiveDoc;
using SCAppEnumDocsProc = KRBool (*)(SCDoc doc, void *clientData);
/** Open views in front-to-back order; false stops. */
inline constexpr Slot<&gScreenViewHFT, 13, void(SCAppEnumDocsProc proc, void *clientData)> SCAppEnumDocs;
struct SCProgressMonitor {
    std::uint32_t size;
    void (*begin)(void *clientData);
    void (*setRange)(std::int32_t last, void *clientData);
    void (*setValue)(std::int32_t value, void *clientData);
    void (*end)(void *clientData);
};
/** Never null. */
inline constexpr Slot<&gScreenViewHFT, 14, const SCProgressMonitor *(void **clientData)> SCAppGetDocProgressMonitor;
inline constexpr Slot<&gScreenViewHFT, 15, SCMenubar()> SCAppGetMenubar;
/** Null without a window. */
inline constexpr Slot<&gScreenViewHFT, 16, SCToolBar()> SCAppGetToolBar;
inline constexpr Slot<&gScreenViewHFT, 17, SCTool()> SCAppGetActiveTool;
/** The handler of an annotation subtype; the members after `flags` in the order in which the host has them. */
struct SCAnnotHandler {
    std::uint32_t size;
    std::uint32_t flags;
    KRBool (*doClick)(SCAnnotHandler *handler, DMAnnot annot, std::int16_t x, std::int16_t y, std::uint32_t flags,
                      std::int16_t clicks, SCPageView view);
    KRBool (*adjustCursor)(SCAnnotHandler *handler, DMAnnot annot, std::int16_t x, std::int16_t y, SCPageView view);
    void (*removedFromSelection)(SCAnnotHandler *handler, DMAnnot annot, SCPageView view);
    void (*addedToSelection)(SCAnnotHandler *handler, DMAnnot annot, SCPageView view);
    void (*draw)(SCAnnotHandler *handler, DMAnnot annot, SCPageView view);
    KRAtom (*getType)(SCAnnotHandler *handler);
    KRBool (*doKeyDown)(SCAnnotHandler *handler, DMAnnot annot, std::uint16_t key, std::uint32_t flags);
    std::int32_t (*getLayer)(SCAnnotHandler *handler, DMAnnot annot);
    void (*cursorEnter)(SCAnnotHandler *handler, DMAnnot annot, SCPageView view);
    void (*cursorExit)(SCAnnotHandler *handler, DMAnnot annot, SCPageView view);
    DMAnnot (*copy)(SCAnnotHandler *handler, DMDoc target, DMPage page, DMAnnot annot, SCDoc source);
};
/** The newest handler of a type is used; the record must outlive the plug-in. */
inline constexpr Slot<&gScreenViewHFT, 18, void(SCAnnotHandler *handler)> SCAppRegisterAnnotHandler;
/** A numbered preference as a word; 0 for a number never set. */
inline constexpr Slot<&gScreenViewHFT, 19, KRWord(std::int32_t number)> SCAppGetPreference;
inline constexpr Slot<&gScreenViewHFT, 20, void(std::int32_t number, KRWord value)> SCAppSetPreference;
inline constexpr Slot<&gScreenViewHFT, 21, KRBool(const DMColorValue *background)> SCAppBeginFullScreen;
inline constexpr Slot<&gScreenViewHFT, 22, void()> SCAppEndFullScreen;
inline constexpr Slot<&gScreenViewHFT, 23, KRBool()> SCAppDoingFullScreen;
using SCIdleProc = void (*)(void *clientData);
/** Called about every `period` ticks (1/60 s) while the host is idle. */
inline constexpr Slot<&gScreenViewHFT, 24, void(SCIdleProc proc, void *clientData, std::uint32_t period)>
    SCAppRegisterIdleProc;
inline constexpr Slot<&gScreenViewHFT, 25, void(SCIdleProc proc, void *clientData)> SCAppUnregisterIdleProc;
/** Subscribes to a notification of ScreenViewNotify.h, which tells the shape of each `proc`. */
inline constexpr Slot<&gScreenViewHFT, 26, void(std::int32_t number, KRWord extensionID, KRProc proc, void *clientData)>
    SCAppRegisterNotification;
inline constexpr Slot<&gScreenViewHFT, 27, void(std::int32_t number, KRWord extensionID, KRProc proc, void *clientData)>
    SCAppUnregisterNotification;
/** A handler of auxiliary data (bytes that came back from a server) of a type. */
struct SCAuxDataHandler {
    std::uint32_t size;
    KRBool (*perform)(SCDoc doc, KRAtom type, void *data, std::uint32_t length);
};
inline constexpr Slot<&gScreenViewHFT, 28, KRBool(KRWord extensionID, KRAtom type, SCAuxDataHandler *handler)>
    SCAppRegisterAuxDataHandler;

// Views.

struct SCDocOpenParams {
    std::uint32_t size;
    const char *password;
    KRBool readOnly;
};
/** Opens a file in a view; raises what DMDocOpen raises. `params` may be null. */
inline constexpr Slot<&gScreenViewHFT, 29, SCDoc(KRPathName path, KRFileSys fs, const char *title)> SCDocOpenFromFile;
/** The entry that all opening of files goes through; a plug-in may replace it. */
inline constexpr Slot<&gScreenViewHFT, 30, SCDoc(KRPathName path, KRFileSys fs, const SCDocOpenParams *params)>
    SCDocOpenFromFileWithParams;
/** A view on an open document, which it references. Sends 4. */
inline constexpr Slot<&gScreenViewHFT, 31, SCDoc(DMDoc doc, const SCDocOpenParams *params)> SCDocOpenFromDMDoc;
/** Sends 7 and 8. Without a window no question is asked, whatever `noDirtyCheck` says. False when the user refused. */
inline constexpr Slot<&gScreenViewHFT, 32, KRBool(SCDoc doc, KRBool noDirtyCheck)> SCDocClose;
inline constexpr Slot<&gScreenViewHFT, 33, DMDoc(SCDoc doc)> SCDocGetDMDoc;
inline constexpr Slot<&gScreenViewHFT, 34, SCPageView(SCDoc doc)> SCDocGetPageView;
/** Null without a window. */
inline constexpr Slot<&gScreenViewHFT, 35, SCWindow(SCDoc doc)> SCDocGetWindow;
/** KRAtomNull when nothing is selected. */
inline constexpr Slot<&gScreenViewHFT, 36, KRAtom(SCDoc doc)> SCDocGetSelectionType;
inline constexpr Slot<&gScreenViewHFT, 37, void *(SCDoc doc)> SCDocGetSelection;
/** Clears what is selected and selects this; `data` belongs to the selection server from here on. */
inline constexpr Slot<&gScreenViewHFT, 38, KRBool(SCDoc doc, KRAtom type, void *data, KRBool highlight)>
    SCDocSetSelection;
inline constexpr Slot<&gScreenViewHFT, 39, KRBool(SCDoc doc, KRBool highlight)> SCDocClearSelection;
struct SCSelectionServer {
    std::uint32_t size;
    KRAtom (*getType)();
    void (*gettingSelection)(SCDoc doc, void *data, KRBool highlight);
    void (*losingSelection)(SCDoc doc, void *data, KRBool highlight);
    KRBool (*keyDown)(SCDoc doc, void *data, std::uint16_t key, std::uint32_t flags);
    void (*destroy)(SCDoc doc, void *data);
};
/** The record must outlive the plug-in. The host's own server of type "Annotation" takes a heap DMAnnot (KRmalloc). */
inline constexpr Slot<&gScreenViewHFT, 40, KRBool(SCSelectionServer *server)> SCDocRegisterSelectionServer;
inline constexpr Slot<&gScreenViewHFT, 41, void(SCDoc doc, std::int32_t first, std::int32_t last)> SCDocPrintPages;
struct SCDocViewDef {
    std::uint32_t size;
    std::int32_t pageNum;
    KRFixed zoom;
    std::int32_t zoomType;
    std::int16_t x, y;
};
inline constexpr Slot<&gScreenViewHFT, 42, void(SCDoc doc, SCDocViewDef *def)> SCDocGetViewDef;
inline constexpr Slot<&gScreenViewHFT, 43, void(SCDoc doc, const SCDocViewDef *def)> SCDocSetViewDef;
/** The document is shown inside a web browser: never, here. */
inline constexpr Slot<&gScreenViewHFT, 44, KRBool(SCDoc doc)> SCDocIsExternal;
/** A copy of an annotation on a page of another document, by its subtype's handler or entry by entry. */
inline constexpr Slot<&gScreenViewHFT, 45, DMAnnot(DMDoc target, DMPage page, DMAnnot annot, SCDoc source)>
    SCDocCopyAnnot;

// Menus, kept as data whether or not a window shows them. Names are language-neutral. Acquired things are released.

inline constexpr Slot<&gScreenViewHFT, 46, SCMenu(SCMenubar bar, const char *name)> SCMenubarAcquireMenuByName;
inline constexpr Slot<&gScreenViewHFT, 47, SCMenuItem(SCMenubar bar, const char *name)> SCMenubarAcquireMenuItemByName;
inline constexpr Slot<&gScreenViewHFT, 48, SCMenu(const char *title, const char *name, KRWord extensionID)> SCMenuNew;
inline constexpr Slot<&gScreenViewHFT, 49, void(SCMenu menu)> SCMenuRelease;
inline constexpr Slot<&gScreenViewHFT, 50, void(SCMenu menu)> SCMenuRemove;
inline constexpr Slot<&gScreenViewHFT, 51, SCMenuItem(SCMenu menu)> SCMenuGetParentMenuItem;
/** As an index: behind the last item. */
inline constexpr std::int32_t SCMenuEnd = 9999;
/** Puts the item in front of item `index`, or at SCMenuEnd. */
inline constexpr Slot<&gScreenViewHFT, 52, void(SCMenu menu, SCMenuItem item, std::int32_t index)> SCMenuAddMenuItem;
/** `shortcut` is a character or 0; `submenu` may be null. A title of "-" is a separator. */
inline constexpr Slot<&gScreenViewHFT, 53,
                      SCMenuItem(const char *title, const char *name, SCMenu submenu, KRBool longMenusOnly,
                                 char shortcut, std::uint16_t modifiers, KRWord extensionID)>
    SCMenuItemNew;
inline constexpr Slot<&gScreenViewHFT, 54, SCMenu(SCMenuItem item)> SCMenuItemAcquireSubmenu;
inline constexpr Slot<&gScreenViewHFT, 55, void(SCMenuItem item)> SCMenuItemRelease;
inline constexpr Slot<&gScreenViewHFT, 56, void(SCMenuItem item)> SCMenuItemRemove;
using SCExecuteProc = void (*)(void *clientData);
using SCComputeProc = KRBool (*)(void *clientData);
inline constexpr Slot<&gScreenViewHFT, 57, void(SCMenuItem item, SCExecuteProc proc, void *clientData)>
    SCMenuItemSetExecuteProc;
inline constexpr Slot<&gScreenViewHFT, 58, void(SCMenuItem item, SCComputeProc proc, void *clientData)>
    SCMenuItemSetComputeEnabledProc;
inline constexpr Slot<&gScreenViewHFT, 59, void(SCMenuItem item, SCComputeProc proc, void *clientData)>
    SCMenuItemSetComputeMarkedProc;
inline constexpr Slot<&gScreenViewHFT, 60, SCMenu(SCMenuItem item)> SCMenuItemGetParentMenu;
/** Runs the item when it is enabled. */
inline constexpr Slot<&gScreenViewHFT, 61, void(SCMenuItem item)> SCMenuItemExecute;
inline constexpr Slot<&gScreenViewHFT, 62, KRBool(SCMenuItem item)> SCMenuItemIsVisible;
/** The chosen item, acquired; null for no choice, and always without a window. */
inline constexpr Slot<&gScreenViewHFT, 63, SCMenuItem(SCMenu menu, std::int16_t x, std::int16_t y, KRBool rightMouse)>
    SCMenuTrackPopUp;

// The page view. Device units are pixels at the view's zoom, 72 to the inch at zoom 1, y growing downward, the page's
// upper left corner at the origin; pages lie below each other in one column.

inline constexpr Slot<&gScreenViewHFT, 64, SCDoc(SCPageView view)> SCPageViewGetDoc;
inline constexpr Slot<&gScreenViewHFT, 65, void(SCPageView view, SCRect *rect)> SCPageViewGetAperture;
/** The page shown, not acquired. */
inline constexpr Slot<&gScreenViewHFT, 66, DMPage(SCPageView view)> SCPageViewGetPage;
inline constexpr Slot<&gScreenViewHFT, 67, KRFixed(SCPageView view)> SCPageViewGetZoom;
enum SCZoomType : std::int32_t { SCZoomNoVary = 0, SCZoomFitPage = 1, SCZoomFitWidth = 2 };
inline constexpr Slot<&gScreenViewHFT, 68, std::int32_t(SCPageView view)> SCPageViewGetZoomType;
inline constexpr Slot<&gScreenViewHFT, 69, std::int32_t(SCPageView view)> SCPageViewGetPageNum;
inline constexpr Slot<&gScreenViewHFT, 70, void(SCPageView view, DMColorValue *color)> SCPageViewGetColor;
inline constexpr Slot<&gScreenViewHFT, 71, void(SCPageView view, const DMColorValue *color)> SCPageViewSetColor;
inline constexpr Slot<&gScreenViewHFT, 72, void(SCPageView view)> SCPageViewBeginOperation;
inline constexpr Slot<&gScreenViewHFT, 73, void(SCPageView view)> SCPageViewEndOperation;
inline constexpr Slot<&gScreenViewHFT, 74, void(SCPageView view, std::int32_t page)> SCPageViewGoTo;
inline constexpr Slot<&gScreenViewHFT, 75, void(SCPageView view, std::int32_t type, KRFixed zoom)> SCPageViewZoomTo;
inline constexpr Slot<&gScreenViewHFT, 76, void(SCPageView view, std::int16_t x, std::int16_t y)> SCPageViewScrollTo;
inline constexpr Slot<&gScreenViewHFT, 77, void(SCPageView view)> SCPageViewGoBack;
inline constexpr Slot<&gScreenViewHFT, 78, void(SCPageView view)> SCPageViewGoForward;
/** Null means all of the view. */
inline constexpr Slot<&gScreenViewHFT, 79, void(SCPageView view, const SCRect *rect)> SCPageViewInvalidateRect;
inline constexpr Slot<&gScreenViewHFT, 80, void(SCPageView view)> SCPageViewDrawNow;
inline constexpr Slot<&gScreenViewHFT, 81, void(SCPageView view, const SCRect *rect)> SCPageViewInvertRect;
inline constexpr Slot<&gScreenViewHFT, 82, void(SCPageView view, const SCRect *rect)> SCPageViewInvertRectOutline;
/** `width` in device units; `dashes` is null or `dashCount` lengths. */
inline constexpr Slot<&gScreenViewHFT, 83,
                      void(SCPageView view, const SCRect *rect, std::int16_t width, const KRFixed *dashes,
                           std::int32_t dashCount)>
    SCPageViewDrawRectOutline;
inline constexpr Slot<&gScreenViewHFT, 84, void(SCPageView view, const SCRect *rect)> SCPageViewDrawRect;
inline constexpr Slot<&gScreenViewHFT, 85, void(SCPageView view, std::int16_t *x, std::int16_t *y)>
    SCPageViewGetMousePosition;
inline constexpr Slot<&gScreenViewHFT, 86, KRBool(SCPageView view, std::int16_t x, std::int16_t y, DMAnnot *annot)>
    SCPageViewIsAnnotAtPoint;
inline constexpr Slot<&gScreenViewHFT, 87, void(SCPageView view, DMAnnot annot, SCRect *rect)> SCPageViewGetAnnotRect;
/** Null without a window: nothing can be drawn. */
inline constexpr Slot<&gScreenViewHFT, 88, void *(SCPageView view)> SCPageViewAcquireMachinePort;
inline constexpr Slot<&gScreenViewHFT, 89, void(SCPageView view, void *port)> SCPageViewReleaseMachinePort;
inline constexpr Slot<&gScreenViewHFT, 90, void(SCPageView view, std::int16_t x, std::int16_t y, KRFixedPoint *point)>
    SCPageViewDevicePointToPage;
inline constexpr Slot<&gScreenViewHFT, 91, void(SCPageView view, KRFixedRect *rect)> SCPageViewSnapRect;
inline constexpr Slot<&gScreenViewHFT, 92, void(SCPageView view, const SCRect *rect, KRFixedRect *pageRect)>
    SCPageViewDeviceRectToPage;
inline constexpr Slot<&gScreenViewHFT, 93, std::int32_t(SCPageView view)> SCPageViewGetFirstVisiblePageNum;
inline constexpr Slot<&gScreenViewHFT, 94, std::int32_t(SCPageView view)> SCPageViewGetLastVisiblePageNum;
inline constexpr Slot<&gScreenViewHFT, 95, KRBool(SCPageView view, std::int32_t page)> SCPageViewIsPageVisible;
/** Makes `page` the page that device rectangles speak of; gives the earlier one. */
inline constexpr Slot<&gScreenViewHFT, 96, std::int32_t(SCPageView view, std::int32_t page)>
    SCPageViewGetVisibleAnnotPage;
/** Draws an appearance stream scaled into a device rectangle of the view's port; nothing without one. */
inline constexpr Slot<&gScreenViewHFT, 97, void(SCPageView view, LexObj stream, const SCRect *rect)>
    SCPageViewDrawLexObj;
inline constexpr Slot<&gScreenViewHFT, 98, void(SCPageView view, LexObj dest)> SCPageViewUseDestInfo;
/** -1 when the annotation is on no page that is shown. */
inline constexpr Slot<&gScreenViewHFT, 99, std::int32_t(SCPageView view, DMAnnot annot)> SCDMAnnotGetPageNum;

// The system and the tools.

/** Keys that are held while the pointer or another key is pressed. */
enum SCModifier : std::uint32_t { SCModifierShift = 0x1, SCModifierControl = 0x2, SCModifierOption = 0x8 };
/** A sum of SCModifier. */
inline constexpr Slot<&gScreenViewHFT, 100, std::uint32_t()> SCSysGetModifiers;
inline constexpr Slot<&gScreenViewHFT, 101, KRBool()> SCSysMouseIsStillDown;
inline constexpr Slot<&gScreenViewHFT, 102, void(std::int32_t duration)> SCSysBeep;
/** Null without a window, as are all cursors. */
inline constexpr Slot<&gScreenViewHFT, 103, SCCursor(std::int16_t id)> SCSysGetStandardCursor;
inline constexpr Slot<&gScreenViewHFT, 104, void(SCCursor cursor)> SCSysSetCursor;
inline constexpr Slot<&gScreenViewHFT, 105, SCCursor()> SCSysGetCursor;
inline constexpr Slot<&gScreenViewHFT, 106, KRAtom(SCTool tool)> SCToolGetType;
inline constexpr Slot<&gScreenViewHFT, 107, SCToolButton(SCToolBar bar, KRAtom name)> SCToolBarGetButtonByName;
inline constexpr Slot<&gScreenViewHFT, 108, void(SCToolButton button)> SCToolButtonRemove;
inline constexpr Slot<&gScreenViewHFT, 109, void(SCWindow window)> SCWindowDrawNow;
/** Pixels of a document drawn outside a view: page and annotations at `dpi`, written as PNG, renamed into place. */
inline constexpr Slot<&gScreenViewHFT, 110,
                      void(DMDoc doc, std::int32_t page, std::int32_t dpi, KRFileSys fs, KRPathName path)>
    SCDocRenderPage;
