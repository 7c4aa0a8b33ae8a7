// The table "FormsAuthoring": the structure of a form for other plug-ins. The 45 slots of "Forms" are numbered for
// good, so what edits the field tree, registers widget handlers and keeps name trees is served beside it.
// SPDX-License-Identifier: MIT
#pragma once

#include "FormsTypes.h"
#include "HFT.h"

inline KRHFT gFormsAuthoringHFT = nullptr;
inline constexpr const char *FormsAuthoringHFTName = "FormsAuthoring";
inline constexpr std::uint32_t FormsAuthoringHFTVersion = KRVersion(1, 0);
inline constexpr int FormsAuthoringHFTCount = 30;

namespace Forms {

// Widget handlers. The newest of a type is found first.

inline constexpr Slot<&gFormsAuthoringHFT, 1, void(SCWidgetHandler *handler)> TSSCAppRegisterWidgetHandler;
inline constexpr Slot<&gFormsAuthoringHFT, 2, SCWidgetHandler *(KRAtom type)> TSSCAppGetWidgetHandlerByName;
using WidgetHandlerEnumProc = void (*)(SCWidgetHandler *handler, void *clientData);
inline constexpr Slot<&gFormsAuthoringHFT, 3, void(WidgetHandlerEnumProc proc, void *clientData)>
    TSSCAppEnumWidgetHandlers;

// The field tree. Names are full dotted names in the form's encoding.

/** The field of a widget, defined under `name` when it has none yet; null when it cannot be. */
inline constexpr Slot<&gFormsAuthoringHFT, 4, DMField *(DMAnnot annot, const char *name)> TSDMAnnotDefineField;
inline constexpr Slot<&gFormsAuthoringHFT, 5, DMField *(LexObj dict, const char *name)> TSLexDictDefineField;
/** Keeps a widget's field from being removed, or lets it go. */
inline constexpr Slot<&gFormsAuthoringHFT, 6, void(DMAnnot annot, KRBool lock)> TSDMAnnotLockField;
inline constexpr Slot<&gFormsAuthoringHFT, 7, void(DMAnnot annot, DMPage page, KRBool reserved, KRBool keepValue)>
    TSDMAnnotRemoveField;
/** `name` null: the source's. `fresh`: the appearance is rebuilt. Null when the field cannot be defined. */
inline constexpr Slot<&gFormsAuthoringHFT, 8,
                      DMField *(LexObj target, DMField *source, const char *name, KRBool fresh, KRBool noActions)>
    TSLexDictCopyField;
/** The field under its new name, reset. Raises KRErrBadParam. */
inline constexpr Slot<&gFormsAuthoringHFT, 9, DMField *(DMField *field, const char *newName)> TSDMFieldRename;
/** Valid, and of one type with all fields of its name. */
inline constexpr Slot<&gFormsAuthoringHFT, 10, KRBool(DMField *field)> TSDMFieldIsValidCheckType;
/** The form dictionary, made when absent; null on failure. */
inline constexpr Slot<&gFormsAuthoringHFT, 11, LexObj(DMDoc doc)> TSDMDocCreateForm;
/** Removes the form with its widgets' fields. */
inline constexpr Slot<&gFormsAuthoringHFT, 12, void(DMDoc doc, KRBool flag)> TSDMDocDestroyForm;

// Types, defaults, options.

/** `FT`, inherited; KRAtomNull when none. */
inline constexpr Slot<&gFormsAuthoringHFT, 13, KRAtom(DMField *field)> TSDMFieldGetType;
/** 0 on success, 1 or a code when refused. */
inline constexpr Slot<&gFormsAuthoringHFT, 14, std::int32_t(DMField *field, KRAtom type)> TSDMFieldSetType;
inline constexpr Slot<&gFormsAuthoringHFT, 15, std::int32_t(DMField *field, LexObj value)> TSDMFieldSetDefaultValue;
inline constexpr Slot<&gFormsAuthoringHFT, 16, std::int32_t(DMField *field, KRAtom *name, LexObj *value)>
    TSDMFieldGetOptionIndex;
inline constexpr Slot<&gFormsAuthoringHFT, 17, KRBool(DMField *field, std::int32_t index)> TSDMFieldSetToOptionIndex;
/** Rewrites the appearance of the field's widget from its value. */
inline constexpr Slot<&gFormsAuthoringHFT, 18, void(DMField *field)> TSDMFieldUpdateAppearance;
/** The widget type: "Text", "ComboBox", "ListBox", "Button", "CheckBox", "RadioButton" or a field type. */
inline constexpr Slot<&gFormsAuthoringHFT, 19, KRAtom(DMAnnot annot)> TSDMWidgetGetSubType;
/** The on-state of a check box or radio button. */
inline constexpr Slot<&gFormsAuthoringHFT, 20, KRAtom(DMAnnot annot)> WButtonGetOnKey;

// Name trees under the catalog's `Names`. `name` is PDFDocEncoding.

/** `flags` is 0 or TSNameDestroyOld. */
inline constexpr Slot<&gFormsAuthoringHFT, 21,
                      void(LexDoc doc, KRAtom tree, const EStr *name, LexObj value, std::uint32_t flags)>
    TSAddNameEntry;
/** `flags` is TSNameRemove or TSNameRemoveDestroy. */
inline constexpr Slot<&gFormsAuthoringHFT, 22,
                      void(LexDoc doc, KRAtom tree, const EStr *name, KRBool updateLimits, std::uint32_t flags)>
    TSRemoveNameEntry;
inline constexpr Slot<&gFormsAuthoringHFT, 23, LexObj(LexDoc doc, KRAtom tree, const EStr *name)> TSFindNameEntry;
inline constexpr Slot<&gFormsAuthoringHFT, 24, LexObj(LexDoc doc, KRAtom tree, LexObj value)> TSFindNameEntryByObj;
using NameEntryProc = KRBool (*)(LexObj key, LexObj value, void *clientData);
inline constexpr Slot<&gFormsAuthoringHFT, 25, KRBool(LexDoc doc, KRAtom tree, NameEntryProc proc, void *clientData)>
    TSEnumNameTree;
/** Rebuilds the tree with `branching` (at least 2) entries a node. */
inline constexpr Slot<&gFormsAuthoringHFT, 26, void(LexDoc doc, KRAtom tree, std::int32_t branching)>
    TSRegenerateNameTree;

/** The highest of the conditions that keep a widget from being called `name`; 0 when none does. */
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

} // namespace Forms
