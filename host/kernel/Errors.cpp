// Texts of the error codes, and codes that plug-ins register.
// SPDX-License-Identifier: MIT
#include "kernel/Errors.h"

#include <cstdint>
#include <cstdio>
#include <vector>

#include "kernel/HostError.h"

namespace jackdaw {

namespace {

struct CodeText {
    KRErrorCode code;
    const char *text;
};

const CodeText s_texts[] = {
    {KRErrNone, "No error."},
    {KRErrNoMemory, "Out of memory."},
    {KRErrDefineFailed, "The field could not be defined under this name."},
    {KRErrBadParam, "Bad argument."},
    {KRErrNotAvailable, "This operation is not available, since its module is not loaded."},
    // A reader of form data puts an F in place of the P of this text, so it holds "%PDF" once.
    {KRErrNotFDF, "The file does not begin with '%PDF-'."},
    {KRErrBadField, "A field has a bad structure, or its default appearance cannot be read."},
    {KRErrTypeShared, "The type of the field cannot be changed, since other fields share its name."},
    {KRErrBadResource, "A form resource or a name is bad."},
    {KRErrBadPDF, "The file is damaged and could not be repaired."},
    {KRErrPassword, "The document needs a password, or the given one does not open it."},
    {KRErrPermission, "The document's permissions do not allow this."},
    {KRErrBadStream, "The data of a stream cannot be decoded, or is too large."},
    {KRErrFileNotFound, "The file was not found."},
    {KRErrFileOpen, "The file could not be opened."},
    {KRErrFileIO, "The file could not be read or written."},
    {KRErrDiskFull, "The disk is full."},
};

struct RegisteredError {
    KRErrorCode code;
    std::string text;
};

/** The n-th has the number KRErrRegisteredBase + n + 1 below its severity. */
std::vector<RegisteredError> &registered() {
    static std::vector<RegisteredError> s_registered;
    return s_registered;
}

constexpr std::uint32_t s_numberMask = 0x0FFFFFFF;
constexpr int s_severityShift = 28;

} // namespace

std::string ErrorText(KRErrorCode code) {
    for (const CodeText &known : s_texts) {
        if (known.code == code) return known.text;
    }
    const std::uint32_t number = static_cast<std::uint32_t>(code) & s_numberMask;
    const std::uint32_t index = number - static_cast<std::uint32_t>(KRErrRegisteredBase) - 1;
    if (index < registered().size() && registered()[index].code == code) return registered()[index].text;
    char text[32];
    std::snprintf(text, sizeof text, "Error 0x%08X", static_cast<unsigned>(code));
    return text;
}

KRErrorCode RegisterErrorText(int severity, const char *text) {
    if (severity < 0 || severity > 15 || !text)
        throw HostError{KRErrBadParam, "A registered error needs a severity of 0 to 15 and a text."};
    const std::uint32_t number =
        static_cast<std::uint32_t>(KRErrRegisteredBase) + static_cast<std::uint32_t>(registered().size()) + 1;
    const std::uint32_t code = static_cast<std::uint32_t>(severity) << s_severityShift | (number & s_numberMask);
    registered().push_back({static_cast<KRErrorCode>(code), text});
    return registered().back().code;
}

} // namespace jackdaw
