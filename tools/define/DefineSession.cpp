#include "tools/define/DefineSession.h"

#include <algorithm>

#include "ado/types/ConnectionString.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/InputFile.h"
#include "platform/StoredPath.h"
#include "tools/define/SourceTables.h"
#include "tools/define/TargetNames.h"
#include "tools/define/TargetRow.h"
#include "tools/define/TargetTypes.h"

namespace varnel::admin {
namespace {

constexpr std::size_t kMostEntries = 32'767;  // columns of one session

bool IsText(const std::string& kind) {
    return kind == "TEXT" || kind == "TEXTPOLL";
}

/// The file or folder that a connection string names; "" for a server's.
std::string PathOf(const std::string& connection) {
    return ConnectionString(connection).Get({"Data Source", "DBQ", "SourceDB", "DefaultDir"});
}

std::string WithSeparator(std::string folder) {
    if (folder.empty() || folder.ends_with('\\') || folder.ends_with('/')) return folder;
    return folder + (folder.find('\\') == std::string::npos ? '/' : '\\');
}

/// What free FoxPro tables and text files need beside the connection.
std::string FolderOf(const DefineSide& side) {
    if (side.kind != "FOXPRO DIR" && !IsText(side.kind)) return "";
    const std::string folder = side.folder.empty() ? PathOf(side.connection) : side.folder;
    if (folder.empty())
        throw Error(ErrorKind::Misuse, "",
                    "a side of kind " + side.kind + " needs its folder; write --source-folder or --target-folder");
    return WithSeparator(folder);
}

/// An Access or SQLite file that does not exist yet is made by the first run.
std::string MakingConnection(const DefineSide& target) {
    const std::string path = PathOf(target.connection);
    const bool states = ConnectionString(target.connection).Find({"Mode"}).has_value();
    if (target.kind != "ACCESS" || path.empty() || states || FileExists(path)) return target.connection;
    return target.connection + (target.connection.ends_with(';') ? "" : ";") + "Mode=ReadWriteCreate";
}

/// The kind word of the repository and, for FoxPro, its second word.
void SplitKind(const std::string& kind, std::string& word, std::string& type) {
    const std::size_t blank = kind.find(' ');
    word = kind.substr(0, blank);
    type = blank == std::string::npos ? "" : kind.substr(blank + 1);
}

SessionDefinition SessionOf(const DefineOptions& options) {
    SessionDefinition session;
    session.id = options.id;
    session.name = options.name.empty() ? options.source.kind + " to " + options.target.kind : options.name;
    session.log =
        options.log.empty() ? ApplicationFolder() + "/session" + std::to_string(options.id) + ".log" : options.log;
    SplitKind(options.source.kind, session.sourceKind, session.sourceType);
    SplitKind(options.target.kind, session.targetKind, session.targetType);
    session.sourceConnection = options.source.connection;
    session.targetConnection = MakingConnection(options.target);
    if (session.sourceType == "DIR") session.sourceFolder = FolderOf(options.source);
    if (session.targetType == "DIR") session.targetFolder = FolderOf(options.target);
    if (session.targetKind == "TEXT") {
        session.targetText = options.targetText;
        session.targetText.folder = FolderOf(options.target);
    }
    return session;
}

/// What holds for every table of a kind of target.
std::vector<std::string> NotesOnTarget(const std::string& kind) {
    if (kind == "ACCESS") return {"A Yes/No column of Access knows no Null: it becomes No."};
    if (kind.starts_with("FOXPRO"))
        return {
            "FoxPro keeps texts in Windows-1252 and whole seconds: a row with other letters, or with a fraction of a "
            "second, is refused and reported.",
            "FoxPro fills Character columns up with blanks."};
    if (kind == "ORACLE")
        return {
            "Oracle keeps an empty text as Null, Yes and No as T and F, and whole seconds.",
            "A Varchar2 may count bytes: a text with letters beyond ASCII then needs more room than it has letters."};
    if (kind == "MSSQL") return {"A datetime of SQL Server begins with 1753 and counts in steps of 1/300 second."};
    if (kind == "MySQL")
        return {"On the way into MySQL the text NULL becomes Null, and fractions of a second are lost."};
    return {
        "Text files are written in Windows-1252: a cell with other letters is refused and reported. For UTF-8 put "
        "CharacterSet=65001 into the Extended Properties of the target's connection."};
}

/// What has to be there before the first run.
std::vector<std::string> NotesOnPlace(const SessionDefinition& session) {
    const std::string path = PathOf(session.targetConnection);
    const bool isContainer = session.targetType == "DBC";
    const bool isFolder = session.targetType == "DIR" || session.targetKind == "TEXT";
    if (isContainer && !FileExists(path))
        return {"The database " + path + " does not exist yet: it is to be made first."};
    if (isFolder && !FolderExists(path)) return {"The folder " + path + " does not exist yet: it is to be made first."};
    return {};
}

ColumnMapping MapColumn(const TableColumn& source, const DefineOptions& options, TargetNames& names) {
    ColumnMapping column;
    const TargetType type = ProposeType(source.info, options.source.kind, options.target.kind);
    column.source = source.info.name;
    column.target = names.Take(source.info.name);
    column.type = SessionTypeName(source.info.type);
    // An Oracle target looks at the source's own word for a number.
    const bool ownWord = options.target.kind == "ORACLE" && source.info.precision != kNotStated;
    column.sourceTypeName = AsciiUpper(ownWord ? source.typeName : column.type);
    column.width = SessionWidth(source.info);
    column.scale = SessionScale(source.info);
    column.targetType = type.word;
    column.targetWidth = type.width;
    column.targetScale = type.scale;
    column.comment = type.loss;
    if (source.info.type == adVariant) column.comment = "declared without a type; its values are kept as texts";
    const std::string fault = FaultOfSourceName(options.source.kind, source.info.name, false);
    if (!fault.empty()) column.selected = false, column.comment = "left out: " + fault;
    return column;
}

TableMapping MapTable(const SourceTable& source, const DefineOptions& options, TargetNames& names) {
    TableMapping table;
    const std::string& kind = options.source.kind;
    table.source = source.info.name;
    if (kind == "MySQL" || kind == "ORACLE" || kind == "MSSQL") table.sourceOwner = source.info.owner;
    const std::string stem = IsText(kind) ? table.source.substr(0, table.source.rfind('.')) : table.source;
    table.target = names.Take(stem);
    if (options.target.kind == "MSSQL") table.targetOwner = options.targetOwner;
    table.option = "DELETE";
    table.firstTime = "CREATE";
    table.exists = false;
    TargetNames columns(options.target.kind, NameOf::Column);
    for (const TableColumn& column : source.columns) table.columns.push_back(MapColumn(column, options, columns));
    FitRow(options.target.kind, table);
    return table;
}

/// Text files are written anew by every run.
void BecomeFile(TableMapping& table, const TargetText& text) {
    table.target = text.folder + table.target + text.extension;
    table.option = "APPEND";
    table.firstTime.clear();
    table.exists = true;
}

/// One table stands for every file of the folder; each adds its rows to a table that exists.
void BecomePolled(SessionDefinition& session, const DefineOptions& options) {
    session.pollFolder = FolderOf(options.source);
    session.pollPattern = options.pattern;
    session.pollRename = options.rename;
    session.tables.resize(1);
    TableMapping& table = session.tables.front();
    table.tabId = 0;
    table.source = options.pattern;
    if (!options.targetTable.empty()) table.target = options.targetTable;
    table.option = "APPEND";
    table.firstTime.clear();
    table.exists = true;
    table.comments.emplace_back("Every file adds its rows to this table, which must exist.");
}

std::vector<std::string> PatternsOf(const DefineOptions& options) {
    return options.source.kind == "TEXTPOLL" ? std::vector<std::string>{options.pattern} : options.tables;
}

}  // namespace

SessionDefinition DefineSession(const DefineOptions& options) {
    SessionDefinition session = SessionOf(options);
    session.comments = NotesOnTarget(options.target.kind);
    for (std::string& note : NotesOnPlace(session)) session.comments.push_back(std::move(note));
    Connection source;
    source.Open(options.source.connection);
    TargetNames names(options.target.kind, NameOf::Table);
    std::size_t columns = 0;
    for (const SourceTable& table : ReadSourceTables(source, options.source.kind, PatternsOf(options))) {
        if (!table.fault.empty()) {
            session.comments.push_back("left out: table " + table.info.name + ": " + table.fault);
            continue;
        }
        session.tables.push_back(MapTable(table, options, names));
        session.tables.back().tabId = static_cast<std::int16_t>(session.tables.size());
        columns += session.tables.back().columns.size();
        if (session.targetKind == "TEXT") BecomeFile(session.tables.back(), session.targetText);
        if (columns > kMostEntries)
            throw Error(ErrorKind::Misuse, "", "a session holds at most 32767 columns; choose tables with --table");
    }
    if (session.tables.empty())
        throw Error(ErrorKind::Constraint, "", "no table can be moved: " + session.comments.back());
    if (session.sourceKind == "TEXTPOLL") BecomePolled(session, options);
    return session;
}

}  // namespace varnel::admin
