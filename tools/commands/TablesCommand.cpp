#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "ado/Connection.h"
#include "tools/commands/Commands.h"
#include "tools/output/JsonDocument.h"
#include "tools/output/TextTable.h"

namespace varnel::admin {
namespace {

struct Options {
    std::string connection, table, owner;
    bool json = false;
};

void AddConnectionAndForm(CLI::App& command, Options& options) {
    command.add_option("connection", options.connection, "Connection string")->required();
    command.add_flag("--json", options.json, "Print JSON");
}

void ListTables(const Options& options) {
    Connection connection;
    connection.Open(options.connection);
    Json list = Json::array();
    std::vector<std::vector<std::string>> rows;
    for (const TableInfo& table : connection.Tables()) {
        const char* type = table.isView ? "view" : "table";
        list.push_back({{"owner", table.owner}, {"name", table.name}, {"type", type}});
        rows.push_back({table.owner, table.name, type});
    }
    if (options.json) return PrintJson(list);
    PrintTable({{"Owner"}, {"Name"}, {"Type"}}, rows);
    std::printf("%zu %s\n", rows.size(), rows.size() == 1 ? "table" : "tables");
}

Json DigitsOrNull(std::uint8_t digits) {
    return digits == kNotStated ? Json() : Json(digits);
}

Json DescribeAsJson(const TableColumn& column) {
    const ColumnInfo& info = column.info;
    return {{"name", info.name},
            {"type", TypeName(info.type)},
            {"size", info.definedSize},
            {"precision", DigitsOrNull(info.precision)},
            {"scale", DigitsOrNull(info.numericScale)},
            {"database_type", column.typeName},
            {"nullable", info.nullable},
            {"key", column.isKey},
            {"assigned", column.isAssigned}};
}

std::string DigitsText(std::uint8_t digits) {
    return digits == kNotStated ? "" : std::to_string(digits);
}

std::vector<std::string> DescribeAsRow(const TableColumn& column) {
    const ColumnInfo& info = column.info;
    std::string remarks = column.isKey ? "key" : "";
    if (column.isAssigned) remarks += remarks.empty() ? "assigned" : ", assigned";
    return {info.name,
            TypeName(info.type),
            std::to_string(info.definedSize),
            DigitsText(info.precision),
            DigitsText(info.numericScale),
            column.typeName,
            info.nullable ? "yes" : "no",
            remarks};
}

void DescribeTable(const Options& options) {
    Connection connection;
    connection.Open(options.connection);
    const std::vector<TableColumn> columns = connection.Columns(options.owner, options.table);
    if (options.json) {
        Json list = Json::array();
        for (const TableColumn& column : columns) list.push_back(DescribeAsJson(column));
        return PrintJson({{"owner", options.owner}, {"name", options.table}, {"columns", list}});
    }
    std::vector<std::vector<std::string>> rows;
    rows.reserve(columns.size());
    for (const TableColumn& column : columns) rows.push_back(DescribeAsRow(column));
    PrintTable({{"Column"},
                {"Type"},
                {"Size", true},
                {"Digits", true},
                {"Scale", true},
                {"Database type"},
                {"Null"},
                {"Remarks"}},
               rows);
}

}  // namespace

void AddTables(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    auto& command = AddCommand(app, "tables", "Lists the tables and views of a database.",
                               "varnel-admin tables 'Provider=SQLite;Data Source=shop.db'");
    AddConnectionAndForm(command, *options);
    command.callback([options] { ListTables(*options); });
}

void AddDescribe(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    auto& command = AddCommand(app, "describe", "Describes the columns of a table: types, sizes, keys.",
                               "varnel-admin describe 'Provider=SQLite;Data Source=shop.db' Orders");
    AddConnectionAndForm(command, *options);
    command.add_option("table", options->table, "Table or view")->required();
    command.add_option("--owner", options->owner, "Owner (schema, database) of the table");
    command.callback([options] { DescribeTable(*options); });
}

}  // namespace varnel::admin
