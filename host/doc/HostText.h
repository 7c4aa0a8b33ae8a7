// Host text into and out of callers' buffers, over the converters of siblings/TextConvert.h.
//
// A result that does not fit is cut at a whole character. A buffer without room for a terminator stays untouched.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace jackdaw {

/** In place, NUL-terminated, never longer than `size` with the terminator. */
void XlateToPDFDoc(char *text, std::int32_t size);
void XlateToHost(char *text, std::int32_t size);

/**
 * Host text as PDFDocEncoding, or as marked UCS-2 where that loses; gives the bytes written. One zero byte follows
 * them, two where there is room, always two behind UCS-2.
 */
std::int32_t XlateFromHostEnc(const char *source, char *target, std::int32_t size);
/** A text string of `length` bytes as host text, terminated as above; gives the bytes written. */
std::int32_t XlateToHostEnc(const char *source, std::int32_t length, char *target, std::int32_t size);

/** At most `room` bytes of `text`, ending with a whole character of the host encoding. */
std::string_view CutHostText(std::string_view text, std::size_t room);

} // namespace jackdaw
