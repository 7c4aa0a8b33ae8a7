// The kernel support table: memory, error texts, table servers, fixed numbers, files, streams of bytes.
// SPDX-License-Identifier: MIT
#pragma once

#include "HFT.h"

inline KRHFT gKernelSupportHFT = nullptr;
inline constexpr std::uint32_t KernelSupportHFTVersion = KRVersion(4, 2);
inline constexpr int KernelSupportHFTCount = 40;

// Memory. The same allocator for host and plug-ins: what one allocates the other may free.

/** `size` bytes, undefined; null when there is no memory. */
inline constexpr Slot<&gKernelSupportHFT, 1, void *(std::size_t size)> KRmalloc;
/** As realloc: null on failure, and then `block` stands. */
inline constexpr Slot<&gKernelSupportHFT, 2, void *(void *block, std::size_t size)> KRrealloc;
/** Null allowed. */
inline constexpr Slot<&gKernelSupportHFT, 3, void(void *block)> KRfree;

// Errors.

/**
 * The sentence of the error last raised, with what is known of file, object and offset, when it had this code; else the
 * code's own text, for an unknown one "Error 0x%08X". Cut to `size` bytes with its terminator; gives `buffer`.
 */
inline constexpr Slot<&gKernelSupportHFT, 4, char *(KRErrorCode code, char *buffer, std::int32_t size)>
    KRGetErrorString;
/** How grave an error is: the top four bits of its code. */
enum KRSeverity : std::int32_t { KRSeverityTold = 2, KRSeverityError = 4 };
/** A new code for `text` (copied). `severity` is a KRSeverity, or any number of 0 to 15. */
inline constexpr Slot<&gKernelSupportHFT, 5, KRErrorCode(std::int32_t severity, const char *text)>
    KRRegisterErrorString;

// Tables that plug-ins serve.

/** Gives the table for a version, or null to refuse it. Called for every KRGetHFT of the server's name. */
using KRHFTProvideProc = KRHFT (*)(KRHFTServer server, std::uint32_t version);
/** A server of the name (copied); null when the name is taken. Lives until the host goes away. */
inline constexpr Slot<&gKernelSupportHFT, 6, KRHFTServer(const char *name, KRHFTProvideProc provide)> KRHFTServerNew;
/** A table of slots 1 to `count`, each empty: calling one raises KRErrNotAvailable. */
inline constexpr Slot<&gKernelSupportHFT, 7, KRHFT(KRHFTServer server, std::int32_t count)> KRHFTNew;
/** Fills a slot, or replaces what stands there. `flags` is 0. Raises KRErrBadParam for a selector outside the table. */
inline constexpr Slot<&gKernelSupportHFT, 8,
                      void(KRHFT table, std::int32_t selector, KRProc callback, std::uint32_t flags)>
    KRHFTSetEntry;
/** What `callback` replaced in the slot; null when it replaced nothing or does not stand there. */
inline constexpr Slot<&gKernelSupportHFT, 9, KRProc(KRHFT table, std::int32_t selector, KRProc callback)>
    KRHFTGetReplacedEntry;

// Fixed numbers. Overflow saturates at 0x7FFFFFFF and 0x80000000.

/** Product, rounded to nearest. */
inline constexpr Slot<&gKernelSupportHFT, 10, KRFixed(KRFixed a, KRFixed b)> KRFixedMul;
/** Quotient, rounded to nearest; division by 0 saturates by the sign of `a`. */
inline constexpr Slot<&gKernelSupportHFT, 11, KRFixed(KRFixed a, KRFixed b)> KRFixedDiv;
/**
 * Decimal text with at most `precision` decimals, rounded, trailing zeros and a trailing point dropped, never in the
 * locale's format: 10.5, -0.25, 12. At most `size` bytes with the terminator: decimals go before digits do.
 */
inline constexpr Slot<&gKernelSupportHFT, 12,
                      void(KRFixed value, char *buffer, std::int32_t size, std::int32_t precision)>
    KRFixedToCString;
/** The number at the start of the text (sign, digits, point, digits; blanks before it skipped); 0 when there is none.
 */
inline constexpr Slot<&gKernelSupportHFT, 13, KRFixed(const char *text)> KRCStringToFixed;
/** result = first applied before second, as in PDF `first second concat`. `result` may be either argument. */
inline constexpr Slot<&gKernelSupportHFT, 14,
                      void(KRFixedMatrix *result, const KRFixedMatrix *first, const KRFixedMatrix *second)>
    KRFixedMatrixConcat;
/** The smallest upright rectangle around the transformed one, in PDF sense: bottom <= top. */
inline constexpr Slot<&gKernelSupportHFT, 15,
                      void(KRFixedRect *result, const KRFixedMatrix *matrix, const KRFixedRect *rect)>
    KRFixedMatrixTransformRect;

// Files. A path object belongs to a file system and is released by whoever got it. Error results are codes of
// KRErrors.h; operations without a result raise them.

enum KRFileMode : std::int32_t { KRFileRead_ = 1, KRFileWrite_ = 2, KRFileCreate = 4 };

