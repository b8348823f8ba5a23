#include "providers/sql/StoreDefinitions.h"

#include <algorithm>

#include "platform/CodePage.h"
#include "platform/Error.h"

namespace varnel::sql {
namespace {

ColumnDefinition& Named(std::vector<ColumnDefinition>& columns, const std::string& name) {
    const std::string folded = FoldCase(name);
    const auto found = std::find_if(columns.begin(), columns.end(),
                                    [&](const ColumnDefinition& column) { return FoldCase(column.name) == folded; });
    if (found == columns.end()) throw Error(ErrorKind::Syntax, name, "There is no column '" + name + "' for the key.");
    return *found;
}

}  // namespace

std::vector<ColumnDefinition> DefinitionsOf(const CreateTableStatement& create) {
    std::vector<ColumnDefinition> columns = create.columns;
    for (const ColumnDefinition& column : columns)
        if (&Named(columns, column.name) != &column)
            throw Error(ErrorKind::Constraint, create.table,
                        "Field '" + column.name + "' already exists in table '" + create.table + "'.");
    for (const std::string& name : create.primaryKey) Named(columns, name).primaryKey = true;
    for (const std::vector<std::string>& names : create.unique) {
        if (names.size() != 1)
            throw Error(ErrorKind::NotSupported, create.table, "UNIQUE over several columns is not supported.");
        Named(columns, names[0]).unique = true;
    }
    return columns;
}

}  // namespace varnel::sql
