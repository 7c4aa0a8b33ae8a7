// The data of a widget: what it is, read and written in its annotation, in the appearance characteristics `MK`, and in
// its field.
//
// Getters give defaults where the document says nothing or nonsense. Setters of `MK` mark the appearance as due. Texts
// of records are in host encoding.
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Common/src/miEStr.h"
#include "DocModelHFT.h"
#include "FormsAuthoringHFT.h"
#include "FormsTypes.h"
#include "LexHFT.h"
#include "appearance/miCStore.h"

// What a widget is (DMWidget.cpp).

/**
 * One of this system's own: it has `MK`, or no appearance at all. Any other widget only carries a foreign stream, whose
 * look is kept. `*mk` (may be null) gets the `MK` dictionary or the null object.
 */
bool TSDMWidgetIsNative(DMAnnot annot, LexObj *mk);
/**
 * Changes the field's type to what the widget type asks for and sets the type's bits in `*fieldFlags`. Raises
 * KRErrTypeShared for one of several widgets, KRErrBadParam otherwise.
 */
void TSDMWidgetSetSubType(DMAnnot annot, KRAtom type, std::uint32_t *fieldFlags);
/** Full name in host encoding, cut to `size`; the empty text without a field. */
void TSDMWidgetGetTitle(DMAnnot annot, char *buffer, std::int32_t size);
/** `TU`, as a new string; empty when there is none. */
EStr *TSDMWidgetGetUserName(DMAnnot annot);
EStr *TSDMFieldGetUserName(DMField *field);
/** An empty text removes `TU`. */
void TSDMFieldSetUserName(DMField *field, const EStr *name);
/** `TM`, as a new string. For data exchange. */
EStr *TSDMFieldGetSubmitName(DMField *field);
/** The rectangle in points; after a stretch (`OH`) as it was when the widget was made. */
void TSDMWidgetGetRect(DMAnnot annot, KRFixedRect *rect);
/** A size as it shows after a stretch. Sizes below 1 point stay. */
KRFixed TSDMWidgetGetTextSize(DMAnnot annot, KRFixed size);
/** Degrees. */
std::int32_t TSDMWidgetGetRotation(DMAnnot annot);
/** The colour of the annotation itself: always red. */
void TSDMWidgetGetColor(DMAnnot annot, DMColorValue *color);

/** Solid of width 1, the border of a widget that does not tell. */
TSBorder TSBorderDefault();
/** `BS`, else `Border`; false, and the default, with neither. With `BS`: whether the width is above 0. */
bool TSDMWidgetGetBorder(DMAnnot annot, TSBorder *border);
/** The default (null) is written by removing the keys. */
void TSDMWidgetSetBorder(DMAnnot annot, const TSBorder *border);
/** `MK` `BC` and `BG`; either may be null. */
void TSDMWidgetGetAreaColors(DMAnnot annot, DMColorValue *borderColor, DMColorValue *backColor);
/** Transparent removes the key. */
void TSDMWidgetSetAreaColors(DMAnnot annot, const DMColorValue *borderColor, const DMColorValue *backColor);

// Entries of `MK`.

LexObj TSDMWidgetGetObj(DMAnnot annot, KRAtom key);
/** The null object removes the key. */
void TSDMWidgetSetObj(DMAnnot annot, KRAtom key, LexObj value);
/** Text of the entry in its own encoding, always ended by two NUL bytes. */
void TSDMWidgetGetString(DMAnnot annot, KRAtom key, char *buffer, std::int32_t size);
/** `text` is PDFDocEncoding or marked UCS-2; empty or null removes the key. */
void TSDMWidgetSetString(DMAnnot annot, KRAtom key, const char *text);
/** 0 when absent. */
std::int32_t TSDMWidgetGetInt(DMAnnot annot, KRAtom key);
void TSDMWidgetSetInt(DMAnnot annot, KRAtom key, std::int32_t value);

void TSDMAnnotInitFit(TSFit *fit);
void TSDMAnnotGetFit(DMAnnot annot, TSFit *fit);
/** Only for native widgets. Defaults are written by removing keys. */
void TSDMAnnotSetFit(DMAnnot annot, const TSFit *fit);

// The record (DMWidgetData.cpp).

/** Raises KRErrNoMemory. */
TSWidgetData *TSDMWidgetAcquireData(DMAnnot annot);
/** Holder of a record without a handler's own part: what a handler acquires until it is whole. */
struct TSWidgetDataDeleter {
    void operator()(TSWidgetData *data) const;
};
using TSWidgetDataPtr = std::unique_ptr<TSWidgetData, TSWidgetDataDeleter>;
/** Sets bits in first->mixed: what differs. TSMixedType is set in every case. */
void TSDMWidgetCompareData(TSWidgetData *first, const TSWidgetData *other);
/** Writes what `mixed` leaves. Raises KRErrBadParam without a title and KRErrDefineFailed. */
void TSDMWidgetWriteData(DMAnnot annot, TSWidgetData *data);
/** Null allowed. */
void TSDMWidgetReleaseData(TSWidgetData *data);
/** Defaults of a widget that has no field yet. */
void TSDMDocGetFormData(DMDoc doc, TSWidgetData *data);

