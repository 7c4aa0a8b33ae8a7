// The table "Forms": the forms plug-in for other plug-ins, and for the command line. 45 slots, numbered for good.
//
// Fetched with KRGetHFT after the host has initialised its plug-ins; null when the forms plug-in is not loaded. The
// entries stand in a namespace, since the plug-in itself defines functions of these names. An operation whose module
// is not built raises a registered error whose text says so.
// SPDX-License-Identifier: MIT
#pragma once

#include "FormsTypes.h"
#include "HFT.h"

inline KRHFT gFormsHFT = nullptr;
inline constexpr const char *FormsHFTName = "Forms";
inline constexpr std::uint32_t FormsHFTVersion = KRVersion(1, 1);
inline constexpr int FormsHFTCount = 45;

struct TJSContextRec;

namespace Forms {

// The form and its fields. A lookup by name or an enumeration loads the fields; nothing is loaded before.

/** The document has a valid form. */
inline constexpr Slot<&gFormsHFT, 1, KRBool(DMDoc doc)> IsDMDocTessella;
inline constexpr Slot<&gFormsHFT, 2, void(DMDoc doc)> TSDMDocLoadDMFields;
/** Fields in the order of the name index. `firstOfNameOnly` gives one field for each name. */
inline constexpr Slot<
    &gFormsHFT, 3, void(DMDoc doc, KRBool terminalOnly, KRBool firstOfNameOnly, TSFieldEnumProc proc, void *clientData)>
    TSDMDocEnumDMFields;
/** Head of the fields of this full name (raw bytes); null when there is none, and during a save. */
inline constexpr Slot<&gFormsHFT, 4, DMField *(DMDoc doc, const char *name)> TSDMDocGetDMFieldFromName;
/** The field of a field dictionary, made if needed; null when it cannot be one. */
inline constexpr Slot<&gFormsHFT, 5, DMField *(LexObj dict)> TSDMFieldFromLexObj;
inline constexpr Slot<&gFormsHFT, 6, LexObj(DMField *field)> TSDMFieldGetLexObj;
inline constexpr Slot<&gFormsHFT, 7, KRBool(DMField *field)> TSDMFieldIsValid;
/** A field that has a value of its own: a leaf, or the top of a group of same-named widgets. */
inline constexpr Slot<&gFormsHFT, 8, KRBool(DMField *field)> TSDMFieldIsTerminal;
/** `V`, inherited and shared by same-named fields; a button without one reads as the name Off. */
inline constexpr Slot<&gFormsHFT, 9, LexObj(DMField *field)> TSDMFieldGetValue;
/** The word of flags that `which`, a TSFlagWord, names; 0 for any other, and for an invalid field. */
inline constexpr Slot<&gFormsHFT, 10, std::uint32_t(DMField *field, std::int32_t which)> TSDMFieldGetFlags;
/** Full name, raw bytes; the plug-in's memory, valid as long as the field. */
inline constexpr Slot<&gFormsHFT, 11, const char *(DMField *field)> TSDMFieldGetName;
/** The field's dictionary is a widget. */
inline constexpr Slot<&gFormsHFT, 12, KRBool(DMField *field)> TSDMFieldIsAnnot;

/**
 * Changes the value, with all that hangs on it: observers may rewrite or refuse, all same-named widgets show it. False
 * when refused, for a non-terminal field, and for an on-state that no widget has. Does not test for read-only.
 */
inline constexpr Slot<&gFormsHFT, 13, KRBool(DMField *field, LexObj value)> TSDMFieldSetValue;
inline constexpr Slot<&gFormsHFT, 14, void(DMField *field, std::int32_t which, std::uint32_t value)> TSDMFieldSetFlags;
/** An `Opt` array, or null to remove it. 0 on success. */
inline constexpr Slot<&gFormsHFT, 15, std::int32_t(DMField *field, LexObj options)> TSDMFieldSetOptions;
/** Back to `DV`; a choice field without one takes its first choice. */
inline constexpr Slot<&gFormsHFT, 16, KRBool(DMField *field)> TSDMFieldReset;

// Data exchange. Field lists are null, an array of names or dictionaries, or one of either.

inline constexpr Slot<&gFormsHFT, 17, LexDoc(DMDoc doc, LexObj fields, KRBool listedOnly, KRBool noEmpty)>
    OldExportAsFDF;
inline constexpr Slot<&gFormsHFT, 18, KRBool(DMDoc doc, LexObj fields, KRBool listedOnly, KRBool noEmpty, KRFile file)>
    OldExportAsHtml;
inline constexpr Slot<&gFormsHFT, 19, KRBool(DMDoc doc, LexDoc fdf)> OldImportAnFDF;
inline constexpr Slot<&gFormsHFT, 20, void(DMDoc doc, LexObj fields, KRBool listedOnly)> ResetForm;

/** Observes a TSServer; gives an id, -1 when there is no such server. `failure` may be null. */
inline constexpr Slot<
    &gFormsHFT, 21, std::int32_t(std::int32_t server, TSNotifyProc proc, TSNotifyFailureProc failure, void *clientData)>
    TessellaRegisterObserver;
inline constexpr Slot<&gFormsHFT, 22, void(std::int32_t server, std::int32_t id)> TessellaUnregisterObserver;

/** The script engine's context and global object. */
inline constexpr Slot<&gFormsHFT, 23, KRBool(void **context, void **global)> TJSGetJSContext;
inline constexpr Slot<&gFormsHFT, 24,
                      LexDoc(DMDoc doc, LexObj fields, KRBool listedOnly, KRBool noEmpty, const char *submitName)>
    ExportAsFDF97;
inline constexpr Slot<&gFormsHFT, 25,
                      KRBool(DMDoc doc, LexObj fields, KRBool listedOnly, KRBool noEmpty, const char *submitName,
                             KRFile file)>
    ExportAsHtml;
inline constexpr Slot<&gFormsHFT, 26, std::int32_t(DMDoc doc, LexDoc fdf, std::uint32_t flags)>
    OldAssembleFormAndImportFDF;
inline constexpr Slot<&gFormsHFT, 27, LexDoc(const void *params)> ExportAsFDFWithParams;

/** A form XObject of a page's contents, in `target`; null on failure. */
inline constexpr Slot<&gFormsHFT, 28, LexObj(DMDoc target, DMPage page)> TSDMFormFromPage;

// Appearance streams. A layout belongs to the caller until TSLayoutDelete; `border` and `look` may not be null.

/** `rotation` is 0, 90, 180 or 270 degrees; the box starts at the origin, its sides swapped for 90 and 270. */
inline constexpr Slot<&gFormsHFT, 29, CStore *(const KRFixedRect *rect, std::uint16_t rotation)> TSLayoutNew;
/** Null allowed. */
inline constexpr Slot<&gFormsHFT, 30, void(CStore *store)> TSLayoutDelete;
/** The form XObject; null when nothing was drawn. */
inline constexpr Slot<&gFormsHFT, 31, LexObj(LexDoc doc, CStore *store)> TSLayoutCreateStream;
inline constexpr Slot<&gFormsHFT, 32,
                      void(CStore *store, const TSBorder *border, const DMColorValue *borderColor,
                           const DMColorValue *backColor, KRBool down)>
    TSLayoutBorder;
/** `text` is PDFDocEncoding or marked UCS-2. A single line loses its line feeds, in place. */
inline constexpr Slot<&gFormsHFT, 33,
                      void(CStore *store, KRBool multiLine, KRBool wrap, const TSBorder *border, TextAppearance *look,
                           char *text)>
    TSLayoutText;
/** Marks the field's value as changed and lets observers of server 10 see it. */
inline constexpr Slot<&gFormsHFT, 34, void(DMDoc doc, DMField *field)> TSDMFieldValueChanged;
/** Degrees. */
inline constexpr Slot<&gFormsHFT, 35, std::int32_t(DMAnnot annot)> TSDMWidgetGetRotation;
/** Raises KRErrBadField and KRErrBadResource. */
inline constexpr Slot<&gFormsHFT, 36, void(DMField *field, TextAppearance *look)> TSDMFieldGetDefaultTextAppearance;
/** Null removes what the field itself holds. Raises KRErrBadParam for a look that is not well-formed. */
inline constexpr Slot<&gFormsHFT, 37, void(DMField *field, TextAppearance *look)> TSDMFieldSetDefaultTextAppearance;
/** False when the widget has no border. */
inline constexpr Slot<&gFormsHFT, 38, KRBool(DMAnnot annot, TSBorder *border)> TSDMWidgetGetBorder;
/** Null means the default, solid of width 1. */
inline constexpr Slot<&gFormsHFT, 39, void(DMAnnot annot, const TSBorder *border)> TSDMWidgetSetBorder;
/** Either colour may be null. */
inline constexpr Slot<&gFormsHFT, 40, void(DMAnnot annot, DMColorValue *borderColor, DMColorValue *backColor)>
    TSDMWidgetGetAreaColors;
inline constexpr Slot<&gFormsHFT, 41,
                      void(DMAnnot annot, const DMColorValue *borderColor, const DMColorValue *backColor)>
    TSDMWidgetSetAreaColors;
/** The appearance chooser; false without a window or when the user cancelled. */
inline constexpr Slot<&gFormsHFT, 42, KRBool(void *params)> mdDisplayAppearanceEx;
/** Limits of the automatic size in points; negative means the defaults, 4 and 144. */
inline constexpr Slot<&gFormsHFT, 43,
                      void(CStore *store, KRBool multiLine, KRBool wrap, const TSBorder *border, TextAppearance *look,
                           char *text, KRFixed minSize, KRFixed maxSize)>
    TSLayoutTextEx;
/** Places a caption and an icon by a `TP` code 0 to 6. */
inline constexpr Slot<&gFormsHFT, 44,
                      void(CStore *store, std::int32_t layout, LexObj icon, const TSBorder *border,
                           TextAppearance *look, char *text)>
    TSLayoutIconText;
inline constexpr Slot<&gFormsHFT, 45, KRBool(TJSContextRec *out)> TJSGetJSContextEx;

} // namespace Forms
