// The words of a statement. Blanks, tabs, CR and LF separate.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace varnel::sql {

enum class TokenKind {
    End,
    Word,          ///< a bare name or keyword
    Name,          ///< [name] or `name`
    DoubleQuoted,  ///< "…": a name after FROM, else a text (or a column, in a column list)
    Text,          ///< '…'
    Number,        ///< 12, 1.5, .5, 1E3; &H1F is written out in decimal
    Date,          ///< the inside of #…#
    Marker,        ///< ?
    TablePath,     ///< a table name as it stands after FROM and its like, up to the next clause
    Symbol         ///< an operator or punctuation mark, one or two characters
};

struct Token {
    TokenKind kind = TokenKind::End;
    std::string text;    ///< without quotes; doubled quotes are single
    std::size_t at = 0;  ///< byte offset of the token in the statement
};

/// The tokens of a statement in the Jet dialect, the last one of kind End; nothing is a comment.
/// Throws Error{Syntax} for an unclosed quote, bracket or date, and for a character without meaning.
std::vector<Token> Tokenize(std::string_view statement);

}  // namespace varnel::sql
