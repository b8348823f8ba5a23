#include "tools/RepositoryTables.h"

namespace varnel::admin {

std::string CreateTableStatement(const RepositoryTable& table) {
    std::string statement = "CREATE TABLE " + std::string(table.name) + " (";
    for (const RepositoryColumn& column : table.columns) {
        if (&column != table.columns.data()) statement += ", ";
        statement += std::string(column.name) + " " + std::string(column.type) + (column.required ? " NOT NULL" : "");
    }
    if (!table.key.empty())
        statement += ", CONSTRAINT " + std::string(table.name) + "Key PRIMARY KEY (" + std::string(table.key) + ")";
    return statement + ")";
}

std::string SelectAllColumns(const RepositoryTable& table) {
    std::string statement = "SELECT ";
    for (const RepositoryColumn& column : table.columns) {
        if (&column != table.columns.data()) statement += ", ";
        statement += column.name;
    }
    return statement + " FROM " + std::string(table.name);
}

}  // namespace varnel::admin
