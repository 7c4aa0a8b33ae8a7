// `jackdaw fill`: sets values by name. What a field cannot take is warned about with what would do; the rest is filled.
// SPDX-License-Identifier: MIT
#include "cli/Commands.h"

#include <algorithm>
#include <cctype>

#include <nlohmann/json.hpp>

#include "CoreHFT.h"
#include "DocModelHFT.h"
#include "PIFrame.h"
#include "ScreenViewHFT.h"
#include "cli/Field.h"
#include "cli/Input.h"
#include "cli/Session.h"
#include "cli/Text.h"

namespace jackdaw::cli {

namespace {

constexpr std::uint32_t s_readOnly = 0x1;
constexpr std::uint32_t s_password = 0x2000;
constexpr std::uint32_t s_editable = 0x40000;
/** Names and choices that a warning lists. */
constexpr std::size_t s_listed = 12;

bool IsPassword(DMField *field) {
    return TypeOfField(field) == FieldType::Text && (Forms::TSDMFieldGetFlags(field, 1) & s_password);
}

/** One value to set. */
struct Assignment {
    std::string name;
    std::string text;
    /** Clears the field. */
    bool isNull = false;
    /** The data holds an array or an object there, which no field takes. */
    bool isNested = false;
};

/** Why a field did not take a value. */
struct Refusal {
    std::string why;
};

Assignment AssignmentOfSet(const std::string &argument) {
    const std::string text = ArgumentText(argument);
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0)
        throw CommandFailed{"--set " + text + ": not of the form NAME=VALUE; see jackdaw fill --help"};
    return {text.substr(0, equals), text.substr(equals + 1)};
}

/**
 * Takes the members of one JSON object in their order, as they are read: a form may have a hundred thousand. What
 * is no JSON object ends the reading with a sentence in `problem`.
 */
class AssignmentReader : public nlohmann::json_sax<nlohmann::json> {
public:
    std::vector<Assignment> assignments;
    std::string problem;

    bool null() override {
        return Take("", /*isNull*/ true);
    }
    bool boolean(bool value) override {
        return Take(value ? "true" : "false");
    }
    bool number_integer(number_integer_t value) override {
        return Take(std::to_string(value));
    }
    bool number_unsigned(number_unsigned_t value) override {
        return Take(std::to_string(value));
    }
    // As written, so that 1.50 stays 1.50.
    bool number_float(number_float_t, const string_t &text) override {
        return Take(text);
    }
    bool string(string_t &value) override {
        return Take(value);
    }
    bool binary(binary_t &) override {
        return Fail("not valid JSON");
    }
    bool start_object(std::size_t) override {
        if (inObject) return EnterNested();
        inObject = true;
        return true;
    }
    bool key(string_t &value) override {
        if (nesting == 0) name = value;
        return true;
    }
    bool end_object() override {
        nesting -= nesting > 0 ? 1 : 0;
        return true;
    }
    bool start_array(std::size_t) override {
        return inObject ? EnterNested() : Fail("not a JSON object of field names and values");
    }
    bool end_array() override {
        nesting -= nesting > 0 ? 1 : 0;
        return true;
    }
    bool parse_error(std::size_t position, const std::string &, const nlohmann::json::exception &) override {
        return Fail("not valid JSON at byte " + std::to_string(position));
    }

private:
    bool inObject = false;
    /** Levels below the object; what stands there is read and left. */
    int nesting = 0;
    std::string name;

    bool Take(const std::string &text, bool isNull = false) {
        if (!inObject) return Fail("not a JSON object of field names and values");
        if (nesting == 0) assignments.push_back({name, text, isNull});
        return true;
    }
    bool EnterNested() {
        if (nesting++ == 0) assignments.push_back({name, "", /*isNull*/ false, /*isNested*/ true});
        return true;
    }
    bool Fail(const std::string &why) {
        problem = why;
        return false;
    }
};

std::vector<Assignment> ReadJson(const std::string &path) {
    if (path.empty()) return {};
    AssignmentReader reader;
    if (!nlohmann::json::sax_parse(ReadData(path), &reader)) throw CommandFailed{path + ": " + reader.problem};
    return std::move(reader.assignments);
}

std::vector<Assignment> ReadAssignments(const FillOptions &options) {
    if (options.json == "-" && options.input.file == "-") throw CommandFailed{"standard input is asked for twice"};
    std::vector<Assignment> assignments = ReadJson(options.json);
    for (const std::string &set : options.sets) assignments.push_back(AssignmentOfSet(set));
    if (assignments.empty()) throw CommandFailed{"no values given: use --set NAME=VALUE or --json DATA"};
    return assignments;
}

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
    if (type == FieldType::ComboBox && (Forms::TSDMFieldGetFlags(field, 1) & s_editable)) return NewText(doc, text);
    throw Refusal{"no such choice \"" + text + "\"; it takes: " + JoinTexts(Offers(options), s_listed)};
}

