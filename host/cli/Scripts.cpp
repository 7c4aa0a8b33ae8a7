// Scripts of a form that no engine runs.
// SPDX-License-Identifier: MIT
#include "cli/Scripts.h"

#include "CoreHFT.h"
#include "cli/Field.h"
#include "cli/Session.h"

namespace jackdaw::cli {

namespace {

LexObj Get(LexObj dict, const char *key) {
    return LexObjGetType(dict) == LexDict ? LexDictGet(dict, AtomOf(key)) : LexNullObj;
}

// Additional actions `AA` with this key: `K` keystroke, `F` format, `V` validate, `C` calculate.
bool HasScript(LexObj actions, const char *key) {
    LexObj kind = Get(Get(actions, key), "S");
    return LexObjGetType(kind) == LexName && LexNameValue(kind) == AtomOf("JavaScript");
}

} // namespace

void UnrunScripts::AddField(DMField *field) {
    anyField_ = true;
    LexObj actions = InheritedValue(Forms::TSDMFieldGetLexObj(field), AtomOf("AA"));
    if (LexObjGetType(actions) != LexDict) return;
    for (const char *key : {"K", "F", "V"}) scripts_ += HasScript(actions, key) ? 1 : 0;
}

void UnrunScripts::Warn(LexDoc doc) const {
    std::size_t scripts = scripts_;
    LexObj order = Get(Get(LexDocGetRoot(doc), "Tessella"), "CO");
    const std::int32_t length = anyField_ && LexObjGetType(order) == LexArray ? LexArrayLength(order) : 0;
    for (std::int32_t i = 0; i < length; ++i) {
        LexObj actions = Get(LexArrayGet(order, i), "AA");
        scripts += HasScript(actions, "C") ? 1 : 0;
    }
    if (scripts == 0) return;
    cli::Warn("scripts not run: " + std::to_string(scripts) + "; what they calculate or format may be out of date");
}

} // namespace jackdaw::cli
