// Push buttons, and what check boxes and radio buttons share with them.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "widgets/DMWidget.h"

/** Captions and icons of a button by face. */
enum WButtonSlot : std::int32_t { WButtonNormal = 0, WButtonRollover = 1, WButtonDown = 2, WButtonSlots = 3 };

/** Behind a button's TSWidgetData. */
struct TSButtonData {
    /** `H`: I, O, P, T or N. */
    KRAtom highlight;
    /** `CA`, `RC`, `AC`: host text. */
    std::string captions[WButtonSlots];
    /** `I`, `RI`, `IX`: forms, or the null object. */
    LexObj icons[WButtonSlots];
    /** `TP`. */
    std::int32_t layout;
    TSFit fit;
};

/** Host text of a caption. */
std::string TSDMWidgetGetCaptionEx(DMAnnot annot, std::int32_t slot);
/** An empty text removes it. */
void TSDMWidgetSetCaptionEx(DMAnnot annot, const EStr *text, std::int32_t slot);
LexObj TSDMWidgetGetIconEx(DMAnnot annot, std::int32_t slot);
/** The null object removes it. */
void TSDMWidgetSetIconEx(DMAnnot annot, LexObj icon, std::int32_t slot);

/**
 * Turns a check box or radio button on, or off where its flags allow: the field's value changes with all that hangs on
 * it. Nothing for a widget without states.
 */
void WButtonToggle(DMAnnot annot);

// For handlers of the button family, signatures among them.

/** Runs the annotation's action U, if it has one. What the action raises is dropped. */
void WButtonPress(DMAnnot annot);
void WButtonClick(SCWidgetHandler *handler, DMAnnot annot, SCPageView view, std::int16_t x, std::int16_t y,
                  std::uint32_t flags, std::int16_t clicks);
/** Space, return and line feed press the button: its action runs, then it toggles. */
void WButtonDoKeyDown(SCWidgetHandler *handler, DMAnnot annot, std::uint16_t key, std::uint32_t flags);
void WButtonResize(SCWidgetHandler *handler, DMAnnot annot, const KRFixedRect *rect);
void WButtonScroll(SCWidgetHandler *handler, DMAnnot annot);

TSWidgetData *WButton_AcquireData(DMAnnot annot);
void WButton_WriteData(DMAnnot annot, TSWidgetData *data);
void WButton_ReleaseData(TSWidgetData *data);
