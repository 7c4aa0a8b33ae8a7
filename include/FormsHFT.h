// The table "Forms": the forms plug-in for other plug-ins, and for the command line. 45 slots, numbered for good.
//
// Fetched with KRGetHFT after the host has initialised its plug-ins; null when the forms plug-in is not loaded. The
// entries stand in a namespace, since the plug-in itself defines functions of these names. An operation whose module
// is not built raises a registered error whose text says so.
//
// A null field, or one that is not valid, is passed over: predicates are false, results null, 0 or the null object.
// What the host or an observer raises on the way comes out of the call. Objects that are given belong to their
// document.
// SPDX-License-Identifier: MIT
#pragma once

#include "FormsTypes.h"
#include "HFT.h"

/** Set by whoever means to call through it: KRGetHFT of the name and version below. */
inline KRHFT gFormsHFT = nullptr;
inline constexpr const char *FormsHFTName = "Forms";
inline constexpr std::uint32_t FormsHFTVersion = KRVersion(1, 1);
inline constexpr int FormsHFTCount = 45;

/** The script engine as a running script sees it. The pointers are the engine's, good until the call comes back. */
struct TJSContextRec {
    /** The caller's, left alone. */
    KRWord reserved;
    void *context;
    void *global;
    /** The document of the event that is running, as a script object, as a view and as a document; null without one. */
    void *docObject;
    SCDoc view;
    DMDoc doc;
};

/** What to export as FDF, and how. */
struct TSExportParams {
    /** Of this record; KRErrBadParam for any other. */
    std::uint32_t size;
    /** Parent of alerts; may be null. */
    SCDoc view;
    DMDoc doc;
    /** As in the slots below. */
    LexObj fields;
    KRBool listedOnly;
    KRBool includeEmpty;
    /** Password fields are left out. */
    KRBool skipPassword;
    /** A required field without a value raises. */
    KRBool checkRequired;
    /** Such as "Shift-JIS"; KRAtomNull for PDFDocEncoding. */
    KRAtom encoding;
    /** The path of the form is written relative to this one; null writes it in full. */
    KRPathName relativeToPath;
    /** Full name of the button that submits; null for none. */
    const char *submitName;
};

