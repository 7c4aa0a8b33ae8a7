// The open documents, and what is done with each as a whole.
// SPDX-License-Identifier: MIT
#include "doc/Document.h"

#include <algorithm>
#include <cerrno>
#include <exception>

#include <sys/stat.h>

#include "doc/DocRecord.h"
#include "doc/Keys.h"
#include "doc/Notify.h"
#include "kernel/HostError.h"
#include "lex/LexApi.h"
#include "lex/LexObjects.h"
#include "lex/Store.h"

namespace jackdaw {
namespace {

std::vector<std::unique_ptr<DMDocRec>> &documents() {
    static std::vector<std::unique_ptr<DMDocRec>> s_documents;
    return s_documents;
}

/** False when there is no file; throws when that cannot be told. */
bool statFile(const std::string &path, struct stat &status) {
    if (stat(path.c_str(), &status) == 0) return true;
    if (errno != ENOENT && errno != ENOTDIR) ThrowFileError("examine", path, errno);
    return false;
}

bool isFileOf(const DMDocRec &doc, const struct stat &status) {
    return doc.hasIdentity && doc.device == status.st_dev && doc.inode == status.st_ino;
}

DMDocRec *openOnFile(const struct stat &status) {
    for (const auto &doc : documents()) {
        if (isFileOf(*doc, status)) return doc.get();
    }
    return nullptr;
}

/** Makes `path` the document's own file. */
void adoptFile(DMDocRec &doc, KRFileSys fs, const std::string &path, std::unique_ptr<KRFileRec> file) {
    doc.fileSys = fs;
    doc.path = path;
    doc.file = std::move(file);
    struct stat status;
    doc.hasIdentity = fs == DefaultFileSys() && statFile(path, status);
    if (!doc.hasIdentity) return;
    doc.device = status.st_dev;
    doc.inode = status.st_ino;
}

DMDocRec &addDocument(LexDoc lex) {
    std::unique_ptr<DMDocRec> doc;
    try {
        doc = std::make_unique<DMDocRec>();
        documents().reserve(documents().size() + 1);
        lex::setChangeObserver(lex, [record = doc.get()] { record->flags |= DMDocDirty; });
    } catch (...) {
        lex::closeDoc(lex);
        throw;
    }
    doc->lex = lex;
    documents().push_back(std::move(doc));
    return *documents().back();
}

/** Takes a document away that has neither references nor holds. */
void disposeIfFree(DMDocRec &doc) {
    if (doc.references > 0 || doc.holds > 0) return;
    const auto found =
        std::find_if(documents().begin(), documents().end(), [&](const auto &d) { return d.get() == &doc; });
    const std::unique_ptr<DMDocRec> last = std::move(*found);
    documents().erase(found);
    dropPages(*last);
    lex::closeDoc(last->lex);
}

/** Where a save goes, and what the subscribers hear of it. */
struct SaveTarget {
    SaveTarget(const DMDocRec &doc, std::uint32_t saveFlags, KRFileSys fs, KRPathName path) {
        const bool ownFile = path == nullptr;
        if (ownFile && doc.fileSys == nullptr) throw HostError{KRErrBadParam, "The document has no file of its own."};
        fileSys = ownFile ? doc.fileSys : fs;
        if (fileSys == nullptr) throw HostError{KRErrBadParam};
        pathName = MakePath(fileSys, ownFile ? doc.path : path->text);
        struct stat status;
        const bool ontoOwn =
            ownFile || (fileSys == DefaultFileSys() && statFile(pathName->text, status) && isFileOf(doc, status));
        copy = (saveFlags & DMDocSaveCopy) != 0 && !ontoOwn;
        damage = saveFlags & DMDocSaveSound ? lex::Damage::Refused : lex::Damage::Tolerated;
    }
    ~SaveTarget() {
        ReleasePath(pathName);
    }
    SaveTarget(const SaveTarget &) = delete;
    SaveTarget &operator=(const SaveTarget &) = delete;

