// The `MK` dictionary of a widget and the rotation that it holds. The maker of the name is that dictionary: no field is
// made here.
// SPDX-License-Identifier: MIT
#include "model/DMFieldValue.h"

#include <cstdint>

#include "Common/src/miLexType.h"
#include "DocModelHFT.h"
#include "base/FormStr.h"
#include "objects/LexUtil.h"

namespace {

constexpr std::int32_t s_fullTurn = 360;

/** 0 to 359 for every angle. */
std::int32_t Normalized(std::int64_t degrees) {
    return static_cast<std::int32_t>((degrees % s_fullTurn + s_fullTurn) % s_fullTurn);
}

LexObj DictUnder(LexObj holder, KRAtom key) {
    return TSLexDictGetOfType(holder, key, LexDict);
}

struct StateSearch {
    LexObj holder;
};

/** Looks for the first state whose stream has an `MK`; anything but a stream ends the search. */
KRBool StopAtMaker(LexObj, LexObj value, void *clientData) {
    if (!IsStream(value)) return false;
    const LexObj dict = LexStreamDict(value);
    if (!IsDict(DictUnder(dict, MakerDict_K))) return true;
    static_cast<StateSearch *>(clientData)->holder = dict;
    return false;
}

/** The dictionary that has `MK`: the annotation's own, else the one of a normal appearance; null when none has. */
LexObj HolderOfMaker(DMAnnot annot) {
    const LexObj obj = DMAnnotGetLexObj(annot);
    if (!IsDict(obj)) return LexNullObj;
    if (LexDictKnown(obj, MakerDict_K)) return obj;
    const LexObj faces = DictUnder(obj, Appearance_K);
    if (!IsDict(faces)) return LexNullObj;
    const LexObj normal = LexDictGet(faces, FaceNormal_K);
    StateSearch search{LexNullObj};
    if (IsStream(normal))
        StopAtMaker(LexNullObj, normal, &search);
    else if (IsDict(normal))
        LexObjEnum(normal, &StopAtMaker, &search);
    return search.holder;
}

/** The angle by which the normal appearance (for states: the one of Off) turns its content. */
std::int32_t AngleOfAppearance(LexObj annotObj) {
    const LexObj faces = DictUnder(annotObj, Appearance_K);
    if (!IsDict(faces)) return 0;
    LexObj normal = LexDictGet(faces, FaceNormal_K);
    if (IsDict(normal)) normal = LexDictGet(normal, Off_K);
    if (!IsStream(normal) || !LexDictKnown(normal, Matrix_K)) return 0;
    KRFixedMatrix matrix;
    TSLexGetMatrix(LexStreamDict(normal), Matrix_K, &matrix);
    if (matrix.a != 0) return matrix.a > 0 ? 0 : 180;
    return matrix.b > 0 ? 90 : 270;
}

} // namespace

LexObj TSDMAnnotGetMK(DMAnnot annot) {
    return DictUnder(HolderOfMaker(annot), MakerDict_K);
}

void TSDMAnnotRemoveMakerDict(DMAnnot annot) {
    const LexObj holder = HolderOfMaker(annot);
    if (IsDict(holder)) LexDictRemove(holder, MakerDict_K);
}

void TSDMAnnotSetRotation(DMAnnot annot, std::int32_t degrees) {
    const std::int32_t angle = Normalized(degrees);
    if (angle != 0) {
        const LexObj maker = TSLexDictEnsure(DMAnnotGetLexObj(annot), MakerDict_K);
        TSLexDictStore<LexInteger>(maker, Rot_K, /*indirect*/ false, angle);
    } else if (const LexObj maker = TSDMAnnotGetMK(annot); IsDict(maker)) {
        LexDictRemove(maker, Rot_K);
    }
}

std::int32_t TSDMAnnotGetRotation(DMAnnot annot) {
    const LexObj maker = TSDMAnnotGetMK(annot);
    if (IsDict(maker)) {
        std::int32_t angle = 0;
        TSLexDictLoad<LexInteger>(maker, Rot_K, &angle);
        return Normalized(angle);
    }
    const std::int32_t angle = AngleOfAppearance(DMAnnotGetLexObj(annot));
    // Kept, so that the angle outlives a new appearance.
    if (angle != 0) TSDMAnnotSetRotation(annot, angle);
    return angle;
}
