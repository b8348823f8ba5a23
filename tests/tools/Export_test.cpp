#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "tests/tools/AdminTest.h"
#include "tests/tools/RandomSessions.h"
#include "tools/repository/RepositoryTables.h"

namespace varnel {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

const std::vector<std::string> kTables{"sessions", "vrtabs", "SrcDCols"};

class Export : public AdminTest {
protected:
    /// The lines of the three tables, sorted within each table.
    std::string Rows(const std::string& file) const {
        std::string all;
        for (const std::string& table : kTables) {
            std::istringstream text(Sql(file, "SELECT * FROM " + table));
            std::vector<std::string> lines;
            for (std::string line; std::getline(text, line);) lines.push_back(line);
            std::sort(lines.begin(), lines.end());
            for (const std::string& line : lines) all += line + "\n";
        }
        return all;
    }
    /// Exports every session and imports the file into a new repository.
    ProgramResult Carry(const std::string& from, const std::string& to) const {
        const ProgramResult exported =
            Admin({"export", "--all", "--output", "all.toml", "--replace", "--repository", from});
        if (exported.status != 0) return exported;
        if (to.ends_with(".db"))
            Output({"new", to, "--sqlite"});
        else
            Output({"new", to});
        const ProgramResult imported = Admin({"import", "all.toml", "--repository", to});
        return {imported.status, imported.out, exported.err + imported.err};
    }
    void Insert(const std::string& file, const std::string& table, const std::vector<std::string>& rows) const {
        constexpr std::size_t kMostBytes = 60'000;
        std::string values;
        for (std::size_t row = 0; row < rows.size(); ++row) {
            values += (values.empty() ? "" : ", ") + rows[row];
            if (values.size() < kMostBytes && row + 1 < rows.size()) continue;
            Sql(file, "INSERT INTO " + table + " VALUES " + values);
            values.clear();
        }
    }
};

TEST_F(Export, ExamplesMakeTheSameRowsAgain) {
    Output({"new", "old.mdb"});
    std::vector<std::string> arguments{"import", "--repository", "old.mdb"};
    for (const auto& entry : fs::directory_iterator(VARNEL_SOURCE "/examples"))
        if (entry.path().extension() == ".toml") arguments.push_back(entry.path().string());
    Output(arguments);
    Sql("old.mdb",
        "UPDATE sessions SET LastRunDate='11/18/2026', LastRunTime='04:23:05 PM', SessionError=1 "
        "WHERE sessionid<3");
    for (const char* target : {"new.mdb", "new.db"}) {
        const ProgramResult carried = Carry("old.mdb", target);
        EXPECT_EQ(carried.status, 0) << carried.err;
        EXPECT_EQ(carried.err, "");
        EXPECT_EQ(Rows(target), Rows("old.mdb"));
    }
    // Replacing keeps the columns in their order, although an Access database fills its gaps first.
    Output({"import", "all.toml", "--replace", "--repository", "new.mdb"});
    EXPECT_EQ(Output({"export", "--all", "--repository", "new.mdb"}), Bytes("all.toml"));
    // They need nothing but the keys that a person would write, except for the last run.
    EXPECT_THAT(Bytes("all.toml"), Not(HasSubstr("stored_")));
}

TEST_F(Export, AnySessionMakesTheSameRowsAgain) {
    Output({"new", "old.db", "--sqlite"});
    constexpr unsigned kSeed = 20261123;
    std::mt19937 random(kSeed);
    const RandomRows rows = MakeRandomSessions(random, 120);
    Insert("old.db", "sessions", rows.sessions);
    Insert("old.db", "vrtabs", rows.vrtabs);
    Insert("old.db", "SrcDCols", rows.columns);
    const ProgramResult carried = Carry("old.db", "new.db");
    ASSERT_EQ(carried.status, 0) << carried.err;
    EXPECT_EQ(Rows("new.db"), Rows("old.db"));
    // Both forms were at work.
    EXPECT_THAT(Bytes("all.toml"), testing::AllOf(HasSubstr("[[session]]"), HasSubstr("[[stored_session]]"),
                                                  HasSubstr("stored = {"), HasSubstr("stored_null = [")));
}

// Types, columns and habits of its own, as another program may have made them.
TEST_F(Export, ARepositoryFromElsewhereIsCarriedAndWhatCannotBeIsSaid) {
    const std::string old = "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=old.mdb;Mode=ReadWriteCreate";
    const std::vector<std::string> statements = {
        "CREATE TABLE sessions (sessionid COUNTER, SessionName TEXT(50), SourceConnStr MEMO, TargetConnStr MEMO, "
        "SourceDBName TEXT(20), TargetDBName TEXT(20), SrcDBFPath TEXT(9), DBFPath TEXT(9), FPattern TEXT(9), "
        "FRename TEXT(9), FolderName TEXT(9), LastRunDate DATETIME, SessionError DOUBLE, Author TEXT(50))",
        "CREATE TABLE vrtabs (sessionid LONG, tabid DOUBLE, SourceTableName TEXT(50), SourceOwnerName TEXT(9), "
        "DestTableName TEXT(50), DestOwnerName TEXT(9), TableExists SHORT, WhereCond MEMO, LoadOption TEXT(9), "
        "SFormat TEXT(9))",
        "CREATE TABLE SrcDCols (sessionid LONG, TabID LONG, SCName TEXT(50), DCName TEXT(50), SCCount SHORT, "
        "DCCount SHORT, SDtype TEXT(20), DDType TEXT(20), SWidth LONG, DWidth LONG, SScale SHORT, DScale SHORT, "
        "SOrgDtype TEXT(20), Pos SHORT, CPos SHORT, ignor YESNO, SSelected YESNO)",
        "INSERT INTO sessions VALUES (3, 'Old', 'DSN=a', 'DSN=b;PWD=geheim', 'ACCESS', 'MySQL', '', '', '', '', '', "
        "#11/18/2003#, 1.5, 'somebody')",
        "INSERT INTO vrtabs VALUES (3, 7, 'Orders', '', 'orders', '', 2, '', 'delete', Null)",
        "INSERT INTO vrtabs VALUES (3, 4, 'Lines', '', 'lines', '', 0, '', 'APPEND', ';')",
        "INSERT INTO SrcDCols VALUES (3, 4, 'A', 'A', 0, 0, 'INTEGER', 'Int', 10, 10, 0, 0, 'Integer', 0, 0, 0, 1)",
        "INSERT INTO SrcDCols VALUES (3, 7, 'B', 'B', 0, 0, 'INTEGER', 'Int', 10, 10, 0, 0, 'Integer', 0, 0, 0, 0)"};
    for (const std::string& statement : statements) Output({"sql", old, statement});
    const ProgramResult carried = Carry("old.mdb", "new.mdb");
    EXPECT_EQ(carried.status, 0) << carried.err;
    for (const char* note : {"sessions.Author is left out", "sessions.SessionError 1.5 is written as 2",
                             "the tables are not stored in the order of their numbers"}) {
        EXPECT_THAT(carried.err, HasSubstr(std::string("varnel-admin: note: session 3: ") + note));
        EXPECT_THAT(Bytes("all.toml"), HasSubstr(std::string("# ") + note));
    }
    EXPECT_EQ(Sql("new.mdb", "SELECT TargetConnStr, SourceType, LastRunDate, LastRunTime, SessionError FROM sessions"),
              "TargetConnStr,SourceType,LastRunDate,LastRunTime,SessionError\r\n"
              "DSN=b;PWD=geheim,,11/18/2003,,2\r\n");
    EXPECT_EQ(Sql("new.mdb", "SELECT TabID, TableExists, LoadOption, SFormat, TextQ FROM vrtabs ORDER BY TabID"),
              "TabID,TableExists,LoadOption,SFormat,TextQ\r\n4,False,APPEND,;,\r\n7,True,delete,,\r\n");
    EXPECT_EQ(Sql("new.mdb", "SELECT TabID, TName, SCName, Pos, SSelected FROM SrcDCols ORDER BY TabID"),
              "TabID,TName,SCName,Pos,SSelected\r\n4,,A,0,1\r\n7,,B,0,0\r\n");
}

TEST_F(Export, WhatNoSessionFileCanHoldIsRefusedInWords) {
    const struct {
        const char *breaks, *message;
    } kCases[] = {
        {"INSERT INTO vrtabs (SessionId, TabID) VALUES (1, 1)", "two tables have the number vrtabs.TabID 1"},
        {"UPDATE vrtabs SET SFirstColLine=40000", "vrtabs.SFirstColLine holds a value that its type (SHORT) cannot"},
        {"UPDATE SrcDCols SET SWidth='wide'", "SrcDCols.SWidth holds a value that its type (LONG) cannot"},
        {"UPDATE sessions SET TargetConnStr='a=b;PWD=***'",
         "cannot be exported: TargetConnStr holds ***, which only hides a password"},
    };
    std::string texts;
    for (const auto& table : admin::kRepositoryTables) {
        std::string columns;
        for (const auto& column : table.columns)
            columns += (columns.empty() ? "" : ", ") + std::string(column.name) + " MEMO";
        texts += "CREATE TABLE " + std::string(table.name) + " (" + columns + ")\n";
    }
    for (const auto& one : kCases) {
        SCOPED_TRACE(one.breaks);
        fs::remove(Folder() + "/loose.db");
        std::istringstream lines(texts);
        for (std::string statement; std::getline(lines, statement);) Sql("loose.db", statement);
        std::mt19937 random(1);
        const RandomRows rows = MakeRandomSessions(random, 1);
        Insert("loose.db", "sessions", rows.sessions);
        Insert("loose.db", "vrtabs", rows.vrtabs);
        Insert("loose.db", "SrcDCols", rows.columns);
        Sql("loose.db", one.breaks);
        const ProgramResult refused = Admin({"export", "1", "--output", "x.toml", "--repository", "loose.db"});
        EXPECT_EQ(refused.status, 1);
        EXPECT_THAT(refused.err, HasSubstr("varnel-admin: session 1 cannot be exported: "));
        EXPECT_THAT(refused.err, HasSubstr(one.message));
        EXPECT_FALSE(fs::exists(Folder() + "/x.toml"));
    }
}

TEST_F(Export, AFileWithPasswordsIsItsOwnersAndNeverOverwrittenByMistake) {
    Output({"new", "r.mdb"});
    Output({"import", VARNEL_SOURCE "/examples/warehouse.toml", "--repository", "r.mdb"});
    Output({"export", "2", "--output", "w.toml", "--repository", "r.mdb"});
    EXPECT_EQ(fs::status(Folder() + "/w.toml").permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_THAT(Bytes("w.toml"), HasSubstr("Password=Iron horse 7"));
    const std::vector<std::string> hidden{"export",       "2",     "--output",        "w.toml",
                                          "--repository", "r.mdb", "--hide-passwords"};
    EXPECT_THAT(Admin(hidden).err, HasSubstr("w.toml exists already and is left as it is"));
    EXPECT_THAT(Bytes("w.toml"), HasSubstr("Password=Iron horse 7"));
    std::vector<std::string> replacing = hidden;
    replacing.emplace_back("--replace");
    Output(replacing);
    EXPECT_THAT(Bytes("w.toml"), testing::AllOf(HasSubstr("Password=***"), Not(HasSubstr("Iron"))));
    EXPECT_THAT(Admin({"import", "w.toml", "--replace", "--repository", "r.mdb"}).err,
                HasSubstr("w.toml:12: Password is ***, which only hides a password; write the password"));
}

}  // namespace
}  // namespace varnel
