// What edits of pages and annotations do to fields.
// SPDX-License-Identifier: MIT
#include "life/LexFieldHooks.h"

#include <memory>

#include "Common/src/miLexType.h"
#include "DocModelHFT.h"
#include "PIFrame.h"
#include "ScreenViewHFT.h"
#include "base/FormStr.h"
#include "life/DMFieldLife.h"
#include "life/SCUtils.h"
#include "model/DMField.h"
#include "model/DMFieldValue.h"
#include "model/DocData.h"
#include "model/FieldRemoval.h"
#include "model/LexField.h"
#include "model/NameHash.h"
#include "model/WidgetReg.h"
#include "model/WidgetType.h"
#include "model/miAction.h"
#include "model/miCalc.h"
#include "objects/LexUtil.h"
#include "objects/Tessella.h"
#include "services/Subscribe.h"

namespace {

struct CalcArrayDeleter {
    void operator()(TSCalcArray *array) const {
        TSCalcArrayDelete(array);
    }
};
using CalcArrayPtr = std::unique_ptr<TSCalcArray, CalcArrayDeleter>;

/** The calculation order of the document that pages are coming into, as it was before. */
CalcArrayPtr s_orderBefore;

bool IsWidget(DMAnnot annot) {
    return DMAnnotIsValid(annot) && DMAnnotGetSubtype(annot) == Widget_K;
}

void RemoveFromPage(DMPage page, DMAnnot annot) {
    const std::int32_t index = DMPageGetAnnotIndex(page, annot);
    if (index >= 0) DMPageRemoveAnnot(page, index);
}

/** The document's form, made when it has none; not valid when it cannot be had. */
LexObj EnsureForm(DMDoc doc) {
    if (!TessellaIsValid(TSDMDocGetTessella(doc))) TSDMDocCreateForm(doc);
    return TSDMDocGetTessella(doc);
}

/** Takes the focus mark from a widget that is the selection of its document's view. */
void Deselect(DMDoc doc, DMAnnot annot) {
    const SCDoc view = TSLexDocGetSCDoc(DMDocGetLexDoc(doc));
    if (!view || SCDocGetSelectionType(view) != Annotation_K) return;
    const auto *selected = static_cast<const DMAnnot *>(SCDocGetSelection(view));
    if (!selected || !DMAnnotEqual(*selected, annot)) return;
    SCWidgetHandler *handler = TSSCAppGetWidgetHandlerByName(TSDMWidgetGetSubType(annot));
    if (handler && handler->Select) handler->Select(handler, annot, SCDocGetPageView(view), /*on*/ false);
}

bool AsksForAppearances(LexObj form) {
    const LexObj need = TSLexDictGetOfType(form, docID_K, LexBoolean);
    return IsBoolean(need) && LexBooleanValue(need);
}

/** One widget that came in becomes a field, or goes. */
void AdoptWidget(DMDoc doc, DMPage page, DMAnnot annot, bool needAppearances) {
    const LexObj form = EnsureForm(doc);
    if (TessellaIsValid(form)) {
        if (needAppearances) createAP(annot, page, nullptr);
        DMField *field = TSDMAnnotGetField(annot);
        if (TSDMFieldIsValid(field)) {
            TJSCalcFieldsListAdd(doc, field);
            return;
        }
    }
    RemoveFromPage(page, annot);
}

/** The widgets of one page, from the last to the first. */
void AdoptPage(DMDoc doc, DMPage page, bool needAppearances) {
    for (std::int32_t i = DMPageGetNumAnnots(page) - 1; i >= 0; --i) {
        const DMAnnot annot = DMPageGetAnnot(page, i);
        if (IsWidget(annot)) AdoptWidget(doc, page, annot, needAppearances);
    }
}

/** All pages that came in. What a page raises ends that page only. */
void AdoptPages(DMDoc doc, std::int32_t first, std::int32_t count, bool needAppearances) {
    void *progressData = nullptr;
    const SCProgressMonitor *progress = SCAppGetDocProgressMonitor(&progressData);
    progress->begin(progressData);
    progress->setRange(count - 1, progressData);
    for (std::int32_t i = 0; i < count; ++i) {
        progress->setValue(i, progressData);
        DMPage page = nullptr;
        (void)Protect([&] {
            page = DMDocAcquirePage(doc, first + i);
            AdoptPage(doc, page, needAppearances);
        });
        if (page) DMPageRelease(page);
    }
    progress->end(progressData);
}

/** While pages come in, roots of one name are merged. */
void SetAssembling(DMDoc doc, bool assembling) {
    if (DocHashControl *control = TSLexDocGetHashHead(DMDocGetLexDoc(doc))) control->assembling = assembling;
}

/** The scripts of the source come along; a view on the target runs them. */
void BringScripts(DMDoc doc, DMDoc source) {
    const DMNameTree scripts = DMDocGetNameTree(source, JavaScript_K);
    if (DMNameTreeIsValid(scripts)) DMNameTreeEnum(scripts, &TSCopyDocScripts, doc);
    if (const SCDoc view = TSLexDocGetSCDoc(DMDocGetLexDoc(doc))) {
        TJSDocTerm(view, /*saveCalcArray*/ true);
        TJSDocInit(view);
    }
}

void UndefineWidgetsOfPage(DMDoc doc, DMPage page, FieldRemoval *removal) {
    for (std::int32_t i = DMPageGetNumAnnots(page) - 1; i >= 0; --i) {
        const DMAnnot annot = DMPageGetAnnot(page, i);
        DMField *field = IsWidget(annot) ? EnsureNoDMFieldForDict(DMAnnotGetLexObj(annot), /*wipe*/ false) : nullptr;
        if (!field) continue;
        TJSCalcFieldsListDelete(doc, field, /*force*/ false);
        removal->Undefine(field);
    }
}

} // namespace

