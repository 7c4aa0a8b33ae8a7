// Streams and forms of signature appearances: made from lines, wrapped, recognised and fitted.
// SPDX-License-Identifier: MIT
#include "widgets/miWSig.h"

#include <algorithm>
#include <charconv>
#include <sstream>

#include "Common/src/miLexType.h"
#include "Common/src/miStream.h"
#include "CoreHFT.h"
#include "KernelSupportHFT.h"
#include "PIFrame.h"
#include "appearance/miCStoreParts.h"
#include "base/FormStr.h"
#include "objects/FixedUtl.h"
#include "objects/LexCopy.h"
#include "objects/LexUtil.h"
#include "widgets/miWSigMark.h"

namespace {

/** A wrapper is one short line. */
constexpr std::size_t s_wrapperLimit = 254;
constexpr KRFixedRect s_markBox{0, KRFixedFromInt(100), KRFixedFromInt(100), 0};
constexpr KRFixed s_markCenter = KRFixedFromInt(50);

LexObj NewName(LexDoc doc, KRAtom name) {
    return LexNewName(doc, /*indirect*/ false, name);
}

LexObj NewStream(LexDoc doc, const std::string &text) {
    KRStm source = KRMemStmOpen(text.data(), static_cast<std::int64_t>(text.size()));
    LexObj stream = LexNullObj;
    const KRErrorCode code = Protect([&] {
        stream = LexNewStream(doc, /*indirect*/ true, source, /*start*/ 0, /*encode*/ false, LexNullObj, LexNullObj,
                              static_cast<std::int32_t>(text.size()));
    });
    KRStmClose(source);
    RaiseIf(code);
    return stream;
}

LexObj NewBoxedStream(LexDoc doc, const std::string &text, const KRFixedRect *bbox, LexObj *resources) {
    LexObj stream = NewStream(doc, text);
    LexObj dict = LexStreamDict(stream);
    TSLexPutRect(doc, dict, BBox_K, bbox ? bbox : &s_markBox);
    LexObj made = TSLexDictEnsure(dict, Resources_K);
    LexObj procSet = TSLexArrayEnsure(made, ProcSet_K, /*indirect*/ false);
    LexArrayPut(procSet, 0, NewName(doc, PDF_K));
    if (resources) *resources = made;
    return stream;
}

std::string NumberText(KRFixed value) {
    char text[32];
    KRFixedToCString(value, text, sizeof text, /*precision*/ 4);
    return text;
}

// The colour operators of the mark; empty for a colour that cannot be drawn.
std::string MarkColor(const DMColorValue &color) {
    const KRFixed *v = color.value;
    if (color.space == TSColorGray || (color.space == TSColorRGB && v[0] == v[1] && v[1] == v[2]))
        return NumberText(v[0]) + " g";
    const int count = color.space == TSColorRGB ? 3 : color.space == TSColorCMYK ? 4 : 0;
    std::string text;
    for (int i = 0; i < count; ++i) text += NumberText(v[i]) + " ";
    if (count > 0) text += count == 3 ? "rg" : "k";
    return text;
}

bool TakeWord(std::istringstream &in, const char *word) {
    std::string token;
    return in >> token && token == word;
}

bool TakeNumbers(std::istringstream &in, int count) {
    for (std::string token; count > 0; --count) {
        if (!(in >> token)) return false;
        float number = 0;
        const char *start = token.c_str() + (token[0] == '+' ? 1 : 0);
        const char *end = token.c_str() + token.size();
        if (std::from_chars(start, end, number).ptr != end || start == end) return false;
    }
    return true;
}

struct Sides {
    double width, height;
};

Sides SidesOf(const KRFixedRect &rect) {
    return {static_cast<double>(CStoreDistance(rect.right, rect.left)),
            static_cast<double>(CStoreDistance(rect.top, rect.bottom))};
}

// The sides that a wrapper's box had before an earlier fit widened one of them: those of the form's proportions.
Sides Unfitted(const Sides &box, const Sides &form) {
    // Further apart than what rounding to 16.16 leaves.
    constexpr double tolerance = 1.0 / 1024;
    const double byWidth = box.width / form.width, byHeight = box.height / form.height;
    if (byWidth > byHeight * (1 + tolerance)) return {form.width * byHeight, box.height};
    if (byHeight > byWidth * (1 + tolerance)) return {box.width, form.height * byWidth};
    return box;
}

KRFixed ToFixed(double value) {
    return static_cast<KRFixed>(std::clamp(value, 0.0, static_cast<double>(INT32_MAX)));
}

} // namespace

LexObj CreateStreamFromStringArray(LexDoc doc, const char *const *lines, const KRFixedRect *bbox, LexObj *resources) {
    std::string text;
    for (; *lines && **lines; ++lines) text.append(*lines).push_back('\n');
    return NewBoxedStream(doc, text, bbox, resources);
}

