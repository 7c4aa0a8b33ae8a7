// Opening, with repairs when the first try fails; making, closing, and what a document's file allows.
// SPDX-License-Identifier: MIT
#include "lex/Store.h"

#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

#include <qpdf/QPDFExc.hh>

#include "kernel/AtomicFile.h"
#include "kernel/Files.h"
#include "kernel/HostError.h"
#include "kernel/HostLimits.h"
#include "kernel/Memory.h"
#include "lex/FileSource.h"
#include "lex/Node.h"
#include "lex/Repair.h"
#include "lex/StoreParts.h"

namespace jackdaw::lex {

namespace {

/** Where an FDF header must begin at the latest. */
constexpr std::size_t s_headerReach = 1024;

using NewDoc = std::unique_ptr<LexDocRec>;

NewDoc newRecord(const OpenFacts &facts, bool fdf) {
    auto doc = std::make_unique<LexDocRec>();
    doc->facts = facts;
    doc->fdf = fdf;
    doc->failedAllocations = FailedAllocations();
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
    OpenSlot(*doc);
    try {
        AdoptRoot(*doc);
        noteEncryption(*doc);
        AssessOpened(*doc);
    } catch (...) {
        CloseSlot(*doc);
        throw;
    }
    return doc.release();
}

/** Opens by `read`, which has the library read the file; null and the failure when it is too damaged. */
template <class Read>
LexDoc tryToOpen(NewDoc doc, Failure *failure, Read read) {
    const std::string name = doc->facts.name;
    const std::uint64_t failedAllocations = doc->failedAllocations;
    try {
        read(*doc);
        return finishOpening(std::move(doc));
    } catch (const QPDFExc &error) {
        *failure = failureOf(error);
    } catch (const HostError &error) {
        if (error.code != KRErrBadPDF) throw;
        *failure = {error.code, name + ": " + error.what};
    } catch (const std::bad_alloc &) {
        throw;
    } catch (const std::exception &error) {
        // Numbers that fit no type, and the like.
        *failure = {KRErrBadPDF, name + ": " + error.what()};
    }
    // The library may have taken it for damage.
    if (FailedAllocations() != failedAllocations) throw HostError{KRErrNoMemory};
    return nullptr;
}

using Bytes = std::shared_ptr<const std::string>;

LexDoc tryBytes(NewDoc doc, Bytes bytes, const char *password, Failure *failure) {
    return tryToOpen(std::move(doc), failure, [&](LexDocRec &record) {
        record.fileBytes = bytes;
        record.pdf->processMemoryFile(record.facts.name.c_str(), bytes->data(), bytes->size(), password);
    });
}

/** Opens patched bytes; null when there are none or they are still too damaged. */
LexDoc tryPatched(const OpenFacts &facts, std::string bytes, const char *password, bool fdf) {
    if (bytes.empty()) return nullptr;
    NewDoc doc = newRecord(facts, fdf);
    doc->facts.repaired = true;
    doc->warnings.push_back(facts.name + ": is damaged; its end was made anew");
    Failure failure;
    LexDoc opened = tryBytes(std::move(doc), std::make_shared<const std::string>(std::move(bytes)), password, &failure);
    if (failure.code == KRErrPassword) throwFailure(failure);
    return opened;
}

/** The retries for a PDF that the library cannot repair. */
LexDoc openDamagedPdf(const OpenFacts &facts, const std::string &bytes, const char *password, const Failure &failure) {
    if (LexDoc doc = tryPatched(facts, WithStartOfXRefStream(bytes), password, /*fdf*/ false)) return doc;
    if (LexDoc doc = tryPatched(facts, WithTrailerForCatalog(bytes), password, /*fdf*/ false)) return doc;
    if (bytes.empty()) throw HostError{KRErrBadPDF, facts.name + ": the file is empty"};
    if (std::string_view(bytes).substr(0, s_headerReach).find("%PDF-") == std::string::npos)
        throw HostError{KRErrBadPDF, facts.name + ": not a PDF document"};
    throw HostError{KRErrBadPDF, failure.what + "; the document is damaged and could not be repaired"};
}

LexDoc openPdf(const OpenFacts &facts, std::string bytes, const char *password) {
    const Bytes shared = std::make_shared<const std::string>(std::move(bytes));
    Failure failure;
    if (LexDoc doc = tryBytes(newRecord(facts, /*fdf*/ false), shared, password, &failure)) return doc;
    if (failure.code != KRErrBadPDF) throwFailure(failure);
    return openDamagedPdf(facts, *shared, password, failure);
}

/** A file that is open for reading. */
class InputFile {
public:
    explicit InputFile(const std::string &path) : path_(path), fd_(OpenAgain(path, O_RDONLY | O_CLOEXEC | O_NOCTTY)) {
        if (fd_ < 0) ThrowFileError("open", path, errno);
        if (::fstat(fd_, &facts_) == 0 && !S_ISDIR(facts_.st_mode)) return;
        const int reason = S_ISDIR(facts_.st_mode) ? EISDIR : errno;
        ::close(fd_);
        ThrowFileError("open", path, reason);
    }
    ~InputFile() {
        ::close(fd_);
    }
    InputFile(const InputFile &) = delete;
    InputFile &operator=(const InputFile &) = delete;

