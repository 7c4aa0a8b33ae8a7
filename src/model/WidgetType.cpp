// Which type of widget an annotation is.
// SPDX-License-Identifier: MIT
#include "model/WidgetType.h"

#include "Common/src/miLexType.h"
#include "DocModelHFT.h"
#include "base/FormStr.h"
#include "model/DMField.h"
#include "model/DMFieldValue.h"
#include "objects/LexUtil.h"

namespace {

KRAtom SubTypeOfButton(std::uint32_t flags) {
    if (flags & TSFieldPushButton) return Button_K;
    return flags & TSFieldRadio ? RadioButton_K : CheckBox_K;
}

/** The type of a widget that is no field: what its dictionaries say. */
KRAtom SubTypeWithoutField(LexObj obj) {
    const LexObj type = TSLexObjInheritedValue(obj, FT_K);
    if (!IsName(type)) return KRAtomNull;
    if (LexNameValue(type) != Btn_K) return LexNameValue(type);
    const LexObj flags = TSLexObjInheritedValue(obj, flagsF_K);
    const bool push = IsInteger(flags) && (LexIntegerValue(flags) & TSFieldPushButton) != 0;
    return push ? Button_K : Btn_K;
}

} // namespace

KRAtom TSDMWidgetGetSubType(DMAnnot annot) {
    const DMField *field = TSDMAnnotGetField(annot);
    if (!TSDMFieldIsValid(field)) return SubTypeWithoutField(DMAnnotGetLexObj(annot));
    if (field->type == Btn_K) return SubTypeOfButton(field->flags[TSFieldWord]);
    if (field->type == Choice_K) return field->flags[TSFieldWord] & TSFieldCombo ? ComboBox_K : ListBox_K;
    return field->type == Tx_K ? Text_K : field->type;
}
