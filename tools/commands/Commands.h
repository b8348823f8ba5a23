// The commands of varnel-admin. Each procedure adds one to the command line: its options, its help, and what it runs.
// A command that fails throws; one that ends well but has found something sets status.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace varnel::admin {

/// Exit statuses of the program beside 0.
inline constexpr int kFailed = 1, kUsage = 2;

/// Adds a command with its help: what it does, in a sentence or two, and one call of it. Used by all below.
CLI::App& AddCommand(CLI::App& app, const std::string& name, const std::string& does, const std::string& example);
/// The type name of options that take a file or a folder, as help and completion know it.
inline constexpr const char* kFileType = "FILE";
/// vrrepo.mdb beside the program.
std::string UsualRepository();
/// Adds --repository; repository is where its value goes and holds the usual one before.
void AddRepositoryOption(CLI::App& command, std::string& repository);

void AddNew(CLI::App& app);
void AddCopy(CLI::App& app);
void AddImport(CLI::App& app);
void AddExport(CLI::App& app);
void AddList(CLI::App& app);
void AddShow(CLI::App& app);
/// status: kFailed when a run would fail in something.
void AddCheck(CLI::App& app, int& status);
void AddSql(CLI::App& app);
void AddTables(CLI::App& app);
void AddDescribe(CLI::App& app);
void AddDefine(CLI::App& app);
/// status: kFailed when the file is damaged.
void AddVerify(CLI::App& app, int& status);
/// To be added last: completes the words of all the others.
void AddCompletion(CLI::App& app);

}  // namespace varnel::admin
