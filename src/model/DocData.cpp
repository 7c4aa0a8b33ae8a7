// The script records of the open documents.
// SPDX-License-Identifier: MIT
#include "model/DocData.h"

#include <memory>

#include "Common/src/miLexType.h"
#include "model/CalcArray.h"

TJSDocSeams gDocSeams{};

namespace {

/** The newest first. */
TJSDocData *s_root = nullptr;

} // namespace

TJSDocData *TJSFindData(DMDoc doc) {
    for (TJSDocData *data = s_root; data; data = data->next) {
        if (data->dmDoc != doc) continue;
        if (!DocIsGone(data->stamp)) return data;
        TJSDropData(data);
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

void TJSDropData(TJSDocData *data) {
    if (gDocSeams.dropEngineObjects) gDocSeams.dropEngineObjects(data);
    for (TJSDocData **link = &s_root; *link; link = &(*link)->next) {
        if (*link != data) continue;
        *link = data->next;
        break;
    }
    delete data->calcArray;
    delete data;
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
