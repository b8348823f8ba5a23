#include "tests/session/SampleColumns.h"

#include <cstdlib>

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
        {"Byte", "UnsignedTinyInt", CellForm::Number, 3, 0, "Byte", "TinyInt unsigned", {"0", std::nullopt, "255"}},
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
                  "-1e22", "100"})},
        {"DoubleFull", "Double", CellForm::Double, 8, 0, "Double", "Double",
         Doubles({"1.7976931348623157e308", "2.2250738585072014e-308", "5e-324", "-1e100"}), false, "ORACLE"},
        {"Currency",
         "Currency",
         CellForm::Double,
         19,
         4,
         "Currency",
         "Decimal(19,4)",
         {std::nullopt, "0", "0.0001", "-12.5", "99999999999.9999", "-0.01"}},
        {"CurrencyFull",
         "Currency",
         CellForm::Number,
         19,
         4,
         "Currency",
         "Decimal(19,4)",
         {std::nullopt, "922337203685477.5807", "-922337203685477.5808", "123456789012345.6789"},
         false,
         "MySQL"},
        {"Numeric",
         "Numeric",
         CellForm::Double,
         15,
         4,
         "Decimal(15,4)",
         "Decimal(15,4)",
         {std::nullopt, "0", "99999999999.9999", "-0.0001", "12.5"}},
        {"VarNumeric",
         "VarNumeric",
         CellForm::Double,
         15,
         3,
         "Number(15,3)",
         "Decimal(15,3)",
         {"1.125", "-999999999999.999", std::nullopt, "0"}},
        {"Date", "Date", CellForm::Moment, 8, 0, "DateTime", "Date", Dates()},
        {"DBDate", "DBDate", CellForm::Moment, 8, 0, "Date", "Date", Dates()},
        {"DateTime", "Date", CellForm::Moment, 8, 0, "DateTime", "DateTime", Moments(), false, "MySQL"},
        {"Stamp", "DBTimeStamp", CellForm::Moment, 8, 0, "DateTime", "DateTime", MomentsOfTimestamp()},
        {"StampFull", "DBTimeStamp", CellForm::Moment, 8, 0, "Timestamp", "DateTime", Moments(), false, "MySQL"},
        {"Char", "Char", CellForm::Text, 100, 0, "Char(100)", "Varchar(100)", Texts()},
        {"Varchar", "Varchar", CellForm::Text, 100, 0, "Varchar(100)", "Varchar(100)", Texts()},
        {"VarWchar", "VarWchar", CellForm::Text, 100, 0, "Text(100)", "Varchar(100)", Texts()},
        {"LongVarChar", "LongVarChar", CellForm::Text, 0, 0, "LongText", "LongText", LongTexts(), true},
        {"LongVarWChar", "LongVarWChar", CellForm::Text, 0, 0, "LongText", "MediumText", LongTexts(), true},
        {"VarBinary", "VarBinary", CellForm::Bytes, 200, 0, "VarBinary(200)", "VarBinary(200)", Bytes(), true},
        {"LongVarBinary", "LongVarBinary", CellForm::Bytes, 0, 0, "OleObject", "LongBlob", LongBytes(), true},
    };
    return columns;
}

}  // namespace

std::vector<SampleColumn> SampleColumns(const std::string& targetKind, bool withLongColumns) {
    std::vector<SampleColumn> chosen{{"id", "Integer", CellForm::Number, 11, 0, "Long", "Int", {}}};
    for (const SampleColumn& column : AllColumns()) {
        const bool fits = std::string_view(column.tooLargeFor).find(targetKind) == std::string_view::npos;
        if (fits && (withLongColumns || !column.isLong)) {
            chosen.push_back(column);
            chosen.back().name = "c" + column.name;  // plain words of SQL are no names for every kind of target
        }
    }
    return chosen;
}

std::vector<NativeColumn> NativeColumnsOf(const std::vector<SampleColumn>& columns) {
    std::vector<NativeColumn> names;
    for (const SampleColumn& column : columns) names.push_back({column.name, column.form});
    return names;
}

std::vector<TestColumn> MappingOf(const std::vector<SampleColumn>& columns) {
    std::vector<TestColumn> mapping;
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
