#include "tools/define/SourceTables.h"

#include <algorithm>

#include "app/shared/FailureTrap.h"
#include "platform/Wildcard.h"
#include "tools/check/NameRules.h"

namespace varnel::admin {
namespace {

bool Matches(const TableInfo& table, const std::string& pattern) {
    return MatchesWildcard(table.name, pattern) || MatchesWildcard(table.owner + "." + table.name, pattern);
}

std::vector<TableInfo> ChosenTables(std::vector<TableInfo> tables, const std::vector<std::string>& patterns) {
    std::string unmatched;
    for (const std::string& pattern : patterns) {
        const bool found =
            std::any_of(tables.begin(), tables.end(), [&](const TableInfo& table) { return Matches(table, pattern); });
        if (!found) unmatched += (unmatched.empty() ? "" : ", ") + pattern;
    }
    const std::string remedy = "; the tables are listed by: varnel-admin tables CONNECTION";
    if (!unmatched.empty())
        throw Error(ErrorKind::Constraint, "", "the source has no table that matches " + unmatched + remedy);
    std::erase_if(tables, [&](const TableInfo& table) {
        if (patterns.empty()) return table.isView;
        return std::none_of(patterns.begin(), patterns.end(),
                            [&](const std::string& pattern) { return Matches(table, pattern); });
    });
    if (tables.empty()) throw Error(ErrorKind::Constraint, "", "the source has no tables" + remedy);
    return tables;
}

}  // namespace

std::string FaultOfSourceName(std::string_view kind, std::string_view name, bool isTable) {
    // Oracle's tables and FoxPro's columns are named without quotes.
    const bool isBare = isTable ? kind == "ORACLE" : kind.starts_with("FOXPRO");
    if (isBare) return IsBareName(name) ? "" : "its name cannot be written without quotes, as a session writes it";
    const char closing = kind == "MySQL" ? '`' : kind == "ORACLE" || kind == "FOXPRO DIR" ? '"' : ']';
    if (name.find(closing) == std::string_view::npos) return "";
    return std::string("its name holds ") + closing + ", which ends it where a session writes it";
}

std::vector<SourceTable> ReadSourceTables(const Connection& source, std::string_view kind,
                                          const std::vector<std::string>& patterns) {
    std::vector<SourceTable> tables;
    for (TableInfo& info : ChosenTables(source.Tables(), patterns)) {
        SourceTable& table = tables.emplace_back();
        table.info = std::move(info);
        table.fault = FaultOfSourceName(kind, table.info.name, true);
        FailureTrap trap([&](const Error& error) { table.fault = error.what(); }, [] {});
        trap.Try([&] { table.columns = source.Columns(table.info.owner, table.info.name); });
        if (table.fault.empty() && table.columns.empty()) table.fault = "it has no columns";
    }
    return tables;
}

}  // namespace varnel::admin
