// The screen view table: the functions of host/view in their slots, and the few that need fitting.
// SPDX-License-Identifier: MIT
#include "view/ViewTable.h"

#include <algorithm>
#include <cstring>

#include "ScreenViewHFT.h"
#include "doc/Notify.h"
#include "draw/Render.h"
#include "kernel/Bind.h"
#include "view/ActionDispatch.h"
#include "view/Alerts.h"
#include "view/AnnotHandlers.h"
#include "view/AppState.h"
#include "view/Menus.h"
#include "view/PageView.h"
#include "view/Progress.h"
#include "view/Registries.h"
#include "view/Selection.h"
#include "view/ViewPlatform.h"
#include "view/ViewRecords.h"
#include "view/Views.h"

namespace jackdaw {

namespace {

template <class T>
void store(T *place, T value) {
    if (place) *place = value;
}

std::string textOf(const char *text) {
    return text ? text : "";
}

// Alerts.

std::int32_t alert(std::int32_t icon, const char *text, const char *button1, const char *button2, const char *button3,
                   KRBool beep) {
    AlertRequest request;
    request.icon =
        icon >= SCAlertIconNone && icon <= SCAlertIconWarning ? static_cast<SCAlertIcon>(icon) : SCAlertIconNone;
    request.text = textOf(text);
    request.buttons[0] = button1 && *button1 != '\0' ? button1 : "OK";
    request.buttons[1] = textOf(button2);
    request.buttons[2] = textOf(button3);
    request.beep = beep != 0;
    return ShowAlert(request);
}

void alertNote(const char *text) {
    alert(SCAlertIconNone, text, "OK", /*button2*/ nullptr, /*button3*/ nullptr, /*beep*/ 0);
}

// The application.

void getVersion(std::int16_t *major, std::int16_t *minor) {
    store(major, AppVersionMajor);
    store(minor, AppVersionMinor);
}

const char *getLanguage() {
    return AppLanguage;
}

KRBool cancelProc(void *) {
    return TakeCancelRequest() ? 1 : 0;
}

SCCancelProc getCancelProc(void **clientData) {
    store<void *>(clientData, nullptr);
    return &cancelProc;
}

void enumDocs(SCAppEnumDocsProc proc, void *clientData) {
    Required(proc);
    // The list as it was at the start; a view that was closed on the way is left out.
    for (const SCDoc view : OpenViews()) {
        KRBool goOn = 1;
        if (ViewIsOpen(view)) ThrowIf(HostProtect([&] { goOn = proc(view, clientData); }));
        if (goOn == 0) return;
    }
}

const SCProgressMonitor *getProgressMonitor(void **clientData) {
    store<void *>(clientData, nullptr);
    return ProgressMonitor();
}

SCToolBar getToolBar() {
    return Platform().toolBar ? Platform().toolBar() : nullptr;
}

bool registerAuxData(KRWord, KRAtom type, SCAuxDataHandler *handler) {
    return RegisterAuxData(type, handler);
}

// Views.

void getViewDef(SCDoc view, SCDocViewDef *def) {
    // A caller of an older record gets as much as it has room for.
    const std::uint32_t size = Required(def).size;
    SCDocViewDef present = ViewDefOf(PageViewOf(view));
    if (size != 0) present.size = size;
    std::memcpy(def, &present, size != 0 ? std::min<std::size_t>(size, sizeof present) : sizeof present);
}

void setViewDef(SCDoc view, const SCDocViewDef *def) {
    if (Required(def).size < sizeof(SCDocViewDef)) throw HostError{KRErrBadParam, "The record is too small."};
    UseViewDef(PageViewOf(view), *def);
}

bool isExternal(SCDoc view) {
    RecordOf(view);
    return false;
}

void printPages(SCDoc view, std::int32_t first, std::int32_t last) {
    NotifyPages(DMDocWillPrintPages, DocOfView(view), first, last);
    if (Platform().printPages && ViewIsOpen(view)) Platform().printPages(view, first, last);
}

// Menus.

SCMenuItem trackPopUp(SCMenu menu, std::int16_t x, std::int16_t y, KRBool rightMouse) {
    MenuName(menu);
    if (!Platform().trackPopUp) return nullptr;
    const SCMenuItem item = Platform().trackPopUp(menu, x, y, rightMouse != 0);
    if (!item) return nullptr;
    AcquireItem(item);
    const KRErrorCode code = HostProtect([&] { SCMenuItemExecute(item); });
    if (code != KRErrNone) ReleaseItem(item);
    ThrowIf(code);
    return item;
}

// The page view.

void getAperture(SCPageView view, SCRect *rect) {
    Required(rect) = ApertureOf(view);
}

void getColor(SCPageView view, DMColorValue *color) {
    Required(color) = DrawingColor(view);
}

void setColor(SCPageView view, const DMColorValue *color) {
    SetDrawingColor(view, Required(color));
}

void invalidate(SCPageView view, const SCRect *rect) {
    RecordOf(view);
    if (Platform().invalidate) Platform().invalidate(view, rect);
}

void drawNow(SCPageView view) {
    RecordOf(view);
    if (Platform().drawNow) Platform().drawNow(view);
}

void invertRect(SCPageView view, const SCRect *rect) {
    RecordOf(view);
    if (Platform().invertRect) Platform().invertRect(view, &Required(rect));
}

void invertOutline(SCPageView view, const SCRect *rect) {
    RecordOf(view);
    if (Platform().invertOutline) Platform().invertOutline(view, &Required(rect));
}

void drawOutline(SCPageView view, const SCRect *rect, std::int16_t width, const KRFixed *dashes, std::int32_t count) {
    RecordOf(view);
    if (!Platform().drawOutline) return;
    Platform().drawOutline(view, &Required(rect), width, dashes, dashes ? count : 0);
}

void fillRect(SCPageView view, const SCRect *rect) {
    RecordOf(view);
    if (Platform().fillRect) Platform().fillRect(view, &Required(rect));
}

/** Without a pointer a place that is on no page. */
void getMousePosition(SCPageView view, std::int16_t *x, std::int16_t *y) {
    RecordOf(view);
    std::int16_t h = -1;
    std::int16_t v = -1;
    if (Platform().getPointer) Platform().getPointer(view, &h, &v);
    store(x, h);
    store(y, v);
}

void getAnnotRect(SCPageView view, DMAnnot annot, SCRect *rect) {
    Required(rect) = AnnotRect(view, annot);
}

void *acquirePort(SCPageView view) {
    RecordOf(view);
    return Platform().acquirePort ? Platform().acquirePort(view) : nullptr;
}

/** The port may outlive its view by the closing that it is released for. */
void releasePort(SCPageView view, void *port) {
    if (port && Platform().releasePort) Platform().releasePort(view, port);
}

void devicePointToPage(SCPageView view, std::int16_t x, std::int16_t y, KRFixedPoint *point) {
    Required(point) = PointToPage(view, x, y);
}

/** There is no grid to snap to. */
void snapRect(SCPageView view, KRFixedRect *rect) {
    RecordOf(view);
    Required(rect);
}

void deviceRectToPage(SCPageView view, const SCRect *rect, KRFixedRect *pageRect) {
    Required(pageRect) = RectToPage(view, Required(rect));
}

void drawLexObj(SCPageView view, LexObj stream, const SCRect *rect) {
    DrawStream(view, stream, Required(rect));
}

// The system and the tools.

std::uint32_t getModifiers() {
    return Platform().getModifiers ? Platform().getModifiers() : 0;
}

bool mouseIsStillDown() {
    return Platform().buttonIsDown && Platform().buttonIsDown();
}

void beep(std::int32_t duration) {
    if (Platform().beep) Platform().beep(duration);
}

SCCursor standardCursor(std::int16_t id) {
    return Platform().standardCursor ? Platform().standardCursor(id) : nullptr;
}

void setCursor(SCCursor cursor) {
    if (Platform().setCursor) Platform().setCursor(cursor);
}

SCCursor getCursor() {
    return Platform().getCursor ? Platform().getCursor() : nullptr;
}

SCToolButton toolButton(SCToolBar bar, KRAtom name) {
    return bar && Platform().toolButton ? Platform().toolButton(bar, name) : nullptr;
}

void removeToolButton(SCToolButton button) {
    if (button && Platform().removeToolButton) Platform().removeToolButton(button);
}

void drawWindowNow(SCWindow window) {
    if (window && Platform().drawWindowNow) Platform().drawWindowNow(window);
}

void renderPage(DMDoc doc, std::int32_t page, std::int32_t dpi, KRFileSys fs, KRPathName path) {
    RenderPageToFile(doc, page, dpi, fs, path);
}

// Filling, in the order of the slots.

void fillActionsAndAlerts() {
    Bind<&NewActionProcs>(SCActionHandlerProcsNew);
    Bind<&ActionHandlerByType>(SCAppGetActionHandlerByType);
    Bind<&RegisterActionHandler>(SCAppRegisterActionHandler);
    Bind<&PerformAction>(SCDocPerformAction);
    Bind<&CopyAction>(SCDocCopyAction);
    Bind<&CopyActionCommon>(SCDocCopyActionCommon);
    Bind<&alert>(SCAlert);
    Bind<&alertNote>(SCAlertNote);
}

void fillApplication() {
    Bind<&getVersion>(SCAppGetVersion);
    Bind<&getLanguage>(SCAppGetLanguage);
    Bind<&getCancelProc>(SCAppGetCancelProc);
    Bind<&FrontView>(SCAppGetActiveDoc);
    Bind<&enumDocs>(SCAppEnumDocs);
    Bind<&getProgressMonitor>(SCAppGetDocProgressMonitor);
    Bind<&Menubar>(SCAppGetMenubar);
    Bind<&getToolBar>(SCAppGetToolBar);
    Bind<&ActiveTool>(SCAppGetActiveTool);
    Bind<&RegisterAnnotHandler>(SCAppRegisterAnnotHandler);
    Bind<&Preference>(SCAppGetPreference);
    Bind<&SetPreference>(SCAppSetPreference);
    Bind<&BeginFullScreen>(SCAppBeginFullScreen);
    Bind<&EndFullScreen>(SCAppEndFullScreen);
    Bind<&DoingFullScreen>(SCAppDoingFullScreen);
    Bind<&RegisterIdle>(SCAppRegisterIdleProc);
    Bind<&UnregisterIdle>(SCAppUnregisterIdleProc);
    Bind<&RegisterNotification>(SCAppRegisterNotification);
    Bind<&UnregisterNotification>(SCAppUnregisterNotification);
    Bind<&registerAuxData>(SCAppRegisterAuxDataHandler);
}

void fillViews() {
    Bind<&OpenFileThroughTable>(SCDocOpenFromFile);
    Bind<&OpenFileInView>(SCDocOpenFromFileWithParams);
    Bind<&OpenDocInView>(SCDocOpenFromDMDoc);
    Bind<&CloseView>(SCDocClose);
    Bind<&DocOfView>(SCDocGetDMDoc);
    Bind<&PageViewOf>(SCDocGetPageView);
    Bind<&WindowOfView>(SCDocGetWindow);
    Bind<&SelectionType>(SCDocGetSelectionType);
    Bind<&SelectionData>(SCDocGetSelection);
    Bind<&SetSelection>(SCDocSetSelection);
    Bind<&ClearSelection>(SCDocClearSelection);
    Bind<&RegisterSelectionServer>(SCDocRegisterSelectionServer);
    Bind<&printPages>(SCDocPrintPages);
    Bind<&getViewDef>(SCDocGetViewDef);
    Bind<&setViewDef>(SCDocSetViewDef);
    Bind<&isExternal>(SCDocIsExternal);
    Bind<&CopyAnnot>(SCDocCopyAnnot);
    Bind<&renderPage>(SCDocRenderPage);
}

void fillMenus() {
    Bind<&AcquireMenuByName>(SCMenubarAcquireMenuByName);
    Bind<&AcquireItemByName>(SCMenubarAcquireMenuItemByName);
    Bind<&NewMenu>(SCMenuNew);
    Bind<&ReleaseMenu>(SCMenuRelease);
    Bind<&RemoveMenu>(SCMenuRemove);
    Bind<&AcquireParentItem>(SCMenuGetParentMenuItem);
    Bind<&AddItem>(SCMenuAddMenuItem);
    Bind<&NewMenuItem>(SCMenuItemNew);
    Bind<&AcquireSubmenu>(SCMenuItemAcquireSubmenu);
    Bind<&ReleaseItem>(SCMenuItemRelease);
    Bind<&RemoveItem>(SCMenuItemRemove);
    Bind<&SetItemExecute>(SCMenuItemSetExecuteProc);
    Bind<&SetItemEnabled>(SCMenuItemSetComputeEnabledProc);
    Bind<&SetItemMarked>(SCMenuItemSetComputeMarkedProc);
    Bind<&AcquireParentMenu>(SCMenuItemGetParentMenu);
    Bind<&ExecuteItem>(SCMenuItemExecute);
    Bind<&ItemIsVisible>(SCMenuItemIsVisible);
    Bind<&trackPopUp>(SCMenuTrackPopUp);
}

void fillPageView() {
    Bind<&DocOfPageView>(SCPageViewGetDoc);
    Bind<&getAperture>(SCPageViewGetAperture);
    Bind<&ShownPage>(SCPageViewGetPage);
    Bind<&ZoomOf>(SCPageViewGetZoom);
    Bind<&ZoomTypeOf>(SCPageViewGetZoomType);
    Bind<&ShownPageNum>(SCPageViewGetPageNum);
    Bind<&getColor>(SCPageViewGetColor);
    Bind<&setColor>(SCPageViewSetColor);
    Bind<&BeginViewOperation>(SCPageViewBeginOperation);
    Bind<&EndViewOperation>(SCPageViewEndOperation);
    Bind<&GoToPage>(SCPageViewGoTo);
    Bind<&ZoomTo>(SCPageViewZoomTo);
    Bind<&ScrollTo>(SCPageViewScrollTo);
    Bind<&GoBack>(SCPageViewGoBack);
    Bind<&GoForward>(SCPageViewGoForward);
    Bind<&invalidate>(SCPageViewInvalidateRect);
    Bind<&drawNow>(SCPageViewDrawNow);
    Bind<&invertRect>(SCPageViewInvertRect);
    Bind<&invertOutline>(SCPageViewInvertRectOutline);
    Bind<&drawOutline>(SCPageViewDrawRectOutline);
    Bind<&fillRect>(SCPageViewDrawRect);
}

void fillPlaces() {
    Bind<&getMousePosition>(SCPageViewGetMousePosition);
    Bind<&AnnotAtPoint>(SCPageViewIsAnnotAtPoint);
    Bind<&getAnnotRect>(SCPageViewGetAnnotRect);
    Bind<&acquirePort>(SCPageViewAcquireMachinePort);
    Bind<&releasePort>(SCPageViewReleaseMachinePort);
    Bind<&devicePointToPage>(SCPageViewDevicePointToPage);
    Bind<&snapRect>(SCPageViewSnapRect);
    Bind<&deviceRectToPage>(SCPageViewDeviceRectToPage);
    Bind<&FirstVisiblePage>(SCPageViewGetFirstVisiblePageNum);
    Bind<&LastVisiblePage>(SCPageViewGetLastVisiblePageNum);
    Bind<&PageIsVisible>(SCPageViewIsPageVisible);
    Bind<&SetAnnotPage>(SCPageViewGetVisibleAnnotPage);
    Bind<&drawLexObj>(SCPageViewDrawLexObj);
    Bind<&UseDest>(SCPageViewUseDestInfo);
    Bind<&PageOfAnnot>(SCDMAnnotGetPageNum);
}

void fillSystem() {
    Bind<&getModifiers>(SCSysGetModifiers);
    Bind<&mouseIsStillDown>(SCSysMouseIsStillDown);
    Bind<&beep>(SCSysBeep);
    Bind<&standardCursor>(SCSysGetStandardCursor);
    Bind<&setCursor>(SCSysSetCursor);
    Bind<&getCursor>(SCSysGetCursor);
    Bind<&ToolType>(SCToolGetType);
    Bind<&toolButton>(SCToolBarGetButtonByName);
    Bind<&removeToolButton>(SCToolButtonRemove);
    Bind<&drawWindowNow>(SCWindowDrawNow);
}

/** What an earlier run of the host in this process registered belongs to plug-ins that are gone. */
void startRegistries() {
    ForgetActionHandlers();
    ForgetAnnotHandlers();
    ForgetSelectionServers();
    ForgetAppCallbacks();
    DestroyMenus();
    InstallHostActions();
    InstallAnnotSelection();
}

} // namespace

void FillScreenViewTable() {
    fillActionsAndAlerts();
    fillApplication();
    fillViews();
    fillMenus();
    fillPageView();
    fillPlaces();
    fillSystem();
    startRegistries();
}

} // namespace jackdaw
