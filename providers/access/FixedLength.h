// How many bytes a value takes in a row.
#pragma once

#include <cstdint>

#include "providers/access/TableDefinition.h"

namespace varnel::access {

/// Bytes of a type that always has the same number; 0 for the others.
constexpr std::uint16_t FixedLength(ColumnType type) {
    switch (type) {
        case ColumnType::Byte:
            return 1;
        case ColumnType::Integer:
            return 2;
        case ColumnType::Long:
        case ColumnType::Single:
        case ColumnType::Complex:
            return 4;
        case ColumnType::Currency:
        case ColumnType::Double:
        case ColumnType::Date:
        case ColumnType::BigInt:
            return 8;
        case ColumnType::Guid:
            return 16;
        case ColumnType::Numeric:
            return 17;
        case ColumnType::ExtendedDate:
            return 42;
        default:
            return 0;
    }
}

}  // namespace varnel::access
