// The kernel support table: memory, error texts, table servers, fixed numbers, files, streams of bytes.
//
// A null or closed handle raises KRErrBadParam, or gives it where the result is a code.
// SPDX-License-Identifier: MIT
#pragma once

#include "HFT.h"

/** Set by the entry code. */
inline KRHFT gKernelSupportHFT = nullptr;
inline constexpr std::uint32_t KernelSupportHFTVersion = KRVersion(4, 2);
inline constexpr int KernelSupportHFTCount = 42;

// Memory. The same allocator for host and plug-ins: what one allocates the other may free.

/** `size` bytes, undefined, until KRfree; null when there is no memory, never for 0 bytes. */
inline constexpr Slot<&gKernelSupportHFT, 1, void *(std::size_t size)> KRmalloc;
/** As realloc, `block` may be null: the block in its new size; null on failure, and then `block` stands. */
inline constexpr Slot<&gKernelSupportHFT, 2, void *(void *block, std::size_t size)> KRrealloc;
/** Frees what KRmalloc, KRrealloc or an entry that says "KRmalloc'd" gave. Null allowed. */
inline constexpr Slot<&gKernelSupportHFT, 3, void(void *block)> KRfree;

// Errors.

/**
 * The sentence of the error last raised, with what is known of file, object and offset, when it had this code; else the
 * code's own text, for an unknown one "Error 0x%08X". Cut to `size` bytes with its terminator; gives `buffer`.
 */
inline constexpr Slot<&gKernelSupportHFT, 4, char *(KRErrorCode code, char *buffer, std::int32_t size)>
    KRGetErrorString;
/** How grave an error is: the top four bits of its code. */
enum KRSeverity : std::int32_t {
    /** What a document or a file holds is wrong: the user is told. */
    KRSeverityTold = 2,
    /** An error in use, or of the system. */
    KRSeverityError = 4
};
/**
 * A new code for `text` (host text, copied), good as long as the process. `severity` is a KRSeverity, or any number of
 * 0 to 15; KRErrBadParam for others and for a null text.
 */
inline constexpr Slot<&gKernelSupportHFT, 5, KRErrorCode(std::int32_t severity, const char *text)>
    KRRegisterErrorString;

// Tables that plug-ins serve.

/**
 * Gives the table for a caller of `version`, or null to refuse it. Called for every KRGetHFT of the server's name; what
 * it raises reaches that caller.
 */
using KRHFTProvideProc = KRHFT (*)(KRHFTServer server, std::uint32_t version);
/**
 * Serves tables under a name (copied) from the next KRGetHFT on. Null when the name is taken, by the host or another.
 * Nobody gives a server back: it lives until the host goes away. Raises KRErrBadParam for a null argument.
 */
inline constexpr Slot<&gKernelSupportHFT, 6, KRHFTServer(const char *name, KRHFTProvideProc provide)> KRHFTServerNew;
/**
 * A table of slots 1 to `count`, each empty: calling one raises KRErrNotAvailable. It lives until the process ends.
 * Raises KRErrBadParam for a `count` below 0 or above 65,535.
 */
inline constexpr Slot<&gKernelSupportHFT, 7, KRHFT(KRHFTServer server, std::int32_t count)> KRHFTNew;
/**
 * Fills a slot of any table, the host's included, or replaces what stands there; whoever calls the slot calls
 * `callback` from then on, which has the slot's shape. `flags` is 0. Raises KRErrBadParam for a selector outside the
 * table and for what is no table.
 */
inline constexpr Slot<&gKernelSupportHFT, 8,
                      void(KRHFT table, std::int32_t selector, KRProc callback, std::uint32_t flags)>
    KRHFTSetEntry;
/** What `callback` replaced in the slot, to call on to; null when it replaced nothing or does not stand there. */
inline constexpr Slot<&gKernelSupportHFT, 9, KRProc(KRHFT table, std::int32_t selector, KRProc callback)>
    KRHFTGetReplacedEntry;

// Fixed numbers, 16.16. Overflow saturates at 0x7FFFFFFF and 0x80000000. None of these raises.

