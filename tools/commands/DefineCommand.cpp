#include <memory>
#include <string>
#include <vector>

#include "platform/Error.h"
#include "tools/commands/Commands.h"
#include "tools/define/DefineSession.h"
#include "tools/output/Printing.h"
#include "tools/output/PrivateFile.h"
#include "tools/sessionfile/WriteSessionFile.h"

namespace varnel::admin {
namespace {

const std::vector<std::string> kTargetKinds = {"ACCESS", "FOXPRO DIR", "FOXPRO DBC", "ORACLE",
                                               "MySQL",  "MSSQL",      "TEXT"};

struct Options {
    DefineOptions define;
    std::string output;
};

void AddSideOptions(CLI::App& command, const std::string& side, const std::vector<std::string>& kinds,
                    DefineSide& options) {
    command.add_option("--" + side + "-kind", options.kind, "Kind of the " + side)
        ->required()
        ->check(CLI::IsMember(kinds));
    command.add_option("--" + side, options.connection, "Connection string of the " + side)->required();
    command
        .add_option("--" + side + "-folder", options.folder,
                    "Folder of free FoxPro tables or text files (the one that the connection names)")
        ->type_name(kFileType);
}

void AddTextOptions(CLI::App& command, DefineOptions& options) {
    TargetText& text = options.targetText;
    text.extension = ".csv";
    command.add_option("--format", text.format, "Text target: DELIMITED or FIXED")
        ->check(CLI::IsMember({"DELIMITED", "FIXED"}));
    command.add_option("--delimiter", text.delimiter, "Text target: between cells (,)");
    command.add_option("--extension", text.extension, "Text target: end of the files' names (.csv)");
    command.add_option("--pattern", options.pattern, "Polled folder: files (*.csv)");
    command.add_option("--target-table", options.targetTable,
                       "Polled folder: table that gets the rows (as the first file)");
    command.add_option("--rename", options.rename, "Polled folder: what a loaded file's name gets (done)");
}

void Define(const Options& options) {
    const std::string text = SessionFileText(DefineSession(options.define), Passwords::Written);
    if (!options.output.empty()) return WritePrivateFile(options.output, text, false);
    Print(text);
    FinishPrinting();
}

}  // namespace

void AddDefine(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    DefineOptions& define = options->define;
    auto& command =
        AddCommand(app, "define",
                   "Writes a session file that moves tables of one database into another, with target types that hold "
                   "their values.",
                   "varnel-admin define --source-kind ACCESS --source 'Provider=SQLite;Data Source=shop.db' "
                   "--target-kind TEXT --target 'Provider=Microsoft.Jet.OLEDB.4.0;Data Source=out' --output shop.toml");
    std::vector<std::string> sourceKinds = kTargetKinds;
    sourceKinds.emplace_back("TEXTPOLL");
    AddSideOptions(command, "source", sourceKinds, define.source);
    AddSideOptions(command, "target", kTargetKinds, define.target);
    command.add_option("--table", define.tables, "Tables, with * and ? (all tables, no views)")->take_all();
    command.add_option("--id", define.id, "Number of the session (1)");
    command.add_option("--name", define.name, "Name of the session");
    command.add_option("--log", define.log, "Session log (beside this program)")->type_name(kFileType);
    command.add_option("--target-owner", define.targetOwner, "Owner of the tables in SQL Server (dbo)");
    AddTextOptions(command, define);
    command.add_option("--output", options->output, "File to make (standard output)")->type_name(kFileType);
    command.callback([options] { Define(*options); });
}

}  // namespace varnel::admin
