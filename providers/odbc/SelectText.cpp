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

/// Names between commas; false when there is something else.
bool ReadNames(Scanner& scanner, std::vector<std::string>& names) {
    do {
        const std::string_view name = scanner.Name();
        if (name.empty()) return false;
        names.emplace_back(name);
    } while (scanner.Take(','));
    return true;
}

}  // namespace

std::optional<SelectText> ReadSelect(std::string_view statement) {
    Scanner scanner(statement);
    SelectText parts;
    if (!scanner.TakeWord("SELECT") || !ReadNames(scanner, parts.columns) || !scanner.TakeWord("FROM"))
        return std::nullopt;
    parts.table = scanner.Name();
    if (parts.table.empty() || !scanner.AtEnd()) return std::nullopt;
    return parts;
}

std::optional<SelectText> ReadInsert(std::string_view statement) {
    Scanner scanner(statement);
    SelectText parts;
    if (!scanner.TakeWord("INSERT") || !scanner.TakeWord("INTO")) return std::nullopt;
    parts.table = scanner.Name();
    if (parts.table.empty() || !scanner.Take('(') || !ReadNames(scanner, parts.columns) || !scanner.Take(')') ||
        !scanner.TakeWord("VALUES") || !scanner.Take('('))
        return std::nullopt;
    for (std::size_t k = 0; k < parts.columns.size(); ++k) {
        if ((k > 0 && !scanner.Take(',')) || !scanner.Take('?')) return std::nullopt;
    }
    if (!scanner.Take(')') || !scanner.AtEnd()) return std::nullopt;
    return parts;
}

std::string WriteSelect(const SelectText& parts) {
    std::string text;
    for (const std::string& column : parts.columns) text += (text.empty() ? "SELECT " : ",") + column;
    return text + " FROM " + parts.table;
}

}  // namespace varnel::odbc
