// The handlers that let a document's form come alive, be saved and go.
// SPDX-License-Identifier: MIT
#include "life/DMFieldLife.h"

#include "Common/src/miLexType.h"
#include "PIFrame.h"
#include "ScreenViewHFT.h"
#include "ScreenViewNotify.h"
#include "base/FormStr.h"
#include "life/TessellaClean.h"
#include "model/DMField.h"
#include "model/DMFieldValue.h"
#include "model/DocData.h"
#include "model/NameHash.h"
#include "model/OnKey.h"
#include "model/WidgetType.h"
#include "model/miCalc.h"
#include "objects/AnnotUtl.h"
#include "objects/LexUtil.h"
#include "objects/Tessella.h"
#include "services/Subscribe.h"

namespace {

/** Brings the display of a field up to its value. Nobody asked for another one, so a missing value stays missing. */
void ShowValue(DMField *field) {
    TSDMFieldProduceDisplayFromValue(field, TSDMFieldGetEntry(field, TSEntryV));
}

/**
 * What the form's maker drew stands for every value: a button's picture, and those of a check box's or radio button's
 * states. A signature's look is its signer's, and an unsigned field has none.
 */
bool KeepsItsFaces(DMField *field) {
    const DMAnnot annot = TSDMFieldGetDMAnnot(field);
    const bool hasPicture = IsStream(TSDMAnnotGetAppearance(annot, FaceNormal_K, KRAtomNull));
    if (field->type == Sig_K) return hasPicture || IsNull(TSDMFieldGetValue(field));
    if (field->type != Btn_K) return false;
    return field->flags[TSFieldWord] & TSFieldPushButton ? hasPicture : WButtonHasUsableFaces(annot);
}

/** Makes all appearances if the form asks for it, and takes the request back. A request that is no boolean raises. */
void ServeNeedAppearances(DMDoc doc, LexObj form) {
    if (!LexDictKnown(form, docID_K)) return;
    bool wanted = false;
    if (TSLexDictLoad<LexBoolean>(form, docID_K, &wanted) == 0 && wanted)
        TSDMDocEnumAnnots(doc, Widget_K, &createAP, /*data*/ nullptr);
    if (LexBooleanValue(LexDictGet(form, docID_K))) LexDictRemove(form, docID_K);
}

struct ViewSearch {
    SCDoc view;
    bool found;
};

KRBool isThisView(SCDoc view, void *clientData) {
    auto *search = static_cast<ViewSearch *>(clientData);
    search->found = view == search->view;
    return !search->found;
}

bool IsOpen(SCDoc view) {
    ViewSearch search{view, false};
    SCAppEnumDocs(&isThisView, &search);
    return search.found;
}

/** Ends the selection of a view of this document: an open edit writes its value then. */
KRBool endSelection(SCDoc view, void *doc) {
    (void)Protect([&] {
        if (SCDocGetDMDoc(view) == doc) SCDocClearSelection(view, /*highlight*/ true);
    });
    return true;
}

void PrepareSave(DMDoc doc, const DMDocSaveRecord *save) {
    const bool renumbers = save && save->flags & DMDocSaveFull;
    // First of all: an edit still open writes a value, which may be one that does not go into the file.
    SCAppEnumDocs(&endSelection, doc);
    // What one step raises keeps none of the others from being taken: a form is saved in the order that can be had.
    (void)Protect([&] { JSDocWillSaveEx(doc, save); });
    (void)Protect([&] {
        const LexObj form = TSDMDocGetTessella(doc);
        if (TessellaIsValid(form)) TessellaOptimize(form);
    });
    if (renumbers) DocFreeLex(doc, /*closing*/ false);
    DocHashControl *control = TSLexDocGetHashHead(DMDocGetLexDoc(doc));
    if (!control) return;
    control->editOK = false;
    if (!renumbers) return;
    control->loaded = false;
    // The clean-up enumerated the fields, which counts as a load; but it was one of records that are gone now.
    if (TJSDocData *data = TJSFindData(doc)) data->needLoadFields = true;
}

} // namespace

bool NameHashInit() {
    Subscribe(SCDocDidOpen, &frm_DocDidOpen);
    Subscribe(DMDocWillSave, &frm_DocWillSave);
    Subscribe(DMDocDidSave, &frm_DocDidSave);
    Subscribe(SCDocWillClose, &frm_DocWillClose);
    Subscribe(SCDocDidClose, &frm_DocDidClose);
    TessellaRegisterObserver(TSFormEntryDidChange, &tessellaChanged, /*failure*/ nullptr, /*clientData*/ nullptr);
    return true;
}

