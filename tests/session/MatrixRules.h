// What a pair of kinds changes by rule on the way, each change with its reason.
#pragma once

#include <string>
#include <vector>

#include "tests/session/MatrixRows.h"

namespace varnel {

/// A cell of column k as the target is to hold it.
Cell CarriedCell(const std::string& sourceKind, const std::string& targetKind, const std::vector<MatrixColumn>& columns,
                 std::size_t k, const Cell& cell);
/// A cell in the form in which both sides are compared: flags as "1" and "0" however a kind spells them.
Cell ComparedCell(const MatrixColumn& column, const Cell& cell);

}  // namespace varnel
