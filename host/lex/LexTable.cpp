// The table Lex: the operations of the object layer in its slots, and those that need fitting.
// SPDX-License-Identifier: MIT
#include "lex/LexTable.h"

#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFSystemError.hh>

#include "LexHFT.h"
#include "kernel/Bind.h"
#include "lex/LexContainers.h"
#include "lex/LexObjects.h"
#include "lex/LexStreams.h"
#include "lex/Store.h"

namespace jackdaw {

namespace {

KRErrorCode codeOf(const QPDFExc &error) {
    switch (error.getErrorCode()) {
    case qpdf_e_password:
        return KRErrPassword;
    case qpdf_e_system:
        return KRErrFileIO;
    case qpdf_e_internal:
        return KRErrBadParam;
    default:
        return KRErrBadPDF;
    }
}

/** Codes and sentences for what the PDF library throws. */
bool translateLibrary(KRErrorCode &code, std::string &what) {
    try {
        throw;
    } catch (const QPDFExc &error) {
        code = codeOf(error);
        what = error.what();
    } catch (const QPDFSystemError &error) {
        code = KRErrFileIO;
        what = error.what();
    } catch (...) {
        return false;
    }
    return true;
}

bool enumEntries(LexObj obj, LexEnumProc proc, void *clientData) {
    const auto entries = lex::entriesForWalk(obj);
    bool wholly = true;
    ThrowIf(HostProtect([&] {
        for (std::size_t i = 0; i < entries.size() && wholly; ++i)
            wholly = proc(entries[i].first, entries[i].second, clientData) != 0;
    }));
    return wholly;
}

LexObj newNull() {
    return LexNullObj;
}

LexObj newString(LexDoc doc, KRBool indirect, const char *bytes, std::int32_t length) {
    if (length < 0 || (!bytes && length > 0)) throw HostError{KRErrBadParam};
    return lex::newString(doc, indirect, std::string_view(bytes, static_cast<std::size_t>(length)));
}

LexObj newArray(LexDoc doc, KRBool indirect, std::int32_t) {
    return lex::newArray(doc, indirect);
}

LexObj newDict(LexDoc doc, KRBool indirect, std::int32_t) {
    return lex::newDict(doc, indirect);
}

LexObj newStream(LexDoc doc, KRBool, KRStm source, std::int32_t start, KRBool encode, LexObj attributes,
                 LexObj encodeParms, std::int32_t length) {
    return lex::newStreamFrom(doc, source, start, encode, attributes, encodeParms, length);
}

const char *stringBytes(LexObj obj, std::int32_t *length) {
    const std::string &bytes = lex::stringValue(obj);
    if (length) *length = static_cast<std::int32_t>(bytes.size());
    return bytes.c_str();
}

KRStm openData(LexObj stream, std::int32_t mode) {
    return lex::openData(stream, static_cast<LexStreamMode>(mode));
}

void closeDoc(LexDoc doc) {
    // A PDF belongs to the document model, which closes it.
    if (!lex::isFdf(doc)) throw HostError{KRErrBadParam};
    lex::closeDoc(doc);
}

// Filling, in the order of the slots.

void fillObjects() {
    Bind<&lex::same>(LexObjEqual);
    Bind<&lex::typeOf>(LexObjGetType);
    Bind<&lex::isIndirect>(LexObjIsIndirect);
    Bind<&enumEntries>(LexObjEnum);
    Bind<&lex::docOf>(LexObjGetDoc);
    Bind<&newNull>(LexNewNull);
    Bind<&lex::newInteger>(LexNewInteger);
    Bind<&lex::newFixed>(LexNewFixed);
    Bind<&lex::newBoolean>(LexNewBoolean);
    Bind<&lex::newName>(LexNewName);
    Bind<&newString>(LexNewString);
    Bind<&newArray>(LexNewArray);
    Bind<&newDict>(LexNewDict);
    Bind<&newStream>(LexNewStream);
    Bind<&lex::destroy>(LexObjDestroy);
    Bind<&lex::integerValue>(LexIntegerValue);
    Bind<&lex::fixedValue>(LexFixedValue);
    Bind<&lex::booleanValue>(LexBooleanValue);
    Bind<&lex::nameValue>(LexNameValue);
    Bind<&stringBytes>(LexStringValue);
    Bind<&lex::objectNumber>(LexObjGetID);
}

void fillContainers() {
    Bind<&lex::dictGet>(LexDictGet);
    Bind<&lex::dictPut>(LexDictPut);
    Bind<&lex::dictRemove>(LexDictRemove);
    Bind<&lex::dictKnown>(LexDictKnown);
    Bind<&lex::arrayGet>(LexArrayGet);
    Bind<&lex::arrayPut>(LexArrayPut);
    Bind<&lex::arrayInsert>(LexArrayInsert);
    Bind<&lex::arrayRemove>(LexArrayRemove);
    Bind<&lex::arrayLength>(LexArrayLength);
}

void fillStreamsAndDocs() {
    Bind<&lex::streamLength>(LexStreamLength);
    Bind<&lex::streamDict>(LexStreamDict);
    Bind<&openData>(LexStreamOpenStm);
    Bind<&lex::rootOf>(LexDocGetRoot);
    Bind<&lex::openFdf>(LexDocOpen);
    Bind<&closeDoc>(LexDocClose);
    Bind<&lex::createFdf>(LexDocCreate);
    Bind<&lex::saveFdf>(LexDocSaveToFile);
    Bind<&lex::trailerOf>(LexDocGetTrailer);
}

} // namespace

void FillLexTable() {
    static const bool s_translates = [] {
        AddExceptionTranslator(&translateLibrary);
        return true;
    }();
    static_cast<void>(s_translates);
    fillObjects();
    fillContainers();
    fillStreamsAndDocs();
}

} // namespace jackdaw