/** The annotation flags that belong to a widget's data. */
inline constexpr std::uint32_t TSWidgetAnnotFlags = DMAnnotHidden | DMAnnotPrint | DMAnnotNoView;

/** A TSValidity: whether the widget may be called `name`. */
std::int32_t TSDMWidgetValidateName(DMDoc doc, DMAnnot annot, KRAtom type, const char *name);
/** The same for a record whose trailing dots are taken off; `sizeText` is the "auto" text or 4 to 144 points. */
std::int32_t TSDMWidgetValidateData(DMDoc doc, DMAnnot annot, TSWidgetData *data, const char *sizeText);

// Values and choices (DMWidgetValue.cpp).

/** The value's text in host encoding, KRmalloc'd; of several choices the first; null when there is none. */
char *TSDMWidgetAcquireStringValue(DMAnnot annot);
/**
 * Sets the value from host text, as a string (LexString) or a name (LexName). Null or empty is the null value; what
 * TSDMWidgetAcquireStringValue gives leaves several choices as they are.
 */
bool TSDMWidgetSetStringValue(DMAnnot annot, LexType type, const char *text);

/** The text of an object in host encoding; empty when it has none. */
std::string TSHostTextOf(LexObj obj);
/** A direct string object of host text. */
LexObj TSNewTextOf(LexDoc doc, const std::string &host);
/** Flags with these bits on or off. */
constexpr std::uint32_t TSWithFlags(std::uint32_t flags, std::uint32_t bits, bool on) {
    return on ? flags | bits : flags & ~bits;
}

/** What a choice field offers. An export may be missing, and then the value is what is shown. */
struct TSChoices {
    std::vector<std::string> values;
    /** Empty, or as long as `values`. */
    std::vector<std::optional<std::string>> exports;
};
void TSDMWidgetAcquireChoices(DMAnnot annot, TSChoices *choices);
/** Raises KRErrBadParam when the field refuses. */
void TSDMWidgetWriteChoices(DMAnnot annot, const TSChoices &choices);
/** For C-minded callers, the script engine's field object among them: a TSChoices frees itself. */
void TSDMWidgetReleaseChoices(TSChoices *choices);
/** Indexes in `Opt` of the elements that are choices, in order: those that TSDMWidgetAcquireChoices reads. */
std::vector<std::int32_t> TSOptionsGetChoices(LexObj options);
/** What an element of `Opt` shows, in host encoding. */
std::string TSOptionGetShownText(LexObj element);
/** Index of the choice that is shown as `text`, else `missing`. */
std::int32_t TSDMWidgetGetChoiceIndex(const TSChoices &choices, const char *text, std::int32_t missing);
/** The value steps to the next option; a list of one at its option is reset. For the window's combo boxes. */
void TSDMWidgetSetNextOption(DMAnnot annot);

/** `MaxLen` in characters; 0 when there is none, -1 for an invalid field. */
std::int16_t TSDMFieldGetMaxLen(DMField *field);
/** 0 or less removes it. */
void TSDMFieldSetMaxLen(DMField *field, std::int16_t length);
/** `TI`, index of the first line that a list shows. */
std::int16_t TSDMFieldGetTopIndex(DMField *field);
void TSDMFieldSetTopIndex(DMField *field, std::int16_t index);
/** Index of the default value among the options; -1 when it is none of them, and when there is none. */
std::int16_t TSDMFieldGetDefaultIndex(DMField *field);
/** The widget wrapped its text: line ends in the value came from the widget. For the window's text edit. */
void TSDMFieldSetWidgetWrappedText(DMField *field);
void TSDMFieldClearWidgetWrappedText(DMField *field);

// Scripts (DMWidgetScript.cpp).

struct TSScriptData {
    /** `General`, `Custom`, or the name of a built-in format function. */
    KRAtom formatType;
    DMField *field;
    EStrPtr format, keystroke, validate, calculate, spare;
};
/** Null for a widget without a field. */
std::unique_ptr<TSScriptData> TSDMWidgetAcquireScriptData(DMAnnot annot);
/** Writes the scripts that differ. Raises what writing raises. */
void TSDMWidgetWriteScriptData(DMAnnot annot, TSScriptData *data);
void TSDMWidgetReleaseScriptData(std::unique_ptr<TSScriptData> data);
KRAtom TSDMWidgetGetScriptFormatType(const EStr *format, const EStr *keystroke);

// Appearance (DMWidgetFace.cpp).

/** Draws a native widget's frame into the store and gives null; else the normal appearance, if an indirect stream. */
LexObj TSDMWidgetWriteAppearance(DMAnnot annot, CStore *store);
/** `state` KRAtomNull for a face without states; the null object removes. */
void TSDMWidgetSetNormalFace(DMAnnot annot, KRAtom state, LexObj face);
/**
 * The look to draw the field's text with: its own, in a font that the form can have. The size is the one that it was
 * given, as a stretched widget's appearance is made for its original rectangle and stretched by the viewer. A font
 * outside the base fonts is replaced by the base font that is nearest by its name. The resource name is the one under
 * which the form's resources hold the font.
 */
void TSDMWidgetGetDrawingLook(DMField *field, TextAppearance *look);
/** The same choice for a base font alone: makes `look` drawable in `doc`. */
void TSLookUseDrawableFont(LexDoc doc, TextAppearance *look);
