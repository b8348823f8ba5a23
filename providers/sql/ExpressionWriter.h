// Expressions of the dialect as SQLite text. A plain column stays a column; everything else becomes
// varnel_value(program, columns…) or an aggregate over such a program.
#pragma once

#include <string>
#include <vector>

#include "providers/sql/SqliteStatement.h"
#include "providers/sql/TableShape.h"

namespace varnel::sql {

/// A piece of SQLite text that gives a value, and what the value is.
struct WrittenExpression {
    std::string sql;
    DeclaredType type;
    ColumnCodec codec;
};

class ExpressionWriter {
public:
    /// table, alias: what names are looked up in; both outlive the writer. into: gets the programs.
    ExpressionWriter(const TableShape& table, std::string alias, SqliteStatement& into);

    /// A value for a column list; a quoted name that is no column is a text there.
    WrittenExpression Write(const Expr& expression);
    /// A condition: 1, 0 or Null. Aggregates are allowed where aggregates is set (HAVING).
    std::string WriteCondition(const Expr& expression, bool aggregates);
    /// A value by which rows are ordered and grouped: texts as the dialect compares them.
    std::string WriteSortKey(const Expr& expression);
    std::string SortKey(const WrittenExpression& written) const;
    /// A value to be stored into a column.
    std::string WriteForColumn(const Expr& expression, const ShapeColumn& column);
    /// The column itself.
    WrittenExpression WriteColumn(std::size_t column) const;

private:
    struct Inputs;

    std::string WriteProgram(const char* function, Expr expression, Inputs inputs, const ShapeColumn* target);
    /// The conjuncts that compare a whole-number column with a whole number, as SQLite can look them up in an index.
    void WriteIndexable(const Expr& expression, std::string& sql) const;
    WrittenExpression WriteAggregate(const Expr& call);
    void Bind(Expr& expression, Inputs& inputs, bool quotedColumns, bool aggregates);
    void BindNames(Expr& expression, Inputs& inputs, bool quotedColumns, bool aggregates);
    void BindName(Expr& expression, Inputs& inputs, bool quotedColumns) const;
    std::ptrdiff_t FindNamed(const Expr& name) const;

    const TableShape& table_;
    std::string alias_;
    SqliteStatement& into_;
};

/// True for count, sum, avg, min, max and count(*).
bool IsAggregate(const Expr& expression);
bool HasAggregate(const Expr& expression);
/// True when the expression names a column of any table (a bare word that is none is a constant or an error).
bool HasColumns(const Expr& expression);
/// The function's entry and the arguments' number, checked. Throws Error{Syntax} in the dialect's words.
void BindCalls(Expr& expression, const ExpressionRules& rules);
/// Turns Yes, No, On and Off, written as bare words, into literals; false for everything else.
bool BindTruthWord(Expr& expression);
/// For an expression outside of any table: bare True/Yes/On words and quoted texts become literals; a column is an
/// error.
void BindConstant(Expr& expression, const ExpressionRules& rules = kJetRules);

}  // namespace varnel::sql
