// A table as statements see it: its columns and their types, wherever it is kept.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Error.h"
#include "providers/sql/DeclaredTypes.h"
#include "providers/sql/ExpressionRules.h"
#include "providers/tablefile/TableFile.h"

namespace varnel::sql {

struct ShapeColumn {
    std::string name;
    DeclaredType type;
    Affinity affinity = Affinity::Blob;
    bool notNull = false;
    bool refusesNull = false;  ///< a whole-number key that SQLite would number by itself when it is given Null
};

struct TableShape {
    std::string name;
    std::vector<ShapeColumn> columns;
    /// The primary key's columns in order, unless the stored order is the key's order already.
    std::vector<std::string> sortKey;

    /// How the table's dialect reads expressions over it.
    const ExpressionRules* rules = &kJetRules;
    /// Where the format knows its columns by further names; null: only by those above.
    const TableFile* file = nullptr;

    /// "column 'Name' of table 'Customer'"
    std::string Place(std::size_t column) const;
};

/// The position of the column with this name, without regard to case; -1 when there is none.
std::ptrdiff_t FindColumn(const TableShape& table, std::string_view name);
/// The same; throws the dialect's Error{Syntax} for an unknown name.
std::size_t NeedColumn(const TableShape& table, std::string_view name);
/// That error.
Error UnknownColumn(const TableShape& table, std::string_view name);

}  // namespace varnel::sql
