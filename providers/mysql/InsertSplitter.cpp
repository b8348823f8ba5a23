#include "providers/mysql/InsertSplitter.h"

#include <algorithm>

#include "ado/types/ConnectionString.h"
#include "providers/mysql/StatementKind.h"

namespace varnel::mysql {
namespace {

constexpr auto kNone = std::string_view::npos;

bool IsWordCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '$' ||
           (static_cast<unsigned char>(c) & 0x80U) != 0;
}

/// The place after the quoted text, comment, word or single character that begins at at; kNone when it never ends.
std::size_t SkipOne(std::string_view text, std::size_t at) {
    const char c = text[at];
    const auto rest = text.substr(at);
    if (c == '\'' || c == '"' || c == '`') {
        const auto end = text.find(c, at + 1);
        return end == kNone ? kNone : end + 1;  // of a doubled quote the second half opens again
    }
    if (rest.starts_with("/*")) {
        const auto end = text.find("*/", at + 2);
        return end == kNone ? kNone : end + 2;
    }
    if (c == '#' || rest.starts_with("-- ")) return std::min(text.size(), text.find('\n', at));
    if (!IsWordCharacter(c)) return at + 1;
    while (at < text.size() && IsWordCharacter(text[at])) ++at;
    return at;
}

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

std::size_t SkipBlanks(std::string_view text, std::size_t at) {
    while (at < text.size() && IsBlank(text[at])) ++at;
    return at;
}

/// The place after the first VALUES outside parentheses and quotes.
std::size_t AfterValues(std::string_view text) {
    int depth = 0;
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] == '(') ++depth;
        if (text[at] == ')') --depth;
        const auto next = SkipOne(text, at);
        if (next == kNone) return kNone;
        const auto word = text.substr(at, next - at);
        if (depth == 0 && (EqualNoCase(word, "VALUES") || EqualNoCase(word, "VALUE"))) return next;
        at = next;
    }
    return kNone;
}

/// The place after the closing parenthesis of the one at at.
std::size_t AfterRow(std::string_view text, std::size_t at) {
    int depth = 0;
    while (at < text.size()) {
        if (text[at] == '(') ++depth;
        if (text[at] == ')' && --depth == 0) return at + 1;
        at = SkipOne(text, at);
        if (at == kNone) break;
    }
    return kNone;
}

std::string_view WithoutSemicolon(std::string_view tail) {
    while (!tail.empty() && (IsBlank(tail.back()) || tail.back() == ';')) tail.remove_suffix(1);
    return tail;
}

}  // namespace

std::optional<InsertParts> SplitInsert(std::string_view statement) {
    if (!KindOfStatement(statement).writes) return std::nullopt;
    const auto start = AfterValues(statement);
    if (start == kNone) return std::nullopt;
    InsertParts parts;
    parts.head = statement.substr(0, start);
    for (std::size_t at = start;;) {
        at = SkipBlanks(statement, at);
        if (at >= statement.size() || statement[at] != '(') return std::nullopt;
        const auto end = AfterRow(statement, at);
        if (end == kNone) return std::nullopt;
        parts.rows.push_back(statement.substr(at, end - at));
        at = SkipBlanks(statement, end);
        if (at < statement.size() && statement[at] == ',') {
            ++at;
            continue;
        }
        parts.tail = WithoutSemicolon(statement.substr(end));
        return parts;
    }
}

bool InsertPieces::Next(std::string& statement) {
    if (nextRow_ >= parts_.rows.size()) return false;
    statement.assign(parts_.head);
    const std::size_t room = mostBytes_ - parts_.tail.size();
    for (bool first = true; nextRow_ < parts_.rows.size(); ++nextRow_, first = false) {
        const auto row = parts_.rows[nextRow_];
        if (!first && statement.size() + 1 + row.size() > room) break;
        statement.append(first ? " " : ",").append(row);
    }
    statement.append(parts_.tail);
    return true;
}

}  // namespace varnel::mysql
