// The form dictionary: whether a document has a valid form, its form-wide defaults, the clean-up before a save, and the
// servers over which changes of forms and fields are told.
//
// A form is known by its dictionary, under `Tessella` in the catalog. Keys: `Fields` (array, required), `Tessella`
// (version, at least 0.8), `DA`, `DR`, `Q`, `NeedAppearances`, `CO`. Private keys that no save lets through: `$Wa`
// (widgets were orphaned), `$Vo` (fields whose value must not reach the file).
// SPDX-License-Identifier: MIT
#pragma once

#include "DocModelHFT.h"
#include "FormsTypes.h"
#include "LexHFT.h"
#include "base/NtfySrvr.h"

/** A dictionary with an array `Fields` and no version below 0.8. Cheap for the form that was asked about last. */
bool TessellaIsValid(LexObj form);
/** The document has a valid form. */
bool IsDMDocTessella(DMDoc doc);
/** The form itself if it is valid, else the null object. */
LexObj TessellaGetLexObj(LexObj form);

/** The form dictionary of the document that holds an object; the null object for null and direct ones. */
LexObj TSLexObjGetTessella(LexObj obj);
/** The catalog's form dictionary, valid or not; the null object when it has none. Null allowed. */
LexObj TSDMDocGetTessella(DMDoc doc);
LexObj TSLexDocGetTessella(LexDoc doc);

/**
 * Ensures a form with the default look (Helvetica, automatic size), tells TSFormDidCreate, gives it. The null object on
 * failure; what was written by then stays.
 */
LexObj TSDMDocCreateForm(DMDoc doc);

/** An entry by its mask; the null object when it is absent, the form invalid or the mask none. */
LexObj TessellaGetEntry(LexObj form, std::uint32_t entry);

/**
 * The default look, `DA` and `Q`. Without a `DA` the record is cleared and its fonts are KRAtomNull. Raises
 * KRErrBadResource when the font of a `DA` is not among the default resources, and KRErrBadField for a bad `DA`.
 * Nothing for an invalid form or a null record.
 */
void TessellaGetDefaultTextAppearance(LexObj form, TextAppearance *look);
/**
 * Makes the look the default: writes `Q`, `DA`, and the font into `DR`, each only when it differs, and tells
 * TSFormEntryDidChange what changed. Fills in the look's font resource and homogenizes its colours. Raises
 * KRErrBadParam for a font that cannot be had and a look that cannot be written, KRErrBadResource for resources that
 * cannot be made.
 */
void TessellaSetDefaultTextAppearance(LexObj form, TextAppearance *look);

/** Notes that a widget lost its field and was hidden, so that the next save cleans up. */
void TessellaHasWastedAnnots(LexObj form);
/** Hides a widget that could not become a field (TessellaWastedFlags) and notes the waste in its document's form. */
void TessellaWasteAnnot(DMAnnot annot);
/** The annotation flags with which TessellaWasteAnnot hides a widget. */
inline constexpr std::uint32_t TessellaWastedFlags = DMAnnotInvisible | DMAnnotHidden;

// Notification servers.

/** The servers by TSServer; null before CreateTessellaNotificationServer. */
extern NotificationServer **TessellaNotificationServer;
/** Makes the twelve servers, from the last to the first; false when there is no memory for their table. */
bool CreateTessellaNotificationServer();
void DestroyTessellaNotificationServer();

/** Null for an index outside the twelve, and while the servers do not exist. */
NotificationServer *TessellaGetNotificationServer(std::int32_t index);
/** Observer id; -1 when there is no such server. `failure` may be null. */
std::int32_t TessellaRegisterObserver(std::int32_t index, TSNotifyProc proc, TSNotifyFailureProc failure,
                                      void *clientData);
void TessellaUnregisterObserver(std::int32_t index, std::int32_t id);
/** Broadcasts on a server, if it exists. What an observer raises comes out of here. */
void TessellaBroadcast(TSServer server, TSFieldNotifyRec *record);
