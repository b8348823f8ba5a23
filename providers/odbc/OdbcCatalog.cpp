#include "providers/odbc/OdbcCatalog.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <tuple>

#include "providers/odbc/OdbcReader.h"
#include "providers/odbc/OdbcTypes.h"

namespace varnel::odbc {
namespace {

constexpr std::string_view kSystemOwners[] = {
    "information_schema", "sys", "mysql", "performance_schema", "pg_catalog",
    // of Oracle, as it makes them itself:
    "anonymous", "appqossys", "audsys", "ctxsys", "dbsfwuser", "dbsnmp", "dip", "dvf", "dvsys", "exfsys", "ggsys",
    "gsmadmin_internal", "gsmcatuser", "gsmuser", "lbacsys", "mddata", "mdsys", "mgmt_view", "ojvmsys", "olapsys",
    "oracle_ocm", "orddata", "ordplugins", "ordsys", "outln", "remote_scheduler_agent", "si_informtn_schema", "sysman",
    "system", "wmsys", "xdb", "xs$null"};
constexpr std::string_view kSystemTables[] = {"dtproperties", "sysdiagrams"};

SQLCHAR* Characters(const std::string& text) {
    return reinterpret_cast<SQLCHAR*>(const_cast<char*>(text.c_str()));  // the callee only reads it
}
/// A null pointer stands for "any".
SQLCHAR* CharactersOrAny(const std::string& text) {
    return text.empty() ? nullptr : Characters(text);
}

std::string TextOf(const Value& value) {
    return value.Kind() == ValueKind::Text ? std::string(value.AsText()) : std::string();
}

bool HasSchemas(OdbcLink& link) {
    SQLUINTEGER usage = 0;
    const SQLRETURN outcome = SQLGetInfo(link.Ready(), SQL_SCHEMA_USAGE, &usage, sizeof usage, nullptr);
    return SQL_SUCCEEDED(outcome) && usage != 0;
}

/// A table as the driver's questions name it.
struct TablePlace {
    std::string catalog, schema, name;
    const std::string& Owner() const { return schema.empty() ? catalog : schema; }
};

TablePlace PlaceOf(OdbcLink& link, const std::string& owner, const std::string& table) {
    return HasSchemas(link) ? TablePlace{"", owner, table} : TablePlace{owner, "", table};
}

/// Calls use with every row of a driver's list, in texts; a driver that has no such list gives none.
template <class Use>
bool ReadList(const std::shared_ptr<OdbcLink>& link, StatementHandle statement, SQLRETURN outcome, Use&& use) {
    if (!SQL_SUCCEEDED(outcome)) return false;
    OdbcReader reader(link, std::move(statement));
    std::vector<Value> row(reader.Columns().size());
    std::vector<std::string> texts(row.size());
    while (reader.Next(row)) {
        std::transform(row.begin(), row.end(), texts.begin(), TextOf);
        use(texts);
    }
    return true;
}

void AddTable(std::vector<TableInfo>& tables, const TablePlace& place, std::string_view type) {
    const std::string word = AsciiLower(type);
    const bool isTable = word == "table" || word == "base table", isView = word == "view";
    if ((isTable || isView) && !IsSystemTable(place.Owner(), place.name))
        tables.push_back({place.Owner(), place.name, isView});
}

/// For drivers that cannot list tables.
const char* ListStatement(Family family) {
    return family == Family::Oracle ? "select owner, table_name, 'TABLE' from all_tables union all "
                                      "select owner, view_name, 'VIEW' from all_views"
                                    : "select table_schema, table_name, table_type from information_schema.tables";
}

void ListByStatement(const std::shared_ptr<OdbcLink>& link, std::vector<TableInfo>& tables) {
    StatementHandle handle = link->NewStatement();
    const std::string text = ListStatement(link->Text().family);
    link->Check(SQLExecDirect(handle.Get(), Characters(text), SQL_NTS), handle);
    ReadList(link, std::move(handle), SQL_SUCCESS, [&](const std::vector<std::string>& row) {
        AddTable(tables, {"", row.at(0), row.at(1)}, row.at(2));
    });
}

std::string QuoteCharacter(OdbcLink& link) {
    std::array<char, 8> quote{};
    SQLSMALLINT length = 0;
    const SQLRETURN outcome = SQLGetInfo(link.Ready(), SQL_IDENTIFIER_QUOTE_CHAR, quote.data(), quote.size(), &length);
    const std::string text = SQL_SUCCEEDED(outcome) ? quote.data() : "";
    return text == " " ? "" : text;  // a blank: names are not quoted
}

std::string Quoted(const std::string& name, const std::string& quote) {
    if (quote.empty()) return name;
    std::string quoted = quote;
    for (const char c : name) quoted += quote == std::string(1, c) ? quote + quote : std::string(1, c);
    return quoted + quote;
}

/// The columns of the empty result of a SELECT over the table, with the driver's words for their types.
std::vector<TableColumn> ResultColumns(OdbcLink& link, const std::string& owner, const std::string& table) {
    const std::string quote = QuoteCharacter(link);
    const std::string from = (owner.empty() ? "" : Quoted(owner, quote) + ".") + Quoted(table, quote);
    const std::string text = "SELECT * FROM " + from + " WHERE 1=0";
    const StatementHandle statement = link.NewStatement();
    link.Check(SQLExecDirect(statement.Get(), Characters(text), SQL_NTS), statement);
    SQLSMALLINT count = 0;
    link.Check(SQLNumResultCols(statement.Get(), &count), statement);
    std::vector<TableColumn> columns;
    for (SQLSMALLINT number = 1; number <= count; ++number) {
        const auto position = static_cast<SQLUSMALLINT>(number);
        DriverColumn column;
        if (!ReadDriverColumn(statement, position, column)) link.Fail(statement);
        SQLLEN isCounter = SQL_FALSE;
        const SQLRETURN outcome =
            SQLColAttribute(statement.Get(), position, SQL_DESC_AUTO_UNIQUE_VALUE, nullptr, 0, nullptr, &isCounter);
        columns.push_back({DescribeColumn(column, link.Text()).info, column.typeName, false,
                           SQL_SUCCEEDED(outcome) && isCounter == SQL_TRUE});
    }
    return columns;
}

/// The declared type words, by column, of the table; of the first one when several owners have a table of that name.
std::map<std::string, std::string> DeclaredWords(const std::shared_ptr<OdbcLink>& link, const TablePlace& place) {
    StatementHandle statement = link->NewStatement();
    const SQLRETURN outcome =
        SQLColumns(statement.Get(), CharactersOrAny(place.catalog), SQL_NTS, CharactersOrAny(place.schema), SQL_NTS,
                   Characters(place.name), SQL_NTS, nullptr, 0);
    std::map<std::string, std::string> words;
    ReadList(link, std::move(statement), outcome, [&](const std::vector<std::string>& row) {
        const bool isTable = row.at(2) == place.name && (place.schema.empty() || row.at(1) == place.schema);
        if (isTable) words.emplace(row.at(3), row.at(5));  // the names of the question are patterns: "_" is any letter
    });
    return words;
}

std::set<std::string> KeyColumns(const std::shared_ptr<OdbcLink>& link, const TablePlace& place) {
    StatementHandle statement = link->NewStatement();
    const SQLRETURN outcome = SQLPrimaryKeys(statement.Get(), CharactersOrAny(place.catalog), SQL_NTS,
                                             CharactersOrAny(place.schema), SQL_NTS, Characters(place.name), SQL_NTS);
    std::set<std::string> names;
    ReadList(link, std::move(statement), outcome,
             [&](const std::vector<std::string>& row) { names.insert(row.at(3)); });
    return names;
}

/// "int identity" is an int whose values the server gives.
void ReadWord(TableColumn& column, std::string word, Family family) {
    constexpr std::string_view kIdentity = " identity";
    const std::size_t identity = AsciiLower(word).find(kIdentity);
    if (identity != std::string::npos) {
        word.resize(identity);
        column.isAssigned = true;
    }
    const bool isRowVersion = EqualNoCase(word, "timestamp") || EqualNoCase(word, "rowversion");
    if (family == Family::SqlServer && isRowVersion) column.isAssigned = true;
    column.typeName = std::move(word);
}

}  // namespace

bool IsSystemTable(std::string_view owner, std::string_view table) {
    const auto names = [](std::string_view name) {
        return [=](std::string_view one) { return EqualNoCase(one, name); };
    };
    const std::string lower = AsciiLower(owner);
    return std::any_of(std::begin(kSystemOwners), std::end(kSystemOwners), names(owner)) ||
           std::any_of(std::begin(kSystemTables), std::end(kSystemTables), names(table)) ||
           lower.starts_with("apex_") || lower.starts_with("flows_") || table.starts_with("BIN$");
}

std::vector<TableInfo> ListTables(const std::shared_ptr<OdbcLink>& link) {
    std::vector<TableInfo> tables;
    const std::string types = "TABLE,VIEW";
    StatementHandle statement = link->NewStatement();
    const SQLRETURN outcome =
        SQLTables(statement.Get(), nullptr, 0, nullptr, 0, nullptr, 0, Characters(types), SQL_NTS);
    const bool listed = ReadList(link, std::move(statement), outcome, [&](const std::vector<std::string>& row) {
        AddTable(tables, {row.at(0), row.at(1), row.at(2)}, row.at(3));
    });
    if (!listed) ListByStatement(link, tables);
    std::stable_sort(tables.begin(), tables.end(), [](const TableInfo& a, const TableInfo& b) {
        return std::tie(a.owner, a.name) < std::tie(b.owner, b.name);
    });
    return tables;
}

std::vector<TableColumn> DescribeTable(const std::shared_ptr<OdbcLink>& link, const std::string& owner,
                                       const std::string& table) {
    std::vector<TableColumn> columns = ResultColumns(*link, owner, table);
    const TablePlace place = PlaceOf(*link, owner, table);
    const std::map<std::string, std::string> words = DeclaredWords(link, place);
    const std::set<std::string> keys = KeyColumns(link, place);
    for (TableColumn& column : columns) {
        const auto word = words.find(column.info.name);
        ReadWord(column, word == words.end() ? column.typeName : word->second, link->Text().family);
        column.isKey = keys.contains(column.info.name);
    }
    return columns;
}

}  // namespace varnel::odbc
