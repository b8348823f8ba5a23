#include "providers/sql/FoxProTokens.h"

#include <algorithm>

#include "ado/types/ConnectionString.h"
#include "providers/sql/TokenScanner.h"

namespace varnel::sql {
namespace {

/// Keywords may be cut down to four letters.
bool IsKeyword(std::string_view word, std::string_view keyword) {
    constexpr std::size_t kShortest = 4;
    const bool cut = word.size() >= kShortest && word.size() < keyword.size();
    return EqualNoCase(word, cut ? keyword.substr(0, word.size()) : keyword);
}

/// Where a bare table name ends: the words of the next clause, by the word that it follows.
struct TablePlace {
    std::string_view after;
    std::vector<std::string_view> ends;
    bool parenthesis = false;  ///< an opening parenthesis ends it as well
};

const TablePlace* PlaceAfter(std::string_view word, bool first) {
    static const TablePlace kPlaces[] = {{"from", {"where", "order", "group", "having", "union", "into"}},
                                         {"into", {"values", "select", "from"}, true},
                                         {"table", {}, true},
                                         {"dbf", {}, true},
                                         {"update", {"set"}}};
    for (const TablePlace& place : kPlaces)
        if (IsKeyword(word, place.after) && (place.after != "update" || first)) return &place;
    return nullptr;
}

class FoxProScanner : public TokenScanner {
public:
    using TokenScanner::TokenScanner;

private:
    static bool IsWordPart(char c) { return IsWordStart(c) || IsDigit(c); }

    void SkipBlanks() override {
        for (;;) {
            TokenScanner::SkipBlanks();
            const bool comment = text_.substr(at_, 2) == "&&";
            if (comment) at_ = std::min(text_.find_first_of("\r\n", at_), text_.size());
            if (!comment && !SkipContinuation()) return;
        }
    }

    /// A semicolon that only blanks separate from the end of its line, when more follows.
    bool SkipContinuation() {
        if (Peek() != ';') return false;
        const std::size_t next = text_.find_first_not_of(" \t", at_ + 1);
        if (next == std::string_view::npos || (text_[next] != '\r' && text_[next] != '\n')) return false;
        if (text_.find_first_not_of(" \t\r\n", next) == std::string_view::npos) return false;
        at_ = next;
        return true;
    }

    void ScanOne() override {
        static constexpr std::string_view kPairs[] = {"<>", "<=", ">=", "!=", "==", "**", "=<", "=>"};
        const char c = Peek();
        if (IsWordStart(c)) return ScanWord();
        if (c == '.' && ScanDottedWord()) return;
        if (c == '0' && (Peek(1) | 32) == 'x' && IsHexDigit(Peek(2))) return ScanHex();
        if (IsDigit(c) || (c == '.' && IsDigit(Peek(1)))) return ScanPlainNumber();
        if (c == '$' && (IsDigit(Peek(1)) || Peek(1) == '.') && !AfterOperand()) return ScanCurrency();
        if (c == '\'' || c == '"') return ScanQuoted(TokenKind::Text, c);
        if (c == '[') return ScanUpTo(TokenKind::Text, ']');
        if (c == '`') return ScanUpTo(TokenKind::Name, '`');
        if (c == '{') return ScanUpTo(TokenKind::Date, '}');
        if (c == '-' && Peek(1) == '>') return at_ += 2, Add(TokenKind::Symbol, at_ - 2, ".");
        ScanSymbol(kPairs, "()=<>+-*/^%$#!,.;");
    }

    /// True when the last token ends an operand, so that what follows is an operator.
    bool AfterOperand() const {
        static constexpr std::string_view kOperators[] = {"and",   "or",     "not", "like", "in",  "between",
                                                          "where", "select", "by",  "set",  "top", "escape"};
        if (tokens_.empty()) return false;
        const Token& last = tokens_.back();
        if (last.kind == TokenKind::Symbol) return last.text == ")" || last.text.size() > 2;
        if (last.kind != TokenKind::Word) return true;
        return std::none_of(std::begin(kOperators), std::end(kOperators),
                            [&](std::string_view word) { return IsKeyword(last.text, word); });
    }

    void ScanWord() {
        const std::size_t from = at_;
        const bool first = tokens_.empty();
        while (IsWordPart(Peek())) ++at_;
        const std::string_view word = text_.substr(from, at_ - from);
        Add(TokenKind::Word, from, std::string(word));
        if (const TablePlace* place = PlaceAfter(word, first)) ScanTable(*place);
    }

