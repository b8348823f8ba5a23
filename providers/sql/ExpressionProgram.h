// An expression of the dialect as SQLite runs it: varnel_value(program, input, …) or one of the aggregates.
#pragma once

#include <memory>
#include <vector>

#include "ado/types/Value.h"
#include "providers/sql/ColumnCodec.h"
#include "providers/sql/ExpressionRules.h"

namespace varnel::sql {

struct ExpressionProgram {
    const ExpressionRules* rules = &kJetRules;
    Expr expression;                  ///< its columns are bound to the inputs
    std::vector<ColumnCodec> codecs;  ///< one per input
    std::vector<Value> inputs;        ///< the row at hand
    std::shared_ptr<const std::vector<Value>> markers;
    /// What the result is converted to and where it is stored; adVariant leaves it as it is.
    DataTypeEnum resultType = adVariant;
    Affinity resultAffinity = Affinity::Blob;

    /// Works out the expression for SQLite's arguments. Throws Error.
    const Value& Run(sqlite3_value** arguments);

private:
    Value scratch_;
    Value converted_;
};

/// Converts a value of the dialect to what a column of this type holds. into is not from. Throws Error{Conversion}.
void ConvertForColumn(const ExpressionRules& rules, const Value& from, DataTypeEnum type, Value& into);

}  // namespace varnel::sql
