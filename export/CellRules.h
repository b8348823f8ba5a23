// How a field becomes a cell of an output line: its rule group, and the cell's text in either layout.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ado/types/DataTypeEnum.h"
#include "ado/types/Value.h"
#include "repository/model/SessionModel.h"

namespace varnel {

enum class CellGroup { Text, Date, TimeStamp, Number, Numeric, VarNumeric, Boolean, Other };

/// The group of a field by its ADO type.
CellGroup GroupOfType(DataTypeEnum type);
/// The group of a column by the output type name that the session stores for it ("Char", "200", "Integer" …).
CellGroup GroupOfTypeName(std::string_view typeName);

/// What the cells of one column follow.
struct CellRule {
    CellGroup group = CellGroup::Other;
    DataTypeEnum type = adEmpty;   ///< the field's type
    std::int64_t definedSize = 0;  ///< the field's, in characters
    bool leftAligned = false;      ///< numeric, variable numeric and other cells of the fixed-width layout
};

/// Appends a cell of the delimited layout: Null is empty, a text is trimmed and stands in qualifiers, anything else is
/// its default text. Throws Error{Conversion}; out may then hold a part of the cell.
void AppendDelimitedCell(std::string& out, const CellRule& rule, const Value& value, std::string_view qualifier);
/// Appends a cell of the fixed-width layout. Throws as above.
void AppendFixedCell(std::string& out, const CellRule& rule, const Value& value);
/// Appends the blanks of a cell that failed; nothing for a width beyond all reason.
void AppendFailedFixedCell(std::string& out, const CellRule& rule);

/// Appends a header cell: the column's DCName, in the fixed-width layout cut or padded to the width that its DDType
/// and DWidth give.
void AppendHeaderCell(std::string& out, const ColumnEntry& column, bool delimited);

}  // namespace varnel
