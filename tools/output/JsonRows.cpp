#include "tools/output/JsonRows.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "tools/output/CellText.h"
#include "tools/output/Printing.h"

namespace varnel::admin {
namespace {

bool IsNumber(ValueKind kind) {
    constexpr ValueKind kNumbers[] = {ValueKind::Integer, ValueKind::Single, ValueKind::Double, ValueKind::Currency,
                                      ValueKind::Decimal};
    return std::find(std::begin(kNumbers), std::end(kNumbers), kind) != std::end(kNumbers);
}

}  // namespace

std::string JsonText(std::string_view text) {
    return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

void AppendJson(std::string& out, const Value& value) {
    if (value.IsNull()) {
        out += "null";
    } else if (value.Kind() == ValueKind::Boolean) {
        out += value.AsBoolean() ? "true" : "false";
    } else if (value.Kind() == ValueKind::Text) {
        out += JsonText(value.AsText());
    } else {
        const std::size_t start = out.size();
        AppendCell(out, value);
        const bool bare = IsNumber(value.Kind()) && out.find_first_not_of("+-.0123456789E", start) == std::string::npos;
        if (!bare) out.insert(start, 1, '"').append(1, '"');
    }
}

std::vector<std::string> JsonKeys(const std::vector<std::string>& columns) {
    std::vector<std::string> keys;
    const auto taken = [&](const std::string& key) {
        return std::find(keys.begin(), keys.end(), key) != keys.end() ||
               std::find(columns.begin(), columns.end(), key) != columns.end();
    };
    for (std::size_t k = 0; k < columns.size(); ++k) {
        std::string name = columns[k].empty() ? "column_" + std::to_string(k + 1) : columns[k];
        const bool again = std::find(keys.begin(), keys.end(), name) != keys.end();
        std::string key = name;
        for (int count = 2; again && taken(key); ++count) key = name + "_" + std::to_string(count);
        keys.push_back(std::move(key));
    }
    return keys;
}

void WriteJsonRows(Recordset& rows, RowProgress& progress) {
    std::vector<std::string> starts;
    for (std::size_t k = 0; k < rows.FieldCount(); ++k) starts.push_back(rows.Fields(k).Name());
    starts = JsonKeys(starts);
    for (std::size_t k = 0; k < starts.size(); ++k) starts[k] = (k == 0 ? "{" : ", ") + JsonText(starts[k]) + ": ";
    std::string line;
    const char* before = "[\n  ";
    for (; !rows.Eof(); rows.MoveNext(), before = ",\n  ", progress.Next()) {
        line = before;
        for (std::size_t k = 0; k < starts.size(); ++k) AppendJson(line += starts[k], rows.Fields(k).GetValue());
        Print(line += "}");
    }
    Print(*before == '[' ? "[]\n" : "\n]\n");
    FinishPrinting();
}

}  // namespace varnel::admin
