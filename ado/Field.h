// One column of an open record set, and its value in the current row.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "ado/types/Provider.h"

namespace varnel {

class Recordset;

/// Belongs to its record set and is valid until that is closed.
class Field {
public:
    Field(Recordset& owner, std::size_t index, const ColumnInfo& column)
        : owner_(&owner), index_(index), column_(column) {}

    const std::string& Name() const { return column_.name; }
    DataTypeEnum Type() const { return column_.type; }
    std::int64_t DefinedSize() const { return column_.definedSize; }
    std::uint8_t Precision() const { return column_.precision; }
    std::uint8_t NumericScale() const { return column_.numericScale; }

    /// The current row's own value (the pending record's while one is pending): no copy; valid until the next move.
    /// Throws Error without a current row, and the cell's own failure when it could not be read.
    const Value& GetValue() const;
    /// Sets the pending record's value, converted to the column's type. Throws Error: no pending record, or a value
    /// that does not convert; the field is then not set.
    void SetValue(const Value& value);

private:
    Recordset* owner_;
    std::size_t index_;
    ColumnInfo column_;
};

}  // namespace varnel
