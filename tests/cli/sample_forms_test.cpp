// Real forms, listed and filled as a user would, and read back with programs that share nothing with ours.
// SPDX-License-Identifier: MIT
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/cli/Run.h"
#include "tests/support/PdfObjects.h"
#include "tests/support/PdfText.h"

namespace {

/** A row of the list beside a form, by column. */
using Row = std::map<std::string, std::string>;

// Splits at bare separators; "\n \t \\ \|" stand for the characters behind the backslash.
std::vector<std::string> SplitEscaped(const std::string &text, char separator) {
    std::vector<std::string> parts(1);
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == separator) {
            parts.emplace_back();
        } else if (text[i] == '\\' && i + 1 < text.size()) {
            const char next = text[++i];
            parts.back() += next == 'n' ? '\n' : next == 't' ? '\t' : next;
        } else {
            parts.back() += text[i];
        }
    }
    return parts;
}

std::vector<std::string> SplitTabs(const std::string &line) {
    std::vector<std::string> cells;
    std::istringstream stream(line + "\t");
    for (std::string cell; std::getline(stream, cell, '\t');) cells.push_back(cell);
    return cells;
}

std::map<std::string, Row> ReadList(const std::string &path) {
    std::ifstream in(path);
    std::map<std::string, Row> rows;
    std::string line;
    std::getline(in, line);
    const std::vector<std::string> header = SplitTabs(line);
    while (std::getline(in, line)) {
        const std::vector<std::string> cells = SplitTabs(line);
        Row row;
        for (std::size_t i = 0; i < header.size() && i < cells.size(); ++i) row[header[i]] = cells[i];
        rows[SplitEscaped(row["name"], '\0').front()] = row;
    }
    return rows;
}

std::string WordOfKind(const std::string &kind) {
    static const std::map<std::string, std::string> s_words = {
        {"pushbutton", "button"}, {"radio", "radiobutton"}, {"combo", "combobox"}, {"list", "listbox"}};
    const auto found = s_words.find(kind);
    return found == s_words.end() ? kind : found->second;
}

std::set<std::string> WordsOfFlags(const Row &row) {
    static const std::map<std::string, std::vector<std::pair<unsigned, const char *>>> s_words = {
        {"Tx",
         {{13, "multiline"},
          {14, "password"},
          {21, "fileselect"},
          {23, "nospellcheck"},
          {24, "noscroll"},
          {25, "comb"}}},
        {"Btn", {{15, "notoggletooff"}, {26, "radiosinunison"}}},
        {"Ch", {{19, "editable"}, {20, "sorted"}, {22, "multiselect"}, {23, "nospellcheck"}, {27, "commitonchange"}}},
        {"Sig", {}}};
    const unsigned long flags = std::stoul(row.at("flags"));
    std::set<std::string> words;
    const auto take = [&](unsigned position, const char *word) {
        if (flags >> (position - 1) & 1) words.insert(word);
    };
    take(1, "readonly"), take(2, "required"), take(3, "noexport");
    for (const auto &[position, word] : s_words.at(row.at("type"))) take(position, word);
    return words;
}

Json JsonOfCell(const std::string &cell) {
    const std::vector<std::string> values = SplitEscaped(cell, '|');
    if (values.size() > 1) return values;
    return values.front().empty() ? Json(nullptr) : Json(values.front());
}

// The lists do not tell an empty text from none.
Json OrNull(const Json &value) {
    return value == "" ? Json(nullptr) : value;
}

Json OptionJson(const std::string &exported, const std::string &display) {
    return Json{{"export", exported}, {"display", display}};
}

// On-states of a button, each once, with the texts that the list behind "Opt:" gives to the widgets.
Json ButtonOptions(std::vector<std::string> states) {
    std::vector<std::string> texts;
    if (states.back().rfind("Opt:", 0) == 0) {
        texts = SplitEscaped(states.back().substr(4), ',');
        states.pop_back();
    }
    Json options = Json::array();
    std::set<std::string> known;
    for (std::size_t i = 0; i < states.size(); ++i) {
        if (known.insert(states[i]).second)
            options.push_back(OptionJson(states[i], i < texts.size() ? texts[i] : states[i]));
    }
    return options;
}

