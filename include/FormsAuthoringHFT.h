// The table "FormsAuthoring": the structure of a form for other plug-ins. The 45 slots of "Forms" are numbered for
// good, so what edits the field tree, registers widget handlers and keeps name trees is served beside it. What
// FormsHFT.h says of fields and errors holds here.
// SPDX-License-Identifier: MIT
#pragma once

#include "FormsTypes.h"
#include "HFT.h"

/** Set by whoever means to call through it, like gFormsHFT. */
inline KRHFT gFormsAuthoringHFT = nullptr;
inline constexpr const char *FormsAuthoringHFTName = "FormsAuthoring";
inline constexpr std::uint32_t FormsAuthoringHFTVersion = KRVersion(1, 0);
inline constexpr int FormsAuthoringHFTCount = 32;

namespace Forms {

// Widget handlers. The newest of a type is found first.

/**
 * Registers a handler, which must outlive the plug-in, in front of the others; a former one of its type goes. Null and
 * a handler without GetName are ignored.
 */
inline constexpr Slot<&gFormsAuthoringHFT, 1, void(SCWidgetHandler *handler)> TSSCAppRegisterWidgetHandler;
/** The handler of a widget type, its registrant's; null when there is none. */
inline constexpr Slot<&gFormsAuthoringHFT, 2, SCWidgetHandler *(KRAtom type)> TSSCAppGetWidgetHandlerByName;
/** One handler. */
using WidgetHandlerEnumProc = void (*)(SCWidgetHandler *handler, void *clientData);
/** Calls `proc` for each handler, the newest first; those registered meanwhile are left out. */
inline constexpr Slot<&gFormsAuthoringHFT, 3, void(WidgetHandlerEnumProc proc, void *clientData)>
    TSSCAppEnumWidgetHandlers;

// The field tree. Names are full dotted names in the form's encoding.

/**
 * The field of a widget, defined under `name` when it has none yet, with its appearance; null when it cannot be: a
 * field of another type or a terminal one stands in the way, or the name is empty or too long. Raises KRErrBadParam for
 * the name of a node.
 */
inline constexpr Slot<&gFormsAuthoringHFT, 4, DMField *(DMAnnot annot, const char *name)> TSDMAnnotDefineField;
/** The same for an indirect dictionary that is no widget yet; a field of another name leaves it first. */
inline constexpr Slot<&gFormsAuthoringHFT, 5, DMField *(LexObj dict, const char *name)> TSLexDictDefineField;
/** `lock` not 0 keeps a widget's field from being removed; 0 lets it go. */
inline constexpr Slot<&gFormsAuthoringHFT, 6, void(DMAnnot annot, KRBool lock)> TSDMAnnotLockField;
/**
 * Takes a widget's field away; the annotation stays where it is, without name and value. `keepValue` not 0: a field
 * that is alone under its name goes on as a value without a widget. `page` and `reserved` have no effect. Nothing for a
 * locked field.
 */
inline constexpr Slot<&gFormsAuthoringHFT, 7, void(DMAnnot annot, DMPage page, KRBool reserved, KRBool keepValue)>
    TSDMAnnotRemoveField;
/**
 * Makes the indirect dictionary `target` a field like `source`, in its own document or another. `name` null means the
 * source's; another name starts without a value. `fresh` not 0: the appearance is rebuilt. `noActions` not 0 leaves the
 * actions out. Null when the field cannot be defined.
 */
inline constexpr Slot<&gFormsAuthoringHFT, 8,
                      DMField *(LexObj target, DMField *source, const char *name, KRBool fresh, KRBool noActions)>
    TSLexDictCopyField;
/**
 * The field under its new full name, reset, with its looks, flags and actions; null when an observer took it away.
 * Raises KRErrBadParam, with nothing changed, for a field with children and for a name that cannot be had.
 */
inline constexpr Slot<&gFormsAuthoringHFT, 9, DMField *(DMField *field, const char *newName)> TSDMFieldRename;
/** Valid, and of one type with all fields of its name. */
inline constexpr Slot<&gFormsAuthoringHFT, 10, KRBool(DMField *field)> TSDMFieldIsValidCheckType;
/** The form dictionary, made with the default look when absent; the null object on failure. */
inline constexpr Slot<&gFormsAuthoringHFT, 11, LexObj(DMDoc doc)> TSDMDocCreateForm;
/** Removes the form, its fields and their widgets. `flag` has no effect. */
inline constexpr Slot<&gFormsAuthoringHFT, 12, void(DMDoc doc, KRBool flag)> TSDMDocDestroyForm;

// Types, defaults, options.

/** `FT`, inherited: "Btn", "Tx", "Ch" or "Sig"; KRAtomNull when none. */
inline constexpr Slot<&gFormsAuthoringHFT, 13, KRAtom(DMField *field)> TSDMFieldGetType;
/**
 * Writes `FT`. The flags that mean the same for all types stay, the appearance is due. 0; 1 for one of several widgets,
 * which cannot change alone; the code when the store failed.
 */
inline constexpr Slot<&gFormsAuthoringHFT, 14, std::int32_t(DMField *field, KRAtom type)> TSDMFieldSetType;
/** Stores a copy as `DV`; null removes it. 0; 1 when refused: push buttons have none, a choice needs an option. */
inline constexpr Slot<&gFormsAuthoringHFT, 15, std::int32_t(DMField *field, LexObj value)> TSDMFieldSetDefaultValue;
/**
 * Index of the value among the options, the highest of equal ones; -1 when it is none of them. `*name` gets the export
 * value's atom, KRAtomNull when it is no name; `*value` the export value. Either may be null.
 */
inline constexpr Slot<&gFormsAuthoringHFT, 16, std::int32_t(DMField *field, KRAtom *name, LexObj *value)>
    TSDMFieldGetOptionIndex;
/** Sets the value to an option; past the end means the first, a negative index nothing. False when refused. */
inline constexpr Slot<&gFormsAuthoringHFT, 17, KRBool(DMField *field, std::int32_t index)> TSDMFieldSetToOptionIndex;
/** Rewrites the appearance of the field's widget from its value; nothing while TSFieldDelay is set. */
inline constexpr Slot<&gFormsAuthoringHFT, 18, void(DMField *field)> TSDMFieldUpdateAppearance;
/** The widget type: "Text", "ComboBox", "ListBox", "Button", "CheckBox", "RadioButton" or a field type. */
inline constexpr Slot<&gFormsAuthoringHFT, 19, KRAtom(DMAnnot annot)> TSDMWidgetGetSubType;
/** The on-state of a check box or radio button: the key of its appearances that is not Off. */
inline constexpr Slot<&gFormsAuthoringHFT, 20, KRAtom(DMAnnot annot)> WButtonGetOnKey;

// Name trees under the catalog's `Names`, by the atom of their key. `name` is PDFDocEncoding, and stays the caller's.
// Bad nodes raise KRErrBadParam.

/** Inserts a name, or replaces its value, and makes the tree as needed. `flags` is 0 or TSNameDestroyOld. */
inline constexpr Slot<&gFormsAuthoringHFT, 21,
                      void(LexDoc doc, KRAtom tree, const EStr *name, LexObj value, std::uint32_t flags)>
    TSAddNameEntry;
/** Removes a name. `updateLimits` not 0 keeps the nodes' `Limits` exact. `flags` is TSNameRemove or
 * TSNameRemoveDestroy. */
inline constexpr Slot<&gFormsAuthoringHFT, 22,
                      void(LexDoc doc, KRAtom tree, const EStr *name, KRBool updateLimits, std::uint32_t flags)>
    TSRemoveNameEntry;
/** The value of a name; the null object when it is not there. */
inline constexpr Slot<&gFormsAuthoringHFT, 23, LexObj(LexDoc doc, KRAtom tree, const EStr *name)> TSFindNameEntry;
/** The key (a string object) of the first entry that has this value; the null object when none has. */
inline constexpr Slot<&gFormsAuthoringHFT, 24, LexObj(LexDoc doc, KRAtom tree, LexObj value)> TSFindNameEntryByObj;
/** One entry: `key` is a string object. False ends the walk. */
using NameEntryProc = KRBool (*)(LexObj key, LexObj value, void *clientData);
/** Walks the entries in order. False when `proc` ended it; a tree that is absent counts as done. */
inline constexpr Slot<&gFormsAuthoringHFT, 25, KRBool(LexDoc doc, KRAtom tree, NameEntryProc proc, void *clientData)>
    TSEnumNameTree;
/** Rebuilds the tree with at most `branching` entries a node. Raises KRErrBadParam for a `branching` below 2. */
inline constexpr Slot<&gFormsAuthoringHFT, 26, void(LexDoc doc, KRAtom tree, std::int32_t branching)>
    TSRegenerateNameTree;

/** The TSValidity of `name` for a widget that is to have the widget type `type`: the highest number that holds. */
inline constexpr Slot<&gFormsAuthoringHFT, 27, std::int32_t(DMDoc doc, DMAnnot annot, KRAtom type, const char *name)>
    TSDMWidgetValidateName;

// Warnings: what was passed over, put right or done in another way than the form asks, while it was opened, read,
// changed or drawn. They come from inside the call that finds them, possibly several times for one field.

/** An id for TSFormWarningsIgnore. `proc` gets a TSFormWarning; what it raises is dropped. */
inline constexpr Slot<&gFormsAuthoringHFT, 28, std::int32_t(TSNotifyProc proc, void *clientData)> TSFormWarningsObserve;
/** Ends it; not from inside `proc`. An unknown id is ignored. */
inline constexpr Slot<&gFormsAuthoringHFT, 29, void(std::int32_t id)> TSFormWarningsIgnore;

// For whoever is about to change and save a document.

/** A sum of TSSeal. Loads the fields. */
inline constexpr Slot<&gFormsAuthoringHFT, 30, std::uint32_t(DMDoc doc)> TSDMDocGetSeals;

// Limits of the plug-in, for the whole process; KRLimitGet and KRLimitSet are the host's.

/** Row `index` of the table, from 0; false, and nothing stored, past its end. */
inline constexpr Slot<&gFormsAuthoringHFT, 31, KRBool(std::int32_t index, KRLimit *limit)> TSLimitGet;
/** Sets a limit. False for an unknown name, and for a value below 1 or above the highest. */
inline constexpr Slot<&gFormsAuthoringHFT, 32, KRBool(const char *name, std::int64_t value)> TSLimitSet;

} // namespace Forms
