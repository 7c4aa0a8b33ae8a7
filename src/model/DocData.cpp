// The script records of the open documents.
// SPDX-License-Identifier: MIT
#include "model/DocData.h"

#include <memory>

#include "Common/src/miLexType.h"
#include "ScreenViewHFT.h"
#include "model/miCalc.h"

TJSDocSeams gDocSeams{};

namespace {

/** The newest first. */
TJSDocData *s_root = nullptr;

void FreeData(TJSDocData *data) {
    for (TJSDocData **link = &s_root; *link; link = &(*link)->next) {
        if (*link != data) continue;
        *link = data->next;
        break;
    }
    TSCalcArrayDelete(data->calcArray);
    delete data;
}

} // namespace

TJSDocData *TJSFindData(DMDoc doc) {
    for (TJSDocData *data = s_root; data; data = data->next) {
        if (data->dmDoc != doc) continue;
        if (!DocIsGone(data->stamp)) return data;
        if (gDocSeams.dropEngineObjects) gDocSeams.dropEngineObjects(data);
        FreeData(data);
        return nullptr;
    }
    return nullptr;
}

TJSDocData *TJSGetData(DMDoc doc) {
    if (!doc) return nullptr;
    if (gDocSeams.willGetData) gDocSeams.willGetData();
    if (TJSDocData *data = TJSFindData(doc)) return data;
    auto data = std::make_unique<TJSDocData>();
    data->dmDoc = doc;
    data->needLoadFields = true;
    data->calculate = true;
    data->stamp = DocStampOf(DMDocGetLexDoc(doc));
    if (gDocSeams.attachEngine && !gDocSeams.attachEngine(data.get())) return nullptr;
    data->next = s_root;
    return s_root = data.release();
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
    if (gDocSeams.dropEngineObjects) gDocSeams.dropEngineObjects(data);
    FreeData(data);
}

bool TJSDocGetCalculate(DMDoc doc) {
    const TJSDocData *data = TJSFindData(doc);
    return !data || data->calculate;
}

void TJSDocSetCalculate(DMDoc doc, bool calculate) {
    if (TJSDocData *data = TJSGetData(doc)) data->calculate = calculate;
}

bool TJSDocGetDelay(DMDoc doc) {
    const TJSDocData *data = TJSFindData(doc);
    return data && data->delay;
}

void TJSDocSetDelay(DMDoc doc, bool delay) {
    if (TJSDocData *data = TJSGetData(doc)) data->delay = delay;
}
