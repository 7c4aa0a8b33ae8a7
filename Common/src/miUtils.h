// C strings and memory for the whole plug-in.
//
// A text that starts with the bytes 254, 255 is big-endian UCS-2 and ends with a zero pair; every other text is bytes
// up to a NUL. Functions marked UCS-2 know the difference; the others see bytes.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <string>

// Memory. All of it is the host's allocator, so that host and plug-ins may free each other's blocks with KRfree.

/** `size` bytes, undefined. Raises KRErrNoMemory. A size of 0 gives a block too. */
void *KRSureMalloc(std::size_t size);
/** Cleared. Raises KRErrNoMemory, also when the product is no size. */
void *KRSureCalloc(std::size_t count, std::size_t size);
/** Raises KRErrNoMemory, and then `block` stands. */
void *KRSureRealloc(void *block, std::size_t size);
/** As KRSureCalloc, but null when there is no memory. */
void *AScalloc(std::size_t count, std::size_t size);
/** Null allowed. */
void KRIfNotNullFree(void *block);

/** Frees a KRmalloc'd block that a std::unique_ptr holds. */
struct KRFreeDeleter {
    void operator()(void *block) const {
        KRIfNotNullFree(block);
    }
};

// Length, copy, comparison: UCS-2. Null reads as the empty text.

/** The text starts with 254, 255. */
bool miIsUCS(const char *text);
/** The big-endian unit at `bytes`. */
inline std::uint16_t miUCSUnit(const char *bytes) {
    return static_cast<std::uint16_t>(static_cast<unsigned char>(bytes[0]) << 8 | static_cast<unsigned char>(bytes[1]));
}
/** Bytes without the terminator; for UCS-2 with the mark, up to the zero pair. */
std::size_t miStrlen(const char *text);
/** Copies with the terminator; gives `target`. */
char *miStrcpy(char *target, const char *source);
/** Appends; the mark of a UCS-2 `source` is left out. Gives `target`. */
char *miStrcat(char *target, const char *source);
/** -1, 0 or 1 by unsigned bytes; by units when both sides are UCS-2. */
int miStrcmp(const char *a, const char *b);
/** At most `count` bytes, the mark included. */
int miStrncmp(const char *a, const char *b, std::size_t count);
/** Without regard to ASCII case; in UCS-2 only units with a zero high byte are folded. */
int miStricmp(const char *a, const char *b);
/** Equal texts; null equals null only. */
bool miStrEq(const char *a, const char *b);
/** KRmalloc'd copy with room for a zero pair; null for null. Raises KRErrNoMemory. */
char *miCopyStrImpl(const char *text);

// Search and replace.

/**
 * Copies `source` to `target` with each `find` replaced by `with` (null removes); gives the end of the target, where
 * its terminator stands. `target` may be `source` only when `with` is no longer than `find`.
 */
char *miReplaceStr(char *target, const char *source, const char *find, const char *with);
/**
 * The same with lengths in bytes. In a UCS-2 source, `find` and `with` are units ("\0\n", 2), whose mark, when they
 * have one, is left out; they are found at whole units only.
 */
char *miReplaceStrEx(char *target, const char *source, const char *find, std::size_t findLength, const char *with,
                     std::size_t withLength);
/** How often `find` stands in `text`, not counting overlaps. UCS-2 when both are. */
std::int32_t miCountStr(const char *text, const char *find);
/**
 * What stands between the first `left` (null: the start) and the next `right` (null or not there: the end) goes to
 * `out`, cut to `size` bytes with its terminator. Gives the position behind `right`; null when there is no `left`.
 */
const char *miSnarf(const char *text, const char *left, const char *right, char *out, std::size_t size);
/**
 * Next entry of a comma-separated list from `*position`, which moves behind the comma. Blanks around an entry do not
 * count, commas within double quotes do; a backslash takes the next character, "\n" and "\r" are line feed and
 * carriage return. `keepEscapes` leaves backslashes as they stand. False at the end of the text.
 */
bool miSnarfEntry(const char *text, std::int32_t *position, bool keepEscapes, std::string *entry);
/** Takes "/../" with the component before it out of a path, then "/./", in place. */
void miSubstituteDots(char *path);
/** Every `from` becomes `to`, in place. */
void miTranslate(char *text, char from, char to);

// White space: blank, tab, line feed, vertical tab, form feed, carriage return, in every locale.

bool miIsspace(int character);
/** A unit with a zero high byte and white space as the low one. */
bool miUCSIsSpace(std::uint16_t unit);
/** Takes leading and trailing white space out, in place. UCS-2. Gives `text`. */
char *miStrip(char *text);
/** For a text that is known to be UCS-2 with its mark. */
char *miUCSStrip(char *text);

// The plain operations on bytes.

/** Copies what fits into `size` bytes with the terminator, always written unless `size` is 0. */
char *miStrncpy(char *target, const char *source, std::size_t size);
/** Appends what fits; `size` is that of the whole target, with the terminator. */
char *miStrncat(char *target, const char *source, std::size_t size);
std::int32_t miAtoi(const char *text);
/** Saturates. */
long miAtol(const char *text);
const char *miStrchr(const char *text, char character);
const char *miStrrchr(const char *text, char character);
const char *miStrstr(const char *text, const char *find);
/** The ranges may overlap. */
void miCopyMem(void *target, const void *source, std::size_t count);
/** Bytes written without the terminator; 0 and an empty text when the result does not fit. */
std::size_t miStrftime(char *target, std::size_t size, const char *format, const std::tm *time);

// Host text, the encoding of the process's locale.

/** Bytes of the character at `text`, of which `size` bytes are there: at least 1, also for an invalid one; 0 for none.
 */
std::size_t miHostCharLength(const char *text, std::size_t size);
std::size_t miHostCharCount(const char *text, std::size_t size);
/**
 * `size` if it is not above `limit`; else the most bytes, not above `limit`, that end with a whole character. One that
 * is not valid ends what is kept: nobody knows where the next begins.
 */
std::size_t miHostCutLength(const char *text, std::size_t size, std::size_t limit);
