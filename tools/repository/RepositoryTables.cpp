#include "tools/repository/RepositoryTables.h"

#include <algorithm>

namespace varnel::admin {

std::string CreateTableStatement(const RepositoryTable& table) {
    std::string statement = "CREATE TABLE " + std::string(table.name) + " (";
    for (const RepositoryColumn& column : table.columns) {
        if (&column != table.columns.data()) statement += ", ";
        statement += std::string(column.name) + " " + std::string(column.type);
    }
    if (!table.key.empty())
        statement += ", CONSTRAINT " + std::string(table.name) + "Key PRIMARY KEY (" + std::string(table.key) + ")";
    return statement + ")";
}

std::vector<std::string> KeyColumns(const RepositoryTable& table) {
    std::vector<std::string> columns;
    std::string_view rest = table.key;
    while (!rest.empty()) {
        const std::size_t comma = std::min(rest.find(", "), rest.size());
        columns.emplace_back(rest.substr(0, comma));
        rest.remove_prefix(std::min(comma + 2, rest.size()));
    }
    return columns;
}

}  // namespace varnel::admin
