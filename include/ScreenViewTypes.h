// Records, flags and numbers of the screen view table: the handlers that plug-ins register, and how views are opened
// and where they are. Members of records that start with `size` are read as far as that reaches.
// SPDX-License-Identifier: MIT
#pragma once

#include "KRTypes.h"

/** The procedures of an action type. A slot that is null means that the operation is absent. */
struct SCActionHandlerProcs {
    std::uint32_t size;
    /** Runs the action in a view. What follows under `Next` is the host's to run. */
    void (*perform)(void *clientData, DMAction action, SCDoc doc);
    /** Lets the user edit the action. */
    void (*doProperties)(void *clientData, DMAction action, SCDoc doc);
    /** Puts the entries of a new action of the type into `dict`. */
    void (*fillActionDict)(void *clientData, LexObj dict, SCDoc doc);
    // Texts of a dialog that edits actions: host text, cut to `size` with its terminator.
    void (*getInstructions)(void *clientData, char *buffer, std::int32_t size);
    void (*getButtonText)(void *clientData, char *buffer, std::int32_t size);
    void (*getStringOneText)(void *clientData, char *buffer, std::int32_t size);
    void (*getStringTwoText)(void *clientData, char *buffer, std::int32_t size);
    /** A copy for another document; absent where actions of the type cannot be copied. */
    DMAction (*copy)(void *clientData, DMDoc target, DMAction action, SCDoc source);
};

/** The sign beside an alert's text. */
enum SCAlertIcon : std::int32_t {
    SCAlertIconNone = 0,
    SCAlertIconError = 1,
    SCAlertIconQuestion = 2,
    SCAlertIconWarning = 3
};

/** Shows how far long work is. No member is null. Works may be nested; the outermost one shows. */
struct SCProgressMonitor {
    std::uint32_t size;
    void (*begin)(void *clientData);
    /** The value at which the work is done; 0 for one of unknown length. */
    void (*setRange)(std::int32_t last, void *clientData);
    void (*setValue)(std::int32_t value, void *clientData);
    /** Each `begin` has its `end`, also when the work failed. */
    void (*end)(void *clientData);
};

/** Keys that are held while the pointer or another key is pressed. */
enum SCModifier : std::uint32_t { SCModifierShift = 0x1, SCModifierControl = 0x2, SCModifierOption = 0x8 };

/** Bits of SCAnnotHandler::flags. */
enum SCAnnotHandlerFlag : std::uint32_t {
    /**
     * The annotations answer the pointer: the host calls `doClick`, `adjustCursor`, `cursorEnter` and `cursorExit`.
     * Where it is clear, they are drawn and can be selected, and the pointer is the tool's.
     */
    SCAnnotHandlerTakesPointer = 0x2
};

/**
 * The handler of an annotation subtype; the members after `flags` in the order in which the host has them. A procedure
 * that is null leaves the matter to the host. Places are device units of the page view, keys are characters.
 */
struct SCAnnotHandler {
    std::uint32_t size;
    /** A sum of SCAnnotHandlerFlag. */
    std::uint32_t flags;
    /**
     * The pointer's first button went down on the annotation. `flags` is the sum of SCModifier held then; `clicks` is
     * 1, or 2 for the second click of a double one. True: the click is done with; false leaves it to the tool.
     */
    KRBool (*doClick)(SCAnnotHandler *handler, DMAnnot annot, std::int16_t x, std::int16_t y, std::uint32_t flags,
                      std::int16_t clicks, SCPageView view);
    /** The pointer moves over the annotation. True: the handler set the cursor. */
    KRBool (*adjustCursor)(SCAnnotHandler *handler, DMAnnot annot, std::int16_t x, std::int16_t y, SCPageView view);
    /** The annotation is the selection no longer, and is from now on. */
    void (*removedFromSelection)(SCAnnotHandler *handler, DMAnnot annot, SCPageView view);
    void (*addedToSelection)(SCAnnotHandler *handler, DMAnnot annot, SCPageView view);
    /** Draws the annotation in place of its appearance stream. */
    void (*draw)(SCAnnotHandler *handler, DMAnnot annot, SCPageView view);
    /** The subtype. Must be there: without it the record is refused. */
    KRAtom (*getType)(SCAnnotHandler *handler);
    /** A key while the annotation is the selection; `flags` is a sum of SCModifier. True: the key is done with. */
    KRBool (*doKeyDown)(SCAnnotHandler *handler, DMAnnot annot, std::uint16_t key, std::uint32_t flags);
    /** Annotations of a higher layer are drawn later and hit first; 0 without this. */
    std::int32_t (*getLayer)(SCAnnotHandler *handler, DMAnnot annot);
    /** The pointer comes to the annotation, and leaves it. */
    void (*cursorEnter)(SCAnnotHandler *handler, DMAnnot annot, SCPageView view);
    void (*cursorExit)(SCAnnotHandler *handler, DMAnnot annot, SCPageView view);
    /** A copy for `page` of `target`, not yet on the page; not valid when it cannot be copied. */
    DMAnnot (*copy)(SCAnnotHandler *handler, DMDoc target, DMPage page, DMAnnot annot, SCDoc source);
};

