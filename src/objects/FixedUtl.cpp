// Rectangles and matrices of fixed numbers.
// SPDX-License-Identifier: MIT
#include "objects/FixedUtl.h"

#include <algorithm>

#include "KernelSupportHFT.h"
#include "base/FormStr.h"
#include "objects/LexUtil.h"

void TSFixedRectSet(KRFixedRect *rect, KRFixed left, KRFixed bottom, KRFixed right, KRFixed top) {
    *rect = {.left = left, .top = top, .right = right, .bottom = bottom};
}

void TSFixedRectInset(KRFixedRect *rect, KRFixed dx, KRFixed dy) {
    const KRFixedRect delta{.left = dx, .top = TSFixedNeg(dy), .right = TSFixedNeg(dx), .bottom = dy};
    TSFixedRectDelta(rect, &delta);
}

bool TSFixedRectEmpty(const KRFixedRect *rect) {
    return rect->left >= rect->right || rect->bottom >= rect->top;
}

void TSFixedRectIntersect(KRFixedRect *out, const KRFixedRect *a, const KRFixedRect *b) {
    const KRFixedRect both{.left = std::max(a->left, b->left),
                           .top = std::min(a->top, b->top),
                           .right = std::min(a->right, b->right),
                           .bottom = std::max(a->bottom, b->bottom)};
    *out = TSFixedRectEmpty(&both) ? KRFixedRect{} : both;
}

void TSFixedRectDelta(KRFixedRect *rect, const KRFixedRect *delta) {
    rect->left = TSFixedAdd(rect->left, delta->left);
    rect->top = TSFixedAdd(rect->top, delta->top);
    rect->right = TSFixedAdd(rect->right, delta->right);
    rect->bottom = TSFixedAdd(rect->bottom, delta->bottom);
}

void TSFixedMatrixSet(KRFixedMatrix *matrix, KRFixed a, KRFixed b, KRFixed c, KRFixed d, KRFixed e, KRFixed f) {
    *matrix = {a, b, c, d, e, f};
}

void TSFixedMatrixScale(KRFixedMatrix *matrix, KRFixed sx, KRFixed sy) {
    const KRFixedMatrix scale{sx, 0, 0, sy, 0, 0};
    KRFixedMatrixConcat(matrix, matrix, &scale);
}

void TSFixedMatrixTranslate(KRFixedMatrix *matrix, KRFixed tx, KRFixed ty) {
    matrix->e = TSFixedAdd(matrix->e, tx);
    matrix->f = TSFixedAdd(matrix->f, ty);
}

void TSFixedMatrixRotate(KRFixedMatrix *matrix, std::int32_t degrees) {
    KRFixed cosine = 0, sine = 0;
    switch (degrees) {
    case 0:
        cosine = KRFixedOne;
        break;
    case 90:
        sine = -KRFixedOne;
        break;
    case 180:
        cosine = -KRFixedOne;
        break;
    case 270:
        sine = KRFixedOne;
        break;
    default:
        return;
    }
    const KRFixedMatrix rotation{cosine, sine, -sine, cosine, 0, 0};
    KRFixedMatrixConcat(matrix, matrix, &rotation);
}

void TSDMFormGetNormalizedBBox(LexObj form, KRFixedRect *rect) {
    *rect = {};
    KRFixedRect box;
    if (!TSLexArrayGetRect(TSLexDictGetOfType(form, BBox_K, LexArray), &box)) return;
    KRFixedMatrix matrix;
    TSLexGetMatrix(form, Matrix_K, &matrix);
    KRFixedMatrixTransformRect(rect, &matrix, &box);
}
