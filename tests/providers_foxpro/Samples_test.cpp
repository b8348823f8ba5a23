// Real files of every dialect at hand, against rows on which other programs agree.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "ado/types/Decimal.h"
#include "ado/types/ValueText.h"
#include "providers/foxpro/FoxProDatabase.h"
#include "tests/providers_foxpro/FoxProTest.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/TempFolder.h"

namespace varnel::foxpro {
namespace {

using Cells = std::vector<std::string>;

/// Records of RFC 4180.
std::vector<Cells> ReadCsv(const std::string& bytes) {
    std::vector<Cells> records(1, Cells(1));
    bool quoted = false;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        const char c = bytes[at];
        if (c == '"' && quoted && bytes[at + 1] == '"') {
            records.back().back() += bytes[++at];
        } else if (c == '"') {
            quoted = !quoted;
        } else if (c == ',' && !quoted) {
            records.back().emplace_back();
        } else if (c == '\n' && !quoted) {
            records.emplace_back(1);
        } else {
            records.back().back() += c;
        }
    }
    records.pop_back();
    return records;
}

/// A cell of an expected file as PlainText writes the value that it stands for.
std::string ExpectedText(const std::string& cell, DataTypeEnum type) {
    if (cell == "\\N") return "";
    Value value;
    Decimal number;
    switch (type) {
        case adNumeric:
        case adDouble:
        case adCurrency:
        case adInteger:
            if (!ParseDecimal(cell.empty() ? "0" : cell, number)) return "no number: " + cell;
            value.SetDecimal(number);
            return DefaultText(value);
        case adBoolean:
            return cell.empty() ? "F" : cell;
        case adDBTimeStamp:
            return cell.ends_with(" 00:00:00") ? cell.substr(0, 10) : cell;
        case adChar:
        case adVarChar:
        case adLongVarChar:
            value.SetText(cell);
            return PlainText(value);
        default:
            return cell;
    }
}

void ExpectRowsOf(const std::string& name) {
    std::vector<Cells> records = ReadCsv(ReadBytes(SamplePath(name + ".expected.csv")));
    FoxProDatabase database(SamplePath(""));
    const auto table = database.OpenTable(name);
    Lines live;
    for (std::size_t r = 1; r < records.size(); ++r) {
        if (records[r][0] == "*") continue;
        std::string line;
        for (std::size_t k = 1; k < records[r].size(); ++k)
            line += (k == 1 ? "" : "|") + ExpectedText(records[r][k], table->Columns().at(k - 1).type);
        live.push_back(line);
    }
    EXPECT_EQ(Difference(RowsOf(*table), live), "");
    EXPECT_EQ(table->CountRows(), static_cast<std::int64_t>(live.size()));
    DatabaseOptions all;
    all.showDeleted = true;
    EXPECT_EQ(RowsOfFile(SamplePath(name + ".dbf"), all).size(), records.size() - 1);
}

TEST(FoxProSamples, HoldTheRowsOnWhichOtherProgramsAgree) {
    for (const char* name : {"expense reports", "expense details", "cp1251", "suppliers", "dbase_8b", "TEST"}) {
        SCOPED_TRACE(name);
        ExpectRowsOf(name);
    }
}

TEST(FoxProSamples, HoldTheRowsOfAnotherReader) {
    if (!HasReader("dbfread")) GTEST_SKIP() << "python3-dbfread is not installed";
    for (const char* name :
         {"dbase_03.dbf", "dbase_83.dbf", "dbase_f5.dbf", "employees.dbf", "expense categories.dbf"}) {
        const Lines rows = RowsOfFile(SamplePath(name));
        EXPECT_FALSE(rows.empty()) << name;
        EXPECT_EQ(Difference(rows, RowsByReader("dbfread", SamplePath(name))), "") << name;
    }
}

}  // namespace
}  // namespace varnel::foxpro
