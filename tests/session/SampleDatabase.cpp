#include "tests/session/SampleDatabase.h"

#include <algorithm>

#include "platform/CodePage.h"
#include "tests/support/ErrorOf.h"

namespace varnel {

namespace {

constexpr std::size_t kTables = 20, kColumnsBesideId = 4, kRows = 5;

struct Names {
    const char* tables[kTables];
    const char* columns[7];
};

constexpr Names kQuoted = {
    {"Order Details",
     "order_details",
     "Select",
     "Group",
     "Table",
     "Customers & Co",
     "Prices (net)",
     "2nd Hand",
     "a-b",
     "Users",
     "Index",
     "\u00c4pfel",
     "Level",
     "A table whose name has more than thirty characters",
     "A table whose name has more than thirty letters",
     "Where",
     "Stock%",
     "Null",
     "Date",
     "x"},
    {"Order", "Unit Price", "From", "Gr\u00f6\u00dfe in mm", "Date", "1st", "a column with a name of many letters"}};
constexpr Names kFoxPro = {
    {"orders", "orderlines", "details", "customers", "prices", "level", "users", "stock", "parts", "moves",
     "dates",  "index",      "bills",   "gifts",     "lists",  "marks", "notes", "plans", "rates", "x"},
    {"order", "price", "group", "born_on", "index", "date", "comment"}};
constexpr Names kOracle = {
    {"ORDERS", "ORDERLINES", "DETAILS", "CUSTOMERS", "PRICES", "LEVELS",
     "USERS",  "STOCK",      "PARTS",   "MOVES",     "DATES",  "A_TABLE_OF_ALMOST_30_CHARACTERS",
     "BILLS",  "GIFTS",      "LISTS",   "MARKS",     "NOTES",  "PLANS",
     "RATES",  "X"},
    {"ORDER_NO", "PRICE", "A_COLUMN_OF_ALMOST_THIRTY_CHRS", "BORN_ON", "VALUE", "UNIT", "TOTAL"}};

const Names& NamesFor(const std::string& kind) {
    return kind == "FOXPRO" ? kFoxPro : kind == "ORACLE" ? kOracle : kQuoted;
}

/// Values that every kind of target holds: FoxPro and text files have the letters of Windows-1252 only, FoxPro whole
/// seconds.
std::vector<Cell> BorneValues(const MatrixColumn& column) {
    constexpr std::size_t kLongest = 60;
    std::vector<Cell> borne{column.ordinary, std::nullopt};
    const CodePage page(1252);
    for (const Cell& value : column.values) {
        std::string encoded;
        const bool isShort = value->size() <= kLongest;
        const bool isText = column.form == CellForm::Text;
        const bool hasFraction = column.form == CellForm::Moment && value->find('.') != std::string::npos;
        if (isShort && !hasFraction && (!isText || ErrorOf([&] { page.Encode(encoded, *value); }).empty()))
            borne.push_back(value);
    }
    return borne;
}

SampleTable MakeTable(const Names& names, const std::vector<MatrixColumn>& all, std::size_t number) {
    SampleTable table{names.tables[number], {all[0]}, Rows(kRows)};
    for (std::size_t k = 0; k < kColumnsBesideId; ++k) {
        MatrixColumn column = all[1 + (number * kColumnsBesideId + k) % (all.size() - 1)];
        const std::string name = column.name;
        if (name != "FLAG" && name != "CODE") column.name = names.columns[(number + k) % std::size(names.columns)];
        table.columns.push_back(column);
    }
    for (std::size_t r = 0; r < kRows; ++r) {
        table.rows[r].emplace_back(std::to_string(r + 1));
        for (std::size_t k = 1; k < table.columns.size(); ++k) {
            const std::vector<Cell> values = BorneValues(table.columns[k]);
            table.rows[r].push_back(values[(r + number) % values.size()]);
        }
    }
    return table;
}

}  // namespace

std::vector<SampleTable> SampleTables(const std::string& kind) {
    const std::vector<MatrixColumn> all = MatrixColumns(kind, "MSSQL", true);
    std::vector<SampleTable> tables;
    for (std::size_t number = 0; number < kTables; ++number) tables.push_back(MakeTable(NamesFor(kind), all, number));
    return tables;
}

}  // namespace varnel
