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
#include "kernel/HostLimits.h"
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
        lex::SetChangeObserver(lex, [record = doc.get()] { record->flags |= DMDocDirty; });
    } catch (...) {
        lex::CloseStore(lex);
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
    DropPages(*last);
    lex::CloseStore(last->lex);
}

/** Where a save goes, and what the subscribers hear of it. */
struct SaveTarget {
    SaveTarget(const DMDocRec &doc, std::uint32_t saveFlags, KRFileSys fs, KRPathName path) {
        const bool ownFile = !path;
        if (ownFile && !doc.fileSys) throw HostError{KRErrBadParam, "The document has no file of its own."};
        fileSys = ownFile ? doc.fileSys : fs;
        if (!fileSys) throw HostError{KRErrBadParam};
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
        lex::SaveStore(lex, target.pathName->text, target.damage);
        return;
    }
    const std::string bytes = lex::SaveStoreToString(lex);
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

/** Sends DMDocWillSave, writes, sends DMDocDidSave on both roads. A failure is thrown when all have heard of it. */
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
        NotifyDocWillSave(&doc, &record);
        write();
    } catch (...) {
        failure = std::current_exception();
        code = CodeOfCurrentException();
    }
    doc.saving = false;
    // What subscribers tidied up for the sake of a copy is no change that the user has to save.
    if (copy) doc.flags = (doc.flags & ~DMDocDirty) | (flagsBefore & DMDocDirty);
    NotifyDocDidSave(&doc, code);
    if (failure) std::rethrow_exception(failure);
}

LexObj infoDict(DMDocRec &doc) {
    return lex::DictGet(lex::TrailerOf(doc.lex), Keys().Info);
}

} // namespace

DMDocRec &CheckDoc(DMDoc doc) {
    if (!IsOpenDoc(doc)) throw HostError{KRErrBadParam};
    return *doc;
}

DMDoc OpenDoc(KRFileSys fs, KRPathName path, const char *password) {
    if (!fs || !path) throw HostError{KRErrBadParam};
    const bool isLocal = fs == DefaultFileSys();
    struct stat status;
    DMDocRec *open = isLocal && statFile(path->text, status) ? openOnFile(status) : nullptr;
    if (open) {
        ++open->references;
        return open;
    }
    std::unique_ptr<KRFileRec> file = fs->open(path->text, KRFileRead_);
    const LexDoc lex = isLocal ? lex::OpenPdfFile(path->text, password)
                               : lex::OpenPdfBytes(fs->displayText(path->text),
                                                   ReadWholeFile(file.get(), LimitOf(Limit::FileBytes)), password);
    DMDocRec &doc = addDocument(lex);
    adoptFile(doc, fs, path->text, std::move(file));
    return &doc;
}

DMDoc OpenDocFromBytes(const std::string &bytes, const char *password) {
    return &addDocument(lex::OpenPdfBytes("standard input", bytes, password));
}

void SaveDoc(DMDoc handle, std::uint32_t saveFlags, KRFileSys fs, KRPathName path) {
    DMDocRec &doc = CheckDoc(handle);
    const SaveTarget target(doc, saveFlags, fs, path);
    saveWithNotices(doc, target.copy, target.fileSys, target.pathName, [&] {
        writeTo(doc.lex, target);
        if (target.copy) return;
        doc.flags &= ~DMDocDirty;
        adoptFile(doc, target.fileSys, target.pathName->text, reopened(target));
    });
}

void SaveDocToStream(DMDoc handle, std::FILE *stream) {
    if (!stream) throw HostError{KRErrBadParam};
    DMDocRec &doc = CheckDoc(handle);
    saveWithNotices(doc, /*copy*/ true, nullptr, nullptr, [&] { lex::SaveStoreTo(doc.lex, stream); });
}

void CloseDoc(DMDoc handle) {
    DMDocRec &doc = CheckDoc(handle);
    if (doc.references == 0) throw HostError{KRErrBadParam};
    --doc.references;
    disposeIfFree(doc);
}

void EndHold(DMDocRec &doc) {
    --doc.holds;
    disposeIfFree(doc);
}

bool IsOpenDoc(DMDoc doc) {
    return std::any_of(documents().begin(), documents().end(), [&](const auto &d) { return d.get() == doc; });
}

std::vector<DMDoc> OpenDocs() {
    std::vector<DMDoc> all;
    for (const auto &doc : documents()) all.push_back(doc.get());
    return all;
}

void CloseAllDocs() {
    for (const DMDoc doc : OpenDocs()) {
        doc->references = 0;
        disposeIfFree(*doc);
    }
}

LexDoc DocLex(DMDoc doc) {
    return CheckDoc(doc).lex;
}

DMDoc DocFromLex(LexDoc lex) {
    if (!lex) return nullptr;
    for (const auto &doc : documents()) {
        if (doc->lex == lex) return doc.get();
    }
    return nullptr;
}

KRFile DocFile(DMDoc doc) {
    return CheckDoc(doc).file.get();
}

std::uint32_t DocFlags(DMDoc doc) {
    return CheckDoc(doc).flags;
}

void SetDocFlags(DMDoc doc, std::uint32_t flags) {
    CheckDoc(doc).flags |= flags;
}

void ClearDocFlags(DMDoc doc, std::uint32_t flags) {
    CheckDoc(doc).flags &= ~flags;
}

std::uint64_t DocChangeStamp(DMDoc doc) {
    return lex::ChangeStamp(CheckDoc(doc).lex);
}

std::uint32_t DocPermissions(DMDoc doc) {
    return lex::PermissionsOf(CheckDoc(doc).lex);
}

void TellDocDamage(DMDoc doc, DMDamageProc proc, void *clientData) {
    if (!proc) throw HostError{KRErrBadParam};
    for (const std::string &line : lex::DamageOf(CheckDoc(doc).lex))
        ThrowIf(HostProtect([&] { proc(line.c_str(), clientData); }));
}

void EnsureDocWritable(DMDoc handle, bool load) {
    DMDocRec &doc = CheckDoc(handle);
    if (!load || doc.writable) return;
    // The library reads the whole file before the first new object: one is made for that alone and dropped again.
    const std::uint32_t flagsBefore = doc.flags;
    lex::DestroyObj(lex::NewInteger(doc.lex, /*indirect*/ true, 0));
    doc.flags = flagsBefore;
    doc.writable = true;
}

std::string DocInfo(DMDoc doc, const char *key) {
    const LexObj info = infoDict(CheckDoc(doc));
    if (!key) throw HostError{KRErrBadParam};
    const KRAtom atom = ExistingAtom(key);
    if (atom == KRAtomNull || !lex::IsDict(info)) return {};
    const LexObj value = lex::DictGet(info, atom);
    return lex::IsString(value) ? lex::StringValue(value) : std::string();
}

void SetDocInfo(DMDoc handle, const char *key, const std::string &bytes) {
    DMDocRec &doc = CheckDoc(handle);
    if (!key || *key == '\0') throw HostError{KRErrBadParam};
    LexObj info = infoDict(doc);
    if (!lex::IsDict(info)) {
        if (bytes.empty()) return;
        info = lex::NewDict(doc.lex, /*indirect*/ true);
        lex::DictPut(lex::TrailerOf(doc.lex), Keys().Info, info);
    }
    if (bytes.empty())
        lex::DictRemove(info, AtomFromText(key));
    else
        lex::DictPut(info, AtomFromText(key), lex::NewString(doc.lex, /*indirect*/ false, bytes));
}

} // namespace jackdaw
