// Statements, read into SqlAst.h. The class reads the Jet dialect's; another dialect derives from it and reads anew
// what it writes in its own way.
#pragma once

#include <string_view>

#include "providers/sql/ExpressionParser.h"
#include "providers/sql/SqlAst.h"
#include "providers/sql/TokenCursor.h"

namespace varnel::sql {

/// Reads one statement of the Jet dialect; a trailing semicolon is allowed, anything after it is not.
/// Throws Error{Syntax} "Syntax error in … clause." with the word at which reading stopped.
ParsedStatement ParseStatement(std::string_view statement);

class StatementParser {
public:
    /// grammar: outlives the parser.
    StatementParser(std::string_view statement, const Grammar& grammar)
        : tokens_(statement, grammar), expressions_(tokens_, grammar) {}
    virtual ~StatementParser() = default;
    StatementParser(const StatementParser&) = delete;
    StatementParser& operator=(const StatementParser&) = delete;

    ParsedStatement Parse();

protected:
    /// The table of a SELECT with its second name, behind FROM.
    virtual void From(SelectStatement& select);
    /// The table of any other statement.
    virtual std::string Table() { return tokens_.TakeTableName(); }
    /// Everything behind CREATE.
    virtual CreateTableStatement CreateTable();
    virtual DropTableStatement DropTable();
    /// Throws for the word that begins no statement.
    [[noreturn]] virtual void FailUnknown();

    TokenCursor tokens_;
    ExpressionParser expressions_;

private:
    SelectStatement Select();
    void ReadItems(SelectStatement& select);
    void ReadGrouping(SelectStatement& select);
    void ReadOrder(SelectStatement& select);
    std::optional<Expr> Where();
    InsertStatement Insert();
    UpdateStatement Update();
    DeleteStatement Delete();
    bool TableConstraint(CreateTableStatement& create);
    ColumnDefinition Column();
    void ReadTypeArguments(ColumnDefinition& column);
    bool ColumnOption(ColumnDefinition& column);
    std::vector<std::string> NameList();
    std::int64_t WholeNumber();
};

}  // namespace varnel::sql
