// Tables of the host's siblings. Each may be absent: a plug-in asks KRGetHFT for the name and version that stand here,
// and tests its table for null before the first call.
// SPDX-License-Identifier: MIT
#pragma once

#include "HFT.h"

/** "NetAnchor": the web browser. */
inline KRHFT gNLHFT = nullptr;
inline constexpr std::uint32_t NetAnchorHFTVersion = 1;
inline constexpr int NetAnchorHFTCount = 1;
/** Opens a URL. `doc` is the view that asks, or null; `flags` is 0. True when the browser took it. */
inline constexpr Slot<&gNLHFT, 1, KRBool(SCDoc doc, const char *url, std::uint32_t flags)> NLOpenURL;

/** "PostOut": mail. */
inline KRHFT gPostOutHFT = nullptr;
inline constexpr std::uint32_t PostOutHFTVersion = KRVersion(1, 0);
inline constexpr int PostOutHFTCount = 1;
/**
 * Starts a mail with an attachment, a Unix path. Texts are host text; all but `to` may be null. `showDialog` is 1: the
 * user sees it before it goes. True when it was handed over.
 */
inline constexpr Slot<&gPostOutHFT, 1,
                      KRBool(SCDoc doc, KRBool showDialog, const char *to, const char *cc, const char *bcc,
                             const char *subject, const char *message, const char *attachment)>
    PostOutMailData;

/** "BaseTool": metrics of the base fonts, and text converters. */
inline KRHFT gBaseToolHFT = nullptr;
inline constexpr std::uint32_t BaseToolHFTVersion = KRVersion(4, 1);
inline constexpr int BaseToolHFTCount = 7;
/** The oldest that serves: it ends with slot 4. Who calls no later slot asks for this one. */
inline constexpr std::uint32_t BaseToolHFTOldest = KRVersion(4, 0);

/** Of a font, in thousandths of the em. */
struct BaseToolFontMetrics {
    std::int32_t bboxLeft, bboxBottom, bboxRight, bboxTop;
    std::int32_t ascender;
    /** Negative. */
    std::int32_t descender;
};
/**
 * Metrics of one of the fourteen base fonts by its `BaseFont` name ("Times" serves for "Times-Roman"), with the widths
 * of the 256 codes: PDFDocEncoding for the Latin fonts, the built-in encoding for Symbol and ZapfDingbats, 0 for a code
 * without a glyph. False for any other name.
 */
inline constexpr Slot<&gBaseToolHFT, 1,
                      KRBool(const char *fontName, BaseToolFontMetrics *metrics, std::int32_t widths[256])>
    BaseToolGetFontMetrics;
/** A converter, the table's own, never given back. */
using BaseToolConverter = struct BaseToolConverterRec *;
/** Converter by name: "Host", "PDFDocEncoding", "Shift-JIS", "UTF-8"; null for another. Lives as long as the process.
 */
inline constexpr Slot<&gBaseToolHFT, 2, BaseToolConverter(const char *name)> BaseToolGetConverter;
/** How a conversion went. */
enum BaseToolError : std::int32_t { BaseToolOK = 0, BaseToolNotConvertible = 1, BaseToolTargetTooSmall = 2 };
/**
 * Text of the converter's encoding to big-endian UCS-2 without mark; gives the bytes written, and a BaseToolError in
 * `*error` (may be null). Stops at the first character that cannot be: beyond the basic plane none can.
 */
inline constexpr Slot<&gBaseToolHFT, 3,
                      std::int32_t(BaseToolConverter converter, const char *source, std::int32_t sourceLength,
                                   char *target, std::int32_t targetSize, std::int32_t *error)>
    BaseToolHostToUCS;
/** The other way, likewise; stops at the first unit that the encoding lacks. */
inline constexpr Slot<&gBaseToolHFT, 4,
                      std::int32_t(BaseToolConverter converter, const char *source, std::int32_t sourceLength,
                                   char *target, std::int32_t targetSize, std::int32_t *error)>
    BaseToolUCSToHost;

// Since version 4.1: text strings of a PDF, in PDFDocEncoding, or in big-endian UTF-16 behind the mark 254, 255, or
// (read only) in UTF-8 behind 239, 187, 191. Each gives the bytes that the result has. When they do not fit in
// `targetSize`, nothing is written and the error is BaseToolTargetTooSmall.

/**
 * A text string of big-endian UTF-16 without mark: PDFDocEncoding when it loses nothing there and does not happen to
 * begin like a mark, else UTF-16.
 */
inline constexpr Slot<&gBaseToolHFT, 5,
                      std::int32_t(const char *source, std::int32_t sourceLength, char *target, std::int32_t targetSize,
                                   std::int32_t *error)>
    BaseToolUCSToText;
/** The same of UTF-8; what is not UTF-8 becomes U+FFFD. */
inline constexpr Slot<&gBaseToolHFT, 6,
                      std::int32_t(const char *source, std::int32_t sourceLength, char *target, std::int32_t targetSize,
                                   std::int32_t *error)>
    BaseToolUTF8ToText;
/** UTF-8 of a text string; what means nothing becomes U+FFFD. */
inline constexpr Slot<&gBaseToolHFT, 7,
                      std::int32_t(const char *source, std::int32_t sourceLength, char *target, std::int32_t targetSize,
                                   std::int32_t *error)>
    BaseToolTextToUTF8;
