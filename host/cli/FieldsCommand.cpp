// `jackdaw fields`: the fields of a form, as a table for people or as one JSON object a line.
// SPDX-License-Identifier: MIT
#include "cli/Commands.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include <nlohmann/json.hpp>

#include "CoreHFT.h"
#include "cli/Blocks.h"
#include "cli/Field.h"
#include "cli/Printable.h"
#include "cli/Session.h"
#include "cli/Text.h"

namespace jackdaw::cli {

namespace {

using Json = nlohmann::ordered_json;

/** What the table shows at most; `--json` has all. */
constexpr std::size_t s_nameColumns = 80;
constexpr std::size_t s_valueColumns = 50;
constexpr std::size_t s_valuesListed = 8;

// What a check box without a value and a push button show.
Json ValueJson(const std::vector<std::string> &texts) {
    if (texts.empty()) return nullptr;
    return texts.size() == 1 ? Json(texts.front()) : Json(texts);
}

Json PointsJson(KRFixed value) {
    const double points = value / 65536.0;
    return Json(std::round(points * 1000) / 1000);
}

Json WidgetJson(const WidgetPlace &place) {
    Json rect = Json::array({PointsJson(place.rect.left), PointsJson(place.rect.bottom), PointsJson(place.rect.right),
                             PointsJson(place.rect.top)});
    return Json{{"page", place.page}, {"rect", rect}};
}

std::string UserNameOf(DMField *field) {
    return TextOfObject(InheritedValue(Forms::TSDMFieldGetLexObj(field), AtomOf("TU")));
}

Json FieldJson(const Field &field) {
    LexObj dict = Forms::TSDMFieldGetLexObj(field.handle);
    Json json;
    json["name"] = field.name;
    json["type"] = WordOfType(field.type);
    json["value"] = ValueJson(ValueTexts(Forms::TSDMFieldGetValue(field.handle)));
    json["default"] = ValueJson(ValueTexts(InheritedValue(dict, AtomOf("DV"))));
    const std::string userName = UserNameOf(field.handle);
    json["userName"] = userName.empty() ? Json(nullptr) : Json(userName);
    json["flags"] = FlagWords(field.handle, field.type);
    json["options"] = Json::array();
    for (const Option &option : OptionsOfField(field.handle, field.type))
        json["options"].push_back(Json{{"export", option.exported}, {"display", option.display}});
    const auto maxLength = MaxLengthOf(field.handle);
    json["maxLength"] = maxLength ? Json(*maxLength) : Json(nullptr);
    json["widgets"] = Json::array();
    for (const WidgetPlace &place : field.widgets) json["widgets"].push_back(WidgetJson(place));
    return json;
}

/** A row of the table for people. */
using Row = std::vector<std::string>;

Row RowOf(const Field &field) {
    const std::string page = field.widgets.empty() ? "-" : std::to_string(field.widgets.front().page);
    const std::vector<std::string> values = ValueTexts(Forms::TSDMFieldGetValue(field.handle));
    std::string flags;
    for (const std::string &word : FlagWords(field.handle, field.type)) flags += (flags.empty() ? "" : " ") + word;
    return {page, WordOfType(field.type), CutToColumns(Printable(field.name), s_nameColumns),
            CutToColumns(Printable(JoinTexts(values, s_valuesListed)), s_valueColumns), flags};
}

void PrintTable(const std::vector<Row> &rows) {
    std::vector<std::size_t> widths(rows.front().size(), 0);
    for (const Row &row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], CountColumns(row[i]));
    }
    for (const Row &row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i)
            line += row[i] + std::string(widths[i] - CountColumns(row[i]) + 2, ' ');
        line.resize(line.find_last_not_of(' ') + 1);
        PrintLine(line);
    }
}

} // namespace

void RunFields(const FieldsOptions &options) {
    OpenDocument document(options.input);
    document.RequireForm();
    const std::vector<Field> fields = ListFields(document.Doc());
    if (options.json) {
        for (const Field &field : fields)
            PrintLine(PrintableJson(FieldJson(field).dump(-1, ' ', false, Json::error_handler_t::replace)));
    } else {
        std::vector<Row> rows{{"PAGE", "TYPE", "NAME", "VALUE", "FLAGS"}};
        for (const Field &field : fields) rows.push_back(RowOf(field));
        PrintTable(rows);
    }
    document.TellDamage();
}

} // namespace jackdaw::cli
