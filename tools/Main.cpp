// varnel-admin: makes, fills and shows repositories, and runs SQL against any connection string.
#include <cstdio>
#include <exception>

#include "ado/SessionLease.h"
#include "platform/StoredPath.h"
#include "providers/ProviderList.h"
#include "tools/commands/Commands.h"

namespace varnel::admin {
namespace {

std::string CommandNames(const CLI::App& app) {
    std::string names;
    for (const CLI::App* command : app.get_subcommands({})) names += (names.empty() ? "" : ", ") + command->get_name();
    return names + "; help for one: varnel-admin new --help";
}

/// "varnel-admin: --seesion is not known", and where help is to be had.
std::string UsageFault(const CLI::App* app, const CLI::Error& error) {
    const CLI::App* command = app;
    while (!command->get_subcommands().empty()) command = command->get_subcommands().front();
    if (command == app) return "varnel-admin: name a command: " + CommandNames(*app) + "\n";
    return std::string("varnel-admin: ") + error.what() + "\nfor help: varnel-admin " + command->get_name() +
           " --help\n";
}

void AddCommands(CLI::App& app, int& status) {
    AddNew(app);
    AddCopy(app);
    AddImport(app);
    AddExport(app);
    AddList(app);
    AddShow(app);
    AddTables(app);
    AddDescribe(app);
    AddCheck(app, status);
    AddDefine(app);
    AddSql(app);
    AddVerify(app, status);
    AddCompletion(app);
}

}  // namespace

int Run(int argc, char** argv) {
    SetApplicationFolder(FolderOfProgram(argv[0]));
    SetProviders(AllProviders());
    CLI::App app("Makes, fills and shows the repositories of load sessions.", "varnel-admin");
    app.set_version_flag("--version", "varnel-admin " VARNEL_VERSION);
    app.require_subcommand(1);
    app.failure_message(UsageFault);
    int status = 0;
    AddCommands(app, status);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : kUsage;
    }
    return std::fflush(stdout) == 0 ? status : kFailed;
}

}  // namespace varnel::admin

int main(int argc, char** argv) {
    try {
        return varnel::admin::Run(argc, argv);
    } catch (const std::exception& error) {
        std::fflush(stdout);
        std::fprintf(stderr, "varnel-admin: %s\n", error.what());
        return varnel::admin::kFailed;
    }
}
