// A form XObject made of a whole page.
// SPDX-License-Identifier: MIT
#include "objects/PageForm.h"

#include <algorithm>

#include "Common/src/miLexType.h"
#include "KernelSupportHFT.h"
#include "PIFrame.h"
#include "PIMain.h"
#include "base/FormStr.h"
#include "objects/FixedUtl.h"
#include "objects/LexCopy.h"
#include "objects/LexUtil.h"

namespace {

/** What StmJoinProc reads: the parts of a page's contents, of which one at a time is open. */
struct StmJoin {
    LexObj contents;
    std::int32_t next = 0;
    KRStm stream = nullptr;

    ~StmJoin() {
        Close();
    }
    void Close() {
        if (stream) KRStmClose(stream);
        stream = nullptr;
    }
};

/** Bytes of the parts one after the other, a line feed behind each: a part need not end at a token's end. */
std::int32_t ReadJoined(StmJoin &join, char *buffer, std::int32_t size) {
    for (;;) {
        if (join.stream) {
            const std::int32_t count = KRStmRead(buffer, 1, size, join.stream);
            if (count > 0) return count;
            join.Close();
            *buffer = '\n';
            return 1;
        }
        if (join.next >= LexArrayLength(join.contents)) return 0;
        const LexObj part = LexArrayGet(join.contents, join.next++);
        if (IsStream(part)) join.stream = LexStreamOpenStm(part, LexStreamDecoded);
    }
}

std::int32_t StmJoinProc(char *buffer, std::int32_t size, void *clientData) {
    std::int32_t count = 0;
    const KRErrorCode code = Protect([&] { count = ReadJoined(*static_cast<StmJoin *>(clientData), buffer, size); });
    return code ? -1 : count;
}

/** The procedure stream over StmJoinProc with the callback that it needs. */
struct JoinedStm {
    explicit JoinedStm(StmJoin &join)
        : callback(PICallback(gExtensionID, &StmJoinProc)), stream(KRProcStmOpen(callback, &join)) {}
    ~JoinedStm() {
        KRStmClose(stream);
        KRCallbackDestroy(reinterpret_cast<KRProc>(callback));
    }
    JoinedStm(const JoinedStm &) = delete;
    JoinedStm &operator=(const JoinedStm &) = delete;

    KRStmProc callback;
    KRStm stream;
};

LexObj JoinContents(LexDoc doc, LexObj contents) {
    const LexObj attributes = LexNewDict(doc, /*indirect*/ false, /*sizeHint*/ 1);
    const LexObj filters = LexNewArray(doc, /*indirect*/ false, /*sizeHint*/ 1);
    LexArrayPut(filters, 0, LexNewName(doc, /*indirect*/ false, FlateDecode_K));
    LexDictPut(attributes, Filter_K, filters);

    StmJoin join{contents};
    const JoinedStm source(join);
    const LexObj stream = LexNewStream(doc, /*indirect*/ true, source.stream, /*start*/ -1, /*encode*/ true, attributes,
                                       LexNullObj, /*length*/ -1);
    if (LexStreamLength(stream) >= LexArrayLength(contents)) return stream;
    LexObjDestroy(stream);
    return LexNullObj;
}

LexObj FormStream(LexDoc doc, LexObj contents) {
    switch (LexObjGetType(contents)) {
    case LexStream:
        return TSLexObjCopy(doc, contents, /*shallow*/ false);
    case LexArray:
        return JoinContents(doc, contents);
    default:
        return LexNullObj;
    }
}

bool InheritedBox(LexObj pageObject, KRAtom key, KRFixedRect *box) {
    KRFixedRect stated;
    if (!TSLexArrayGetRect(TSLexObjInheritedValue(pageObject, key), &stated)) return false;
    TSFixedRectSet(box, std::min(stated.left, stated.right), std::min(stated.bottom, stated.top),
                   std::max(stated.left, stated.right), std::max(stated.bottom, stated.top));
    return true;
}

KRFixedRect PageBox(DMPage page, LexObj pageObject) {
    KRFixedRect box;
    if (page) {
        KRFixedRect crop;
        DMPageGetMediaBox(page, &box);
        DMPageGetBBox(page, &crop);
        TSFixedRectIntersect(&box, &box, &crop);
    } else if (!InheritedBox(pageObject, CropBox_K, &box) && !InheritedBox(pageObject, MediaBox_K, &box)) {
        TSFixedRectSet(&box, 0, 0, KRFixedFromInt(612), KRFixedFromInt(792));
    }
    return box;
}

/** Half way between two sides, toward zero. */
KRFixed Centre(KRFixed a, KRFixed b) {
    return static_cast<KRFixed>((std::int64_t{a} + b) / 2);
}

std::int32_t PageRotation(LexObj pageObject) {
    const LexObj rotate = TSLexObjInheritedValue(pageObject, Rotate_K);
    std::int32_t degrees = 0;
    if (IsInteger(rotate)) degrees = LexIntegerValue(rotate);
    if (IsFixed(rotate)) degrees = LexFixedValue(rotate) / KRFixedOne;
    return (degrees % 360 + 360) % 360;
}

KRFixedMatrix FormMatrix(const KRFixedRect &box, LexObj pageObject) {
    KRFixedMatrix matrix = KRFixedMatrixIdentity;
    TSFixedMatrixTranslate(&matrix, -Centre(box.left, box.right), -Centre(box.bottom, box.top));
    TSFixedMatrixRotate(&matrix, PageRotation(pageObject));
    return matrix;
}

LexObj MakeForm(LexDoc doc, DMPage page, LexObj pageObject) {
    if (!IsDict(pageObject)) return LexNullObj;
    const LexObj form = FormStream(doc, LexDictGet(pageObject, Contents_K));
    if (!IsStream(form)) return LexNullObj;
    const LexObj dict = LexStreamDict(form);
    LexDictPut(dict, Type_K, LexNewName(doc, /*indirect*/ false, XObject_K));
    LexDictPut(dict, Subtype_K, LexNewName(doc, /*indirect*/ false, Form_K));
    const KRFixedRect box = PageBox(page, pageObject);
    TSLexPutRect(doc, dict, BBox_K, &box);
    LexDictPut(dict, FormType_K, LexNewInteger(doc, /*indirect*/ false, 1));
    const KRFixedMatrix matrix = FormMatrix(box, pageObject);
    TSLexPutMatrix(doc, dict, Matrix_K, &matrix);
    LexDictPut(dict, Name_K, LexNewName(doc, /*indirect*/ false, FRM_K));
    const LexObj resources = TSLexObjInheritedValue(pageObject, Resources_K);
    LexDictPut(dict, Resources_K, TSLexObjCopy(doc, resources, /*shallow*/ false));
    return form;
}

} // namespace

LexObj TSDMFormFromPage(DMDoc target, DMPage page) {
    LexObj form = LexNullObj;
    const KRErrorCode code = Protect([&] { form = TSFormXObjFromPageContents(target, page, DMPageGetLexObj(page)); });
    return code ? LexNullObj : form;
}

LexObj TSDMFormFromCoPage(DMDoc target, LexObj pageObject) {
    return TSFormXObjFromPageContents(target, /*page*/ nullptr, pageObject);
}

LexObj TSFormXObjFromPageContents(DMDoc target, DMPage page, LexObj pageObject) {
    LexObj form = LexNullObj;
    const KRErrorCode code = Protect([&] { form = MakeForm(DMDocGetLexDoc(target), page, pageObject); });
    return code ? LexNullObj : form;
}
