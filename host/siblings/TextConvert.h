// Text between the process's encoding, PDFDocEncoding and big-endian Unicode, for host code.
//
// "Host" is the encoding of the process's locale. Unicode is UTF-16BE without a byte-order mark: text beyond the basic
// plane goes as surrogate pairs. What the target lacks becomes its substitute, and `lost` (when given) is set to true
// and otherwise left alone.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "SiblingHFTs.h"

namespace jackdaw {

/** Substitute "?" in the host's encoding, a bullet (0x80) in PDFDocEncoding, U+FFFD in Unicode. */
std::string HostToUnicode(std::string_view host, bool *lost = nullptr);
std::string UnicodeToHost(std::string_view unicode, bool *lost = nullptr);
std::string PDFDocToUnicode(std::string_view text, bool *lost = nullptr);
std::string UnicodeToPDFDoc(std::string_view unicode, bool *lost = nullptr);
std::string HostToPDFDoc(std::string_view host, bool *lost = nullptr);
std::string PDFDocToHost(std::string_view text, bool *lost = nullptr);

// Text strings of a PDF: PDFDocEncoding, or Unicode behind its mark, or (read only) UTF-8 behind its own. What is made
// is PDFDocEncoding when it loses nothing there and does not happen to begin like a mark, else Unicode.

std::string TextStringToHost(std::string_view text, bool *lost = nullptr);
std::string HostToTextString(std::string_view host);
std::string UnicodeToTextString(std::string_view unicode);
/** Begins with the mark of Unicode, 254 255. */
bool HasUnicodeMark(std::string_view text);

/** UTF-8 to a PDF text string and back, whatever the locale (program text). Malformed UTF-8 is substituted. */
std::string UTF8ToTextString(std::string_view utf8);
std::string TextStringToUTF8(std::string_view text);

/** Unicode value of a PDFDocEncoding code; -1 for 127, 159 and 173. Undefined codes below 24 stand for themselves. */
int PDFDocCodeToUnicode(unsigned char code);
/** PDFDocEncoding code of a Unicode value; -1 when it has none. */
int UnicodeToPDFDocCode(char32_t unicode);

/** Name of the process's encoding as the locale gives it, such as "UTF-8". */
const char *HostEncodingName();
/** A converter by the encoding's locale name (any that iconv knows); null names the process's own. Null when unknown.
 *  Converters live as long as the process. */
BaseToolConverter ConverterOfEncoding(const char *localeName);

} // namespace jackdaw
