// The content store: an appearance stream under way, with its box, its rotation and the resources that it needs.
//
// Callers print operators into a store and then make a form XObject of it (CStoreSave), or put its variable text in
// place of the one in a stream that stands in the document (CStoreReplace). Invariants:
// 1. `text` is NUL-terminated whenever it is not null; operators are separated by exactly one blank, and the store
//    adds no line ends.
// 2. A new store's box starts at the origin.
// 3. Nothing but CStorePrintf and CStoreAdd writes `text`.
// All lengths are 16.16 points unless said otherwise. Texts are PDFDocEncoding, or UCS-2 that starts with 254, 255.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "FormsTypes.h"

/** Metrics of a font at a size; all but `font` and `isKanji` scaled to it. */
struct CStoreMetrics {
    KRAtom font;
    KRFixed size;
    /** Height of the font's bounding box. */
    KRFixed height;
    KRFixed ascent;
    /** Negative. */
    KRFixed descent;
    KRFixed widths[256];
    bool isKanji;
};

enum CStoreFlags : std::uint32_t { CStoreUsesFont = 1, CStoreUsesXObject = 16 };

struct CStore {
    KRFixedRect bbox;
    /** Owned; null when empty. */
    char *text;
    /** Bytes in `text` without the terminator. */
    std::int32_t length;
    /** CStoreFlags. Survives CStoreClear. */
    std::uint32_t flags;
    CStoreMetrics metrics;
    /** The form behind the name FRM; null when none. */
    LexObj xobject;
    /** 0, 90, 180 or 270 degrees. */
    std::uint16_t rotation;
};

/** A block of lines under way. Only its own operations may print between its first line and its end. */
struct CStoreBlock {
    CStore *store;
    TextAppearance look;
    KRFixed margin;
    KRFixed lastX;
    bool started;
};

/** How an icon fits its place. */
struct TSFit {
    /** `A` always, `B` when too big, `S` when too small, any other never. */
    KRAtom when;
    /** `P` proportional, any other anamorphic. */
    KRAtom how;
    /** Where the slack goes, 0 to 1.0. */
    KRFixed alignX, alignY;
};

/** A font-size limit that is not given. */
inline constexpr KRFixed CStoreNoLimit = static_cast<KRFixed>(0x80000000);

// Life (miCStore.cpp).

/**
 * For a rotation of 90 or 270 the box takes the rectangle's sides crossed; what is no quarter turn is none. Raises
 * KRErrNoMemory.
 */
CStore *CStoreNew(const KRFixedRect *rect, std::uint16_t rotation);
void CStoreDelete(CStore *store);
/** Drops the text and what belongs to it; box, rotation and flags stay. */
void CStoreClear(CStore *store);
void CStoreGetBbox(const CStore *store, KRFixedRect *rect);
std::uint16_t CStoreGetRotation(const CStore *store);
/** The matrix that turns the box by the store's rotation. */
void CStoreGetMatrix(const CStore *store, KRFixedMatrix *matrix);
/** The same for sides of one's own; false, and the matrix untouched, for an angle that is no quarter turn. */
bool CStoreQuarterTurn(std::int32_t rotation, KRFixed width, KRFixed height, KRFixedMatrix *matrix);
KRFixed CStoreWidth(const CStore *store);
KRFixed CStoreHeight(const CStore *store);

struct CStoreDeleter {
    void operator()(CStore *store) const {
        CStoreDelete(store);
    }
};

// Printing (miCStore.cpp).

/**
 * Appends at most 1025 bytes made from a format of its own: %b boolean, %c text as it stands, %d integer, %f KRFixed
 * with 4 decimals, %n atom as a PDF name, %s text as a literal string; any other character behind % stands for itself.
 * Without memory the store silently goes empty, and saves as null.
 */
