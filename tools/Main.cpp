// varnel-admin: makes, fills and shows repositories, and runs SQL against any connection string.
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
    std::string copyFrom, copyTo;
    bool sqlite = false;
    std::vector<std::string> sessionFiles;
    bool replace = false;
    std::int16_t session = 0;
    std::string connection, statement;
    bool csv = false;

    RepositoryForm Form() const { return sqlite ? RepositoryForm::Sqlite : RepositoryForm::Access; }
    std::string database, password;
    bool isSound = true;
};

void AddSqliteFlag(CLI::App& command, Arguments& arguments) {
    command.add_flag("--sqlite", arguments.sqlite, "Make a SQLite file instead of an Access database");
}

void AddRepository(CLI::App& command, Arguments& arguments) {
    command.add_option("--repository", arguments.repository, "Repository (vrrepo.mdb beside this program)");
}

void AddNew(CLI::App& app, Arguments& arguments) {
    auto& command = *app.add_subcommand("new", "Make an empty repository");
    command.add_option("file", arguments.newFile, "File to make (vrrepo.mdb beside this program)");
    AddSqliteFlag(command, arguments);
    command.callback([&] {
        NewRepository(arguments.newFile, arguments.Form());
        std::printf("made %s\n", arguments.newFile.c_str());
    });
}

void AddCopy(CLI::App& app, Arguments& arguments) {
    auto& command = *app.add_subcommand("copy", "Copy a repository of either form into a new file");
    command.add_option("from", arguments.copyFrom, "Repository to copy")->required();
    command.add_option("to", arguments.copyTo, "File to make")->required();
    AddSqliteFlag(command, arguments);
    command.callback([&] { CopyRepository(arguments.copyFrom, arguments.copyTo, arguments.Form()); });
}

void AddImport(CLI::App& app, Arguments& arguments) {
    auto& command = *app.add_subcommand("import", "Read session files into a repository");
    command.add_option("file", arguments.sessionFiles, "Session files (TOML)")->required();
    command.add_flag("--replace", arguments.replace, "Replace sessions that exist already");
    AddRepository(command, arguments);
    command.callback([&] { ImportSessions(arguments.sessionFiles, arguments.repository, arguments.replace); });
}

void AddList(CLI::App& app, Arguments& arguments) {
    auto& command = *app.add_subcommand("list", "List the sessions of a repository");
    AddRepository(command, arguments);
    command.callback([&] { ListSessions(arguments.repository); });
}

void AddShow(CLI::App& app, Arguments& arguments) {
    auto& command = *app.add_subcommand("show", "Show a session as a session file, passwords as ***");
    command.add_option("session", arguments.session, "Number of the session")->required();
    AddRepository(command, arguments);
    command.callback([&] { ShowSession(arguments.session, arguments.repository); });
}

void AddSql(CLI::App& app, Arguments& arguments) {
    auto& command = *app.add_subcommand("sql", "Run one SQL statement and print its rows");
    command.add_option("connection", arguments.connection, "Connection string")->required();
    command.add_option("statement", arguments.statement, "Statement")->required();
    command.add_flag("--csv", arguments.csv, "Print comma-separated values instead of a table");
    command.callback([&] { RunSql(arguments.connection, arguments.statement, arguments.csv); });
}

void AddVerify(CLI::App& app, Arguments& arguments) {
    auto& command = *app.add_subcommand("verify", "Look for damage in a database file");
    command.add_option("file", arguments.database, "Access or SQLite database, FoxPro table (.dbf) or container (.dbc)")->required();
    command.add_option("--password", arguments.password, "Password of the database");
    command.callback([&] { arguments.isSound = VerifyCommand(arguments.database, arguments.password); });
}

void Describe(CLI::App& app, Arguments& arguments) {
    app.set_version_flag("--version", "varnel-admin " VARNEL_VERSION);
    app.require_subcommand(1);

    AddNew(app, arguments);
    AddCopy(app, arguments);
    AddImport(app, arguments);
    AddList(app, arguments);
    AddShow(app, arguments);
    AddSql(app, arguments);
    AddVerify(app, arguments);
}

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
