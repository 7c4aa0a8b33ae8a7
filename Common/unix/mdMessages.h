// Every text that the plug-in shows: the numbered catalogue, and the alerts built on it.
//
// Texts are host text. The first fetch of a text decides: it comes from the X resource of its key when the plug-in's
// shell is there, else from the catalogue, and stays until the process ends.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "Common/unix/mdMessageList.h"
#include "FormsTypes.h"
#include "KRTypes.h"

/** Numbers of the texts by key, such as Msg::errorBadFdf. */
namespace Msg {
enum ID : std::int32_t {
#define MD_MESSAGE(number, key, text) key = number,
#define MD_NO_MESSAGE(number)
    MD_MESSAGE_LIST(MD_MESSAGE, MD_NO_MESSAGE)
#undef MD_MESSAGE
#undef MD_NO_MESSAGE
        Count = 417
};
} // namespace Msg

/** Resource key of a text; "" for a row that is empty here, and outside the catalogue. */
const char *mdGetStringKey(std::int32_t id);
/** Never to be changed or freed. "Bad String ID" outside the catalogue. */
const char *mdGetStringPtr(std::int32_t id);
/** Copies the text, cut to `size` bytes with its terminator behind a whole character. Gives `buffer`. */
char *mdGetString(std::int32_t id, char *buffer, std::uint16_t size);
/** The same without menu mnemonics: "Cu&t" gives "Cut", "&&" one "&". */
char *mdGetButtonString(std::int32_t id, char *buffer, std::uint16_t size);

/** A text of the catalogue, in host encoding. Owned by the caller. Raises KRErrNoMemory. */
EStr *EStrNewFromIDImpl(std::int32_t messageNumber);
void EStrSetBytesFromID(EStr *str, std::int32_t messageNumber);

/** Text of an alert's button: 0 OK, 1 Cancel, 2 Yes, 3 No; null for any other number. */
const char *mdGetAlertButtonPtr(std::int32_t index);

enum mdAlertIcon : std::int32_t { mdAlertError = 0, mdAlertWarning = 1, mdAlertQuestion = 2, mdAlertStatus = 3 };
enum mdAlertButtons : std::int32_t { mdAlertOK = 0, mdAlertOKCancel = 1, mdAlertYesNo = 2, mdAlertYesNoCancel = 3 };
enum mdAlertAnswer : std::int32_t {
    mdAnswerNone = 0,
    mdAnswerOK = 1,
    mdAnswerCancel = 2,
    mdAnswerNo = 3,
    mdAnswerYes = 4
};

// Alerts give an mdAlertAnswer. A formatted text is cut to 2079 bytes. `doc` may be null. For a number that is none of
// mdAlertButtons nothing is shown, since nothing could be answered.

/** Text `id` is the format of the further arguments. */
std::int32_t mdAlert(std::int32_t icon, std::int32_t buttons, std::int32_t id, ...);
std::int32_t mdAlertEx(SCDoc doc, std::int32_t icon, std::int32_t buttons, std::int32_t id, ...);
std::int32_t mdAlertStr(SCDoc doc, std::int32_t icon, std::int32_t buttons, const char *format, ...)
    __attribute__((format(printf, 4, 5)));
std::int32_t mdAlertText(SCDoc doc, std::int32_t icon, std::int32_t buttons, const char *text);
