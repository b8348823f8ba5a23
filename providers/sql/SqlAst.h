// A statement as the parser understood it. Nothing in here knows where the tables are kept.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "ado/types/Value.h"
#include "providers/tablefile/TableFile.h"

namespace varnel::sql {

enum class ExprKind : std::uint8_t {
    Literal,
    Column,   ///< name; owner "" or the table it was qualified with
    Marker,   ///< slot: which ? of the statement, from 0
    Unary,    ///< op: Negate or Not
    Binary,   ///< op
    Between,  ///< operands: value, one end, other end
    In,       ///< operands: value, then the list
    Like,     ///< operands: value, pattern, and the escape character if one is written
    IsNull,   ///< operands: value
    Call,     ///< name, operands
    CountAll  ///< count(*)
};

enum class Operator : std::uint8_t {
    None,
    Add,
    Subtract,
    Multiply,
    Divide,
    IntegerDivide,
    Modulo,
    Power,
    Join,
    JoinTrimmed,      ///< the left text's trailing blanks go to the end of both
    AddSeconds,       ///< to a date-time
    SubtractSeconds,  ///< from a date-time, or between two
    Equal,
    NotEqual,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    ExactEqual,  ///< ==
    Within,      ///< $: the left text occurs in the right one
    And,
    Or,
    Xor,
    Eqv,
    Imp,
    Negate,
    Not
};

struct SqlFunction;

struct Expr {
    ExprKind kind = ExprKind::Literal;
    Operator op = Operator::None;
    bool negated = false;   ///< NOT of Between, In, Like and IsNull
    bool withTime = false;  ///< a Literal that is a date-time rather than a date
    bool quoted = false;    ///< a Column written in double quotes: a text when there is no such column
    std::string name;
    std::string owner;
    Value literal;
    std::size_t slot = 0;                   ///< Marker: its number. Column: the argument it was bound to
    const SqlFunction* function = nullptr;  ///< Call: set by the binder, null for an aggregate
    std::vector<Expr> operands;
    std::size_t at = 0;  ///< byte offset in the statement, for error texts
};

struct SelectItem {
    Expr expression;
    std::string alias;  ///< "" when none was written
};

struct OrderItem {
    Expr expression;
    bool descending = false;
};

struct SelectStatement {
    bool distinct = false;
    std::optional<std::int64_t> top;
    bool everything = false;  ///< SELECT *
    std::vector<SelectItem> items;
    std::string table;
    std::string wideTable;  ///< all that stands between FROM and the next clause, where that may be one name
    std::string owner;      ///< what stood before the table's name: a schema, or the folder of a text file
    std::string tableAlias;
    std::optional<Expr> where;
    std::vector<Expr> groupBy;
    std::optional<Expr> having;
    std::vector<OrderItem> orderBy;
};

struct InsertStatement {
    std::string table;
    std::vector<std::string> columns;  ///< empty: all of them in order
    std::vector<std::vector<Expr>> rows;
};

struct Assignment {
    std::string column;
    Expr value;
};

struct UpdateStatement {
    std::string table;
    std::vector<Assignment> assignments;
    std::optional<Expr> where;
};

struct DeleteStatement {
    std::string table;
    std::optional<Expr> where;
};

struct CreateTableStatement {
    std::string table;
    std::vector<ColumnDefinition> columns;
    std::vector<std::string> primaryKey;           ///< of a PRIMARY KEY (a, b) clause
    std::vector<std::vector<std::string>> unique;  ///< of UNIQUE (a, b) clauses
};

struct DropTableStatement {
    std::string table;
};

struct ParsedStatement {
    std::variant<SelectStatement, InsertStatement, UpdateStatement, DeleteStatement, CreateTableStatement,
                 DropTableStatement>
        body;
    std::size_t markers = 0;  ///< how many ? it holds
};

}  // namespace varnel::sql
