// EStr: conversion between encodings, by way of UCS-2.
//
// The converters are the sibling table "BaseTool", fetched on first need. Without it only plain ASCII changes its tag;
// every other string keeps the one that it has.
// SPDX-License-Identifier: MIT
#include "Common/src/miEStr.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "Common/src/miEStrParts.h"
#include "Common/src/miUtils.h"
#include "CoreHFT.h"
#include "DocModelHFT.h"
#include "SiblingHFTs.h"

namespace {

BaseToolConverter s_pdfDoc = nullptr;
BaseToolConverter s_shiftJIS = nullptr;

constexpr std::string_view s_bullet{"\x20\x22", 2};
/** Where even the bullet is lacking, as in an ASCII locale. */
constexpr std::string_view s_questionMark{"\0?", 2};
/** A range that converts to more is halved like one that does not convert. */
constexpr std::size_t s_rangeBuffer = 4092;

bool FetchConverters() {
    if (!gBaseToolHFT) {
        gBaseToolHFT = KRGetHFT(KRAtomFromString("BaseTool"), BaseToolHFTOldest);
        s_pdfDoc = s_shiftJIS = nullptr;
    }
    if (!gBaseToolHFT) return false;
    if (!s_pdfDoc) s_pdfDoc = BaseToolGetConverter("PDFDocEncoding");
    if (!s_shiftJIS) s_shiftJIS = BaseToolGetConverter("Shift-JIS");
    return true;
}

/** Null when there is none. */
BaseToolConverter ConverterOf(std::int32_t encoding) {
    if (!FetchConverters()) return nullptr;
    if (encoding == EStrPDFDoc) return s_pdfDoc;
    if (encoding == EStrShiftJIS) return s_shiftJIS;
    return encoding == EStrHost ? static_cast<BaseToolConverter>(DMHostEncodingIsKnown(nullptr)) : nullptr;
}

template <class Convert>
std::string Doubling(std::size_t size, std::int32_t *error, Convert convert) {
    for (;; size *= 2) {
        std::string out(size, 0);
        *error = BaseToolOK;
        const std::int32_t written = convert(out.data(), static_cast<std::int32_t>(size));
        if (*error == BaseToolTargetTooSmall && size < (std::size_t{1} << 24)) continue;
        out.resize(std::min(static_cast<std::size_t>(std::max(written, 0)), size));
        return out;
    }
}

/** Units of `source` without mark, up to the first character that does not convert. */
std::string ToUnits(BaseToolConverter converter, std::string_view source, std::int32_t *error) {
    return Doubling(2 * source.size() + 4, error, [&](char *target, std::int32_t size) {
        return BaseToolHostToUCS(converter, source.data(), static_cast<std::int32_t>(source.size()), target, size,
                                 error);
    });
}

/** Converts a text from UCS-2 units without mark. */
std::string ESUCS2Host(BaseToolConverter converter, std::string_view units, std::int32_t *error) {
    return Doubling(units.size() / 2 + 4, error, [&](char *target, std::int32_t size) {
        return BaseToolUCSToHost(converter, units.data(), static_cast<std::int32_t>(units.size()), target, size, error);
    });
}

/** All of `source` as units, each character that does not convert as a bullet. Bad ranges are halved, as below. */
std::string ESHost2UCS(BaseToolConverter converter, std::string_view source, std::int32_t encoding) {
    std::int32_t error = BaseToolOK;
    std::string units = ToUnits(converter, source, &error);
    if (error == BaseToolOK) return units;
    const std::size_t first = EStrCharBytes(source, encoding);
    if (first == source.size()) return std::string(s_bullet);
    const std::size_t half = std::max(EStrCutBytes(source, source.size() / 2, encoding), first);
    return ESHost2UCS(converter, source.substr(0, half), encoding) +
           ESHost2UCS(converter, source.substr(half), encoding);
}

/** Replaces each of `count` units from `start` that the converter lacks, halving so that only bad ranges cost time. */
void EStrForceToHostR(std::string *units, std::size_t start, std::size_t count, BaseToolConverter converter,
                      std::string_view replacement) {
    if (count == 0) return;
    char buffer[s_rangeBuffer];
    std::int32_t error = BaseToolOK;
    BaseToolUCSToHost(converter, units->data() + 2 * start, static_cast<std::int32_t>(2 * count), buffer, sizeof buffer,
                      &error);
    if (error == BaseToolOK) return;
    if (count == 1) {
        units->replace(2 * start, 2, replacement);
        return;
    }
    const std::size_t half = count / 2;
    EStrForceToHostR(units, start, half, converter, replacement);
    EStrForceToHostR(units, start + half, count - half, converter, replacement);
}

/** In a text for PDFDocEncoding the unit 0xFF9B means the Euro sign. */
void MendEuro(std::string *units) {
    for (std::size_t i = 0; i + 1 < units->size(); i += 2)
        if (miUCSUnit(units->data() + i) == 0xFF9B) units->replace(i, 2, "\x20\xAC");
}

/**
 * The string's text as units. They may be more than an EStr holds, so that a long text which fits in both encodings
 * loses nothing on the way between them. False when there is no converter.
 */
bool UnitsOf(const EStr *str, std::string *units) {
    if (str->encoding == EStrUCS2) {
        *units = EStrContent(str);
        return true;
    }
    BaseToolConverter converter = ConverterOf(str->encoding);
    if (!converter) return false;
    *units = ESHost2UCS(converter, EStrContent(str), str->encoding);
    return true;
}

void EStrForceToHost(EStr *str, std::int32_t encoding) {
    std::string units;
    BaseToolConverter converter = ConverterOf(encoding);
    if (!converter || !UnitsOf(str, &units)) return;
    if (encoding == EStrPDFDoc) MendEuro(&units);
    std::int32_t error = BaseToolOK;
    ESUCS2Host(converter, s_bullet, &error);
    const std::string_view replacement = error == BaseToolOK ? s_bullet : s_questionMark;
    EStrForceToHostR(&units, 0, units.size() / 2, converter, replacement);
    const std::string text = ESUCS2Host(converter, units, &error);
    if (error == BaseToolOK) EStrSetBytesSized(str, text.data(), text.size(), encoding);
}

void SetUnits(EStr *str, const std::string &units) {
    const std::string bytes = "\xFE\xFF" + units;
    EStrSetBytesSized(str, bytes.data(), bytes.size(), EStrUCS2);
}

void ToUCS2(EStr *str) {
    std::string units;
    if (UnitsOf(str, &units)) SetUnits(str, units);
}

/** A text string of the units: the sibling decides which encoding holds them. An older one cannot; UCS-2 holds all. */
std::string TextOfUnits(const std::string &units) {
    if (!KRGetHFT(KRAtomFromString("BaseTool"), BaseToolHFTVersion)) return "\xFE\xFF" + units;
    std::string text(units.size() + 2, 0);
    const std::int32_t length = BaseToolUCSToText(units.data(), static_cast<std::int32_t>(units.size()), text.data(),
                                                  static_cast<std::int32_t>(text.size()), /*error*/ nullptr);
    text.resize(static_cast<std::size_t>(length));
    return text;
}

void ToText(EStr *str) {
    const std::string_view content = EStrContent(str);
    const bool isPDFDoc = str->encoding == EStrPDFDoc;
    // A mark begins beyond ASCII; what does not is no text that could be mistaken for a marked one.
    if (isPDFDoc && static_cast<unsigned char>(content.front()) < 0x80) return;
    std::string units;
    if (!UnitsOf(str, &units) || !ConverterOf(EStrPDFDoc)) return;
    const std::string text = TextOfUnits(units);
    const bool isMarked = text.starts_with("\xFE\xFF");
    if (isPDFDoc && !isMarked) return;
    EStrSetBytesSized(str, text.data(), text.size(), isMarked ? EStrUCS2 : EStrPDFDoc);
}

/** ASCII as host text and PDFDocEncoding share it: the control codes that a text has, and the printing characters. */
bool IsPlain(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char character) {
        return (character >= ' ' && character <= '~') || character == '\n' || character == '\r' || character == '\t';
    });
}

