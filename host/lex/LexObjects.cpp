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
    return referenceTo(nodeForHandle(doc, h));
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

LexType typeOf(LexObj obj) {
    const Node *node = nodeOf(obj);
    return node ? static_cast<LexType>(node->type) : LexNull;
}

bool isIndirect(LexObj obj) {
    return objectNumber(obj) != 0;
}

int objectNumber(LexObj obj) {
    const Node *node = nodeOf(obj);
    return node ? node->number : 0;
}

LexDoc docOf(LexObj obj) {
    const Node *node = nodeOf(obj);
    return node ? node->doc : nullptr;
}

LexObj newInteger(LexDoc doc, bool indirect, std::int64_t value) {
    return adopt(openRecord(doc), indirect, QPDFObjectHandle::newInteger(value));
}

LexObj newFixed(LexDoc doc, bool indirect, KRFixed value) {
    return adopt(openRecord(doc), indirect, QPDFObjectHandle::newReal(FixedToText(value, s_fixedDecimals)));
}

LexObj newBoolean(LexDoc doc, bool indirect, bool value) {
    return adopt(openRecord(doc), indirect, QPDFObjectHandle::newBool(value));
}

LexObj newName(LexDoc doc, bool indirect, KRAtom value) {
    if (value == KRAtomNull) throw HostError{KRErrBadParam};
    return adopt(openRecord(doc), indirect, QPDFObjectHandle::newName(AtomKey(value)));
}

LexObj newString(LexDoc doc, bool indirect, std::string_view bytes) {
    return adopt(openRecord(doc), indirect, QPDFObjectHandle::newString(std::string(bytes)));
}

LexObj newArray(LexDoc doc, bool indirect) {
    return adopt(openRecord(doc), indirect, QPDFObjectHandle::newArray());
}

LexObj newDict(LexDoc doc, bool indirect) {
    return adopt(openRecord(doc), indirect, QPDFObjectHandle::newDictionary());
}

LexObj copyScalar(LexDoc doc, LexObj scalar) {
    Node *node = nodeOf(scalar);
    if (!node || node->isContainer()) throw HostError{KRErrBadParam};
    QPDFObjectHandle &h = node->h;
    LexDocRec &record = openRecord(doc);
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

void destroy(LexObj obj) {
    Node *node = nodeOf(obj);
    if (!node || node->flags & NodeIsTrailer) return;
    LexDocRec &doc = *node->doc;
    if (node->isDirect()) {
        if (!node->isContainer() || static_cast<Container *>(node)->up) return;
        bury(*node);
        return;
    }
    doc.pdf->replaceObject(node->h.getObjGen(), QPDFObjectHandle::newNull());
    bury(*node);
    changed(*doc.trailer);
}

std::int32_t integerValue(LexObj obj) {
    return clampTo<std::int32_t>(nodeOfType(obj, LexInteger).h.getIntValue());
}

KRFixed fixedValue(LexObj obj) {
    return fixedOfReal(nodeOfType(obj, LexFixed).h);
}

KRFixed numberOr(LexObj obj, KRFixed otherwise) {
    const LexType type = typeOf(obj);
    if (type == LexFixed) return fixedValue(obj);
    return type == LexInteger ? SaturateFixed(std::int64_t{integerValue(obj)} * KRFixedOne) : otherwise;
}

std::int32_t integerOr(LexObj obj, std::int32_t otherwise) {
    return typeOf(obj) == LexInteger ? integerValue(obj) : otherwise;
}

bool booleanValue(LexObj obj) {
    return nodeOfType(obj, LexBoolean).h.getBoolValue();
}

KRAtom nameValue(LexObj obj) {
    Node &node = nodeOfType(obj, LexName);
    if (node.atomOrHeight == KRAtomNull) node.atomOrHeight = AtomFromKey(node.h.getName().c_str());
    return node.atomOrHeight;
}

KRAtom nameOrNone(LexObj obj) {
    return typeOf(obj) == LexName ? nameValue(obj) : KRAtomNull;
}

const std::string &stringValue(LexObj obj) {
    auto &node = static_cast<StringNode &>(nodeOfType(obj, LexString));
    if (!(node.flags & NodeHasBytes)) node.bytes = node.h.getStringValue();
    node.flags |= NodeHasBytes;
    return node.bytes;
}

void setClient(LexDoc doc, void *client) {
    openRecord(doc).client = client;
}

void *client(LexDoc doc) {
    return openRecord(doc).client;
}

void setChangeObserver(LexDoc doc, std::function<void()> observer) {
    openRecord(doc).onChange = std::move(observer);
}

std::uint64_t changeStamp(LexDoc doc) {
    return openRecord(doc).stamp;
}

LexObj ensureIndirect(LexObj obj) {
    Node *node = nodeOf(obj);
    if (!node || !node->isContainer()) throw HostError{KRErrBadParam};
    makeIndirect(static_cast<Container &>(*node));
    return obj;
}

QPDF &libraryDoc(LexDoc doc) {
    return *openRecord(doc).pdf;
}

QPDFObjectHandle libraryHandle(LexObj obj) {
    const Node *node = nodeOf(obj);
    return node ? node->h : QPDFObjectHandle::newNull();
}

LexObj rootOf(LexDoc doc) {
    return referenceTo(openRecord(doc).root);
}

LexObj trailerOf(LexDoc doc) {
    return referenceTo(openRecord(doc).trailer);
}

} // namespace jackdaw::lex
