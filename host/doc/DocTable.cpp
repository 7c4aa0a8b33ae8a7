// The slots of the table: each an edge around one function of this folder, or two lines of its own.
// SPDX-License-Identifier: MIT
#include "doc/DocTable.h"

#include <algorithm>

#include "doc/Actions.h"
#include "doc/Annots.h"
#include "doc/DocNameTree.h"
#include "doc/Document.h"
#include "doc/FileSpecs.h"
#include "doc/HostText.h"
#include "doc/Notify.h"
#include "doc/PageEdit.h"
#include "doc/Pages.h"
#include "kernel/HostError.h"
#include "kernel/Tables.h"
#include "lex/LexObjects.h"
#include "siblings/TextConvert.h"

namespace jackdaw {
namespace {

template <class Value>
void store(Value *target, const Value &value) {
    if (target == nullptr) throw HostError{KRErrBadParam};
    *target = value;
}

template <class Value>
const Value &read(const Value *source) {
    if (source == nullptr) throw HostError{KRErrBadParam};
    return *source;
}

std::string bytesOf(const char *bytes, std::int32_t length) {
    if (length < 0 || (bytes == nullptr && length > 0)) throw HostError{KRErrBadParam};
    return length == 0 ? std::string() : std::string(bytes, static_cast<std::size_t>(length));
}

/** Copies what fits in front of a terminator; nothing into a buffer of no size. */
void fillBuffer(std::string_view text, char *buffer, std::int32_t size) {
    if (size <= 0) return;
    if (buffer == nullptr) throw HostError{KRErrBadParam};
    const std::size_t count = std::min(text.size(), static_cast<std::size_t>(size) - 1);
    text.copy(buffer, count);
    buffer[count] = '\0';
}

void provideActions() {
    Provide(DMActionIsValid, [](DMAction action) { return Edge([&]() -> KRBool { return actionIsValid(action); }); });
    Provide(DMActionGetSubtype, [](DMAction action) { return Edge([&] { return actionSubtype(action); }); });
    Provide(DMActionGetLexObj, [](DMAction action) { return actionLex(action); });
    Provide(DMActionFromLexObj, [](LexObj obj) { return actionFromLex(obj); });
}

void provideAnnots() {
    Provide(DMAnnotNotifyWillChange,
            [](DMAnnot annot, KRAtom key) { Edge([&] { notifyAnnotWillChange(annot, key); }); });
    Provide(DMAnnotNotifyDidChange, [](DMAnnot annot, KRAtom key, KRErrorCode error) {
        Edge([&] { notifyAnnotDidChange(annot, key, error); });
    });
    Provide(DMPageCreateAnnot, [](DMPage page, KRAtom subtype, const KRFixedRect *rect) {
        return Edge([&] { return createAnnot(page, subtype, read(rect)); });
    });
    Provide(DMAnnotIsValid, [](DMAnnot annot) { return Edge([&]() -> KRBool { return annotIsValid(annot); }); });
    Provide(DMAnnotGetSubtype, [](DMAnnot annot) { return Edge([&] { return annotSubtype(annot); }); });
    Provide(DMAnnotGetRect, [](DMAnnot annot, KRFixedRect *rect) { Edge([&] { store(rect, annotRect(annot)); }); });
    Provide(DMAnnotSetRect,
            [](DMAnnot annot, const KRFixedRect *rect) { Edge([&] { setAnnotRect(annot, read(rect)); }); });
    Provide(DMAnnotEqual, [](DMAnnot a, DMAnnot b) -> KRBool { return lex::same(annotLex(a), annotLex(b)); });
    Provide(DMAnnotGetLexObj, [](DMAnnot annot) { return annotLex(annot); });
    Provide(DMAnnotFromLexObj, [](LexObj obj) { return annotFromLex(obj); });
    Provide(DMAnnotGetFlags, [](DMAnnot annot) { return Edge([&] { return annotFlags(annot); }); });
    Provide(DMAnnotSetFlags, [](DMAnnot annot, std::uint32_t flags) { Edge([&] { setAnnotFlags(annot, flags); }); });
}

void provideDocuments() {
    Provide(DMDocOpen, [](KRFileSys fs, KRPathName path, const char *password) {
        return Edge([&] { return openDoc(fs, path, password); });
    });
    Provide(DMDocSave, [](DMDoc doc, std::uint32_t saveFlags, KRFileSys fs, KRPathName path) {
        Edge([&] { saveDoc(doc, saveFlags, fs, path); });
    });
    Provide(DMDocClose, [](DMDoc doc) { Edge([&] { closeDoc(doc); }); });
    Provide(DMDocGetFlags, [](DMDoc doc) { return Edge([&] { return docFlags(doc); }); });
    Provide(DMDocSetFlags, [](DMDoc doc, std::uint32_t flags) { Edge([&] { setDocFlags(doc, flags); }); });
    Provide(DMDocClearFlags, [](DMDoc doc, std::uint32_t flags) { Edge([&] { clearDocFlags(doc, flags); }); });
    Provide(DMDocGetLexDoc, [](DMDoc doc) { return Edge([&] { return docLex(doc); }); });
    Provide(DMDocFromLexDoc, [](LexDoc lex) { return docFromLex(lex); });
    Provide(DMDocGetFile, [](DMDoc doc) { return Edge([&] { return docFile(doc); }); });
    Provide(DMDocGetPermissions, [](DMDoc doc) { return Edge([&] { return docPermissions(doc); }); });
    Provide(DMDocEnsureWrite,
            [](DMDoc doc, KRBool load, std::uint32_t) { Edge([&] { ensureDocWritable(doc, load != 0); }); });
    Provide(DMDocEnumDamage, [](DMDoc doc, DMDamageProc proc, void *clientData) {
        Edge([&] { tellDocDamage(doc, proc, clientData); });
    });
    Provide(DMDocGetInfo, [](DMDoc doc, const char *key, char *buffer, std::int32_t size) {
        return Edge([&] {
            const std::string bytes = docInfo(doc, key);
            fillBuffer(bytes, buffer, size);
            return static_cast<std::int32_t>(bytes.size());
        });
    });
    Provide(DMDocSetInfo, [](DMDoc doc, const char *key, const char *bytes, std::int32_t length) {
        Edge([&] { setDocInfo(doc, key, bytesOf(bytes, length)); });
    });
    Provide(DMDocInsertPages, [](DMDoc doc, std::int32_t after, DMDoc source, std::int32_t first, std::int32_t last) {
        Edge([&] { insertPages(doc, after, source, first, last); });
    });
    Provide(DMDocDeletePages,
            [](DMDoc doc, std::int32_t first, std::int32_t last) { Edge([&] { deletePages(doc, first, last); }); });
}

void provideHostText() {
    Provide(DMXlateToPDFDoc, [](char *text, std::int32_t size) { Edge([&] { xlateToPDFDoc(text, size); }); });
    Provide(DMXlateToHost, [](char *text, std::int32_t size) { Edge([&] { xlateToHost(text, size); }); });
    Provide(DMXlateFromHostEnc, [](const char *source, char *target, std::int32_t size) {
        return Edge([&] { return xlateFromHostEnc(source, target, size); });
    });
    Provide(DMXlateToHostEnc, [](const char *source, std::int32_t length, char *target, std::int32_t size) {
        return Edge([&] { return xlateToHostEnc(source, length, target, size); });
    });
    Provide(DMHostEncodingIsKnown,
            [](const char *encoding) { return Edge([&]() -> void * { return ConverterOfEncoding(encoding); }); });
}

void providePages() {
    Provide(DMDocGetNumPages, [](DMDoc doc) { return Edge([&] { return numPages(doc); }); });
    Provide(DMDocAcquirePage,
            [](DMDoc doc, std::int32_t index) { return Edge([&] { return acquirePage(doc, index); }); });
    Provide(DMPageAcquireAgain, [](DMPage page) { return Edge([&] { return acquirePageAgain(page); }); });
    Provide(DMPageRelease, [](DMPage page) { Edge([&] { releasePage(page); }); });
    Provide(DMPageGetDoc, [](DMPage page) { return Edge([&] { return pageDoc(page); }); });
    Provide(DMPageGetLexObj, [](DMPage page) { return Edge([&] { return pageLex(page); }); });
    Provide(DMPageFromLexObj, [](LexObj obj) { return Edge([&] { return acquirePageOfLex(obj); }); });
    Provide(DMPageGetNumber, [](DMPage page) { return Edge([&] { return pageNumber(page); }); });
    Provide(DMPageGetRotate, [](DMPage page) { return Edge([&] { return pageRotate(page); }); });
    Provide(DMPageGetBBox, [](DMPage page, KRFixedRect *box) { Edge([&] { store(box, pageCropBox(page)); }); });
    Provide(DMPageGetMediaBox, [](DMPage page, KRFixedRect *box) { Edge([&] { store(box, pageMediaBox(page)); }); });
    Provide(DMPageGetDefaultMatrix,
            [](DMPage page, KRFixedMatrix *matrix) { Edge([&] { store(matrix, pageDefaultMatrix(page)); }); });
    Provide(DMPageGetAnnot,
            [](DMPage page, std::int32_t index) { return Edge([&] { return pageAnnot(page, index); }); });
    Provide(DMPageAddAnnot,
            [](DMPage page, std::int32_t index, DMAnnot annot) { Edge([&] { addAnnot(page, index, annot); }); });
    Provide(DMPageRemoveAnnot, [](DMPage page, std::int32_t index) { Edge([&] { removeAnnot(page, index); }); });
    Provide(DMPageGetAnnotIndex,
            [](DMPage page, DMAnnot annot) { return Edge([&] { return annotIndex(page, annot); }); });
    Provide(DMPageGetNumAnnots, [](DMPage page) { return Edge([&] { return numAnnots(page); }); });
}

void provideFileSpecs() {
    Provide(DMFileSpecFromLexObj, [](LexObj obj) { return fileSpecFromLex(obj); });
    Provide(DMFileSpecGetFileSys, [](DMFileSpec spec) { return Edge([&] { return fileSpecFileSys(spec); }); });
    Provide(DMFileSpecAcquirePath,
            [](DMFileSpec spec, KRPathName base) { return Edge([&] { return acquireFileSpecPath(spec, base); }); });
    Provide(DMFileSpecIsValid, [](DMFileSpec spec) { return Edge([&]() -> KRBool { return fileSpecIsValid(spec); }); });
    Provide(DMFileSpecGetDIPath, [](DMFileSpec spec, KRPathName base, char *buffer, std::int32_t size) {
        Edge([&] {
            const std::string path = fileSpecDIPath(spec, base);
            fillBuffer(cutHostText(path, static_cast<std::size_t>(std::max(size, 1)) - 1), buffer, size);
        });
    });
}

KRBool enumThroughProc(DMNameTree tree, DMNameTreeProc proc, void *clientData) {
    if (proc == nullptr) throw HostError{KRErrBadParam};
    return enumNameTree(tree, [&](LexObj key, LexObj value) {
        bool goOn = false;
        ThrowIf(HostProtect([&] { goOn = proc(key, value, clientData) != 0; }));
        return goOn;
    });
}

void provideNameTrees() {
    Provide(DMNameTreeIsValid, [](DMNameTree tree) { return Edge([&]() -> KRBool { return nameTreeIsValid(tree); }); });
    Provide(DMNameTreePut, [](DMNameTree tree, const char *key, std::int32_t length, LexObj value) {
        Edge([&] { nameTreePut(tree, bytesOf(key, length), value); });
    });
    Provide(DMNameTreeGet, [](DMNameTree tree, const char *key, std::int32_t length, LexObj *value) {
        return Edge([&]() -> KRBool {
            LexObj found;
            const bool isThere = nameTreeGet(tree, bytesOf(key, length), &found);
            store(value, found);
            return isThere;
        });
    });
    Provide(DMNameTreeRemove, [](DMNameTree tree, const char *key, std::int32_t length) {
        Edge([&] { nameTreeRemove(tree, bytesOf(key, length)); });
    });
    Provide(DMNameTreeEnum, [](DMNameTree tree, DMNameTreeProc proc, void *clientData) {
        return Edge([&] { return enumThroughProc(tree, proc, clientData); });
    });
    Provide(DMDocGetNameTree, [](DMDoc doc, KRAtom name) { return Edge([&] { return docNameTree(doc, name); }); });
    Provide(DMDocCreateNameTree,
            [](DMDoc doc, KRAtom name) { return Edge([&] { return createDocNameTree(doc, name); }); });
}

} // namespace

void FillDocModelTable() {
    provideActions();
    provideAnnots();
    provideDocuments();
    provideHostText();
    providePages();
    provideFileSpecs();
    provideNameTrees();
}

} // namespace jackdaw
