// varnel-admin: makes, fills and shows repositories, runs SQL against any connection string, and verifies database
// files.
#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "ado/SessionLease.h"
#include "platform/StoredPath.h"
#include "providers/ProviderList.h"
#include "tools/Repository.h"
#include "tools/RunSql.h"
#include "tools/VerifyCommand.h"

namespace varnel::admin {
namespace {

constexpr int kFailed = 1, kUsage = 2;

struct Arguments {
    std::string repository = ApplicationFolder() + "/vrrepo.mdb";
    std::string newFile = repository;
    std::vector<std::string> sessionFiles;
    bool replace = false;
    std::int16_t session = 0;
    std::string connection, statement;
    bool csv = false;
    std::string database, password;
    bool isSound = true;
};

void Describe(CLI::App& app, Arguments& arguments) {
    app.set_version_flag("--version", "varnel-admin " VARNEL_VERSION);
    app.require_subcommand(1);

    auto& make = *app.add_subcommand("new", "Make an empty repository");
    make.add_option("file", arguments.newFile, "File to make (vrrepo.mdb beside this program)");
    make.callback([&] {
        NewRepository(arguments.newFile);
        std::printf("made %s\n", arguments.newFile.c_str());
    });

    const auto addRepository = [&](CLI::App& command) {
        command.add_option("--repository", arguments.repository, "Repository (vrrepo.mdb beside this program)");
    };
    auto& importing = *app.add_subcommand("import", "Read session files into a repository");
    importing.add_option("file", arguments.sessionFiles, "Session files (TOML)")->required();
    importing.add_flag("--replace", arguments.replace, "Replace sessions that exist already");
    addRepository(importing);
    importing.callback([&] { ImportSessions(arguments.sessionFiles, arguments.repository, arguments.replace); });

    auto& list = *app.add_subcommand("list", "List the sessions of a repository");
    addRepository(list);
    list.callback([&] { ListSessions(arguments.repository); });

    auto& show = *app.add_subcommand("show", "Show a session as a session file, passwords as ***");
    show.add_option("session", arguments.session, "Number of the session")->required();
    addRepository(show);
    show.callback([&] { ShowSession(arguments.session, arguments.repository); });

    auto& sql = *app.add_subcommand("sql", "Run one SQL statement and print its rows");
    sql.add_option("connection", arguments.connection, "Connection string")->required();
    sql.add_option("statement", arguments.statement, "Statement")->required();
    sql.add_flag("--csv", arguments.csv, "Print comma-separated values instead of a table");
    sql.callback([&] { RunSql(arguments.connection, arguments.statement, arguments.csv); });

    auto& verify = *app.add_subcommand("verify", "Look for damage in a database file");
    verify.add_option("file", arguments.database, "Access or SQLite database, FoxPro table (.dbf) or container (.dbc)")->required();
    verify.add_option("--password", arguments.password, "Password of the database");
    verify.callback([&] { arguments.isSound = VerifyCommand(arguments.database, arguments.password); });
}  // namespace

int Run(int argc, char** argv) {
    SetApplicationFolder(FolderOfProgram(argv[0]));
    SetProviders(AllProviders());
    CLI::App app("Makes, fills and shows the repositories of load sessions.", "varnel-admin");
    Arguments arguments;
    Describe(app, arguments);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : kUsage;
    }
    return std::fflush(stdout) == 0 && arguments.isSound ? 0 : kFailed;
}

}  // namespace
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