LexObj ValueFor(LexDoc doc, DMField *field, const Assignment &assignment) {
    const FieldType type = TypeOfField(field);
    if (type == FieldType::Button || type == FieldType::Signature || type == FieldType::Unknown)
        throw Refusal{std::string("a field of type ") + WordOfType(type) + " takes no value"};
    if (assignment.isNull) return LexNullObj;
    if (type == FieldType::Text) return TextValue(doc, field, assignment.text);
    if (type == FieldType::ComboBox || type == FieldType::ListBox)
        return ChoiceValue(doc, field, type, assignment.text);
    return ButtonValue(doc, field, type, assignment.text);
}

// Names that share the most of their start with the wanted one come first.
std::vector<std::string> NearestNames(std::vector<std::string> names, const std::string &wanted) {
    const auto lower = [](char c) { return std::tolower(static_cast<unsigned char>(c)); };
    const auto common = [&](const std::string &name) {
        std::size_t length = 0;
        while (length < name.size() && length < wanted.size() && lower(name[length]) == lower(wanted[length])) ++length;
        return length;
    };
    std::stable_sort(names.begin(), names.end(),
                     [&](const std::string &a, const std::string &b) { return common(a) > common(b); });
    return names;
}

void SetOne(DMDoc doc, const Assignment &assignment) {
    DMField *field = FindField(doc, assignment.name);
    if (!field) {
        const auto names = NearestNames(FieldNames(doc), assignment.name);
        throw Refusal{"no such field; there are: " + JoinTexts(names, s_listed)};
    }
    if (assignment.isNested) throw Refusal{"the value is neither text, number, boolean nor null"};
    if (!Forms::TSDMFieldIsTerminal(field)) throw Refusal{"a group of fields, which takes no value itself"};
    if (Forms::TSDMFieldGetFlags(field, 1) & s_readOnly) throw Refusal{"the field is read-only"};
    LexObj value = ValueFor(DMDocGetLexDoc(doc), field, assignment);
    if (!Forms::TSDMFieldSetValue(field, value))
        throw Refusal{"the form refused the value \"" + assignment.text + "\""};
    if (IsPassword(field)) Warn(assignment.name + ": a password; it is not kept in the saved file");
}

// Raised codes and refusals both end as one warning line.
bool TrySet(DMDoc doc, const Assignment &assignment) {
    Refusal refusal;
    const KRErrorCode code = Protect([&] {
        try {
            SetOne(doc, assignment);
        } catch (const Refusal &caught) {
            refusal = caught;
        }
    });
    if (code != KRErrNone) refusal.why = SentenceOf(code);
    if (refusal.why.empty()) return true;
    Warn(assignment.name + ": " + refusal.why);
    return false;
}

std::size_t SetAll(DMDoc doc, const std::vector<Assignment> &assignments) {
    void *clientData = nullptr;
    const SCProgressMonitor *progress = SCAppGetDocProgressMonitor(&clientData);
    progress->begin(clientData);
    progress->setRange(static_cast<std::int32_t>(assignments.size()), clientData);
    std::size_t filled = 0;
    for (std::size_t i = 0; i < assignments.size(); ++i) {
        if (TrySet(doc, assignments[i])) ++filled;
        progress->setValue(static_cast<std::int32_t>(i + 1), clientData);
    }
    progress->end(clientData);
    return filled;
}

} // namespace

void RunFill(const FillOptions &options) {
    const std::vector<Assignment> assignments = ReadAssignments(options);
    OpenDocument document(options.input.file, options.input.passwordFile);
    document.RequireForm();
    document.RequireFilling();
    if (SetAll(document.Doc(), assignments) == 0) throw CommandFailed{document.Name() + ": no field was filled"};
    document.SaveAs(options.output);
}

} // namespace jackdaw::cli
