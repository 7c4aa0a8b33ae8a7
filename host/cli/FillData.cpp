// The values that `fill` is given. JSON is taken as it is read: a form may have a hundred thousand fields.
// SPDX-License-Identifier: MIT
#include "cli/FillData.h"

#include <algorithm>
#include <istream>
#include <streambuf>

#include <nlohmann/json.hpp>

#include "cli/Field.h"
#include "cli/Input.h"
#include "cli/Session.h"
#include "cli/Text.h"

namespace jackdaw::cli {

namespace {

Assignment AssignmentOfSet(const std::string &argument) {
    const std::string text = ArgumentText(argument);
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0)
        throw CommandFailed{"--set " + text + ": not of the form NAME=VALUE; see jackdaw fill --help"};
    Assignment assignment;
    assignment.name = text.substr(0, equals);
    assignment.text = text.substr(equals + 1);
    assignment.isArgument = true;
    return assignment;
}

/**
 * Takes objects, one after another or in an array. An object's members are names and values, unless it is a field's
 * record: then `name` and `value` make the one assignment. What is neither ends the reading with a sentence.
 */
class AssignmentReader : public nlohmann::json_sax<nlohmann::json> {
public:
    std::vector<Assignment> assignments_;
    std::string problem_;
    /** The first byte of what is no JSON, from the start of the value under way. */
    std::size_t errorPosition_ = 0;

    bool null() override {
        return Take(Assignment::Null, "");
    }
    bool boolean(bool value) override {
        return Take(Assignment::Text, value ? "true" : "false");
    }
    bool number_integer(number_integer_t value) override {
        return Take(Assignment::Text, std::to_string(value));
    }
    bool number_unsigned(number_unsigned_t value) override {
        return Take(Assignment::Text, std::to_string(value));
    }
    // As written, so that 1.50 stays 1.50.
    bool number_float(number_float_t, const string_t &text) override {
        return Take(Assignment::Text, text);
    }
    bool string(string_t &value) override {
        return Take(Assignment::Text, value);
    }
    bool binary(binary_t &) override {
        return FailAsNoObject();
    }
    bool start_object(std::size_t) override {
        if (inObject_) return Enter(Assignment::Nested);
        inObject_ = true;
        objectStart_ = assignments_.size();
        return true;
    }
    bool key(string_t &value) override {
        if (depth_ == 0) name_ = value;
        return true;
    }
    bool end_object() override {
        if (depth_ > 0) {
            --depth_;
        } else {
            inObject_ = false;
            KeepValueOfRecord();
        }
        return true;
    }
    bool start_array(std::size_t) override {
        if (inObject_) return Enter(Assignment::List);
        if (inArray_) return FailAsNoObject();
        return inArray_ = true;
    }
    bool end_array() override {
        if (depth_ > 0)
            --depth_;
        else
            inArray_ = false;
        return true;
    }
    bool parse_error(std::size_t position, const std::string &, const nlohmann::json::exception &) override {
        errorPosition_ = position > 0 ? position - 1 : 0;
        return false;
    }

private:
    bool inArray_ = false;
    bool inObject_ = false;
    /** Levels below the object. */
    int depth_ = 0;
    std::size_t objectStart_ = 0;
    std::string name_;

    void Add(Assignment::Kind kind, const std::string &text) {
        Assignment assignment;
        assignment.name = name_;
        assignment.kind = kind;
        assignment.text = text;
        assignments_.push_back(std::move(assignment));
    }
    bool Take(Assignment::Kind kind, const std::string &text) {
        if (!inObject_) return FailAsNoObject();
        if (depth_ == 0) Add(kind, text);
        if (depth_ != 1 || assignments_.back().kind != Assignment::List) return true;
        if (kind == Assignment::Text)
            assignments_.back().list.push_back(text);
        else
            assignments_.back().kind = Assignment::Nested;
        return true;
    }
    bool Enter(Assignment::Kind kind) {
        if (depth_ == 0)
            Add(kind, "");
        else
            assignments_.back().kind = Assignment::Nested;
        ++depth_;
        return true;
    }
    bool FailAsNoObject() {
        problem_ = "not a JSON object of field names and values";
        return false;
    }
    const Assignment *Member(const char *name) const {
        for (std::size_t i = objectStart_; i < assignments_.size() && i < objectStart_ + s_recordMembers; ++i) {
            if (assignments_[i].name == name) return &assignments_[i];
        }
        return nullptr;
    }
    void KeepValueOfRecord() {
        const Assignment *name = Member("name"), *type = Member("type"), *value = Member("value");
        if (!name || !type || !value || name->kind != Assignment::Text || !IsTypeWord(type->text)) return;
        Assignment record = *value;
        record.name = name->text;
        record.isRecord = true;
        assignments_.resize(objectStart_);
        assignments_.push_back(std::move(record));
    }

    /** More members than a record has. */
    static constexpr std::size_t s_recordMembers = 32;
};

/** Bytes to be read as a stream, which tells how far reading came. */
class BytesBuffer : public std::streambuf {
public:
    explicit BytesBuffer(std::string &bytes) {
        setg(bytes.data(), bytes.data(), bytes.data() + bytes.size());
    }
    std::size_t Position() const {
        return static_cast<std::size_t>(gptr() - eback());
    }
};

std::string PlaceIn(const std::string &bytes, std::size_t position) {
    const std::string_view before = std::string_view(bytes).substr(0, position);
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    const std::size_t column = CountCharacters(before.substr(before.rfind('\n') + 1)) + 1;
    return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

// Why `bytes` are no JSON from `position` on. A wrong character set is the usual reason.
std::string ProblemAt(const std::string &bytes, std::size_t position) {
    if (bytes.compare(0, 2, "\xFF\xFE") == 0 || bytes.compare(0, 2, "\xFE\xFF") == 0)
        return "the text is UTF-16; JSON is UTF-8";
    const std::size_t valid = ValidUtf8Length(bytes);
    if (valid < bytes.size() && valid <= position) return "not UTF-8 at " + PlaceIn(bytes, valid);
    if (position >= bytes.size()) return "not valid JSON: it ends too early, at " + PlaceIn(bytes, bytes.size());
    return "not valid JSON at " + PlaceIn(bytes, position);
}

std::vector<Assignment> ReadJson(const std::string &path) {
    if (path.empty()) return {};
    if (path.front() == '{' || path.front() == '[')
        throw CommandFailed{"--json takes the path of a file, not the data; - is standard input"};
    std::string bytes = ReadData(path);
    AssignmentReader reader;
    BytesBuffer buffer(bytes);
    std::istream in(&buffer);
    // A first parse even of nothing, which is no JSON.
    do {
        const std::size_t start = buffer.Position();
        if (nlohmann::json::sax_parse(in, &reader, nlohmann::json::input_format_t::json, /*strict*/ false)) continue;
        if (reader.problem_.empty()) reader.problem_ = ProblemAt(bytes, start + reader.errorPosition_);
        throw CommandFailed{path + ": " + reader.problem_};
    } while (bytes.find_first_not_of(" \t\r\n", buffer.Position()) != std::string::npos);
    return std::move(reader.assignments_);
}

} // namespace

std::vector<Assignment> ReadAssignments(const FillOptions &options) {
    if (options.json == "-" && options.input.file == "-") throw CommandFailed{"standard input is asked for twice"};
    std::vector<Assignment> assignments = ReadJson(options.json);
    for (const std::string &set : options.sets) assignments.push_back(AssignmentOfSet(set));
    if (assignments.empty()) throw CommandFailed{"no values given: use --set NAME=VALUE or --json DATA"};
    return assignments;
}

} // namespace jackdaw::cli
