#include "tests/support/tds/TdsCatalog.h"

#include <regex>

#include "ado/types/ConnectionString.h"

namespace varnel::tds {
namespace {

/// What stands behind @table_name=, a quoted text.
std::string TableNameIn(const std::string& statement) {
    static const std::regex kName(R"(@table_name\s*=\s*N?('(?:[^']|'')*'))", std::regex::icase);
    std::smatch match;
    return std::regex_search(statement, match, kName) ? match[1].str() : "''";
}

/// The real type word is the second one of the declaration.
const std::string kWord = "substr(type,instr(type,' ')+1,instr(substr(type,instr(type,' ')+1),' ')-1)";

}  // namespace

std::optional<std::string> CatalogQuery(const std::string& statement) {
    static const std::regex kCall(R"(^\s*exec\s+(?:\S*\.)?(sp_tables|sp_columns|sp_pkeys)\b)", std::regex::icase);
    std::smatch match;
    if (!std::regex_search(statement, match, kCall)) return std::nullopt;
    const std::string procedure = AsciiLower(match[1].str()), table = TableNameIn(statement);
    if (procedure == "sp_tables")
        return "SELECT 'shop' AS TABLE_QUALIFIER,'dbo' AS TABLE_OWNER,name AS TABLE_NAME,upper(type) AS TABLE_TYPE,"
               "'' AS REMARKS FROM dbo.sqlite_master WHERE type IN ('table','view') "
               "UNION ALL SELECT 'shop','sys','objects','VIEW','' UNION ALL SELECT "
               "'shop','dbo','sysdiagrams','TABLE',''";
    const std::string head =
        "SELECT 'shop' AS TABLE_QUALIFIER,'dbo' AS TABLE_OWNER," + table + " AS TABLE_NAME,name AS COLUMN_NAME";
    const std::string from = " FROM pragma_table_info(" + table + ",'dbo')";
    if (procedure == "sp_pkeys") return head + ",pk AS KEY_SEQ,'' AS PK_NAME" + from + " WHERE pk>0 ORDER BY pk";
    return head + ",12 AS DATA_TYPE," + kWord + "||iif(pk>0 AND " + kWord + "='int',' identity','') AS TYPE_NAME" +
           from;
}

}  // namespace varnel::tds
