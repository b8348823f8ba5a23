#include <gmock/gmock.h>

#include "tests/tools/AdminTest.h"

namespace varnel {
namespace {

const std::string kDatabase = "Provider=SQLite;Data Source=a.db;Mode=ReadWriteCreate";

class SqlOutput : public AdminTest {
protected:
    SqlOutput() {
        EXPECT_EQ(Output({"sql", kDatabase, "CREATE TABLE T (N LONG, S TEXT(50), D DATETIME, B YESNO, X LONGBINARY)"}),
                  "done\n");
    }
};

TEST_F(SqlOutput, NullEmptyAndSpecialCharactersStayApart) {
    Output({"sql", kDatabase, "INSERT INTO T (N, S, D, B) VALUES (1, 'say \"a,b\"', '2026-11-18 16:23:05.25', 1)"});
    Output({"sql", kDatabase, "INSERT INTO T (N, S, D) VALUES (-20, '', '2026-11-18')"});
    Output({"sql", kDatabase, "INSERT INTO T (S) VALUES ('żółw\n\x01 NULL')"});
    EXPECT_EQ(Output({"sql", kDatabase, "SELECT * FROM T"}),
              "N     S                D                       B     X\n"
              "----  ---------------  ----------------------  ----  ----\n"
              "   1  say \"a,b\"        2026-11-18 16:23:05.25  True  NULL\n"
              " -20                   2026-11-18              NULL  NULL\n"
              "NULL  żółw\\n\\x01 NULL  NULL                    NULL  NULL\n"
              "3 rows\n");
    EXPECT_EQ(Output({"sql", kDatabase, "SELECT * FROM T", "--csv"}),
              "N,S,D,B,X\r\n"
              "1,\"say \"\"a,b\"\"\",2026-11-18 16:23:05.25,True,\r\n"
              "-20,\"\",2026-11-18,,\r\n"
              ",\"żółw\n\x01 NULL\",,,\r\n");
}

TEST_F(SqlOutput, NoRowsStillShowTheColumns) {
    EXPECT_EQ(Output({"sql", kDatabase, "SELECT N, S FROM T"}), "N  S\n-  -\n0 rows\n");
    EXPECT_EQ(Output({"sql", kDatabase, "SELECT N, S FROM T", "--csv"}), "N,S\r\n");
}

TEST_F(SqlOutput, RowsBeyondTheSampleArrive) {
    Output({"sql", kDatabase, "INSERT INTO T (N) VALUES (123456)"});
    for (int doubled = 0; doubled < 11; ++doubled) Output({"sql", kDatabase, "INSERT INTO T SELECT * FROM T"});
    const std::string rows = Output({"sql", kDatabase, "SELECT N FROM T"});
    EXPECT_THAT(rows, testing::EndsWith("123456\n2048 rows\n"));
    EXPECT_EQ(rows.size(), (2 + 2048) * 7 + std::string("2048 rows\n").size());
}

TEST_F(SqlOutput, FailuresEndWithStatusOneAndTheReason) {
    const ProgramResult noTable = Admin({"sql", kDatabase, "SELECT * FROM Nowhere"});
    EXPECT_EQ(noTable.status, 1);
    EXPECT_THAT(noTable.err, testing::HasSubstr("Nowhere"));
    EXPECT_EQ(Admin({"sql", "Provider=None", "SELECT 1"}).status, 1);
    const ProgramResult full = RunIn(
        Folder(), "/bin/sh", {"-c", "exec " VARNEL_ADMIN " sql '" + kDatabase + "' 'SELECT N FROM T' > /dev/full"});
    EXPECT_EQ(full.status, 1);
    EXPECT_THAT(full.err, testing::HasSubstr("standard output"));
}

}  // namespace
}  // namespace varnel
