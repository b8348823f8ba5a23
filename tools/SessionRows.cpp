#include "tools/SessionRows.h"

#include <algorithm>
#include <string_view>

#include "ado/types/ConnectionString.h"
#include "ado/types/ValueConvert.h"
#include "ado/types/ValueText.h"
#include "platform/Rounding.h"

namespace varnel::admin {
namespace {

enum Place : std::size_t { kSessions, kTables, kColumns };

/// Reads and writes one row by column name.
class Row {
public:
    Row(Place place, std::vector<Value>& values) : table_(kRepositoryTables[place]), values_(values) {}

    void Set(std::string_view column, const std::string& text) { At(column).SetText(text); }
    void Set(std::string_view column, std::int64_t number) { At(column).SetInteger(number); }
    void Set(std::string_view column, bool flag) { At(column).SetBoolean(flag); }

    std::string Text(std::string_view column) {
        const Value& value = At(column);
        return value.IsNull() ? "" : DefaultText(value);
    }
    double Number(std::string_view column) { return At(column).IsNull() ? 0 : ToDouble(At(column)); }
    std::int16_t Small(std::string_view column) { return ToInt16(Number(column)); }
    bool Flag(std::string_view column) { return !At(column).IsNull() && ToBoolean(At(column)); }
    bool IsNull(std::string_view column) { return At(column).IsNull(); }

private:
    Value& At(std::string_view column) {
        for (std::size_t k = 0; k < values_.size(); ++k)
            if (EqualNoCase(table_.columns[k].name, column)) return values_[k];
        throw Error(ErrorKind::Misuse, std::string(table_.name), "no column " + std::string(column));
    }

