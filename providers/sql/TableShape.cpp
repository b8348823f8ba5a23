#include "providers/sql/TableShape.h"

#include "ado/types/ConnectionString.h"
#include "platform/CodePage.h"

namespace varnel::sql {

std::string TableShape::Place(std::size_t column) const {
    return "column '" + columns[column].name + "' of table '" + name + "'";
}

std::ptrdiff_t FindColumn(const TableShape& table, std::string_view name) {
    if (table.file != nullptr) {
        const std::optional<std::size_t> found = table.file->FindColumn(name);
        return found ? static_cast<std::ptrdiff_t>(*found) : -1;
    }
    for (std::size_t i = 0; i < table.columns.size(); ++i)
        if (EqualNoCase(table.columns[i].name, name)) return static_cast<std::ptrdiff_t>(i);
    const std::string folded = FoldCase(name);
    for (std::size_t i = 0; i < table.columns.size(); ++i)
        if (FoldCase(table.columns[i].name) == folded) return static_cast<std::ptrdiff_t>(i);
    return -1;
}

std::size_t NeedColumn(const TableShape& table, std::string_view name) {
    const std::ptrdiff_t found = FindColumn(table, name);
    if (found < 0) throw UnknownColumn(table, name);
    return static_cast<std::size_t>(found);
}

Error UnknownColumn(const TableShape& table, std::string_view name) {
    return table.rules->unknownColumn(std::string(name), table.name);
}

}  // namespace varnel::sql