bool IsPlainEncoding(std::int32_t encoding) {
    return encoding == EStrHost || encoding == EStrPDFDoc;
}

} // namespace

void EStrSetEncoding(EStr *str, std::int32_t encoding) {
    if (!str || str->encoding == encoding || encoding < EStrHost || encoding > EStrShiftJIS) return;
    const std::int32_t stored = encoding == EStrText ? EStrPDFDoc : encoding;
    if (EStrIsNull(str))
        EStrSetBytes(str, nullptr, stored);
    else if (IsPlainEncoding(str->encoding) && IsPlainEncoding(stored) && IsPlain(EStrContent(str)))
        str->encoding = stored;
    else if (encoding == EStrText)
        ToText(str);
    else if (encoding == EStrUCS2)
        ToUCS2(str);
    else
        EStrForceToHost(str, encoding);
}

void EStrThisIsTheEncoding(EStr *str, std::int32_t encoding) {
    if (str) str->encoding = encoding;
}

EStr *EStrNewFromUTF8(const char *text) {
    BaseToolConverter converter = FetchConverters() ? BaseToolGetConverter("UTF-8") : nullptr;
    EStrPtr str(EStrNewImpl(nullptr, EStrUCS2));
    if (converter)
        SetUnits(str.get(), ESHost2UCS(converter, text, EStrHost));
    else
        EStrSetBytes(str.get(), text, EStrHost);
    return str.release();
}
