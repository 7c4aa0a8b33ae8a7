// Opening, with repairs when the first try fails; making, closing, and what a document's file allows.
// SPDX-License-Identifier: MIT
#include "lex/Store.h"

#include <cerrno>
#include <memory>
#include <string_view>

#include <qpdf/QPDFExc.hh>
#include <sys/stat.h>
#include <unistd.h>

#include "kernel/Files.h"
#include "kernel/HostError.h"
#include "lex/FileSource.h"
#include "lex/Limits.h"
#include "lex/Node.h"
#include "lex/Repair.h"

namespace jackdaw::lex {

namespace {

/** Where an FDF header must begin at the latest. */
constexpr std::size_t s_headerReach = 1024;

using NewDoc = std::unique_ptr<LexDocRec>;

NewDoc newRecord(const std::string &name) {
    auto doc = std::make_unique<LexDocRec>();
    doc->facts.name = name;
    doc->pdf->setSuppressWarnings(true);
    return doc;
}

/** Why an opening failed. */
struct Failure {
    KRErrorCode code = KRErrNone;
    std::string what;
};

[[noreturn]] void throwFailure(const Failure &failure) {
    throw HostError{failure.code, failure.what};
}

Failure failureOf(const QPDFExc &error) {
    switch (error.getErrorCode()) {
    case qpdf_e_password:
        return {KRErrPassword, error.what()};
    case qpdf_e_system:
        return {KRErrFileIO, error.what()};
    default:
        return {KRErrBadPDF, error.what()};
    }
}

void collectWarnings(LexDocRec &doc) {
    for (const QPDFExc &warning : doc.pdf->getWarnings()) {
        // The library knows no FDF header; that it is there was tested before.
        if (doc.fdf && warning.getMessageDetail() == "can't find PDF header") continue;
        doc.warnings.emplace_back(warning.what());
        if (warning.getMessageDetail().find("reconstruct") != std::string::npos) doc.facts.repaired = true;
    }
}

// The raw word is never handed out: its reserved bits are ones, and say "all" to a reader that tests them.
std::uint32_t permissionBits(std::uint32_t bits, int revision) {
    constexpr std::uint32_t defined = 0x0F3C, annotate = 32, fillIn = 256;
    bits &= defined;
    return revision >= 3 && bits & fillIn ? bits | annotate : bits;
}

void noteEncryption(LexDocRec &doc) {
    int revision = 0, bits = 0;
    doc.facts.encrypted = doc.pdf->isEncrypted(revision, bits);
    if (!doc.facts.encrypted) return;
    doc.facts.owner = doc.pdf->ownerPasswordMatched();
    if (!doc.facts.owner) doc.permissionBits = permissionBits(static_cast<std::uint32_t>(bits), revision);
}

/** A document read so far becomes an open one. */
LexDoc finishOpening(NewDoc doc) {
    // The library finds a missing catalog only here.
    doc->pdf->getRoot();
    openSlot(*doc);
    try {
        adoptRoot(*doc);
        noteEncryption(*doc);
        collectWarnings(*doc);
    } catch (...) {
        closeSlot(*doc);
        throw;
    }
    return doc.release();
}

/** Opens by `read`, which has the library read the file; null and the failure when it is too damaged. */
template <class Read>
LexDoc tryToOpen(NewDoc doc, Failure *failure, Read read) {
    const std::string name = doc->facts.name;
    try {
        read(*doc);
        return finishOpening(std::move(doc));
    } catch (const QPDFExc &error) {
        *failure = failureOf(error);
    } catch (const HostError &error) {
        *failure = {error.code, name + ": " + error.what};
    } catch (const std::bad_alloc &) {
        throw;
    } catch (const std::exception &error) {
        // Numbers that fit no type, and the like.
        *failure = {KRErrBadPDF, name + ": " + error.what()};
    }
    return nullptr;
}

using Bytes = std::shared_ptr<const std::string>;

LexDoc tryBytes(const std::string &name, Bytes bytes, const char *password, bool fdf, Failure *failure) {
    return tryToOpen(newRecord(name), failure, [&](LexDocRec &doc) {
        doc.fdf = fdf;
        doc.fileBytes = bytes;
        doc.pdf->processMemoryFile(name.c_str(), bytes->data(), bytes->size(), password);
    });
}

/** Opens patched bytes; null when there are none or they are still too damaged. */
LexDoc tryPatched(const std::string &name, std::string bytes, const char *password, bool fdf) {
    if (bytes.empty()) return nullptr;
    Failure failure;
    LexDoc doc = tryBytes(name, std::make_shared<const std::string>(std::move(bytes)), password, fdf, &failure);
    if (doc) doc->facts.repaired = true;
    if (failure.code == KRErrPassword) throwFailure(failure);
    return doc;
}

/** The retries for a PDF that the library cannot repair. */
LexDoc openDamagedPdf(const std::string &name, const std::string &bytes, const char *password, const Failure &failure) {
    if (LexDoc doc = tryPatched(name, withStartOfXRefStream(bytes), password, /*fdf*/ false)) return doc;
    if (LexDoc doc = tryPatched(name, withTrailerForCatalog(bytes), password, /*fdf*/ false)) return doc;
    if (bytes.empty()) throw HostError{KRErrBadPDF, name + ": the file is empty"};
    if (std::string_view(bytes).substr(0, s_headerReach).find("%PDF-") == std::string::npos)
        throw HostError{KRErrBadPDF, name + ": not a PDF document"};
    throw HostError{KRErrBadPDF, failure.what + "; the document is damaged and could not be repaired"};
}

struct FileCloser {
    void operator()(std::FILE *file) const {
        std::fclose(file);
    }
};
using OpenFile = std::unique_ptr<std::FILE, FileCloser>;

OpenFile openForReading(const std::string &path, bool *seekable) {
    OpenFile file(std::fopen(path.c_str(), "rb"));
    if (!file) ThrowFileError("open", path, errno);
    struct stat facts;
    if (fstat(fileno(file.get()), &facts) != 0) ThrowFileError("open", path, errno);
    if (S_ISDIR(facts.st_mode)) ThrowFileError("open", path, EISDIR);
    *seekable = S_ISREG(facts.st_mode);
    return file;
}

/** `file` as bytes: what is no regular file may be endless. */
std::string readAll(OpenFile file, const std::string &path, std::int64_t limit = INT64_MAX) {
    std::string bytes;
    char block[65536];
    while (const std::size_t count = std::fread(block, 1, sizeof block, file.get())) {
        bytes.append(block, count);
        if (static_cast<std::int64_t>(bytes.size()) > limit)
            throw HostError{KRErrNoMemory, path + ": no regular file, and longer than " + std::to_string(limit) +
                                               " bytes; a file of that size would be read"};
    }
    if (std::ferror(file.get())) ThrowFileError("read", path, errno);
    return bytes;
}

} // namespace

LexDoc openPdfFile(const std::string &path, const char *password) {
    bool seekable = false;
    OpenFile file = openForReading(path, &seekable);
    if (!seekable) return openPdfBytes(path, readAll(std::move(file), path, limits().pipedFileBytes), password);
    Failure failure;
    LexDoc opened = tryToOpen(newRecord(path), &failure, [&](LexDocRec &doc) {
        const int fd = ::dup(fileno(file.get()));
        if (fd < 0) ThrowFileError("open", path, errno);
        doc.pdf->processInputSource(std::make_shared<FileSource>(path, fd), password);
    });
    if (opened) return opened;
    if (failure.code != KRErrBadPDF) throwFailure(failure);
    return openDamagedPdf(path, readAll(std::move(file), path), password, failure);
}

LexDoc openPdfBytes(const std::string &name, std::string bytes, const char *password) {
    const Bytes shared = std::make_shared<const std::string>(std::move(bytes));
    Failure failure;
    if (LexDoc doc = tryBytes(name, shared, password, /*fdf*/ false, &failure)) return doc;
    if (failure.code != KRErrBadPDF) throwFailure(failure);
    return openDamagedPdf(name, *shared, password, failure);
}

LexDoc openFdfBytes(const std::string &name, std::string bytes) {
    const std::size_t header = std::string_view(bytes).substr(0, s_headerReach).find("%FDF-");
    if (header == std::string::npos) {
        const bool pdf = std::string_view(bytes).substr(0, s_headerReach).find("%PDF-") != std::string::npos;
        throw HostError{KRErrNotFDF, name + ": not an FDF file: the header should be \"%FDF-\"" +
                                         (pdf ? " but is \"%PDF-\"" : "; neither is it \"%PDF-\"")};
    }
    const Bytes shared = std::make_shared<const std::string>(std::move(bytes));
    Failure failure;
    if (LexDoc doc = tryBytes(name, shared, /*password*/ nullptr, /*fdf*/ true, &failure)) return doc;
    if (LexDoc doc = tryPatched(name, withTrailerForFdf(*shared), /*password*/ nullptr, /*fdf*/ true)) return doc;
    throwFailure(failure);
}

LexDoc openFdf(KRFileSys fs, KRPathName path) {
    if (!path) throw HostError{KRErrBadParam};
    return openFdfBytes(fs->displayText(path->text), ReadWholeFile(fs, path, limits().fdfBytes));
}

LexDoc createFdf() {
    NewDoc doc = newRecord("new FDF");
    doc->fdf = true;
    doc->pdf->emptyPDF();
    // The empty document's own catalog loses its only reference and is not written.
    QPDFObjectHandle root = doc->pdf->makeIndirectObject(QPDFObjectHandle::newDictionary());
    doc->pdf->getTrailer().replaceKey("/Root", root);
    return finishOpening(std::move(doc));
}

void closeDoc(LexDoc doc) {
    if (!doc) return;
    closeSlot(openRecord(doc));
    delete doc;
}

bool isFdf(LexDoc doc) {
    return openRecord(doc).fdf;
}

const OpenFacts &openFacts(LexDoc doc) {
    return openRecord(doc).facts;
}

std::uint32_t permissions(LexDoc doc) {
    return openRecord(doc).permissionBits;
}

const std::vector<std::string> &warnings(LexDoc doc) {
    LexDocRec &record = openRecord(doc);
    collectWarnings(record);
    return record.warnings;
}

} // namespace jackdaw::lex
