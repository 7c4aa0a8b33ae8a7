// Actions by key on pages, annotations and fields, and the script text that an action holds.
//
// An action stands under `A` (or a destination under `Dest`) or under its event's key in `AA`. The main action of an
// annotation goes by the key U.
// SPDX-License-Identifier: MIT
#pragma once

#include "FormsTypes.h"
#include "LexHFT.h"

struct DMField;

// Any object. `isAnnot`: the key U means `Dest` or `A`. Reading swallows what the host raises.

/** `key` KRAtomNull asks for any action. */
bool TSLexObjHasAction(LexObj obj, KRAtom key, bool isAnnot);
/** Not valid when there is none. A destination is handed out as it stands. */
DMAction TSLexObjGetAction(LexObj obj, KRAtom key, bool isAnnot);
/** An action with the null object removes what is there. Another than a dictionary goes under `Dest` for U. */
void TSLexObjSetAction(LexObj obj, KRAtom key, DMAction action, bool isAnnot);

// For the triggers of pages and annotations in a window, and for scripts, which set them.

bool TSDMPageHasAction(DMPage page, KRAtom key);
DMAction TSDMPageGetAction(DMPage page, KRAtom key);
void TSDMPageSetAction(DMPage page, KRAtom key, DMAction action);

bool TSDMAnnotHasAction(DMAnnot annot, KRAtom key);
DMAction TSDMAnnotGetAction(DMAnnot annot, KRAtom key);
void TSDMAnnotSetAction(DMAnnot annot, KRAtom key, DMAction action);

/** Looks for U in `AA`, while TSDMFieldSetAction writes it as the annotation's own: forms rely on either. */
bool TSDMFieldHasAction(DMField *field, KRAtom key);
/** F, K, V and C are inherited; other keys are the field's own. */
DMAction TSDMFieldGetAction(DMField *field, KRAtom key);
/** F, K, V and C of a group's widget go to the group's top. */
void TSDMFieldSetAction(DMField *field, KRAtom key, DMAction action);

// Script text: `JS`, a string or a stream.

/** Clears `text`, then reads the script into it, in the host's encoding. False when the action is no dictionary. */
bool TSDMActionGetJavaScript(DMAction action, EStr *text);
/** Writes a script that differs from the present one: short as a string, long as a compressed stream. */
void TSDMActionSetJavaScript(DMAction action, EStr *text);
/** A new action of type JavaScript; not valid for a null text. */
DMAction TSDMActionNewJavaScript(DMDoc doc, EStr *text);

/** Name-tree procedure: copies a document script into `destDoc`'s tree unless it has one of that name. Always true. */
KRBool TSCopyDocScripts(LexObj key, LexObj value, void *destDoc);