Json OptionsOf(const Row &row) {
    const std::string &cell = row.at("options");
    if (cell.empty()) return Json::array();
    const std::vector<std::string> parts = SplitEscaped(cell, '|');
    if (row.at("type") == "Btn") return ButtonOptions(parts);
    Json options = Json::array();
    for (const std::string &part : parts) {
        const std::size_t equals = part.find('=');
        options.push_back(equals == std::string::npos ? OptionJson(part, part)
                                                      : OptionJson(part.substr(0, equals), part.substr(equals + 1)));
    }
    return options;
}

Json PagesOf(const Json &field) {
    std::string pages;
    for (const Json &widget : field["widgets"])
        pages += (pages.empty() ? "" : ",") + std::to_string(widget["page"].get<int>() - 1);
    return pages;
}

bool HasFlag(const Json &field, const std::string &word) {
    const Json &flags = field["flags"];
    return std::find(flags.begin(), flags.end(), word) != flags.end();
}

bool IsScripted(const Row &row) {
    return row.at("actions").substr(0, row.at("actions").find(',')).find_first_of("KFVC") != std::string::npos;
}

/** One PDF of the folder of further samples, or ours. */
class SampleForm : public testing::TestWithParam<std::string> {
protected:
    std::string Pdf() const {
        return GetParam();
    }
    std::string List() const {
        return std::filesystem::path(Pdf()).replace_extension(".tsv").string();
    }
    bool Is(const std::string &stem) const {
        return std::filesystem::path(Pdf()).stem() == stem;
    }
    // Fields change when they were filled, hang on others, or the form asks for all appearances.
    void ExpectOnlyChanged(const std::string &out, const std::function<bool(const std::string &)> &filled) const {
        const auto rows = ReadList(List());
        const bool refreshed = NeedsAppearances(Pdf());
        Allowed allowed;
        allowed.field = [&](const std::string &name) {
            const auto row = rows.find(name);
            const bool calculated = row != rows.end() && !row->second.at("calc_order").empty();
            return refreshed || calculated || filled(name);
        };
        // Its titles hold dots, which separate levels.
        allowed.tree = Is("timesheet");
        for (const std::string &difference : CompareObjects(Pdf(), out, allowed)) ADD_FAILURE() << difference;
    }
};

std::vector<std::string> SampleForms() {
    std::vector<std::string> forms;
    for (const char *folder : {TESSELLA_FORMS_DIR, TESSELLA_SAMPLES_DIR}) {
        std::error_code absent;
        for (const auto &entry : std::filesystem::directory_iterator(folder, absent)) {
            if (entry.path().extension() == ".pdf") forms.push_back(entry.path().string());
        }
    }
    std::sort(forms.begin(), forms.end());
    return forms;
}