void InitProtoField() {
    Subscribe(DMPageDidAddAnnot, &TSDMFieldAnnotWasCreated);
    Subscribe(DMPageWillRemoveAnnot, &TSDMPageWillRemoveFieldAnnot);
    Subscribe(DMDocWillInsertPages, &TSDMDocWillInsertPagesHdl);
    Subscribe(DMDocDidInsertPages, &TSDMDocDidInsertPagesHdl);
    Subscribe(DMDocWillDeletePages, &TSDMDocWillDeletePagesHdl);
    Subscribe(DMAnnotDidChange, &TSDMAnnotDidChangeHdl);
}

void TSDMFieldAnnotWasCreated(DMPage page, DMAnnot annot, void *) {
    if (!IsWidget(annot) || TSDMFieldIsValid(TSDMAnnotGetField(annot))) return;
    if (!TessellaIsValid(EnsureForm(DMPageGetDoc(page)))) {
        RemoveFromPage(page, annot);
        return;
    }
    DMAnnotSetFlags(annot, DMAnnotGetFlags(annot) | DMAnnotPrint);
    TSDMAnnotSetRotation(annot, DMPageGetRotate(page));
}

void TSDMPageWillRemoveFieldAnnot(DMPage page, std::int32_t index, void *) {
    const DMAnnot annot = DMPageGetAnnot(page, index);
    if (!IsWidget(annot)) return;
    DMField *field = TSDMAnnotGetField(annot);
    if (!field) return;
    if (TSDMFieldIsValid(field) && !(field->state & DMFieldLocked)) {
        const DMDoc doc = DMPageGetDoc(page);
        Deselect(doc, annot);
        TJSCalcFieldsListDelete(doc, TSDMAnnotGetField(annot), /*force*/ false);
    }
    TSDMAnnotRemoveField(annot, page, /*flag*/ false, /*keepValue*/ false);
}

void TSDMDocWillInsertPagesHdl(DMDoc doc, std::int32_t, DMDoc source, std::int32_t, std::int32_t, void *) {
    s_orderBefore.reset();
    if (source) s_orderBefore.reset(TSCalcArrayCopy(TJSGetCalcArray(doc)));
}

void TSDMDocDidInsertPagesHdl(DMDoc doc, std::int32_t afterPage, DMDoc source, std::int32_t first, std::int32_t last,
                              KRErrorCode error, void *) {
    CalcArrayPtr orderBefore = std::move(s_orderBefore);
    if (error != KRErrNone || !source || !IsDMDocTessella(source)) return;
    TSDMDocLoadFieldsIfNeeded(doc);
    SetAssembling(doc, true);
    AdoptPages(doc, afterPage + 1, last - first + 1, AsksForAppearances(TSDMDocGetTessella(source)));
    SetAssembling(doc, false);
    if (orderBefore) TSFixCalcOrderAfterSpawnOrInsert(source, doc, orderBefore.release());
    BringScripts(doc, source);
}

void TSDMDocWillDeletePagesHdl(DMDoc doc, std::int32_t first, std::int32_t last, void *) {
    // A field without a record would stay in the form for good.
    TSDMDocLoadFieldsIfNeeded(doc);
    FieldRemoval removal;
    for (std::int32_t number = first; number <= last; ++number) {
        const DMPage page = DMDocAcquirePage(doc, number);
        const KRErrorCode code = Protect([&] { UndefineWidgetsOfPage(doc, page, &removal); });
        DMPageRelease(page);
        RaiseIf(code);
    }
    removal.Finish();
}

void TSDMAnnotDidChangeHdl(DMAnnot annot, KRAtom key, KRErrorCode error, void *) {
    if (error == KRErrNone && key == flagsA_K && IsWidget(annot)) TSDMFieldUpdateFlags(TSDMAnnotGetField(annot));
}