namespace Forms {

// The form and its fields. A lookup by name or an enumeration loads the fields; nothing is loaded before.

/** The document has a valid form; false for null. */
inline constexpr Slot<&gFormsHFT, 1, KRBool(DMDoc doc)> IsDMDocTessella;
/** Makes the records of all fields of the form, once; nothing without a form. */
inline constexpr Slot<&gFormsHFT, 2, void(DMDoc doc)> TSDMDocLoadDMFields;
/**
 * Calls `proc` for the fields, in the order of the name index. `terminalOnly`: only those that TSDMFieldIsTerminal is
 * true for; `firstOfNameOnly`: one field for each name. `proc` may define and remove fields.
 */
inline constexpr Slot<
    &gFormsHFT, 3, void(DMDoc doc, KRBool terminalOnly, KRBool firstOfNameOnly, TSFieldEnumProc proc, void *clientData)>
    TSDMDocEnumDMFields;
/** The first of the fields of this full name (raw bytes); null when there is none, and during a save. */
inline constexpr Slot<&gFormsHFT, 4, DMField *(DMDoc doc, const char *name)> TSDMDocGetDMFieldFromName;
/** The field of an indirect field dictionary, made if needed; null when it cannot be one, and during a save. */
inline constexpr Slot<&gFormsHFT, 5, DMField *(LexObj dict)> TSDMFieldFromLexObj;
/** The field's own dictionary. */
inline constexpr Slot<&gFormsHFT, 6, LexObj(DMField *field)> TSDMFieldGetLexObj;
/** The field is one that the other slots work on. False for null. */
inline constexpr Slot<&gFormsHFT, 7, KRBool(DMField *field)> TSDMFieldIsValid;
/** A field that has a value of its own: a leaf, or the top of a group of same-named widgets. */
inline constexpr Slot<&gFormsHFT, 8, KRBool(DMField *field)> TSDMFieldIsTerminal;
/** `V`, inherited and shared by same-named fields; a button without one reads as the name Off. */
inline constexpr Slot<&gFormsHFT, 9, LexObj(DMField *field)> TSDMFieldGetValue;
/** The word of flags that `which`, a TSFlagWord, names; 0 for any other. */
inline constexpr Slot<&gFormsHFT, 10, std::uint32_t(DMField *field, std::int32_t which)> TSDMFieldGetFlags;
/** Full name, raw bytes; the plug-in's memory, valid as long as the field. */
inline constexpr Slot<&gFormsHFT, 11, const char *(DMField *field)> TSDMFieldGetName;
/** The field's own dictionary is a widget. */
inline constexpr Slot<&gFormsHFT, 12, KRBool(DMField *field)> TSDMFieldIsAnnot;

/**
 * Changes the value, with all that hangs on it: observers may rewrite or refuse, all same-named widgets show it. False
 * when refused, for a non-terminal field, and for an on-state that no widget has. Does not test for read-only.
 */
inline constexpr Slot<&gFormsHFT, 13, KRBool(DMField *field, LexObj value)> TSDMFieldSetValue;
/**
 * Sets a word of flags, `which` as above. Annotation flags only where the field is a widget: showing a hidden one
 * builds its appearance. Field flags go to the top of the group and count for all fields below that have none of their
 * own.
 */
inline constexpr Slot<&gFormsHFT, 14, void(DMField *field, std::int32_t which, std::uint32_t value)> TSDMFieldSetFlags;
/** Stores an `Opt` array as it is; null, or an empty one, removes it. 0 on success, 1 for a field that is not valid. */
inline constexpr Slot<&gFormsHFT, 15, std::int32_t(DMField *field, LexObj options)> TSDMFieldSetOptions;
/** Back to `DV`; a choice field without one takes its first choice. False as TSDMFieldSetValue gives it. */
inline constexpr Slot<&gFormsHFT, 16, KRBool(DMField *field)> TSDMFieldReset;

// Data exchange. `fields` is null or empty for all fields, or an array of full names (strings), each alone or at the
// head of an array of keys to export with the field; `listedOnly` not 0 takes these, 0 all but these. `includeEmpty`
// not 0 takes fields without a value too. An FDF that comes back is the caller's, for LexDocClose. "Old" entries also
// take references to field dictionaries in place of names, and serve callers of version 1.0.

/** As ExportAsFDF97, without a submit name. */
inline constexpr Slot<&gFormsHFT, 17,
                      LexDoc(DMDoc doc, LexObj fields, KRBool listedOnly, KRBool includeEmpty, KRBool forFile,
                             KRPathName relativeToPath)>
    OldExportAsFDF;
/** As ExportAsHtml, without a submit name. */
inline constexpr Slot<&gFormsHFT, 18,
                      void(DMDoc doc, LexObj fields, KRBool listedOnly, KRBool includeEmpty, KRFile file)>
    OldExportAsHtml;
/** Sets the fields that an FDF names. False when a part of it was left undone. Raises for what is no form data. */
inline constexpr Slot<&gFormsHFT, 19, KRBool(DMDoc doc, LexDoc fdf)> OldImportAnFDF;
/** Resets the fields, but push buttons, and calculates once. */
inline constexpr Slot<&gFormsHFT, 20, void(DMDoc doc, LexObj fields, KRBool listedOnly)> ResetForm;

// Observers, called in the order of registration.

/**
 * Observes a TSServer until it is unregistered; gives an id, -1 when there is no such server. Both procedures are kept,
 * `failure` may be null.
 */
inline constexpr Slot<
    &gFormsHFT, 21, std::int32_t(std::int32_t server, TSNotifyProc proc, TSNotifyFailureProc failure, void *clientData)>
    TessellaRegisterObserver;
/** Ends an observation, never from within a broadcast of that server. Raises KRErrBadParam for an unknown id. */
inline constexpr Slot<&gFormsHFT, 22, void(std::int32_t server, std::int32_t id)> TessellaUnregisterObserver;

/** The script engine's context and global object, made if needed, the engine's own. True when both are there. */
inline constexpr Slot<&gFormsHFT, 23, KRBool(void **context, void **global)> TJSGetJSContext;
/**
 * A new FDF with the values of the fields. `forFile` not 0 leaves password fields out; 0 raises for a required field
 * without a value. `relativeToPath` and `submitName` as in TSExportParams.
 */
inline constexpr Slot<&gFormsHFT, 24,
                      LexDoc(DMDoc doc, LexObj fields, KRBool listedOnly, KRBool includeEmpty, KRBool forFile,
                             KRPathName relativeToPath, const char *submitName)>
    ExportAsFDF97;
/** Writes the values URL-encoded to an open file, from its start, passwords and all. Raises as above for what is
 * required. */
inline constexpr Slot<&gFormsHFT, 25,
                      void(DMDoc doc, LexObj fields, KRBool listedOnly, KRBool includeEmpty, KRFile file,
                           const char *submitName)>
    ExportAsHtml;
/** Forms made from a template FDF do not exist here: gives 0 and changes nothing, whatever `flags` says. */
inline constexpr Slot<&gFormsHFT, 26, std::int32_t(DMDoc doc, LexDoc fdf, std::uint32_t flags)>
    OldAssembleFormAndImportFDF;
/** A new FDF as the record tells. */
inline constexpr Slot<&gFormsHFT, 27, LexDoc(const TSExportParams *params)> ExportAsFDFWithParams;

/**
 * A new form XObject of a page's contents and resources, in `target`, upright, its box's centre at the origin. The null
 * object on failure.
 */
inline constexpr Slot<&gFormsHFT, 28, LexObj(DMDoc target, DMPage page)> TSDMFormFromPage;

// Appearance streams. A layout is the caller's from TSLayoutNew to TSLayoutDelete, and gathers what is drawn into it.
// `border` and `look` may not be null. Lengths are points, 16.16. A look that is not well-formed draws nothing.

/**
 * A new, empty layout for a widget's rectangle. `rotation` is 0, 90, 180 or 270 degrees; the box starts at the origin,
 * its sides swapped for 90 and 270. Raises KRErrNoMemory.
 */
inline constexpr Slot<&gFormsHFT, 29, CStore *(const KRFixedRect *rect, std::uint16_t rotation)> TSLayoutNew;
/** Frees a layout. Null allowed. */
inline constexpr Slot<&gFormsHFT, 30, void(CStore *store)> TSLayoutDelete;
/** A new form XObject of `doc` of what was drawn; null when nothing was, and when a font cannot be had. */
inline constexpr Slot<&gFormsHFT, 31, LexObj(LexDoc doc, CStore *store)> TSLayoutCreateStream;
/** The area and its border; transparent colours are not drawn. `down` not 0: as a pressed button has it. */
inline constexpr Slot<&gFormsHFT, 32,
                      void(CStore *store, const TSBorder *border, const DMColorValue *borderColor,
                           const DMColorValue *backColor, KRBool down)>
    TSLayoutBorder;
/**
 * Text inside the border, in the default limits of the automatic size. `text` is PDFDocEncoding or marked UCS-2, ended
 * by two zero bytes. `multiLine` not 0: lines, wrapped too with `wrap`; else one line, which loses its line feeds, in
 * place. A size that was automatic comes back in the look of a multi-line text.
 */
inline constexpr Slot<&gFormsHFT, 33,
                      void(CStore *store, KRBool multiLine, KRBool wrap, const TSBorder *border, TextAppearance *look,
                           char *text)>
    TSLayoutText;
/** For who wrote `V` himself: notes that the field has one and lets observers of TSFieldWillDisplay see it. */
inline constexpr Slot<&gFormsHFT, 34, void(DMDoc doc, DMField *field)> TSDMFieldValueChanged;
/** Rotation of a widget in degrees, 0 to 359; taken from its appearance where `MK` does not tell. */
inline constexpr Slot<&gFormsHFT, 35, std::int32_t(DMAnnot annot)> TSDMWidgetGetRotation;
/**
 * The look that the field's text has, `DA` and `Q`, inherited; what is missing for it is made in the document. Raises
 * KRErrBadField for a `DA` that cannot be read, KRErrBadResource for resources that are none.
 */
inline constexpr Slot<&gFormsHFT, 36, void(DMField *field, TextAppearance *look)> TSDMFieldGetDefaultTextAppearance;
/**
 * Changes the look of the field and of all that inherits from it; null removes what the field itself holds. `look`
 * comes back with its font's resource name. Raises KRErrBadParam for a look that is not well-formed.
 */
inline constexpr Slot<&gFormsHFT, 37, void(DMField *field, TextAppearance *look)> TSDMFieldSetDefaultTextAppearance;
/** A widget's border, `BS` else `Border`; false, and the default, with neither, and for a `BS` of width 0. */
inline constexpr Slot<&gFormsHFT, 38, KRBool(DMAnnot annot, TSBorder *border)> TSDMWidgetGetBorder;
/** Writes a widget's `BS`, and marks its appearance as due. Null means the default, solid of width 1. */
inline constexpr Slot<&gFormsHFT, 39, void(DMAnnot annot, const TSBorder *border)> TSDMWidgetSetBorder;
/** Colours of a widget's border and area, `MK` `BC` and `BG`; transparent when absent. Either may be null. */
inline constexpr Slot<&gFormsHFT, 40, void(DMAnnot annot, DMColorValue *borderColor, DMColorValue *backColor)>
    TSDMWidgetGetAreaColors;
/** Writes them, and marks the appearance as due. Null leaves a colour alone; transparent removes its key. */
inline constexpr Slot<&gFormsHFT, 41,
                      void(DMAnnot annot, const DMColorValue *borderColor, const DMColorValue *backColor)>
    TSDMWidgetSetAreaColors;
/** A dialog that chooses a look; false without a window and when the user cancelled. `params` is the dialog's. */
inline constexpr Slot<&gFormsHFT, 42, KRBool(void *params)> mdDisplayAppearanceEx;
/** As TSLayoutText, with limits of the automatic size; negative means the defaults, 4 and 144. */
inline constexpr Slot<&gFormsHFT, 43,
                      void(CStore *store, KRBool multiLine, KRBool wrap, const TSBorder *border, TextAppearance *look,
                           char *text, KRFixed minSize, KRFixed maxSize)>
    TSLayoutTextEx;
/**
 * Places a caption and an icon by a `TP` code: 0 caption alone, 1 icon alone, 2 caption below the icon, 3 above it, 4
 * to its right, 5 to its left, 6 on top of it. Either may be absent: the null object, null.
 */
inline constexpr Slot<&gFormsHFT, 44,
                      void(CStore *store, std::int32_t layout, LexObj icon, const TSBorder *border,
                           TextAppearance *look, char *text)>
    TSLayoutIconText;
/** The engine and what runs in it; true when there is an engine. `out` is the caller's. */
inline constexpr Slot<&gFormsHFT, 45, KRBool(TJSContextRec *out)> TJSGetJSContextEx;

} // namespace Forms
