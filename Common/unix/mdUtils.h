// The platform layer's small services: the resource shell, assertions, font width records, the cursor.
//
// No toolkit call stands here. A window needs a toolkit: its layer installs one mdToolkit before mdInit, and nothing
// else of the plug-in makes widgets of its own accord. Without it everything answers as on a machine with no display.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "KRTypes.h"

/** What the platform layer asks of a toolkit. Widgets travel as void pointers. */
struct mdToolkit {
    /** An unmapped application shell of the class "Tessella", 1 by 1, centred on the screen of `topWidget`. */
    void *(*createShell)(void *topWidget);
    void (*destroyShell)(void *shell);
    /** Adds the plug-in's actions for translations. */
    void (*addActions)(void *shell);
};

/** Installs the toolkit; null takes it away. The record must outlive the plug-in. */
void mdSetToolkit(const mdToolkit *toolkit);
/** Null when none is installed. */
const mdToolkit *mdGetToolkit();

/** Makes the plug-in's shell, whose class the catalogue's resources are looked up under. Null without a window. */
void *mdInitUtils();
/** Destroys the shell. Texts already fetched as resources stay valid only as long as it. */
void mdTermUtils();
/** The shell; null until mdInitUtils ran, and without a window. */
void *mdGetRootWidget();

/** Prints "Assert %s in file %s, line %d." to standard error, and goes on. */
void mdAssert(const char *expression, const char *file, std::int32_t line);

/** Without regard to case as the locale has it: -1, 0 or 1. Null reads as the empty text. */
int mdStricmp(const char *a, const char *b);

/** The user asked to stop. Asking consumes the request. */
bool mdGetCancelState();

/** Only id 0, the calculation cursor, exists; null for all others and without a window. The host's memory. */
SCCursor mdGetCursor(std::uint16_t id);
/** Cursors are cached until the process ends: this ends the use of one, and frees nothing. */
void mdReleaseCursor(SCCursor cursor);

/** How a font's record begins. 16-bit numbers in machine order, thousandths of the em. */
struct mdFontRecord {
    /** NUL-terminated; "Times" stands for Times-Roman. */
    char name[32];
    std::int16_t bboxLeft, bboxBottom, bboxRight, bboxTop;
    std::int16_t ascender;
    /** Negative. */
    std::int16_t descender;
    /** 0 when there is none. */
    std::int16_t capHeight, xHeight;
    /** Tenths of a degree, counter-clockwise. */
    std::int16_t italicAngle;
    /** 256 widths by code follow, or 1 for a font of fixed pitch. Zero bytes fill the record up to its size. */
    std::uint16_t widthCount;
};
static_assert(sizeof(mdFontRecord) == 52);

/** Width of a code: PDFDocEncoding for the Latin fonts, the built-in encoding for Symbol and ZapfDingbats. */
std::int16_t mdFontRecordWidth(const mdFontRecord *record, std::uint8_t code);

/**
 * A copy of the width record of a base font by its name ("Times-Roman" is taken as "Times"), with its bytes in `size`;
 * null for any other name. Given back with mdReleaseData. Raises KRErrNoMemory.
 */
mdFontRecord *mdGetData(KRAtom fontName, std::uint16_t *size);
/** Null allowed. */
void mdReleaseData(mdFontRecord *record);
