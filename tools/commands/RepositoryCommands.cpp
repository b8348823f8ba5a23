#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include "platform/Error.h"
#include "platform/StoredPath.h"
#include "tools/commands/Commands.h"
#include "tools/repository/Repository.h"

namespace varnel::admin {
namespace {

void AddSqliteFlag(CLI::App& command, bool& sqlite) {
    command.add_flag("--sqlite", sqlite, "Make a SQLite file instead of an Access database");
}

RepositoryForm FormOf(bool sqlite) {
    return sqlite ? RepositoryForm::Sqlite : RepositoryForm::Access;
}

/// A folder where the shell looks for programs is no installation, even where root could write into it.
void RefuseProgramFolder(const std::string& folder) {
    const char* path = std::getenv("PATH");
    if (path == nullptr || (":" + std::string(path) + ":").find(":" + folder + ":") == std::string::npos) return;
    throw Error(ErrorKind::Misuse, folder,
                folder +
                    " is a folder of programs; name the file to make, or start varnel-admin by a link in the "
                    "folder of your load sessions");
}

}  // namespace

std::string UsualRepository() {
    return ApplicationFolder() + "/vrrepo.mdb";
}

void AddRepositoryOption(CLI::App& command, std::string& repository) {
    repository = UsualRepository();
    command.add_option("--repository", repository, "Repository (vrrepo.mdb beside this program)")->type_name(kFileType);
}

void AddNew(CLI::App& app) {
    struct Options {
        std::string file;
        bool sqlite = false;
    };
    const auto options = std::make_shared<Options>();
    auto& command = AddCommand(
        app, "new",
        "Makes an empty repository: an Access database, or a SQLite file. A file that exists is never overwritten.",
        "varnel-admin new --sqlite loads.db");
    command.add_option("file", options->file, "File to make (vrrepo.mdb beside this program)")->type_name(kFileType);
    AddSqliteFlag(command, options->sqlite);
    command.callback([options] {
        if (options->file.empty()) RefuseProgramFolder(ApplicationFolder());
        const std::string file = options->file.empty() ? UsualRepository() : options->file;
        NewRepository(file, FormOf(options->sqlite));
        std::printf("made %s\n", file.c_str());
    });
}

void AddCopy(CLI::App& app) {
    struct Options {
        std::string from, to;
        bool sqlite = false;
    };
    const auto options = std::make_shared<Options>();
    auto& command =
        AddCommand(app, "copy", "Copies every table and row of a repository of either form into a new file.",
                   "varnel-admin copy vrrepo.mdb backup.db --sqlite");
    command.add_option("from", options->from, "Repository to copy")->required()->type_name(kFileType);
    command.add_option("to", options->to, "File to make")->required()->type_name(kFileType);
    AddSqliteFlag(command, options->sqlite);
    command.callback([options] { CopyRepository(options->from, options->to, FormOf(options->sqlite)); });
}

void AddImport(CLI::App& app) {
    struct Options {
        std::vector<std::string> files;
        std::string repository;
        bool replace = false;
    };
    const auto options = std::make_shared<Options>();
    auto& command = AddCommand(app, "import",
                               "Reads session files into a repository, all of their sessions or, on any fault, none.",
                               "varnel-admin import orders.toml stock.toml --replace");
    command.add_option("file", options->files, "Session files (TOML)")->required()->type_name(kFileType);
    command.add_flag("--replace", options->replace, "Replace sessions that exist already");
    AddRepositoryOption(command, options->repository);
    command.callback([options] { ImportSessions(options->files, options->repository, options->replace); });
}

void AddExport(CLI::App& app) {
    const auto order = std::make_shared<ExportOrder>();
    const auto hide = std::make_shared<bool>(false);
    auto& command =
        AddCommand(app, "export",
                   "Writes sessions as a session file, passwords included; import makes the same sessions of it again.",
                   "varnel-admin export --all --output sessions.toml");
    auto* sessions = command.add_option("session", order->sessions, "Numbers of the sessions");
    command.add_flag("--all", order->all, "Every session of the repository")->excludes(sessions);
    command.add_option("--output", order->output, "File to write, readable by its owner only (standard output)")
        ->type_name(kFileType);
    command.add_flag("--replace", order->replace, "Replace the file if it exists");
    command.add_flag("--hide-passwords", *hide, "Write passwords as ***; such a file cannot be imported");
    AddRepositoryOption(command, order->repository);
    command.callback([order, hide] {
        if (order->sessions.empty() && !order->all)
            throw CLI::ValidationError("export", "name the sessions, as in: varnel-admin export 12 14; or write --all");
        if (*hide) order->passwords = Passwords::Hidden;
        ExportSessions(*order);
    });
}

}  // namespace varnel::admin
