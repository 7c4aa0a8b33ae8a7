// What a widget is: its type, names, geometry, border, colours, and the entries of `MK`.
// SPDX-License-Identifier: MIT
#include "widgets/DMWidget.h"

#include <algorithm>
#include <cstring>

#include "Common/src/miLexType.h"
#include "Common/src/miUtils.h"
#include "CoreHFT.h"
#include "KRErrors.h"
#include "KernelSupportHFT.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "base/miKanjiFont.h"
#include "model/DMField.h"
#include "model/DMFieldValue.h"
#include "model/WidgetReg.h"
#include "objects/AnnotUtl.h"
#include "objects/ColorUtl.h"
#include "objects/FixedUtl.h"
#include "objects/LexUtil.h"

namespace {

constexpr KRFixed s_dash = KRFixedFromInt(3);
constexpr KRFixed s_center = 0x8000;
/** Entries that a new `MK` has room for. */
constexpr std::int32_t s_mkSize = 5;

LexObj DictOf(DMAnnot annot) {
    return DMAnnotGetLexObj(annot);
}

// The height when the widget was made, if it has been stretched since; else 0.
KRFixed OriginalHeight(DMAnnot annot, const KRFixedRect &rect) {
    KRFixed original = 0;
    if (!TSLexObjGetNumber(TSLexObjInheritedValue(DictOf(annot), origHeight_K), &original)) return 0;
    const KRFixed height = TSFixedSub(rect.top, rect.bottom);
    return original > 0 && height > 0 && original != height ? original : 0;
}

KRFixedRect AnnotRect(DMAnnot annot) {
    KRFixedRect rect{};
    if (Protect([&] { DMAnnotGetRect(annot, &rect); }) != KRErrNone) rect = {};
    return rect;
}

KRAtom FieldTypeOf(KRAtom type) {
    if (type == Text_K) return Tx_K;
    if (type == ListBox_K || type == ComboBox_K) return Choice_K;
    if (type == Button_K || type == RadioButton_K || type == CheckBox_K) return Btn_K;
    return type;
}

std::int32_t StyleOf(KRAtom name) {
    if (name == Dashed_K) return TSBorderDashed;
    if (name == Inset_K) return TSBorderInset;
    if (name == Beveled_K) return TSBorderBeveled;
    if (name == Underline_K) return TSBorderUnderline;
    return TSBorderSolid;
}

KRAtom NameOfStyle(std::int32_t style) {
    switch (style) {
    case TSBorderDashed:
        return Dashed_K;
    case TSBorderBeveled:
        return Beveled_K;
    case TSBorderInset:
        return Inset_K;
    case TSBorderUnderline:
        return Underline_K;
    default:
        return Solid_K;
    }
}

std::int32_t WholePoints(LexObj number, std::int32_t missing) {
    KRFixed value = 0;
    if (!TSLexObjGetNumber(number, &value)) return missing;
    const std::int64_t rounded = (static_cast<std::int64_t>(value) + 0x8000) >> 16;
    return static_cast<std::int32_t>(std::min<std::int64_t>(rounded, INT16_MAX));
}

void SetOneDash(TSBorder *border) {
    border->dashCount = 1;
    border->dashes[0] = s_dash;
}

// Whatever lengths the array holds, one dash of 3 points is drawn.
bool BorderFromStyle(LexObj bs, TSBorder *border) {
    KRAtom style = KRAtomNull;
    TSLexDictLoad<LexName>(bs, S_K, &style);
    border->style = StyleOf(style);
    border->width = WholePoints(LexDictGet(bs, Width_K), border->width);
    if (border->style == TSBorderDashed && LexDictKnown(bs, DashArray_K)) SetOneDash(border);
    return border->width > 0;
}

bool BorderFromArray(LexObj array, TSBorder *border) {
    const std::int32_t length = LexArrayLength(array);
    if (length >= 4) {
        border->style = TSBorderDashed;
        SetOneDash(border);
    }
    border->width = WholePoints(LexArrayGet(array, 2), border->width);
    return true;
}

bool SameBorder(const TSBorder &a, const TSBorder &b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

void WriteBorderStyle(DMAnnot annot, const TSBorder &border) {
    LexObj dict = DictOf(annot);
    LexDoc doc = LexObjGetDoc(dict);
    LexObj bs = TSLexDictEnsure(dict, BorderStyle_K);
    TSLexDictStore<LexInteger>(bs, Width_K, /*indirect*/ false, border.width);
    TSLexDictStore<LexName>(bs, S_K, /*indirect*/ false, NameOfStyle(border.style));
    if (border.style != TSBorderDashed) {
        LexDictRemove(bs, DashArray_K);
        return;
    }
    LexObj dashes = LexNewArray(doc, /*indirect*/ false, 1);
    LexArrayPut(dashes, 0, LexNewFixed(doc, /*indirect*/ false, s_dash));
    LexDictPut(bs, DashArray_K, dashes);
}

void AppearanceIsDue(DMAnnot annot) {
    TSDMFieldAppearanceWasUpdated(TSDMAnnotGetField(annot));
}

bool SameFit(const TSFit &a, const TSFit &b) {
    return a.when == b.when && a.how == b.how && a.alignX == b.alignX && a.alignY == b.alignY;
}

bool IsDefaultFit(const TSFit &fit) {
    TSFit standard;
    TSDMAnnotInitFit(&standard);
    return SameFit(fit, standard);
}

void WriteFitName(LexObj dict, KRAtom key, KRAtom name, KRAtom standard) {
    if (name == standard)
        LexDictRemove(dict, key);
    else
        TSLexDictStore<LexName>(dict, key, /*indirect*/ false, name);
}

void SetAreaColor(DMAnnot annot, KRAtom key, const DMColorValue *color) {
    if (!color) return;
    LexObj value = LexNullObj;
    if (ValidDMColorValue(color)) {
        LexDoc doc = LexObjGetDoc(DictOf(annot));
        value = LexNewArray(doc, /*indirect*/ false, 4);
        for (std::int32_t i = 0; i < TSColorComponents(color->space); ++i)
            LexArrayPut(value, i, LexNewFixed(doc, /*indirect*/ false, color->value[i]));
    }
    TSDMWidgetSetObj(annot, key, value);
}

} // namespace

bool TSDMWidgetIsNative(DMAnnot annot, LexObj *mk) {
    const LexObj found = TSDMAnnotGetMK(annot);
    if (mk) *mk = found;
    return IsDict(found) || !TSDMAnnotHasAppearance(annot, KRAtomNull, KRAtomNull);
}

void TSDMWidgetSetSubType(DMAnnot annot, KRAtom type, std::uint32_t *fieldFlags) {
    DMField *field = TSDMAnnotGetField(annot);
    const KRAtom fieldType = FieldTypeOf(type);
    if (TSDMFieldGetType(field) != fieldType && TSDMFieldSetType(field, fieldType) != 0)
        KRRaise(field && (field->state & DMFieldSharesName) ? KRErrTypeShared : KRErrBadParam);
    std::uint32_t flags = *fieldFlags;
    if (fieldType == Btn_K) flags &= ~static_cast<std::uint32_t>(TSFieldNoExport);
    flags = TSWithFlags(flags, TSFieldPushButton, type == Button_K);
    flags = TSWithFlags(flags, TSFieldRadio | TSFieldNoToggleToOff, type == RadioButton_K);
    *fieldFlags = TSWithFlags(flags, TSFieldCombo, type == ComboBox_K);
}

void TSDMWidgetGetTitle(DMAnnot annot, char *buffer, std::int32_t size) {
    if (size < 1) return;
    buffer[0] = '\0';
    const char *name = TSDMFieldGetName(TSDMAnnotGetField(annot));
    if (name) TSDMXlateExportToHostEnc(name, buffer, size, KRAtomNull);
}

EStr *TSDMFieldGetUserName(DMField *field) {
    return EStrNewFromLexObjImpl(TSDMFieldGetObj(field, UserName_K));
}

EStr *TSDMWidgetGetUserName(DMAnnot annot) {
    return TSDMFieldGetUserName(TSDMAnnotGetField(annot));
}

void TSDMFieldSetUserName(DMField *field, const EStr *name) {
    if (!TSDMFieldIsValid(field)) return;
    DMField *top = DMFieldTopOfName(field);
    if (EStrIsNull(name))
        LexDictRemove(top->obj, UserName_K);
    else
        EStrLexDictPut(top->obj, UserName_K, name);
}

EStr *TSDMFieldGetSubmitName(DMField *field) {
    return EStrNewFromLexObjImpl(TSDMFieldGetObj(field, SubmitName_K));
}

void TSDMWidgetGetRect(DMAnnot annot, KRFixedRect *rect) {
    *rect = AnnotRect(annot);
    const KRFixed original = OriginalHeight(annot, *rect);
    if (original == 0) return;
    const KRFixed height = TSFixedSub(rect->top, rect->bottom);
    const KRFixed width = TSFixedSub(rect->right, rect->left);
    rect->top = TSFixedAdd(rect->bottom, original);
    rect->right = TSFixedAdd(rect->left, KRFixedMul(width, KRFixedDiv(original, height)));
}

KRFixed TSDMWidgetGetTextSize(DMAnnot annot, KRFixed size) {
    if (size < KRFixedOne) return size;
    const KRFixedRect rect = AnnotRect(annot);
    const KRFixed original = OriginalHeight(annot, rect);
    if (original == 0) return size;
    return KRFixedMul(size, KRFixedDiv(TSFixedSub(rect.top, rect.bottom), original));
}

std::int32_t TSDMWidgetGetRotation(DMAnnot annot) {
    return TSDMAnnotGetRotation(annot);
}

void TSDMWidgetGetColor(DMAnnot, DMColorValue *color) {
    TSDMColorValueSet(color, TSColorRGB, KRFixedOne);
}

TSBorder TSBorderDefault() {
    TSBorder border{};
    border.width = 1;
    return border;
}

bool TSDMWidgetGetBorder(DMAnnot annot, TSBorder *border) {
    bool has = false;
    const KRErrorCode code = Protect([&] {
        *border = TSBorderDefault();
        LexObj dict = DictOf(annot);
        LexObj bs = TSLexDictGetOfType(dict, BorderStyle_K, LexDict);
        LexObj array = TSLexDictGetOfType(dict, Border_K, LexArray);
        if (IsDict(bs))
            has = BorderFromStyle(bs, border);
        else if (IsArray(array))
            has = BorderFromArray(array, border);
    });
    if (code != KRErrNone) *border = TSBorderDefault();
    return code == KRErrNone && has;
}

void TSDMWidgetSetBorder(DMAnnot annot, const TSBorder *border) {
    LexObj dict = DictOf(annot);
    TSBorder present;
    TSDMWidgetGetBorder(annot, &present);
    const TSBorder wanted = border ? *border : TSBorderDefault();
    const bool standard = wanted.style == TSBorderSolid && wanted.width == 1;
    const bool same = SameBorder(present, wanted);
    LexDictRemove(dict, Border_K);
    if (standard ? !LexDictKnown(dict, BorderStyle_K) : same && LexDictKnown(dict, BorderStyle_K)) {
        if (!same) AppearanceIsDue(annot);
        return;
    }
    const KRAtom key = standard ? Border_K : BorderStyle_K;
    DMAnnotNotifyWillChange(annot, key);
    const KRErrorCode code = Protect([&] {
        if (standard)
            LexDictRemove(dict, BorderStyle_K);
        else
            WriteBorderStyle(annot, wanted);
    });
    DMAnnotNotifyDidChange(annot, key, code);
    RaiseIf(code);
    AppearanceIsDue(annot);
}

void TSDMWidgetGetAreaColors(DMAnnot annot, DMColorValue *borderColor, DMColorValue *backColor) {
    if (borderColor) TSDMColorLoad(TSDMWidgetGetObj(annot, BorderCol_K), KRAtomNull, borderColor);
    if (backColor) TSDMColorLoad(TSDMWidgetGetObj(annot, Background_K), KRAtomNull, backColor);
}

void TSDMWidgetSetAreaColors(DMAnnot annot, const DMColorValue *borderColor, const DMColorValue *backColor) {
    SetAreaColor(annot, BorderCol_K, borderColor);
    SetAreaColor(annot, Background_K, backColor);
}

LexObj TSDMWidgetGetObj(DMAnnot annot, KRAtom key) {
    LexObj mk = TSDMAnnotGetMK(annot);
    return IsDict(mk) ? LexDictGet(mk, key) : LexNullObj;
}

void TSDMWidgetSetObj(DMAnnot annot, KRAtom key, LexObj value) {
    LexObj mk = TSDMAnnotGetMK(annot);
    const bool remove = IsNull(value);
    if (!IsDict(mk)) {
        if (remove) return;
        LexObj dict = DictOf(annot);
        mk = LexNewDict(LexObjGetDoc(dict), /*indirect*/ false, s_mkSize);
        LexDictPut(dict, MakerDict_K, mk);
    }
    if (TSLexObjEquivalent(LexDictGet(mk, key), value)) return;
    if (remove)
        LexDictRemove(mk, key);
    else
        LexDictPut(mk, key, value);
    AppearanceIsDue(annot);
}

void TSDMWidgetGetString(DMAnnot annot, KRAtom key, char *buffer, std::int32_t size) {
    TSLexCStringValue(TSDMWidgetGetObj(annot, key), buffer, size);
}

void TSDMWidgetSetString(DMAnnot annot, KRAtom key, const char *text) {
    LexObj value = LexNullObj;
    if (text && *text)
        value = LexNewString(LexObjGetDoc(DictOf(annot)), /*indirect*/ false, text,
                             static_cast<std::int32_t>(miStrlen(text)));
    TSDMWidgetSetObj(annot, key, value);
}

std::int32_t TSDMWidgetGetInt(DMAnnot annot, KRAtom key) {
    LexObj value = TSDMWidgetGetObj(annot, key);
    return IsInteger(value) ? LexIntegerValue(value) : 0;
}

void TSDMWidgetSetInt(DMAnnot annot, KRAtom key, std::int32_t value) {
    TSDMWidgetSetObj(annot, key, LexNewInteger(LexObjGetDoc(DictOf(annot)), /*indirect*/ false, value));
}

void TSDMAnnotInitFit(TSFit *fit) {
    *fit = {Always_K, Proportional_K, s_center, s_center};
}

void TSDMAnnotGetFit(DMAnnot annot, TSFit *fit) {
    TSDMAnnotInitFit(fit);
    LexObj mk;
    if (!TSDMWidgetIsNative(annot, &mk)) return;
    LexObj dict = TSLexDictGetOfType(mk, IF_K, LexDict);
    if (!IsDict(dict)) return;
    TSLexDictLoad<LexName>(dict, ScaleWhen_K, &fit->when);
    TSLexDictLoad<LexName>(dict, Scaling_K, &fit->how);
    LexObj align = TSLexDictGetOfType(dict, Align_K, LexArray);
    if (!IsArray(align) || LexArrayLength(align) != 2) return;
    TSLexObjGetNumber(LexArrayGet(align, 0), &fit->alignX);
    TSLexObjGetNumber(LexArrayGet(align, 1), &fit->alignY);
}

void TSDMAnnotSetFit(DMAnnot annot, const TSFit *fit) {
    TSFit present;
    TSDMAnnotGetFit(annot, &present);
    LexObj mk;
    if (!TSDMWidgetIsNative(annot, &mk) || SameFit(present, *fit)) return;
    if (IsDefaultFit(*fit)) {
        TSDMWidgetSetObj(annot, IF_K, LexNullObj);
        return;
    }
    if (!IsDict(mk)) mk = TSLexDictEnsure(DictOf(annot), MakerDict_K);
    LexObj dict = TSLexDictEnsure(mk, IF_K);
    WriteFitName(dict, Scaling_K, fit->how, Proportional_K);
    WriteFitName(dict, ScaleWhen_K, fit->when, Always_K);
    if (fit->alignX == s_center && fit->alignY == s_center) {
        LexDictRemove(dict, Align_K);
    } else {
        LexDoc doc = LexObjGetDoc(dict);
        LexObj align = LexNewArray(doc, /*indirect*/ false, 2);
        LexArrayPut(align, 0, LexNewFixed(doc, /*indirect*/ false, fit->alignX));
        LexArrayPut(align, 1, LexNewFixed(doc, /*indirect*/ false, fit->alignY));
        LexDictPut(dict, Align_K, align);
    }
    AppearanceIsDue(annot);
}
