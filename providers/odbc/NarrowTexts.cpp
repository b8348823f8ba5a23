#include "providers/odbc/NarrowTexts.h"

#include <algorithm>
#include <array>
#include <functional>

#include "platform/Error.h"

namespace varnel::odbc {

namespace {

bool IsNarrow(const ColumnInfo& column) {
    return column.type == adChar || column.type == adVarChar || column.type == adLongVarChar;
}

bool IsAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// Hands over each row of a query for a name and a number, those without a number left out. A server that refuses the
/// query has no rows.
void AskNumbers(OdbcLink& link, std::string query, const std::function<void(const char* name, int number)>& take) {
    const StatementHandle statement = link.NewStatement();
    SQLHSTMT handle = statement.Get();
    if (!SQL_SUCCEEDED(SQLExecDirect(handle, reinterpret_cast<SQLCHAR*>(query.data()), SQL_NTS))) return;
    while (SQL_SUCCEEDED(SQLFetch(handle))) {
        std::array<char, 1024> name{};
        SQLINTEGER number = 0;
        SQLLEN length = 0;
        const bool told = SQL_SUCCEEDED(SQLGetData(handle, 1, SQL_C_CHAR, name.data(), name.size(), &length)) &&
                          SQL_SUCCEEDED(SQLGetData(handle, 2, SQL_C_SLONG, &number, sizeof number, &length)) &&
                          length != SQL_NULL_DATA;
        if (told) take(name.data(), number);
    }
}

std::string InQuotes(std::string_view text) {
    std::string quoted = "N'";
    for (const char c : text) quoted.append(c == '\'' ? 2 : 1, c);
    return quoted + "'";
}

/// The code pages of the columns, 0 where the server does not say.
std::vector<int> AskColumns(OdbcLink& link, const std::string& table, const std::vector<ColumnInfo>& columns) {
    std::vector<int> numbers(columns.size());
    const std::string query =
        "SELECT name, CAST(COLLATIONPROPERTY(collation_name, 'CodePage') AS int) FROM sys.columns WHERE object_id = "
        "OBJECT_ID(" +
        InQuotes(table) + ")";
    AskNumbers(link, query, [&](const char* name, int number) {
        for (std::size_t k = 0; k < columns.size(); ++k) {
            if (EqualNoCase(columns[k].name, name)) numbers[k] = number;
        }
    });
    return numbers;
}

int AskDatabase(OdbcLink& link) {
    int asked = 0;
    AskNumbers(link,
               "SELECT DB_NAME(), CAST(COLLATIONPROPERTY(CAST(DATABASEPROPERTYEX(DB_NAME(), 'Collation') AS "
               "nvarchar(128)), 'CodePage') AS int)",
               [&](const char*, int number) { asked = number; });
    return asked;
}

}  // namespace

NarrowTexts::NarrowTexts(OdbcLink& link, const std::string& table, const std::vector<ColumnInfo>& columns)
    : pageOf_(columns.size()) {
    if (link.Text().family != Family::SqlServer || std::none_of(columns.begin(), columns.end(), IsNarrow)) return;
    std::vector<int> numbers = AskColumns(link, table, columns);
    int ofDatabase = -1;
    for (std::size_t k = 0; k < columns.size(); ++k) {
        if (!IsNarrow(columns[k])) continue;
        if (numbers[k] == 0 && ofDatabase < 0) ofDatabase = AskDatabase(link);
        pageOf_[k] = Page(numbers[k] == 0 ? ofDatabase : numbers[k]);
    }
}

const CodePage* NarrowTexts::Page(int number) {
    if (number <= 0 || !CodePage::IsSupported(number)) return nullptr;
    return &pages_.try_emplace(number, number).first->second;
}

void NarrowTexts::Refuse(std::size_t k, const ColumnInfo& column, const Value& value) {
    const CodePage* page = pageOf_[k];
    if (page == nullptr || value.Kind() != ValueKind::Text || IsAscii(value.AsText())) return;
    scratch_.clear();
    try {
        page->Encode(scratch_, value.AsText());
    } catch (const Error& error) {
        throw Error(ErrorKind::Conversion, column.name, column.name + ": " + error.what());
    }
}

}  // namespace varnel::odbc
