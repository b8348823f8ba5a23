// The parts of "SELECT columns FROM table" and "INSERT INTO table (columns) VALUES (?,?)", as they are written.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace varnel::odbc {

struct SelectText {
    std::vector<std::string> columns;  ///< quoted as in the statement
    std::string table;                 ///< the same
};

/// Understands names in brackets, back quotes and double quotes. Nothing when there is more than plain columns and one
/// table.
std::optional<SelectText> ReadSelect(std::string_view statement);

/// The same for an INSERT whose values are one marker a column.
std::optional<SelectText> ReadInsert(std::string_view statement);
/// "SELECT columns FROM table"
std::string WriteSelect(const SelectText& parts);

}  // namespace varnel::odbc
