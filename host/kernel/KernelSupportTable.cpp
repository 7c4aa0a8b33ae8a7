// The kernel support table: the functions of the kernel in its slots, and those that need fitting.
// SPDX-License-Identifier: MIT
#include "kernel/Tables.h"

#include <algorithm>

#include "KernelSupportHFT.h"
#include "kernel/Atoms.h"
#include "kernel/Bind.h"
#include "kernel/Errors.h"
#include "kernel/Files.h"
#include "kernel/Fixed.h"
#include "kernel/HFTServers.h"
#include "kernel/HostLimits.h"
#include "kernel/Memory.h"
#include "kernel/Streams.h"

namespace jackdaw {

namespace {

// Errors and tables.

char *getErrorString(KRErrorCode code, char *buffer, std::int32_t size) {
    if (buffer) FillBuffer(ErrorSentence(code), buffer, size);
    return buffer;
}

void setEntry(KRHFT table, std::int32_t selector, KRProc callback, std::uint32_t) {
    SetTableEntry(table, selector, callback);
}

// Fixed numbers.

void fixedToCString(KRFixed value, char *buffer, std::int32_t size, std::int32_t precision) {
    std::string text = FixedToText(value, precision);
    // Decimals give way one by one, rounded anew each time, before a digit of the whole part is cut off.
    for (int fewer = std::min(precision, 16) - 1; fewer >= 0 && std::int64_t(text.size()) >= size; --fewer)
        text = FixedToText(value, fewer);
    if (buffer) FillBuffer(text, buffer, size);
}

KRFixed cStringToFixed(const char *text) {
    return text ? TextToFixed(text) : 0;
}

void matrixConcat(KRFixedMatrix *result, const KRFixedMatrix *first, const KRFixedMatrix *second) {
    Required(result) = FixedMatrixConcat(Required(first), Required(second));
}

void matrixTransformRect(KRFixedRect *result, const KRFixedMatrix *matrix, const KRFixedRect *rect) {
    Required(result) = FixedMatrixTransformRect(Required(matrix), Required(rect));
}

// Paths.

KRPathName pathFromPlatformPath(const char *platformPath) {
    if (!platformPath || !*platformPath) throw HostError{KRErrBadParam, "An empty path was given."};
    return MakePath(DefaultFileSys(), platformPath);
}

char *displayPath(KRFileSys fs, KRPathName path, std::int32_t) {
    return AllocateText(Required(fs).displayText(Required(path).text));
}

char *platformPath(KRFileSys fs, KRPathName path) {
    const std::string text = Required(fs).platformPath(Required(path).text);
    return text.empty() ? nullptr : AllocateText(text);
}

KRPathName pathFromString(KRFileSys fs, const char *text, KRPathName base) {
    if (!text) throw HostError{KRErrBadParam, "An empty path was given."};
    const std::string place = Required(fs).resolve(text, base ? &base->text : nullptr);
    if (place.empty()) throw HostError{KRErrBadParam, std::string("This names no file: ") + text};
    return MakePath(fs, place);
}

KRPathName pathFromFileSpec(KRFileSys fs, KRAtom specType, const void *spec) {
    const std::string type = AtomText(specType);
    if (!spec || (type != "CString" && type != "DIPath")) return nullptr;
    const std::string place = Required(fs).resolve(static_cast<const char *>(spec), nullptr);
    return place.empty() ? nullptr : MakePath(fs, place);
}

void releasePath(KRFileSys, KRPathName path) {
    ReleasePath(path);
}

KRPathName copyPath(KRFileSys, KRPathName path) {
    return CopyPath(path);
}

// Files.

KRErrorCode openFile(KRFileSys fs, KRPathName path, std::int32_t mode, KRFile *file) {
    return CodeOf([&] {
        Required(file) = nullptr;
        *file = Required(fs).open(Required(path).text, mode).release();
    });
}

KRErrorCode removeFile(KRFileSys fs, KRPathName path) {
    return CodeOf([&] { Required(fs).remove(Required(path).text); });
}

KRErrorCode closeFile(KRFile file) {
    return CodeOf([&] { std::unique_ptr<KRFileRec>(&Required(file))->close(); });
}

void setPosition(KRFile file, std::int64_t position) {
    Required(file).setPosition(position);
}

std::int64_t getPosition(KRFile file) {
    return Required(file).position();
}

std::int64_t getSize(KRFile file) {
    return Required(file).size();
}

std::int64_t readFile(KRFile file, void *buffer, std::int64_t count) {
    if (count < 0) throw HostError{KRErrBadParam, "A negative number of bytes was asked for."};
    if (count == 0) return 0;
    if (!buffer) throw HostError{KRErrBadParam, "A buffer is missing."};
    return Required(file).read(buffer, count);
}

std::int64_t writeFile(KRFile file, const void *buffer, std::int64_t count) {
    if (count < 0) throw HostError{KRErrBadParam, "A negative number of bytes was to be written."};
    if (count == 0) return 0;
    if (!buffer) throw HostError{KRErrBadParam, "A buffer is missing."};
    return Required(file).write(buffer, count);
}

KRPathName acquirePath(KRFile file) {
    return MakePath(Required(file).fileSys, file->path);
}

KRFileSys fileSysOf(KRFile file) {
    return Required(file).fileSys;
}

// Streams of bytes.

std::int32_t readStream(void *buffer, std::int32_t itemSize, std::int32_t count, KRStm stream) {
    KRStmRec &source = Required(stream);
    if (itemSize <= 0 || count <= 0) return 0;
    const std::int64_t wanted = std::int64_t{itemSize} * count;
    std::int64_t got = 0;
    for (std::int64_t step = -1; got < wanted && step != 0; got += step)
        step = source.read(static_cast<char *>(buffer) + got, wanted - got);
    return static_cast<std::int32_t>(got / itemSize);
}

// Filling, in the order of the slots.

void fillMemoryErrorsAndTables() {
    Bind<&Allocate>(KRmalloc);
    Bind<&Reallocate>(KRrealloc);
    Bind<&Release>(KRfree);
    Bind<&getErrorString>(KRGetErrorString);
    Bind<&RegisterErrorText>(KRRegisterErrorString);
    Bind<&NewTableServer>(KRHFTServerNew);
    Bind<&NewTable>(KRHFTNew);
    Bind<&setEntry>(KRHFTSetEntry);
    Bind<&ReplacedTableEntry>(KRHFTGetReplacedEntry);
}

void fillFixedNumbers() {
    Bind<&FixedMul>(KRFixedMul);
    Bind<&FixedDiv>(KRFixedDiv);
    Bind<&fixedToCString>(KRFixedToCString);
    Bind<&cStringToFixed>(KRCStringToFixed);
    Bind<&matrixConcat>(KRFixedMatrixConcat);
    Bind<&matrixTransformRect>(KRFixedMatrixTransformRect);
}

void fillFiles() {
    Bind<&pathFromPlatformPath>(KRPathFromPlatformPath);
    Bind<&DefaultFileSys>(KRGetDefaultFileSys);
    Bind<&displayPath>(KRFileSysDisplayPath);
    Bind<&pathFromString>(KRFileSysPathFromString);
    Bind<&releasePath>(KRFileSysReleasePath);
    Bind<&openFile>(KRFileSysOpenFile);
    Bind<&removeFile>(KRFileSysRemoveFile);
    Bind<&closeFile>(KRFileClose);
    Bind<&setPosition>(KRFileSetPos);
    Bind<&getPosition>(KRFileGetPos);
    Bind<&getSize>(KRFileGetSize);
    Bind<&readFile>(KRFileRead);
    Bind<&writeFile>(KRFileWrite);
    Bind<&acquirePath>(KRFileAcquirePath);
    Bind<&fileSysOf>(KRFileGetFileSys);
    Bind<&FileSysFromAtom>(KRFileSysFromAtom);
    Bind<&pathFromFileSpec>(KRFileSysPathFromFileSpec);
}

void fillStreamsAndLimits() {
    Bind<&OpenMemoryStream>(KRMemStmOpen);
    Bind<&OpenProcStream>(KRProcStmOpen);
    Bind<&readStream>(KRStmRead);
    Bind<&CloseStream>(KRStmClose);
    Bind<&OpenFileStream>(KRFileStmOpen);
    Bind<&RegisterFileSys>(KRFileSysRegister);
    Bind<&copyPath>(KRFileSysCopyPath);
    Bind<&platformPath>(KRFileSysPlatformPath);
    Bind<&GetLimit>(KRLimitGet);
    Bind<&SetLimit>(KRLimitSet);
}

} // namespace

void FillKernelSupportTable() {
    fillMemoryErrorsAndTables();
    fillFixedNumbers();
    fillFiles();
    fillStreamsAndLimits();
}

} // namespace jackdaw
