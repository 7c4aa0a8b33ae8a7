// Streams: data encoded on the way in, read raw or decoded up to a limit on the way out.
// SPDX-License-Identifier: MIT
#include "lex/LexStreams.h"

#include <algorithm>
#include <limits>

#include <qpdf/Buffer.hh>
#include <qpdf/Pipeline.hh>
#include <qpdf/Pl_Flate.hh>

#include "kernel/Atoms.h"
#include "kernel/HostError.h"
#include "kernel/HostLimits.h"
#include "kernel/Memory.h"
#include "kernel/Streams.h"
#include "lex/LexObjects.h"
#include "lex/Node.h"
#include "lex/StoreParts.h"

namespace jackdaw::lex {

namespace {

/** Takes what a pipeline gives, up to a limit. What it throws is no std::exception, so the library passes it on. */
class StringSink : public Pipeline {
public:
    StringSink(std::string &target, std::int64_t limit) : Pipeline("data", nullptr), target_(target), limit_(limit) {}
    void write(const unsigned char *data, std::size_t length) override {
        if (length > static_cast<std::uint64_t>(limit_) - target_.size()) throw HostError{KRErrBadStream};
        target_.append(reinterpret_cast<const char *>(data), length);
    }
    void finish() override {}

private:
    std::string &target_;
    std::int64_t limit_;
};

std::string encodeFlate(std::string_view data) {
    std::string encoded;
    StringSink sink(encoded, std::numeric_limits<std::int64_t>::max());
    // Appearances are small: an output buffer of the usual 64 KB would cost more than the packing.
    try {
        Pl_Flate flate("new stream", &sink, Pl_Flate::a_deflate, /*out_bufsize*/ 4096);
        flate.write(reinterpret_cast<const unsigned char *>(data.data()), data.size());
        flate.finish();
    } catch (const std::runtime_error &) {
        // Packing asks for nothing but memory.
        CountFailedAllocation();
        throw HostError{KRErrNoMemory};
    }
    return encoded;
}

std::string encodeHex(std::string_view data) {
    static const char s_digits[] = "0123456789ABCDEF";
    std::string encoded;
    encoded.reserve(data.size() * 2 + 1);
    for (const char c : data) {
        const auto byte = static_cast<unsigned char>(c);
        encoded += s_digits[byte >> 4];
        encoded += s_digits[byte & 15];
    }
    return encoded + '>';
}

/** Five digits to the base 85 for four bytes, "z" for four zeros, n + 1 digits for the last n. */
std::string encode85(std::string_view data) {
    std::string encoded;
    for (std::size_t i = 0; i < data.size(); i += 4) {
        const std::size_t count = std::min<std::size_t>(4, data.size() - i);
        std::uint32_t word = 0;
        for (std::size_t j = 0; j < 4; ++j)
            word = word << 8 | (j < count ? static_cast<unsigned char>(data[i + j]) : 0u);
        if (word == 0 && count == 4) {
            encoded += 'z';
            continue;
        }
        char digits[5];
        for (int d = 4; d >= 0; --d, word /= 85) digits[d] = static_cast<char>('!' + word % 85);
        encoded.append(digits, count + 1);
    }
    return encoded + "~>";
}

using Encoder = std::string (*)(std::string_view);

Encoder encoderOf(const std::string &filter) {
    if (filter == "/FlateDecode") return &encodeFlate;
    if (filter == "/ASCIIHexDecode") return &encodeHex;
    if (filter == "/ASCII85Decode") return &encode85;
    return nullptr;
}

/** Filter names of a stream dictionary, in the order of decoding. */
std::vector<std::string> filterNames(QPDFObjectHandle dict) {
    std::vector<std::string> names;
    QPDFObjectHandle filter = dict.getKey("/Filter");
    if (filter.isName()) names.push_back(filter.getName());
    if (!filter.isArray()) return names;
    for (int i = 0; i < filter.getArrayNItems(); ++i) {
        QPDFObjectHandle item = filter.getArrayItem(i);
        names.push_back(item.isName() ? item.getName() : std::string());
    }
    return names;
}

/** Encodes by the dictionary's filters, which become FlateDecode alone when one of them has no encoder here. */
std::string encodeBy(QPDFObjectHandle dict, std::string_view data) {
    std::vector<std::string> names = filterNames(dict);
    if (std::any_of(names.begin(), names.end(), [](const std::string &name) { return !encoderOf(name); })) {
        names.assign(1, "/FlateDecode");
        dict.replaceKey("/Filter", QPDFObjectHandle::newName("/FlateDecode"));
    }
    dict.removeKey("/DecodeParms");
    std::string encoded(data);
    for (auto name = names.rbegin(); name != names.rend(); ++name) encoded = encoderOf(*name)(encoded);
    return encoded;
}

/** The dictionary for a new stream: the caller's own node when it is loose and direct, else a copy. */
Container &streamDictionary(LexDocRec &doc, LexObj attributes) {
    if (IsNull(attributes)) return static_cast<Container &>(*NodeForHandle(doc, QPDFObjectHandle::newDictionary()));
    Container &node = ContainerOfType(attributes, LexDict);
    if (node.doc != &doc) throw HostError{KRErrBadParam};
    const bool loose = node.isDirect() && !node.up && !(node.flags & NodeIsTrailer);
    return loose ? node : static_cast<Container &>(*NodeForHandle(doc, node.h.shallowCopy()));
}

void forgetDataKeys(Container &dict) {
    for (const char *key : {"Filter", "DecodeParms", "Length"}) ForgetKey(dict, AtomFromText(key));
}

Container &streamNode(LexObj stream) {
    return ContainerOfType(stream, LexStream);
}

[[noreturn]] void throwBadStream(const Node &stream, const std::string &why) {
    throw HostError{KRErrBadStream, "object " + std::to_string(stream.number) + ": " + why};
}

/** Runs a read of the stream's data; what the library throws becomes the one code for bad data. */
template <class Read>
void readData(const Node &stream, Read read) {
    try {
        read();
    } catch (const HostError &) {
        throwBadStream(stream,
                       "the stream decodes to more than " + std::to_string(LimitOf(Limit::StreamBytes)) + " bytes");
    } catch (const std::bad_alloc &) {
        throw;
    } catch (const std::exception &error) {
        if (isOfMemory(error.what())) CountFailedAllocation();
        throwBadStream(stream, error.what());
    }
}

} // namespace

LexObj NewStream(LexDoc doc, std::string_view bytes, bool encode, LexObj attributes, LexObj encodeParms) {
    LexDocRec &record = OpenRecord(doc);
    Container &dict = streamDictionary(record, attributes);
    if (!IsNull(encodeParms) && !encode) DictPut(ReferenceTo(&dict), AtomFromText("DecodeParms"), encodeParms);
    const std::string encoded = encode ? encodeBy(dict.h, bytes) : std::string();
    QPDFObjectHandle stream = record.pdf->newStream();
    stream.replaceDict(dict.h);
    // Handles without an object: the filters stay as the dictionary has them.
    stream.replaceStreamData(encode ? encoded : std::string(bytes), QPDFObjectHandle(), QPDFObjectHandle());
    forgetDataKeys(dict);
    auto &node = static_cast<Container &>(*NodeForHandle(record, stream));
    node.memo.push_back({&dict, KRAtomNull});
    LinkChild(node, &dict);
    // The length is one of the shared numbers from the start.
    ChildByKey(dict, AtomFromText("Length"));
    return ReferenceTo(&node);
}

LexObj NewStreamFrom(LexDoc doc, KRStm source, std::int32_t start, bool encode, LexObj attributes, LexObj encodeParms,
                     std::int32_t length) {
    OpenRecord(doc);
    if (!source) throw HostError{KRErrBadParam};
    const std::string bytes =
        DrainStream(source, std::max(start, 0), std::max(length, -1), LimitOf(Limit::NewStreamBytes));
    return NewStream(doc, bytes, encode, attributes, encodeParms);
}

LexObj StreamDict(LexObj stream) {
    return ReferenceTo(&DictionaryOfStream(streamNode(stream)));
}

std::int32_t StreamLength(LexObj stream) {
    Container &node = streamNode(stream);
    std::size_t length = 0;
    readData(node, [&] { length = node.h.getRawStreamData()->getSize(); });
    return static_cast<std::int32_t>(std::min<std::size_t>(length, std::numeric_limits<std::int32_t>::max()));
}

std::string RawData(LexObj stream) {
    Container &node = streamNode(stream);
    std::string bytes;
    readData(node, [&] {
        const auto buffer = node.h.getRawStreamData();
        bytes.assign(reinterpret_cast<const char *>(buffer->getBuffer()), buffer->getSize());
    });
    return bytes;
}

std::string DecodedData(LexObj stream) {
    Container &node = streamNode(stream);
    std::string bytes;
    StringSink sink(bytes, LimitOf(Limit::StreamBytes));
    bool attempted = false;
    bool good = false;
    readData(node, [&] {
        good = node.h.pipeStreamData(&sink, &attempted, /*encode_flags*/ 0, qpdf_dl_specialized,
                                     /*suppress_warnings*/ true);
    });
    if (!attempted) throwBadStream(node, "a filter of the stream is not known");
    if (!good) throwBadStream(node, "the data of the stream cannot be decoded");
    return bytes;
}

KRStm OpenData(LexObj stream, LexStreamMode mode) {
    if (mode == LexStreamRaw) return OpenOwnedStream(RawData(stream));
    if (mode == LexStreamDecoded) return OpenOwnedStream(DecodedData(stream));
    throw HostError{KRErrBadParam};
}

} // namespace jackdaw::lex
