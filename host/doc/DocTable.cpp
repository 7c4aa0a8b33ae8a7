// The document model table: the functions of this folder in its slots, and those that need fitting.
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
#include "kernel/Bind.h"
#include "kernel/Memory.h"
#include "lex/LexObjects.h"
#include "siblings/TextConvert.h"

namespace jackdaw {
namespace {

std::string bytesOf(const char *bytes, std::int32_t length) {
    if (length < 0 || (!bytes && length > 0)) throw HostError{KRErrBadParam};
    return length == 0 ? std::string() : std::string(bytes, static_cast<std::size_t>(length));
}

// Annotations.

DMAnnot newAnnot(DMPage page, KRAtom subtype, const KRFixedRect *rect) {
    return CreateAnnot(page, subtype, Required(rect));
}

void getAnnotRect(DMAnnot annot, KRFixedRect *rect) {
    Required(rect) = RectOfAnnot(annot);
}

void putAnnotRect(DMAnnot annot, const KRFixedRect *rect) {
    SetRectOfAnnot(annot, Required(rect));
}

bool sameAnnot(DMAnnot a, DMAnnot b) {
    return lex::Same(AnnotLex(a), AnnotLex(b));
}

// Documents and pages.

void ensureWritable(DMDoc doc, KRBool load, std::uint32_t) {
    EnsureDocWritable(doc, load);
}

std::int32_t getInfo(DMDoc doc, const char *key, char *buffer, std::int32_t size) {
    const std::string bytes = DocInfo(doc, key);
    FillBuffer(bytes, buffer, size);
    return static_cast<std::int32_t>(bytes.size());
}

void putInfo(DMDoc doc, const char *key, const char *bytes, std::int32_t length) {
    SetDocInfo(doc, key, bytesOf(bytes, length));
}

void getCropBox(DMPage page, KRFixedRect *box) {
    Required(box) = PageCropBox(page);
}

void getMediaBox(DMPage page, KRFixedRect *box) {
    Required(box) = PageMediaBox(page);
}

void getDefaultMatrix(DMPage page, KRFixedMatrix *matrix) {
    Required(matrix) = PageDefaultMatrix(page);
}

// File specifications and name trees.

void getDIPath(DMFileSpec spec, KRPathName base, char *buffer, std::int32_t size) {
    const std::string path = FileSpecDIPath(spec, base);
    FillBuffer(CutHostText(path, static_cast<std::size_t>(std::max(size, 1)) - 1), buffer, size);
}

void putName(DMNameTree tree, const char *key, std::int32_t length, LexObj value) {
    NameTreePut(tree, bytesOf(key, length), value);
}

bool getName(DMNameTree tree, const char *key, std::int32_t length, LexObj *value) {
    return NameTreeGet(tree, bytesOf(key, length), &Required(value));
}

void removeName(DMNameTree tree, const char *key, std::int32_t length) {
    NameTreeRemove(tree, bytesOf(key, length));
}

bool enumThroughProc(DMNameTree tree, DMNameTreeProc proc, void *clientData) {
    if (!proc) throw HostError{KRErrBadParam};
    return EnumNameTree(tree, [&](LexObj key, LexObj value) {
        bool goOn = false;
        ThrowIf(HostProtect([&] { goOn = proc(key, value, clientData) != 0; }));
        return goOn;
    });
}

// Filling, in the order of the slots.

void fillActions() {
    Bind<&ActionIsValid>(DMActionIsValid);
    Bind<&ActionSubtype>(DMActionGetSubtype);
    Bind<&ActionLex>(DMActionGetLexObj);
    Bind<&ActionFromLex>(DMActionFromLexObj);
}

void fillAnnots() {
    Bind<&NotifyAnnotWillChange>(DMAnnotNotifyWillChange);
    Bind<&NotifyAnnotDidChange>(DMAnnotNotifyDidChange);
    Bind<&newAnnot>(DMPageCreateAnnot);
    Bind<&AnnotIsValid>(DMAnnotIsValid);
    Bind<&AnnotSubtype>(DMAnnotGetSubtype);
    Bind<&getAnnotRect>(DMAnnotGetRect);
    Bind<&putAnnotRect>(DMAnnotSetRect);
    Bind<&sameAnnot>(DMAnnotEqual);
    Bind<&AnnotLex>(DMAnnotGetLexObj);
    Bind<&AnnotFromLex>(DMAnnotFromLexObj);
    Bind<&AnnotFlags>(DMAnnotGetFlags);
    Bind<&SetAnnotFlags>(DMAnnotSetFlags);
}

void fillDocuments() {
    Bind<&OpenDoc>(DMDocOpen);
    Bind<&SaveDoc>(DMDocSave);
    Bind<&CloseDoc>(DMDocClose);
    Bind<&DocFlags>(DMDocGetFlags);
    Bind<&SetDocFlags>(DMDocSetFlags);
    Bind<&ClearDocFlags>(DMDocClearFlags);
    Bind<&DocLex>(DMDocGetLexDoc);
    Bind<&DocFromLex>(DMDocFromLexDoc);
    Bind<&DocFile>(DMDocGetFile);
    Bind<&NumPages>(DMDocGetNumPages);
    Bind<&AcquirePage>(DMDocAcquirePage);
    Bind<&getInfo>(DMDocGetInfo);
    Bind<&putInfo>(DMDocSetInfo);
    Bind<&DocPermissions>(DMDocGetPermissions);
    Bind<&ensureWritable>(DMDocEnsureWrite);
}

void fillHostText() {
    Bind<&XlateToPDFDoc>(DMXlateToPDFDoc);
    Bind<&XlateToHost>(DMXlateToHost);
    Bind<&XlateFromHostEnc>(DMXlateFromHostEnc);
    Bind<&XlateToHostEnc>(DMXlateToHostEnc);
    Bind<&ConverterOfEncoding>(DMHostEncodingIsKnown);
}

void fillPages() {
    Bind<&AcquirePageAgain>(DMPageAcquireAgain);
    Bind<&ReleasePage>(DMPageRelease);
    Bind<&PageDoc>(DMPageGetDoc);
    Bind<&PageLex>(DMPageGetLexObj);
    Bind<&AcquirePageOfLex>(DMPageFromLexObj);
    Bind<&PageNumber>(DMPageGetNumber);
    Bind<&PageRotate>(DMPageGetRotate);
    Bind<&getCropBox>(DMPageGetBBox);
    Bind<&getMediaBox>(DMPageGetMediaBox);
    Bind<&getDefaultMatrix>(DMPageGetDefaultMatrix);
    Bind<&PageAnnot>(DMPageGetAnnot);
    Bind<&AddAnnot>(DMPageAddAnnot);
    Bind<&RemoveAnnot>(DMPageRemoveAnnot);
    Bind<&AnnotIndex>(DMPageGetAnnotIndex);
    Bind<&NumAnnots>(DMPageGetNumAnnots);
}

void fillFileSpecsAndNameTrees() {
    Bind<&FileSpecFromLex>(DMFileSpecFromLexObj);
    Bind<&FileSpecFileSys>(DMFileSpecGetFileSys);
    Bind<&AcquireFileSpecPath>(DMFileSpecAcquirePath);
    Bind<&FileSpecIsValid>(DMFileSpecIsValid);
    Bind<&getDIPath>(DMFileSpecGetDIPath);
    Bind<&NameTreeIsValid>(DMNameTreeIsValid);
    Bind<&putName>(DMNameTreePut);
    Bind<&getName>(DMNameTreeGet);
    Bind<&removeName>(DMNameTreeRemove);
    Bind<&enumThroughProc>(DMNameTreeEnum);
    Bind<&DocNameTree>(DMDocGetNameTree);
    Bind<&CreateDocNameTree>(DMDocCreateNameTree);
}

void fillPageEdits() {
    Bind<&InsertPages>(DMDocInsertPages);
    Bind<&DeletePages>(DMDocDeletePages);
    Bind<&TellDocDamage>(DMDocEnumDamage);
}

} // namespace

void FillDocModelTable() {
    fillActions();
    fillAnnots();
    fillDocuments();
    fillHostText();
    fillPages();
    fillFileSpecsAndNameTrees();
    fillPageEdits();
}

} // namespace jackdaw