bool TJSDocInit(SCDoc view) {
    TJSDocData *data = TJSGetData(SCDocGetDMDoc(view));
    if (!data) return false;
    data->scDoc = view;
    if (gDocSeams.runDocumentScripts) gDocSeams.runDocumentScripts(data);
    return true;
}

void TJSDocTerm(SCDoc view, bool saveCalcArray) {
    const DMDoc doc = SCDocGetDMDoc(view);
    TJSDocData *data = TJSGetData(doc);
    if (gDocSeams.forgetSubscriptions) gDocSeams.forgetSubscriptions(view, data);
    if (!data) return;
    // While the record is still listed: the names are looked up through it.
    if (saveCalcArray && data->calcArray) TSDMDocSetCalcArray(doc, data->calcArray);
    TJSDropData(data);
}

void frm_DocDidOpen(SCDoc view, KRErrorCode error, void *) {
    const DMDoc doc = error == KRErrNone && view ? SCDocGetDMDoc(view) : nullptr;
    if (!doc) return;
    LexObj form = LexNullObj;
    DocHashControl *control = TSLexDocGetHashHead(DMDocGetLexDoc(doc));
    if (control && control->editOK) {
        form = TSDMDocGetTessella(doc);
        control->closing = false;
    }
    const bool hasForm = TessellaIsValid(form);
    if (hasForm) ServeNeedAppearances(doc, form);
    TJSDocInit(view);
    if (hasForm && gDocSeams.formDidOpen) gDocSeams.formDidOpen(view);
}

void frm_DocWillSave(DMDoc doc, const DMDocSaveRecord *save, void *) {
    (void)Protect([&] { PrepareSave(doc, save); });
}

void frm_DocDidSave(DMDoc doc, KRErrorCode, void *) {
    if (DocHashControl *control = TSDMDocFindHashHead(doc)) control->editOK = true;
}

void frm_DocWillClose(SCDoc view, void *) {
    if (!IsOpen(view)) return;
    const DMDoc doc = SCDocGetDMDoc(view);
    if (gDocSeams.formWillClose) gDocSeams.formWillClose(view);
    TJSDocTerm(view, /*saveCalcArray*/ false);
    DocFreeLex(doc, /*closing*/ true);
}

void frm_DocDidClose(SCDoc, void *) {
    CleanUpOpenDocsHashControls();
}

bool createAP(DMAnnot annot, DMPage, void *) {
    // A widget that cannot be shown does not keep the others from it.
    Protect([&] {
        DMField *field = TSDMAnnotGetField(annot);
        if (!TSDMFieldCanDisplay(field)) return;
        const bool keeps = KeepsItsFaces(field);
        if (!keeps) TSDMFieldAppearanceWasUpdated(field);
        // Of pictures that stay, the one for the value is chosen.
        const KRAtom type = TSDMWidgetGetSubType(annot);
        if (!keeps || type == CheckBox_K || type == RadioButton_K) ShowValue(field);
    });
    return true;
}

void tessellaChanged(void *record, void *) {
    auto *change = static_cast<TSFieldNotifyRec *>(record);
    TSDMDocEnumDMFields(change->doc, /*terminalOnly*/ true, /*firstOfNameOnly*/ false, &fieldUpdate, &change->entries);
}

KRBool fieldUpdate(DMField *field, void *mask) {
    if (!TSDMFieldCanDisplay(field) || (field->type == Sig_K && KeepsItsFaces(field))) return true;
    const std::uint32_t changed = *static_cast<const std::uint32_t *>(mask);
    const LexObj form = TSDMFieldGetTessella(field);
    for (std::uint32_t entry = TSEntryVT; entry >= TSEntryDV; entry >>= 1) {
        if (changed & entry && LexObjEqual(TSDMFieldGetEntry(field, entry), TessellaGetEntry(form, entry)))
            TSDMFieldAppearanceWasUpdated(field);
    }
    if (TSDMFieldWasAppearanceUpdated(field)) ShowValue(field);
    return true;
}

bool TSDMDocMakerIsOK(DMDoc doc) {
    const std::uint32_t permissions = doc ? DMDocGetPermissions(doc) : 0;
    constexpr std::uint32_t both = DMPermissionChange | DMPermissionFillIn;
    return permissions & DMPermissionAll || (permissions & both) == both;
}

bool TSDMDocFillerIsOK(DMDoc doc) {
    return doc && DMDocGetPermissions(doc) & (DMPermissionChange | DMPermissionFillIn | DMPermissionAll);
}
