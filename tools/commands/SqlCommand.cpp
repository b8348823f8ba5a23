#include <cstdio>
#include <memory>

#include "ado/Ado.h"
#include "tools/commands/Commands.h"
#include "tools/output/JsonRows.h"
#include "tools/output/RowOutput.h"

namespace varnel::admin {
namespace {

struct Options {
    std::string connection, statement;
    bool csv = false, json = false;
};

void RunSql(const Options& options) {
    Recordset rows;
    rows.Open(options.statement, options.connection);
    RowProgress progress;
    if (!rows.IsOpen())
        std::puts(options.json ? "[]" : "done");
    else if (options.json)
        WriteJsonRows(rows, progress);
    else if (options.csv)
        WriteCsv(rows, progress);
    else
        WriteAligned(rows, progress);
}

}  // namespace

void AddSql(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    auto& command = AddCommand(app, "sql", "Runs one SQL statement on any database and prints its rows.",
                               "varnel-admin sql 'Provider=SQLite;Data Source=shop.db' 'SELECT * FROM Orders' --csv");
    command.add_option("connection", options->connection, "Connection string")->required();
    command.add_option("statement", options->statement, "Statement in the words of that database")->required();
    auto* csv = command.add_flag("--csv", options->csv, "Print comma-separated values instead of a table");
    command.add_flag("--json", options->json, "Print JSON, an array of objects, one a line")->excludes(csv);
    command.callback([options] { RunSql(*options); });
}

}  // namespace varnel::admin