/** Product, rounded to nearest, halves away from zero. */
inline constexpr Slot<&gKernelSupportHFT, 10, KRFixed(KRFixed a, KRFixed b)> KRFixedMul;
/** Quotient, rounded to nearest; division by 0 saturates by the sign of `a`, and 0 / 0 is 0. */
inline constexpr Slot<&gKernelSupportHFT, 11, KRFixed(KRFixed a, KRFixed b)> KRFixedDiv;
/**
 * Decimal text with at most `precision` decimals, rounded, trailing zeros and a trailing point dropped, never in the
 * locale's format: 10.5, -0.25, 12. At most `size` bytes with the terminator: decimals go before digits do.
 */
inline constexpr Slot<&gKernelSupportHFT, 12,
                      void(KRFixed value, char *buffer, std::int32_t size, std::int32_t precision)>
    KRFixedToCString;
/** The number at the start of a text: blanks, sign, digits, point, digits. 0 when there is none, and for null. */
inline constexpr Slot<&gKernelSupportHFT, 13, KRFixed(const char *text)> KRCStringToFixed;
/** result = first applied before second, as in PDF `first second concat`. `result` may be either argument. */
inline constexpr Slot<&gKernelSupportHFT, 14,
                      void(KRFixedMatrix *result, const KRFixedMatrix *first, const KRFixedMatrix *second)>
    KRFixedMatrixConcat;
/** The smallest upright rectangle around the transformed one, in PDF sense: bottom <= top. */
inline constexpr Slot<&gKernelSupportHFT, 15,
                      void(KRFixedRect *result, const KRFixedMatrix *matrix, const KRFixedRect *rect)>
    KRFixedMatrixTransformRect;

// Files. A path object belongs to a file system and is released by whoever got it, with KRFileSysReleasePath. A path
// names a place: making one asks no disk. Error results are codes of KRErrors.h: KRErrFileNotFound, KRErrFileOpen,
// KRErrFileIO, KRErrDiskFull; operations without such a result raise them.

/** Ways to open a file. The underlines keep the words apart from the entries KRFileRead and KRFileWrite. */
enum KRFileMode : std::int32_t {
    KRFileRead_ = 1,
    KRFileWrite_ = 2,
    /** Besides: makes the file when it is not there, and empties it when it is. */
    KRFileCreate = 4
};

/**
 * A path of the default file system from a Unix path (bytes as the system takes them), which the caller releases.
 * Raises KRErrBadParam for an empty one.
 */
inline constexpr Slot<&gKernelSupportHFT, 16, KRPathName(const char *platformPath)> KRPathFromPlatformPath;
/** The file system of Unix paths; never null. */
inline constexpr Slot<&gKernelSupportHFT, 17, KRFileSys()> KRGetDefaultFileSys;
/** The path to show to a user, or its URL for the web file system; KRmalloc'd. `reserved` is 0. */
inline constexpr Slot<&gKernelSupportHFT, 18, char *(KRFileSys fs, KRPathName path, std::int32_t reserved)>
    KRFileSysDisplayPath;
/**
 * A path from device-independent text, its folders divided by `/`, relative to the folder that the file `base` stands
 * in (null: the working folder). The caller releases it. Raises KRErrBadParam for a text that names no place.
 */
inline constexpr Slot<&gKernelSupportHFT, 19, KRPathName(KRFileSys fs, const char *text, KRPathName base)>
    KRFileSysPathFromString;
/** Releases a path. Null allowed. */
inline constexpr Slot<&gKernelSupportHFT, 20, void(KRFileSys fs, KRPathName path)> KRFileSysReleasePath;
/** Opens with a sum of KRFileMode. Gives 0 and stores the file, for KRFileClose; or a code, and stores null. */
inline constexpr Slot<&gKernelSupportHFT, 21,
                      KRErrorCode(KRFileSys fs, KRPathName path, std::int32_t mode, KRFile *file)>
    KRFileSysOpenFile;
