#include "tools/output/RowOutput.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "platform/Terminal.h"
#include "tools/output/CellText.h"
#include "tools/output/Printing.h"
#include "tools/output/ShownText.h"

namespace varnel::admin {
namespace {

constexpr std::size_t kSampleRows = 1000;
constexpr std::size_t kSampleBytes = 4 << 20;

bool IsNumber(DataTypeEnum type) {
    constexpr DataTypeEnum kNumbers[] = {adSmallInt, adInteger,        adSingle,           adDouble,      adCurrency,
                                         adDecimal,  adTinyInt,        adUnsignedTinyInt,  adUnsignedInt, adBigInt,
                                         adNumeric,  adUnsignedBigInt, adUnsignedSmallInt, adVarNumeric};
    return std::find(std::begin(kNumbers), std::end(kNumbers), type) != std::end(kNumbers);
}

class AlignedTable {
public:
    AlignedTable(Recordset& rows, RowProgress& progress)
        : rows_(rows), progress_(progress), columns_(rows.FieldCount()) {
        for (std::size_t k = 0; k < columns_; ++k) {
            names_.push_back(EscapedLine(rows.Fields(k).Name()));
            toRight_.push_back(IsNumber(rows.Fields(k).Type()));
            widths_.push_back(ShownWidth(names_.back()));
        }
    }

    void Write() {
        TakeSample();
        PrintRow(names_, false);
        std::vector<std::string> rule;
        for (const std::size_t width : widths_) rule.emplace_back(width, '-');
        PrintRow(rule, false);
        for (const auto& row : sample_) PrintRow(row, true);
        for (; !rows_.Eof(); rows_.MoveNext(), ++count_, progress_.Next()) {
            ReadRow(row_);
            PrintRow(row_, true);
        }
        Print(std::to_string(count_) + (count_ == 1 ? " row\n" : " rows\n"));
    }

private:
    void ReadRow(std::vector<std::string>& row) {
        row.resize(columns_);
        for (std::size_t k = 0; k < columns_; ++k) {
            const Value& value = rows_.Fields(k).GetValue();
            cell_.clear();
            if (!value.IsNull()) AppendCell(cell_, value);
            row[k] = value.IsNull() ? "NULL" : EscapedLine(cell_);
        }
    }

    void TakeSample() {
        std::size_t bytes = 0;
        for (; !rows_.Eof() && sample_.size() < kSampleRows && bytes < kSampleBytes; rows_.MoveNext(), ++count_) {
            ReadRow(sample_.emplace_back());
            for (std::size_t k = 0; k < columns_; ++k) {
                widths_[k] = std::max(widths_[k], ShownWidth(sample_.back()[k]));
                bytes += sample_.back()[k].size();
            }
        }
    }

    void PrintRow(const std::vector<std::string>& cells, bool align) {
        line_.clear();
        for (std::size_t k = 0; k < columns_; ++k) {
            if (k > 0) line_ += "  ";
            const std::size_t length = ShownWidth(cells[k]);
            const std::string blanks(widths_[k] > length ? widths_[k] - length : 0, ' ');
            line_ += align && toRight_[k] ? blanks + cells[k] : cells[k] + blanks;
        }
        line_.erase(line_.find_last_not_of(' ') + 1);
        Print(line_ += '\n');
    }

    Recordset& rows_;
    RowProgress& progress_;
    std::size_t columns_, count_ = 0;
    std::vector<std::string> names_, row_;
    std::vector<bool> toRight_;
    std::vector<std::size_t> widths_;
    std::vector<std::vector<std::string>> sample_;
    std::string cell_, line_;
};

void AppendCsvText(std::string& line, std::string_view text) {
    const bool plain = !text.empty() && text.find_first_of("\",\r\n") == std::string_view::npos &&
                       text.front() != ' ' && text.back() != ' ';
    if (plain) {
        line += text;
        return;
    }
    line += '"';
    for (const char c : text) line.append(c == '"' ? 2 : 1, c);
    line += '"';
}

}  // namespace

RowProgress::RowProgress() {
    if (!OutputIsTerminal()) shown_.emplace("writing", "rows");
}

void WriteAligned(Recordset& rows, RowProgress& progress) {
    AlignedTable(rows, progress).Write();
    FinishPrinting();
}

void WriteCsv(Recordset& rows, RowProgress& progress) {
    std::string line, cell;
    for (std::size_t k = 0; k < rows.FieldCount(); ++k) {
        if (k > 0) line += ',';
        AppendCsvText(line, rows.Fields(k).Name());
    }
    Print(line += "\r\n");
    for (; !rows.Eof(); rows.MoveNext(), progress.Next()) {
        line.clear();
        for (std::size_t k = 0; k < rows.FieldCount(); ++k) {
            if (k > 0) line += ',';
            const Value& value = rows.Fields(k).GetValue();
            if (value.IsNull()) continue;
            cell.clear();
            AppendCell(cell, value);
            AppendCsvText(line, cell);
        }
        Print(line += "\r\n");
    }
    FinishPrinting();
}

}  // namespace varnel::admin
