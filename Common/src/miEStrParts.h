// What the files of miEStr share: how a text of each encoding falls into characters, and where it may be cut.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

#include "FormsTypes.h"

/** Bytes of the mark, which only UCS-2 has. */
inline std::size_t EStrMarkLength(std::int32_t encoding) {
    return encoding == EStrUCS2 ? 2 : 0;
}

/** Bytes of the character at the start of `text`, at least 1; 0 for an empty text. */
std::size_t EStrCharBytes(std::string_view text, std::int32_t encoding);

/** The most bytes of `text`, at most `limit`, that end with a whole character. */
std::size_t EStrCutBytes(std::string_view text, std::size_t limit, std::int32_t encoding);

/** The content behind the mark. */
std::string_view EStrContent(const EStr *str);
