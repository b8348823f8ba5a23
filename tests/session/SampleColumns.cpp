#include "tests/session/SampleColumns.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace varnel {

namespace {

using namespace std::string_literals;

std::vector<Cell> Doubles(const std::vector<const char*>& numbers) {
    std::vector<Cell> cells{std::nullopt};
    for (const char* number : numbers) cells.emplace_back(PlainDigits(std::strtod(number, nullptr)));
    return cells;
}

std::vector<Cell> Singles(const std::vector<const char*>& numbers) {
    std::vector<Cell> cells{std::nullopt};
    for (const char* number : numbers) cells.emplace_back(PlainDigits(std::strtof(number, nullptr)));
    return cells;
}

std::string Repeated(std::string_view part, int times) {
    std::string text;
    for (int k = 0; k < times; ++k) text += part;
    return text;
}

/// Texts that some step on the way could take for something else; none is longer than 100 characters.
std::vector<Cell> Texts() {
    return {std::nullopt,
            "",
            "O'Brien",
            "'",
            "''); delete from x; --",
            "say \"hi\"",
            "line one\r\nline two",
            "line one\nline two\rline three",
            "back\\slash",
            "ends in a backslash\\",
            "\\'",
            "Łódź, Übergröße, naïve",
            "Ελλάδα",
            "Привет",
            "日本語",
            "שלום",
            "😀👩‍👩‍👧 𝄞",
            "`tick` [bracket] {brace}",
            "100% _ * ? #",
            "  blanks around  ",
            "\ttab\t",
            "007",
            "1e5",
            "-0",
            " 12 ",
            "null",
            "NULL ",
            "True",
            "{00000000-0000-0000-0000-000000000000}",
            "2003-07-15",
            Repeated("0123456789", 10),
            Repeated("€", 100)};
}

std::vector<Cell> LongTexts() {
    std::vector<Cell> texts = Texts();
    texts.emplace_back(Repeated("a long line with 'quotes' and \\ and ŁÓDŹ 😀\r\n", 2000));
    texts.emplace_back("NULL");
    return texts;
}

/// What every narrow text column takes: characters of Windows' western code page, no blanks at the end.
std::vector<Cell> NarrowTexts() {
    return {std::nullopt, "", "O'Brien", "caf\u00e9 \u20ac", "a \\' b\\", "one\r\ntwo", "  before", "NULL ."};
}

std::vector<Cell> LongNarrowTexts() {
    std::vector<Cell> texts = NarrowTexts();
    texts.emplace_back(Repeated("a long line with 'quotes' and \\ and \u00dcber\u20ac\r\n", 1000));
    return texts;
}

std::vector<Cell> Wholes() {
    return {"9999999999", "-1", std::nullopt, "0"};
}

std::vector<Cell> Bytes() {
    std::string all;
    for (int k = 0; k < 256; ++k) all += static_cast<char>(k);
    return {std::nullopt, "", "\0"s, "\0\0'\\\""s, "\xFF\xFE\x80"s, all.substr(0, 200), "NULL"};
}

std::vector<Cell> LongBytes() {
    std::string all;
    for (int k = 0; k < 60'000; ++k) all += static_cast<char>(k * 7 + k / 256);
    std::vector<Cell> cells = Bytes();
    cells.emplace_back(all);
    return cells;
}

std::vector<Cell> Dates() {
    return {std::nullopt,          "2003-07-15 00:00:00", "1899-12-30 00:00:00", "1000-01-01 00:00:00",
            "9999-12-31 00:00:00", "2000-02-29 00:00:00", "1752-09-02 00:00:00"};
}

std::vector<Cell> DatesOfSqlServer() {
    return {"1753-01-01 00:00:00", std::nullopt, "9999-12-31 00:00:00", "2003-07-15 00:00:00"};
}

std::vector<Cell> Moments() {
    return {std::nullopt,          "1899-12-30 00:00:01", "1899-12-29 18:00:00", "0100-01-01 00:00:00",
            "9999-12-31 23:59:59", "2003-07-15 13:05:09", "1752-09-14 12:34:56"};
}

std::vector<Cell> MomentsOfTimestamp() {
    return {std::nullopt, "1971-01-01 00:00:01", "2003-07-15 13:05:09", "2037-12-31 23:59:59", "2026-11-18 00:00:00"};
}

const std::vector<SampleColumn>& AllColumns() {
    static const std::vector<SampleColumn> columns = {
        {"Boolean", "Boolean", CellForm::Number, 1, 0, "YesNo", "Bit(1)", {"1", "0", std::nullopt}},
        {"Byte",
         "UnsignedTinyInt",
         CellForm::Number,
         3,
         0,
         "Byte",
         "TinyInt unsigned",
         {"0", std::nullopt, "255"},
         false,
         "dialect"},
        {"ByteTo127",
         "UnsignedTinyInt",
         CellForm::Number,
         3,
         0,
         "Byte",
         "TinyInt unsigned",
         {"0", std::nullopt, "127"}},
        {"SmallInt", "SmallInt", CellForm::Number, 5, 0, "Short", "SmallInt", {"-32768", "32767", std::nullopt, "0"}},
        {"Integer",
         "Integer",
         CellForm::Number,
         11,
         0,
         "Long",
         "Int",
         {"-2147483648", "2147483647", std::nullopt, "-1"}},
        {"SingleWhole", "Single", CellForm::Single, 4, 0, "Single", "Float",
         Singles({"0", "1", "-1", "16777216", "-8388607"})},
        {"SinglePart", "Single", CellForm::Single, 4, 0, "Single", "Float",
         Singles({"0.1", "-1.5", "16777.215", "0.33333334"}), false, "MySQL"},
        {"SingleFull", "Single", CellForm::Single, 4, 0, "Single", "Float",
         Singles({"3.4028235e38", "1.17549435e-38", "1e10"}), false, "MySQL ORACLE"},
        {"Double", "Double", CellForm::Double, 8, 0, "Double", "Double",
         Doubles({"0", "0.1", "-2.5e-7", "0.33333333333333331", "123456789012345680", "9007199254740993", "1e15",
                  "-1e22", "100"}),
         false, "dialect"},
        {"DoubleOfSingle", "Double", CellForm::Double, 8, 0, "Double", "Double", Doubles({"0", "0.5", "-1024"})},
        {"DoubleFull", "Double", CellForm::Double, 8, 0, "Double", "Double",
         Doubles({"1.7976931348623157e308", "2.2250738585072014e-308", "5e-324", "-1e100"}), false, "ORACLE dialect"},
        {"Currency",
         "Currency",
         CellForm::Double,
         19,
         4,
         "Currency",
         "Decimal(19,4)",
         {std::nullopt, "0", "0.0001", "-12.5", "99999999999.9999", "-0.01"},
         false,
         "dialect"},
        {"CurrencyFull",
         "Currency",
         CellForm::Number,
         19,
         4,
         "Currency",
         "Decimal(19,4)",
         {std::nullopt, "922337203685477.5807", "-922337203685477.5808", "123456789012345.6789"},
         false,
         "MySQL MariaDB"},
        {"Numeric",
         "Numeric",
         CellForm::Double,
         15,
         4,
         "Decimal(15,4)",
         "Decimal(15,4)",
         {std::nullopt, "0", "99999999999.9999", "-0.0001", "12.5"},
         false,
         "MSSQL"},
        {"NumericWhole", "Numeric", CellForm::Double, 15, 0, "Decimal(15,0)", "Decimal(15,0)", Wholes()},
        {"VarNumeric",
         "VarNumeric",
         CellForm::Double,
         15,
         3,
         "Number(15,3)",
         "Decimal(15,3)",
         {"1.125", "-999999999999.999", std::nullopt, "0"},
         false,
         "MSSQL"},
        {"VarNumericWhole", "VarNumeric", CellForm::Double, 15, 0, "Number(15,0)", "Decimal(15,0)", Wholes()},
        {"Date", "Date", CellForm::Moment, 8, 0, "DateTime", "Date", Dates(), false, "MSSQL"},
        {"DateSince1753", "Date", CellForm::Moment, 8, 0, "DateTime", "Date", DatesOfSqlServer()},
        {"DBDate", "DBDate", CellForm::Moment, 8, 0, "Date", "Date", Dates(), false, "MSSQL"},
        {"DBDateSince1753", "DBDate", CellForm::Moment, 8, 0, "Date", "Date", DatesOfSqlServer()},
        {"DateTime", "Date", CellForm::Moment, 8, 0, "DateTime", "DateTime", Moments(), false, "MySQL MSSQL"},
        {"Stamp", "DBTimeStamp", CellForm::Moment, 8, 0, "DateTime", "DateTime", MomentsOfTimestamp()},
        {"StampFull", "DBTimeStamp", CellForm::Moment, 8, 0, "Timestamp", "DateTime", Moments(), false, "MySQL MSSQL"},
        {"DBTime",
         "DBTime",
         CellForm::Moment,
         8,
         0,
         "DateTime",
         "DateTime",
         {"1899-12-30 13:05:09", std::nullopt, "1899-12-30 00:00:01"},
         false,
         "",
         "MSSQL"},
        {"Guid",
         "GUID",
         CellForm::Text,
         16,
         0,
         "GUID",
         "Char(38)",
         {"{01234567-89AB-CDEF-0123-456789ABCDEF}", std::nullopt},
         false,
         "dialect",
         "MSSQL"},
        {"Bit", "TinyInt", CellForm::Number, 1, 0, "Byte", "TinyInt", {"1", "0", std::nullopt}, false, "", "MSSQL"},
        {"Char", "Char", CellForm::Text, 100, 0, "Char(100)", "Varchar(100)", Texts(), false, "MSSQL"},
        {"CharPlain", "Char", CellForm::Text, 100, 0, "Char(100)", "Varchar(100)", NarrowTexts()},
        {"Wchar", "Wchar", CellForm::Text, 100, 0, "Char(100)", "Varchar(100)", NarrowTexts(), false, "", "MSSQL"},
        {"Varchar", "Varchar", CellForm::Text, 100, 0, "Varchar(100)", "Varchar(100)", Texts(), false, "MSSQL"},
        {"VarcharPlain", "Varchar", CellForm::Text, 100, 0, "Varchar(100)", "Varchar(100)", NarrowTexts()},
        {"VarWchar", "VarWchar", CellForm::Text, 100, 0, "Text(100)", "Varchar(100)", Texts(), false, "dialect"},
        {"VarWcharPlain", "VarWchar", CellForm::Text, 100, 0, "Text(100)", "Varchar(100)", NarrowTexts()},
        {"LongVarChar", "LongVarChar", CellForm::Text, 0, 0, "LongText", "LongText", LongTexts(), true, "MSSQL"},
        {"LongVarCharPlain", "LongVarChar", CellForm::Text, 0, 0, "LongText", "LongText", LongNarrowTexts(), true},
        {"LongVarWChar", "LongVarWChar", CellForm::Text, 0, 0, "LongText", "MediumText", LongTexts(), true, "dialect"},
        {"VarBinary", "VarBinary", CellForm::Bytes, 200, 0, "VarBinary(200)", "VarBinary(200)", Bytes(), true},
        {"Binary",
         "Binary",
         CellForm::Bytes,
         4,
         0,
         "Binary(4)",
         "Binary(4)",
         {"\1\0\2\xFF"s, std::nullopt},
         true,
         "",
         "MSSQL"},
        {"LongVarBinary", "LongVarBinary", CellForm::Bytes, 0, 0, "OleObject", "LongBlob", LongBytes(), true,
         "dialect"},
    };
    return columns;
}

}  // namespace

std::vector<SampleColumn> SampleColumns(const std::vector<std::string>& target, bool withLongColumns) {
    std::vector<SampleColumn> chosen{{"id", "Integer", CellForm::Number, 11, 0, "Long", "Int", {}}};
    for (const SampleColumn& column : AllColumns()) {
        const bool tooLarge = std::any_of(target.begin(), target.end(), [&](const std::string& word) {
            return std::string_view(column.tooLargeFor).find(word) != std::string_view::npos;
        });
        const bool known = *column.onlyFor == 0 || target[0] == column.onlyFor;
        if (known && !tooLarge && (withLongColumns || !column.isLong)) {
            chosen.push_back(column);
            chosen.back().name = "c" + column.name;  // plain words of SQL are no names for every kind of target
        }
    }
    return chosen;
}

std::vector<NativeColumn> NativeColumnsOf(const std::vector<SampleColumn>& columns) {
    std::vector<NativeColumn> names;
    names.reserve(columns.size());
    for (const SampleColumn& column : columns) names.push_back({column.name, column.form});
    return names;
}

std::vector<TestColumn> MappingOf(const std::vector<SampleColumn>& columns) {
    std::vector<TestColumn> mapping;
    mapping.reserve(columns.size());
    for (const SampleColumn& column : columns) {
        mapping.push_back({column.name, column.type, column.width, column.scale});
    }
    return mapping;
}

Rows SampleRows(const std::vector<SampleColumn>& columns, int count) {
    Rows rows;
    for (int r = 0; r < count; ++r) {
        Row& row = rows.emplace_back();
        for (const SampleColumn& column : columns) {
            const auto& values = column.values;
            row.push_back(values.empty() ? std::to_string(r + 1)
                                         : values[(static_cast<std::size_t>(r) + row.size()) % values.size()]);
        }
    }
    return rows;
}

void MakeSource(NativeDatabase& database, Engine engine, const std::string& table,
                const std::vector<SampleColumn>& columns, const Rows& rows) {
    const char* quote = engine == Engine::MySql ? "`" : "\"";
    std::string statement = std::string("create table ") + quote + table + quote + " (";
    for (const SampleColumn& column : columns) {
        statement += quote + column.name + quote + " ";
        statement += engine == Engine::MySql ? column.mySqlType : column.sqliteType;
        statement += " null,";
    }
    statement.back() = ')';
    database.Run({statement});
    database.Insert(table, NativeColumnsOf(columns), rows);
}

}  // namespace varnel
