#include "tools/sessionfile/WriteSessionFile.h"

#include <string_view>

#include "tools/sessionfile/ColumnShortForm.h"
#include "tools/sessionfile/TomlText.h"
#include "tools/sessionfile/WriteStoredValues.h"

namespace varnel::admin {
namespace {

struct Side {
    std::string_view key;
    const std::string &kind, &connection, &type, &folder;
};

void AddSide(TomlText& out, const Side& side, Passwords passwords) {
    out.Line("");
    out.Line("[session." + std::string(side.key) + "]");
    out.Key("kind", side.kind);
    out.Key("connection", WrittenConnection(side.connection, passwords));
    out.KeyUnlessEmpty("type", side.type);
    out.KeyUnlessEmpty("folder", side.folder);
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
    if (!column.selected) text += ", selected = false";
    for (const std::string& key : StoredKeys(column.stored)) text += ", " + key;
    return text + "}";
}

void AddColumns(TomlText& out, const std::vector<ColumnMapping>& columns) {
    out.Line("columns = [");
    for (const ColumnMapping& column : columns) {
        const auto shortForm = ShortForm(column);
        std::string line = "    " + (shortForm ? Quoted(*shortForm) : LongForm(column)) + ",";
        if (!column.comment.empty()) line += "  # " + OneLine(column.comment);
        out.Line(line);
    }
    out.Line("]");
}

void AddTable(TomlText& out, const SessionDefinition& session, const TableMapping& table, int usualNumber) {
    out.Line("");
    out.Comments(table.comments);
    out.Line("[[session.table]]");
    if (table.tabId != usualNumber) out.Key("number", table.tabId);
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
    for (const std::string& key : StoredKeys(table.stored)) out.Line(key);
    AddColumns(out, table.columns);
}

}  // namespace

std::string SessionFileText(const SessionDefinition& session, Passwords passwords) {
    if (!session.rows.empty()) return StoredSessionText(session, passwords);
    TomlText out;
    out.Comments(session.comments);
    out.Line("[[session]]");
    out.Key("id", session.id);
    out.Key("name", session.name);
    out.KeyUnlessEmpty("log", session.log);
    for (const std::string& key : StoredKeys(session.stored)) out.Line(key);
    AddSide(out, {"source", session.sourceKind, session.sourceConnection, session.sourceType, session.sourceFolder},
            passwords);
    AddSide(out, {"target", session.targetKind, session.targetConnection, session.targetType, session.targetFolder},
            passwords);
    AddPolling(out, session);
    AddTargetText(out, session);
    int number = UsualFirstNumber(session);
    for (const TableMapping& table : session.tables) AddTable(out, session, table, number++);
    return out.Text();
}

}  // namespace varnel::admin
