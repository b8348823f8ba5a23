// What the expressions of a dialect mean: how values compare, what its operators make of them, which functions it has.
// One evaluator (Evaluator.h) works out the expressions of every dialect by such a table.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "ado/types/Value.h"
#include "platform/Error.h"
#include "providers/sql/DeclaredTypes.h"
#include "providers/sql/Like.h"
#include "providers/sql/SqlAst.h"

namespace varnel::sql {

struct ExpressionRules {
    /// Negative, 0 or positive; nothing when one is Null. Throws Error{Conversion} for kinds that do not compare.
    std::optional<int> (*compare)(const Value& a, const Value& b);
    /// a op b for the operators that compare; nothing when one is Null. Throws Error{Conversion}.
    std::optional<bool> (*holds)(Operator op, const Value& a, const Value& b);
    /// out = a op b for the operators that make a value. Neither is Null, except for Join; out is neither a nor b.
    /// Throws Error{Conversion}.
    void (*calculate)(Operator op, const Value& a, const Value& b, Value& out);
    /// out = -a; a is not Null.
    void (*negate)(const Value& a, Value& out);
    /// Nothing for Null. Throws Error{Conversion} for what is neither true nor false.
    std::optional<bool> (*truth)(const Value& value);
    /// The two sides of LIKE as text, without what does not count. Not Null; the result lies in value or in scratch.
    std::string_view (*likeText)(const Value& value, std::string& scratch);
    LikeSigns like;
    /// Null when the dialect has no such function. name: any case.
    const SqlFunction* (*function)(std::string_view name);
    Error (*unknownFunction)(const std::string& name);
    Error (*wrongArguments)(const std::string& name);
    Error (*unknownColumn)(const std::string& name, const std::string& table);
    /// Chooses between operators by the types of their operands, once an expression's names are bound. types: by
    /// Expr::slot. Null when values alone decide.
    void (*settle)(Expr& expression, std::span<const DeclaredType> types);
    int truthAsNumber;      ///< what True is in a column of numbers
    bool foldsCase;         ///< texts are grouped and ordered without case
    bool rangesGoBothWays;  ///< BETWEEN accepts its ends in either order
    bool truthWords;        ///< the bare words Yes, No, On and Off are truths
};

extern const ExpressionRules kJetRules;

/// What a comparison says of two values in this order; op: Equal to GreaterEqual.
bool OrderHolds(Operator op, int order);

}  // namespace varnel::sql