void CStorePrintf(CStore *store, const char *format, ...);
/** A reserved entry: does nothing. */
void CStoreSscanf(CStore *store, const char *format, ...);
/** A text as the inside of a literal string. `destination` has room for three bytes more than `capacity`. */
void CStoreSanitize(const char *source, char *destination, std::int32_t capacity);
/** Appends another store's text and takes over its resources. */
void CStoreAdd(CStore *store, const CStore *other);
void CStoreSetColor(CStore *store, const DMColorValue *color, bool fill);
/** `op` is `f` fill, `s` close and stroke, `W` clip. */
void CStoreRect(CStore *store, KRFixed x, KRFixed y, KRFixed width, KRFixed height, char op);
void CStoreCircle(CStore *store, KRFixed centerX, KRFixed centerY, KRFixed radius, char op);
void CStoreStartRectClip(CStore *store, const KRFixedRect *rect);
void CStoreEndRectClip(CStore *store);
/** Opens the marked content `tag`; KRAtomNull closes it. */
void CStoreVariableData(CStore *store, KRAtom tag);

// To and from the document (miCStoreSave.cpp, miCStoreReplace.cpp).

/** Reads a stream's text and box back; a failure leaves an empty store. */
void CStoreLoad(CStore *store, LexObj stream);
/** The form XObject; null when the store is empty, its font cannot be had or the host raised. */
LexObj CStoreSave(LexDoc doc, const CStore *store);
/**
 * A new stream with the variable part of `stream` replaced by the store's, all around it kept byte for byte, and the
 * filter kept. Resources and fonts are copies with the look's font added: the old stream stays as it was. `dr` is the
 * form's default resources. Null on failure. Not re-entrant.
 */
LexObj CStoreReplace(LexObj stream, CStore *store, const TextAppearance *look, LexObj dr);
/**
 * Gives the look another resource name when `stream` has a font of that name that is not the look's: what is drawn
 * beside the replaced part needs it. To be called before the look is drawn.
 */
void CStoreNameSplicedFont(LexObj stream, TextAppearance *look);

// Text (miCStoreText.cpp).

/**
 * One line of text, centred between bottom and top. A look of size 0 gets the largest size that fits; a negative size
 * stands for one that comes from the box alone, and is set to 0. A look that is not usable, an empty text and a
 * transparent colour draw nothing. Raises KRErrNoMemory.
 */
void CStoreSimpleText(CStore *store, KRFixed margin, TextAppearance *look, const char *text);
/**
 * The same with limits for the automatic size, 4 and 144 points where they are negative, and the choice of where it
 * comes from: with `calcSize` the box alone, without it the text in the box.
 */
void CStoreSimpleTextEx(CStore *store, KRFixed margin, const TextAppearance *look, const char *text, KRFixed minSize,
                        KRFixed maxSize, bool calcSize);
/** Null when there is no memory. */
CStoreBlock *CStoreBlockStart(CStore *store, KRFixed margin, const TextAppearance *look);
std::int32_t CStoreBlockGetNumLines(const CStoreBlock *block);
/** The bar behind line `line`. Does nothing once a line has been written. */
void CStoreBlockHighlightLine(CStoreBlock *block, std::int32_t line, const DMColorValue *color);
/** A null text only starts the text object. */
void CStoreBlockLine(CStoreBlock *block, const char *text);
/** Ends the text object, in every case, and frees the block. */
void CStoreBlockEnd(CStoreBlock *block);
/** The look's operators as they stand behind BT. Raises KRErrNoMemory, and KRErrBadParam for a look that is not usable.
 */
std::string CStoreLookText(TextAppearance look);
/** Quadding, render mode, font and size are in range. */
bool CStoreLookUsable(const TextAppearance *look);

// Measuring (miCStoreMetrics.cpp, miCStoreFlow.cpp).

