#include "tools/repository/SessionRows.h"

#include <string_view>

#include "ado/types/ConnectionString.h"
#include "ado/types/ValueConvert.h"
#include "ado/types/ValueText.h"
#include "platform/Rounding.h"
#include "tools/repository/HeldRows.h"

namespace varnel::admin {
namespace {

/// Reads one row by column name.
class ReadRow {
public:
    ReadRow(const StoredTable& table, std::size_t row) : table_(table), row_(row) {}

    std::string Text(std::string_view column) const {
        const Value& value = table_.At(row_, column);
        return value.IsNull() ? "" : DefaultText(value);
    }
    double Number(std::string_view column) const { return IsNull(column) ? 0 : ToDouble(table_.At(row_, column)); }
    std::int16_t Small(std::string_view column) const { return ToInt16(Number(column)); }
    bool Flag(std::string_view column) const { return !IsNull(column) && ToBoolean(table_.At(row_, column)); }
    bool IsNull(std::string_view column) const { return table_.At(row_, column).IsNull(); }

private:
    const StoredTable& table_;
    std::size_t row_;
};

/// Adds a row and fills it by column name.
class NewRow {
public:
    NewRow(StoredRows& rows, TablePlace place, std::int16_t id)
        : known_(kRepositoryTables[place]), table_(rows[place]) {
        table_.rows.emplace_back(table_.columns.size());
        table_.rows.back().front().SetInteger(id);
    }

    void Set(std::string_view column, const std::string& text) { At(column).SetText(text); }
    void Set(std::string_view column, std::int64_t number) { At(column).SetInteger(number); }
    void Set(std::string_view column, bool flag) { At(column).SetBoolean(flag); }

    void Set(const StoredValues& values) {
        for (const StoredValue& stored : values) Set(stored);
    }

private:
    Value& At(std::string_view column) { return table_.rows.back()[table_.PlaceOf(column)]; }

    void Set(const StoredValue& stored) {
        const std::size_t place = table_.PlaceOf(stored.column);
        if (place == table_.columns.size()) {
            std::string names;
            for (const std::string& name : table_.columns) names += (names.empty() ? "" : ", ") + name;
            throw Error(ErrorKind::Misuse, stored.place,
                        stored.place + ": the table " + std::string(known_.name) + " has no column " + stored.column +
                            "; write one of " + names);
        }
        if (place == 0)
            throw Error(ErrorKind::Misuse, stored.place,
                        stored.place + ": " + stored.column + " is the number of the session; write id = 12");
        table_.rows.back()[place] = HeldValue(known_, known_.columns[place], stored);
    }

