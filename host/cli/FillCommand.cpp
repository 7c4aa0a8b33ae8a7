// `jackdaw fill`: sets values by name. What a field cannot take is warned about with what would do; the rest is filled.
// SPDX-License-Identifier: MIT
#include "cli/Commands.h"

#include "CoreHFT.h"
#include "DocModelHFT.h"
#include "PIFrame.h"
#include "ScreenViewHFT.h"
#include "cli/Field.h"
#include "cli/FillData.h"
#include "cli/LongNames.h"
#include "cli/Scripts.h"
#include "cli/Seals.h"
#include "cli/Session.h"
#include "cli/Text.h"
#include "cli/UnknownNames.h"

namespace jackdaw::cli {

namespace {

/** Choices that a warning lists. */
constexpr std::size_t s_listed = 12;

bool IsPassword(DMField *field) {
    return TypeOfField(field) == FieldType::Text && (Forms::TSDMFieldGetFlags(field, TSFieldWord) & TSFieldPassword);
}

/** Why a field did not take a value. */
struct Refusal {
    std::string why;
};

std::vector<std::string> Offers(const std::vector<Option> &options) {
    std::vector<std::string> texts;
    for (const Option &option : options) {
        texts.push_back(option.exported == option.display ? option.exported
                                                          : option.exported + " (" + option.display + ")");
    }
    return texts;
}

const Option *FindOption(const std::vector<Option> &options, const std::string &text) {
    for (const Option &option : options) {
        if (option.exported == text) return &option;
    }
    for (const Option &option : options) {
        if (option.display == text) return &option;
    }
    return nullptr;
}

LexObj NewText(LexDoc doc, const std::string &utf8) {
    const std::string bytes = BytesOfText(utf8);
    return LexNewString(doc, /*indirect*/ false, bytes.data(), static_cast<std::int32_t>(bytes.size()));
}

LexObj NewName(LexDoc doc, const std::string &text) {
    return LexNewName(doc, /*indirect*/ false, AtomOf(text.c_str()));
}

LexObj TextValue(LexDoc doc, DMField *field, const std::string &text) {
    const auto limit = MaxLengthOf(field);
    if (limit && CountCharacters(text) > static_cast<std::size_t>(*limit))
        throw Refusal{"the value has " + std::to_string(CountCharacters(text)) + " characters; the field takes " +
                      std::to_string(*limit)};
    return NewText(doc, text);
}

LexObj ButtonValue(LexDoc doc, DMField *field, FieldType type, const std::string &text) {
    const std::vector<Option> options = OptionsOfField(field, type);
    if (const Option *option = FindOption(options, text)) return NewName(doc, option->exported);
    if (text == "Off" || (type == FieldType::CheckBox && text == "false")) return NewName(doc, "Off");
    if (type == FieldType::CheckBox && text == "true")
        return NewName(doc, options.empty() ? "Yes" : options.front().exported);
    std::vector<std::string> offers = Offers(options);
    offers.push_back(type == FieldType::CheckBox ? "true, false" : "Off");
    throw Refusal{"no such state \"" + text + "\"; it takes: " + JoinTexts(offers, s_listed)};
}

LexObj ChoiceValue(LexDoc doc, DMField *field, FieldType type, const std::string &text) {
    const std::vector<Option> options = OptionsOfField(field, type);
    if (const Option *option = FindOption(options, text)) return option->object;
    if (type == FieldType::ComboBox && (Forms::TSDMFieldGetFlags(field, TSFieldWord) & TSFieldComboEdit))
        return NewText(doc, text);
    throw Refusal{"no such choice \"" + text + "\"; it takes: " + JoinTexts(Offers(options), s_listed)};
}

// The choices of a list that takes several: copies, since what is stored in two places may be one object.
LexObj ChoicesValue(LexDoc doc, DMField *field, FieldType type, const std::vector<std::string> &texts) {
    LexObj array = LexNewArray(doc, /*indirect*/ false, static_cast<std::int32_t>(texts.size()));
    for (const std::string &text : texts) {
        LexObj choice = ChoiceValue(doc, field, type, text);
        std::int32_t length = 0;
        const bool isString = LexObjGetType(choice) == LexString;
        const char *bytes = isString ? LexStringValue(choice, &length) : nullptr;
        LexObj copy = isString ? LexNewString(doc, /*indirect*/ false, bytes, length) : NewText(doc, text);
        LexArrayPut(array, LexArrayLength(array), copy);
    }
    return array;
}

LexObj ListValue(LexDoc doc, DMField *field, FieldType type, const std::vector<std::string> &texts) {
    if (type != FieldType::ListBox && type != FieldType::ComboBox) throw Refusal{"the field takes one value, no list"};
    if (texts.empty()) return LexNullObj;
    if (texts.size() == 1) return ChoiceValue(doc, field, type, texts.front());
    if (type == FieldType::ComboBox || !(Forms::TSDMFieldGetFlags(field, TSFieldWord) & TSFieldMultiSelect))
        throw Refusal{"the field takes one choice, not " + std::to_string(texts.size())};
    return ChoicesValue(doc, field, type, texts);
}

LexObj ValueFor(LexDoc doc, DMField *field, const Assignment &assignment) {
    const FieldType type = TypeOfField(field);
    if (type == FieldType::Button || type == FieldType::Signature || type == FieldType::Unknown)
        throw Refusal{std::string("a field of type ") + WordOfType(type) + " takes no value"};
    if (assignment.kind == Assignment::Null) return LexNullObj;
    if (assignment.kind == Assignment::List) return ListValue(doc, field, type, assignment.list);
    if (type == FieldType::Text) return TextValue(doc, field, assignment.text);
    if (type == FieldType::ComboBox || type == FieldType::ListBox)
        return ChoiceValue(doc, field, type, assignment.text);
    return ButtonValue(doc, field, type, assignment.text);
}

bool HasValue(DMField *field, const Assignment &assignment) {
    const std::vector<std::string> texts = ValueTexts(Forms::TSDMFieldGetValue(field));
    if (assignment.kind == Assignment::Text) return texts.size() == 1 && texts.front() == assignment.text;
    return assignment.kind != Assignment::Nested && texts == assignment.list;
}

void SetField(DMDoc doc, DMField *field, const Assignment &assignment) {
    if (assignment.kind == Assignment::Nested)
        throw Refusal{"the value is neither text, number, boolean, null nor a list of texts"};
    if (!Forms::TSDMFieldIsTerminal(field)) throw Refusal{"a group of fields, which takes no value itself"};
    if (Forms::TSDMFieldGetFlags(field, TSFieldWord) & TSFieldReadOnly) throw Refusal{"the field is read-only"};
    LexObj value = ValueFor(DMDocGetLexDoc(doc), field, assignment);
    if (!Forms::TSDMFieldSetValue(field, value))
        throw Refusal{"the form refused the value \"" + assignment.text + "\""};
    if (IsPassword(field)) Warn(assignment.name + ": a password; it is not kept in the saved file");
}

/** What setting many values shares and finds out. */
struct Filling {
    DMDoc doc;
    NamesWithEquals longNames;
    UnknownNames unknown;
    UnrunScripts scripts;

