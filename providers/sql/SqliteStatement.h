// A statement of the dialect, made ready for SQLite: its text is prepared, its expressions and constants are bound.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ado/types/Provider.h"
#include "providers/sql/ColumnCodec.h"
#include "providers/sql/ExpressionProgram.h"
#include "providers/sql/SqliteFile.h"

namespace varnel::sql {

/// A parameter of the SQLite text whose value is worked out before each run.
struct BoundParameter {
    int number = 0;   ///< SQLite's parameter number, from 1
    Expr expression;  ///< without columns
    DataTypeEnum type = adVariant;
    Affinity affinity = Affinity::Blob;
    bool refusesNull = false;  ///< a key that SQLite would number instead of refusing
    std::string column;        ///< for error texts
};

/// An expression that SQLite runs for every row.
struct BoundProgram {
    int number = 0;  ///< SQLite's parameter number, from 1
    std::unique_ptr<ExpressionProgram> program;
};

struct SqliteStatement {
    TrackedStatement tracked;
    std::vector<ColumnInfo> columns;     ///< of the rows; empty for a statement without rows
    std::vector<ColumnCodec> codecs;     ///< one per column
    std::vector<BoundProgram> programs;  ///< live as long as the statement
    std::vector<BoundParameter> parameters;
    std::shared_ptr<std::vector<Value>> markers;  ///< the values of the ? markers, read by expressions
    int parameterCount = 0;                       ///< SQLite's parameters given out so far
};

}  // namespace varnel::sql
