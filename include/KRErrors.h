// Error codes that travel as host exceptions. The top four bits hold a KRSeverity of KernelSupportHFT.h;
// KRGetErrorString gives the text of any code. Codes that KRRegisterErrorString gives out lie above KRErrRegisteredBase
// in their lower bits, so that none of them is ever equal to one of these.
// SPDX-License-Identifier: MIT
#pragma once

#include "KRTypes.h"

/** Success. It cannot be raised: KRRaise makes KRErrBadParam of it. */
inline constexpr KRErrorCode KRErrNone = 0;
/** Out of memory, or out of atoms. */
inline constexpr KRErrorCode KRErrNoMemory = 2;
/** A field could not be defined under the name asked for. */
inline constexpr KRErrorCode KRErrDefineFailed = 0x40000002;
/** Bad argument: wrong type of object, index out of range, a direct cycle, an object of another document. */
inline constexpr KRErrorCode KRErrBadParam = 0x40000003;
/** An operation whose module is not loaded. */
inline constexpr KRErrorCode KRErrNotAvailable = 0x40000010;

/** A file that is no FDF; its text names what a header should be. */
inline constexpr KRErrorCode KRErrNotFDF = 0x20020001;
/** Bad field structure, or a default appearance string that cannot be read. */
inline constexpr KRErrorCode KRErrBadField = 0x20020003;
/** A change of type refused, since the name is shared. */
inline constexpr KRErrorCode KRErrTypeShared = 0x20020012;
/** Bad form resource or name. */
inline constexpr KRErrorCode KRErrBadResource = 0x20020017;
/** A PDF file that cannot be repaired. */
inline constexpr KRErrorCode KRErrBadPDF = 0x20020020;
/** A password is needed, or the one given does not open the document. */
inline constexpr KRErrorCode KRErrPassword = 0x20020021;
/** The document's permissions do not allow it. */
inline constexpr KRErrorCode KRErrPermission = 0x20020022;
/** A stream whose data cannot be decoded, or decodes to more than the limit. */
inline constexpr KRErrorCode KRErrBadStream = 0x20020023;

/** A file, or a folder on the way to it, that is not there. */
inline constexpr KRErrorCode KRErrFileNotFound = 0x20030001;
/** A file that is there and cannot be opened: no right to it, a folder, too many files open. */
inline constexpr KRErrorCode KRErrFileOpen = 0x20030002;
/** Reading or writing failed half-way. */
inline constexpr KRErrorCode KRErrFileIO = 0x20030003;
/** The disk or the user's share of it is full, or the file became too large. */
inline constexpr KRErrorCode KRErrDiskFull = 0x20030004;

/** Where registered codes begin, without their severity. */
inline constexpr KRErrorCode KRErrRegisteredBase = 0x00100000;
