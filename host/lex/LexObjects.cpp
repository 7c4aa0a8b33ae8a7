// Objects: making them, reading scalars, and what a document as a whole tells about itself.
// SPDX-License-Identifier: MIT
#include "lex/LexObjects.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "kernel/Atoms.h"
#include "kernel/Fixed.h"
#include "kernel/HostError.h"
#include "lex/LexApi.h"
#include "lex/Node.h"

namespace jackdaw::lex {

namespace {

/** Decimals that bring every 16.16 number back when it is read again. */
constexpr int s_fixedDecimals = 5;

/** A node for a fresh object of the library's. */
LexObj adopt(LexDocRec &doc, bool indirect, QPDFObjectHandle h) {
    if (indirect) h = doc.pdf->makeIndirectObject(h);
    return ReferenceTo(NodeForHandle(doc, h));
}

template <class Number>
Number clampTo(long long value) {
    using Bounds = std::numeric_limits<Number>;
    return static_cast<Number>(std::clamp<long long>(value, Bounds::min(), Bounds::max()));
}

/** 16.16 of a real's text. The library's own conversion follows the locale. */
KRFixed fixedOfReal(QPDFObjectHandle &h) {
    const std::string text = h.getRealValue();
    const char *first = text.data();
    const char *const last = first + text.size();
    if (first != last && *first == '+') ++first;
    double value = 0;
    const auto [end, error] = std::from_chars(first, last, value, std::chars_format::fixed);
    if (error == std::errc::result_out_of_range)
        return text.front() == '-' ? std::numeric_limits<KRFixed>::min() : std::numeric_limits<KRFixed>::max();
    return FixedFromDouble(value);
}

} // namespace

LexType TypeOf(LexObj obj) {
    const Node *node = NodeOf(obj);
    return node ? static_cast<LexType>(node->type) : LexNull;
}

bool IsIndirect(LexObj obj) {
    return ObjectNumber(obj) != 0;
}

int ObjectNumber(LexObj obj) {
    const Node *node = NodeOf(obj);
    return node ? node->number : 0;
}

LexDoc DocOf(LexObj obj) {
    const Node *node = NodeOf(obj);
    return node ? node->doc : nullptr;
}

LexObj NewInteger(LexDoc doc, bool indirect, std::int64_t value) {
    return adopt(OpenRecord(doc), indirect, QPDFObjectHandle::newInteger(value));
}

LexObj NewFixed(LexDoc doc, bool indirect, KRFixed value) {
    return adopt(OpenRecord(doc), indirect, QPDFObjectHandle::newReal(FixedToText(value, s_fixedDecimals)));
}

LexObj NewBoolean(LexDoc doc, bool indirect, bool value) {
    return adopt(OpenRecord(doc), indirect, QPDFObjectHandle::newBool(value));
}

LexObj NewName(LexDoc doc, bool indirect, KRAtom value) {
    if (value == KRAtomNull) throw HostError{KRErrBadParam};
    return adopt(OpenRecord(doc), indirect, QPDFObjectHandle::newName(AtomKey(value)));
}

LexObj NewString(LexDoc doc, bool indirect, std::string_view bytes) {
    return adopt(OpenRecord(doc), indirect, QPDFObjectHandle::newString(std::string(bytes)));
}

LexObj NewArray(LexDoc doc, bool indirect) {
    return adopt(OpenRecord(doc), indirect, QPDFObjectHandle::newArray());
}

LexObj NewDict(LexDoc doc, bool indirect) {
    return adopt(OpenRecord(doc), indirect, QPDFObjectHandle::newDictionary());
}

LexObj CopyScalar(LexDoc doc, LexObj scalar) {
    Node *node = NodeOf(scalar);
    if (!node || node->isContainer()) throw HostError{KRErrBadParam};
    QPDFObjectHandle &h = node->h;
    LexDocRec &record = OpenRecord(doc);
    switch (static_cast<LexType>(node->type)) {
    case LexInteger:
        return adopt(record, /*indirect*/ false, QPDFObjectHandle::newInteger(h.getIntValue()));
    case LexFixed:
        return adopt(record, /*indirect*/ false, QPDFObjectHandle::newReal(h.getRealValue()));
    case LexBoolean:
        return adopt(record, /*indirect*/ false, QPDFObjectHandle::newBool(h.getBoolValue()));
    case LexName:
        return adopt(record, /*indirect*/ false, QPDFObjectHandle::newName(h.getName()));
    default:
        return adopt(record, /*indirect*/ false, QPDFObjectHandle::newString(h.getStringValue()));
    }
}

void DestroyObj(LexObj obj) {
    Node *node = NodeOf(obj);
    if (!node || node->flags & NodeIsTrailer) return;
    LexDocRec &doc = *node->doc;
    if (node->isDirect()) {
        if (!node->isContainer() || static_cast<Container *>(node)->up) return;
        Bury(*node);
        return;
    }
    doc.pdf->replaceObject(node->h.getObjGen(), QPDFObjectHandle::newNull());
    Bury(*node);
    NoteChange(*doc.trailer);
}

std::int32_t IntegerValue(LexObj obj) {
    return clampTo<std::int32_t>(NodeOfType(obj, LexInteger).h.getIntValue());
}

KRFixed FixedValue(LexObj obj) {
    return fixedOfReal(NodeOfType(obj, LexFixed).h);
}

KRFixed NumberOr(LexObj obj, KRFixed otherwise) {
    const LexType type = TypeOf(obj);
    if (type == LexFixed) return FixedValue(obj);
    return type == LexInteger ? SaturateFixed(std::int64_t{IntegerValue(obj)} * KRFixedOne) : otherwise;
}

std::int32_t IntegerOr(LexObj obj, std::int32_t otherwise) {
    return TypeOf(obj) == LexInteger ? IntegerValue(obj) : otherwise;
}

bool BooleanValue(LexObj obj) {
    return NodeOfType(obj, LexBoolean).h.getBoolValue();
}

KRAtom NameValue(LexObj obj) {
    Node &node = NodeOfType(obj, LexName);
    if (node.atomOrHeight == KRAtomNull) node.atomOrHeight = AtomFromKey(node.h.getName().c_str());
    return node.atomOrHeight;
}

KRAtom NameOrNone(LexObj obj) {
    return IsName(obj) ? NameValue(obj) : KRAtomNull;
}

const std::string &StringValue(LexObj obj) {
    auto &node = static_cast<StringNode &>(NodeOfType(obj, LexString));
    if (!(node.flags & NodeHasBytes)) node.bytes = node.h.getStringValue();
    node.flags |= NodeHasBytes;
    return node.bytes;
}

void SetClient(LexDoc doc, void *client) {
    OpenRecord(doc).client = client;
}

void *ClientOf(LexDoc doc) {
    return OpenRecord(doc).client;
}

void SetChangeObserver(LexDoc doc, std::function<void()> observer) {
    OpenRecord(doc).onChange = std::move(observer);
}

std::uint64_t ChangeStamp(LexDoc doc) {
    return OpenRecord(doc).stamp;
}

LexObj EnsureIndirect(LexObj obj) {
    Node *node = NodeOf(obj);
    if (!node || !node->isContainer()) throw HostError{KRErrBadParam};
    MakeIndirect(static_cast<Container &>(*node));
    return obj;
}

QPDF &LibraryDoc(LexDoc doc) {
    return *OpenRecord(doc).pdf;
}

QPDFObjectHandle LibraryHandle(LexObj obj) {
    const Node *node = NodeOf(obj);
    return node ? node->h : QPDFObjectHandle::newNull();
}

LexObj RootOf(LexDoc doc) {
    return ReferenceTo(OpenRecord(doc).root);
}

LexObj TrailerOf(LexDoc doc) {
    return ReferenceTo(OpenRecord(doc).trailer);
}

} // namespace jackdaw::lex