    const RepositoryTable& table_;
    std::vector<Value>& values_;
};

Row NewRow(StoredRows& rows, Place place, std::int16_t id) {
    Row row(place, rows[place].emplace_back(kRepositoryTables[place].columns.size()));
    row.Set(kRepositoryTables[place].columns.front().name, std::int64_t{id});
    return row;
}

struct SessionText {
    std::string_view column;
    std::string SessionDefinition::*field;
};
constexpr SessionText kSessionTexts[] = {
    {"SessionName", &SessionDefinition::name},
    {"SourceConnStr", &SessionDefinition::sourceConnection},
    {"TargetConnStr", &SessionDefinition::targetConnection},
    {"SourceDBName", &SessionDefinition::sourceKind},
    {"TargetDBName", &SessionDefinition::targetKind},
    {"SourceType", &SessionDefinition::sourceType},
    {"TargetType", &SessionDefinition::targetType},
    {"SrcDBFPath", &SessionDefinition::sourceFolder},
    {"DBFPath", &SessionDefinition::targetFolder},
    {"logfilename", &SessionDefinition::log},
    {"FPattern", &SessionDefinition::pollPattern},
    {"FRename", &SessionDefinition::pollRename},
    {"FolderName", &SessionDefinition::pollFolder},
};

struct TableText {
    std::string_view column;
    std::string TableMapping::*field;
};
constexpr TableText kTableTexts[] = {
    {"SourceTableName", &TableMapping::source},
    {"SourceOwnerName", &TableMapping::sourceOwner},
    {"DestTableName", &TableMapping::target},
    {"DestOwnerName", &TableMapping::targetOwner},
    {"WhereCond", &TableMapping::where},
    {"LoadOption", &TableMapping::option},
    {"FirstTimeLoadOpt", &TableMapping::firstTime},
};

struct TargetTextField {
    std::string_view column;
    std::string TargetText::*field;
};
constexpr TargetTextField kTargetTexts[] = {
    {"DFormat", &TargetText::delimiter}, {"TextDirDest", &TargetText::folder}, {"FileFormat", &TargetText::format},
    {"FileExt", &TargetText::extension}, {"DTextQ", &TargetText::qualifier},
};

struct ColumnText {
    std::string_view column;
    std::string ColumnMapping::*field;
};
constexpr ColumnText kColumnTexts[] = {
    {"SCName", &ColumnMapping::source},         {"DCName", &ColumnMapping::target},
    {"SDtype", &ColumnMapping::sourceTypeName}, {"DDType", &ColumnMapping::targetType},
    {"SOrgDtype", &ColumnMapping::type},
};

void AddTable(StoredRows& rows, const SessionDefinition& session, const TableMapping& table) {
    Row row = NewRow(rows, kTables, session.id);
    row.Set("TabID", std::int64_t{table.tabId});
    for (const auto& [column, field] : kTableTexts) row.Set(column, table.*field);
    row.Set("TableExists", table.exists);
    row.Set("SFormat", table.sourceText.delimiter);
    row.Set("TextQ", table.sourceText.qualifier);
    row.Set("SFirstColLine", std::int64_t{table.sourceText.header});
    if (session.targetKind != "TEXT") return;
    for (const auto& [column, field] : kTargetTexts) row.Set(column, session.targetText.*field);
    row.Set("DFirstColLine", std::int64_t{session.targetText.header});
}

void AddColumn(StoredRows& rows, std::int16_t id, const TableMapping& table, const ColumnMapping& column,
               std::int64_t position) {
    Row row = NewRow(rows, kColumns, id);
    row.Set("TabID", std::int64_t{table.tabId});
    row.Set("TName", table.source);
    for (const auto& [name, field] : kColumnTexts) row.Set(name, column.*field);
    for (const std::string_view name : {"SCCount", "DCCount", "Pos", "CPos"}) row.Set(name, position);
    row.Set("SWidth", std::int64_t{column.width});
    row.Set("DWidth", std::int64_t{column.targetWidth});
    row.Set("SScale", std::int64_t{column.scale});
    row.Set("DScale", std::int64_t{column.targetScale});
    row.Set("ignor", false);
    row.Set("SSelected", std::int64_t{column.selected});
}

TableMapping TableOf(Row row) {
    TableMapping table;
    table.tabId = row.Small("TabID");
    for (const auto& [column, field] : kTableTexts) table.*field = row.Text(column);
    table.exists = row.Flag("TableExists");
    table.sourceText = {row.Text("SFormat"), row.IsNull("TextQ") ? "1" : row.Text("TextQ"),
                        row.Small("SFirstColLine") == 1};
    return table;
}

ColumnMapping ColumnOf(Row row) {
    ColumnMapping column;
    for (const auto& [name, field] : kColumnTexts) column.*field = row.Text(name);
    column.width = ToInt32(row.Number("SWidth"));
    column.targetWidth = ToInt32(row.Number("DWidth"));
    column.scale = row.Small("SScale");
    column.targetScale = row.Small("DScale");
    column.selected = row.Small("SSelected") == 1;
    return column;
}

TargetText TargetTextOf(Row row) {
    TargetText text;
    for (const auto& [column, field] : kTargetTexts) text.*field = row.Text(column);
    text.header = row.Small("DFirstColLine") == 1;
    return text;
}

}  // namespace

StoredRows RowsOf(const SessionDefinition& session) {
    StoredRows rows;
    Row row = NewRow(rows, kSessions, session.id);
    for (const auto& [column, field] : kSessionTexts) row.Set(column, session.*field);
    for (const TableMapping& table : session.tables) {
        AddTable(rows, session, table);
        std::int64_t position = 0;
        for (const ColumnMapping& column : table.columns) AddColumn(rows, session.id, table, column, ++position);
    }
    return rows;
}

SessionDefinition DefinitionOf(const StoredRows& stored) {
    StoredRows rows = stored;
    if (rows[kSessions].empty()) throw Error(ErrorKind::Misuse, "sessions", "there is no such session");
    SessionDefinition session;
    Row row(kSessions, rows[kSessions].front());
    session.id = row.Small("sessionid");
    for (const auto& [column, field] : kSessionTexts) session.*field = row.Text(column);
    for (std::vector<Value>& values : rows[kTables]) {
        session.tables.push_back(TableOf(Row(kTables, values)));
        if (session.targetKind == "TEXT")
            session.targetText = TargetTextOf(Row(kTables, values));  // the last row counts
    }
    for (std::vector<Value>& values : rows[kColumns]) {
        const double tabId = Row(kColumns, values).Number("TabID");
        for (TableMapping& table : session.tables)
            if (table.tabId == tabId) table.columns.push_back(ColumnOf(Row(kColumns, values)));
    }
    return session;
}

std::vector<std::string> MissingValues(const StoredRows& rows) {
    std::vector<std::string> missing;
    for (std::size_t t = 0; t < rows.size(); ++t)
        for (const std::vector<Value>& row : rows[t])
            for (std::size_t k = 0; k < row.size(); ++k) {
                const RepositoryTable& table = kRepositoryTables[t];
                const std::string name = std::string(table.name) + "." + std::string(table.columns[k].name);
                const bool known = std::find(missing.begin(), missing.end(), name) != missing.end();
                if (table.columns[k].required && row[k].IsNull() && !known) missing.push_back(name);
            }
    return missing;
}

std::string LastRun(const StoredRows& stored) {
    StoredRows rows = stored;
    if (rows[kSessions].empty()) return "never run";
    Row row(kSessions, rows[kSessions].front());
    if (row.Text("LastRunDate").empty()) return "never run";
    return "last run " + row.Text("LastRunDate") + " " + row.Text("LastRunTime") +
           (row.Number("SessionError") != 0 ? ", with errors" : ", without errors");
}

}  // namespace varnel::admin
