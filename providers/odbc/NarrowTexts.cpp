#include "providers/odbc/NarrowTexts.h"

#include <algorithm>

#include "platform/Error.h"

namespace varnel::odbc {

namespace {

bool IsNarrow(const ColumnInfo& column) {
    return column.type == adChar || column.type == adVarChar || column.type == adLongVarChar;
}

bool IsAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// 0 when the server does not say.
int AskCodePage(OdbcLink& link) {
    char query[] =
        "SELECT CAST(COLLATIONPROPERTY(CAST(DATABASEPROPERTYEX(DB_NAME(), 'Collation') AS nvarchar(128)), 'CodePage') "
        "AS int)";
    const StatementHandle statement = link.NewStatement();
    SQLINTEGER number = 0;
    SQLLEN length = 0;
    const bool known = SQL_SUCCEEDED(SQLExecDirect(statement.Get(), reinterpret_cast<SQLCHAR*>(query), SQL_NTS)) &&
                       SQL_SUCCEEDED(SQLFetch(statement.Get())) &&
                       SQL_SUCCEEDED(SQLGetData(statement.Get(), 1, SQL_C_SLONG, &number, sizeof number, &length)) &&
                       length != SQL_NULL_DATA;
    return known ? number : 0;
}

}  // namespace

NarrowTexts::NarrowTexts(OdbcLink& link, const std::vector<ColumnInfo>& columns) {
    if (link.Text().family != Family::SqlServer || std::none_of(columns.begin(), columns.end(), IsNarrow)) return;
    const int number = AskCodePage(link);
    if (number > 0 && CodePage::IsSupported(number)) page_.emplace(number);
}

void NarrowTexts::Refuse(const ColumnInfo& column, const Value& value) {
    if (!page_ || !IsNarrow(column) || value.Kind() != ValueKind::Text || IsAscii(value.AsText())) return;
    scratch_.clear();
    try {
        page_->Encode(scratch_, value.AsText());
    } catch (const Error& error) {
        throw Error(ErrorKind::Conversion, column.name, column.name + ": " + error.what());
    }
}

}  // namespace varnel::odbc
