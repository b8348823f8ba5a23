// What a driver says of a column, in the data layer's terms, and how its cells are fetched.
#pragma once

#include <sql.h>
#include <sqlext.h>

#include <cstdint>

#include "ado/types/Provider.h"
#include "providers/odbc/ConnectionText.h"
#include "providers/odbc/OdbcHandles.h"

namespace varnel::odbc {

/// How a cell crosses the driver's border.
enum class CellForm : std::uint8_t {
    Integer,      ///< 64 bits
    UnsignedBig,  ///< 64 bits without sign, delivered as an exact number beyond the signed range
    Boolean,
    Single,  ///< as a double
    Double,
    Decimal,   ///< as text
    Currency,  ///< as text
    Date,
    Time,
    DateTime,
    Guid,
    Text,
    Bytes,
    LongText,  ///< in pieces
    LongBytes  ///< in pieces
};

/// SQL Server's datetime goes in steps of a 300th of a second.
inline constexpr std::int64_t kThreeHundredth = -1;

struct OdbcColumn {
    ColumnInfo info;
    CellForm form = CellForm::Text;
    std::size_t cellBytes = 0;  ///< room for one cell, the end mark of a text included; 0 for long cells
    /// Microseconds between two moments that it tells apart, or kThreeHundredth; 0: unknown.
    std::int64_t momentStep = 0;
    bool IsLong() const { return form == CellForm::LongText || form == CellForm::LongBytes; }
};

/// number: from 1. Throws the driver's failure through link-independent Error{Connection}.
struct DriverColumn {
    std::string name, typeName;
    SQLSMALLINT type = 0;
    SQLULEN size = 0;
    SQLSMALLINT digits = 0;
    bool nullable = true;
    bool isUnsigned = false;
};
/// False when the driver refuses.
bool ReadDriverColumn(const StatementHandle& statement, SQLUSMALLINT number, DriverColumn& column);

OdbcColumn DescribeColumn(const DriverColumn& column, const ConnectionText& connection);

}  // namespace varnel::odbc
