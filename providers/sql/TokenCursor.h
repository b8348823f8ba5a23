// A place in the tokens of a statement, with the questions that a parser asks there.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "providers/sql/Grammar.h"
#include "providers/sql/SqlTokens.h"

namespace varnel::sql {

class TokenCursor {
public:
    TokenCursor(std::string_view statement, const Grammar& grammar);

    const Token& Now() const { return tokens_[at_]; }
    const Token& Ahead(std::size_t count) const;
    /// Gives the current token and goes on to the next.
    const Token& Take();

    bool AtWord(std::string_view keyword) const { return Is(Now(), keyword); }
    bool AtSymbol(std::string_view symbol) const { return IsSymbol(Now(), symbol); }
    bool TakeWord(std::string_view keyword);
    bool TakeSymbol(std::string_view symbol);
    void NeedWord(std::string_view keyword);
    void NeedSymbol(std::string_view symbol);

    /// A name in any of its quotes, or a bare word that is no keyword of a clause.
    bool AtName() const;
    std::string TakeName();
    /// The last part of owner.name. owner: gets the part before it, "" when there is none; null when it means nothing.
    std::string TakeTableName(std::string* owner = nullptr);

    /// True for the keyword, cut down as far as the grammar lets it.
    bool Is(const Token& token, std::string_view keyword) const;
    static bool IsSymbol(const Token& token, std::string_view symbol);
    /// Takes one of these operators; None when none is there.
    Operator TakeOperator(OperatorLevel level);
    const std::string& Statement() const { return statement_; }

    /// The clause that is being read, for the error text: "FROM clause".
    void Enter(std::string_view clause) { clause_ = clause; }
    /// Throws Error{Syntax} "Syntax error in FROM clause near 'x'."
    [[noreturn]] void Fail() const;
    /// Throws Error{Syntax} with a text of its own.
    [[noreturn]] void Fail(const std::string& text) const;

private:
    std::string statement_;
    const Grammar& grammar_;
    std::vector<Token> tokens_;
    std::size_t at_ = 0;
    std::string clause_ = "statement";
};

/// True for a word that begins or joins clauses and therefore is no bare name.
bool IsReservedWord(std::string_view word);

}  // namespace varnel::sql
