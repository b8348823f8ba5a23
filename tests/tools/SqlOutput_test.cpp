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
    EXPECT_EQ(Output({"sql", kDatabase, "SELECT * FROM T", "--json"}),
              R"([
  {"N": 1, "S": "say \"a,b\"", "D": "2026-11-18 16:23:05.25", "B": true, "X": null},
  {"N": -20, "S": "", "D": "2026-11-18", "B": null, "X": null},
  {"N": null, "S": "żółw\n\u0001 NULL", "D": null, "B": null, "X": null}
]
)");
}

TEST_F(SqlOutput, JsonKeepsDigitsAndTellsColumnsApart) {
    Output({"sql", kDatabase, "CREATE TABLE M (C CURRENCY, E DECIMAL(28,10), F DOUBLE, G GUID, Y VARBINARY(9))"});
    Output({"sql", kDatabase,
            "INSERT INTO M (C, E, F, G) VALUES (922337203685477.5807, 123456789012345678.0123456789, 1.5E-07, "
            "'{0123ABCD-0000-0000-0000-000000000001}')"});
    EXPECT_EQ(Output({"sql", kDatabase, "SELECT C, E, F, G, Y, C AS c_2, C FROM M", "--json"}),
              "[\n  {\"C\": 922337203685477.5807, \"E\": 123456789012345678.0123456789, \"F\": 1.5E-07, "
              "\"G\": \"{0123ABCD-0000-0000-0000-000000000001}\", \"Y\": null, \"c_2\": 922337203685477.5807, "
              "\"C_2\": 922337203685477.5807}\n]\n");
    EXPECT_EQ(Output({"sql", kDatabase, "SELECT C FROM M WHERE C=0", "--json"}), "[]\n");
}

TEST_F(SqlOutput, WideLettersKeepTheColumnsInLine) {
    Output({"sql", kDatabase, "INSERT INTO T (S, N) VALUES ('東京', 1), ('e\u0301', 2), ('абв', 3)"});
    EXPECT_EQ(Output({"sql", kDatabase, "SELECT S, N FROM T"}),
              "S     N\n----  -\n東京  1\ne\u0301     2\nабв   3\n3 rows\n");
}

TEST_F(SqlOutput, NoRowsStillShowTheColumns) {
    EXPECT_EQ(Output({"sql", kDatabase, "SELECT N, S FROM T"}), "N  S\n-  -\n0 rows\n");
    EXPECT_EQ(Output({"sql", kDatabase, "SELECT N, S FROM T", "--csv"}), "N,S\r\n");
}

TEST_F(SqlOutput, RowsBeyondTheSampleArrive) {
    std::string values = "(123456)";
    for (int row = 1; row < 2048; ++row) values += ",(123456)";
    Output({"sql", kDatabase, "INSERT INTO T (N) VALUES " + values});
    std::string expected = "N\n------\n";
    for (int row = 0; row < 2048; ++row) expected += "123456\n";
    EXPECT_EQ(Output({"sql", kDatabase, "SELECT N FROM T"}), expected + "2048 rows\n");
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