std::string NameOfParam(const testing::TestParamInfo<std::string> &info) {
    std::string name = std::filesystem::path(info.param).stem().string();
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(SampleForm);
INSTANTIATE_TEST_SUITE_P(Samples, SampleForm, testing::ValuesIn(SampleForms()), NameOfParam);

TEST_P(SampleForm, ListsWhatAnIndependentReaderSaw) {
    if (!std::filesystem::exists(List())) GTEST_SKIP() << "no list beside the form";
    const auto rows = ReadList(List());
    const auto fields = FieldsOf(Pdf());
    EXPECT_EQ(fields.size(), rows.size());
    for (const auto &[name, row] : rows) {
        SCOPED_TRACE(name);
        if (!fields.count(name)) {
            ADD_FAILURE() << "not listed";
            continue;
        }
        const Json &field = fields.at(name);
        const std::string type = WordOfKind(row.at("kind"));
        EXPECT_EQ(field["type"], type);
        Json value = JsonOfCell(row.at("value"));
        const Json options = OptionsOf(row);
        // A button without a value is off.
        if (value.is_null() && (type == "checkbox" || type == "radiobutton")) value = "Off";
        EXPECT_EQ(OrNull(field["value"]), OrNull(value));
        EXPECT_EQ(OrNull(field["default"]), JsonOfCell(row.at("default")));
        EXPECT_EQ(field["maxLength"], row.at("maxlen").empty() ? Json(nullptr) : Json(std::stoi(row.at("maxlen"))));
        std::set<std::string> flags;
        for (const Json &word : field["flags"]) flags.insert(word);
        for (const char *ofWidget : {"hidden", "invisible", "noview"}) flags.erase(ofWidget);
        EXPECT_EQ(flags, WordsOfFlags(row));
        // Three widgets there carry one name, and the form's list has the first alone.
        if (Is("timesheet") && name == "shift") continue;
        EXPECT_EQ(field["options"], options);
        EXPECT_EQ(PagesOf(field), row.at("pages"));
    }
}

/** What a form is filled with: a marker for a text, on for a check box, the last choice of others. */
struct Filling {
    Json data = Json::object();
    /** Markers in sight on a page, by field. */
    std::map<std::string, std::string> texts;
    bool hasPasswords = false;
};

Json LastOption(const Json &field) {
    return field["options"].empty() ? Json(nullptr) : field["options"].back()["export"];
}

// Letters only, and all of one length: a word of its own for every program that looks for words, even beside cut ones.
std::string Marker(std::size_t number) {
    std::string marker = "Q";
    for (int i = 0; i < 3; ++i, number /= 20) marker += static_cast<char>('a' + number % 20);
    return marker;
}

void AddText(Filling &filling, const std::string &name, const Json &field) {
    const std::string marker = Marker(filling.data.size() + 1);
    const std::size_t limit = field["maxLength"].is_null() ? marker.size() : field["maxLength"].get<std::size_t>();
    filling.data[name] = marker.substr(0, limit);
    if (HasFlag(field, "password")) {
        filling.hasPasswords = true;
    } else if (!HasFlag(field, "hidden") && !HasFlag(field, "noview") && marker.size() <= limit) {
        filling.texts[name] = marker;
    }
}

// Fields with scripts are left out: their scripts have a say in what becomes of a value.
Filling MakeFilling(const std::map<std::string, Json> &fields, const std::map<std::string, Row> &rows) {
    Filling filling;
    for (const auto &[name, field] : fields) {
        const auto row = rows.find(name);
        if (HasFlag(field, "readonly") || (row != rows.end() && IsScripted(row->second))) continue;
        const std::string type = field["type"];
        if (type == "text") AddText(filling, name, field);
        if (type == "checkbox") filling.data[name] = true;
        const bool chosen = type == "radiobutton" || type == "combobox" || type == "listbox";
        if (chosen && !LastOption(field).is_null()) filling.data[name] = LastOption(field);
    }
    return filling;
}

// Values by name as pdftk lists them.
std::map<std::string, std::vector<std::string>> ValuesByPdftk(const std::string &pdf) {
    const Ran ran = RunProgram({"pdftk", pdf, "dump_data_fields_utf8"});
    EXPECT_EQ(ran.exit, 0) << ran;
    std::map<std::string, std::vector<std::string>> values;
    std::string name;
    std::istringstream lines(ran.out);
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind("FieldName: ", 0) == 0) name = line.substr(11);
        if (line.rfind("FieldValue: ", 0) == 0) values[name].push_back(line.substr(12));
    }
    return values;
}

void ExpectValues(const std::string &pdf, const Filling &filling, const std::map<std::string, Json> &before) {
    const auto seen = ValuesByPdftk(pdf);
    const auto after = FieldsOf(pdf);
    for (const auto &[name, value] : filling.data.items()) {
        SCOPED_TRACE(name);
        const Json &field = before.at(name);
        if (HasFlag(field, "password")) {
            EXPECT_EQ(after.at(name)["value"], nullptr);
            continue;
        }
        const Json wanted = value.is_boolean() ? LastOption(field) : value;
        EXPECT_EQ(after.at(name)["value"], wanted);
        ASSERT_TRUE(seen.count(name));
        // A button's state may be shown by the text that it stands for.
        const Json shown = field["options"].empty() ? wanted : field["options"].back()["display"];
        EXPECT_TRUE(seen.at(name).back() == wanted || seen.at(name).back() == shown) << seen.at(name).back();
    }
}

struct Word {
    int page;
    double left, top, right, bottom;
};

