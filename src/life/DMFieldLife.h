// The life of a document's form: what happens at its opening, around a save, at its closing, and when the form's
// defaults change. Also what the document's permissions allow.
// SPDX-License-Identifier: MIT
#pragma once

#include "DocModelHFT.h"
#include "FormsTypes.h"
#include "LexHFT.h"

/** Subscribes the handlers below. Once, at start, after the notification servers exist. Gives true. */
bool NameHashInit();

/**
 * 4: a view came up. A form that asks for it (`NeedAppearances` true) gets its appearances made and the key removed;
 * then the document's scripts run, with or without a form.
 */
void frm_DocDidOpen(SCDoc view, KRErrorCode error, void *clientData);
/**
 * DMDocWillSave: brings calculation order and form into the state to be saved. Until DMDocDidSave all look-ups of
 * fields give null. A save that renumbers the file's objects (DMDocSaveFull) drops all records; they come back as they
 * are asked for.
 */
void frm_DocWillSave(DMDoc doc, const DMDocSaveRecord *save, void *clientData);
/** DMDocDidSave: fields can be had again, whether or not the save succeeded. */
void frm_DocDidSave(DMDoc doc, KRErrorCode error, void *clientData);
/** SCDocWillClose: drops scripts and records. */
void frm_DocWillClose(SCDoc view, void *clientData);
/** SCDocDidClose: frees the blocks of closed documents. */
void frm_DocDidClose(SCDoc view, void *clientData);

/**
 * Makes the appearance of a widget's field from its value, which stays as it is. Pictures that can serve are kept:
 * those of push buttons, of the states of check boxes and radio buttons (one of which is chosen), of signatures. True:
 * to go on.
 */
bool createAP(DMAnnot annot, DMPage page, void *clientData);

/** Observer of TSFormEntryDidChange: every displayed field that inherits a changed entry of the form is shown anew. */
void tessellaChanged(void *record, void *clientData);
/** The step for one field; `mask` points to a std::uint32_t of changed entries. True: to go on. */
KRBool fieldUpdate(DMField *field, void *mask);

// For the menu items of a window and of data exchange: what the document's permissions allow.

/** The form may be designed: DMPermissionChange and DMPermissionFillIn both, or DMPermissionAll. */
bool TSDMDocMakerIsOK(DMDoc doc);
/** The form may be filled in: any of DMPermission. */
bool TSDMDocFillerIsOK(DMDoc doc);

// The script record in the life of a view.

/** Stores the view and runs the document's scripts. False when there is no record. */
bool TJSDocInit(SCDoc view);
/** Drops the record. With `saveCalcArray` the calculation order is written to the form before. */
void TJSDocTerm(SCDoc view, bool saveCalcArray);
