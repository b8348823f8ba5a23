#include "providers/sql/SqliteCatalog.h"

#include <map>
#include <set>

#include "ado/types/ConnectionString.h"
#include "platform/CodePage.h"

namespace varnel::sql {
namespace {

std::string TextColumn(const Statement& statement, int column) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement.get(), column));
    return text == nullptr ? std::string()
                           : std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(statement.get(), column)));
}

/// Steps to the next row; false at the end.
bool Step(SqliteFile& file, const Statement& statement) {
    const int code = sqlite3_step(statement.get());
    if (code != SQLITE_ROW && code != SQLITE_DONE) throw file.Failure(code);
    return code == SQLITE_ROW;
}

/// A key column of type INTEGER is the row's own number; SQLite numbers it when it is not set.
void DescribeRowNumber(SqliteFile& file, const std::string& table, ShapeColumn& column) {
    int numbered = 0;
    sqlite3_table_column_metadata(file.Handle(), "main", table.c_str(), column.name.c_str(), nullptr, nullptr, nullptr,
                                  nullptr, &numbered);
    column.type.counter = numbered != 0;
    column.refusesNull = numbered == 0;
}

bool HasRowNumbers(SqliteFile& file, const std::string& table) {
    const Statement list = PrepareStatement(
        file.Handle(), "SELECT wr FROM pragma_table_list WHERE schema='main' AND name=?1", file.StoredPath());
    sqlite3_bind_text(list.get(), 1, table.c_str(), -1, SQLITE_STATIC);
    return !Step(file, list) || sqlite3_column_int(list.get(), 0) == 0;
}

}  // namespace

std::optional<std::string> FindTable(SqliteFile& file, std::string_view name) {
    if (EqualNoCase(name, "sqlite_master")) return "sqlite_master";  // SQLite's own list of tables does not list itself
    const Statement tables = PrepareStatement(
        file.Handle(), "SELECT name FROM sqlite_schema WHERE type IN ('table','view')", file.StoredPath());
    const std::string folded = FoldCase(name);
    while (Step(file, tables)) {
        std::string found = TextColumn(tables, 0);
        if (EqualNoCase(found, name) || FoldCase(found) == folded) return found;
    }
    return std::nullopt;
}

TableShape ReadShape(SqliteFile& file, const std::string& name) {
    const std::optional<std::string> real = FindTable(file, name);
    if (!real)
        throw Error(ErrorKind::Constraint, file.StoredPath(),
                    "The Jet database engine cannot find the input table or query '" + name + "'.");
    TableShape shape;
    shape.name = *real;
    std::map<int, std::size_t> key;  // place in the primary key, from 1, to the column
    std::set<std::size_t> integers;  // columns declared with exactly this word
    const Statement columns = PrepareStatement(
        file.Handle(), "SELECT name,type,\"notnull\",pk,hidden FROM pragma_table_xinfo(?1)", file.StoredPath());
    sqlite3_bind_text(columns.get(), 1, real->c_str(), -1, SQLITE_STATIC);
    while (Step(file, columns)) {
        if (sqlite3_column_int(columns.get(), 4) == 1) continue;  // a hidden column of a virtual table
        ShapeColumn column;
        const std::string declaration = TextColumn(columns, 1);
        column.name = TextColumn(columns, 0);
        column.type = TypeOfDeclaration(declaration);
        column.affinity = AffinityOf(declaration);
        column.notNull = sqlite3_column_int(columns.get(), 2) != 0;
        if (const int place = sqlite3_column_int(columns.get(), 3); place > 0) key[place] = shape.columns.size();
        if (EqualNoCase(declaration, "INTEGER")) integers.insert(shape.columns.size());
        shape.columns.push_back(std::move(column));
    }
    const bool rowNumbers = HasRowNumbers(file, *real);
    const bool rowNumberKey = rowNumbers && key.size() == 1 && integers.contains(key.begin()->second);
    if (rowNumberKey)
        DescribeRowNumber(file, *real, shape.columns[key.begin()->second]);
    else if (rowNumbers)
        for (const auto& [place, column] : key) shape.sortKey.push_back(shape.columns[column].name);
    return shape;
}

std::vector<TableInfo> ListTables(SqliteFile& file) {
    const Statement list = PrepareStatement(file.Handle(),
                                            "SELECT name,type='view' FROM sqlite_schema WHERE type IN ('table','view') "
                                            "AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY name COLLATE NOCASE",
                                            file.StoredPath());
    std::vector<TableInfo> tables;
    while (Step(file, list)) tables.push_back({"", TextColumn(list, 0), sqlite3_column_int(list.get(), 1) != 0});
    return tables;
}

std::vector<TableColumn> DescribeTable(SqliteFile& file, const std::string& name) {
    const TableShape shape = ReadShape(file, name);
    const Statement list = PrepareStatement(
        file.Handle(), "SELECT type,pk,hidden FROM pragma_table_xinfo(?1) WHERE hidden<>1", file.StoredPath());
    sqlite3_bind_text(list.get(), 1, shape.name.c_str(), -1, SQLITE_STATIC);
    std::vector<TableColumn> columns;
    for (const ShapeColumn& column : shape.columns) {
        if (!Step(file, list)) break;
        TableColumn described{DescribeColumn(column.name, column.type, !column.notNull), TextColumn(list, 0)};
        described.isKey = sqlite3_column_int(list.get(), 1) > 0;
        described.isAssigned = column.type.counter || sqlite3_column_int(list.get(), 2) > 1;  // or computed
        columns.push_back(std::move(described));
    }
    return columns;
}

}  // namespace varnel::sql
