#include <memory>

#include "tools/commands/Commands.h"
#include "tools/output/JsonDocument.h"
#include "tools/output/Printing.h"
#include "tools/repository/ShowSession.h"
#include "tools/sessionfile/Passwords.h"

namespace varnel::admin {
namespace {

struct Options {
    std::int16_t session = 0;
    std::string repository;
    bool json = false;
};

Json SideJson(const std::string& kind, const std::string& connection, const std::string& type,
              const std::string& folder) {
    return {{"kind", kind},
            {"connection", WrittenConnection(connection, Passwords::Hidden)},
            {"type", type},
            {"folder", folder}};
}

Json ColumnJson(const ColumnMapping& column) {
    return {{"source", column.source},
            {"type", column.type},
            {"source_type", column.sourceTypeName},
            {"width", column.width},
            {"scale", column.scale},
            {"target", column.target},
            {"target_type", column.targetType},
            {"target_width", column.targetWidth},
            {"target_scale", column.targetScale},
            {"selected", column.selected}};
}

Json TableJson(const SessionDefinition& session, const TableMapping& table) {
    Json json = {{"number", table.tabId},
                 {"source", table.source},
                 {"source_owner", table.sourceOwner},
                 {"target", table.target},
                 {"target_owner", table.targetOwner},
                 {"where", table.where},
                 {"exists", table.exists},
                 {"option", table.option},
                 {"first_time", table.firstTime}};
    const SourceText& text = table.sourceText;
    if (IsTextSource(session))
        json["source_text"] = {{"delimiter", text.delimiter}, {"qualifier", text.qualifier}, {"header", text.header}};
    json["columns"] = Json::array();
    for (const ColumnMapping& column : table.columns) json["columns"].push_back(ColumnJson(column));
    return json;
}

Json SessionJson(const ShownSession& shown) {
    const SessionDefinition& session = shown.definition;
    const TargetText& text = session.targetText;
    Json json = {
        {"id", session.id},
        {"name", session.name},
        {"log", session.log},
        {"last_run", shown.lastRun.Never() ? Json() : Json(shown.lastRun.IsoMoment())},
        {"outcome", shown.lastRun.Outcome()},
        {"missing", shown.missing},
        {"source", SideJson(session.sourceKind, session.sourceConnection, session.sourceType, session.sourceFolder)},
        {"target", SideJson(session.targetKind, session.targetConnection, session.targetType, session.targetFolder)}};
    if (session.sourceKind == "TEXTPOLL")
        json["polling"] = {
            {"folder", session.pollFolder}, {"pattern", session.pollPattern}, {"rename", session.pollRename}};
    if (session.targetKind == "TEXT")
        json["target_text"] = {{"format", text.format}, {"delimiter", text.delimiter}, {"qualifier", text.qualifier},
                               {"header", text.header}, {"folder", text.folder},       {"extension", text.extension}};
    json["tables"] = Json::array();
    for (const TableMapping& table : session.tables) json["tables"].push_back(TableJson(session, table));
    return json;
}

void Show(const Options& options) {
    const ShownSession session = StoredSession(options.session, options.repository);
    if (options.json) return PrintJson(SessionJson(session));
    Print(ShownText(session));
    FinishPrinting();
}

}  // namespace

void AddShow(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    auto& command =
        AddCommand(app, "show", "Shows a session as a session file, passwords as ***.", "varnel-admin show 12 --json");
    command.add_option("session", options->session, "Number of the session")->required();
    command.add_flag("--json", options->json, "Print JSON");
    AddRepositoryOption(command, options->repository);
    command.callback([options] { Show(*options); });
}

}  // namespace varnel::admin
