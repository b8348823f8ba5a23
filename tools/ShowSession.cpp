#include <cstdio>

#include "ado/Ado.h"
#include "ado/types/ConnectionString.h"
#include "tools/ColumnShortForm.h"
#include "tools/OpenRepository.h"
#include "tools/Repository.h"
#include "tools/SessionRows.h"
#include "tools/TomlText.h"

namespace varnel::admin {
namespace {

// A connection string that cannot be read may hold a password anywhere, so nothing of it is shown.
std::string ShownConnection(const std::string& connection) {
    try {
        return ConnectionString(connection).Shown();
    } catch (const Error&) {
        return "***";
    }
}

void AddSide(TomlText& out, const char* table, const std::string& kind, const std::string& connection,
             const std::string& type, const std::string& folder) {
    out.Line("");
    out.Line(std::string("[session.") + table + "]");
    out.Key("kind", kind);
    out.Key("connection", ShownConnection(connection));
    out.KeyUnlessEmpty("type", type);
    out.KeyUnlessEmpty("folder", folder);
}

void AddPolling(TomlText& out, const SessionDefinition& session) {
    if (session.sourceKind != "TEXTPOLL") return;
    out.Line("");
    out.Line("[session.polling]");
    out.Key("folder", session.pollFolder);
    out.Key("pattern", session.pollPattern);
    out.Key("rename", session.pollRename);
}

void AddTargetText(TomlText& out, const SessionDefinition& session) {
    if (session.targetKind != "TEXT") return;
    const TargetText& text = session.targetText;
    out.Line("");
    out.Line("[session.target_text]");
    out.Key("format", text.format);
    out.Key("delimiter", text.delimiter);
    out.Key("qualifier", text.qualifier);
    out.Key("header", text.header);
    out.KeyUnlessEmpty("folder", text.folder);
    out.KeyUnlessEmpty("extension", text.extension);
}

std::string LongForm(const ColumnMapping& column) {
    std::string text = "{source = " + Quoted(column.source) + ", type = " + Quoted(column.type);
    text += ", width = " + std::to_string(column.width) + ", scale = " + std::to_string(column.scale);
    text += ", source_type = " + Quoted(column.sourceTypeName) + ", target = " + Quoted(column.target);
    if (!column.targetType.empty()) text += ", target_type = " + Quoted(column.targetType);
    text += ", target_width = " + std::to_string(column.targetWidth);
    text += ", target_scale = " + std::to_string(column.targetScale);
    return text + (column.selected ? "}" : ", selected = false}");
}

void AddTable(TomlText& out, const SessionDefinition& session, const TableMapping& table) {
    out.Line("");
    out.Line("[[session.table]]");
    out.Key("source", table.source);
    out.KeyUnlessEmpty("source_owner", table.sourceOwner);
    out.Key("target", table.target);
    out.KeyUnlessEmpty("target_owner", table.targetOwner);
    out.KeyUnlessEmpty("where", table.where);
    out.Key("exists", table.exists);
    out.Key("option", table.option);
    out.KeyUnlessEmpty("first_time", table.firstTime);
    if (IsTextSource(session))
        out.Line("source_text = {delimiter = " + Quoted(table.sourceText.delimiter) + ", qualifier = " +
                 Quoted(table.sourceText.qualifier) + ", header = " + (table.sourceText.header ? "true}" : "false}"));
    out.Line("columns = [");
    for (const ColumnMapping& column : table.columns) {
        const auto shortForm = ShortForm(column);
        out.Line("    " + (shortForm ? Quoted(*shortForm) : LongForm(column)) + ",");
    }
    out.Line("]");
}

}  // namespace

void ShowSession(std::int16_t id, const std::string& repositoryFile) {
    const StoredRows rows = KeepRows(OpenRepository(repositoryFile), id);
    if (rows[0].empty())
        throw Error(ErrorKind::Misuse, repositoryFile,
                    "there is no session " + std::to_string(id) + " in " + repositoryFile +
                        "; the numbers are shown by: varnel-admin list --repository " + repositoryFile);
    const SessionDefinition session = DefinitionOf(rows);
    TomlText out;
    out.Line("# " + LastRun(rows));
    for (const std::string& column : MissingValues(rows)) out.Line("# cannot run: " + column + " is Null");
    out.Line("[[session]]");
    out.Key("id", session.id);
    out.Key("name", session.name);
    out.KeyUnlessEmpty("log", session.log);
    AddSide(out, "source", session.sourceKind, session.sourceConnection, session.sourceType, session.sourceFolder);
    AddSide(out, "target", session.targetKind, session.targetConnection, session.targetType, session.targetFolder);
    AddPolling(out, session);
    AddTargetText(out, session);
    for (const TableMapping& table : session.tables) AddTable(out, session, table);
    std::fputs(out.Text().c_str(), stdout);
}

}  // namespace varnel::admin