std::multimap<std::string, Word> WordsOf(const std::string &pdf) {
    const Ran ran = RunProgram({"pdftotext", "-bbox", pdf, "-"});
    EXPECT_EQ(ran.exit, 0) << ran;
    std::multimap<std::string, Word> words;
    int page = 0;
    std::istringstream lines(ran.out);
    for (std::string line; std::getline(lines, line);) {
        if (line.find("<page ") != std::string::npos) ++page;
        Word word{page, 0, 0, 0, 0};
        char text[256];
        if (std::sscanf(line.c_str(), " <word xMin=\"%lf\" yMin=\"%lf\" xMax=\"%lf\" yMax=\"%lf\">%255[^<]", &word.left,
                        &word.top, &word.right, &word.bottom, text) == 5)
            words.emplace(text, word);
    }
    return words;
}

bool LiesIn(const Word &word, const Json &widget, double pageHeight) {
    const Json &rect = widget["rect"];
    const double middle = pageHeight - (word.top + word.bottom) / 2;
    return widget["page"] == word.page && word.left >= rect[0].get<double>() - 1 &&
           word.right <= rect[2].get<double>() + 1 && middle > rect[1].get<double>() && middle < rect[3].get<double>();
}

// Every marker is on its page, and on pages that are not turned it is inside one of its field's widgets.
void ExpectTexts(const std::string &pdf, const Filling &filling, const std::map<std::string, Json> &fields) {
    const auto words = WordsOf(pdf);
    const std::vector<PageShape> shapes = PageShapes(pdf);
    for (const auto &[name, text] : filling.texts) {
        SCOPED_TRACE(name + " = " + text);
        const auto [first, last] = words.equal_range(text);
        EXPECT_NE(first, last) << "not on any page";
        for (auto word = first; word != last; ++word) {
            const PageShape &shape = shapes[static_cast<std::size_t>(word->second.page - 1)];
            if (shape.rotation != 0) continue;
            const Json &widgets = fields.at(name)["widgets"];
            EXPECT_TRUE(std::any_of(widgets.begin(), widgets.end(),
                                    [&](const Json &widget) { return LiesIn(word->second, widget, shape.height); }))
                << word->second.left << " " << word->second.top;
        }
    }
}

bool IsDamaged(const std::string &pdf) {
    return pdf.find("damaged") != std::string::npos;
}

TEST_P(SampleForm, FilledInShowsItsValuesAndKeepsAllElse) {
    if (!HasProgram("pdftk") || !HasProgram("pdftotext") || !HasProgram("qpdf"))
        GTEST_SKIP() << "no independent reader";
    const auto fields = FieldsOf(Pdf());
    const auto rows = ReadList(List());
    const Filling filling = MakeFilling(fields, rows);
    ASSERT_FALSE(filling.data.empty());
    const std::string out = TempFile("filled.pdf", "");
    const Ran ran = Jackdaw({"fill", Pdf(), "--json", TempFile("data.json", filling.data.dump()), "-o", out});
    // Passwords are not kept, and what the form would calculate is not.
    const bool calculates =
        std::any_of(rows.begin(), rows.end(), [](const auto &row) { return !row.second.at("calc_order").empty(); });
    ASSERT_EQ(ran.exit, filling.hasPasswords || calculates || IsDamaged(Pdf()) ? 3 : 0) << ran;
    EXPECT_EQ(RunProgram({"qpdf", "--check", out}).exit, 0);
    ExpectValues(out, filling, fields);
    ExpectTexts(out, filling, fields);
    ExpectOnlyChanged(out, [&](const std::string &name) { return filling.data.contains(name); });
}

TEST_P(SampleForm, OneFieldFilledLeavesTheOthersAlone) {
    for (const auto &[name, field] : FieldsOf(Pdf())) {
        if (field["type"] != "text" || !field["flags"].empty() || !field["maxLength"].is_null()) continue;
        const std::string out = TempFile("filled.pdf", ""), filled = name;
        const Ran ran = Jackdaw({"fill", Pdf(), "--set", name + "=x", "-o", out});
        ASSERT_TRUE(ran.exit == (IsDamaged(Pdf()) ? 3 : 0) || Has(ran.err, "scripts not run")) << ran;
        return ExpectOnlyChanged(out, [&](const std::string &other) { return other == filled; });
    }
}

} // namespace
