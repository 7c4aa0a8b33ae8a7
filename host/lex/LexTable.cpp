// The table Lex: each slot is an edge around an operation of the object layer.
// SPDX-License-Identifier: MIT
#include "lex/LexTable.h"

#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFSystemError.hh>

#include "LexHFT.h"
#include "kernel/HostError.h"
#include "kernel/Tables.h"
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

// Objects.

KRBool lexObjEqual(LexObj a, LexObj b) {
    return lex::same(a, b);
}

std::int32_t lexObjGetType(LexObj obj) {
    return lex::typeOf(obj);
}

KRBool lexObjIsIndirect(LexObj obj) {
    return lex::isIndirect(obj);
}

KRBool lexObjEnum(LexObj obj, LexEnumProc proc, void *clientData) {
    return Edge([&]() -> KRBool {
        const auto entries = lex::entriesForWalk(obj);
        bool wholly = true;
        ThrowIf(HostProtect([&] {
            for (std::size_t i = 0; i < entries.size() && wholly; ++i)
                wholly = proc(entries[i].first, entries[i].second, clientData) != 0;
        }));
        return wholly;
    });
}

LexDoc lexObjGetDoc(LexObj obj) {
    return lex::docOf(obj);
}

LexObj lexNewNull() {
    return LexNullObj;
}

LexObj lexNewInteger(LexDoc doc, KRBool indirect, std::int32_t value) {
    return Edge([&] { return lex::newInteger(doc, indirect, value); });
}

LexObj lexNewFixed(LexDoc doc, KRBool indirect, KRFixed value) {
    return Edge([&] { return lex::newFixed(doc, indirect, value); });
}

LexObj lexNewBoolean(LexDoc doc, KRBool indirect, KRBool value) {
    return Edge([&] { return lex::newBoolean(doc, indirect, value); });
}

LexObj lexNewName(LexDoc doc, KRBool indirect, KRAtom value) {
    return Edge([&] { return lex::newName(doc, indirect, value); });
}

LexObj lexNewString(LexDoc doc, KRBool indirect, const char *bytes, std::int32_t length) {
    return Edge([&] {
        if (length < 0 || (!bytes && length > 0)) throw HostError{KRErrBadParam};
        return lex::newString(doc, indirect, std::string_view(bytes, static_cast<std::size_t>(length)));
    });
}

LexObj lexNewArray(LexDoc doc, KRBool indirect, std::int32_t) {
    return Edge([&] { return lex::newArray(doc, indirect); });
}

LexObj lexNewDict(LexDoc doc, KRBool indirect, std::int32_t) {
    return Edge([&] { return lex::newDict(doc, indirect); });
}

LexObj lexNewStream(LexDoc doc, KRBool, KRStm source, std::int32_t start, KRBool encode, LexObj attributes,
                    LexObj encodeParms, std::int32_t length) {
    return Edge([&] { return lex::newStreamFrom(doc, source, start, encode, attributes, encodeParms, length); });
}

void lexObjDestroy(LexObj obj) {
    Edge([&] { lex::destroy(obj); });
}

std::int32_t lexIntegerValue(LexObj obj) {
    return Edge([&] { return lex::integerValue(obj); });
}

KRFixed lexFixedValue(LexObj obj) {
    return Edge([&] { return lex::fixedValue(obj); });
}

KRBool lexBooleanValue(LexObj obj) {
    return Edge([&]() -> KRBool { return lex::booleanValue(obj); });
}

KRAtom lexNameValue(LexObj obj) {
    return Edge([&] { return lex::nameValue(obj); });
}

const char *lexStringValue(LexObj obj, std::int32_t *length) {
    return Edge([&] {
        const std::string &bytes = lex::stringValue(obj);
        if (length) *length = static_cast<std::int32_t>(bytes.size());
        return bytes.c_str();
    });
}

std::int32_t lexObjGetID(LexObj obj) {
    return lex::objectNumber(obj);
}

// Dictionaries and arrays.

LexObj lexDictGet(LexObj dict, KRAtom key) {
    return Edge([&] { return lex::dictGet(dict, key); });
}

void lexDictPut(LexObj dict, KRAtom key, LexObj value) {
    Edge([&] { lex::dictPut(dict, key, value); });
}

void lexDictRemove(LexObj dict, KRAtom key) {
    Edge([&] { lex::dictRemove(dict, key); });
}

KRBool lexDictKnown(LexObj dict, KRAtom key) {
    return Edge([&]() -> KRBool { return lex::dictKnown(dict, key); });
}

LexObj lexArrayGet(LexObj array, std::int32_t index) {
    return Edge([&] { return lex::arrayGet(array, index); });
}