/** A kanji font is measured as Helvetica for its 8-bit codes. An unknown font gives zero widths. */
void CStoreGetMetrics(KRAtom font, KRFixed size, CStoreMetrics *metrics);
KRFixed CStoreGetFontHeight(const CStoreMetrics *metrics);
KRFixed CStoreStringWidth(const CStoreMetrics *metrics, const char *text);
/** Width of a UCS-2 unit, as a fraction of the em. */
KRFixed GetUnicodeCharWidth(std::uint16_t unit, bool gothic);
/**
 * Appends one line of `text` from byte `*position` to `line` and moves the position; gives the line's width. UCS-2 text
 * starts at position 2, and `line` gets no mark.
 */
KRFixed CStoreStringFit(const CStoreMetrics *metrics, KRFixed maxWidth, const char *text, std::string &line,
                        std::int32_t *position);
/** -1 when a word is wider than `width` and words may not be broken. */
std::int32_t CStoreWrappedLineCount(const TextAppearance *look, KRFixed width, bool breakAnywhere, const char *text);
KRFixed CStoreHeightFromLineCount(const TextAppearance *look, std::int32_t count);
/** The largest size at which the text fits, to `precision`; works in look->size. */
KRFixed CStoreStringMaxFontSize(TextAppearance *look, KRFixed width, KRFixed height, bool multiLine, bool breakAnywhere,
                                KRFixed minSize, KRFixed maxSize, KRFixed precision, const char *text);
/** A size for one line from the height of the box alone. */
KRFixed CStoreCalcTextSize(const KRFixedRect *rect, KRAtom font, KRFixed margin);

/** Several lines. An automatic size is written into the look. */
void CStoreFlowText(CStore *store, bool wrap, KRFixed margin, TextAppearance *look, const char *text);
void CStoreFlowTextEx(CStore *store, bool wrap, KRFixed margin, TextAppearance *look, const char *text, KRFixed minSize,
                      KRFixed maxSize);

// Borders (miCStoreBorder.cpp). A null rectangle means the store's box; `width` is 16.16, and with 0 the background
// alone is drawn.

void CStoreDrawBorder(CStore *store, const KRFixedRect *rect, std::int32_t style, KRFixed width,
                      const DMColorValue *borderColor, const DMColorValue *backColor, bool down);
void CStoreDrawCircularBorder(CStore *store, const KRFixedRect *rect, std::int32_t style, KRFixed width,
                              const DMColorValue *borderColor, const DMColorValue *backColor, bool down);

// Captions and icons, and the entries for other plug-ins (miCStoreLayout.cpp).

/**
 * Places a caption and an icon by a `TP` code 0 to 6. False when the caption does not fit the box. `isDingbat` centres
 * by the glyph's height, not by the font's.
 */
bool CStoreLayoutIconText(CStore *store, const TSFit *fit, KRFixed margin, std::int32_t layout, LexObj icon,
                          const TextAppearance *look, const char *text, bool isDingbat);
void GetFitMatrix(const TSFit *fit, const KRFixedRect *dest, const KRFixedRect *src, KRFixedMatrix *matrix);
/** Border width as a margin: doubled for the styles beveled and inset, which draw two rims. */
KRFixed CStoreBorderMargin(const TSBorder *border);
/** The store's inside behind a border of this margin, as CStoreStartRectClip takes it. */
KRFixedRect CStoreInsideRect(const CStore *store, KRFixed margin);

CStore *TSLayoutNew(const KRFixedRect *rect, std::uint16_t rotation);
void TSLayoutDelete(CStore *store);
LexObj TSLayoutCreateStream(LexDoc doc, CStore *store);
void TSLayoutBorder(CStore *store, const TSBorder *border, const DMColorValue *borderColor,
                    const DMColorValue *backColor, bool down);
void TSLayoutText(CStore *store, bool multiLine, bool wrap, const TSBorder *border, TextAppearance *look, char *text);
void TSLayoutTextEx(CStore *store, bool multiLine, bool wrap, const TSBorder *border, TextAppearance *look, char *text,
                    KRFixed minSize, KRFixed maxSize);
void TSLayoutIconText(CStore *store, std::int32_t layout, LexObj icon, const TSBorder *border, TextAppearance *look,
                      char *text);
