#include "tools/sessionfile/ReadSessionFile.h"

#include <toml++/toml.h>

#include <limits>
#include <map>

#include "ado/types/ConnectionString.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "tools/sessionfile/KeyReader.h"
#include "tools/sessionfile/Passwords.h"
#include "tools/sessionfile/ReadStoredValues.h"
#include "tools/sessionfile/ReadTables.h"
#include "tools/sessionfile/ReadTextSettings.h"

namespace varnel::admin {
namespace {

constexpr std::int64_t kLeastId = std::numeric_limits<std::int16_t>::min();
constexpr std::int64_t kMostId = std::numeric_limits<std::int16_t>::max();

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
    faults.Note(keys.At("connection"), [&] { RefuseHiddenPassword(connection); });
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
    session.stored = ReadStoredValues(keys, faults);
    keys.Finish();
    return session;
}

template <class Read>
void ReadBlocks(KeyReader& keys, const char* key, std::vector<SessionDefinition>& sessions, Faults& faults,
                Read&& read) {
    const std::string block = "[[" + std::string(key) + "]]";
    const toml::array* list = keys.Array(key, block + " with two brackets");
    for (std::size_t i = 0; list && i < list->size(); ++i) {
        if (const toml::table* table = list->get(i)->as_table())
            sessions.push_back(read(*table, faults));
        else
            faults.Add(*list->get(i), "a session must be written as " + block);
    }
}

std::vector<SessionDefinition> ReadParsed(const toml::parse_result& parsed, Faults& faults) {
    if (!parsed) {
        faults.Add(parsed.error().source().begin.line, std::string(parsed.error().description()));
        return {};
    }
    KeyReader keys(parsed.table(), "a session file", faults);
    std::vector<SessionDefinition> sessions;
    ReadBlocks(keys, "session", sessions, faults, ReadSession);
    ReadBlocks(keys, "stored_session", sessions, faults, ReadStoredSession);
    if (sessions.empty() && faults.First().empty())
        faults.Add(1, "the file holds no session; write [[session]] and its keys below");
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
        if (!FileExists(file)) throw Error(ErrorKind::Io, file, file + ": there is no such file");
        Faults faults(file);
        for (SessionDefinition& session : ReadParsed(toml::parse_file(file), faults))
            sessions.push_back(std::move(session));
        for (std::string& line : faults.Lines()) lines.push_back(std::move(line));
    }
    CheckNumbers(sessions, lines);
    if (lines.empty()) return sessions;
    std::string text = "nothing was imported:";
    for (const std::string& line : lines) text += "\n" + line;
    throw Error(ErrorKind::Syntax, "", text);
}

std::vector<SessionDefinition> ReadSessionText(const std::string& text) {
    Faults faults("");
    std::vector<SessionDefinition> sessions = ReadParsed(toml::parse(text), faults);
    if (!faults.First().empty()) throw Error(ErrorKind::Syntax, "", faults.First());
    return sessions;
}

}  // namespace varnel::admin
