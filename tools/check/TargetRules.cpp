#include "tools/check/TargetRules.h"

#include <algorithm>

#include "ado/types/ConnectionString.h"
#include "ado/types/ValueText.h"
#include "load/TargetStatements.h"
#include "platform/CodePage.h"
#include "tools/check/NearestName.h"
#include "tools/check/ServerTypes.h"
#include "tools/check/TypeTraits.h"

namespace varnel::admin {
namespace {

/// "from [Orders]", as DELETE writes it.
std::string FromTarget(std::int16_t i) {
    return DeleteStatement(i).substr(std::string_view("delete ").size());
}

std::string TableInCatalog(const TableEntry& table) {
    if (SessionDef.TargetDBName == "FOXPRO" && SessionDef.TargetType == "DIR")
        return SessionDef.DBFPath + table.TableName + ".dbf";
    return table.TableName;
}

/// The columns of the table as it is; empty when there is none or it cannot be read, why then tells.
std::vector<TableColumn> ColumnsNow(const Side& target, std::int16_t i, std::string& why) {
    std::vector<TableColumn> columns;
    try {
        for (ColumnInfo& info : target.ColumnsOf("select * " + FromTarget(i) + " where 1=0"))
            columns.emplace_back().info = std::move(info);
    } catch (const Error& error) {
        why = error.what();
        return {};
    }
    try {
        const std::string owner = SessionDef.TargetDBName == "MSSQL" ? DestTables(i).OwnerName : "";
        std::vector<TableColumn> declared = target.Link().Columns(owner, TableInCatalog(DestTables(i)));
        if (declared.size() == columns.size()) columns = std::move(declared);
    } catch (const Error&) {  // the record set's description has to do
    }
    return columns;
}

std::string Rows(double count) {
    return DefaultText(Value::OfDouble(count)) + (count == 1 ? " row" : " rows");
}

bool IsServerKind(const std::string& kind) {
    return kind == "MySQL" || kind == "MSSQL" || kind == "ORACLE";
}

void CheckServerTypes(TableFacts& facts) {
    const bool fromSource = facts.From().TableExists;
    for (const ColumnEntry* column : facts.columns) {
        const std::string& name = fromSource ? column->SCName : column->DCName;
        const auto made = ServerColumn(*column, fromSource);
        if (!made) {
            const std::string word = fromSource ? "source type '" + column->SOrgDtype + "', for which " +
                                                      SessionDef.TargetDBName + " has no type word here"
                                                : "target type '" + column->DDType + "', which " +
                                                      SessionDef.TargetDBName + " does not know";
            facts.Found().Fault(name, "the table cannot be made: the column has the " + word,
                                fromSource ? "make the table by hand and use DELETE or APPEND, or correct SOrgDtype"
                                           : "write a type word of the target database into DDType");
            continue;
        }
        const std::string why = WhySizeIsRefused(*column, fromSource);
        if (!why.empty())
            facts.Found().Fault(name, "the table cannot be made with " + made->typeName + ": " + why,
                                fromSource ? "correct SWidth and SScale" : "correct DWidth and DScale");
        facts.target.push_back(*made);
    }
    if (facts.target.size() != facts.columns.size()) facts.target.clear();
}

void TryOut(const Side& target, TableFacts& facts) {
    if (IsServerKind(target.Kind())) return CheckServerTypes(facts);
    try {
        facts.target = ScratchTarget(target).Make(facts);
    } catch (const Error& error) {
        facts.Found().Note("", std::string("making the target table could not be tried out: ") + error.what());
    }
}

void CheckMissingTable(const Side& target, const TableFacts& facts, const std::string& why) {
    const std::string& name = facts.To().TableName;
    const bool makesFirst = facts.To().FirstTimeLoadOpt == "CREATE";
    const std::vector<std::string> tables = target.IsMade() ? std::vector<std::string>() : target.TableNames();
    facts.Found().Fault(
        "", "the target table '" + name + "' counts as existing, but cannot be read: " + why,
        DidYouMean(name, tables) + (makesFirst ? "set TableExists to 0 (exists = false), so that the first run makes it"
                                               : "make it, or let the first run make it: exists = false, first_time = "
                                                 "\"CREATE\""));
}

/// Names that exist and still cannot be written: words that the dialect keeps for itself.
void CheckWritingSelect(const Side& target, const TableFacts& facts, const std::vector<TableColumn>& now) {
    std::vector<std::string> names;
    names.reserve(now.size());
    for (const TableColumn& column : now) names.push_back(column.info.name);
    for (const std::string& name : facts.written)
        if (FindName(names, name) == names.size()) return;
    try {
        target.ColumnsOf(BuildWritingTexts(facts.i).select + " where 1=0");
    } catch (const Error& error) {
        facts.Found().Fault("", std::string("the target table cannot be written to: ") + error.what(),
                            "give other names to the columns that it names");
    }
}

/// A SQLite column keeps texts and bytes of any length, whatever its definition says.
void ForgetWidths(std::vector<TableColumn>& columns) {
    for (TableColumn& column : columns)
        if (IsText(column.info.type) || SortOf(column.info.type) == TypeSort::Bytes) column.info.definedSize = 0;
}

void CheckLossOfRows(const TableFacts& facts) {
    const auto& rows = facts.report->rowsInTarget;
    const std::string how = !rows ? "all its rows" : "its " + Rows(*rows);
    const std::string& name = facts.To().TableName;
    if (facts.preparation == Preparation::DropAndCreate)
        facts.Found().Warning(
            "", "the run drops the table '" + name + "' with " + how + " and makes it again from the source's columns",
            "keep a copy when something else than this session fills or extends it");
    if (facts.preparation == Preparation::Empty && (!rows || *rows > 0))
        facts.Found().Warning("", "the run deletes " + how + " of the table '" + name + "' before it loads",
                              "keep a copy when something else than this session fills it");
}

}  // namespace

void CheckUnseenTarget(TableFacts& facts) {
    facts.Found().Note("", "the target could not be looked at");
    if (!facts.Makes() || !IsServerKind(SessionDef.TargetDBName)) return;
    CheckServerTypes(facts);
}

void CheckTargetTable(const Side& target, TableFacts& facts) {
    std::string why = "the file '" + target.Place().path + "' does not exist yet";
    std::vector<TableColumn> now;
    if (!target.IsMade()) {
        now = ColumnsNow(target, facts.i, why);
        try {
            if (!now.empty()) facts.report->rowsInTarget = target.NumberOf("select count(*) " + FromTarget(facts.i));
        } catch (const Error&) {  // then the number is not told
        }
    }
    const bool exists = !now.empty();
    if (facts.preparation != Preparation::Create && !exists) CheckMissingTable(target, facts, why);
    if (facts.preparation == Preparation::Create && exists)
        facts.Found().Fault("",
                            "the target table '" + facts.To().TableName + "' exists already, so that making it fails",
                            "set TableExists to 1 (exists = true) and say with LoadOption what becomes of its rows");
    if (exists) CheckLossOfRows(facts);
    if (!facts.Makes() && exists) CheckWritingSelect(target, facts, now);
    if (facts.Makes())
        TryOut(target, facts);
    else
        facts.target = std::move(now);
    if (target.IsSqlite()) ForgetWidths(facts.target);
}

void CheckTargetColumns(const TableFacts& facts) {
    if (facts.target.empty()) return;
    std::vector<std::string> names;
    for (const TableColumn& column : facts.target) names.push_back(column.info.name);
    for (std::size_t k = 0; k < facts.written.size(); ++k) {
        const std::string& name = facts.written[k];
        const TableColumn* column = facts.TargetOf(k);
        if (column == nullptr) {
            const bool misled = facts.preparation == Preparation::Create && facts.From().LoadOption == "DROP";
            facts.Found().Fault(name, "the target table '" + facts.To().TableName + "' has no column '" + name + "'",
                                misled ? "the option DROP writes under the source's names; choose DELETE or APPEND"
                                       : DidYouMean(name, names) + "Its columns are " + ShortList(names));
        } else if (column->isAssigned && (SessionDef.TargetDBName == "MSSQL" || SessionDef.TargetDBName == "ORACLE")) {
            facts.Found().Warning(name,
                                  "the database numbers the column '" + name + "' itself and refuses a value as a rule",
                                  "de-select the column, or let the target take values for it");
        }
    }
    for (const TableColumn& column : facts.target) {
        if (column.info.nullable || column.isAssigned ||
            FindName(facts.written, column.info.name) < facts.written.size())
            continue;
        facts.Found().Warning(column.info.name,
                              "the target column '" + column.info.name +
                                  "' must have a value and gets none: rows are refused unless it has a default",
                              "map a source column to it, or give it a default");
    }
}

void CheckTargetsTogether(const std::vector<TableFacts>& tables) {
    for (std::size_t k = 0; k < tables.size(); ++k)
        for (std::size_t earlier = 0; earlier < k; ++earlier) {
            const bool same = FoldCase(tables[earlier].To().TableName) == FoldCase(tables[k].To().TableName) &&
                              FoldCase(tables[earlier].To().OwnerName) == FoldCase(tables[k].To().OwnerName);
            if (!same) continue;
            const std::string& name = tables[k].To().TableName;
            const std::string before = "table " + std::to_string(earlier + 1) + " (from '" +
                                       tables[earlier].From().TableName + "') goes to '" + name + "' too";
            switch (tables[k].preparation) {
                case Preparation::Append:
                    tables[k].Found().Note("", before + "; both add their rows");
                    break;
                case Preparation::Create:
                    tables[k].Found().Fault("", before + ", so that making it a second time fails",
                                            "load the second table with exists = true and option APPEND");
                    break;
                case Preparation::Export:
                    tables[k].Found().Warning("", before + "; the file keeps only what comes last",
                                              "give each table a file of its own");
                    break;
                default:
                    tables[k].Found().Warning("", before + "; its rows are removed again before this table loads",
                                              "use the option APPEND for the second table");
            }
            break;
        }
}

}  // namespace varnel::admin