    /** Of a pipe or a device nobody's rights tell whom its content is for. */
    OpenFacts facts() const {
        OpenFacts facts;
        facts.name = path_;
        if (isRegular()) facts.rights = facts_.st_mode & OpenToAll;
        return facts;
    }
    bool isRegular() const {
        return S_ISREG(facts_.st_mode);
    }
    std::shared_ptr<FileSource> source() const {
        const int fd = ::fcntl(fd_, F_DUPFD_CLOEXEC, 0);
        if (fd < 0) ThrowFileError("open", path_, errno);
        return std::make_shared<FileSource>(path_, fd);
    }
    /** What is no regular file may be endless. */
    std::string readAll(std::int64_t limit = INT64_MAX) const {
        std::string bytes;
        char block[65536];
        for (;;) {
            const ssize_t count = ::read(fd_, block, sizeof block);
            if (count < 0 && TryAgain(errno, fd_, POLLIN)) continue;
            if (count < 0) ThrowFileError("read", path_, errno);
            if (count == 0) return bytes;
            bytes.append(block, static_cast<std::size_t>(count));
            if (static_cast<std::int64_t>(bytes.size()) > limit)
                throw HostError{KRErrNoMemory, path_ + ": no regular file, and longer than " + std::to_string(limit) +
                                                   " bytes; a file of that size would be read"};
        }
    }

private:
    std::string path_;
    int fd_;
    struct stat facts_ {};
};

} // namespace

LexDoc OpenPdfFile(const std::string &path, const char *password) {
    const InputFile file(path);
    if (!file.isRegular()) return openPdf(file.facts(), file.readAll(LimitOf(Limit::PipedFileBytes)), password);
    Failure failure;
    const std::shared_ptr<FileSource> source = file.source();
    LexDoc opened = tryToOpen(newRecord(file.facts(), /*fdf*/ false), &failure, [&](LexDocRec &doc) {
        doc.source = source;
        source->onProgress = [&doc] { BoundComplaints(doc); };
        doc.pdf->processInputSource(source, password);
    });
    if (opened) return opened;
    // What the library took for damage may have been a failure to read.
    source->requireWhole();
    if (failure.code != KRErrBadPDF) throwFailure(failure);
    return openDamagedPdf(file.facts(), file.readAll(), password, failure);
}

LexDoc OpenPdfBytes(const std::string &name, std::string bytes, const char *password) {
    OpenFacts facts;
    facts.name = name;
    return openPdf(facts, std::move(bytes), password);
}

LexDoc OpenFdfBytes(const std::string &name, std::string bytes) {
    const std::size_t header = std::string_view(bytes).substr(0, s_headerReach).find("%FDF-");
    if (header == std::string::npos) {
        const bool pdf = std::string_view(bytes).substr(0, s_headerReach).find("%PDF-") != std::string::npos;
        throw HostError{KRErrNotFDF, name + ": not an FDF file: the header should be \"%FDF-\"" +
                                         (pdf ? " but is \"%PDF-\"" : "; neither is it \"%PDF-\"")};
    }
    const Bytes shared = std::make_shared<const std::string>(std::move(bytes));
    OpenFacts facts;
    facts.name = name;
    Failure failure;
    if (LexDoc doc = tryBytes(newRecord(facts, /*fdf*/ true), shared, /*password*/ nullptr, &failure)) return doc;
    if (LexDoc doc = tryPatched(facts, WithTrailerForFdf(*shared), /*password*/ nullptr, /*fdf*/ true)) return doc;
    throwFailure(failure);
}

LexDoc OpenFdf(KRFileSys fs, KRPathName path) {
    if (!path) throw HostError{KRErrBadParam};
    return OpenFdfBytes(fs->displayText(path->text), ReadWholeFile(fs, path, LimitOf(Limit::FdfBytes)));
}

LexDoc CreateFdf() {
    OpenFacts facts;
    facts.name = "new FDF";
    NewDoc doc = newRecord(facts, /*fdf*/ true);
    doc->pdf->emptyPDF();
    // The empty document's own catalog loses its only reference and is not written.
    QPDFObjectHandle root = doc->pdf->makeIndirectObject(QPDFObjectHandle::newDictionary());
    doc->pdf->getTrailer().replaceKey("/Root", root);
    return finishOpening(std::move(doc));
}

void CloseStore(LexDoc doc) {
    if (!doc) return;
    CloseSlot(OpenRecord(doc));
    delete doc;
}

bool IsFdf(LexDoc doc) {
    return OpenRecord(doc).fdf;
}

const OpenFacts &FactsOf(LexDoc doc) {
    return OpenRecord(doc).facts;
}

std::uint32_t PermissionsOf(LexDoc doc) {
    return OpenRecord(doc).permissionBits;
}

} // namespace jackdaw::lex
