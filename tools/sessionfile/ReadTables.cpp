#include "tools/sessionfile/ReadTables.h"

#include <limits>
#include <set>

#include "tools/sessionfile/ReadColumnMapping.h"
#include "tools/sessionfile/ReadStoredValues.h"
#include "tools/sessionfile/ReadTextSettings.h"

namespace varnel::admin {
namespace {

using Number = std::numeric_limits<std::int16_t>;
constexpr std::size_t kMostEntries = 32'767;  // tables, and columns, of one session

void ReadColumns(KeyReader& keys, const SessionDefinition& session, TableMapping& table, Faults& faults) {
    const std::string_view example = "columns = [\"CustomerID Integer\", \"Name VarWchar(50)\"]";
    const toml::array* columns = keys.Array("columns", example);
    if (!keys.Has("columns") || (columns && columns->empty())) keys.Missing("columns", example);
    if (!columns) return;
    const bool needsTargetType = !table.exists && session.targetKind != "TEXT";
    for (const toml::node& node : *columns) {
        table.columns.push_back(ReadColumnMapping(node, needsTargetType, faults));
        if (session.targetKind == "TEXT") GiveOutputType(table.columns.back());
    }
}

void ReadTarget(KeyReader& keys, const SessionDefinition& session, TableMapping& table) {
    const std::string example =
        session.targetKind == "TEXT" ? "target = 'C:\\out\\Orders.csv', the file to write" : "target = \"Orders\"";
    table.target = keys.Text("target", example).value_or(UsualTarget(session, table.source));
    if (table.target.empty() && !keys.Has("target")) keys.Missing("target", example);
}

TableMapping ReadTable(const toml::table& node, const SessionDefinition& session, const SourceText& sourceText,
                       std::int16_t usualNumber, Faults& faults) {
    KeyReader keys(node, "a table", faults);
    TableMapping table;
    if (session.sourceKind == "TEXTPOLL")
        table.source = keys.Text("source", "source = \"orders.csv\"").value_or(session.pollPattern);
    else
        table.source = keys.RequiredText("source", "source = \"Orders\"");
    table.sourceOwner = keys.Text("source_owner", "source_owner = \"dbo\"").value_or("");
    ReadTarget(keys, session, table);
    table.targetOwner = keys.Text("target_owner", "target_owner = \"dbo\"").value_or("");
    if (session.targetKind == "MSSQL" && table.targetOwner.empty())
        keys.Missing("target_owner", "target_owner = \"dbo\"");
    table.where = keys.Text("where", "where = \"Total > 0\"").value_or("");
    table.firstTime = keys.Word("first_time", "first_time = \"CREATE\"", {"CREATE"}).value_or("");
    table.exists = keys.Flag("exists", "exists = true").value_or(table.firstTime.empty());
    table.option = keys.Word("option", "option = \"DELETE\"", {"DROP", "DELETE", "APPEND"}).value_or(table.option);
    const toml::table* text = keys.Table("source_text", "source_text = {delimiter = \",\", header = true}");
    table.sourceText = text ? ReadSourceText(*text, faults) : sourceText;
    CheckTextKeys(keys, session, faults);
    ReadColumns(keys, session, table, faults);
    table.tabId = static_cast<std::int16_t>(
        keys.Number("number", "number = 3", Number::min(), Number::max()).value_or(usualNumber));
    table.stored = ReadStoredValues(keys, faults);
    keys.Finish();
    return table;
}

void CheckCounts(const toml::node& node, const SessionDefinition& session, Faults& faults) {
    std::size_t columns = 0;
    for (const TableMapping& table : session.tables) columns += table.columns.size();
    if (session.tables.size() > kMostEntries || columns > kMostEntries)
        faults.Add(node, "a session holds at most 32767 tables and 32767 columns; cut it into several sessions");
    if (session.sourceKind == "TEXTPOLL" && session.tables.size() > 1)
        faults.Add(node, "a session that polls a folder has one table, the template for every file; remove the others");
}

}  // namespace

void ReadTables(KeyReader& keys, SessionDefinition& session, const SourceText& sourceText, Faults& faults) {
    const std::string_view example = "[[session.table]] and its keys below the session";
    const toml::array* tables = keys.Array("table", example);
    if (!keys.Has("table") || (tables && tables->empty())) keys.Missing("table", example);
    if (!tables) return;
    std::set<std::int16_t> numbers;
    std::int16_t number = UsualFirstNumber(session);
    for (const toml::node& node : *tables) {
        if (!node.is_table()) {
            faults.Add(node, "a table must be written as [[session.table]]");
            continue;
        }
        session.tables.push_back(ReadTable(*node.as_table(), session, sourceText, number++, faults));
        if (!numbers.insert(session.tables.back().tabId).second)
            faults.Add(node, "number " + std::to_string(session.tables.back().tabId) +
                                 " is that of a table above; write another one");
        if (session.tables.size() > kMostEntries) break;
    }
    CheckCounts(keys.At("table"), session, faults);
}

}  // namespace varnel::admin
