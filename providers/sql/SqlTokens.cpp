#include "providers/sql/SqlTokens.h"

#include "providers/sql/TokenScanner.h"

namespace varnel::sql {
namespace {

class JetScanner : public TokenScanner {
public:
    using TokenScanner::TokenScanner;

private:
    static bool IsWordPart(char c) { return IsWordStart(c) || IsDigit(c) || c == '$'; }

    void ScanOne() override {
        static constexpr std::string_view kPairs[] = {"<>", "<=", ">=", "!="};
        const char c = Peek();
        if (IsWordStart(c)) return ScanWord();
        if (IsDigit(c) || (c == '.' && IsDigit(Peek(1)))) return ScanNumber();
        if (c == '&' && (Peek(1) == 'H' || Peek(1) == 'h') && IsHexDigit(Peek(2)) && !AfterOperand()) return ScanHex();
        if (c == '\'') return ScanQuoted(TokenKind::Text, '\'');
        if (c == '"') return ScanQuoted(TokenKind::DoubleQuoted, '"');
        if (c == '`') return ScanQuoted(TokenKind::Name, '`');
        if (c == '[') return ScanUpTo(TokenKind::Name, ']');
        if (c == '#') return ScanUpTo(TokenKind::Date, '#');
        ScanSymbol(kPairs, "()=<>+-*/\\^&,.;{}!");
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
};

}  // namespace

std::vector<Token> Tokenize(std::string_view statement) {
    return JetScanner(statement).All();
}

}  // namespace varnel::sql
