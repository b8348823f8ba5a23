// The reference table of the matrix: a column of every group of types, and rows that each hold one value hard to carry.
#pragma once

#include <string>
#include <vector>

#include "ado/types/Value.h"
#include "tests/session/NativeTables.h"

namespace varnel {

/// One column; the declarations are empty for a kind that has no such type.
struct MatrixColumn {
    const char* name;
    CellForm form;
    Cell ordinary;             ///< what rows hold that are about another column
    std::vector<Cell> values;  ///< each in a row of its own
    const char *access, *foxPro, *oracle, *mySql, *sqlServer, *text;
    bool isLong = false;        ///< its presence makes a transfer go record by record
    const char* onlyInto = "";  ///< the kinds whose mapping has a type for it; all when empty

    /// How a source table of the kind ("ACCESS" …, "TEXTPOLL" without types) declares it.
    std::string DeclaredFor(const std::string& kind) const;
};

/// The columns that a source of the kind can hold and the target has a type for; "ID" comes first. "FIXED" is a target
/// of text in fixed widths.
std::vector<MatrixColumn> MatrixColumns(const std::string& sourceKind, const std::string& targetKind,
                                        bool withLongColumns);
/// Row 1 is ordinary, row 2 Null throughout, and then a row for each value of each column. ID numbers them from 1.
Rows MatrixRows(const std::vector<MatrixColumn>& columns);

/// What a row, numbered from 0, is about: "NAME `O'Brien`".
std::string RowLabel(const std::vector<MatrixColumn>& columns, std::size_t row);

/// A cell as a value for the data layer.
Value ValueOf(const Cell& cell, CellForm form);
/// A value in the one form that is compared: numbers as plain digits, moments as "2003-07-15 13:05:09".
Cell CellOf(const Value& value);
/// A value other than Null as a cell of a delimited file.
void AppendTextCell(std::string& cell, const Value& value);

}  // namespace varnel
