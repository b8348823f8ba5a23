#include "providers/sql/SqlTokens.h"

#include <charconv>
#include <cstdint>

#include "platform/Error.h"

namespace varnel::sql {
namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsWordStart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || static_cast<unsigned char>(c) >= 0x80;
}
bool IsWordPart(char c) {
    return IsWordStart(c) || IsDigit(c) || c == '$';
}
bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}
bool IsHexDigit(char c) {
    return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

class Scanner {
public:
    explicit Scanner(std::string_view statement) : text_(statement) {}

    std::vector<Token> All() {
        for (SkipBlanks(); at_ < text_.size(); SkipBlanks()) ScanOne();
        Add(TokenKind::End, at_, "");
        return std::move(tokens_);
    }

private:
    char Peek(std::size_t ahead = 0) const { return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0'; }
    void SkipBlanks() {
        while (at_ < text_.size() && IsBlank(text_[at_])) ++at_;
    }
    void Add(TokenKind kind, std::size_t from, std::string text) { tokens_.push_back({kind, std::move(text), from}); }

    void ScanOne() {
        const char c = Peek();
        if (IsWordStart(c)) return ScanWord();
        if (IsDigit(c) || (c == '.' && IsDigit(Peek(1)))) return ScanNumber();
        if (c == '&' && (Peek(1) == 'H' || Peek(1) == 'h') && IsHexDigit(Peek(2)) && !AfterOperand()) return ScanHex();
        if (c == '\'') return ScanQuoted(TokenKind::Text, '\'');
        if (c == '"') return ScanQuoted(TokenKind::DoubleQuoted, '"');
        if (c == '`') return ScanQuoted(TokenKind::Name, '`');
        if (c == '[') return ScanUpTo(TokenKind::Name, ']');
        if (c == '#') return ScanUpTo(TokenKind::Date, '#');
        ScanSymbol();
    }

    /// True when the last token ends an operand, so that what follows is an operator.
    bool AfterOperand() const {
        if (tokens_.empty()) return false;
        const Token& last = tokens_.back();
        return last.kind != TokenKind::Symbol || last.text == ")";
    }

    void ScanWord() {
        const std::size_t from = at_;
        // A # inside a word stands for the dot of a file name: orders#csv.
        while (at_ < text_.size() && (IsWordPart(Peek()) || (Peek() == '#' && IsWordPart(Peek(1))))) ++at_;
        Add(TokenKind::Word, from, std::string(text_.substr(from, at_ - from)));
    }

    void ScanNumber() {
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

    void ScanHex() {
        const std::size_t from = at_;
        std::uint64_t number = 0;
        const auto read = std::from_chars(text_.data() + at_ + 2, text_.data() + text_.size(), number, 16);
        if (read.ec != std::errc())
            throw Error(ErrorKind::Syntax, std::string(text_), "Overflow in a hexadecimal number.");
        at_ = static_cast<std::size_t>(read.ptr - text_.data());
        Add(TokenKind::Number, from, std::to_string(number));
    }

    void ScanQuoted(TokenKind kind, char quote) {
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

    void ScanUpTo(TokenKind kind, char close) {
        const std::size_t from = at_;
        const std::size_t end = text_.find(close, at_ + 1);
        if (end == std::string_view::npos) Unclosed(from);
        at_ = end + 1;
        Add(kind, from, std::string(text_.substr(from + 1, end - from - 1)));
    }

    void ScanSymbol() {
        static constexpr std::string_view kPairs[] = {"<>", "<=", ">=", "!="};
        static constexpr std::string_view kSingles = "()=<>+-*/\\^&,.;{}!";
        const std::size_t from = at_;
        for (const std::string_view pair : kPairs) {
            if (text_.substr(at_, 2) != pair) continue;
            at_ += 2;
            return Add(TokenKind::Symbol, from, std::string(pair));
        }
        const char c = text_[at_++];
        if (c == '?') return Add(TokenKind::Marker, from, "?");
        if (kSingles.find(c) == std::string_view::npos)
            throw Error(ErrorKind::Syntax, std::string(text_),
                        std::string("Syntax error: unexpected character '") + c + "'.");
        Add(TokenKind::Symbol, from, std::string(1, c));
    }

    [[noreturn]] void Unclosed(std::size_t from) const {
        const std::string opening(1, text_[from]);
        throw Error(ErrorKind::Syntax, std::string(text_), "Syntax error: " + opening + " is not closed.");
    }

    std::string_view text_;
    std::size_t at_ = 0;
    std::vector<Token> tokens_;
};

}  // namespace

std::vector<Token> Tokenize(std::string_view statement) {
    return Scanner(statement).All();
}

}  // namespace varnel::sql
