#include "providers/sql/TokenCursor.h"

#include <algorithm>

#include "ado/types/ConnectionString.h"
#include "platform/Error.h"

namespace varnel::sql {

bool IsReservedWord(std::string_view word) {
    static constexpr std::string_view kWords[] = {
        "select", "distinct", "from",   "where", "group",  "having", "order", "by",     "and",     "or",
        "not",    "xor",      "eqv",    "imp",   "mod",    "like",   "alike", "in",     "between", "is",
        "null",   "as",       "insert", "into",  "values", "update", "set",   "delete", "create",  "drop",
        "table",  "union",    "join",   "inner", "left",   "right",  "on",    "asc",    "desc"};
    // LEFT and RIGHT are functions as well; a parenthesis tells them apart where a name may stand.
    return std::any_of(std::begin(kWords), std::end(kWords), [&](auto known) { return EqualNoCase(word, known); });
}

TokenCursor::TokenCursor(std::string_view statement, const Grammar& grammar)
    : statement_(statement), grammar_(grammar), tokens_(grammar.tokenize(statement)) {}

const Token& TokenCursor::Ahead(std::size_t count) const {
    return tokens_[std::min(at_ + count, tokens_.size() - 1)];
}

const Token& TokenCursor::Take() {
    const Token& now = tokens_[at_];
    if (now.kind != TokenKind::End) ++at_;
    return now;
}

bool TokenCursor::Is(const Token& token, std::string_view keyword) const {
    if (token.kind != TokenKind::Word) return false;
    const std::size_t length = token.text.size();
    const bool cut = grammar_.shortestKeyword != 0 && length >= grammar_.shortestKeyword && length < keyword.size();
    return EqualNoCase(token.text, cut ? keyword.substr(0, length) : keyword);
}

bool TokenCursor::IsSymbol(const Token& token, std::string_view symbol) {
    return token.kind == TokenKind::Symbol && token.text == symbol;
}

Operator TokenCursor::TakeOperator(OperatorLevel level) {
    for (const OperatorWord& word : level) {
        if (!AtSymbol(word.text) && !AtWord(word.text)) continue;
        Take();
        return word.op;
    }
    return Operator::None;
}

bool TokenCursor::TakeWord(std::string_view keyword) {
    if (!AtWord(keyword)) return false;
    Take();
    return true;
}

bool TokenCursor::TakeSymbol(std::string_view symbol) {
    if (!AtSymbol(symbol)) return false;
    Take();
    return true;
}

void TokenCursor::NeedWord(std::string_view keyword) {
    if (!TakeWord(keyword)) Fail();
}

void TokenCursor::NeedSymbol(std::string_view symbol) {
    if (!TakeSymbol(symbol)) Fail();
}

bool TokenCursor::AtName() const {
    const Token& now = Now();
    if (now.kind == TokenKind::Name || now.kind == TokenKind::DoubleQuoted) return true;
    return now.kind == TokenKind::Word && !IsReservedWord(now.text);
}

std::string TokenCursor::TakeName() {
    if (!AtName() || Now().text.empty()) Fail();
    return Take().text;
}

std::string TokenCursor::TakeTableName(std::string* owner) {
    std::string name = TakeName();
    while (TakeSymbol(".")) {
        if (owner != nullptr) *owner = name;
        name = TakeName();
    }
    return name;
}

void TokenCursor::Fail() const {
    const std::string near = Now().kind == TokenKind::End ? "at its end" : "near '" + Now().text + "'";
    throw Error(ErrorKind::Syntax, statement_, "Syntax error in " + clause_ + " " + near + ".");
}

void TokenCursor::Fail(const std::string& text) const {
    throw Error(ErrorKind::Syntax, statement_, text);
}

}  // namespace varnel::sql
