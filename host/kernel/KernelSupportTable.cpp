// The kernel support table: every slot of KernelSupportHFT.h behind the host's edge.
// SPDX-License-Identifier: MIT
#include "kernel/Tables.h"

#include <algorithm>
#include <cstring>

#include "KernelSupportHFT.h"
#include "kernel/Atoms.h"
#include "kernel/Errors.h"
#include "kernel/Files.h"
#include "kernel/Fixed.h"
#include "kernel/HFTServers.h"
#include "kernel/HostError.h"
#include "kernel/Memory.h"
#include "kernel/Streams.h"

namespace jackdaw {

namespace {

/** The handle, or KRErrBadParam for null. */
template <class Handle>
Handle need(Handle handle) {
    if (!handle) throw HostError{KRErrBadParam, "A null handle was given."};
    return handle;
}

void copyCut(const std::string &text, char *buffer, std::int32_t size) {
    if (!buffer || size < 1) return;
    const std::size_t count = std::min(text.size(), static_cast<std::size_t>(size) - 1);
    std::memcpy(buffer, text.data(), count);
    buffer[count] = '\0';
}

// Errors.

char *krGetErrorString(KRErrorCode code, char *buffer, std::int32_t size) {
    return Edge([&] {
        copyCut(ErrorSentence(code), buffer, size);
        return buffer;
    });
}

KRErrorCode krRegisterErrorString(std::int32_t severity, const char *text) {
    return Edge([&] { return RegisterErrorText(severity, text); });
}

// Tables that plug-ins serve.

KRHFTServer krHFTServerNew(const char *name, KRHFTProvideProc provide) {
    return Edge([&] { return NewTableServer(name, provide); });
}

KRHFT krHFTNew(KRHFTServer server, std::int32_t count) {
    return Edge([&] { return NewTable(server, count); });
}

void krHFTSetEntry(KRHFT table, std::int32_t selector, KRProc callback, std::uint32_t) {
    Edge([&] { SetTableEntry(table, selector, callback); });
}

KRProc krHFTGetReplacedEntry(KRHFT table, std::int32_t selector, KRProc callback) {
    return Edge([&] { return ReplacedTableEntry(table, selector, callback); });
}

// Fixed numbers.

void krFixedToCString(KRFixed value, char *buffer, std::int32_t size, std::int32_t precision) {
    Edge([&] {
        std::string text = FixedToText(value, precision);
        // Decimals give way one by one, rounded anew each time, before a digit of the whole part is cut off.
        for (int fewer = std::min(precision, 16) - 1; fewer >= 0 && std::int64_t(text.size()) >= size; --fewer)
            text = FixedToText(value, fewer);
        copyCut(text, buffer, size);
    });
}

KRFixed krCStringToFixed(const char *text) {
    return text ? TextToFixed(text) : 0;
}

void krFixedMatrixConcat(KRFixedMatrix *result, const KRFixedMatrix *first, const KRFixedMatrix *second) {
    *result = FixedMatrixConcat(*first, *second);
}

void krFixedMatrixTransformRect(KRFixedRect *result, const KRFixedMatrix *matrix, const KRFixedRect *rect) {
    *result = FixedMatrixTransformRect(*matrix, *rect);
}

// Files.

KRPathName krPathFromPlatformPath(const char *platformPath) {
    return Edge([&] {
        if (!platformPath || !*platformPath) throw HostError{KRErrBadParam, "An empty path was given."};
        return MakePath(DefaultFileSys(), platformPath);
    });
}

KRFileSys krGetDefaultFileSys() {
    return Edge([&] { return DefaultFileSys(); });
}

char *krFileSysDisplayPath(KRFileSys fs, KRPathName path, std::int32_t) {
    return Edge([&] { return AllocateText(need(fs)->displayText(need(path)->text)); });
}

KRPathName krFileSysPathFromString(KRFileSys fs, const char *text, KRPathName base) {
    return Edge([&] {
        if (!text) throw HostError{KRErrBadParam, "An empty path was given."};
        const std::string place = need(fs)->resolve(text, base ? &base->text : nullptr);
        if (place.empty()) throw HostError{KRErrBadParam, std::string("This names no file: ") + text};
        return MakePath(fs, place);
    });
}

void krFileSysReleasePath(KRFileSys, KRPathName path) {
    ReleasePath(path);
}

KRErrorCode krFileSysOpenFile(KRFileSys fs, KRPathName path, std::int32_t mode, KRFile *file) {
    return CodeOf([&] {
        *need(file) = nullptr;
        *file = need(fs)->open(need(path)->text, mode).release();
    });
}

KRErrorCode krFileSysRemoveFile(KRFileSys fs, KRPathName path) {
    return CodeOf([&] { need(fs)->remove(need(path)->text); });
}

KRErrorCode krFileClose(KRFile file) {
    return CodeOf([&] { std::unique_ptr<KRFileRec>(need(file))->close(); });
}

void krFileSetPos(KRFile file, std::int64_t position) {
    Edge([&] { need(file)->setPosition(position); });
}

std::int64_t krFileGetPos(KRFile file) {
    return Edge([&] { return need(file)->position(); });
}

std::int64_t krFileGetSize(KRFile file) {
    return Edge([&] { return need(file)->size(); });
}

std::int64_t krFileRead(KRFile file, void *buffer, std::int64_t count) {
    return Edge([&]() -> std::int64_t {
        if (count < 0) throw HostError{KRErrBadParam, "A negative number of bytes was asked for."};
        return count == 0 ? 0 : need(file)->read(need(buffer), count);
    });
}

std::int64_t krFileWrite(KRFile file, const void *buffer, std::int64_t count) {
    return Edge([&]() -> std::int64_t {
        if (count < 0) throw HostError{KRErrBadParam, "A negative number of bytes was to be written."};
        return count == 0 ? 0 : need(file)->write(need(buffer), count);
    });
}

KRPathName krFileAcquirePath(KRFile file) {
    return Edge([&] { return MakePath(need(file)->fileSys, file->path); });
}

KRFileSys krFileGetFileSys(KRFile file) {
    return Edge([&] { return need(file)->fileSys; });
}

KRPathName krFileSysPathFromFileSpec(KRFileSys fs, KRAtom specType, const void *spec) {
    return Edge([&]() -> KRPathName {
        const std::string type = AtomText(specType);
        if (!spec || (type != "CString" && type != "DIPath")) return nullptr;
        const std::string place = need(fs)->resolve(static_cast<const char *>(spec), nullptr);
        return place.empty() ? nullptr : MakePath(fs, place);
    });
}

void krFileSysRegister(KRAtom name, KRFileSys fs) {
    Edge([&] { RegisterFileSys(name, fs); });
}

KRPathName krFileSysCopyPath(KRFileSys, KRPathName path) {
    return Edge([&] { return CopyPath(path); });
}

char *krFileSysPlatformPath(KRFileSys fs, KRPathName path) {
    return Edge([&]() -> char * {
        const std::string text = need(fs)->platformPath(need(path)->text);
        return text.empty() ? nullptr : AllocateText(text);
    });
}

// Streams of bytes.

KRStm krMemStmOpen(const void *data, std::int64_t length) {
    return Edge([&] { return OpenMemoryStream(data, length); });
}

KRStm krProcStmOpen(KRStmProc callback, void *clientData) {
    return Edge([&] { return OpenProcStream(callback, clientData); });
}

std::int32_t krStmRead(void *buffer, std::int32_t itemSize, std::int32_t count, KRStm stream) {
    return Edge([&]() -> std::int32_t {
        need(stream);
        if (itemSize <= 0 || count <= 0) return 0;
        const std::int64_t wanted = std::int64_t{itemSize} * count;
        std::int64_t got = 0;
        for (std::int64_t step = -1; got < wanted && step != 0; got += step)
            step = stream->read(static_cast<char *>(buffer) + got, wanted - got);
        return static_cast<std::int32_t>(got / itemSize);
    });
}

void krStmClose(KRStm stream) {
    CloseStream(stream);
}

KRStm krFileStmOpen(KRFile file) {
    return Edge([&] { return OpenFileStream(file); });
}

void fillErrorsAndTables() {
    Provide(KRmalloc, &Allocate);
    Provide(KRrealloc, &Reallocate);
    Provide(KRfree, &Release);
    Provide(KRGetErrorString, &krGetErrorString);
    Provide(KRRegisterErrorString, &krRegisterErrorString);
    Provide(KRHFTServerNew, &krHFTServerNew);
    Provide(KRHFTNew, &krHFTNew);
    Provide(KRHFTSetEntry, &krHFTSetEntry);
    Provide(KRHFTGetReplacedEntry, &krHFTGetReplacedEntry);
    Provide(KRFixedMul, &FixedMul);
    Provide(KRFixedDiv, &FixedDiv);
    Provide(KRFixedToCString, &krFixedToCString);
    Provide(KRCStringToFixed, &krCStringToFixed);
    Provide(KRFixedMatrixConcat, &krFixedMatrixConcat);
    Provide(KRFixedMatrixTransformRect, &krFixedMatrixTransformRect);
}

void fillFilesAndStreams() {
    Provide(KRPathFromPlatformPath, &krPathFromPlatformPath);
    Provide(KRGetDefaultFileSys, &krGetDefaultFileSys);
    Provide(KRFileSysDisplayPath, &krFileSysDisplayPath);
    Provide(KRFileSysPathFromString, &krFileSysPathFromString);
    Provide(KRFileSysReleasePath, &krFileSysReleasePath);
    Provide(KRFileSysOpenFile, &krFileSysOpenFile);
    Provide(KRFileSysRemoveFile, &krFileSysRemoveFile);
    Provide(KRFileClose, &krFileClose);
    Provide(KRFileSetPos, &krFileSetPos);
    Provide(KRFileGetPos, &krFileGetPos);
    Provide(KRFileGetSize, &krFileGetSize);
    Provide(KRFileRead, &krFileRead);
    Provide(KRFileWrite, &krFileWrite);
    Provide(KRFileAcquirePath, &krFileAcquirePath);
    Provide(KRFileGetFileSys, &krFileGetFileSys);
    Provide(KRFileSysFromAtom, &FileSysFromAtom);
    Provide(KRFileSysPathFromFileSpec, &krFileSysPathFromFileSpec);
    Provide(KRMemStmOpen, &krMemStmOpen);
    Provide(KRProcStmOpen, &krProcStmOpen);
    Provide(KRStmRead, &krStmRead);
    Provide(KRStmClose, &krStmClose);
    Provide(KRFileStmOpen, &krFileStmOpen);
    Provide(KRFileSysRegister, &krFileSysRegister);
    Provide(KRFileSysCopyPath, &krFileSysCopyPath);
    Provide(KRFileSysPlatformPath, &krFileSysPlatformPath);
}

} // namespace

void FillKernelSupportTable() {
    fillErrorsAndTables();
    fillFilesAndStreams();
}

} // namespace jackdaw
