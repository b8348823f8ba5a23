#include "tests/providers_access/WriteTest.h"

#include <sstream>

namespace varnel::access {
namespace {

/// "TEXT(50)" into its word and arguments.
void SetType(ColumnDefinition& column, const std::string& type) {
    const std::size_t open = type.find('(');
    column.typeWord = type.substr(0, open);
    if (open == std::string::npos) return;
    std::istringstream arguments(type.substr(open + 1));
    for (std::string one; std::getline(arguments, one, ',');) column.typeArguments.push_back(std::stoi(one));
}

}  // namespace

std::vector<ColumnDefinition> Columns(const std::string& list) {
    std::vector<ColumnDefinition> columns;
    std::istringstream words(list);
    ColumnDefinition column;
    for (std::string word; words >> word;) {
        const bool ends = word.back() == ',' || words.eof();
        if (word.back() == ',') word.pop_back();
        if (column.name.empty()) {
            column.name = word;
        } else if (column.typeWord.empty()) {
            SetType(column, word);
        } else if (word == "PRIMARY") {
            column.primaryKey = true;
        } else if (word == "NOT") {
            column.notNull = true;
        } else if (word == "UNIQUE") {
            column.unique = true;
        }
        if (ends) columns.push_back(std::exchange(column, {}));
    }
    return columns;
}

Value Int(std::int64_t number) {
    return Value::OfInteger(number);
}

Value Txt(std::string_view text) {
    return Value::OfText(text);
}

void Add(TableFile& table, const std::vector<Value>& row) {
    table.Append(row, std::vector<bool>(row.size(), true));
}

void Set(TableFile& table, RowId row, const std::vector<std::pair<std::size_t, Value>>& cells) {
    std::vector<Value> values(table.Columns().size());
    std::vector<bool> assigned(values.size());
    for (const auto& [position, value] : cells) {
        values[position] = value;
        assigned[position] = true;
    }
    table.Update(row, values, assigned);
}

}  // namespace varnel::access