/** A handler of auxiliary data (bytes that came back from a server) of a type. */
struct SCAuxDataHandler {
    std::uint32_t size;
    /** `length` bytes for the view `doc`, the host's for the time of the call. True: taken. */
    KRBool (*perform)(SCDoc doc, KRAtom type, void *data, std::uint32_t length);
};

/** How a document is to be opened in a view. */
struct SCDocOpenParams {
    std::uint32_t size;
    /** Null, or NUL-terminated, as for DMDocOpen. */
    const char *password;
    /** Not 0: the window offers no changes. */
    KRBool readOnly;
};

/** Whether an item of the Edit menu can be chosen for what is selected. */
using SCCanEditProc = KRBool (*)(SCDoc doc, void *data);

/** Does it. True: what was selected is selected still; the host leaves the selection alone in either case. */
using SCEditProc = KRBool (*)(SCDoc doc, void *data);

/**
 * What the host asks of a type of selections. `data` is what SCDocSetSelection was given. A procedure may be null, and
 * then there is nothing to do; but the type must be told.
 */
struct SCSelectionServer {
    std::uint32_t size;
    KRAtom (*getType)();
    /** It is selected now. Raising undoes that. */
    void (*gettingSelection)(SCDoc doc, void *data, KRBool highlight);
    /** It is selected no longer: the view has no selection while this runs. An edit is committed here. */
    void (*losingSelection)(SCDoc doc, void *data, KRBool highlight);
    /** A key for what is selected; `flags` is a sum of SCModifier. True: the key is done with. */
    KRBool (*keyDown)(SCDoc doc, void *data, std::uint16_t key, std::uint32_t flags);
    /** Frees the data, after losingSelection, also when that raised. */
    void (*destroy)(SCDoc doc, void *data);

    // Pairs for the items "Cut", "Copy", "Paste", "Clear", "SelectAll" and "Properties" of the Edit menu. An item can
    // be chosen when both procedures of its pair are there and the first gives true, which is asked again before the
    // second.
    SCCanEditProc canCut = nullptr;
    SCEditProc cut = nullptr;
    SCCanEditProc canCopy = nullptr;
    SCEditProc copy = nullptr;
    SCCanEditProc canPaste = nullptr;
    SCEditProc paste = nullptr;
    /** "Clear": what is selected goes, and nothing is put anywhere. */
    SCCanEditProc canDelete = nullptr;
    SCEditProc deleteSelection = nullptr;
    SCCanEditProc canSelectAll = nullptr;
    SCEditProc selectAll = nullptr;
    /** A dialog about what is selected. */
    SCCanEditProc canProperties = nullptr;
    SCEditProc properties = nullptr;
};

/** Where a view is. */
struct SCDocViewDef {
    std::uint32_t size;
    /** From 0. */
    std::int32_t pageNum;
    KRFixed zoom;
    /** A SCZoomType. */
    std::int32_t zoomType;
    /** Upper left corner of what shows, in device units of the page. */
    std::int16_t x, y;
};

/** How the zoom follows the window: not at all, so that the page fits, or so that its width does. */
enum SCZoomType : std::int32_t { SCZoomNoVary = 0, SCZoomFitPage = 1, SCZoomFitWidth = 2 };
