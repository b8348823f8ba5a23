#include "tests/session/MatrixRows.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "ado/types/ValueText.h"

namespace varnel {

namespace {

using namespace std::string_literals;

constexpr std::size_t kMebibyte = 1 << 20;

std::string LongText() {
    std::string text;
    while (text.size() < kMebibyte)
        text += "a line with 'quotes', \"more\" and \\ at " + std::to_string(text.size()) + "\r\n";
    return text;
}

std::string LongBytes() {
    std::string bytes;
    for (std::size_t k = 0; k < kMebibyte; ++k) bytes += static_cast<char>(k * 7 + k / 256);
    return bytes;
}

const std::vector<Cell>& Texts() {
    static const std::vector<Cell> texts = {"",
                                            "  both ends  ",
                                            "O'Brien",
                                            "say \"hi\"",
                                            "a \\' b\\",
                                            "one\r\ntwo",
                                            "one\ntwo\rthree",
                                            "NULL",
                                            "007",
                                            "caf\u00e9 \u20ac",
                                            "\u0141\u00f3d\u017a",
                                            "\u041f\u0440\u0438\u0432\u0435\u0442 \u65e5\u672c",
                                            "\U0001F600",
                                            "tab\there",
                                            "100% _ `x` [y] {z};--",
                                            std::string(60, 'x')};
    return texts;
}

std::vector<Cell> LongTexts() {
    std::vector<Cell> texts = Texts();
    texts.emplace_back(LongText());
    return texts;
}

std::vector<MatrixColumn> AllColumns() {
    return {
        {"ID", CellForm::Number, "1", {}, "Long", "I", "Number(10,0)", "Int", "int", "Long"},
        {"FLAG", CellForm::Number, "1", {"0"}, "YesNo", "L", "", "Bit(1)", "bit", "Bit"},
        {"TINYNO", CellForm::Number, "7", {"0", "255"}, "Byte", "", "", "TinyInt unsigned", "tinyint", "Byte"},
        {"SHORTNO", CellForm::Number, "-3", {"0", "-32768", "32767"}, "Short", "", "", "SmallInt", "smallint", "Short"},
        {"WHOLENO",
         CellForm::Number,
         "12",
         {"-2147483648", "2147483647"},
         "Long",
         "I",
         "Number(10,0)",
         "Int",
         "int",
         "Long"},
        {"SINGLENO",
         CellForm::Single,
         "2",
         {"0.1", "16777216", "3.4028235e38"},
         "Single",
         "",
         "",
         "Float",
         "real",
         "Single"},
        {"RATE",
         CellForm::Double,
         "0.25",
         {"0", "0.1", "-0.00000025", "123456789012345680", "0.3333333333333333", "1.7976931348623157e308"},
         "Double",
         "B",
         "Number",
         "Double",
         "float",
         "Double"},
        {"MONEY",
         CellForm::Number,
         "10.5",
         {"0.0001", "-12.34", "99999999999.9999", "922337203685477.5807", "-922337203685477.5808"},
         "Currency",
         "Y",
         "",
         "",
         "money",
         "Currency"},
        {"AMOUNT",
         CellForm::Number,
         "-1234",
         {"0", "0.0001", "99999999999.9999", "-99999999999.9999"},
         "",
         "N(17,4)",
         "Number(15,4)",
         "Decimal(15,4)",
         "",
         ""},
        {"BORN",
         CellForm::Moment,
         "1970-01-02 00:00:00",
         {"1753-01-01 00:00:00", "9999-12-31 00:00:00"},
         "",
         "D",
         "",
         "Date",
         "",
         ""},
        {"MADE",
         CellForm::Moment,
         "2003-07-15 13:05:09",
         {"1753-01-01 00:00:01", "9999-12-31 23:59:59", "1899-12-30 00:00:01", "2000-02-29 00:00:00"},
         "DateTime",
         "T",
         "Date",
         "DateTime",
         "datetime",
         "DateTime"},
        {"STAMP",
         CellForm::Moment,
         "2003-07-15 13:05:09",
         {"2003-07-15 13:05:09.25", "1999-12-31 23:59:59.5"},
         "DateTime",
         "T",
         "Timestamp(3)",
         "DateTime(3)",
         "datetime",
         ""},
        {"KEYID",
         CellForm::Text,
         "{01234567-89AB-CDEF-0123-456789ABCDEF}",
         {"{00000000-0000-0000-0000-000000000000}"},
         "GUID",
         "",
         "",
         "",
         "uniqueidentifier",
         "",
         false,
         "MSSQL TEXT"},
        {"NAME", CellForm::Text, "Smith", Texts(), "Text(60)", "V(60)", "Varchar2(60)", "Varchar(60)", "nvarchar(60)",
         "Text Width 60"},
        {"CODE", CellForm::Text, "A-1", {"0123456789", ""}, "", "C(10)", "", "Char(10)", "char(10)", ""},
        {"NOTE", CellForm::Text, "a note", LongTexts(), "Memo", "M", "CLOB", "LongText", "ntext", "Memo", true},
        {"PIC",
         CellForm::Bytes,
         "\0\1\xFF"s,
         {""s, "\0"s, LongBytes()},
         "OleObject",
         "G",
         "BLOB",
         "LongBlob",
         "image",
         "",
         true},
        {"TAG",
         CellForm::Bytes,
         "\1\2"s,
         {""s, "\0"s, "\0\xFF'\"\\\r\n 9 bytes up to 20"s.substr(0, 20)},
         "Binary(20)",
         "Q(20)",
         "Raw(20)",
         "VarBinary(20)",
         "varbinary(20)",
         "",
         true},
        {"MARK",
         CellForm::Bytes,
         "\1\2\3\4"s,
         {"\0\0\0\0"s, "\xFF\0\xFE "s},
         "",
         "",
         "",
         "Binary(4)",
         "binary(4)",
         "",
         true,
         "MSSQL TEXT"},
    };
}

}  // namespace

std::string MatrixColumn::DeclaredFor(const std::string& kind) const {
    if (kind == "ACCESS") return access;
    if (kind == "FOXPRO") return foxPro;
    if (kind == "ORACLE") return oracle;
    if (kind == "MySQL") return mySql;
    return kind == "MSSQL" ? sqlServer : text;
}

std::vector<MatrixColumn> MatrixColumns(const std::string& sourceKind, const std::string& targetKind,
                                        bool withLongColumns) {
    std::vector<MatrixColumn> chosen;
    for (const MatrixColumn& column : AllColumns()) {
        const std::string_view into = column.onlyInto;
        if (!into.empty() && into.find(targetKind) == std::string_view::npos) continue;
        if (column.isLong && !withLongColumns) continue;
        if (!column.DeclaredFor(sourceKind).empty()) chosen.push_back(column);
    }
    return chosen;
}

Rows MatrixRows(const std::vector<MatrixColumn>& columns) {
    Row ordinary, empty;
    for (const MatrixColumn& column : columns) {
        ordinary.push_back(column.ordinary);
        empty.emplace_back();
    }
    Rows rows{ordinary, empty};
    for (std::size_t k = 0; k < columns.size(); ++k) {
        for (const Cell& value : columns[k].values) {
            rows.push_back(ordinary);
            rows.back()[k] = value;
        }
    }
    for (std::size_t r = 0; r < rows.size(); ++r) rows[r][0] = std::to_string(r + 1);
    return rows;
}

std::string RowLabel(const std::vector<MatrixColumn>& columns, std::size_t row) {
    if (row < 2) return row == 0 ? "ordinary values" : "Null";
    std::size_t value = row - 2, k = 0;
    while (value >= columns[k].values.size()) value -= columns[k++].values.size();
    const std::string name = columns[k].name, &content = *columns[k].values[value];
    if (content.size() > 60) return name + " of 1 MiB";
    if (columns[k].form == CellForm::Bytes) return name + " of " + std::to_string(content.size()) + " bytes";
    std::string shown;
    for (const char c : content) shown += c == '\r' ? "\\r" : c == '\n' ? "\\n" : c == '\t' ? "\\t" : std::string(1, c);
    return name + (shown.empty() ? " empty" : " `" + shown + "`");
}

Value ValueOf(const Cell& cell, CellForm form) {
    if (!cell) return {};
    if (form == CellForm::Text) return Value::OfText(*cell);
    if (form == CellForm::Bytes) return Value::OfBytes(*cell);
    if (form == CellForm::Double) return Value::OfDouble(std::strtod(cell->c_str(), nullptr));
    if (form == CellForm::Single) return Value::OfSingle(std::strtof(cell->c_str(), nullptr));
    if (form == CellForm::Number) return Value::OfDecimal(*cell);
    CivilTime time{};
    char fraction[7] = "";
    std::sscanf(cell->c_str(), "%d-%d-%d %d:%d:%d.%6s", &time.year, &time.month, &time.day, &time.hour, &time.minute,
                &time.second, fraction);
    time.micros = std::atoi((std::string(fraction) + "000000").substr(0, 6).c_str());
    return Value::OfDateTime(FromCivil(time));
}

Cell CellOf(const Value& value) {
    switch (value.Kind()) {
        case ValueKind::Null:
            return std::nullopt;
        case ValueKind::Boolean:
            return value.AsBoolean() ? "1" : "0";
        case ValueKind::Single:
            return PlainDigits(value.AsSingle());
        case ValueKind::Double:
            return PlainDigits(value.AsDouble());
        case ValueKind::DateTime: {
            std::string text;
            AppendIsoDateTime(text, value.AsDateTime());
            return text;
        }
        case ValueKind::Bytes: {
            const auto bytes = value.AsBytes();
            return std::string(bytes.begin(), bytes.end());
        }
        case ValueKind::Text:
            return std::string(value.AsText());
        case ValueKind::Failure:
            return "unreadable: " + std::string(value.FailureText());
        default:
            break;
    }
    std::string digits = DefaultText(value);
    if (digits.find('.') == std::string::npos) return digits;
    digits.erase(digits.find_last_not_of('0') + 1);
    if (digits.back() == '.') digits.pop_back();
    return digits;
}

void AppendTextCell(std::string& cell, const Value& value) {
    if (value.Kind() != ValueKind::Text) return AppendDefaultText(cell, value);
    const std::string_view text = value.AsText();
    const std::size_t begin = text.find_first_not_of(' '), end = text.find_last_not_of(' ');
    cell += '"';
    if (begin != std::string_view::npos) cell += text.substr(begin, end - begin + 1);
    cell += '"';
}

}  // namespace varnel
