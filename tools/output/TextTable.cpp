#include "tools/output/TextTable.h"

#include <algorithm>

#include "tools/output/Printing.h"
#include "tools/output/ShownText.h"

namespace varnel::admin {
namespace {

class TablePrinter {
public:
    TablePrinter(const std::vector<TextColumn>& columns, const std::vector<std::vector<std::string>>& rows)
        : columns_(columns) {
        for (const TextColumn& column : columns) widths_.push_back(ShownWidth(column.head));
        for (const auto& row : rows)
            for (std::size_t k = 0; k < columns.size(); ++k) widths_[k] = std::max(widths_[k], ShownWidth(row.at(k)));
    }

    void PrintHead() {
        std::vector<std::string> heads, rule;
        for (std::size_t k = 0; k < columns_.size(); ++k) {
            heads.push_back(columns_[k].head);
            rule.emplace_back(widths_[k], '-');
        }
        PrintRow(heads);
        PrintRow(rule);
    }
    void PrintRow(const std::vector<std::string>& cells) {
        std::string line;
        for (std::size_t k = 0; k < columns_.size(); ++k) {
            const std::string blanks(widths_[k] - ShownWidth(cells[k]), ' ');
            line += (k == 0 ? "" : "  ") + (columns_[k].toRight ? blanks + cells[k] : cells[k] + blanks);
        }
        line.erase(line.find_last_not_of(' ') + 1);
        Print(line += "\n");
    }

private:
    const std::vector<TextColumn>& columns_;
    std::vector<std::size_t> widths_;
};

}  // namespace

void PrintTable(const std::vector<TextColumn>& columns, const std::vector<std::vector<std::string>>& rows) {
    std::vector<std::vector<std::string>> shown = rows;
    for (auto& row : shown)
        for (std::string& cell : row) cell = EscapedLine(cell);
    TablePrinter printer(columns, shown);
    printer.PrintHead();
    for (const auto& row : shown) printer.PrintRow(row);
    FinishPrinting();
}

}  // namespace varnel::admin
