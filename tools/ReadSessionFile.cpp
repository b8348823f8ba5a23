#include "tools/ReadSessionFile.h"

#include <toml++/toml.h>

#include <limits>
#include <map>

#include "ado/types/ConnectionString.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "tools/KeyReader.h"
#include "tools/ReadColumnMapping.h"
#include "tools/ReadTextSettings.h"

namespace varnel::admin {
namespace {

constexpr std::int64_t kLeastId = std::numeric_limits<std::int16_t>::min();
constexpr std::int64_t kMostId = std::numeric_limits<std::int16_t>::max();
constexpr std::size_t kMostEntries = 32'767;  // tables, and columns, of one session

const std::vector<std::string_view> kSourceKinds{"ACCESS", "FOXPRO", "ORACLE", "MySQL", "MSSQL", "TEXT", "TEXTPOLL"};
const std::vector<std::string_view> kTargetKinds{"ACCESS", "FOXPRO", "ORACLE", "MySQL", "MSSQL", "TEXT"};

// The folder of free FoxPro tables is written directly in front of table names, so it carries its separator.
std::string WithSeparator(std::string folder) {
    if (folder.empty() || folder.ends_with('\\') || folder.ends_with('/')) return folder;
    return folder + (folder.find('\\') == std::string::npos ? '/' : '\\');
}

struct Side {
    std::string kind, connection, type, folder;
};

std::string ReadConnection(KeyReader& keys, Faults& faults) {
    const std::string example = "connection = 'Provider=SQLite;Data Source=C:\\data\\shop.db'";
    std::string connection = keys.RequiredText("connection", example);
    faults.Note(keys.At("connection"), [&] {
        const ConnectionString parsed(connection);
        for (const auto& [keyword, value] : parsed.Pairs())
            if (value == "***")
                throw Error(ErrorKind::Syntax, "",
                            keyword + " is ***, which only hides a password; write the password");
    });
    return connection;
}

Side ReadSide(KeyReader& session, std::string_view key, const std::vector<std::string_view>& kinds, Faults& faults) {
    const std::string example = std::string(key) + " = {kind = \"ACCESS\", connection = 'Provider=...'}";
    const toml::table* table = session.Table(key, example);
    if (!session.Has(key)) session.Missing(key, example);
    if (!table) return {};
    KeyReader keys(*table, std::string(key), faults);
    Side side;
    side.kind = keys.Word("kind", "kind = \"ACCESS\"", kinds).value_or("");
    if (side.kind.empty()) keys.Missing("kind", "kind = \"ACCESS\"");
    side.connection = ReadConnection(keys, faults);
    side.type = keys.Word("type", "type = \"DIR\"", {"DIR", "DBC"}).value_or("");
    side.folder = WithSeparator(keys.Text("folder", "folder = 'C:\\data\\'").value_or(""));
    if (side.kind == "FOXPRO" && side.type.empty())
        keys.Missing("type", "type = \"DIR\" for a folder of free tables, type = \"DBC\" for a database");
    if (side.kind == "FOXPRO" && side.type == "DIR" && side.folder.empty())
        keys.Missing("folder", "folder = 'C:\\data\\', where the free tables lie");
    keys.Finish();
    return side;
}

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
                       Faults& faults) {
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
    keys.Finish();
    return table;
}

void CheckCounts(const toml::table& node, const SessionDefinition& session, Faults& faults) {
    std::size_t columns = 0;
    for (const TableMapping& table : session.tables) columns += table.columns.size();
    if (session.tables.size() > kMostEntries || columns > kMostEntries)
        faults.Add(node, "a session holds at most 32767 tables and 32767 columns; cut it into several sessions");
    if (session.sourceKind == "TEXTPOLL" && session.tables.size() > 1)
        faults.Add(node, "a session that polls a folder has one table, the template for every file; remove the others");
}

void ReadTables(KeyReader& keys, SessionDefinition& session, const SourceText& sourceText, Faults& faults) {
    const std::string_view example = "[[session.table]] and its keys below the session";
    const toml::array* tables = keys.Array("table", example);
    if (!keys.Has("table") || (tables && tables->empty())) keys.Missing("table", example);
    if (!tables) return;
    // The table of a polled folder is numbered 0: the files found at run time are numbered from 1.
    std::int16_t number = session.sourceKind == "TEXTPOLL" ? 0 : 1;
    for (const toml::node& node : *tables) {
        if (!node.is_table()) {
            faults.Add(node, "a table must be written as [[session.table]]");
            continue;
        }
        session.tables.push_back(ReadTable(*node.as_table(), session, sourceText, faults));
        session.tables.back().tabId = number++;
        if (session.tables.size() > kMostEntries) break;
    }
}

SessionDefinition ReadSession(const toml::table& node, Faults& faults) {
    KeyReader keys(node, "a session", faults);
    SessionDefinition session;
    session.place = faults.Place(node);
    const auto id = keys.RequiredNumber("id", "id = 12", kLeastId, kMostId);
    session.id = static_cast<std::int16_t>(id.value_or(0));
    if (id == 0) faults.Add(keys.At("id"), "id must not be 0, which runs nothing; write id = 12");
    session.name = keys.RequiredText("name", "name = \"Nightly orders\"");
    session.log = keys.Text("log", "log = 'C:\\logs\\orders.log'").value_or("");
    Side source = ReadSide(keys, "source", kSourceKinds, faults),
         target = ReadSide(keys, "target", kTargetKinds, faults);
    session.sourceKind = std::move(source.kind), session.sourceConnection = std::move(source.connection);
    session.sourceType = std::move(source.type), session.sourceFolder = std::move(source.folder);
    session.targetKind = std::move(target.kind), session.targetConnection = std::move(target.connection);
    session.targetType = std::move(target.type), session.targetFolder = std::move(target.folder);
    ReadPolling(keys, session, faults);
    CheckTextKeys(keys, session, faults);
    const toml::table* sourceText = keys.Table("source_text", "source_text = {delimiter = \",\", header = true}");
    const toml::table* targetText = keys.Table("target_text", "target_text = {format = \"DELIMITED\"}");
    if (targetText) session.targetText = ReadTargetText(*targetText, faults);
    ReadTables(keys, session, sourceText ? ReadSourceText(*sourceText, faults) : SourceText{}, faults);
    CheckCounts(node, session, faults);
    keys.Finish();
    return session;
}

std::vector<SessionDefinition> ReadOneFile(const std::string& file, Faults& faults) {
    if (!FileExists(file)) throw Error(ErrorKind::Io, file, file + ": there is no such file");
    const toml::parse_result parsed = toml::parse_file(file);
    if (!parsed) {
        faults.Add(parsed.error().source().begin.line, std::string(parsed.error().description()));
        return {};
    }
    KeyReader keys(parsed.table(), "a session file", faults);
    std::vector<SessionDefinition> sessions;
    const toml::array* list = keys.Array("session", "[[session]] with two brackets");
    if (!keys.Has("session") || (list && list->empty()))
        faults.Add(1, "the file holds no session; write [[session]] and its keys below");
    for (std::size_t i = 0; list && i < list->size(); ++i) {
        if (const toml::table* table = list->get(i)->as_table())
            sessions.push_back(ReadSession(*table, faults));
        else
            faults.Add(*list->get(i), "a session must be written as [[session]]");
    }
    keys.Finish();
    return sessions;
}

void CheckNumbers(const std::vector<SessionDefinition>& sessions, std::vector<std::string>& faults) {
    std::map<std::int16_t, std::string> places;
    for (const SessionDefinition& session : sessions) {
        const auto [known, isNew] = places.emplace(session.id, session.place);
        if (isNew || session.id == 0) continue;
        faults.push_back(session.place + ": id " + std::to_string(session.id) + " is already used at " + known->second +
                         "; give one of them another number");
    }
}

}  // namespace

std::vector<SessionDefinition> ReadSessionFiles(const std::vector<std::string>& files) {
    std::vector<SessionDefinition> sessions;
    std::vector<std::string> lines;
    for (const std::string& file : files) {
        Faults faults(file);
        for (SessionDefinition& session : ReadOneFile(file, faults)) sessions.push_back(std::move(session));
        for (std::string& line : faults.Lines()) lines.push_back(std::move(line));
    }
    CheckNumbers(sessions, lines);
    if (lines.empty()) return sessions;
    std::string text = "nothing was imported:";
    for (const std::string& line : lines) text += "\n" + line;
    throw Error(ErrorKind::Syntax, "", text);
}

}  // namespace varnel::admin
