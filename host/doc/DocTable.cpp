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
    return createAnnot(page, subtype, Required(rect));
}

void getAnnotRect(DMAnnot annot, KRFixedRect *rect) {
    Required(rect) = annotRect(annot);
}

void putAnnotRect(DMAnnot annot, const KRFixedRect *rect) {
    setAnnotRect(annot, Required(rect));
}

bool sameAnnot(DMAnnot a, DMAnnot b) {
    return lex::same(annotLex(a), annotLex(b));
}

// Documents and pages.

void ensureWritable(DMDoc doc, KRBool load, std::uint32_t) {
    ensureDocWritable(doc, load);
}

std::int32_t getInfo(DMDoc doc, const char *key, char *buffer, std::int32_t size) {
    const std::string bytes = docInfo(doc, key);
    FillBuffer(bytes, buffer, size);
    return static_cast<std::int32_t>(bytes.size());
}

void putInfo(DMDoc doc, const char *key, const char *bytes, std::int32_t length) {
    setDocInfo(doc, key, bytesOf(bytes, length));
}

void getCropBox(DMPage page, KRFixedRect *box) {
    Required(box) = pageCropBox(page);
}

void getMediaBox(DMPage page, KRFixedRect *box) {
    Required(box) = pageMediaBox(page);
}

void getDefaultMatrix(DMPage page, KRFixedMatrix *matrix) {
    Required(matrix) = pageDefaultMatrix(page);
}

// File specifications and name trees.

void getDIPath(DMFileSpec spec, KRPathName base, char *buffer, std::int32_t size) {
    const std::string path = fileSpecDIPath(spec, base);
    FillBuffer(cutHostText(path, static_cast<std::size_t>(std::max(size, 1)) - 1), buffer, size);
}

void putName(DMNameTree tree, const char *key, std::int32_t length, LexObj value) {
    nameTreePut(tree, bytesOf(key, length), value);
}

bool getName(DMNameTree tree, const char *key, std::int32_t length, LexObj *value) {
    return nameTreeGet(tree, bytesOf(key, length), &Required(value));
}

void removeName(DMNameTree tree, const char *key, std::int32_t length) {
    nameTreeRemove(tree, bytesOf(key, length));
}

bool enumThroughProc(DMNameTree tree, DMNameTreeProc proc, void *clientData) {
    if (!proc) throw HostError{KRErrBadParam};
    return enumNameTree(tree, [&](LexObj key, LexObj value) {
        bool goOn = false;
        ThrowIf(HostProtect([&] { goOn = proc(key, value, clientData) != 0; }));
        return goOn;
    });
}

// Filling, in the order of the slots.

void fillActions() {
    Bind<&actionIsValid>(DMActionIsValid);
    Bind<&actionSubtype>(DMActionGetSubtype);
    Bind<&actionLex>(DMActionGetLexObj);
    Bind<&actionFromLex>(DMActionFromLexObj);
}

void fillAnnots() {
    Bind<&notifyAnnotWillChange>(DMAnnotNotifyWillChange);
    Bind<&notifyAnnotDidChange>(DMAnnotNotifyDidChange);
    Bind<&newAnnot>(DMPageCreateAnnot);
    Bind<&annotIsValid>(DMAnnotIsValid);
    Bind<&annotSubtype>(DMAnnotGetSubtype);
    Bind<&getAnnotRect>(DMAnnotGetRect);
    Bind<&putAnnotRect>(DMAnnotSetRect);
    Bind<&sameAnnot>(DMAnnotEqual);
    Bind<&annotLex>(DMAnnotGetLexObj);
    Bind<&annotFromLex>(DMAnnotFromLexObj);
    Bind<&annotFlags>(DMAnnotGetFlags);
    Bind<&setAnnotFlags>(DMAnnotSetFlags);
}

void fillDocuments() {
    Bind<&openDoc>(DMDocOpen);
    Bind<&saveDoc>(DMDocSave);
    Bind<&closeDoc>(DMDocClose);
    Bind<&docFlags>(DMDocGetFlags);
    Bind<&setDocFlags>(DMDocSetFlags);
    Bind<&clearDocFlags>(DMDocClearFlags);
    Bind<&docLex>(DMDocGetLexDoc);
    Bind<&docFromLex>(DMDocFromLexDoc);
    Bind<&docFile>(DMDocGetFile);
    Bind<&numPages>(DMDocGetNumPages);
    Bind<&acquirePage>(DMDocAcquirePage);
    Bind<&getInfo>(DMDocGetInfo);
    Bind<&putInfo>(DMDocSetInfo);
    Bind<&docPermissions>(DMDocGetPermissions);
    Bind<&ensureWritable>(DMDocEnsureWrite);
}

void fillHostText() {
    Bind<&xlateToPDFDoc>(DMXlateToPDFDoc);
    Bind<&xlateToHost>(DMXlateToHost);
    Bind<&xlateFromHostEnc>(DMXlateFromHostEnc);
    Bind<&xlateToHostEnc>(DMXlateToHostEnc);
    Bind<&ConverterOfEncoding>(DMHostEncodingIsKnown);
}

void fillPages() {
    Bind<&acquirePageAgain>(DMPageAcquireAgain);
    Bind<&releasePage>(DMPageRelease);
    Bind<&pageDoc>(DMPageGetDoc);
    Bind<&pageLex>(DMPageGetLexObj);
    Bind<&acquirePageOfLex>(DMPageFromLexObj);
    Bind<&pageNumber>(DMPageGetNumber);
    Bind<&pageRotate>(DMPageGetRotate);
    Bind<&getCropBox>(DMPageGetBBox);
    Bind<&getMediaBox>(DMPageGetMediaBox);
    Bind<&getDefaultMatrix>(DMPageGetDefaultMatrix);
    Bind<&pageAnnot>(DMPageGetAnnot);
    Bind<&addAnnot>(DMPageAddAnnot);
    Bind<&removeAnnot>(DMPageRemoveAnnot);
    Bind<&annotIndex>(DMPageGetAnnotIndex);
    Bind<&numAnnots>(DMPageGetNumAnnots);
}

void fillFileSpecsAndNameTrees() {
    Bind<&fileSpecFromLex>(DMFileSpecFromLexObj);
    Bind<&fileSpecFileSys>(DMFileSpecGetFileSys);
    Bind<&acquireFileSpecPath>(DMFileSpecAcquirePath);
    Bind<&fileSpecIsValid>(DMFileSpecIsValid);
    Bind<&getDIPath>(DMFileSpecGetDIPath);
    Bind<&nameTreeIsValid>(DMNameTreeIsValid);
    Bind<&putName>(DMNameTreePut);
    Bind<&getName>(DMNameTreeGet);
    Bind<&removeName>(DMNameTreeRemove);
    Bind<&enumThroughProc>(DMNameTreeEnum);
    Bind<&docNameTree>(DMDocGetNameTree);
    Bind<&createDocNameTree>(DMDocCreateNameTree);
}

void fillPageEdits() {
    Bind<&insertPages>(DMDocInsertPages);
    Bind<&deletePages>(DMDocDeletePages);
    Bind<&tellDocDamage>(DMDocEnumDamage);
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
