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
    const auto entries = lex::EntriesForWalk(obj);
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
    return lex::NewString(doc, indirect, std::string_view(bytes, static_cast<std::size_t>(length)));
}

LexObj newArray(LexDoc doc, KRBool indirect, std::int32_t) {
    return lex::NewArray(doc, indirect);
}

LexObj newDict(LexDoc doc, KRBool indirect, std::int32_t) {
    return lex::NewDict(doc, indirect);
}

LexObj newStream(LexDoc doc, KRBool, KRStm source, std::int32_t start, KRBool encode, LexObj attributes,
                 LexObj encodeParms, std::int32_t length) {
    return lex::NewStreamFrom(doc, source, start, encode, attributes, encodeParms, length);
}

const char *stringBytes(LexObj obj, std::int32_t *length) {
    const std::string &bytes = lex::StringValue(obj);
    if (length) *length = static_cast<std::int32_t>(bytes.size());
    return bytes.c_str();
}

KRStm openData(LexObj stream, std::int32_t mode) {
    return lex::OpenData(stream, static_cast<LexStreamMode>(mode));
}

void closeDoc(LexDoc doc) {
    // A PDF belongs to the document model, which closes it.
    if (!lex::IsFdf(doc)) throw HostError{KRErrBadParam};
    lex::CloseStore(doc);
}

// Filling, in the order of the slots.

void fillObjects() {
    Bind<&lex::Same>(LexObjEqual);
    Bind<&lex::TypeOf>(LexObjGetType);
    Bind<&lex::IsIndirect>(LexObjIsIndirect);
    Bind<&enumEntries>(LexObjEnum);
    Bind<&lex::DocOf>(LexObjGetDoc);
    Bind<&newNull>(LexNewNull);
    Bind<&lex::NewInteger>(LexNewInteger);
    Bind<&lex::NewFixed>(LexNewFixed);
    Bind<&lex::NewBoolean>(LexNewBoolean);
    Bind<&lex::NewName>(LexNewName);
    Bind<&newString>(LexNewString);
    Bind<&newArray>(LexNewArray);
    Bind<&newDict>(LexNewDict);
    Bind<&newStream>(LexNewStream);
    Bind<&lex::DestroyObj>(LexObjDestroy);
    Bind<&lex::IntegerValue>(LexIntegerValue);
    Bind<&lex::FixedValue>(LexFixedValue);
    Bind<&lex::BooleanValue>(LexBooleanValue);
    Bind<&lex::NameValue>(LexNameValue);
    Bind<&stringBytes>(LexStringValue);
    Bind<&lex::ObjectNumber>(LexObjGetID);
}

void fillContainers() {
    Bind<&lex::DictGet>(LexDictGet);
    Bind<&lex::DictPut>(LexDictPut);
    Bind<&lex::DictRemove>(LexDictRemove);
    Bind<&lex::DictKnown>(LexDictKnown);
    Bind<&lex::ArrayGet>(LexArrayGet);
    Bind<&lex::ArrayPut>(LexArrayPut);
    Bind<&lex::ArrayInsert>(LexArrayInsert);
    Bind<&lex::ArrayRemove>(LexArrayRemove);
    Bind<&lex::ArrayLength>(LexArrayLength);
}

void fillStreamsAndDocs() {
    Bind<&lex::StreamLength>(LexStreamLength);
    Bind<&lex::StreamDict>(LexStreamDict);
    Bind<&openData>(LexStreamOpenStm);
    Bind<&lex::RootOf>(LexDocGetRoot);
    Bind<&lex::OpenFdf>(LexDocOpen);
    Bind<&closeDoc>(LexDocClose);
    Bind<&lex::CreateFdf>(LexDocCreate);
    Bind<&lex::SaveFdf>(LexDocSaveToFile);
    Bind<&lex::TrailerOf>(LexDocGetTrailer);
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
