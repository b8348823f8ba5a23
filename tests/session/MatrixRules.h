// What a pair of kinds changes by rule on the way, each change with its reason.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "tests/session/MatrixRows.h"
#include "tests/support/TestRepository.h"

namespace varnel {

/// A session of the matrix as the rules look at it.
struct MatrixTrip {
    std::string source, target;  ///< kinds
    bool recordByRecord;
    const std::vector<MatrixColumn>& columns;
    const std::vector<TestColumn>& described;  ///< the columns as the session maps them
};

/// A cell of column k as the target is to hold it. The reasons of what changed it are added to why.
Cell CarriedCell(const MatrixTrip& trip, std::size_t k, const Cell& cell, std::set<std::string>& why);
/// Whether the server refuses the statement of a whole batch because of this cell.
bool SpoilsABatch(const MatrixTrip& trip, std::size_t k, const Cell& cell);
/// A cell in the form in which both sides are compared: flags as "1" and "0" however a kind spells them.
Cell ComparedCell(const MatrixColumn& column, const Cell& cell);
/// A cell that was put into a source table as the source's kind holds it.
Cell HeldCell(const std::string& sourceKind, const MatrixColumn& column, const Cell& cell);

}  // namespace varnel
