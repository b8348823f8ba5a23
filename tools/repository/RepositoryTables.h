// The three tables of a repository: the columns that the program reads and writes.
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace varnel::admin {

struct RepositoryColumn {
    std::string_view name;
    std::string_view type;  ///< type word of Jet's CREATE TABLE
    bool required;          ///< a Null makes the session unreadable; SFormat and SFirstColLine only for text sources
};

struct RepositoryTable {
    std::string_view name;
    std::string_view key;  ///< primary key columns; "" for a table whose rows keep the order in which they were stored
    std::span<const RepositoryColumn> columns;
};

inline constexpr std::array<RepositoryColumn, 17> kSessionColumns{{
    {"sessionid", "LONG", true},
    {"SessionName", "TEXT(255)", true},
    {"SourceConnStr", "MEMO", true},
    {"TargetConnStr", "MEMO", true},
    {"SourceDBName", "TEXT(255)", true},
    {"TargetDBName", "TEXT(255)", true},
    {"SourceType", "TEXT(255)", false},
    {"TargetType", "TEXT(255)", false},
    {"SrcDBFPath", "MEMO", true},
    {"DBFPath", "MEMO", true},
    {"logfilename", "MEMO", false},
    {"FPattern", "TEXT(255)", true},
    {"FRename", "TEXT(255)", true},
    {"FolderName", "MEMO", true},
    {"LastRunDate", "TEXT(255)", false},
    {"LastRunTime", "TEXT(255)", false},
    {"SessionError", "SHORT", false},
}};

inline constexpr std::array<RepositoryColumn, 21> kTableColumns{{
    {"SessionId", "LONG", true},       {"TabID", "SHORT", true},
    {"SourceTableName", "MEMO", true}, {"SourceOwnerName", "TEXT(255)", true},
    {"DestTableName", "MEMO", true},   {"DestOwnerName", "TEXT(255)", true},
    {"TableExists", "YESNO", true},    {"WhereCond", "MEMO", true},
    {"LoadOption", "TEXT(255)", true}, {"FirstTimeLoadOpt", "TEXT(255)", false},
    {"TrimTname", "TEXT(255)", false}, {"FileName", "TEXT(255)", false},
    {"SFormat", "TEXT(255)", true},    {"TextQ", "TEXT(255)", false},
    {"SFirstColLine", "SHORT", true},  {"DFormat", "TEXT(255)", false},
    {"TextDirDest", "MEMO", false},    {"FileFormat", "TEXT(255)", false},
    {"FileExt", "TEXT(255)", false},   {"DFirstColLine", "SHORT", false},
    {"DTextQ", "TEXT(255)", false},
}};

inline constexpr std::array<RepositoryColumn, 18> kColumnColumns{{
    {"sessionid", "LONG", true},
    {"TabID", "DOUBLE", true},
    {"TName", "MEMO", false},
    {"SCName", "TEXT(255)", true},
    {"DCName", "TEXT(255)", true},
    {"SCCount", "SHORT", true},
    {"DCCount", "SHORT", true},
    {"SDtype", "TEXT(255)", true},
    {"DDType", "TEXT(255)", true},
    {"SWidth", "LONG", true},
    {"DWidth", "LONG", true},
    {"SScale", "SHORT", true},
    {"DScale", "SHORT", true},
    {"SOrgDtype", "TEXT(255)", true},
    {"Pos", "SHORT", true},
    {"CPos", "SHORT", true},
    {"ignor", "YESNO", true},
    {"SSelected", "SHORT", true},
}};

inline constexpr std::array<RepositoryTable, 3> kRepositoryTables{{
    {"sessions", "sessionid", kSessionColumns},
    {"vrtabs", "SessionId, TabID", kTableColumns},
    {"SrcDCols", "", kColumnColumns},
}};

/// "CREATE TABLE name (column type, ..., CONSTRAINT nameKey PRIMARY KEY (key))". Nulls are allowed everywhere, because
/// a session from elsewhere may have them wherever it likes.
std::string CreateTableStatement(const RepositoryTable& table);
/// The columns of its key, in order.
std::vector<std::string> KeyColumns(const RepositoryTable& table);

}  // namespace varnel::admin
