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

TokenCursor::TokenCursor(std::string_view statement) : statement_(statement), tokens_(Tokenize(statement)) {}

const Token& TokenCursor::Ahead(std::size_t count) const {
    return tokens_[std::min(at_ + count, tokens_.size() - 1)];
}

const Token& TokenCursor::Take() {
    const Token& now = tokens_[at_];
    if (now.kind != TokenKind::End) ++at_;
    return now;
}

bool TokenCursor::IsWord(const Token& token, std::string_view keyword) {
    return token.kind == TokenKind::Word && EqualNoCase(token.text, keyword);
}

bool TokenCursor::IsSymbol(const Token& token, std::string_view symbol) {
    return token.kind == TokenKind::Symbol && token.text == symbol;
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
