// What the dialects' tokenizers share: a place in the text, and the tokens that look the same everywhere.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "providers/sql/SqlTokens.h"

namespace varnel::sql {

class TokenScanner {
public:
    explicit TokenScanner(std::string_view statement) : text_(statement) {}
    virtual ~TokenScanner() = default;

    /// Throws Error{Syntax}.
    std::vector<Token> All();

    static bool IsDigit(char c) { return c >= '0' && c <= '9'; }
    static bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
    /// A letter, an underscore, or a byte of a letter beyond ASCII.
    static bool IsWordStart(char c);
    static bool IsHexDigit(char c);

protected:
    virtual void SkipBlanks();
    /// Reads one token; there is at least one character.
    virtual void ScanOne() = 0;

    char Peek(std::size_t ahead = 0) const { return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0'; }
    void Add(TokenKind kind, std::size_t from, std::string text) { tokens_.push_back({kind, std::move(text), from}); }

    /// The digits from here on: 12, 1.5, .5, 1E3.
    void ScanNumber();
    /// Hexadecimal digits behind a prefix of two characters.
    void ScanHex();
    /// A text in quotes, the quote doubled inside.
    void ScanQuoted(TokenKind kind, char quote);
    /// Everything up to a closing character.
    void ScanUpTo(TokenKind kind, char close);
    /// One of these signs; the longer ones first. Throws Error{Syntax} for any other character.
    void ScanSymbol(std::span<const std::string_view> pairs, std::string_view singles);
    [[noreturn]] void Unclosed(std::size_t from) const;

    std::string_view text_;
    std::size_t at_ = 0;
    std::vector<Token> tokens_;
};

}  // namespace varnel::sql
