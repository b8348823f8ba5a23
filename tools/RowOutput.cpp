#include "tools/RowOutput.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <string_view>
#include <vector>

#include "ado/types/ValueText.h"
#include "platform/Error.h"
#include "platform/Files.h"

namespace varnel::admin {
namespace {

constexpr std::size_t kSampleRows = 1000;
constexpr std::size_t kSampleBytes = 4 << 20;

void Print(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size())
        throw Error(ErrorKind::Io, "", FileErrorText(errno, "standard output"));
}

void FinishPrinting() {
    if (std::fflush(stdout) != 0) throw Error(ErrorKind::Io, "", FileErrorText(errno, "standard output"));
}

// Moments are written as ISO dates, which sort and keep the fraction of a second; all else as default text.
void AppendCell(std::string& out, const Value& value) {
    if (value.Kind() != ValueKind::DateTime) return AppendDefaultText(out, value);
    if (value.AsDateTime().micros == 0)
        AppendIsoDate(out, value.AsDateTime());
    else
        AppendIsoDateTime(out, value.AsDateTime());
}

bool IsControl(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

// text as it can stand in a line.
std::string OneLine(const std::string& text) {
    if (std::none_of(text.begin(), text.end(), IsControl)) return text;
    constexpr std::string_view kHex = "0123456789ABCDEF";
    std::string shown;
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if (c == '\n')
            shown += "\\n";
        else if (c == '\r')
            shown += "\\r";
        else if (c == '\t')
            shown += "\\t";
        else if (IsControl(c))
            shown.append("\\x").append(1, kHex[code >> 4]).append(1, kHex[code & 15]);
        else
            shown += c;
    }
    return shown;
}

struct CodePoints {
    char32_t first, last;
};
// What terminals show two columns wide (East Asian letters, pictures), and what they show on top of the letter before.
constexpr CodePoints kWide[] = {{0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0xA4CF},  {0xAC00, 0xD7A3},
                                {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},  {0xFFE0, 0xFFE6},
                                {0x1F300, 0x1F64F}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};
constexpr CodePoints kNoWidth[] = {{0x0300, 0x036F}, {0x200B, 0x200F}, {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}};

std::size_t ColumnsOf(char32_t codePoint) {
    const auto holds = [&](const CodePoints& range) { return codePoint >= range.first && codePoint <= range.last; };
    if (codePoint < kNoWidth[0].first) return 1;
    if (std::any_of(std::begin(kNoWidth), std::end(kNoWidth), holds)) return 0;
    return std::any_of(std::begin(kWide), std::end(kWide), holds) ? 2 : 1;
}

// Terminal columns that a text takes.
std::size_t ShownWidth(std::string_view utf8) {
    std::size_t width = 0;
    for (std::size_t at = 0; at < utf8.size();) {
        const auto lead = static_cast<unsigned char>(utf8[at++]);
        char32_t codePoint = lead < 0xC0 ? lead : lead < 0xE0 ? lead & 0x1F : lead < 0xF0 ? lead & 0x0F : lead & 0x07;
        for (; at < utf8.size() && (utf8[at] & 0xC0) == 0x80; ++at) codePoint = codePoint << 6 | (utf8[at] & 0x3F);
        width += ColumnsOf(codePoint);
    }
    return width;
}

bool IsNumber(DataTypeEnum type) {
    constexpr DataTypeEnum kNumbers[] = {adSmallInt, adInteger,        adSingle,           adDouble,      adCurrency,
                                         adDecimal,  adTinyInt,        adUnsignedTinyInt,  adUnsignedInt, adBigInt,
                                         adNumeric,  adUnsignedBigInt, adUnsignedSmallInt, adVarNumeric};
    return std::find(std::begin(kNumbers), std::end(kNumbers), type) != std::end(kNumbers);
}

class AlignedTable {
public:
    AlignedTable(Recordset& rows, const AlignedForm& form) : rows_(rows), form_(form), columns_(rows.FieldCount()) {
        for (std::size_t k = 0; k < columns_; ++k) {
            names_.push_back(OneLine(rows.Fields(k).Name()));
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
        for (; !rows_.Eof(); rows_.MoveNext(), ++count_) {
            ReadRow(row_);
            PrintRow(row_, true);
        }
        if (form_.countRows) Print(std::to_string(count_) + (count_ == 1 ? " row\n" : " rows\n"));
    }

private:
    void ReadRow(std::vector<std::string>& row) {
        row.resize(columns_);
        for (std::size_t k = 0; k < columns_; ++k) {
            const Value& value = rows_.Fields(k).GetValue();
            cell_.clear();
            if (!value.IsNull()) AppendCell(cell_, value);
            row[k] = value.IsNull() ? form_.null : OneLine(cell_);
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
    const AlignedForm& form_;
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

void WriteAligned(Recordset& rows, const AlignedForm& form) {
    AlignedTable(rows, form).Write();
    FinishPrinting();
}

void WriteCsv(Recordset& rows) {
    std::string line, cell;
    for (std::size_t k = 0; k < rows.FieldCount(); ++k) {
        if (k > 0) line += ',';
        AppendCsvText(line, rows.Fields(k).Name());
    }
    Print(line += "\r\n");
    for (; !rows.Eof(); rows.MoveNext()) {
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
