#include "providers/sql/TokenScanner.h"

#include <charconv>
#include <cstdint>

#include "platform/Error.h"

namespace varnel::sql {

bool TokenScanner::IsWordStart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || static_cast<unsigned char>(c) >= 0x80;
}

bool TokenScanner::IsHexDigit(char c) {
    return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

std::vector<Token> TokenScanner::All() {
    for (SkipBlanks(); at_ < text_.size(); SkipBlanks()) ScanOne();
    Add(TokenKind::End, at_, "");
    return std::move(tokens_);
}

void TokenScanner::SkipBlanks() {
    while (at_ < text_.size() && IsBlank(text_[at_])) ++at_;
}

void TokenScanner::ScanNumber() {
    const std::size_t from = at_;
    while (IsDigit(Peek())) ++at_;
    if (Peek() == '.') ++at_;
    while (IsDigit(Peek())) ++at_;
    const std::size_t sign = Peek(1) == '+' || Peek(1) == '-' ? 1 : 0;
    if ((Peek() == 'e' || Peek() == 'E') && IsDigit(Peek(1 + sign))) {
        at_ += 1 + sign;
        while (IsDigit(Peek())) ++at_;
    }
    Add(TokenKind::Number, from, std::string(text_.substr(from, at_ - from)));
}

void TokenScanner::ScanHex() {
    const std::size_t from = at_;
    std::uint64_t number = 0;
    const auto read = std::from_chars(text_.data() + at_ + 2, text_.data() + text_.size(), number, 16);
    if (read.ec != std::errc()) throw Error(ErrorKind::Syntax, std::string(text_), "Overflow in a hexadecimal number.");
    at_ = static_cast<std::size_t>(read.ptr - text_.data());
    Add(TokenKind::Number, from, std::to_string(number));
}

void TokenScanner::ScanQuoted(TokenKind kind, char quote) {
    const std::size_t from = at_++;
    std::string inside;
    for (;; ++at_) {
        if (at_ >= text_.size()) Unclosed(from);
        if (text_[at_] == quote) {
            if (Peek(1) != quote) break;
            ++at_;
        }
        inside += text_[at_];
    }
    ++at_;
    Add(kind, from, std::move(inside));
}

void TokenScanner::ScanUpTo(TokenKind kind, char close) {
    const std::size_t from = at_;
    const std::size_t end = text_.find(close, at_ + 1);
    if (end == std::string_view::npos) Unclosed(from);
    at_ = end + 1;
    Add(kind, from, std::string(text_.substr(from + 1, end - from - 1)));
}

void TokenScanner::ScanSymbol(std::span<const std::string_view> pairs, std::string_view singles) {
    const std::size_t from = at_;
    for (const std::string_view pair : pairs) {
        if (text_.substr(at_, 2) != pair) continue;
        at_ += 2;
        return Add(TokenKind::Symbol, from, std::string(pair));
    }
    const char c = text_[at_++];
    if (c == '?') return Add(TokenKind::Marker, from, "?");
    if (singles.find(c) == std::string_view::npos)
        throw Error(ErrorKind::Syntax, std::string(text_),
                    std::string("Syntax error: unexpected character '") + c + "'.");
    Add(TokenKind::Symbol, from, std::string(1, c));
}

void TokenScanner::Unclosed(std::size_t from) const {
    const std::string opening(1, text_[from]);
    throw Error(ErrorKind::Syntax, std::string(text_), "Syntax error: " + opening + " is not closed.");
}

}  // namespace varnel::sql
