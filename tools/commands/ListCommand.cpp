#include <charconv>
#include <memory>
#include <utility>

#include "tools/commands/Commands.h"
#include "tools/output/JsonDocument.h"
#include "tools/output/TextTable.h"
#include "tools/repository/ListSessions.h"

namespace varnel::admin {
namespace {

struct Options {
    std::string repository;
    bool json = false;
};

Json NumberOrText(const std::string& text) {
    std::int64_t number = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
    return fault == std::errc() && end == text.data() + text.size() ? Json(number) : Json(text);
}

void PrintList(const Options& options) {
    const std::vector<SessionSummary> sessions = ListSessions(options.repository);
    Json list = Json::array();
    std::vector<std::vector<std::string>> rows;
    for (const SessionSummary& session : sessions) {
        const LastRun& run = session.lastRun;
        std::string moment = run.date;
        if (!run.time.empty()) moment += " " + run.time;
        rows.push_back(
            {session.id, session.name, session.sourceKind, session.targetKind, std::move(moment), run.Outcome()});
        list.push_back({{"id", NumberOrText(session.id)},
                        {"name", session.name},
                        {"source", session.sourceKind},
                        {"target", session.targetKind},
                        {"last_run", run.Never() ? Json() : Json(run.IsoMoment())},
                        {"outcome", run.Outcome()}});
    }
    if (options.json) return PrintJson(list);
    PrintTable({{"id", true}, {"name"}, {"source"}, {"target"}, {"last run"}, {"outcome"}}, rows);
}

}  // namespace

void AddList(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    auto& command =
        AddCommand(app, "list", "Lists the sessions of a repository with their last runs: never, good or with errors.",
                   "varnel-admin list --json");
    command.add_flag("--json", options->json, "Print JSON");
    AddRepositoryOption(command, options->repository);
    command.callback([options] { PrintList(*options); });
}

}  // namespace varnel::admin