    /// The word between the dot at from and the next one; "" when there is none.
    std::string_view DottedWord(std::size_t from) const {
        const std::size_t end = text_.find('.', from + 1);
        if (end == std::string_view::npos) return {};
        const std::string_view word = text_.substr(from + 1, end - from - 1);
        return std::all_of(word.begin(), word.end(), IsWordStart) ? word : std::string_view();
    }

    static bool JoinsTruths(std::string_view word) {
        return EqualNoCase(word, "and") || EqualNoCase(word, "or") || EqualNoCase(word, "not");
    }

    bool ScanDottedWord() {
        static constexpr std::string_view kConstants[] = {"t", "f", "y", "n", "null"};
        const std::string word = AsciiLower(DottedWord(at_));
        const bool constant = std::find(std::begin(kConstants), std::end(kConstants), word) != std::end(kConstants);
        if (!JoinsTruths(word) && (!constant || AfterOperand())) return false;
        Add(constant ? TokenKind::Symbol : TokenKind::Word, at_, constant ? "." + word + "." : word);
        at_ += word.size() + 2;
        return true;
    }

    /// In 1.AND.2 the dot belongs to the word.
    void ScanPlainNumber() {
        const std::size_t from = at_;
        std::size_t end = at_;
        while (end < text_.size() && IsDigit(text_[end])) ++end;
        if (end == text_.size() || text_[end] != '.' || !JoinsTruths(DottedWord(end))) return ScanNumber();
        at_ = end;
        Add(TokenKind::Number, from, std::string(text_.substr(from, end - from)));
    }

    void ScanCurrency() {
        const std::size_t from = at_++;
        ScanNumber();
        tokens_.back().text.insert(0, "$");
        tokens_.back().at = from;
    }

    void ScanTable(const TablePlace& place) {
        SkipBlanks();
        const char c = Peek();
        if (c == '\'' || c == '"' || c == '`') return ScanUpTo(TokenKind::Name, c);
        if (c == '[') return ScanUpTo(TokenKind::Name, ']');
        const std::size_t from = at_;
        at_ = EndOfTable(place);
        std::string_view path = text_.substr(from, at_ - from);
        while (!path.empty() && IsBlank(path.back())) path.remove_suffix(1);
        if (!path.empty()) Add(TokenKind::TablePath, from, std::string(path));
    }

    std::size_t EndOfTable(const TablePlace& place) const {
        std::size_t end = std::min({text_.find("&&", at_), text_.find(';', at_), text_.size()});
        if (place.parenthesis) end = std::min(end, Parenthesis());
        for (std::size_t at = at_; at < end; ++at) {
            const bool starts = at > at_ && IsBlank(text_[at - 1]) && IsWordStart(text_[at]);
            if (starts && EndsTable(place, at)) return at;
        }
        return end;
    }

    /// The parenthesis behind the name; one that stands in a folder's name does not count when the name ends in .dbf.
    std::size_t Parenthesis() const {
        const std::string lower = AsciiLower(text_);
        for (std::size_t dot = lower.find(".dbf", at_); dot != std::string::npos; dot = lower.find(".dbf", dot + 1)) {
            const std::size_t next = lower.find_first_not_of(" \t\r\n", dot + 4);
            if (next != std::string::npos && lower[next] == '(') return next;
        }
        return text_.find('(', at_);
    }

    std::string_view WordAt(std::size_t at) const {
        std::size_t end = at;
        while (end < text_.size() && IsWordPart(text_[end])) ++end;
        return text_.substr(at, end - at);
    }

    /// ORDER and GROUP begin a clause only with BY behind them: a table may be called Order Lines.
    bool EndsTable(const TablePlace& place, std::size_t at) const {
        const std::string_view word = WordAt(at);
        for (const std::string_view end : place.ends) {
            if (!IsKeyword(word, end)) continue;
            if (end != "order" && end != "group") return true;
            const std::size_t next = text_.find_first_not_of(" \t\r\n", at + word.size());
            return next != std::string_view::npos && EqualNoCase(WordAt(next), "by");
        }
        return false;
    }
};

}  // namespace

std::vector<Token> TokenizeFoxPro(std::string_view statement) {
    return FoxProScanner(statement).All();
}

}  // namespace varnel::sql
