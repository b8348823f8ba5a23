#include "providers/mysql/MySqlCatalog.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace varnel::mysql {
namespace {

/// A text as SQL that no sql_mode reads in another way.
std::string Literal(std::string_view text) {
    std::string digits;
    for (const char c : text) digits += fmt::format("{:02X}", static_cast<unsigned char>(c));
    return "CONVERT(X'" + digits + "' USING utf8mb4)";
}

std::string QuotedName(std::string_view name) {
    std::string quoted = "`";
    for (const char c : name) quoted.append(c == '`' ? 2 : 1, c);
    return quoted + "`";
}

std::string TextOf(const Value& value) {
    return value.Kind() == ValueKind::Text ? std::string(value.AsText()) : std::string();
}

/// The database itself says which one a plain name means.
std::string DatabaseOr(const std::string& database) {
    return database.empty() ? "DATABASE()" : Literal(database);
}

/// What the result of a query over information_schema says of one column.
struct Declaration {
    std::string name, typeName;
    bool isKey = false, isAssigned = false;
};

std::vector<Declaration> ReadDeclarations(ProviderSession& session, const std::string& database,
                                          const std::string& table) {
    const auto rows = session.Query(
        "SELECT COLUMN_NAME, DATA_TYPE, COLUMN_KEY, EXTRA FROM information_schema.COLUMNS WHERE TABLE_SCHEMA = " +
        DatabaseOr(database) + " AND TABLE_NAME = " + Literal(table) + " ORDER BY ORDINAL_POSITION");
    std::vector<Declaration> declarations;
    for (std::array<Value, 4> row; rows->Next(row);) {
        const std::string extra = TextOf(row[3]);  // "DEFAULT_GENERATED" is no computed column
        const bool isAssigned = extra.find("auto_increment") != std::string::npos || extra.ends_with(" GENERATED");
        declarations.push_back({TextOf(row[0]), TextOf(row[1]), TextOf(row[2]) == "PRI", isAssigned});
    }
    return declarations;
}

}  // namespace

std::vector<TableInfo> ListTables(ProviderSession& session, const std::string& database) {
    const std::string where = database.empty()
                                  ? "TABLE_SCHEMA NOT IN ('information_schema','mysql','performance_schema','sys')"
                                  : "TABLE_SCHEMA = " + Literal(database);
    const auto rows =
        session.Query("SELECT TABLE_SCHEMA, TABLE_NAME, TABLE_TYPE FROM information_schema.TABLES WHERE " + where +
                      " AND TABLE_TYPE IN ('BASE TABLE','SYSTEM VERSIONED','VIEW') ORDER BY TABLE_SCHEMA, TABLE_NAME");
    std::vector<TableInfo> tables;
    for (std::array<Value, 3> row; rows->Next(row);)
        tables.push_back({TextOf(row[0]), TextOf(row[1]), TextOf(row[2]) == "VIEW"});
    return tables;
}

std::vector<TableColumn> DescribeTable(ProviderSession& session, const std::string& database,
                                       const std::string& table) {
    const std::string from = (database.empty() ? "" : QuotedName(database) + ".") + QuotedName(table);
    const std::vector<ColumnInfo> infos = session.Query("SELECT * FROM " + from + " LIMIT 0")->Columns();
    const std::vector<Declaration> declarations = ReadDeclarations(session, database, table);
    std::vector<TableColumn> columns;
    for (const ColumnInfo& info : infos) {
        TableColumn& column = columns.emplace_back(TableColumn{info, ""});
        const auto declared = std::find_if(declarations.begin(), declarations.end(),
                                           [&](const Declaration& one) { return one.name == info.name; });
        if (declared == declarations.end()) continue;
        column.typeName = declared->typeName;
        column.isKey = declared->isKey;
        column.isAssigned = declared->isAssigned;
    }
    return columns;
}

}  // namespace varnel::mysql