    const RepositoryTable& known_;
    StoredTable& table_;
};

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
    NewRow row(rows, kTables, session.id);
    row.Set("TabID", std::int64_t{table.tabId});
    for (const auto& [column, field] : kTableTexts) row.Set(column, table.*field);
    row.Set("TableExists", table.exists);
    row.Set("SFormat", table.sourceText.delimiter);
    row.Set("TextQ", table.sourceText.qualifier);
    row.Set("SFirstColLine", std::int64_t{table.sourceText.header});
    if (session.targetKind == "TEXT") {
        for (const auto& [column, field] : kTargetTexts) row.Set(column, session.targetText.*field);
        row.Set("DFirstColLine", std::int64_t{session.targetText.header});
    }
    row.Set(table.stored);
}

void AddColumn(StoredRows& rows, std::int16_t id, const TableMapping& table, const ColumnMapping& column,
               std::int64_t position) {
    NewRow row(rows, kColumns, id);
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
    row.Set(column.stored);
}

TableMapping TableOf(const ReadRow& row) {
    TableMapping table;
    table.tabId = row.Small("TabID");
    for (const auto& [column, field] : kTableTexts) table.*field = row.Text(column);
    table.exists = row.Flag("TableExists");
    table.sourceText = {row.Text("SFormat"), row.IsNull("TextQ") ? "1" : row.Text("TextQ"),
                        row.Small("SFirstColLine") == 1};
    return table;
}

ColumnMapping ColumnOf(const ReadRow& row) {
    ColumnMapping column;
    for (const auto& [name, field] : kColumnTexts) column.*field = row.Text(name);
    column.width = ToInt32(row.Number("SWidth"));
    column.targetWidth = ToInt32(row.Number("DWidth"));
    column.scale = row.Small("SScale");
    column.targetScale = row.Small("DScale");
    column.selected = row.Small("SSelected") == 1;
    return column;
}

TargetText TargetTextOf(const ReadRow& row) {
    TargetText text;
    for (const auto& [column, field] : kTargetTexts) text.*field = row.Text(column);
    text.header = row.Number("DFirstColLine") == 1;
    return text;
}

StoredRows EmptyRows() {
    StoredRows rows;
    for (std::size_t t = 0; t < rows.size(); ++t)
        for (const RepositoryColumn& column : kRepositoryTables[t].columns) rows[t].columns.emplace_back(column.name);
    return rows;
}

void AddStoredRow(StoredRows& rows, std::int16_t id, const StoredRow& stored) {
    for (const TablePlace place : {kSessions, kTables, kColumns})
        if (kRepositoryTables[place].name == stored.table) NewRow(rows, place, id).Set(stored.values);
}

}  // namespace

StoredRows RowsOf(const SessionDefinition& session) {
    StoredRows rows = EmptyRows();
    for (const StoredRow& stored : session.rows) AddStoredRow(rows, session.id, stored);
    if (!session.rows.empty()) return rows;
    NewRow row(rows, kSessions, session.id);
    for (const auto& [column, field] : kSessionTexts) row.Set(column, session.*field);
    row.Set(session.stored);
    for (const TableMapping& table : session.tables) {
        AddTable(rows, session, table);
        std::int64_t position = 0;
        for (const ColumnMapping& column : table.columns) AddColumn(rows, session.id, table, column, ++position);
    }
    return rows;
}

SessionDefinition DefinitionOf(const StoredRows& rows) {
    if (rows[kSessions].empty()) throw Error(ErrorKind::Misuse, "sessions", "there is no such session");
    SessionDefinition session;
    const ReadRow row(rows[kSessions], 0);
    session.id = row.Small("sessionid");
    for (const auto& [column, field] : kSessionTexts) session.*field = row.Text(column);
    for (std::size_t t = 0; t < rows[kTables].rows.size(); ++t) {
        session.tables.push_back(TableOf({rows[kTables], t}));
        if (session.targetKind == "TEXT") session.targetText = TargetTextOf({rows[kTables], t});  // the last row counts
    }
    for (std::size_t c = 0; c < rows[kColumns].rows.size(); ++c) {
        const ReadRow column(rows[kColumns], c);
        for (TableMapping& table : session.tables)
            if (!column.IsNull("TabID") && table.tabId == column.Number("TabID"))
                table.columns.push_back(ColumnOf(column));
    }
    return session;
}

std::vector<std::string> MissingValues(const StoredRows& rows) {
    std::vector<std::string> missing;
    const bool fromText = !rows[kSessions].empty() && IsTextSource(DefinitionOf(rows));
    for (std::size_t t = 0; t < rows.size(); ++t) {
        const RepositoryTable& table = kRepositoryTables[t];
        for (const RepositoryColumn& column : table.columns) {
            const bool ofText = column.name == "SFormat" || column.name == "SFirstColLine";
            if (!column.required || (ofText && !fromText)) continue;
            bool isNull = false;
            for (std::size_t row = 0; row < rows[t].rows.size(); ++row)
                isNull = isNull || rows[t].At(row, column.name).IsNull();
            if (isNull) missing.push_back(std::string(table.name) + "." + std::string(column.name));
        }
    }
    return missing;
}

}  // namespace varnel::admin
