// The four scripts of a widget's field: keystroke, format, validate, calculate.
// SPDX-License-Identifier: MIT
#include "widgets/DMWidget.h"

#include <cstring>

#include "CoreHFT.h"
#include "PIFrame.h"
#include "base/FormStr.h"
#include "model/DMField.h"
#include "model/DocData.h"
#include "model/miAction.h"
#include "model/miCalc.h"

namespace {

EStrPtr ScriptUnder(DMField *field, KRAtom key) {
    EStrPtr text(EStrNewImpl(nullptr, EStrHost));
    TSDMActionGetJavaScript(TSDMFieldGetAction(field, key), text.get());
    return text;
}

// A script that does not compile cannot run; without an engine, one that comes later decides.
bool MayCalculate(DMDoc doc, DMField *field, EStr *script) {
    const bool compiled = !gDocSeams.compileCalculation || gDocSeams.compileCalculation(doc, field, script);
    return compiled && !EStrIsNull(script);
}

DMField *TerminalOf(DMField *field) {
    while (field->parent && !TSDMFieldIsTerminal(field)) field = field->parent;
    return DMFieldTopOfName(field);
}

void WriteDatum(DMDoc doc, DMField *field, KRAtom key, EStr *script) {
    const EStrPtr present = ScriptUnder(field, key);
    if (EStrCmp(present.get(), script) == 0) return;
    DMAction action = EStrIsNull(script) ? DMActionFromLexObj(LexNullObj) : TSDMActionNewJavaScript(doc, script);
    DMField *calculated = key == Calculate_K ? TerminalOf(field) : nullptr;
    const bool calculates = calculated && MayCalculate(doc, calculated, script);
    TSDMFieldSetAction(field, key, action);
    // A calculation that is not listed never runs; the list takes only fields that have an action.
    if (calculates)
        TJSCalcFieldsListAdd(doc, calculated);
    else if (calculated)
        TJSCalcFieldsListDelete(doc, calculated, /*force*/ true);
}

} // namespace

KRAtom TSDMWidgetGetScriptFormatType(const EStr *format, const EStr *keystroke) {
    if (EStrIsNull(format) && EStrIsNull(keystroke)) return General_K;
    const char *text = EStrGetBytes(format);
    const char *open = text ? std::strchr(text, '(') : nullptr;
    if (!open || std::strncmp(text, "AF", 2) != 0) return Custom_K;
    return KRAtomFromString(std::string(text + 2, open).c_str());
}

std::unique_ptr<TSScriptData> TSDMWidgetAcquireScriptData(DMAnnot annot) {
    DMField *field = TSDMAnnotGetField(annot);
    if (!TSDMFieldIsValid(field)) return nullptr;
    auto data = std::make_unique<TSScriptData>();
    data->field = field;
    data->keystroke = ScriptUnder(field, Keystroke_K);
    data->format = ScriptUnder(field, Format_K);
    data->validate = ScriptUnder(field, Validate_K);
    data->calculate = ScriptUnder(field, Calculate_K);
    data->formatType = TSDMWidgetGetScriptFormatType(data->format.get(), data->keystroke.get());
    return data;
}

void TSDMWidgetWriteScriptData(DMAnnot annot, TSScriptData *data) {
    DMField *field = TSDMAnnotGetField(annot);
    if (!TSDMFieldIsValid(field) || !data) return;
    DMDoc doc = TSDMFieldGetDoc(field);
    RaiseIf(Protect([&] {
        WriteDatum(doc, field, Keystroke_K, data->keystroke.get());
        WriteDatum(doc, field, Format_K, data->format.get());
        WriteDatum(doc, field, Validate_K, data->validate.get());
        WriteDatum(doc, field, Calculate_K, data->calculate.get());
    }));
}

void TSDMWidgetReleaseScriptData(std::unique_ptr<TSScriptData> data) {
    data.reset();
}
