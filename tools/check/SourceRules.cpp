#include "tools/check/SourceRules.h"

#include <algorithm>

#include "ado/types/ConnectionString.h"
#include "ado/types/ValueText.h"
#include "platform/CodePage.h"
#include "platform/Files.h"
#include "platform/InputFile.h"
#include "polling/SchemaIniWriter.h"
#include "source/SourceQuery.h"
#include "tools/check/FilterRules.h"
#include "tools/check/NearestName.h"

namespace varnel::admin {
namespace {

/// What the count query of the table begins with, as each worker writes it.
std::string_view CountHead(const TableFacts& facts) {
    if (facts.preparation == Preparation::Export) return " Select count(*) ";
    return SessionDef.TargetDBName == "MySQL" ? "Select Count(*) " : "Select count(*) ";
}

MySqlFrom FromOf(const TableFacts& facts) {
    return facts.preparation == Preparation::Export ? MySqlFrom::TableOnly : MySqlFrom::OwnerAndTable;
}

/// " FROM [Orders]", without the filter.
std::string FromPartOf(const TableFacts& facts) {
    TableEntry& table = SourceTables(facts.i);
    std::string filter;
    filter.swap(table.WhereCond);
    const std::string count = QueriesOf(facts).count;
    table.WhereCond = filter;
    return count.substr(CountHead(facts).size());
}

bool IsServerKind(const std::string& kind) {
    return kind == "MySQL" || kind == "MSSQL" || kind == "ORACLE";
}

/// The fields of a SELECT. A server is asked for them without any row, where its SQL allows the wrapping.
std::vector<ColumnInfo> FieldsOf(const Side& source, const std::string& select) {
    if (IsServerKind(source.Kind())) {
        try {
            return source.ColumnsOf("SELECT * FROM (" + select + ") q WHERE 1=0");
        } catch (const Error&) {  // the statement itself shows what is wrong with it
        }
    }
    return source.ColumnsOf(select);
}

bool HasColumn(const std::string& name, const std::vector<std::string>& names, bool exactly) {
    if (exactly) return std::find(names.begin(), names.end(), name) != names.end();
    return FindName(names, name) < names.size();
}

/// Every selected column that the table does not have; returns whether all are there.
bool CheckColumnsExist(const TableFacts& facts, const std::vector<std::string>& names) {
    const bool exactly = SessionDef.SourceDBName == "ORACLE";
    bool complete = true;
    for (const ColumnEntry* column : facts.columns) {
        if (HasColumn(column->SCName, names, exactly)) continue;
        complete = false;
        facts.Found().Fault(column->SCName,
                            "the source table '" + facts.From().TableName + "' has no column '" + column->SCName + "'",
                            DidYouMean(column->SCName, names) + "Its columns are " + ShortList(names));
    }
    return complete;
}

/// The names of all columns of the table; empty, with a fault, when it cannot be read.
std::vector<std::string> NamesInTable(const Side& source, const TableFacts& facts) {
    std::vector<std::string> names;
    try {
        for (const ColumnInfo& column : source.ColumnsOf("SELECT *" + FromPartOf(facts) + " WHERE 1=0"))
            names.push_back(column.name);
    } catch (const Error& error) {
        const std::vector<std::string> tables = source.TableNames();
        const std::string& name = facts.From().TableName;
        const std::string known = tables.empty() ? "" : "The source has " + ShortList(tables);
        facts.Found().Fault(
            "", "the source table '" + name + "' cannot be read: " + error.what(),
            DidYouMean(name, tables) + (known.empty() ? "correct the name of the source table" : known));
    }
    return names;
}

void CountRows(const Side& source, const TableFacts& facts, const std::string& query) {
    try {
        facts.report->rowsToRead = source.NumberOf(query);
    } catch (const Error& error) {
        if (facts.From().WhereCond.empty()) {
            facts.Found().Fault("", std::string("the rows cannot be counted: ") + error.what(),
                                "see that the source table is sound");
        } else {
            facts.Found().Fault("", "the filter '" + facts.From().WhereCond + "' is refused: " + error.what(),
                                "correct WhereCond; it is written in the SQL of the source");
        }
    }
}

void DescribeFields(const Side& source, TableFacts& facts, const std::string& select) {
    try {
        facts.source = FieldsOf(source, select);
    } catch (const Error& error) {
        facts.Found().Fault("", std::string("the rows cannot be read: ") + error.what(),
                            "try the statement with: varnel-admin sql CONNECTION STATEMENT");
    }
    if (facts.source.size() != facts.columns.size()) facts.source.clear();
}

/// True when Schema.ini of the folder says the columns of the file.
bool IsDescribed(const std::string& folder, const std::string& file) {
    const std::string path = folder + (folder.ends_with('\\') || folder.ends_with('/') ? "" : "/") + "Schema.ini";
    if (!FileExists(path)) return false;
    const InputFile schema(path);
    std::string text(schema.State().size, ' ');
    text.resize(schema.ReadAt(0, text));
    text = AsciiLower(text);
    const std::size_t section = text.find("[" + AsciiLower(file) + "]");
    if (section == std::string::npos) return false;
    return text.substr(0, text.find("\n[", section)).find("\ncol1=", section) != std::string::npos;
}

void CheckGuessedTypes(const Side& source, TableFacts& facts) {
    if (SessionDef.SourceDBName != "TEXT" && SessionDef.SourceDBName != "TEXTPOLL") return;
    facts.typesAreGuessed =
        SessionDef.SourceDBName == "TEXTPOLL" || !IsDescribed(source.Place().path, facts.From().TableName);
    if (facts.typesAreGuessed && SessionDef.SourceDBName == "TEXT")
        facts.Found().Note("", "the types of its columns are found from all values of the file at each run",
                           "write Col lines into Schema.ini to fix them; --values shows what does not fit now");
}

}  // namespace

SourceQueries QueriesOf(const TableFacts& facts) {
    return BuildSourceQueries(facts.i, CountHead(facts), FromOf(facts));
}

void CheckSourceTable(const Side& source, TableFacts& facts) {
    if (facts.columns.empty()) return;
    const SourceQueries queries = QueriesOf(facts);
    const std::vector<std::string> names = NamesInTable(source, facts);
    if (names.empty()) return;
    CheckGuessedTypes(source, facts);
    CheckFilterText(facts);
    const bool complete = CheckColumnsExist(facts, names);
    const std::size_t before = facts.Found().Count(Severity::Fault);
    CountRows(source, facts, queries.count);
    if (complete && facts.Found().Count(Severity::Fault) == before) DescribeFields(source, facts, queries.select);
}

std::unique_ptr<ScratchFolder> PolledFolderAsRead() {
    if (SessionDef.SourceDBName != "TEXTPOLL" || SourceTables.Count() == 0) return nullptr;
    auto folder = std::make_unique<ScratchFolder>();
    std::string from = SessionDef.FolderName;
    if (!from.ends_with('\\') && !from.ends_with('/')) from += "\\";
    std::string schema;
    for (const TableEntry& table : SourceTables) {
        schema += SchemaIniSection(table);
        folder->Link(table.TableName, from + table.TableName);
    }
    folder->Write("Schema.ini", schema);
    return folder;
}

}  // namespace varnel::admin