LexObj StreamToXObject(LexObj stream, const KRFixedMatrix *matrix, const KRFixedRect *bbox, bool inPlace) {
    LexDoc doc = LexObjGetDoc(stream);
    LexObj form = inPlace ? stream : TSLexObjCopy(doc, stream, /*shallow*/ false);
    LexObj dict = LexStreamDict(form);
    LexDictPut(dict, Type_K, NewName(doc, XObject_K));
    LexDictPut(dict, Subtype_K, NewName(doc, Form_K));
    LexDictPut(dict, FormType_K, LexNewInteger(doc, /*indirect*/ false, 1));
    if (bbox) TSLexPutRect(doc, dict, BBox_K, bbox);
    const bool had = LexDictKnown(dict, Matrix_K);
    if (had && !matrix) return form;
    KRFixedMatrix product = matrix ? *matrix : KRFixedMatrixIdentity;
    if (had) {
        KRFixedMatrix present;
        TSLexGetMatrix(dict, Matrix_K, &present);
        KRFixedMatrixConcat(&product, matrix, &present);
    }
    TSLexPutMatrix(doc, dict, Matrix_K, &product);
    return form;
}

LexObj XObjectToStream(LexObj xobject, const KRFixedMatrix *matrix, const KRFixedRect *bbox) {
    const KRFixedMatrix m = matrix ? *matrix : KRFixedMatrixIdentity;
    std::string text = "q ";
    for (const KRFixed value : {m.a, m.b, m.c, m.d, m.e, m.f}) text += NumberText(value) + " ";
    text += "cm /FRM Do Q";
    LexObj resources;
    LexObj stream = NewBoxedStream(LexObjGetDoc(xobject), text, bbox, &resources);
    LexDictPut(TSLexDictEnsure(resources, XObject_K), FRM_K, xobject);
    return stream;
}

KRAtom StreamWrapsXObject(LexObj stream) {
    if (!IsStream(stream)) return KRAtomNull;
    std::string text;
    if (Protect([&] { text = miStreamData(stream); }) != KRErrNone || text.size() >= s_wrapperLimit) return KRAtomNull;
    std::istringstream in(text);
    std::string name, rest;
    const bool wraps = TakeWord(in, "q") && TakeNumbers(in, 6) && TakeWord(in, "cm") && in >> name && name[0] == '/' &&
                       TakeWord(in, "Do") && TakeWord(in, "Q") && !(in >> rest);
    return wraps ? KRAtomFromString(name.c_str() + 1) : KRAtomNull;
}

LexObj GetThumper(LexDoc doc, const TextAppearance *look) {
    const std::string color = MarkColor(look->fillColor);
    if (color.empty()) return LexNullObj;
    std::vector<const char *> lines;
    for (const char *const *line = thumper; *line; ++line) lines.push_back(*line);
    lines[ThumperColorLine] = color.c_str();
    lines.push_back(nullptr);
    LexObj stream = CreateStreamFromStringArray(doc, lines.data(), nullptr, nullptr);
    KRFixedMatrix matrix = KRFixedMatrixIdentity;
    TSFixedMatrixTranslate(&matrix, TSFixedNeg(s_markCenter), TSFixedNeg(s_markCenter));
    return StreamToXObject(stream, &matrix, nullptr, /*inPlace*/ true);
}

void DefaultAPMatrixFM(KRFixedMatrix *matrix, std::int32_t rotation, KRFixed width, KRFixed height) {
    *matrix = KRFixedMatrixIdentity;
    CStoreQuarterTurn((rotation % 360 + 360) % 360, width, height, matrix);
}

LexObj FitAp(const KRFixedRect *rect, LexObj stream, const KRFixedRect *bbox) {
    if (!IsStream(stream)) return LexNullObj;
    LexObj dict = LexStreamDict(stream);
    KRFixedRect box;
    TSLexGetRect(dict, BBox_K, &box);
    const Sides place = SidesOf(*rect), form = SidesOf(*bbox);
    if (form.width == 0 || form.height == 0 || place.width == 0 || place.height == 0) return stream;
    const Sides sides = Unfitted(SidesOf(box), form);
    const bool wide = place.width * form.height > place.height * form.width;
    const double width = wide ? sides.height * place.width / place.height : sides.width;
    const double height = wide ? sides.height : sides.width * place.height / place.width;
    box.right = TSFixedAdd(box.left, ToFixed(width));
    box.top = TSFixedAdd(box.bottom, ToFixed(height));
    TSLexPutRect(LexObjGetDoc(stream), dict, BBox_K, &box);
    return stream;
}