void lexArrayPut(LexObj array, std::int32_t index, LexObj value) {
    Edge([&] { lex::arrayPut(array, index, value); });
}

void lexArrayInsert(LexObj array, std::int32_t index, LexObj value) {
    Edge([&] { lex::arrayInsert(array, index, value); });
}

void lexArrayRemove(LexObj array, LexObj value) {
    Edge([&] { lex::arrayRemove(array, value); });
}

std::int32_t lexArrayLength(LexObj array) {
    return Edge([&] { return lex::arrayLength(array); });
}

// Streams.

std::int32_t lexStreamLength(LexObj stream) {
    return Edge([&] { return lex::streamLength(stream); });
}

LexObj lexStreamDict(LexObj stream) {
    return Edge([&] { return lex::streamDict(stream); });
}

KRStm lexStreamOpenStm(LexObj stream, std::int32_t mode) {
    return Edge([&] { return lex::openData(stream, static_cast<LexStreamMode>(mode)); });
}

// Documents.

LexObj lexDocGetRoot(LexDoc doc) {
    return Edge([&] { return lex::rootOf(doc); });
}

LexDoc lexDocOpen(KRFileSys fs, KRPathName path) {
    return Edge([&] { return lex::openFdf(fs, path); });
}

void lexDocClose(LexDoc doc) {
    Edge([&] {
        // A PDF belongs to the document model, which closes it.
        if (!lex::isFdf(doc)) throw HostError{KRErrBadParam};
        lex::closeDoc(doc);
    });
}

LexDoc lexDocCreate() {
    return Edge([&] { return lex::createFdf(); });
}

void lexDocSaveToFile(LexDoc doc, KRFileSys fs, KRPathName path) {
    Edge([&] { lex::saveFdf(doc, fs, path); });
}

LexObj lexDocGetTrailer(LexDoc doc) {
    return Edge([&] { return lex::trailerOf(doc); });
}

void provideObjects() {
    Provide(LexObjEqual, &lexObjEqual);
    Provide(LexObjGetType, &lexObjGetType);
    Provide(LexObjIsIndirect, &lexObjIsIndirect);
    Provide(LexObjEnum, &lexObjEnum);
    Provide(LexObjGetDoc, &lexObjGetDoc);
    Provide(LexNewNull, &lexNewNull);
    Provide(LexNewInteger, &lexNewInteger);
    Provide(LexNewFixed, &lexNewFixed);
    Provide(LexNewBoolean, &lexNewBoolean);
    Provide(LexNewName, &lexNewName);
    Provide(LexNewString, &lexNewString);
    Provide(LexNewArray, &lexNewArray);
    Provide(LexNewDict, &lexNewDict);
    Provide(LexNewStream, &lexNewStream);
    Provide(LexObjDestroy, &lexObjDestroy);
    Provide(LexIntegerValue, &lexIntegerValue);
    Provide(LexFixedValue, &lexFixedValue);
    Provide(LexBooleanValue, &lexBooleanValue);
    Provide(LexNameValue, &lexNameValue);
    Provide(LexStringValue, &lexStringValue);
    Provide(LexObjGetID, &lexObjGetID);
}

void provideContainers() {
    Provide(LexDictGet, &lexDictGet);
    Provide(LexDictPut, &lexDictPut);
    Provide(LexDictRemove, &lexDictRemove);
    Provide(LexDictKnown, &lexDictKnown);
    Provide(LexArrayGet, &lexArrayGet);
    Provide(LexArrayPut, &lexArrayPut);
    Provide(LexArrayInsert, &lexArrayInsert);
    Provide(LexArrayRemove, &lexArrayRemove);
    Provide(LexArrayLength, &lexArrayLength);
}

void provideStreamsAndDocs() {
    Provide(LexStreamLength, &lexStreamLength);
    Provide(LexStreamDict, &lexStreamDict);
    Provide(LexStreamOpenStm, &lexStreamOpenStm);
    Provide(LexDocGetRoot, &lexDocGetRoot);
    Provide(LexDocOpen, &lexDocOpen);
    Provide(LexDocClose, &lexDocClose);
    Provide(LexDocCreate, &lexDocCreate);
    Provide(LexDocSaveToFile, &lexDocSaveToFile);
    Provide(LexDocGetTrailer, &lexDocGetTrailer);
}

} // namespace

void FillLexTable() {
    static const bool s_translates = [] {
        AddExceptionTranslator(&translateLibrary);
        return true;
    }();
    static_cast<void>(s_translates);
    provideObjects();
    provideContainers();
    provideStreamsAndDocs();
}

} // namespace jackdaw