    explicit Filling(DMDoc of) : doc(of), longNames(of), unknown(of) {}
};

// False when the field did not take the value. Raised codes and refusals both end as one warning line.
bool TrySet(Filling &filling, const Assignment &assignment) {
    DMField *field = FindField(filling.doc, assignment.name);
    if (!field) {
        filling.unknown.Add(assignment.name);
        return false;
    }
    Refusal refusal;
    const KRErrorCode code = Protect([&] {
        try {
            // A record as it was listed leaves its field alone, whatever that would take.
            if (assignment.isRecord && HasValue(field, assignment)) return;
            SetField(filling.doc, field, assignment);
            filling.scripts.AddField(field);
        } catch (const Refusal &caught) {
            refusal = caught;
        }
    });
    if (code == KRErrNoMemory) throw CommandFailed{SentenceOf(code)};
    if (code != KRErrNone) refusal.why = SentenceOf(code);
    if (refusal.why.empty()) return true;
    Warn(assignment.name + ": " + refusal.why);
    return false;
}

std::size_t SetAll(Filling &filling, std::vector<Assignment> &assignments) {
    void *clientData = nullptr;
    const SCProgressMonitor *progress = SCAppGetDocProgressMonitor(&clientData);
    progress->begin(clientData);
    progress->setRange(static_cast<std::int32_t>(assignments.size()), clientData);
    std::size_t filled = 0;
    for (std::size_t i = 0; i < assignments.size(); ++i) {
        filling.longNames.Resolve(assignments[i]);
        if (TrySet(filling, assignments[i])) ++filled;
        progress->setValue(static_cast<std::int32_t>(i + 1), clientData);
    }
    progress->end(clientData);
    return filled;
}

} // namespace

void RunFill(const FillOptions &options) {
    std::vector<Assignment> assignments = ReadAssignments(options);
    OpenDocument document(options.input);
    document.RequireForm();
    document.RequireFilling();
    RequireUnsealed(document, options.breakSignatures);
    Filling filling(document.Doc());
    const std::size_t filled = SetAll(filling, assignments);
    filling.unknown.WarnOfRest();
    if (filled == 0) throw CommandFailed{document.Name() + ": no field was filled"};
    filling.scripts.Warn(DMDocGetLexDoc(document.Doc()));
    document.SaveAs(options.output);
}

} // namespace jackdaw::cli
