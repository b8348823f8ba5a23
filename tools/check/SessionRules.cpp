#include "tools/check/SessionRules.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

#include "ado/types/ConnectionString.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/StoredPath.h"
#include "tools/check/NearestName.h"
#include "tools/check/Side.h"

namespace varnel::admin {
namespace {

const std::vector<std::string> kTargetKinds{"ACCESS", "FOXPRO", "ORACLE", "MySQL", "MSSQL", "TEXT"};

void CheckKind(const std::string& column, const std::string& word, const std::vector<std::string>& words,
               Findings& found) {
    if (std::find(words.begin(), words.end(), word) != words.end()) return;
    const std::string list = ShortList(words);
    found.Fault(column, "the kind '" + word + "' is none of " + list + ", so that SQL is written in no dialect",
                DidYouMean(word, words) + "Capitals and small letters count");
}

void CheckFoxProSide(const std::string& column, const std::string& type, const std::string& folderColumn,
                     const std::string& folder, const std::string& connection, Findings& found) {
    if (type != "DIR" && type != "DBC") {
        found.Fault(column, "the FoxPro type is '" + type + "'",
                    "write DIR for a folder of tables, DBC for a database");
        return;
    }
    if (type != "DIR") return;
    if (!folder.ends_with('\\') && !folder.ends_with('/')) {
        found.Fault(folderColumn, "the folder '" + folder + "' is written directly in front of table names",
                    "end it with \\");
        return;
    }
    try {
        const FilePlace place = PlaceOf(connection);
        const std::string stem = folder.size() > 1 ? folder.substr(0, folder.size() - 1) : folder;
        const bool known = place.isFiles && !place.path.empty();
        if (known && AsciiLower(LocalPath(stem)) != AsciiLower(LocalPath(place.path)) &&
            AsciiLower(LocalPath(folder)) != AsciiLower(LocalPath(place.path)))
            found.Warning(folderColumn,
                          "the folder '" + folder + "' is not the one of the connection string, '" + place.path + "'",
                          "write the same folder in both: tables are made in one and looked up in the other");
    } catch (const Error&) {  // a faulty connection string or drive is told where it is opened
    }
}

}  // namespace

void CheckSessionWords(Findings& found) {
    std::vector<std::string> sources = kTargetKinds;
    sources.emplace_back("TEXTPOLL");
    CheckKind("SourceDBName", SessionDef.SourceDBName, sources, found);
    CheckKind("TargetDBName", SessionDef.TargetDBName, kTargetKinds, found);
    if (SessionDef.SourceDBName == "FOXPRO")
        CheckFoxProSide("SourceType", SessionDef.SourceType, "SrcDBFPath", SessionDef.SrcDBFPath,
                        SessionDef.SourceConnStr, found);
    if (SessionDef.TargetDBName == "FOXPRO")
        CheckFoxProSide("TargetType", SessionDef.TargetType, "DBFPath", SessionDef.DBFPath, SessionDef.TargetConnStr,
                        found);
    if (SessionDef.SourceDBName == "TEXT" && SessionDef.TargetDBName != "TEXT") return;
    if (SessionDef.TargetDBName == "TEXT" && SessionDef.FileFormat != "DELIMITED" && SessionDef.FileFormat != "FIXED")
        found.Warning("FileFormat",
                      "the layout '" + SessionDef.FileFormat +
                          "' is neither DELIMITED nor FIXED and is written as fixed "
                          "cells without a check for long columns",
                      "write DELIMITED or FIXED in capitals");
}

void CheckLog(Findings& found) {
    const bool text = SessionDef.TargetDBName == "TEXT";
    if (SessionDef.LogFileName.empty()) {
        if (!text)
            found.Warning("logfilename", "no log is written, and every run counts as a run with errors",
                          "store the path of a log file");
        return;
    }
    std::string why;
    try {
        why = WhyNotWritable(SessionDef.LogFileName);
    } catch (const Error& error) {
        why = error.what();
    }
    if (why.empty()) return;
    const std::string remedy = "make the folder, or correct logfilename";
    if (text) {
        found.Warning("logfilename", "the log cannot be written: " + why, remedy);
    } else {
        found.Fault("logfilename", "the log cannot be written, and the run ends before its first table: " + why,
                    remedy);
    }
}

void CheckTableWords(const TableFacts& facts) {
    const std::string& option = facts.From().LoadOption;
    for (const std::string_view word : {"DROP", "DELETE"})
        if (option != word && EqualNoCase(TrimBlanks(option), word))
            facts.Found().Warning("LoadOption",
                                  "the option '" + option + "' is not the word " + std::string(word) +
                                      ": the rows are appended to those that are there",
                                  "write " + std::string(word) + " in capitals, without blanks");
    const std::string& first = facts.From().FirstTimeLoadOpt;
    if (first != "CREATE" && EqualNoCase(TrimBlanks(first), "CREATE"))
        facts.Found().Warning("FirstTimeLoadOpt",
                              "'" + first + "' is not the word CREATE: the table counts as missing on the next run too",
                              "write CREATE in capitals");
    if (facts.columns.empty())
        facts.Found().Fault("", "the table has no selected column: its statements have no columns and fail",
                            "select columns (SSelected = 1), or take the table out of the session");
    for (std::int16_t k = 0; k < facts.i; ++k)
        if (SourceTables(k).TabID == facts.From().TabID)
            facts.Found().Fault("TabID",
                                "the number " + std::to_string(facts.From().TabID) + " is the one of table '" +
                                    SourceTables(k).TableName + "' too: each gets the columns of both",
                                "give every table of the session a TabID of its own");
}

}  // namespace varnel::admin
