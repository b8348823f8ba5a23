#include "providers/mysql/StatementKind.h"

#include <algorithm>
#include <string>

#include "ado/types/ConnectionString.h"

namespace varnel::mysql {
namespace {

/// Statements after which the log-in is as it was, apart from its rows and its transaction.
constexpr std::string_view kPlainWords[] = {
    "SELECT", "INSERT",   "REPLACE",   "UPDATE",  "DELETE",  "CREATE", "DROP",    "ALTER", "TRUNCATE",
    "SHOW",   "DESC",     "DESCRIBE",  "EXPLAIN", "WITH",    "VALUES", "TABLE",   "START", "BEGIN",
    "COMMIT", "ROLLBACK", "SAVEPOINT", "RELEASE", "ANALYZE", "CHECK",  "OPTIMIZE"};

constexpr std::string_view kBlank = " \t\r\n\f\v(";

/// Where the text goes on after blanks, parentheses and comments. A comment that the server would execute stays.
std::size_t SkipToWord(std::string_view text, std::size_t at) {
    while (at < text.size()) {
        const auto rest = text.substr(at);
        if (kBlank.find(rest[0]) != std::string_view::npos) {
            ++at;
        } else if (rest[0] == '#' || rest.starts_with("-- ")) {
            at = std::min(text.size(), text.find('\n', at));
        } else if (rest.starts_with("/*") && !rest.starts_with("/*!") && !rest.starts_with("/*M!")) {
            const auto end = text.find("*/", at + 2);
            at = end == std::string_view::npos ? text.size() : end + 2;
        } else {
            break;
        }
    }
    return at;
}

std::string_view WordAt(std::string_view text, std::size_t& at) {
    at = SkipToWord(text, at);
    const auto start = at;
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; };
    while (at < text.size() && isLetter(text[at])) ++at;
    return text.substr(start, at - start);
}

}  // namespace

StatementKind KindOfStatement(std::string_view statement) {
    std::size_t at = 0;
    const std::string_view first = WordAt(statement, at);
    std::string_view second = WordAt(statement, at);
    while (EqualNoCase(second, "OR") || EqualNoCase(second, "REPLACE")) second = WordAt(statement, at);
    StatementKind kind;
    kind.writes = EqualNoCase(first, "INSERT") || EqualNoCase(first, "REPLACE");
    const bool temporary = EqualNoCase(second, "TEMPORARY");
    kind.mayAlterSession = temporary || std::none_of(std::begin(kPlainWords), std::end(kPlainWords),
                                                     [&](auto word) { return EqualNoCase(word, first); });
    return kind;
}

}  // namespace varnel::mysql
