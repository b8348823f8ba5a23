#include "tools/check/ReservedWords.h"

#include <algorithm>
#include <string_view>

#include "ado/types/ConnectionString.h"

namespace varnel::admin {
namespace {

// Sorted.
constexpr std::string_view kOracle[] = {
    "ACCESS",    "ADD",        "ALL",       "ALTER",    "AND",        "ANY",      "AS",       "ASC",        "AUDIT",
    "BETWEEN",   "BY",         "CHAR",      "CHECK",    "CLUSTER",    "COLUMN",   "COMMENT",  "COMPRESS",   "CONNECT",
    "CREATE",    "CURRENT",    "DATE",      "DECIMAL",  "DEFAULT",    "DELETE",   "DESC",     "DISTINCT",   "DROP",
    "ELSE",      "EXCLUSIVE",  "EXISTS",    "FILE",     "FLOAT",      "FOR",      "FROM",     "GRANT",      "GROUP",
    "HAVING",    "IDENTIFIED", "IMMEDIATE", "IN",       "INCREMENT",  "INDEX",    "INITIAL",  "INSERT",     "INTEGER",
    "INTERSECT", "INTO",       "IS",        "LEVEL",    "LIKE",       "LOCK",     "LONG",     "MAXEXTENTS", "MINUS",
    "MLSLABEL",  "MODE",       "MODIFY",    "NOAUDIT",  "NOCOMPRESS", "NOT",      "NOWAIT",   "NULL",       "NUMBER",
    "OF",        "OFFLINE",    "ON",        "ONLINE",   "OPTION",     "OR",       "ORDER",    "PCTFREE",    "PRIOR",
    "PUBLIC",    "RAW",        "RENAME",    "RESOURCE", "REVOKE",     "ROW",      "ROWID",    "ROWNUM",     "ROWS",
    "SELECT",    "SESSION",    "SET",       "SHARE",    "SIZE",       "SMALLINT", "START",    "SUCCESSFUL", "SYNONYM",
    "SYSDATE",   "TABLE",      "THEN",      "TO",       "TRIGGER",    "UID",      "UNION",    "UNIQUE",     "UPDATE",
    "USER",      "VALIDATE",   "VALUES",    "VARCHAR",  "VARCHAR2",   "VIEW",     "WHENEVER", "WHERE",      "WITH"};

}  // namespace

bool IsReservedWord(const std::string& kind, const std::string& name) {
    const std::string upper = AsciiUpper(name);
    return kind == "ORACLE" && std::find(std::begin(kOracle), std::end(kOracle), upper) != std::end(kOracle);
}

}  // namespace varnel::admin