    KRFileSys fileSys = nullptr;
    KRPathName pathName = nullptr;
    bool copy = false;
    lex::Damage damage = lex::Damage::Tolerated;
};

void writeTo(LexDoc lex, const SaveTarget &target) {
    if (target.fileSys == DefaultFileSys()) {
        lex::saveDoc(lex, target.pathName->text, target.damage);
        return;
    }
    const std::string bytes = lex::saveDocToString(lex);
    const std::unique_ptr<KRFileRec> file = target.fileSys->open(target.pathName->text, KRFileWrite_ | KRFileCreate);
    file->write(bytes.data(), static_cast<std::int64_t>(bytes.size()));
    file->close();
}

/** The file just written; null where it can be written but not read. */
std::unique_ptr<KRFileRec> reopened(const SaveTarget &target) {
    try {
        return target.fileSys->open(target.pathName->text, KRFileRead_);
    } catch (const HostError &) {
        return nullptr;
    }
}

/** Sends 56, writes, sends 33 on both roads. A failure is thrown when all have heard of it. */
template <class Write>
void saveWithNotices(DMDocRec &doc, bool copy, KRFileSys fs, KRPathName path, Write &&write) {
    if (doc.saving) throw HostError{KRErrBadParam, "The document is being saved already."};
    const DocHold hold(doc);
    const std::uint32_t flagsBefore = doc.flags;
    std::exception_ptr failure;
    KRErrorCode code = KRErrNone;
    doc.saving = true;
    try {
        const auto recordFlags = static_cast<std::uint8_t>(copy ? DMDocSaveFull | DMDocSaveCopy : DMDocSaveFull);
        const DMDocSaveRecord record{sizeof(DMDocSaveRecord), recordFlags, fs, path};
        notifyDocWillSave(&doc, &record);
        write();
    } catch (...) {
        failure = std::current_exception();
        code = CodeOfCurrentException();
    }
    doc.saving = false;
    // What subscribers tidied up for the sake of a copy is no change that the user has to save.
    if (copy) doc.flags = (doc.flags & ~DMDocDirty) | (flagsBefore & DMDocDirty);
    notifyDocDidSave(&doc, code);
    if (failure) std::rethrow_exception(failure);
}

LexObj infoDict(DMDocRec &doc) {
    return lex::dictGet(lex::trailerOf(doc.lex), keys().Info);
}

} // namespace

DMDocRec &checkDoc(DMDoc doc) {
    if (!isOpenDoc(doc)) throw HostError{KRErrBadParam};
    return *doc;
}

DMDoc openDoc(KRFileSys fs, KRPathName path, const char *password) {
    if (fs == nullptr || path == nullptr) throw HostError{KRErrBadParam};
    const bool isLocal = fs == DefaultFileSys();
    struct stat status;
    DMDocRec *open = isLocal && statFile(path->text, status) ? openOnFile(status) : nullptr;
    if (open != nullptr) {
        ++open->references;
        return open;
    }
    std::unique_ptr<KRFileRec> file = fs->open(path->text, KRFileRead_);
    const LexDoc lex = isLocal ? lex::openPdfFile(path->text, password)
                               : lex::openPdfBytes(fs->displayText(path->text), ReadWholeFile(file.get()), password);
    DMDocRec &doc = addDocument(lex);
    adoptFile(doc, fs, path->text, std::move(file));
    return &doc;
}

DMDoc openDocFromBytes(const std::string &bytes, const char *password) {
    return &addDocument(lex::openPdfBytes("standard input", bytes, password));
}

void saveDoc(DMDoc handle, std::uint32_t saveFlags, KRFileSys fs, KRPathName path) {
    DMDocRec &doc = checkDoc(handle);
    const SaveTarget target(doc, saveFlags, fs, path);
    saveWithNotices(doc, target.copy, target.fileSys, target.pathName, [&] {
        writeTo(doc.lex, target);
        if (target.copy) return;
        doc.flags &= ~DMDocDirty;
        adoptFile(doc, target.fileSys, target.pathName->text, reopened(target));
    });
}

void saveDocToStream(DMDoc handle, std::FILE *stream) {
    if (stream == nullptr) throw HostError{KRErrBadParam};
    DMDocRec &doc = checkDoc(handle);
    saveWithNotices(doc, /*copy*/ true, nullptr, nullptr, [&] { lex::saveDocTo(doc.lex, stream); });
}

void closeDoc(DMDoc handle) {
    DMDocRec &doc = checkDoc(handle);
    if (doc.references == 0) throw HostError{KRErrBadParam};
    --doc.references;
    disposeIfFree(doc);
}

void endHold(DMDocRec &doc) {
    --doc.holds;
    disposeIfFree(doc);
}

bool isOpenDoc(DMDoc doc) {
    return std::any_of(documents().begin(), documents().end(), [&](const auto &d) { return d.get() == doc; });
}

std::vector<DMDoc> openDocs() {
    std::vector<DMDoc> all;
    for (const auto &doc : documents()) all.push_back(doc.get());
    return all;
}

void closeAllDocs() {
    for (const DMDoc doc : openDocs()) {
        doc->references = 0;
        disposeIfFree(*doc);
    }
}

LexDoc docLex(DMDoc doc) {
    return checkDoc(doc).lex;
}

DMDoc docFromLex(LexDoc lex) {
    if (lex == nullptr) return nullptr;
    for (const auto &doc : documents()) {
        if (doc->lex == lex) return doc.get();
    }
    return nullptr;
}

KRFile docFile(DMDoc doc) {
    return checkDoc(doc).file.get();
}

std::uint32_t docFlags(DMDoc doc) {
    return checkDoc(doc).flags;
}

void setDocFlags(DMDoc doc, std::uint32_t flags) {
    checkDoc(doc).flags |= flags;
}

void clearDocFlags(DMDoc doc, std::uint32_t flags) {
    checkDoc(doc).flags &= ~flags;
}

std::uint64_t docChangeStamp(DMDoc doc) {
    return lex::changeStamp(checkDoc(doc).lex);
}

std::uint32_t docPermissions(DMDoc doc) {
    return lex::permissions(checkDoc(doc).lex);
}

void tellDocDamage(DMDoc doc, DMDamageProc proc, void *clientData) {
    if (proc == nullptr) throw HostError{KRErrBadParam};
    for (const std::string &line : lex::damage(checkDoc(doc).lex))
        ThrowIf(HostProtect([&] { proc(line.c_str(), clientData); }));
}

void ensureDocWritable(DMDoc handle, bool load) {
    DMDocRec &doc = checkDoc(handle);
    if (!load || doc.writable) return;
    // The library reads the whole file before the first new object: one is made for that alone and dropped again.
    const std::uint32_t flagsBefore = doc.flags;
    lex::destroy(lex::newInteger(doc.lex, /*indirect*/ true, 0));
    doc.flags = flagsBefore;
    doc.writable = true;
}

std::string docInfo(DMDoc doc, const char *key) {
    const LexObj info = infoDict(checkDoc(doc));
    if (key == nullptr) throw HostError{KRErrBadParam};
    const KRAtom atom = ExistingAtom(key);
    if (atom == KRAtomNull || lex::typeOf(info) != LexDict) return {};
    const LexObj value = lex::dictGet(info, atom);
    return lex::typeOf(value) == LexString ? lex::stringValue(value) : std::string();
}

void setDocInfo(DMDoc handle, const char *key, const std::string &bytes) {
    DMDocRec &doc = checkDoc(handle);
    if (key == nullptr || *key == '\0') throw HostError{KRErrBadParam};
    LexObj info = infoDict(doc);
    if (lex::typeOf(info) != LexDict) {
        if (bytes.empty()) return;
        info = lex::newDict(doc.lex, /*indirect*/ true);
        lex::dictPut(lex::trailerOf(doc.lex), keys().Info, info);
    }
    if (bytes.empty())
        lex::dictRemove(info, AtomFromText(key));
    else
        lex::dictPut(info, AtomFromText(key), lex::newString(doc.lex, /*indirect*/ false, bytes));
}

} // namespace jackdaw