/** Takes a file out of its folder: 0 or a code. Open files on it go on working. */
inline constexpr Slot<&gKernelSupportHFT, 22, KRErrorCode(KRFileSys fs, KRPathName path)> KRFileSysRemoveFile;
/** Closes and frees, also when it fails. 0, or the code of data that could not be written. */
inline constexpr Slot<&gKernelSupportHFT, 23, KRErrorCode(KRFile file)> KRFileClose;
/** Moves to a byte position from 0, which may lie behind the end. Raises KRErrBadParam for a negative one. */
inline constexpr Slot<&gKernelSupportHFT, 24, void(KRFile file, std::int64_t position)> KRFileSetPos;
/** Byte at which the next reading or writing starts. */
inline constexpr Slot<&gKernelSupportHFT, 25, std::int64_t(KRFile file)> KRFileGetPos;
/** Length in bytes, with what was written to it so far. */
inline constexpr Slot<&gKernelSupportHFT, 26, std::int64_t(KRFile file)> KRFileGetSize;
/** Bytes read from the position on, fewer than `count` only at the end of the file. Raises KRErrFileIO. */
inline constexpr Slot<&gKernelSupportHFT, 27, std::int64_t(KRFile file, void *buffer, std::int64_t count)> KRFileRead;
/** Bytes written at the position: all of them. Raises KRErrDiskFull or KRErrFileIO. */
inline constexpr Slot<&gKernelSupportHFT, 28, std::int64_t(KRFile file, const void *buffer, std::int64_t count)>
    KRFileWrite;
/** The path that the file was opened with, a new one, which the caller releases. */
inline constexpr Slot<&gKernelSupportHFT, 29, KRPathName(KRFile file)> KRFileAcquirePath;
/** The file system that the file was opened in. */
inline constexpr Slot<&gKernelSupportHFT, 30, KRFileSys(KRFile file)> KRFileGetFileSys;
/** The file system registered under a name; the web file system is reached so. Null when there is none. */
inline constexpr Slot<&gKernelSupportHFT, 31, KRFileSys(KRAtom name)> KRFileSysFromAtom;
/**
 * A path from a file-system-specific specification, which the caller releases; null when it means nothing. `specType`
 * is "CString" or "DIPath", `spec` a NUL-terminated text.
 */
inline constexpr Slot<&gKernelSupportHFT, 32, KRPathName(KRFileSys fs, KRAtom specType, const void *spec)>
    KRFileSysPathFromFileSpec;

// Streams of bytes, read once from front to back. Whoever opened one closes it with KRStmClose.

/** Over `length` bytes that stay the caller's and must outlive the stream. */
inline constexpr Slot<&gKernelSupportHFT, 33, KRStm(const void *data, std::int64_t length)> KRMemStmOpen;
/** Fills `buffer` with at most `size` bytes; gives how many, 0 at the end, -1 to fail. */
using KRStmProc = std::int32_t (*)(char *buffer, std::int32_t size, void *clientData);
/** Over what a callback gives, which is called as the reader goes on. Raises KRErrBadParam for null. */
inline constexpr Slot<&gKernelSupportHFT, 34, KRStm(KRStmProc callback, void *clientData)> KRProcStmOpen;
/**
 * As fread: gives how many whole items were read, fewer than `count` only at the end. Raises KRErrBadStream when the
 * data cannot be decoded or its callback fails, and what the callback or the file raises.
 */
inline constexpr Slot<&gKernelSupportHFT, 35,
                      std::int32_t(void *buffer, std::int32_t itemSize, std::int32_t count, KRStm stream)>
    KRStmRead;
/** Closes a stream; what it was opened over stays open. Null allowed. */
inline constexpr Slot<&gKernelSupportHFT, 36, void(KRStm stream)> KRStmClose;
/** Over an open file from its present position, which it moves; the file stays the caller's. */
inline constexpr Slot<&gKernelSupportHFT, 37, KRStm(KRFile file)> KRFileStmOpen;

/** Makes `fs` the file system of this name, in place of a former one; null removes it. */
inline constexpr Slot<&gKernelSupportHFT, 38, void(KRAtom name, KRFileSys fs)> KRFileSysRegister;
/** A second path to the same place, which the caller releases; null for null. */
inline constexpr Slot<&gKernelSupportHFT, 39, KRPathName(KRFileSys fs, KRPathName path)> KRFileSysCopyPath;
/** The Unix path of a path of the default file system, KRmalloc'd; null where the file system has none. */
inline constexpr Slot<&gKernelSupportHFT, 40, char *(KRFileSys fs, KRPathName path)> KRFileSysPlatformPath;

// Limits of the host, for the whole process.

/** Row `index` of the table, from 0; false, and nothing stored, past its end. */
inline constexpr Slot<&gKernelSupportHFT, 41, KRBool(std::int32_t index, KRLimit *limit)> KRLimitGet;
/** Sets a limit. False for an unknown name, and for a value below 1 or above the highest. */
inline constexpr Slot<&gKernelSupportHFT, 42, KRBool(const char *name, std::int64_t value)> KRLimitSet;
