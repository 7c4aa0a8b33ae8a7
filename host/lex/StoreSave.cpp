// Saving: the whole document written anew through a pipe into a file, another file system or a text.
// SPDX-License-Identifier: MIT
#include "lex/Store.h"

#include <cerrno>

#include <qpdf/Pipeline.hh>
#include <qpdf/QPDFWriter.hh>

#include "kernel/AtomicFile.h"
#include "kernel/Atoms.h"
#include "kernel/Files.h"
#include "kernel/HostError.h"
#include "lex/StoreParts.h"

namespace jackdaw::lex {

namespace {

using Sink = std::function<void(const char *bytes, std::size_t count)>;

/**
 * The end of the writer's pipe: gathers its many small pieces, and writes another header over the first bytes. The
 * header is as long as the writer's own, so that offsets hold.
 */
class SavePipe : public Pipeline {
public:
    SavePipe(Sink sink, std::string_view header) : Pipeline("save", nullptr), sink_(std::move(sink)), header_(header) {
        block_.reserve(s_blockSize);
    }
    void write(const unsigned char *data, std::size_t length) override {
        block_.append(reinterpret_cast<const char *>(data), length);
        if (block_.size() >= s_blockSize) flush();
    }
    void finish() override {}
    void flush() {
        if (!block_.empty()) block_.replace(0, header_.size(), header_);
        header_ = {};
        sink_(block_.data(), block_.size());
        block_.clear();
    }

private:
    static constexpr std::size_t s_blockSize = 65536;
    Sink sink_;
    std::string_view header_;
    std::string block_;
};

// What the writer would get wrong: it writes `Size` only when the trailer had one, and a direct catalog not at all.
void mendTrailer(LexDocRec &doc) {
    QPDFObjectHandle trailer = doc.pdf->getTrailer();
    if (!trailer.hasKey("/Size")) trailer.replaceKey("/Size", QPDFObjectHandle::newInteger(1));
    if (!doc.root || doc.root->type != LexDict) throw HostError{KRErrBadPDF, doc.facts.name + ": the catalog is gone"};
    MakeIndirect(*doc.root);
}

/**
 * A crypt filter without parameters is the identity. The writer takes the filter out of both arrays, and trips over
 * parameters that are not there; the reader would decrypt what is in the clear.
 */
void completeCryptParameters(QPDFObjectHandle dict) {
    QPDFObjectHandle filters = dict.getKey("/Filter");
    QPDFObjectHandle parameters = dict.getKey("/DecodeParms");
    if (!filters.isArray() || !filters.isOrHasName("/Crypt")) return;
    std::vector<QPDFObjectHandle> all(static_cast<std::size_t>(filters.getArrayNItems()), QPDFObjectHandle::newNull());
    for (int i = 0; i < filters.getArrayNItems(); ++i) {
        QPDFObjectHandle &own = all[static_cast<std::size_t>(i)];
        if (parameters.isArray() && i < parameters.getArrayNItems()) own = parameters.getArrayItem(i);
        if (parameters.isDictionary() && i == 0) own = parameters;
        if (!own.isDictionary() && filters.getArrayItem(i).isNameAndEquals("/Crypt"))
            own = QPDFObjectHandle::parse("<< /Type /CryptFilterDecodeParms /Name /Identity >>");
    }
    dict.replaceKey("/DecodeParms", QPDFObjectHandle::newArray(all));
}

/** Object streams go out packed as they came; all other streams keep their bytes. */
void setUpPdf(LexDocRec &doc, QPDFWriter &writer) {
    QPDFObjectHandle trailerType = doc.pdf->getTrailer().getKey("/Type");
    const bool hasObjectStreams = trailerType.isNameAndEquals("/XRef");
    if (hasObjectStreams) {
        writer.setDecodeLevel(qpdf_dl_none);
        writer.setCompressStreams(true);
    } else {
        writer.setStreamDataMode(qpdf_s_preserve);
    }
    if (!hasObjectStreams && !doc.facts.encrypted) return;
    for (QPDFObjectHandle &object : doc.pdf->getAllObjects()) {
        if (!object.isStream()) continue;
        if (hasObjectStreams) object.setFilterOnWrite(false);
        if (doc.facts.encrypted) completeCryptParameters(object.getDict());
    }
}

void setUpFdf(QPDFWriter &writer) {
    writer.setStreamDataMode(qpdf_s_preserve);
    writer.setObjectStreamMode(qpdf_o_disable);
    writer.setPreserveEncryption(false);
    writer.forcePDFVersion("1.2");
}

void runWriter(LexDocRec &doc, const Sink &sink) {
    mendTrailer(doc);
    SavePipe pipe(sink, doc.fdf ? "%FDF-1.2" : "");
    QPDFWriter writer(*doc.pdf);
    writer.setOutputPipeline(&pipe);
    if (doc.fdf)
        setUpFdf(writer);
    else
        setUpPdf(doc, writer);
    writer.write();
    pipe.flush();
    // The writer makes the extensions dictionary direct, behind our backs.
    ForgetKey(*doc.root, AtomFromText("Extensions"));
}

/** What the writer stumbles over becomes one code; errors of the sink and of memory pass as they are. */
void writeDoc(LexDocRec &doc, const Sink &sink) {
    try {
        runWriter(doc, sink);
    } catch (const std::bad_alloc &) {
        throw;
    } catch (const std::exception &error) {
        RequireWhole(doc);
        throw HostError{KRErrFileIO, doc.facts.name + ": cannot be written anew: " + error.what()};
    }
    RequireWhole(doc);
}

} // namespace

void SaveStore(LexDoc doc, const std::string &path, Damage tolerance) {
    LexDocRec &record = OpenRecord(doc);
    AtomicFile file(path, record.facts.rights);
    writeDoc(record, [&](const char *bytes, std::size_t count) { file.write(bytes, count); });
    const std::vector<std::string> found = DamageOf(doc);
    if (tolerance == Damage::Refused && !found.empty()) throw HostError{KRErrBadPDF, found.front()};
    file.commit();
}

void SaveStoreTo(LexDoc doc, std::FILE *file) {
    const auto put = [&](const char *bytes, std::size_t count) {
        if (std::fwrite(bytes, 1, count, file) != count) ThrowFileError("write", "standard output", errno);
    };
    writeDoc(OpenRecord(doc), put);
    if (std::fflush(file) != 0) ThrowFileError("write", "standard output", errno);
}

std::string SaveStoreToString(LexDoc doc) {
    std::string text;
    writeDoc(OpenRecord(doc), [&](const char *bytes, std::size_t count) { text.append(bytes, count); });
    return text;
}

void SaveFdf(LexDoc doc, KRFileSys fs, KRPathName path) {
    LexDocRec &record = OpenRecord(doc);
    if (!record.fdf || !path) throw HostError{KRErrBadParam};
    if (fs == DefaultFileSys()) return SaveStore(doc, UnixPathOf(fs, path));
    const std::unique_ptr<KRFileRec> file = fs->open(path->text, KRFileWrite_ | KRFileCreate);
    writeDoc(record,
             [&](const char *bytes, std::size_t count) { file->write(bytes, static_cast<std::int64_t>(count)); });
    file->close();
}

} // namespace jackdaw::lex
