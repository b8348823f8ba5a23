#include "tests/tools/RandomSessions.h"

#include <algorithm>
#include <map>

#include "tools/repository/RepositoryTables.h"

namespace varnel {
namespace {

using admin::RepositoryTable;
using Literals = std::map<std::string_view, std::string>;

/// What a well-made session stores; other texts are '', other numbers 1.
const Literals kUsual = {
    {"SessionName", "'Orders'"},
    {"SourceConnStr", "'DSN=a'"},
    {"TargetConnStr", "'DSN=b;PWD=x y'"},
    {"SourceDBName", "'ACCESS'"},
    {"TargetDBName", "'MySQL'"},
    {"SourceTableName", "'Orders'"},
    {"DestTableName", "'orders'"},
    {"LoadOption", "'DELETE'"},
    {"SFormat", "','"},
    {"TextQ", "'DQ'"},
    {"SCName", "'ID'"},
    {"DCName", "'id'"},
    {"SDtype", "'INTEGER'"},
    {"SOrgDtype", "'Integer'"},
    {"TableExists", "True"},
    {"ignor", "False"},
    {"SWidth", "10"},
    {"DWidth", "10"},
    {"DDType", "'Int'"},
};

const std::vector<std::string> kTexts = {
    "''",       "Null",       "'ACCESS'",   "'TEXT'", "'TEXTPOLL'", "'MSSQL'", "'FOXPRO'",    "'drop'",   "'CREATE'",
    "'FIXED'",  "'SQ'",       "'Integer'",  "'Text'", "'Numeric'",  "' '",     "'a ''b\" c'", "'a -> b'", "'[x'",
    "'x] (1)'", "'żółw\n\t'", "'C:\\in\\'", "'C:/x'", "'a=b;c=\"'", "'1'",     "'#'",         "'\r\n\\u'"};
const std::vector<std::string> kNumbers = {"0", "1", "-1", "2", "7", "32767", "-32768", "Null"};

const std::string& OneOf(std::mt19937& random, const std::vector<std::string>& choices) {
    return choices[random() % choices.size()];
}

std::string Odd(std::mt19937& random, std::string_view type) {
    if (type == "YESNO") return OneOf(random, {"True", "False", "Null"});
    if (type == "LONG" && random() % 4 == 0) return "2147483647";
    return OneOf(random, type == "SHORT" || type == "LONG" || type == "DOUBLE" ? kNumbers : kTexts);
}

std::string Usual(std::string_view name, std::string_view type) {
    const auto known = kUsual.find(name);
    if (known != kUsual.end()) return known->second;
    return type.starts_with("TEXT") || type == "MEMO" ? "''" : "1";
}

/// oddity: of 100 values, how many are odd ones.
std::string MakeRow(std::mt19937& random, const RepositoryTable& table, const Literals& fixed, unsigned oddity) {
    std::string row;
    for (const auto& column : table.columns) {
        const auto given = fixed.find(column.name);
        const bool odd = random() % 100 < oddity;
        row += row.empty() ? "(" : ", ";
        row += given != fixed.end() ? given->second : odd ? Odd(random, column.type) : Usual(column.name, column.type);
    }
    return row + ")";
}

}  // namespace

RandomRows MakeRandomSessions(std::mt19937& random, int count) {
    RandomRows rows;
    for (int id = 1; id <= count; ++id) {
        const unsigned oddity = std::vector<unsigned>{0, 2, 10, 60}[random() % 4];
        const std::string number = std::to_string(id);
        rows.sessions.push_back(MakeRow(random, admin::kRepositoryTables[0], {{"sessionid", number}}, oddity));
        std::vector<std::string> tables{"1", "2", "3", "-5"};
        if (oddity > 2) std::shuffle(tables.begin(), tables.end(), random);
        tables.resize(random() % 4 + (oddity > 10 ? 0 : 1));
        for (const std::string& table : tables) {
            const Literals key = {{"SessionId", number}, {"TabID", table}};
            rows.vrtabs.push_back(MakeRow(random, admin::kRepositoryTables[1], key, oddity));
        }
        std::vector<std::string> owners = tables;
        if (oddity > 10) owners.insert(owners.end(), {"99", "1.5", "Null"});
        for (std::size_t column = random() % 12 + 1; column > 0 && !owners.empty(); --column) {
            const Literals key = {{"sessionid", number}, {"TabID", OneOf(random, owners)}};
            rows.columns.push_back(MakeRow(random, admin::kRepositoryTables[2], key, oddity));
        }
    }
    return rows;
}

}  // namespace varnel
