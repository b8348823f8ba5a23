#include <algorithm>

#include "ado/types/ConnectionString.h"
#include "tools/check/ReservedWords.h"
#include "tools/define/TargetNames.h"

namespace varnel::admin {
namespace {

// What servers that speak Oracle's language keep for themselves beside its own words.
constexpr std::string_view kSpokenOracle[] = {
    "ANALYZE",  "BEFORE",     "BINARY",    "BLOB",      "BODY",       "BOTH",      "CALL",       "CASE",
    "CHANGE",   "CHARACTER",  "COLLATE",   "CONDITION", "CONSTRAINT", "CONTINUE",  "CONVERT",    "CROSS",
    "CURSOR",   "DATABASE",   "DECLARE",   "DESCRIBE",  "DIV",        "DOUBLE",    "DUAL",       "EACH",
    "ELSIF",    "EXCEPT",     "EXCEPTION", "EXIT",      "EXPLAIN",    "FALSE",     "FETCH",      "FORCE",
    "FOREIGN",  "FULLTEXT",   "GENERAL",   "GOTO",      "HISTORY",    "IF",        "IGNORE",     "INNER",
    "INOUT",    "INT",        "INTERVAL",  "ITERATE",   "JOIN",       "KEY",       "KEYS",       "KILL",
    "LEADING",  "LEAVE",      "LEFT",      "LIMIT",     "LINES",      "LOAD",      "LOOP",       "MATCH",
    "MOD",      "NATURAL",    "NUMERIC",   "OFFSET",    "OPTIMIZE",   "OTHERS",    "OUT",        "OUTER",
    "OVER",     "PACKAGE",    "PARTITION", "PERIOD",    "PRECISION",  "PRIMARY",   "PROCEDURE",  "PURGE",
    "RAISE",    "RANGE",      "READ",      "READS",     "REAL",       "RECURSIVE", "REFERENCES", "REGEXP",
    "RELEASE",  "REPEAT",     "REPLACE",   "REQUIRE",   "RESIGNAL",   "RESTRICT",  "RETURN",     "RETURNING",
    "RIGHT",    "RLIKE",      "ROWTYPE",   "SCHEMA",    "SCHEMAS",    "SENSITIVE", "SEPARATOR",  "SHOW",
    "SIGNAL",   "SPATIAL",    "SPECIFIC",  "SQL",       "SSL",        "STARTING",  "SYSTEM",     "TERMINATED",
    "TRAILING", "TRUE",       "UNDO",      "UNLOCK",    "UNSIGNED",   "USAGE",     "USE",        "USING",
    "VARYING",  "VERSIONING", "WHEN",      "WHILE",     "WINDOW",     "WITHOUT",   "WRITE",      "XOR",
    "ZEROFILL"};

// Those that can begin a clause, or stand beside a column; others mean nothing where a column's name stands.
constexpr std::string_view kFoxPro[] = {
    "ALL",    "AND",  "AS",    "BETWEEN", "BY",  "CHECK", "DEFAULT", "DISTINCT", "EXISTS",     "FOREIGN",
    "FROM",   "FULL", "GROUP", "HAVING",  "IN",  "INDEX", "INNER",   "INTO",     "JOIN",       "LEFT",
    "LIKE",   "NOT",  "NULL",  "ON",      "OR",  "ORDER", "OUTER",   "PRIMARY",  "REFERENCES", "RIGHT",
    "SELECT", "SET",  "TABLE", "TO",      "TOP", "UNION", "UNIQUE",  "VALUES",   "WHERE"};
constexpr std::size_t kShortestFoxPro = 4;  // letters to which its keywords may be cut

}  // namespace

bool IsToBeAvoided(std::string_view kind, std::string_view name) {
    const std::string upper = AsciiUpper(name);
    if (kind == "ORACLE")
        return IsReservedWord("ORACLE", upper) ||
               std::find(std::begin(kSpokenOracle), std::end(kSpokenOracle), upper) != std::end(kSpokenOracle);
    if (!kind.starts_with("FOXPRO")) return false;
    return std::any_of(std::begin(kFoxPro), std::end(kFoxPro), [&](std::string_view word) {
        return word == upper || (upper.size() >= kShortestFoxPro && word.starts_with(upper));
    });
}

}  // namespace varnel::admin
