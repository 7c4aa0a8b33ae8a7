// Telling whether a document's handle still stands for the document that it was taken for.
// SPDX-License-Identifier: MIT
#pragma once

#include "Common/src/miLexType.h"
#include "LexHFT.h"

/** The catalog of a document when it was first seen. Of a document that is gone it reads as null. */
struct DocStamp {
    LexObj catalog = LexNullObj;
};

inline DocStamp DocStampOf(LexDoc doc) {
    return {LexDocGetRoot(doc)};
}

/** The document was closed, and its handle may have been given out again for another. */
inline bool DocIsGone(const DocStamp &stamp) {
    return !LexObjEqual(stamp.catalog, LexNullObj) && IsNull(stamp.catalog);
}