/** A path of the default file system from a Unix path (bytes as the system takes them). */
inline constexpr Slot<&gKernelSupportHFT, 16, KRPathName(const char *platformPath)> KRPathFromPlatformPath;
inline constexpr Slot<&gKernelSupportHFT, 17, KRFileSys()> KRGetDefaultFileSys;
/** The path to show to a user, or its URL for the web file system; allocated with KRmalloc, the caller frees it. */
inline constexpr Slot<&gKernelSupportHFT, 18, char *(KRFileSys fs, KRPathName path, std::int32_t reserved)>
    KRFileSysDisplayPath;
/** A path from text, relative to the folder of `base` (null: the working folder). Device-independent text with `/`. */
inline constexpr Slot<&gKernelSupportHFT, 19, KRPathName(KRFileSys fs, const char *text, KRPathName base)>
    KRFileSysPathFromString;
inline constexpr Slot<&gKernelSupportHFT, 20, void(KRFileSys fs, KRPathName path)> KRFileSysReleasePath;
/** Opens with a sum of KRFileMode. On success gives 0 and stores the file. */
inline constexpr Slot<&gKernelSupportHFT, 21,
                      KRErrorCode(KRFileSys fs, KRPathName path, std::int32_t mode, KRFile *file)>
    KRFileSysOpenFile;
inline constexpr Slot<&gKernelSupportHFT, 22, KRErrorCode(KRFileSys fs, KRPathName path)> KRFileSysRemoveFile;
/** Closes and frees. The code tells of data that could not be written. */
inline constexpr Slot<&gKernelSupportHFT, 23, KRErrorCode(KRFile file)> KRFileClose;
inline constexpr Slot<&gKernelSupportHFT, 24, void(KRFile file, std::int64_t position)> KRFileSetPos;
inline constexpr Slot<&gKernelSupportHFT, 25, std::int64_t(KRFile file)> KRFileGetPos;
inline constexpr Slot<&gKernelSupportHFT, 26, std::int64_t(KRFile file)> KRFileGetSize;
/** Bytes read, fewer than `count` at the end of the file. */
inline constexpr Slot<&gKernelSupportHFT, 27, std::int64_t(KRFile file, void *buffer, std::int64_t count)> KRFileRead;
/** Bytes written; raises KRErrDiskFull or KRErrFileIO. */
inline constexpr Slot<&gKernelSupportHFT, 28, std::int64_t(KRFile file, const void *buffer, std::int64_t count)>
    KRFileWrite;
/** A path that the caller releases. */
inline constexpr Slot<&gKernelSupportHFT, 29, KRPathName(KRFile file)> KRFileAcquirePath;
inline constexpr Slot<&gKernelSupportHFT, 30, KRFileSys(KRFile file)> KRFileGetFileSys;
/** A file system registered under an atom; the web file system is reached so. Null when there is none. */
inline constexpr Slot<&gKernelSupportHFT, 31, KRFileSys(KRAtom name)> KRFileSysFromAtom;
/** A path from a file-system-specific specification (`specType` "CString" or "DIPath"); null when it means nothing. */
inline constexpr Slot<&gKernelSupportHFT, 32, KRPathName(KRFileSys fs, KRAtom specType, const void *spec)>
    KRFileSysPathFromFileSpec;

// Streams of bytes, read once from front to back.

/** Over a block that stays the caller's and must outlive the stream. */
inline constexpr Slot<&gKernelSupportHFT, 33, KRStm(const void *data, std::int64_t length)> KRMemStmOpen;
/** Fills `buffer` with at most `size` bytes; gives how many, 0 at the end, -1 to fail. */
using KRStmProc = std::int32_t (*)(char *buffer, std::int32_t size, void *clientData);
inline constexpr Slot<&gKernelSupportHFT, 34, KRStm(KRStmProc callback, void *clientData)> KRProcStmOpen;
/** As fread: gives how many whole items were read. Raises KRErrBadStream when the data cannot be decoded. */
inline constexpr Slot<&gKernelSupportHFT, 35,
                      std::int32_t(void *buffer, std::int32_t itemSize, std::int32_t count, KRStm stream)>
    KRStmRead;
inline constexpr Slot<&gKernelSupportHFT, 36, void(KRStm stream)> KRStmClose;
/** Over an open file from its present position, which it moves; the file stays the caller's. */
inline constexpr Slot<&gKernelSupportHFT, 37, KRStm(KRFile file)> KRFileStmOpen;

/** Makes `fs` the file system of this atom name (null removes it). */
inline constexpr Slot<&gKernelSupportHFT, 38, void(KRAtom name, KRFileSys fs)> KRFileSysRegister;
/** A second reference to the same place. */
inline constexpr Slot<&gKernelSupportHFT, 39, KRPathName(KRFileSys fs, KRPathName path)> KRFileSysCopyPath;
/** The Unix path of a path of the default file system, KRmalloc'd; null for other file systems. */
inline constexpr Slot<&gKernelSupportHFT, 40, char *(KRFileSys fs, KRPathName path)> KRFileSysPlatformPath;
