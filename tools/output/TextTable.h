// Small tables of text on standard output.
#pragma once

#include <string>
#include <vector>

namespace varnel::admin {

struct TextColumn {
    std::string head;
    bool toRight = false;  ///< numbers
};

/// Control characters of a cell are escaped. A head, a rule below it, and the rows, each column as wide as its widest
/// cell. rows: one cell per column.
void PrintTable(const std::vector<TextColumn>& columns, const std::vector<std::vector<std::string>>& rows);

}  // namespace varnel::admin
