#include "providers/odbc/SelectText.h"

#include <cctype>

#include "ado/types/ConnectionString.h"

namespace varnel::odbc {
namespace {

bool IsSpace(char c) {
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}
bool IsNameByte(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '$' || c == '#' || c == '.' ||
           static_cast<unsigned char>(c) >= 0x80;
}

class Scanner {
public:
    explicit Scanner(std::string_view text) : text_(text) {}

    void SkipSpace() {
        while (at_ < text_.size() && IsSpace(text_[at_])) ++at_;
    }
    bool AtEnd() {
        SkipSpace();
        return at_ >= text_.size() || text_.substr(at_) == ";";
    }
    bool Take(char c) {
        SkipSpace();
        if (at_ >= text_.size() || text_[at_] != c) return false;
        ++at_;
        return true;
    }
    bool TakeWord(std::string_view word) {
        SkipSpace();
        if (!EqualNoCase(text_.substr(at_, word.size()), word)) return false;
        const std::size_t end = at_ + word.size();
        if (end < text_.size() && IsNameByte(text_[end])) return false;
        at_ = end;
        return true;
    }
    /// A name with its qualifiers, quotes kept; empty when there is none.
    std::string_view Name() {
        SkipSpace();
        const std::size_t start = at_;
        while (at_ < text_.size()) {
            const char c = text_[at_];
            if (IsNameByte(c)) {
                ++at_;
            } else if (c == '[' || c == '`' || c == '"') {
                if (!SkipQuoted(c == '[' ? ']' : c)) return {};
            } else {
                break;
            }
        }
        return text_.substr(start, at_ - start);
    }

private:
    bool SkipQuoted(char close) {
        for (++at_; at_ < text_.size(); ++at_) {
            if (text_[at_] != close) continue;
            if (at_ + 1 < text_.size() && text_[at_ + 1] == close) {
                ++at_;
                continue;
            }
            return ++at_, true;
        }
        return false;
    }

    std::string_view text_;
    std::size_t at_ = 0;
};

}  // namespace

std::optional<SelectText> ReadSelect(std::string_view statement) {
    Scanner scanner(statement);
    if (!scanner.TakeWord("SELECT")) return std::nullopt;
    SelectText parts;
    do {
        const std::string_view column = scanner.Name();
        if (column.empty()) return std::nullopt;
        parts.columns.emplace_back(column);
    } while (scanner.Take(','));
    if (!scanner.TakeWord("FROM")) return std::nullopt;
    parts.table = scanner.Name();
    if (parts.table.empty() || !scanner.AtEnd()) return std::nullopt;
    return parts;
}

}  // namespace varnel::odbc
